// Finite-element split of a surface into linear triangles.
//
// Nodes and triangles live in movable, zero-filled blocks that the split
// record owns. World coordinates (millimetres, y up).
#pragma once

#include <cstdint>

#include "tessaline/export.h"
#include "tessaline/platform/win_types.h"

// One node: its position and a flag, 0 for an inner node, 1 for a node on the
// outer boundary, 2, 3, ... for a node on the first, second, ... hole's
// boundary. Node blocks hold these records 24 bytes apart on every target
// (a 32-bit target aligns doubles to 4 bytes only, hence the alignas).
struct alignas(8) FEPOINT {
  double x;
  double y;
  uint8_t flag;
};
static_assert(sizeof(FEPOINT) == 24, "nodes lie 24 bytes apart");

// One triangle: three node numbers (indices into the node block), in the
// order of its corners.
struct FE3Ang {
  int32_t n[3];
};
static_assert(sizeof(FE3Ang) == 12, "a triangle is three 32-bit node numbers");

// A split record, owned by its caller; all zero is an empty split. Every
// handle that is set names a block the record owns (Free_FE_Split frees
// them). tau_x and tau_y hold one double per triangle after a torsion solve,
// results one double per triangle after a stress evaluation.
struct FE_Split {
  HGLOBAL nodes;   // FEPOINT block
  HGLOBAL second;  // freed with the record
  int32_t node_count;
  HGLOBAL triangles;  // FE3Ang block
  HGLOBAL results;    // one double per triangle
  HGLOBAL further;    // freed with the record
  HGLOBAL tau_x;      // torsion shear stress along x, one per triangle
  HGLOBAL tau_y;      // torsion shear stress along y, one per triangle
  int32_t triangle_count;
  int32_t spare[2];  // never touched by the split
};
static_assert(sizeof(FE_Split) == 44, "the split record is eleven 32-bit words");
