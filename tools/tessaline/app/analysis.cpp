#include "analysis.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

namespace tessaline::app {

double Element_Size(double area, int count) {
  return std::sqrt(4 * area / (std::sqrt(3.0) * count));
}

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

// RAII for a split's blocks.
struct Split_Owner {
  FE_Split split{};
  ~Split_Owner() { Free_FE_Split(&split); }
};

// The high-order torsion and warping: the order of a coarse mesh's
// elements raised until the bounds on J meet the gap.
bool High_Order_Torsion(Section& s, const Analyze_Options& o, Section_Result* r,
                        std::string* error) {
  if (o.progress) o.progress->SetPos(5);
  Torsion_Warping_Options options{o.gap, 0, 1.0};
  Torsion_Warping_Result t{};
  if (Calc_Torsion_Warping(&s.surface, &options, &t, nullptr) == TORSION_WARPING_FAILED) {
    *error = "the torsion analysis failed";
    return false;
  }
  if (o.progress) o.progress->SetPos(100);
  r->j = t.J;
  r->j_lower = t.J_lower;
  r->j_upper = t.J_upper;
  r->cw = t.Cw;
  r->xs = t.shear_centre_x;
  r->ys = t.shear_centre_y;
  char note[160];
  std::snprintf(note, sizeof note, "%s: relative gap %.2g, %d elements of order %d",
                t.status == TORSION_WARPING_GAP_REACHED ? "gap reached" : "element budget spent",
                t.relative_gap, t.elements, t.order);
  r->torsion_note = note;
  return true;
}

// The seed path: Calc_Torsion_Moment on linear triangles of the mesher or
// the grid split (about o.elements of them over the section's area), J only
// (no bounds, no warping).
bool Seed_Torsion(Section& s, const Analyze_Options& o, Section_Result* r, std::string* error) {
  Split_Owner m;
  constexpr double kE = 210000, kNu = 0.3;
  const double g = kE / (2 * (1 + kNu));
  int split_options[3] = {o.grid ? 0 : 1, o.elements, o.elements};
  const double j = Calc_Torsion_Moment(&s.surface, r->area, kE, kNu, &m.split, 1 / g, o.progress,
                                       nullptr, split_options);
  if (j == kTorsion_Empty_Split || m.split.triangle_count <= 0) {
    *error = "the section could not be split into elements";
    return false;
  }
  if (!(j > 0) || !std::isfinite(j)) {
    *error = "the torsion solve failed";
    return false;
  }
  r->j = j;
  r->torsion_note = "seed path: " + std::to_string(m.split.triangle_count) + " linear triangles";
  return true;
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
  if (!options.torsion) return true;
  if (options.seed) return Seed_Torsion(s, options, r, error);
  return High_Order_Torsion(s, options, r, error);
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
