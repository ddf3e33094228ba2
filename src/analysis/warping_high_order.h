// Torsion and warping on a coarse fixed mesh of high-order triangles: the
// polynomial order is raised until the bounds of J meet the gap.
//
// Each triangle carries hierarchical shape functions of order p (its three
// corner functions, p - 1 per edge, (p - 1)(p - 2) / 2 inside), conforming
// across edges through the edges' global direction. An edge on an arc or a
// circle of the surface is mapped onto the curve itself (a blending map), so
// the meshed region is the section's own and the bounds are bounds of the
// section, not of a polygon near it. Steel sections are smooth apart from a
// few convex corners, where raising p converges much faster than refining
// the mesh.
#pragma once

#include <cstdint>

#include "analysis/warping_mesh.h"
#include "analysis/warping_solve.h"

struct Torsion_Warping_Options;
struct Torsion_Warping_Result;

// The orders the solver knows.
constexpr int kHigh_Order_Min = 1;
constexpr int kHigh_Order_Max = 12;

// Solves both problems at order p (kHigh_Order_Min to kHigh_Order_Max) on
// the corners, edges and curves of a 6-node mesh (its middle nodes are not
// used). ok is false for an order out of range, a mesh of no area or an
// element whose map folds over (a curved edge bulging across the element).
// phi, omega, tau_x and tau_y stay empty; max_tau is for the torque Mt.
Warping_Solution Solve_Warping_High_Order(const P2_Mesh& mesh, int p, double Mt);

// Calc_Torsion_Warping's path when no split is wanted: a coarse mesher
// split of the surface, the order raised from 2 to the last order until the
// relative gap is met; when the last order does not meet it (a re-entrant
// corner without a fillet converges slowly), the adaptive quadratic path
// takes over. *order (may be null) gets the order of the result, 2 for the
// quadratic path.
// settings (may be null: the defaults) choose the coarse mesh and the
// orders.
struct High_Order_Settings {
  double elements;  // the mesher's element size gives about this many on the area
  int first_order, last_order;
  int corner_rounds;     // bisections of the elements at sharp corners and fillet ends
  int reentrant_rounds;  // further ones at re-entrant corners
};
int Torsion_Warping_High_Order(Surface_Type* surface, const Torsion_Warping_Options* options,
                               Torsion_Warping_Result* result, int* order,
                               const High_Order_Settings* settings = nullptr);
