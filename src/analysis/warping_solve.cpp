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

// Shape functions at the quadrature points and at the seven stress
// sampling points (centroid, corners, edge middles), computed once.
const Shape& Shape_At(int k) {
  static const std::vector<Shape> table = [] {
    std::vector<Shape> t;
    for (const Quad_Point& q : kQuad) t.emplace_back(q.xi, q.eta);
    constexpr double kSample[7][2] = {{1.0 / 3, 1.0 / 3}, {0, 0},     {1, 0},  {0, 1},
                                      {0.5, 0},           {0.5, 0.5}, {0, 0.5}};
    for (const auto& p : kSample) t.emplace_back(p[0], p[1]);
    return t;
  }();
  return table[static_cast<size_t>(k)];
}
constexpr int kSample_Base = 7;  // Shape_At(kSample_Base + i): sampling point i

// Position, Jacobian determinant and x, y derivatives of the shape
// functions of element t at a tabulated point.
struct Mapped {
  double x = 0, y = 0, det = 0, dx[6], dy[6], n[6];
  Mapped(const std::vector<double>& X, const std::vector<double>& Y,
         const std::array<int32_t, 6>& t, int k)
      : Mapped(X, Y, t, Shape_At(k)) {}
  Mapped(const std::vector<double>& X, const std::vector<double>& Y,
         const std::array<int32_t, 6>& t, const Shape& s) {
    double xx = 0, xe = 0, yx = 0, ye = 0;
    for (int i = 0; i < 6; ++i) {
      const double px = X[t[i]], py = Y[t[i]];
      x += s.n[i] * px;
      y += s.n[i] * py;
      xx += s.dxi[i] * px;
      xe += s.deta[i] * px;
      yx += s.dxi[i] * py;
      ye += s.deta[i] * py;
    }
    det = xx * ye - xe * yx;
    const double inv = 1.0 / det;
    for (int i = 0; i < 6; ++i) {
      n[i] = s.n[i];
      dx[i] = (ye * s.dxi[i] - yx * s.deta[i]) * inv;
      dy[i] = (-xe * s.dxi[i] + xx * s.deta[i]) * inv;
    }
  }
};

// Reference end points of the three edges, and the 3-point Gauss rule on
// [0, 1] (point, weight).
constexpr double kEdge_Ends[3][2][2] = {{{0, 0}, {1, 0}}, {{1, 0}, {0, 1}}, {{0, 1}, {0, 0}}};
constexpr double kGauss3[3][2] = {
    {0.5 - 0.38729833462074170, 5.0 / 18}, {0.5, 8.0 / 18}, {0.5 + 0.38729833462074170, 5.0 / 18}};

using Sparse = Eigen::SparseMatrix<double>;
using Triplets = std::vector<Eigen::Triplet<double>>;

}  // namespace

