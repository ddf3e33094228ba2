// Hole constants of the stress function from the five-point grid.
#include <algorithm>
#include <cmath>
#include <vector>

#include <Eigen/SparseCholesky>

#include "analysis/torsion_grid.h"
#include "contour/outline.h"
#include "contour/shape.h"
#include "platform/locked.h"
#include "tessaline/analysis/torsion.h"
#include "tessaline/platform/user.h"

namespace {

constexpr double kMax_Grid_Nodes = 16.0e6;

bool Read_Shapes(HGLOBAL list, int count, std::vector<Contour_Shape>* shapes) {
  if (count <= 0) return true;
  Locked<HGLOBAL> handles(list);
  if (!handles || !handles.holds(count - 1)) return false;
  shapes->resize(static_cast<size_t>(count));
  for (int i = 0; i < count; ++i) {
    Locked<Contour_Type> c(handles[i]);
    if (!c || !(*shapes)[i].Read(c.get())) return false;
    (*shapes)[i].Index();
  }
  return true;
}

// The area a contour encloses, from its outline with arcs divided finely
// enough (a thousandth of a radian a piece) for 1e-7 relative.
double Contour_Area(HGLOBAL list, int i) {
  Locked<HGLOBAL> handles(list);
  if (!handles || !handles.holds(i)) return 0.0;
  Locked<Contour_Type> c(handles[i]);
  std::vector<Element_Record> elements;
  if (!c || !Read_Contour(c.get(), &elements)) return 0.0;
  std::vector<Outline_Piece> pieces;
  Outline_Pieces(elements, true, Arc_Division{0.001, 0.0, 1 << 16}, &pieces);
  double a = 0.0;
  for (const Outline_Piece& p : pieces) a += p.x1 * p.y2 - p.x2 * p.y1;
  return std::fabs(a) * 0.5;
}

}  // namespace

