// The quadratic-triangle torsion and warping analysis against closed forms.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <numbers>
#include <unordered_map>

#include "analysis/torsion_meshes.h"
#include "analysis/warping_solve.h"
#include "platform/mesher.h"
#include "support/capture.h"

namespace {

constexpr double kPi = std::numbers::pi;

Torsion_Warping_Result Warping(Surface_Type* surface, Mesh_Blocks* m, double gap, int budget,
                               double Mt = 1.0) {
  Torsion_Warping_Options o{gap, budget, Mt};
  Torsion_Warping_Result r{};
  Calc_Torsion_Warping_On_Split(surface, &m->split, &o, &r);
  return r;
}

// The two bounds hold on every mesh, and their gap shrinks at about
// fourth order (a factor of ten or more per refinement).
TEST(Torsion_Warping, BoundsContainTheClosedForms) {
  struct Case {
    const char* name;
    double J;
    double gap;  // requested
  };
  auto check = [](const Case& c, Surface_Type* surface, Mesh_Blocks* m) {
    double previous = 1.0;
    for (int budget : {1, 4 * m->split.triangle_count, 16 * m->split.triangle_count}) {
      Mesh_Blocks copy;
      copy.split = m->split;  // same blocks, not owned
      Torsion_Warping_Result r = Warping(surface, m, c.gap, budget);
      copy.split = FE_Split{};
      EXPECT_NE(r.status, TORSION_WARPING_FAILED) << c.name;
      // The bounds are those of the meshed region, whose curved edges are
      // parabolas: they may miss the section's J by far less than their gap.
      const double slack = std::max(1e-9, 1e-3 * r.relative_gap) * c.J;
      EXPECT_LE(r.J_lower, c.J + slack) << c.name << " " << r.elements;
      EXPECT_GE(r.J_upper, c.J - slack) << c.name << " " << r.elements;
      EXPECT_LT(r.relative_gap, previous / 5) << c.name << " " << r.elements;
      previous = r.relative_gap;
      if (r.status == TORSION_WARPING_GAP_REACHED) break;
    }
  };
  for (double aspect : {1.0, 2.0, 4.0, 10.0}) {
    Mesh_Blocks m;
    Rectangle_Mesh(10 * aspect, 10, static_cast<int>(2 * aspect), 2, &m);
    check({"rectangle", Rectangle_J(10 * aspect, 10), 1e-5}, nullptr, &m);
  }
  {
    Section disc;
    disc.Round(10);
    Mesh_Blocks m;
    Disc_Mesh(10, 2, &m);
    check({"circle", kPi / 2 * 1e4, 1e-7}, disc.surface(), &m);
  }
  {
    Section ring;
    ring.Annulus(10, 5);
    Mesh_Blocks m;
    Annulus_Mesh(5, 10, 1, 12, &m);
    check({"hollow circle", kPi / 2 * (1e4 - 625), 1e-7}, ring.surface(), &m);
  }
  {
    Mesh_Blocks m;
    Triangle_Mesh(12, 2, &m);
    check({"triangle", std::sqrt(3.0) * std::pow(12, 4) / 80, 1e-5}, nullptr, &m);
  }
}

TEST(Torsion_Warping, RectangleTightensAndReportsItsSection) {
  Mesh_Blocks m;
  Rectangle_Mesh(100, 50, 2, 1, &m);
  const Torsion_Warping_Result r = Warping(nullptr, &m, 1e-4, 100000);
  const double J = Rectangle_J(100, 50);
  EXPECT_EQ(r.status, TORSION_WARPING_GAP_REACHED);
  EXPECT_LE(r.relative_gap, 1e-4);
  EXPECT_NEAR(r.J, J, 0.5e-4 * J);
  EXPECT_NEAR(r.area, 5000, 1e-9 * 5000);
  EXPECT_NEAR(r.centroid_x, 50, 1e-9 * 50);
  EXPECT_NEAR(r.shear_centre_x, 50, 1e-9 * 50);
  EXPECT_NEAR(r.shear_centre_y, 25, 1e-9 * 50);
  EXPECT_NEAR(r.shear_area_x, 5.0 / 6 * 5000, 1e-3 * 5000);
  EXPECT_NEAR(r.shear_area_y, 5.0 / 6 * 5000, 1e-3 * 5000);
  // The split now holds the last mesh and one stress pair per triangle.
  EXPECT_EQ(m.split.triangle_count, r.elements);
  EXPECT_EQ(GlobalSize(m.split.tau_x), static_cast<SIZE_T>(r.elements) * sizeof(double));
  // The largest stress of a rectangle, at the middle of its long sides:
  // Mt / (k2 b t^2) with k2 = 0.246 for an aspect of 2. Sampled at the
  // nodes, it needs a tighter gap than J: the refinement leaves elements
  // coarse where the energy of the error is small.
  Mesh_Blocks fine;
  Rectangle_Mesh(100, 50, 2, 1, &fine);
  EXPECT_NEAR(Warping(nullptr, &fine, 1e-6, 100000).max_shear_stress,
              1.0 / (0.2459 * 100 * 50 * 50), 2e-3 / (0.2459 * 100 * 50 * 50));
  // Budget spent: said so, with the bounds of the last mesh.
  Mesh_Blocks small;
  Rectangle_Mesh(100, 50, 2, 1, &small);
  const Torsion_Warping_Result b = Warping(nullptr, &small, 1e-12, 64);
  EXPECT_EQ(b.status, TORSION_WARPING_BUDGET_SPENT);
  EXPECT_LE(b.elements, 64);
  EXPECT_GT(b.elements, 16);
  EXPECT_LT(b.J_lower, J);
  EXPECT_GT(b.J_upper, J);
}

// Twice the torque: twice the stresses, the same J.
TEST(Torsion_Warping, StressesScaleWithTheTorque) {
  Mesh_Blocks a, b;
  Rectangle_Mesh(20, 10, 2, 1, &a);
  Rectangle_Mesh(20, 10, 2, 1, &b);
  const Torsion_Warping_Result ra = Warping(nullptr, &a, 1e-3, 1000, 5.0);
  const Torsion_Warping_Result rb = Warping(nullptr, &b, 1e-3, 1000, 10.0);
  EXPECT_EQ(ra.J, rb.J);
  EXPECT_DOUBLE_EQ(rb.max_shear_stress, 2 * ra.max_shear_stress);
  const std::vector<double> ta = a.Doubles(a.split.tau_x), tb = b.Doubles(b.split.tau_x);
  for (size_t e = 0; e < ta.size(); ++e) EXPECT_DOUBLE_EQ(tb[e], 2 * ta[e]);
}

// Thin-walled sections against thin-wall theory, within its own error
// (of the order of the wall's thickness over its length).
TEST(Torsion_Warping, ThinWalledSections) {
  const Torsion_Warping_Options o{1e-3, 2500, 1.0};
  Torsion_Warping_Result r{};
  {
    // Channel: web on the left along x = 0 (centre line), flanges to the
    // right; shear centre at e = 3 b^2 / (6 b + h) left of the web.
    Mesh_Blocks m;
    Blocks_Mesh({{-1, -51, 1, 51}, {1, 49, 51, 51}, {1, -51, 51, -49}}, 2, &m);
    ASSERT_NE(Calc_Torsion_Warping_On_Split(nullptr, &m.split, &o, &r), TORSION_WARPING_FAILED);
    const double b = 51, h = 100, e = 3 * b * b / (6 * b + h);
    EXPECT_NEAR(r.shear_centre_x, -e, 0.05 * e);
    EXPECT_NEAR(r.shear_centre_y, 0, 1e-5 * h);  // the mesh's diagonals are not symmetric
    const double J = (2 * 52 + 102) * 8.0 / 3;
    EXPECT_NEAR(r.J, J, 0.1 * J);
  }
  {
    // Angle: the shear centre is where the legs' centre lines meet.
    Mesh_Blocks m;
    Blocks_Mesh({{0, 0, 60, 3}, {0, 3, 3, 40}}, 2, &m);
    ASSERT_NE(Calc_Torsion_Warping_On_Split(nullptr, &m.split, &o, &r), TORSION_WARPING_FAILED);
    EXPECT_NEAR(r.shear_centre_x, 1.5, 0.3);
    EXPECT_NEAR(r.shear_centre_y, 1.5, 0.3);
    const double J = (60 + 40 - 1.5) * 27.0 / 3;
    EXPECT_NEAR(r.J, J, 0.1 * J);
  }
  {
    // I-section: shear centre at the centroid; Cw = h^2 I_flange / 2 with h
    // between the flanges' middles.
    Mesh_Blocks m;
    Blocks_Mesh({{-50, 90, 50, 100}, {-3, -90, 3, 90}, {-50, -100, 50, -90}}, 2, &m);
    ASSERT_NE(Calc_Torsion_Warping_On_Split(nullptr, &m.split, &o, &r), TORSION_WARPING_FAILED);
    EXPECT_NEAR(r.shear_centre_x, 0, 1e-9 * 200);
    EXPECT_NEAR(r.shear_centre_y, 0, 1e-9 * 200);
    const double Cw = 190.0 * 190.0 * (10 * 1e6 / 12) / 2;
    EXPECT_NEAR(r.Cw, Cw, 0.03 * Cw);
  }
  {
    // A closed box: Bredt, 4 Am^2 t / perimeter of the middle line.
    Mesh_Blocks m;
    Blocks_Mesh({{0, 0, 100, 4}, {0, 56, 100, 60}, {0, 4, 4, 56}, {96, 4, 100, 56}}, 2, &m);
    ASSERT_NE(Calc_Torsion_Warping_On_Split(nullptr, &m.split, &o, &r), TORSION_WARPING_FAILED);
    const double Am = 96.0 * 56.0, J = 4 * Am * Am * 4 / (2 * (96.0 + 56.0));
    EXPECT_NEAR(r.J, J, 0.03 * J);
    EXPECT_NEAR(r.shear_centre_x, 50, 1e-6 * 100);
  }
}

// The adaptive refinement: the indicator sums to the gap, the refined mesh
// is conforming with its new boundary nodes flagged, a re-entrant corner
// draws the elements, and fewer of them reach the gap than uniformly.
TEST(Torsion_Warping, RefinesWhereTheFieldsDisagree) {
  // An L of two 40 x 20 legs: its re-entrant corner at (20, 20).
  auto l_mesh = [](Mesh_Blocks* m) { Blocks_Mesh({{0, 0, 40, 20}, {0, 20, 20, 40}}, 2, m); };
  Mesh_Blocks m;
  l_mesh(&m);
  {
    std::vector<double> x, y;
    std::vector<std::array<int32_t, 3>> tri;
    const auto* p = static_cast<const FEPOINT*>(GlobalLock(m.split.nodes));
    const auto* t = static_cast<const FE3Ang*>(GlobalLock(m.split.triangles));
    for (int i = 0; i < m.split.node_count; ++i) {
      x.push_back(p[i].x);
      y.push_back(p[i].y);
    }
    for (int e = 0; e < m.split.triangle_count; ++e)
      tri.push_back({t[e].n[0], t[e].n[1], t[e].n[2]});
    GlobalUnlock(m.split.nodes);
    GlobalUnlock(m.split.triangles);
    P2_Mesh mesh = Build_P2_Mesh(x, y, tri, {});
    for (int step = 0; step < 3; ++step) {
      const Warping_Solution s = Solve_Warping(mesh);
      ASSERT_TRUE(s.ok);
      double boundary = -1, sum = 0;
      const std::vector<double> eta = Warping_Indicator(mesh, s, &boundary);
      for (double v : eta) sum += v;
      EXPECT_NEAR(sum, s.J_upper - s.J_lower, 1e-9 * s.J_upper);
      EXPECT_EQ(boundary, 0.0);  // no curved edges
      // Mark only the element of the largest share: the propagation must
      // still leave every edge with one element (boundary) or two.
      std::vector<char> marked(eta.size(), 0);
      marked[std::max_element(eta.begin(), eta.end()) - eta.begin()] = 1;
      const P2_Mesh finer = Bisect_P2_Mesh(mesh, marked);
      EXPECT_GE(finer.tri.size(), mesh.tri.size() + 3);
      std::unordered_map<uint64_t, int> uses;
      for (const auto& e : finer.tri) {
        for (int i = 0; i < 3; ++i) ++uses[Edge_Key(e[i], e[(i + 1) % 3])];
      }
      double area = 0;
      for (const auto& e : finer.tri) {
        area += 0.5 * ((finer.x[e[1]] - finer.x[e[0]]) * (finer.y[e[2]] - finer.y[e[0]]) -
                       (finer.x[e[2]] - finer.x[e[0]]) * (finer.y[e[1]] - finer.y[e[0]]));
      }
      EXPECT_NEAR(area, 1200, 1e-9 * 1200);  // counter-clockwise, no overlap
      for (const auto& [key, n] : uses) EXPECT_LE(n, 2);
      mesh = finer;
    }
  }
  const Torsion_Warping_Options o{1e-3, 100000, 1.0};
  Torsion_Warping_Result adaptive{}, uniform{};
  ASSERT_EQ(Calc_Torsion_Warping_On_Split(nullptr, &m.split, &o, &adaptive),
            TORSION_WARPING_GAP_REACHED);
  Mesh_Blocks u;
  l_mesh(&u);
  ASSERT_EQ(Torsion_Warping_On_Split(nullptr, &u.split, &o, &uniform, Warping_Refinement::kUniform),
            TORSION_WARPING_GAP_REACHED);
  EXPECT_LT(3 * adaptive.elements, uniform.elements);
  EXPECT_NEAR(adaptive.J, uniform.J, 1e-3 * uniform.J);
  // Every node on a boundary edge of the last mesh is flagged 1 (no holes),
  // every other node 0; the smallest elements sit at the re-entrant corner.
  const auto* p = static_cast<const FEPOINT*>(GlobalLock(m.split.nodes));
  const auto* t = static_cast<const FE3Ang*>(GlobalLock(m.split.triangles));
  std::unordered_map<uint64_t, int> uses;
  for (int e = 0; e < m.split.triangle_count; ++e) {
    for (int i = 0; i < 3; ++i) ++uses[Edge_Key(t[e].n[i], t[e].n[(i + 1) % 3])];
  }
  std::vector<int> on_boundary(static_cast<size_t>(m.split.node_count), 0);
  for (const auto& [key, n] : uses) {
    if (n == 1) on_boundary[key >> 32] = on_boundary[key & 0xffffffffu] = 1;
  }
  for (int i = 0; i < m.split.node_count; ++i) EXPECT_EQ(p[i].flag, on_boundary[i]) << i;
  double smallest = 1e300, x_small = 0, y_small = 0;
  for (int e = 0; e < m.split.triangle_count; ++e) {
    const FEPOINT &a = p[t[e].n[0]], &b = p[t[e].n[1]], &c = p[t[e].n[2]];
    const double area = std::fabs((b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y));
    if (area < smallest) {
      smallest = area;
      x_small = (a.x + b.x + c.x) / 3;
      y_small = (a.y + b.y + c.y) / 3;
    }
  }
  GlobalUnlock(m.split.nodes);
  GlobalUnlock(m.split.triangles);
  EXPECT_LT(std::hypot(x_small - 20, y_small - 20), 1.0);
}

// From the surface alone: the mesher's start, its boundary nodes (some on
// the chords between its samples) moved onto the circles.
TEST(Torsion_Warping, FromTheSurfaceFollowsItsCircles) {
  Section ring;
  ring.Annulus(10, 5);
  const Torsion_Warping_Options o{1e-4, 20000, 1.0};
  Torsion_Warping_Result r{};
  FE_Split split{};
  ASSERT_EQ(Calc_Torsion_Warping(ring.surface(), &o, &r, &split), TORSION_WARPING_GAP_REACHED);
  const double J = kPi / 2 * (1e4 - 625);
  EXPECT_LE(r.J_lower, J * (1 + 1e-9));
  EXPECT_GE(r.J_upper, J * (1 - 1e-9));
  EXPECT_NEAR(r.area, kPi * 75, 1e-6 * kPi * 75);
  EXPECT_EQ(split.triangle_count, r.elements);
  Free_FE_Split(&split);
  Surface_Type empty{};
  EXPECT_EQ(Calc_Torsion_Warping(&empty, &o, &r, nullptr), TORSION_WARPING_FAILED);
  EXPECT_EQ(Calc_Torsion_Warping(nullptr, &o, &r, nullptr), TORSION_WARPING_FAILED);
}

TEST(Torsion_Warping, InputThatCannotBeReadFails) {
  Leak_Check leaks;
  Torsion_Warping_Result r{};
  r.status = 7;
  EXPECT_EQ(Calc_Torsion_Warping_On_Split(nullptr, nullptr, nullptr, &r), TORSION_WARPING_FAILED);
  EXPECT_EQ(r.status, TORSION_WARPING_FAILED);
  FE_Split empty{};
  EXPECT_EQ(Calc_Torsion_Warping_On_Split(nullptr, &empty, nullptr, &r), TORSION_WARPING_FAILED);
  Mesh_Blocks m;
  Rectangle_Mesh(2, 1, 2, 1, &m);
  m.split.node_count += 1;  // more than the block holds
  EXPECT_EQ(Calc_Torsion_Warping_On_Split(nullptr, &m.split, nullptr, &r), TORSION_WARPING_FAILED);
  m.split.node_count -= 2;  // a node number beyond the count
  EXPECT_EQ(Calc_Torsion_Warping_On_Split(nullptr, &m.split, nullptr, &r), TORSION_WARPING_FAILED);
  m.split.node_count += 1;
  static_cast<FEPOINT*>(GlobalLock(m.split.nodes))[0].x = std::nan("");
  GlobalUnlock(m.split.nodes);
  EXPECT_EQ(Calc_Torsion_Warping_On_Split(nullptr, &m.split, nullptr, &r), TORSION_WARPING_FAILED);
  // All corners on one line: no area.
  Mesh_Blocks flat;
  flat.Set({{0, 0, 1}, {1, 0, 1}, {2, 0, 1}}, {{{0, 1, 2}}});
  EXPECT_EQ(Calc_Torsion_Warping_On_Split(nullptr, &flat.split, nullptr, &r),
            TORSION_WARPING_FAILED);
}

// Regression: a thin tube's two circles lie within each other's matching
// tolerance; the hole's boundary was once lifted onto the outer circle and
// the bounds crossed (J_lower twice J_upper).
TEST(Calc_Torsion_Warping, ThinTubeKeepsEachBoundaryOnItsOwnCircle) {
  if (!Mesher_Available()) GTEST_SKIP() << "built without CGAL: no mesher";
  const double ro = 10.65, ri = 8.35;
  Section s;
  s.Annulus(ro, ri);
  FE_Split split{};
  const double area = kPi * (ro * ro - ri * ri);
  ASSERT_TRUE(Split_Surface_By_Mesher(s.surface(), &split, &split.node_count, &split.triangles,
                                      &split.triangle_count, nullptr,
                                      std::sqrt(4 * area / (std::sqrt(3.0) * 200))));
  Torsion_Warping_Result r{};
  ASSERT_NE(Calc_Torsion_Warping_On_Split(s.surface(), &split, nullptr, &r),
            TORSION_WARPING_FAILED);
  const double exact = kPi / 2 * (std::pow(ro, 4) - std::pow(ri, 4));
  EXPECT_LE(r.J_lower, r.J_upper);
  EXPECT_NEAR(r.J, exact, 1e-5 * exact);
  Free_FE_Split(&split);
}

}  // namespace
