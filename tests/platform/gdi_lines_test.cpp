// Which pixels lines, polylines and dashed pens cover.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "support/surface.h"

namespace {

constexpr COLORREF kWhite = RGB(255, 255, 255);

Pixel_Set Line_Pixels(int x0, int y0, int x1, int y1, int w = 24, int h = 24) {
  Surface s(w, h);
  MoveToEx(s.dc(), x0, y0, nullptr);
  EXPECT_TRUE(LineTo(s.dc(), x1, y1));
  return s.Where(kWhite, false);
}

TEST(GdiLines, SmallLinesCoverHandDerivedPixels) {
  // The end pixel is left out; a tie in the minor coordinate goes to the
  // smaller device coordinate whichever way the line runs.
  EXPECT_EQ(Line_Pixels(0, 0, 4, 1), (Pixel_Set{{0, 0}, {1, 0}, {2, 0}, {3, 1}}));
  EXPECT_EQ(Line_Pixels(4, 1, 0, 0), (Pixel_Set{{4, 1}, {3, 1}, {2, 0}, {1, 0}}));
  EXPECT_EQ(Line_Pixels(0, 0, 1, 4), (Pixel_Set{{0, 0}, {0, 1}, {0, 2}, {1, 3}}));
  EXPECT_EQ(Line_Pixels(3, 3, 0, 0), (Pixel_Set{{3, 3}, {2, 2}, {1, 1}}));
  EXPECT_EQ(Line_Pixels(5, 2, 5, 5), (Pixel_Set{{5, 2}, {5, 3}, {5, 4}}));
  EXPECT_EQ(
      Line_Pixels(0, 0, 10, 3),
      (Pixel_Set{{0, 0}, {1, 0}, {2, 1}, {3, 1}, {4, 1}, {5, 1}, {6, 2}, {7, 2}, {8, 2}, {9, 3}}));
  EXPECT_TRUE(Line_Pixels(7, 7, 7, 7).empty());
}

TEST(GdiLines, RandomLinesAreConnectedAndAgreeWithTheirReverse) {
  std::mt19937 rng(7);
  std::uniform_int_distribution<int> c(0, 39);
  for (int trial = 0; trial < 300; ++trial) {
    const int x0 = c(rng), y0 = c(rng), x1 = c(rng), y1 = c(rng);
    Pixel_Set ab = Line_Pixels(x0, y0, x1, y1, 40, 40);
    Pixel_Set ba = Line_Pixels(x1, y1, x0, y0, 40, 40);
    const size_t n = static_cast<size_t>(std::max(std::abs(x1 - x0), std::abs(y1 - y0)));
    ASSERT_EQ(ab.size(), n);
    if (n == 0) continue;
    EXPECT_TRUE(ab.count({x0, y0}));
    EXPECT_FALSE(ab.count({x1, y1}));
    // A and B's lines are the same pixels once each gets its missing end.
    ab.insert({x1, y1});
    ba.insert({x0, y0});
    EXPECT_EQ(ab, ba) << x0 << "," << y0 << " - " << x1 << "," << y1;
    // One pixel per step along the major axis.
    std::set<int> major;
    for (auto [x, y] : ab) major.insert(std::abs(x1 - x0) >= std::abs(y1 - y0) ? x : y);
    EXPECT_EQ(major.size(), n + 1);
  }
}

TEST(GdiLines, ClippingKeepsExactlyTheVisiblePixels) {
  // A long line crossing a small surface covers there what the same line
  // covers on a large surface, shifted by the viewport origin.
  Surface big(300, 200), small(40, 30);
  const int x0 = -120, y0 = -70, x1 = 150, y1 = 95;
  SetViewportOrgEx(big.dc(), 130, 80, nullptr);
  MoveToEx(big.dc(), x0, y0, nullptr);
  LineTo(big.dc(), x1, y1);
  MoveToEx(small.dc(), x0, y0, nullptr);
  LineTo(small.dc(), x1, y1);
  SetViewportOrgEx(big.dc(), 0, 0, nullptr);
  Pixel_Set expected;
  for (auto [x, y] : big.Where(kWhite, false)) {
    if (x - 130 >= 0 && x - 130 < 40 && y - 80 >= 0 && y - 80 < 30)
      expected.insert({x - 130, y - 80});
  }
  EXPECT_FALSE(expected.empty());
  EXPECT_EQ(small.Where(kWhite, false), expected);
  // Far outside, and absurd coordinates, draw nothing and do not fail.
  MoveToEx(small.dc(), -2000000000, 5, nullptr);
  EXPECT_TRUE(LineTo(small.dc(), 2000000000, 5));
  MoveToEx(small.dc(), 100, 100, nullptr);
  EXPECT_TRUE(LineTo(small.dc(), 200, 150));
}

TEST(GdiLines, PolylineHitsEachJointOnceAndLeavesOutTheLastPoint) {
  Surface s(30, 30, RGB(0, 0, 0));
  const POINT pts[] = {{2, 2}, {20, 2}, {20, 15}, {5, 25}, {2, 2}};
  SetROP2(s.dc(), R2_NOT);
  ASSERT_TRUE(Polyline(s.dc(), pts, 5));
  // With R2_NOT a doubly hit pixel would turn back to black.
  const Pixel_Set lit = s.Where(RGB(0, 0, 0), false);
  size_t steps = 0;
  for (int i = 0; i < 4; ++i) {
    steps += static_cast<size_t>(
        std::max(std::abs(pts[i + 1].x - pts[i].x), std::abs(pts[i + 1].y - pts[i].y)));
  }
  EXPECT_EQ(lit.size(), steps);
  EXPECT_TRUE(lit.count({20, 2}) && lit.count({20, 15}) && lit.count({2, 2}));
  EXPECT_FALSE(Polyline(s.dc(), pts, 1));
  EXPECT_FALSE(Polyline(s.dc(), nullptr, 3));
}

TEST(GdiLines, DashedWideAndNullPens) {
  Surface s(60, 20);
  {
    Selected pen(s.dc(), CreatePen(PS_DASH, 1, RGB(0, 0, 0)));
    SetBkColor(s.dc(), RGB(255, 0, 0));
    SetBkMode(s.dc(), OPAQUE);
    // Two LineTo calls: the pattern (18 on, 6 off) runs on through the second.
    MoveToEx(s.dc(), 0, 1, nullptr);
    LineTo(s.dc(), 20, 1);
    LineTo(s.dc(), 50, 1);
    for (int x = 0; x < 50; ++x) {
      EXPECT_EQ(GetPixel(s.dc(), x, 1), x % 24 < 18 ? RGB(0, 0, 0) : RGB(255, 0, 0)) << x;
    }
  }
  {
    Selected pen(s.dc(), CreatePen(PS_SOLID, 4, RGB(0, 0, 0)));
    MoveToEx(s.dc(), 10, 10, nullptr);
    LineTo(s.dc(), 30, 10);
  }
  // Four rows at every column strictly between the ends.
  for (int x = 12; x < 29; ++x) {
    int n = 0;
    for (int y = 3; y < 20; ++y) n += GetPixel(s.dc(), x, y) == RGB(0, 0, 0);
    EXPECT_EQ(n, 4) << x;
  }
  s.Clear(kWhite);
  Selected pen(s.dc(), Stock(NULL_PEN), false);
  MoveToEx(s.dc(), 0, 0, nullptr);
  LineTo(s.dc(), 59, 19);
  EXPECT_TRUE(s.Where(kWhite, false).empty());
}

}  // namespace
