// Carriers of segments, circles and arcs and their crossings.
#include "construct/curve.h"

#include "tessaline/geometry/intersect.h"
#include "tessaline/geometry/projection.h"

namespace construct {

bool Read_Curve(HGLOBAL h, Curve* out) {
  Locked_Element e(h);
  if (!e) return false;
  Curve c;
  c.type = e->type;
  c.attr = e->attr;
  if (c.type == EL_SEGMENT) {
    const auto& s = e->u.seg;
    c.x1 = s.x1, c.y1 = s.y1, c.x2 = s.x2, c.y2 = s.y2;
    double len = std::hypot(s.x2 - s.x1, s.y2 - s.y1);
    if (!(len > 0) || !std::isfinite(len) || !std::isfinite(s.x1) || !std::isfinite(s.y1))
      return false;
    c.dx = (s.x2 - s.x1) / len;
    c.dy = (s.y2 - s.y1) / len;
  } else if (c.type == EL_CIRCLE || c.type == EL_ARC) {
    const auto& k = e->u.circle;
    c.xc = k.xc, c.yc = k.yc, c.r = k.r;
    if (!std::isfinite(c.xc) || !std::isfinite(c.yc) || !std::isfinite(c.r) || !(c.r > 0))
      return false;
    if (c.type == EL_ARC) {
      const auto& a = e->u.arc;
      c.a1 = Normalize_Angle(a.a1);
      c.a2 = Normalize_Angle(a.a2);
      c.x1 = a.x1, c.y1 = a.y1, c.x2 = a.x2, c.y2 = a.y2;
      if (!std::isfinite(a.a1) || !std::isfinite(a.a2) || c.a1 == c.a2) return false;
    }
  } else {
    return false;
  }
  *out = c;
  return true;
}

int Cross_2Circle(double x1, double y1, double r1, double x2, double y2, double r2, double* x,
                  double* y) {
  double ux = x2 - x1, uy = y2 - y1;
  double d = std::hypot(ux, uy);
  if (!(d > 0) || !(r1 > 0) || !(r2 > 0)) return 0;
  ux /= d;
  uy /= d;
  double a = (d * d + r1 * r1 - r2 * r2) / (2 * d);
  double h2 = r1 * r1 - a * a;
  if (h2 < 0) return 0;
  double h = std::sqrt(h2);
  x[0] = x1 + a * ux - h * uy;
  y[0] = y1 + a * uy + h * ux;
  if (h == 0) return 1;
  x[1] = x1 + a * ux + h * uy;
  y[1] = y1 + a * uy - h * ux;
  return 2;
}

int Cross_Carriers(const Curve& a, const Curve& b, double* x, double* y) {
  if (a.line() && b.line())
    return Cross_2Line(a.x1, a.y1, a.x2, a.y2, b.x1, b.y1, b.x2, b.y2, x, y);
  if (a.line() || b.line()) {
    const Curve& l = a.line() ? a : b;
    const Curve& k = a.line() ? b : a;
    return Cross_Line_Circle(l.x1, l.y1, l.x2, l.y2, k.xc, k.yc, k.r, &x[0], &y[0], &x[1], &y[1]);
  }
  return Cross_2Circle(a.xc, a.yc, a.r, b.xc, b.yc, b.r, x, y);
}

bool Foot_On_Carrier(const Curve& c, double px, double py, double* x, double* y) {
  if (c.line()) {
    Projection_Line_Point(c.x1, c.y1, c.x2, c.y2, px, py, x, y);
    return true;
  }
  if (px == c.xc && py == c.yc) return false;
  Circle_Point_Toward(c.xc, c.yc, c.r, px, py, x, y);
  return true;
}

}  // namespace construct
