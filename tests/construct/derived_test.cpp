// Points on elements and at their crossings, tangent circles and lines,
// segments and arcs on nodes, mirror copies and the cross-hair cursor.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <random>
#include <vector>

#include "support/capture.h"
#include "support/elements.h"
#include "support/surface.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

Curs_Pos_Type Record(double x0, double y0, double x1 = 0, double y1 = 0, double x2 = 0,
                     double y2 = 0) {
  return Cursor({{x0, y0}, {x1, y1}, {x2, y2}});
}

std::vector<double> Coords(HGLOBAL h) {  // point, segment or circle
  double v[4] = {};
  if (!Get_Point_Coord_by_Handle(h, &v[0], &v[1]) &&
      !Get_Segment_Coord_by_Handle(h, &v[0], &v[1], &v[2], &v[3]))
    Get_Circle_Param_by_Handle(h, &v[0], &v[1], &v[2]);
  return {v, v + 4};
}

constexpr double kTol = 1e-10;  // coordinates up to 100

}  // namespace

// Points lie on what they were made from; circles and lines touch theirs.
TEST(Derived, PointsAndTangentsLieOnTheirParents) {
  Leak_Check leaks;
  std::mt19937 rng(31);
  auto u = [&](double lo, double hi) { return std::uniform_real_distribution<>(lo, hi)(rng); };
  int crossings = 0, common = 0;
  for (int k = 0; k < 200; ++k) {
    Objects_Array_Type a{};
    double l[4] = {u(-50, 50), u(-50, 50), u(-50, 50), u(-50, 50)};
    double m[4] = {u(-50, 50), u(-50, 50), u(-50, 50), u(-50, 50)};
    double c1[3] = {u(-30, 30), u(-30, 30), u(5, 30)}, c2[3] = {u(-30, 30), u(-30, 30), u(5, 30)};
    HGLOBAL l1 = Create_Line(l[0], l[1], l[2], l[3]), l2 = Create_Line(m[0], m[1], m[2], m[3]);
    HGLOBAL k1 = Create_Circle(c1[0], c1[1], c1[2]);
    HGLOBAL k2 = Arc_With_Ends(c2[0], c2[1], c2[2], u(0, 3), u(3, 6));
    for (HGLOBAL h : {l1, l2, k1, k2}) Add_Element_In_Array_by_Handle(&a, h);
    auto to_l1 = [&](double x, double y) {
      return Distance_Line_Point(l[0], l[1], l[2], l[3], x, y);
    };
    auto to_c = [](const double* c, double x, double y) {
      return std::fabs(Distance_2Points(c[0], c[1], x, y) - c[2]);
    };
    const Curs_Pos_Type c = Record(u(-50, 50), u(-50, 50), u(-50, 50), u(-50, 50));
    std::vector<double> p = Coords(Add_Point_OnL(&c, &a, 1, l1));
    EXPECT_LT(to_l1(p[0], p[1]), kTol);
    p = Coords(Add_Point_On2L(&c, &a, 1, l1, l2));
    EXPECT_LT(to_l1(p[0], p[1]) + Distance_Line_Point(m[0], m[1], m[2], m[3], p[0], p[1]), kTol);
    p = Coords(Add_Point_OnC(&c, &a, 1, k1));
    EXPECT_LT(to_c(c1, p[0], p[1]), kTol);
    if (HGLOBAL h = Add_Point_OnLC(&c, &a, 1, l1, k2)) {
      p = Coords(h);
      EXPECT_LT(to_l1(p[0], p[1]) + to_c(c2, p[0], p[1]), kTol) << k;
      ++crossings;
    }
    if (HGLOBAL h = Add_Point_On2C(&c, &a, 1, k1, k2)) {
      p = Coords(h);
      EXPECT_LT(to_c(c1, p[0], p[1]) + to_c(c2, p[0], p[1]), kTol) << k;
    }
    p = Coords(Add_TanCirToLine(&c, &a, 1, l1));
    EXPECT_NEAR(to_l1(p[0], p[1]), p[2], kTol);
    if (HGLOBAL h = Add_TanCirTo2Line(&c, &a, 0, l1, l2)) {
      p = Coords(h);
      EXPECT_NEAR(to_l1(p[0], p[1]), p[2], 1e-9 * (1 + p[2]));
    }
    if (HGLOBAL h = Add_Aux_TanLineToCir(&c, &a, k1)) {
      p = Coords(h);
      EXPECT_EQ(p[0], c.x[0]);
      EXPECT_NEAR(Distance_Line_Point(p[0], p[1], p[2], p[3], c1[0], c1[1]), c1[2], kTol);
    }
    if (HGLOBAL h = Add_TanLineTo2Cir(&c, &a, 1, k1, k2)) {
      p = Coords(h);
      EXPECT_LT(to_c(c1, p[0], p[1]) + to_c(c2, p[2], p[3]), kTol);
      EXPECT_NEAR(Distance_Line_Point(p[0], p[1], p[2], p[3], c2[0], c2[1]), c2[2], 1e-9);
      // Picking exactly at its touching points chooses the same tangent.
      const Curs_Pos_Type again = Record(p[0], p[1], p[2], p[3]);
      EXPECT_EQ(Coords(Add_TanLineTo2Cir(&again, &a, 1, k1, k2)), p);
      ++common;
    } else {
      EXPECT_LT(Distance_2Points(c1[0], c1[1], c2[0], c2[1]), std::fabs(c1[2] - c2[2]));
    }
    // Creation types in the order made (refused ones are missing), each
    // with its first parent.
    const int cts[] = {16, 17, 18, 20, 19, 6, 7, 8, 9, 9, 10};
    for (int i = 4, j = 0; i < a.count; ++i, ++j) {
      HGLOBAL h = Get_Element_Handle_by_Index(&a, i), p1, p2, p3;
      while (j < 11 && Get_Creation_Type(h) != cts[j]) ++j;
      EXPECT_LT(j, 11);
      Get_Parent_Elem(h, &p1, &p2, &p3);
      EXPECT_NE(p1, 0u);
    }
    DeleteObjectsArray(&a);
  }
  EXPECT_GT(crossings, 50);
  EXPECT_GT(common, 100);
}

