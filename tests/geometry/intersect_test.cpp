// Crossings of lines with segments, circles and arcs.
#include <gtest/gtest.h>

#include <cmath>

#include "geometry/sampling.h"
#include "support/capture.h"

// A crossing at an end point's height is that end point bit for bit, in
// both directions; elsewhere it lies on the segment.
TEST(Intersect, SegmentCrossingsSnapToEndPoints) {
  Rng rnd(4);
  for (int i = 0; i < 2000; ++i) {
    double x1 = rnd(-100, 100), y1 = rnd(-100, 100), x2 = rnd(-100, 100), y2 = rnd(-100, 100);
    double xc, yc;
    ASSERT_EQ(Cross_Horiz_Line_Segment(y2, x1, y1, x2, y2, &xc, &yc), 1);
    EXPECT_EQ(xc, x2);
    ASSERT_EQ(Cross_Horiz_Line_Segment(y1, x1, y1, x2, y2, &xc, &yc), 1);
    EXPECT_EQ(xc, x1);
    ASSERT_EQ(Cross_Vert_Line_Segment(x2, x1, y1, x2, y2, &xc, &yc), 1);
    EXPECT_EQ(yc, y2);
    EXPECT_EQ(xc, x2);
    double y = rnd(std::fmin(y1, y2), std::fmax(y1, y2));
    ASSERT_EQ(Cross_Horiz_Line_Segment(y, x1, y1, x2, y2, &xc, &yc), 1);
    EXPECT_LT(Distance_Segment_Point(x1, y1, x2, y2, xc, yc), 1e-8);
  }
  double xc = 9, yc = 9;
  EXPECT_EQ(Cross_Horiz_Line_Segment(3.5, 0, 1, 5, 3, &xc, &yc), 0);
  EXPECT_EQ(xc, 9);
  EXPECT_EQ(Cross_Horiz_Line_Segment(2, 4, 2, -1, 2, &xc, &yc), -1);  // lies on the line
  EXPECT_EQ(xc, 4);
  EXPECT_EQ(Cross_Vert_Line_Segment(1, 1, 6, 1, 3, &xc, &yc), -1);
  EXPECT_EQ(yc, 6);
}

TEST(Intersect, SegmentWithSegment) {
  double x = 0, y = 0;
  EXPECT_EQ(Cross_2Segment(0, 0, 2, 2, 0, 2, 2, 0, &x, &y), 1);
  EXPECT_EQ(x, 1);
  EXPECT_EQ(y, 1);
  EXPECT_EQ(Cross_2Segment(0, 0, 0.3, 0.7, 0.3, 0.7, 5, -1, &x, &y), 1);  // end to end
  EXPECT_EQ(x, 0.3);
  EXPECT_EQ(y, 0.7);
  EXPECT_EQ(Cross_2Segment(-1, 0.1, 4, 0.1, 0.3, 0.1, 0.3, 7, &x, &y), 1);  // T junction
  EXPECT_EQ(x, 0.3);
  EXPECT_EQ(y, 0.1);
  EXPECT_EQ(Cross_2Segment(0, 0, 1, 1, 2, 2, 3, 3, &x, &y), 0);   // collinear apart
  EXPECT_EQ(Cross_2Segment(0, 0, 2, 2, 1, 1, 3, 3, &x, &y), -1);  // overlapping
  EXPECT_EQ(Cross_2Segment(0, 0, 1, 1, 3, 3, 1, 1, &x, &y), 1);   // collinear, one point
  EXPECT_EQ(x, 1);
  EXPECT_EQ(Cross_2Segment(0, 0, 1, 0, 0, 1, 1, 1, &x, &y), 0);   // parallel
  EXPECT_EQ(Cross_2Segment(0, 0, 1, 0, 2, -1, 2, 1, &x, &y), 0);  // lines cross beyond B
  EXPECT_EQ(Cross_2Segment(2, 0, 2, 0, 0, 0, 4, 0, &x, &y), 1);   // a point on the segment
  EXPECT_EQ(x, 2);
  EXPECT_EQ(Cross_2Segment(2, 1, 2, 1, 2, 1, 2, 1, &x, &y), 1);
  EXPECT_EQ(Cross_2Segment(2, 1, 2, 1, 2, 3, 2, 3, &x, &y), 0);
}

