// Filled figures: rectangles, ellipses, polygons and FillRect.
#include <algorithm>
#include <new>
#include <utility>

#include "platform/outline.h"

using namespace gdi;

namespace {

// A logical box mapped to the device with its corners in order.
struct Device_Box {
  int64_t l, t, r, b;
  bool empty() const { return l == r || t == b; }
};

Device_Box Map_Box(const Mapping& m, int64_t left, int64_t top, int64_t right, int64_t bottom) {
  Device_Box x{m.dx(left), m.dy(top), m.dx(right), m.dy(bottom)};
  if (x.l > x.r) std::swap(x.l, x.r);
  if (x.t > x.b) std::swap(x.t, x.b);
  return x;
}

// A wide pen reaches w/2 pixels beyond its path on the left and top and
// (w-1)/2 on the right and bottom (gdi.h: the sample point), so an
// inside-frame figure is drawn in its box shrunk by those amounts, which
// keeps the whole pen inside the box. A pen wider than the box is narrowed
// to the box's smaller side: it then covers the box.
Device_Box Inside_Frame(Device_Box x, int& width) {
  width = static_cast<int>(std::min<int64_t>({width, x.r - x.l, x.b - x.t}));
  const int64_t before = width / 2, after = (width - 1) / 2;
  return Device_Box{x.l + before, x.t + before, x.r - after, x.b - after};
}

void Add_Rect_Rows(int64_t l, int64_t t, int64_t r, int64_t b, const RECT& box,
                   std::vector<Row_Span>& out) {
  l = std::max<int64_t>(l, box.left);
  r = std::min<int64_t>(r, box.right);
  t = std::max<int64_t>(t, box.top);
  b = std::min<int64_t>(b, box.bottom);
  if (l >= r) return;
  for (int64_t y = t; y < b; ++y) {
    out.push_back(
        Row_Span{static_cast<int32_t>(y), static_cast<int32_t>(l), static_cast<int32_t>(r)});
  }
}

POINT P(int64_t x, int64_t y) {
  return POINT{static_cast<LONG>(x), static_cast<LONG>(y)};
}

}  // namespace

BOOL Rectangle(HDC dc, int left, int top, int right, int bottom) {
  Dc* d;
  Target t;
  if (!Begin_Drawing(dc, d, t)) return FALSE;
  try {
    const Mapping m = Mapping_Of(*d);
    Stroke s = Stroke_Of(*d, m);
    const Brush_Color brush = Resolve_Brush(d->brush);
    Device_Box x = Map_Box(m, left, top, right, bottom);
    if (t.empty() || x.empty()) return TRUE;
    if (s.inside_frame) x = Inside_Frame(x, s.width);
    std::vector<Row_Span> fill;
    if (!brush.hollow) {
      // Inside the border; a null pen leaves its place to the brush only on
      // the left and top, as in Win32.
      if (s.null) {
        Add_Rect_Rows(x.l, x.t, x.r - 1, x.b - 1, t.box, fill);
      } else {
        Add_Rect_Rows(x.l + 1, x.t + 1, x.r - 1, x.b - 1, t.box, fill);
      }
    }
    // The border runs through the outermost pixel centres; a box one pixel
    // thin is a single line covering all of it.
    std::vector<POINT> path;
    bool closed = true;
    if (x.r - x.l == 1) {
      path = {P(x.l, x.t), P(x.l, x.b)};
      closed = false;
    } else if (x.b - x.t == 1) {
      path = {P(x.l, x.t), P(x.r, x.t)};
      closed = false;
    } else {
      path = {P(x.l, x.t), P(x.r - 1, x.t), P(x.r - 1, x.b - 1), P(x.l, x.b - 1)};
    }
    // A wide pen strokes through pixel centres, so it ends on the last one.
    if (!closed && s.width > 1) path.back() = P(x.r - 1, x.b - 1);
    Paint_Path_Figure(t, s, brush, std::move(fill), path, closed);
  } catch (const std::bad_alloc&) {
    return FALSE;
  }
  return TRUE;
}

