// Spline moments: Calc_Spline_Coef.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

#include "support/capture.h"

namespace {

using Vec = std::vector<double>;

struct Spline {
  Vec x, y, mx, my;
};

// Creates the spline, computes its moments and reads them back.
Spline Compute(const Vec& x, const Vec& y, int* result = nullptr) {
  int n = static_cast<int>(x.size());
  Vec preset(x.size(), 123.0);
  HGLOBAL h = Create_Spline(n, x.data(), y.data(), preset.data(), preset.data());
  int r = Calc_Spline_Coef(h);
  if (result) *result = r;
  Spline s{x, y, Vec(x.size()), Vec(x.size())};
  Element_Record rec;
  std::memcpy(&rec, GlobalLock(h), sizeof rec);
  GlobalUnlock(h);
  std::memcpy(s.mx.data(), GlobalLock(rec.u.spline.m1), n * sizeof(double));
  std::memcpy(s.my.data(), GlobalLock(rec.u.spline.m2), n * sizeof(double));
  GlobalUnlock(rec.u.spline.m1);
  GlobalUnlock(rec.u.spline.m2);
  Delete_Element(h);
  return s;
}

double Chord(const Spline& s, size_t i) {
  return std::hypot(s.x[i + 1] - s.x[i], s.y[i + 1] - s.y[i]);
}

// The moment form of the cubic on piece i at fraction f of its chord.
double Eval(const Vec& v, const Vec& m, double h, size_t i, double f) {
  double t = f * h;
  double u = h - t;
  return m[i] * u * u * u / (6 * h) + m[i + 1] * t * t * t / (6 * h) +
         (v[i] - m[i] * h * h / 6) * u / h + (v[i + 1] - m[i + 1] * h * h / 6) * t / h;
}

}  // namespace

// A closed spline through points of a circle follows the circle between the
// nodes, across the closing node too (a wrong end treatment bends it there).
TEST(Spline, ClosedSplineThroughCirclePointsStaysOnTheCircle) {
  Leak_Check leaks;
  const double r = 10, cx = 3, cy = -2;
  Vec x, y;
  for (int i = 0; i <= 16; ++i) {
    double a = 2 * M_PI * (i % 16) / 16;
    x.push_back(cx + r * std::cos(a));
    y.push_back(cy + r * std::sin(a));
  }
  Spline s = Compute(x, y);
  EXPECT_EQ(s.mx[0], s.mx[16]);
  for (size_t i = 0; i < 16; ++i) {
    for (double f : {0.1, 0.5, 0.9}) {
      double h = Chord(s, i);
      double px = Eval(s.x, s.mx, h, i, f);
      double py = Eval(s.y, s.my, h, i, f);
      EXPECT_NEAR(std::hypot(px - cx, py - cy), r, 2e-4 * r) << "piece " << i << " at " << f;
    }
  }
}

// An open chain: every inner node joins its pieces with equal second
// derivatives, and the end moments are extrapolated from their neighbours.
TEST(Spline, OpenChainIsSmoothAndExtrapolatesItsEnds) {
  Leak_Check leaks;
  Vec x, y;
  for (int i = 0; i < 9; ++i) {
    x.push_back(i + 0.3 * std::sin(3.0 * i));
    y.push_back(std::cos(0.8 * i) * 5);
  }
  Spline s = Compute(x, y);
  size_t n = x.size();
  Vec h(n - 1);
  for (size_t i = 0; i + 1 < n; ++i) h[i] = Chord(s, i);
  auto lambda = [&](size_t i) { return h[i - 1] / (h[i - 1] + h[i]); };
  for (const auto& [v, m] : {std::pair{s.x, s.mx}, std::pair{s.y, s.my}}) {
    for (size_t i = 1; i + 1 < n; ++i) {
      double d = 6 * ((v[i + 1] - v[i]) / h[i] - (v[i] - v[i - 1]) / h[i - 1]) / (h[i - 1] + h[i]);
      double lhs = lambda(i) * m[i - 1] + 2 * m[i] + (1 - lambda(i)) * m[i + 1];
      EXPECT_NEAR(lhs, d, 1e-9 * (1 + std::fabs(d))) << "node " << i;
    }
    EXPECT_NEAR(m[0], (m[1] - lambda(1) * m[2]) / (1 - lambda(1)), 1e-9);
    EXPECT_NEAR(m[n - 1], (m[n - 2] - m[n - 3] * (1 - lambda(n - 2))) / lambda(n - 2), 1e-9);
  }
}

TEST(Spline, ShortOrDegenerateChainsKeepTheirCoefficients) {
  Leak_Check leaks;
  Box_Capture boxes;
  int result = 0;
  Spline three = Compute({0, 1, 2}, {0, 1, 0}, &result);
  EXPECT_EQ(result, 1);
  EXPECT_EQ(three.mx, Vec(3, 123.0));
  // Nodes 1 and 2 coincide: the folded end rows make the elimination meet a
  // zero pivot; the call beeps and the blocks keep what they held.
  Spline twin = Compute({0, 1, 1, 2}, {0, 1, 1, 0}, &result);
  EXPECT_EQ(result, 1);
  EXPECT_GE(boxes.beep_count(), 1);
  EXPECT_EQ(twin.my, Vec(4, 123.0));
  // A record that claims more nodes than its blocks hold is refused.
  const double xs[4] = {0, 1, 2, 3};
  HGLOBAL h = Create_Spline(4, xs, xs, nullptr, nullptr);
  static_cast<Element_Record*>(GlobalLock(h))->u.spline.n = 1000;
  GlobalUnlock(h);
  EXPECT_EQ(Calc_Spline_Coef(h), 0);
  static_cast<Element_Record*>(GlobalLock(h))->u.spline.n = 4;
  GlobalUnlock(h);
  Delete_Element(h);
}
