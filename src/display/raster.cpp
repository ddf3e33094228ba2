// Raster primitives: world coordinates mapped and drawn through the device context.
#include "tessaline/display/raster.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "display/clip.h"
#include "display/mapping.h"
#include "display/visible_arcs.h"
#include "tessaline/platform/memory.h"

namespace {

// Logical units per world unit along x and y, with their signs.
double Scale_X(const World_Window* w, const Logical_Window* l) {
  return l->ext_x / w->w;
}
double Scale_Y(const World_Window* w, const Logical_Window* l) {
  return l->ext_y / w->h;
}

// A circle whose logical radius exceeds this is stroked as polylines of its
// visible arcs instead of by the device's ellipse, so that no coordinate of
// its bounding box leaves the logical range.
constexpr double kMaxDeviceRadius = 16384;

// Strokes the arc interval as a polyline whose chords stay within a quarter
// of a logical unit of the circle.
BOOL Stroke_Arc_Polyline(HDC dc, const World_Window* w, const Logical_Window* l, double xc,
                         double yc, double r, const Angle_Interval& a, double logical_r) {
  double step = 2 * std::sqrt(2 * 0.25 / logical_r);
  int pieces = static_cast<int>(std::min(1e6, std::ceil((a.end - a.start) / step)));
  pieces = std::max(pieces, 1);
  std::vector<POINT> pts(static_cast<size_t>(pieces) + 1);
  for (int i = 0; i <= pieces; ++i) {
    double t = a.start + (a.end - a.start) * i / pieces;
    pts[static_cast<size_t>(i)] = Map_Point(w, l, xc + r * std::cos(t), yc + r * std::sin(t));
  }
  return Polyline(dc, pts.data(), pieces + 1);
}

// Draws one visible interval with the device's Arc: the radials are taken
// from the mapped centre along the interval's end directions. When the
// logical y axis does not run opposite to the world's, the device's
// counter-clockwise sense is the world's clockwise one, so start and end swap.
BOOL Device_Arc(HDC dc, const World_Window* w, const Logical_Window* l, double xc, double yc,
                double r, double s, double e) {
  POINT tl = Map_Point(w, l, xc - r, yc + r);
  POINT br = Map_Point(w, l, xc + r, yc - r);
  POINT c = Map_Point(w, l, xc, yc);
  double sx = Scale_X(w, l), sy = Scale_Y(w, l);
  auto radial = [&](double angle) {
    double dx = std::cos(angle) * sx, dy = std::sin(angle) * sy;
    double len = std::hypot(dx, dy);
    return POINT{c.x + static_cast<LONG>(std::lround(dx / len * 4096)),
                 c.y + static_cast<LONG>(std::lround(dy / len * 4096))};
  };
  POINT ps = radial(s), pe = radial(e);
  if (sx * sy > 0) std::swap(ps, pe);
  return Arc(dc, tl.x, tl.y, br.x, br.y, ps.x, ps.y, pe.x, pe.y);
}

// Draws the visible intervals of a circle or an arc; 0 when there is none.
BOOL Draw_Visible(HDC dc, const World_Window* w, const Logical_Window* l, double xc, double yc,
                  double r, double a1, double span, bool whole_circle) {
  if (!(r > 0) || !std::isfinite(xc) || !std::isfinite(yc) || !std::isfinite(r)) return 0;
  Rect_Bounds view = {std::min(w->x0, w->x0 + w->w), std::max(w->x0, w->x0 + w->w),
                      std::min(w->y0, w->y0 + w->h), std::max(w->y0, w->y0 + w->h)};
  std::vector<Angle_Interval> parts = Visible_Arcs(xc, yc, r, a1, span, view);
  if (parts.empty()) return 0;
  double logical_r = r * std::max(std::fabs(Scale_X(w, l)), std::fabs(Scale_Y(w, l)));
  bool all = parts.size() == 1 && parts[0].end - parts[0].start >= span;
  if (logical_r <= kMaxDeviceRadius && all && whole_circle) {
    POINT tl = Map_Point(w, l, xc - r, yc + r);
    POINT br = Map_Point(w, l, xc + r, yc - r);
    return Ellipse(dc, tl.x, tl.y, br.x, br.y);
  }
  BOOL result = 0;
  for (const Angle_Interval& a : parts) {
    BOOL ok = logical_r <= kMaxDeviceRadius
                  ? Device_Arc(dc, w, l, xc, yc, r, a.start, a.end)
                  : Stroke_Arc_Polyline(dc, w, l, xc, yc, r, a, logical_r);
    result = result || ok;
  }
  return result;
}

}  // namespace

COLORREF Get_Pixel_Checked(HDC dc, const World_Window* w, const Logical_Window* l, double x,
                           double y) {
  if (!In_Widened_World(*w, x, y)) return CLR_INVALID;
  POINT p = Map_Point(w, l, x, y);
  return GetPixel(dc, p.x, p.y);
}

COLORREF rSetPixel(HDC dc, const World_Window* w, const Logical_Window* l, double x, double y,
                   COLORREF colour) {
  if (Get_Pixel_Checked(dc, w, l, x, y) == CLR_INVALID) return CLR_INVALID;
  POINT p = Map_Point(w, l, x, y);
  return SetPixel(dc, p.x, p.y, colour);
}

BOOL rLine_2p(HDC dc, const World_Window* w, const Logical_Window* l, double x1, double y1,
              double x2, double y2) {
  if (!Clip_Segment(w->x0, w->y0, w->x0 + w->w, w->y0 + w->h, &x1, &y1, &x2, &y2)) return 0;
  POINT a = Map_Point(w, l, x1, y1);
  POINT b = Map_Point(w, l, x2, y2);
  MoveToEx(dc, a.x, a.y, nullptr);
  return LineTo(dc, b.x, b.y);
}

BOOL rEllipse(HDC dc, const World_Window* w, const Logical_Window* l, double x1, double y1,
              double x2, double y2) {
  POINT a = Map_Point(w, l, x1, y1);
  POINT b = Map_Point(w, l, x2, y2);
  return Ellipse(dc, a.x, a.y, b.x, b.y);
}

BOOL rRectangle(HDC dc, const World_Window* w, const Logical_Window* l, double x1, double y1,
                double x2, double y2) {
  POINT a = Map_Point(w, l, x1, y1);
  POINT b = Map_Point(w, l, x2, y2);
  return Rectangle(dc, a.x, a.y, b.x, b.y);
}

BOOL rPolygon(HDC dc, const World_Window* w, const Logical_Window* l, const double* points, int n) {
  return With_Mapped_Points<BOOL>(w, l, points, n, 0,
                                  [&](const POINT* p, int count) { return Polygon(dc, p, count); });
}

BOOL rPolyline(HDC dc, const World_Window* w, const Logical_Window* l, const double* points,
               int n) {
  return With_Mapped_Points<BOOL>(
      w, l, points, n, 0, [&](const POINT* p, int count) { return Polyline(dc, p, count); });
}

BOOL rCircle(HDC dc, const World_Window* w, const Logical_Window* l, double xc, double yc,
             double r) {
  return Draw_Visible(dc, w, l, xc, yc, r, 0, 2 * kArc_Pi, true);
}

BOOL rArc(HDC dc, const World_Window* w, const Logical_Window* l, double xc, double yc, double r,
          double a1, double a2) {
  Angle_Interval a = Arc_Interval(a1, a2);
  return Draw_Visible(dc, w, l, xc, yc, r, a.start, a.end - a.start, false);
}
