// Projections and distances against brute-force sampling, and the vector
// layer's deliberate edge cases.
#include <gtest/gtest.h>

#include <cmath>

#include "geometry/sampling.h"
#include "support/capture.h"

// On random inputs the projection lies on the segment or arc, no sampled
// point of it is nearer, and every distance function agrees with it.
TEST(Projection, ProjectionIsTheNearestPointAndDistancesAgree) {
  Rng rnd(1);
  for (int i = 0; i < 2000; ++i) {
    Test_Arc a = Random_Arc(rnd, i);
    double px = a.cx + rnd(-60, 60), py = a.cy + rnd(-60, 60), x2 = rnd(-50, 50), y2 = rnd(-50, 50);
    double qx, qy;
    Projection_Segment_Point(a.cx, a.cy, x2, y2, px, py, &qx, &qy);
    double d = Distance_Segment_Point(a.cx, a.cy, x2, y2, px, py);
    double best = Sampled_Distance(px, py, [&](double t, double* x, double* y) {
      *x = a.cx + t * (x2 - a.cx), *y = a.cy + t * (y2 - a.cy);
    });
    EXPECT_LT(Distance_Segment_Point(a.cx, a.cy, x2, y2, qx, qy), 1e-8);
    EXPECT_NEAR(std::hypot(px - qx, py - qy), d, 1e-8);
    EXPECT_NEAR(std::sqrt(SQDistance_Segment_Point(a.cx, a.cy, x2, y2, px, py)), d, 1e-8);
    EXPECT_TRUE(best >= d - 1e-8 && best <= d + 0.03) << i;

    Projection_Arc_Point(a.cx, a.cy, a.r, a.a1, a.a2, px, py, &qx, &qy);
    d = Distance_Arc_Point(a.cx, a.cy, a.r, a.a1, a.a2, px, py);
    best = Sampled_Distance(px, py, [&](double t, double* x, double* y) {
      *x = a.x(a.a1 + t * a.span()), *y = a.y(a.a1 + t * a.span());
    });
    EXPECT_TRUE(std::fabs(std::hypot(qx - a.cx, qy - a.cy) - a.r) < 1e-8 && a.holds(qx, qy, 1e-9));
    EXPECT_NEAR(std::hypot(px - qx, py - qy), d, 1e-8);
    EXPECT_DOUBLE_EQ(std::sqrt(SQDistance_Arc_Point(a.cx, a.cy, a.r, a.a1, a.a2, px, py)), d);
    EXPECT_TRUE(best >= d - 1e-8 && best <= d + a.r * 1e-3) << i;  // samples 2pi r / 4000 apart

    Projection_Circle_Point(a.cx, a.cy, a.r, px, py, &qx, &qy);
    EXPECT_NEAR(std::hypot(qx - a.cx, qy - a.cy), a.r, 1e-8);
    EXPECT_DOUBLE_EQ(Distance_Circle_Point(a.cx, a.cy, a.r, px, py), std::hypot(px - qx, py - qy));
  }
}

TEST(Projection, LineFootMirrorAndCrossingLieOnTheirLines) {
  Rng rnd(2);
  for (int i = 0; i < 2000; ++i) {
    double x[4], y[4], qx, qy, mx, my, cx, cy;
    for (int k = 0; k < 4; ++k) x[k] = rnd(-100, 100), y[k] = rnd(-100, 100);
    Projection_Line_Point(x[0], y[0], x[1], y[1], x[2], y[2], &qx, &qy);
    Mirror_Point_Line(x[0], y[0], x[1], y[1], x[2], y[2], &mx, &my);
    double d = Distance_Line_Point(x[0], y[0], x[1], y[1], x[2], y[2]);
    EXPECT_LT(Distance_Line_Point(x[0], y[0], x[1], y[1], qx, qy), 1e-6);
    EXPECT_NEAR(std::hypot(x[2] - qx, y[2] - qy), d, 1e-6);
    EXPECT_NEAR(std::hypot((x[2] + mx) / 2 - qx, (y[2] + my) / 2 - qy), 0, 1e-6);
    ASSERT_EQ(Cross_2Line(x[0], y[0], x[1], y[1], x[2], y[2], x[3], y[3], &cx, &cy), 1);
    double sin_angle = std::fabs(Vect_Mul(x[1] - x[0], y[1] - y[0], x[3] - x[2], y[3] - y[2])) /
                       std::hypot(x[1] - x[0], y[1] - y[0]) / std::hypot(x[3] - x[2], y[3] - y[2]);
    double tol = 1e-7 * (1 + std::hypot(cx, cy)) / sin_angle;
    EXPECT_LT(Distance_Line_Point(x[0], y[0], x[1], y[1], cx, cy), tol);
    EXPECT_LT(Distance_Line_Point(x[2], y[2], x[3], y[3], cx, cy), tol);
  }
  double x = 7, y = 7;
  EXPECT_TRUE(Cross_2Line(0, 0, 1, 1, 0, 1, 2, 3, &x, &y) == 0 && x == 7);  // parallel
  EXPECT_TRUE(Cross_2Line(-1, 0, 3, 0, 0, -2, 0, 5, &x, &y) == 1 && x == 0 && y == 0);
  Projection_Segment_Point(0, 0, 2, 0, 5, 1, &x, &y);  // beyond B: B itself
  EXPECT_TRUE(x == 2 && y == 0);
}

