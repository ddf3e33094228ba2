// Contour search: what it chains, and that it agrees with the plain
// exhaustive scan on random drawings.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <random>
#include <unordered_map>
#include <vector>

#include "platform/locked.h"
#include "support/capture.h"

namespace {

using Handles = std::vector<HGLOBAL>;

// The search as written out in words: every step rescans the array from the
// start, the chain is looked through for an element in use, and recursion
// backs out of dead ends. Slow and plain: the reference for the fast search.
class Reference {
 public:
  Reference(Objects_Array_Type* a, HGLOBAL s, Contour_Type* c) : a_(a), s_(s), c_(c) {}
  int Run() {
    Delete_El_Contour(c_);
    Init_El_Contour(c_, 10);
    if (Get_Element_Type_by_Handle(s_) == EL_CIRCLE) {
      return Add_ContEl(c_, Create_El_Part(s_, 0, 1)) + 1;
    }
    double ex = 0, ey = 0;
    Get_El_Node_Coord_by_Handle(s_, 0, &sx_, &sy_);
    Get_El_Node_Coord_by_Handle(s_, 1, &ex, &ey);
    if (Step(s_, ex, ey)) return 1;
    Delete_El_Contour(c_);
    return 0;
  }

 private:
  static bool Near(double a, double b) { return std::fabs(a - b) < 0.001; }
  int Step(HGLOBAL e, double ex, double ey) {
    if (Find_ContEl(c_, e, 0, 1) >= 0) return 0;
    for (int k = 0; k < a_->count; ++k) {  // every candidate, in array order
      HGLOBAL n = Get_Element_Handle_by_Index(a_, k);
      double p[4];  // its ends, made to start where it is entered
      if (n == e || (!Get_Segment_Coord_by_Handle(n, p, p + 1, p + 2, p + 3) &&
                     !Get_Arc_Ends_Simple(n, p, p + 1, p + 2, p + 3))) {
        continue;
      }
      if (!Near(ex, p[0]) || !Near(ey, p[1])) {
        if (!Near(ex, p[2]) || !Near(ey, p[3])) continue;
        std::swap(p[0], p[2]), std::swap(p[1], p[3]);
      }
      int m = Add_ContEl(c_, Create_El_Part(e, 0, 1));
      if (n == s_ && Near(sx_, ex) && Near(sy_, ey)) return 1;
      if (Step(n, p[2], p[3])) return 1;
      Truncate_El_Contour(c_, m);
    }
    return 0;
  }

  Objects_Array_Type* a_;
  HGLOBAL s_;
  Contour_Type* c_;
  double sx_ = 0, sy_ = 0;
};

class Search : public ::testing::Test {
 protected:
  ~Search() override {
    Delete_El_Contour(&c_);
    DeleteObjectsArray(&a_);
  }
  HGLOBAL Add(HGLOBAL h) {
    Add_Element_In_Array_by_Handle(&a_, h);
    return h;
  }
  HGLOBAL Seg(double x1, double y1, double x2, double y2) {
    return Add(Create_Line(x1, y1, x2, y2));
  }
  // The chain found from s, checking the record; empty when none is found.
  Handles Chain(HGLOBAL s) {
    int found = Search_Contour(&a_, s, &c_);
    Handles v;
    Locked<HGLOBAL> parts(c_.parts);
    for (int i = 0; i < c_.count; ++i) {
      Locked<ContEl_Type> p(parts[i]);
      v.push_back(p->element);
      EXPECT_TRUE(p->index == 0 && p->flag == 1);
    }
    EXPECT_EQ(found, v.empty() ? 0 : 1);
    EXPECT_TRUE(found || c_.capacity + c_.parts == 0);
    return v;
  }

