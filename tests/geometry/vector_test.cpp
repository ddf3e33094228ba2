// The vector and distance primitives' deliberate edge cases.
#include <gtest/gtest.h>

#include <cmath>

#include "geometry/sampling.h"
#include "support/capture.h"

TEST(Vector, DeliberateEdgeCases) {
  EXPECT_EQ(sign(0.0), 1.0);
  EXPECT_EQ(sign(-0.0), 1.0);
  EXPECT_EQ(sign(-1e-300), -1.0);
  EXPECT_EQ(Get_Fract_Pow(3.0), 0);
  EXPECT_EQ(Get_Fract_Pow(0.5), 1);
  EXPECT_EQ(Get_Fract_Pow(0.25), 2);
  EXPECT_EQ(Get_Fract_Pow(0.125), 2);  // the power grows on every pass
  EXPECT_EQ(Get_Fract_Pow(-2.5), 1);
  double px = 7, py = 7;
  EXPECT_EQ(Perp_Vect(0, 0, &px, &py), 0);
  EXPECT_EQ(px, 7);
  ASSERT_EQ(Perp_Vect(1, 0, &px, &py), 1);
  EXPECT_EQ(px, 0);
  EXPECT_EQ(py, 1);
  ASSERT_EQ(Perp_Vect(0, 1, &px, &py), 1);
  EXPECT_EQ(px, -1);
  EXPECT_EQ(py, 0);
  ASSERT_EQ(Perp_Vect(-3, -4, &px, &py), 1);  // a quarter turn counter-clockwise
  EXPECT_NEAR(px, 0.8, 1e-15);
  EXPECT_NEAR(py, -0.6, 1e-15);
  Rotate2D(kPi / 2, 1, 0, &px, &py);  // clockwise
  EXPECT_NEAR(px, 0, 1e-15);
  EXPECT_EQ(py, -1);
  EXPECT_EQ(SQDistance_Circle_Point(1, 1, 3, 1, 1), 3);  // r at the centre, not r^2
  EXPECT_EQ(SQDistance_Arc_Point(1, 1, 3, 0, 1, 1, 1), 3);
  EXPECT_EQ(SQDistance_Segment_Point(0, 0, 2, 0, 5, 4), 25);  // beyond B: to B
}

// The squared segment and arc distances against dense sampling.
TEST(Vector, SquaredDistancesMatchSampling) {
  Rng rnd(8);
  for (int i = 0; i < 1000; ++i) {
    Arc a = Random_Arc(rnd, i);
    double px = a.cx + rnd(-60, 60), py = a.cy + rnd(-60, 60);
    double d = std::sqrt(SQDistance_Arc_Point(a.cx, a.cy, a.r, a.a1, a.a2, px, py));
    double sampled = Sampled_Arc_Distance(a, px, py, 4000);
    EXPECT_GE(sampled, d - 1e-7);
    EXPECT_LE(sampled, d + a.r * 1e-3);
    double x2 = rnd(-50, 50), y2 = rnd(-50, 50);
    double best = INFINITY;
    for (int j = 0; j <= 4000; ++j) {
      double t = j / 4000.0;
      best = std::fmin(best, std::hypot(px - a.cx - t * (x2 - a.cx), py - a.cy - t * (y2 - a.cy)));
    }
    d = std::sqrt(SQDistance_Segment_Point(a.cx, a.cy, x2, y2, px, py));
    EXPECT_GE(best, d - 1e-7);
    EXPECT_LE(best, d + 0.03);
  }
}
