// Lines, polylines, arcs and single pixels.
#include <algorithm>
#include <cstdlib>
#include <new>

#include "platform/outline.h"

namespace gdi {

std::vector<POINT> To_Device_Points(const Mapping& m, const POINT* points, int count) {
  std::vector<POINT> out(static_cast<size_t>(count));
  for (int i = 0; i < count; ++i) {
    out[static_cast<size_t>(i)] =
        POINT{static_cast<LONG>(m.dx(points[i].x)), static_cast<LONG>(m.dy(points[i].y))};
  }
  return out;
}

namespace {

int64_t Steps(const POINT& a, const POINT& b) {
  return std::max(std::abs(int64_t{b.x} - a.x), std::abs(int64_t{b.y} - a.y));
}

// A solid line without a clipping region: the pixels Thin_Line gives lie in
// the surface, so they are written directly, with the raster operation
// chosen once per line.
void Solid_Line(const Target& t, uint32_t color, const POINT& a, const POINT& b) {
  uint32_t* const pixels = t.pixels;
  const auto width = static_cast<size_t>(t.width);
  auto at = [=](int64_t x, int64_t y) -> uint32_t& {
    return pixels[static_cast<size_t>(y) * width + static_cast<size_t>(x)];
  };
  switch (t.rop) {
    case R2_COPYPEN:
      Thin_Line(a.x, a.y, b.x, b.y, t.box,
                [&](int64_t x, int64_t y, int64_t) { at(x, y) = color; });
      break;
    case R2_XORPEN:
      Thin_Line(a.x, a.y, b.x, b.y, t.box,
                [&](int64_t x, int64_t y, int64_t) { at(x, y) ^= color; });
      break;
    default: {
      const int rop = t.rop;
      Thin_Line(a.x, a.y, b.x, b.y, t.box, [&](int64_t x, int64_t y, int64_t) {
        uint32_t& d = at(x, y);
        d = Apply_Rop(rop, d, color);
      });
      break;
    }
  }
}

}  // namespace

long Stroke_Thin(const Target& t, const Stroke& s, const std::vector<POINT>& path, bool closed,
                 long phase) {
  const size_t n = path.size();
  const size_t segments = closed ? n : n - 1;
  for (size_t i = 0; i < segments; ++i) {
    const POINT& a = path[i];
    const POINT& b = path[(i + 1) % n];
    if (s.dashed || t.clip) {
      Thin_Line(a.x, a.y, b.x, b.y, t.box, [&](int64_t x, int64_t y, int64_t k) {
        s.step(t, x, y, phase + static_cast<long>(k));
      });
    } else {
      Solid_Line(t, s.color, a, b);
    }
    phase = static_cast<long>((phase + Steps(a, b)) % s.period);
  }
  return phase;
}

void Thin_Pixels(const RECT& box, const std::vector<POINT>& path, bool closed, Pixel_List& out) {
  const size_t n = path.size();
  const size_t segments = closed ? n : n - 1;
  for (size_t i = 0; i < segments; ++i) {
    const POINT& a = path[i];
    const POINT& b = path[(i + 1) % n];
    Thin_Line(a.x, a.y, b.x, b.y, box,
              [&](int64_t x, int64_t y, int64_t) { out.emplace_back(x, y); });
  }
}

void Stroke_Pixels(const Target& t, const Stroke& s, const Pixel_List& pixels) {
  long phase = 0;
  for (const auto& [x, y] : pixels) {
    s.step(t, x, y, phase);
    phase = (phase + 1) % s.period;
  }
}

void Order_Along(Pixel_List& pixels, const Ellipse_Shape& e, const Sector& sector) {
  std::sort(pixels.begin(), pixels.end(), [&](const auto& p, const auto& q) {
    const int64_t px = 2 * p.first - e.cx2(), py = e.cy2() - 2 * p.second;
    const int64_t qx = 2 * q.first - e.cx2(), qy = e.cy2() - 2 * q.second;
    if (sector.before(px, py, qx, qy)) return true;
    if (sector.before(qx, qy, px, py)) return false;
    return px * px + py * py < qx * qx + qy * qy;
  });
}

std::vector<DPoint> To_DPoints(const std::vector<POINT>& path) {
  std::vector<DPoint> out;
  out.reserve(path.size());
  for (const POINT& p : path)
    out.push_back(DPoint{static_cast<double>(p.x), static_cast<double>(p.y)});
  return out;
}

void Paint_Path_Figure(const Target& t, const Stroke& s, const Brush_Color& brush,
                       std::vector<Row_Span> fill, const std::vector<POINT>& path, bool closed) {
  if (brush.hollow) fill.clear();
  if (s.null) {
    t.spans(fill, brush.pixel);
    return;
  }
  if (s.width > 1) {
    std::vector<Row_Span> pen;
    Wide_Stroke(To_DPoints(path), closed, s.width, t.box, pen);
    if (!fill.empty()) t.spans(Subtract_Rows(fill, pen), brush.pixel);
    t.spans(pen, s.color);
    return;
  }
  if (!fill.empty()) {
    Pixel_List outline;
    Thin_Pixels(t.box, path, closed, outline);
    t.spans(Subtract_Rows(fill, Rows_Of_Pixels(outline, t.box)), brush.pixel);
  }
  Stroke_Thin(t, s, path, closed, 0);
}

}  // namespace gdi

