// Structured triangle meshes of a rectangle and an annulus in split blocks,
// the surfaces they cover, and closed forms of the torsion constant.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <vector>

#include "support/sections.h"

// Nodes and triangles in movable blocks, as a split record holds them.
struct Mesh_Blocks {
  FE_Split split{};
  int bandwidth = 0;
  ~Mesh_Blocks() { Free(); }
  void Free() {
    for (HGLOBAL* h :
         {&split.nodes, &split.triangles, &split.tau_x, &split.tau_y, &split.results}) {
      if (*h) GlobalFree(*h);
      *h = 0;
    }
  }
  void Set(const std::vector<FEPOINT>& nodes, const std::vector<FE3Ang>& tris) {
    Free();
    split.nodes = GlobalAlloc(GHND, nodes.size() * sizeof(FEPOINT));
    split.triangles = GlobalAlloc(GHND, tris.size() * sizeof(FE3Ang));
    std::copy(nodes.begin(), nodes.end(), static_cast<FEPOINT*>(GlobalLock(split.nodes)));
    std::copy(tris.begin(), tris.end(), static_cast<FE3Ang*>(GlobalLock(split.triangles)));
    GlobalUnlock(split.nodes);
    GlobalUnlock(split.triangles);
    split.node_count = static_cast<int32_t>(nodes.size());
    split.triangle_count = static_cast<int32_t>(tris.size());
    bandwidth = 0;
    for (const FE3Ang& t : tris) {
      for (int i = 0; i < 3; ++i)
        bandwidth = std::max(bandwidth, std::abs(t.n[i] - t.n[(i + 1) % 3]));
    }
  }
  std::vector<double> Doubles(HGLOBAL h) const {
    std::vector<double> v(static_cast<size_t>(split.triangle_count));
    const double* p = static_cast<const double*>(GlobalLock(h));
    std::copy(p, p + v.size(), v.begin());
    GlobalUnlock(h);
    return v;
  }
};

// An a x b rectangle from the origin, nx x ny cells each cut in two.
inline void Rectangle_Mesh(double a, double b, int nx, int ny, Mesh_Blocks* m) {
  std::vector<FEPOINT> nodes;
  std::vector<FE3Ang> tris;
  for (int j = 0; j <= ny; ++j) {
    for (int i = 0; i <= nx; ++i) {
      const bool edge = i == 0 || j == 0 || i == nx || j == ny;
      nodes.push_back({a * i / nx, b * j / ny, static_cast<uint8_t>(edge ? 1 : 0)});
    }
  }
  auto id = [nx](int i, int j) { return j * (nx + 1) + i; };
  for (int j = 0; j < ny; ++j) {
    for (int i = 0; i < nx; ++i) {
      tris.push_back({{id(i, j), id(i + 1, j), id(i + 1, j + 1)}});
      tris.push_back({{id(i, j), id(i + 1, j + 1), id(i, j + 1)}});
    }
  }
  m->Set(nodes, tris);
}

// An annulus about the origin, radii ri < ro, nr rings of nt sectors; the
// outer circle's nodes carry flag 1, the hole's flag 2.
inline void Annulus_Mesh(double ri, double ro, int nr, int nt, Mesh_Blocks* m) {
  std::vector<FEPOINT> nodes;
  std::vector<FE3Ang> tris;
  for (int k = 0; k < nt; ++k) {
    for (int j = 0; j <= nr; ++j) {
      const double r = ri + (ro - ri) * j / nr, t = 2 * std::numbers::pi * k / nt;
      const uint8_t flag = j == nr ? 1 : (j == 0 ? 2 : 0);
      nodes.push_back({r * std::cos(t), r * std::sin(t), flag});
    }
  }
  auto id = [nr, nt](int j, int k) { return (k % nt) * (nr + 1) + j; };
  for (int k = 0; k < nt; ++k) {
    for (int j = 0; j < nr; ++j) {
      tris.push_back({{id(j, k), id(j + 1, k), id(j + 1, k + 1)}});
      tris.push_back({{id(j, k), id(j + 1, k + 1), id(j, k + 1)}});
    }
  }
  m->Set(nodes, tris);
}

// Torsion constant of an a x b rectangle by its series.
inline double Rectangle_J(double a, double b) {
  if (a < b) std::swap(a, b);
  double s = 0.0;
  for (int n = 1; n < 200; n += 2)
    s += std::tanh(n * std::numbers::pi * a / (2 * b)) / std::pow(n, 5);
  return a * b * b * b / 3.0 * (1.0 - 192.0 / std::pow(std::numbers::pi, 5) * b / a * s);
}

