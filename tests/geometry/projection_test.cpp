// Projections and distances, checked against brute-force sampling.
#include <gtest/gtest.h>

#include <cmath>

#include "geometry/sampling.h"
#include "support/capture.h"

namespace {
const double kEps = 1e-9;  // relative to the inputs' size (about 100)
}

// The projection lies on the segment, no sampled point of the segment is
// nearer, and both distance functions agree with it.
TEST(Projection, SegmentProjectionIsTheNearestPoint) {
  Rng rnd(1);
  for (int i = 0; i < 2000; ++i) {
    double x1 = rnd(-100, 100), y1 = rnd(-100, 100), x2 = rnd(-100, 100), y2 = rnd(-100, 100);
    double px = rnd(-150, 150), py = rnd(-150, 150), qx, qy;
    Projection_Segment_Point(x1, y1, x2, y2, px, py, &qx, &qy);
    double d = std::hypot(px - qx, py - qy);
    EXPECT_LT(Distance_Line_Point(x1, y1, x2, y2, qx, qy), 100 * kEps);
    EXPECT_LE(std::fmin(qx, qy), std::fmax(std::fmax(x1, x2), std::fmax(y1, y2)) + kEps);
    double sampled = INFINITY;
    for (int j = 0; j <= 200; ++j) {
      double t = j / 200.0;
      sampled = std::fmin(sampled, std::hypot(px - x1 - t * (x2 - x1), py - y1 - t * (y2 - y1)));
    }
    EXPECT_GE(sampled, d - 100 * kEps);
    EXPECT_NEAR(Distance_Segment_Point(x1, y1, x2, y2, px, py), d, 100 * kEps);
    EXPECT_NEAR(std::sqrt(SQDistance_Segment_Point(x1, y1, x2, y2, px, py)), d, 100 * kEps);
  }
  double qx, qy;
  Projection_Segment_Point(0, 0, 2, 0, 5, 1, &qx, &qy);  // beyond B: B itself
  EXPECT_EQ(qx, 2);
  EXPECT_EQ(qy, 0);
  EXPECT_EQ(Distance_Segment_Point(0, 0, 2, 0, 5, 4), 5);
}

// Foot of the perpendicular, mirror image and the crossing of two lines.
TEST(Projection, LineFootMirrorAndCrossingLieOnTheirLines) {
  Rng rnd(2);
  for (int i = 0; i < 2000; ++i) {
    double x1 = rnd(-100, 100), y1 = rnd(-100, 100), x2 = rnd(-100, 100), y2 = rnd(-100, 100);
    double px = rnd(-100, 100), py = rnd(-100, 100), qx, qy, mx, my;
    Projection_Line_Point(x1, y1, x2, y2, px, py, &qx, &qy);
    EXPECT_LT(Distance_Line_Point(x1, y1, x2, y2, qx, qy), 1e3 * kEps);
    EXPECT_NEAR(std::hypot(px - qx, py - qy), Distance_Line_Point(x1, y1, x2, y2, px, py),
                1e3 * kEps);
    Mirror_Point_Line(x1, y1, x2, y2, px, py, &mx, &my);
    EXPECT_NEAR((px + mx) / 2, qx, 1e3 * kEps);
    EXPECT_NEAR((py + my) / 2, qy, 1e3 * kEps);

    double x3 = rnd(-100, 100), y3 = rnd(-100, 100), x4 = rnd(-100, 100), y4 = rnd(-100, 100);
    double sin_angle = std::fabs(Vect_Mul(x2 - x1, y2 - y1, x4 - x3, y4 - y3)) /
                       std::hypot(x2 - x1, y2 - y1) / std::hypot(x4 - x3, y4 - y3);
    double cx, cy;
    ASSERT_EQ(Cross_2Line(x1, y1, x2, y2, x3, y3, x4, y4, &cx, &cy), 1);
    double tol = 1e2 * kEps * (1 + std::hypot(cx, cy)) / sin_angle;
    EXPECT_LT(Distance_Line_Point(x1, y1, x2, y2, cx, cy), tol);
    EXPECT_LT(Distance_Line_Point(x3, y3, x4, y4, cx, cy), tol);
  }
  double x = 7, y = 7;
  EXPECT_EQ(Cross_2Line(0, 0, 1, 1, 0, 1, 2, 3, &x, &y), 0);  // parallel: outputs alone
  EXPECT_EQ(x, 7);
  EXPECT_EQ(Cross_2Line(-1, 0, 3, 0, 0, -2, 0, 5, &x, &y), 1);  // the axes
  EXPECT_EQ(x, 0);
  EXPECT_EQ(y, 0);
}

