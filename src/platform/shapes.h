// Which device pixels a figure covers: lines, ellipses, arcs, polygons and
// wide strokes, as exact integer rules (gdi.h states them). Nothing here
// paints; the drawing calls and the region constructors share these sets.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "platform/raster.h"
#include "platform/region.h"

namespace gdi {

// Calls sink(x, y, i) for each pixel of the line from (x0, y0) to
// (x1, y1) that lies in `box`, i being the pixel's step from the start.
// The line covers max(|dx|, |dy|) pixels: the start, not the end. The
// minor coordinate of step i is the exact one rounded to nearest, a tie
// going to the smaller coordinate, so a line and its reverse differ only in
// their end pixels. Work is bounded by the box, not by the line's length.
template <class Sink>
void Thin_Line(int64_t x0, int64_t y0, int64_t x1, int64_t y1, const RECT& box, Sink&& sink) {
  const int64_t dx = x1 - x0, dy = y1 - y0;
  const int64_t adx = dx < 0 ? -dx : dx, ady = dy < 0 ? -dy : dy;
  const bool x_major = adx >= ady;
  const int64_t a0 = x_major ? x0 : y0, b0 = x_major ? y0 : x0;
  const int64_t sa = (x_major ? dx : dy) < 0 ? -1 : 1;
  const int64_t sb = (x_major ? dy : dx) < 0 ? -1 : 1;
  const int64_t n = x_major ? adx : ady, m = x_major ? ady : adx;
  if (n == 0) return;
  const int64_t alo = x_major ? box.left : box.top, ahi = x_major ? box.right : box.bottom;
  const int64_t blo = x_major ? box.top : box.left, bhi = x_major ? box.bottom : box.right;
  int64_t first = sa > 0 ? alo - a0 : a0 - (ahi - 1);
  int64_t last = sa > 0 ? ahi - 1 - a0 : a0 - alo;
  if (first < 0) first = 0;
  if (last > n - 1) last = n - 1;
  if (first > last) return;
  // Minor offset of step i: floor((2 i m + c) / 2n), rounding i m / n to
  // nearest with ties down (c = n - 1) or up (c = n) so that ties land on
  // the smaller device coordinate whichever way the line runs.
  const int64_t two_n = 2 * n, two_m = 2 * m;
  const int64_t num = 2 * first * m + (sb > 0 ? n - 1 : n);
  int64_t q = num / two_n, rem = num % two_n;
  for (int64_t i = first; i <= last; ++i) {
    const int64_t b = b0 + sb * q;
    if (b >= blo && b < bhi) {
      const int64_t a = a0 + sa * i;
      if (x_major) {
        sink(a, b, i);
      } else {
        sink(b, a, i);
      }
    } else if (sb > 0 ? b >= bhi : b < blo) {
      break;  // the line has left the box for good
    }
    rem += two_m;
    if (rem >= two_n) {
      rem -= two_n;
      ++q;
    }
  }
}

// The digital ellipse of a box [left, right) x [top, bottom), both sides
// at least 1: rows of one span each, symmetric about the box's centre.
class Ellipse_Shape {
 public:
  Ellipse_Shape(int64_t left, int64_t top, int64_t right, int64_t bottom);

