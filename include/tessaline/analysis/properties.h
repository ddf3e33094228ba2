// The section-properties record and its principal axes.
//
// A surface_geometry carries what the analysis computes for one surface: the
// raw area sums about the world origin (fields 1 to 6), the centroid, the
// central and principal moments, the polar moment, the extreme-fibre
// distances and the section moduli. Lengths are the drawing's units
// (millimetres by default: mm^2, mm^3, mm^4), angles radians, x and y the
// world axes with y up. The functions take the caller's consistent units and
// convert nothing.
#pragma once

#include "tessaline/contour/surface.h"
#include "tessaline/export.h"

struct surface_geometry {
  double area;                      // 1  A = integral of dA
  double first_moment_x;            // 2  integral of x dA
  double first_moment_y;            // 3  integral of y dA
  double second_moment_x;           // 4  integral of x^2 dA about the origin
  double second_moment_y;           // 5  integral of y^2 dA about the origin
  double product_moment;            // 6  integral of x y dA about the origin
  double principal_angle;           // 7  alpha, 0 <= alpha <= pi/4
  double centroid_x;                // 8
  double centroid_y;                // 9
  double central_moment_y;          // 10 Iy, about the vertical centroidal axis
  double central_moment_x;          // 11 Ix, about the horizontal centroidal axis
  double central_product_moment;    // 12 Ixy
  double principal_moment_1;        // 13 I1
  double principal_moment_2;        // 14 I2
  double principal_product_moment;  // 15 zero up to rounding
  double polar_moment;              // 16 I1 + I2
  double extreme_distance_1;        // 17
  double extreme_distance_2;        // 18
  double section_modulus_1;         // 19 I1 / |dv|
  double section_modulus_2;         // 20 I2 / |du|
  double further_constant;          // 21 belongs to the beam-section data
};
static_assert(sizeof(surface_geometry) == 168, "the properties record is 21 doubles");

// One process-wide record for the host's use; the library never touches it.
TESSALINE_API extern surface_geometry surface_geom;
