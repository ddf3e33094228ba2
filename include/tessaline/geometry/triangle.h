// Triangles and four-cornered figures given by their corners (world
// millimetres, angles in radians): centroid, interior angles, Heron areas and
// the right-angle and square tests of a quadrilateral.
#pragma once

#include "tessaline/export.h"

// Centroid of the triangle, two thirds of the way along the median from the
// first corner.
TESSALINE_API void Get_Median_Point(double x1, double y1, double x2, double y2, double x3,
                                    double y3, double* gx, double* gy);
// Interior angles at corners 1, 2 and 3 by the law of cosines; each cosine is
// clamped into [-1, 1], so rounding never yields NaN (a corner with a side
// of zero length has no angle: NaN).
TESSALINE_API void Get_3Ang_Angles(double x1, double y1, double x2, double y2, double x3, double y3,
                                   double* a1, double* a2, double* a3);
// Area from the corners (Heron's formula on the side lengths).
TESSALINE_API double Get_3Ang_Area(double x1, double y1, double x2, double y2, double x3,
                                   double y3);
// Heron's area from the side lengths; 0 when s - a, s - b or s - c is not
// greater than 0 (a degenerate or impossible triangle).
TESSALINE_API double Calc_3Ang_Area(double a, double b, double c);
// 1 when the angle at every corner of the quadrilateral 1-2-3-4 is within t
// radians of a right angle, else 0 (also when a corner has no angle).
TESSALINE_API int Is_Right_4Ang(double x1, double y1, double x2, double y2, double x3, double y3,
                                double x4, double y4, double t);
// 1 when sides 2-3, 3-4 and 4-1 each differ from side 1-2 by at most t times
// their own length and Is_Right_4Ang holds with the same t, else 0.
TESSALINE_API int Is_Square_4Ang(double x1, double y1, double x2, double y2, double x3, double y3,
                                 double x4, double y4, double t);
