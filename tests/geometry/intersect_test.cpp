// Crossings of lines with segments, circles and arcs.
#include <gtest/gtest.h>

#include <cmath>

#include "geometry/sampling.h"
#include "support/capture.h"

// A crossing at an end point's height is that end point bit for bit, so the
// point-in-contour test can recognise a ray through a vertex.
TEST(Intersect, SegmentCrossingsSnapToEndPoints) {
  Rng rnd(4);
  for (int i = 0; i < 2000; ++i) {
    double x1 = rnd(-100, 100), y1 = rnd(-100, 100), x2 = rnd(-100, 100), y2 = rnd(-100, 100);
    double xc, yc, xv, yv, y = rnd(std::fmin(y1, y2), std::fmax(y1, y2));
    EXPECT_TRUE(Cross_Horiz_Line_Segment(y2, x1, y1, x2, y2, &xc, &yc) == 1 && xc == x2);
    EXPECT_TRUE(Cross_Vert_Line_Segment(x2, x1, y1, x2, y2, &xv, &yv) == 1 && yv == y2);
    EXPECT_TRUE(Cross_Horiz_Line_Segment(y1, x1, y1, x2, y2, &xc, &yc) == 1 && xc == x1);
    ASSERT_EQ(Cross_Horiz_Line_Segment(y, x1, y1, x2, y2, &xc, &yc), 1);
    EXPECT_LT(Distance_Segment_Point(x1, y1, x2, y2, xc, yc), 1e-8);
  }
  double xc = 9, yc = 9;
  EXPECT_EQ(Cross_Horiz_Line_Segment(3.5, 0, 1, 5, 3, &xc, &yc), 0);
  EXPECT_TRUE(Cross_Horiz_Line_Segment(2, 4, 2, -1, 2, &xc, &yc) == -1 && xc == 4);  // on the line
  EXPECT_TRUE(Cross_Vert_Line_Segment(1, 1, 6, 1, 3, &xc, &yc) == -1 && yc == 6);
}

TEST(Intersect, SegmentWithSegment) {
  const struct {
    double s[8];
    int result;
    double x, y;
  } cases[] = {{{0, 0, 2, 2, 0, 2, 2, 0}, 1, 1, 1},                 // an X
               {{0, 0, 0.3, 0.7, 0.3, 0.7, 5, -1}, 1, 0.3, 0.7},    // end to end, exactly
               {{-1, 0.1, 4, 0.1, 0.3, 0.1, 0.3, 7}, 1, 0.3, 0.1},  // a T: the end exactly
               {{0, 0, 1, 1, 2, 2, 3, 3}, 0, 0, 0},                 // collinear apart
               {{0, 0, 2, 2, 1, 1, 3, 3}, -1, 0, 0},                // collinear overlapping
               {{0, 0, 1, 1, 3, 3, 1, 1}, 1, 1, 1},                 // collinear, one common end
               {{0, 0, 1, 0, 2, -1, 2, 1}, 0, 0, 0},                // the lines cross beyond B
               {{2, 0, 2, 0, 0, 0, 4, 0}, 1, 2, 0},                 // a point on the segment
               {{2, 1, 2, 1, 2, 3, 2, 3}, 0, 0, 0}};                // two points apart
  for (const auto& c : cases) {
    double x = 0, y = 0;
    const double* s = c.s;
    EXPECT_EQ(Cross_2Segment(s[0], s[1], s[2], s[3], s[4], s[5], s[6], s[7], &x, &y), c.result);
    EXPECT_TRUE(x == c.x && y == c.y) << s[0] << " " << s[1] << " " << s[2] << " " << s[3];
  }
}

// A tangent gives 1 with both outputs at the touching point.
TEST(Intersect, LineWithCircle) {
  double x1, y1, x2, y2;
  EXPECT_TRUE(Cross_Horiz_Line_Circle(5, 1, 2, 3, &x1, &y1, &x2, &y2) == 1 && x1 == 1 && x2 == 1);
  EXPECT_EQ(Cross_Horiz_Line_Circle(5.01, 1, 2, 3, &x1, &y1, &x2, &y2), 0);
  EXPECT_TRUE(Cross_Vert_Line_Circle(1, 1, 2, 3, &x1, &y1, &x2, &y2) == 2 && y1 == 5 && y2 == -1);
  EXPECT_EQ(Cross_Line_Circle(1, 1, 1, 1, 0, 0, 5, &x1, &y1, &x2, &y2), 0);  // no line
  // In the order of the line's parameter from its first point to its second.
  EXPECT_TRUE(Cross_Line_Circle(-9, 1, 9, 1, 0, 1, 5, &x1, &y1, &x2, &y2) == 2 && x1 == -5 &&
              x2 == 5);
  EXPECT_TRUE(Cross_Line_Circle(9, 1, -9, 1, 0, 1, 5, &x1, &y1, &x2, &y2) == 2 && x1 == 5 &&
              y2 == 1);
  EXPECT_TRUE(Cross_Line_Circle(5, 7, 5, -7, 0, 1, 5, &x1, &y1, &x2, &y2) == 1 && y1 == 1 &&
              y2 == 1);
}

