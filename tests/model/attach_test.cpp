// Attached objects: releasing after a move, re-pointing children, copying
// with links.
#include <gtest/gtest.h>

#include <random>
#include <unordered_map>
#include <utility>
#include <vector>

#include "model/child_index.h"
#include "support/attach_reference.h"
#include "support/capture.h"
#include "support/elements.h"

namespace {

using Cut = std::pair<int, int>;  // (element index, parent index)

// Records the cuts made while alive, as indexes into `all`.
class Cut_Log {
 public:
  explicit Cut_Log(Objects_Array_Type* all) {
    for (int i = 0; i < all->count; ++i) index_[Get_Element_Handle_by_Index(all, i)] = i;
    Set_Cut_Observer(&Record, this);
  }
  ~Cut_Log() { Set_Cut_Observer(nullptr, nullptr); }
  std::vector<Cut> cuts;

 private:
  static void Record(HGLOBAL e, HGLOBAL m, void* self) {
    auto* log = static_cast<Cut_Log*>(self);
    log->cuts.push_back({log->index_.at(e), log->index_.at(m)});
  }
  std::unordered_map<HGLOBAL, int> index_;
};

// Creation type and parent slots of every element, parents as indexes.
std::vector<std::vector<int>> State(Objects_Array_Type* all) {
  std::unordered_map<HGLOBAL, int> index;
  for (int i = 0; i < all->count; ++i) index[Get_Element_Handle_by_Index(all, i)] = i;
  std::vector<std::vector<int>> s;
  for (int i = 0; i < all->count; ++i) {
    HGLOBAL h = Get_Element_Handle_by_Index(all, i);
    auto* r = static_cast<Element_Record*>(GlobalLock(h));
    std::vector<int> row{r->creation_type, r->parent_count};
    for (int k = 0; k < r->parent_count; ++k) {
      HGLOBAL p = Get_Parent(h, k);
      row.push_back(p ? index.at(p) : -1);
    }
    GlobalUnlock(h);
    s.push_back(row);
  }
  return s;
}

}  // namespace

TEST(AttachMoving, MakesTheCutsOfTheDoubleLoopInItsOrder) {
  Leak_Check leaks;
  size_t total = 0;
  for (unsigned seed = 1; seed <= 40; ++seed) {
    std::mt19937 rng(seed);
    int n = 20 + static_cast<int>(rng() % 60);
    Objects_Array_Type all[2] = {}, moved[2] = {};
    for (auto& a : all) Random_Link_Graph(seed, n, 0.7, 6, &a);
    // The same moved indexes in both drawings, now and then one twice.
    int k = 1 + static_cast<int>(rng() % static_cast<unsigned>(n / 2));
    for (int i = 0; i < k; ++i) {
      int j = static_cast<int>(rng() % static_cast<unsigned>(n));
      for (int g = 0; g < 2; ++g)
        Add_Element_In_Array_by_Handle(&moved[g], Get_Element_Handle_by_Index(&all[g], j));
    }
    std::vector<Cut> fast, reference;
    {
      Cut_Log log(&all[0]);
      Do_Objects_Attach_Moving(&moved[0], &all[0]);
      fast = log.cuts;
    }
    {
      Cut_Log log(&all[1]);
      Attach_Moving_Double_Loop(&moved[1], &all[1]);
      reference = log.cuts;
    }
    ASSERT_EQ(fast, reference) << "seed " << seed;
    EXPECT_EQ(State(&all[0]), State(&all[1]));
    total += reference.size();
    for (int g = 0; g < 2; ++g) {
      DeleteObjectsArray_Without_El_Deleting(&moved[g]);
      DeleteObjectsArray(&all[g]);
    }
  }
  EXPECT_GT(total, 200u);  // the graphs do exercise the cuts
}

