// Closed-form weld stresses and the equivalent stress over a surface.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "analysis/torsion_meshes.h"

namespace {

constexpr double kPi = std::numbers::pi;

TEST(Weld, ComponentsAndTheirOrder) {
  double s = 0, ty = 0, tx = 0;
  // Without torque only the average shear remains; tau_y is written first.
  double eq = Get_Butt_Weld_Stress(3, 4, 10, 20, 0, 0, 0, 0, 5, 1, 1, 0, 1, &s, &ty, &tx);
  EXPECT_DOUBLE_EQ(tx, 2.0);
  EXPECT_DOUBLE_EQ(ty, 4.0);
  EXPECT_DOUBLE_EQ(eq, std::sqrt(3.0 * 20.0));
  // alpha = 0: sigma = N/A + (My/Iy) x - (Mx/Ix) y.
  eq = Get_Butt_Weld_Stress(3, 4, 0, 0, 10, 6, 8, 0, 5, 2, 4, 0, 1, &s, &ty, &tx);
  EXPECT_DOUBLE_EQ(s, 2.0 + 2.0 * 3 - 3.0 * 4);
  EXPECT_DOUBLE_EQ(eq, std::fabs(s));
  // Turning the axes and the moments together leaves sigma as it was.
  double s2 = 0;
  const double a = 0.3, c = std::cos(a), sn = std::sin(a);
  Get_Butt_Weld_Stress(3 * c - 4 * sn, 3 * sn + 4 * c, 0, 0, 10, 6 * c - 8 * sn, 6 * sn + 8 * c, 0,
                       5, 2, 4, a, 1, &s2, &ty, &tx);
  EXPECT_NEAR(s2, s, 1e-12);
  // The torque's shear r Mt / It, perpendicular to the radius, with the
  // system's extra half turn: at (1, 0) with Mt > 0 it points along -y.
  Get_Butt_Weld_Stress(1, 0, 0, 0, 0, 0, 0, 6, 1, 1, 1, 0, 2, &s, &ty, &tx);
  EXPECT_NEAR(tx, 0.0, 1e-15);
  EXPECT_DOUBLE_EQ(ty, -3.0);
  // With the field's stresses.
  eq = Get_Butt_Weld_Stress_With_Torsion(0, 0, 10, 20, 0, 0, 0, 5, 1, 1, 0, 1, -2, &s, &ty, &tx);
  EXPECT_DOUBLE_EQ(tx, 3.0);
  EXPECT_DOUBLE_EQ(ty, 2.0);
  EXPECT_DOUBLE_EQ(eq, std::sqrt(3.0 * 13.0));
  EXPECT_DOUBLE_EQ(Get_Butt_Weld_Stress_With_Torsion(0, 0, 10, 20, 0, 0, 0, 5, 1, 1, 0, 1, -2), eq);
}

// The inverse functions give the points where the forward ones reach S.
TEST(Weld, InversesMeetTheirLevel) {
  const double Qx = 3, Qy = 4, N = 50, Mx = 700, My = -300, A = 20, Ix = 900, Iy = 400;
  const double S = 40;
  double x1 = 0, x2 = 0, y1 = 0, y2 = 0;
  Get_X_By_Butt_Weld_Str_Without_Torsion(2.5, S, Qx, Qy, N, Mx, My, A, Ix, Iy, 0, &x1, &x2);
  for (double x : {x1, x2}) {
    EXPECT_NEAR(Get_Butt_Weld_Stress(x, 2.5, Qx, Qy, N, Mx, My, 0, A, Ix, Iy, 0, 1), S, 1e-9);
  }
  Get_Y_By_Butt_Weld_Str_Without_Torsion(1.5, S, Qx, Qy, N, Mx, My, A, Ix, Iy, 0, &y1, &y2);
  for (double y : {y1, y2}) {
    EXPECT_NEAR(Get_Butt_Weld_Stress(1.5, y, Qx, Qy, N, Mx, My, 0, A, Ix, Iy, 0, 1), S, 1e-9);
  }
  double s = 0, ty = 0, tx = 0;
  Get_X_By_Normal_Stress(2.5, S, 99, 99, N, Mx, My, A, Ix, Iy, 0, &x1, &x2);
  EXPECT_EQ(x1, x2);
  Get_Butt_Weld_Stress(x1, 2.5, 0, 0, N, Mx, My, 0, A, Ix, Iy, 0, 1, &s, &ty, &tx);
  EXPECT_NEAR(s, S, 1e-9);
  Get_Y_By_Normal_Stress(1.5, S, 99, 99, N, Mx, My, A, Ix, Iy, 0, &y1, &y2);
  EXPECT_EQ(y1, y2);
  Get_Butt_Weld_Stress(1.5, y1, 0, 0, N, Mx, My, 0, A, Ix, Iy, 0, 1, &s, &ty, &tx);
  EXPECT_NEAR(s, S, 1e-9);
}

TEST(Weld, BendEquivalentIsAQuarterOfThePrincipalDifference) {
  EXPECT_EQ(Get_Bend_Eq_Stress(7, 7, 0), 0.0);
  EXPECT_DOUBLE_EQ(Get_Bend_Eq_Stress(10, 2, 0), 2.0);
  EXPECT_DOUBLE_EQ(Get_Bend_Eq_Stress(0, 0, 3), 1.5);
}

TEST(Weld, SurfaceExtremesAlongTheContours) {
  Surface_Type empty{};
  double lo = -1, hi = -1;
  EXPECT_EQ(
      Get_Surf_Butt_Weld_MinMax_Stress(&empty, 0, 0, 0, 0, 1, 0, 0, 0, 1, 1, 1, 0, 1, &lo, &hi), 0);
  EXPECT_EQ(lo, -1);
  // A circle of radius 2 about (5, 5) under Mx: |sigma| = |Mx/Ix| |y - yc|,
  // largest 2 Mx/Ix at the top and bottom, 0 where the circle meets y = yc;
  // 130 pieces by equal angle from angle 0 pass the top half a piece off.
  Section sec;
  sec.Round(2, 5, 5);
  ASSERT_EQ(Get_Surf_Butt_Weld_MinMax_Stress(sec.surface(), 5, 5, 0, 0, 0, 10, 0, 0, 1, 4, 1, 0, 1,
                                             &lo, &hi),
            1);
  EXPECT_NEAR(hi, 5.0 * std::cos(kPi / 130), 1e-12);
  EXPECT_NEAR(lo, 0.0, 1e-12);
  // An arc contour: the half disc above y = 5 reaches the top and y = 5.
  Section half;
  half.Outline({{2, 5, true, 0, 5}, {-2, 5}});
  ASSERT_EQ(Get_Surf_Butt_Weld_MinMax_Stress(half.surface(), 0, 5, 0, 0, 0, 10, 0, 0, 1, 4, 1, 0, 1,
                                             &lo, &hi),
            1);
  EXPECT_NEAR(hi, 5.0, 1e-12);
  EXPECT_NEAR(lo, 0.0, 1e-12);
}

}  // namespace
