// Grid integration with a choice of containment test, for the code that
// checks the prepared surface against the per-point test.
#pragma once

#include "tessaline/analysis/properties.h"

// Grid_Pass; with `prepared` false every cell asks Is_Point_In_Surface
// itself instead of the surface read once (the sums are the same).
void Grid_Pass_Sums(Surface_Type* surface, surface_geometry* g, double left, double top,
                    double right, double bottom, double h, bool prepared);
