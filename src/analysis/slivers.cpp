// Removal of sliver triangles at the boundary of a split: the shortest edge
// of a thin triangle is collapsed, keeping the boundary node.
#include <cmath>
#include <new>
#include <set>

#include "analysis/split_internal.h"
#include "tessaline/geometry/triangle.h"
#include "tessaline/platform/memory.h"

namespace {

bool Degenerate(const FE3Ang& t) {
  return t.n[0] == t.n[1] || t.n[1] == t.n[2] || t.n[2] == t.n[0];
}

// Smallest angle of the triangle in degrees, from 2 pi down (an angle that
// is NaN never replaces it).
double Smallest_Angle(const Split_Mesh& m, const FE3Ang& t) {
  const FEPOINT &a = m.nodes[t.n[0]], &b = m.nodes[t.n[1]], &c = m.nodes[t.n[2]];
  double angle[3];
  Get_3Ang_Angles(a.x, a.y, b.x, b.y, c.x, c.y, &angle[0], &angle[1], &angle[2]);
  double smallest = 2 * 3.14159265358979323846;
  for (double v : angle) {
    if (v < smallest) smallest = v;
  }
  return std::fabs(smallest * 57.29577951308232);
}

// The corner k whose edge k -> k + 1 is the shortest; an equal later edge
// does not replace an earlier one.
int Shortest_Edge(const Split_Mesh& m, const FE3Ang& t) {
  double best = 1e30;
  int edge = 0;
  for (int k = 0; k < 3; ++k) {
    const FEPOINT &p = m.nodes[t.n[k]], &q = m.nodes[t.n[(k + 1) % 3]];
    double d = (p.x - q.x) * (p.x - q.x) + (p.y - q.y) * (p.y - q.y);
    if (d < best) best = d, edge = k;
  }
  return edge;
}

}  // namespace

// The scan is the plain one (examine triangles in order; after a merge
// start again at the second triangle) with its repeated work left out: a
// triangle already passed is looked at again only when a merge changed one
// of its corners, and removed triangles and nodes are dropped at the end.
// Neither changes which triangle is examined next, so the result is the
// plain scan's.
int Remove_Slivers(Split_Mesh* mesh, double min_angle) {
  std::vector<FE3Ang>& tris = mesh->triangles;
  size_t tc = tris.size(), nc = mesh->nodes.size();
  std::vector<char> tri_alive(tc, 1), node_alive(nc, 1);
  std::vector<std::vector<int>> uses(nc);
  std::set<int> pending;
  std::vector<int> born_degenerate;
  for (size_t i = 0; i < tc; ++i) {
    for (int32_t c : tris[i].n) uses[c].push_back(static_cast<int>(i));
    pending.insert(pending.end(), static_cast<int>(i));
    if (Degenerate(tris[i])) born_degenerate.push_back(static_cast<int>(i));
  }
  int removed = 0;
  size_t first_alive = 0;
  auto remove_triangle = [&](int j) {
    if (!tri_alive[j]) return;
    tri_alive[j] = 0;
    pending.erase(j);
    ++removed;
  };
  int cursor = -1;
  while (true) {
    auto next = pending.upper_bound(cursor);
    if (next == pending.end()) break;
    int i = *next;
    pending.erase(next);
    cursor = i;
    const FE3Ang t = tris[i];
    const auto& n = mesh->nodes;
    if (n[t.n[0]].flag == 0 && n[t.n[1]].flag == 0 && n[t.n[2]].flag == 0) continue;
    if (!(Smallest_Angle(*mesh, t) < min_angle)) continue;
    int k = Shortest_Edge(*mesh, t);
    int keep = t.n[k], gone = t.n[(k + 1) % 3];
    if (n[gone].flag != 0) std::swap(keep, gone);  // the boundary node stays
    if (keep == gone) {                            // a corner repeated: nothing to merge
      for (int j : born_degenerate) remove_triangle(j);
      born_degenerate.clear();
      remove_triangle(i);
      continue;
    }
    // Merge: every reference to `gone` becomes `keep`; triangles that now
    // have two equal corners go.
    for (int j : born_degenerate) remove_triangle(j);
    born_degenerate.clear();
    for (int j : uses[gone]) {
      if (!tri_alive[j]) continue;
      for (int32_t& c : tris[j].n) {
        if (c == gone) c = keep;
      }
      if (Degenerate(tris[j])) {
        remove_triangle(j);
      } else {
        pending.insert(j);
        uses[keep].push_back(j);
      }
    }
    uses[gone].clear();
    node_alive[gone] = 0;
    while (first_alive < tc && !tri_alive[first_alive]) ++first_alive;
    cursor = static_cast<int>(first_alive);  // on from the second triangle
  }
  // Drop the removed nodes and triangles, renumbering the nodes left.
  std::vector<int> new_of(nc, -1);
  size_t kept = 0;
  for (size_t i = 0; i < nc; ++i) {
    if (!node_alive[i]) continue;
    new_of[i] = static_cast<int>(kept);
    mesh->nodes[kept++] = mesh->nodes[i];
  }
  mesh->nodes.resize(kept);
  size_t kept_t = 0;
  for (size_t i = 0; i < tc; ++i) {
    if (!tri_alive[i]) continue;
    FE3Ang t = tris[i];
    for (int32_t& c : t.n) c = new_of[c];
    tris[kept_t++] = t;
  }
  tris.resize(kept_t);
  return removed;
}

int Remove_Sliver_Triangles(HGLOBAL* triangles, int* triangle_count, HGLOBAL* nodes,
                            int* node_count, double min_angle) {
  if (!triangles || !triangle_count || !nodes || !node_count) return 0;
  try {
    Split_Mesh mesh;
    if (!Read_FE_Nodes(*nodes, *node_count, &mesh.nodes) ||
        !Read_FE_Triangles(*triangles, *triangle_count, &mesh.triangles) ||
        !FE_Corners_Valid(mesh.triangles, mesh.nodes.size()))
      return 0;
    int removed = Remove_Slivers(&mesh, min_angle);
    if (!Write_FE_Nodes(*nodes, mesh.nodes) || !Write_FE_Triangles(*triangles, mesh.triangles))
      return 0;
    *node_count = static_cast<int>(mesh.nodes.size());
    *triangle_count = static_cast<int>(mesh.triangles.size());
    GlobalReAlloc(*nodes, mesh.nodes.size() * sizeof(FEPOINT), GMEM_MOVEABLE);
    GlobalReAlloc(*triangles, mesh.triangles.size() * sizeof(FE3Ang), GMEM_MOVEABLE);
    return removed;
  } catch (const std::bad_alloc&) {
    return 0;
  }
}
