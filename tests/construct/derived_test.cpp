// Points on elements and at their crossings, tangent circles and lines,
// segments and arcs on nodes, mirror copies and the cross-hair cursor:
// properties on random elements, the stored links, and the refusals.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "support/capture.h"
#include "support/surface.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

struct Rnd {
  std::mt19937 rng{31};
  double operator()(double lo, double hi) {
    return std::uniform_real_distribution<double>(lo, hi)(rng);
  }
};

Curs_Pos_Type Record(double x0, double y0, double x1 = 0, double y1 = 0, double x2 = 0,
                     double y2 = 0) {
  Curs_Pos_Type c{};
  c.x[0] = x0, c.y[0] = y0, c.x[1] = x1, c.y[1] = y1, c.x[2] = x2, c.y[2] = y2, c.count = 3;
  return c;
}

HGLOBAL Arc_With_Ends(double xc, double yc, double r, double a1, double a2) {
  HGLOBAL h = Create_Arc(xc, yc, r, a1, a2);
  Set_Arc_Ends(h, xc + r * std::cos(a1), yc + r * std::sin(a1), xc + r * std::cos(a2),
               yc + r * std::sin(a2));
  return h;
}

double Tol(double scale) {
  return 1e-12 * (1 + scale);
}

}  // namespace

// Every point made lies on what it was made from, and records it.
TEST(Derived, PointsLieOnTheirParents) {
  Leak_Check leaks;
  Rnd rnd;
  for (int k = 0; k < 200; ++k) {
    Objects_Array_Type a{};
    double lx = rnd(-50, 50), ly = rnd(-50, 50), b = rnd(0, 2 * kPi);
    HGLOBAL l1 = Create_Line(lx, ly, lx + 30 * std::cos(b), ly + 30 * std::sin(b));
    HGLOBAL l2 = Create_Line(lx + rnd(-9, 9), ly + rnd(-9, 9), lx + 20 * std::cos(b + 1),
                             ly + 20 * std::sin(b + 1));
    HGLOBAL c1 = Create_Circle(lx + rnd(-5, 5), ly + rnd(-5, 5), rnd(10, 30));
    HGLOBAL c2 = Arc_With_Ends(lx + rnd(-5, 5), ly + rnd(-5, 5), rnd(10, 30), rnd(0, 3), rnd(3, 6));
    for (HGLOBAL h : {l1, l2, c1, c2}) Add_Element_In_Array_by_Handle(&a, h);
    const Curs_Pos_Type c = Record(lx + rnd(-40, 40), ly + rnd(-40, 40));
    double x1, y1, x2, y2, xc, yc, r, a1, a2;
    Get_Segment_Coord_by_Handle(l1, &x1, &y1, &x2, &y2);
    auto on_l1 = [&](HGLOBAL p) {
      double px, py;
      Get_Point_Coord_by_Handle(p, &px, &py);
      return Distance_Line_Point(x1, y1, x2, y2, px, py);
    };
    auto on_circle = [&](HGLOBAL p, HGLOBAL circle) {
      double px, py, cx, cy, cr;
      Get_Point_Coord_by_Handle(p, &px, &py);
      Get_Circle_Param_by_Handle(circle, &cx, &cy, &cr);
      return std::fabs(Distance_2Points(px, py, cx, cy) - cr);
    };
    HGLOBAL p = Add_Point_OnL(&c, &a, 1, l1);
    ASSERT_NE(p, 0u);
    EXPECT_LT(on_l1(p), Tol(100));
    EXPECT_EQ(Get_Creation_Type(p), 16);
    EXPECT_EQ(Get_Element_Attribute(p), ATTR_ORDINARY);
    p = Add_Point_On2L(&c, &a, 0, l1, l2);
    ASSERT_NE(p, 0u);
    EXPECT_LT(on_l1(p), Tol(100));
    EXPECT_EQ(Get_Creation_Type(p), 17);
    EXPECT_EQ(Get_Element_Attribute(p), 0);
    HGLOBAL q1, q2, q3;
    Get_Parent_Elem(p, &q1, &q2, &q3);
    EXPECT_EQ(q1, l1);
    EXPECT_EQ(q2, l2);
    p = Add_Point_OnC(&c, &a, 1, c1);
    ASSERT_NE(p, 0u);
    EXPECT_LT(on_circle(p, c1), Tol(100));
    EXPECT_EQ(Get_Creation_Type(p), 18);
    // Crossings: when there is one it lies on both, and on the arc itself.
    double e[4];
    Get_Arc_Param(c2, &e[0], &e[1], &e[2], &e[3], &xc, &yc, &r, &a1, &a2);
    for (HGLOBAL h : {Add_Point_OnLC(&c, &a, 1, l1, c2), Add_Point_On2C(&c, &a, 1, c1, c2)}) {
      if (!h) continue;
      double px, py;
      Get_Point_Coord_by_Handle(h, &px, &py);
      EXPECT_LT(std::fabs(Distance_2Points(px, py, xc, yc) - r), Tol(100)) << k;
      EXPECT_LT(Distance_Arc_Point(xc, yc, r, a1, a2, px, py), Tol(100)) << k;
      int ct = Get_Creation_Type(h);
      EXPECT_TRUE(ct == 19 || ct == 20);
      EXPECT_LT(ct == 20 ? on_l1(h) : on_circle(h, c1), Tol(100));
    }
    DeleteObjectsArray(&a);
  }
}

