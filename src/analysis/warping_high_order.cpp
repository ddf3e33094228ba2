// Warping function and Prandtl stress function on high-order triangles with
// hierarchical shape functions and curved edges mapped onto their arcs.
#include "analysis/warping_high_order.h"

#include <Eigen/Cholesky>
#include <Eigen/SparseCholesky>
#include <algorithm>
#include <cmath>
#include <numbers>
#include <unordered_map>
#include <vector>

#include "tessaline/analysis/exact.h"
#include "tessaline/analysis/torsion_warping.h"

namespace {

// ---- Reference element ------------------------------------------------------

// Legendre polynomials P_0..P_n at x with first and second derivatives.
void Legendre(double x, int n, double* P, double* dP, double* ddP) {
  P[0] = 1;
  dP[0] = ddP[0] = 0;
  if (n < 1) return;
  P[1] = x;
  dP[1] = 1;
  ddP[1] = 0;
  for (int k = 1; k < n; ++k) {
    P[k + 1] = ((2 * k + 1) * x * P[k] - k * P[k - 1]) / (k + 1);
    dP[k + 1] = dP[k - 1] + (2 * k + 1) * P[k];
    ddP[k + 1] = ddP[k - 1] + (2 * k + 1) * dP[k];
  }
}

// Scaled Legendre polynomials t^n P_n(x / t), with their x and t derivatives.
void Scaled_Legendre(double x, double t, int n, double* Q, double* Qx, double* Qt) {
  Q[0] = 1;
  Qx[0] = Qt[0] = 0;
  if (n < 1) return;
  Q[1] = x;
  Qx[1] = 1;
  Qt[1] = 0;
  for (int k = 1; k < n; ++k) {
    Q[k + 1] = ((2 * k + 1) * x * Q[k] - k * t * t * Q[k - 1]) / (k + 1);
    Qx[k + 1] = ((2 * k + 1) * (Q[k] + x * Qx[k]) - k * t * t * Qx[k - 1]) / (k + 1);
    Qt[k + 1] = ((2 * k + 1) * x * Qt[k] - k * (2 * t * Q[k - 1] + t * t * Qt[k - 1])) / (k + 1);
  }
}

int Basis_Count(int p) {
  return (p + 1) * (p + 2) / 2;
}

// The shape functions of order p at barycentric (l0, l1, l2) = (1 - xi -
// eta, xi, eta) with their xi and eta derivatives, every edge taken in its
// local direction (corner e to e + 1). Order: the three corners, then edge
// 0 (corners 0-1), 1 (1-2), 2 (2-0) with p - 1 functions each (k = 2..p),
// then the interior ones. An edge function of degree k changes sign by
// (-1)^k when its edge is travelled the other way.
void Basis(int p, double l0, double l1, double l2, double* N, double* Dxi, double* Deta) {
  const double l[3] = {l0, l1, l2};
  double g[3][3];  // per function being built: d/dl0, d/dl1, d/dl2
  int f = 0;
  auto put = [&](double v, const double d[3]) {
    N[f] = v;
    Dxi[f] = d[1] - d[0];
    Deta[f] = d[2] - d[0];
    ++f;
  };
  for (int i = 0; i < 3; ++i) {
    double d[3] = {0, 0, 0};
    d[i] = 1;
    put(l[i], d);
  }
  (void)g;
  double P[kHigh_Order_Max + 2], dP[kHigh_Order_Max + 2], ddP[kHigh_Order_Max + 2];
  for (int e = 0; e < 3; ++e) {
    const int a = e, b = (e + 1) % 3;
    Legendre(l[b] - l[a], p - 1, P, dP, ddP);
    for (int k = 2; k <= p; ++k) {
      // On the edge this is the integrated Legendre polynomial of degree k,
      // scaled to a unit derivative norm.
      const double c = 4.0 * std::sqrt((2.0 * k - 1) / 2.0) / (k * (k - 1.0));
      const double v = c * l[a] * l[b] * dP[k - 1];
      double d[3] = {0, 0, 0};
      d[a] = c * (l[b] * dP[k - 1] - l[a] * l[b] * ddP[k - 1]);
      d[b] = c * (l[a] * dP[k - 1] + l[a] * l[b] * ddP[k - 1]);
      put(v, d);
    }
  }
  if (p < 3) return;
  double Q[kHigh_Order_Max + 2], Qx[kHigh_Order_Max + 2], Qt[kHigh_Order_Max + 2];
  Scaled_Legendre(l1 - l0, l1 + l0, p - 3, Q, Qx, Qt);
  Legendre(2 * l2 - 1, p - 3, P, dP, ddP);
  const double B = l0 * l1 * l2;
  const double dB[3] = {l1 * l2, l0 * l2, l0 * l1};
  for (int i = 0; i <= p - 3; ++i) {
    for (int j = 0; i + j <= p - 3; ++j) {
      const double q = Q[i], r = P[j];
      const double dq[3] = {Qt[i] - Qx[i], Qt[i] + Qx[i], 0};
      const double dr[3] = {0, 0, 2 * dP[j]};
      double d[3];
      for (int s = 0; s < 3; ++s) d[s] = dB[s] * q * r + B * dq[s] * r + B * q * dr[s];
      put(B * q * r, d);
    }
  }
}

// Gauss-Legendre points and weights on [0, 1].
void Gauss(int n, std::vector<double>* x, std::vector<double>* w) {
  x->assign(static_cast<size_t>(n), 0);
  w->assign(static_cast<size_t>(n), 0);
  double P[64], dP[64], ddP[64];
  for (int i = 0; i < n; ++i) {
    double t = std::cos(std::numbers::pi * (i + 0.75) / (n + 0.5));
    for (int it = 0; it < 100; ++it) {
      Legendre(t, n, P, dP, ddP);
      const double dt = P[n] / dP[n];
      t -= dt;
      if (std::fabs(dt) < 1e-16) break;
    }
    Legendre(t, n, P, dP, ddP);
    (*x)[i] = 0.5 * (1 - t);
    (*w)[i] = 1.0 / ((1 - t * t) * dP[n] * dP[n]);
  }
}

// The shape functions of one order at the points of a collapsed Gauss rule
// (n by n points, exact to degree 2n - 2 on the reference triangle), and
// the reference stiffness matrices that straight elements need.
struct Table {
  int p = 0, nb = 0, nq = 0;
  std::vector<double> xi, eta, w;     // per point
  std::vector<double> N, Dxi, Deta;   // per point, nb each
  std::vector<double> Axx, Axy, Ayy;  // nb x nb: xi-xi, xi-eta (both ways), eta-eta
};

Table Make_Table(int p, int n) {
  Table t;
  t.p = p;
  t.nb = Basis_Count(p);
  std::vector<double> gx, gw;
  Gauss(n, &gx, &gw);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j) {
      const double u = gx[i], v = gx[j];
      t.xi.push_back(u * (1 - v));
      t.eta.push_back(v);
      t.w.push_back(gw[i] * gw[j] * (1 - v));
    }
  }
  t.nq = n * n;
  const size_t nb = static_cast<size_t>(t.nb);
  t.N.resize(nb * t.nq);
  t.Dxi.resize(nb * t.nq);
  t.Deta.resize(nb * t.nq);
  for (int q = 0; q < t.nq; ++q) {
    Basis(p, 1 - t.xi[q] - t.eta[q], t.xi[q], t.eta[q], &t.N[q * nb], &t.Dxi[q * nb],
          &t.Deta[q * nb]);
  }
  t.Axx.assign(nb * nb, 0);
  t.Axy.assign(nb * nb, 0);
  t.Ayy.assign(nb * nb, 0);
  for (int q = 0; q < t.nq; ++q) {
    const double* a = &t.Dxi[q * nb];
    const double* b = &t.Deta[q * nb];
    for (size_t i = 0; i < nb; ++i) {
      for (size_t j = 0; j < nb; ++j) {
        t.Axx[i * nb + j] += t.w[q] * a[i] * a[j];
        t.Axy[i * nb + j] += t.w[q] * (a[i] * b[j] + b[i] * a[j]);
        t.Ayy[i * nb + j] += t.w[q] * b[i] * b[j];
      }
    }
  }
  return t;
}

