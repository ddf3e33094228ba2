// Fillets and chamfers: tangency, trimmed lengths and arc centres on random
// corners (nearly parallel lines and arcs included), and the refusals that
// leave everything as it was.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "support/capture.h"
#include "support/elements.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

struct Seg {
  double x1, y1, x2, y2;
};
Seg Segment_Of(HGLOBAL h) {
  Seg s{};
  Get_Segment_Coord_by_Handle(h, &s.x1, &s.y1, &s.x2, &s.y2);
  return s;
}
struct Arc_Values {
  double x1, y1, x2, y2, xc, yc, r, a1, a2;
};
Arc_Values Arc_Of(HGLOBAL h) {
  Arc_Values a{};
  Get_Arc_Param(h, &a.x1, &a.y1, &a.x2, &a.y2, &a.xc, &a.yc, &a.r, &a.a1, &a.a2);
  return a;
}
}  // namespace

// Two segments meeting at a corner X with directions u1, u2 away from it:
// the fillet's touching points lie at r / tan(theta / 2) from X, its centre
// at r / sin(theta / 2) along the bisector; angles down to 1e-3 (nearly
// parallel) and up to nearly straight.
TEST(Fillet, SegmentCornersMatchTheClosedForm) {
  std::mt19937 rng(7);
  std::uniform_real_distribution<double> u(0, 1);
  Leak_Check leaks;
  int made = 0, refused = 0;
  for (int k = 0; k < 400; ++k) {
    double xx = 200 * u(rng) - 100, xy = 200 * u(rng) - 100, b1 = 2 * kPi * u(rng);
    double theta = k % 4 == 0 ? 1e-3 * (1 + u(rng)) : 0.05 + (kPi - 0.1) * u(rng);
    double b2 = b1 + (k % 2 ? theta : -theta);
    double u1x = std::cos(b1), u1y = std::sin(b1), u2x = std::cos(b2), u2y = std::sin(b2);
    double l1 = 10 + 90 * u(rng), l2 = 10 + 90 * u(rng), r = 0.1 + 20 * u(rng);
    if (k % 4 == 0) r *= 1e-4;  // nearly parallel: small radius or it will not fit
    Objects_Array_Type a{};
    // e1 runs into the corner, e2 out of it; the picks lie well away from X.
    HGLOBAL e1 = Create_Line(xx + l1 * u1x, xy + l1 * u1y, xx, xy);
    HGLOBAL e2 = Create_Line(xx, xy, xx + l2 * u2x, xy + l2 * u2y);
    Add_Element_In_Array_by_Handle(&a, e1);
    Add_Element_In_Array_by_Handle(&a, e2);
    auto before1 = Record_Bytes(e1), before2 = Record_Bytes(e2);
    Curs_Pos_Type c = Cursor(
        {{xx + 0.9 * l1 * u1x, xy + 0.9 * l1 * u1y}, {xx + 0.9 * l2 * u2x, xy + 0.9 * l2 * u2y}});
    double t = r / std::tan(theta / 2), d = r / std::sin(theta / 2);
    HGLOBAL f = Create_Fillet(&c, &a, e1, e2, r);
    if (t >= std::min(l1, l2)) {
      EXPECT_EQ(f, 0u) << k;
      EXPECT_EQ(a.count, 2);
      EXPECT_EQ(Record_Bytes(e1), before1);
      EXPECT_EQ(Record_Bytes(e2), before2);
      ++refused;
    } else {
      ASSERT_NE(f, 0u) << k;
      ++made;
      EXPECT_EQ(a.count, 3);
      Arc_Values arc = Arc_Of(f);
      Seg s1 = Segment_Of(e1), s2 = Segment_Of(e2);
      double scale = 1e-12 * (100 + d);
      double bx = u1x + u2x, by = u1y + u2y, bl = std::hypot(bx, by);
      EXPECT_NEAR(arc.xc, xx + d * bx / bl, scale) << k;
      EXPECT_NEAR(arc.yc, xy + d * by / bl, scale) << k;
      EXPECT_EQ(arc.r, r);
      // The trimmed segments keep their far ends and lose t at the corner.
      EXPECT_EQ(s1.x1, xx + l1 * u1x);
      EXPECT_EQ(s2.x2, xx + l2 * u2x);
      EXPECT_NEAR(std::hypot(s1.x2 - s1.x1, s1.y2 - s1.y1), l1 - t, scale) << k;
      EXPECT_NEAR(std::hypot(s2.x2 - s2.x1, s2.y2 - s2.y1), l2 - t, scale) << k;
      // Tangency: the centre is r from both lines, and the arc's ends are the
      // trimmed ends bit for bit (counter-clockwise from a1 to a2).
      EXPECT_NEAR(Distance_Line_Point(s1.x1, s1.y1, s1.x2, s1.y2, arc.xc, arc.yc), r, scale) << k;
      EXPECT_NEAR(Distance_Line_Point(s2.x1, s2.y1, s2.x2, s2.y2, arc.xc, arc.yc), r, scale) << k;
      bool ccw = k % 2 == 0;  // e2 turns clockwise from e1: the arc runs from e1 to e2
      EXPECT_EQ(ccw ? arc.x1 : arc.x2, s1.x2);
      EXPECT_EQ(ccw ? arc.y2 : arc.y1, s2.y1);
      EXPECT_NEAR(std::remainder(arc.a2 - arc.a1, 2 * kPi), kPi - theta, 1e-9) << k;
      EXPECT_EQ(Get_Creation_Type(f), 24);
      HGLOBAL p1, p2, p3;
      Get_Parent_Elem(f, &p1, &p2, &p3);
      EXPECT_EQ(p1, e1);
      EXPECT_EQ(p2, e2);
      EXPECT_EQ(Get_Parent(f, 1), 1u);  // the second end of e1 met the fillet
      EXPECT_EQ(Get_Parent(f, 3), 0u);  // the first end of e2
    }
    DeleteObjectsArray(&a);
  }
  EXPECT_GT(made, 150);
  EXPECT_GT(refused, 20);
}

