// Triangles and quadrilaterals.
#include <gtest/gtest.h>

#include <cmath>

#include "geometry/sampling.h"
#include "support/capture.h"

// On random triangles the centroid is the mean of the corners, the angles add
// up to pi and Heron's area equals half the cross product.
TEST(Triangle, CentroidAnglesAndArea) {
  Rng rnd(7);
  for (int i = 0; i < 1000; ++i) {
    double x[3], y[3], gx, gy, a[3];
    for (int k = 0; k < 3; ++k) x[k] = rnd(-10, 10), y[k] = rnd(-10, 10);
    Get_Median_Point(x[0], y[0], x[1], y[1], x[2], y[2], &gx, &gy);
    EXPECT_NEAR(std::hypot(gx - (x[0] + x[1] + x[2]) / 3, gy - (y[0] + y[1] + y[2]) / 3), 0, 1e-12);
    Get_3Ang_Angles(x[0], y[0], x[1], y[1], x[2], y[2], &a[0], &a[1], &a[2]);
    EXPECT_NEAR(a[0] + a[1] + a[2], kPi, 1e-9);
    EXPECT_NEAR(a[1], Angle_Between_Vectors(x[0] - x[1], y[0] - y[1], x[2] - x[1], y[2] - y[1]),
                1e-6);
    double cross = std::fabs(Vect_Mul(x[1] - x[0], y[1] - y[0], x[2] - x[0], y[2] - y[0])) / 2;
    EXPECT_NEAR(Get_3Ang_Area(x[0], y[0], x[1], y[1], x[2], y[2]), cross, 1e-6 * (1 + cross));
  }
  double a[3];
  Get_3Ang_Angles(0, 0, 0.1, 0.1, 0.3, 0.3, &a[0], &a[1], &a[2]);  // cosines round past 1
  EXPECT_FALSE(std::isnan(a[0]) || std::isnan(a[1]) || std::isnan(a[2]));
  EXPECT_EQ(Get_3Ang_Area(0, 0, 6, 8, 3, 4), 0);  // collinear, sides 10, 5, 5
  EXPECT_TRUE(Calc_3Ang_Area(1, 2, 3) == 0 && Calc_3Ang_Area(1, 2, 4) == 0 &&
              Calc_3Ang_Area(3, 4, 5) == 6);
}

TEST(Triangle, RightAngledAndSquareQuadrilaterals) {
  EXPECT_TRUE(Is_Right_4Ang(0, 0, 1, 0, 1, 1, 0, 1, 1e-9) &&
              Is_Square_4Ang(0, 0, 1, 0, 1, 1, 0, 1, 1e-9));
  EXPECT_EQ(Is_Right_4Ang(0, 0, 1, 0, 1, 1.001, 0, 1.001, 1e-4), 1);
  EXPECT_EQ(Is_Square_4Ang(0, 0, 1, 0, 1, 1.001, 0, 1.001, 1e-4), 0);
  EXPECT_EQ(Is_Square_4Ang(0, 0, 1, 0, 1, 1.001, 0, 1.001, 1.1e-3), 1);
  EXPECT_EQ(Is_Right_4Ang(0, 0, 2, 0, 3, 1, 1, 1, 0.1), 0);                // a parallelogram
  EXPECT_EQ(Is_Square_4Ang(0, 0, 1, 0, 1.5, 0.866, 0.5, 0.866, 0.01), 0);  // a rhombus
  EXPECT_EQ(Is_Right_4Ang(0, 0, 0, 0, 1, 1, 0, 1, 1), 0);  // a corner twice has no angle
}
