// A surface read once for many containment tests.
//
// Is_Point_In_Surface reads every contour element through the handle table
// on every call. Grids and splits ask it about every cell, so here the
// contours are read once into records indexed by height, and the points of
// one row share one set of ray crossings. The decision is exactly that of
// Is_Point_In_Surface for the same point (the same crossings, nudges off
// vertices and half crossings), as long as the surface and its elements are
// not changed after Read.
//
//   Prepared_Surface p;
//   if (p.Read(surface)) {
//     Prepared_Row row;
//     p.Set_Row(y, &row);
//     for (x ...) inside = row.Contains(x);   // or p.Contains(x, y) alone
//   }
#pragma once

#include <vector>

#include "contour/shape.h"
#include "tessaline/contour/surface.h"

class Prepared_Surface;

// The crossings of every contour of a prepared surface with one row.
class Prepared_Row {
 public:
  // Is_Point_In_Surface(surface, x, y) for the row's y. Any order of x.
  int Contains(double x) const;
  double y() const { return y_; }

 private:
  friend class Prepared_Surface;
  // One contour's crossings with the row, sorted by x, with the running
  // sum of what they add.
  struct Contour_Row {
    size_t contour;     // index into the prepared surface's contours
    size_t begin, end;  // its crossings in xs_ and sums_
    double vertex_x;    // from here on the ray meets a vertex: full test
    bool full;          // a crossing that is not a number: always the full test
  };
  bool Contour_Contains(const Contour_Row& c, double x) const;

  const Prepared_Surface* surface_ = nullptr;
  double y_ = 0;
  std::vector<Contour_Row> contours_;  // holes first, then outer contours
  std::vector<double> xs_, sums_;      // sums_[i]: what crossings begin .. i add
  std::vector<Ray_Crossing> scratch_;
};

class Prepared_Surface {
 public:
  // Reads and indexes the surface's contours. A contour that
  // Is_Point_In_Surface would pass over (a record or element that does not
  // lock) is left out (its guard box is shown here, once). False for a
  // null surface or when memory runs out.
  bool Read(Surface_Type* surface);
  // Is_Point_In_Surface(surface, x, y).
  int Contains(double x, double y) const;
  // Fills `row` with the crossings at height y (its buffers are reused).
  void Set_Row(double y, Prepared_Row* row) const;

 private:
  friend class Prepared_Row;
  Surface_Type* surface_ = nullptr;
  std::vector<Contour_Shape> shapes_;  // holes first, then outer contours
  size_t holes_ = 0;
};
