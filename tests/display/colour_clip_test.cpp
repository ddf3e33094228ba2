// Colour scale conversion and segment clipping.
#include <gtest/gtest.h>

#include <random>

#include <tessaline/tessaline.h>
#include "display/clip.h"

TEST(HSVtoRGB, ShiftedSectorTableAndRange) {
  const struct {
    double h, s, v, r, g, b;
  } cases[] = {
      {0, 1, 1, 1, 0, 1},          {360, 1, 1, 1, 0, 1},     {60, 1, 1, 1, 0, 0},
      {120, 1, 1, 1, 1, 0},        {240, 1, 1, 0, 1, 1},     {180, 0.5, 1, 0.5, 1, 0.5},
      {90, 0, 0.3, 0.3, 0.3, 0.3}, {300, 1, 0.5, 0, 0, 0.5},
  };
  for (const auto& c : cases) {
    double r = -1, g = -1, b = -1;
    ASSERT_EQ(HSVtoRGB(c.h, c.s, c.v, &r, &g, &b), 1) << c.h;
    EXPECT_DOUBLE_EQ(r, c.r) << c.h;
    EXPECT_DOUBLE_EQ(g, c.g) << c.h;
    EXPECT_DOUBLE_EQ(b, c.b) << c.h;
  }
  const double bad[][3] = {{-0.1, 1, 1}, {360.1, 1, 1}, {0, 1.1, 1},
                           {0, -0.1, 1}, {0, 1, 2},     {0, 1, -1}};
  for (const auto& a : bad) {
    double r = 7, g = 7, b = 7;
    EXPECT_EQ(HSVtoRGB(a[0], a[1], a[2], &r, &g, &b), 0);
    EXPECT_EQ(r + g + b, 21);  // untouched
  }
}

TEST(ClipSegment, KeepsInsideEndsAndMatchesTheVisiblePart) {
  double x1 = 2, y1 = 3, x2 = 20, y2 = 3;
  ASSERT_TRUE(Clip_Segment(10, 10, 0, 0, &x1, &y1, &x2, &y2));
  EXPECT_EQ(x1, 2);  // an inside end is kept exactly
  EXPECT_EQ(y1, 3);
  EXPECT_EQ(x2, 10);
  EXPECT_EQ(y2, 3);
  x1 = -5, y1 = -5, x2 = -1, y2 = 20;
  EXPECT_FALSE(Clip_Segment(0, 0, 10, 10, &x1, &y1, &x2, &y2));  // wholly left

  // Random segments: the clipped part lies in the box and on the segment, and
  // a segment is rejected only when a fine sampling finds no point inside.
  std::mt19937 rng(11);
  std::uniform_real_distribution<double> u(-20, 30);
  for (int i = 0; i < 5000; ++i) {
    double ax = u(rng), ay = u(rng), bx = u(rng), by = u(rng);
    double cx1 = ax, cy1 = ay, cx2 = bx, cy2 = by;
    bool kept = Clip_Segment(0, 0, 10, 10, &cx1, &cy1, &cx2, &cy2);
    bool sampled_inside = false;
    for (int k = 0; k <= 2000 && !sampled_inside; ++k) {
      double t = k / 2000.0, x = ax + (bx - ax) * t, y = ay + (by - ay) * t;
      sampled_inside = x > 0.01 && x < 9.99 && y > 0.01 && y < 9.99;
    }
    if (sampled_inside) {
      EXPECT_TRUE(kept) << i;
    }
    if (!kept) continue;
    for (double v : {cx1, cy1, cx2, cy2}) {
      EXPECT_GE(v, -1e-9);
      EXPECT_LE(v, 10 + 1e-9);
    }
    double cross1 = (bx - ax) * (cy1 - ay) - (by - ay) * (cx1 - ax);
    double cross2 = (bx - ax) * (cy2 - ay) - (by - ay) * (cx2 - ax);
    EXPECT_NEAR(cross1, 0, 1e-9 * 2500);
    EXPECT_NEAR(cross2, 0, 1e-9 * 2500);
  }
}
