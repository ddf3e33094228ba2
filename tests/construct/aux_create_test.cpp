// Construction lines, points and circles: what each constructor stores
// (geometry, attribute word, creation type, parent slots and count), its
// refusals, and how the stored links step down when a parent goes.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "support/capture.h"
#include "support/elements.h"

namespace {

struct Stored {
  int32_t type, attr, ct, count;
  std::vector<HGLOBAL> slots;
  std::vector<double> geometry;  // segment ends, circle centre and radius, or the point
};

Stored Read(HGLOBAL h) {
  Stored s{};
  auto* e = static_cast<Element_Record*>(GlobalLock(h));
  s.type = e->type, s.attr = e->attr, s.ct = e->creation_type, s.count = e->parent_count;
  HGLOBAL list = e->parents;
  if (e->type == EL_SEGMENT) s.geometry = {e->u.seg.x1, e->u.seg.y1, e->u.seg.x2, e->u.seg.y2};
  if (e->type == EL_CIRCLE) s.geometry = {e->u.circle.xc, e->u.circle.yc, e->u.circle.r};
  if (e->type == EL_POINT) s.geometry = {e->u.point.x, e->u.point.y};
  GlobalUnlock(h);
  if (list) {
    auto* p = static_cast<HGLOBAL*>(GlobalLock(list));
    s.slots.assign(p, p + GlobalSize(list) / sizeof(HGLOBAL));
    GlobalUnlock(list);
  }
  return s;
}

}  // namespace

TEST(AuxCreate, EachConstructorStoresItsElementAndParents) {
  Leak_Check leaks;
  Objects_Array_Type a{}, parents{};
  HGLOBAL seg = Create_Line(1, 2, 7, 2), pt1 = Create_Point(1, 1), pt2 = Create_Point(4, 5);
  HGLOBAL circle = Create_Circle(0, 0, 5);
  for (HGLOBAL h : {seg, pt1, pt2, circle}) Add_Element_In_Array_by_Handle(&parents, h);
  const Curs_Pos_Type c = Cursor({{3, 4}, {6, 8}, {0, 2}});
  const std::vector<double> line = {3, 4, 6, 8};
  struct Case {
    const char* name;
    HGLOBAL h;
    int32_t type, attr, ct, count;
    std::vector<HGLOBAL> slots;
    std::vector<double> geometry;
  };
  // clang-format off
  const Case cases[] = {
      {"vert", Add_Auxil_Vert_Line(&c, &a), EL_SEGMENT, 0, 0, 0, {}, {3, 4, 3, 14}},
      {"horiz", Add_Auxil_Horiz_Line(&c, &a), EL_SEGMENT, 0, 0, 0, {}, {3, 4, 13, 4}},
      {"v node", Add_Aux_V_Line_P(&c, &a, seg, 1), EL_SEGMENT, 0, 11, 2, {seg, 1}, {7, 2, 7, 12}},
      {"h node", Add_Aux_H_Line_P(&c, &a, seg, 0), EL_SEGMENT, 0, 11, 2, {seg, 0}, {1, 2, 11, 2}},
      {"v free", Add_Aux_V_Line_P(&c, &a, 0, 5), EL_SEGMENT, 0, 0, 0, {}, {3, 4, 3, 14}},
      {"line", Add_Auxil_Line(&c, &a, 0, 0, 0, 0), EL_SEGMENT, 0, 0, 0, {}, line},
      {"line e1", Add_Auxil_Line(&c, &a, seg, 1, 0, 0), EL_SEGMENT, 0, 11, 2, {seg, 1}, line},
      {"line e2", Add_Auxil_Line(&c, &a, 0, 0, pt2, 3), EL_SEGMENT, 0, 11, 2, {pt2, 3}, {6, 8, 3, 4}},
      {"line e1 e2", Add_Auxil_Line(&c, &a, seg, 0, pt2, 3), EL_SEGMENT, 0, 25, 4, {seg, 0, pt2, 3}, line},
      {"2P", Add_Auxil_Line_2P(&c, &a, pt1, seg), EL_SEGMENT, 0, 25, 2, {pt1, seg}, {1, 1, 0, 0}},
      {"per", Add_Aux_Per_Line(&c, &a, seg), EL_SEGMENT, 0, 2, 1, {seg}, line},
      {"par", Add_Aux_Par_Line(&c, &a, seg), EL_SEGMENT, 0, 1, 0, {seg}, line},  // count left 0
      {"per circle", Add_Auxil_Line_PerToCircle(&c, &a, circle), EL_SEGMENT, 0, 12, 1, {circle}, line},
      {"cross", Add_Aux_Node_Cross2L(&c, &a, seg, seg), EL_POINT, 0, 5, 0, {seg, seg}, {3, 4}},
      {"CR", Add_Aux_Circle_CR(&c, &a, pt1), EL_CIRCLE, 0, 13, 1, {pt1}, {3, 4, 5}},
      {"CR free", Add_Aux_Circle_CR(&c, &a, 0), EL_CIRCLE, 0, 0, 0, {}, {3, 4, 5}},
      {"D", Add_Aux_Circle_D(&c, &a, seg), EL_CIRCLE, 0, 14, 1, {seg}, {4.5, 6, 2.5}},
      {"3P 28", Add_Circle_3P(&c, &a, 1, pt1, pt2, 0), EL_CIRCLE, 1, 28, 3, {pt1, pt2, 0}, {}},
      {"3P 29", Add_Circle_3P(&c, &a, 2, pt1, pt2, seg), EL_CIRCLE, 0, 29, 3, {pt1, pt2, seg}, {}},
      {"3P free", Add_Circle_3P(&c, &a, 3, pt1, 0, seg), EL_CIRCLE, 1, 0, 0, {}, {}},
  };
  // clang-format on
  int index = 0;
  for (const Case& k : cases) {
    ASSERT_NE(k.h, 0u) << k.name;
    EXPECT_EQ(Get_Element_Index_by_Handle(&a, k.h), index++) << k.name;
    Stored s = Read(k.h);
    EXPECT_EQ(s.type, k.type) << k.name;
    EXPECT_EQ(s.attr, k.attr) << k.name;
    EXPECT_EQ(s.ct, k.ct) << k.name;
    EXPECT_EQ(s.count, k.count) << k.name;
    EXPECT_EQ(s.slots, k.slots) << k.name;
    if (!k.geometry.empty()) {
      EXPECT_EQ(s.geometry, k.geometry) << k.name;
    }
  }
  // Through (0, 0), (2, 0), (0, 2): centre (1, 1), radius sqrt 2.
  const Curs_Pos_Type right = Cursor({{0, 0}, {2, 0}, {0, 2}});
  HGLOBAL k3 = Add_Circle_3P(&right, &a, 0, 0, 0, 0);
  double xc, yc, r;
  ASSERT_TRUE(Get_Circle_Param_by_Handle(k3, &xc, &yc, &r));
  EXPECT_DOUBLE_EQ(xc, 1);
  EXPECT_DOUBLE_EQ(yc, 1);
  EXPECT_DOUBLE_EQ(r, std::sqrt(2.0));
  DeleteObjectsArray(&a);
  DeleteObjectsArray(&parents);
}

