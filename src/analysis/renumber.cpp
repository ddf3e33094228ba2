// Node numbering of a split: the bandwidth of the triangle matrix and the
// reverse Cuthill-McKee renumbering that keeps it narrow.
#include <algorithm>
#include <cstdlib>
#include <new>
#include <vector>

#include "analysis/split_internal.h"

namespace {

// Node adjacency from the triangles' edges, each neighbour list in
// ascending node order, in compressed rows.
struct Adjacency {
  std::vector<int> start;  // row i is list[start[i] .. start[i + 1])
  std::vector<int> list;

  explicit Adjacency(const Split_Mesh& mesh) {
    size_t n = mesh.nodes.size();
    std::vector<std::vector<int>> rows(n);
    for (const FE3Ang& t : mesh.triangles) {
      for (int k = 0; k < 3; ++k) {
        int a = t.n[k], b = t.n[(k + 1) % 3];
        if (a == b) continue;
        rows[a].push_back(b);
        rows[b].push_back(a);
      }
    }
    start.assign(n + 1, 0);
    for (size_t i = 0; i < n; ++i) {
      std::sort(rows[i].begin(), rows[i].end());
      rows[i].erase(std::unique(rows[i].begin(), rows[i].end()), rows[i].end());
      start[i + 1] = start[i] + static_cast<int>(rows[i].size());
    }
    list.reserve(static_cast<size_t>(start[n]));
    for (auto& r : rows) list.insert(list.end(), r.begin(), r.end());
  }
  int Degree(int v) const { return start[v + 1] - start[v]; }
};

// Level structure of the component of root: nodes in breadth-first order
// (neighbours in adjacency order), the start of its last level, its depth.
struct Levels {
  std::vector<int> order;
  size_t last_level = 0;
  int depth = 0;
};

void Build_Levels(const Adjacency& adj, int root, std::vector<int>* mark, int stamp, Levels* out) {
  out->order.clear();
  out->order.push_back(root);
  (*mark)[root] = stamp;
  size_t begin = 0;
  out->depth = 0;
  while (true) {
    size_t end = out->order.size();
    out->last_level = begin;
    for (size_t i = begin; i < end; ++i) {
      int v = out->order[i];
      for (int j = adj.start[v]; j < adj.start[v + 1]; ++j) {
        int w = adj.list[j];
        if ((*mark)[w] != stamp) {
          (*mark)[w] = stamp;
          out->order.push_back(w);
        }
      }
    }
    if (out->order.size() == end) break;
    begin = end;
    ++out->depth;
  }
}

// A pseudo-peripheral node of start's component (the rooted level
// structure search of George and Liu): move to a node of least degree in
// the last level while that makes the structure deeper.
int Pseudo_Peripheral(const Adjacency& adj, int start, std::vector<int>* mark, int* stamp) {
  Levels levels;
  Build_Levels(adj, start, mark, ++*stamp, &levels);
  int root = start;
  while (true) {
    int best = levels.order[levels.last_level];
    for (size_t i = levels.last_level; i < levels.order.size(); ++i) {
      int v = levels.order[i];
      if (adj.Degree(v) < adj.Degree(best)) best = v;
    }
    Levels next;
    Build_Levels(adj, best, mark, ++*stamp, &next);
    if (next.depth <= levels.depth) return root;
    root = best;
    levels = std::move(next);
  }
}

}  // namespace

int FE_Bandwidth(const std::vector<FE3Ang>& triangles) {
  int band = 0;
  for (const FE3Ang& t : triangles) {
    for (int k = 0; k < 3; ++k) band = std::max(band, std::abs(t.n[k] - t.n[(k + 1) % 3]));
  }
  return band;
}

void Renumber_RCM(Split_Mesh* mesh) {
  int n = static_cast<int>(mesh->nodes.size());
  Adjacency adj(*mesh);
  std::vector<int> mark(static_cast<size_t>(n), 0);
  int stamp = 0;
  std::vector<int> order;  // order[new] = old
  order.reserve(static_cast<size_t>(n));
  std::vector<char> numbered(static_cast<size_t>(n), 0);
  for (int s = 0; s < n; ++s) {
    if (numbered[s]) continue;
    int root = Pseudo_Peripheral(adj, s, &mark, &stamp);
    size_t first = order.size();
    order.push_back(root);
    numbered[root] = 1;
    for (size_t i = first; i < order.size(); ++i) {
      int v = order[i];
      size_t fresh = order.size();
      for (int j = adj.start[v]; j < adj.start[v + 1]; ++j) {
        int w = adj.list[j];
        if (numbered[w]) continue;
        numbered[w] = 1;
        // Stable insertion by degree: equal degrees keep their order of discovery.
        size_t k = order.size();
        order.push_back(w);
        while (k > fresh && adj.Degree(order[k - 1]) > adj.Degree(w)) {
          order[k] = order[k - 1];
          --k;
        }
        order[k] = w;
      }
    }
    std::reverse(order.begin() + static_cast<long>(first), order.end());
  }
  std::vector<int> new_of(static_cast<size_t>(n));
  std::vector<FEPOINT> nodes(static_cast<size_t>(n));
  for (int i = 0; i < n; ++i) {
    new_of[order[i]] = i;
    nodes[i] = mesh->nodes[order[i]];
  }
  mesh->nodes.swap(nodes);
  for (FE3Ang& t : mesh->triangles) {
    for (int32_t& c : t.n) c = new_of[c];
  }
}

int Get_FE_Bandwidth(HGLOBAL triangles, int triangle_count) {
  std::vector<FE3Ang> t;
  try {
    if (!Read_FE_Triangles(triangles, triangle_count, &t)) return 0;
  } catch (const std::bad_alloc&) {
    return 0;
  }
  return FE_Bandwidth(t);
}

int Renumber_FE_Nodes(HGLOBAL nodes, int node_count, HGLOBAL triangles, int triangle_count) {
  try {
    Split_Mesh mesh;
    if (!Read_FE_Nodes(nodes, node_count, &mesh.nodes) ||
        !Read_FE_Triangles(triangles, triangle_count, &mesh.triangles) ||
        !FE_Corners_Valid(mesh.triangles, mesh.nodes.size()))
      return 0;
    Renumber_RCM(&mesh);
    return Write_FE_Nodes(nodes, mesh.nodes) && Write_FE_Triangles(triangles, mesh.triangles) ? 1
                                                                                              : 0;
  } catch (const std::bad_alloc&) {
    return 0;
  }
}