namespace {

// The fillet arc's centre is r from each carrier (a line, or a circle touched
// from outside or inside), and its ends are the elements' new ends.
void Expect_Tangent_Join(HGLOBAL f, HGLOBAL e1, HGLOBAL e2, double r, int k) {
  Arc_Values arc = Arc_Of(f);
  double tol = 1e-12 * (200 + std::hypot(arc.xc, arc.yc));
  EXPECT_EQ(arc.r, r);
  std::vector<std::pair<double, double>> ends;
  for (HGLOBAL e : {e1, e2}) {
    if (Get_Element_Type_by_Handle(e) == EL_SEGMENT) {
      Seg s = Segment_Of(e);
      EXPECT_NEAR(Distance_Line_Point(s.x1, s.y1, s.x2, s.y2, arc.xc, arc.yc), r, tol) << k;
      ends.push_back({s.x1, s.y1});
      ends.push_back({s.x2, s.y2});
    } else {
      Arc_Values b = Arc_Of(e);
      double d = std::hypot(arc.xc - b.xc, arc.yc - b.yc);
      double off = std::min({std::fabs(d - (b.r + r)), std::fabs(d - std::fabs(b.r - r))});
      EXPECT_LT(off, tol) << k;
      ends.push_back({b.x1, b.y1});
      ends.push_back({b.x2, b.y2});
      // The trimmed arc's stored ends lie on its circle at its angles.
      EXPECT_NEAR(b.x1, b.xc + b.r * std::cos(b.a1), tol) << k;
      EXPECT_NEAR(b.y2, b.yc + b.r * std::sin(b.a2), tol) << k;
    }
  }
  auto has = [&](double x, double y) {
    for (auto& p : ends) {
      if (p.first == x && p.second == y) return true;
    }
    return false;
  };
  EXPECT_TRUE(has(arc.x1, arc.y1)) << k;
  EXPECT_TRUE(has(arc.x2, arc.y2)) << k;
}

}  // namespace

