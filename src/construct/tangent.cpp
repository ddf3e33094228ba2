// Construction geometry of tangent circles and lines, arcs and the circle
// through three points, built on the kernel's crossings and projections.
#include "tessaline/construct/tangent.h"

#include <cmath>

#include "geometry/angles.h"
#include "tessaline/geometry/intersect.h"
#include "tessaline/geometry/projection.h"
#include "tessaline/geometry/vector.h"

namespace {

double Direction(double xc, double yc, double x, double y) {
  return Normalize_Angle(std::atan2(y - yc, x - xc));
}

// Circle touching the parallel lines AB and CD (CD not on AB): radius half
// their distance, centred on the middle line where P projects onto it.
int Between_Parallels(double x1, double y1, double x2, double y2, double x3, double y3, double px,
                      double py, double* xc, double* yc, double* r) {
  double d = Distance_Line_Point(x1, y1, x2, y2, x3, y3);
  if (!(d > 0)) return 0;  // one line
  double fx, fy;
  Projection_Line_Point(x1, y1, x2, y2, x3, y3, &fx, &fy);
  double mx = (x3 + fx) * 0.5, my = (y3 + fy) * 0.5;
  Projection_Line_Point(mx, my, mx + (x2 - x1), my + (y2 - y1), px, py, xc, yc);
  *r = d * 0.5;
  return 1;
}

}  // namespace

int Tangent_Points_Circle(double cx, double cy, double r, double px, double py, double* xa,
                          double* ya, double* xb, double* yb) {
  if (!(r > 0)) return 0;
  double dx = px - cx, dy = py - cy;
  double d2 = dx * dx + dy * dy;
  double r2 = r * r;
  if (d2 < r2) return 0;
  if (d2 == r2) {
    *xa = *xb = px;
    *ya = *yb = py;
    return 1;
  }
  // The polar line of P: through F = C + (r^2 / d^2) (P - C), perpendicular
  // to C -> P. Run it from the clockwise side to the counter-clockwise one,
  // so that the crossing on the counter-clockwise side comes second.
  double k = r2 / d2;
  double fx = cx + k * dx, fy = cy + k * dy;
  double qx, qy, sx, sy;
  int n = Cross_Line_Circle(fx + dy, fy - dx, fx - dy, fy + dx, cx, cy, r, &qx, &qy, &sx, &sy);
  if (n == 2) {
    *xa = sx;
    *ya = sy;
    *xb = qx;
    *yb = qy;
    return 2;
  }
  // Only when P lies so near the circle that the polar line rounds to a
  // tangent or a miss: F is then the touching point.
  *xa = *xb = fx;
  *ya = *yb = fy;
  return 1;
}

int Tangent_Circle_Centred(double cx, double cy, double r, double px, double py, double qx,
                           double qy, double* rt) {
  if (!(r > 0)) return 0;
  double d = Distance_2Points(cx, cy, px, py);
  if (!(d > 0)) return 0;
  double ux = (px - cx) / d, uy = (py - cy) / d;
  double near = SQDistance_2Points(cx + r * ux, cy + r * uy, qx, qy);
  double far = SQDistance_2Points(cx - r * ux, cy - r * uy, qx, qy);
  double result = near <= far ? std::fabs(d - r) : d + r;
  if (!(result > 0)) return 0;
  *rt = result;
  return 1;
}

int Tangent_Circle_2Line(double x1, double y1, double x2, double y2, double x3, double y3,
                         double x4, double y4, double px, double py, double* xc, double* yc,
                         double* r) {
  if ((x1 == x2 && y1 == y2) || (x3 == x4 && y3 == y4)) return 0;
  double cx, cy;
  if (!Cross_2Line(x1, y1, x2, y2, x3, y3, x4, y4, &cx, &cy)) {
    return Between_Parallels(x1, y1, x2, y2, x3, y3, px, py, xc, yc, r);
  }
  double ux = x2 - x1, uy = y2 - y1, vx = x4 - x3, vy = y4 - y3;
  Make_Unit_Vector(&ux, &uy);
  Make_Unit_Vector(&vx, &vy);
  // P - X = alpha u + beta v; the signs of alpha and beta name P's sector.
  double wx = px - cx, wy = py - cy;
  double det = Vect_Mul(ux, uy, vx, vy);
  double alpha = Vect_Mul(wx, wy, vx, vy) / det;
  double beta = Vect_Mul(ux, uy, wx, wy) / det;
  double bx = sign(alpha) * ux + sign(beta) * vx;
  double by = sign(alpha) * uy + sign(beta) * vy;
  if (!Make_Unit_Vector(&bx, &by)) return 0;
  double t = Scal_Mul(wx, wy, bx, by);
  if (!(t > 0)) return 0;  // P on the crossing
  double ox = cx + t * bx, oy = cy + t * by;
  double radius = Distance_Line_Point(x1, y1, x2, y2, ox, oy);
  if (!(radius > 0)) return 0;
  *xc = ox;
  *yc = oy;
  *r = radius;
  return 1;
}

int Arc_2Points_Centre(double x1, double y1, double x2, double y2, double px, double py, double* xc,
                       double* yc, double* r, double* a1, double* a2) {
  double nx, ny;
  if (!Perp_Vect(x2 - x1, y2 - y1, &nx, &ny)) return 0;
  double mx = (x1 + x2) * 0.5, my = (y1 + y2) * 0.5;
  double ox, oy;
  Projection_Line_Point(mx, my, mx + nx, my + ny, px, py, &ox, &oy);
  *xc = ox;
  *yc = oy;
  *r = Distance_2Points(ox, oy, x1, y1);
  *a1 = Direction(ox, oy, x1, y1);
  *a2 = Direction(ox, oy, x2, y2);
  return 1;
}

int Arc_Centre_Start_End(double xc, double yc, double x1, double y1, double x2, double y2,
                         double* r, double* a1, double* a2) {
  if ((x1 == xc && y1 == yc) || (x2 == xc && y2 == yc)) return 0;
  *r = Distance_2Points(xc, yc, x1, y1);
  *a1 = Direction(xc, yc, x1, y1);
  *a2 = Direction(xc, yc, x2, y2);
  return 1;
}

int Circle_3Points(double x0, double y0, double x1, double y1, double x2, double y2, double* xc,
                   double* yc, double* r) {
  if (std::fabs((y2 - y1) * (x1 - x0)) == std::fabs((x2 - x1) * (y1 - y0))) return 0;
  // Perpendicular bisectors: through the chord's midpoint, a quarter turn off it.
  double ax = (x0 + x1) * 0.5, ay = (y0 + y1) * 0.5;
  double bx = (x1 + x2) * 0.5, by = (y1 + y2) * 0.5;
  double ox, oy;
  if (!Cross_2Line(ax, ay, ax - (y1 - y0), ay + (x1 - x0), bx, by, bx - (y2 - y1), by + (x2 - x1),
                   &ox, &oy))
    return 0;
  *xc = ox;
  *yc = oy;
  *r = Distance_2Points(ox, oy, x0, y0);
  return 1;
}
