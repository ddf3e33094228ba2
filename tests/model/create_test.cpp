// Element constructors and the type-checked getters and setters.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <vector>

#include "support/capture.h"

namespace {
const double kXs[4] = {0, 1, 2, 3}, kYs[4] = {4, 5, 6, 7};
std::vector<char> Bytes(HGLOBAL h) {
  std::vector<char> b(GlobalSize(h));
  std::memcpy(b.data(), GlobalLock(h), b.size());
  GlobalUnlock(h);
  return b;
}
}  // namespace

// Each allocation of a constructor fails in turn: 0, and no block is left.
TEST(Create, FailedAllocationAtEveryStepReturnsZeroAndLeaksNothing) {
  Leak_Check leaks;
  const std::function<HGLOBAL()> makers[6] = {
      [] { return Create_Point(1, 2); },
      [] { return Create_Line(1, 2, 3, 4); },
      [] { return Create_Circle(1, 2, 3); },
      [] { return Create_Arc(1, 2, 3, 0, 1); },
      [] { return Create_Polyline(4, kXs, kYs); },
      [] { return Create_Spline(4, kXs, kYs, nullptr, kYs); }};
  const int allocations[6] = {1, 1, 1, 1, 3, 6};
  for (int m = 0; m < 6; ++m) {
    for (int k = 1; k <= allocations[m] + 1; ++k) {
      SetGlobalAllocFailure(k);
      HGLOBAL h = makers[m]();
      SetGlobalAllocFailure(0);
      EXPECT_EQ(h != 0, k > allocations[m]) << "maker " << m << ", failing allocation " << k;
      Delete_Element(h);
    }
  }
  EXPECT_EQ(Create_Spline(0, kXs, kYs, nullptr, nullptr), 0u);
}

// On a record of any other type each accessor answers its mismatch value and
// leaves the record and the caller's outputs alone.
TEST(Create, AccessorsRefuseRecordsOfAnotherType) {
  Leak_Check leaks;
  const HGLOBAL el[7] = {0,
                         Create_Point(1, 2),
                         Create_Line(1, 2, 3, 4),
                         Create_Polyline(4, kXs, kYs),
                         Create_Circle(1, 2, 3),
                         Create_Arc(1, 2, 3, 0, 1),
                         Create_Spline(4, kXs, kYs, nullptr, nullptr)};
  double o[9];
  const struct {
    int type, mismatch;
    std::function<int(HGLOBAL)> call;
  } accessors[] = {
      {1, 0, [&](HGLOBAL h) { return Get_Point_Coord_by_Handle(h, o, o + 1); }},
      {1, 0, [&](HGLOBAL h) { return Set_Point_Coord_by_Handle(h, 9, 9); }},
      {2, 0, [&](HGLOBAL h) { return Get_Segment_Coord_by_Handle(h, o, o, o, o); }},
      {2, 0, [&](HGLOBAL h) { return Set_Segment_Coord_by_Handle(h, 9, 9, 9, 9); }},
      {2, -1, [&](HGLOBAL h) { return Get_Nearest_Seg_End_Coord_by_Handle(h, 0, 0, o, o); }},
      {4, 0, [&](HGLOBAL h) { return Get_Circle_Param_by_Handle(h, o, o, o); }},
      {4, 0, [&](HGLOBAL h) { return Set_Circle_Param_by_Handle(h, 9, 9, 9); }},
      {5, 0, [&](HGLOBAL h) { return Get_Arc_Ends_Simple(h, o, o, o, o); }},
      {5, 0, [&](HGLOBAL h) { return Set_Arc_Ends(h, 9, 9, 9, 9); }},
      {5, 0, [&](HGLOBAL h) { return Get_Arc_Param(h, o, o, o, o, o, o, o, o, o); }},
      {5, 0, [&](HGLOBAL h) { return Set_Arc_Param(h, 9, 9, 9, 9, 9, 9, 9, 9, 9); }},
      {3, 0, [&](HGLOBAL h) { return Get_Polyline_Node_Coord_by_Handle(h, 0, o, o); }},
      {3, 0, [&](HGLOBAL h) { return Set_Polyline_Node_Coord_by_Handle(h, 0, 9, 9); }},
      {6, -1, [&](HGLOBAL h) { return Get_Spline_Node_Coord_by_Handle(h, 0, o, o); }},
      {6, -1, [&](HGLOBAL h) { return Set_Spline_Node_Coord_by_Handle(h, 0, 9, 9); }},
      {6, 0, [&](HGLOBAL h) { return Calc_Spline_Coef(h); }}};
  for (const auto& a : accessors) {
    for (int t = 1; t <= 6; ++t) {
      std::fill(o, o + 9, -77.0);
      std::vector<char> before = Bytes(el[t]);
      EXPECT_EQ(a.call(el[t]), t == a.type ? 1 : a.mismatch) << a.type << " on " << t;
      if (t == a.type) continue;
      EXPECT_EQ(Bytes(el[t]), before);
      EXPECT_EQ(std::vector<double>(o, o + 9), std::vector<double>(9, -77.0));
    }
  }
  EXPECT_EQ(Get_Polyline_Node_Coord_by_Handle(el[3], 4, o, o), 0);  // past the last node
  EXPECT_EQ(Get_Spline_Node_Coord_by_Handle(el[6], -1, o, o), -1);
  EXPECT_EQ(Get_El_Node_Coord_by_Handle(el[4], 0, o, o), 0);  // a circle has no node
  ASSERT_EQ(Get_El_Node_Coord_by_Handle(el[6], 3, o, o + 1), 1);
  EXPECT_EQ(o[1], 7);
  for (HGLOBAL h : el) Delete_Element(h);
}
