// Element records: layout, attribute bits, creation type, copy and delete.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "support/capture.h"

namespace {

Element_Record Read(HGLOBAL h) {
  Element_Record r;
  std::memcpy(&r, GlobalLock(h), sizeof r);
  GlobalUnlock(h);
  return r;
}

// The block's contents as n values of type T (fewer when it is smaller).
template <class T>
std::vector<T> Block(HGLOBAL h, size_t n) {
  std::vector<T> v(std::min<size_t>(n, GlobalSize(h) / sizeof(T)));
  if (!v.empty()) std::memcpy(v.data(), GlobalLock(h), v.size() * sizeof(T));
  GlobalUnlock(h);
  return v;
}

std::vector<int32_t> Attr_Words(HGLOBAL h) {
  HGLOBAL words = static_cast<HGLOBAL>(Read(h).attr);
  return Block<int32_t>(words, GlobalSize(words) / 4);
}

constexpr int32_t O = ATTR_ORDINARY, S = ATTR_ORDINARY | ATTR_SELECTED;

}  // namespace

TEST(ElementRecord, AttributeSettersTouchOnlyTheirBitAndBoundTheirIndex) {
  Leak_Check leaks;
  HGLOBAL c = Create_Circle(0, 0, 1);
  EXPECT_EQ(Set_Element_Select_Attribute(c, 3), 0);      // the low bit of the argument
  EXPECT_EQ(Set_Element_Active_Attribute(c, 99, 1), 0);  // index ignored
  EXPECT_EQ(Set_Element_Edit_Attribute(c, -5, 1), 0);
  EXPECT_EQ(Set_Element_Select_Attribute(c, 2), 1);  // 2 has low bit 0: clears
  EXPECT_EQ(Get_Element_Attribute(c), O | ATTR_ACTIVE | ATTR_EDIT);

  // Compound elements: word 1 is a handle; selection marks the piece words
  // 0..n-2 (polyline) or 0..2n-2 (spline); indexes are bounded by n - 1.
  const double xs[4] = {0, 1, 2, 3}, ys[4] = {0, 0, 0, 0};
  HGLOBAL poly = Create_Polyline(4, xs, ys), spline = Create_Spline(3, xs, ys, nullptr, nullptr);
  EXPECT_EQ(Set_Element_Select_Attribute(poly, 1), 0);
  EXPECT_EQ(Set_Element_Select_Attribute(poly, 1), 1);
  EXPECT_EQ(Get_Element_Attribute(poly), 0);
  EXPECT_EQ(Set_Element_Active_Attribute(poly, 3, 1), 0);
  EXPECT_EQ(Set_Element_Active_Attribute(poly, 4, 1) + Set_Element_Active_Attribute(poly, -1, 1),
            -2);
  EXPECT_EQ(Set_Element_Edit_Attribute(poly, 0, 1), 0);  // polylines have no edit state
  EXPECT_EQ(Attr_Words(poly), (std::vector<int32_t>{S, S, S, O | ATTR_ACTIVE}));
  EXPECT_EQ(Set_Element_Select_Attribute(spline, 1), 0);
  EXPECT_EQ(Set_Element_Active_Attribute(spline, 3, 1), -1);
  EXPECT_EQ(Set_Element_Edit_Attribute(spline, 5, 1), 0);
  EXPECT_EQ(Set_Element_Edit_Attribute(spline, 6, 1), 0);  // past the block: refused
  EXPECT_EQ(Attr_Words(spline), (std::vector<int32_t>{S, S, S, S, S, O | ATTR_EDIT}));
  for (HGLOBAL h : {c, poly, spline}) Delete_Element(h);
}

TEST(ElementRecord, BadHandlesAndIndexesFail) {
  Leak_Check leaks;
  Box_Capture boxes;
  HGLOBAL stale = Create_Point(1, 1);
  Delete_Element(stale);
  HGLOBAL small = GlobalAlloc(GHND, 8);  // a block too small to be a record
  for (HGLOBAL h : {HGLOBAL{0}, stale, HGLOBAL{0xDEADBEEF}, small}) {
    EXPECT_EQ(Get_Element_Type_by_Handle(h), 0);
    EXPECT_EQ(Get_Element_Attribute(h), 0);
    EXPECT_EQ(Set_Element_Select_Attribute(h, 1), 0);
    EXPECT_EQ(Set_Element_Edit_Attribute(h, 0, 1), 0);
    EXPECT_EQ(Create_Element_Copy(h), 0u);
    EXPECT_EQ(Set_Element_Active_Attribute(h, 0, 1), -1);  // no box: tests the lock first
    EXPECT_EQ(Get_Selected_Attr_by_Handle(h), 0);
    EXPECT_EQ(Get_Creation_Type(h), 0);
    EXPECT_EQ(Alloc_Parent(h, 2), 0u);
    EXPECT_EQ(Write_Parent(h, 5, 0), 0);
    EXPECT_EQ(Get_Parent(h, 0), 0u);
    Write_Creation_Type(h, 3);
    Delete_Element(h);  // returns at once
  }
  EXPECT_TRUE(boxes.guard_shown(4 * 5));
  GlobalFree(small);
  EXPECT_EQ(Clear_Curs_Pos(nullptr), nullptr);

  // The parent list is bounded by its block.
  HGLOBAL e = Create_Line(0, 0, 1, 1);
  EXPECT_EQ(Write_Parent(e, 7, 0), 0);  // no list yet
  ASSERT_NE(Alloc_Parent(e, 2), 0u);
  EXPECT_EQ(Write_Parent(e, 7, 1), 1);
  EXPECT_EQ(Get_Parent(e, 1), 7u);
  EXPECT_EQ(Write_Parent(e, 7, 2) + Write_Parent(e, 7, -1), 0);
  EXPECT_EQ(Get_Parent(e, 1000000), 0u);
  EXPECT_EQ(Alloc_Parent(e, 0) + Alloc_Parent(e, -3), 0u);
  Delete_Element(e);
}

