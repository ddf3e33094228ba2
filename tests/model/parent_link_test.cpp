// Parent slots by creation type, and cutting a link when a parent goes away.
#include <gtest/gtest.h>

#include <vector>

#include "support/capture.h"

namespace {

// An element of creation type ct with the given parents in its slots.
HGLOBAL Child(int ct, std::vector<HGLOBAL> parents) {
  HGLOBAL e = Create_Line(0, 0, 10, 0);
  Write_Creation_Type(e, ct);
  Alloc_Parent(e, static_cast<int>(parents.size()));
  for (size_t i = 0; i < parents.size(); ++i) Write_Parent(e, parents[i], static_cast<int>(i));
  return e;
}

// ... with `slots` slots holding 11, 12, 13, 14.
HGLOBAL Child(int ct, int slots) {
  std::vector<HGLOBAL> parents{11, 12, 13, 14};
  parents.resize(static_cast<size_t>(slots));
  return Child(ct, parents);
}

}  // namespace

TEST(ParentLink, GetParentElemReadsTheSlotsOfTheCreationType) {
  const struct {
    int ct;
    HGLOBAL p1, p2, p3;
  } cases[] = {
      {0, 0, 0, 0},     {1, 11, 0, 0},   {11, 11, 0, 0},  {21, 11, 0, 0},  {26, 11, 0, 0},
      {5, 11, 12, 0},   {20, 11, 12, 0}, {28, 11, 12, 0}, {22, 11, 13, 0}, {25, 11, 13, 0},
      {29, 11, 12, 13}, {3, 0, 0, 0},    {30, 0, 0, 0},
  };
  for (const auto& c : cases) {
    Leak_Check leaks;
    HGLOBAL e = Child(c.ct, 4);
    HGLOBAL p[3] = {99, 99, 99};
    Get_Parent_Elem(e, &p[0], &p[1], &p[2]);
    EXPECT_TRUE(p[0] == c.p1 && p[1] == c.p2 && p[2] == c.p3) << "ct " << c.ct;
    Delete_Element(e);
  }
}

TEST(ParentLink, SetParentElemWritesOnlyTheSlotOfTheCreationType) {
  // Parent k of a child of creation type ct goes to `slot` (-1: refused).
  const struct {
    int ct, slots, k, slot;
  } cases[] = {{1, 1, 7, 0},  {5, 2, 1, 1},  {5, 2, 2, -1},
               {22, 4, 1, 2}, {29, 3, 2, 2}, {29, 3, 3, -1}};
  for (const auto& c : cases) {
    Leak_Check leaks;
    HGLOBAL e = Child(c.ct, c.slots);
    Set_Parent_Elem(e, 50, c.k);
    for (int i = 0; i < c.slots; ++i) {
      EXPECT_EQ(Get_Parent(e, i), i == c.slot ? 50u : 11u + i) << "ct " << c.ct << " k " << c.k;
    }
    Delete_Element(e);
  }
}

TEST(ParentLink, CutStepsTheCreationTypeDown) {
  // Cutting parent `cut` (its handle) from a child of creation type ct.
  const struct {
    int ct, slots;
    HGLOBAL cut;
    int new_ct, new_count;  // creation type and parent count afterwards
    HGLOBAL s0, s1, s2;     // slots afterwards (0 where there is no slot)
  } cases[] = {
      {1, 1, 11, 0, 0, 0, 0, 0},     {18, 1, 11, 0, 0, 0, 0, 0},    {23, 4, 13, 0, 0, 0, 0, 0},
      {5, 2, 11, 16, 1, 12, 0, 0},   {5, 2, 12, 16, 1, 11, 0, 0},   {17, 2, 12, 16, 1, 11, 0, 0},
      {7, 2, 11, 6, 1, 12, 0, 0},    {9, 2, 12, 8, 1, 11, 0, 0},    {15, 2, 11, 14, 1, 12, 0, 0},
      {19, 2, 11, 18, 1, 12, 0, 0},  {22, 4, 11, 21, 2, 13, 14, 0}, {22, 4, 13, 21, 2, 11, 12, 0},
      {25, 4, 13, 21, 2, 11, 12, 0}, {24, 4, 11, 23, 4, 0, 12, 13}, {24, 4, 13, 23, 4, 11, 12, 0},
      {26, 2, 11, 3, 2, 11, 12, 0},  {27, 2, 11, 4, 2, 11, 12, 0},  {28, 3, 11, 14, 3, 12, 0, 13},
      {28, 3, 12, 14, 3, 11, 0, 13}, {29, 3, 12, 28, 3, 11, 13, 0}, {29, 3, 11, 28, 3, 12, 13, 0},
  };
  for (const auto& c : cases) {
    Leak_Check leaks;
    HGLOBAL e = Child(c.ct, c.slots);
    EXPECT_EQ(Cut_Parent_Link(e, c.cut), c.ct);
    EXPECT_EQ(Get_Creation_Type(e), c.new_ct) << "ct " << c.ct << " cut " << c.cut;
    const int count = static_cast<Element_Record*>(GlobalLock(e))->parent_count;
    GlobalUnlock(e);
    EXPECT_EQ(count, c.new_count) << "ct " << c.ct << " cut " << c.cut;
    const HGLOBAL want[3] = {c.s0, c.s1, c.s2};
    for (int i = 0; i < 3 && i < c.new_count; ++i)
      EXPECT_EQ(Get_Parent(e, i), want[i]) << "ct " << c.ct << " cut " << c.cut << " slot " << i;
    Delete_Element(e);
  }
}

TEST(ParentLink, CutDependsOnTheRemainingParentAndLeavesOthersAlone) {
  Leak_Check leaks;
  HGLOBAL e = Child(5, 2);
  EXPECT_EQ(Cut_Parent_Link(e, 77), 5);  // not a parent
  EXPECT_EQ(Cut_Parent_Link(e, 0), 5);
  EXPECT_TRUE(Get_Creation_Type(e) == 5 && Get_Parent(e, 1) == 12u);
  EXPECT_EQ(Cut_Parent_Link(0, 11), 0);
  Delete_Element(e);

  // Type 20 steps to 16 when the remaining parent is a segment, else to 18.
  HGLOBAL seg = Create_Line(0, 0, 1, 0), circle = Create_Circle(0, 0, 1);
  HGLOBAL t1 = Child(20, {seg, circle}), t2 = Child(20, {seg, circle});
  Cut_Parent_Link(t1, circle);
  Cut_Parent_Link(t2, seg);
  EXPECT_EQ(Get_Creation_Type(t1), 16);
  EXPECT_TRUE(Get_Creation_Type(t2) == 18 && Get_Parent(t2, 0) == circle);

  // Cutting the first pair of a four-slot tangent swaps the line's ends.
  HGLOBAL four = Child(22, 4);
  Cut_Parent_Link(four, 11);
  double x1, y1, x2, y2;
  Get_Segment_Coord_by_Handle(four, &x1, &y1, &x2, &y2);
  EXPECT_TRUE(x1 == 10 && x2 == 0);
  for (HGLOBAL h : {seg, circle, t1, t2, four}) Delete_Element(h);
}
