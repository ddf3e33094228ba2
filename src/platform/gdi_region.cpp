// Region objects, painting them, and clipping a context to one.
#include <algorithm>
#include <cstdlib>
#include <new>

#include "platform/outline.h"

using namespace gdi;

namespace {

// Shapes with more rows than this are refused: a region of varying rows
// costs memory per row.
constexpr int64_t kMaxShapeRows = int64_t{1} << 22;

HRGN Make_Region(Region r) {
  try {
    auto o = std::make_unique<Region_Object>();
    o->region = std::move(r);
    return static_cast<HRGN>(Register(std::move(o)));
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

Region* Region_Of(HRGN h) {
  Region_Object* o = Lookup_As<Region_Object>(h);
  return o ? &o->region : nullptr;
}

BOOL Paint_Region(HDC dc, const Region& logical, uint32_t color) {
  Dc* d;
  Target t;
  if (!Begin_Drawing(dc, d, t)) return FALSE;
  if (t.empty()) return TRUE;
  const Region device = To_Device(logical, Mapping_Of(*d));
  for (const Region::Band& b : device.bands()) {
    const int64_t y0 = std::max<int64_t>(b.y0, t.box.top),
                  y1 = std::min<int64_t>(b.y1, t.box.bottom);
    const Span* s = device.spans(b);
    for (int64_t y = y0; y < y1; ++y) {
      for (uint32_t k = 0; k < b.count; ++k) t.span(y, s[k].x0, s[k].x1, color);
    }
  }
  return TRUE;
}

// The device rectangle a context can draw in, before clipping.
RECT Surface_Box(const Dc& d) {
  if (d.dc_kind == Dc_Kind::memory) {
    Bitmap* bm = Lookup_As<Bitmap>(d.bitmap);
    return bm ? RECT{0, 0, bm->width, bm->height} : RECT{0, 0, 0, 0};
  }
  return RECT{0, 0, Display_Metric(2), Display_Metric(3)};
}

// The region drawing is clipped to: surface and clipping region.
Region Drawable(const Dc& d) {
  const RECT s = Surface_Box(d);
  Region r = Region::Rect(s.left, s.top, s.right, s.bottom);
  return d.clip ? Combine(r, *d.clip, RGN_AND) : r;
}

}  // namespace

HRGN CreateRectRgn(int left, int top, int right, int bottom) {
  return Make_Region(Region::Rect(left, top, right, bottom));
}

HRGN CreateRectRgnIndirect(const RECT* rect) {
  return rect ? CreateRectRgn(rect->left, rect->top, rect->right, rect->bottom) : nullptr;
}

HRGN CreateEllipticRgn(int left, int top, int right, int bottom) {
  int64_t l = Clamp_Coord(left), t = Clamp_Coord(top), r = Clamp_Coord(right),
          b = Clamp_Coord(bottom);
  if (l > r) std::swap(l, r);
  if (t > b) std::swap(t, b);
  if (b - t > kMaxShapeRows) return nullptr;
  try {
    std::vector<Row_Span> rows;
    // Like every region the ellipse leaves out the right and bottom edge of
    // its box: it is the set of the box one pixel smaller, the pixels a
    // null-pen Ellipse's brush covers.
    if (r - l > 1 && b - t > 1) {
      const RECT all{INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX};
      Ellipse_Rows(Ellipse_Shape(l, t, r - 1, b - 1), all, rows);
    }
    return Make_Region(Region_Of_Rows(rows));
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

HRGN CreatePolygonRgn(const POINT* points, int count, int mode) {
  if (!points || count < 0 || (mode != ALTERNATE && mode != WINDING)) return nullptr;
  try {
    std::vector<POINT> path(static_cast<size_t>(count));
    int64_t top = 0, bottom = 0;
    for (int i = 0; i < count; ++i) {
      POINT p{static_cast<LONG>(Clamp_Coord(points[i].x)),
              static_cast<LONG>(Clamp_Coord(points[i].y))};
      path[static_cast<size_t>(i)] = p;
      top = i == 0 ? p.y : std::min<int64_t>(top, p.y);
      bottom = i == 0 ? p.y : std::max<int64_t>(bottom, p.y);
    }
    if (bottom - top > kMaxShapeRows) return nullptr;
    std::vector<Row_Span> rows;
    if (count >= 3) {
      const RECT all{INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX};
      Polygon_Rows(path, mode, all, rows);
    }
    return Make_Region(Region_Of_Rows(rows));
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

int CombineRgn(HRGN dest, HRGN src1, HRGN src2, int mode) {
  Region* d = Region_Of(dest);
  Region* a = Region_Of(src1);
  Region* b = mode == RGN_COPY ? a : Region_Of(src2);
  if (!d || !a || !b || mode < RGN_AND || mode > RGN_COPY) return ERROR;
  try {
    *d = Combine(*a, *b, mode);
  } catch (const std::bad_alloc&) {
    return ERROR;
  }
  return d->type();
}

int GetRgnBox(HRGN rgn, RECT* box) {
  Region* r = Region_Of(rgn);
  if (!r || !box) return ERROR;
  *box = r->box();
  return r->type();
}

BOOL EqualRgn(HRGN a, HRGN b) {
  Region* ra = Region_Of(a);
  Region* rb = Region_Of(b);
  return ra && rb && *ra == *rb ? TRUE : FALSE;
}

BOOL PtInRegion(HRGN rgn, int x, int y) {
  Region* r = Region_Of(rgn);
  return r && r->contains(x, y) ? TRUE : FALSE;
}

int OffsetRgn(HRGN rgn, int dx, int dy) {
  Region* r = Region_Of(rgn);
  if (!r || !r->offset(dx, dy)) return ERROR;
  return r->type();
}

BOOL FillRgn(HDC dc, HRGN rgn, HBRUSH brush) {
  Region* r = Region_Of(rgn);
  const Brush_Color b = Resolve_Brush(brush);
  if (!r || !b.valid) return FALSE;
  if (b.hollow) return Lookup_As<Dc>(dc) ? TRUE : FALSE;
  try {
    return Paint_Region(dc, *r, b.pixel);
  } catch (const std::bad_alloc&) {
    return FALSE;
  }
}

BOOL PaintRgn(HDC dc, HRGN rgn) {
  Dc* d = Lookup_As<Dc>(dc);
  return d ? FillRgn(dc, rgn, d->brush) : FALSE;
}

BOOL FrameRgn(HDC dc, HRGN rgn, HBRUSH brush, int w, int h) {
  Region* r = Region_Of(rgn);
  const Brush_Color b = Resolve_Brush(brush);
  if (!r || !b.valid) return FALSE;
  if (b.hollow) return Lookup_As<Dc>(dc) ? TRUE : FALSE;
  try {
    // The interior keeps the pixels that stay inside when moved w columns
    // either way or h rows either way; the frame is the rest.
    const int64_t mw = std::abs(int64_t{w}), mh = std::abs(int64_t{h});
    Region interior = *r;
    for (auto [dx, dy] : {std::pair{mw, int64_t{0}}, std::pair{-mw, int64_t{0}},
                          std::pair{int64_t{0}, mh}, std::pair{int64_t{0}, -mh}}) {
      Region moved = *r;
      if (!moved.offset(dx, dy)) return FALSE;
      interior = Combine(interior, moved, RGN_AND);
    }
    return Paint_Region(dc, Combine(*r, interior, RGN_DIFF), b.pixel);
  } catch (const std::bad_alloc&) {
    return FALSE;
  }
}

int SelectClipRgn(HDC dc, HRGN rgn) {
  Dc* d = Lookup_As<Dc>(dc);
  if (!d) return ERROR;
  try {
    if (!rgn) {
      d->clip.reset();
    } else {
      Region* r = Region_Of(rgn);
      if (!r) return ERROR;
      d->clip = *r;
    }
    return Drawable(*d).type();
  } catch (const std::bad_alloc&) {
    return ERROR;
  }
}

int GetClipBox(HDC dc, RECT* box) {
  Dc* d = Lookup_As<Dc>(dc);
  if (!d || !box) return ERROR;
  try {
    const Region r = Drawable(*d);
    const RECT b = r.box();
    POINT corners[2] = {{b.left, b.top}, {b.right, b.bottom}};
    DPtoLP(dc, corners, 2);
    *box = RECT{std::min(corners[0].x, corners[1].x), std::min(corners[0].y, corners[1].y),
                std::max(corners[0].x, corners[1].x), std::max(corners[0].y, corners[1].y)};
    return r.type();
  } catch (const std::bad_alloc&) {
    return ERROR;
  }
}
