// Clipping of segments against an axis-parallel rectangle, world units.
#pragma once

// Clips the segment (x1, y1)-(x2, y2) against the rectangle whose corners are
// (xa, ya) and (xb, yb), in either order. Region codes: 1 left of the smaller
// x, 2 right of the larger, 4 below the smaller y, 8 above the larger. A
// segment whose end codes share a bit is rejected (false); an end whose code
// is 0 is kept exactly; only outside ends are moved onto the edges.
bool Clip_Segment(double xa, double ya, double xb, double yb, double* x1, double* y1, double* x2,
                  double* y2);