// Segments and arcs on nodes: when the first parent goes, a segment keeps
// the second with its ends swapped, an arc keeps the other pair's slots.
TEST(Derived, EndsOnNodesAndTheirLinks) {
  Leak_Check leaks;
  Objects_Array_Type a{};
  HGLOBAL s = Create_Line(0, 0, 10, 0), p = Create_Point(3, 7);
  Add_Element_In_Array_by_Handle(&a, s);
  Add_Element_In_Array_by_Handle(&a, p);
  const Curs_Pos_Type c = Record(-1, -1, 20, 20, 5, 1);
  HGLOBAL l = Add_Line_OnN(&c, &a, s, 1, p, 0);
  EXPECT_EQ(Coords(l), (std::vector<double>{10, 0, 3, 7}));
  EXPECT_EQ(Get_Creation_Type(l), 22);
  Cut_Parent_Link(l, s);
  EXPECT_EQ(Get_Creation_Type(l), 21);
  EXPECT_EQ(Coords(l), (std::vector<double>{3, 7, 10, 0}));
  EXPECT_EQ(Coords(Add_Line_OnN(&c, &a, 0, 0, p, 0)), (std::vector<double>{3, 7, -1, -1}));
  HGLOBAL arc = Add_Arc2PC(&c, &a, s, 0, s, 1);  // over the segment, centre moved onto x = 5
  double v[9];
  ASSERT_TRUE(Get_Arc_Param(arc, &v[0], &v[1], &v[2], &v[3], &v[4], &v[5], &v[6], &v[7], &v[8]));
  EXPECT_EQ((std::vector<double>(v, v + 6)), (std::vector<double>{0, 0, 10, 0, 5, 1}));
  EXPECT_EQ(Get_Creation_Type(arc), 24);
  HGLOBAL half = Add_Arc2PC(&c, &a, 0, 0, p, 0);
  EXPECT_EQ(Get_Creation_Type(half), 23);
  EXPECT_EQ(Get_Parent(half, 2), p);
  HGLOBAL circle = Add_Circle_by_Diam2P(&c, &a, 1, 0, p);  // P0 to the point
  EXPECT_EQ(Coords(circle)[0], 1);
  EXPECT_EQ(Get_Creation_Type(circle), 14);
  // Elements that are not points give way to P0 and P1 and are no parents.
  EXPECT_EQ(Get_Creation_Type(Add_Circle_by_Diam2P(&c, &a, 1, s, s)), 0);
  DeleteObjectsArray(&a);
}

