// Angle helpers shared by the kernel's arc functions.
#pragma once

#include <cmath>

inline constexpr double kPi = 3.14159265358979323846;

// Angle into [0, 2*pi): fmod by 2*pi, plus 2*pi for a negative remainder.
inline double Normalize_Angle(double a) {
  double r = std::fmod(a, 2 * kPi);
  if (r < 0) r += 2 * kPi;
  return r;
}

// Whether direction ap (normalised) lies on the arc a1 -> a2 (normalised):
// a1 <= ap < a2, or for an arc through angle 0, ap <= a2 or ap >= a1.
inline bool Direction_On_Arc(double a1, double a2, double ap) {
  if (a1 <= a2) return a1 <= ap && ap < a2;
  return ap <= a2 || ap >= a1;
}

// The test for the opposite direction ao, with its own bounds: off the arc
// when ao < a1 or ao > a2, or for an arc through 0 when a2 < ao < a1.
inline bool Opposite_On_Arc(double a1, double a2, double ao) {
  if (a1 <= a2) return !(ao < a1 || ao > a2);
  return !(a2 < ao && ao < a1);
}

// The circle point Q = C + r * (P - C) / |P - C| (P not at C).
inline void Circle_Point_Toward(double cx, double cy, double r, double px, double py, double* qx,
                                double* qy) {
  double dx = px - cx;
  double dy = py - cy;
  double len = std::sqrt(dx * dx + dy * dy);
  *qx = cx + r * dx / len;
  *qy = cy + r * dy / len;
}

// Whether the arc a1 -> a2 (normalised) passes the normalised angle `a`, ends
// included: a1 <= a <= a2, or for an arc through angle 0, a >= a1 or a <= a2.
inline bool Arc_Passes(double a1, double a2, double a) {
  if (a1 <= a2) return a1 <= a && a <= a2;
  return a >= a1 || a <= a2;
}