// ---- Element geometry -------------------------------------------------------

// An element's corners and, per edge (corner e to e + 1), the arc it lies
// on: centre, radius, the angle at corner e and the signed sweep to corner
// e + 1 (0 for a straight edge).
struct Element_Map {
  double x[3], y[3];
  double xc[3], yc[3], r[3], a0[3], sweep[3];
  bool curved = false;
};

// Position and Jacobian (x_xi, x_eta, y_xi, y_eta) at reference (xi, eta):
// the straight triangle plus, for each curved edge a-b, the blend
// (la + lb)^2 d(t), d the arc's offset from its chord at t = lb / (la + lb);
// it vanishes on the other two edges.
void Map_At(const Element_Map& m, double xi, double eta, double* x, double* y, double J[4]) {
  const double l[3] = {1 - xi - eta, xi, eta};
  const double dl_xi[3] = {-1, 1, 0}, dl_eta[3] = {-1, 0, 1};
  *x = *y = 0;
  J[0] = m.x[1] - m.x[0];
  J[1] = m.x[2] - m.x[0];
  J[2] = m.y[1] - m.y[0];
  J[3] = m.y[2] - m.y[0];
  for (int i = 0; i < 3; ++i) {
    *x += l[i] * m.x[i];
    *y += l[i] * m.y[i];
  }
  if (!m.curved) return;
  for (int e = 0; e < 3; ++e) {
    if (m.sweep[e] == 0.0) continue;
    const int a = e, b = (e + 1) % 3;
    const double s = l[a] + l[b];
    if (!(s > 1e-14)) continue;
    const double t = l[b] / s;
    const double ang = m.a0[e] + t * m.sweep[e];
    const double c = std::cos(ang), sn = std::sin(ang);
    const double dx = m.xc[e] + m.r[e] * c - ((1 - t) * m.x[a] + t * m.x[b]);
    const double dy = m.yc[e] + m.r[e] * sn - ((1 - t) * m.y[a] + t * m.y[b]);
    const double ddx = -m.r[e] * m.sweep[e] * sn - (m.x[b] - m.x[a]);
    const double ddy = m.r[e] * m.sweep[e] * c - (m.y[b] - m.y[a]);
    *x += s * s * dx;
    *y += s * s * dy;
    const double ds_xi = dl_xi[a] + dl_xi[b], ds_eta = dl_eta[a] + dl_eta[b];
    const double w_xi = l[a] * dl_xi[b] - l[b] * dl_xi[a];
    const double w_eta = l[a] * dl_eta[b] - l[b] * dl_eta[a];
    J[0] += 2 * s * dx * ds_xi + ddx * w_xi;
    J[1] += 2 * s * dx * ds_eta + ddx * w_eta;
    J[2] += 2 * s * dy * ds_xi + ddy * w_xi;
    J[3] += 2 * s * dy * ds_eta + ddy * w_eta;
  }
}

