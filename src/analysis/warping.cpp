// The torsion and warping analysis: a refinement loop over the 6-node
// solves until the two bounds of J meet.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>
#include <vector>

#include "analysis/split_internal.h"
#include "analysis/warping_solve.h"
#include "platform/locked.h"
#include "tessaline/analysis/exact.h"
#include "tessaline/analysis/torsion_warping.h"
#include "tessaline/platform/memory.h"

namespace {

constexpr double kDefault_Gap = 1e-6;
constexpr int kDefault_Budget = 200000;
// Elements of the starting mesh of a surface.
constexpr double kStart_Elements = 128.0;

bool Read_Linear(const FE_Split& s, std::vector<double>* x, std::vector<double>* y,
                 std::vector<std::array<int32_t, 3>>* tri) {
  if (s.node_count <= 0 || s.triangle_count <= 0) return false;
  Locked<FEPOINT> pts(s.nodes);
  Locked<FE3Ang> tris(s.triangles);
  if (!pts || !tris || !pts.holds(s.node_count - 1) || !tris.holds(s.triangle_count - 1)) {
    return false;
  }
  for (int i = 0; i < s.node_count; ++i) {
    if (!std::isfinite(pts[i].x) || !std::isfinite(pts[i].y)) return false;
    x->push_back(pts[i].x);
    y->push_back(pts[i].y);
  }
  for (int e = 0; e < s.triangle_count; ++e) {
    std::array<int32_t, 3> t{tris[e].n[0], tris[e].n[1], tris[e].n[2]};
    for (int32_t v : t) {
      if (v < 0 || v >= s.node_count) return false;
    }
    if (t[0] == t[1] || t[1] == t[2] || t[0] == t[2]) continue;  // no element
    tri->push_back(t);
  }
  return !tri->empty();
}

// The elements that hold the largest shares of the error indicator, taken
// in falling order until they hold `share` of its sum, and every element
// whose share is as large as the last one taken (to rounding): mirror
// images are marked together, and a symmetric mesh stays symmetric.
// The share of the indicator's sum marked on each refinement: larger
// refines more per solve, smaller grades the mesh more finely; 0.7 took
// the fewest CPU seconds on steel sections.
constexpr double kMarked = 0.7;
// The share marked when kMarked's elements would add less than a tenth.
constexpr double kMarked_Small_Step = 0.95;
// The largest share of the gap the curved edges' estimate may hold when the
// gap is reached.
constexpr double kBoundary_Share = 0.1;
std::vector<char> Mark_Elements(const std::vector<double>& eta, double share) {
  std::vector<int32_t> order(eta.size());
  std::iota(order.begin(), order.end(), 0);
  std::sort(order.begin(), order.end(), [&](int32_t a, int32_t b) { return eta[a] > eta[b]; });
  double total = 0.0;
  for (double v : eta) total += v;
  std::vector<char> marked(eta.size(), 0);
  double sum = 0.0, last = 0.0;
  for (int32_t e : order) {
    if (sum >= share * total && eta[e] < last * (1 - 1e-6)) break;
    marked[e] = 1;
    sum += eta[e];
    last = eta[e];
  }
  return marked;
}

template <class T>
HGLOBAL Block_Of(const std::vector<T>& v) {
  HGLOBAL h = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, std::max<size_t>(v.size(), 1) * sizeof(T));
  if (!h) return 0;
  Locked<T> p(h);
  if (!p) {
    GlobalFree(h);
    return 0;
  }
  if (!v.empty()) std::memcpy(p.get(), v.data(), v.size() * sizeof(T));
  return h;
}

// The last mesh into the split: corner nodes flagged by their boundary,
// one triangle per element, the centroid stresses.
bool Write_Split(const P2_Mesh& m, const Warping_Solution& s, FE_Split* split) {
  std::vector<int32_t> corner(m.x.size(), -1), component;
  std::vector<FEPOINT> nodes;
  for (const auto& t : m.tri) {
    for (int i = 0; i < 3; ++i) {
      if (corner[t[i]] < 0) {
        corner[t[i]] = static_cast<int32_t>(nodes.size());
        nodes.push_back({m.x[t[i]], m.y[t[i]], 0});
      }
    }
  }
  int components = 0, hole = 0;
  for (const P2_Loop& l : Boundary_Loops(m, &component, &components)) {
    const uint8_t flag = l.outer ? 1 : static_cast<uint8_t>(std::min(2 + hole++, 255));
    for (int32_t v : l.nodes) {
      if (corner[v] >= 0) nodes[corner[v]].flag = flag;
    }
  }
  std::vector<FE3Ang> tris;
  for (const auto& t : m.tri) tris.push_back({{corner[t[0]], corner[t[1]], corner[t[2]]}});
  HGLOBAL h[4] = {Block_Of(nodes), Block_Of(tris), Block_Of(s.tau_x), Block_Of(s.tau_y)};
  if (!h[0] || !h[1] || !h[2] || !h[3]) {
    for (HGLOBAL b : h) {
      if (b) GlobalFree(b);
    }
    return false;
  }
  for (HGLOBAL* old : {&split->nodes, &split->second, &split->triangles, &split->results,
                       &split->further, &split->tau_x, &split->tau_y}) {
    if (*old) GlobalFree(*old);
    *old = 0;
  }
  split->nodes = h[0];
  split->triangles = h[1];
  split->tau_x = h[2];
  split->tau_y = h[3];
  split->node_count = static_cast<int32_t>(nodes.size());
  split->triangle_count = static_cast<int32_t>(tris.size());
  return true;
}

}  // namespace

