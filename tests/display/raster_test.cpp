// Raster primitives in world coordinates: mapping, clipping, regions.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "support/capture.h"
#include "support/surface.h"

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr COLORREF kInk = RGB(0, 0, 0);
constexpr COLORREF kPaper = RGB(255, 255, 255);

// A 200 x 200 surface showing the world square (0, 0)-(100, 100), y up:
// 2 pixels per world unit, world (0, 0) at pixel (0, 200).
const Coord_Syst kView = World_View(200, 200, 100, 100);

// The region's box (left, top, right, bottom); the region is deleted.
std::vector<LONG> Box(HRGN rgn) {
  RECT r{};
  GetRgnBox(rgn, &r);
  DeleteObject(rgn);
  return {r.left, r.top, r.right, r.bottom};
}

}  // namespace

TEST(Raster, LineIsClippedToTheWorldRectangle) {
  const Coord_Syst& v = kView;
  Surface full(200, 200), clipped(200, 200);
  // Reference: the same line drawn from its clipped ends by hand.
  EXPECT_NE(rLine_2p(clipped.dc(), &v.world, &v.window, -50, 20, 150, 70), 0);
  int32_t ax, ay, bx, by;
  WPtoLP(&v.world, &v.window, 0, 32.5, &ax, &ay);
  WPtoLP(&v.world, &v.window, 100, 57.5, &bx, &by);
  MoveToEx(full.dc(), ax, ay, nullptr);
  LineTo(full.dc(), bx, by);
  EXPECT_EQ(clipped.Bits(), full.Bits());
  // Wholly outside: 0 and nothing drawn.
  Surface empty(200, 200);
  EXPECT_EQ(rLine_2p(empty.dc(), &v.world, &v.window, -10, -10, -5, 200), 0);
  EXPECT_TRUE(empty.Where(kPaper, false).empty());
}

TEST(Raster, CirclesAndArcsDrawOnlyTheirVisiblePart) {
  const Coord_Syst& v = kView;
  // A circle wholly inside is one ellipse; half outside, only the inside half;
  // containing the whole view or far away, nothing (result 0).
  Surface whole(200, 200);
  {
    Selected b(whole.dc(), Stock(NULL_BRUSH), false);
    EXPECT_NE(rCircle(whole.dc(), &v.world, &v.window, 50, 50, 20), 0);
  }
  Pixel_Set ink = whole.Where(kInk);
  EXPECT_TRUE(ink.count({60, 100}) && ink.count({100, 60}));  // left and top extremes
  Surface half(200, 200);
  {
    Selected b(half.dc(), Stock(NULL_BRUSH), false);
    EXPECT_NE(rCircle(half.dc(), &v.world, &v.window, 100, 50, 20), 0);
  }
  for (auto [x, y] : half.Where(kInk)) EXPECT_LE(x, 200) << x << "," << y;
  EXPECT_GT(half.Where(kInk).size(), 100u);
  Surface none(200, 200);
  EXPECT_EQ(rCircle(none.dc(), &v.world, &v.window, 50, 50, 500), 0);  // view inside it
  EXPECT_EQ(rCircle(none.dc(), &v.world, &v.window, 300, 50, 20), 0);
  EXPECT_NE(rArc(none.dc(), &v.world, &v.window, 50, 50, 20, kPi / 4, kPi / 2), 0);
  none.Clear(kPaper);
  // The arc in the left half of a circle centred on the right edge is invisible.
  EXPECT_EQ(rArc(none.dc(), &v.world, &v.window, 100, 50, 20, -kPi / 3, kPi / 3), 0);
  EXPECT_TRUE(none.Where(kPaper, false).empty());

  // An arc draws only pixels in its own angle range (upper-right quadrant).
  Surface quarter(200, 200);
  EXPECT_NE(rArc(quarter.dc(), &v.world, &v.window, 50, 50, 30, 0, kPi / 2), 0);
  Pixel_Set q = quarter.Where(kInk);
  ASSERT_FALSE(q.empty());
  for (auto [x, y] : q) {
    EXPECT_GE(x, 99);
    EXPECT_LE(y, 101);
  }
  // A huge circle (radius far beyond the logical range) passing through the
  // view is stroked where visible, near the chord it makes with the view.
  Surface huge(200, 200);
  EXPECT_NE(rCircle(huge.dc(), &v.world, &v.window, 50, -1e7 + 50, 1e7), 0);
  Pixel_Set hp = huge.Where(kInk);
  EXPECT_GE(hp.size(), 199u);
  for (auto [x, y] : hp) EXPECT_NEAR(y, 100, 1);
}

