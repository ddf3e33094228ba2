// Mapping modes, MulDiv, and what other contexts, windows and system colours refuse.
#include <gtest/gtest.h>

#include <climits>

#include "support/surface.h"

namespace {

POINT Mapped(HDC dc, int x, int y, BOOL (*f)(HDC, POINT*, int)) {
  POINT p{x, y};
  EXPECT_TRUE(f(dc, &p, 1));
  return p;
}

bool operator==(POINT a, POINT b) {
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
    BOOL (*f)(HDC, POINT*, int);
    POINT from, to;
  } table[] = {
      {LPtoDP, {100, 200}, {10, 20}},     {LPtoDP, {1100, -300}, {310, 420}},
      {LPtoDP, {105, 201}, {12, 19}},     {LPtoDP, {95, 199}, {9, 21}},
      {LPtoDP, {0, 0}, {-20, 180}},       {DPtoLP, {12, 19}, {107, 201}},
      {DPtoLP, {310, 420}, {1100, -300}}, {DPtoLP, {11, 22}, {103, 198}},  // -2.5 rounds to -2
  };
  for (const auto& row : table) {
    EXPECT_TRUE(Mapped(dc, row.from.x, row.from.y, row.f) == row.to)
        << row.from.x << "," << row.from.y;
  }
  EXPECT_FALSE(SetWindowExtEx(dc, 0, 5, nullptr));  // a zero extent is refused
  EXPECT_TRUE(Mapped(dc, 1100, -300, LPtoDP) == (POINT{310, 420}));
  // Huge results are clamped, not wrapped.
  SetViewportExtEx(dc, INT_MAX, 1, nullptr);
  SetWindowExtEx(dc, 1, 1, nullptr);
  EXPECT_EQ(Mapped(dc, INT_MAX, 0, LPtoDP).x, INT_MAX);
}

TEST(GdiMapping, FiguresAreDrawnAtTheirMappedPlace) {
  // Three pixels a unit, y up from device row 60: the same figures drawn in
  // device units give the same pixels.
  Surface mapped(40, 64), direct(40, 64);
  SetMapMode(mapped.dc(), MM_ANISOTROPIC);
  SetWindowExtEx(mapped.dc(), 10, -10, nullptr);
  SetViewportExtEx(mapped.dc(), 30, 30, nullptr);
  SetViewportOrgEx(mapped.dc(), 0, 60, nullptr);
  auto draw = [](HDC dc, int pen_width, const int(&c)[12]) {
    Selected pen(dc, CreatePen(PS_SOLID, pen_width, RGB(0, 0, 0)));
    Selected brush(dc, CreateSolidBrush(RGB(0, 200, 0)));
    Rectangle(dc, c[0], c[1], c[2], c[3]);
    Ellipse(dc, c[4], c[5], c[6], c[7]);
    MoveToEx(dc, c[8], c[9], nullptr);
    LineTo(dc, c[10], c[11]);
  };
  draw(mapped.dc(), 2, {1, 2, 5, 12, 6, 1, 12, 9, 0, 19, 12, 15});
  draw(direct.dc(), 6, {3, 54, 15, 24, 18, 57, 36, 33, 0, 3, 36, 15});
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
  constexpr int kMax = INT_MAX, kMin = INT_MIN, kBig = 1 << 30;
  const struct {
    int a, b, c, want;
  } table[] = {
      {1, 1, 2, 1},         {-1, 1, 2, -1},      {3, 1, 2, 2},
      {-3, 1, 2, -2},       {5, 3, 4, 4},        {5, -3, 4, -4},
      {-5, -3, 4, 4},       {7, 1, 3, 2},        {2, 1, 3, 1},
      {1, 1, 3, 0},         {-1, 1, 3, 0},       {100, 0, 7, 0},
      {300, 286, 1080, 79}, {1, 1, 0, -1},       {kMax, 2, 2, kMax},
      {kMax, 2, 1, -1},     {kMin, 1, 1, kMin},  {kMin, -1, 1, -1},
      {kBig, 4, 2, -1},     {-kBig, 4, 2, kMin}, {1000, 1000, -3, -333333},
  };
  for (const auto& t : table) {
    EXPECT_EQ(MulDiv(t.a, t.b, t.c), t.want) << t.a << " * " << t.b << " / " << t.c;
  }
}

TEST(GdiMapping, ContextsWindowsAndSystemColoursRefuseBadInput) {
  // Information and display contexts answer questions but draw nothing.
  HDC ic = CreateICA("DISPLAY", nullptr, nullptr, nullptr);
  EXPECT_EQ(GetDeviceCaps(ic, HORZRES), 1920);
  EXPECT_FALSE(LineTo(ic, 5, 5));
  EXPECT_EQ(GetPixel(ic, 0, 0), CLR_INVALID);
  EXPECT_TRUE(DeleteDC(ic));
  EXPECT_EQ(GetDeviceCaps(ic, HORZSIZE), 0);  // deleted
  EXPECT_EQ(CreateICA("PRINTER", nullptr, nullptr, nullptr), nullptr);
  HDC display = CreateDCA("display", nullptr, nullptr, nullptr);
  EXPECT_TRUE(Rectangle(display, 0, 0, 10, 10));
  EXPECT_EQ(GetPixel(display, 1, 1), CLR_INVALID);
  DeleteDC(display);

  // A bad window is refused; one bad index refuses a whole colour change.
  RECT r{0, 0, 3, 3};
  POINT p{};
  EXPECT_FALSE(GetClientRect(reinterpret_cast<HWND>(0x999), &r));
  EXPECT_FALSE(ScreenToClient(nullptr, &p));
  const int bad[] = {COLOR_WINDOW, 31};
  const COLORREF colors[] = {RGB(1, 2, 3), RGB(4, 5, 6)};
  EXPECT_FALSE(SetSysColors(2, bad, colors));
  EXPECT_EQ(GetSysColor(COLOR_WINDOW), RGB(255, 255, 255));
  EXPECT_EQ(GetSysColor(99), 0u);
}

}  // namespace
