// Mapping modes, device capabilities, MulDiv, host windows and system colours.
#include <gtest/gtest.h>

#include <climits>

#include "support/surface.h"

namespace {

POINT Mapped(HDC dc, int x, int y, BOOL (*f)(HDC, POINT*, int)) {
  POINT p{x, y};
  EXPECT_TRUE(f(dc, &p, 1));
  return p;
}

bool Same(POINT a, POINT b) {
  return a.x == b.x && a.y == b.y;
}

TEST(GdiMapping, AnisotropicWithNegativeExtentRoundsHalvesUp) {
  Surface s(4, 4);
  HDC dc = s.dc();
  EXPECT_EQ(SetMapMode(dc, MM_ANISOTROPIC), MM_TEXT);
  SetWindowOrgEx(dc, 100, 200, nullptr);
  SetWindowExtEx(dc, 1000, -500, nullptr);
  SetViewportOrgEx(dc, 10, 20, nullptr);
  SetViewportExtEx(dc, 300, 400, nullptr);
  const struct {
    POINT logical, device;
  } table[] = {
      {{100, 200}, {10, 20}}, {{1100, -300}, {310, 420}}, {{105, 201}, {12, 19}},
      {{95, 199}, {9, 21}},   {{0, 0}, {-20, 180}},
  };
  for (const auto& row : table) {
    EXPECT_TRUE(Same(Mapped(dc, row.logical.x, row.logical.y, LPtoDP), row.device))
        << row.logical.x << "," << row.logical.y;
  }
  EXPECT_TRUE(Same(Mapped(dc, 12, 19, DPtoLP), POINT{107, 201}));
  EXPECT_TRUE(Same(Mapped(dc, 310, 420, DPtoLP), POINT{1100, -300}));
  EXPECT_TRUE(Same(Mapped(dc, 11, 22, DPtoLP), POINT{103, 198}));  // -2.5 rounds to -2
  EXPECT_FALSE(SetWindowExtEx(dc, 0, 5, nullptr));                 // a zero extent is refused
  SIZE ext;
  GetWindowExtEx(dc, &ext);
  EXPECT_TRUE(ext.cx == 1000 && ext.cy == -500);
  // Huge results are clamped, not wrapped.
  SetViewportExtEx(dc, INT_MAX, 1, nullptr);
  SetWindowExtEx(dc, 1, 1, nullptr);
  EXPECT_EQ(Mapped(dc, INT_MAX, 0, LPtoDP).x, INT_MAX);
}

TEST(GdiMapping, FixedAndIsotropicModes) {
  Surface s(4, 4);
  HDC dc = s.dc();
  SetMapMode(dc, MM_LOMETRIC);
  SIZE w, v;
  GetWindowExtEx(dc, &w);
  GetViewportExtEx(dc, &v);
  EXPECT_TRUE(w.cx == 5080 && w.cy == 2860 && v.cx == 1920 && v.cy == -1080);
  EXPECT_TRUE(Same(Mapped(dc, 254, -254, LPtoDP), POINT{96, 96}));  // one inch
  EXPECT_TRUE(SetWindowExtEx(dc, 7, 7, nullptr));                   // ignored in a fixed mode
  GetWindowExtEx(dc, &w);
  EXPECT_EQ(w.cx, 5080);

  // Isotropic: the viewport shrinks on the axis of larger scale.
  SetMapMode(dc, MM_ISOTROPIC);
  SetWindowExtEx(dc, 100, 100, nullptr);
  SetViewportExtEx(dc, 400, -200, nullptr);
  GetViewportExtEx(dc, &v);
  EXPECT_TRUE(v.cx == 200 && v.cy == -200) << v.cx << " " << v.cy;
  SetMapMode(dc, MM_TEXT);
  GetViewportExtEx(dc, &v);
  EXPECT_TRUE(v.cx == 1 && v.cy == 1);
  EXPECT_EQ(SetMapMode(dc, 99), 0);
}

TEST(GdiMapping, FiguresAreDrawnAtTheirMappedPlace) {
  // Three pixels a unit, y up from device row 60: the same figures drawn in
  // device units give the same pixels.
  Surface mapped(40, 64), direct(40, 64);
  SetMapMode(mapped.dc(), MM_ANISOTROPIC);
  SetWindowExtEx(mapped.dc(), 10, -10, nullptr);
  SetViewportExtEx(mapped.dc(), 30, 30, nullptr);
  SetViewportOrgEx(mapped.dc(), 0, 60, nullptr);
  {
    Selected pen(mapped.dc(), CreatePen(PS_SOLID, 2, RGB(0, 0, 0)));
    Selected brush(mapped.dc(), CreateSolidBrush(RGB(0, 200, 0)));
    Rectangle(mapped.dc(), 1, 2, 5, 12);
    Ellipse(mapped.dc(), 6, 1, 12, 9);
    MoveToEx(mapped.dc(), 0, 19, nullptr);
    LineTo(mapped.dc(), 12, 15);
  }
  {
    Selected pen(direct.dc(), CreatePen(PS_SOLID, 6, RGB(0, 0, 0)));
    Selected brush(direct.dc(), CreateSolidBrush(RGB(0, 200, 0)));
    Rectangle(direct.dc(), 3, 54, 15, 24);
    Ellipse(direct.dc(), 18, 57, 36, 33);
    MoveToEx(direct.dc(), 0, 3, nullptr);
    LineTo(direct.dc(), 36, 15);
  }
  EXPECT_EQ(mapped.Bits(), direct.Bits());

  // A region in logical units: each logical pixel becomes 3 x 3 device
  // pixels, rows turned upside down.
  mapped.Clear(RGB(255, 255, 255));
  HRGN e = CreateEllipticRgn(2, 3, 11, 19);
  FillRgn(mapped.dc(), e, static_cast<HBRUSH>(Stock(BLACK_BRUSH)));
  SetMapMode(mapped.dc(), MM_TEXT);
  SetViewportOrgEx(mapped.dc(), 0, 0, nullptr);
  for (int y = 0; y < 60; ++y) {
    for (int x = 0; x < 40; ++x) {
      const bool in = PtInRegion(e, x / 3, (59 - y) / 3);
      EXPECT_EQ(GetPixel(mapped.dc(), x, y) == RGB(0, 0, 0), in) << x << "," << y;
    }
  }
  DeleteObject(e);
}

TEST(GdiMapping, MulDivRoundsHalfAwayFromZero) {
  const struct {
    int a, b, c, want;
  } table[] = {
      {1, 1, 2, 1},
      {-1, 1, 2, -1},
      {3, 1, 2, 2},
      {-3, 1, 2, -2},
      {5, 3, 4, 4},
      {5, -3, 4, -4},
      {-5, -3, 4, 4},
      {7, 1, 3, 2},
      {2, 1, 3, 1},
      {1, 1, 3, 0},
      {-1, 1, 3, 0},
      {100, 0, 7, 0},
      {1, 1, 0, -1},
      {INT_MAX, 2, 2, INT_MAX},
      {INT_MAX, 2, 1, -1},
      {INT_MIN, 1, 1, INT_MIN},
      {INT_MIN, -1, 1, -1},
      {1 << 30, 4, 2, -1},
      {-(1 << 30), 4, 2, INT_MIN},
      {300, 286, 1080, 79},
      {1000, 1000, -3, -333333},
  };
  for (const auto& t : table) {
    EXPECT_EQ(MulDiv(t.a, t.b, t.c), t.want) << t.a << " * " << t.b << " / " << t.c;
  }
}

TEST(GdiMapping, DisplayMetricsAndCapabilities) {
  HDC ic = CreateICA("DISPLAY", nullptr, nullptr, nullptr);
  ASSERT_NE(ic, nullptr);
  EXPECT_EQ(GetDeviceCaps(ic, HORZSIZE), 508);
  EXPECT_EQ(GetDeviceCaps(ic, VERTSIZE), 286);
  EXPECT_EQ(GetDeviceCaps(ic, HORZRES), 1920);
  EXPECT_EQ(GetDeviceCaps(ic, VERTRES), 1080);
  EXPECT_EQ(GetDeviceCaps(ic, BITSPIXEL), 32);
  EXPECT_EQ(GetDeviceCaps(ic, PLANES), 1);
  EXPECT_EQ(GetDeviceCaps(ic, SIZEPALETTE), 0);
  EXPECT_EQ(GetDeviceCaps(ic, NUMCOLORS), -1);
  EXPECT_EQ(GetDeviceCaps(ic, ASPECTX), GetDeviceCaps(ic, ASPECTY));
  SetDisplayMetrics(400, 300, 1600, 1200);
  EXPECT_EQ(GetDeviceCaps(ic, HORZSIZE), 400);
  EXPECT_EQ(GetDeviceCaps(ic, VERTRES), 1200);
  SetDisplayMetrics(0, 0, 0, 0);  // back to the defaults
  EXPECT_EQ(GetDeviceCaps(ic, HORZRES), 1920);
  // An information context answers questions but draws nothing.
  EXPECT_FALSE(LineTo(ic, 5, 5));
  EXPECT_EQ(GetPixel(ic, 0, 0), CLR_INVALID);
  EXPECT_TRUE(DeleteDC(ic));
  EXPECT_EQ(GetDeviceCaps(ic, HORZSIZE), 0);  // deleted
  EXPECT_EQ(CreateICA("PRINTER", nullptr, nullptr, nullptr), nullptr);
  HDC display = CreateDCA("display", nullptr, nullptr, nullptr);
  EXPECT_TRUE(Rectangle(display, 0, 0, 10, 10));
  EXPECT_EQ(GetPixel(display, 1, 1), CLR_INVALID);
  DeleteDC(display);
}

TEST(GdiMapping, HostWindowsAndCursor) {
  HWND w = reinterpret_cast<HWND>(0x1234);
  SetWindowClientSize(w, 640, 480);
  SetWindowClientOrigin(w, 100, 50);
  RECT r;
  ASSERT_TRUE(GetClientRect(w, &r));
  EXPECT_TRUE(r.left == 0 && r.top == 0 && r.right == 640 && r.bottom == 480);
  SetCursorPos(150, 70);
  POINT p;
  GetCursorPos(&p);
  ASSERT_TRUE(ScreenToClient(w, &p));
  EXPECT_TRUE(p.x == 50 && p.y == 20);
  ClientToScreen(w, &p);
  EXPECT_TRUE(p.x == 150 && p.y == 70);
  EXPECT_FALSE(GetClientRect(reinterpret_cast<HWND>(0x999), &r));
  EXPECT_FALSE(ScreenToClient(nullptr, &p));
}

TEST(GdiMapping, SystemColours) {
  EXPECT_EQ(GetSysColor(COLOR_BTNFACE), RGB(240, 240, 240));
  EXPECT_EQ(GetSysColor(99), 0u);
  const int bad[] = {COLOR_WINDOW, 31};
  const COLORREF colors[] = {RGB(1, 2, 3), RGB(4, 5, 6)};
  EXPECT_FALSE(SetSysColors(2, bad, colors));
  EXPECT_EQ(GetSysColor(COLOR_WINDOW), RGB(255, 255, 255));  // nothing changed
  const int face[] = {COLOR_BTNFACE};
  ASSERT_TRUE(SetSysColors(1, face, colors));
  EXPECT_EQ(GetSysColor(COLOR_BTNFACE), RGB(1, 2, 3));
  // A system colour index + 1 serves as a brush.
  Surface s(3, 3);
  RECT r{0, 0, 3, 3};
  FillRect(s.dc(), &r, reinterpret_cast<HBRUSH>(static_cast<intptr_t>(COLOR_BTNFACE + 1)));
  EXPECT_EQ(GetPixel(s.dc(), 2, 2), RGB(1, 2, 3));
  const COLORREF back[] = {RGB(240, 240, 240)};
  SetSysColors(1, face, back);
}

}  // namespace
