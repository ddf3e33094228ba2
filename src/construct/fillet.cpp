// Fillets and chamfers: find the corner, choose the kept sides from the
// picks, plan both trims, and only then change the elements, so that a
// refused corner leaves everything as it was.
#include "tessaline/construct/fillet.h"

#include <algorithm>
#include <cmath>

#include "construct/build.h"
#include "construct/curve.h"
#include "tessaline/model/create.h"

using namespace construct;

namespace {

struct Point {
  double x, y;
};

// The crossing of the two carriers nearest to the midpoint of the picks.
bool Find_Corner(const Curve& a, const Curve& b, const Curs_Pos_Type* c, Point* corner) {
  double x[2], y[2];
  int n = Cross_Carriers(a, b, x, y);
  if (n <= 0) return false;
  double mx = (c->x[0] + c->x[1]) * 0.5, my = (c->y[0] + c->y[1]) * 0.5;
  int k = (n == 2 && std::hypot(x[1] - mx, y[1] - my) < std::hypot(x[0] - mx, y[0] - my)) ? 1 : 0;
  *corner = {x[k], y[k]};
  return std::isfinite(x[k]) && std::isfinite(y[k]);
}

// Which way along the curve from `from` the point p lies: +1, -1, or 0.
int Side(const Curve& cv, Point from, Point p) {
  double s = Along(cv, from.x, from.y, p.x, p.y);
  return s > 0 ? 1 : s < 0 ? -1 : 0;
}

// Trimming an element so that it ends at t, keeping its part on side
// `sigma` of t: which end is replaced (0 first, 1 second) and t's angle on
// an arc.
struct Trim {
  int end = 0;
  Point t{0, 0};
  double angle = 0;
};

// False when the kept part would vanish: t at or beyond the kept end (for an
// arc, t in the gap nearer the kept end than the replaced one).
bool Plan_Trim(const Curve& cv, Point t, int sigma, Trim* out) {
  Trim r;
  r.t = t;
  if (cv.line()) {
    double s1 = sigma * ((cv.x1 - t.x) * cv.dx + (cv.y1 - t.y) * cv.dy);
    double s2 = sigma * ((cv.x2 - t.x) * cv.dx + (cv.y2 - t.y) * cv.dy);
    if (!(std::max(s1, s2) > 0)) return false;
    r.end = s1 < s2 ? 0 : 1;  // the end farther on the kept side stays
  } else {
    r.angle = Angle_At(cv, t.x, t.y);
    r.end = sigma > 0 ? 0 : 1;  // kept part counter-clockwise from t: t is the new start
    double kept = sigma > 0 ? cv.a2 : cv.a1;
    if (r.angle == kept) return false;
    if (!Arc_Passes(cv.a1, cv.a2, r.angle)) {
      double gap = 2 * kPi - Normalize_Angle(cv.a2 - cv.a1);
      double g = Normalize_Angle(r.angle - cv.a2);  // how far past the end, into the gap
      if (sigma > 0 ? !(g > gap * 0.5) : !(g < gap * 0.5)) return false;
    }
  }
  *out = r;
  return true;
}

void Apply_Trim(HGLOBAL h, const Curve& cv, const Trim& t) {
  if (cv.line()) {
    if (t.end == 0) {
      Set_Segment_Coord_by_Handle(h, t.t.x, t.t.y, cv.x2, cv.y2);
    } else {
      Set_Segment_Coord_by_Handle(h, cv.x1, cv.y1, t.t.x, t.t.y);
    }
  } else if (t.end == 0) {
    Set_Arc_Param(h, t.t.x, t.t.y, cv.x2, cv.y2, cv.xc, cv.yc, cv.r, t.angle, cv.a2);
  } else {
    Set_Arc_Param(h, cv.x1, cv.y1, t.t.x, t.t.y, cv.xc, cv.yc, cv.r, cv.a1, t.angle);
  }
}

// The two elements of a corner construction, read and checked.
struct Pair {
  Curve a, b;
};

bool Read_Pair(const Curs_Pos_Type* c, Objects_Array_Type* arr, HGLOBAL e1, HGLOBAL e2, Pair* p) {
  if (!c || !arr || e1 == e2) return false;
  if (!Read_Curve(e1, &p->a) || !Read_Curve(e2, &p->b)) return false;
  return p->a.type != EL_CIRCLE && p->b.type != EL_CIRCLE;
}

// The carriers of a curve moved off by r: a line's two parallels, a
// circle's concentric circles of radius R + r and |R - r| (none of radius 0).
int Offsets(const Curve& cv, double r, Curve out[2]) {
  int n = 0;
  if (cv.line()) {
    for (double e : {1.0, -1.0}) {
      Curve o = cv;
      o.x1 -= e * r * cv.dy, o.y1 += e * r * cv.dx;
      o.x2 -= e * r * cv.dy, o.y2 += e * r * cv.dx;
      out[n++] = o;
    }
    return n;
  }
  for (double rho : {cv.r + r, std::fabs(cv.r - r)}) {
    if (!(rho > 0)) continue;
    Curve o = cv;
    o.type = EL_CIRCLE;
    o.r = rho;
    out[n++] = o;
  }
  return n;
}

// Where the circle (o, r) touches the curve's carrier.
Point Touching_Point(const Curve& cv, Point o, double r) {
  Point t;
  if (cv.line()) {
    Foot_On_Carrier(cv, o.x, o.y, &t.x, &t.y);
    return t;
  }
  double ux = o.x - cv.xc, uy = o.y - cv.yc, d = std::hypot(ux, uy);
  Point p{cv.xc + cv.r * ux / d, cv.yc + cv.r * uy / d};
  Point q{cv.xc - cv.r * ux / d, cv.yc - cv.r * uy / d};
  double ep = std::fabs(std::hypot(p.x - o.x, p.y - o.y) - r);
  double eq = std::fabs(std::hypot(q.x - o.x, q.y - o.y) - r);
  return ep <= eq ? p : q;
}

// A fillet circle and how it joins the two kept parts.
struct Fillet {
  Point o, t1, t2;
  int sigma1 = 0, sigma2 = 0;
  bool ccw = true;  // the arc runs counter-clockwise from t1 to t2
  double sweep = 0;
};

// Checks one candidate centre: kept sides and a join without a kink at both
// touching points. The corner is null when the carriers do not cross.
bool Make_Fillet(const Pair& p, const Point* corner, Point p0, Point p1, Point o, double r,
                 Fillet* f) {
  if (!std::isfinite(o.x) || !std::isfinite(o.y)) return false;
  f->o = o;
  f->t1 = Touching_Point(p.a, o, r);
  f->t2 = Touching_Point(p.b, o, r);
  if (corner) {
    f->sigma1 = Side(p.a, *corner, p0);
    f->sigma2 = Side(p.b, *corner, p1);
    if (Side(p.a, *corner, f->t1) != f->sigma1 || Side(p.b, *corner, f->t2) != f->sigma2)
      return false;
  } else {
    f->sigma1 = Side(p.a, f->t1, p0);
    f->sigma2 = Side(p.b, f->t2, p1);
  }
  if (!f->sigma1 || !f->sigma2) return false;
  // Leaving t1 the arc runs against the kept part's direction k1 there.
  double kx, ky;
  Tangent_At(p.a, f->t1.x, f->t1.y, &kx, &ky);
  double turn = (f->t1.x - o.x) * (-f->sigma1 * ky) - (f->t1.y - o.y) * (-f->sigma1 * kx);
  if (turn == 0) return false;
  f->ccw = turn > 0;
  // Arriving at t2 it must run on into the kept part of e2.
  double s = f->ccw ? 1.0 : -1.0;
  double ax = -s * -(f->t2.y - o.y), ay = -s * (f->t2.x - o.x);  // from t2 back into the arc
  Tangent_At(p.b, f->t2.x, f->t2.y, &kx, &ky);
  if (!(ax * f->sigma2 * kx + ay * f->sigma2 * ky < 0)) return false;
  double b1 = std::atan2(f->t1.y - o.y, f->t1.x - o.x);
  double b2 = std::atan2(f->t2.y - o.y, f->t2.x - o.x);
  f->sweep = Normalize_Angle(f->ccw ? b2 - b1 : b1 - b2);
  return f->sweep > 0;
}

}  // namespace

