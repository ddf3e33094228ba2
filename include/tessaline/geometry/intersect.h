// Intersections: two lines, two segments, and the crossings of horizontal,
// vertical and general lines with segments, circles and arcs.
//
// World millimetres and radians; arcs run counter-clockwise from a1 to a2
// (any values: they are normalised into [0, 2*pi)). The object comes first,
// then the query, then the outputs; results are crossing counts. Every
// comparison is exact. Outputs that a result does not fill are left alone.
//
// End points are exact: a crossing at an end point of a segment or (for
// Cross_Horiz_Line_Arc) of an arc is that end point bit for bit, so a caller
// can recognise a ray through a vertex by comparing with ==.
#pragma once

#include "tessaline/export.h"

// Intersection of the lines AB and CD: 1 and the point, or 0 when they are
// parallel, the same line, or one of them has equal points.
TESSALINE_API int Cross_2Line(double x1, double y1, double x2, double y2, double x3, double y3,
                              double x4, double y4, double* x, double* y);

// Common point of the segments AB and CD, end points included:
//   1  one common point; when an end point of one segment lies on the other
//      (or the two touch end to end on one line) it is that end point exactly;
//   0  none (also for parallel segments apart);
//  -1  collinear segments that share more than one point (outputs untouched).
TESSALINE_API int Cross_2Segment(double x1, double y1, double x2, double y2, double x3, double y3,
                                 double x4, double y4, double* x, double* y);

// Crossing of the line at height y with the segment AB:
//   0  none (y outside [min(y1, y2), max(y1, y2)]; the ends count as touching);
//   1  one crossing (xc, yc = y), the end point exactly when y is its height;
//  -1  the segment lies on the line: xc = x1, yc = y.
TESSALINE_API int Cross_Horiz_Line_Segment(double y, double x1, double y1, double x2, double y2,
                                           double* xc, double* yc);
// The same for the vertical line at x (roles of x and y exchanged; -1 gives
// yc = y1).
TESSALINE_API int Cross_Vert_Line_Segment(double x, double x1, double y1, double x2, double y2,
                                          double* xc, double* yc);

// Crossings of the line at height y with the circle: 0, 1 (tangent: both
// outputs are the touching point) or 2. The first crossing is (cx + d, y),
// the second (cx - d, y): larger x first.
TESSALINE_API int Cross_Horiz_Line_Circle(double y, double cx, double cy, double r, double* x1,
                                          double* y1, double* x2, double* y2);
// The same for the vertical line at x: first (x, cy + d), then (x, cy - d).
TESSALINE_API int Cross_Vert_Line_Circle(double x, double cx, double cy, double r, double* x1,
                                         double* y1, double* x2, double* y2);

// Crossings of the line at height y with the arc whose end points are
// E1(x1, y1) at a1 and E2(x2, y2) at a2: 0, 1 or 2, written to (xa, ya) and
// then (xb, yb). The candidates are (cx + d, y) and (cx - d, y), in that order;
// those whose direction lies on the arc (a1 <= angle <= a2, ends included)
// are kept, in that order. When y equals y1 exactly, the candidate nearer in
// x to x1 (the second on a tie) becomes x1 exactly and is kept as the end
// point E1 without a direction test, whose rounding could otherwise lose it;
// likewise for E2. A tangent point on the arc is reported twice.
TESSALINE_API int Cross_Horiz_Line_Arc(double y, double x1, double y1, double x2, double y2,
                                       double cx, double cy, double r, double a1, double a2,
                                       double* xa, double* ya, double* xb, double* yb);
// Crossings of the vertical line at x with the arc: Cross_Line_Arc of the
// line through (x, x) and (x, x + 50), so the lower crossing comes first.
TESSALINE_API int Cross_Vert_Line_Arc(double x, double cx, double cy, double r, double a1,
                                      double a2, double* xa, double* ya, double* xb, double* yb);

// Crossings of the infinite line through A and B with the circle: 0; 1 when
// the line touches (both outputs are the touching point); 2. Two crossings
// come in the order of the line's parameter from A towards B. 0 when A
// equals B.
TESSALINE_API int Cross_Line_Circle(double x1, double y1, double x2, double y2, double cx,
                                    double cy, double r, double* xa, double* ya, double* xb,
                                    double* yb);
// The crossings of Cross_Line_Circle whose direction from the centre lies on
// the arc (a1 <= angle <= a2, ends included), in the same order: 0, 1 or 2.
// A touching point on the arc gives 1 with both outputs set to it.
TESSALINE_API int Cross_Line_Arc(double x1, double y1, double x2, double y2, double cx, double cy,
                                 double r, double a1, double a2, double* xa, double* ya, double* xb,
                                 double* yb);
