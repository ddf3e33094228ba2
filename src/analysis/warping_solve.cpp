// Warping function (J from above, shear centre, Cw, shear areas) and Prandtl
// stress function (J from below, stresses) on 6-node isoparametric triangles.
#include "analysis/warping_solve.h"

#include <Eigen/SparseCholesky>
#include <algorithm>
#include <cmath>

namespace {

// Seven-point rule on the reference triangle, exact to degree 5; weights sum
// to the reference area 1/2.
struct Quad_Point {
  double xi, eta, w;
};
constexpr double kA1 = 0.059715871789770, kB1 = 0.470142064105115;
constexpr double kA2 = 0.797426985353087, kB2 = 0.101286507323456;
constexpr double kW0 = 0.1125, kW1 = 0.066197076394253, kW2 = 0.062969590272414;
constexpr Quad_Point kQuad[7] = {{1.0 / 3, 1.0 / 3, kW0}, {kB1, kB1, kW1}, {kA1, kB1, kW1},
                                 {kB1, kA1, kW1},         {kB2, kB2, kW2}, {kA2, kB2, kW2},
                                 {kB2, kA2, kW2}};

// Shape functions and their reference derivatives at (xi, eta).
struct Shape {
  double n[6], dxi[6], deta[6];
  Shape(double xi, double eta) {
    const double l0 = 1 - xi - eta, l1 = xi, l2 = eta;
    const double nn[6] = {l0 * (2 * l0 - 1), l1 * (2 * l1 - 1), l2 * (2 * l2 - 1),
                          4 * l0 * l1,       4 * l1 * l2,       4 * l2 * l0};
    const double dx[6] = {-(4 * l0 - 1), 4 * l1 - 1, 0, 4 * (l0 - l1), 4 * l2, -4 * l2};
    const double de[6] = {-(4 * l0 - 1), 0, 4 * l2 - 1, -4 * l1, 4 * l1, 4 * (l0 - l2)};
    for (int i = 0; i < 6; ++i) {
      n[i] = nn[i];
      dxi[i] = dx[i];
      deta[i] = de[i];
    }
  }
};

// Position, Jacobian determinant and x, y derivatives of the shape
// functions of element t at a reference point.
struct Mapped {
  double x = 0, y = 0, det = 0, dx[6], dy[6], n[6];
  Mapped(const std::vector<double>& X, const std::vector<double>& Y,
         const std::array<int32_t, 6>& t, double xi, double eta) {
    const Shape s(xi, eta);
    double xx = 0, xe = 0, yx = 0, ye = 0;
    for (int i = 0; i < 6; ++i) {
      x += s.n[i] * X[t[i]];
      y += s.n[i] * Y[t[i]];
      xx += s.dxi[i] * X[t[i]];
      xe += s.deta[i] * X[t[i]];
      yx += s.dxi[i] * Y[t[i]];
      ye += s.deta[i] * Y[t[i]];
    }
    det = xx * ye - xe * yx;
    for (int i = 0; i < 6; ++i) {
      n[i] = s.n[i];
      dx[i] = (ye * s.dxi[i] - yx * s.deta[i]) / det;
      dy[i] = (-xe * s.dxi[i] + xx * s.deta[i]) / det;
    }
  }
};

using Sparse = Eigen::SparseMatrix<double>;
using Triplets = std::vector<Eigen::Triplet<double>>;

}  // namespace

