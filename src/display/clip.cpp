// Region-code clipping of segments.
#include "display/clip.h"

#include <algorithm>

namespace {

struct Bounds {
  double xmin, xmax, ymin, ymax;
};

int Code(const Bounds& b, double x, double y) {
  int c = 0;
  if (x < b.xmin) c |= 1;
  if (x > b.xmax) c |= 2;
  if (y < b.ymin) c |= 4;
  if (y > b.ymax) c |= 8;
  return c;
}

// Moves the outside end (x, y) of the segment toward (ox, oy) onto the edge
// named by the lowest bit of its code.
void Move_To_Edge(const Bounds& b, int code, double ox, double oy, double* x, double* y) {
  double dx = ox - *x, dy = oy - *y;
  if (code & 1) {
    *y += dy * (b.xmin - *x) / dx;
    *x = b.xmin;
  } else if (code & 2) {
    *y += dy * (b.xmax - *x) / dx;
    *x = b.xmax;
  } else if (code & 4) {
    *x += dx * (b.ymin - *y) / dy;
    *y = b.ymin;
  } else {
    *x += dx * (b.ymax - *y) / dy;
    *y = b.ymax;
  }
}

}  // namespace

bool Clip_Segment(double xa, double ya, double xb, double yb, double* x1, double* y1, double* x2,
                  double* y2) {
  Bounds b = {std::min(xa, xb), std::max(xa, xb), std::min(ya, yb), std::max(ya, yb)};
  int c1 = Code(b, *x1, *y1);
  int c2 = Code(b, *x2, *y2);
  // Each pass puts one end on an edge and clears at least one bit: at most four passes.
  for (int pass = 0; pass < 8 && (c1 | c2); ++pass) {
    if (c1 & c2) return false;
    if (c1) {
      Move_To_Edge(b, c1, *x2, *y2, x1, y1);
      c1 = Code(b, *x1, *y1);
    } else {
      Move_To_Edge(b, c2, *x1, *y1, x2, y2);
      c2 = Code(b, *x2, *y2);
    }
  }
  return (c1 | c2) == 0;
}