bool Build_Relax_Grid(Surface_Type* surface, double theta, double step, Relax_Grid* g) {
  double left = 0, top = 0, right = 0, bottom = 0;
  if (!surface || !Get_Surface_Extern_Rect(surface, &left, &top, &right, &bottom)) return false;
  std::vector<Contour_Shape> outers, holes;
  if (!Read_Shapes(surface->outers, surface->outer_count, &outers) ||
      !Read_Shapes(surface->holes, surface->hole_count, &holes)) {
    return false;
  }
  const double W = right - left, H = top - bottom;
  if (!std::isfinite(W) || !std::isfinite(H) || W < 0 || H < 0) return false;
  // Bound the grid whatever step the caller gives.
  const double min_step = std::sqrt(std::max(W * H, W * W + H * H) / kMax_Grid_Nodes);
  if (!(step >= min_step) || !std::isfinite(step)) step = std::max(min_step, 1e-300);
  g->columns = static_cast<int>(std::ceil(W / step)) + 1;
  g->rows = static_cast<int>(std::ceil(H / step)) + 1;
  g->left = left;
  g->bottom = bottom;
  g->step = step;
  const int nh = static_cast<int>(holes.size());
  g->representative.assign(static_cast<size_t>(nh), -1);
  g->hole_area.assign(static_cast<size_t>(nh), 0.0);
  for (int k = 0; k < nh; ++k) g->hole_area[k] = Contour_Area(surface->holes, k);

  // Class of a point: -1 outside, nh in the surface, k in hole k.
  auto classify = [&](double x, double y) {
    bool in_outer = false;
    for (const Contour_Shape& sh : outers) in_outer = in_outer || sh.Contains(x, y);
    if (!in_outer) return -1;
    for (int k = 0; k < nh; ++k) {
      if (holes[k].Contains(x, y)) return k;
    }
    return nh;
  };
  const size_t nodes = static_cast<size_t>(g->columns) * g->rows;
  std::vector<int> cls(nodes, -1);
  g->unknown.assign(nodes, -1);
  int m = 0;
  for (int r = 0; r < g->rows; ++r) {
    for (int c = 0; c < g->columns; ++c) {
      const size_t i = static_cast<size_t>(r) * g->columns + c;
      cls[i] = classify(left + c * step, bottom + r * step);
      if (cls[i] == nh) {
        g->unknown[i] = m++;
      } else if (cls[i] >= 0) {
        int& rep = g->representative[cls[i]];
        if (rep < 0) rep = m++;
        g->unknown[i] = rep;
      }
    }
  }
  g->m = m;
  for (int k = 0; k < nh; ++k) {
    if (g->representative[k] < 0) return true;  // no system without every hole
  }

  // The energy of the grid: each link between two unknowns adds
  // w (phi_p - phi_q)^2, a link leaving the surface w phi_p^2 (phi = 0
  // outside). Where a link crosses a contour, the boundary value holds at
  // the crossing, s steps from the surface node, and w = 1/s; links inside
  // one hole cancel. Right-hand side 2 G theta h^2 per surface node and
  // 2 G theta times the area for a hole: the hole's circulation condition,
  // the flux through its boundary balancing the load it encloses.
  const int dr[4] = {0, 0, 1, -1}, dc[4] = {1, -1, 0, 0};
  auto crossing = [&](int r, int c, int d) {  // from surface node (r, c) along d
    const double x = left + c * step, y = bottom + r * step;
    double lo = 0.0, hi = 1.0;
    for (int it = 0; it < 30; ++it) {
      const double mid = 0.5 * (lo + hi);
      (classify(x + dc[d] * step * mid, y + dr[d] * step * mid) == nh ? lo : hi) = mid;
    }
    return std::max(0.5 * (lo + hi), 1e-3);  // bounds the weights for the solve
  };
  std::vector<Eigen::Triplet<double>> t;
  t.reserve(static_cast<size_t>(m) * 5);
  for (int r = 0; r < g->rows; ++r) {
    for (int c = 0; c < g->columns; ++c) {
      const size_t i = static_cast<size_t>(r) * g->columns + c;
      const int u = g->unknown[i];
      if (u < 0) continue;
      for (int d = 0; d < 4; ++d) {
        const int rn = r + dr[d], cn = c + dc[d];
        const bool on_grid = rn >= 0 && cn >= 0 && rn < g->rows && cn < g->columns;
        const size_t j = on_grid ? static_cast<size_t>(rn) * g->columns + cn : 0;
        const int other = on_grid ? cls[j] : -1;
        const int v = on_grid ? g->unknown[j] : -1;
        if (cls[i] == nh) {
          const double w = other == nh ? 1.0 : 1.0 / crossing(r, c, d);
          t.emplace_back(u, u, w);
          if (v >= 0) t.emplace_back(u, v, -w);
        } else if (other == nh) {
          // A hole node next to the surface: the same link seen from its
          // other end, its weight measured from the surface node.
          const double w = 1.0 / crossing(rn, cn, d ^ 1);
          t.emplace_back(u, u, w);
          t.emplace_back(u, v, -w);
        }
      }
    }
  }
  g->K.resize(m, m);
  g->K.setFromTriplets(t.begin(), t.end());
  const double load = 2.0 * kRelax_Shear_Modulus * theta;
  g->rhs = Eigen::VectorXd::Constant(m, load * step * step);
  for (int k = 0; k < nh; ++k) g->rhs[g->representative[k]] = load * g->hole_area[k];
  return true;
}

void RelaxMethod(Surface_Type* surface, double /*E*/, double /*nu*/, double theta, double step,
                 double* hole_constants, double* hole_areas, CProgressDlg* progress) {
  if (!surface || !hole_constants || !hole_areas || surface->hole_count <= 0) return;
  Relax_Grid g;
  if (!Build_Relax_Grid(surface, theta, step, &g)) return;
  for (size_t k = 0; k < g.representative.size(); ++k) {
    if (g.representative[k] < 0) {
      MessageBoxA(nullptr,
                  "Increase number of finite elements. Cross-section properties could be "
                  "calculated with errors.",
                  "Warning", MB_OK);
      return;
    }
  }
  const size_t nh = g.representative.size();
  if (g.m == 0) {
    std::fill(hole_constants, hole_constants + nh, 0.0);
    return;
  }
  if (progress) progress->SetPos(50);
  Eigen::SimplicialLDLT<Eigen::SparseMatrix<double>> ldlt(g.K);
  if (ldlt.info() != Eigen::Success) return;
  const Eigen::VectorXd phi = ldlt.solve(g.rhs);
  for (size_t k = 0; k < nh; ++k) {
    hole_constants[k] = phi[g.representative[k]];
    hole_areas[k] = g.hole_area[k];
  }
  if (progress) progress->SetPos(100);
}
