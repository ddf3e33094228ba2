// Torsion and warping of a cross-section on quadratic triangles, with J
// bounded from both sides.
//
// Two problems are solved on one mesh of 6-node triangles (corners and edge
// middles; an edge on an arc or circle of the surface has its middle node on
// that curve, and the element maps onto it):
//  - the warping function omega (laplace(omega) = 0, d(omega)/dn =
//    y nx - x ny on every boundary), a displacement method: its torsion
//    constant J_upper is never below the exact J;
//  - the Prandtl stress function phi (laplace(phi) = -2, phi = 0 on each
//    outer boundary, one unknown constant on each hole's boundary with the
//    hole's circulation condition), a stress method: J_lower is never above
//    the exact J.
// Both converge at fourth order in the element size on smooth boundaries;
// re-entrant corners without fillets slow both. The bounds hold for the
// meshed region, whose curved edges are parabolas through three points of
// the arc (an error far below the bounds' gap on any mesh used in practice).
//
// Units: lengths in the drawing's units (mm): J and the shear areas' squares
// in mm^4 and mm^2, Cw in mm^6, stresses per unit torque Mt in the torque's
// units over mm^3.
#pragma once

#include <cstdint>

#include "tessaline/analysis/split.h"
#include "tessaline/contour/surface.h"
#include "tessaline/export.h"

struct Torsion_Warping_Options {
  double relative_gap;   // stop when (J_upper - J_lower) / J_upper <= this; 0 means 1e-6
  int32_t max_elements;  // element budget; 0 means 200 000
  double Mt;             // torque for the per-element stresses; 0 means 1.0
};

// How the refinement loop ended.
enum : int32_t {
  TORSION_WARPING_FAILED = 0,  // nothing could be computed
  TORSION_WARPING_GAP_REACHED = 1,
  TORSION_WARPING_BUDGET_SPENT = 2,  // the next refinement would exceed the budget
};

struct Torsion_Warping_Result {
  int32_t status;                 // one of the values above
  int32_t elements;               // 6-node triangles of the last mesh
  int32_t nodes;                  // nodes of the last mesh (corners and edge middles)
  int32_t refinements;            // refinements done (each a solve on a finer mesh)
  double J_upper, J_lower;        // bounds of the torsion constant, mm^4
  double J;                       // their mean: within relative_gap / 2 of both
  double relative_gap;            // (J_upper - J_lower) / J_upper
  double area;                    // of the meshed region, mm^2
  double centroid_x, centroid_y;  // world coordinates, mm
  // The shear centre (centre of twist) in world coordinates: the point about
  // which the warping function has no first moment in x and y (Trefftz). It
  // lies on every axis of symmetry; for a channel whose web is on the left
  // it lies further left, outside the web.
  double shear_centre_x, shear_centre_y;
  // The warping constant about the shear centre: integral of omega_s^2 dA
  // with omega_s the warping function about the shear centre, its mean over
  // the section removed. mm^6.
  double Cw;
  // Shear areas for shear forces along the centroidal x and y axes, by the
  // equivalence of shear strain energy, Poisson's ratio taken as 0 (5/6 A
  // for a rectangle). mm^2.
  double shear_area_x, shear_area_y;
  // The largest torsion shear stress of the section for the torque Mt,
  // sampled at every node of every element.
  double max_shear_stress;
  // The polynomial order of the elements: 2 for quadratic triangles, more
  // when Calc_Torsion_Warping raised the order on a coarse mesh.
  int32_t order;
};

// Refines the linear-triangle split of the surface until the bounds of J
// meet the relative gap or the element budget is spent, and says which.
// The refinement is adaptive: the squared difference between the stresses
// of the two fields, element by element, sums to the gap (hypercircle), and
// the elements holding most of it are bisected (longest edge first, the
// mesh kept conforming); near re-entrant corners and fillets the mesh ends
// much finer than elsewhere.
// The split gives the starting mesh (its nodes and triangles; flags are not
// needed: outer boundaries and holes are found from the mesh itself); the
// surface (may be null) gives the arcs and circles on which boundary nodes
// are placed. On return the split holds the last mesh's corner nodes and
// its triangles (one per 6-node element, node flags 1 on outer boundaries
// and 2, 3, ... on holes), and per triangle the torsion shear stresses
// along x (tau_x) and y (tau_y) at its centroid for the torque Mt; the
// earlier blocks are freed. Options may be null (all defaults). Returns
// the status; TORSION_WARPING_FAILED (split and result left untouched
// except result->status) for a null split or result, counts that the
// blocks do not hold, node numbers out of range, coordinates that are not
// finite, or a mesh of no area.
TESSALINE_API int Calc_Torsion_Warping_On_Split(Surface_Type* surface, FE_Split* split,
                                                const Torsion_Warping_Options* options,
                                                Torsion_Warping_Result* result);

// The same from the surface alone.
// With a split (not null), the quadratic path: its area (exact, from its
// contours) gives a starting element size for about 128 elements, the
// mesher splits the surface at it, with arcs and circles sampled at least
// every 12 degrees so that no curved element folds on a small fillet (the
// grid split when the mesher is not built in), the analysis above runs on that split, and the last mesh and
// its stresses go to *split (its earlier blocks freed).
// Without one (null), the fast path: a coarse mesher split (about 64
// elements on the area, more where the walls are thin) whose edges on
// arcs and circles follow the curves exactly, and elements whose
// polynomial order is raised (result->order, up to 10) until the gap is
// met; every quantity of the result comes from the same fields. When the
// last order does not meet the gap (a re-entrant corner without a fillet
// converges slowly), or the mesher is not built in, the quadratic path
// above finishes the job (result->order 2). The element budget binds the
// quadratic path only. Returns the status; TORSION_WARPING_FAILED for a
// null or empty surface or result.
TESSALINE_API int Calc_Torsion_Warping(Surface_Type* surface,
                                       const Torsion_Warping_Options* options,
                                       Torsion_Warping_Result* result, FE_Split* split);
