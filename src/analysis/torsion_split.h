// The split that the torsion entry points make of a surface.
#pragma once

#include "tessaline/analysis/split.h"
#include "tessaline/contour/surface.h"
#include "tessaline/platform/progress.h"

// Frees the split, then splits the surface at the element count of the
// options ({mode, count for mode 0, count for mode 1}; mode 1 the mesher,
// any other mode the grid with the count after it in the array; no options:
// the grid and 803): n = W H count / A elements over the outer rectangle
// W x H, element size h = sqrt(2 W H / n). Writes W, H and h. False when
// nothing can be split (no outer rectangle, A or the count not positive and
// finite, n below 1 or above 4 million) or the split holds no triangle or
// no node.
bool Split_For_Torsion(Surface_Type* surface, double A, FE_Split* split, const int* options,
                       CProgressDlg* progress, HWND window, double* W, double* H, double* h);