TEST(Raster, PixelCheckUsesTheWidenedRectangle) {
  const Coord_Syst& v = kView;
  Surface s(200, 200);
  // The widened rectangle runs from -10 to 110 in world units.
  EXPECT_EQ(rSetPixel(s.dc(), &v.world, &v.window, 50, 50, kInk), kInk);
  EXPECT_EQ(Get_Pixel_Checked(s.dc(), &v.world, &v.window, 50, 50), kInk);
  EXPECT_EQ(Get_Pixel_Checked(s.dc(), &v.world, &v.window, -10, 110),
            CLR_INVALID);  // off the device
  EXPECT_EQ(Get_Pixel_Checked(s.dc(), &v.world, &v.window, -10.000001, 50), CLR_INVALID);
  EXPECT_EQ(Get_Pixel_Checked(s.dc(), &v.world, &v.window, 110.000001, 50), CLR_INVALID);
  EXPECT_EQ(rSetPixel(s.dc(), &v.world, &v.window, 50, 110.5, kInk), CLR_INVALID);
  World_Window big{0, 0, 200, 200};
  Logical_Window same{0, 400, 400, -400};  // the device covers only half the view
  EXPECT_EQ(Get_Pixel_Checked(s.dc(), &big, &same, 0, 0), CLR_INVALID);  // inside, off device
}

TEST(Raster, PolygonsAndRegionsMapEveryPoint) {
  const Coord_Syst& v = kView;
  Leak_Check leaks;
  const double tri[6] = {10, 10, 90, 10, 50, 90};
  Surface s(200, 200);
  long gdi_before = GdiObjectCount();
  {
    Selected brush(s.dc(), CreateSolidBrush(kInk));
    EXPECT_NE(rPolygon(s.dc(), &v.world, &v.window, tri, 3), 0);
  }
  HRGN rgn = Create_Polygon_Rgn_W(&v.window, &v.world, tri, 3);
  ASSERT_NE(rgn, nullptr);
  // Every pixel inside the region is painted by the polygon fill.
  for (int y = 0; y < 200; y += 3) {
    for (int x = 0; x < 200; x += 3) {
      if (PtInRegion(rgn, x, y)) {
        ASSERT_EQ(GetPixel(s.dc(), x, y), kInk) << x << "," << y;
      }
    }
  }
  // The corners map to (20, 180), (180, 180), (100, 20).
  std::vector<LONG> box = Box(rgn);
  EXPECT_TRUE(std::abs(box[0] - 20) <= 1 && std::abs(box[1] - 20) <= 1 &&
              std::abs(box[2] - 180) <= 1);
  EXPECT_EQ(rPolygon(s.dc(), &v.world, &v.window, nullptr, 3), 0);
  EXPECT_EQ(rPolyline(s.dc(), &v.world, &v.window, tri, 0), 0);
  SetGlobalAllocFailure(1);
  EXPECT_EQ(rPolygon(s.dc(), &v.world, &v.window, tri, 3), 0);  // no work block
  SetGlobalAllocFailure(0);

  EXPECT_EQ(Box(Create_Rect_Rgn_W(&v.window, &v.world, 10, 90, 30, 70)),
            (std::vector<LONG>{20, 20, 60, 60}));
  HRGN e = Create_Ellipse_Rgn_W(&v.window, &v.world, 10, 90, 30, 70);
  EXPECT_TRUE(PtInRegion(e, 40, 40) && !PtInRegion(e, 21, 21));
  DeleteObject(e);

  // Clipped builders: device units, clamped into the client rectangle.
  HWND window = reinterpret_cast<HWND>(0x1234);
  SetWindowClientSize(window, 100, 100);
  EXPECT_EQ(Box(Create_Rect_Rgn_Clipped(s.dc(), window, &v, 10, 90, 90, 10)),
            (std::vector<LONG>{20, 20, 100, 100}));
  EXPECT_EQ(Box(Create_Ellipse_Rgn_Clipped(s.dc(), window, &v, 10, 90, 90, 10))[2], 100);
  box = Box(Create_Polygon_Rgn_Clipped(s.dc(), tri, 3, window, &v));
  EXPECT_TRUE(box[2] <= 100 && box[3] <= 100);
  EXPECT_EQ(GdiObjectCount(), gdi_before);
}

TEST(Coord, CursorPositionSnapsHalfWayUp) {
  // Ten logical units a world unit; the grid snap moves half-way points up.
  HWND window = reinterpret_cast<HWND>(0x5678);
  SetWindowClientOrigin(window, 100, 50);
  HDC dc = CreateCompatibleDC(nullptr);
  Coord_Syst cs{};
  cs.world = {0, 0, 100, 100};
  cs.window = {0, 1000, 1000, -1000};
  double x, y;
  SetCursorPos(100 + 124, 50 + 1000 - 124);  // world (12.4, 12.4)
  Get_World_Cursor_Pos(window, dc, &cs, &x, &y, 0);
  EXPECT_TRUE(std::fabs(x - 12.4) < 1e-12 && std::fabs(y - 12.4) < 1e-12);
  Get_World_Cursor_Pos(window, dc, &cs, &x, &y, 5);
  EXPECT_TRUE(x == 10 && y == 10);
  SetCursorPos(100 - 125, 50 + 1000 + 126);  // world (-12.5, -12.6)
  Get_World_Cursor_Pos(window, dc, &cs, &x, &y, 5);
  EXPECT_TRUE(x == -10 && y == -15);
  DeleteDC(dc);
}
