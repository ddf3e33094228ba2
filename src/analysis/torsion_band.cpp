// The triangle solve of the stress function: linear-triangle Laplace
// stiffness in a band of 2b + 3 doubles a row, elimination, the torsion
// constant and the per-triangle shear stresses.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "platform/locked.h"
#include "tessaline/analysis/torsion.h"
#include "tessaline/geometry/triangle.h"
#include "tessaline/platform/memory.h"
#include "tessaline/platform/user.h"

double Triangle_Area(double x1, double y1, double x2, double y2, double x3, double y3) {
  return Get_3Ang_Area(x1, y1, x2, y2, x3, y3);
}

namespace {

// A split read out of its blocks, node numbers checked.
struct Split_Copy {
  std::vector<FEPOINT> nodes;
  std::vector<FE3Ang> triangles;
};

bool Read_Split(int node_count, HGLOBAL triangles, int triangle_count, HGLOBAL nodes,
                Split_Copy* out) {
  if (node_count <= 0 || triangle_count <= 0) return false;
  Locked<FEPOINT> pts(nodes);
  Locked<FE3Ang> tris(triangles);
  if (!pts || !tris || !pts.holds(node_count - 1) || !tris.holds(triangle_count - 1)) return false;
  out->nodes.assign(pts.get(), pts.get() + node_count);
  out->triangles.assign(tris.get(), tris.get() + triangle_count);
  for (const FE3Ang& t : out->triangles) {
    for (int32_t v : t.n) {
      if (v < 0 || v >= node_count) return false;
    }
  }
  return true;
}

// The symmetric band: row i holds columns i - b .. i + b at offsets 0 .. 2b
// of its 2b + 3 doubles (the two last are spare, as the system allots them).
class Band_Matrix {
 public:
  Band_Matrix(int n, int b) : n_(n), b_(b), w_(2 * b + 3), a_(static_cast<size_t>(n) * w_, 0.0) {}
  double& at(int i, int j) { return a_[static_cast<size_t>(i) * w_ + (j - i + b_)]; }
  bool in_band(int i, int j) const { return std::abs(i - j) <= b_ && j >= 0 && j < n_; }
  int n() const { return n_; }
  int b() const { return b_; }

 private:
  int n_, b_;
  size_t w_;
  std::vector<double> a_;
};

void Assemble_Laplace(const Split_Copy& s, double q, Band_Matrix* k, std::vector<double>* f) {
  for (const FE3Ang& t : s.triangles) {
    const FEPOINT* p[3] = {&s.nodes[t.n[0]], &s.nodes[t.n[1]], &s.nodes[t.n[2]]};
    const double a = Triangle_Area(p[0]->x, p[0]->y, p[1]->x, p[1]->y, p[2]->x, p[2]->y);
    if (!(a > 0.0)) continue;  // a degenerate triangle adds nothing
    double bx[3], cy[3];
    for (int i = 0; i < 3; ++i) {
      const FEPOINT* pj = p[(i + 1) % 3];
      const FEPOINT* pk = p[(i + 2) % 3];
      bx[i] = pj->y - pk->y;
      cy[i] = pk->x - pj->x;
    }
    for (int i = 0; i < 3; ++i) {
      for (int j = 0; j < 3; ++j) {
        k->at(t.n[i], t.n[j]) += 0.25 * (bx[i] * bx[j] + cy[i] * cy[j]) / a;
      }
      (*f)[t.n[i]] += a * q;
    }
  }
}

// Fixes node i at value v, keeping the matrix symmetric within the band.
void Fix_Node(Band_Matrix* k, std::vector<double>* f, int i, double v) {
  for (int j = std::max(0, i - k->b()); j <= std::min(k->n() - 1, i + k->b()); ++j) {
    if (j == i) continue;
    (*f)[j] -= k->at(j, i) * v;
    k->at(j, i) = 0.0;
    k->at(i, j) = 0.0;
  }
  k->at(i, i) = 1.0;
  (*f)[i] = v;
}

// Gaussian elimination in the band without pivoting (the matrix is
// symmetric positive definite once the boundary is fixed). False on a
// pivot that is not clearly positive: a part of the split that touches no
// boundary has no unique stress function.
bool Solve_Band(Band_Matrix* k, std::vector<double>* f, CProgressDlg* progress) {
  const int n = k->n(), b = k->b();
  for (int i = 0; i < n; ++i) {
    if (progress && n > 1) progress->SetPos(50 + MulDiv(50, i, n - 1));
    const double piv = k->at(i, i);
    double scale = 0.0;
    for (int j = std::max(0, i - b); j <= std::min(n - 1, i + b); ++j) {
      scale = std::max(scale, std::fabs(k->at(i, j)));
    }
    if (!(piv > 1e-12 * scale) || !std::isfinite(piv)) return false;
    const int last = std::min(n - 1, i + b);
    for (int r = i + 1; r <= last; ++r) {
      const double m = k->at(r, i) / piv;
      if (m == 0.0) continue;
      for (int c = i; c <= last; ++c) k->at(r, c) -= m * k->at(i, c);
      (*f)[r] -= m * (*f)[i];
    }
  }
  for (int i = n - 1; i >= 0; --i) {
    double s = (*f)[i];
    for (int c = i + 1; c <= std::min(n - 1, i + b); ++c) s -= k->at(i, c) * (*f)[c];
    (*f)[i] = s / k->at(i, i);
  }
  return true;
}

int Split_Bandwidth(const Split_Copy& s) {
  int b = 0;
  for (const FE3Ang& t : s.triangles) {
    for (int i = 0; i < 3; ++i) b = std::max(b, std::abs(t.n[i] - t.n[(i + 1) % 3]));
  }
  return b;
}

// Common steps of both paths: phi at the nodes and J (the torque at the
// fixed twist). False for input that cannot be read or solved.
bool Solve_Phi(const Split_Copy& s, int bandwidth, Surface_Type* surface, double E, double nu,
               double step, CProgressDlg* relax_progress, CProgressDlg* progress,
               std::vector<double>* phi, double* J) {
  const double G = E * 0.5 / (nu + 1.0);
  const double q = G * 2.0 * kTorsion_Theta / 3.0;
  const int holes = surface ? std::max(surface->hole_count, 0) : 0;
  std::vector<double> hole_k(static_cast<size_t>(holes), 0.0), hole_a(hole_k);
  if (holes > 0) {
    RelaxMethod(surface, E, nu, kTorsion_Theta, step, hole_k.data(), hole_a.data(), relax_progress);
  }
  const int n = static_cast<int>(s.nodes.size());
  // The caller's bandwidth is a promise we check: the band must hold every
  // triangle, and never needs to be wider than the matrix.
  const int b = std::min(std::max(bandwidth, Split_Bandwidth(s)), n - 1);
  Band_Matrix k(n, b);
  phi->assign(static_cast<size_t>(n), 0.0);
  Assemble_Laplace(s, q, &k, phi);
  for (int i = 0; i < n; ++i) {
    const int flag = s.nodes[i].flag;
    if (flag == 1) {
      Fix_Node(&k, phi, i, 0.0);
    } else if (flag >= 2 && holes > 0) {
      Fix_Node(&k, phi, i, flag - 2 < holes ? hole_k[flag - 2] : 0.0);
    } else if (k.at(i, i) == 0.0) {
      Fix_Node(&k, phi, i, 0.0);  // a node no triangle uses
    }
  }
  if (!Solve_Band(&k, phi, progress)) return false;
  double j = 0.0;
  for (const FE3Ang& t : s.triangles) {
    const FEPOINT& p0 = s.nodes[t.n[0]];
    const FEPOINT& p1 = s.nodes[t.n[1]];
    const FEPOINT& p2 = s.nodes[t.n[2]];
    const double a = Triangle_Area(p0.x, p0.y, p1.x, p1.y, p2.x, p2.y);
    j += a * ((*phi)[t.n[0]] + (*phi)[t.n[1]] + (*phi)[t.n[2]]) / 3.0;
  }
  j *= 2.0;
  for (int h = 0; h < holes; ++h) j += 2.0 * hole_k[h] * hole_a[h];
  *J = j;
  return true;
}

HGLOBAL Doubles_Block(const std::vector<double>& v) {
  HGLOBAL h = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, v.size() * sizeof(double));
  if (!h) return 0;
  Locked<double> p(h);
  if (!p || p.count() < v.size()) {
    GlobalFree(h);
    return 0;
  }
  std::memcpy(p.get(), v.data(), v.size() * sizeof(double));
  return h;
}

}  // namespace

