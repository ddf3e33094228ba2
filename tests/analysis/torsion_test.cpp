// The stress-function solve on linear triangles, the relaxation grid of the
// hole constants, and the step rounding.
#include <gtest/gtest.h>

#include <Eigen/Dense>
#include <Eigen/SparseCholesky>
#include <cmath>
#include <numbers>

#include "analysis/torsion_grid.h"
#include "analysis/torsion_meshes.h"
#include "platform/mesher.h"
#include "support/capture.h"

namespace {

constexpr double kPi = std::numbers::pi;
// E and nu of the relaxation grid's fixed shear modulus, so that hole
// constants and the triangle solve agree.
constexpr double kE = 200000.0, kNu = 0.3;
const double kG = kE * 0.5 / (kNu + 1.0);

TEST(Best_Step, RoundsTheMantissaUpAndSmallStepsToOne) {
  EXPECT_DOUBLE_EQ(Best_Step(0.3), 1.0);
  EXPECT_DOUBLE_EQ(Best_Step(1.23), 1.5);
  EXPECT_DOUBLE_EQ(Best_Step(123.0), 150.0);
  EXPECT_DOUBLE_EQ(Best_Step(0.004), 1.0);
  EXPECT_DOUBLE_EQ(Best_Step(7.0), 7.0);
  EXPECT_EQ(Best_Step(0.0), 0.0);  // must not hang
}

// Linear triangles converge to the series from below at second order.
TEST(Torsion_FE, RectangleConvergesToTheSeries) {
  const double a = 10, b = 5, J = Rectangle_J(a, b);
  double previous = 1.0;
  for (int n : {4, 8, 16, 32}) {
    Mesh_Blocks m;
    Rectangle_Mesh(a, b, 2 * n, n, &m);
    CProgressDlg progress;
    const double It =
        Solve_Torsion_FE_Moment(m.split.node_count, m.split.triangles, m.split.triangle_count,
                                m.split.nodes, m.bandwidth, nullptr, &progress, 2.6, 0.3, 1.0, 1.0);
    const double err = (J - It) / J;
    EXPECT_GT(err, 0.0) << n;
    EXPECT_LT(err, previous / 3.0) << n;
    EXPECT_EQ(progress.GetPos(), 100);
    previous = err;
  }
  EXPECT_LT(previous, 5e-3);
}

TEST(Torsion_FE, HollowCircleTakesItsHoleConstantFromTheGrid) {
  const double ri = 5, ro = 10;
  Section sec;
  sec.Annulus(ro, ri);
  Surface_Type* surface = sec.surface();
  ASSERT_EQ(surface->hole_count, 1);
  double k = 0, area = 0;
  RelaxMethod(surface, kE, kNu, kTorsion_Theta, 0.25, &k, &area, nullptr);
  EXPECT_NEAR(area, kPi * ri * ri, 1e-5 * area);
  const double k_exact = kRelax_Shear_Modulus * kTorsion_Theta * (ro * ro - ri * ri) / 2;
  EXPECT_NEAR(k, k_exact, 0.02 * k_exact);

  const double J = kPi / 2 * (std::pow(ro, 4) - std::pow(ri, 4));
  Mesh_Blocks m;
  Annulus_Mesh(ri, ro, 8, 128, &m);
  const double It = Solve_Torsion_FE_Moment(m.split.node_count, m.split.triangles,
                                            m.split.triangle_count, m.split.nodes, m.bandwidth,
                                            surface, nullptr, kE, kNu, 1.0 / kG, 0.25);
  EXPECT_NEAR(It, J, 0.02 * J);

  // Stress path: tau = Mt r / J, counter-clockwise for a positive torque;
  // twice the torque gives twice the stresses and the same result.
  const double Mt = 1000.0;
  const double r1 =
      Solve_Torsion_FE(m.split.node_count, m.split.triangles, m.split.triangle_count, m.split.nodes,
                       m.bandwidth, &m.split.tau_x, &m.split.tau_y, surface, kE, kNu, Mt, 0.25);
  EXPECT_NEAR(r1, 1.0 / (kG * J), 0.02 / (kG * J));
  const std::vector<double> tx = m.Doubles(m.split.tau_x), ty = m.Doubles(m.split.tau_y);
  const FEPOINT* p = static_cast<const FEPOINT*>(GlobalLock(m.split.nodes));
  const FE3Ang* t = static_cast<const FE3Ang*>(GlobalLock(m.split.triangles));
  for (int e = 0; e < m.split.triangle_count; e += 7) {
    const double x = (p[t[e].n[0]].x + p[t[e].n[1]].x + p[t[e].n[2]].x) / 3;
    const double y = (p[t[e].n[0]].y + p[t[e].n[1]].y + p[t[e].n[2]].y) / 3;
    const double scale = Mt / J;
    EXPECT_NEAR(tx[e], -scale * y, 0.08 * scale * ro) << e;
    EXPECT_NEAR(ty[e], scale * x, 0.08 * scale * ro) << e;
  }
  GlobalUnlock(m.split.nodes);
  GlobalUnlock(m.split.triangles);
  const double r2 =
      Solve_Torsion_FE(m.split.node_count, m.split.triangles, m.split.triangle_count, m.split.nodes,
                       m.bandwidth, &m.split.tau_x, &m.split.tau_y, surface, kE, kNu, 2 * Mt, 0.25);
  EXPECT_DOUBLE_EQ(r2, r1);
  const std::vector<double> tx2 = m.Doubles(m.split.tau_x), ty2 = m.Doubles(m.split.tau_y);
  for (size_t e = 0; e < tx.size(); ++e) {
    EXPECT_DOUBLE_EQ(tx2[e], 2 * tx[e]);
    EXPECT_DOUBLE_EQ(ty2[e], 2 * ty[e]);
  }
}

// The sparse factorisation solves exactly the grid's equations.
TEST(Relax_Grid, SparseSolveAgreesWithDenseSolve) {
  Section sec;
  sec.Rectangle(12, 9, 6, 4.5).Round(2, 4, 4).Rectangle(2, 4, 9, 5);
  Surface_Type* surface = sec.surface();
  ASSERT_EQ(surface->hole_count, 2);
  Relax_Grid g;
  ASSERT_TRUE(Build_Relax_Grid(surface, kTorsion_Theta, 0.5, &g));
  ASSERT_GT(g.m, 300);
  ASSERT_GE(g.representative[0], 0);
  ASSERT_GE(g.representative[1], 0);
  const Eigen::MatrixXd dense(g.K);
  EXPECT_TRUE(dense.isApprox(dense.transpose()));
  const Eigen::VectorXd x_dense = dense.partialPivLu().solve(g.rhs);
  Eigen::SimplicialLDLT<Eigen::SparseMatrix<double>> ldlt(g.K);
  const Eigen::VectorXd x_sparse = ldlt.solve(g.rhs);
  EXPECT_LT((x_dense - x_sparse).norm(), 1e-10 * x_dense.norm());
  double k[2] = {0, 0}, area[2] = {0, 0};
  RelaxMethod(surface, kE, kNu, kTorsion_Theta, 0.5, k, area, nullptr);
  EXPECT_NEAR(k[0], x_dense[g.representative[0]], 1e-9 * k[0]);
  EXPECT_NEAR(k[1], x_dense[g.representative[1]], 1e-9 * k[1]);
  EXPECT_NEAR(area[1], 8.0, 1e-12);
}

TEST(Relax_Grid, AHoleBetweenGridNodesIsReported) {
  Box_Capture boxes;
  Section sec;
  sec.Rectangle(10, 10, 5, 5).Round(0.3, 5.5, 5.5);
  Surface_Type* surface = sec.surface();
  double k = -7, area = -7;
  RelaxMethod(surface, kE, kNu, kTorsion_Theta, 2.0, &k, &area, nullptr);
  ASSERT_EQ(boxes.shown().size(), 1u);
  EXPECT_EQ(boxes.shown()[0].text,
            "Increase number of finite elements. Cross-section properties could be calculated "
            "with errors.");
  EXPECT_EQ(k, -7);
}

TEST(Torsion_FE, InputThatCannotBeReadGivesZero) {
  Leak_Check leaks;
  Mesh_Blocks m;
  Rectangle_Mesh(2, 1, 4, 2, &m);
  HGLOBAL tx = 0, ty = 0;
  auto moment = [&](int nodes, int tris) {
    return Solve_Torsion_FE_Moment(nodes, m.split.triangles, tris, m.split.nodes, m.bandwidth,
                                   nullptr, nullptr, 2.6, 0.3, 1.0, 1.0);
  };
  EXPECT_GT(moment(m.split.node_count, m.split.triangle_count), 0.0);
  EXPECT_EQ(moment(m.split.node_count + 1, m.split.triangle_count), 0.0);
  EXPECT_EQ(moment(m.split.node_count, m.split.triangle_count + 1), 0.0);
  EXPECT_EQ(moment(0, m.split.triangle_count), 0.0);
  EXPECT_EQ(moment(-5, -5), 0.0);
  // A node number beyond the node count.
  EXPECT_EQ(moment(m.split.node_count - 1, m.split.triangle_count), 0.0);
  // A band narrower than the triangles need is widened, not overrun.
  EXPECT_DOUBLE_EQ(
      Solve_Torsion_FE_Moment(m.split.node_count, m.split.triangles, m.split.triangle_count,
                              m.split.nodes, 1, nullptr, nullptr, 2.6, 0.3, 1.0, 1.0),
      moment(m.split.node_count, m.split.triangle_count));
  EXPECT_EQ(Solve_Torsion_FE(m.split.node_count, m.split.triangles, m.split.triangle_count,
                             m.split.nodes, m.bandwidth, nullptr, &ty, nullptr, 2.6, 0.3, 1, 1),
            0.0);
  // Every node on the boundary: J = 0, result 0.
  Mesh_Blocks one;
  Rectangle_Mesh(1, 1, 1, 1, &one);
  EXPECT_EQ(Solve_Torsion_FE(one.split.node_count, one.split.triangles, one.split.triangle_count,
                             one.split.nodes, one.bandwidth, &tx, &ty, nullptr, 2.6, 0.3, 1, 1),
            0.0);
  GlobalFree(tx);
  GlobalFree(ty);
}

}  // namespace

