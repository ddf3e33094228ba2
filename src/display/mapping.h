// Mapping world points onto logical points for the raster layer.
#pragma once

#include "platform/locked.h"
#include "tessaline/display/coord.h"
#include "tessaline/platform/memory.h"

// The logical point of a world point (the truncating mapping of WPtoLP).
inline POINT Map_Point(const World_Window* w, const Logical_Window* l, double x, double y) {
  int32_t lx, ly;
  WPtoLP(w, l, x, y, &lx, &ly);
  return POINT{lx, ly};
}

// Whether a world point lies in the world rectangle widened by a tenth of
// its size on every side (bounds inclusive): where pixels and markers are drawn.
inline bool In_Widened_World(const World_Window& w, double x, double y) {
  double xa = w.x0 - 0.1 * w.w, xb = w.x0 + w.w + 0.1 * w.w;
  double ya = w.y0 - 0.1 * w.h, yb = w.y0 + w.h + 0.1 * w.h;
  return x >= (xa < xb ? xa : xb) && x <= (xa < xb ? xb : xa) && y >= (ya < yb ? ya : yb) &&
         y <= (ya < yb ? yb : ya);
}

// Largest point count the polygon primitives and region builders accept.
inline constexpr int kMax_Mapped_Points = 1 << 24;

// Maps n consecutive (x, y) pairs into a temporary movable block of POINTs,
// hands them to `use` and frees the block. Returns `use`'s result, or
// `failure` when there are no points or the block cannot be allocated.
template <class R, class F>
R With_Mapped_Points(const World_Window* w, const Logical_Window* l, const double* points, int n,
                     R failure, F use) {
  if (!points || n < 1 || n > kMax_Mapped_Points) return failure;
  HGLOBAL block = GlobalAlloc(GHND, static_cast<SIZE_T>(n) * sizeof(POINT));
  R result = failure;
  {
    Locked<POINT> p(block);
    if (!p) {
      if (block) GlobalFree(block);
      return failure;
    }
    for (int i = 0; i < n; ++i) p[i] = Map_Point(w, l, points[2 * i], points[2 * i + 1]);
    result = use(p.get(), n);
  }
  GlobalFree(block);
  return result;
}
