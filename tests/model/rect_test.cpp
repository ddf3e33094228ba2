// Bounding rectangles of elements.
#include <gtest/gtest.h>

#include <cmath>

#include "support/capture.h"

namespace {

struct Rect {
  double l = 0, t = 0, r = 0, b = 0;
};

Rect Of(HGLOBAL h) {
  Rect q;
  EXPECT_EQ(Get_Element_Rect(h, &q.l, &q.t, &q.r, &q.b), 1);
  return q;
}

constexpr double kPi = 3.14159265358979323846;

}  // namespace

TEST(ElementRect, ArcsIncludeTheExtremePointsTheyPass) {
  Leak_Check leaks;
  struct Case {
    double a1, a2, l, t, r, b;
  } cases[] = {
      {0, kPi / 2, 0, 1, 1, 0},                            // first quadrant
      {kPi / 4, 3 * kPi / 4, -0.7071, 1, 0.7071, 0.7071},  // passes the top only
      {7 * kPi / 4, kPi / 4, 0.7071, 0.7071, 1, -0.7071},  // passes angle 0
      {-kPi / 4, kPi / 4, 0.7071, 0.7071, 1, -0.7071},     // the same, given negative
      {0.1, 0.1 + 2 * kPi - 1e-9, -1, 1, 1, -1},           // almost the full circle
  };
  for (const Case& c : cases) {
    HGLOBAL arc = Create_Arc(0, 0, 1, c.a1, c.a2);
    Rect q = Of(arc);
    EXPECT_NEAR(q.l, c.l, 1e-4) << c.a1 << " " << c.a2;
    EXPECT_NEAR(q.t, c.t, 1e-4) << c.a1 << " " << c.a2;
    EXPECT_NEAR(q.r, c.r, 1e-4) << c.a1 << " " << c.a2;
    EXPECT_NEAR(q.b, c.b, 1e-4) << c.a1 << " " << c.a2;
    Delete_Element(arc);
  }
}

TEST(ElementRect, EveryTypeAndTheArrayUnion) {
  Leak_Check leaks;
  Objects_Array_Type a = {};
  const double xs[3] = {5, -2, 3}, ys[3] = {1, 4, -6};
  HGLOBAL seg = Create_Line(3, -1, -2, 7);
  HGLOBAL circle = Create_Circle(10, 10, 2);
  HGLOBAL poly = Create_Polyline(3, xs, ys);
  HGLOBAL point = Create_Point(-20, 0.5);
  for (HGLOBAL h : {seg, circle, poly, point}) Add_Element_In_Array_by_Handle(&a, h);
  Rect s = Of(seg);
  EXPECT_EQ(s.l, -2);
  EXPECT_EQ(s.r, 3);
  EXPECT_EQ(s.t, 7);
  EXPECT_EQ(s.b, -1);
  Rect c = Of(circle);
  EXPECT_EQ(c.l + c.r + c.t + c.b, 40);
  Rect p = Of(poly);
  EXPECT_EQ(p.l, -2);
  EXPECT_EQ(p.t, 4);
  EXPECT_EQ(p.b, -6);
  Rect all;
  ASSERT_EQ(GetRectangle(&a, &all.l, &all.t, &all.r, &all.b), 1);
  EXPECT_EQ(all.l, -20);
  EXPECT_EQ(all.r, 12);
  EXPECT_EQ(all.t, 12);
  EXPECT_EQ(all.b, -6);
  EXPECT_EQ(Is_Element_in_Rect(seg, -2, 7, 3, -1), 1);  // edges count as inside
  EXPECT_EQ(Is_Element_in_Rect(seg, 3, -1, -2, 7), 1);  // corners in either order
  EXPECT_EQ(Is_Element_in_Rect(seg, -1.9, 7, 3, -1), 0);
  Objects_Array_Type empty = {};
  EXPECT_EQ(GetRectangle(&empty, &all.l, &all.t, &all.r, &all.b), 0);
  EXPECT_EQ(Get_Element_Rect(0, &all.l, &all.t, &all.r, &all.b), 0);
  EXPECT_EQ(Is_Element_in_Rect(0, -1e9, 1e9, 1e9, -1e9), 0);
  DeleteObjectsArray(&a);
}

TEST(ElementRect, SplineRectFollowsTheCurveNotOnlyTheNodes) {
  Leak_Check leaks;
  // Three nodes on a parabola-like arch; moments bend the curve above the top node.
  const double xs[3] = {0, 1, 2}, ys[3] = {0, 1, 0};
  const double mx[3] = {0, 0, 0}, my[3] = {0, -12, 0};
  HGLOBAL flat = Create_Spline(3, xs, ys, nullptr, nullptr);
  HGLOBAL bent = Create_Spline(3, xs, ys, mx, my);
  Rect f = Of(flat), b = Of(bent);
  EXPECT_EQ(f.t, 1);
  EXPECT_GT(b.t, 1.9);  // the middle of each piece rises to 2
  EXPECT_EQ(b.l, 0);
  EXPECT_EQ(b.r, 2);
  Delete_Element(flat);
  Delete_Element(bent);
}
