// Element drawing and rubber bands on real memory contexts.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "../../examples/scene.h"
#include "display/draw_internal.h"
#include "support/capture.h"
#include "support/elements.h"
#include "support/golden.h"
#include "support/surface.h"

namespace {

constexpr COLORREF kBlack = RGB(0, 0, 0);

struct Colours {
  COLORREF c[kObject_Colors];
  Colours() { Set_Object_Colors(0, c); }
};

// Everything a drawing call must leave as it was: modes, selected objects,
// live GDI objects and memory blocks.
class State_Check {
 public:
  explicit State_Check(HDC dc)
      : dc_(dc),
        rop_(GetROP2(dc)),
        bk_(GetBkMode(dc)),
        pen_(GetCurrentObject(dc, OBJ_PEN)),
        brush_(GetCurrentObject(dc, OBJ_BRUSH)),
        objects_(GdiObjectCount()) {}
  ~State_Check() {
    EXPECT_EQ(GetROP2(dc_), rop_);
    EXPECT_EQ(GetBkMode(dc_), bk_);
    EXPECT_EQ(GetCurrentObject(dc_, OBJ_PEN), pen_);
    EXPECT_EQ(GetCurrentObject(dc_, OBJ_BRUSH), brush_);
    EXPECT_EQ(GdiObjectCount(), objects_) << "GDI objects leaked";
  }

 private:
  HDC dc_;
  int rop_, bk_;
  HGDIOBJ pen_, brush_;
  long objects_;
  Leak_Check blocks_;
};

}  // namespace

TEST(Draw, PenRuleColours) {
  Colours col;
  Coord_Syst cs = World_View(200, 150, 100, 75);
  // attribute word -> colour entry the segment is painted in
  const std::pair<int32_t, int> cases[] = {{ATTR_ORDINARY, 4},
                                           {ATTR_ORDINARY | ATTR_SELECTED, 3},
                                           {ATTR_ORDINARY | ATTR_SELECTED | ATTR_ACTIVE, 5},
                                           {ATTR_ORDINARY | ATTR_ACTIVE, 5}};
  for (auto [attr, entry] : cases) {
    Surface s(200, 150, kBlack);
    HGLOBAL h = Create_Line(10, 10, 50, 10);
    Set_Attr(h, attr);
    {
      SetROP2(s.dc(), R2_NOT);
      SetBkMode(s.dc(), OPAQUE);
      State_Check same(s.dc());
      Draw_Element(h, s.dc(), &cs, col.c);
    }
    Pixel_Set ink = s.Where(kBlack, false);
    EXPECT_EQ(ink.size(), 80u) << attr;  // 2 pixels a unit, the last left out
    EXPECT_EQ(s.Where(col.c[entry]), ink) << attr;
    Delete_Element(h);
  }
}

TEST(Draw, PolylinePiecesAndGuards) {
  Colours col;
  Coord_Syst cs = World_View(200, 150, 100, 75);
  Box_Capture boxes;
  Surface s(200, 150, kBlack);
  const double x[] = {10, 50, 50}, y[] = {10, 10, 40};
  {
    State_Check same(s.dc());
    HGLOBAL one = Create_Polyline(1, x, y);
    Draw_Element(one, s.dc(), &cs, col.c);  // one node: nothing, and the overlay pen is freed
    EXPECT_TRUE(s.Where(kBlack, false).empty());
    Delete_Element(one);
    HGLOBAL poly = Create_Polyline(3, x, y);
    Select_Words(poly, {1});                   // the second piece only
    SetPixel(s.dc(), 100, 100, RGB(1, 2, 3));  // a pixel of the selected piece
    Draw_Element(poly, s.dc(), &cs, col.c);
    // First piece in entry 4; the selected one painted in entry 3 and then
    // exclusive-or'ed with entry 3: black.
    EXPECT_EQ(s.Where(col.c[4]).size(), 80u);
    EXPECT_EQ(GetPixel(s.dc(), 100, 100), kBlack);
    EXPECT_EQ(s.Where(kBlack, false).size(), 80u);
    Delete_Element(poly);
  }
  // The polyline drawing refuses another type with its warning.
  HGLOBAL seg = Create_Line(0, 0, 1, 1);
  Draw_Polyline_Element(seg, s.dc(), &cs, col.c);
  ASSERT_EQ(boxes.shown().size(), 1u);
  const Shown_Box& box = boxes.shown()[0];
  EXPECT_TRUE(box.text == "pElem->type!=polyline" && box.caption == "Warning" &&
              box.type == MB_ICONHAND);
  // Stale, null and made-up handles draw nothing; only the auxiliary
  // drawing, which locks first, shows the guard box.
  Delete_Element(seg);
  Surface t(200, 150, kBlack);
  Draw_Element(seg, t.dc(), &cs, col.c);
  Draw_Element(0, t.dc(), &cs, col.c);
  Draw_Element(0x7777, t.dc(), &cs, col.c);
  EXPECT_EQ(boxes.shown().size(), 1u);
  Draw_Auxil_Element(t.dc(), &cs, seg, col.c);
  Draw_Auxil_Circle(t.dc(), &cs, seg, col.c);
  EXPECT_EQ(boxes.shown().size(), 3u);
  EXPECT_EQ(boxes.shown()[2].caption, "pElem==NULL");
  Objects_Array_Type no_block{5, 5, 0};
  Draw_Objects(t.dc(), &cs, &no_block, col.c);
  EXPECT_TRUE(t.Where(kBlack, false).empty());
}

