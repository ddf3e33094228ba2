// The properties record: principal axes and completion from raw sums.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "support/sections.h"

namespace {

constexpr double kPi = std::numbers::pi;

TEST(Properties, MainAxisAngleRule) {
  struct Case {
    double ix, iy, ixy, want;
  };
  const Case cases[] = {
      {1, 1, 0, 0},              // a square: no preferred axes
      {0, 0, 0, 0},              // nothing at all
      {100, 100.005, 0.001, 0},  // both differences under 1e-4 of the smaller
      {2, 1, -0.5, kPi / 8},     // the sign of Ixy does not turn the angle...
      {2, 1, 0.5, kPi / 8},      // ...
      {1, 2, 0.5, kPi / 8},      // ...nor the order of Ix and Iy
      {1, 1, 1, kPi / 4},        // equal moments, a product: the largest angle
      {3, 1, 0, 0},              // already principal
      {100, 100.02, 0.001, 0.5 * std::atan2(0.002, 100.02 - 100)},  // difference above 1e-4
  };
  for (const Case& c : cases) {
    EXPECT_NEAR(Main_Axis_Angle(c.ix, c.iy, c.ixy), c.want, 1e-15)
        << c.ix << " " << c.iy << " " << c.ixy;
  }
}

TEST(Properties, MomentsAtAngle) {
  // A turn keeps the sum of the moments; at the principal angle of a
  // tensor whose product has the sign the rule assumes, the product
  // vanishes and the moments are the eigenvalues.
  const double ix = 7, iy = 3, ixy = -2;
  const double a = Main_Axis_Angle(ix, iy, ixy);
  const double mean = 5, radius = std::sqrt(4 + 4);
  EXPECT_NEAR(Moment2X_C_by_Angle(ix, iy, ixy, a), mean + radius, 1e-13);
  EXPECT_NEAR(Moment2Y_C_by_Angle(ix, iy, ixy, a), mean - radius, 1e-13);
  EXPECT_NEAR(MomentXY_C_by_Angle(ix, iy, ixy, a), 0, 1e-13);
  // The kept rule ignores the sign of Ixy: with the other sign the
  // product at that angle is not zero.
  EXPECT_NEAR(MomentXY_C_by_Angle(ix, iy, -ixy, Main_Axis_Angle(ix, iy, -ixy)), radius, 1e-13);
  for (double t : {0.3, 1.0, -2.0}) {
    EXPECT_NEAR(Moment2X_C_by_Angle(ix, iy, ixy, t) + Moment2Y_C_by_Angle(ix, iy, ixy, t), 10,
                1e-13);
  }
}

TEST(Properties, ClearKeepsTheLastField) {
  surface_geometry g;
  double* f = &g.area;
  for (int i = 0; i < 21; ++i) f[i] = i + 1.5;
  Clear_Surface_Geometry(&g);
  for (int i = 0; i < 20; ++i) EXPECT_EQ(f[i], 0) << i;
  EXPECT_EQ(g.further_constant, 21.5);
  Clear_Surface_Geometry(nullptr);
}

TEST(Properties, FinishRectangle) {
  // A 100 x 50 rectangle centred on (30, -20), raw sums by hand.
  Section s(Placement{30, -20, 0});
  s.Rectangle(100, 50);
  const double b = 100, h = 50, a = b * h, xc = 30, yc = -20;
  surface_geometry g{};
  g.area = a;
  g.first_moment_x = a * xc;
  g.first_moment_y = a * yc;
  g.second_moment_x = h * b * b * b / 12 + a * xc * xc;
  g.second_moment_y = b * h * h * h / 12 + a * yc * yc;
  g.product_moment = a * xc * yc;
  g.further_constant = 3;
  Finish_Surface_Geometry(s.surface(), &g);
  const double tol = 1e-9 * b * b * b * b;
  EXPECT_DOUBLE_EQ(g.centroid_x, xc);
  EXPECT_DOUBLE_EQ(g.centroid_y, yc);
  EXPECT_EQ(g.principal_angle, 0);
  EXPECT_NEAR(g.central_moment_x, b * h * h * h / 12, tol);
  EXPECT_NEAR(g.central_moment_y, h * b * b * b / 12, tol);
  EXPECT_NEAR(g.central_product_moment, 0, tol);
  EXPECT_NEAR(g.principal_moment_1, b * h * h * h / 12, tol);
  EXPECT_NEAR(g.principal_moment_2, h * b * b * b / 12, tol);
  EXPECT_NEAR(g.polar_moment, a * (b * b + h * h) / 12, tol);
  EXPECT_NEAR(g.extreme_distance_1, b / 2, 1e-9);
  EXPECT_NEAR(g.extreme_distance_2, h / 2, 1e-9);
  EXPECT_NEAR(g.section_modulus_1, b * h * h / 6, 1e-9 * b * b * b);
  EXPECT_NEAR(g.section_modulus_2, h * b * b / 6, 1e-9 * b * b * b);
  EXPECT_EQ(g.further_constant, 3);
}

}  // namespace