// A line across an arc's circle, and two crossing arcs, picked at random on
// both: whatever fillet is made touches both and joins their new ends.
TEST(Fillet, ArcCornersAreTangent) {
  std::mt19937 rng(11);
  std::uniform_real_distribution<double> u(0, 1);
  Leak_Check leaks;
  int made = 0;
  for (int k = 0; k < 400; ++k) {
    Objects_Array_Type a{};
    double cx = 100 * u(rng) - 50, cy = 100 * u(rng) - 50, R = 5 + 40 * u(rng);
    double a1 = 2 * kPi * u(rng), a2 = a1 + 0.5 + 5 * u(rng);
    HGLOBAL arc = Arc_With_Ends(cx, cy, R, a1, a2);
    double pick_a = a1 + (a2 - a1) * (0.1 + 0.8 * u(rng));
    double px = cx + R * std::cos(pick_a), py = cy + R * std::sin(pick_a);
    HGLOBAL other;
    double qx, qy;
    if (k % 2 == 0) {  // a segment through a point inside the circle
      double ix = cx + 0.9 * R * (2 * u(rng) - 1), iy = cy + 0.4 * R * (2 * u(rng) - 1);
      double b = 2 * kPi * u(rng), l = 3 * R;
      other = Create_Line(ix - l * std::cos(b), iy - l * std::sin(b), ix + l * std::cos(b),
                          iy + l * std::sin(b));
      double t = (u(rng) < 0.5 ? -1 : 1) * (1.2 + 1.5 * u(rng)) * R;
      qx = ix + t * std::cos(b), qy = iy + t * std::sin(b);
    } else {  // a second arc whose circle crosses the first
      double b = 2 * kPi * u(rng), d = R * (0.3 + 1.4 * u(rng)), R2 = R * (0.5 + u(rng));
      double c2x = cx + d * std::cos(b), c2y = cy + d * std::sin(b);
      double b1 = 2 * kPi * u(rng), b2 = b1 + 1 + 4 * u(rng);
      other = Arc_With_Ends(c2x, c2y, R2, b1, b2);
      double pb = b1 + (b2 - b1) * (0.1 + 0.8 * u(rng));
      qx = c2x + R2 * std::cos(pb), qy = c2y + R2 * std::sin(pb);
    }
    Add_Element_In_Array_by_Handle(&a, other);
    Add_Element_In_Array_by_Handle(&a, arc);
    Curs_Pos_Type c = Cursor({{qx, qy}, {px, py}});
    double r = R * (0.02 + 0.3 * u(rng));
    HGLOBAL f = Create_Fillet(&c, &a, other, arc, r);
    if (f) {
      ++made;
      Expect_Tangent_Join(f, other, arc, r, k);
    }
    DeleteObjectsArray(&a);
  }
  EXPECT_GT(made, 150);
}

// A segment along y = 0 through a circle of radius 30 about the origin: the
// fillet of radius 5 in the upper right corner has its centre at
// (sqrt(35^2 - 5^2), 5), outside the circle; the chamfer cuts 4 along the
// segment and 3 of arc length along the arc.
TEST(Fillet, LineArcCornerAndChamfer) {
  Leak_Check leaks;
  for (int chamfer = 0; chamfer < 2; ++chamfer) {
    Objects_Array_Type a{};
    HGLOBAL seg = Create_Line(-50, 0, 50, 0);
    HGLOBAL arc = Create_Arc(0, 0, 30, 0, kPi);
    Set_Arc_Ends(arc, 30, 0, -30, 0);
    Add_Element_In_Array_by_Handle(&a, seg);
    Add_Element_In_Array_by_Handle(&a, arc);
    Curs_Pos_Type c = Cursor({{45, 0}, {30 * std::cos(1.0), 30 * std::sin(1.0)}});
    HGLOBAL h =
        chamfer ? Create_Chamfer(&c, &a, seg, arc, 4, 3) : Create_Fillet(&c, &a, seg, arc, 5);
    ASSERT_NE(h, 0u);
    Seg s = Segment_Of(seg);
    Arc_Values b = Arc_Of(arc);
    EXPECT_EQ(s.x2, 50);  // the far end stays, the near one moves
    EXPECT_EQ(b.a2, kPi);
    if (chamfer) {
      Seg q = Segment_Of(h);
      EXPECT_DOUBLE_EQ(s.x1, 34);
      EXPECT_DOUBLE_EQ(b.a1, 0.1);
      EXPECT_EQ(q.x1, s.x1);
      EXPECT_EQ(q.x2, b.x1);
      EXPECT_EQ(Get_Creation_Type(h), 22);
      EXPECT_EQ(Get_Parent(h, 1), 0u);  // the first ends of both met the chamfer
      EXPECT_EQ(Get_Parent(h, 3), 0u);
    } else {
      Arc_Values f = Arc_Of(h);
      double ox = std::sqrt(35.0 * 35 - 25);
      EXPECT_NEAR(f.xc, ox, 1e-12 * 50);
      EXPECT_NEAR(f.yc, 5, 1e-12 * 50);
      EXPECT_NEAR(s.x1, ox, 1e-12 * 50);
      EXPECT_NEAR(b.a1, std::atan2(5, ox), 1e-14);
      Expect_Tangent_Join(h, seg, arc, 5, 0);
    }
    DeleteObjectsArray(&a);
  }
}

