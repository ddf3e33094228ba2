// Saint-Venant torsion of a surface by the Prandtl stress function on its
// linear-triangle split.
//
// The stress function phi solves laplace(phi) = -2 G theta with phi = 0 on
// the outer boundary and a constant on each hole's boundary, for the fixed
// twist theta = kTorsion_Theta (one hundredth of a degree per unit length,
// radians) and G = E / (2 (1 + nu)). The "J" these functions compute is
// 2 * integral of phi dA + 2 * sum of (hole constant * hole area), which is
// the torque at that twist: G * theta * It, It the torsion constant (mm^4
// when lengths are mm). Hole constants come from a five-point grid solve
// (RelaxMethod) with a fixed shear modulus, as the system always did.
#pragma once

#include "tessaline/analysis/split.h"
#include "tessaline/contour/surface.h"
#include "tessaline/export.h"
#include "tessaline/platform/progress.h"
#include "tessaline/platform/win_types.h"

// One hundredth of a degree in radians, and twice that.
inline constexpr double kTorsion_Theta = 0.00017453292519943296;
inline constexpr double kTorsion_Two_Theta = 0.00034906585039886593;
// The shear modulus of the relaxation grid, whatever E and nu the caller has.
inline constexpr double kRelax_Shear_Modulus = 76923.07692307692;
// The default element count of a torsion split.
inline constexpr int kTorsion_Default_Elements = 803;
// The largest number of cells the relaxation grid is given by the stress
// evaluation (its step is never below sqrt(W H / this)).
inline constexpr double kRelax_Max_Cells = 135913.5;

// Heron's area of the triangle from its three side lengths (always >= 0).
TESSALINE_API double Triangle_Area(double x1, double y1, double x2, double y2, double x3,
                                   double y3);

// Rounds a step up to a convenient value: the decimal mantissa up to a
// multiple of 0.05, except that every step up to 1 becomes ceil(step)
// (0.3 -> 1.0, 1.23 -> 1.5, 123 -> 150). A zero or non-finite step gives 0
// or itself.
TESSALINE_API double Best_Step(double step);

// Hole constants of the stress function from a five-point finite-difference
// grid over the surface's outer rectangle (ceil(W/step) + 1 columns,
// ceil(H/step) + 1 rows). Grid nodes inside the surface are unknowns; the
// nodes inside a hole share one unknown (the hole's constant), whose
// equation is the sum of theirs, so the hole's circulation condition holds
// on the grid. The load uses theta and kRelax_Shear_Modulus. The system is
// sparse and solved by a sparse Cholesky factorisation (a grid of 136 000
// cells takes well under a second).
//
// hole_constants and hole_areas hold one double per hole of the surface;
// each hole's area is its contour's area. A hole that holds no grid node
// gets the message "Increase number of finite elements. Cross-section
// properties could be calculated with errors." and every constant is left
// as it was. A step that is not positive, or that would make more than
// 16 million grid nodes, is enlarged to the step of that many nodes. A null
// surface or array does nothing. progress (may be null) gets 50 to 100.
TESSALINE_API void RelaxMethod(Surface_Type* surface, double E, double nu, double theta,
                               double step, double* hole_constants, double* hole_areas,
                               CProgressDlg* progress);

// The stress path on a split: solves phi, writes one torsion shear stress
// per triangle along x (*tau_x) and along y (*tau_y), freeing any earlier
// blocks in them, scaled to the torque Mt. Tx = dphi/dy and
// Ty = -dphi/dx with the triangle's area taken positive, so a triangle
// stored clockwise gets stresses of the other sign (kept as the system has
// it). Returns theta / J (the twist per unit torque, 1 / (G It)), or 0.0 when
// J is 0 or the input cannot be read (counts that the blocks do not hold,
// node numbers outside the node block); on failure no block is written.
// Holes get their constants from RelaxMethod with the given grid step.
TESSALINE_API double Solve_Torsion_FE(int node_count, HGLOBAL triangles, int triangle_count,
                                      HGLOBAL nodes, int bandwidth, HGLOBAL* tau_x, HGLOBAL* tau_y,
                                      Surface_Type* surface, double E, double nu, double Mt,
                                      double step);

// The result path: returns F / theta * J = F G It (F = 1 / G gives It), or 0.0
// for input that cannot be read. progress (may be null) follows the
// elimination from 50 to 100.
TESSALINE_API double Solve_Torsion_FE_Moment(int node_count, HGLOBAL triangles, int triangle_count,
                                             HGLOBAL nodes, int bandwidth, Surface_Type* surface,
                                             CProgressDlg* progress, double E, double nu, double F,
                                             double step);
