// The lowest layer of the geometry kernel: signs, decimal orders, angle
// units, the quadratic equation, vector products and squared and plain
// distances. World millimetres and radians; arcs counter-clockwise from a1 to
// a2. Every comparison is an exact comparison of doubles: callers apply their
// own tolerances to the results.
#pragma once

#include "tessaline/export.h"

// -1.0 for x < 0, otherwise +1.0 (so sign(0) and sign(-0.0) are +1.0).
TESSALINE_API double sign(double x);
// Exponent e with x = m * 10^e, 0.1 <= |m| < 1, m written to *mantissa.
// For 0 and non-finite x the exponent is 0 and *mantissa = x.
TESSALINE_API int Get_Decimal_Order(double* mantissa, double x);
// The count of decimal places by the growing-power rule (0.5 -> 1,
// 0.25 -> 2, 0.125 -> 2); 0 for whole and non-finite numbers.
TESSALINE_API int Get_Fract_Pow(double x);
TESSALINE_API double RadToDeg(double a);
TESSALINE_API double DegToRad(double a);
// 1 and both roots of a*x^2 + b*x + c = 0, or 0 with the outputs untouched.
TESSALINE_API int Sq_Eq(double a, double b, double c, double* x1, double* x2);
TESSALINE_API double Scal_Mul(double x1, double y1, double x2, double y2);
TESSALINE_API double Vect_Mul(double x1, double y1, double x2, double y2);
// 1 and the unit vector a quarter turn counter-clockwise from (x, y), or 0.
TESSALINE_API int Perp_Vect(double x, double y, double* px, double* py);
TESSALINE_API int Make_Unit_Vector(double* x, double* y);
TESSALINE_API double Angle_Between_Vectors(double x1, double y1, double x2, double y2);
// Turns (x, y) clockwise by the angle: the coordinates in axes turned
// counter-clockwise by it.
TESSALINE_API void Rotate2D(double angle, double x, double y, double* xr, double* yr);
TESSALINE_API double SQDistance_2Points(double x1, double y1, double x2, double y2);
TESSALINE_API double Distance_2Points(double x1, double y1, double x2, double y2);
TESSALINE_API double SQDistance_Line_Point(double x1, double y1, double x2, double y2, double px,
                                           double py);
TESSALINE_API double Distance_Line_Point(double x1, double y1, double x2, double y2, double px,
                                         double py);
TESSALINE_API double SQDistance_Segment_Point(double x1, double y1, double x2, double y2, double px,
                                              double py);
// Squared distance to the circle; r itself (not r^2) for P at the centre.
TESSALINE_API double SQDistance_Circle_Point(double cx, double cy, double r, double px, double py);
// Squared distance to the arc; r itself for P at the centre.
TESSALINE_API double SQDistance_Arc_Point(double cx, double cy, double r, double a1, double a2,
                                          double px, double py);
