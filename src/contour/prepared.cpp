// A surface read once for many containment tests.
//
// Along one row the count of a contour at x is what the crossings at or
// left of x add, so with the crossings sorted by x it is a running sum read
// at x. That holds while no counted crossing is a vertex that moves the ray:
// from the leftmost such vertex on, the point gets the full test, which
// moves the ray and counts again exactly as Is_Point_In_Contour does.
#include "contour/prepared.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <new>
#include <numeric>

#include "contour/lists.h"
#include "platform/locked.h"

bool Prepared_Surface::Read(Surface_Type* surface) {
  surface_ = surface;
  shapes_.clear();
  holes_ = 0;
  if (!surface) return false;
  try {
    for (int list : {kHoles, kOuters}) {
      Handle_Slots contours = Surface_List(surface, list);
      for (size_t i = 0; i < contours.size(); ++i) {
        Locked<Contour_Type> c(contours[i]);
        Contour_Shape shape;
        if (!c || !shape.Read(c.get())) continue;
        shape.Index();
        shapes_.push_back(std::move(shape));
        if (list == kHoles) ++holes_;
      }
    }
  } catch (const std::bad_alloc&) {
    shapes_.clear();
    return false;
  }
  return true;
}

int Prepared_Surface::Contains(double x, double y) const {
  if (!std::isfinite(x) || !std::isfinite(y)) return Is_Point_In_Surface(surface_, x, y);
  for (size_t i = 0; i < shapes_.size(); ++i) {
    if (shapes_[i].Contains(x, y)) return i < holes_ ? 0 : 1;
  }
  return 0;
}

void Prepared_Surface::Set_Row(double y, Prepared_Row* row) const {
  row->surface_ = this;
  row->y_ = y;
  row->contours_.clear();
  row->xs_.clear();
  row->sums_.clear();
  if (!std::isfinite(y)) return;  // every point gets the full test
  std::vector<Ray_Crossing>& c = row->scratch_;
  for (size_t i = 0; i < shapes_.size(); ++i) {
    c.clear();
    shapes_[i].Row_Crossings(y, &c);
    if (c.empty()) continue;  // counts nothing: outside
    Prepared_Row::Contour_Row r{i, row->xs_.size(), row->xs_.size(), INFINITY, false};
    r.full = std::any_of(c.begin(), c.end(), [](const Ray_Crossing& k) { return std::isnan(k.x); });
    if (r.full) {
      row->contours_.push_back(r);
      continue;
    }
    std::sort(c.begin(), c.end(),
              [](const Ray_Crossing& a, const Ray_Crossing& b) { return a.x < b.x; });
    double sum = 0;
    for (const Ray_Crossing& k : c) {
      if (k.end) r.vertex_x = std::min(r.vertex_x, k.x);
      sum += k.add;
      row->xs_.push_back(k.x);
      row->sums_.push_back(sum);
    }
    r.end = row->xs_.size();
    row->contours_.push_back(r);
  }
}

bool Prepared_Row::Contour_Contains(const Contour_Row& c, double x) const {
  if (c.full || x >= c.vertex_x) return surface_->shapes_[c.contour].Contains(x, y_) != 0;
  auto first = xs_.begin() + static_cast<ptrdiff_t>(c.begin);
  auto last = xs_.begin() + static_cast<ptrdiff_t>(c.end);
  size_t left = static_cast<size_t>(std::upper_bound(first, last, x) - first);
  double k = left ? sums_[c.begin + left - 1] : 0;
  return static_cast<int64_t>(k) % 2 != 0;
}

int Prepared_Row::Contains(double x) const {
  if (!surface_) return 0;
  if (!std::isfinite(x) || !std::isfinite(y_)) return surface_->Contains(x, y_);
  for (const Contour_Row& c : contours_) {
    if (Contour_Contains(c, x)) return c.contour < surface_->holes_ ? 0 : 1;
  }
  return 0;
}
