// Stresses in a butt-welded cross-section under a normal force N, bending
// moments Mx and My, shear forces Qx and Qy and a torque Mt, and the
// largest equivalent stress over a surface.
//
// Units are the caller's (N and mm give N/mm^2); nothing is converted.
// Points (x, y) are measured from the section's centroid; Ix and Iy are the
// first and second principal moments of inertia, alpha the angle of the
// principal axes (radians). With c = cos(alpha), s = sin(alpha):
//   M1 = c Mx + s My, M2 = c My - s Mx, u = c x + s y, w = c y - s x,
//   sigma = N/A + (M2/Iy) u - (M1/Ix) w,
// and the equivalent stress is sqrt(sigma^2 + 3 (tau_x^2 + tau_y^2)).
// No divisor or root is checked: infinities and NaN pass to the caller.
// The out-pointer overloads write sigma, then tau_y, then tau_x (y before
// x, as hosts of this interface read them).
#pragma once

#include "tessaline/analysis/properties.h"
#include "tessaline/analysis/split.h"
#include "tessaline/contour/surface.h"
#include "tessaline/export.h"

// Equivalent stress with the average shear Q/A and, when Mt is not 0, the
// torque taken as a circular section's shear r Mt / It perpendicular to
// the radius (turned by a further pi, as the system has always done).
TESSALINE_API double Get_Butt_Weld_Stress(double x, double y, double Qx, double Qy, double N,
                                          double Mx, double My, double Mt, double A, double Ix,
                                          double Iy, double alpha, double It);
TESSALINE_API double Get_Butt_Weld_Stress(double x, double y, double Qx, double Qy, double N,
                                          double Mx, double My, double Mt, double A, double Ix,
                                          double Iy, double alpha, double It, double* sigma,
                                          double* tau_y, double* tau_x);

// The same with the torsion shear stresses Tx, Ty of the finite-element
// field added to the average shear.
TESSALINE_API double Get_Butt_Weld_Stress_With_Torsion(double x, double y, double Qx, double Qy,
                                                       double N, double Mx, double My, double A,
                                                       double Ix, double Iy, double alpha,
                                                       double Tx, double Ty);
TESSALINE_API double Get_Butt_Weld_Stress_With_Torsion(double x, double y, double Qx, double Qy,
                                                       double N, double Mx, double My, double A,
                                                       double Ix, double Iy, double alpha,
                                                       double Tx, double Ty, double* sigma,
                                                       double* tau_y, double* tau_x);

// Where on the line at height y (principal axes, the point not rotated) the
// equivalent stress without torque reaches S: x1 and x2.
TESSALINE_API void Get_X_By_Butt_Weld_Str_Without_Torsion(double y, double S, double Qx, double Qy,
                                                          double N, double Mx, double My, double A,
                                                          double Ix, double Iy, double alpha,
                                                          double* x1, double* x2);
// Where on the line at abscissa x the same holds: y1 and y2.
TESSALINE_API void Get_Y_By_Butt_Weld_Str_Without_Torsion(double x, double S, double Qx, double Qy,
                                                          double N, double Mx, double My, double A,
                                                          double Ix, double Iy, double alpha,
                                                          double* y1, double* y2);
// Where the normal stress reaches S on the line at height y (the same x to
// both pointers); the two doubles after S are never read.
TESSALINE_API void Get_X_By_Normal_Stress(double y, double S, double unused1, double unused2,
                                          double N, double Mx, double My, double A, double Ix,
                                          double Iy, double alpha, double* x1, double* x2);
TESSALINE_API void Get_Y_By_Normal_Stress(double x, double S, double unused1, double unused2,
                                          double N, double Mx, double My, double A, double Ix,
                                          double Iy, double alpha, double* y1, double* y2);

// A quarter of the difference of the two principal stresses of the plane
// state (a, b, t): half the largest shear stress, halved once more as the
// system has always reported it.
TESSALINE_API double Get_Bend_Eq_Stress(double a, double b, double t);

// Smallest and largest equivalent stress (Get_Butt_Weld_Stress) along the
// contours of the surface. The 13 values are xc, yc (the centroid: world
// points are shifted by it), then Qx, Qy, N, Mx, My, Mt, A, Ix, Iy, alpha,
// It. Each contour element is walked in 130 pieces and evaluated at the 131
// piece ends: a segment by equal lengths, an arc or a circle by equal angles
// (counter-clockwise from its start angle; a circle from angle 0). The
// minimum starts at 1.7e307, the maximum at 0.0. Returns 0 with the
// pointers untouched for a surface without contours (or a null pointer),
// else 1.
TESSALINE_API int Get_Surf_Butt_Weld_MinMax_Stress(Surface_Type* surface, double xc, double yc,
                                                   double Qx, double Qy, double N, double Mx,
                                                   double My, double Mt, double A, double Ix,
                                                   double Iy, double alpha, double It,
                                                   double* min_stress, double* max_stress);
