// Intersections of lines, segments, circles and arcs.
#include "tessaline/geometry/intersect.h"

#include <algorithm>
#include <cmath>

#include "geometry/angles.h"
#include "tessaline/geometry/vector.h"

namespace {

void Put(double x, double y, double* ox, double* oy) {
  *ox = x;
  *oy = y;
}

// Collinear segments AB and CD (or a point segment on the other's line):
// compared along the axis in which they extend most.
int Cross_Collinear(double x1, double y1, double x2, double y2, double x3, double y3, double x4,
                    double y4, double* x, double* y) {
  double ext_x = std::max(std::fabs(x2 - x1), std::fabs(x4 - x3));
  double ext_y = std::max(std::fabs(y2 - y1), std::fabs(y4 - y3));
  const double px[4] = {x1, x2, x3, x4};
  const double py[4] = {y1, y2, y3, y4};
  const double* key = ext_x >= ext_y ? px : py;
  double lo = std::max(std::min(key[0], key[1]), std::min(key[2], key[3]));
  double hi = std::min(std::max(key[0], key[1]), std::max(key[2], key[3]));
  if (lo > hi) return 0;
  if (lo < hi) return -1;
  // They share one point only: an end point of each; report it exactly.
  for (int i = 0; i < 4; ++i) {
    if (key[i] == lo) {
      Put(px[i], py[i], x, y);
      return 1;
    }
  }
  return 0;
}

// Keeps the crossings (xs[i], ys[i]) whose direction from C lies on the arc
// (normalised angles a1, a2), or that are flagged as arc end points; writes
// the kept ones in order.
int Keep_On_Arc(int count, const double* xs, const double* ys, const bool* is_end, double cx,
                double cy, double a1, double a2, double* xa, double* ya, double* xb, double* yb) {
  int kept = 0;
  for (int i = 0; i < count; ++i) {
    bool on = is_end[i] || Arc_Passes(a1, a2, Normalize_Angle(std::atan2(ys[i] - cy, xs[i] - cx)));
    if (!on) continue;
    if (kept == 0) {
      Put(xs[i], ys[i], xa, ya);
    } else {
      Put(xs[i], ys[i], xb, yb);
    }
    ++kept;
  }
  return kept;
}

}  // namespace

int Cross_2Line(double x1, double y1, double x2, double y2, double x3, double y3, double x4,
                double y4, double* x, double* y) {
  double d1x = x1 - x2;
  double d1y = y1 - y2;
  double d2x = x3 - x4;
  double d2y = y3 - y4;
  if (d2y * d1x - d2x * d1y == 0) return 0;
  // Each line as d_y * x - d_x * y = c, solved by Cramer's rule.
  double c1 = d1y * x1 - d1x * y1;
  double c2 = d2y * x3 - d2x * y3;
  double den = d2x * d1y - d2y * d1x;
  *x = (c1 * d2x - c2 * d1x) / den;
  *y = (c1 * d2y - d1y * c2) / den;
  return 1;
}

int Cross_2Segment(double x1, double y1, double x2, double y2, double x3, double y3, double x4,
                   double y4, double* x, double* y) {
  if (x1 == x2 && y1 == y2 && x3 == x4 && y3 == y4) {
    if (x1 != x3 || y1 != y3) return 0;
    Put(x1, y1, x, y);
    return 1;
  }
  // Sides of C and D against AB, and of A and B against CD.
  double o1 = Vect_Mul(x2 - x1, y2 - y1, x3 - x1, y3 - y1);
  double o2 = Vect_Mul(x2 - x1, y2 - y1, x4 - x1, y4 - y1);
  double o3 = Vect_Mul(x4 - x3, y4 - y3, x1 - x3, y1 - y3);
  double o4 = Vect_Mul(x4 - x3, y4 - y3, x2 - x3, y2 - y3);
  if ((o1 > 0 && o2 > 0) || (o1 < 0 && o2 < 0)) return 0;
  if ((o3 > 0 && o4 > 0) || (o3 < 0 && o4 < 0)) return 0;
  if ((o1 == 0 && o2 == 0) || (o3 == 0 && o4 == 0)) {
    return Cross_Collinear(x1, y1, x2, y2, x3, y3, x4, y4, x, y);
  }
  // An end point on the other segment is the crossing itself.
  if (o3 == 0) {
    Put(x1, y1, x, y);
  } else if (o4 == 0) {
    Put(x2, y2, x, y);
  } else if (o1 == 0) {
    Put(x3, y3, x, y);
  } else if (o2 == 0) {
    Put(x4, y4, x, y);
  } else {
    double t = o3 / (o3 - o4);  // A and B lie on opposite sides of CD
    Put(x1 + t * (x2 - x1), y1 + t * (y2 - y1), x, y);
  }
  return 1;
}

