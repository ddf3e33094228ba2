// Tangent circles and lines, segments and arcs on nodes, and the circle on a
// diameter, computed from their parent elements.
#include "tessaline/construct/derived.h"

#include <cmath>

#include "construct/build.h"
#include "construct/curve.h"
#include "tessaline/construct/tangent.h"
#include "tessaline/geometry/projection.h"
#include "tessaline/geometry/vector.h"
#include "tessaline/model/create.h"

using namespace construct;

namespace {

bool Finite(double x, double y) {
  return std::isfinite(x) && std::isfinite(y);
}

HGLOBAL Circle(double xc, double yc, double r, int flag) {
  if (!Finite(xc, yc) || !(r > 0) || !std::isfinite(r)) return 0;
  HGLOBAL h = Create_Circle(xc, yc, r);
  Set_Attr(h, flag & ATTR_ORDINARY);
  return h;
}

HGLOBAL Line(double x1, double y1, double x2, double y2, int flag) {
  if (!Finite(x1, y1) || !Finite(x2, y2)) return 0;
  HGLOBAL h = Create_Line(x1, y1, x2, y2);
  Set_Attr(h, flag & ATTR_ORDINARY);
  return h;
}

// The two ends of Add_Line_OnN and Add_Arc2PC: node i1 of e1 or P0, node i2
// of e2 or P1; false when a given element has no such node.
bool Ends_On_Nodes(const Curs_Pos_Type* c, HGLOBAL e1, int i1, HGLOBAL e2, int i2, double* x,
                   double* y) {
  x[0] = c->x[0], y[0] = c->y[0], x[1] = c->x[1], y[1] = c->y[1];
  HGLOBAL e[2] = {e1, e2};
  int i[2] = {i1, i2};
  for (int k = 0; k < 2; ++k) {
    if (!e[k]) continue;
    double nx = NAN, ny = NAN;
    if (!Get_El_Node_Coord_by_Handle(e[k], i[k], &nx, &ny) || !Finite(nx, ny)) return false;
    x[k] = nx, y[k] = ny;
  }
  return !(x[0] == x[1] && y[0] == y[1]) && Finite(x[0], y[0]) && Finite(x[1], y[1]);
}

// One common tangent of two circles: touching points and the distance score
// against the picks.
struct Tangent {
  double x1, y1, x2, y2, score;
};

// The common tangents with unit normal n, n . C1 - p = r1 and
// n . C2 - p = e r2 (e = 1 outer, -1 inner): n . (C1 - C2) = r1 - e r2.
int Common_Tangents(const Curve& k1, const Curve& k2, Tangent* out) {
  double dx = k1.xc - k2.xc, dy = k1.yc - k2.yc, d = std::hypot(dx, dy);
  if (!(d > 0)) return 0;
  double base = std::atan2(dy, dx);
  int n = 0;
  for (double e : {1.0, -1.0}) {
    double q = (k1.r - e * k2.r) / d;
    if (!(std::fabs(q) <= 1)) continue;
    double spread = std::acos(q);
    for (double s : {1.0, -1.0}) {
      double th = base + s * spread;
      double nx = std::cos(th), ny = std::sin(th);
      // The foot of a centre on the line is C - (signed distance) n.
      out[n++] = {k1.xc - k1.r * nx, k1.yc - k1.r * ny, k2.xc - e * k2.r * nx,
                  k2.yc - e * k2.r * ny, 0};
      if (spread == 0) break;  // one tangent where the circles touch
    }
  }
  return n;
}

}  // namespace

HGLOBAL Add_TanCirToLine(const Curs_Pos_Type* c, Objects_Array_Type* a, int flag, HGLOBAL line) {
  Curve l;
  if (!c || !a || !Read_Line(line, &l)) return 0;
  double r = Distance_Line_Point(l.x1, l.y1, l.x2, l.y2, c->x[0], c->y[0]);
  return Finish(a, Circle(c->x[0], c->y[0], r, flag), 6, {line});
}

HGLOBAL Add_TanCirTo2Line(const Curs_Pos_Type* c, Objects_Array_Type* a, int flag, HGLOBAL line1,
                          HGLOBAL line2) {
  Curve l1, l2;
  if (!c || !a || line1 == line2 || !Read_Line(line1, &l1) || !Read_Line(line2, &l2)) return 0;
  double xc, yc, r;
  if (!Tangent_Circle_2Line(l1.x1, l1.y1, l1.x2, l1.y2, l2.x1, l2.y1, l2.x2, l2.y2, c->x[0],
                            c->y[0], &xc, &yc, &r))
    return 0;
  return Finish(a, Circle(xc, yc, r, flag), 7, {line1, line2});
}

HGLOBAL Add_Aux_TanLineToCir(const Curs_Pos_Type* c, Objects_Array_Type* a, HGLOBAL circle) {
  Curve k;
  if (!c || !a || !Read_Circle(circle, &k)) return 0;
  double xa, ya, xb, yb;
  int n = Tangent_Points_Circle(k.xc, k.yc, k.r, c->x[0], c->y[0], &xa, &ya, &xb, &yb);
  if (n == 0) return 0;
  if (n == 1 || (xa == c->x[0] && ya == c->y[0])) {
    // P0 on the circle: the tangent there, a quarter turn from the radius.
    double tx, ty;
    if (!Perp_Vect(c->x[0] - k.xc, c->y[0] - k.yc, &tx, &ty)) return 0;
    xa = c->x[0] + 10.0 * tx, ya = c->y[0] + 10.0 * ty;
  } else if (SQDistance_2Points(xb, yb, c->x[1], c->y[1]) <
             SQDistance_2Points(xa, ya, c->x[1], c->y[1])) {
    xa = xb, ya = yb;
  }
  return Finish(a, Line(c->x[0], c->y[0], xa, ya, 0), 8, {circle});
}

