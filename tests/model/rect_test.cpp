// Bounding rectangles of elements.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "support/capture.h"

namespace {

using Rect = std::vector<double>;  // left, top, right, bottom

Rect Of(HGLOBAL h) {
  Rect q(4);
  EXPECT_EQ(Get_Element_Rect(h, &q[0], &q[1], &q[2], &q[3]), 1);
  return q;
}

constexpr double kPi = 3.14159265358979323846;

}  // namespace

TEST(ElementRect, ArcsIncludeTheExtremePointsTheyPass) {
  Leak_Check leaks;
  const struct {
    double a1, a2;
    Rect want;
  } cases[] = {
      {0, kPi / 2, {0, 1, 1, 0}},                            // first quadrant
      {kPi / 4, 3 * kPi / 4, {-0.7071, 1, 0.7071, 0.7071}},  // passes the top only
      {7 * kPi / 4, kPi / 4, {0.7071, 0.7071, 1, -0.7071}},  // passes angle 0
      {-kPi / 4, kPi / 4, {0.7071, 0.7071, 1, -0.7071}},     // the same, given negative
      {0.1, 0.1 + 2 * kPi - 1e-9, {-1, 1, 1, -1}},           // almost the full circle
  };
  for (const auto& c : cases) {
    HGLOBAL arc = Create_Arc(0, 0, 1, c.a1, c.a2);
    Rect q = Of(arc);
    for (int i = 0; i < 4; ++i) EXPECT_NEAR(q[i], c.want[i], 1e-4) << c.a1 << " " << c.a2;
    Delete_Element(arc);
  }
}

TEST(ElementRect, EveryTypeAndTheArrayUnion) {
  Leak_Check leaks;
  Objects_Array_Type a = {}, empty = {};
  const double xs[3] = {5, -2, 3}, ys[3] = {1, 4, -6};
  HGLOBAL seg = Create_Line(3, -1, -2, 7);
  for (HGLOBAL h :
       {seg, Create_Circle(10, 10, 2), Create_Polyline(3, xs, ys), Create_Point(-20, 0.5)})
    Add_Element_In_Array_by_Handle(&a, h);
  EXPECT_EQ(Of(seg), (Rect{-2, 7, 3, -1}));
  EXPECT_EQ(Of(Get_Element_Handle_by_Index(&a, 2)), (Rect{-2, 4, 5, -6}));
  Rect all(4);
  ASSERT_EQ(GetRectangle(&a, &all[0], &all[1], &all[2], &all[3]), 1);
  EXPECT_EQ(all, (Rect{-20, 12, 12, -6}));              // the circle reaches 12
  EXPECT_EQ(Is_Element_in_Rect(seg, -2, 7, 3, -1), 1);  // edges count as inside
  EXPECT_EQ(Is_Element_in_Rect(seg, 3, -1, -2, 7), 1);  // corners in either order
  EXPECT_EQ(Is_Element_in_Rect(seg, -1.9, 7, 3, -1), 0);
  EXPECT_EQ(GetRectangle(&empty, &all[0], &all[1], &all[2], &all[3]), 0);
  EXPECT_EQ(Get_Element_Rect(0, &all[0], &all[1], &all[2], &all[3]), 0);
  EXPECT_EQ(Is_Element_in_Rect(0, -1e9, 1e9, 1e9, -1e9), 0);
  DeleteObjectsArray(&a);
}

TEST(ElementRect, SplineRectFollowsTheCurveNotOnlyTheNodes) {
  Leak_Check leaks;
  // Three nodes on an arch; moments bend the curve above the top node.
  const double xs[3] = {0, 1, 2}, ys[3] = {0, 1, 0};
  const double mx[3] = {0, 0, 0}, my[3] = {0, -12, 0};
  HGLOBAL flat = Create_Spline(3, xs, ys, nullptr, nullptr);
  HGLOBAL bent = Create_Spline(3, xs, ys, mx, my);
  EXPECT_EQ(Of(flat)[1], 1);
  Rect b = Of(bent);
  EXPECT_GT(b[1], 1.9);  // the middle of each piece rises to 2
  EXPECT_TRUE(b[0] == 0 && b[2] == 2);
  Delete_Element(flat);
  Delete_Element(bent);
}
