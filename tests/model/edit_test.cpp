// Editing whole objects arrays: picking, the selection list, deleting,
// copying, moving, sorting and the display copies that a host drags.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

#include "support/capture.h"
#include "support/elements.h"
#include "support/surface.h"

namespace {

// One logical unit per world unit, y up: world (0, 0, 100, 100).
Coord_Syst View() {
  Coord_Syst cs{};
  cs.world = {0, 0, 100, 100};
  cs.window = {0, 100, 100, -100};
  return cs;
}

int Word(HGLOBAL h, int k) {
  auto* e = static_cast<Element_Record*>(GlobalLock(h));
  HGLOBAL block = static_cast<HGLOBAL>(e->attr);
  GlobalUnlock(h);
  int w = static_cast<int32_t*>(GlobalLock(block))[k];
  GlobalUnlock(block);
  return w;
}

}  // namespace

TEST(Select, PickingTogglesWhatLiesWithinTheAperture) {
  Leak_Check leaks;
  Surface canvas(100, 100);
  Coord_Syst cs = View();
  COLORREF colours[kObject_Colors];
  Set_Object_Colors(0, colours);
  const double sx[4] = {10, 20, 30, 40}, sy[4] = {40, 45, 40, 45};
  const double px[3] = {70, 90, 90}, py[3] = {0, 0, 20};
  HGLOBAL spline = Create_Spline(4, sx, sy, nullptr, nullptr);
  Calc_Spline_Coef(spline);
  HGLOBAL aux = Create_Line(0, 90, 1, 90);
  Set_Attr(aux, 0);
  HGLOBAL arc = Create_Arc(20, 70, 8, 0, std::acos(-1.0) / 2);
  std::vector<HGLOBAL> el = {Create_Point(10, 10),
                             Create_Line(20, 20, 60, 20),
                             Create_Line(80, 80, 81, 80),
                             Create_Circle(50, 60, 10),
                             arc,
                             aux,
                             Create_Polyline(3, px, py),
                             spline};
  Objects_Array_Type a{};
  for (HGLOBAL h : el) Add_Element_In_Array_by_Handle(&a, h);
  auto pick = [&](double x, double y) {
    return Select_Elements(canvas.dc(), &a, &cs, x, y, colours);
  };
  auto selected = [&](int i) { return Get_Selected_Attr_by_Handle(el[i]); };

  EXPECT_EQ(pick(13, 12), 0);  // the point, 3.6 away
  EXPECT_EQ(selected(0), 1);
  EXPECT_EQ(pick(13, 12), 0);  // picked again: toggled back
  EXPECT_EQ(selected(0), 0);
  EXPECT_EQ(pick(40, 23.5), 1);
  EXPECT_EQ(pick(40, 24.5), -1);  // beyond the 4-unit aperture
  // A segment no longer on screen than a quarter of the aperture is picked
  // by its midpoint (80.5, 80): 3.6 from the end but 4.1 from the middle.
  EXPECT_EQ(pick(84.6, 80), -1);
  EXPECT_EQ(pick(84.2, 80), 2);
  EXPECT_EQ(pick(50, 52), 3);                                          // 2 inside the circle
  EXPECT_EQ(pick(20 + 9 * std::cos(0.7), 70 + 9 * std::sin(0.7)), 4);  // beside the arc
  EXPECT_EQ(pick(20 - 9, 70), -1);                                     // beside its missing part
  // A construction line is the infinite line: picked far from its two points.
  EXPECT_EQ(pick(50, 91), 5);
  EXPECT_EQ(selected(5), 1);
  // The polyline's second piece, and only that piece's word.
  EXPECT_EQ(pick(92, 10), 6);
  EXPECT_TRUE(!(Word(el[6], 0) & ATTR_SELECTED) && (Word(el[6], 1) & ATTR_SELECTED));
  // A spline node wins over the curve through it; between nodes the piece.
  EXPECT_EQ(pick(20.5, 45.5), 7);
  EXPECT_TRUE((Word(spline, 2) & ATTR_SELECTED) && !(Word(spline, 3) & ATTR_SELECTED));
  // Beside the curve between nodes 2 and 3, more than 4 from either node.
  EXPECT_EQ(pick(35, 42.5), 7);
  EXPECT_TRUE(Word(spline, 5) & ATTR_SELECTED);
  EXPECT_EQ(pick(95, 60), -1);  // empty space: nothing changes
  // Several hits: the last index is returned; the aperture can be widened.
  Set_Pick_Aperture(&cs, 40);
  EXPECT_EQ(Get_Pick_Aperture(&cs), 40);
  EXPECT_EQ(pick(30, 30), 7);
  Set_Pick_Aperture(&cs, -1);
  EXPECT_EQ(Get_Pick_Aperture(&cs), kDefault_Pick_Aperture);

  // Clearing: every bit goes, and the handles block keeps two more locks.
  int locks = GlobalLockCount(a.handles);
  Unselect_All_Elements(&a, canvas.dc(), &cs, colours);
  EXPECT_EQ(GlobalLockCount(a.handles), locks + 2);
  std::vector<int> list(8, -1);
  EXPECT_EQ(Get_Selected_Elem_Index(&a, list.data()), 0);

  Objects_Array_Type empty{};
  EXPECT_EQ(Select_Elements(nullptr, &empty, &cs, 0, 0, colours), -1);
  EXPECT_EQ(Select_Elements(canvas.dc(), &a, nullptr, 0, 0, colours), -1);
  DeleteObjectsArray(&a);
}

