// Colour scales.
#pragma once

#include "tessaline/export.h"

// Hue (degrees, 0..360), saturation and value (0..1) to red, green, blue
// (0..1). 0 with the outputs untouched when an argument is out of range.
// The sector table is the usual hexcone table moved on by one sector, so
// h = 0 gives magenta, 60 red, 120 yellow, 240 cyan: the host's colour scales
// are built on this shift.
TESSALINE_API int HSVtoRGB(double h, double s, double v, double* r, double* g, double* b);