int Cross_Horiz_Line_Segment(double y, double x1, double y1, double x2, double y2, double* xc,
                             double* yc) {
  if (y < std::min(y1, y2) || y > std::max(y1, y2)) return 0;
  *yc = y;
  if (y2 - y1 == 0) {
    *xc = x1;
    return -1;
  }
  // At an end's height the crossing is that end exactly (the interpolation
  // could round away from x2).
  if (y == y1) {
    *xc = x1;
  } else if (y == y2) {
    *xc = x2;
  } else {
    *xc = x1 + (y - y1) * (x2 - x1) / (y2 - y1);
  }
  return 1;
}

int Cross_Vert_Line_Segment(double x, double x1, double y1, double x2, double y2, double* xc,
                            double* yc) {
  // The horizontal crossing with the roles of x and y exchanged.
  return Cross_Horiz_Line_Segment(x, y1, x1, y2, x2, yc, xc);
}

int Cross_Horiz_Line_Circle(double y, double cx, double cy, double r, double* x1, double* y1,
                            double* x2, double* y2) {
  double dy = y - cy;
  double q = r * r - dy * dy;
  if (y < cy - r || y > cy + r || q < 0) return 0;
  double d = std::sqrt(q);
  Put(cx + d, y, x1, y1);
  Put(cx - d, y, x2, y2);
  return d <= 0 ? 1 : 2;
}

int Cross_Vert_Line_Circle(double x, double cx, double cy, double r, double* x1, double* y1,
                           double* x2, double* y2) {
  return Cross_Horiz_Line_Circle(x, cy, cx, r, y1, x1, y2, x2);
}

int Cross_Horiz_Line_Arc(double y, double x1, double y1, double x2, double y2, double cx, double cy,
                         double r, double a1, double a2, double* xa, double* ya, double* xb,
                         double* yb) {
  double n1 = Normalize_Angle(a1);
  double n2 = Normalize_Angle(a2);
  double top = Arc_Passes(n1, n2, kPi / 2) ? cy + r : std::max(y1, y2);
  double bottom = Arc_Passes(n1, n2, 4.71238898038469) ? cy - r : std::min(y1, y2);
  double dy = y - cy;
  double q = r * r - dy * dy;
  if (y < bottom || y > top || q < 0) return 0;
  double d = std::sqrt(q);
  double xs[2] = {cx + d, cx - d};
  const double ys[2] = {y, y};
  bool is_end[2] = {false, false};
  // A crossing at an end's height is that end exactly: the vertex rule of
  // the point-in-contour test compares it with ==.
  if (y == y1) {
    int i = std::fabs(xs[0] - x1) < std::fabs(xs[1] - x1) ? 0 : 1;
    xs[i] = x1;
    is_end[i] = true;
  }
  if (y == y2) {
    int i = std::fabs(xs[0] - x2) < std::fabs(xs[1] - x2) ? 0 : 1;
    xs[i] = x2;
    is_end[i] = true;
  }
  return Keep_On_Arc(2, xs, ys, is_end, cx, cy, n1, n2, xa, ya, xb, yb);
}

int Cross_Line_Circle(double x1, double y1, double x2, double y2, double cx, double cy, double r,
                      double* xa, double* ya, double* xb, double* yb) {
  double ux = x2 - x1;
  double uy = y2 - y1;
  if (!Make_Unit_Vector(&ux, &uy)) return 0;
  // Foot F of the centre on the line, its distance h from the centre and the
  // half chord w.
  double along = Scal_Mul(cx - x1, cy - y1, ux, uy);
  double h = Vect_Mul(ux, uy, cx - x1, cy - y1);
  double q = r * r - h * h;
  if (q < 0) return 0;
  double fx = x1 + along * ux;
  double fy = y1 + along * uy;
  double w = std::sqrt(q);
  Put(fx - w * ux, fy - w * uy, xa, ya);
  Put(fx + w * ux, fy + w * uy, xb, yb);
  return w <= 0 ? 1 : 2;
}

int Cross_Line_Arc(double x1, double y1, double x2, double y2, double cx, double cy, double r,
                   double a1, double a2, double* xa, double* ya, double* xb, double* yb) {
  double xs[2], ys[2];
  int n = Cross_Line_Circle(x1, y1, x2, y2, cx, cy, r, &xs[0], &ys[0], &xs[1], &ys[1]);
  const bool no_end[2] = {false, false};
  int kept = Keep_On_Arc(n, xs, ys, no_end, cx, cy, Normalize_Angle(a1), Normalize_Angle(a2), xa,
                         ya, xb, yb);
  if (n == 1 && kept == 1) Put(xs[0], ys[0], xb, yb);  // a touching point fills both
  return kept;
}

int Cross_Vert_Line_Arc(double x, double cx, double cy, double r, double a1, double a2, double* xa,
                        double* ya, double* xb, double* yb) {
  return Cross_Line_Arc(x, x, x, x + 50.0, cx, cy, r, a1, a2, xa, ya, xb, yb);
}
