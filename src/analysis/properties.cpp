// The properties record: clearing, principal axes and completion from the
// raw area sums.
#include <cmath>

#include "tessaline/analysis/properties.h"
#include "tessaline/geometry/vector.h"

void Clear_Surface_Geometry(surface_geometry* g) {
  if (!g) return;
  double kept = g->further_constant;
  *g = surface_geometry{};
  g->further_constant = kept;
}

double Main_Axis_Angle(double ix, double iy, double ixy) {
  if (ix == iy && ixy == 0) return 0;  // no angle to compute (also all zero)
  double diff = std::fabs(iy - ix);
  double alpha = 0.5 * std::atan2(2 * std::fabs(ixy), diff);
  double m = std::fmin(std::fabs(ix), std::fabs(iy));
  if (diff < m * 0.0001 && std::fabs(ixy) < m * 0.0001) return 0;
  return alpha;
}

double Moment2X_C_by_Angle(double ix, double iy, double ixy, double a) {
  return (ix + iy) / 2 + (ix - iy) / 2 * std::cos(2 * a) - ixy * std::sin(2 * a);
}

double Moment2Y_C_by_Angle(double ix, double iy, double ixy, double a) {
  return (ix + iy) / 2 - (ix - iy) / 2 * std::cos(2 * a) + ixy * std::sin(2 * a);
}

double MomentXY_C_by_Angle(double ix, double iy, double ixy, double a) {
  return (ix - iy) / 2 * std::sin(2 * a) + ixy * std::cos(2 * a);
}

double Polar_Moment(double i1, double i2) {
  return i1 + i2;
}

void Complete_Surface_Geometry(surface_geometry* g) {
  if (!g) return;
  double a = g->area;
  double xc = g->first_moment_x / a;
  double yc = g->first_moment_y / a;
  g->centroid_x = xc;
  g->centroid_y = yc;
  double ix = g->second_moment_y - a * yc * yc;
  double iy = g->second_moment_x - a * xc * xc;
  double ixy = g->product_moment - xc * a * yc;
  g->central_moment_x = ix;
  g->central_moment_y = iy;
  g->central_product_moment = ixy;
  double alpha = Main_Axis_Angle(ix, iy, ixy);
  g->principal_angle = alpha;
  g->principal_moment_1 = Moment2X_C_by_Angle(ix, iy, ixy, alpha);
  g->principal_moment_2 = Moment2Y_C_by_Angle(ix, iy, ixy, alpha);
  g->principal_product_moment = MomentXY_C_by_Angle(ix, iy, ixy, alpha);
  g->polar_moment = Polar_Moment(g->principal_moment_1, g->principal_moment_2);
}

void Finish_Surface_Geometry(Surface_Type* surface, surface_geometry* g) {
  if (!g) return;
  Complete_Surface_Geometry(g);
  double alpha = g->principal_angle;
  double ua = 0, va = 0, ub = 0, vb = 0;
  Get_Surface_Extern_Angled_Rect(surface, alpha, &ua, &va, &ub, &vb);
  double uc, vc;
  Rotate2D(alpha, g->centroid_x, g->centroid_y, &uc, &vc);
  double du = std::fmax(std::fabs(ua - uc), std::fabs(ub - uc));
  double dv = std::fmax(std::fabs(va - vc), std::fabs(vb - vc));
  double c = std::cos(alpha), s = std::sin(alpha);
  g->extreme_distance_1 = std::fabs(c * du - s * dv);
  // dv in both terms, as the beam-section data was made.
  g->extreme_distance_2 = std::fabs(c * dv + s * dv);
  g->section_modulus_1 = g->principal_moment_1 / std::fabs(dv);
  g->section_modulus_2 = g->principal_moment_2 / std::fabs(du);
}
