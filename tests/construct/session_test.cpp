// One editing session from start to end: draw half a plate, fillet and
// chamfer its corners, add construction geometry on it, pick and move the
// hole, check which construction elements stayed attached and which were
// released, delete the hole, mirror the half and find the closed outline.
#include <gtest/gtest.h>

#include <cmath>

#include "support/capture.h"
#include "support/elements.h"
#include "support/surface.h"

TEST(Session, DrawFilletChamferConstructPickMoveDeleteMirrorAndFindTheContour) {
  Leak_Check leaks;
  Surface canvas(200, 100);
  // World (-100, -20) to (100, 80), one millimetre a pixel; x from 0 is the
  // right half of the plate.
  Coord_Syst cs = World_View(200, 100, 200, 100);
  cs.world.x0 = -100;
  cs.world.y0 = -20;
  COLORREF colours[kObject_Colors];
  Set_Object_Colors(0, colours);
  Objects_Array_Type objects{}, aux{};
  auto add = [&](HGLOBAL h) {
    Add_Element_In_Array_by_Handle(&objects, h);
    return h;
  };
  auto clicks = [](double x0, double y0, double x1 = 0, double y1 = 0) {
    return Cursor({{x0, y0}, {x1, y1}});
  };

  // Draw the right half of the outline and a hole.
  HGLOBAL bottom = add(Create_Line(0, 0, 60, 0));
  HGLOBAL side = add(Create_Line(60, 0, 60, 30));
  HGLOBAL step = add(Create_Line(60, 30, 25, 30));
  HGLOBAL neck = add(Create_Line(25, 30, 25, 60));
  HGLOBAL top = add(Create_Line(25, 60, 0, 60));
  HGLOBAL hole = add(Create_Circle(30, 14, 6));

  // Fillet the outer and the inner corner, chamfer the top one.
  Curs_Pos_Type c = clicks(40, 0, 60, 20);
  HGLOBAL fillet = Create_Fillet(&c, &objects, bottom, side, 10);
  ASSERT_NE(fillet, 0u);
  c = clicks(40, 30, 25, 45);
  ASSERT_NE(Create_Fillet(&c, &objects, step, neck, 6), 0u);
  c = clicks(25, 50, 10, 60);
  HGLOBAL chamfer = Create_Chamfer(&c, &objects, neck, top, 6, 6);
  ASSERT_NE(chamfer, 0u);
  double x1, y1, x2, y2;
  Get_Segment_Coord_by_Handle(bottom, &x1, &y1, &x2, &y2);
  EXPECT_EQ(x2, 50);
  Get_Segment_Coord_by_Handle(chamfer, &x1, &y1, &x2, &y2);
  EXPECT_EQ(y1, 54);
  EXPECT_EQ(x2, 19);

  // Construction geometry: a horizontal line through the hole's centre, a
  // point where it crosses the hole (built on the line first, the hole
  // second), a point on the hole, a circle centred on the hole, and a point
  // at the crossing of the bottom and the side lines.
  c = clicks(0, 14, 50, 14);
  HGLOBAL axis = Add_Auxil_Horiz_Line(&c, &aux);
  HGLOBAL crossing = Add_Point_OnLC(&c, &aux, 0, axis, hole);
  HGLOBAL on_hole = Add_Point_OnC(&c, &aux, 0, hole);
  c = clicks(30, 14, 30, 24);
  HGLOBAL ring = Add_Aux_Circle_CR(&c, &aux, hole);
  HGLOBAL corner = Add_Point_On2L(&c, &aux, 0, bottom, side);
  for (HGLOBAL h : {axis, crossing, on_hole, ring, corner}) ASSERT_NE(h, 0u);
  double px, py;
  Get_Point_Coord_by_Handle(crossing, &px, &py);
  EXPECT_EQ(px, 24);  // of the two crossings the one nearer P0
  Get_Point_Coord_by_Handle(corner, &px, &py);
  EXPECT_EQ(px, 60);
  EXPECT_EQ(py, 0);

  // Pick the hole on its rim and move the selection 10 to the right.
  EXPECT_EQ(Select_Elements(canvas.dc(), &objects, &cs, 36, 14, colours),
            Get_Element_Index_by_Handle(&objects, hole));
  int selected[32];
  int n = Get_Selected_Elem_Index(&objects, selected);
  ASSERT_EQ(n, 1);
  Objects_Array_Type moved{};
  Copy_ObjAr_by_Index(&objects, &moved, selected, n);
  Move_Objects_by_Index(&objects, selected, n, 10, 0);
  Do_Objects_Attach_Moving(&moved, &aux);
  DeleteObjectsArray_Without_El_Deleting(&moved);
  double xc, yc, r;
  Get_Circle_Param_by_Handle(hole, &xc, &yc, &r);
  EXPECT_EQ(xc, 40);
  // Built on the hole first: still attached. Built on it second: released
  // to a point on the remaining line.
  EXPECT_EQ(Get_Creation_Type(on_hole), 18);
  EXPECT_EQ(Get_Parent(on_hole, 0), hole);
  EXPECT_EQ(Get_Creation_Type(ring), 13);
  EXPECT_EQ(Get_Creation_Type(crossing), 16);
  EXPECT_EQ(Get_Parent(crossing, 0), axis);
  EXPECT_EQ(Get_Creation_Type(corner), 17);  // its lines did not move

  // Delete the selection (the hole): whatever was built on it is released.
  EXPECT_EQ(Delete_Elements(&objects, &aux, nullptr), 1);
  EXPECT_EQ(Get_Element_Index_by_Handle(&objects, hole), -1);
  EXPECT_EQ(Get_Creation_Type(on_hole), 0);
  EXPECT_EQ(Get_Creation_Type(ring), 0);
  EXPECT_EQ(objects.count, 8);

  // Mirror the half about the centre line and find the closed outline: the
  // eight pieces of each half, each once.
  c = clicks(0, 0, 0, 10);
  EXPECT_EQ(Symmetry_Objects_Line(&c, &objects, &objects, 0), 8);
  Contour_Type contour{};
  ASSERT_EQ(Search_Contour(&objects, bottom, &contour), 1);
  EXPECT_EQ(contour.count, 16);
  for (int i = 0; i < objects.count; ++i)
    EXPECT_NE(Find_ContEl(&contour, Get_Element_Handle_by_Index(&objects, i), 0, 1), -1) << i;
  Delete_El_Contour(&contour);
  // The fillet still hangs on both of its trimmed segments.
  HGLOBAL p1, p2, p3;
  Get_Parent_Elem(fillet, &p1, &p2, &p3);
  EXPECT_EQ(p1, bottom);
  EXPECT_EQ(p2, side);
  DeleteObjectsArray(&objects);
  DeleteObjectsArray(&aux);
}