TEST(Derived, TangentsTouch) {
  Leak_Check leaks;
  Rnd rnd;
  int both = 0;
  for (int k = 0; k < 200; ++k) {
    Objects_Array_Type a{};
    HGLOBAL l1 = Create_Line(rnd(-50, 50), rnd(-50, 50), rnd(-50, 50), rnd(-50, 50));
    HGLOBAL l2 = Create_Line(rnd(-50, 50), rnd(-50, 50), rnd(-50, 50), rnd(-50, 50));
    double c1x = rnd(-50, 50), c1y = rnd(-50, 50), r1 = rnd(1, 20);
    double c2x = rnd(-50, 50), c2y = rnd(-50, 50), r2 = rnd(1, 20);
    HGLOBAL k1 = Create_Circle(c1x, c1y, r1), k2 = Arc_With_Ends(c2x, c2y, r2, 1, 2);
    for (HGLOBAL h : {l1, l2, k1, k2}) Add_Element_In_Array_by_Handle(&a, h);
    double x1, y1, x2, y2, x3, y3, x4, y4, xc, yc, r;
    Get_Segment_Coord_by_Handle(l1, &x1, &y1, &x2, &y2);
    Get_Segment_Coord_by_Handle(l2, &x3, &y3, &x4, &y4);
    const Curs_Pos_Type c = Record(rnd(-50, 50), rnd(-50, 50), rnd(-50, 50), rnd(-50, 50));
    HGLOBAL h = Add_TanCirToLine(&c, &a, 1, l1);
    ASSERT_TRUE(Get_Circle_Param_by_Handle(h, &xc, &yc, &r));
    EXPECT_NEAR(Distance_Line_Point(x1, y1, x2, y2, xc, yc), r, Tol(100));
    if ((h = Add_TanCirTo2Line(&c, &a, 0, l1, l2))) {
      Get_Circle_Param_by_Handle(h, &xc, &yc, &r);
      EXPECT_NEAR(Distance_Line_Point(x1, y1, x2, y2, xc, yc), r, 1e-9 * (1 + r));
      EXPECT_NEAR(Distance_Line_Point(x3, y3, x4, y4, xc, yc), r, 1e-9 * (1 + r));
      EXPECT_EQ(Get_Creation_Type(h), 7);
    }
    if ((h = Add_Aux_TanLineToCir(&c, &a, k1))) {
      Get_Segment_Coord_by_Handle(h, &x1, &y1, &x2, &y2);
      EXPECT_EQ(x1, c.x[0]);
      EXPECT_NEAR(Distance_Line_Point(x1, y1, x2, y2, c1x, c1y), r1, 1e-9 * (1 + r1));
      EXPECT_EQ(Get_Element_Attribute(h), 0);
      EXPECT_EQ(Get_Creation_Type(h), 8);
    } else {
      EXPECT_LT(Distance_2Points(c.x[0], c.y[0], c1x, c1y), r1);
    }
    if ((h = Add_TanLineTo2Cir(&c, &a, 1, k1, k2))) {
      ++both;
      Get_Segment_Coord_by_Handle(h, &x1, &y1, &x2, &y2);
      EXPECT_NEAR(Distance_2Points(x1, y1, c1x, c1y), r1, Tol(100));
      EXPECT_NEAR(Distance_2Points(x2, y2, c2x, c2y), r2, Tol(100));
      EXPECT_NEAR(Distance_Line_Point(x1, y1, x2, y2, c1x, c1y), r1, 1e-9 * (1 + r1));
      EXPECT_NEAR(Distance_Line_Point(x1, y1, x2, y2, c2x, c2y), r2, 1e-9 * (1 + r2));
      // Picking exactly at the touching points chooses that same tangent.
      const Curs_Pos_Type again = Record(x1, y1, x2, y2);
      HGLOBAL same = Add_TanLineTo2Cir(&again, &a, 1, k1, k2);
      double s1, t1, s2, t2;
      Get_Segment_Coord_by_Handle(same, &s1, &t1, &s2, &t2);
      EXPECT_EQ(s1, x1);
      EXPECT_EQ(t2, y2);
    } else {
      double d = Distance_2Points(c1x, c1y, c2x, c2y);
      EXPECT_LT(d, std::fabs(r1 - r2));  // one inside the other
    }
    if ((h = Add_TanCircleToCir(&c, &a, 1, k1))) {
      Get_Circle_Param_by_Handle(h, &xc, &yc, &r);
      double d = Distance_2Points(xc, yc, c1x, c1y);
      EXPECT_NEAR(std::min(std::fabs(d - (r + r1)), std::fabs(d - std::fabs(r - r1))), 0, Tol(100));
    }
    DeleteObjectsArray(&a);
  }
  EXPECT_GT(both, 100);
}

