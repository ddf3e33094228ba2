// An exact set of pixels, kept as Win32 and X11 keep regions: bands of rows
// [y0, y1) in increasing order, each holding spans [x0, x1) in increasing
// order. The form is canonical: spans in a band neither touch nor overlap,
// no band is empty, and two bands that touch vertically never hold the same
// spans (they are merged). Equal sets therefore have equal representations.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tessaline/platform/win_types.h"

namespace gdi {

struct Span {
  int32_t x0;
  int32_t x1;  // exclusive
  bool operator==(const Span&) const = default;
};

class Region {
 public:
  struct Band {
    int32_t y0;
    int32_t y1;      // exclusive
    uint32_t first;  // index of the band's first span
    uint32_t count;
  };

  Region() = default;
  // The rectangle with corners in either order; empty when a side is 0.
  static Region Rect(int32_t l, int32_t t, int32_t r, int32_t b);

  bool empty() const { return bands_.empty(); }
  // NULLREGION, SIMPLEREGION (one rectangle) or COMPLEXREGION.
  int type() const;
  // The bounding box; (0, 0, 0, 0) when empty.
  RECT box() const;
  bool contains(int32_t x, int32_t y) const;
  // Moves every pixel; false (nothing changed) when a coordinate would
  // leave the 32-bit range.
  bool offset(int64_t dx, int64_t dy);

  const std::vector<Band>& bands() const { return bands_; }
  const Span* spans(const Band& b) const { return spans_.data() + b.first; }
  // The band holding row y, or null.
  const Band* band_at(int32_t y) const;
  size_t span_count() const { return spans_.size(); }

  bool operator==(const Region& o) const;

 private:
  friend class Region_Builder;
  std::vector<Band> bands_;
  std::vector<Span> spans_;
};

// Builds a canonical region from rows given top to bottom.
class Region_Builder {
 public:
  // Rows [y0, y1) hold the spans: sorted, disjoint, possibly touching (they
  // are merged here). Calls must come with y0 >= the previous call's y1.
  void add(int32_t y0, int32_t y1, const Span* spans, size_t n);
  Region finish();

 private:
  Region r_;
  std::vector<Span> merged_;
};

// The set operation of CombineRgn's mode (RGN_AND, RGN_OR, RGN_XOR, RGN_DIFF;
// RGN_COPY gives a). Bad modes give an empty region.
Region Combine(const Region& a, const Region& b, int mode);

}  // namespace gdi
