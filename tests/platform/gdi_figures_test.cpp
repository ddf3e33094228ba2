// Which pixels rectangles, ellipses, arcs and polygons cover, and exclusive-or
// drawing of every figure twice.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "support/surface.h"

namespace {

constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kBlack = RGB(0, 0, 0);
constexpr COLORREF kRed = RGB(255, 0, 0);

// The picture of a surface, one character a pixel: '#' black, 'r' red,
// '.' white.
std::string Picture(const Surface& s) {
  std::string out;
  for (int y = 0; y < s.h(); ++y) {
    for (int x = 0; x < s.w(); ++x) {
      const COLORREF c = GetPixel(s.dc(), x, y);
      out += c == kBlack ? '#' : c == kRed ? 'r' : c == kWhite ? '.' : '?';
    }
    out += '\n';
  }
  return out;
}

TEST(GdiFigures, RectangleLeavesOutRightAndBottomEdges) {
  Surface s(10, 8);
  Selected brush(s.dc(), CreateSolidBrush(kRed));
  ASSERT_TRUE(Rectangle(s.dc(), 7, 6, 1, 1));  // corners in either order
  EXPECT_EQ(Picture(s),
            "..........\n"
            ".######...\n"
            ".#rrrr#...\n"
            ".#rrrr#...\n"
            ".#rrrr#...\n"
            ".######...\n"
            "..........\n"
            "..........\n");
  // With a null pen the brush covers one pixel less each way, as in Win32.
  s.Clear(kWhite);
  Selected pen(s.dc(), Stock(NULL_PEN), false);
  Rectangle(s.dc(), 1, 1, 7, 6);
  EXPECT_EQ(s.Where(kRed).size(), 5u * 4u);
  EXPECT_TRUE(s.Where(kRed).count({5, 4}));
}

TEST(GdiFigures, SmallEllipsesAreTheClassicDigitalCircles) {
  Surface s(12, 6);
  Selected brush(s.dc(), CreateSolidBrush(kRed));
  Ellipse(s.dc(), 0, 0, 5, 5);
  Ellipse(s.dc(), 6, 0, 10, 4);
  Ellipse(s.dc(), 11, 0, 12, 3);  // one column wide: a vertical line
  EXPECT_EQ(Picture(s),
            ".###...##..#\n"
            "#rrr#.#rr#.#\n"
            "#rrr#.#rr#.#\n"
            "#rrr#..##...\n"
            ".###........\n"
            "............\n");
}

TEST(GdiFigures, ArcsRunCounterClockwiseBetweenTheirRadials) {
  // Box 0..20 x 0..16, centre (10, 8) in pixel centres.
  const int l = 0, t = 0, r = 21, b = 17;
  Surface full(r, b);
  Selected hollow(full.dc(), Stock(NULL_BRUSH), false);
  Ellipse(full.dc(), l, t, r, b);
  const Pixel_Set outline = full.Where(kWhite, false);

  // Four quarters from the axis radials partition the outline.
  const POINT axis[] = {{20, 8}, {10, 0}, {0, 8}, {10, 16}};
  Surface quarters(r, b, kBlack);
  SetROP2(quarters.dc(), R2_NOT);
  for (int q = 0; q < 4; ++q) {
    const POINT a = axis[q], e = axis[(q + 1) % 4];
    Surface one(r, b);
    Arc(one.dc(), l, t, r, b, a.x, a.y, e.x, e.y);
    Arc(quarters.dc(), l, t, r, b, a.x, a.y, e.x, e.y);
    for (auto [x, y] : one.Where(kWhite, false)) {
      // Counter-clockwise on the screen: the first quarter is up and right.
      EXPECT_TRUE(q == 0   ? (x >= 10 && y <= 8)
                  : q == 1 ? (x <= 10 && y < 8)
                  : q == 2 ? (x < 10 && y >= 8)
                           : (x >= 10 && y > 8))
          << q << ": " << x << "," << y;
    }
  }
  // With R2_NOT a pixel drawn by two quarters would be black again.
  EXPECT_EQ(quarters.Where(kBlack, false), outline);

  // Equal radials draw the whole ellipse.
  Surface whole(r, b);
  Arc(whole.dc(), l, t, r, b, 20, 3, 30, -2);
  EXPECT_EQ(whole.Where(kWhite, false), outline);
}

TEST(GdiFigures, PolygonFillFollowsTheTopLeftRule) {
  Surface s(14, 14);
  const POINT square[] = {{1, 1}, {11, 1}, {11, 11}, {1, 11}};
  {
    Selected brush(s.dc(), CreateSolidBrush(kRed));
    Selected pen(s.dc(), Stock(NULL_PEN), false);
    Polygon(s.dc(), square, 4);
  }
  EXPECT_EQ(s.Where(kRed).size(), 100u);
  EXPECT_TRUE(s.Where(kRed).count({1, 1}) && s.Where(kRed).count({10, 10}));
  // With a pen the outline goes through the vertices (11 x 11 in all) and the
  // brush keeps off it.
  s.Clear(kWhite);
  {
    Selected brush(s.dc(), CreateSolidBrush(kRed));
    Polygon(s.dc(), square, 4);
  }
  EXPECT_EQ(s.Where(kBlack).size(), 40u);
  EXPECT_EQ(s.Where(kRed).size(), 81u);

  // Triangles of a fan share edges: filled one by one with exclusive-or,
  // each pixel of the whole is hit exactly once.
  const POINT fan[] = {{2, 1}, {12, 3}, {13, 9}, {6, 13}, {0, 8}};
  Surface whole(14, 14), parts(14, 14);
  Selected p1(whole.dc(), Stock(NULL_PEN), false), p2(parts.dc(), Stock(NULL_PEN), false);
  Selected b1(whole.dc(), Stock(BLACK_BRUSH), false),
      b2(parts.dc(), CreateSolidBrush(RGB(255, 255, 0)));
  Polygon(whole.dc(), fan, 5);
  SetROP2(parts.dc(), R2_XORPEN);
  for (int i = 1; i + 1 < 5; ++i) {
    const POINT tri[] = {fan[0], fan[i], fan[i + 1]};
    Polygon(parts.dc(), tri, 3);
  }
  EXPECT_EQ(parts.Where(RGB(0, 0, 255)), whole.Where(kBlack));
}

TEST(GdiFigures, WindingFillsWhatAlternateLeavesOpen) {
  // A five-pointed star drawn in one stroke: its centre is wound twice.
  const POINT star[] = {{20, 2}, {31, 36}, {2, 15}, {38, 15}, {9, 36}};
  Surface s(40, 40);
  Selected brush(s.dc(), Stock(BLACK_BRUSH), false);
  Selected pen(s.dc(), Stock(NULL_PEN), false);
  for (int mode : {WINDING, ALTERNATE}) {
    SetPolyFillMode(s.dc(), mode);
    Polygon(s.dc(), star, 5);
    EXPECT_EQ(GetPixel(s.dc(), 20, 20), mode == WINDING ? kBlack : kWhite);
    EXPECT_EQ(GetPixel(s.dc(), 20, 8), kBlack);  // a point of the star
    s.Clear(kWhite);
  }
}

TEST(GdiFigures, ExclusiveOrTwiceRestoresEveryFigure) {
  const POINT poly[] = {{3, 4}, {50, 9}, {30, 40}, {45, 44}, {5, 35}, {20, 20}};
  const std::vector<std::pair<std::string, std::function<void(HDC)>>> figures = {
      {"line",
       [](HDC dc) {
         MoveToEx(dc, 2, 40, nullptr);
         LineTo(dc, 55, 3);
       }},
      {"polyline", [&](HDC dc) { Polyline(dc, poly, 6); }},
      {"polygon", [&](HDC dc) { Polygon(dc, poly, 6); }},
      {"rectangle", [](HDC dc) { Rectangle(dc, 5, 6, 40, 30); }},
      {"ellipse", [](HDC dc) { Ellipse(dc, 4, 3, 53, 41); }},
      {"arc", [](HDC dc) { Arc(dc, 4, 3, 53, 41, 60, 0, 0, 40); }},
  };
  struct Pen_Case {
    int style, width;
  };
  for (Pen_Case pc : {Pen_Case{PS_SOLID, 1}, Pen_Case{PS_DASHDOT, 1}, Pen_Case{PS_SOLID, 5},
                      Pen_Case{PS_SOLID, 4}}) {
    for (int rop : {R2_XORPEN, R2_NOT}) {
      for (const auto& [name, draw] : figures) {
        Surface s(60, 48);
        s.Noise(11);
        const std::vector<uint32_t> before = s.Bits();
        Selected pen(s.dc(), CreatePen(pc.style, pc.width, RGB(40, 200, 90)));
        Selected brush(s.dc(), CreateSolidBrush(RGB(200, 10, 70)));
        SetROP2(s.dc(), rop);
        draw(s.dc());
        EXPECT_NE(s.Bits(), before) << name;
        draw(s.dc());
        EXPECT_EQ(s.Bits(), before)
            << name << " style " << pc.style << " width " << pc.width << " rop " << rop;
      }
    }
  }
}

}  // namespace
