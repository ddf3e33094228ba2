// Exact section properties and plastic bending properties of a surface.
//
// Both integrate along the contours of the surface (Green's theorem) rather
// than over cells or triangles, so their results carry only rounding, not a
// step error. Units are the drawing's (millimetres by default: mm, mm^2,
// mm^3, mm^4); angles are radians counter-clockwise from the world x axis;
// y is up. Outer contours count positively and holes negatively whatever
// the sense in which their elements are stored.
//
// Both return 0 and leave the record untouched for a surface they cannot
// integrate: a null argument, no outer contour, an empty or open contour
// (consecutive ends more than 0.001 apart in x or y, as the contour search
// joins them), an element that does not lock or is not a segment,
// polyline, arc, circle or spline, a circle sharing a contour with other
// elements, a coordinate that is not finite, an outer rectangle of zero
// width or height, or an area that is not positive.
#pragma once

#include "tessaline/analysis/properties.h"
#include "tessaline/contour/surface.h"
#include "tessaline/export.h"

// The section properties of the surface, exactly: fields 1 to 6 (area and
// the first and second moments about the world origin) by Green's theorem
// along the contours, then fields 7 to 20 as Finish_Surface_Geometry
// completes them (principal angle by Main_Axis_Angle's rule, extreme
// fibres from the outer rectangle in turned axes); field 21 is kept.
// Segments, arcs and circles are integrated in closed form, polylines piece
// by piece. A spline is integrated piece by piece along the cubic it is
// drawn with (chord-length parameter, moment form) by a six-point
// Gauss-Legendre rule, which is exact for it: every integrand is a
// polynomial of degree 11 or less in the piece's parameter. The sums are
// taken about the centre of the outer rectangle and moved to the origin,
// so a section far from the origin loses no more than its offset demands.
// Cost: linear in the number of pieces. 1 done, 0 as above.
TESSALINE_API int Calc_Exact_Surface_Param(Surface_Type* surface, surface_geometry* g);

// Plastic bending about one axis direction.
//
// The plastic neutral axis is the line in that direction that halves the
// area. Distances are measured along the normal, the axis direction turned
// by +pi/2 (for the axis along world x the normal is +y; along world y it is
// -x).
struct Plastic_Axis {
  double angle;   // direction of the axis, radians
  double offset;  // plastic neutral axis: signed distance from the centroid along the normal, mm
  double x, y;    // the point of the plastic neutral axis nearest the centroid, mm
  double plastic_modulus;  // Z: integral of |distance from the plastic neutral axis| dA, mm^3
  double moment;           // second moment about the parallel axis through the centroid, mm^4
  double fibre;            // largest distance of the section from that centroidal axis, mm
  double elastic_modulus;  // W = moment / fibre, mm^3
  double shape_factor;     // Z / W: the ratio of the plastic to the first-yield moment
};

struct Plastic_Geometry {
  double area;        // mm^2
  double centroid_x;  // mm
  double centroid_y;  // mm
  // Direction of the major principal axis (about which the central second
  // moment is largest), in (-pi/2, pi/2]: where the central product moment
  // vanishes. Unlike field 7 of surface_geometry this is the true principal
  // direction whatever the sign of the product moment; 0 for a section
  // without preferred axes (principal moments equal to 1e-12 relative: a
  // circle, a square).
  double principal_angle;
  Plastic_Axis x_axis;  // axes parallel to world x
  Plastic_Axis y_axis;  // axes parallel to world y
  Plastic_Axis major;   // parallel to the major principal axis
  Plastic_Axis minor;   // parallel to the minor principal axis
};

// The plastic properties of the surface. Segments, polylines, arcs and
// circles are exact up to rounding: each contour is cut at the neutral
// axis and the two parts integrated in closed form. Spline pieces are
// followed along 64 chords each (relative error of the order of the
// fourth power of the chord over the curvature radius). The neutral axis is
// found by a bracketed root search (regula falsi with bisection steps) on
// the area difference between its two sides, to 1e-14 of the section's
// depth; the plastic modulus is insensitive to that error to first order.
// 1 done, 0 as above.
TESSALINE_API int Calc_Plastic_Surface_Param(Surface_Type* surface, Plastic_Geometry* p);