// Equal points, zero radii, the three-point test (collinear, and chords of
// equal and opposite slopes) and elements without nodes add nothing.
TEST(AuxCreate, RefusalsAddNothing) {
  Leak_Check leaks;
  Box_Capture boxes;
  Objects_Array_Type a{};
  HGLOBAL circle = Create_Circle(0, 0, 5);
  const Curs_Pos_Type same = Cursor({{2, 3}, {2, 3}, {9, 9}});
  const Curs_Pos_Type kite = Cursor({{0, 0}, {1, 1}, {2, 0}});
  const Curs_Pos_Type line = Cursor({{0, 0}, {1, 1}, {2, 2}});
  const HGLOBAL refused[] = {
      Add_Auxil_Line(&same, &a, 0, 0, 0, 0),  Add_Aux_Per_Line(&same, &a, circle),
      Add_Aux_Par_Line(&same, &a, circle),    Add_Auxil_Line_PerToCircle(&same, &a, circle),
      Add_Aux_Circle_CR(&same, &a, 0),        Add_Aux_Circle_D(&same, &a, circle),
      Add_Circle_3P(&kite, &a, 1, 0, 0, 0),   Add_Circle_3P(&line, &a, 1, 0, 0, 0),
      Add_Aux_V_Line_P(&line, &a, circle, 0), Add_Aux_H_Line_P(&line, &a, HGLOBAL{0xFFFFFFFF}, 0),
      Add_Auxil_Vert_Line(nullptr, &a),       Add_Auxil_Vert_Line(&line, nullptr)};
  for (HGLOBAL h : refused) EXPECT_EQ(h, 0u);
  EXPECT_EQ(a.handles, 0u);
  Delete_Element(circle);
}
