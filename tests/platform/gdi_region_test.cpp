// Regions against brute-force pixel sets, and clipping of drawing to them.
#include <gtest/gtest.h>

#include <climits>
#include <random>

#include "support/surface.h"

namespace {

constexpr int kGrid = 40;

// Region membership over the grid and a margin around it.
Pixel_Set Members(HRGN r) {
  Pixel_Set s;
  for (int y = -3; y < kGrid + 3; ++y) {
    for (int x = -3; x < kGrid + 3; ++x) {
      if (PtInRegion(r, x, y)) s.insert({x, y});
    }
  }
  return s;
}

HRGN Random_Rects(std::mt19937& rng, Pixel_Set& pixels) {
  std::uniform_int_distribution<int> c(0, kGrid), n(0, 4);
  HRGN r = CreateRectRgn(0, 0, 0, 0);
  for (int k = n(rng); k > 0; --k) {
    const int l = c(rng), t = c(rng), rr = c(rng), b = c(rng);
    HRGN one = CreateRectRgn(l, t, rr, b);
    CombineRgn(r, r, one, RGN_OR);
    DeleteObject(one);
    for (int y = std::min(t, b); y < std::max(t, b); ++y) {
      for (int x = std::min(l, rr); x < std::max(l, rr); ++x) pixels.insert({x, y});
    }
  }
  return r;
}

TEST(GdiRegion, CombineAgreesWithBruteForceOnRandomRectangles) {
  std::mt19937 rng(2024);
  for (int trial = 0; trial < 60; ++trial) {
    Pixel_Set pa, pb;
    HRGN a = Random_Rects(rng, pa), b = Random_Rects(rng, pb);
    ASSERT_EQ(Members(a), pa);
    for (int mode : {RGN_AND, RGN_OR, RGN_XOR, RGN_DIFF, RGN_COPY}) {
      Pixel_Set want;
      for (int y = -3; y < kGrid + 3; ++y) {
        for (int x = -3; x < kGrid + 3; ++x) {
          const bool ia = pa.count({x, y}), ib = pb.count({x, y});
          const bool in = mode == RGN_AND    ? ia && ib
                          : mode == RGN_OR   ? ia || ib
                          : mode == RGN_XOR  ? ia != ib
                          : mode == RGN_DIFF ? ia && !ib
                                             : ia;
          if (in) want.insert({x, y});
        }
      }
      HRGN out = CreateRectRgn(0, 0, 0, 0);
      const int type = CombineRgn(out, a, b, mode);
      EXPECT_EQ(Members(out), want) << "mode " << mode;
      // The type and box follow from the set.
      RECT box, want_box{0, 0, 0, 0};
      if (!want.empty()) want_box = {kGrid, kGrid, -kGrid, -kGrid};
      for (auto [x, y] : want) {
        want_box = {std::min<LONG>(want_box.left, x), std::min<LONG>(want_box.top, y),
                    std::max<LONG>(want_box.right, x + 1), std::max<LONG>(want_box.bottom, y + 1)};
      }
      const size_t area = size_t(want_box.right - want_box.left) * (want_box.bottom - want_box.top);
      EXPECT_EQ(GetRgnBox(out, &box), type);
      EXPECT_TRUE(box.left == want_box.left && box.top == want_box.top &&
                  box.right == want_box.right && box.bottom == want_box.bottom);
      EXPECT_EQ(type, want.empty()          ? NULLREGION
                      : want.size() == area ? SIMPLEREGION
                                            : COMPLEXREGION);
      // Equal sets have equal regions however they were built.
      HRGN again = CreateRectRgn(0, 0, 0, 0);
      CombineRgn(again, b, a, mode);
      if (mode != RGN_DIFF && mode != RGN_COPY) {
        EXPECT_TRUE(EqualRgn(out, again));
      }
      DeleteObject(again);
      DeleteObject(out);
    }
    // The destination may be a source.
    Pixel_Set both = pa;
    both.insert(pb.begin(), pb.end());
    CombineRgn(a, a, b, RGN_OR);
    EXPECT_EQ(Members(a), both);
    DeleteObject(a);
    DeleteObject(b);
  }
}

TEST(GdiRegion, ShapesMatchTheirFiguresAndFillOffsetAndFrame) {
  // Elliptic and polygon regions are the pixels that Ellipse and Polygon
  // fill with a null pen; FillRgn paints the members.
  Surface s(40, 30);
  const POINT tri[] = {{2, 3}, {37, 12}, {9, 28}};
  HRGN e = CreateEllipticRgn(3, 2, 36, 27), p = CreatePolygonRgn(tri, 3, ALTERNATE);
  {
    Selected brush(s.dc(), Stock(BLACK_BRUSH), false);
    Selected pen(s.dc(), Stock(NULL_PEN), false);
    Ellipse(s.dc(), 3, 2, 36, 27);
    EXPECT_EQ(Members(e), s.Where(RGB(0, 0, 0)));
    s.Clear(RGB(255, 255, 255));
    Polygon(s.dc(), tri, 3);
    EXPECT_EQ(Members(p), s.Where(RGB(0, 0, 0)));
  }
  EXPECT_EQ(CreatePolygonRgn(tri, 3, 7), nullptr);
  EXPECT_EQ(CreatePolygonRgn(nullptr, 3, ALTERNATE), nullptr);
  // Too many rows of varying shape is refused rather than allocated.
  EXPECT_EQ(CreateEllipticRgn(0, -100000000, 10, 100000000), nullptr);

  HRGN r = CreateRectRgn(2, 2, 10, 8);
  EXPECT_EQ(OffsetRgn(r, 1, -1), SIMPLEREGION);
  EXPECT_TRUE(PtInRegion(r, 3, 1) && PtInRegion(r, 10, 6) && !PtInRegion(r, 11, 6));
  EXPECT_EQ(OffsetRgn(r, INT_MAX, 0), ERROR);  // would leave 32 bits: unchanged
  EXPECT_TRUE(PtInRegion(r, 3, 1));
  OffsetRgn(r, -1, 1);
  // A frame two columns and one row thick: 8 x 6 minus its 4 x 4 inside.
  s.Clear(RGB(255, 255, 255));
  ASSERT_TRUE(FrameRgn(s.dc(), r, static_cast<HBRUSH>(Stock(BLACK_BRUSH)), 2, 1));
  const Pixel_Set frame = s.Where(RGB(0, 0, 0));
  EXPECT_EQ(frame.size(), 48u - 16u);
  EXPECT_TRUE(frame.count({3, 5}) && !frame.count({4, 5}) && frame.count({5, 2}));
  for (HRGN h : {e, p, r}) DeleteObject(h);
}

TEST(GdiRegion, EllipticRegionLeavesOutTheRightAndBottomEdge) {
  // Win32's elliptic region, like every region, excludes the right and
  // bottom edge of its box: it lies one pixel inside them, unlike the
  // pen-drawn Ellipse of the same box.
  HRGN e = CreateEllipticRgn(1, 1, 11, 9);
  RECT box{};
  EXPECT_EQ(GetRgnBox(e, &box), COMPLEXREGION);
  EXPECT_EQ((std::vector<LONG>{box.left, box.top, box.right, box.bottom}),
            (std::vector<LONG>{1, 1, 10, 8}));
  // Middle row 4 runs over columns 1..9, middle column 5 over rows 1..7.
  EXPECT_TRUE(PtInRegion(e, 1, 4) && PtInRegion(e, 9, 4) && !PtInRegion(e, 10, 4));
  EXPECT_TRUE(PtInRegion(e, 5, 1) && PtInRegion(e, 5, 7) && !PtInRegion(e, 5, 8));
  // FrameRgn paints the members with a 4-neighbour outside, nothing beyond.
  Surface s(12, 10);
  FrameRgn(s.dc(), e, static_cast<HBRUSH>(Stock(BLACK_BRUSH)), 1, 1);
  Pixel_Set frame;
  for (auto [x, y] : Members(e)) {
    if (!PtInRegion(e, x - 1, y) || !PtInRegion(e, x + 1, y) || !PtInRegion(e, x, y - 1) ||
        !PtInRegion(e, x, y + 1)) {
      frame.insert({x, y});
    }
  }
  EXPECT_EQ(s.Where(RGB(0, 0, 0)), frame);
  EXPECT_TRUE(frame.count({9, 4}) && !frame.count({10, 4}));
  // Too small a box for a pixel inside leaves the region empty.
  HRGN thin = CreateEllipticRgn(4, 4, 5, 9);
  EXPECT_EQ(GetRgnBox(thin, &box), NULLREGION);
  DeleteObject(thin);
  DeleteObject(e);
}

TEST(GdiRegion, ClippingDrawsExactlyTheInRegionPart) {
  HRGN clip = CreateEllipticRgn(5, 4, 45, 34);
  HRGN bar = CreateRectRgn(0, 14, 50, 20);
  CombineRgn(clip, clip, bar, RGN_XOR);
  auto draw = [](HDC dc) {
    Selected pen(dc, CreatePen(PS_SOLID, 3, RGB(0, 0, 200)));
    Selected brush(dc, CreateSolidBrush(RGB(0, 150, 0)));
    MoveToEx(dc, 0, 0, nullptr);
    LineTo(dc, 49, 37);
    Rectangle(dc, 10, 2, 30, 30);
    const POINT tri[] = {{20, 5}, {48, 36}, {2, 30}};
    Polygon(dc, tri, 3);
    Arc(dc, 1, 1, 48, 36, 0, 0, 0, 36);
    RECT r{30, 0, 40, 38};
    FillRect(dc, &r, static_cast<HBRUSH>(Stock(GRAY_BRUSH)));
    HRGN e = CreateEllipticRgn(35, 20, 50, 38);
    FillRgn(dc, e, static_cast<HBRUSH>(Stock(BLACK_BRUSH)));
    DeleteObject(e);
  };
  Surface plain(50, 38), clipped(50, 38);
  plain.Noise(3);
  clipped.Noise(3);
  const std::vector<uint32_t> original = clipped.Bits();
  EXPECT_EQ(SelectObject(clipped.dc(), clip), reinterpret_cast<HGDIOBJ>(COMPLEXREGION));
  draw(plain.dc());
  draw(clipped.dc());
  const std::vector<uint32_t> all = plain.Bits(), got = clipped.Bits();
  for (int y = 0; y < 38; ++y) {
    for (int x = 0; x < 50; ++x) {
      const size_t i = static_cast<size_t>(y) * 50 + x;
      EXPECT_EQ(got[i], PtInRegion(clip, x, y) ? all[i] : original[i]) << x << "," << y;
    }
  }
  // Outside the clipping region pixels read and write as off the surface.
  EXPECT_EQ(GetPixel(clipped.dc(), 0, 0), CLR_INVALID);
  EXPECT_EQ(SetPixel(clipped.dc(), 0, 0, 0), CLR_INVALID);
  RECT box;
  EXPECT_EQ(GetClipBox(clipped.dc(), &box), COMPLEXREGION);
  EXPECT_EQ(box.left, 0);
  EXPECT_EQ(box.right, 50);
  EXPECT_EQ(SelectClipRgn(clipped.dc(), nullptr), SIMPLEREGION);
  EXPECT_NE(GetPixel(clipped.dc(), 0, 0), CLR_INVALID);
  DeleteObject(clip);
  DeleteObject(bar);
}

}  // namespace
