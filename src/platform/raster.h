// What a drawing call paints into and how: the surface with its clipping, the
// raster operation, the pen's stroke style, and the mapping from logical to
// device coordinates.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "platform/gdi_object.h"
#include "platform/region.h"
#include "platform/wide_int.h"

namespace gdi {

// Device coordinates are clamped to +-kCoordLimit before rasterising, so
// that every product of two coordinate differences fits in 64 bits.
constexpr int64_t kCoordLimit = int64_t{1} << 27;

inline int64_t Clamp_Coord(int64_t v) {
  return v < -kCoordLimit ? -kCoordLimit : (v > kCoordLimit ? kCoordLimit : v);
}

// The raster operation `rop` (R2_*) of pen colour p on destination d.
inline uint32_t Apply_Rop(int rop, uint32_t d, uint32_t p) {
  uint32_t r;
  switch (rop) {
    case R2_BLACK:
      r = 0;
      break;
    case R2_NOTMERGEPEN:
      r = ~(d | p);
      break;
    case R2_MASKNOTPEN:
      r = d & ~p;
      break;
    case R2_NOTCOPYPEN:
      r = ~p;
      break;
    case R2_MASKPENNOT:
      r = p & ~d;
      break;
    case R2_NOT:
      r = ~d;
      break;
    case R2_XORPEN:
      r = d ^ p;
      break;
    case R2_NOTMASKPEN:
      r = ~(d & p);
      break;
    case R2_MASKPEN:
      r = d & p;
      break;
    case R2_NOTXORPEN:
      r = ~(d ^ p);
      break;
    case R2_NOP:
      r = d;
      break;
    case R2_MERGENOTPEN:
      r = d | ~p;
      break;
    case R2_MERGEPEN:
      r = d | p;
      break;
    case R2_MERGEPENNOT:
      r = p | ~d;
      break;
    case R2_WHITE:
      r = ~0u;
      break;
    default:  // R2_COPYPEN
      r = p;
      break;
  }
  return r & 0xFFFFFF;
}

// A horizontal run of pixels [x0, x1) in row y.
struct Row_Span {
  int32_t y;
  int32_t x0;
  int32_t x1;
};

// The pixels a drawing call may change and how it changes them.
struct Target {
  uint32_t* pixels = nullptr;
  int width = 0;
  RECT box{0, 0, 0, 0};          // surface and clipping region's box; empty: draw nothing
  const Region* clip = nullptr;  // null when the box alone decides
  int rop = R2_COPYPEN;

  bool empty() const { return box.left >= box.right || box.top >= box.bottom; }
  bool contains(int64_t x, int64_t y) const {
    if (x < box.left || x >= box.right || y < box.top || y >= box.bottom) return false;
    return !clip || clip->contains(static_cast<int32_t>(x), static_cast<int32_t>(y));
  }
  void pixel(int64_t x, int64_t y, uint32_t color) const {
    if (!contains(x, y)) return;
    uint32_t& d =
        pixels[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)];
    d = Apply_Rop(rop, d, color);
  }
  // Paints [x0, x1) of row y, clipped.
  void span(int64_t y, int64_t x0, int64_t x1, uint32_t color) const;
  void spans(const std::vector<Row_Span>& list, uint32_t color) const {
    for (const Row_Span& s : list) span(s.y, s.x0, s.x1, color);
  }
};

// How a pen strokes: its device width and its dash pattern.
struct Stroke {
  bool null = true;
  int width = 1;  // device pixels
  bool dashed = false;
  int period = 1;
  std::array<bool, 24> on{};  // on[i]: step i of the pattern draws with the pen
  uint32_t color = 0;
  uint32_t bk = 0;
  bool opaque = false;        // gaps take the background colour
  bool inside_frame = false;  // PS_INSIDEFRAME wider than a pixel: closed figures shrink

  // Paints step `phase` of the pattern at (x, y).
  void step(const Target& t, int64_t x, int64_t y, long phase) const {
    if (!dashed || on[static_cast<size_t>(phase % period)]) {
      t.pixel(x, y, color);
    } else if (opaque) {
      t.pixel(x, y, bk);
    }
  }
};

// Logical to device mapping of a context.
struct Mapping {
  int64_t wox, woy, wex, wey;  // window origin and extent
  int64_t vox, voy, vex, vey;  // viewport origin and extent
  bool scaled;                 // extents differ: not a plain translation

  int64_t x(int64_t v) const;
  int64_t y(int64_t v) const;
  // A point mapped for rasterising (clamped to +-kCoordLimit).
  int64_t dx(int64_t v) const { return Clamp_Coord(x(v)); }
  int64_t dy(int64_t v) const { return Clamp_Coord(y(v)); }
  // A pen width along x in whole device pixels, at least 1; width 0 is one
  // pixel whatever the mapping.
  int64_t width(int64_t w) const;
};

// floor(n / d + 1/2) computed exactly; d != 0.
int64_t Round_Div(Int128 n, Int128 d);

Mapping Mapping_Of(const Dc& dc);

// Resolves a context for drawing. False for a bad handle or an information
// context (the call fails); a context without pixels gives an empty target.
bool Begin_Drawing(HDC handle, Dc*& dc, Target& t);

// The stroke of the selected pen.
Stroke Stroke_Of(const Dc& dc, const Mapping& m);

// The device region of a logical one.
Region To_Device(const Region& r, const Mapping& m);

}  // namespace gdi