// Mirroring twice gives the originals back; arcs stay counter-clockwise and
// their stored ends match their angles; copies record their originals.
TEST(Derived, MirrorCopies) {
  Leak_Check leaks;
  Objects_Array_Type a{}, once{}, twice{};
  const double xs[4] = {0, 10, 12, 5}, ys[4] = {0, 1, 8, 9};
  HGLOBAL arc = Arc_With_Ends(5, 6, 3, 0.3, 2.0);
  HGLOBAL spline = Create_Spline(4, xs, ys, nullptr, nullptr);
  Calc_Spline_Coef(spline);
  for (HGLOBAL h : {Create_Point(1, 2), Create_Line(0, 0, 10, 3), Create_Circle(4, 4, 2), arc,
                    Create_Polyline(4, xs, ys), spline})
    Add_Element_In_Array_by_Handle(&a, h);
  Set_Element_Select_Attribute(arc, 1);
  HGLOBAL axis = Create_Line(-3, 2, 7, 9);
  const Curs_Pos_Type c = Record(-3, 2, 7, 9);
  ASSERT_EQ(Symmetry_Objects_Line(nullptr, &once, &a, axis), 6);
  ASSERT_EQ(Symmetry_Objects_Line(&c, &twice, &once, 0), 6);
  for (int i = 0; i < 6; ++i) {
    HGLOBAL o = Get_Element_Handle_by_Index(&a, i), m = Get_Element_Handle_by_Index(&once, i),
            t = Get_Element_Handle_by_Index(&twice, i);
    for (int n = 0; n < 4; ++n) {  // nodes, or the geometry's first four doubles
      double p[2], q[2];
      auto* ro = static_cast<Element_Record*>(GlobalLock(o));
      auto* rt = static_cast<Element_Record*>(GlobalLock(t));
      if (i < 3 || !Get_El_Node_Coord_by_Handle(o, n, &p[0], &p[1]) ||
          !Get_El_Node_Coord_by_Handle(t, n, &q[0], &q[1])) {
        std::memcpy(p, &ro->u.words[4 * (n % 2)], 16);
        std::memcpy(q, &rt->u.words[4 * (n % 2)], 16);
      }
      GlobalUnlock(o);
      GlobalUnlock(t);
      EXPECT_NEAR(p[0], q[0], 1e-12 * 20) << i;
      EXPECT_NEAR(p[1], q[1], 1e-12 * 20) << i;
    }
    EXPECT_EQ(Get_Creation_Type(m), i < 4 ? 26 : 0);
    EXPECT_EQ(Get_Parent(m, 0), i < 4 ? o : 0u);
    EXPECT_EQ(Get_Parent(m, 1), i < 4 ? axis : 0u);
  }
  // The mirrored arc starts at the image of the original's end, the image
  // of its middle lies on it, and it is not selected.
  HGLOBAL m = Get_Element_Handle_by_Index(&once, 3);
  double v[9], mx, my;
  Get_Arc_Param(m, &v[0], &v[1], &v[2], &v[3], &v[4], &v[5], &v[6], &v[7], &v[8]);
  Mirror_Point_Line(-3, 2, 7, 9, 5 + 3 * std::cos(2.0), 6 + 3 * std::sin(2.0), &mx, &my);
  EXPECT_NEAR(v[0], mx, 1e-12 * 20);
  EXPECT_NEAR(v[0], v[4] + v[6] * std::cos(v[7]), 1e-12 * 20);
  EXPECT_NEAR(v[3], v[5] + v[6] * std::sin(v[8]), 1e-12 * 20);
  Mirror_Point_Line(-3, 2, 7, 9, 5 + 3 * std::cos(1.15), 6 + 3 * std::sin(1.15), &mx, &my);
  EXPECT_LT(Distance_Arc_Point(v[4], v[5], v[6], v[7], v[8], mx, my), 1e-12 * 20);
  EXPECT_EQ(Get_Selected_Attr_by_Handle(m), 0);
  Cut_Parent_Link(m, arc);  // deleting the original releases the copy
  EXPECT_EQ(Get_Creation_Type(m), 3);
  // No mirror line: nothing. Into itself: only what the array held.
  const Curs_Pos_Type dot = Record(1, 1, 1, 1);
  EXPECT_EQ(Symmetry_Objects_Line(&dot, &once, &a, 0), 0);
  EXPECT_EQ(Symmetry_Objects_Line(&c, &a, &a, 0), 6);
  EXPECT_EQ(a.count, 12);
  for (Objects_Array_Type* x : {&a, &once, &twice}) DeleteObjectsArray(x);
  Delete_Element(axis);
}