namespace {

// The seed path on a surface: grid and mesher splits at 803 elements and
// four times as many, against closed forms; the error falls.
TEST(Calc_Torsion_Moment, ClosedFormsOnBothSplits) {
  struct Case {
    const char* name;
    double J, A;
    void (*draw)(Section&);
  };
  const double r3 = std::sqrt(3.0);
  const Case cases[] = {
      {"rectangle 2:1", Rectangle_J(20, 10), 200, [](Section& s) { s.Rectangle(20, 10); }},
      {"hollow circle", kPi / 2 * (1e4 - 625), kPi * 75, [](Section& s) { s.Annulus(10, 5); }},
      {"triangle", r3 * std::pow(12, 4) / 80, r3 / 4 * 144,
       [](Section& s) {
         s.Outline({{0, 0}, {12, 0}, {6, 6 * std::sqrt(3.0)}});
       }},
  };
  for (const Case& c : cases) {
    for (int mode : {0, 1}) {
      if (mode == 1 && !Mesher_Available()) continue;  // built without the mesher
      double previous = 1.0;
      for (int count : {803, 4 * 803}) {
        Section s;
        c.draw(s);
        FE_Split split{};
        int options[3] = {mode, count, count};
        const double It = Calc_Torsion_Moment(s.surface(), c.A, kE, kNu, &split, 1.0 / kG, nullptr,
                                              nullptr, options);
        const double err = std::fabs(It - c.J) / c.J;
        EXPECT_LT(err, 0.05) << c.name << " mode " << mode << " count " << count;
        EXPECT_LT(err, previous) << c.name << " mode " << mode << " count " << count;
        previous = err;
        EXPECT_GT(split.triangle_count, count / 2);
        Free_FE_Split(&split);
      }
    }
  }
}

TEST(Calc_Torsion_Moment, EmptyOrBadInputGivesTheEmptyValue) {
  Leak_Check leaks;
  Surface_Type empty{};
  FE_Split split{};
  EXPECT_EQ(Calc_Torsion_Moment(&empty, 1, kE, kNu, &split, 1, nullptr, nullptr, nullptr),
            100000.0);
  Section s;
  s.Rectangle(2, 1);
  int zero[3] = {0, 0, 0};
  EXPECT_EQ(Calc_Torsion_Moment(s.surface(), 2, kE, kNu, &split, 1, nullptr, nullptr, zero),
            100000.0);
  EXPECT_EQ(Calc_Torsion_Moment(s.surface(), 0, kE, kNu, &split, 1, nullptr, nullptr, nullptr),
            100000.0);
  EXPECT_EQ(Calc_Torsion_Moment(s.surface(), 2, kE, kNu, nullptr, 1, nullptr, nullptr, nullptr),
            100000.0);
  // A mode outside 0 and 1 reads the first count and splits on the grid.
  int odd[3] = {7, 200, -1};
  CProgressDlg progress;
  EXPECT_GT(Calc_Torsion_Moment(s.surface(), 2, kE, kNu, &split, 1, &progress, nullptr, odd), 0);
  EXPECT_EQ(progress.GetPos(), 100);
  Free_FE_Split(&split);
}

// The stress evaluation over a section: torsion stresses kept, twice the
// torque twice the stresses and the same result.
TEST(Calc_Butt_Weld_Torsion, StressesScaleWithTheTorque) {
  Section s;
  s.Rectangle(20, 10, 10, 5);
  FE_Split a{}, b{};
  double max_a = 0, max_b = 0, ta = 0, tb = 0;
  const int ia = Calc_Butt_Weld_Torsion(s.surface(), 200, 10, 5, 0, 0, 0, 0, 0, 1000, 1, 1, 0, kE,
                                        kNu, &a, 0, &max_a, &ta, nullptr);
  const int ib = Calc_Butt_Weld_Torsion(s.surface(), 200, 10, 5, 0, 0, 0, 0, 0, 2000, 1, 1, 0, kE,
                                        kNu, &b, 0, &max_b, &tb, nullptr);
  ASSERT_GE(ia, 0);
  EXPECT_EQ(ia, ib);
  EXPECT_DOUBLE_EQ(ta, tb);
  EXPECT_NEAR(ta, 1.0 / (kG * Rectangle_J(20, 10)), 0.05 / (kG * Rectangle_J(20, 10)));
  EXPECT_DOUBLE_EQ(max_b, 2 * max_a);
  // The largest equivalent stress is sqrt(3) times the largest shear,
  // Mt / (0.246 b t^2) at the middle of the long sides, less the distance
  // of the centroids of the boundary triangles.
  const double tau = 1000 / (0.2459 * 20 * 100);
  EXPECT_GT(max_a, 0.8 * std::sqrt(3.0) * tau);
  // The grid split that serves without the mesher puts boundary triangles'
  // centroids nearer the edge than the mesher's do.
  EXPECT_LT(max_a, (Mesher_Available() ? 1.0 : 1.05) * std::sqrt(3.0) * tau);
  Free_FE_Split(&a);
  Free_FE_Split(&b);

  // Calc_Eq_Stress refuses a surface without contours or a zero area and
  // leaves the split as it was.
  Surface_Type empty{};
  surface_geometry g{};
  g.area = 200;
  FE_Split kept{};
  kept.spare[0] = 5;
  double result = -3;
  EXPECT_EQ(Calc_Eq_Stress(&empty, &g, &kept, 0, 0, 1, kE, kNu, &result, nullptr), -1);
  g.area = 0;
  EXPECT_EQ(Calc_Eq_Stress(s.surface(), &g, &kept, 0, 0, 1, kE, kNu, &result, nullptr), -1);
  EXPECT_EQ(result, -3);
  EXPECT_EQ(kept.spare[0], 5);
  g = surface_geometry{};
  g.area = 200;
  g.centroid_x = 10;
  g.centroid_y = 5;
  g.principal_moment_1 = 10 * 1000 / 12.0 * 2;
  g.principal_moment_2 = 20 * 8000 / 12.0 / 2;
  EXPECT_EQ(Calc_Eq_Stress(s.surface(), &g, &kept, 0, 0, 1000, kE, kNu, &result, nullptr), ia);
  EXPECT_DOUBLE_EQ(result, max_a);
  Free_FE_Split(&kept);
}

}  // namespace

