// Plane stresses at a point of a four-node element from its nodal
// displacements (linear elasticity, plane stress).
//
// Displacements: a dvect of 8 values ux1, uy1, ux2, uy2, ux3, uy3, ux4, uy4
// (nodes in order round the element). Result: a dvect of 3 values, sigma x,
// sigma y, tau xy, in the units of E (E in N/mm^2 with displacements and
// coordinates in mm gives N/mm^2). Material: D = E/(1 - nu^2) *
// [[1, nu, 0], [nu, 1, 0], [0, 0, (1 - nu)/2]].
#pragma once

#include "tessaline/export.h"
#include "tessaline/platform/matrix.h"

// Bilinear rectangle of sides a (along x) and b (along y); (x, y) from the
// element's centre, nodes at (-a/2, -b/2), (a/2, -b/2), (a/2, b/2),
// (-a/2, b/2). result gets 3 values. 1 done; 0 when a matrix has the wrong
// size (u not 8 values).
TESSALINE_API int Get_4Ang_FE_Plain_Stress(dvect& result, dvect& u, double E, double nu, double a,
                                           double b, double x, double y);

// The same rectangle with (x, y) measured from node 1 at its lower left
// corner.
TESSALINE_API int Get_4Ang_FE_Plain_Stress_Shel(dvect& result, dvect& u, double E, double nu,
                                                double a, double b, double x, double y);

// General quadrilateral 1-2-3-4 taken as two constant-strain triangles cut
// along the diagonal 1-3: the point (px, py) on node 2's side of it, or on
// it, uses triangle 1, 2, 3, otherwise 1, 3, 4. The triangle's derivatives
// use its signed area, so either winding gives the same stresses. A
// degenerate triangle (zero area) leaves result unchanged. Returns 1 (0 only
// when u does not hold 8 values).
TESSALINE_API int Get_4Ang_FE_Plain_Stress(dvect& result, dvect& u, double E, double nu, double x1,
                                           double y1, double x2, double y2, double x3, double y3,
                                           double x4, double y4, double px, double py);