Warping_Solution Solve_Warping(const P2_Mesh& m) {
  Warping_Solution out;
  const int n = static_cast<int>(m.x.size());
  if (m.tri.empty() || n == 0) return out;
  // Centroid first: the other integrals are taken about it.
  double A = 0, Qx = 0, Qy = 0;
  for (const auto& t : m.tri) {
    for (int k = 0; k < 7; ++k) {
      const Quad_Point& q = kQuad[k];
      const Mapped p(m.x, m.y, t, k);
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
    for (int qp = 0; qp < 7; ++qp) {
      const Quad_Point& q = kQuad[qp];
      const Mapped p(X, Y, t, qp);
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
  out.omega.assign(omega.data(), omega.data() + n);
  out.J_upper = Sxx + Syy - F.dot(omega);
  out.shear_area_x = 1.0 / sol.col(1).dot(rhs.col(1));
  out.shear_area_y = 1.0 / sol.col(2).dot(rhs.col(2));

  // Shear centre (x0, y0) about the centroid: omega + x0 Y - y0 X has no
  // first moments.
  double Iw = 0, Ixw = 0, Iyw = 0, Iww = 0;
  for (const auto& t : m.tri) {
    for (int qp = 0; qp < 7; ++qp) {
      const Quad_Point& q = kQuad[qp];
      const Mapped p(X, Y, t, qp);
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

  // The stress function at every node (0 on outer boundaries), kept for
  // the stresses of the last mesh.
  out.phi.assign(static_cast<size_t>(n), 0.0);
  for (int i = 0; i < n; ++i) {
    if (dof[i] >= 0) out.phi[i] = phi_d[dof[i]];
  }
  out.ok = true;
  return out;
}

std::vector<double> Warping_Indicator(const P2_Mesh& m, const Warping_Solution& s,
                                      double* boundary) {
  *boundary = 0.0;
  std::vector<double> X(m.x), Y(m.y);
  for (size_t i = 0; i < X.size(); ++i) {
    X[i] -= s.cx;
    Y[i] -= s.cy;
  }
  std::vector<double> eta(m.tri.size(), 0.0);
  if (s.omega.size() != X.size() || s.phi.size() != X.size()) return eta;
  for (size_t e = 0; e < m.tri.size(); ++e) {
    const auto& t = m.tri[e];
    for (int qp = 0; qp < 7; ++qp) {
      const Mapped p(X, Y, t, qp);
      double wx = -p.y, wy = p.x, fx = 0, fy = 0;
      for (int i = 0; i < 6; ++i) {
        wx += p.dx[i] * s.omega[t[i]];
        wy += p.dy[i] * s.omega[t[i]];
        fx += p.dx[i] * s.phi[t[i]];
        fy += p.dy[i] * s.phi[t[i]];
      }
      const double dx = wx - fy, dy = wy + fx;
      eta[e] += kQuad[qp].w * p.det * (dx * dx + dy * dy);
    }
    for (int i = 0; i < 3; ++i) {
      auto pc = m.edge_curve.find(Edge_Key(t[i], t[(i + 1) % 3]));
      if (pc == m.edge_curve.end() || pc->second < 0) continue;
      const Warping_Curve& c = m.curves[static_cast<size_t>(pc->second)];
      // First order of the change of J when the edge moves out onto the
      // arc: the integral along it of |grad phi|^2 times the normal
      // distance (3-point Gauss rule).
      const double* ra = kEdge_Ends[i][0];
      const double* rb = kEdge_Ends[i][1];
      double change = 0.0;
      for (int g = 0; g < 3; ++g) {
        const double u = kGauss3[g][0];
        const Mapped p(X, Y, t, Shape(ra[0] + u * (rb[0] - ra[0]), ra[1] + u * (rb[1] - ra[1])));
        // Tangent along the edge: the map's derivative along rb - ra.
        const Shape sh(ra[0] + u * (rb[0] - ra[0]), ra[1] + u * (rb[1] - ra[1]));
        double tx = 0, ty = 0, fx = 0, fy = 0;
        for (int j = 0; j < 6; ++j) {
          const double dn = sh.dxi[j] * (rb[0] - ra[0]) + sh.deta[j] * (rb[1] - ra[1]);
          tx += dn * m.x[t[j]];
          ty += dn * m.y[t[j]];
          fx += p.dx[j] * s.phi[t[j]];
          fy += p.dy[j] * s.phi[t[j]];
        }
        const double dist = c.r - std::hypot(p.x + s.cx - c.xc, p.y + s.cy - c.yc);
        change += kGauss3[g][1] * std::hypot(tx, ty) * (fx * fx + fy * fy) * dist;
      }
      eta[e] += std::fabs(change);
      *boundary += std::fabs(change);
    }
  }
  return eta;
}

void Warping_Stresses(const P2_Mesh& m, double Mt, Warping_Solution* out) {
  // tau = Mt / J (dphi/dy, -dphi/dx), J the mean of the bounds; the mesh's
  // coordinates about the centroid, as the solve took them.
  std::vector<double> X(m.x), Y(m.y);
  for (size_t i = 0; i < X.size(); ++i) {
    X[i] -= out->cx;
    Y[i] -= out->cy;
  }
  const double J = 0.5 * (out->J_upper + out->J_lower);
  const double scale = J > 0 ? Mt / J : 0.0;
  out->tau_x.assign(m.tri.size(), 0.0);
  out->tau_y.assign(m.tri.size(), 0.0);
  out->max_tau = 0.0;
  for (size_t e = 0; e < m.tri.size(); ++e) {
    const auto& t = m.tri[e];
    for (int s = 0; s < 7; ++s) {
      const Mapped p(X, Y, t, kSample_Base + s);
      double fx = 0, fy = 0;
      for (int i = 0; i < 6; ++i) {
        fx += p.dx[i] * out->phi[t[i]];
        fy += p.dy[i] * out->phi[t[i]];
      }
      if (s == 0) {
        out->tau_x[e] = scale * fy;
        out->tau_y[e] = -scale * fx;
      }
      out->max_tau = std::max(out->max_tau, std::fabs(scale) * std::hypot(fx, fy));
    }
  }
}
