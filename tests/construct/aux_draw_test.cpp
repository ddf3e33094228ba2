// Auxiliary drawing: infinite construction lines across the viewport.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/capture.h"
#include "support/elements.h"
#include "support/surface.h"

namespace {

constexpr COLORREF kPaper = RGB(255, 255, 255);

}  // namespace

TEST(AuxDraw, InfiniteLinesReachTheViewportEdges) {
  Coord_Syst cs = World_View(200, 150, 100, 75);  // 2 pixels a unit
  COLORREF col[11];
  Set_Object_Colors(1, col);
  Leak_Check leaks;
  long gdi = GdiObjectCount();
  // A flat line through logical (20, 130) and (120, 110): y at x = 0 is
  // 130 + MulDiv(-20, -20, 100) = 134, at x = 200 it is 130 + MulDiv(-20, 180, 100) = 94.
  // A steep one through (40, 140) and (50, 80) runs from y = 0 to y = 150.
  struct Case {
    double x1, y1, x2, y2;
    POINT first;  // the stroke's first pixel
    int pixels;   // pixels it covers without gaps (the last one left out)
  } cases[] = {{10, 10, 60, 20, {0, 134}, 200}, {20, 5, 25, 35, {63, 0}, 150}};
  for (const Case& k : cases) {
    Surface s(200, 150);
    HGLOBAL h = Create_Line(k.x1, k.y1, k.x2, k.y2);
    Set_Attr(h, 0);
    SetBkMode(s.dc(), OPAQUE);
    SetBkColor(s.dc(), RGB(1, 1, 1));
    Draw_Auxil_Element(s.dc(), &cs, h, col);
    EXPECT_EQ(GetBkMode(s.dc()), OPAQUE);
    EXPECT_EQ(GetPixel(s.dc(), k.first.x, k.first.y), col[6]);
    // Dashed (18 on, 6 off) in a transparent background: 3/4 of the pixels.
    EXPECT_EQ(s.Where(col[6]).size(),
              static_cast<size_t>(k.pixels - k.pixels / 24 * 6 - std::max(0, k.pixels % 24 - 18)));
    EXPECT_EQ(s.Where(kPaper, false), s.Where(col[6]));
    // Drawn through the ordinary path it is the same picture.
    Surface t(200, 150);
    Draw_Element(h, t.dc(), &cs, col);
    EXPECT_EQ(t.Bits(), s.Bits());
    // With bit 0x01 set the auxiliary drawing leaves it to the ordinary one.
    Surface u(200, 150);
    Set_Attr(h, ATTR_ORDINARY);
    Draw_Auxil_Element(u.dc(), &cs, h, col);
    EXPECT_TRUE(u.Where(kPaper, false).empty());
    Delete_Element(h);
  }
  // Vertical and horizontal segments, and their rubber bands (which need no
  // element): the same line through P0.
  {
    Surface v(200, 150), r(200, 150);
    HGLOBAL vert = Create_Line(30, 5, 30, 60);
    Set_Attr(vert, 0);
    Draw_Auxil_Line(v.dc(), &cs, vert, col);
    Curs_Pos_Type c{{30, 31}, {5, 60}, 2};
    Draw_Rubber_Auxil_Vert_Line(r.dc(), &cs, &c, col[6]);
    EXPECT_EQ(v.Where(kPaper, false), r.Where(kPaper, false));
    EXPECT_EQ(v.Where(kPaper, false).size(), 150u - 150 / 24 * 6);
    Delete_Element(vert);
  }
  EXPECT_EQ(GdiObjectCount(), gdi);
}
