// Exact area sums of a surface by Green's theorem along its contours.
//
// For a function f homogeneous of degree k in (x, y), the integral of f over
// the triangle fan from the reference point to a piece is
//   1/(k + 2) * integral along the piece of f (x dy - y dx),
// so every piece contributes its fan and a closed loop gives the region it
// encloses, with the sign of its travel sense. A line's fan is a triangle
// (closed forms below); an arc's is its circular sector plus the two
// triangles between the centre and its ends; a cubic's integrands are
// polynomials of degree at most 11, which six Gauss-Legendre points
// integrate exactly.
#include "tessaline/analysis/exact.h"

#include <cmath>

#include "analysis/pieces.h"

namespace {

// The triangle (reference, P, Q).
Raw_Sums Line_Fan(double x1, double y1, double x2, double y2) {
  double c = x1 * y2 - x2 * y1;
  Raw_Sums s;
  s.a = c / 2;
  s.sx = (x1 + x2) * c / 6;
  s.sy = (y1 + y2) * c / 6;
  s.sxx = (x1 * x1 + x1 * x2 + x2 * x2) * c / 12;
  s.syy = (y1 * y1 + y1 * y2 + y2 * y2) * c / 12;
  s.sxy = (x1 * y2 + 2 * x1 * y1 + 2 * x2 * y2 + x2 * y1) * c / 24;
  return s;
}

// The circular sector about (cx, cy) (relative to the reference) of radius
// r from angle t1 through the signed sweep. Differences of sines and
// cosines are written as products so a short arc keeps its digits.
Raw_Sums Sector(double cx, double cy, double r, double t1, double sweep) {
  const double m = t1 + sweep / 2, h = std::sin(sweep / 2);
  const double d_sin = 2 * std::cos(m) * h;                 // sin t2 - sin t1
  const double d_cos = 2 * std::sin(m) * h;                 // cos t1 - cos t2
  const double d_sin2 = std::cos(2 * m) * std::sin(sweep);  // (sin 2t2 - sin 2t1) / 2
  const double d_cos2 = std::sin(2 * m) * std::sin(sweep);  // (cos 2t1 - cos 2t2) / 2
  const double r2 = r * r, r3 = r2 * r, r4 = r2 * r2;
  // About the centre ...
  const double a = r2 * sweep / 2, su = r3 / 3 * d_sin, sv = r3 / 3 * d_cos;
  const double suu = r4 / 8 * (sweep + d_sin2), svv = r4 / 8 * (sweep - d_sin2);
  const double suv = r4 / 8 * d_cos2;
  // ... moved to the reference.
  Raw_Sums s;
  s.a = a;
  s.sx = su + cx * a;
  s.sy = sv + cy * a;
  s.sxx = suu + 2 * cx * su + cx * cx * a;
  s.syy = svv + 2 * cy * sv + cy * cy * a;
  s.sxy = suv + cx * sv + cy * su + cx * cy * a;
  return s;
}

// Six-point Gauss-Legendre rule on [0, 1].
constexpr double kGauss_S[6] = {0.033765242898423987, 0.16939530676686776, 0.38069040695840156,
                                0.61930959304159845,  0.83060469323313224, 0.96623475710157603};
constexpr double kGauss_W[6] = {0.085662246189585178, 0.18038078652406930, 0.23395696728634552,
                                0.23395696728634552,  0.18038078652406930, 0.085662246189585178};

double Poly(const double c[4], double s) {
  return c[0] + s * (c[1] + s * (c[2] + s * c[3]));
}
double Slope(const double c[4], double s) {
  return c[1] + s * (2 * c[2] + s * 3 * c[3]);
}

Raw_Sums Cubic_Fan(const Contour_Piece& p, double x0, double y0) {
  double ax[4] = {p.ax[0] - x0, p.ax[1], p.ax[2], p.ax[3]};
  double ay[4] = {p.ay[0] - y0, p.ay[1], p.ay[2], p.ay[3]};
  Raw_Sums s;
  for (int i = 0; i < 6; ++i) {
    double t = kGauss_S[i];
    double x = Poly(ax, t), y = Poly(ay, t);
    double f = kGauss_W[i] * (x * Slope(ay, t) - y * Slope(ax, t));
    s.a += f / 2;
    s.sx += x * f / 3;
    s.sy += y * f / 3;
    s.sxx += x * x * f / 4;
    s.syy += y * y * f / 4;
    s.sxy += x * y * f / 4;
  }
  return s;
}

bool Usable(const Raw_Sums& s) {
  for (double v : {s.a, s.sx, s.sy, s.sxx, s.syy, s.sxy}) {
    if (!std::isfinite(v)) return false;
  }
  return s.a > 0;
}

}  // namespace

Raw_Sums Integrate_Loop(const std::vector<Contour_Piece>& pieces, double x0, double y0) {
  Raw_Sums s;
  for (const Contour_Piece& p : pieces) {
    double x1 = p.x1 - x0, y1 = p.y1 - y0, x2 = p.x2 - x0, y2 = p.y2 - y0;
    if (p.kind == Contour_Piece::kLine) {
      s.Add(Line_Fan(x1, y1, x2, y2), 1);
    } else if (p.kind == Contour_Piece::kArc) {
      double cx = p.cx - x0, cy = p.cy - y0;
      s.Add(Sector(cx, cy, p.r, p.t1, p.sweep), 1);
      s.Add(Line_Fan(x1, y1, cx, cy), 1);
      s.Add(Line_Fan(cx, cy, x2, y2), 1);
    } else {
      s.Add(Cubic_Fan(p, x0, y0), 1);
    }
  }
  return s;
}

Raw_Sums Integrate_Surface(const std::vector<Surface_Loop>& loops, double x0, double y0) {
  Raw_Sums total;
  for (const Surface_Loop& loop : loops) {
    Raw_Sums s = Integrate_Loop(loop.pieces, x0, y0);
    double sense = s.a < 0 ? -1 : 1;
    total.Add(s, loop.hole ? -sense : sense);
  }
  return total;
}

int Calc_Exact_Surface_Param(Surface_Type* surface, surface_geometry* g) {
  if (!surface || !g) return 0;
  double left, top, right, bottom;
  if (!Get_Surface_Extern_Rect(surface, &left, &top, &right, &bottom)) return 0;
  if (!(right > left) || !(top > bottom)) return 0;  // also for a NaN extent
  std::vector<Surface_Loop> loops;
  if (!Read_Surface_Loops(surface, &loops)) return 0;
  const double x0 = (left + right) / 2, y0 = (top + bottom) / 2;
  Raw_Sums s = Integrate_Surface(loops, x0, y0);
  if (!Usable(s)) return 0;
  Clear_Surface_Geometry(g);
  g->area = s.a;
  g->first_moment_x = s.sx + x0 * s.a;
  g->first_moment_y = s.sy + y0 * s.a;
  g->second_moment_x = s.sxx + 2 * x0 * s.sx + x0 * x0 * s.a;
  g->second_moment_y = s.syy + 2 * y0 * s.sy + y0 * y0 * s.a;
  g->product_moment = s.sxy + x0 * s.sy + y0 * s.sx + x0 * y0 * s.a;
  Finish_Surface_Geometry(surface, g);
  return 1;
}