// Segments and arcs on nodes: the ends are the nodes; when the first parent
// goes, a segment keeps the second with its ends swapped, an arc keeps the
// slot of the other pair.
TEST(Derived, EndsOnNodesAndTheirLinks) {
  Leak_Check leaks;
  Objects_Array_Type a{};
  HGLOBAL s = Create_Line(0, 0, 10, 0), p = Create_Point(3, 7);
  Add_Element_In_Array_by_Handle(&a, s);
  Add_Element_In_Array_by_Handle(&a, p);
  const Curs_Pos_Type c = Record(-1, -1, 20, 20, 5, 1);
  HGLOBAL l = Add_Line_OnN(&c, &a, s, 1, p, 0);
  double x1, y1, x2, y2;
  Get_Segment_Coord_by_Handle(l, &x1, &y1, &x2, &y2);
  EXPECT_EQ((std::vector<double>{x1, y1, x2, y2}), (std::vector<double>{10, 0, 3, 7}));
  EXPECT_EQ(Get_Creation_Type(l), 22);
  Cut_Parent_Link(l, s);
  EXPECT_EQ(Get_Creation_Type(l), 21);
  Get_Segment_Coord_by_Handle(l, &x1, &y1, &x2, &y2);
  EXPECT_EQ(x1, 3);  // the first end is on the remaining parent
  HGLOBAL only2 = Add_Line_OnN(&c, &a, 0, 0, p, 0);
  Get_Segment_Coord_by_Handle(only2, &x1, &y1, &x2, &y2);
  EXPECT_EQ((std::vector<double>{x1, y1, x2, y2}), (std::vector<double>{3, 7, -1, -1}));
  EXPECT_EQ(Get_Parent(only2, 0), p);

  HGLOBAL arc = Add_Arc2PC(&c, &a, s, 0, s, 1);  // over the segment, centre below it
  double xc, yc, r, a1, a2;
  ASSERT_TRUE(Get_Arc_Param(arc, &x1, &y1, &x2, &y2, &xc, &yc, &r, &a1, &a2));
  EXPECT_EQ((std::vector<double>{x1, y1, x2, y2, xc}), (std::vector<double>{0, 0, 10, 0, 5}));
  EXPECT_DOUBLE_EQ(yc, 1);
  EXPECT_EQ(Get_Creation_Type(arc), 24);
  HGLOBAL half = Add_Arc2PC(&c, &a, 0, 0, p, 0);
  EXPECT_EQ(Get_Creation_Type(half), 23);
  EXPECT_EQ(Get_Parent(half, 2), p);
  HGLOBAL circle = Add_Circle_by_Diam2P(&c, &a, 1, 0, p);
  ASSERT_TRUE(Get_Circle_Param_by_Handle(circle, &xc, &yc, &r));
  EXPECT_DOUBLE_EQ(xc, 1);
  EXPECT_EQ(Get_Creation_Type(circle), 14);
  EXPECT_EQ(Add_Circle_by_Diam2P(&c, &a, 1, p, p), 0u);  // coincident ends
  // Elements that are not points give way to P0 and P1 and are not parents.
  EXPECT_EQ(Get_Creation_Type(Add_Circle_by_Diam2P(&c, &a, 1, s, s)), 0);
  DeleteObjectsArray(&a);
}

