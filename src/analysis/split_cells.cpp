// Triangles of one grid cell's polygon for the grid split.
#include <algorithm>
#include <cmath>

#include "analysis/split_internal.h"

namespace {

double Cross(const Cell_Point& a, const Cell_Point& b, const Cell_Point& c) {
  return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

double Sq(double v) {
  return v * v;
}

// Sine squared of the smallest angle, a measure of how fat the triangle is.
double Fatness(const Cell_Point& a, const Cell_Point& b, const Cell_Point& c) {
  double ab = Sq(b.x - a.x) + Sq(b.y - a.y), bc = Sq(c.x - b.x) + Sq(c.y - b.y),
         ca = Sq(a.x - c.x) + Sq(a.y - c.y);
  double area2 = Sq(Cross(a, b, c));
  // sin^2 of the angle opposite the shortest side = area2 / (product of the other two sides).
  double longest = std::max({ab, bc, ca});
  double product = ab * bc * ca / std::min({ab, bc, ca});
  return longest > 0 && product > 0 ? area2 / product : 0;
}

// Whether the corners other than i still enclose some area: if they all lay
// on one line, the ear's diagonal would run along that line past them.
bool Rest_Has_Area(const std::vector<Cell_Point>& p, size_t i) {
  size_t n = p.size();
  const Cell_Point& a = p[(i + n - 1) % n];
  const Cell_Point& b = p[(i + 1) % n];
  for (size_t k = 0; k < n; ++k) {
    if (k == i || &p[k] == &a || &p[k] == &b) continue;
    if (Cross(a, b, p[k]) != 0) return true;
  }
  return false;
}

void Emit(const Cell_Point& a, const Cell_Point& b, const Cell_Point& c, std::vector<FE3Ang>* out) {
  out->push_back(FE3Ang{{a.node, b.node, c.node}});
}

}  // namespace

void Triangulate_Cell_Polygon(std::vector<Cell_Point> poly,
                              const std::function<int(double, double)>& inner_node,
                              std::vector<FE3Ang>* out) {
  // Repeated nodes (a crossing at a corner reached from two sides) count once.
  std::vector<Cell_Point> p;
  for (const Cell_Point& c : poly) {
    if (p.empty() || p.back().node != c.node) p.push_back(c);
  }
  while (p.size() > 1 && p.front().node == p.back().node) p.pop_back();
  while (p.size() > 3) {
    size_t n = p.size(), best = n;
    double fattest = -1;
    for (size_t i = 0; i < n; ++i) {
      const Cell_Point &a = p[(i + n - 1) % n], &b = p[i], &c = p[(i + 1) % n];
      if (Cross(a, b, c) <= 0 || !Rest_Has_Area(p, i)) continue;
      double f = Fatness(a, b, c);
      if (f > fattest) fattest = f, best = i;
    }
    if (best == n) break;
    Emit(p[(best + n - 1) % n], p[best], p[(best + 1) % n], out);
    p.erase(p.begin() + static_cast<long>(best));
  }
  if (p.size() == 3) {
    if (Cross(p[0], p[1], p[2]) > 0) Emit(p[0], p[1], p[2], out);
    return;
  }
  if (p.size() < 3) return;
  // No proper ear: a fan from the corners' mean, inside a convex polygon.
  double area2 = 0, mx = 0, my = 0;
  for (size_t i = 0; i < p.size(); ++i) {
    area2 += Cross(p[0], p[i], p[(i + 1) % p.size()]);
    mx += p[i].x;
    my += p[i].y;
  }
  if (!(area2 > 0)) return;
  Cell_Point m{mx / static_cast<double>(p.size()), my / static_cast<double>(p.size()), 0};
  m.node = inner_node(m.x, m.y);
  for (size_t i = 0; i < p.size(); ++i) {
    const Cell_Point &a = p[i], &b = p[(i + 1) % p.size()];
    if (Cross(m, a, b) > 0) Emit(m, a, b, out);
  }
}