// Arcs of every kind: a crossing clearly on the arc is reported, none
// clearly off it; a line at an end's height reports that end exactly.
TEST(Intersect, LineWithArc) {
  Rng rnd(6);
  for (int i = 0; i < 3000; ++i) {
    Test_Arc a = Random_Arc(rnd, i);
    double ex[2] = {a.x(a.a1), a.x(a.a2)}, ey[2] = {a.y(a.a1), a.y(a.a2)}, xs[2], ys[2];
    double y = i % 3 == 0 ? ey[i % 2] : a.cy + rnd(-1.1, 1.1) * a.r;
    int n = Cross_Horiz_Line_Arc(y, ex[0], ey[0], ex[1], ey[1], a.cx, a.cy, a.r, a.a1, a.a2, &xs[0],
                                 &ys[0], &xs[1], &ys[1]);
    double d = std::sqrt(a.r * a.r - (y - a.cy) * (y - a.cy));  // NaN: the line misses the circle
    int least = a.holds(a.cx + d, y, -1e-9) + a.holds(a.cx - d, y, -1e-9);
    int most = a.holds(a.cx + d, y, 1e-9) + a.holds(a.cx - d, y, 1e-9);
    EXPECT_TRUE(n >= least && n <= most) << i;
    for (int k = 0; k < n; ++k) EXPECT_NEAR(std::hypot(xs[k] - a.cx, ys[k] - a.cy), a.r, 1e-9);
    bool hit = n >= 1 && (xs[0] == ex[i % 2] || (n == 2 && xs[1] == ex[i % 2]));
    EXPECT_TRUE(hit || i % 3 != 0) << i;
    // The general line through two points of the circle.
    double t[2] = {rnd(0, 7), rnd(0, 7)};
    n = Cross_Line_Arc(a.x(t[0]), a.y(t[0]), a.x(t[1]), a.y(t[1]), a.cx, a.cy, a.r, a.a1, a.a2,
                       &xs[0], &ys[0], &xs[1], &ys[1]);
    least = a.holds(a.x(t[0]), a.y(t[0]), -1e-7) + a.holds(a.x(t[1]), a.y(t[1]), -1e-7);
    most = a.holds(a.x(t[0]), a.y(t[0]), 1e-7) + a.holds(a.x(t[1]), a.y(t[1]), 1e-7);
    EXPECT_TRUE(n >= least && n <= most) << i;
  }
  // Touching the top of an arc through pi/2 counts twice (as crossing in and
  // out); the vertical crossing reports the lower point first.
  double xa, ya, xb, yb;
  EXPECT_TRUE(Cross_Horiz_Line_Arc(3, 3, 0, -3, 0, 0, 0, 3, 0, kPi, &xa, &ya, &xb, &yb) == 2 &&
              xa == 0 && xb == 0);
  EXPECT_EQ(Cross_Horiz_Line_Arc(-1, 3, 0, -3, 0, 0, 0, 3, 0, kPi, &xa, &ya, &xb, &yb), 0);
  EXPECT_EQ(Cross_Vert_Line_Arc(0, 0, 0, 2, -2, 4, &xa, &ya, &xb, &yb), 2);
  EXPECT_TRUE(std::fabs(ya + 2) < 1e-15 && std::fabs(yb - 2) < 1e-15);
  EXPECT_EQ(Cross_Vert_Line_Arc(0, 0, 0, 2, 5, 1, &xa, &ya, &xb, &yb), 0);  // gap around pi/2
  EXPECT_TRUE(Cross_Vert_Line_Arc(2, 0, 0, 2, -1, 1, &xa, &ya, &xb, &yb) == 1 && ya == yb);
}