int Torsion_Warping_On_Split(Surface_Type* surface, FE_Split* split,
                             const Torsion_Warping_Options* options, Torsion_Warping_Result* result,
                             Warping_Refinement refinement) {
  if (!result) return TORSION_WARPING_FAILED;
  result->status = TORSION_WARPING_FAILED;
  if (!split) return TORSION_WARPING_FAILED;
  double gap = options && options->relative_gap > 0 ? options->relative_gap : kDefault_Gap;
  const int budget = options && options->max_elements > 0 ? options->max_elements : kDefault_Budget;
  const double Mt = options && options->Mt != 0 && std::isfinite(options->Mt) ? options->Mt : 1.0;
  if (!std::isfinite(gap)) gap = kDefault_Gap;
  std::vector<double> x, y;
  std::vector<std::array<int32_t, 3>> tri;
  if (!Read_Linear(*split, &x, &y, &tri)) return TORSION_WARPING_FAILED;
  P2_Mesh mesh = Build_P2_Mesh(x, y, tri, Read_Warping_Curves(surface));
  int refinements = 0;
  Warping_Solution s = Solve_Warping(mesh);
  if (!s.ok) return TORSION_WARPING_FAILED;
  int status = TORSION_WARPING_FAILED;
  while (true) {
    const double g = (s.J_upper - s.J_lower) / s.J_upper;
    double boundary = 0.0;
    const std::vector<double> eta = Warping_Indicator(mesh, s, &boundary);
    // The adaptive loop also waits for the curved edges' share to fall
    // well below the gap: it refines where the two fields disagree, which
    // need not be where the parabolas stand off their arcs.
    if (g <= gap && (refinement == Warping_Refinement::kUniform ||
                     boundary <= kBoundary_Share * gap * s.J_upper)) {
      status = TORSION_WARPING_GAP_REACHED;
      break;
    }
    P2_Mesh finer;
    if (refinement == Warping_Refinement::kUniform) {
      finer = Refine_P2_Mesh(mesh);
    } else {
      finer = Bisect_P2_Mesh(mesh, Mark_Elements(eta, kMarked));
      if (finer.tri.size() * 10 < mesh.tri.size() * 11) {
        // The error sits in a few elements (a sharp re-entrant corner):
        // refine more of it, so that each solve still pays.
        finer = Bisect_P2_Mesh(mesh, Mark_Elements(eta, kMarked_Small_Step));
      }
      // Near the budget, a smaller share of the indicator is refined, as
      // long as that still adds a tenth to the mesh.
      for (double share = kMarked * 0.5;
           finer.tri.size() > static_cast<size_t>(budget) && share > 0.1; share *= 0.5) {
        finer = Bisect_P2_Mesh(mesh, Mark_Elements(eta, share));
        if (finer.tri.size() * 10 < mesh.tri.size() * 11) break;
      }
    }
    if (finer.tri.size() > static_cast<size_t>(budget) || finer.tri.size() <= mesh.tri.size()) {
      status = TORSION_WARPING_BUDGET_SPENT;
      break;
    }
    Warping_Solution next = Solve_Warping(finer);
    if (!next.ok) return TORSION_WARPING_FAILED;
    mesh = std::move(finer);
    s = std::move(next);
    ++refinements;
  }
  Warping_Stresses(mesh, Mt, &s);
  if (!Write_Split(mesh, s, split)) return TORSION_WARPING_FAILED;
  result->status = status;
  result->elements = static_cast<int32_t>(mesh.tri.size());
  result->nodes = static_cast<int32_t>(mesh.x.size());
  result->refinements = refinements;
  result->J_upper = s.J_upper;
  result->J_lower = s.J_lower;
  result->J = 0.5 * (s.J_upper + s.J_lower);
  result->relative_gap = (s.J_upper - s.J_lower) / s.J_upper;
  result->area = s.area;
  result->centroid_x = s.cx;
  result->centroid_y = s.cy;
  result->shear_centre_x = s.xs;
  result->shear_centre_y = s.ys;
  result->Cw = s.Cw;
  result->shear_area_x = s.shear_area_x;
  result->shear_area_y = s.shear_area_y;
  result->max_shear_stress = s.max_tau;
  return status;
}

int Torsion_Warping_Of_Surface(Surface_Type* surface, const Torsion_Warping_Options* options,
                               Torsion_Warping_Result* result, FE_Split* split,
                               Warping_Refinement refinement) {
  if (!result) return TORSION_WARPING_FAILED;
  result->status = TORSION_WARPING_FAILED;
  surface_geometry g{};
  if (!surface || !Calc_Exact_Surface_Param(surface, &g) || !(g.area > 0)) {
    return TORSION_WARPING_FAILED;
  }
  const double h = std::sqrt(2.0 * g.area / kStart_Elements);
  FE_Split own{};
  FE_Split* s = split ? split : &own;
  Free_FE_Split(s);
  if (!Split_Surface_For_Torsion(surface, s, h) || s->triangle_count <= 0) {
    Free_FE_Split(s);
    Split_Surface_By_Grid(surface, &s->nodes, &s->node_count, h, h, nullptr, &s->triangle_count,
                          &s->triangles);
  }
  const int status = Torsion_Warping_On_Split(surface, s, options, result, refinement);
  if (s == &own) Free_FE_Split(&own);
  return status;
}

int Calc_Torsion_Warping_On_Split(Surface_Type* surface, FE_Split* split,
                                  const Torsion_Warping_Options* options,
                                  Torsion_Warping_Result* result) {
  return Torsion_Warping_On_Split(surface, split, options, result, Warping_Refinement::kAdaptive);
}

int Calc_Torsion_Warping(Surface_Type* surface, const Torsion_Warping_Options* options,
                         Torsion_Warping_Result* result, FE_Split* split) {
  return Torsion_Warping_Of_Surface(surface, options, result, split, Warping_Refinement::kAdaptive);
}
