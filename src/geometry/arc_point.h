// The nearest point of an arc, shared by the squared arc distance and the
// arc projection so that both make the same choice.
#pragma once

#include <cmath>

#include "geometry/angles.h"
#include "tessaline/geometry/vector.h"

// For P not at the centre: the nearest arc point Q and |P - Q|^2. The circle
// point towards P when that direction lies on the arc (a1 <= ap < a2); when
// neither it nor the opposite direction does, the nearer end point (the
// first on a tie); when only the opposite one does, the circle point opposite
// P's direction. That candidate is kept only when strictly nearer than both
// end points; otherwise the nearer end (the first on a tie).
inline double Nearest_Arc_Point(double cx, double cy, double r, double a1, double a2, double px,
                                double py, double* qx, double* qy) {
  double x0, y0;
  Circle_Point_Toward(cx, cy, r, px, py, &x0, &y0);
  a1 = Normalize_Angle(a1);
  a2 = Normalize_Angle(a2);
  double ap = Normalize_Angle(std::atan2(py - cy, px - cx));
  double e1x = cx + r * std::cos(a1), e1y = cy + r * std::sin(a1);
  double e2x = cx + r * std::cos(a2), e2y = cy + r * std::sin(a2);
  double d1 = SQDistance_2Points(px, py, e1x, e1y);
  double d2 = SQDistance_2Points(px, py, e2x, e2y);
  bool candidate = true;
  if (!Direction_On_Arc(a1, a2, ap)) {
    double ao = std::fmod(ap + kPi, 2 * kPi);
    candidate = Opposite_On_Arc(a1, a2, ao);
    x0 = 2 * cx - x0;
    y0 = 2 * cy - y0;
  }
  if (candidate) {
    double dc = SQDistance_2Points(px, py, x0, y0);
    if (dc < d1 && dc < d2) {
      *qx = x0;
      *qy = y0;
      return dc;
    }
  }
  bool second = d2 < d1;
  *qx = second ? e2x : e1x;
  *qy = second ? e2y : e1y;
  return second ? d2 : d1;
}
