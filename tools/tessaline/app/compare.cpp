#include "compare.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tessaline::app {

std::vector<Comparison> Compare_With_Published(const Shape_Row& row, const Section_Result& r) {
  const std::pair<const char*, double> ours[] = {
      {"A", r.area},
      {"Ix", r.ixx},
      {"Iy", r.iyy},
      {"Sx", std::min(r.wx_top, r.wx_bottom)},
      {"Sy", std::min(r.wy_left, r.wy_right)},
      {"Zx", r.zx},
      {"Zy", r.zy},
      {"Iu", r.i1},
      {"Iv", r.i2},
      {"xc", r.cx - r.xmin},
      {"yc", row.table == "eu_angle" || row.table == "us_angle"
                 ? r.cy - r.ymin
                 : std::numeric_limits<double>::quiet_NaN()},
      {"x", r.cx - r.xmin},
      {"y", r.cy - r.ymin},
      // Shear centre: from the centroid (EU channels' ym) and from the back
      // of the web (US channels' eo), both beyond the web.
      {"ym", r.cx - r.xs},
      {"eo", r.xmin - r.xs},
      {"J", r.j},
      {"Cw", r.cw},
  };
  std::vector<Comparison> out;
  for (const auto& [name, value] : ours) {
    double pub = row.Get(name);
    if (!std::isfinite(pub) || pub == 0) continue;
    double rel = std::isfinite(value) ? value / pub - 1 : std::numeric_limits<double>::quiet_NaN();
    std::string label = name;
    if (label == "x") label = "xc";
    if (label == "y") label = "yc";
    out.push_back({label, value, pub, rel});
  }
  return out;
}

}  // namespace tessaline::app