// The signed area enclosed by a boundary edge a-b (on a curve or straight)
// with the origin, by the boundary integral (x dy - y dx) / 2.
double Edge_Area(double ax, double ay, double bx, double by, const Warping_Curve* c) {
  if (!c) return 0.5 * (ax * by - bx * ay);
  const double a0 = std::atan2(ay - c->yc, ax - c->xc);
  const double sweep =
      std::remainder(std::atan2(by - c->yc, bx - c->xc) - a0, 2 * std::numbers::pi);
  // x dy - y dx along the arc, the angle from a0 to a0 + sweep.
  return 0.5 * (c->r * c->r * sweep + c->xc * (by - ay) - c->yc * (bx - ax));
}

// ---- Assembly and solve -----------------------------------------------------

using Sparse = Eigen::SparseMatrix<double>;
using Triplets = std::vector<Eigen::Triplet<double>>;

struct Layout {
  std::vector<Element_Map> maps;
  std::vector<std::array<int32_t, 3>> corner;   // compact corner numbers per element
  std::vector<std::array<int32_t, 3>> edge;     // edge numbers per element
  std::vector<std::array<int8_t, 3>> reversed;  // edge travelled against its global direction
  int corners = 0, edges = 0;
  std::vector<int32_t> corner_node;  // mesh node of each corner
  std::vector<uint64_t> edge_key;    // mesh key of each edge
};