Warping_Solution Solve_Warping(const P2_Mesh& m, double Mt) {
  Warping_Solution out;
  const int n = static_cast<int>(m.x.size());
  if (m.tri.empty() || n == 0) return out;
  // Centroid first: the other integrals are taken about it.
  double A = 0, Qx = 0, Qy = 0;
  for (const auto& t : m.tri) {
    for (const Quad_Point& q : kQuad) {
      const Mapped p(m.x, m.y, t, q.xi, q.eta);
      A += q.w * p.det;
      Qx += q.w * p.det * p.x;
      Qy += q.w * p.det * p.y;
    }
  }
  if (!(A > 0) || !std::isfinite(A)) return out;
  out.area = A;
  out.cx = Qx / A;
  out.cy = Qy / A;
  std::vector<double> X(m.x), Y(m.y);
  for (int i = 0; i < n; ++i) {
    X[i] -= out.cx;
    Y[i] -= out.cy;
  }
  // Stiffness of the Laplacian, the warping load, the Prandtl load and the
  // first moments of the shape functions.
  Triplets k;
  k.reserve(m.tri.size() * 36);
  Eigen::VectorXd F = Eigen::VectorXd::Zero(n), P = F, gx = F, gy = F;
  double Sxx = 0, Syy = 0, Sxy = 0;
  for (const auto& t : m.tri) {
    double ke[6][6] = {};
    for (const Quad_Point& q : kQuad) {
      const Mapped p(X, Y, t, q.xi, q.eta);
      const double w = q.w * p.det;
      Sxx += w * p.x * p.x;
      Syy += w * p.y * p.y;
      Sxy += w * p.x * p.y;
      for (int i = 0; i < 6; ++i) {
        for (int j = 0; j < 6; ++j) ke[i][j] += w * (p.dx[i] * p.dx[j] + p.dy[i] * p.dy[j]);
        F[t[i]] += w * (p.y * p.dx[i] - p.x * p.dy[i]);
        P[t[i]] += w * 2.0 * p.n[i];
        gx[t[i]] += w * p.x * p.n[i];
        gy[t[i]] += w * p.y * p.n[i];
      }
    }
    for (int i = 0; i < 6; ++i) {
      for (int j = 0; j < 6; ++j) k.emplace_back(t[i], t[j], ke[i][j]);
    }
  }
  std::vector<int32_t> component;
  int components = 0;
  const std::vector<P2_Loop> loops = Boundary_Loops(m, &component, &components);

  // Warping: a Neumann problem, one node of every component pinned (its
  // loads sum to zero, so the pin fixes only the free constant).
  std::vector<char> pinned(static_cast<size_t>(n), 0);
  std::vector<char> seen(static_cast<size_t>(components), 0);
  for (int i = 0; i < n; ++i) {
    if (component[i] >= 0 && !seen[component[i]]) {
      seen[component[i]] = 1;
      pinned[i] = 1;
    }
  }
  Triplets kw;
  kw.reserve(k.size());
  for (const auto& e : k) {
    if (!pinned[e.row()] && !pinned[e.col()]) kw.push_back(e);
  }
  for (int i = 0; i < n; ++i) {
    if (pinned[i] || component[i] < 0) kw.emplace_back(i, i, 1.0);
  }
  Sparse Kw(n, n);
  Kw.setFromTriplets(kw.begin(), kw.end());
  Eigen::SimplicialLDLT<Sparse> ldlt(Kw);
  if (ldlt.info() != Eigen::Success) return out;
  const double det = Sxx * Syy - Sxy * Sxy;
  Eigen::MatrixXd rhs(n, 3);
  rhs.col(0) = F;
  rhs.col(1) = (Syy * gx - Sxy * gy) / det;  // shear along x: d(sigma)/dz per unit force
  rhs.col(2) = (Sxx * gy - Sxy * gx) / det;
  for (int i = 0; i < n; ++i) {
    if (pinned[i] || component[i] < 0) rhs.row(i).setZero();
  }
  const Eigen::MatrixXd sol = ldlt.solve(rhs);
  const Eigen::VectorXd omega = sol.col(0);
  out.J_upper = Sxx + Syy - F.dot(omega);
  out.shear_area_x = 1.0 / sol.col(1).dot(rhs.col(1));
  out.shear_area_y = 1.0 / sol.col(2).dot(rhs.col(2));

  // Shear centre (x0, y0) about the centroid: omega + x0 Y - y0 X has no
  // first moments.
  double Iw = 0, Ixw = 0, Iyw = 0, Iww = 0;
  for (const auto& t : m.tri) {
    for (const Quad_Point& q : kQuad) {
      const Mapped p(X, Y, t, q.xi, q.eta);
      double w = 0;
      for (int i = 0; i < 6; ++i) w += p.n[i] * omega[t[i]];
      const double dA = q.w * p.det;
      Iw += dA * w;
      Ixw += dA * p.x * w;
      Iyw += dA * p.y * w;
      Iww += dA * w * w;
    }
  }
  const double x0 = (Ixw * Sxy - Sxx * Iyw) / det, y0 = (Syy * Ixw - Sxy * Iyw) / det;
  out.xs = out.cx + x0;
  out.ys = out.cy + y0;
  out.Cw = Iww + x0 * x0 * Syy + y0 * y0 * Sxx + 2 * x0 * Iyw - 2 * y0 * Ixw - 2 * x0 * y0 * Sxy -
           Iw * Iw / A;

  // Prandtl: 0 on outer boundaries, one unknown per hole.
  std::vector<int32_t> dof(static_cast<size_t>(n), -2);
  int nd = 0;
  std::vector<double> hole_area;
  for (const P2_Loop& l : loops) {
    const int32_t d = l.outer ? -1 : nd++;
    if (!l.outer) hole_area.push_back(l.area);
    for (int32_t v : l.nodes) dof[v] = d;
  }
  const int holes = nd;
  for (int i = 0; i < n; ++i) {
    if (dof[i] == -2) dof[i] = component[i] >= 0 ? nd++ : -1;
  }
  Triplets kp;
  kp.reserve(k.size());
  for (const auto& e : k) {
    if (dof[e.row()] >= 0 && dof[e.col()] >= 0)
      kp.emplace_back(dof[e.row()], dof[e.col()], e.value());
  }
  Eigen::VectorXd Pp = Eigen::VectorXd::Zero(nd);
  for (int i = 0; i < n; ++i) {
    if (dof[i] >= 0) Pp[dof[i]] += P[i];
  }
  for (int h = 0; h < holes; ++h) Pp[h] += 2.0 * hole_area[h];
  Eigen::VectorXd phi_d = Eigen::VectorXd::Zero(nd);
  if (nd > 0) {
    Sparse Kp(nd, nd);
    Kp.setFromTriplets(kp.begin(), kp.end());
    Eigen::SimplicialLDLT<Sparse> lp(Kp);
    if (lp.info() != Eigen::Success) return out;
    phi_d = lp.solve(Pp);
  }
  out.J_lower = Pp.dot(phi_d);
  if (!std::isfinite(out.J_upper) || !std::isfinite(out.J_lower)) return out;

  // Stresses for Mt: tau = Mt / J (dphi/dy, -dphi/dx), J the mean of the bounds.
  const double J = 0.5 * (out.J_upper + out.J_lower);
  const double scale = J > 0 ? Mt / J : 0.0;
  out.tau_x.resize(m.tri.size());
  out.tau_y.resize(m.tri.size());
  constexpr double kNodes[7][2] = {{1.0 / 3, 1.0 / 3}, {0, 0},     {1, 0},  {0, 1},
                                   {0.5, 0},           {0.5, 0.5}, {0, 0.5}};
  for (size_t e = 0; e < m.tri.size(); ++e) {
    const auto& t = m.tri[e];
    for (int s = 0; s < 7; ++s) {
      const Mapped p(X, Y, t, kNodes[s][0], kNodes[s][1]);
      double fx = 0, fy = 0;
      for (int i = 0; i < 6; ++i) {
        const double f = dof[t[i]] >= 0 ? phi_d[dof[t[i]]] : 0.0;
        fx += p.dx[i] * f;
        fy += p.dy[i] * f;
      }
      if (s == 0) {
        out.tau_x[e] = scale * fy;
        out.tau_y[e] = -scale * fx;
      }
      out.max_tau = std::max(out.max_tau, std::fabs(scale) * std::hypot(fx, fy));
    }
  }
  out.ok = true;
  return out;
}
