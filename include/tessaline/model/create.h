// Element constructors and the getters and setters of element geometry.
//
// Constructors return the new element handle, or 0 when a block could not be
// allocated; none adds the element to an objects array. Getters and setters
// check the element type and return 1 on success, 0 on a mismatch (-1 for the
// spline node pair and Get_Nearest_Seg_End_Coord_by_Handle).
#pragma once

#include <cstdint>

#include "tessaline/export.h"
#include "tessaline/platform/win_types.h"

TESSALINE_API HGLOBAL Create_Point(double x, double y);
TESSALINE_API HGLOBAL Create_Line(double x1, double y1, double x2, double y2);
TESSALINE_API HGLOBAL Create_Polyline(int32_t n, const double* x, const double* y);
TESSALINE_API HGLOBAL Create_Circle(double xc, double yc, double r);
TESSALINE_API HGLOBAL Create_Arc(double xc, double yc, double r, double a1, double a2);
TESSALINE_API HGLOBAL Create_Spline(int32_t n, const double* x, const double* y, const double* m1,
                                    const double* m2);

TESSALINE_API int Get_Point_Coord_by_Handle(HGLOBAL h, double* x, double* y);
TESSALINE_API int Set_Point_Coord_by_Handle(HGLOBAL h, double x, double y);
TESSALINE_API int Get_Segment_Coord_by_Handle(HGLOBAL h, double* x1, double* y1, double* x2,
                                              double* y2);
TESSALINE_API int Set_Segment_Coord_by_Handle(HGLOBAL h, double x1, double y1, double x2,
                                              double y2);
TESSALINE_API int Get_Circle_Param_by_Handle(HGLOBAL h, double* xc, double* yc, double* r);
TESSALINE_API int Set_Circle_Param_by_Handle(HGLOBAL h, double xc, double yc, double r);
TESSALINE_API int Get_Arc_Ends_Simple(HGLOBAL h, double* x1, double* y1, double* x2, double* y2);
TESSALINE_API int Set_Arc_Ends(HGLOBAL h, double x1, double y1, double x2, double y2);
TESSALINE_API int Get_Arc_Param(HGLOBAL h, double* x1, double* y1, double* x2, double* y2,
                                double* xc, double* yc, double* r, double* a1, double* a2);
TESSALINE_API int Set_Arc_Param(HGLOBAL h, double x1, double y1, double x2, double y2, double xc,
                                double yc, double r, double a1, double a2);
TESSALINE_API int Get_Polyline_Node_Coord_by_Handle(HGLOBAL h, int32_t i, double* x, double* y);
TESSALINE_API int Set_Polyline_Node_Coord_by_Handle(HGLOBAL h, int32_t i, double x, double y);
TESSALINE_API int Get_Spline_Node_Coord_by_Handle(HGLOBAL h, int32_t i, double* x, double* y);
TESSALINE_API int Set_Spline_Node_Coord_by_Handle(HGLOBAL h, int32_t i, double x, double y);
TESSALINE_API int Get_Polyline_Node_Num(HGLOBAL h);
TESSALINE_API int Get_El_Node_Coord_by_Handle(HGLOBAL h, int32_t i, double* x, double* y);
TESSALINE_API int Get_Nearest_Seg_End_Coord_by_Handle(HGLOBAL h, double px, double py, double* x,
                                                      double* y);
TESSALINE_API int Calc_Spline_Coef(HGLOBAL h);
