// Contour records: growth, access by position, truncation, copies.
#include <gtest/gtest.h>

#include "support/capture.h"

namespace {

TEST(Contour, GrowsByOneEntryPerOverflow) {
  Leak_Check leaks;
  Contour_Type c{};
  EXPECT_EQ(Add_ContEl(&c, 0), -1);
  EXPECT_EQ(Init_El_Contour(&c, -3), 0u);
  ASSERT_NE(Init_El_Contour(&c, 10), 0u);
  for (int i = 0; i < 10; ++i) EXPECT_EQ(Add_ContEl(&c, Create_El_Part(100 + i, i, 1)), i);
  HGLOBAL extra = Create_El_Part(7, 0, 1);
  SetGlobalAllocFailure(1);  // the growth fails: the record stays as it was
  EXPECT_EQ(Add_ContEl(&c, extra), -1);
  EXPECT_EQ(c.capacity, 10);
  EXPECT_EQ(Add_ContEl(&c, extra), 10);
  EXPECT_EQ(Add_ContEl(&c, Create_El_Part(8, 0, 1)), 11);
  EXPECT_TRUE(c.capacity == 12 && GlobalSize(c.parts) == 48u);
  Delete_El_Contour(&c);
  EXPECT_EQ(c.capacity + c.count + static_cast<int>(c.parts), 0);
  EXPECT_EQ(Add_ContEl(&c, Create_El_Part(11, 0, 1)), 0);  // a record without a block gets one
  EXPECT_EQ(c.capacity, 1);
  Delete_El_Contour(&c);
}

TEST(Contour, PositionsOutsideTheRecordAreRefused) {
  Leak_Check leaks;
  Contour_Type c{};
  for (int e : {100, 101, 102, 103, 101}) Add_ContEl(&c, Create_El_Part(e, 0, 1));
  EXPECT_EQ(Find_ContEl(&c, 101, 0, 1), 1);  // the first of equal elements
  EXPECT_EQ(Set_ContEl_Index(&c, 5, 6, 3) + Set_ContEl_Handle(&c, 77, 3), 2);
  EXPECT_EQ(Find_ContEl(&c, 77, 5, 6), 3);
  for (int i : {-1, 5, 1 << 30}) {
    EXPECT_EQ(Get_ContEl_Handle(&c, i) + Set_ContEl_Handle(&c, 1, i), 0u);
    EXPECT_EQ(Set_ContEl_Index(&c, 1, 1, i), 0);
    Truncate_El_Contour(&c, i);
    EXPECT_EQ(c.count, 5);
  }
  Truncate_El_Contour(&c, 2);
  EXPECT_TRUE(Get_ContEl_Handle(&c, 1) == 101u && Get_ContEl_Handle(&c, 2) == 0u);
  EXPECT_EQ(Add_ContEl(&c, Create_El_Part(9, 0, 1)), 2);
  EXPECT_EQ(c.capacity, 5);
  Delete_El_Contour(&c);
  Contour_Type stale{3, 3, 0x7fffffffu};  // a made-up block: nothing is read or freed
  EXPECT_EQ(Get_ContEl_Handle(&stale, 0) + Get_ContEl_Handle(nullptr, 0), 0u);
  EXPECT_EQ(Add_ContEl(&stale, 5) + Find_ContEl(nullptr, 1, 0, 1), -2);
  EXPECT_EQ(Copy_Contour(&stale), 0u);
}

TEST(Contour, RecordBlocksAndCopies) {
  Leak_Check leaks;
  EXPECT_EQ(Create_El_Contour(-1), 0u);
  HGLOBAL record = Create_El_Contour(3);
  auto* r = static_cast<Contour_Type*>(GlobalLock(record));
  ASSERT_NE(r, nullptr);
  EXPECT_TRUE(r->capacity == 3 && r->count == 0);
  EXPECT_EQ(Add_ContEl(r, Create_El_Part(21, 2, 3)), 0);  // replaces a spare, which is freed
  EXPECT_EQ(Add_ContEl(r, Create_El_Part(22, 4, 5)), 1);
  Contour_Type c{2, 2, Copy_Contour(r)};
  Delete_El_Contour(r);  // frees the remaining spare too; the copy is a copy
  GlobalUnlock(record);
  GlobalFree(record);
  EXPECT_TRUE(Find_ContEl(&c, 21, 2, 3) == 0 && Find_ContEl(&c, 22, 4, 5) == 1);
  SetGlobalAllocFailure(3);  // the copy's second contour element: nothing is left behind
  EXPECT_EQ(Copy_Contour(&c), 0u);
  Delete_El_Contour(&c);
  EXPECT_EQ(Copy_Contour(&c), 0u);
}

}  // namespace