Layout Make_Layout(const P2_Mesh& m) {
  Layout L;
  std::vector<int32_t> compact(m.x.size(), -1);
  std::unordered_map<uint64_t, int32_t> edges;
  for (const auto& t6 : m.tri) {
    // A curved edge goes first (corners 0-1): the collapsed corner of the
    // quadrature rule is then the one opposite it, where the blend is
    // smooth in the rule's own coordinates, and the rule stays exact.
    int first = 0;
    for (int i = 0; i < 3; ++i) {
      auto pc = m.edge_curve.find(Edge_Key(t6[i], t6[(i + 1) % 3]));
      if (pc != m.edge_curve.end() && pc->second >= 0) {
        first = i;
        break;
      }
    }
    const std::array<int32_t, 3> t{t6[first], t6[(first + 1) % 3], t6[(first + 2) % 3]};
    std::array<int32_t, 3> c{}, e{};
    std::array<int8_t, 3> rev{};
    Element_Map map{};
    for (int i = 0; i < 3; ++i) {
      if (compact[t[i]] < 0) {
        compact[t[i]] = L.corners++;
        L.corner_node.push_back(t[i]);
      }
      c[i] = compact[t[i]];
      map.x[i] = m.x[t[i]];
      map.y[i] = m.y[t[i]];
    }
    for (int i = 0; i < 3; ++i) {
      const int32_t a = t[i], b = t[(i + 1) % 3];
      const uint64_t key = Edge_Key(a, b);
      auto [it, fresh] = edges.try_emplace(key, L.edges);
      if (fresh) {
        ++L.edges;
        L.edge_key.push_back(key);
      }
      e[i] = it->second;
      rev[i] = c[i] > c[(i + 1) % 3];
      map.sweep[i] = 0;
      auto pc = m.edge_curve.find(key);
      if (pc != m.edge_curve.end() && pc->second >= 0) {
        const Warping_Curve& k = m.curves[static_cast<size_t>(pc->second)];
        const int j = (i + 1) % 3;
        map.xc[i] = k.xc;
        map.yc[i] = k.yc;
        map.r[i] = k.r;
        map.a0[i] = std::atan2(map.y[i] - k.yc, map.x[i] - k.xc);
        map.sweep[i] = std::remainder(std::atan2(map.y[j] - k.yc, map.x[j] - k.xc) - map.a0[i],
                                      2 * std::numbers::pi);
        map.curved = map.curved || map.sweep[i] != 0.0;
      }
    }
    L.maps.push_back(map);
    L.corner.push_back(c);
    L.edge.push_back(e);
    L.reversed.push_back(rev);
  }
  return L;
}

// Global numbers and signs of an element's corner and edge functions (its
// first 3p); the interior ones are the element's own.
void Element_Dofs(const Layout& L, int p, size_t el, int32_t* dof, double* sign) {
  const int per_edge = p - 1;
  int f = 0;
  for (int i = 0; i < 3; ++i) {
    dof[f] = L.corner[el][i];
    sign[f++] = 1;
  }
  for (int i = 0; i < 3; ++i) {
    for (int k = 2; k <= p; ++k) {
      dof[f] = L.corners + L.edge[el][i] * per_edge + (k - 2);
      sign[f++] = L.reversed[el][i] && (k % 2) ? -1.0 : 1.0;
    }
  }
}

// A quadrature point of an element: position about the centroid, weight
// times Jacobian, and the inverse Jacobian (xi_x, xi_y, eta_x, eta_y).
struct Point {
  double x, y, dA, ix[4];
};

bool Point_At(const Element_Map& m, double xi, double eta, double w, double cx, double cy,
              Point* pt) {
  double x, y, J[4];
  Map_At(m, xi, eta, &x, &y, J);
  const double det = J[0] * J[3] - J[1] * J[2];
  if (!(det > 0)) return false;
  pt->x = x - cx;
  pt->y = y - cy;
  pt->dA = w * det;
  pt->ix[0] = J[3] / det;
  pt->ix[1] = -J[1] / det;
  pt->ix[2] = -J[2] / det;
  pt->ix[3] = J[0] / det;
  return true;
}

}  // namespace