BOOL Ellipse(HDC dc, int left, int top, int right, int bottom) {
  Dc* d;
  Target t;
  if (!Begin_Drawing(dc, d, t)) return FALSE;
  try {
    const Mapping m = Mapping_Of(*d);
    Stroke s = Stroke_Of(*d, m);
    const Brush_Color brush = Resolve_Brush(d->brush);
    Device_Box x = Map_Box(m, left, top, right, bottom);
    if (t.empty() || x.empty()) return TRUE;
    if (s.inside_frame) x = Inside_Frame(x, s.width);
    if (s.null) {
      // As with Rectangle, the brush alone covers the box one pixel smaller.
      if (!brush.hollow && x.r - x.l > 1 && x.b - x.t > 1) {
        std::vector<Row_Span> fill;
        Ellipse_Rows(Ellipse_Shape(x.l, x.t, x.r - 1, x.b - 1), t.box, fill);
        t.spans(fill, brush.pixel);
      }
      return TRUE;
    }
    const Ellipse_Shape e(x.l, x.t, x.r, x.b);
    std::vector<Row_Span> inside, outline;
    auto push = [&](std::vector<Row_Span>& list, int64_t y, int64_t a, int64_t z) {
      a = std::max<int64_t>(a, t.box.left);
      z = std::min<int64_t>(z, t.box.right);
      if (a < z) {
        list.push_back(
            Row_Span{static_cast<int32_t>(y), static_cast<int32_t>(a), static_cast<int32_t>(z)});
      }
    };
    e.for_outline_rows(t.box.top, t.box.bottom, [&](int64_t y, const int64_t* parts, int n) {
      for (int k = 0; k < n; ++k) push(outline, y, parts[2 * k], parts[2 * k + 1] + 1);
      if (n == 2 && !brush.hollow) push(inside, y, parts[1] + 1, parts[2]);
    });
    if (s.width > 1) {
      std::vector<Row_Span> pen;
      Wide_Stroke(Ellipse_Path(e, 1, 0, 1, 0, true), true, s.width, t.box, pen);
      if (!inside.empty()) t.spans(Subtract_Rows(inside, pen), brush.pixel);
      t.spans(pen, s.color);
      return TRUE;
    }
    t.spans(inside, brush.pixel);
    if (!s.dashed) {
      t.spans(outline, s.color);
      return TRUE;
    }
    // A dashed outline runs counter-clockwise from the rightmost point.
    Pixel_List pixels;
    for (const Row_Span& r : outline) {
      for (int32_t px = r.x0; px < r.x1; ++px) pixels.emplace_back(px, r.y);
    }
    Order_Along(pixels, e, Sector(1, 0, 1, 0));
    Stroke_Pixels(t, s, pixels);
  } catch (const std::bad_alloc&) {
    return FALSE;
  }
  return TRUE;
}

BOOL Polygon(HDC dc, const POINT* points, int count) {
  Dc* d;
  Target t;
  if (!Begin_Drawing(dc, d, t) || !points || count < 2) return FALSE;
  try {
    const Mapping m = Mapping_Of(*d);
    const Stroke s = Stroke_Of(*d, m);
    const Brush_Color brush = Resolve_Brush(d->brush);
    if (t.empty()) return TRUE;
    const std::vector<POINT> path = To_Device_Points(m, points, count);
    std::vector<Row_Span> fill;
    if (!brush.hollow) Polygon_Rows(path, d->poly_fill_mode, t.box, fill);
    Paint_Path_Figure(t, s, brush, std::move(fill), path, true);
  } catch (const std::bad_alloc&) {
    return FALSE;
  }
  return TRUE;
}

int FillRect(HDC dc, const RECT* rect, HBRUSH brush) {
  Dc* d;
  Target t;
  if (!rect || !Begin_Drawing(dc, d, t)) return 0;
  const Brush_Color b = Resolve_Brush(brush);
  if (!b.valid) return 0;
  if (b.hollow) return 1;
  t.rop = R2_COPYPEN;
  // An inverted side fills as PatBlt with a negative extent does: from the
  // smaller coordinate + 1 up to and including the larger one.
  auto side = [](int64_t a, int64_t z) {
    return a <= z ? std::pair{a, z} : std::pair{z + 1, a + 1};
  };
  const auto [l, r] = side(rect->left, rect->right);
  const auto [top, bottom] = side(rect->top, rect->bottom);
  const Device_Box x = Map_Box(Mapping_Of(*d), l, top, r, bottom);
  const int64_t y0 = std::max<int64_t>(x.t, t.box.top), y1 = std::min<int64_t>(x.b, t.box.bottom);
  for (int64_t y = y0; y < y1; ++y) t.span(y, x.l, x.r, b.pixel);
  return 1;
}