TEST(Derived, CrossCursorErasesItself) {
  Surface s(60, 40);
  Coord_Syst cs = World_View(60, 40, 60, 40);
  auto blank = s.Bits();
  Draw_Cros_Cursor(s.dc(), &cs, 20, 10, RGB(255, 255, 255));
  EXPECT_EQ(s.Where(RGB(0, 0, 0)).size(), 60u + 40 - 1);  // each pixel inverted once
  Draw_Cros_Cursor(s.dc(), &cs, 20, 10, RGB(255, 255, 255));
  EXPECT_EQ(s.Bits(), blank);
}

// Geometric refusals add nothing (bad handles and records: the hostile-host test).
TEST(Derived, RefusalsAddNothing) {
  Leak_Check leaks;
  Objects_Array_Type a{};
  HGLOBAL l1 = Create_Line(0, 0, 10, 0), l2 = Create_Line(0, 5, 10, 5);
  HGLOBAL k1 = Create_Circle(0, 0, 5), k2 = Create_Circle(0, 0, 2), far = Create_Circle(50, 0, 1);
  const Curs_Pos_Type c = Record(3, 0), centre = Record(0, 0, 1, 1), p1 = Record(5, 5, 0, 0);
  const std::function<HGLOBAL()> refused[] = {
      [&] { return Add_Point_On2L(&c, &a, 1, l1, l2); },       // parallel
      [&] { return Add_Point_On2C(&c, &a, 1, k1, k2); },       // concentric
      [&] { return Add_Point_On2C(&c, &a, 1, k1, far); },      // apart
      [&] { return Add_Point_OnLC(&c, &a, 1, l2, k2); },       // misses
      [&] { return Add_Point_OnC(&centre, &a, 1, k1); },       // at the centre
      [&] { return Add_TanCirToLine(&c, &a, 1, l1); },         // P0 on the line
      [&] { return Add_Aux_TanLineToCir(&centre, &a, k1); },   // inside
      [&] { return Add_TanLineTo2Cir(&c, &a, 1, k1, k2); },    // one inside the other
      [&] { return Add_TanCircleToCir(&centre, &a, 1, k1); },  // at the centre
      [&] { return Add_TanCirTo2Line(&c, &a, 1, l1, l1); },    // one line twice
      [&] { return Add_Line_OnN(&c, &a, l1, 0, k1, 0); },      // a circle has no node
      [&] { return Add_Arc2PC(&p1, &a, l1, 0, 0, 0); },        // node 0 of l1 is P1
  };
  for (size_t i = 0; i < std::size(refused); ++i) EXPECT_EQ(refused[i](), 0u) << i;
  EXPECT_EQ(a.count, 0);
  for (HGLOBAL h : {l1, l2, k1, k2, far}) Delete_Element(h);
}
