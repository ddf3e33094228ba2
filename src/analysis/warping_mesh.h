// Quadratic (6-node) triangle meshes for the torsion and warping analysis:
// built from a linear split, boundary middles placed on their arcs, refined
// uniformly or by bisection of chosen elements, boundary loops found from
// the mesh itself.
#pragma once

#include <array>
#include <cstdint>
#include <unordered_map>
#include <utility>
#include <vector>

#include "tessaline/contour/surface.h"

// The key of the edge between two nodes, the same both ways.
inline uint64_t Edge_Key(int32_t a, int32_t b) {
  if (a > b) std::swap(a, b);
  return (static_cast<uint64_t>(static_cast<uint32_t>(a)) << 32) | static_cast<uint32_t>(b);
}

// A circle or an arc of the surface (sweep 2 pi for a circle), on which
// boundary nodes are placed.
struct Warping_Curve {
  double xc, yc, r, a1, sweep;
  double x1, y1, x2, y2;  // an arc's end points (unused for a circle)
};

struct P2_Mesh {
  std::vector<double> x, y;
  // Corners 0, 1, 2 counter-clockwise, then the middles of edges 0-1, 1-2, 2-0.
  std::vector<std::array<int32_t, 6>> tri;
  // Curve of each boundary edge, keyed by its corner pair; -1 for a straight edge.
  std::unordered_map<uint64_t, int> edge_curve;
  std::vector<Warping_Curve> curves;
  // Per element, the local edge (0 to 2) its last bisection made, -1 for
  // none; empty when no element comes from a bisection.
  std::vector<int8_t> cut;
};

// Boundary loops: the nodes of each closed chain of boundary edges, the
// loop's enclosed area (positive) and whether it bounds its component from
// outside (else it is a hole).
struct P2_Loop {
  std::vector<int32_t> nodes;  // corners and middles in travel order
  double area = 0.0;
  bool outer = false;
};

// The arcs and circles of the surface's contours (none for a null surface).
std::vector<Warping_Curve> Read_Warping_Curves(Surface_Type* surface);

// A 6-node mesh from linear triangles (checked by the caller): triangles
// turned counter-clockwise, a middle node on every edge, boundary middles
// moved onto the curve that holds both ends of their edge.
P2_Mesh Build_P2_Mesh(const std::vector<double>& x, const std::vector<double>& y,
                      const std::vector<std::array<int32_t, 3>>& tri,
                      std::vector<Warping_Curve> curves);

// Every element split in four; new nodes from the parent's quadratic map,
// boundary ones moved onto their curve.
P2_Mesh Refine_P2_Mesh(const P2_Mesh& mesh);

// Every marked element (one flag per element) bisected twice across its
// longest edge, and as many neighbours bisected as keep the mesh
// conforming (longest-edge propagation). New nodes come from the parent's
// quadratic map; a bisected boundary edge's middle goes onto its curve and
// its halves keep the curve.
P2_Mesh Bisect_P2_Mesh(const P2_Mesh& mesh, const std::vector<char>& marked);

// The boundary loops and, per node, its component (a connected part of the
// mesh).
std::vector<P2_Loop> Boundary_Loops(const P2_Mesh& mesh, std::vector<int32_t>* component,
                                    int* component_count);