  Leak_Check leaks_;
  Objects_Array_Type a_{};
  Contour_Type c_{};
};

TEST_F(Search, ChainsSegmentsAndArcsFromTheStartOnly) {
  Box_Capture boxes;
  const double xs[] = {0, 4, 0}, ys[] = {0, 0, 3};
  HGLOBAL poly = Add(Create_Polyline(3, xs, ys));  // on the corners, never taken
  Add(Create_Spline(3, xs, ys, nullptr, nullptr));
  Add(0x7fffffffu);  // a made-up handle in the array is passed over
  HGLOBAL t0 = Seg(0, 0, 4, 0), t1 = Add(Create_Arc(0, 0, 5, 0, 1)), t2 = Seg(0, 3, 0, 0);
  Set_Arc_Param(t1, 0, 3, 4, 0, 0, 0, 5, 0, 1);  // an arc keeps its ends in the record
  HGLOBAL circle = Add(Create_Circle(0, 0, 4));
  EXPECT_EQ(Chain(t0), (Handles{t0, t1, t2}));
  EXPECT_EQ(Chain(t1), (Handles{t1, t0, t2}));  // from its first end (0, 3) towards (4, 0)
  EXPECT_EQ(Chain(t2), (Handles{t2, t0, t1}));
  EXPECT_EQ(Chain(circle), (Handles{circle}));
  EXPECT_EQ(c_.capacity, 10);
  EXPECT_TRUE(Chain(poly).empty());
  EXPECT_TRUE(boxes.shown().empty());

  // The next element from a point: its index, and its far end.
  HGLOBAL next = 0;
  double x = 0, y = 0;
  EXPECT_EQ(Find_Next_ContEl(&a_, 0, t0, 4, 0, &next, &x, &y), 4);
  EXPECT_TRUE(next == t1 && x == 0 && y == 3);
  for (int start : {-1, 5, 1 << 30})
    EXPECT_EQ(Find_Next_ContEl(&a_, start, t0, 4, 0, &next, &x, &y), -1);
  EXPECT_EQ(Find_Next_ContEl(nullptr, 0, 0, 0, 0, &next, &x, &y), -1);
}

TEST_F(Search, BacksOutOfADeadEndThatComesFirst) {
  HGLOBAL s0 = Seg(0, 0, 1, 0);
  for (int i = 1; i <= 12; ++i) Seg(i + 1, 0, i, 0);  // a branch of 12 leading nowhere
  HGLOBAL s1 = Seg(1, 0, 1, 1), s2 = Seg(0, 1, 1, 1), s3 = Seg(0, 1, 0, 0);
  EXPECT_EQ(Chain(s0), (Handles{s0, s1, s2, s3}));
  EXPECT_EQ(c_.capacity, 12);  // grown one entry at a time while the branch was held
  SetGlobalAllocFailure(4);    // the second contour element, after the record's growth
  EXPECT_TRUE(Chain(s0).empty());
}

TEST_F(Search, EndsJoinWithinASquareWindow) {
  HGLOBAL t0 = Seg(0, 0, 4, 0), t1 = Seg(4, 0, 0, 3), t2 = Seg(0, 3, 0.0011, 0);
  EXPECT_TRUE(Chain(t0).empty());
  Set_Segment_Coord_by_Handle(t2, 0, 3, 0.0009, 0.0009);
  EXPECT_EQ(Chain(t0), (Handles{t0, t1, t2}));
  Set_Segment_Coord_by_Handle(t2, 0, 3, 0.0009, -0.0011);
  EXPECT_TRUE(Chain(t1).empty());
}

TEST_F(Search, BadInputGivesAnEmptyRecord) {
  Box_Capture boxes;
  HGLOBAL circle = Create_Circle(1, 1, 1);
  EXPECT_EQ(Chain(circle).size(), 1u);  // a circle needs no array
  HGLOBAL s = Seg(0, 0, 1, 0);
  Seg(1, 0, 2, 0);
  EXPECT_TRUE(Chain(s).empty());  // an open chain; the circle's record is emptied
  Delete_Element(circle);
  EXPECT_TRUE(Chain(circle).empty());
  EXPECT_TRUE(boxes.guard_shown(1));
  Objects_Array_Type empty{};
  EXPECT_EQ(Search_Contour(nullptr, s, &c_) + Search_Contour(&a_, s, nullptr) +
                Search_Contour(&empty, s, &c_),
            0);
  circle = Add(Create_Circle(0, 0, 1));
  for (long n : {1, 2}) {  // the record's block, the contour element
    SetGlobalAllocFailure(n);
    EXPECT_TRUE(Chain(circle).empty());
  }
}

// Random drawings on a lattice one unit apart (on cell boundaries of the
// index), with ends nudged just inside and outside the window: closed
// polygons, chords, dead ends, arcs, distractors, shuffled and reversed.
TEST_F(Search, AgreesWithTheExhaustiveScan) {
  std::mt19937 rng(7);
  auto u = [&](int n) { return static_cast<int>(rng() % static_cast<unsigned>(n)); };
  const double nudge[] = {0, 0, 0, 0, 0, 0.0009, -0.0009, 0.0011, -0.00099999, 0.001};
  auto at = [&](int p, double* x, double* y) {
    *x = p % 5 + nudge[u(10)], *y = p / 5 + nudge[u(10)];
  };
  int found = 0;
  for (int trial = 0; trial < 300; ++trial) {
    Handles els;
    auto edge = [&](int p, int q) {
      double x1, y1, x2, y2;
      at(p, &x1, &y1), at(q, &x2, &y2);
      if (u(2)) std::swap(x1, x2), std::swap(y1, y2);
      HGLOBAL h = u(4) ? Create_Line(x1, y1, x2, y2) : Create_Arc(0, 0, 1, 0, 1);
      Set_Arc_Ends(h, x1, y1, x2, y2);  // refused by a segment
      els.push_back(h);
    };
    for (int cycles = 1 + u(3); cycles-- > 0;) {
      std::vector<int> v(25);
      std::iota(v.begin(), v.end(), 0);
      std::shuffle(v.begin(), v.end(), rng);
      int k = 3 + u(4);
      for (int i = 0; i < k; ++i) edge(v[i], v[(i + 1) % k]);
    }
    for (int extra = u(5); extra-- > 0;) edge(u(25), u(30));  // chords and dead ends
    double xs[3], ys[3];
    for (int i = 0; i < 3; ++i) at(u(25), &xs[i], &ys[i]);
    els.insert(els.end(), {Create_Polyline(3, xs, ys), Create_Spline(3, xs, ys, nullptr, nullptr),
                           Create_Circle(xs[0], ys[0], 1), Create_Point(xs[1], ys[1])});
    std::shuffle(els.begin(), els.end(), rng);
    for (HGLOBAL h : els) Add(h);
    if (u(4) == 0) Add(els[0]);  // one element held twice

    for (int i = 0; i < a_.count; ++i) {
      HGLOBAL s = Get_Element_Handle_by_Index(&a_, i);
      Contour_Type want{};
      int r = Reference(&a_, s, &want).Run();
      Handles got = Chain(s);
      ASSERT_EQ(got.size(), static_cast<size_t>(want.count)) << "trial " << trial << " start " << i;
      EXPECT_EQ(c_.capacity, want.capacity);
      for (int j = 0; j < want.count; ++j) EXPECT_EQ(got[j], Get_ContEl_Handle(&want, j));
      found += r;
      Delete_El_Contour(&want);
    }
    DeleteObjectsArray(&a_);
  }
  EXPECT_GT(found, 600);  // the drawings do close often
}

TEST_F(Search, FindsAFinePolygonOfManySegments) {
  const int n = 200000;
  std::mt19937 rng(11);
  std::vector<double> x(n), y(n);
  for (int i = 0; i < n; ++i) {
    x[i] = 1000 * std::cos(2 * std::numbers::pi * i / n);
    y[i] = 1000 * std::sin(2 * std::numbers::pi * i / n);
  }
  std::vector<int> order(n);
  std::iota(order.begin(), order.end(), 0);
  std::shuffle(order.begin(), order.end(), rng);
  std::unordered_map<HGLOBAL, int> piece;
  for (int i : order) {
    int j = (i + 1) % n;
    piece[rng() % 2 ? Seg(x[i], y[i], x[j], y[j]) : Seg(x[j], y[j], x[i], y[i])] = i;
  }
  Handles chain = Chain(Get_Element_Handle_by_Index(&a_, 0));
  ASSERT_EQ(chain.size(), static_cast<size_t>(n));
  EXPECT_EQ(c_.capacity, n);
  int first = piece[chain[0]];
  int step = (piece[chain[1]] - first + n) % n;  // 1 forward, n - 1 backward
  ASSERT_TRUE(step == 1 || step == n - 1);
  for (int i = 0; i < n; ++i) {
    ASSERT_EQ(piece[chain[static_cast<size_t>(i)]], (first + static_cast<long long>(step) * i) % n);
  }
}

}  // namespace
