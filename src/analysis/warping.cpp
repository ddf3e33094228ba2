// The torsion and warping analysis: a refinement loop over the 6-node
// solves until the two bounds of J meet.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "analysis/warping_solve.h"
#include "platform/locked.h"
#include "tessaline/analysis/torsion_warping.h"
#include "tessaline/platform/memory.h"

namespace {

constexpr double kDefault_Gap = 1e-6;
constexpr int kDefault_Budget = 200000;

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

int Calc_Torsion_Warping_On_Split(Surface_Type* surface, FE_Split* split,
                                  const Torsion_Warping_Options* options,
                                  Torsion_Warping_Result* result) {
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
  Warping_Solution s;
  int status = TORSION_WARPING_FAILED;
  while (true) {
    s = Solve_Warping(mesh, Mt);
    if (!s.ok) return TORSION_WARPING_FAILED;
    const double g = (s.J_upper - s.J_lower) / s.J_upper;
    if (g <= gap) {
      status = TORSION_WARPING_GAP_REACHED;
      break;
    }
    if (mesh.tri.size() * 4 > static_cast<size_t>(budget)) {
      status = TORSION_WARPING_BUDGET_SPENT;
      break;
    }
    mesh = Refine_P2_Mesh(mesh);
    ++refinements;
  }
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
