// The torsion and warping analysis: a refinement loop over the 6-node
// solves until the two bounds of J meet.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <numeric>
#include <vector>

#include "analysis/split_internal.h"
#include "analysis/warping_high_order.h"
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
// The high-order path's coarse mesh and orders.
constexpr High_Order_Settings kHigh_Order_Defaults{64.0, 5, 10, 1, 8};

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

// The elements that touch a sharp corner of the boundary: a corner node
// where two straight boundary edges meet at an angle. The fields' second
// derivatives grow without bound there, and raising the order alone
// converges slowly; smaller elements around it restore the pace.
std::vector<char> Sharp_Corner_Elements(const P2_Mesh& m, bool reentrant_only) {
  std::vector<int32_t> component;
  int components = 0;
  std::vector<char> sharp(m.x.size(), 0);
  auto curved = [&](int32_t a, int32_t b) {
    auto it = m.edge_curve.find(Edge_Key(a, b));
    return it != m.edge_curve.end() && it->second >= 0;
  };
  auto curve_of = [&](int32_t a, int32_t b) {
    auto it = m.edge_curve.find(Edge_Key(a, b));
    return it != m.edge_curve.end() ? it->second : -1;
  };
  for (const P2_Loop& l : Boundary_Loops(m, &component, &components)) {
    const size_t n = l.nodes.size();
    for (size_t i = 0; i + 1 < n; i += 2) {
      const int32_t a = l.nodes[(i + n - 2) % n], v = l.nodes[i], b = l.nodes[(i + 2) % n];
      if (curve_of(a, v) != curve_of(v, b)) {
        sharp[v] = !reentrant_only;  // where a fillet meets a straight edge
        continue;
      }
      if (curved(a, v) || curved(v, b)) continue;
      const double ux = m.x[v] - m.x[a], uy = m.y[v] - m.y[a];
      const double wx = m.x[b] - m.x[v], wy = m.y[b] - m.y[v];
      const double turn = std::atan2(ux * wy - uy * wx, ux * wx + uy * wy);
      // The material lies left of the loops: a re-entrant corner turns right.
      if (reentrant_only ? turn < -0.35 : std::fabs(turn) > 0.35) sharp[v] = 1;
    }
  }
  std::vector<char> marked(m.tri.size(), 0);
  for (size_t e = 0; e < m.tri.size(); ++e) {
    for (int i = 0; i < 3; ++i) marked[e] |= sharp[m.tri[e][i]];
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
      // The indicator held by a few elements (a re-entrant corner): a
      // larger share is refined, so that each solve still adds a tenth.
      for (double share : {0.9, 0.97, 0.99, 1.0}) {
        if (finer.tri.size() * 10 >= mesh.tri.size() * 11) break;
        P2_Mesh more = Bisect_P2_Mesh(mesh, Mark_Elements(eta, share));
        if (more.tri.size() > static_cast<size_t>(budget)) break;
        finer = std::move(more);
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
  result->order = 2;
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
  if (!split) return Torsion_Warping_High_Order(surface, options, result, nullptr);
  return Torsion_Warping_Of_Surface(surface, options, result, split, Warping_Refinement::kAdaptive);
}

// The largest turn of a boundary piece on an arc or circle in the
// high-order path's splits.
constexpr double kHigh_Order_Arc_Angle = std::numbers::pi / 4;
// Bounds crossed by no more than this (relative) have met, to rounding.
constexpr double kRounding_Gap = 1e-12;

int Torsion_Warping_High_Order(Surface_Type* surface, const Torsion_Warping_Options* options,
                               Torsion_Warping_Result* result, int* order,
                               const High_Order_Settings* settings) {
  if (order) *order = 0;
  if (!result) return TORSION_WARPING_FAILED;
  result->status = TORSION_WARPING_FAILED;
  surface_geometry g{};
  if (!surface || !Calc_Exact_Surface_Param(surface, &g) || !(g.area > 0)) {
    return TORSION_WARPING_FAILED;
  }
  const High_Order_Settings set = settings ? *settings : kHigh_Order_Defaults;
  double gap = options && options->relative_gap > 0 ? options->relative_gap : kDefault_Gap;
  if (!std::isfinite(gap)) gap = kDefault_Gap;
  const double Mt = options && options->Mt != 0 && std::isfinite(options->Mt) ? options->Mt : 1.0;
  // A curved edge that bulges across its element folds the map: the mesh
  // is then made finer once. Arcs and circles are sampled every 45 degrees
  // at most (a circle in eight pieces) and every arc in two pieces at
  // least, whatever the element size: the mesher grades the elements down
  // to a small fillet's pieces instead of the whole mesh taking their size.
  const std::vector<Warping_Curve> curves = Read_Warping_Curves(surface);
  for (double elements : {set.elements, 4 * set.elements}) {
    FE_Split s{};
    std::vector<double> x, y;
    std::vector<std::array<int32_t, 3>> tri;
    const bool split = Split_Surface_For_Torsion(surface, &s, std::sqrt(2.0 * g.area / elements),
                                                 kHigh_Order_Arc_Angle) &&
                       Read_Linear(s, &x, &y, &tri);
    Free_FE_Split(&s);
    if (!split) break;
    P2_Mesh mesh = Build_P2_Mesh(x, y, tri, curves);
    for (int round = 0; round < set.corner_rounds; ++round) {
      mesh = Bisect_P2_Mesh(mesh, Sharp_Corner_Elements(mesh, false));
    }
    // A re-entrant corner without a fillet is graded further: each round
    // halves the elements around it, and a few small elements there cost
    // less than the orders the corner would need.
    for (int round = 0; round < set.reentrant_rounds; ++round) {
      const std::vector<char> marked = Sharp_Corner_Elements(mesh, true);
      if (std::find(marked.begin(), marked.end(), 1) == marked.end()) break;
      mesh = Bisect_P2_Mesh(mesh, marked);
    }
    const int first = std::clamp(set.first_order, kHigh_Order_Min, kHigh_Order_Max);
    const int last = std::clamp(set.last_order, first, kHigh_Order_Max);
    double previous = 0;
    int solves = 0;
    bool folded = false;
    for (int p = first; p <= last;) {
      const Warping_Solution w = Solve_Warping_High_Order(mesh, p, Mt);
      if (!w.ok) {
        folded = true;
        break;
      }
      ++solves;
      const double now = (w.J_upper - w.J_lower) / w.J_upper;
      if (now <= gap) {
        result->status = TORSION_WARPING_GAP_REACHED;
        result->elements = static_cast<int32_t>(mesh.tri.size());
        result->nodes = static_cast<int32_t>(mesh.x.size());
        result->refinements = solves - 1;
        // When the field lies in the elements' space (a round tube), the
        // two bounds meet and rounding may order them either way: they are
        // reported as one value then.
        const bool met = now < 0 && -now <= kRounding_Gap;
        result->J_upper = met ? 0.5 * (w.J_upper + w.J_lower) : w.J_upper;
        result->J_lower = met ? result->J_upper : w.J_lower;
        result->J = 0.5 * (w.J_upper + w.J_lower);
        result->relative_gap = met ? 0.0 : now;
        result->area = w.area;
        result->centroid_x = w.cx;
        result->centroid_y = w.cy;
        result->shear_centre_x = w.xs;
        result->shear_centre_y = w.ys;
        result->Cw = w.Cw;
        result->shear_area_x = w.shear_area_x;
        result->shear_area_y = w.shear_area_y;
        result->max_shear_stress = w.max_tau;
        result->order = p;
        if (order) *order = p;
        return result->status;
      }
      // The gap falls about geometrically with the order: from the last
      // two solves, the order that should meet it.
      int next = p + 1;
      if (previous > 0 && now > 0 && now < previous) {
        const double steps = std::ceil(std::log(gap / now) / std::log(now / previous));
        if (std::isfinite(steps)) next = p + std::clamp(static_cast<int>(steps), 1, last - p + 1);
      }
      previous = now;
      if (p == last) break;
      p = std::min(next, last);
    }
    if (!folded) break;
  }
  if (order) *order = 2;
  return Torsion_Warping_Of_Surface(surface, options, result, nullptr,
                                    Warping_Refinement::kAdaptive);
}
