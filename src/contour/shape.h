// A contour read into memory for point containment, optionally with an
// index of its elements by height for many tests against one contour.
#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "model/box.h"
#include "tessaline/contour/contour.h"

// Items filed by their vertical extent into equal bands, so that a query at
// height y looks only at the items whose extent may hold y.
class Y_Bands {
 public:
  // Spans [lo, hi] of the items. A span that is not finite makes every
  // query give every item.
  void Build(const std::vector<std::pair<double, double>>& spans);
  // The items whose span may hold y, in ascending order.
  std::span<const uint32_t> At(double y) const;

 private:
  size_t Band(double v) const;

  double lo_ = 0, hi_ = 0, scale_ = 0;
  size_t bands_ = 0;
  bool all_ = false;
  std::vector<uint32_t> start_;    // band b holds members_[start_[b] .. start_[b + 1])
  std::vector<uint32_t> members_;  // or every item, in order, when all_
};

// One crossing of a horizontal line with a contour element, as the
// containment count takes it.
struct Ray_Crossing {
  double x;
  double add;       // what it adds to the count when it lies left of the point (or at it)
  bool end;         // an end point that moves the ray, when moving is allowed
  bool nan_counts;  // counts also when x and the point's x are unordered (segments)
  // Whether the crossing lies left of px (or at it) by the test of its
  // element type.
  bool Left_Of(double px) const { return nan_counts ? !(x > px) : x <= px; }
};

class Contour_Shape {
 public:
  // Reads the contour's drawing elements. False (after the "Messsage" /
  // "pElem==NULL" box) when one does not lock; an empty contour reads.
  bool Read(const Contour_Type* contour);
  // Files the elements by height: later tests look at few of them.
  void Index();
  // The crossing-count test of Is_Point_In_Contour: 1 inside, else 0.
  int Contains(double x, double y) const;
  // The union of the elements' boxes (after Index).
  const Box& box() const { return box_; }
  const std::vector<Element_Record>& elements() const { return elements_; }
  // Appends the crossings of the line at height yr with every element that
  // may reach it, in the order the count meets them.
  void Row_Crossings(double yr, std::vector<Ray_Crossing>* out) const;

 private:
  int Element_Crossings(size_t i, double yr, Ray_Crossing out[2]) const;
  double Count(double px, double yr, bool may_nudge, bool* vertex) const;
  double Shared_End_Crossing(size_t i, double x, double yr) const;

  std::vector<Element_Record> elements_;
  bool indexed_ = false;
  Box box_;
  Y_Bands bands_;
};