namespace {

// Every position the solve reports, in order.
class Recording_Progress : public CProgressDlg {
 public:
  int SetPos(int pos) override {
    seen.push_back(pos);
    return CProgressDlg::SetPos(pos);
  }
  std::vector<int> seen;
};

// The grid method reports its own 50 .. 100 before the elimination's: a
// section without holes shows one climb only, a section with a hole two.
TEST(Calc_Torsion_Moment, OnlySectionsWithHolesUseTheGrid) {
  if (!Mesher_Available()) GTEST_SKIP() << "built without CGAL: no mesher";
  auto climbs = [](Surface_Type* surface, double A) {
    Recording_Progress p;
    FE_Split split{};
    int options[3] = {1, 200, 200};
    Calc_Torsion_Moment(surface, A, kE, kNu, &split, 1.0 / kG, &p, nullptr, options);
    Free_FE_Split(&split);
    int drops = 0;
    for (size_t i = 1; i < p.seen.size(); ++i) drops += p.seen[i] < p.seen[i - 1];
    EXPECT_FALSE(p.seen.empty());
    if (p.seen.empty()) return 0;
    EXPECT_EQ(p.seen.back(), 100);
    return drops + 1;
  };
  Section solid, ring;
  solid.Round(10);
  ring.Annulus(10, 5);
  EXPECT_EQ(climbs(solid.surface(), kPi * 100), 1);
  EXPECT_EQ(climbs(ring.surface(), kPi * 75), 2);
}

}  // namespace
