// Random arcs and brute-force references for the geometry kernel's tests.
#pragma once

#include <cmath>
#include <random>

#include "geometry/angles.h"

struct Rng {
  explicit Rng(unsigned seed) : gen(seed) {}
  std::mt19937 gen;
  double operator()(double lo, double hi) { return std::uniform_real_distribution<>(lo, hi)(gen); }
};

struct Test_Arc {
  double cx, cy, r, a1, a2;
  double span() const { return Normalize_Angle(a2 - a1); }  // counter-clockwise sweep
  double x(double a) const { return cx + r * std::cos(a); }
  double y(double a) const { return cy + r * std::sin(a); }
  // Whether the direction of P from the centre lies on the arc, within slack radians.
  bool holds(double px, double py, double slack) const {
    double rel = Normalize_Angle(std::atan2(py - cy, px - cx) - a1);
    return rel <= span() + slack || rel >= 2 * kPi - slack;
  }
};

// Arcs through angle 0 or not, angles outside [0, 2*pi), and every eighth
// one short of a full turn by 1e-6.
inline Test_Arc Random_Arc(Rng& rnd, int i) {
  Test_Arc a{rnd(-50, 50), rnd(-50, 50), rnd(0.5, 40), rnd(-7, 13), 0};
  a.a2 = a.a1 + (i % 8 == 0 ? 2 * kPi - 1e-6 : rnd(0.05, 2 * kPi - 0.05));
  return a;
}

// Smallest distance from P to 4001 points spread over a curve point(t), t in [0, 1].
template <class F>
double Sampled_Distance(double px, double py, F point) {
  double best = INFINITY, x, y;
  for (int j = 0; j <= 4000; ++j) {
    point(j / 4000.0, &x, &y);
    best = std::fmin(best, std::hypot(px - x, py - y));
  }
  return best;
}
