// Structured triangle meshes of a rectangle and an annulus in split blocks,
// the surfaces they cover, and closed forms of the torsion constant.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <vector>

#include "contour/drawing.h"

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

// A surface filed from a drawing.
struct Section {
  Drawing d;
  Surface_Record s;
  void File() { Make_Surface_From_Objects(&d.a, &s.s); }
};
