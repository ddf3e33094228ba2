// Bounding rectangles of elements, in world coordinates: left is the
// smallest x, right the largest, top the largest y and bottom the smallest
// (y points up in the world).
#pragma once

#include "tessaline/export.h"
#include "tessaline/model/element.h"

// The element's bounding rectangle: exact for points, segments, circles and
// arcs (an arc's extreme points are included where it passes them), the
// nodes for a polyline, the curve sampled through its moments for a spline.
// 1 done, 0 for a handle that is not an element (outputs untouched).
TESSALINE_API int Get_Element_Rect(HGLOBAL h, double* left, double* top, double* right,
                                   double* bottom);

// The union of the rectangles of every element of the array; 0 (outputs
// untouched) when the array holds no element with a rectangle.
TESSALINE_API int GetRectangle(Objects_Array_Type* array, double* left, double* top, double* right,
                               double* bottom);

// 1 when the element's rectangle lies inside the given rectangle (edges
// included; the rectangle may be given in either order of its corners).
TESSALINE_API int Is_Element_in_Rect(HGLOBAL h, double left, double top, double right,
                                     double bottom);