TEST(AttachMoving, ElementsFollowTheirFirstParentAndLetGoOfTheRest) {
  Objects_Array_Type all{}, moved{};
  HGLOBAL line = Create_Line(0, 0, 10, 0), circle = Create_Circle(5, 5, 2);
  HGLOBAL on_line = Child(Create_Point(3, 0), 1, {line});
  HGLOBAL tangent = Child(Create_Line(0, 3, 10, 3), 5, {line, circle});
  HGLOBAL three = Child(Create_Point(1, 1), 29, {line, on_line, circle});
  for (HGLOBAL h : {line, circle, on_line, tangent, three}) Add_Element_In_Array_by_Handle(&all, h);

  // The line moves: everything built on it first stays attached.
  Add_Element_In_Array_by_Handle(&moved, line);
  Do_Objects_Attach_Moving(&moved, &all);
  EXPECT_EQ(Get_Creation_Type(on_line), 1);
  EXPECT_EQ(Get_Creation_Type(tangent), 5);
  EXPECT_EQ(Get_Creation_Type(three), 29);

  // The circle moves: the tangent keeps only the line (16), the three-parent
  // point steps down to two parents (28).
  DeleteObjectsArray_Without_El_Deleting(&moved);
  Add_Element_In_Array_by_Handle(&moved, circle);
  Do_Objects_Attach_Moving(&moved, &all);
  EXPECT_TRUE(Get_Creation_Type(tangent) == 16 && Get_Parent(tangent, 0) == line);
  EXPECT_TRUE(Get_Creation_Type(three) == 28 && Get_Parent(three, 0) == line &&
              Get_Parent(three, 1) == on_line);

  // The point on the line moves with the line: it keeps its link; alone it
  // lets go of it.
  DeleteObjectsArray_Without_El_Deleting(&moved);
  Add_Element_In_Array_by_Handle(&moved, line);
  Add_Element_In_Array_by_Handle(&moved, on_line);
  Do_Objects_Attach_Moving(&moved, &all);
  EXPECT_EQ(Get_Creation_Type(on_line), 1);
  // Its second parent moved, its first too, but the second is not its first:
  // released from it (28 -> 14).
  EXPECT_TRUE(Get_Creation_Type(three) == 14 && Get_Parent(three, 0) == line);
  DeleteObjectsArray_Without_El_Deleting(&moved);
  Add_Element_In_Array_by_Handle(&moved, on_line);
  Do_Objects_Attach_Moving(&moved, &all);
  EXPECT_EQ(Get_Creation_Type(on_line), 0);
  EXPECT_EQ(Get_Creation_Type(three), 14);

  // Nothing moved, nothing to move among, null arrays: no change, no crash.
  Do_Objects_Attach_Moving(nullptr, &all);
  Do_Objects_Attach_Moving(&moved, nullptr);
  DeleteObjectsArray_Without_El_Deleting(&moved);
  DeleteObjectsArray(&all);
}

TEST(AttachCopies, CopiesHangOnCopiesAndChildrenFollowANewElement) {
  Leak_Check leaks;
  Objects_Array_Type drawing{}, aux{}, copy{}, aux_copy{};
  HGLOBAL line = Create_Line(0, 0, 10, 0), circle = Create_Circle(5, 5, 2);
  HGLOBAL tangent = Child(Create_Line(0, 3, 10, 3), 5, {line, circle});
  HGLOBAL guide = Child(Create_Line(0, 0, 0, 1), 1, {line});  // in the second array
  for (HGLOBAL h : {line, circle, tangent}) Add_Element_In_Array_by_Handle(&drawing, h);
  Add_Element_In_Array_by_Handle(&aux, guide);

  Create_Same_Objects_With_Attach(&drawing, &copy, 99);  // beyond the count: all of it
  Create_Same_Objects_With_Attach(&aux, &aux_copy, 1);
  ASSERT_EQ(copy.count, 3);
  HGLOBAL c_line = Get_Element_Handle_by_Index(&copy, 0);
  HGLOBAL c_circle = Get_Element_Handle_by_Index(&copy, 1);
  HGLOBAL c_tangent = Get_Element_Handle_by_Index(&copy, 2);
  HGLOBAL c_guide = Get_Element_Handle_by_Index(&aux_copy, 0);
  EXPECT_TRUE(Get_Parent(c_tangent, 0) == c_line && Get_Parent(c_tangent, 1) == c_circle);
  EXPECT_EQ(Get_Creation_Type(c_tangent), 5);
  // The guide's parent lies in the other array: re-pointed by the analogue step.
  EXPECT_EQ(Get_Parent(c_guide, 0), line);
  EXPECT_EQ(Create_Analog_Attach(&drawing, &copy, &aux_copy), 1);
  EXPECT_EQ(Get_Parent(c_guide, 0), c_line);
  EXPECT_EQ(Get_Parent(tangent, 0), line);                          // the originals are untouched
  EXPECT_EQ(Create_Analog_Attach(&copy, &aux_copy, &drawing), -1);  // fewer copies

  // The line is replaced: its children in both arrays follow the new one,
  // which with flag 1 also takes over the line's own links (none here).
  HGLOBAL piece = Create_Line(0, 0, 5, 0);
  Add_Element_In_Array_by_Handle(&drawing, piece);
  EXPECT_EQ(Change_All_Childs(line, piece, 0, &drawing, &aux), 2);
  EXPECT_TRUE(Get_Parent(tangent, 0) == piece && Get_Parent(guide, 0) == piece);
  EXPECT_EQ(Change_All_Childs(tangent, guide, 1, &drawing, &aux), 0);
  EXPECT_TRUE(Get_Creation_Type(guide) == 5 && Get_Parent(guide, 1) == circle);
  EXPECT_EQ(Change_All_Childs(0, piece, 0, &drawing, &aux), -1);
  HGLOBAL stale = Create_Point(0, 0);
  Delete_Element(stale);
  EXPECT_EQ(Change_All_Childs(piece, stale, 0, &drawing, &aux), -1);

  for (auto* a : {&drawing, &aux, &copy, &aux_copy}) DeleteObjectsArray(a);
}
