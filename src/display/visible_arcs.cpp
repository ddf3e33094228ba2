// Which parts of a circle lie inside a rectangle.
#include "display/visible_arcs.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kTwoPi = 2 * kArc_Pi;

double Normalize(double a) {
  double r = std::fmod(a, kTwoPi);
  return r < 0 ? r + kTwoPi : r;
}

// Angles at which the circle meets the line x = v (or y = v when `vertical`
// is false) within [lo, hi] along the other axis.
void Edge_Crossings(double cx, double cy, double r, double v, double lo, double hi, bool vertical,
                    std::vector<double>& out) {
  double d = vertical ? v - cx : v - cy;
  if (std::fabs(d) > r) return;
  double h = std::sqrt(r * r - d * d);
  for (double s : {h, -h}) {
    double along = (vertical ? cy : cx) + s;
    if (along < lo || along > hi) continue;
    out.push_back(vertical ? std::atan2(s, d) : std::atan2(d, s));
  }
}

}  // namespace

Angle_Interval Arc_Interval(double a1, double a2) {
  double s = Normalize(a1);
  double e = Normalize(a2);
  double sweep = e > s ? e - s : e - s + kTwoPi;  // equal angles: the whole circle
  return {s, s + sweep};
}

std::vector<Angle_Interval> Visible_Arcs(double xc, double yc, double r, double a1, double span,
                                         const Rect_Bounds& rect) {
  std::vector<Angle_Interval> out;
  if (!(r > 0) || !(span > 0)) return out;
  // Quick rejection: the circle's box misses the rectangle, or the rectangle
  // lies wholly inside the circle (no outline point inside it).
  if (xc + r < rect.xmin || xc - r > rect.xmax || yc + r < rect.ymin || yc - r > rect.ymax)
    return out;
  std::vector<double> cuts;
  Edge_Crossings(xc, yc, r, rect.xmin, rect.ymin, rect.ymax, true, cuts);
  Edge_Crossings(xc, yc, r, rect.xmax, rect.ymin, rect.ymax, true, cuts);
  Edge_Crossings(xc, yc, r, rect.ymin, rect.xmin, rect.xmax, false, cuts);
  Edge_Crossings(xc, yc, r, rect.ymax, rect.xmin, rect.xmax, false, cuts);
  std::vector<double> breaks = {a1};
  for (double c : cuts) {
    double t = a1 + Normalize(c - a1);
    if (t > a1 && t < a1 + span) breaks.push_back(t);
  }
  breaks.push_back(a1 + span);
  std::sort(breaks.begin(), breaks.end());
  for (size_t i = 0; i + 1 < breaks.size(); ++i) {
    double s = breaks[i], e = breaks[i + 1];
    if (!(e > s)) continue;
    double m = (s + e) / 2;
    double x = xc + r * std::cos(m), y = yc + r * std::sin(m);
    bool inside = x >= rect.xmin && x <= rect.xmax && y >= rect.ymin && y <= rect.ymax;
    if (!inside) continue;
    if (!out.empty() && out.back().end == s) {
      out.back().end = e;
    } else {
      out.push_back({s, e});
    }
  }
  return out;
}