// Circles: tangent, order of the two crossings, general lines.
TEST(Intersect, LineWithCircle) {
  double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  EXPECT_EQ(Cross_Horiz_Line_Circle(5, 1, 2, 3, &x1, &y1, &x2, &y2), 1);  // y = cy + r
  EXPECT_EQ(x1, 1);
  EXPECT_EQ(x2, 1);
  EXPECT_EQ(y2, 5);
  EXPECT_EQ(Cross_Horiz_Line_Circle(5.01, 1, 2, 3, &x1, &y1, &x2, &y2), 0);
  EXPECT_EQ(Cross_Vert_Line_Circle(1, 1, 2, 3, &x1, &y1, &x2, &y2), 2);
  EXPECT_EQ(y1, 5);  // upper first
  EXPECT_EQ(y2, -1);
  EXPECT_EQ(x2, 1);
  Rng rnd(5);
  for (int i = 0; i < 1000; ++i) {
    double cx = rnd(-50, 50), cy = rnd(-50, 50), r = rnd(1, 30);
    double ax = rnd(-80, 80), ay = rnd(-80, 80), bx = rnd(-80, 80), by = rnd(-80, 80);
    int n = Cross_Line_Circle(ax, ay, bx, by, cx, cy, r, &x1, &y1, &x2, &y2);
    EXPECT_EQ(n == 2, Distance_Line_Point(ax, ay, bx, by, cx, cy) < r);
    if (n != 2) continue;
    for (auto [x, y] : {std::pair{x1, y1}, std::pair{x2, y2}}) {
      EXPECT_NEAR(std::hypot(x - cx, y - cy), r, 1e-9);
      EXPECT_LT(Distance_Line_Point(ax, ay, bx, by, x, y), 1e-9);
    }
    // In the order of the parameter from A towards B.
    EXPECT_LE(Scal_Mul(x1 - ax, y1 - ay, bx - ax, by - ay),
              Scal_Mul(x2 - ax, y2 - ay, bx - ax, by - ay));
  }
  EXPECT_EQ(Cross_Line_Circle(1, 1, 1, 1, 0, 0, 5, &x1, &y1, &x2, &y2), 0);  // no line
}

// Arcs: each crossing clearly on the arc is reported, none clearly off it,
// and a line through an end point reports that end point exactly.
TEST(Intersect, LineWithArc) {
  Rng rnd(6);
  for (int i = 0; i < 3000; ++i) {
    Arc a = Random_Arc(rnd, i);
    double ex[2] = {a.x(a.a1), a.x(a.a2)}, ey[2] = {a.y(a.a1), a.y(a.a2)};
    double y = i % 3 == 0 ? ey[i % 2] : a.cy + rnd(-1.1, 1.1) * a.r;
    double xs[2], ys[2];
    int n = Cross_Horiz_Line_Arc(y, ex[0], ey[0], ex[1], ey[1], a.cx, a.cy, a.r, a.a1, a.a2, &xs[0],
                                 &ys[0], &xs[1], &ys[1]);
    double q = a.r * a.r - (y - a.cy) * (y - a.cy);
    int expected_min = 0, expected_max = 0;
    for (double x : {a.cx + std::sqrt(std::fmax(q, 0)), a.cx - std::sqrt(std::fmax(q, 0))}) {
      if (q < 0) break;
      expected_min += On_Arc(a, x, y, -1e-9);
      expected_max += On_Arc(a, x, y, 1e-9);
    }
    EXPECT_GE(n, expected_min) << i;
    EXPECT_LE(n, expected_max) << i;
    for (int k = 0; k < n; ++k) {
      EXPECT_EQ(ys[k], y);
      EXPECT_NEAR(std::hypot(xs[k] - a.cx, y - a.cy), a.r, 1e-9);
    }
    if (i % 3 == 0) {
      ASSERT_GE(n, 1) << i;
      EXPECT_TRUE(xs[0] == ex[i % 2] || (n == 2 && xs[1] == ex[i % 2])) << i;
    }
    // The general line through two points of the circle.
    double t1 = rnd(0, 7), t2 = rnd(0, 7);
    n = Cross_Line_Arc(a.x(t1), a.y(t1), a.x(t2), a.y(t2), a.cx, a.cy, a.r, a.a1, a.a2, &xs[0],
                       &ys[0], &xs[1], &ys[1]);
    int want = On_Arc(a, a.x(t1), a.y(t1), -1e-7) + On_Arc(a, a.x(t2), a.y(t2), -1e-7);
    EXPECT_GE(n, want) << i;
    EXPECT_LE(n, On_Arc(a, a.x(t1), a.y(t1), 1e-7) + On_Arc(a, a.x(t2), a.y(t2), 1e-7)) << i;
  }
  // A tangent at the top of an arc through pi/2 is reported twice (touching
  // counts as two crossings or none); the vertical crossing comes lower first.
  double xa, ya, xb, yb;
  EXPECT_EQ(Cross_Horiz_Line_Arc(3, 3, 0, -3, 0, 0, 0, 3, 0, kPi, &xa, &ya, &xb, &yb), 2);
  EXPECT_EQ(xa, 0);
  EXPECT_EQ(xb, 0);
  EXPECT_EQ(Cross_Horiz_Line_Arc(3.5, 3, 0, -3, 0, 0, 0, 3, 0, kPi, &xa, &ya, &xb, &yb), 0);
  EXPECT_EQ(Cross_Horiz_Line_Arc(-1, 3, 0, -3, 0, 0, 0, 3, 0, kPi, &xa, &ya, &xb, &yb), 0);
  EXPECT_EQ(Cross_Vert_Line_Arc(0, 0, 0, 2, -2, 4, &xa, &ya, &xb, &yb), 2);
  EXPECT_NEAR(ya, -2, 1e-15);
  EXPECT_NEAR(yb, 2, 1e-15);
  EXPECT_EQ(Cross_Vert_Line_Arc(0, 0, 0, 2, 5, 1, &xa, &ya, &xb, &yb), 0);   // gap around pi/2
  EXPECT_EQ(Cross_Vert_Line_Arc(2, 0, 0, 2, -1, 1, &xa, &ya, &xb, &yb), 1);  // tangent
  EXPECT_EQ(ya, yb);
}
