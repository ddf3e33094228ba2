// Projections and distances: the nearest point of a line, segment, circle or
// arc to a point P, the plain distances that go with them, and the mirror
// image of a point in a line.
//
// World millimetres and radians; a line or segment is given by A(x1, y1) and
// B(x2, y2); an arc by its centre C, radius r and the angles a1, a2 (counter-
// clockwise from a1 to a2, any value: they are normalised into [0, 2*pi)).
// Every comparison is exact: a point equal to an end point or to the centre
// is recognised only when it is bit for bit equal.
#pragma once

#include "tessaline/export.h"

// Foot Q of the perpendicular from P on the infinite line AB; Q = A when A
// equals B, Q = P when P lies on the line.
TESSALINE_API void Projection_Line_Point(double x1, double y1, double x2, double y2, double px,
                                         double py, double* qx, double* qy);

// Distance from P to the segment AB.
TESSALINE_API double Distance_Segment_Point(double x1, double y1, double x2, double y2, double px,
                                            double py);
// Nearest point of the segment AB: an end point when P lies beyond it, P
// itself when P equals an end point.
TESSALINE_API void Projection_Segment_Point(double x1, double y1, double x2, double y2, double px,
                                            double py, double* qx, double* qy);

// Distance from P to the circle; r for P at the centre.
TESSALINE_API double Distance_Circle_Point(double cx, double cy, double r, double px, double py);
// Nearest circle point; the centre itself for P at the centre, P itself when
// |P - C| equals r exactly.
TESSALINE_API void Projection_Circle_Point(double cx, double cy, double r, double px, double py,
                                           double* qx, double* qy);

// Distance from P to the arc; r for P at the centre.
TESSALINE_API double Distance_Arc_Point(double cx, double cy, double r, double a1, double a2,
                                        double px, double py);
// Nearest arc point: the circle point towards P when that direction lies on
// the arc, otherwise the nearer end point (the first end on a tie); the
// centre for P at the centre.
TESSALINE_API void Projection_Arc_Point(double cx, double cy, double r, double a1, double a2,
                                        double px, double py, double* qx, double* qy);

// Mirror image M = 2Q - P of P in the line AB, Q its projection.
TESSALINE_API void Mirror_Point_Line(double x1, double y1, double x2, double y2, double px,
                                     double py, double* mx, double* my);
