// The controls library's services: the length-unit factor by unit code and
// the line stroke between two logical points.
#pragma once

#include <cstdint>

#include "tessaline/platform/gdi.h"

// World units (millimetres) per host length unit: 1 mm, 2 cm, 3 dm, 4 m,
// 5 inch, 6 foot, unless the host set its own factor for the code
// (SetUnitFactor). Any other code gives 1.0.
double Get_Unit_Factor(int32_t code);
// The line stroke: from (x1, y1) to (x2, y2), logical units, with the selected
// pen and raster operation; as LineTo, the end point is left out.
BOOL Stroke_Line(HDC dc, int x1, int y1, int x2, int y2);