double Solve_Torsion_FE(int node_count, HGLOBAL triangles, int triangle_count, HGLOBAL nodes,
                        int bandwidth, HGLOBAL* tau_x, HGLOBAL* tau_y, Surface_Type* surface,
                        double E, double nu, double Mt, double step) {
  Split_Copy s;
  if (!tau_x || !tau_y || !Read_Split(node_count, triangles, triangle_count, nodes, &s)) {
    return 0.0;
  }
  std::vector<double> phi;
  double J = 0.0;
  if (!Solve_Phi(s, bandwidth, surface, E, nu, step, nullptr, nullptr, &phi, &J)) return 0.0;
  std::vector<double> tx(s.triangles.size()), ty(s.triangles.size());
  const double scale = J != 0.0 ? Mt / J : 0.0;
  for (size_t e = 0; e < s.triangles.size(); ++e) {
    const FE3Ang& t = s.triangles[e];
    const FEPOINT &p1 = s.nodes[t.n[0]], &p2 = s.nodes[t.n[1]], &p3 = s.nodes[t.n[2]];
    const double f1 = phi[t.n[0]], f2 = phi[t.n[1]], f3 = phi[t.n[2]];
    const double a = Triangle_Area(p1.x, p1.y, p2.x, p2.y, p3.x, p3.y);
    if (!(a > 0.0)) continue;  // no gradient on a degenerate triangle
    tx[e] = ((p1.x - p3.x) * f2 + (p3.x - p2.x) * f1 + (p2.x - p1.x) * f3) / (2.0 * a) * scale;
    ty[e] = -((p3.y - p1.y) * f2 + (p2.y - p3.y) * f1 + (p1.y - p2.y) * f3) / (2.0 * a) * scale;
  }
  HGLOBAL hx = Doubles_Block(tx), hy = Doubles_Block(ty);
  if (!hx || !hy) {
    if (hx) GlobalFree(hx);
    if (hy) GlobalFree(hy);
    return 0.0;
  }
  if (*tau_x) GlobalFree(*tau_x);
  if (*tau_y) GlobalFree(*tau_y);
  *tau_x = hx;
  *tau_y = hy;
  return J != 0.0 ? kTorsion_Theta / J : 0.0;
}

double Solve_Torsion_FE_Moment(int node_count, HGLOBAL triangles, int triangle_count, HGLOBAL nodes,
                               int bandwidth, Surface_Type* surface, CProgressDlg* progress,
                               double E, double nu, double F, double step) {
  Split_Copy s;
  if (!Read_Split(node_count, triangles, triangle_count, nodes, &s)) return 0.0;
  std::vector<double> phi;
  double J = 0.0;
  if (!Solve_Phi(s, bandwidth, surface, E, nu, step, progress, progress, &phi, &J)) return 0.0;
  return F / kTorsion_Theta * J;
}
