// Plastic neutral axes and plastic moduli by Green's theorem.
//
// In axes (u along the axis direction, v along its normal, both from the
// centroid) and for a line v = c, the forms -(v - c) du and
// -(v - c)^2 / 2 du vanish on the line itself. So the area and the first
// moment of the part of the section above the line are the integrals of
// those forms along the contour parts above it, and likewise below; the
// line's own pieces add nothing and nothing has to be clipped:
//   F(c) = A_above - A_below = integral of -|v - c| du,
//   Z(c) = integral of |v - c| dA = integral of -(v - c)|v - c| / 2 du,
// along every contour in its positive sense. F falls from A to -A as c runs
// across the section; its root is the plastic neutral axis.
#include <algorithm>
#include <cmath>
#include <vector>

#include "analysis/pieces.h"
#include "geometry/angles.h"
#include "tessaline/analysis/exact.h"

namespace {

// A piece in the axis frame: a line (u1, v1) -> (u2, v2), or an arc about
// (uc, vc) from angle t1 through the signed sweep.
struct Frame_Piece {
  bool arc;
  double u1, v1, u2, v2;
  double uc, vc, r, t1, sweep;
  double sense;  // +1 or -1: makes the loop's travel positive for the region
};

constexpr int kCubic_Chords = 64;

struct F_Z {
  double f = 0, z = 0;
};

// The integrals of |w| and w|w| over s in [0, 1] for w linear from a to b.
void Line_Integrals(double a, double b, double* abs_w, double* w_abs_w) {
  if (a * b >= 0) {
    double sign = a + b >= 0 ? 1 : -1;
    *abs_w = std::fabs(a + b) / 2;
    *w_abs_w = sign * (a * a + a * b + b * b) / 3;
  } else {
    double d = b - a;
    *abs_w = (a * a + b * b) / (2 * std::fabs(d));
    *w_abs_w = (b * b * std::fabs(b) - a * a * std::fabs(a)) / (3 * d);
  }
}

// Adds the arc's share of F and Z on [lo, hi] (lo < hi) where w = e + r sin
// has one sign `sigma`, integrated with increasing angle.
void Arc_Part(double e, double r, double lo, double hi, double sigma, F_Z* out) {
  const double d = hi - lo, m = (lo + hi) / 2;
  const double s1 = 2 * std::sin(m) * std::sin(d / 2);          // integral of sin
  const double s2 = d / 2 - std::cos(2 * m) * std::sin(d) / 2;  // of sin^2
  // of sin^3 = [-3/4 cos + cos 3t / 12]
  const double s3 = 0.75 * s1 - std::sin(3 * m) * std::sin(1.5 * d) / 6;
  out->f += sigma * r * (e * s1 + r * s2);
  out->z += sigma * r / 2 * (e * e * s1 + 2 * e * r * s2 + r * r * s3);
}

void Arc_F_Z(const Frame_Piece& p, double c, F_Z* out) {
  const double e = p.vc - c;
  double lo = p.t1, hi = p.t1 + p.sweep;
  double dir = p.sense;
  if (hi < lo) std::swap(lo, hi), dir = -dir;
  // Angles in [lo, hi] where w = e + r sin t changes sign.
  std::vector<double> cuts{lo};
  double q = -e / p.r;
  if (q > -1 && q < 1) {
    double base = std::asin(q);
    for (double root : {base, kPi - base}) {
      double k0 = std::ceil((lo - root) / (2 * kPi));
      for (double t = root + k0 * 2 * kPi; t < hi; t += 2 * kPi) {
        if (t > lo) cuts.push_back(t);
      }
    }
  }
  std::sort(cuts.begin(), cuts.end());
  cuts.push_back(hi);
  F_Z part;
  for (size_t i = 0; i + 1 < cuts.size(); ++i) {
    double a = cuts[i], b = cuts[i + 1];
    if (!(b > a)) continue;
    double w = e + p.r * std::sin((a + b) / 2);
    Arc_Part(e, p.r, a, b, w >= 0 ? 1 : -1, &part);
  }
  out->f += dir * part.f;
  out->z += dir * part.z;
}

F_Z Evaluate(const std::vector<Frame_Piece>& pieces, double c) {
  F_Z total;
  for (const Frame_Piece& p : pieces) {
    if (p.arc) {
      F_Z part;
      Arc_F_Z(p, c, &part);
      total.f += part.f;
      total.z += part.z;
      continue;
    }
    double abs_w, w_abs_w;
    Line_Integrals(p.v1 - c, p.v2 - c, &abs_w, &w_abs_w);
    double du = p.sense * (p.u2 - p.u1);
    total.f -= du * abs_w;
    total.z -= du * w_abs_w / 2;
  }
  return total;
}

// The section's pieces in the frame of direction `angle` about the
// centroid, and the range of v they span.
std::vector<Frame_Piece> To_Frame(const std::vector<Surface_Loop>& loops,
                                  const std::vector<double>& senses, double xc, double yc,
                                  double angle, double* v_lo, double* v_hi) {
  const double ca = std::cos(angle), sa = std::sin(angle);
  auto u = [&](double x, double y) { return ca * (x - xc) + sa * (y - yc); };
  auto v = [&](double x, double y) { return -sa * (x - xc) + ca * (y - yc); };
  std::vector<Frame_Piece> out;
  *v_lo = INFINITY, *v_hi = -INFINITY;
  auto span = [&](double value) {
    *v_lo = std::min(*v_lo, value);
    *v_hi = std::max(*v_hi, value);
  };
  auto line = [&](double x1, double y1, double x2, double y2, double sense) {
    Frame_Piece f{};
    f.u1 = u(x1, y1), f.v1 = v(x1, y1), f.u2 = u(x2, y2), f.v2 = v(x2, y2);
    f.sense = sense;
    span(f.v1), span(f.v2);
    out.push_back(f);
  };
  for (size_t l = 0; l < loops.size(); ++l) {
    for (const Contour_Piece& p : loops[l].pieces) {
      if (p.kind == Contour_Piece::kLine) {
        line(p.x1, p.y1, p.x2, p.y2, senses[l]);
      } else if (p.kind == Contour_Piece::kArc) {
        Frame_Piece f{};
        f.arc = true;
        f.uc = u(p.cx, p.cy), f.vc = v(p.cx, p.cy), f.r = p.r;
        f.t1 = p.t1 - angle, f.sweep = p.sweep, f.sense = senses[l];
        span(v(p.x1, p.y1)), span(v(p.x2, p.y2));
        // The extremes of v on the arc: angles pi/2 and 3 pi/2 in the frame.
        double lo = std::min(f.t1, f.t1 + f.sweep), hi = std::max(f.t1, f.t1 + f.sweep);
        for (double t : {kPi / 2, 3 * kPi / 2}) {
          double k = std::ceil((lo - t) / (2 * kPi));
          if (t + k * 2 * kPi <= hi) span(f.vc + f.r * std::sin(t));
        }
        out.push_back(f);
      } else {
        double px = p.x1, py = p.y1;
        for (int k = 1; k <= kCubic_Chords; ++k) {
          double s = static_cast<double>(k) / kCubic_Chords;
          double qx =
              k == kCubic_Chords ? p.x2 : p.ax[0] + s * (p.ax[1] + s * (p.ax[2] + s * p.ax[3]));
          double qy =
              k == kCubic_Chords ? p.y2 : p.ay[0] + s * (p.ay[1] + s * (p.ay[2] + s * p.ay[3]));
          line(px, py, qx, qy, senses[l]);
          px = qx, py = qy;
        }
      }
    }
  }
  return out;
}

// The root of F in [lo, hi] (F(lo) >= 0 >= F(hi)): regula falsi with the
// Illinois halving, every fourth step a bisection, to 1e-14 of the depth.
double Neutral_Axis(const std::vector<Frame_Piece>& pieces, double lo, double hi) {
  double flo = Evaluate(pieces, lo).f, fhi = Evaluate(pieces, hi).f;
  const double tol = 1e-14 * (hi - lo);
  int side = 0;
  for (int i = 0; i < 200 && hi - lo > tol; ++i) {
    double c = (i % 4 == 3 || !(flo > fhi)) ? (lo + hi) / 2 : hi - fhi * (hi - lo) / (fhi - flo);
    if (!(c > lo && c < hi)) c = (lo + hi) / 2;
    double fc = Evaluate(pieces, c).f;
    if (fc == 0) return c;
    if (fc > 0) {
      lo = c, flo = fc;
      if (side == 1) fhi /= 2;
      side = 1;
    } else {
      hi = c, fhi = fc;
      if (side == -1) flo /= 2;
      side = -1;
    }
  }
  return (lo + hi) / 2;
}

Plastic_Axis Axis(const std::vector<Surface_Loop>& loops, const std::vector<double>& senses,
                  double xc, double yc, double angle, double moment) {
  double v_lo, v_hi;
  std::vector<Frame_Piece> pieces = To_Frame(loops, senses, xc, yc, angle, &v_lo, &v_hi);
  Plastic_Axis a{};
  a.angle = angle;
  a.offset = Neutral_Axis(pieces, v_lo, v_hi);
  a.x = xc - std::sin(angle) * a.offset;
  a.y = yc + std::cos(angle) * a.offset;
  a.plastic_modulus = Evaluate(pieces, a.offset).z;
  a.moment = moment;
  a.fibre = std::max(std::fabs(v_lo), std::fabs(v_hi));
  a.elastic_modulus = moment / a.fibre;
  a.shape_factor = a.plastic_modulus / a.elastic_modulus;
  return a;
}

}  // namespace