Warping_Solution Solve_Warping_High_Order(const P2_Mesh& mesh, int p, double Mt) {
  Warping_Solution out;
  if (p < kHigh_Order_Min || p > kHigh_Order_Max || mesh.tri.empty()) return out;
  const Layout L = Make_Layout(mesh);
  // Straight elements integrate polynomials of degree 2p exactly; curved
  // ones, whose map is not a polynomial, take more points.
  const Table straight = Make_Table(p, p + 2), curved = Make_Table(p, p + 5);
  const int nb = straight.nb, ms = 3 * p, ni = nb - ms;
  const size_t ne = L.maps.size();
  const int per_edge = p - 1;
  const int n = L.corners + L.edges * per_edge;  // corner and edge unknowns

  // Centroid first: the other integrals are taken about it.
  double A = 0, Qx = 0, Qy = 0;
  for (size_t e = 0; e < ne; ++e) {
    const Table& T = L.maps[e].curved ? curved : straight;
    for (int q = 0; q < T.nq; ++q) {
      Point pt;
      if (!Point_At(L.maps[e], T.xi[q], T.eta[q], T.w[q], 0, 0, &pt)) return out;
      A += pt.dA;
      Qx += pt.dA * pt.x;
      Qy += pt.dA * pt.y;
    }
  }
  if (!(A > 0) || !std::isfinite(A)) return out;
  out.area = A;
  out.cx = Qx / A;
  out.cy = Qy / A;

  // Element by element: the stiffness of the Laplacian and four loads (the
  // warping load, the Prandtl load and the first moments of the shape
  // functions in x and y); the interior functions are condensed out, their
  // share of the loads' energies summed into C, and what recovers them
  // from the corner and edge values is kept (X and Y per element).
  Triplets k;
  k.reserve(ne * static_cast<size_t>(ms * ms));
  Eigen::MatrixXd G = Eigen::MatrixXd::Zero(n, 4);
  Eigen::Matrix4d C = Eigen::Matrix4d::Zero();
  double Sxx = 0, Syy = 0, Sxy = 0;
  std::vector<int32_t> dof(static_cast<size_t>(ms));
  std::vector<double> sign(static_cast<size_t>(nb), 1.0);
  std::vector<Eigen::MatrixXd> X(ne), Y(ne);
  Eigen::MatrixXd ke(nb, nb), le(nb, 4);
  std::vector<double> dx(static_cast<size_t>(nb)), dy(static_cast<size_t>(nb));
  for (size_t e = 0; e < ne; ++e) {
    const Element_Map& map = L.maps[e];
    const Table& T = map.curved ? curved : straight;
    Element_Dofs(L, p, e, dof.data(), sign.data());
    ke.setZero();
    le.setZero();
    double c1 = 0, c2 = 0, c3 = 0, det = 0;
    for (int q = 0; q < T.nq; ++q) {
      Point pt;
      if (!Point_At(map, T.xi[q], T.eta[q], T.w[q], out.cx, out.cy, &pt)) return out;
      const double* N = &T.N[static_cast<size_t>(q * nb)];
      const double* Dx = &T.Dxi[static_cast<size_t>(q * nb)];
      const double* De = &T.Deta[static_cast<size_t>(q * nb)];
      for (int i = 0; i < nb; ++i) {
        dx[i] = pt.ix[0] * Dx[i] + pt.ix[2] * De[i];
        dy[i] = pt.ix[1] * Dx[i] + pt.ix[3] * De[i];
      }
      const double w = pt.dA;
      Sxx += w * pt.x * pt.x;
      Syy += w * pt.y * pt.y;
      Sxy += w * pt.x * pt.y;
      for (int i = 0; i < nb; ++i) {
        le(i, 0) += w * (pt.y * dx[i] - pt.x * dy[i]);
        le(i, 1) += w * 2.0 * N[i];
        le(i, 2) += w * pt.x * N[i];
        le(i, 3) += w * pt.y * N[i];
      }
      if (map.curved) {
        for (int j = 0; j < nb; ++j) {
          for (int i = 0; i < nb; ++i) ke(i, j) += w * (dx[i] * dx[j] + dy[i] * dy[j]);
        }
      } else if (q == 0) {
        // Affine: the Jacobian is constant, the stiffness a sum of the
        // reference matrices.
        det = pt.dA / T.w[q];
        c1 = pt.ix[0] * pt.ix[0] + pt.ix[1] * pt.ix[1];
        c2 = pt.ix[0] * pt.ix[2] + pt.ix[1] * pt.ix[3];
        c3 = pt.ix[2] * pt.ix[2] + pt.ix[3] * pt.ix[3];
      }
    }
    if (!map.curved) {
      for (int j = 0; j < nb; ++j) {
        for (int i = 0; i < nb; ++i) {
          const size_t ij = static_cast<size_t>(i * nb + j);
          ke(i, j) = det * (c1 * T.Axx[ij] + c2 * T.Axy[ij] + c3 * T.Ayy[ij]);
        }
      }
    }
    for (int i = 0; i < ms; ++i) {
      if (sign[i] < 0) {
        ke.row(i) *= -1;
        ke.col(i) *= -1;
        le.row(i) *= -1;
      }
    }
    Eigen::MatrixXd ks = ke.topLeftCorner(ms, ms);
    Eigen::MatrixXd ls = le.topRows(ms);
    if (ni > 0) {
      Eigen::LLT<Eigen::MatrixXd> llt(ke.bottomRightCorner(ni, ni));
      if (llt.info() != Eigen::Success) return out;
      X[e] = llt.solve(ke.bottomLeftCorner(ni, ms));
      Y[e] = llt.solve(le.bottomRows(ni));
      ks.noalias() -= ke.topRightCorner(ms, ni) * X[e];
      ls.noalias() -= ke.topRightCorner(ms, ni) * Y[e];
      C.noalias() += le.bottomRows(ni).transpose() * Y[e];
    }
    for (int j = 0; j < ms; ++j) {
      G.row(dof[j]) += ls.row(j);
      for (int i = 0; i < ms; ++i) k.emplace_back(dof[i], dof[j], ks(i, j));
    }
  }

  // Components of the mesh and its boundary loops (outer or hole).
  std::vector<int32_t> component;
  int components = 0;
  const std::vector<P2_Loop> loops = Boundary_Loops(mesh, &component, &components);

  // Warping: a Neumann problem, one corner of every component pinned.
  std::vector<char> pinned(static_cast<size_t>(n), 0), seen(static_cast<size_t>(components), 0);
  for (int c = 0; c < L.corners; ++c) {
    const int32_t comp = component[L.corner_node[c]];
    if (comp >= 0 && !seen[comp]) {
      seen[comp] = 1;
      pinned[c] = 1;
    }
  }
  // One pattern for both fields: a held unknown keeps its row and column,
  // zeros with a unit diagonal, so the ordering and the symbolic
  // factorisation are made once (every unknown has its diagonal).
  Sparse K(n, n);
  K.setFromTriplets(k.begin(), k.end());
  auto held = [&](const std::vector<char>& fixed) {
    Sparse M = K;
    for (int c = 0; c < n; ++c) {
      for (Sparse::InnerIterator it(M, c); it; ++it) {
        if (fixed[it.row()] || fixed[c]) it.valueRef() = it.row() == c ? 1.0 : 0.0;
      }
    }
    return M;
  };
  Eigen::SimplicialLDLT<Sparse> ldlt;
  ldlt.analyzePattern(K);
  ldlt.factorize(held(pinned));
  if (ldlt.info() != Eigen::Success) return out;
  const double det = Sxx * Syy - Sxy * Sxy;
  if (!(det > 0)) return out;
  // The loads as combinations of the four: warping, shear along x, along y.
  Eigen::Matrix<double, 4, 3> mix = Eigen::Matrix<double, 4, 3>::Zero();
  mix(0, 0) = 1;
  mix(2, 1) = Syy / det;
  mix(3, 1) = -Sxy / det;
  mix(2, 2) = -Sxy / det;
  mix(3, 2) = Sxx / det;
  Eigen::MatrixXd rhs = G * mix;
  for (int i = 0; i < n; ++i) {
    if (pinned[i]) rhs.row(i).setZero();
  }
  const Eigen::MatrixXd sol = ldlt.solve(rhs);
  const Eigen::Matrix3d inner = mix.transpose() * C * mix;
  const Eigen::VectorXd omega = sol.col(0);
  out.J_upper = Sxx + Syy - rhs.col(0).dot(omega) - inner(0, 0);
  out.shear_area_x = 1.0 / (sol.col(1).dot(rhs.col(1)) + inner(1, 1));
  out.shear_area_y = 1.0 / (sol.col(2).dot(rhs.col(2)) + inner(2, 2));

  // Prandtl: 0 on outer boundaries; on a hole's boundary one unknown, the
  // corners sharing it and the edge functions held at 0.
  std::vector<int32_t> map_dof(static_cast<size_t>(n), -2);
  std::vector<int32_t> corner_of(mesh.x.size(), -1);
  for (int c = 0; c < L.corners; ++c) corner_of[L.corner_node[c]] = c;
  std::unordered_map<uint64_t, int32_t> edge_of;
  for (int e = 0; e < L.edges; ++e) edge_of[L.edge_key[e]] = e;
  int nd = 0;
  std::vector<double> hole_area;
  for (const P2_Loop& l : loops) {
    const int32_t d = l.outer ? -1 : nd++;
    double twice = 0;
    const size_t m = l.nodes.size();
    for (size_t i = 0; i + 1 < m; i += 2) {
      const int32_t a = l.nodes[i], b = l.nodes[(i + 2) % m];
      if (corner_of[a] >= 0) map_dof[corner_of[a]] = d;
      auto pe = edge_of.find(Edge_Key(a, b));
      if (pe != edge_of.end()) {
        for (int j = 0; j < per_edge; ++j) map_dof[L.corners + pe->second * per_edge + j] = -1;
      }
      auto pc = mesh.edge_curve.find(Edge_Key(a, b));
      const Warping_Curve* c = pc != mesh.edge_curve.end() && pc->second >= 0
                                   ? &mesh.curves[static_cast<size_t>(pc->second)]
                                   : nullptr;
      twice += 2 * Edge_Area(mesh.x[a], mesh.y[a], mesh.x[b], mesh.y[b], c);
    }
    if (!l.outer) hole_area.push_back(0.5 * std::fabs(twice));
  }
  const int holes = nd;
  for (int i = 0; i < n; ++i) {
    if (map_dof[i] == -2) map_dof[i] = nd++;
  }
  Eigen::VectorXd Pp, phi_d;
  if (holes == 0) {
    // No hole: the warping field's pattern and ordering, the outer
    // boundary's unknowns held at 0.
    std::vector<char> outer(static_cast<size_t>(n), 0);
    for (int i = 0; i < n; ++i) {
      outer[i] = map_dof[i] < 0;
      map_dof[i] = outer[i] ? -1 : i;
    }
    Pp = G.col(1);
    for (int i = 0; i < n; ++i) {
      if (outer[i]) Pp[i] = 0;
    }
    ldlt.factorize(held(outer));
    if (ldlt.info() != Eigen::Success) return out;
    phi_d = ldlt.solve(Pp);
  } else {
    Triplets kp;
    kp.reserve(k.size());
    for (const auto& t : k) {
      const int32_t r = map_dof[t.row()], c = map_dof[t.col()];
      if (r >= 0 && c >= 0) kp.emplace_back(r, c, t.value());
    }
    Pp = Eigen::VectorXd::Zero(nd);
    for (int i = 0; i < n; ++i) {
      if (map_dof[i] >= 0) Pp[map_dof[i]] += G(i, 1);
    }
    for (int h = 0; h < holes; ++h) Pp[h] += 2.0 * hole_area[static_cast<size_t>(h)];
    Sparse Kp(nd, nd);
    Kp.setFromTriplets(kp.begin(), kp.end());
    Eigen::SimplicialLDLT<Sparse> lp(Kp);
    if (lp.info() != Eigen::Success) return out;
    phi_d = lp.solve(Pp);
  }
  out.J_lower = Pp.dot(phi_d) + C(1, 1);
  if (!std::isfinite(out.J_upper) || !std::isfinite(out.J_lower)) return out;

  // Shear centre and warping constant from omega at the quadrature points;
  // the largest shear stress on a lattice of points of every element.
  double Iw = 0, Ixw = 0, Iyw = 0, Iww = 0;
  const double J = 0.5 * (out.J_upper + out.J_lower);
  const double scale = J > 0 ? std::fabs(Mt) / J : 0.0;
  std::vector<double> lattice_xi, lattice_eta, ln, lx, le_;
  for (int i = 0; i <= p; ++i) {
    for (int j = 0; i + j <= p; ++j) {
      lattice_xi.push_back(static_cast<double>(i) / p);
      lattice_eta.push_back(static_cast<double>(j) / p);
    }
  }
  const size_t nl = lattice_xi.size();
  const size_t nbs = static_cast<size_t>(nb);
  ln.resize(nl * nbs);
  lx.resize(nl * nbs);
  le_.resize(nl * nbs);
  for (size_t s = 0; s < nl; ++s) {
    Basis(p, 1 - lattice_xi[s] - lattice_eta[s], lattice_xi[s], lattice_eta[s], &ln[s * nbs],
          &lx[s * nbs], &le_[s * nbs]);
  }
  Eigen::VectorXd we(nb), fe(nb), ws(ms), fs(ms);
  for (size_t e = 0; e < ne; ++e) {
    const Element_Map& map = L.maps[e];
    const Table& T = map.curved ? curved : straight;
    Element_Dofs(L, p, e, dof.data(), sign.data());
    // The element's coefficients: the interior ones recovered from the
    // corner and edge values.
    // X and Y act on the global values (the signs are in them); the
    // element's own coefficients carry the edges' signs.
    for (int i = 0; i < ms; ++i) {
      ws[i] = omega[dof[i]];
      fs[i] = map_dof[dof[i]] >= 0 ? phi_d[map_dof[dof[i]]] : 0.0;
    }
    if (ni > 0) {
      we.tail(ni) = Y[e].col(0) - X[e] * ws;
      fe.tail(ni) = Y[e].col(1) - X[e] * fs;
    }
    for (int i = 0; i < ms; ++i) {
      we[i] = sign[i] * ws[i];
      fe[i] = sign[i] * fs[i];
    }
    for (int q = 0; q < T.nq; ++q) {
      Point pt;
      Point_At(map, T.xi[q], T.eta[q], T.w[q], out.cx, out.cy, &pt);
      const double* N = &T.N[static_cast<size_t>(q * nb)];
      double w = 0;
      for (int i = 0; i < nb; ++i) w += N[i] * we[i];
      Iw += pt.dA * w;
      Ixw += pt.dA * pt.x * w;
      Iyw += pt.dA * pt.y * w;
      Iww += pt.dA * w * w;
    }
    for (size_t s = 0; s < nl; ++s) {
      Point pt;
      if (!Point_At(map, lattice_xi[s], lattice_eta[s], 1.0, out.cx, out.cy, &pt)) continue;
      double fx = 0, fy = 0;
      for (size_t i = 0; i < nbs; ++i) {
        fx += fe[i] * (pt.ix[0] * lx[s * nbs + i] + pt.ix[2] * le_[s * nbs + i]);
        fy += fe[i] * (pt.ix[1] * lx[s * nbs + i] + pt.ix[3] * le_[s * nbs + i]);
      }
      out.max_tau = std::max(out.max_tau, scale * std::hypot(fx, fy));
    }
  }
  const double x0 = (Ixw * Sxy - Sxx * Iyw) / det, y0 = (Syy * Ixw - Sxy * Iyw) / det;
  out.xs = out.cx + x0;
  out.ys = out.cy + y0;
  out.Cw = Iww + x0 * x0 * Syy + y0 * y0 * Sxx + 2 * x0 * Iyw - 2 * y0 * Ixw - 2 * x0 * y0 * Sxy -
           Iw * Iw / A;
  out.ok = true;
  return out;
}
