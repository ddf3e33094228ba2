// Coordinate functions that ask the device: the screen's size and the
// cursor's world position.
#pragma once

#include <cstdint>

#include "tessaline/display/coord.h"
#include "tessaline/export.h"
#include "tessaline/platform/gdi.h"

// HORZSIZE, VERTSIZE (millimetres), HORZRES, VERTRES (pixels) of the screen,
// read from a "DISPLAY" information context.
TESSALINE_API void Get_Display_Dimensions(int32_t dims[4]);

// The mouse position in world coordinates, snapped to the grid step (0: no
// snap; half-way moves toward plus infinity).
TESSALINE_API void Get_World_Cursor_Pos(HWND window, HDC dc, const Coord_Syst* cs, double* x,
                                        double* y, double step);