  int64_t left() const { return l_; }
  int64_t top() const { return t_; }
  int64_t right() const { return r_; }
  int64_t bottom() const { return b_; }
  // The span [x0, x1] (inclusive) of row y; false outside the box.
  bool row(int64_t y, int64_t& x0, int64_t& x1) const;
  // Calls f(y, parts, n) for rows y0..y1-1 of the box with the outline
  // pixels of the row (those with a 4-neighbour outside the set): n (1 or
  // 2) inclusive ranges in parts[0..1], parts[2..3].
  template <class F>
  void for_outline_rows(int64_t y0, int64_t y1, F&& f) const {
    y0 = y0 < t_ ? t_ : y0;
    y1 = y1 > b_ ? b_ : y1;
    if (y0 >= y1) return;
    int64_t prev[2], cur[2], next[2];
    bool has_prev = row(y0 - 1, prev[0], prev[1]);
    row(y0, cur[0], cur[1]);
    for (int64_t y = y0; y < y1; ++y) {
      const bool has_next = row(y + 1, next[0], next[1]);
      // The interior: pixels whose four neighbours are all in the set.
      int64_t lo = cur[0] + 1, hi = cur[1] - 1;
      if (has_prev && has_next) {
        lo = std::max({lo, prev[0], next[0]});
        hi = std::min({hi, prev[1], next[1]});
      } else {
        lo = hi + 1;
      }
      int64_t parts[4] = {cur[0], cur[1], 0, 0};
      if (lo <= hi) {
        parts[1] = lo - 1;
        parts[2] = hi + 1;
        parts[3] = cur[1];
      }
      f(y, parts, lo <= hi ? 2 : 1);
      has_prev = true;
      prev[0] = cur[0], prev[1] = cur[1];
      cur[0] = next[0], cur[1] = next[1];
    }
  }
  // Doubled centre: the centre is (cx2 / 2, cy2 / 2).
  int64_t cx2() const { return cx2_; }
  int64_t cy2() const { return cy2_; }

 private:
  int64_t l_, t_, r_, b_;
  int64_t a2_, b2_;    // doubled half distances between outermost pixel centres
  int64_t cx2_, cy2_;  // doubled centre
};

// The rows of a polygon's fill (top-left rule, ALTERNATE or WINDING) that
// lie in `box`, appended to `out` in row order.
void Polygon_Rows(const std::vector<POINT>& points, int mode, const RECT& box,
                  std::vector<Row_Span>& out);

// Ellipse rows in `box`, appended to `out`.
void Ellipse_Rows(const Ellipse_Shape& e, const RECT& box, std::vector<Row_Span>& out);

struct DPoint {
  double x;
  double y;
};

// Pixels closer than width/2 to the path (see gdi.h for the sample point),
// within `box`: sorted by row and column, each pixel once.
void Wide_Stroke(const std::vector<DPoint>& path, bool closed, int width, const RECT& box,
                 std::vector<Row_Span>& out);

// Points along the ellipse through the outermost pixel centres of `e`, from
// the start radial to the end radial counter-clockwise on the device
// (the whole ellipse, closed, when `full`). Radials are doubled vectors from
// the centre with y up.
std::vector<DPoint> Ellipse_Path(const Ellipse_Shape& e, int64_t sx, int64_t sy, int64_t ex,
                                 int64_t ey, bool full);

// True when two radials (doubled vectors from the centre, y up) cut the
// ellipse through the outermost pixel centres of `e` in the same pixel (each
// cut point rounded to the nearest pixel, halves up): Arc then draws the
// whole ellipse.
bool Same_Cut(const Ellipse_Shape& e, int64_t sx, int64_t sy, int64_t ex, int64_t ey);

// Directions counter-clockwise from a start radial, inclusive, to an end
// radial, exclusive; vectors have y up. Equal radials make the whole turn.
class Sector {
 public:
  Sector(int64_t sx, int64_t sy, int64_t ex, int64_t ey);
  bool full() const { return full_; }
  bool contains(int64_t vx, int64_t vy) const;
  // True when direction a comes before direction b turning from the start.
  bool before(int64_t ax, int64_t ay, int64_t bx, int64_t by) const;

 private:
  int64_t sx_, sy_, ex_, ey_;
  bool full_;
};

// Sorted, merged rows of a set of pixels of `box` given in any order
// (duplicates allowed).
std::vector<Row_Span> Rows_Of_Pixels(const std::vector<std::pair<int64_t, int64_t>>& xy,
                                     const RECT& box);
// a minus b; both sorted by row and column, spans disjoint within a row.
std::vector<Row_Span> Subtract_Rows(const std::vector<Row_Span>& a, const std::vector<Row_Span>& b);
// A region from rows given in row order.
Region Region_Of_Rows(const std::vector<Row_Span>& rows);

}  // namespace gdi