// Mirroring twice gives the originals back; arcs stay counter-clockwise and
// their stored ends match their angles; copies record their originals.
TEST(Derived, MirrorCopies) {
  Leak_Check leaks;
  Rnd rnd;
  Objects_Array_Type a{}, once{}, twice{};
  const double xs[4] = {0, 10, 12, 5}, ys[4] = {0, 1, 8, 9};
  Add_Element_In_Array_by_Handle(&a, Create_Point(1, 2));
  Add_Element_In_Array_by_Handle(&a, Create_Line(0, 0, 10, 3));
  Add_Element_In_Array_by_Handle(&a, Create_Circle(4, 4, 2));
  HGLOBAL arc = Arc_With_Ends(5, 6, 3, 0.3, 2.0);
  Add_Element_In_Array_by_Handle(&a, arc);
  Add_Element_In_Array_by_Handle(&a, Create_Polyline(4, xs, ys));
  HGLOBAL spline = Create_Spline(4, xs, ys, nullptr, nullptr);
  Calc_Spline_Coef(spline);
  Add_Element_In_Array_by_Handle(&a, spline);
  Set_Element_Select_Attribute(arc, 1);
  HGLOBAL axis = Create_Line(-3, 2, 7, 9);
  ASSERT_EQ(Symmetry_Objects_Line(nullptr, &once, &a, axis), 6);
  const Curs_Pos_Type c = Record(-3, 2, 7, 9);
  ASSERT_EQ(Symmetry_Objects_Line(&c, &twice, &once, 0), 6);
  for (int i = 0; i < 6; ++i) {
    HGLOBAL o = Get_Element_Handle_by_Index(&a, i), m = Get_Element_Handle_by_Index(&once, i),
            t = Get_Element_Handle_by_Index(&twice, i);
    auto* ro = static_cast<Element_Record*>(GlobalLock(o));
    auto* rt = static_cast<Element_Record*>(GlobalLock(t));
    if (i < 4) {
      for (int w = 0; w < 18; w += 2) {  // the doubles of the geometry, whole turns aside
        double u = 0, v = 0;
        std::memcpy(&u, &ro->u.words[w], 8);
        std::memcpy(&v, &rt->u.words[w], 8);
        EXPECT_NEAR(std::remainder(u - v, i == 3 && (w == 6 || w == 8) ? 2 * kPi : 1e300), 0,
                    1e-12 * 20)
            << i << " " << w;
      }
      EXPECT_EQ(Get_Creation_Type(m), 26);
      EXPECT_EQ(Get_Parent(m, 0), o);
      EXPECT_EQ(Get_Parent(m, 1), axis);
      EXPECT_EQ(Get_Parent(t, 1), 0u);
      EXPECT_EQ(Get_Selected_Attr_by_Handle(m), 0);
    } else {
      EXPECT_EQ(Get_Creation_Type(m), 0);
      for (int n = 0; n < 4; ++n) {
        double x1, y1, x2, y2;
        Get_El_Node_Coord_by_Handle(o, n, &x1, &y1);
        Get_El_Node_Coord_by_Handle(t, n, &x2, &y2);
        EXPECT_NEAR(x1, x2, 1e-12 * 20);
        EXPECT_NEAR(y1, y2, 1e-12 * 20);
      }
    }
    GlobalUnlock(o);
    GlobalUnlock(t);
  }
  // The mirrored arc: its start is the image of the original end, and the
  // image of the original's middle lies on it.
  double x1, y1, x2, y2, xc, yc, r, a1, a2, mx, my;
  HGLOBAL m = Get_Element_Handle_by_Index(&once, 3);
  Get_Arc_Param(m, &x1, &y1, &x2, &y2, &xc, &yc, &r, &a1, &a2);
  Mirror_Point_Line(-3, 2, 7, 9, 5 + 3 * std::cos(2.0), 6 + 3 * std::sin(2.0), &mx, &my);
  EXPECT_NEAR(x1, mx, 1e-12 * 20);
  EXPECT_NEAR(x1, xc + r * std::cos(a1), 1e-12 * 20);
  EXPECT_NEAR(y2, yc + r * std::sin(a2), 1e-12 * 20);
  Mirror_Point_Line(-3, 2, 7, 9, 5 + 3 * std::cos(1.15), 6 + 3 * std::sin(1.15), &mx, &my);
  EXPECT_LT(Distance_Arc_Point(xc, yc, r, a1, a2, mx, my), 1e-12 * 20);
  EXPECT_NEAR(std::remainder(a2 - a1, 2 * kPi), 1.7, 1e-12);
  // Deleting the original releases its copy.
  Cut_Parent_Link(m, arc);
  EXPECT_EQ(Get_Creation_Type(m), 3);
  // No mirror line, nothing to mirror: 0.
  const Curs_Pos_Type dot = Record(1, 1, 1, 1);
  EXPECT_EQ(Symmetry_Objects_Line(&dot, &once, &a, 0), 0);
  EXPECT_EQ(Symmetry_Objects_Line(nullptr, &once, &a, HGLOBAL{0xFFFFFFFF}), 0);
  EXPECT_EQ(Symmetry_Objects_Line(&c, nullptr, &a, 0), 0);
  EXPECT_EQ(once.count, 6);
  // Mirroring an array into itself takes only what it held.
  EXPECT_EQ(Symmetry_Objects_Line(&c, &a, &a, 0), 6);
  EXPECT_EQ(a.count, 12);
  for (Objects_Array_Type* x : {&a, &once, &twice}) DeleteObjectsArray(x);
  Delete_Element(axis);
}