// The centre, the ends and points on the circle of an arc through angle 0,
// and the gap of an arc short of a full turn.
TEST(Projection, ArcSpecialPoints) {
  Test_Arc a{1, 2, 5, 5 * kPi / 3, kPi / 3};
  double qx, qy;
  auto off = [&](double x, double y) { return std::hypot(qx - x, qy - y); };
  Projection_Arc_Point(1, 2, 5, a.a1, a.a2, 1, 2, &qx, &qy);
  EXPECT_TRUE(off(1, 2) == 0 && Distance_Arc_Point(1, 2, 5, a.a1, a.a2, 1, 2) == 5);
  Projection_Circle_Point(1, 2, 5, 1, 2, &qx, &qy);
  EXPECT_TRUE(off(1, 2) == 0 && Distance_Circle_Point(1, 2, 5, 1, 2) == 5);
  Projection_Circle_Point(1, 2, 5, 1, -3, &qx, &qy);
  EXPECT_EQ(off(1, -3), 0);  // |P - C| == r exactly: P itself
  Projection_Arc_Point(1, 2, 5, a.a1, a.a2, 6, 2, &qx, &qy);
  EXPECT_LT(off(6, 2), 1e-12);  // on the arc at angle 0
  Projection_Arc_Point(1, 2, 5, a.a1, a.a2, a.x(2.0), a.y(2.0), &qx, &qy);
  EXPECT_LT(off(a.x(a.a2), a.y(a.a2)), 1e-12);  // off the arc: the nearer end
  for (double e : {a.a1, a.a2})
    EXPECT_LT(Distance_Arc_Point(1, 2, 5, a.a1, a.a2, a.x(e), a.y(e)), 1e-12);
  Test_Arc full{0, 0, 1, 0.3, 0.3 + 2 * kPi - 1e-6};
  for (double gap : {3e-7, 7e-7}) {  // nearer the first end, then the second
    Projection_Arc_Point(0, 0, 1, full.a1, full.a2, full.x(0.3 - gap), full.y(0.3 - gap), &qx, &qy);
    double e = gap < 5e-7 ? full.a1 : full.a2;
    EXPECT_LT(off(full.x(e), full.y(e)), 1e-15);
  }
}

TEST(Projection, VectorLayerEdgeCases) {
  EXPECT_TRUE(sign(0.0) == 1 && sign(-0.0) == 1 && sign(-1e-300) == -1);
  EXPECT_TRUE(Get_Fract_Pow(3.0) == 0 && Get_Fract_Pow(0.25) == 2 && Get_Fract_Pow(0.125) == 2);
  double px = 7, py = 7;
  EXPECT_TRUE(Perp_Vect(0, 0, &px, &py) == 0 && px == 7);
  EXPECT_TRUE(Perp_Vect(0, 1, &px, &py) == 1 && px == -1 && py == 0);
  EXPECT_TRUE(Perp_Vect(-3, -4, &px, &py) == 1 && std::hypot(px - 0.8, py + 0.6) < 1e-15);
  Rotate2D(kPi / 2, 1, 0, &px, &py);  // turns clockwise
  EXPECT_TRUE(std::fabs(px) < 1e-15 && py == -1);
  // At the centre the squared distances give r, not r^2.
  EXPECT_TRUE(SQDistance_Circle_Point(1, 1, 3, 1, 1) == 3 &&
              SQDistance_Arc_Point(1, 1, 3, 0, 1, 1, 1) == 3);
}
