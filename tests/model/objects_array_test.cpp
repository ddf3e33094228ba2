// Objects arrays: growth, lookup, removal, deletion and clearing.
#include <gtest/gtest.h>

#include <vector>

#include "support/capture.h"
#include "support/elements.h"

TEST(ObjectsArray, GrowsToTenThenOneSlotAtATimeAndSurvivesFailedGrowth) {
  Leak_Check leaks;
  Objects_Array_Type a = {};
  HGLOBAL p = Create_Point(0, 0);
  std::vector<int> capacities;
  for (int i = 0; i < 13; ++i) {
    if (i == 0 || i == 10) {  // the first block, then the first reallocation, fails
      SetGlobalAllocFailure(1);
      EXPECT_EQ(Add_Element_In_Array_by_Handle(&a, p), -1);
      SetGlobalAllocFailure(0);
      EXPECT_TRUE(a.count == i && a.capacity == i) << i;
    }
    EXPECT_EQ(Add_Element_In_Array_by_Handle(&a, p), i);
    capacities.push_back(a.capacity);
  }
  EXPECT_EQ(capacities, (std::vector<int>{10, 10, 10, 10, 10, 10, 10, 10, 10, 10, 11, 12, 13}));
  EXPECT_EQ(GlobalSize(a.handles), 13u * 4);
  EXPECT_EQ(Get_Element_Index_by_Handle(&a, p), 0);  // stored 13 times: the lowest index
  EXPECT_EQ(Add_Element_In_Array_by_Handle(&a, 0), -1);
  EXPECT_EQ(Add_Element_In_Array_by_Handle(nullptr, p), -1);
  EXPECT_EQ(a.count, 13);
  DeleteObjectsArray_Without_El_Deleting(&a);
  EXPECT_EQ(a.capacity + a.count + static_cast<int>(a.handles), 0);
  Delete_Element(p);
}

TEST(ObjectsArray, LookupAndRemovalShiftLaterIndexes) {
  Leak_Check leaks;
  Objects_Array_Type a = {};
  std::vector<HGLOBAL> h;
  for (int i = 0; i < 12; ++i) {
    h.push_back(Create_Point(i, 0));
    Add_Element_In_Array_by_Handle(&a, h.back());
  }
  for (int bad : {12, -1}) {
    EXPECT_EQ(Get_Element_Handle_by_Index(&a, bad), 0u);
    EXPECT_EQ(Delete_Element_by_Index(&a, bad), 0);
  }
  EXPECT_EQ(Delete_Element_by_Index(&a, 4), 1);
  EXPECT_TRUE(a.count == 11 && a.capacity == 12);  // never shrinks
  EXPECT_EQ(GlobalLock(h[4]), nullptr);            // its record is freed
  EXPECT_EQ(Get_Element_Index_by_Handle(&a, h[4]), -1);
  for (int i = 0; i < 11; ++i) {
    HGLOBAL want = h[static_cast<size_t>(i < 4 ? i : i + 1)];
    EXPECT_EQ(Get_Element_Handle_by_Index(&a, i), want) << i;
    EXPECT_EQ(Get_Element_Index_by_Handle(&a, want), i);
  }
  EXPECT_EQ(Delete_Element_by_Index(&a, a.count - 1), 1);  // the last one
  EXPECT_EQ(Get_Element_Handle_by_Index(&a, 9), h[10]);
  DeleteObjectsArray(&a);
  EXPECT_EQ(a.capacity + a.count + static_cast<int>(a.handles), 0);
}