TEST(ElementRecord, CopyRebuildsTheParentListByCreationType) {
  // Slots a copy allocates and copies, by creation type.
  const struct {
    int creation_type, allocated, copied;
  } cases[] = {
      {0, 0, 0},  {1, 1, 1},  {2, 1, 1},  {3, 0, 0},  {4, 0, 0},  {5, 2, 2},  {6, 1, 1},
      {7, 2, 2},  {8, 1, 1},  {9, 2, 2},  {10, 1, 1}, {11, 2, 2}, {12, 1, 1}, {13, 1, 1},
      {14, 1, 1}, {15, 2, 2}, {16, 1, 1}, {17, 2, 2}, {18, 1, 1}, {19, 2, 2}, {20, 2, 2},
      {21, 2, 2}, {22, 4, 4}, {23, 4, 4}, {24, 4, 4}, {25, 4, 4}, {26, 2, 2}, {27, 2, 2},
      {28, 3, 2}, {29, 3, 3}, {30, 0, 0}, {99, 0, 0},
  };
  for (const auto& c : cases) {
    Leak_Check leaks;
    HGLOBAL src = Create_Line(1, 2, 3, 4);
    Set_Element_Select_Attribute(src, 1);
    Write_Creation_Type(src, c.creation_type);
    Alloc_Parent(src, 4);
    for (int i = 0; i < 4; ++i) Write_Parent(src, 100 + static_cast<HGLOBAL>(i), i);
    HGLOBAL copy = Create_Element_Copy(src);
    ASSERT_NE(copy, 0u);
    Element_Record r = Read(copy);
    EXPECT_EQ(r.creation_type, c.creation_type);
    EXPECT_EQ(r.parent_count, c.allocated) << "creation type " << c.creation_type;
    EXPECT_EQ(r.parents != 0, c.allocated > 0);
    for (int i = 0; i < c.allocated; ++i) {
      HGLOBAL want = i < c.copied ? 100 + static_cast<HGLOBAL>(i) : 0;
      EXPECT_EQ(Get_Parent(copy, i), want) << "creation type " << c.creation_type << " slot " << i;
    }
    EXPECT_EQ(Block<double>(copy, 5), Block<double>(src, 5));  // the geometry
    EXPECT_EQ(Get_Element_Attribute(copy), S);
    Delete_Element(copy);
    Delete_Element(src);
  }
}

TEST(ElementRecord, CopyOfCompoundElementsOwnsCopiesOfEveryBlock) {
  Leak_Check leaks;
  const double xs[5] = {0, 1, 2, 3, 4}, ys[5] = {4, 3, 2, 1, 0}, m[5] = {9, 8, 7, 6, 5};
  HGLOBAL poly = Create_Polyline(5, xs, ys), spline = Create_Spline(5, xs, ys, m, m);
  Set_Element_Active_Attribute(poly, 2, 1);
  for (HGLOBAL src : {poly, spline}) {
    HGLOBAL copy = Create_Element_Copy(src);
    ASSERT_NE(copy, 0u);
    const Element_Record a = Read(src), b = Read(copy);
    EXPECT_EQ(Attr_Words(copy), Attr_Words(src));
    // Node and moment blocks: the same contents in blocks of the copy's own.
    const int blocks = a.type == EL_POLYLINE ? 1 : 4;
    for (int k = 0; k < blocks; ++k) {
      HGLOBAL from = static_cast<HGLOBAL>(a.u.words[1 + k]),
              to = static_cast<HGLOBAL>(b.u.words[1 + k]);
      EXPECT_NE(from, to);
      EXPECT_EQ(Block<double>(to, 10), Block<double>(from, 10)) << "block " << k;
      EXPECT_EQ(GlobalSize(to), GlobalSize(from));
    }
    Delete_Element(copy);
  }
  Delete_Element(poly);
  Delete_Element(spline);
}

TEST(ElementRecord, CopyFailsCleanlyWhenMemoryRunsOut) {
  Leak_Check leaks;
  const double xs[3] = {0, 1, 2};
  HGLOBAL spline = Create_Spline(3, xs, xs, xs, xs);
  HGLOBAL seg = Create_Line(0, 0, 1, 1);
  Write_Creation_Type(seg, 29);
  Alloc_Parent(seg, 3);
  for (HGLOBAL src : {spline, seg}) {
    for (int k = 1; k <= 8; ++k) {
      SetGlobalAllocFailure(k);
      HGLOBAL copy = Create_Element_Copy(src);
      SetGlobalAllocFailure(0);
      if (copy) Delete_Element(copy);
    }
  }
  Delete_Element(spline);
  Delete_Element(seg);
}

TEST(ElementRecord, DeleteFreesExactlyTheBlocksOfItsType) {
  Leak_Check leaks;
  const double xs[3] = {0, 1, 2};
  const long before = GlobalBlockCount();
  // A compound element's parent list is not freed with it, as it never was.
  HGLOBAL poly = Create_Polyline(3, xs, xs);
  HGLOBAL list = Alloc_Parent(poly, 1);
  Delete_Element(poly);
  EXPECT_EQ(GlobalBlockCount(), before + 1);
  GlobalFree(list);
  // A record of no known type frees nothing.
  HGLOBAL bare = Alloc_Element();
  Delete_Element(bare);
  EXPECT_EQ(GlobalSize(bare), 96u);
  GlobalFree(bare);
}
