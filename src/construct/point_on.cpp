// Points on lines, circles and arcs, and at their crossings.
#include "tessaline/construct/point_on.h"

#include <cmath>

#include "construct/build.h"
#include "construct/curve.h"
#include "tessaline/geometry/intersect.h"
#include "tessaline/geometry/projection.h"
#include "tessaline/model/create.h"

using namespace construct;

namespace {

// Keeps the crossings that lie on the arc (all of them on a circle).
int Keep_On_Arc(const Curve& k, int n, double* x, double* y) {
  if (k.type != EL_ARC) return n;
  int m = 0;
  for (int i = 0; i < n; ++i) {
    if (Arc_Passes(k.a1, k.a2, Angle_At(k, x[i], y[i]))) {
      x[m] = x[i];
      y[m] = y[i];
      ++m;
    }
  }
  return m;
}

// The new point at the crossing nearest P0 (the first on a tie); 0 when
// there is none.
HGLOBAL Point_Nearest(const Curs_Pos_Type* c, Objects_Array_Type* a, int flag, int n,
                      const double* x, const double* y, int32_t ct, HGLOBAL p1, HGLOBAL p2) {
  if (n <= 0) return 0;
  int k = 0;
  for (int i = 1; i < n; ++i) {
    if (std::hypot(x[i] - c->x[0], y[i] - c->y[0]) < std::hypot(x[k] - c->x[0], y[k] - c->y[0]))
      k = i;
  }
  if (!std::isfinite(x[k]) || !std::isfinite(y[k])) return 0;
  HGLOBAL h = Create_Point(x[k], y[k]);
  Set_Attr(h, flag & ATTR_ORDINARY);
  if (p2) return Finish(a, h, ct, {p1, p2});
  return Finish(a, h, ct, {p1});
}

}  // namespace

HGLOBAL Add_Point_OnL(const Curs_Pos_Type* c, Objects_Array_Type* a, int flag, HGLOBAL line) {
  Curve l;
  if (!c || !a || !Read_Line(line, &l)) return 0;
  double x, y;
  if (l.attr & ATTR_ORDINARY) {
    Projection_Segment_Point(l.x1, l.y1, l.x2, l.y2, c->x[0], c->y[0], &x, &y);
  } else {
    Projection_Line_Point(l.x1, l.y1, l.x2, l.y2, c->x[0], c->y[0], &x, &y);
  }
  return Point_Nearest(c, a, flag, 1, &x, &y, 16, line, 0);
}

HGLOBAL Add_Point_On2L(const Curs_Pos_Type* c, Objects_Array_Type* a, int flag, HGLOBAL line1,
                       HGLOBAL line2) {
  Curve l1, l2;
  if (!c || !a || !Read_Line(line1, &l1) || !Read_Line(line2, &l2)) return 0;
  double x, y;
  int n = Cross_2Line(l1.x1, l1.y1, l1.x2, l1.y2, l2.x1, l2.y1, l2.x2, l2.y2, &x, &y);
  return Point_Nearest(c, a, flag, n, &x, &y, 17, line1, line2);
}

HGLOBAL Add_Point_OnC(const Curs_Pos_Type* c, Objects_Array_Type* a, int flag, HGLOBAL circle) {
  Curve k;
  if (!c || !a || !Read_Circle(circle, &k)) return 0;
  if (c->x[0] == k.xc && c->y[0] == k.yc) return 0;
  double x, y;
  if (k.type == EL_ARC) {
    Projection_Arc_Point(k.xc, k.yc, k.r, k.a1, k.a2, c->x[0], c->y[0], &x, &y);
  } else {
    Projection_Circle_Point(k.xc, k.yc, k.r, c->x[0], c->y[0], &x, &y);
  }
  return Point_Nearest(c, a, flag, 1, &x, &y, 18, circle, 0);
}

HGLOBAL Add_Point_OnLC(const Curs_Pos_Type* c, Objects_Array_Type* a, int flag, HGLOBAL line,
                       HGLOBAL circle) {
  Curve l, k;
  if (!c || !a || !Read_Line(line, &l) || !Read_Circle(circle, &k)) return 0;
  double x[2], y[2];
  int n = Cross_Line_Circle(l.x1, l.y1, l.x2, l.y2, k.xc, k.yc, k.r, &x[0], &y[0], &x[1], &y[1]);
  n = Keep_On_Arc(k, n, x, y);
  return Point_Nearest(c, a, flag, n, x, y, 20, line, circle);
}

HGLOBAL Add_Point_On2C(const Curs_Pos_Type* c, Objects_Array_Type* a, int flag, HGLOBAL circle1,
                       HGLOBAL circle2) {
  Curve k1, k2;
  if (!c || !a || !Read_Circle(circle1, &k1) || !Read_Circle(circle2, &k2)) return 0;
  double x[2], y[2];
  int n = Cross_2Circle(k1.xc, k1.yc, k1.r, k2.xc, k2.yc, k2.r, x, y);
  n = Keep_On_Arc(k1, n, x, y);
  n = Keep_On_Arc(k2, n, x, y);
  return Point_Nearest(c, a, flag, n, x, y, 19, circle1, circle2);
}