namespace {

// Every rubber band with the record below, by name.
std::vector<std::pair<std::string, std::function<int(HDC, const Coord_Syst*)>>> Bands(
    const Curs_Pos_Type* c, HPEN pen) {
  const COLORREF k = RGB(90, 200, 30);
  return {
      {"Point", [=](auto d, auto s) { return Draw_Rubber_Point(d, s, c, k); }},
      {"Point_by_Index", [=](auto d, auto s) { return Draw_Rubber_Point_by_Index(d, s, c, 7, k); }},
      {"Line", [=](auto d, auto s) { return Draw_Rubber_Line(d, s, c, k); }},
      {"Line_by_Index", [=](auto d, auto s) { return Draw_Rubber_Line_by_Index(d, s, c, 6, k); }},
      {"Rectangle", [=](auto d, auto s) { return Draw_Rubber_Rectangle(d, s, c, k); }},
      {"Rectangle_CentDiag",
       [=](auto d, auto s) { return Draw_Rubber_Rectangle_CentDiag(d, s, c, k); }},
      {"Circle", [=](auto d, auto s) { return Draw_Rubber_Circle(d, s, c, k); }},
      {"Circle_by_Diam", [=](auto d, auto s) { return Draw_Rubber_Circle_by_Diam(d, s, c, k); }},
      {"Circle_TanCir", [=](auto d, auto s) { return Draw_Rubber_Circle_TanCir(d, s, c, 0, k); }},
      {"Arc2PC", [=](auto d, auto s) { return Draw_Rubber_Arc2PC(d, s, c, k); }},
      {"Arc_CenBegEnd_by_Index",
       [=](auto d, auto s) { return Draw_Rubber_Arc_CenBegEnd_by_Index(d, s, c, 1, k); }},
      {"Circle_Tan2L",
       [=](auto d, auto s) { return Draw_Rubber_Circle_Tan2L_with_Pen(d, s, c, pen); }},
      {"Line_TanCir", [=](auto d, auto s) { return Draw_Rubber_Line_TanCir(d, s, c, k); }},
      {"Auxil_Line", [=](auto d, auto s) { return Draw_Rubber_Auxil_Line(d, s, c, k); }},
      {"Auxil_Vert_Line", [=](auto d, auto s) { return Draw_Rubber_Auxil_Vert_Line(d, s, c, k); }},
      {"Auxil_Horiz_Line",
       [=](auto d, auto s) { return Draw_Rubber_Auxil_Horiz_Line(d, s, c, k); }},
      {"Circle_with_Pen",
       [=](auto d, auto s) {
         return Draw_Rubber_Circle_with_Pen(d, s, 50, 40, 45, pen);  // partly visible
       }},
      {"Circle_CenRad",
       [=](auto d, auto s) { return Draw_Rubber_Circle_CenRad_with_Pen(d, s, c, pen); }},
      {"Circle_by_Diam_with_Pen",
       [=](auto d, auto s) { return Draw_Rubber_Circle_by_Diam_with_Pen(d, s, c, pen); }},
      {"Circle_3Points",
       [=](auto d, auto s) {
         return Draw_Rubber_Circle_3Points_with_Pen(d, s, c, 3, pen) > 0 ? GetROP2(d) : -1;
       }},
  };
}

// A record whose points make every band visible: lines P0-P1 and P2-P3
// crossing, a circle (P1, x[2]) picked at P3, P4 a cursor between the lines.
Curs_Pos_Type Record() {
  Curs_Pos_Type c{};
  const double x[8] = {20, 40, 12, 80, 30, 60, 75, 90};
  const double y[8] = {15, 30, 60, 20, 40, 55, 65, 10};
  for (int i = 0; i < 8; ++i) c.x[i] = x[i], c.y[i] = y[i];
  c.count = 8;
  return c;
}

}  // namespace