int Calc_Plastic_Surface_Param(Surface_Type* surface, Plastic_Geometry* p) {
  if (!surface || !p) return 0;
  double left, top, right, bottom;
  if (!Get_Surface_Extern_Rect(surface, &left, &top, &right, &bottom)) return 0;
  if (!(right > left) || !(top > bottom)) return 0;
  std::vector<Surface_Loop> loops;
  if (!Read_Surface_Loops(surface, &loops)) return 0;
  const double x0 = (left + right) / 2, y0 = (top + bottom) / 2;
  std::vector<double> senses;
  Raw_Sums s;
  for (const Surface_Loop& loop : loops) {
    Raw_Sums one = Integrate_Loop(loop.pieces, x0, y0);
    double sense = (one.a < 0 ? -1 : 1) * (loop.hole ? -1 : 1);
    senses.push_back(sense);
    s.Add(one, sense);
  }
  if (!(s.a > 0) || !std::isfinite(s.sxx + s.syy + s.sxy + s.sx + s.sy)) return 0;
  // Central moments: Ix about the horizontal axis, Iy about the vertical.
  const double dx = s.sx / s.a, dy = s.sy / s.a;
  const double ix = s.syy - s.a * dy * dy, iy = s.sxx - s.a * dx * dx;
  const double ixy = s.sxy - s.a * dx * dy;
  const double xc = x0 + dx, yc = y0 + dy;
  const double mean = (ix + iy) / 2;
  const double radius = std::hypot((ix - iy) / 2, ixy);
  // Where the moments agree but for rounding, the direction is noise.
  double major = radius > 1e-12 * std::fabs(mean) ? 0.5 * std::atan2(-2 * ixy, ix - iy) : 0;
  if (major <= -kPi / 2) major += kPi;
  Plastic_Geometry out{};
  out.area = s.a;
  out.centroid_x = xc;
  out.centroid_y = yc;
  out.principal_angle = major;
  out.x_axis = Axis(loops, senses, xc, yc, 0, ix);
  out.y_axis = Axis(loops, senses, xc, yc, kPi / 2, iy);
  out.major = Axis(loops, senses, xc, yc, major, mean + radius);
  out.minor = Axis(loops, senses, xc, yc, major + kPi / 2, mean - radius);
  *p = out;
  return 1;
}
