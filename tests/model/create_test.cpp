// Element constructors and the getters and setters of element geometry.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <vector>

#include "support/capture.h"

namespace {

const double kXs[4] = {0, 1, 2, 3};
const double kYs[4] = {4, 5, 6, 7};

std::vector<char> Bytes(HGLOBAL h) {
  std::vector<char> b(GlobalSize(h));
  std::memcpy(b.data(), GlobalLock(h), b.size());
  GlobalUnlock(h);
  return b;
}

}  // namespace

// Every allocation a constructor makes is made to fail in turn: the
// constructor must answer 0 and leave no block behind.
TEST(Create, FailedAllocationAtEveryStepReturnsZeroAndLeaksNothing) {
  Leak_Check leaks;
  const std::vector<std::function<HGLOBAL()>> makers = {
      [] { return Create_Point(1, 2); },
      [] { return Create_Line(1, 2, 3, 4); },
      [] { return Create_Circle(1, 2, 3); },
      [] { return Create_Arc(1, 2, 3, 0, 1); },
      [] { return Create_Polyline(4, kXs, kYs); },
      [] { return Create_Spline(4, kXs, kYs, nullptr, kYs); },
  };
  for (size_t m = 0; m < makers.size(); ++m) {
    int k = 1;
    for (;; ++k) {
      long before = GlobalBlockCount();
      SetGlobalAllocFailure(k);
      HGLOBAL h = makers[m]();
      SetGlobalAllocFailure(0);
      if (h) {
        Delete_Element(h);
        break;
      }
      EXPECT_EQ(GlobalBlockCount(), before) << "maker " << m << " failing allocation " << k;
    }
    EXPECT_EQ(k, m < 4 ? 2 : m == 4 ? 4 : 7) << "maker " << m;  // allocations + 1
  }
  EXPECT_EQ(Create_Spline(0, kXs, kYs, nullptr, nullptr), 0u);
}

// Each getter and setter, called on a record of every other type, answers
// its mismatch value and leaves the record and the caller's outputs alone.
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
  struct Accessor {
    int type;
    int mismatch;
    std::function<int(HGLOBAL)> call;
  };
  const std::vector<Accessor> accessors = {
      {EL_POINT, 0, [&](HGLOBAL h) { return Get_Point_Coord_by_Handle(h, o, o + 1); }},
      {EL_POINT, 0, [&](HGLOBAL h) { return Set_Point_Coord_by_Handle(h, 9, 9); }},
      {EL_SEGMENT, 0, [&](HGLOBAL h) { return Get_Segment_Coord_by_Handle(h, o, o, o, o); }},
      {EL_SEGMENT, 0, [&](HGLOBAL h) { return Set_Segment_Coord_by_Handle(h, 9, 9, 9, 9); }},
      {EL_SEGMENT, -1,
       [&](HGLOBAL h) { return Get_Nearest_Seg_End_Coord_by_Handle(h, 0, 0, o, o); }},
      {EL_CIRCLE, 0, [&](HGLOBAL h) { return Get_Circle_Param_by_Handle(h, o, o, o); }},
      {EL_CIRCLE, 0, [&](HGLOBAL h) { return Set_Circle_Param_by_Handle(h, 9, 9, 9); }},
      {EL_ARC, 0, [&](HGLOBAL h) { return Get_Arc_Ends_Simple(h, o, o, o, o); }},
      {EL_ARC, 0, [&](HGLOBAL h) { return Set_Arc_Ends(h, 9, 9, 9, 9); }},
      {EL_ARC, 0, [&](HGLOBAL h) { return Get_Arc_Param(h, o, o, o, o, o, o, o, o, o); }},
      {EL_ARC, 0, [&](HGLOBAL h) { return Set_Arc_Param(h, 9, 9, 9, 9, 9, 9, 9, 9, 9); }},
      {EL_POLYLINE, 0, [&](HGLOBAL h) { return Get_Polyline_Node_Coord_by_Handle(h, 0, o, o); }},
      {EL_POLYLINE, 0, [&](HGLOBAL h) { return Set_Polyline_Node_Coord_by_Handle(h, 0, 9, 9); }},
      {EL_SPLINE, -1, [&](HGLOBAL h) { return Get_Spline_Node_Coord_by_Handle(h, 0, o, o); }},
      {EL_SPLINE, -1, [&](HGLOBAL h) { return Set_Spline_Node_Coord_by_Handle(h, 0, 9, 9); }},
      {EL_SPLINE, 0, [&](HGLOBAL h) { return Calc_Spline_Coef(h); }},
  };
  for (const Accessor& a : accessors) {
    for (int t = 1; t <= 6; ++t) {
      if (t == a.type) continue;
      std::fill(o, o + 9, -77.0);
      std::vector<char> before = Bytes(el[t]);
      EXPECT_EQ(a.call(el[t]), a.mismatch) << "accessor of type " << a.type << " on " << t;
      EXPECT_EQ(Bytes(el[t]), before);
      for (double v : o) EXPECT_EQ(v, -77.0);
    }
    EXPECT_EQ(a.call(el[a.type]), 1) << "accessor of type " << a.type;
  }
  // Node indexes past the end are refused; the node getter walks every type.
  EXPECT_EQ(Get_Polyline_Node_Coord_by_Handle(el[3], 4, o, o), 0);
  EXPECT_EQ(Get_Spline_Node_Coord_by_Handle(el[6], 4, o, o), -1);
  EXPECT_EQ(Get_Spline_Node_Coord_by_Handle(el[6], -1, o, o), -1);
  EXPECT_EQ(Get_El_Node_Coord_by_Handle(el[4], 0, o, o), 0);  // a circle has no node
  ASSERT_EQ(Get_El_Node_Coord_by_Handle(el[1], 7, o, o + 1), 1);
  EXPECT_EQ(o[0], 9);  // the point moved by its setter above
  ASSERT_EQ(Get_El_Node_Coord_by_Handle(el[6], 3, o, o + 1), 1);
  EXPECT_EQ(o[1], 7);
  EXPECT_EQ(Get_Polyline_Node_Num(el[6]), 4);
  for (HGLOBAL h : el) {
    if (h) Delete_Element(h);
  }
}