HGLOBAL Create_Fillet(const Curs_Pos_Type* c, Objects_Array_Type* a, HGLOBAL e1, HGLOBAL e2,
                      double r) {
  Pair p;
  if (!(r > 0) || !std::isfinite(r) || !Read_Pair(c, a, e1, e2, &p)) return 0;
  Point corner;
  bool crossing = Find_Corner(p.a, p.b, c, &corner);
  if (!crossing && p.a.line() && p.b.line()) return 0;  // parallel lines
  const Point p0{c->x[0], c->y[0]}, p1{c->x[1], c->y[1]};

  Curve oa[2], ob[2];
  int na = Offsets(p.a, r, oa), nb = Offsets(p.b, r, ob);
  Fillet best;
  bool found = false;
  for (int i = 0; i < na; ++i) {
    for (int j = 0; j < nb; ++j) {
      double x[2], y[2];
      int n = Cross_Carriers(oa[i], ob[j], x, y);
      for (int k = 0; k < n; ++k) {
        Fillet f;
        if (Make_Fillet(p, crossing ? &corner : nullptr, p0, p1, {x[k], y[k]}, r, &f) &&
            (!found || f.sweep < best.sweep)) {
          best = f;
          found = true;
        }
      }
    }
  }
  Trim t1, t2;
  if (!found || !Plan_Trim(p.a, best.t1, best.sigma1, &t1) ||
      !Plan_Trim(p.b, best.t2, best.sigma2, &t2))
    return 0;

  const Point& s = best.ccw ? best.t1 : best.t2;
  const Point& e = best.ccw ? best.t2 : best.t1;
  double a1 = Normalize_Angle(std::atan2(s.y - best.o.y, s.x - best.o.x));
  double a2 = Normalize_Angle(std::atan2(e.y - best.o.y, e.x - best.o.x));
  HGLOBAL arc = Create_Arc(best.o.x, best.o.y, r, a1, a2);
  Set_Arc_Ends(arc, s.x, s.y, e.x, e.y);
  arc = Finish(a, arc, 24, {e1, Node_Slot(t1.end), e2, Node_Slot(t2.end)});
  if (!arc) return 0;
  Apply_Trim(e1, p.a, t1);
  Apply_Trim(e2, p.b, t2);
  return arc;
}

