// Spline moments (Calc_Spline_Coef), evaluated with the moment form of the cubic.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

#include "support/capture.h"

namespace {
using Vec = std::vector<double>;
const double kLine[4] = {0, 1, 2, 3};

// Moments of the spline through (x, y), read back; the blocks start at 123.
int Moments(const Vec& x, const Vec& y, Vec& mx, Vec& my) {
  Vec preset(x.size(), 123.0);
  HGLOBAL h = Create_Spline(int(x.size()), x.data(), y.data(), preset.data(), preset.data());
  int result = Calc_Spline_Coef(h);
  Element_Record r = *static_cast<Element_Record*>(GlobalLock(h));
  GlobalUnlock(h);
  for (auto [block, m] : {std::pair{r.u.spline.m1, &mx}, std::pair{r.u.spline.m2, &my}}) {
    m->resize(x.size());
    std::memcpy(m->data(), GlobalLock(block), x.size() * sizeof(double));
    GlobalUnlock(block);
  }
  Delete_Element(h);
  return result;
}

// Piece i at the fraction f of its chord h.
double Eval(const Vec& v, const Vec& m, double h, size_t i, double f) {
  double t = f * h, u = h - t;
  return (m[i] * u * u * u + m[i + 1] * t * t * t) / (6 * h) + (v[i] - m[i] * h * h / 6) * u / h +
         (v[i + 1] - m[i + 1] * h * h / 6) * t / h;
}
}  // namespace

// Between the nodes, across the closing one too, a closed spline through
// points of a circle keeps to the circle (a wrong end treatment bends it).
TEST(Spline, ClosedSplineThroughCirclePointsStaysOnTheCircle) {
  Leak_Check leaks;
  Vec x, y, mx, my;
  for (int i = 0; i <= 16; ++i) {
    x.push_back(3 + 10 * std::cos(M_PI * (i % 16) / 8));
    y.push_back(-2 + 10 * std::sin(M_PI * (i % 16) / 8));
  }
  ASSERT_EQ(Moments(x, y, mx, my), 1);
  for (size_t i = 0; i < 16; ++i) {
    double h = std::hypot(x[i + 1] - x[i], y[i + 1] - y[i]);
    for (double f : {0.1, 0.5, 0.9}) {
      double r = std::hypot(Eval(x, mx, h, i, f) - 3, Eval(y, my, h, i, f) + 2);
      EXPECT_NEAR(r, 10, 2e-3) << "piece " << i << " at " << f;
    }
  }
}

// An open chain is twice differentiable at every inner node, and its end
// moments are extrapolated linearly from their two neighbours.
TEST(Spline, OpenChainIsSmoothAndExtrapolatesItsEnds) {
  Vec x, y, mx, my, h;
  for (int i = 0; i < 9; ++i) {
    x.push_back(i + 0.3 * std::sin(3.0 * i));
    y.push_back(5 * std::cos(0.8 * i));
    if (i > 0) h.push_back(std::hypot(x[i] - x[i - 1], y[i] - y[i - 1]));
  }
  ASSERT_EQ(Moments(x, y, mx, my), 1);
  auto lambda = [&](size_t i) { return h[i - 1] / (h[i - 1] + h[i]); };
  for (const auto& [v, m] : {std::pair{x, mx}, std::pair{y, my}}) {
    for (size_t i = 1; i < 8; ++i) {
      double d = 6 * ((v[i + 1] - v[i]) / h[i] - (v[i] - v[i - 1]) / h[i - 1]) / (h[i - 1] + h[i]);
      EXPECT_NEAR(lambda(i) * m[i - 1] + 2 * m[i] + (1 - lambda(i)) * m[i + 1], d, 1e-9);
    }
    EXPECT_NEAR(m[0], (m[1] - lambda(1) * m[2]) / (1 - lambda(1)), 1e-9);
    EXPECT_NEAR(m[8], (m[7] - m[6] * (1 - lambda(7))) / lambda(7), 1e-9);
  }
}

TEST(Spline, ShortOrDegenerateChainsKeepTheirCoefficients) {
  Leak_Check leaks;
  Box_Capture boxes;
  Vec mx, my;
  EXPECT_EQ(Moments({0, 1, 2}, {0, 1, 0}, mx, my), 1);
  EXPECT_EQ(mx, Vec(3, 123.0));
  // Nodes 1 and 2 coincide: the folded end rows meet a zero pivot; the call
  // beeps and the blocks keep what they held.
  EXPECT_EQ(Moments({0, 1, 1, 2}, {0, 1, 1, 0}, mx, my), 1);
  EXPECT_EQ(boxes.beep_count(), 1);
  EXPECT_EQ(my, Vec(4, 123.0));
  // A record claiming more nodes than its blocks hold is refused.
  HGLOBAL h = Create_Spline(4, kLine, kLine, nullptr, nullptr);
  static_cast<Element_Record*>(GlobalLock(h))->u.spline.n = 1000;
  GlobalUnlock(h);
  EXPECT_EQ(Calc_Spline_Coef(h), 0);
  static_cast<Element_Record*>(GlobalLock(h))->u.spline.n = 4;
  GlobalUnlock(h);
  Delete_Element(h);
}
