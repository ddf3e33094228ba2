// Grid integration: the passes, the inner-rectangle shortcut, convergence to
// the exact properties, and the sums over a finite-element split.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

#include "analysis/grid.h"
#include "contour/drawing.h"
#include "support/section.h"
#include "support/sections.h"

namespace {

constexpr double kPi = std::numbers::pi;

TEST(GridIntegration, RectangleAndDegenerateSurfaces) {
  Section s(Placement{10, 20, 0});
  s.Rectangle(100, 50);
  surface_geometry g{};
  g.further_constant = 9;
  Calc_Rect_Grid_Surface_Param(s.surface(), &g);
  // h0 = 0.5, fill ratio 1: 200 x 100 cells exactly.
  EXPECT_EQ(g.area, 5000);
  EXPECT_NEAR(g.centroid_x, 10, 1e-9);
  EXPECT_NEAR(g.centroid_y, 20, 1e-9);
  // Point masses at the cell centres: b h^3 / 12 less the cells' own h^2 / 12.
  EXPECT_NEAR(g.central_moment_x, 100 * (50.0 * 50 * 50 - 50 * 0.25) / 12, 1e-6);
  EXPECT_EQ(g.further_constant, 0);  // the final pass starts from a zeroed record

  surface_geometry untouched{};
  untouched.area = 7;
  Drawing d;
  Surface_Record flat;  // zero height
  flat.Outer({d.Seg(0, 0, 5, 0), d.Seg(5, 0, 0, 0)});
  Calc_Rect_Grid_Surface_Param(&flat.s, &untouched);
  Surface_Type empty{};
  Calc_Rect_Grid_Surface_Param(&empty, &untouched);
  Calc_Rect_Grid_Surface_Param(nullptr, &untouched);
  Calc_Rect_Grid_Surface_Param(s.surface(), nullptr);
  EXPECT_EQ(untouched.area, 7);
  // A hole beside the section.
  Surface_Record apart;
  apart.Outer(d.Square(0, 0, 2));
  apart.Hole(d.Square(3, 0, 1));
  surface_geometry beside{};
  Calc_Rect_Grid_Surface_Param(&apart.s, &beside);
  EXPECT_NEAR(beside.area, 4, 1e-9);  // the hole takes no cell of the square
  // A pass with a step that is no step leaves zero sums, and stops.
  for (double h : {0.0, -1.0, double{NAN}, 1e-300}) {
    Grid_Pass(s.surface(), &untouched, -40, 45, 60, -5, h);
    EXPECT_EQ(untouched.area, 0) << h;
  }
}

TEST(GridIntegration, PreparedSurfaceGivesTheSameSums) {
  // Cells centred on integers: rows run level with vertices and arc ends.
  for (int k = 0; k < 6; ++k) {
    Section s(Placement{0, 0, k % 2 ? 0.0 : 0.3 * k});
    if (k < 3) {
      s.I_Section(12, 16, 2, 2, 1 + k);
    } else {
      s.Plate_With_Two_Holes(16, 10, 2 + (k - 3), 4);
    }
    surface_geometry a{}, b{};
    Grid_Pass_Sums(s.surface(), &a, -10.25, 10.25, 10.25, -10.25, 0.5, true);
    Grid_Pass_Sums(s.surface(), &b, -10.25, 10.25, 10.25, -10.25, 0.5, false);
    EXPECT_GT(a.area, 0);
    const double* fa = &a.area;
    const double* fb = &b.area;
    for (int i = 0; i < 6; ++i) EXPECT_EQ(fa[i], fb[i]) << k << " field " << i + 1;
  }
}

TEST(GridIntegration, ConvergesToTheExactProperties) {
  // The error of the point-mass grid falls with the step; at a quarter of
  // the step it is well below the error at the step.
  Section s(Placement{3, -2, 0.2});
  s.I_Section(100, 150, 8, 12, 10);
  surface_geometry exact{};
  ASSERT_EQ(Calc_Exact_Surface_Param(s.surface(), &exact), 1);
  double l, t, r, b;
  ASSERT_EQ(Get_Surface_Extern_Rect(s.surface(), &l, &t, &r, &b), 1);
  double previous_area = INFINITY, previous_moment = INFINITY;
  for (double h : {4.0, 2.0, 1.0, 0.5}) {
    surface_geometry g{};
    Grid_Pass(s.surface(), &g, l, t, r, b, h);
    Complete_Surface_Geometry(&g);
    double area = std::fabs(g.area - exact.area) / exact.area;
    double moment = std::fabs(g.central_moment_x - exact.central_moment_x) / exact.central_moment_x;
    EXPECT_LT(area, 0.8 * previous_area) << h;
    EXPECT_LT(moment, 0.8 * previous_moment) << h;
    EXPECT_LT(area, 0.05 * h) << h;
    previous_area = area, previous_moment = moment;
  }
  // The two-pass method at its own step, on a compact section.
  surface_geometry g{};
  Calc_Rect_Grid_Surface_Param(s.surface(), &g);
  EXPECT_NEAR(g.area, exact.area, 2e-3 * exact.area);
  EXPECT_NEAR(g.principal_moment_1, exact.principal_moment_1, 2e-3 * exact.principal_moment_1);
}

TEST(GridIntegration, InnerRectangleShortcut) {
  // One large rectangular hole and 240 000 cells: the cells in the hole
  // are passed over and the sums are those of the cells counted one by
  // one, exactly (walls aligned with the cells).
  Section s;
  s.Hollow_Rectangle(600, 400, 50);
  double l, t, r, b;
  ASSERT_EQ(Get_Surface_Extern_Rect(s.surface(), &l, &t, &r, &b), 1);
  surface_geometry g{};
  Grid_Pass(s.surface(), &g, l, t, r, b, 1);
  EXPECT_EQ(g.area, 600 * 400 - 500 * 300);
  EXPECT_EQ(g.first_moment_x, 0);
  EXPECT_EQ(g.first_moment_y, 0);
  // Unit cells centred on half-integers: a row of w of them has the sum
  // of x^2 w (w^2 - 1) / 12.
  auto rows = [](double w, double h) { return h * w * (w * w - 1) / 12; };
  EXPECT_NEAR(g.second_moment_x, rows(600, 400) - rows(500, 300), 1e-12 * rows(600, 400));
  EXPECT_NEAR(g.second_moment_y, rows(400, 600) - rows(300, 500), 1e-12 * rows(600, 400));

  // The rectangle lies in the hole and is nearly as large.
  Drawing d;
  Contour hole({d.Circle(5, -3, 10)});
  ASSERT_EQ(Find_Inner_Rect(&hole.c, &l, &t, &r, &b), 1);
  for (double x : {l, r}) {
    for (double y : {t, b}) EXPECT_LT(std::hypot(x - 5, y + 3), 10);
  }
  EXPECT_GT(r - l, std::sqrt(2.0) * 10 - 0.2 * 2);
  EXPECT_NEAR((l + r) / 2, 5, 1e-12);
  Contour empty({});
  EXPECT_EQ(Find_Inner_Rect(&empty.c, &l, &t, &r, &b), 0);
  EXPECT_EQ(Find_Inner_Rect(nullptr, &l, &t, &r, &b), 0);
}

// A split record of nodes and triangles made by hand.
struct Hand_Split {
  FE_Split s{};
  Hand_Split(const std::vector<FEPOINT>& nodes, const std::vector<FE3Ang>& triangles) {
    s.nodes = Block_Of(nodes);
    s.triangles = Block_Of(triangles);
    s.node_count = static_cast<int32_t>(nodes.size());
    s.triangle_count = static_cast<int32_t>(triangles.size());
  }
  ~Hand_Split() { GlobalFree(s.nodes), GlobalFree(s.triangles); }
};

TEST(GridIntegration, SumsOverTriangles) {
  // A 4 x 2 rectangle at (10, 20) in two triangles, and a third triangle
  // naming a node that is not there.
  Hand_Split split({{10, 20, 1}, {14, 20, 1}, {14, 22, 1}, {10, 22, 1}},
                   {{{0, 1, 2}}, {{0, 2, 3}}, {{0, 1, 7}}});
  Section s(Placement{12, 21, 0});
  s.Rectangle(4, 2);
  surface_geometry g{};
  g.further_constant = 5;
  Calc_Rect_Grid_Surface_Param_Using_FE_Mesh(&split.s, s.surface(), &g);
  EXPECT_NEAR(g.area, 8, 1e-12);
  EXPECT_NEAR(g.centroid_x, 12, 1e-12);
  EXPECT_NEAR(g.centroid_y, 21, 1e-12);
  EXPECT_EQ(g.further_constant, 0);
  // Point masses at (38/3, 62/3) and (34/3, 64/3), 4 each.
  EXPECT_NEAR(g.product_moment, 4 * (38.0 * 62 + 34.0 * 64) / 9, 1e-9);

  // Counts that lie beyond the blocks are bounded by them.
  split.s.triangle_count = 1000;
  split.s.node_count = 1000;
  surface_geometry h{};
  Sum_FE_Triangles(&split.s, &h);
  EXPECT_NEAR(h.area, 8, 1e-12);
  FE_Split none{};
  Sum_FE_Triangles(&none, &h);
  Sum_FE_Triangles(nullptr, &h);
  EXPECT_NEAR(h.area, 8, 1e-12);
}

}  // namespace
