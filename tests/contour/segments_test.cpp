// Surface segments: travel sense, closure, scale, hole owners, the container.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "contour/drawing.h"
#include "support/capture.h"

namespace {

constexpr double kPi = std::numbers::pi;

// Signed area of segments [from, to) of the list; checks they form a chain.
double Chain_Area(const Segment_List& list, int from, int to) {
  double twice = 0;
  for (int i = from; i < to; ++i) {
    const SEGMENT_2D& s = list[i];
    const SEGMENT_2D& next = list[i + 1 < to ? i + 1 : from];
    EXPECT_EQ(s.x2, next.x1) << i;
    EXPECT_EQ(s.y2, next.y1) << i;
    EXPECT_EQ(s.flag1 + s.flag2, 2);
    twice += s.x1 * s.y2 - s.x2 * s.y1;
  }
  return twice / 2;
}

TEST(Segments, MaterialOnTheLeftShiftedAndScaled) {
  Drawing d;
  Surface_Record s;
  // Outer drawn clockwise with segments reversed at random; hole drawn
  // counter-clockwise.
  s.Outer({d.Seg(0, 0, 0, 10), d.Seg(10, 10, 0, 10), d.Seg(10, 10, 10, 0), d.Seg(0, 0, 10, 0)});
  s.Hole(d.Square(2, 2, 6));
  Segment_List list;
  ASSERT_EQ(Make_Surface_Segments(&s.s, &list, 1, 2, 2), 8);
  EXPECT_DOUBLE_EQ(Chain_Area(list, 0, 4), 400);  // outer counter-clockwise, 100 * 2^2
  EXPECT_DOUBLE_EQ(Chain_Area(list, 4, 8), -144);
  // Travelled backwards: from the first element's end shared with the second.
  EXPECT_TRUE(list[0].x1 == -2 && list[0].y1 == 16);  // (0 - 1) * 2, (10 - 2) * 2
  // Appends: a second call doubles the list.
  EXPECT_TRUE(Make_Surface_Segments(&s.s, &list, 0, 0, 1) == 8 && list.GetSize() == 16);
}

TEST(Segments, DirectionAndStart) {
  Drawing d;
  // Into the square from its bottom edge; the sense asked for flips the answer.
  Contour ccw(d.Square(0, 0, 10)), cw(d.Polygon({{0, 0}, {0, 10}, {10, 10}, {10, 0}}));
  double nx = 0, ny = 0;
  EXPECT_TRUE(Find_Contour_Direction(&ccw.c, 0, &nx, &ny) == 1 && nx == 0 && ny == 1);
  EXPECT_EQ(Find_Contour_Direction(&ccw.c, 1, nullptr, nullptr), -1);
  EXPECT_EQ(Find_Contour_Direction(&cw.c, 0, nullptr, nullptr), -1);
  // An arc first (a "D" stored counter-clockwise): inwards from its middle (1, 0).
  Contour dee({d.Arc(0, 0, 1, -kPi / 2, kPi / 2), d.Seg(0, 1, 0, -1)});
  EXPECT_TRUE(Find_Contour_Direction(&dee.c, 0, &nx, &ny) == 1 && std::fabs(nx + 1) < 1e-15);
  // The first element stored against the chain: the start is still the end
  // it does not share with the second; a circle starts at angle 0.
  Contour turned({d.Seg(10, 0, 0, 0), d.Seg(10, 0, 10, 10), d.Seg(10, 10, 0, 0)});
  Contour circle({d.Circle(3, 3, 1)});
  double x = -1, y = -1;
  EXPECT_TRUE(Find_Start_ContEl(&turned.c, &x, &y) == 0 && x == 0 && y == 0);
  EXPECT_TRUE(Find_Start_ContEl(&circle.c, &x, &y) == 0 && x == 4 && y == 3);
  EXPECT_EQ(Find_Contour_Direction(&circle.c, 1, nullptr, nullptr), -1);
}

TEST(Segments, CirclesAndArcsBecomeChains) {
  Drawing d;
  Surface_Record s;
  s.Outer({d.Arc(0, 0, 5, -kPi / 2, kPi / 2), d.Seg(0, 5, 0, -5)});
  s.Hole({d.Circle(2, 0, 1)});
  Segment_List list;
  ASSERT_EQ(Make_Surface_Segments(&s.s, &list, 0, 0, 1), 36 + 1 + 72);
  const double piece = kPi / 36;
  EXPECT_NEAR(Chain_Area(list, 0, 37), 36 * 12.5 * std::sin(piece), 1e-12);
  EXPECT_NEAR(Chain_Area(list, 37, 109), -72 * 0.5 * std::sin(piece), 1e-12);
  for (int i = 37; i < 109; ++i) {
    EXPECT_NEAR(std::hypot(list[i].x1 - 2, list[i].y1), 1, 1e-15);
  }
  EXPECT_TRUE(list[0].x1 == 0 && list[0].y1 == -5);  // the arc's stored first end
}

TEST(Segments, ExtendedOwnersAndContainer) {
  Drawing d;
  Surface_Record s;
  s.Outer(d.Square(0, 0, 100));
  s.Outer(d.Square(10, 10, 40));  // inside the first: its holes belong to it
  s.Hole(d.Square(20, 20, 10));
  s.Hole(d.Square(60, 60, 10));
  s.Hole(d.Square(200, 0, 10));  // in no outer contour
  CSurface_Segments seg;
  seg.AddExternal(new Segment_List);  // emptied first
  ASSERT_EQ(Make_Surface_Segments_Extended(&s.s, &seg, 0, 0, 1), 20);
  ASSERT_TRUE(seg.GetExternalNum() == 2 && seg.GetInternalNum() == 3);
  EXPECT_EQ((std::vector<int>{seg.GetIntInExtAt(0), seg.GetIntInExtAt(1), seg.GetIntInExtAt(2)}),
            (std::vector<int>{1, 0, -1}));
  EXPECT_EQ(seg.GetIntContNumbers_InExtContour(1), 1);
  EXPECT_EQ(seg.GetIntCont_InExtContourAt(0, 0), seg.GetInternalAt(1));
  EXPECT_EQ(seg.GetIntCont_InExtContourAt(0, 1), nullptr);
  EXPECT_LT(Chain_Area(*seg.GetInternalAt(0), 0, 4), 0);

  // Indexes out of range give null or -1; the owner array grows with -1.
  EXPECT_TRUE(seg.GetExternalAt(-1) == nullptr && seg.GetInternalAt(3) == nullptr);
  EXPECT_EQ(seg.GetIntInExtAt(99), -1);
  EXPECT_EQ(seg.SetIntInExtIndex(6, 1), 1);
  EXPECT_TRUE(seg.GetIntInExtAt(5) == -1 && seg.GetIntInExtAt(6) == 1);
  EXPECT_EQ(seg.SetIntInExtIndex(-1, 0) + seg.SetIntInExtIndex(1 << 30, 0), 0);
  EXPECT_EQ(seg.AddExternal(nullptr), -1);
  EXPECT_EQ(seg.AddInternal(seg.GetExternalAt(0)), -1);  // held already
  seg.RemoveAll();
  EXPECT_EQ(seg.GetExternalNum() + seg.GetInternalNum() + seg.GetIntInExtAt(0), -1);
}

TEST(Segments, BadInput) {
  Leak_Check leaks;
  Box_Capture boxes;
  Drawing d;
  Segment_List list;
  CSurface_Segments seg;
  Surface_Record s;
  EXPECT_EQ(Make_Surface_Segments(nullptr, &list, 0, 0, 1), -1);
  EXPECT_EQ(Make_Surface_Segments(&s.s, nullptr, 0, 0, 1), -1);
  EXPECT_EQ(Make_Surface_Segments_Extended(nullptr, &seg, 0, 0, 1), -1);
  EXPECT_EQ(Find_Contour_Direction(nullptr, 0, nullptr, nullptr), 0);
  EXPECT_EQ(Find_Start_ContEl(nullptr, nullptr, nullptr), -1);
  Contour empty({});
  EXPECT_EQ(Find_Contour_Direction(&empty.c, 0, nullptr, nullptr), 0);
  // A contour with a deleted element: one guard box, an empty list kept in
  // its place so indexes still match the surface's.
  auto square = d.Square(0, 0, 1);
  HGLOBAL gone = Create_Line(0, 1, 0, 0);
  square[3] = gone;
  s.Outer(square);
  s.Outer(d.Square(5, 5, 1));
  Delete_Element(gone);
  EXPECT_EQ(Make_Surface_Segments_Extended(&s.s, &seg, 0, 0, 1), 4);
  EXPECT_TRUE(boxes.guard_shown(1));
  EXPECT_TRUE(seg.GetExternalAt(0)->GetSize() == 0 && seg.GetExternalAt(1)->GetSize() == 4);
}

}  // namespace
