// The largest rectangle about a contour's middle whose sides cross none of
// its elements.
#include <algorithm>
#include <cmath>
#include <new>
#include <vector>

#include "contour/outline.h"
#include "model/box.h"
#include "tessaline/analysis/properties.h"
#include "tessaline/geometry/intersect.h"

namespace {

// Whether the axis-parallel side from (x1, y1) to (x2, y2) (x1 == x2 or
// y1 == y2) meets the element: a crossing or a touch within the side, a
// segment lying along it over part of its length.
bool Side_Meets(const Element_Record& e, double x1, double y1, double x2, double y2) {
  const bool across = y1 == y2;  // a horizontal side
  const double lo = across ? std::min(x1, x2) : std::min(y1, y2);
  const double hi = across ? std::max(x1, x2) : std::max(y1, y2);
  const double at = across ? y1 : x1;
  auto within = [&](double x, double y) {
    double v = across ? x : y;
    return v >= lo && v <= hi;
  };
  double xa = 0, ya = 0, xb = 0, yb = 0;
  switch (e.type) {
    case EL_SEGMENT: {
      const auto& s = e.u.seg;
      int n = across ? Cross_Horiz_Line_Segment(at, s.x1, s.y1, s.x2, s.y2, &xa, &ya)
                     : Cross_Vert_Line_Segment(at, s.x1, s.y1, s.x2, s.y2, &xa, &ya);
      if (n == 1) return within(xa, ya);
      if (n == -1) {  // along the side's line: do they overlap?
        double a = across ? std::min(s.x1, s.x2) : std::min(s.y1, s.y2);
        double b = across ? std::max(s.x1, s.x2) : std::max(s.y1, s.y2);
        return a <= hi && b >= lo;
      }
      return false;
    }
    case EL_CIRCLE: {
      const auto& c = e.u.circle;
      int n = across ? Cross_Horiz_Line_Circle(at, c.xc, c.yc, c.r, &xa, &ya, &xb, &yb)
                     : Cross_Vert_Line_Circle(at, c.xc, c.yc, c.r, &xa, &ya, &xb, &yb);
      return n > 0 && (within(xa, ya) || within(xb, yb));
    }
    case EL_ARC: {
      const auto& a = e.u.arc;
      int n = across ? Cross_Horiz_Line_Arc(at, a.x1, a.y1, a.x2, a.y2, a.xc, a.yc, a.r, a.a1, a.a2,
                                            &xa, &ya, &xb, &yb)
                     : Cross_Vert_Line_Arc(at, a.xc, a.yc, a.r, a.a1, a.a2, &xa, &ya, &xb, &yb);
      return (n >= 1 && within(xa, ya)) || (n >= 2 && within(xb, yb));
    }
    default:
      return false;
  }
}

bool Rect_Meets(const std::vector<Element_Record>& elements, double l, double t, double r,
                double b) {
  for (const Element_Record& e : elements) {
    if (Side_Meets(e, l, t, r, t) || Side_Meets(e, r, t, r, b) || Side_Meets(e, l, b, r, b) ||
        Side_Meets(e, l, t, l, b)) {
      return true;
    }
  }
  return false;
}

}  // namespace

int Find_Inner_Rect(Contour_Type* contour, double* left, double* top, double* right,
                    double* bottom) {
  if (!contour || !left || !top || !right || !bottom) return 0;
  std::vector<Element_Record> elements;
  try {
    if (!Read_Contour(contour, &elements)) return 0;
  } catch (const std::bad_alloc&) {
    return 0;
  }
  Box box;
  for (const Element_Record& e : elements) box.Add(Record_Box(e));
  if (box.empty) return 0;
  const double cx = (box.left + box.right) / 2, cy = (box.bottom + box.top) / 2;
  const double tol = 0.01 * std::min(box.right - box.left, box.top - box.bottom);
  double wlo = 0, hlo = 0, whi = (box.right - box.left) / 2, hhi = (box.top - box.bottom) / 2;
  for (int step = 1; step <= 500; ++step) {
    const double w = (wlo + whi) / 2, h = (hlo + hhi) / 2;
    if (Rect_Meets(elements, cx - w, cy + h, cx + w, cy - h)) {
      whi = w, hhi = h;
      continue;
    }
    const double gap = std::max(std::fabs(hhi - hlo), std::fabs(whi - wlo));
    wlo = w, hlo = h;
    if (gap <= tol) {
      if (step == 500) return 0;
      *left = cx - w, *top = cy + h, *right = cx + w, *bottom = cy - h;
      return 1;
    }
  }
  return 0;
}
