// Construction geometry: circles and lines tangent to circles and lines, arcs
// through two points or by centre, start and end, and the circle through
// three points. The rubber bands draw with these; the constructions reuse them.
//
// World millimetres and radians; arcs run counter-clockwise from a1 to a2,
// both normalised into [0, 2*pi). The object comes first, then the points,
// then the outputs; results are 1/0 or counts, and outputs are left alone on
// 0. Every comparison is exact: callers apply their own tolerances.
#pragma once

#include "tessaline/export.h"

// Touching points of the tangents from P to the circle (C, r):
//   0  P lies inside, or r <= 0;
//   1  P lies on the circle (|P - C|^2 == r^2): both outputs are P;
//   2  A first, then B. A lies counter-clockwise from the direction C -> P
//      (on the right seen from P looking at C), B clockwise.
// The points are the crossings of the circle with the polar line of P.
TESSALINE_API int Tangent_Points_Circle(double cx, double cy, double r, double px, double py,
                                        double* xa, double* ya, double* xb, double* yb);

// Radius of the circle centred at P that touches the circle (C, r). Of the
// two such circles (radius |d - r|, touching at the side of C towards P, and
// radius d + r, touching at the far side; d = |P - C|) the one whose touching
// point is nearer Q (the point where the given circle was picked; a tie takes
// the first). 0 for P at C, r <= 0, or a chosen radius of 0 (P on the circle).
TESSALINE_API int Tangent_Circle_Centred(double cx, double cy, double r, double px, double py,
                                         double qx, double qy, double* rt);

// Circle touching the lines AB and CD. For crossing lines: the circle in the
// angle sector holding P, centred where P projects onto the bisector of that
// sector, so the circle follows P and grows as P moves away from the
// crossing. For parallel lines: radius half their distance, centred on the
// middle line at P's projection. 0 when a line has equal points, the lines
// coincide, or P lies on the crossing.
TESSALINE_API int Tangent_Circle_2Line(double x1, double y1, double x2, double y2, double x3,
                                       double y3, double x4, double y4, double px, double py,
                                       double* xc, double* yc, double* r);

// Arc from A counter-clockwise to B whose centre is P projected onto the
// perpendicular bisector of AB (a centre on the left of A -> B gives less
// than a half circle, on the right more). 0 when A equals B.
TESSALINE_API int Arc_2Points_Centre(double x1, double y1, double x2, double y2, double px,
                                     double py, double* xc, double* yc, double* r, double* a1,
                                     double* a2);

// Arc centred at C through the start S, counter-clockwise to the direction of
// E: radius |S - C|, a1 the direction of S, a2 that of E. 0 when S or E
// equals C.
TESSALINE_API int Arc_Centre_Start_End(double xc, double yc, double x1, double y1, double x2,
                                       double y2, double* r, double* a1, double* a2);

// Circle through P0, P1, P2: the crossing of the perpendicular bisectors of
// P0P1 and P1P2, radius the distance to P0. Refused (0) when
// |(y2 - y1)(x1 - x0)| == |(x2 - x1)(y1 - y0)|: besides collinear points this
// also refuses chords whose slopes have equal size and opposite sign, such as
// (0, 0), (1, 1), (2, 0); the construction of auxiliary circles relies on it.
TESSALINE_API int Circle_3Points(double x0, double y0, double x1, double y1, double x2, double y2,
                                 double* xc, double* yc, double* r);
