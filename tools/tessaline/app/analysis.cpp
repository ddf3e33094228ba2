#include "analysis.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tessaline::app {

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Centroid, central and principal moments from the exact record; the
// principal direction is the plastic record's, which is the true one
// whatever the sign of the product moment.
void Complete(const surface_geometry& g, const Plastic_Geometry& p, Section_Result* r) {
  r->area = g.area;
  r->cx = g.centroid_x;
  r->cy = g.centroid_y;
  r->ixx = g.central_moment_x;
  r->iyy = g.central_moment_y;
  r->ixy = g.central_product_moment;
  double mean = (r->ixx + r->iyy) / 2;
  double half = std::hypot((r->ixx - r->iyy) / 2, r->ixy);
  r->i1 = mean + half;
  r->i2 = mean - half;
  r->angle = p.principal_angle;
  if (r->angle <= -M_PI / 2 + 1e-15) r->angle += M_PI;  // the axis, not its direction
  r->ip = r->ixx + r->iyy;
}

// Rounding leaves 1e-14 where symmetry puts a zero; report the zero.
double Clean(double v, double scale) {
  return std::fabs(v) <= 1e-11 * scale ? 0.0 : v;
}

void Moduli(Section_Result* r) {
  r->wx_top = r->ixx / (r->ymax - r->cy);
  r->wx_bottom = r->ixx / (r->cy - r->ymin);
  r->wy_left = r->iyy / (r->cx - r->xmin);
  r->wy_right = r->iyy / (r->xmax - r->cx);
}

nlohmann::ordered_json Number(double v) {
  if (!std::isfinite(v)) return nullptr;
  return v;
}

}  // namespace

bool Analyze_Section(Section& s, const Analyze_Options& options, Section_Result* r,
                     std::string* error) {
  *r = Section_Result{};
  r->name = s.name;
  double left, top, right, bottom;
  if (!Get_Surface_Extern_Rect(&s.surface, &left, &top, &right, &bottom)) {
    *error = "the section has no outline to integrate";
    return false;
  }
  r->xmin = left;
  r->xmax = right;
  r->ymin = bottom;
  r->ymax = top;
  surface_geometry g{};
  Plastic_Geometry p{};
  if (!Calc_Exact_Surface_Param(&s.surface, &g) || !Calc_Plastic_Surface_Param(&s.surface, &p)) {
    *error = "the section cannot be integrated (an open contour, or no area)";
    return false;
  }
  Complete(g, p, r);
  r->zx = p.x_axis.plastic_modulus;
  r->zy = p.y_axis.plastic_modulus;
  double size = std::max(r->xmax - r->xmin, r->ymax - r->ymin);
  r->cx = Clean(r->cx, size);
  r->cy = Clean(r->cy, size);
  r->ixy = Clean(r->ixy, r->ip);
  r->angle = Clean(r->angle, 1.0);
  Moduli(r);
  r->j = r->j_lower = r->j_upper = r->cw = r->xs = r->ys = kNaN;
  (void)options;
  return true;
}

nlohmann::ordered_json Result_Json(const Section_Result& r) {
  nlohmann::ordered_json j;
  j["name"] = r.name;
  const std::pair<const char*, double> fields[] = {
      {"area", r.area},
      {"cx", r.cx},
      {"cy", r.cy},
      {"ixx", r.ixx},
      {"iyy", r.iyy},
      {"ixy", r.ixy},
      {"i1", r.i1},
      {"i2", r.i2},
      {"angle", r.angle},
      {"ip", r.ip},
      {"wx_top", r.wx_top},
      {"wx_bottom", r.wx_bottom},
      {"wy_left", r.wy_left},
      {"wy_right", r.wy_right},
      {"zx", r.zx},
      {"zy", r.zy},
      {"j", r.j},
      {"j_lower", r.j_lower},
      {"j_upper", r.j_upper},
      {"cw", r.cw},
      {"xs", r.xs},
      {"ys", r.ys},
  };
  for (const auto& [key, value] : fields) j[key] = Number(value);
  j["bounding_box"] = {Number(r.xmin), Number(r.ymin), Number(r.xmax), Number(r.ymax)};
  if (!r.torsion_note.empty()) j["torsion"] = r.torsion_note;
  return j;
}

}  // namespace tessaline::app