TEST(Select, TheSelectionListFollowsEachKindsRule) {
  Leak_Check leaks;
  const double xs[3] = {0, 1, 2};
  HGLOBAL one_node = Create_Polyline(1, xs, xs);  // no piece: counts as selected
  HGLOBAL poly = Create_Polyline(3, xs, xs);
  HGLOBAL spline_covered = Create_Spline(3, xs, xs, nullptr, nullptr);
  HGLOBAL spline_gap = Create_Spline(3, xs, xs, nullptr, nullptr);
  HGLOBAL circle = Create_Circle(0, 0, 1);
  Select_Words(poly, {0});               // piece 1 not selected
  Select_Words(spline_covered, {1, 3});  // every word within reach of a selected one
  Select_Words(spline_gap, {0, 4});      // words 1..3 uncovered
  Set_Element_Select_Attribute(circle, 1);
  Objects_Array_Type a{};
  for (HGLOBAL h : {one_node, poly, spline_covered, spline_gap, circle})
    Add_Element_In_Array_by_Handle(&a, h);
  std::vector<int> list(5, -1);
  ASSERT_EQ(Get_Selected_Elem_Index(&a, list.data()), 3);
  EXPECT_EQ(list, (std::vector<int>{0, 2, 4, -1, -1}));
  EXPECT_EQ(Get_Selected_Elem_Index(&a, nullptr), 0);
  DeleteObjectsArray(&a);
}

TEST(Edit, DeletingReleasesChildrenAndKeepsSplinesAndPolylines) {
  Leak_Check leaks;
  const double xs[3] = {0, 1, 2};
  HGLOBAL point = Create_Point(0, 0), line = Create_Line(0, 0, 1, 0),
          circle = Create_Circle(0, 0, 1);
  HGLOBAL spline = Create_Spline(3, xs, xs, nullptr, nullptr);
  HGLOBAL poly = Create_Polyline(3, xs, xs);
  Select_Words(poly, {0, 1});
  for (HGLOBAL h : {point, circle}) Set_Element_Select_Attribute(h, 1);
  Objects_Array_Type a{}, aux{};
  for (HGLOBAL h : {point, line, circle, spline, poly}) Add_Element_In_Array_by_Handle(&a, h);
  // A construction element on the circle, which itself has a parent list.
  HGLOBAL on_circle = Child(Create_Point(1, 0), 1, {circle});
  Child(circle, 1, {line});
  Add_Element_In_Array_by_Handle(&aux, on_circle);

  EXPECT_EQ(Delete_Elements(&a, &aux, nullptr), 1);
  ASSERT_EQ(a.count, 3);
  EXPECT_TRUE(Get_Element_Handle_by_Index(&a, 0) == line &&
              Get_Element_Handle_by_Index(&a, 1) == spline &&
              Get_Element_Handle_by_Index(&a, 2) == poly);
  EXPECT_EQ(Get_Creation_Type(on_circle), 0);
  EXPECT_EQ(Delete_Elements(&a, &aux, &aux), 1);  // the spline is met, not deleted
  EXPECT_EQ(a.count, 3);
  Objects_Array_Type plain{};
  Add_Element_In_Array_by_Handle(&plain, line);
  EXPECT_EQ(Delete_Elements(&plain, nullptr, nullptr), -1);
  EXPECT_EQ(Delete_Elements(nullptr, nullptr, nullptr), -1);
  DeleteObjectsArray_Without_El_Deleting(&plain);
  DeleteObjectsArray(&a);
  DeleteObjectsArray(&aux);
}

