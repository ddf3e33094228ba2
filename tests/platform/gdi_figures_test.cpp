// Which pixels rectangles, ellipses, arcs and polygons cover, and exclusive-or
// drawing of every figure twice.
#include <gtest/gtest.h>

#include <algorithm>
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

TEST(GdiFigures, ArcWhoseRadialsCutTheEllipseInOnePixelIsWhole) {
  // Win32's Arc draws the complete ellipse when the start and end radials
  // meet it at the same point; here both point right of the centre and
  // differ only in length, and both cut the ellipse at pixel (21, 12).
  Surface whole(24, 24), arc(24, 24);
  Selected hollow(whole.dc(), Stock(NULL_BRUSH), false);
  Ellipse(whole.dc(), 2, 2, 22, 22);
  Arc(arc.dc(), 2, 2, 22, 22, 30, 12, 90, 12);
  EXPECT_EQ(arc.Where(kBlack), whole.Where(kBlack));
  // Radials that cut it in neighbouring pixels still draw a short arc.
  arc.Clear(kWhite);
  Arc(arc.dc(), 2, 2, 22, 22, 30, 12, 30, 8);
  const Pixel_Set part = arc.Where(kBlack);
  EXPECT_FALSE(part.empty());
  EXPECT_LT(part.size(), 6u);
  EXPECT_TRUE(part.count({21, 10}));
}

TEST(GdiFigures, PenWidthIsScaledByTheMappingExceptWidthZero) {
  // A pen's width is in logical units and scales with the mapping; only
  // width 0 is one pixel under any transformation (CreatePen). At two
  // pixels a unit, the line (1, 2)-(8, 2) runs along device row 4.
  auto rows_at_column_5 = [](int width, int scale) {
    Surface s(20, 10);
    SetMapMode(s.dc(), MM_ANISOTROPIC);
    SetWindowExtEx(s.dc(), 1, 1, nullptr);
    SetViewportExtEx(s.dc(), scale, scale, nullptr);
    Selected pen(s.dc(), CreatePen(PS_SOLID, width, kBlack));
    MoveToEx(s.dc(), 1, 2, nullptr);
    LineTo(s.dc(), 8, 2);
    SetMapMode(s.dc(), MM_TEXT);  // read device pixels
    std::vector<int> rows;
    for (auto [x, y] : s.Where(kBlack)) {
      if (x == 5) rows.push_back(y);
    }
    return rows;
  };
  EXPECT_EQ(rows_at_column_5(1, 2), (std::vector<int>{3, 4}));
  EXPECT_EQ(rows_at_column_5(0, 2), (std::vector<int>{4}));
  EXPECT_EQ(rows_at_column_5(1, 1), (std::vector<int>{2}));
}

TEST(GdiFigures, InsideFramePenStaysInsideTheBox) {
  // PS_INSIDEFRAME draws the pen of a closed figure inside its bounding
  // box: the figure shrinks by half the pen's width. A solid pen of width 3
  // is centred on the border and paints one pixel outside all round.
  auto painted_box = [](int style, int width, bool ellipse) {
    Surface s(16, 14);
    Selected pen(s.dc(), CreatePen(style, width, kBlack));
    Selected brush(s.dc(), CreateSolidBrush(kRed));
    ellipse ? Ellipse(s.dc(), 2, 2, 10, 9) : Rectangle(s.dc(), 2, 2, 10, 9);
    RECT box{99, 99, -1, -1};
    for (auto [x, y] : s.Where(kWhite, false)) {
      box = RECT{std::min<LONG>(box.left, x), std::min<LONG>(box.top, y),
                 std::max<LONG>(box.right, x + 1), std::max<LONG>(box.bottom, y + 1)};
    }
    return std::vector<LONG>{box.left, box.top, box.right, box.bottom};
  };
  const std::vector<LONG> inside{2, 2, 10, 9}, spilled{1, 1, 11, 10};
  EXPECT_EQ(painted_box(PS_SOLID, 3, false), spilled);
  for (bool ellipse : {false, true}) {
    for (int width : {3, 4, 9}) {
      EXPECT_EQ(painted_box(PS_INSIDEFRAME, width, ellipse), inside)
          << "width " << width << (ellipse ? " ellipse" : " rectangle");
    }
  }
  // The brush fills what the pen leaves: three pixels in from each side.
  Surface s(16, 14);
  Selected pen(s.dc(), CreatePen(PS_INSIDEFRAME, 3, kBlack));
  Selected brush(s.dc(), CreateSolidBrush(kRed));
  Rectangle(s.dc(), 2, 2, 10, 9);
  EXPECT_EQ(s.Where(kRed), (Pixel_Set{{5, 5}, {6, 5}}));
}

TEST(GdiFigures, InvertedFillRectFillsAsPatBltWithNegativeExtent) {
  // PatBlt with a negative width or height fills from x + width + 1 up to
  // x; FillRect of an inverted rectangle does the same on each axis.
  auto filled = [](RECT r) {
    Surface s(8, 8);
    FillRect(s.dc(), &r, static_cast<HBRUSH>(Stock(BLACK_BRUSH)));
    return s.Where(kBlack);
  };
  auto block = [](int l, int t, int r, int b) {
    Pixel_Set p;
    for (int y = t; y < b; ++y) {
      for (int x = l; x < r; ++x) p.insert({x, y});
    }
    return p;
  };
  EXPECT_EQ(filled(RECT{2, 1, 5, 3}), block(2, 1, 5, 3));  // columns 2..4
  EXPECT_EQ(filled(RECT{5, 1, 2, 3}), block(3, 1, 6, 3));  // columns 3..5
  EXPECT_EQ(filled(RECT{1, 5, 3, 2}), block(1, 3, 3, 6));  // rows 3..5
  EXPECT_EQ(filled(RECT{6, 7, 4, 4}), block(5, 5, 7, 8));
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