TEST(ObjectsArray, NullAllZeroAndCorruptArraysAreSafe) {
  Leak_Check leaks;
  Objects_Array_Type zero = {};
  for (Objects_Array_Type* a : {&zero, static_cast<Objects_Array_Type*>(nullptr)}) {
    EXPECT_EQ(Get_Element_Handle_by_Index(a, 0), 0u);
    EXPECT_EQ(Get_Element_Index_by_Handle(a, 1), -1);
    EXPECT_EQ(Delete_Element_by_Index(a, 0), 0);
    EXPECT_EQ(ClearObjectsArray(a, nullptr, nullptr), 0);
    DeleteObjectsArray(a);
    DeleteObjectsArray_Without_El_Deleting(a);
    DeleteiObjectsArray(a);
  }
  EXPECT_EQ(zero.capacity + zero.count + static_cast<int>(zero.handles), 0);

  // An array that claims more than its block holds is read only as far as the block goes.
  HGLOBAL p = Create_Point(1, 2);
  Objects_Array_Type liar = {};
  Add_Element_In_Array_by_Handle(&liar, p);
  liar.count = liar.capacity = 1000000;
  EXPECT_EQ(Get_Element_Handle_by_Index(&liar, 500), 0u);
  EXPECT_EQ(Get_Element_Index_by_Handle(&liar, 77), -1);
  EXPECT_EQ(Add_Element_In_Array_by_Handle(&liar, p), -1);
  EXPECT_EQ(Delete_Element_by_Index(&liar, 999), 0);
  liar.count = -5;
  EXPECT_EQ(Get_Element_Handle_by_Index(&liar, 0), 0u);
  liar.count = 1;
  liar.capacity = 10;
  DeleteObjectsArray(&liar);
  // A made-up block handle is refused.
  Objects_Array_Type made_up = {10, 3, 0xABCDEF01};
  EXPECT_EQ(Add_Element_In_Array_by_Handle(&made_up, 4), -1);
  EXPECT_EQ(Get_Element_Handle_by_Index(&made_up, 1), 0u);
}

TEST(ObjectsArray, DeleteFreesElementsClearKeepsSlotsAndCutsLinks) {
  Leak_Check leaks;
  Objects_Array_Type a = {}, children = {}, display = {};
  const double xs[3] = {0, 1, 2};
  HGLOBAL seg = Create_Line(0, 0, 1, 0), circle = Create_Circle(0, 0, 1);
  Add_Element_In_Array_by_Handle(&a, seg);
  Add_Element_In_Array_by_Handle(&a, circle);
  // A child point on the segment (one parent) and a tangent line to both (two parents).
  HGLOBAL on_seg = Child(Create_Point(0.5, 0), 1, {seg});
  HGLOBAL tangent = Child(Create_Line(0, 1, 1, 1), 5, {seg, circle});
  for (HGLOBAL h : {on_seg, tangent}) Add_Element_In_Array_by_Handle(&children, h);

  EXPECT_EQ(ClearObjectsArray(&a, &children, nullptr), 2);
  EXPECT_TRUE(a.count == 0 && a.capacity == 10 && a.handles != 0);
  EXPECT_EQ(GlobalLock(seg), nullptr);
  EXPECT_TRUE(Get_Creation_Type(on_seg) == 0 && Get_Parent(on_seg, 0) == 0);
  // Both parents went: 5 steps down to 16 (circle removed first), then to 0.
  EXPECT_EQ(Get_Creation_Type(tangent), 0);

  // The cleared array is reused, then deleted with its (compound) elements.
  Add_Element_In_Array_by_Handle(&a, Create_Polyline(3, xs, xs));
  Add_Element_In_Array_by_Handle(&a, Create_Spline(3, xs, xs, xs, xs));
  EXPECT_EQ(a.count, 2);
  DeleteObjectsArray(&a);
  DeleteObjectsArray(&children);

  // Display copies go with their inner blocks; a tiny block counts as a simple copy.
  for (auto [type, inner] : {std::pair{EL_SEGMENT, 0}, {EL_POLYLINE, 2}, {EL_SPLINE, 7}}) {
    HGLOBAL c = GlobalAlloc(GHND, sizeof(iElement_Header) + 32);
    auto* hdr = static_cast<iElement_Header*>(GlobalLock(c));
    hdr->type = type;
    for (int k = 0; k < inner; ++k) hdr->blocks[k] = GlobalAlloc(GHND, 16);
    GlobalUnlock(c);
    Add_Element_In_Array_by_Handle(&display, c);
  }
  Add_Element_In_Array_by_Handle(&display, GlobalAlloc(GHND, 4));
  DeleteiObjectsArray(&display);
  EXPECT_EQ(display.handles, 0u);
}
