// Objects arrays: growth, lookup, removal, deletion and clearing.
#include <gtest/gtest.h>

#include <vector>

#include "support/capture.h"

TEST(ObjectsArray, GrowsToTenThenOneSlotAtATime) {
  Leak_Check leaks;
  Objects_Array_Type a = {};
  HGLOBAL p = Create_Point(0, 0);
  std::vector<int> capacities;
  for (int i = 0; i < 13; ++i) {
    EXPECT_EQ(Add_Element_In_Array_by_Handle(&a, p), i);
    capacities.push_back(a.capacity);
  }
  EXPECT_EQ(capacities, (std::vector<int>{10, 10, 10, 10, 10, 10, 10, 10, 10, 10, 11, 12, 13}));
  EXPECT_EQ(a.count, 13);
  EXPECT_EQ(GlobalSize(a.handles), 13u * 4);
  EXPECT_EQ(Get_Element_Index_by_Handle(&a, p), 0);  // stored 13 times: the lowest index
  EXPECT_EQ(Add_Element_In_Array_by_Handle(&a, 0), -1);
  EXPECT_EQ(Add_Element_In_Array_by_Handle(nullptr, p), -1);
  EXPECT_EQ(a.count, 13);
  DeleteObjectsArray_Without_El_Deleting(&a);
  EXPECT_EQ(a.capacity + a.count, 0);
  EXPECT_EQ(a.handles, 0u);
  Delete_Element(p);
}

TEST(ObjectsArray, FailedGrowthLeavesTheArrayUnchanged) {
  Leak_Check leaks;
  Objects_Array_Type a = {};
  SetGlobalAllocFailure(1);
  EXPECT_EQ(Add_Element_In_Array_by_Handle(&a, 5), -1);
  EXPECT_EQ(a.handles, 0u);
  for (int i = 0; i < 10; ++i) Add_Element_In_Array_by_Handle(&a, 5);
  SetGlobalAllocFailure(1);
  // The block keeps no spare room yet, so the eleventh add must reallocate.
  EXPECT_EQ(Add_Element_In_Array_by_Handle(&a, 6), -1);
  EXPECT_EQ(a.capacity, 10);
  EXPECT_EQ(a.count, 10);
  SetGlobalAllocFailure(0);
  EXPECT_EQ(Add_Element_In_Array_by_Handle(&a, 6), 10);
  DeleteObjectsArray_Without_El_Deleting(&a);
}

TEST(ObjectsArray, LookupAndRemovalShiftLaterIndexes) {
  Leak_Check leaks;
  Objects_Array_Type a = {};
  std::vector<HGLOBAL> h;
  for (int i = 0; i < 12; ++i) {
    h.push_back(Create_Point(i, 0));
    Add_Element_In_Array_by_Handle(&a, h.back());
  }
  EXPECT_EQ(Get_Element_Handle_by_Index(&a, 12), 0u);
  EXPECT_EQ(Get_Element_Handle_by_Index(&a, -1), 0u);
  EXPECT_EQ(Get_Element_Handle_by_Index(&a, 11), h[11]);

  EXPECT_EQ(Delete_Element_by_Index(&a, 12), 0);
  EXPECT_EQ(Delete_Element_by_Index(&a, -1), 0);
  EXPECT_EQ(Delete_Element_by_Index(&a, 4), 1);
  EXPECT_EQ(a.count, 11);
  EXPECT_EQ(a.capacity, 12);             // never shrinks
  EXPECT_EQ(GlobalLock(h[4]), nullptr);  // its record is freed
  EXPECT_EQ(Get_Element_Index_by_Handle(&a, h[4]), -1);
  for (int i = 0; i < 11; ++i) {
    HGLOBAL want = h[static_cast<size_t>(i < 4 ? i : i + 1)];
    EXPECT_EQ(Get_Element_Handle_by_Index(&a, i), want) << i;
    EXPECT_EQ(Get_Element_Index_by_Handle(&a, want), i);
  }
  EXPECT_EQ(Delete_Element_by_Index(&a, a.count - 1), 1);  // the last one
  EXPECT_EQ(Get_Element_Handle_by_Index(&a, 9), h[10]);
  DeleteObjectsArray(&a);
  EXPECT_EQ(a.capacity + a.count, 0);
  EXPECT_EQ(a.handles, 0u);
}

