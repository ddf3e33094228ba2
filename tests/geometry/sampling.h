// Random inputs and brute-force references for the geometry kernel's tests.
#pragma once

#include <cmath>
#include <random>

#include "geometry/angles.h"

class Rng {
 public:
  explicit Rng(unsigned seed) : gen_(seed) {}
  double operator()(double lo, double hi) { return std::uniform_real_distribution<>(lo, hi)(gen_); }

 private:
  std::mt19937 gen_;
};

struct Arc {
  double cx, cy, r, a1, a2;
  // Counter-clockwise sweep from a1 to a2, in [0, 2*pi).
  double span() const { return Normalize_Angle(a2 - a1); }
  double x(double a) const { return cx + r * std::cos(a); }
  double y(double a) const { return cy + r * std::sin(a); }
};

// Arcs of every kind: through angle 0 or not, angles given outside
// [0, 2*pi), and every eighth one short of a full turn by 1e-6.
inline Arc Random_Arc(Rng& rnd, int i) {
  Arc a{rnd(-50, 50), rnd(-50, 50), rnd(0.5, 40), rnd(-7, 13), 0};
  a.a2 = a.a1 + (i % 8 == 0 ? 2 * kPi - 1e-6 : rnd(0.05, 2 * kPi - 0.05));
  return a;
}

// Whether the direction of (x, y) from the arc's centre lies on the arc,
// within `slack` radians.
inline bool On_Arc(const Arc& a, double x, double y, double slack) {
  double rel = Normalize_Angle(std::atan2(y - a.cy, x - a.cx) - a.a1);
  return rel <= a.span() + slack || rel >= 2 * kPi - slack;
}

// Smallest distance from P to k + 1 points spread evenly over the arc.
inline double Sampled_Arc_Distance(const Arc& a, double px, double py, int k) {
  double best = INFINITY;
  for (int j = 0; j <= k; ++j) {
    double t = a.a1 + a.span() * j / k;
    best = std::fmin(best, std::hypot(px - a.x(t), py - a.y(t)));
  }
  return best;
}
