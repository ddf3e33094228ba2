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

#include "tessaline/analysis/split.h"
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

// ---- Record and moments -----------------------------------------------------

// Sets fields 1 to 20 to 0. Field 21 belongs to the beam-section data and is
// left as it is on purpose.
TESSALINE_API void Clear_Surface_Geometry(surface_geometry* g);

// The principal-axis angle in [0, pi/4] from the central moments Ix (about
// the horizontal axis), Iy (about the vertical axis) and Ixy:
// 0.5 * atan2(2 |Ixy|, |Iy - Ix|). Both arguments are taken as absolute
// values, so neither the sign of Ixy nor the order of Ix and Iy turns the
// angle; the beam-section data and the section library rely on this rule.
// 0 when the section has no preferred axes: both |Iy - Ix| and |Ixy| below
// 1e-4 times the smaller of |Ix| and |Iy|, or Ix = Iy and Ixy = 0 exactly.
TESSALINE_API double Main_Axis_Angle(double ix, double iy, double ixy);

// Central moments in axes turned counter-clockwise by a (radians):
// about the turned x axis (Ix + Iy)/2 + (Ix - Iy)/2 cos 2a - Ixy sin 2a,
TESSALINE_API double Moment2X_C_by_Angle(double ix, double iy, double ixy, double a);
// about the turned y axis (Ix + Iy)/2 - (Ix - Iy)/2 cos 2a + Ixy sin 2a,
TESSALINE_API double Moment2Y_C_by_Angle(double ix, double iy, double ixy, double a);
// and the product (Ix - Iy)/2 sin 2a + Ixy cos 2a.
TESSALINE_API double MomentXY_C_by_Angle(double ix, double iy, double ixy, double a);

// I1 + I2.
TESSALINE_API double Polar_Moment(double i1, double i2);

// Fills fields 7 to 16 from the raw sums in fields 1 to 6: the centroid,
// the central moments, the angle of Main_Axis_Angle, the moments at that
// angle and the polar moment. A zero area is not tested for: the centroid
// then holds infinities or NaN.
TESSALINE_API void Complete_Surface_Geometry(surface_geometry* g);

// Complete_Surface_Geometry, then fields 17 to 20 from the surface's extents
// in axes turned by the principal angle (Get_Surface_Extern_Angled_Rect):
// du and dv are the largest distances along the turned axes from the
// centroid to that rectangle; field 17 = |cos a du - sin a dv|, field 18 =
// |cos a dv + sin a dv| (dv in both terms: the beam-section data was made
// with this value, so it stays), field 19 = I1 / |dv|, field 20 = I2 / |du|.
// When the surface has no outer contour the extents stay 0.
TESSALINE_API void Finish_Surface_Geometry(Surface_Type* surface, surface_geometry* g);

// ---- Grid integration ---------------------------------------------------------

// The properties of the surface by a square grid, in two passes over its
// outer rectangle (Get_Surface_Extern_Rect; the record is left as it was
// when the surface has none): a coarse pass with cells of h0, a hundredth
// of the rectangle's shorter side, whose only use is the area; then, with
// the fill ratio f = area / (width * height), the record is zeroed (all 21
// fields) and the final pass runs with cells of f * h0 (h0 / 20 when the
// coarse pass found nothing), so a thin section gets proportionally finer
// cells; Finish_Surface_Geometry completes the record. Each cell counts as
// a point mass at its centre (its own moment of inertia is not added), so
// the second moments carry an error of the order of the cell size. Nothing
// is done when h0 is 0 or the rectangle is not finite. The final pass is
// held to at most 2^28 cells (about 5 s) by coarsening its step: a section
// that fills less than about 0.6 per cent of its rectangle would otherwise
// ask for a grid without bound.
TESSALINE_API void Calc_Rect_Grid_Surface_Param(Surface_Type* surface, surface_geometry* g);

// Sets fields 1 to 6 to the sums over the cells of side h of the rectangle
// (left, top, right, bottom; top >= bottom) whose centres lie in the
// surface (Is_Point_In_Surface's decision): rows from bottom while y < top,
// cells from left while x < right, so the last row and column may stick
// out. With exactly one hole and more than 200 000 cells, the cells whose
// centres lie strictly inside the hole's inner rectangle (Find_Inner_Rect)
// are passed over without a test. The sums are 0 for a step that is not
// positive or a rectangle that is not finite, and for a grid of more than
// 2^40 cells.
TESSALINE_API void Grid_Pass(Surface_Type* surface, surface_geometry* g, double left, double top,
                             double right, double bottom, double h);

// The largest rectangle centred on the contour's own rectangle (the union
// of its elements' rectangles) whose sides cross none of the contour's
// segments, arcs and circles, found by bisecting the half-sizes (up to 500
// steps, until they are known to a hundredth of the contour's shorter
// side). 1 and the rectangle; 0 when the contour cannot be read or the
// bisection does not settle.
TESSALINE_API int Find_Inner_Rect(Contour_Type* contour, double* left, double* top, double* right,
                                  double* bottom);

// Zeroes the record (all 21 fields), adds the triangles of the split
// (Sum_FE_Triangles) and completes the record (Finish_Surface_Geometry).
TESSALINE_API void Calc_Rect_Grid_Surface_Param_Using_FE_Mesh(FE_Split* split,
                                                              Surface_Type* surface,
                                                              surface_geometry* g);

// Adds to fields 1 to 6 each triangle of the split as a point mass at its
// centroid (the mean of its corners) with its area (Calc_3Ang_Area of its
// sides). A triangle naming a node outside the node block adds nothing.
TESSALINE_API void Sum_FE_Triangles(FE_Split* split, surface_geometry* g);