TEST(Draw, EveryRubberBandDrawnTwiceRestoresThePicture) {
  Coord_Syst cs = World_View(200, 150, 100, 75);
  const Curs_Pos_Type c = Record();
  HPEN pen = CreatePen(PS_DASH, 1, RGB(200, 40, 250));
  Surface s(200, 150);
  s.Noise(7);
  const std::vector<uint32_t> noise = s.Bits();
  SetROP2(s.dc(), R2_MERGEPEN);
  for (auto& [name, band] : Bands(&c, pen)) {
    State_Check same(s.dc());
    int previous = band(s.dc(), &cs);
    EXPECT_TRUE(previous == R2_MERGEPEN || (name == "Circle_TanCir" && previous == OPAQUE))
        << name << " returned " << previous;
    EXPECT_NE(s.Bits(), noise) << name << " drew nothing";
    band(s.dc(), &cs);
    EXPECT_EQ(s.Bits(), noise) << name;
  }
  DeleteObject(pen);
}

TEST(Draw, RubberBandsRefuseBadIndexesRecordsAndPens) {
  Coord_Syst cs = World_View(200, 150, 100, 75);
  const Curs_Pos_Type c = Record();
  Surface s(200, 150);
  State_Check same(s.dc());
  HPEN stale = CreatePen(PS_SOLID, 1, 0);
  DeleteObject(stale);
  for (int bad : {-1, 8, 1 << 30})
    EXPECT_EQ(Draw_Rubber_Point_by_Index(s.dc(), &cs, &c, bad, 0), R2_COPYPEN);
  for (int bad : {-1, 7, INT32_MIN}) Draw_Rubber_Line_by_Index(s.dc(), &cs, &c, bad, 0);
  for (int bad : {-1, 6, INT32_MAX}) Draw_Rubber_Arc_CenBegEnd_by_Index(s.dc(), &cs, &c, bad, 0);
  Draw_Rubber_Line(s.dc(), &cs, nullptr, 0);
  Draw_Rubber_Circle(s.dc(), nullptr, &c, 0);
  Draw_Rubber_Circle_Tan2L_with_Pen(s.dc(), &cs, &c, stale);
  Draw_Rubber_Circle_CenRad_with_Pen(s.dc(), &cs, &c, nullptr);
  HPEN black = static_cast<HPEN>(GetStockObject(BLACK_PEN));
  EXPECT_EQ(Draw_Rubber_Circle_3Points_with_Pen(s.dc(), &cs, &c, 1, black), 0.0);
  // Refused by the three-point test: (0, 0), (1, 1), (2, 0).
  Curs_Pos_Type odd{{0, 1, 2}, {0, 1, 0}, 3};
  EXPECT_EQ(Draw_Rubber_Circle_3Points_with_Pen(s.dc(), &cs, &odd, 99, black), 0.0);
  // A deleted context: every band fails quietly and frees what it made.
  HDC gone = CreateCompatibleDC(nullptr);
  DeleteDC(gone);
  for (auto& [name, band] : Bands(&c, black)) band(gone, &cs);
  // A construction line through two points that map to one pixel.
  Curs_Pos_Type near{{50, 50.1}, {40, 40.1}, 2};
  Draw_Rubber_Auxil_Line(s.dc(), &cs, &near, 0);
  EXPECT_TRUE(s.Where(RGB(255, 255, 255), false).empty());
}

TEST(Draw, GoldenScenesRubberBandsAndSpline) {
  Leak_Check leaks;
  {
    Surface s(160, 120);
    Objects_Array_Type objects{}, aux{};
    scene::Build(&objects, &aux);
    scene::Draw(s.dc(), scene::Coordinates(160, 120), &objects, &aux);
    EXPECT_TRUE(golden::Matches_Golden(s.bitmap(), "draw_scene"));
    DeleteObjectsArray(&objects);
    DeleteObjectsArray(&aux);
  }
  {
    Coord_Syst cs = World_View(160, 120, 100, 75);
    const Curs_Pos_Type c = Record();
    HPEN pen = CreatePen(PS_SOLID, 1, RGB(0, 0, 255));
    Surface s(160, 120);
    for (auto& [name, band] : Bands(&c, pen)) band(s.dc(), &cs);
    EXPECT_TRUE(golden::Matches_Golden(s.bitmap(), "draw_rubber_bands"));
    DeleteObject(pen);
  }
  {
    // A spline of six nodes, its third piece and fourth node selected.
    Colours col;
    Coord_Syst cs = World_View(160, 120, 100, 75);
    const double x[] = {8, 25, 45, 60, 80, 92}, y[] = {10, 55, 20, 65, 30, 60};
    HGLOBAL h = Create_Spline(6, x, y, nullptr, nullptr);
    ASSERT_EQ(Calc_Spline_Coef(h), 1);
    Select_Words(h, {5, 6});
    Surface s(160, 120);
    {
      State_Check same(s.dc());
      Draw_Element(h, s.dc(), &cs, col.c);
    }
    EXPECT_TRUE(golden::Matches_Golden(s.bitmap(), "draw_spline"));
    Delete_Element(h);
  }
}
