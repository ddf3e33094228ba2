// The warping and stress-function solves on a 6-node mesh.
#pragma once

#include <vector>

#include "analysis/warping_mesh.h"

struct Warping_Solution {
  bool ok = false;
  double J_upper = 0, J_lower = 0, area = 0, cx = 0, cy = 0;
  double xs = 0, ys = 0;  // shear centre, world coordinates
  double Cw = 0, shear_area_x = 0, shear_area_y = 0;
  std::vector<double> phi;           // the stress function at every node
  std::vector<double> omega;         // the warping function at every node
  double max_tau = 0;                // for the torque Mt (Warping_Stresses)
  std::vector<double> tau_x, tau_y;  // per element at its centroid, for Mt
};

// Solves both problems on the mesh.
Warping_Solution Solve_Warping(const P2_Mesh& mesh);

// Per element, the integral of the squared difference between the shear
// stresses of the two fields (per unit twist and shear modulus): the
// warping function's (d(omega)/dx - y, d(omega)/dy + x) and the stress
// function's (d(phi)/dy, -d(phi)/dx). By the hypercircle theorem their sum
// is J_upper - J_lower, and each element's share says where the mesh is
// too coarse. Added to it, for an element with an edge on an arc or a
// circle: an estimate of how far the torsion constant of the meshed region
// (whose edge is a parabola) may lie from the section's, |grad phi|^2 at
// the edge's middle times the edge's length times the parabola's largest
// distance from the curve; their sum goes to *boundary (the bounds hold
// for the section itself only when it is small beside the gap).
std::vector<double> Warping_Indicator(const P2_Mesh& mesh, const Warping_Solution& solution,
                                      double* boundary);

// The torsion shear stresses of a solution for the torque Mt (scaled by the
// mean of the two bounds of J): per element at its centroid, and the
// largest over every element's nodes. Only the last mesh of a refinement
// needs them.
void Warping_Stresses(const P2_Mesh& mesh, double Mt, Warping_Solution* solution);

struct FE_Split;
struct Torsion_Warping_Options;
struct Torsion_Warping_Result;

// How the refinement loop refines: bisecting where the error indicator is
// large, or every element in four (kept for comparison).
enum class Warping_Refinement { kAdaptive, kUniform };

// Calc_Torsion_Warping_On_Split and Calc_Torsion_Warping with a choice of
// refinement.
int Torsion_Warping_On_Split(Surface_Type* surface, FE_Split* split,
                             const Torsion_Warping_Options* options, Torsion_Warping_Result* result,
                             Warping_Refinement refinement);
int Torsion_Warping_Of_Surface(Surface_Type* surface, const Torsion_Warping_Options* options,
                               Torsion_Warping_Result* result, FE_Split* split,
                               Warping_Refinement refinement);