TEST(Derived, CrossCursorErasesItself) {
  Surface s(60, 40);
  Coord_Syst cs{};
  cs.vp_ext_x = 60, cs.vp_ext_y = 40;
  cs.window = {0, 40, 60, -40};
  cs.world = {0, 0, 60, 40};
  auto blank = s.Bits();
  Draw_Cros_Cursor(s.dc(), &cs, 20, 10, RGB(255, 255, 255));
  EXPECT_EQ(s.Where(RGB(0, 0, 0)).size(), 60u + 40 - 1);  // each pixel inverted once
  EXPECT_EQ(GetPixel(s.dc(), 20, 30), RGB(0, 0, 0));
  Draw_Cros_Cursor(s.dc(), &cs, 20, 10, RGB(255, 255, 255));
  EXPECT_EQ(s.Bits(), blank);
  EXPECT_EQ(Draw_Cros_Cursor(s.dc(), nullptr, 1, 1, 0), R2_COPYPEN);
}

// Refused constructions add nothing.
TEST(Derived, RefusalsAddNothing) {
  Leak_Check leaks;
  Box_Capture boxes;
  Objects_Array_Type a{};
  HGLOBAL l1 = Create_Line(0, 0, 10, 0), l2 = Create_Line(0, 5, 10, 5);
  HGLOBAL k1 = Create_Circle(0, 0, 5), k2 = Create_Circle(0, 0, 2), far = Create_Circle(50, 0, 1);
  HGLOBAL pt = Create_Point(1, 1), stale = Create_Line(0, 0, 1, 1);
  Delete_Element(stale);
  const Curs_Pos_Type c = Record(3, 0, 0, 0);  // P0 on l1, at k1's centre for On... below
  const Curs_Pos_Type centre = Record(0, 0, 1, 1);
  const HGLOBAL bad[] = {0, stale, pt, HGLOBAL{0xFFFFFFFF}};
  EXPECT_EQ(Add_Point_On2L(&c, &a, 1, l1, l2), 0u);       // parallel
  EXPECT_EQ(Add_Point_On2C(&c, &a, 1, k1, k2), 0u);       // concentric
  EXPECT_EQ(Add_Point_On2C(&c, &a, 1, k1, far), 0u);      // apart
  EXPECT_EQ(Add_Point_OnLC(&c, &a, 1, l2, k2), 0u);       // misses
  EXPECT_EQ(Add_Point_OnC(&centre, &a, 1, k1), 0u);       // at the centre
  EXPECT_EQ(Add_TanCirToLine(&c, &a, 1, l1), 0u);         // P0 on the line
  EXPECT_EQ(Add_Aux_TanLineToCir(&centre, &a, k1), 0u);   // inside
  EXPECT_EQ(Add_TanLineTo2Cir(&c, &a, 1, k1, k2), 0u);    // one inside the other
  EXPECT_EQ(Add_TanCircleToCir(&centre, &a, 1, k1), 0u);  // at the centre
  EXPECT_EQ(Add_TanCirTo2Line(&c, &a, 1, l1, l1), 0u);    // one line twice
  EXPECT_EQ(Add_Line_OnN(&c, &a, l1, 0, k1, 0), 0u);      // a circle has no node
  const Curs_Pos_Type origin = Record(5, 5, 0, 0);
  EXPECT_EQ(Add_Arc2PC(&origin, &a, l1, 0, 0, 0), 0u);  // node 0 of l1 is P1
  for (HGLOBAL h : bad) {
    EXPECT_EQ(Add_Point_OnL(&c, &a, 1, h), 0u);
    EXPECT_EQ(Add_Point_OnLC(&c, &a, 1, l1, h), 0u);
    EXPECT_EQ(Add_Point_On2C(&c, &a, 1, h, k1), 0u);
    EXPECT_EQ(Add_TanCirTo2Line(&c, &a, 1, h, l2), 0u);
    EXPECT_EQ(Add_TanCircleToCir(&c, &a, 1, h), 0u);
    EXPECT_EQ(Add_TanLineTo2Cir(&c, &a, 1, k1, h), 0u);
  }
  EXPECT_EQ(Add_Point_OnL(nullptr, &a, 1, l1), 0u);
  EXPECT_EQ(Add_Line_OnN(&c, nullptr, 0, 0, 0, 0), 0u);
  EXPECT_EQ(a.count, 0);
  for (HGLOBAL h : {l1, l2, k1, k2, far, pt}) Delete_Element(h);
}