HGLOBAL Create_Chamfer(const Curs_Pos_Type* c, Objects_Array_Type* a, HGLOBAL e1, HGLOBAL e2,
                       double d1, double d2) {
  Pair p;
  if (!(d1 > 0) || !(d2 > 0) || !std::isfinite(d1) || !std::isfinite(d2) ||
      !Read_Pair(c, a, e1, e2, &p))
    return 0;
  Point corner;
  if (!Find_Corner(p.a, p.b, c, &corner)) return 0;
  const Point p0{c->x[0], c->y[0]}, p1{c->x[1], c->y[1]};
  int s1 = Side(p.a, corner, p0), s2 = Side(p.b, corner, p1);
  if (!s1 || !s2) return 0;
  // The point at distance d from the corner along the kept side.
  auto at = [&](const Curve& cv, int sigma, double d) {
    if (cv.line()) return Point{corner.x + sigma * d * cv.dx, corner.y + sigma * d * cv.dy};
    double ang = Angle_At(cv, corner.x, corner.y) + sigma * d / cv.r;
    return Point{cv.xc + cv.r * std::cos(ang), cv.yc + cv.r * std::sin(ang)};
  };
  // An arc length beyond the half circle would reach round past the corner.
  if ((!p.a.line() && d1 / p.a.r >= kPi) || (!p.b.line() && d2 / p.b.r >= kPi)) return 0;
  Point q1 = at(p.a, s1, d1), q2 = at(p.b, s2, d2);
  Trim t1, t2;
  if ((q1.x == q2.x && q1.y == q2.y) || !Plan_Trim(p.a, q1, s1, &t1) ||
      !Plan_Trim(p.b, q2, s2, &t2))
    return 0;
  HGLOBAL seg = Finish(a, Create_Line(q1.x, q1.y, q2.x, q2.y), 22,
                       {e1, Node_Slot(t1.end), e2, Node_Slot(t2.end)});
  if (!seg) return 0;
  Apply_Trim(e1, p.a, t1);
  Apply_Trim(e2, p.b, t2);
  return seg;
}
