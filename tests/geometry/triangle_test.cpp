// Triangles and quadrilaterals.
#include <gtest/gtest.h>

#include <cmath>

#include "geometry/sampling.h"
#include "support/capture.h"

// Identities on random triangles: the centroid is the mean of the corners,
// the angles add up to pi, Heron's area equals half the cross product.
TEST(Triangle, CentroidAnglesAndAreaOfRandomTriangles) {
  Rng rnd(7);
  for (int i = 0; i < 1000; ++i) {
    double x1 = rnd(-10, 10), y1 = rnd(-10, 10), x2 = rnd(-10, 10), y2 = rnd(-10, 10);
    double x3 = rnd(-10, 10), y3 = rnd(-10, 10), gx, gy, a1, a2, a3;
    Get_Median_Point(x1, y1, x2, y2, x3, y3, &gx, &gy);
    EXPECT_NEAR(gx, (x1 + x2 + x3) / 3, 1e-12);
    EXPECT_NEAR(gy, (y1 + y2 + y3) / 3, 1e-12);
    Get_3Ang_Angles(x1, y1, x2, y2, x3, y3, &a1, &a2, &a3);
    EXPECT_NEAR(a1 + a2 + a3, kPi, 1e-9);
    EXPECT_NEAR(a1, Angle_Between_Vectors(x2 - x1, y2 - y1, x3 - x1, y3 - y1), 1e-6);
    double cross = std::fabs(Vect_Mul(x2 - x1, y2 - y1, x3 - x1, y3 - y1)) / 2;
    EXPECT_NEAR(Get_3Ang_Area(x1, y1, x2, y2, x3, y3), cross, 1e-6 * (1 + cross));
  }
  double a1, a2, a3;
  Get_3Ang_Angles(0, 0, 4, 0, 0, 3, &a1, &a2, &a3);  // 3-4-5 triangle
  EXPECT_NEAR(a1, kPi / 2, 1e-15);
  EXPECT_NEAR(a2, std::atan2(3, 4), 1e-15);
  // Collinear corners, whose cosines round past 1: no NaN, area 0.
  Get_3Ang_Angles(0, 0, 0.1, 0.1, 0.3, 0.3, &a1, &a2, &a3);
  EXPECT_FALSE(std::isnan(a1) || std::isnan(a2) || std::isnan(a3));
  EXPECT_EQ(Get_3Ang_Area(0, 0, 3, 4, 6, 8), 0);  // sides 5, 5, 10
  EXPECT_EQ(Get_3Ang_Area(0, 0, 6, 8, 3, 4), 0);
  EXPECT_EQ(Calc_3Ang_Area(1, 2, 3), 0);
  EXPECT_EQ(Calc_3Ang_Area(1, 2, 4), 0);  // no such triangle
  EXPECT_EQ(Calc_3Ang_Area(3, 4, 5), 6);
}

TEST(Triangle, RightAngledAndSquareQuadrilaterals) {
  EXPECT_EQ(Is_Right_4Ang(0, 0, 1, 0, 1, 1, 0, 1, 1e-9), 1);
  EXPECT_EQ(Is_Square_4Ang(0, 0, 1, 0, 1, 1, 0, 1, 1e-9), 1);
  EXPECT_EQ(Is_Right_4Ang(0, 0, 1, 0, 1, 1.001, 0, 1.001, 1e-4), 1);
  EXPECT_EQ(Is_Square_4Ang(0, 0, 1, 0, 1, 1.001, 0, 1.001, 1e-4), 0);
  EXPECT_EQ(Is_Square_4Ang(0, 0, 1, 0, 1, 1.001, 0, 1.001, 1.1e-3), 1);
  EXPECT_EQ(Is_Right_4Ang(0, 0, 2, 0, 3, 1, 1, 1, 0.1), 0);                // a parallelogram
  EXPECT_EQ(Is_Square_4Ang(0, 0, 1, 0, 1.5, 0.866, 0.5, 0.866, 0.01), 0);  // a rhombus
  EXPECT_EQ(Is_Right_4Ang(0, 0, 0, 0, 1, 1, 0, 1, 1), 0);  // a corner twice: no angle there
  // A rotated square passes with a tolerance at the level of rounding.
  double c = std::cos(0.3), s = std::sin(0.3);
  EXPECT_EQ(Is_Square_4Ang(0, 0, 2 * c, 2 * s, 2 * c - 2 * s, 2 * s + 2 * c, -2 * s, 2 * c, 1e-9),
            1);
}
