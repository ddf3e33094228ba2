// Surface regions: pixels agree with point containment away from the
// outline, the two builders agree, drawing keeps the host's mapping, nothing
// leaks; and a golden picture.
#include <gtest/gtest.h>

#include <numbers>
#include <vector>

#include "contour/drawing.h"
#include "support/capture.h"
#include "support/golden.h"
#include "support/surface.h"

namespace {

constexpr double kPi = std::numbers::pi;
constexpr int kW = 160, kH = 120;

// A "D" with a circular and a square hole, and an island in the square hole
// (left out of the surface), filed from the drawing.
struct Section {
  Drawing d;
  Surface_Record s;
  Coord_Syst cs{};
  Section() {
    d.Arc(40, 40, 40, -kPi / 2, kPi / 2);
    d.Seg(40, 80, 0, 80), d.Seg(0, 80, 0, 0), d.Seg(0, 0, 40, 0);
    d.Circle(50, 40, 15);
    d.Square(8, 20, 25);
    d.Square(15, 27, 10);
    Make_Surface_From_Objects(&d.a, &s.s);
    cs.world = {-10, -5, 120, 90};
    cs.window = {0, kH, kW, -kH};
  }
  int In(int lx, int ly) {
    double x, y;
    LPtoWP(&cs.world, &cs.window, &x, &y, lx, ly);
    return Is_Point_In_Surface(&s.s, x, y);
  }
};

TEST(Region, PixelsAgreeWithContainment) {
  Section sec;
  ASSERT_EQ(sec.s.s.outer_count + sec.s.s.hole_count, 3);
  HRGN rgn = Create_Surface_Rgn(&sec.s.s, nullptr, &sec.cs);
  ASSERT_NE(rgn, nullptr);
  // Containment at every pixel's point, with a margin of two pixels.
  std::vector<int> in((kW + 4) * (kH + 4));
  auto at = [&in](int x, int y) -> int& { return in[(y + 2) * (kW + 4) + x + 2]; };
  for (int y = -2; y < kH + 2; ++y) {
    for (int x = -2; x < kW + 2; ++x) at(x, y) = sec.In(x, y);
  }
  int inside = 0;
  for (int y = 0; y < kH; ++y) {
    for (int x = 0; x < kW; ++x) {
      inside += at(x, y);
      bool near_outline = false;  // the outline passes within two pixels
      for (int dy = -2; dy <= 2; ++dy) {
        for (int dx = -2; dx <= 2; ++dx) near_outline |= at(x + dx, y + dy) != at(x, y);
      }
      if (!near_outline) {
        ASSERT_EQ(PtInRegion(rgn, x, y) != 0, at(x, y) == 1) << x << ", " << y;
      }
    }
  }
  EXPECT_GT(inside, 3000);
  // Without a context a logical unit is a pixel: the variant from the two
  // windows gives the same region.
  HRGN same = Create_Surface_Rgn1(&sec.s.s, &sec.cs.world, &sec.cs.window);
  EXPECT_TRUE(EqualRgn(rgn, same));
  DeleteObject(same);
  DeleteObject(rgn);
}

TEST(Region, DrawingPicture) {
  long objects = GdiObjectCount();
  {
    Section sec;
    Surface c(kW, kH);
    EXPECT_EQ(Draw_Surface(&sec.s.s, c.dc(), &sec.cs, RGB(120, 170, 220), RGB(20, 40, 90)), 1);
    EXPECT_TRUE(golden::Matches_Golden(c.bitmap(), "surface_region"));

    // The same region filled in device pixels from a scaled mapping, which
    // is restored afterwards.
    HRGN rgn = Create_Surface_Rgn1(&sec.s.s, &sec.cs.world, &sec.cs.window);
    SetMapMode(c.dc(), MM_ANISOTROPIC);
    SetWindowExtEx(c.dc(), 10, 10, nullptr);
    SetViewportExtEx(c.dc(), 20, 30, nullptr);
    SetWindowOrgEx(c.dc(), 5, 6, nullptr);
    EXPECT_EQ(Draw_Cont_Rgn_MM_TEXT(c.dc(), rgn, RGB(0, 255, 0), CLR_INVALID), 1);
    SIZE ext;
    POINT org;
    GetViewportExtEx(c.dc(), &ext);
    GetWindowOrgEx(c.dc(), &org);
    EXPECT_EQ(GetMapMode(c.dc()), MM_ANISOTROPIC);
    EXPECT_EQ(ext.cx * 100 + ext.cy, 2030);
    EXPECT_EQ(org.x * 100 + org.y, 506);
    SetMapMode(c.dc(), MM_TEXT);
    SetWindowOrgEx(c.dc(), 0, 0, nullptr);
    for (int y = 0; y < kH; y += 7) {
      for (int x = 0; x < kW; x += 7) {
        if (PtInRegion(rgn, x, y)) {
          ASSERT_EQ(GetPixel(c.dc(), x, y), RGB(0, 255, 0));
        }
      }
    }
    DeleteObject(rgn);
  }
  EXPECT_EQ(GdiObjectCount(), objects);
}

TEST(Region, BadInput) {
  Leak_Check leaks;
  Box_Capture boxes;
  long objects = GdiObjectCount();
  {
    Section sec;
    Surface c(kW, kH);
    EXPECT_EQ(Create_Surface_Rgn(nullptr, c.dc(), &sec.cs), nullptr);
    EXPECT_EQ(Create_Surface_Rgn(&sec.s.s, c.dc(), nullptr), nullptr);
    EXPECT_EQ(Create_Surface_Rgn1(&sec.s.s, nullptr, &sec.cs.window), nullptr);
    Coord_Syst flat = sec.cs;
    flat.world.h = 0;
    EXPECT_EQ(Create_Surface_Rgn(&sec.s.s, c.dc(), &flat), nullptr);
    EXPECT_EQ(Draw_Surface(&sec.s.s, nullptr, &sec.cs, 0, 0), 0);
    EXPECT_EQ(Draw_Cont_Rgn_MM_TEXT(c.dc(), nullptr, 0, 0), 0);
    EXPECT_EQ(Draw_Cont_Rgn_MM_TEXT(nullptr, nullptr, 0, 0), 0);
    // An empty surface gives an empty region.
    Surface_Record none;
    HRGN empty = Create_Surface_Rgn(&none.s, c.dc(), &sec.cs);
    RECT box;
    EXPECT_EQ(GetRgnBox(empty, &box), NULLREGION);
    DeleteObject(empty);
    EXPECT_TRUE(boxes.shown().empty());
  }
  EXPECT_EQ(GdiObjectCount(), objects);
}

}  // namespace