// Refusals return a null handle and change neither the elements nor the
// array (hostile handles and records: the hostile-host test).
TEST(Fillet, RefusalsChangeNothing) {
  Leak_Check leaks;
  Objects_Array_Type a{};
  HGLOBAL s1 = Create_Line(0, 0, 10, 0), s2 = Create_Line(0, 0, 0, 10);
  HGLOBAL par = Create_Line(0, 1, 10, 1), circle = Create_Circle(5, 5, 2);
  for (HGLOBAL h : {s1, s2, par, circle}) Add_Element_In_Array_by_Handle(&a, h);
  auto b1 = Record_Bytes(s1), b2 = Record_Bytes(s2), b3 = Record_Bytes(par);
  Curs_Pos_Type c = Cursor({{8, 0}, {0, 8}}), at_corner = Cursor({{0, 0}, {0, 8}});
  const HGLOBAL refused[] = {
      Create_Fillet(&c, &a, s1, s2, 0),         Create_Fillet(&c, &a, s1, s2, -1),
      Create_Fillet(&c, &a, s1, s2, NAN),       Create_Chamfer(&c, &a, s1, s2, 0, 1),
      Create_Chamfer(&c, &a, s1, s2, 1, -1),    Create_Chamfer(&c, &a, s1, s2, INFINITY, 1),
      Create_Fillet(&c, &a, s1, s2, 10.5),       // does not fit on pieces 10 long
      Create_Chamfer(&c, &a, s1, s2, 10, 2),     // nor does this
      Create_Fillet(&c, &a, s1, par, 0.5),       // parallel
      Create_Chamfer(&c, &a, s1, par, 1, 1),     //
      Create_Fillet(&at_corner, &a, s1, s2, 1),  // which side of the corner?
      Create_Fillet(&c, &a, s1, s1, 1),          // one element twice
      Create_Fillet(&c, &a, s1, circle, 1),      // a whole circle is not trimmed
  };
  for (size_t i = 0; i < std::size(refused); ++i) EXPECT_EQ(refused[i], 0u) << i;
  EXPECT_EQ(a.count, 4);
  EXPECT_EQ(Record_Bytes(s1), b1);
  EXPECT_EQ(Record_Bytes(s2), b2);
  EXPECT_EQ(Record_Bytes(par), b3);
  // The same corner with sound values works.
  EXPECT_NE(Create_Chamfer(&c, &a, s1, s2, 2, 3), 0u);
  EXPECT_EQ(Segment_Of(s1).x1, 2);
  EXPECT_EQ(Segment_Of(s2).y1, 3);
  DeleteObjectsArray(&a);
}

// An arc of 300 degrees from angle 0, crossed at its start by a segment
// leaving the circle: picked 200 degrees round from the corner, the long way
// is kept (a side judged by the shorter turn would cut it away).
TEST(Fillet, LongArcKeepsThePickedSide) {
  Leak_Check leaks;
  Objects_Array_Type a{};
  const double a2 = 300 * kPi / 180, s = std::sqrt(0.5);
  HGLOBAL arc = Arc_With_Ends(0, 0, 10, 0, a2);
  HGLOBAL seg = Create_Line(10, 0, 10 + 20 * s, -20 * s);
  Add_Element_In_Array_by_Handle(&a, seg);
  Add_Element_In_Array_by_Handle(&a, arc);
  const double pick = 200 * kPi / 180;
  Curs_Pos_Type c = Cursor({{10 + 15 * s, -15 * s}, {10 * std::cos(pick), 10 * std::sin(pick)}});
  HGLOBAL f = Create_Fillet(&c, &a, seg, arc, 1);
  ASSERT_NE(f, 0u);
  Arc_Values b = Arc_Of(arc);
  EXPECT_EQ(b.a2, a2);
  EXPECT_GT(b.a1, 0);
  EXPECT_LT(b.a1, 0.5);
  Expect_Tangent_Join(f, seg, arc, 1, 0);
  DeleteObjectsArray(&a);
}
