// Point containment where it is hard, surfaces, and filing a drawing's
// contours into outer contours and holes.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>
#include <utility>
#include <vector>

#include "contour/drawing.h"
#include "support/capture.h"

namespace {

constexpr double kPi = std::numbers::pi;

TEST(Containment, SquareTriangleAndCircle) {
  Drawing d;
  // Level with the horizontal edges of the square the ray runs through two
  // vertices and is moved up 1e-10: into the square at y = 0, out at y = 1.
  Contour(d.Square(0, 0, 1))
      .Expect({{0.5, 0.5, 1}, {1.5, 0.5, 0}, {-0.5, 0.5, 0}, {0.5, 0, 1}, {0.5, 1, 0}, {2, 0, 0}});
  // Level with the apex, the ray through it.
  Contour(d.Polygon({{0, 0}, {4, 0}, {2, 3}})).Expect({{3, 3, 0}, {1, 3, 0}, {2, 2.999, 1}});
  // On the tangent y = 1 both crossings count.
  Contour({d.Circle(0, 0, 1)})
      .Expect({{0, 0, 1}, {2, 0, 0}, {-2, 0, 0}, {0.5, 1, 0}, {0, 1 - 1e-9, 1}, {0, -1 - 1e-9, 0}});
}

TEST(Containment, ArcsAndTheirEnds) {
  Drawing d;
  // A "D": right half circle closed by its diameter on the y axis; level
  // with its ends, and with its lowest point (the tangent).
  Contour dee({d.Arc(0, 0, 1, -kPi / 2, kPi / 2), d.Seg(0, 1, 0, -1)});
  dee.Expect({{0.5, 0, 1}, {1.5, 0, 0}, {-0.5, 0, 0}, {0.5, 1, 0}, {0.5, -1, 0}});
  dee.Expect({{0.999, 0.04, 1}, {1.001, 0.04, 0}});

  // A circle split at angle pi, its joint stored as cos(pi), sin(pi) =
  // (-1, 1.2e-16): a ray at y = 0 passes a rounding hair below the joint and
  // must cross one of the two arcs there, not both.
  Contour({d.Arc(0, 0, 1, 0, kPi, false), d.Arc(0, 0, 1, kPi, 2 * kPi, false)})
      .Expect({{0.5, 0, 1}, {-0.5, 0, 1}, {-1.5, 0, 0}, {0, 1e-17, 1}});

  // Joints exactly on the ray, met as the arcs' second crossings: passing
  // through counts half from each arc...
  Contour({d.Arc(0, 0, 1, 0, kPi), d.Arc(0, 0, 1, kPi, 2 * kPi)})
      .Expect({{0.5, 0, 1}, {1.5, 0, 0}});
  // ... turning back at the bottom of both arcs counts once from each: two
  // upper half circles touching at (0, 0), closed along y = 0 from 2 to 4.
  Contour({d.Arc(2, 0, 2, 0, kPi), d.Arc(1, 0, 1, 0, kPi), d.Seg(2, 0, 4, 0)})
      .Expect({{1, 0, 0}, {3, 0.5, 1}, {1, 0.5, 0}});
}

// Winding number of the outline about P: segments by the angle they
// subtend; an arc as its chord plus a whole turn when P lies between the
// chord and the arc (inside the circle, right of the chord A -> B).
struct Edge {
  double ax, ay, bx, by;
  bool arc;
  double r;
};
double Winding(const std::vector<Edge>& edges, double px, double py) {
  double turn = 0;
  for (const Edge& e : edges) {
    double ux = e.ax - px, uy = e.ay - py, vx = e.bx - px, vy = e.by - py;
    turn += std::atan2(ux * vy - uy * vx, ux * vx + uy * vy);
    bool right = (e.bx - e.ax) * (py - e.ay) - (e.by - e.ay) * (px - e.ax) < 0;
    if (e.arc && right && px * px + py * py < e.r * e.r) turn += 2 * kPi;
  }
  return turn / (2 * kPi);
}

bool On_Outline(const std::vector<Edge>& edges, double px, double py) {
  for (const Edge& e : edges) {
    double near = e.arc ? std::fabs(std::hypot(px, py) - e.r)
                        : std::sqrt(SQDistance_Segment_Point(e.ax, e.ay, e.bx, e.by, px, py));
    if (near < 1e-12) return true;
  }
  return false;
}

// Random star polygons around the origin, with horizontal edges, some edges
// arcs of a circle about the origin, and points level with their vertices.
TEST(Containment, RandomStarsAgreeWithWindingNumber) {
  std::mt19937 rng(5);
  std::uniform_real_distribution<double> unit(0, 1);
  int checked = 0;
  for (int star = 0; star < 60; ++star) {
    Drawing d;
    const int n = 4 + static_cast<int>(rng() % 13);
    std::vector<double> x(n), y(n), rad(n);
    std::vector<bool> arc_after(n, false);
    for (int i = 0; i < n; ++i) {
      double t = 2 * kPi * (i + 0.2 + 0.6 * unit(rng)) / n;
      double kind = unit(rng);
      rad[i] = 0.3 + unit(rng);
      if (i > 0 && kind < 0.25) {  // on the circle of the previous vertex: maybe an arc
        rad[i] = rad[i - 1];
        arc_after[i - 1] = star % 2 == 1;
      }
      x[i] = rad[i] * std::cos(t), y[i] = rad[i] * std::sin(t);
      if (i > 0 && kind > 0.8 && y[i - 1] * std::sin(t) > 0) {  // a horizontal edge
        double level = y[i - 1] / std::sin(t);
        if (level > 0.3 && level < 1.3) {
          x[i] = level * std::cos(t), y[i] = y[i - 1];
          rad[i] = std::hypot(x[i], y[i]);
        }
      }
    }
    std::vector<Edge> edges;
    std::vector<HGLOBAL> elements;
    for (int i = 0; i < n; ++i) {
      int j = (i + 1) % n;
      bool arc = arc_after[i] && j != 0;
      if (arc) {
        HGLOBAL h = d.Add(Create_Arc(0, 0, rad[i], std::atan2(y[i], x[i]), std::atan2(y[j], x[j])));
        Set_Arc_Ends(h, x[i], y[i], x[j], y[j]);
        elements.push_back(h);
      } else {
        elements.push_back(d.Seg(x[i], y[i], x[j], y[j]));
      }
      edges.push_back({x[i], y[i], x[j], y[j], arc, rad[i]});
    }
    Contour c(elements);
    for (int k = 0; k < 200; ++k) {
      double px = 3 * unit(rng) - 1.5;
      double py = k % 3 == 0 ? y[rng() % n] : 3 * unit(rng) - 1.5;  // a third level with a vertex
      if (On_Outline(edges, px, py)) continue;  // on a horizontal edge: no truth to compare
      bool inside = std::fabs(Winding(edges, px, py)) > 0.5;
      ASSERT_EQ(c.In(px, py), inside ? 1 : 0) << "star " << star << " point " << px << ", " << py;
      ++checked;
    }
  }
  EXPECT_GT(checked, 60 * 190);
}

// The outer rectangle in axes turned by `angle`.
std::vector<double> Turned_Rect(Surface_Type* s, double angle) {
  std::vector<double> q(4);
  EXPECT_EQ(Get_Surface_Extern_Angled_Rect(s, angle, &q[0], &q[1], &q[2], &q[3]), 1);
  return q;
}

TEST(Surface, MembershipAndOuterRectangles) {
  Leak_Check leaks;
  Drawing d;
  auto outer = d.Square(0, 0, 10), hole = d.Square(2, 2, 6);
  Surface_Record s;
  EXPECT_EQ(s.Outer(outer) + s.Hole(hole), 0);
  s.Expect({{5, 5, 0}, {1, 5, 1}, {11, 5, 0}});
  EXPECT_EQ(Is_Ext_Surface_El(&s.s, outer[2], 0, 1), 0);
  EXPECT_EQ(Is_Ext_Surface_El(&s.s, hole[2], 0, 1), -1);
  EXPECT_EQ(Is_Int_Surface_El(&s.s, hole[2], 0, 1), 0);
  EXPECT_EQ(Is_Int_Surface_El(&s.s, hole[2], 1, 1), -1);
  EXPECT_TRUE(Is_Surface_El(&s.s, hole[3]) == 1 && Is_Surface_El(&s.s, d.Seg(0, 0, 1, 1)) == 0);
  std::vector<double> q(4);
  EXPECT_EQ(Get_Surface_Extern_Rect(&s.s, &q[0], &q[1], &q[2], &q[3]), 1);
  EXPECT_EQ(q, (std::vector<double>{0, 10, 10, 0}));
  // Turned by pi/4 the corner (0, 0) stays and (0, 10) turns to x = 7.07.
  q = Turned_Rect(&s.s, kPi / 4);
  const double side = 10 * std::sqrt(2.0);
  EXPECT_TRUE(std::fabs(q[0]) < 1e-12 && std::fabs(q[2] - side) < 1e-12 &&
              std::fabs(q[1] - q[3] - side) < 1e-12);
  Delete_Surface(&s.s);
  EXPECT_EQ(s.s.outer_count + s.s.hole_count + s.s.outers + s.s.holes, 0u);

  // A half disc x >= 0 of radius 2: unturned axes give the plain rectangle;
  // turned a quarter it lies at y' <= 0.
  s.Outer({d.Arc(0, 0, 2, -kPi / 2, kPi / 2), d.Seg(0, 2, 0, -2)});
  EXPECT_EQ(Get_Surface_Extern_Rect(&s.s, &q[0], &q[1], &q[2], &q[3]), 1);
  EXPECT_EQ(Turned_Rect(&s.s, 0), q);
  q = Turned_Rect(&s.s, kPi / 2);
  const double want[4] = {-2, 0, 2, -2};
  for (int i = 0; i < 4; ++i) EXPECT_NEAR(q[i], want[i], 1e-12) << i;
}

TEST(Surface, BadInputGivesFailureValues) {
  Leak_Check leaks;
  Box_Capture boxes;
  Drawing d;
  EXPECT_EQ(Is_Point_In_Contour(nullptr, 0, 0), 0);
  EXPECT_EQ(Is_Point_In_Surface(nullptr, 0, 0), 0);
  EXPECT_EQ(Is_Ext_Surface_El(nullptr, 0, 0, 1), -1);
  EXPECT_EQ(Is_Surface_El(nullptr, 0), 0);
  double l = 7;
  EXPECT_EQ(Get_Surface_Extern_Rect(nullptr, &l, &l, &l, &l), 0);
  Delete_Surface(nullptr);
  Surface_Record s;
  EXPECT_TRUE(Get_Surface_Extern_Angled_Rect(&s.s, 1, &l, &l, &l, &l) == 0 && l == 7);
  HGLOBAL kept = Contour_Block({});
  EXPECT_EQ(Add_Surface_Contour(nullptr, kept, 0), -1);  // the caller keeps it
  GlobalFree(kept);
  EXPECT_EQ(s.Hole({}), 0);  // an empty contour is filed, and contains nothing
  EXPECT_EQ(Add_Surface_Contour(&s.s, 0, 0), -1);
  EXPECT_EQ(Add_Surface_Contour(&s.s, 12345, 1), -1);
  EXPECT_EQ(Make_Surface_From_Objects(nullptr, &s.s), -1);
  EXPECT_EQ(Make_Surface_From_Objects(&d.a, nullptr), -1);
  EXPECT_EQ(Is_Point_In_Surface(&s.s, 0, 0), 0);
  // A stale drawing element: the guard box once, then outside.
  auto square = d.Square(0, 0, 1);
  Contour c(square);
  HGLOBAL gone = Create_Line(1, 1, 0, 1);
  Set_ContEl_Handle(&c.c, gone, 2);
  Delete_Element(gone);
  EXPECT_EQ(c.In(0.5, 0.5), 0);
  EXPECT_TRUE(boxes.guard_shown(1));
  // A record claiming more than its block holds reads no further.
  s.s.outer_count = s.s.outer_capacity = 1000;
  EXPECT_EQ(Is_Point_In_Surface(&s.s, 0.5, 0.5), 0);
  s.s.outer_count = s.s.outer_capacity = 0;
}

TEST(Surface, FromObjectsFilesOutersAndHoles) {
  Leak_Check leaks;
  Box_Capture boxes;
  Drawing d;
  auto outer = d.Square(0, 0, 10);
  d.Seg(10, 10, 12, 12);                // a dead end off a corner
  d.Polygon({{2, 2}, {8, 2}, {8, 8}});  // hole: triangle
  auto island = d.Square(20, 0, 4);     // a second outer contour
  HGLOBAL ring = d.Circle(22, 2, 1);    // its circular hole
  d.Square(21.5, 1.5, 1);               // an island in that hole: left out
  d.Seg(-5, -5, -4, -4);                // an open chain
  d.Seg(-4, -4, -3, -5);
  double px[] = {1, 1, 3}, py[] = {1, 3, 1};
  d.Add(Create_Polyline(3, px, py));  // a polyline beside the chain
  d.Arc(30, 0, 1, 0, kPi);            // an arc and its diameter: a half disc
  d.Seg(29, 0, 31, 0);
  Surface_Record s;
  EXPECT_EQ(Make_Surface_From_Objects(&d.a, &s.s), 5);
  EXPECT_TRUE(s.s.outer_count == 3 && s.s.hole_count == 2);
  EXPECT_EQ(Is_Ext_Surface_El(&s.s, outer[1], 0, 1), 0);
  EXPECT_EQ(Is_Ext_Surface_El(&s.s, island[0], 0, 1), 1);
  EXPECT_EQ(Is_Int_Surface_El(&s.s, ring, 0, 1), 1);
  s.Expect({{1, 5, 1}, {6, 3, 0}, {20.5, 0.5, 1}, {22, 2, 0}, {30, 0.5, 1}});
  // Filing again empties the surface first; nothing is used twice.
  EXPECT_EQ(Make_Surface_From_Objects(&d.a, &s.s), 5);
  EXPECT_EQ(s.s.outer_count + s.s.hole_count, 5);
  EXPECT_TRUE(boxes.shown().empty());

  // Two squares side by side, drawn as a rectangle and the bar between them:
  // once one contour has taken the bar, the other square cannot close.
  Drawing two;
  two.Polygon({{0, 0}, {1, 0}, {2, 0}, {2, 1}, {1, 1}, {0, 1}});
  two.Seg(1, 0, 1, 1);
  EXPECT_TRUE(Make_Surface_From_Objects(&two.a, &s.s) == 1 && s.s.outer_count == 1);
}

// A failed allocation anywhere while filing: no block lost, and never holes
// filed without the contour around them.
TEST(Surface, FromObjectsUnderFailingAllocation) {
  Leak_Check leaks;
  Drawing d;
  d.Square(0, 0, 10);
  d.Square(2, 2, 2);
  d.Circle(6, 6, 1);
  for (long n = 1; n < 60; ++n) {
    Surface_Record s;
    SetGlobalAllocFailure(n);
    int filed = Make_Surface_From_Objects(&d.a, &s.s);
    SetGlobalAllocFailure(0);
    EXPECT_EQ(filed, filed < 0 ? -1 : s.s.outer_count + s.s.hole_count) << n;
    // Never holes without the outline around them.
    EXPECT_EQ(s.s.outer_count, filed > 0 ? 1 : 0) << n;
  }
}

}  // namespace