TEST(Edit, CopyingMovingAndSortingByIndex) {
  Leak_Check leaks;
  const double xs[3] = {0, 1, 2}, ys[3] = {5, 6, 7};
  HGLOBAL arc = Arc_With_Ends(0, 0, 2, 0, 1);
  HGLOBAL aux = Create_Line(0, 0, 1, 1);
  Set_Attr(aux, 0);
  HGLOBAL poly = Create_Polyline(3, xs, ys), spline = Create_Spline(3, xs, ys, xs, ys);
  HGLOBAL circle = Create_Circle(1, 1, 1);
  Objects_Array_Type a{};
  for (HGLOBAL h : {poly, aux, circle, spline, arc}) Add_Element_In_Array_by_Handle(&a, h);

  Objects_Array_Type picked{};
  const int list[] = {4, 0, 99, -1, 2};
  Copy_ObjAr_by_Index(&a, &picked, list, 5);
  ASSERT_EQ(picked.count, 3);
  EXPECT_TRUE(Get_Element_Handle_by_Index(&picked, 0) == arc &&
              Get_Element_Handle_by_Index(&picked, 2) == circle);
  Copy_ObjAr_by_Index(&a, &picked, list, 0);
  EXPECT_EQ(picked.count, 3);

  Move_Objects(&picked, 10, -1);
  double v[9];
  Get_Arc_Param(arc, &v[0], &v[1], &v[2], &v[3], &v[4], &v[5], &v[6], &v[7], &v[8]);
  EXPECT_TRUE(v[0] == 12 && v[1] == -1 && v[4] == 10 && v[5] == -1 && v[6] == 2 && v[7] == 0);
  EXPECT_EQ(v[3], 2 * std::sin(1.0) - 1);
  const int which[] = {0, 3, 7, -3};  // the polyline and the spline; the rest is not there
  Move_Objects_by_Index(&a, which, 4, 1, 1);
  double x, y;
  Get_Polyline_Node_Coord_by_Handle(poly, 2, &x, &y);
  EXPECT_TRUE(x == 13 && y == 7);  // moved with the picked ones, then by index
  Get_Spline_Node_Coord_by_Handle(spline, 0, &x, &y);
  EXPECT_TRUE(x == 1 && y == 6);
  double m[3];
  auto* r = static_cast<Element_Record*>(GlobalLock(spline));
  std::memcpy(m, GlobalLock(r->u.spline.m1), sizeof m);  // moments do not move
  GlobalUnlock(r->u.spline.m1);
  GlobalUnlock(spline);
  EXPECT_TRUE(m[0] == 0 && m[2] == 2);

  // Ordinary to A, construction to B; a polyline or spline follows the
  // element before it (B when first).
  Objects_Array_Type ordinary{}, construction{};
  EXPECT_EQ(Add_Objects_by_Selected_Attr(&ordinary, &construction, &a, 0), 0);
  EXPECT_EQ(Add_Objects_by_Selected_Attr(&ordinary, &construction, &a, 100), 1);
  EXPECT_TRUE(construction.count == 2 && Get_Element_Handle_by_Index(&construction, 0) == poly);
  EXPECT_TRUE(ordinary.count == 3 && Get_Element_Handle_by_Index(&ordinary, 1) == spline);
  for (auto* o : {&picked, &ordinary, &construction}) DeleteObjectsArray_Without_El_Deleting(o);
  DeleteObjectsArray(&a);
}

TEST(Edit, DisplayCopiesDrawnTwiceLeaveThePictureAsItWas) {
  Leak_Check leaks;
  Surface canvas(100, 100);
  Coord_Syst cs = View();
  const double xs[4] = {10, 20, 30, 40}, ys[4] = {40, 45, 40, 45};
  HGLOBAL spline = Create_Spline(4, xs, ys, nullptr, nullptr);
  Calc_Spline_Coef(spline);
  Objects_Array_Type a{}, copies{};
  for (HGLOBAL h : {Create_Point(10, 10), Create_Line(20, 20, 60, 20), Create_Circle(50, 60, 10),
                    Create_Arc(20, 70, 8, 0, 2), Create_Polyline(4, xs, xs), spline})
    Add_Element_In_Array_by_Handle(&a, h);
  EXPECT_EQ(Create_Moved_iObjects(&a, &cs, &copies), 6);
  const auto before = canvas.Bits();
  const COLORREF red = RGB(255, 0, 0);
  Draw_iObjects_with_Disp(canvas.dc(), &copies, 5, -3, red);
  // The segment's copy lies 5 right and 3 down (logical) of the segment.
  EXPECT_NE(GetPixel(canvas.dc(), 45, 80 - 3), RGB(255, 255, 255));
  EXPECT_EQ(GetPixel(canvas.dc(), 45, 80), RGB(255, 255, 255));
  EXPECT_EQ(Draw_iObjects_with_Disp(canvas.dc(), &copies, 5, -3, red), R2_COPYPEN);
  EXPECT_EQ(canvas.Bits(), before);
  // A shift beyond the logical range draws nothing.
  Draw_iObjects_with_Disp(canvas.dc(), &copies, INT32_MAX, 0, red);
  EXPECT_EQ(canvas.Bits(), before);
  EXPECT_EQ(Create_Moved_iObjects(&a, nullptr, &copies), 0);
  DeleteiObjectsArray(&copies);
  DeleteObjectsArray(&a);
}
