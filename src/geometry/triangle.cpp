// Triangles and quadrilaterals.
#include "tessaline/geometry/triangle.h"

#include <cmath>

#include "geometry/angles.h"
#include "tessaline/geometry/vector.h"

namespace {

// Angle opposite side c between sides a and b.
double Angle_From_Sides(double a, double b, double c) {
  double cs = (a * a + b * b - c * c) / (2 * a * b);
  if (cs > 1) cs = 1;
  if (cs < -1) cs = -1;
  return std::acos(cs);
}

}  // namespace

void Get_Median_Point(double x1, double y1, double x2, double y2, double x3, double y3, double* gx,
                      double* gy) {
  *gx = x1 + ((x2 + x3) / 2 - x1) / 3 * 2;
  *gy = y1 + ((y2 + y3) / 2 - y1) / 3 * 2;
}

void Get_3Ang_Angles(double x1, double y1, double x2, double y2, double x3, double y3, double* a1,
                     double* a2, double* a3) {
  double s12 = Distance_2Points(x1, y1, x2, y2);
  double s23 = Distance_2Points(x2, y2, x3, y3);
  double s31 = Distance_2Points(x3, y3, x1, y1);
  *a1 = Angle_From_Sides(s12, s31, s23);
  *a2 = Angle_From_Sides(s12, s23, s31);
  *a3 = Angle_From_Sides(s23, s31, s12);
}

double Calc_3Ang_Area(double a, double b, double c) {
  double s = (a + b + c) / 2;
  // Written as "not greater than 0" so that NaN sides count as degenerate too.
  if (!(s - a > 0) || !(s - b > 0) || !(s - c > 0)) return 0;
  return std::sqrt(s * (s - a) * (s - b) * (s - c));
}

double Get_3Ang_Area(double x1, double y1, double x2, double y2, double x3, double y3) {
  return Calc_3Ang_Area(Distance_2Points(x1, y1, x2, y2), Distance_2Points(x2, y2, x3, y3),
                        Distance_2Points(x3, y3, x1, y1));
}

int Is_Right_4Ang(double x1, double y1, double x2, double y2, double x3, double y3, double x4,
                  double y4, double t) {
  const double x[4] = {x1, x2, x3, x4};
  const double y[4] = {y1, y2, y3, y4};
  for (int k = 0; k < 4; ++k) {
    int prev = (k + 3) % 4;
    int next = (k + 1) % 4;
    double at_k, unused_a, unused_b;
    Get_3Ang_Angles(x[k], y[k], x[prev], y[prev], x[next], y[next], &at_k, &unused_a, &unused_b);
    // A corner without an angle (NaN) is not a right angle either.
    if (!(std::fabs(at_k - kPi / 2) <= t)) return 0;
  }
  return 1;
}

int Is_Square_4Ang(double x1, double y1, double x2, double y2, double x3, double y3, double x4,
                   double y4, double t) {
  double first = Distance_2Points(x1, y1, x2, y2);
  const double others[3] = {Distance_2Points(x2, y2, x3, y3), Distance_2Points(x3, y3, x4, y4),
                            Distance_2Points(x4, y4, x1, y1)};
  for (double len : others) {
    // Relative to the side being compared, not to the first side.
    if (std::fabs(len - first) > len * t) return 0;
  }
  return Is_Right_4Ang(x1, y1, x2, y2, x3, y3, x4, y4, t);
}