// A union of axis-parallel rectangles {x0, y0, x1, y1} meshed on the grid of
// all their edges, every grid interval cut in k: a conforming mesh of
// I-sections, channels, angles and boxes. Boundary nodes get flag 1; a box
// (the cells round an empty middle) gets flag 2 on its inner boundary.
inline void Blocks_Mesh(const std::vector<std::array<double, 4>>& blocks, int k, Mesh_Blocks* m) {
  std::vector<double> xs, ys;
  for (const auto& b : blocks) {
    xs.insert(xs.end(), {b[0], b[2]});
    ys.insert(ys.end(), {b[1], b[3]});
  }
  auto refine = [k](std::vector<double>& v) {
    std::sort(v.begin(), v.end());
    v.erase(std::unique(v.begin(), v.end()), v.end());
    std::vector<double> out;
    for (size_t i = 0; i + 1 < v.size(); ++i) {
      for (int j = 0; j < k; ++j) out.push_back(v[i] + (v[i + 1] - v[i]) * j / k);
    }
    out.push_back(v.back());
    v = out;
  };
  refine(xs);
  refine(ys);
  const int nx = static_cast<int>(xs.size()), ny = static_cast<int>(ys.size());
  auto inside = [&](double x, double y) {
    for (const auto& b : blocks) {
      if (x > b[0] && x < b[2] && y > b[1] && y < b[3]) return true;
    }
    return false;
  };
  std::vector<int> id(static_cast<size_t>(nx) * ny, -1);
  std::vector<FEPOINT> nodes;
  std::vector<FE3Ang> tris;
  auto node = [&](int i, int j) {
    int& v = id[static_cast<size_t>(j) * nx + i];
    if (v < 0) {
      v = static_cast<int>(nodes.size());
      nodes.push_back({xs[i], ys[j], 0});
    }
    return v;
  };
  std::vector<char> cell(static_cast<size_t>(nx) * ny, 0);
  for (int j = 0; j + 1 < ny; ++j) {
    for (int i = 0; i + 1 < nx; ++i) {
      if (!inside(0.5 * (xs[i] + xs[i + 1]), 0.5 * (ys[j] + ys[j + 1]))) continue;
      cell[static_cast<size_t>(j) * nx + i] = 1;
      const int a = node(i, j), b = node(i + 1, j), c = node(i + 1, j + 1), d = node(i, j + 1);
      tris.push_back({{a, b, c}});
      tris.push_back({{a, c, d}});
    }
  }
  // A node is on the boundary when one of its four cells is missing.
  auto has = [&](int i, int j) {
    return i >= 0 && j >= 0 && i + 1 < nx && j + 1 < ny && cell[static_cast<size_t>(j) * nx + i];
  };
  for (int j = 0; j < ny; ++j) {
    for (int i = 0; i < nx; ++i) {
      const int v = id[static_cast<size_t>(j) * nx + i];
      if (v >= 0 && !(has(i, j) && has(i - 1, j) && has(i, j - 1) && has(i - 1, j - 1))) {
        nodes[v].flag = 1;
      }
    }
  }
  m->Set(nodes, tris);
}

// An equilateral triangle of side a, base on the x axis, cut in n^2 triangles.
inline void Triangle_Mesh(double a, int n, Mesh_Blocks* m) {
  std::vector<FEPOINT> nodes;
  std::vector<FE3Ang> tris;
  std::vector<std::vector<int>> id(static_cast<size_t>(n) + 1);
  for (int j = 0; j <= n; ++j) {
    for (int i = 0; i <= n - j; ++i) {
      id[j].push_back(static_cast<int>(nodes.size()));
      const bool edge = j == 0 || i == 0 || i == n - j;
      nodes.push_back({a * (i + 0.5 * j) / n, a * std::sqrt(3.0) / 2 * j / n,
                       static_cast<uint8_t>(edge ? 1 : 0)});
    }
  }
  for (int j = 0; j < n; ++j) {
    for (int i = 0; i < n - j; ++i) {
      tris.push_back({{id[j][i], id[j][i + 1], id[j + 1][i]}});
      if (i + 1 < n - j) tris.push_back({{id[j][i + 1], id[j + 1][i + 1], id[j + 1][i]}});
    }
  }
  m->Set(nodes, tris);
}

// A disc of radius r about the origin: a centre node and nr rings, ring j
// with 6 j nodes.
inline void Disc_Mesh(double r, int nr, Mesh_Blocks* m) {
  std::vector<FEPOINT> nodes{{0, 0, 0}};
  std::vector<FE3Ang> tris;
  std::vector<int> start{0};
  for (int j = 1; j <= nr; ++j) {
    start.push_back(static_cast<int>(nodes.size()));
    for (int k = 0; k < 6 * j; ++k) {
      const double t = 2 * std::numbers::pi * k / (6 * j), rr = r * j / nr;
      nodes.push_back({rr * std::cos(t), rr * std::sin(t), static_cast<uint8_t>(j == nr ? 1 : 0)});
    }
  }
  auto at = [&](int j, int k) {
    if (j == 0) return 0;
    return start[j] + ((k % (6 * j)) + 6 * j) % (6 * j);
  };
  for (int j = 1; j <= nr; ++j) {
    // Ring j - 1 to ring j, sector by sector (six sectors, j pieces each).
    for (int s = 0; s < 6; ++s) {
      for (int q = 0; q < j; ++q) {
        const int outer = s * j + q, inner = s * (j - 1) + q;
        tris.push_back({{at(j - 1, inner), at(j, outer), at(j, outer + 1)}});
        if (q + 1 < j) tris.push_back({{at(j - 1, inner), at(j, outer + 1), at(j - 1, inner + 1)}});
      }
    }
  }
  m->Set(nodes, tris);
}