TEST(ObjectsArray, AllZeroAndCorruptArraysAreSafe) {
  Leak_Check leaks;
  Objects_Array_Type zero = {};
  EXPECT_EQ(Get_Element_Handle_by_Index(&zero, 0), 0u);
  EXPECT_EQ(Get_Element_Index_by_Handle(&zero, 1), -1);
  EXPECT_EQ(Delete_Element_by_Index(&zero, 0), 0);
  DeleteObjectsArray(&zero);
  DeleteObjectsArray_Without_El_Deleting(&zero);
  DeleteiObjectsArray(&zero);
  EXPECT_EQ(ClearObjectsArray(&zero, nullptr, nullptr), 0);
  EXPECT_EQ(zero.capacity + zero.count + static_cast<int>(zero.handles), 0);
  for (Objects_Array_Type* null_array : {static_cast<Objects_Array_Type*>(nullptr)}) {
    EXPECT_EQ(Get_Element_Handle_by_Index(null_array, 0), 0u);
    EXPECT_EQ(Get_Element_Index_by_Handle(null_array, 1), -1);
    DeleteObjectsArray(null_array);
    DeleteiObjectsArray(null_array);
  }

  // An array that claims more than its block holds is read only as far as the block goes.
  HGLOBAL p = Create_Point(1, 2);
  Objects_Array_Type liar = {};
  Add_Element_In_Array_by_Handle(&liar, p);
  liar.count = 1000000;
  liar.capacity = 1000000;
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
  Objects_Array_Type a = {}, children = {};
  const double xs[3] = {0, 1, 2};
  HGLOBAL seg = Create_Line(0, 0, 1, 0);
  HGLOBAL circle = Create_Circle(0, 0, 1);
  Add_Element_In_Array_by_Handle(&a, seg);
  Add_Element_In_Array_by_Handle(&a, circle);
  // A child point on the segment (one parent) and a tangent line to both (two parents).
  HGLOBAL on_seg = Create_Point(0.5, 0);
  Write_Creation_Type(on_seg, 1);
  Alloc_Parent(on_seg, 1);
  Write_Parent(on_seg, seg, 0);
  HGLOBAL tangent = Create_Line(0, 1, 1, 1);
  Write_Creation_Type(tangent, 5);
  Alloc_Parent(tangent, 2);
  Write_Parent(tangent, seg, 0);
  Write_Parent(tangent, circle, 1);
  Add_Element_In_Array_by_Handle(&children, on_seg);
  Add_Element_In_Array_by_Handle(&children, tangent);

  EXPECT_EQ(ClearObjectsArray(&a, &children, nullptr), 2);
  EXPECT_EQ(a.count, 0);
  EXPECT_EQ(a.capacity, 10);
  EXPECT_NE(a.handles, 0u);
  EXPECT_EQ(GlobalLock(seg), nullptr);
  EXPECT_EQ(Get_Creation_Type(on_seg), 0);
  EXPECT_EQ(Get_Parent(on_seg, 0), 0u);
  // Both parents went: 5 steps down to 16 (circle removed first), then to 0.
  EXPECT_EQ(Get_Creation_Type(tangent), 0);

  // The cleared array is reused, then deleted with its (compound) elements.
  Add_Element_In_Array_by_Handle(&a, Create_Polyline(3, xs, xs));
  Add_Element_In_Array_by_Handle(&a, Create_Spline(3, xs, xs, xs, xs));
  EXPECT_EQ(a.count, 2);
  DeleteObjectsArray(&a);
  DeleteObjectsArray(&children);
}

TEST(ObjectsArray, DisplayCopiesAreFreedWithTheirInnerBlocks) {
  Leak_Check leaks;
  Objects_Array_Type display = {};
  auto copy = [](int32_t type, int inner) {
    HGLOBAL c = GlobalAlloc(GHND, sizeof(iElement_Header) + 32);
    auto* hdr = static_cast<iElement_Header*>(GlobalLock(c));
    hdr->type = type;
    for (int k = 0; k < inner; ++k) hdr->blocks[k] = GlobalAlloc(GHND, 16);
    GlobalUnlock(c);
    return c;
  };
  Add_Element_In_Array_by_Handle(&display, copy(EL_SEGMENT, 0));
  Add_Element_In_Array_by_Handle(&display, copy(EL_POLYLINE, 2));
  Add_Element_In_Array_by_Handle(&display, copy(EL_SPLINE, 7));
  Add_Element_In_Array_by_Handle(&display, GlobalAlloc(GHND, 4));  // a tiny simple copy
  DeleteiObjectsArray(&display);
  EXPECT_EQ(display.handles, 0u);
}