using namespace gdi;

BOOL LineTo(HDC dc, int x, int y) {
  Dc* d;
  Target t;
  if (!Begin_Drawing(dc, d, t)) return FALSE;
  try {
    const Mapping m = Mapping_Of(*d);
    const Stroke s = Stroke_Of(*d, m);
    const std::vector<POINT> path = {
        POINT{static_cast<LONG>(m.dx(d->position.x)), static_cast<LONG>(m.dy(d->position.y))},
        POINT{static_cast<LONG>(m.dx(x)), static_cast<LONG>(m.dy(y))}};
    if (!s.null && !t.empty()) {
      if (s.width > 1) {
        std::vector<Row_Span> pen;
        Wide_Stroke(To_DPoints(path), false, s.width, t.box, pen);
        t.spans(pen, s.color);
      } else {
        d->dash_phase = Stroke_Thin(t, s, path, false, d->dash_phase);
      }
    }
  } catch (const std::bad_alloc&) {
    return FALSE;
  }
  d->position = POINT{x, y};
  return TRUE;
}

BOOL Polyline(HDC dc, const POINT* points, int count) {
  Dc* d;
  Target t;
  if (!Begin_Drawing(dc, d, t) || !points || count < 2) return FALSE;
  try {
    const Mapping m = Mapping_Of(*d);
    const Stroke s = Stroke_Of(*d, m);
    if (s.null || t.empty()) return TRUE;
    Paint_Path_Figure(t, s, Brush_Color{}, {}, To_Device_Points(m, points, count), false);
  } catch (const std::bad_alloc&) {
    return FALSE;
  }
  return TRUE;
}

BOOL Arc(HDC dc, int left, int top, int right, int bottom, int x_start, int y_start, int x_end,
         int y_end) {
  Dc* d;
  Target t;
  if (!Begin_Drawing(dc, d, t)) return FALSE;
  try {
    const Mapping m = Mapping_Of(*d);
    const Stroke s = Stroke_Of(*d, m);
    int64_t l = m.dx(left), r = m.dx(right), tp = m.dy(top), b = m.dy(bottom);
    if (l > r) std::swap(l, r);
    if (tp > b) std::swap(tp, b);
    if (s.null || t.empty() || l == r || tp == b) return TRUE;
    const Ellipse_Shape e(l, tp, r, b);
    // Radials as doubled vectors from the centre, y up.
    const int64_t sx = 2 * m.dx(x_start) - e.cx2(), sy = e.cy2() - 2 * m.dy(y_start);
    const int64_t ex = 2 * m.dx(x_end) - e.cx2(), ey = e.cy2() - 2 * m.dy(y_end);
    // Radials that cut the ellipse in the same pixel draw all of it.
    const Sector sector =
        Same_Cut(e, sx, sy, ex, ey) ? Sector(sx, sy, sx, sy) : Sector(sx, sy, ex, ey);
    if (s.width > 1) {
      std::vector<Row_Span> pen;
      Wide_Stroke(Ellipse_Path(e, sx, sy, ex, ey, sector.full()), sector.full(), s.width, t.box,
                  pen);
      t.spans(pen, s.color);
      return TRUE;
    }
    Pixel_List pixels;
    e.for_outline_rows(t.box.top, t.box.bottom, [&](int64_t y, const int64_t* parts, int n) {
      for (int k = 0; k < n; ++k) {
        const int64_t x0 = std::max<int64_t>(parts[2 * k], t.box.left);
        const int64_t x1 = std::min<int64_t>(parts[2 * k + 1], t.box.right - 1);
        for (int64_t x = x0; x <= x1; ++x) {
          if (sector.contains(2 * x - e.cx2(), e.cy2() - 2 * y)) pixels.emplace_back(x, y);
        }
      }
    });
    if (s.dashed) Order_Along(pixels, e, sector);
    Stroke_Pixels(t, s, pixels);
  } catch (const std::bad_alloc&) {
    return FALSE;
  }
  return TRUE;
}

COLORREF SetPixel(HDC dc, int x, int y, COLORREF color) {
  Dc* d;
  Target t;
  if (!Begin_Drawing(dc, d, t)) return CLR_INVALID;
  const Mapping m = Mapping_Of(*d);
  const int64_t px = m.dx(x), py = m.dy(y);
  if (!t.contains(px, py)) return CLR_INVALID;
  t.pixels[static_cast<size_t>(py) * static_cast<size_t>(t.width) + static_cast<size_t>(px)] =
      To_Pixel(color);
  return color & 0xFFFFFF;
}

BOOL SetPixelV(HDC dc, int x, int y, COLORREF color) {
  return SetPixel(dc, x, y, color) != CLR_INVALID ? TRUE : FALSE;
}

COLORREF GetPixel(HDC dc, int x, int y) {
  Dc* d;
  Target t;
  if (!Begin_Drawing(dc, d, t)) return CLR_INVALID;
  const Mapping m = Mapping_Of(*d);
  const int64_t px = m.dx(x), py = m.dy(y);
  if (!t.contains(px, py)) return CLR_INVALID;
  return To_Colorref(
      t.pixels[static_cast<size_t>(py) * static_cast<size_t>(t.width) + static_cast<size_t>(px)]);
}
