// The prepared surface gives Is_Point_In_Surface's decision everywhere,
// above all where it is hard: on edges, at vertices, level with arc ends.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <utility>
#include <vector>

#include "contour/drawing.h"
#include "contour/prepared.h"

namespace {

// Points of a circle of radius 5 with integer coordinates, by angle.
const std::pair<int, int> kRing[12] = {{5, 0},  {4, 3},   {3, 4},   {0, 5},  {-3, 4}, {-4, 3},
                                       {-5, 0}, {-4, -3}, {-3, -4}, {0, -5}, {3, -4}, {4, -3}};

// A closed chain round a circle of radius 5 about an integer centre through
// some of the ring's points, each piece an arc or its chord: every end,
// and so every vertex height, is an integer.
std::vector<HGLOBAL> Ring_Chain(Drawing& d, std::mt19937& rng) {
  int cx = static_cast<int>(rng() % 8) + 2, cy = static_cast<int>(rng() % 8) + 2;
  std::vector<int> picked;
  for (int i = 0; i < 12; ++i) {
    if (rng() % 2) picked.push_back(i);
  }
  while (picked.size() < 3) picked = {0, 4, 8};
  std::vector<HGLOBAL> out;
  for (size_t k = 0; k < picked.size(); ++k) {
    auto [x1, y1] = kRing[picked[k]];
    auto [x2, y2] = kRing[picked[(k + 1) % picked.size()]];
    if (rng() % 3) {
      HGLOBAL h = d.Add(Create_Arc(cx, cy, 5, std::atan2(y1, x1), std::atan2(y2, x2)));
      Set_Arc_Ends(h, cx + x1, cy + y1, cx + x2, cy + y2);
      out.push_back(h);
    } else {
      out.push_back(d.Seg(cx + x1, cy + y1, cx + x2, cy + y2));
    }
  }
  return out;
}

// A closed polygon of integer vertices in [0, 12]^2 (it may cross itself;
// the count does not care), with horizontal edges and shared heights.
std::vector<HGLOBAL> Grid_Polygon(Drawing& d, std::mt19937& rng) {
  std::vector<std::pair<double, double>> p;
  int n = 3 + static_cast<int>(rng() % 7);
  for (int i = 0; i < n; ++i) p.push_back({rng() % 13, rng() % 13});
  return d.Polygon(p);
}

TEST(PreparedSurface, AgreesWithThePerPointTest) {
  std::mt19937 rng(8);
  long long tested = 0, inside = 0;
  for (int round = 0; round < 24; ++round) {
    Drawing d;
    Surface_Record s;
    s.Outer(round % 2 ? Ring_Chain(d, rng) : Grid_Polygon(d, rng));
    if (round % 3) s.Outer(Grid_Polygon(d, rng));
    if (round % 4 != 1) s.Hole(round % 5 ? Ring_Chain(d, rng) : Grid_Polygon(d, rng));
    if (round % 6 == 0) s.Outer({d.Circle(6, 6, 4)});
    Prepared_Surface p;
    ASSERT_TRUE(p.Read(&s.s));
    Prepared_Row row;
    // Every half-integer point: vertices, points on edges and level with
    // every arc end; a the height a vertex moves the ray to too.
    for (double y = -1; y <= 18; y += 0.5) {
      for (double dy : {0.0, 1e-10}) {
        p.Set_Row(y + dy, &row);
        for (double x = -1; x <= 18; x += 0.5) {
          int want = Is_Point_In_Surface(&s.s, x, y + dy);
          ASSERT_EQ(row.Contains(x), want) << round << ": " << x << ", " << y + dy;
          ASSERT_EQ(p.Contains(x, y + dy), want) << round << ": " << x << ", " << y + dy;
          ++tested, inside += want;
        }
      }
    }
    // Points on the segments at thirds, and random points.
    for (int k = 0; k < 200; ++k) {
      double x = std::uniform_real_distribution<double>(-1, 18)(rng);
      double y = std::uniform_real_distribution<double>(-1, 18)(rng);
      p.Set_Row(y, &row);
      EXPECT_EQ(row.Contains(x), Is_Point_In_Surface(&s.s, x, y));
    }
  }
  EXPECT_GT(inside, tested / 10);  // the points do reach inside
}

TEST(PreparedSurface, StrangeInput) {
  Drawing d;
  Surface_Record s;
  s.Outer(d.Square(0, 0, 4));
  s.Outer({});  // an empty contour contains nothing
  Prepared_Surface p;
  ASSERT_TRUE(p.Read(&s.s));
  Prepared_Row row;
  for (double y : {2.0, double{NAN}, double{INFINITY}}) {
    p.Set_Row(y, &row);
    for (double x : {1.0, -1.0, double{NAN}, -double{INFINITY}}) {
      EXPECT_EQ(row.Contains(x), Is_Point_In_Surface(&s.s, x, y)) << x << ", " << y;
    }
  }
  EXPECT_FALSE(p.Read(nullptr));
  EXPECT_EQ(p.Contains(1, 1), 0);
  Prepared_Row unset;
  EXPECT_EQ(unset.Contains(1), 0);
}

}  // namespace