HGLOBAL Add_TanLineTo2Cir(const Curs_Pos_Type* c, Objects_Array_Type* a, int flag, HGLOBAL circle1,
                          HGLOBAL circle2) {
  Curve k1, k2;
  if (!c || !a || !Read_Circle(circle1, &k1) || !Read_Circle(circle2, &k2)) return 0;
  Tangent t[4];
  int n = Common_Tangents(k1, k2, t);
  int best = -1;
  for (int i = 0; i < n; ++i) {
    if (t[i].x1 == t[i].x2 && t[i].y1 == t[i].y2) continue;
    t[i].score = SQDistance_2Points(t[i].x1, t[i].y1, c->x[0], c->y[0]) +
                 SQDistance_2Points(t[i].x2, t[i].y2, c->x[1], c->y[1]);
    if (best < 0 || t[i].score < t[best].score) best = i;
  }
  if (best < 0) return 0;
  const Tangent& b = t[best];
  return Finish(a, Line(b.x1, b.y1, b.x2, b.y2, flag), 9, {circle1, circle2});
}

HGLOBAL Add_TanCircleToCir(const Curs_Pos_Type* c, Objects_Array_Type* a, int flag,
                           HGLOBAL circle) {
  Curve k;
  if (!c || !a || !Read_Circle(circle, &k)) return 0;
  double r;
  if (!Tangent_Circle_Centred(k.xc, k.yc, k.r, c->x[0], c->y[0], c->x[1], c->y[1], &r)) return 0;
  return Finish(a, Circle(c->x[0], c->y[0], r, flag), 10, {circle});
}

HGLOBAL Add_Line_OnN(const Curs_Pos_Type* c, Objects_Array_Type* a, HGLOBAL e1, int i1, HGLOBAL e2,
                     int i2) {
  double x[2], y[2];
  if (!c || !a || !Ends_On_Nodes(c, e1, i1, e2, i2, x, y)) return 0;
  if (!e1 && !e2) return Finish(a, Line(x[0], y[0], x[1], y[1], 1), 0, {});
  if (!e2) return Finish(a, Line(x[0], y[0], x[1], y[1], 1), 21, {e1, Node_Slot(i1)});
  if (!e1) return Finish(a, Line(x[1], y[1], x[0], y[0], 1), 21, {e2, Node_Slot(i2)});
  return Finish(a, Line(x[0], y[0], x[1], y[1], 1), 22, {e1, Node_Slot(i1), e2, Node_Slot(i2)});
}

HGLOBAL Add_Arc2PC(const Curs_Pos_Type* c, Objects_Array_Type* a, HGLOBAL e1, int i1, HGLOBAL e2,
                   int i2) {
  double x[2], y[2];
  if (!c || !a || !Ends_On_Nodes(c, e1, i1, e2, i2, x, y)) return 0;
  double xc, yc, r, a1, a2;
  if (!Arc_2Points_Centre(x[0], y[0], x[1], y[1], c->x[2], c->y[2], &xc, &yc, &r, &a1, &a2) ||
      !Finite(xc, yc) || !(r > 0) || !std::isfinite(r))
    return 0;
  HGLOBAL h = Create_Arc(xc, yc, r, a1, a2);
  Set_Arc_Ends(h, x[0], y[0], x[1], y[1]);
  if (!e1 && !e2) return Finish(a, h, 0, {});
  if (!e1 || !e2) {
    return Finish(a, h, 23,
                  {e1, e1 ? Node_Slot(i1) : HGLOBAL{0}, e2, e2 ? Node_Slot(i2) : HGLOBAL{0}});
  }
  return Finish(a, h, 24, {e1, Node_Slot(i1), e2, Node_Slot(i2)});
}

HGLOBAL Add_Circle_by_Diam2P(const Curs_Pos_Type* c, Objects_Array_Type* a, int flag, HGLOBAL p1,
                             HGLOBAL p2) {
  if (!c || !a) return 0;
  double x[2] = {c->x[0], c->x[1]}, y[2] = {c->y[0], c->y[1]};
  HGLOBAL p[2] = {p1, p2};
  for (int k = 0; k < 2; ++k) {
    if (!p[k] || !Get_Point_Coord_by_Handle(p[k], &x[k], &y[k])) p[k] = 0;
  }
  if (x[0] == x[1] && y[0] == y[1]) return 0;
  HGLOBAL h = Circle((x[0] + x[1]) * 0.5, (y[0] + y[1]) * 0.5,
                     Distance_2Points(x[0], y[0], x[1], y[1]) * 0.5, flag);
  if (p[0] && p[1]) return Finish(a, h, 15, {p[0], p[1]});
  if (p[0] || p[1]) return Finish(a, h, 14, {p[0] ? p[0] : p[1]});
  return Finish(a, h, 0, {});
}