// Circles and arcs (arcs through angle 0 and almost full turns included):
// the projection lies on the object, no sampled point is nearer, and the
// distances of both layers agree with it and with sampling.
TEST(Projection, CircleAndArcProjectionIsTheNearestPoint) {
  Rng rnd(3);
  for (int i = 0; i < 2000; ++i) {
    Arc a = Random_Arc(rnd, i);
    double px = a.cx + rnd(-60, 60), py = a.cy + rnd(-60, 60), qx, qy;
    Projection_Circle_Point(a.cx, a.cy, a.r, px, py, &qx, &qy);
    EXPECT_NEAR(std::hypot(qx - a.cx, qy - a.cy), a.r, 100 * kEps);
    double dc = Distance_Circle_Point(a.cx, a.cy, a.r, px, py);
    EXPECT_DOUBLE_EQ(dc, std::hypot(px - qx, py - qy));
    EXPECT_NEAR(std::sqrt(SQDistance_Circle_Point(a.cx, a.cy, a.r, px, py)), dc, 100 * kEps);

    Projection_Arc_Point(a.cx, a.cy, a.r, a.a1, a.a2, px, py, &qx, &qy);
    double d = Distance_Arc_Point(a.cx, a.cy, a.r, a.a1, a.a2, px, py);
    EXPECT_NEAR(std::hypot(qx - a.cx, qy - a.cy), a.r, 100 * kEps);
    EXPECT_TRUE(On_Arc(a, qx, qy, 1e-9)) << i;
    EXPECT_NEAR(d, std::hypot(px - qx, py - qy), 100 * kEps);
    // 4000 samples lie at most r * 2pi / 8000 apart along the arc.
    double sampled = Sampled_Arc_Distance(a, px, py, 4000);
    EXPECT_GE(sampled, d - 100 * kEps);
    EXPECT_LE(sampled, d + a.r * 1e-3);
  }
}

TEST(Projection, ArcSpecialPoints) {
  // An arc through angle 0, from 300 to 60 degrees.
  Arc a{1, 2, 5, 5 * kPi / 3, kPi / 3};
  double qx, qy;
  Projection_Arc_Point(a.cx, a.cy, a.r, a.a1, a.a2, a.cx, a.cy, &qx, &qy);
  EXPECT_EQ(qx, a.cx);  // the centre projects to itself, at distance r
  EXPECT_EQ(qy, a.cy);
  EXPECT_EQ(Distance_Arc_Point(a.cx, a.cy, a.r, a.a1, a.a2, a.cx, a.cy), a.r);
  EXPECT_EQ(Distance_Circle_Point(a.cx, a.cy, a.r, a.cx, a.cy), a.r);
  EXPECT_EQ(SQDistance_Circle_Point(a.cx, a.cy, a.r, a.cx, a.cy), a.r);  // r, not r^2
  Projection_Circle_Point(a.cx, a.cy, a.r, a.cx, a.cy, &qx, &qy);
  EXPECT_EQ(qx, a.cx);
  // On the circle at angle 0, inside the arc: the point itself.
  Projection_Arc_Point(a.cx, a.cy, a.r, a.a1, a.a2, a.cx + a.r, a.cy, &qx, &qy);
  EXPECT_NEAR(qx, a.cx + a.r, 1e-12);
  EXPECT_NEAR(qy, a.cy, 1e-12);
  Projection_Circle_Point(a.cx, a.cy, a.r, a.cx, a.cy - a.r, &qx, &qy);
  EXPECT_EQ(qy, a.cy - a.r);  // |P - C| == r exactly: P itself
  // On the circle outside the arc, nearer the second end.
  Projection_Arc_Point(a.cx, a.cy, a.r, a.a1, a.a2, a.x(2.0), a.y(2.0), &qx, &qy);
  EXPECT_NEAR(qx, a.x(a.a2), 1e-12);
  EXPECT_NEAR(qy, a.y(a.a2), 1e-12);
  // At the end points; and in the gap of an arc short of a full turn.
  for (double e : {a.a1, a.a2}) {
    EXPECT_NEAR(Distance_Arc_Point(a.cx, a.cy, a.r, a.a1, a.a2, a.x(e), a.y(e)), 0, 1e-12);
  }
  Arc full{0, 0, 1, 0.3, 0.3 + 2 * kPi - 1e-6};
  for (double gap : {3e-7, 7e-7}) {  // nearer the first end, then the second
    double t = 0.3 - gap;
    Projection_Arc_Point(0, 0, 1, full.a1, full.a2, full.x(t), full.y(t), &qx, &qy);
    double e = gap < 5e-7 ? full.a1 : full.a2;
    EXPECT_NEAR(qx, full.x(e), 1e-15);
    EXPECT_NEAR(qy, full.y(e), 1e-15);
  }
}
