// A surface's contours as oriented pieces for exact integration: straight
// pieces, circular arcs and cubic pieces, each in the travel sense of its
// contour, world coordinates.
#pragma once

#include <vector>

#include "tessaline/contour/surface.h"

struct Contour_Piece {
  enum Kind { kLine, kArc, kCubic };
  Kind kind;
  double x1, y1, x2, y2;  // start and end
  // kArc: centre, radius, start angle and signed sweep (negative:
  // clockwise); the start and end above are the element's stored ends.
  double cx, cy, r, t1, sweep;
  // kCubic: x(s) = ax[0] + ax[1] s + ax[2] s^2 + ax[3] s^3, y likewise,
  // s from 0 (start) to 1 (end).
  double ax[4], ay[4];
};

// One closed contour of a surface.
struct Surface_Loop {
  std::vector<Contour_Piece> pieces;
  bool hole;
};

// Reads a contour into pieces, walking its chain as Outline_Pieces does:
// from the end of the first element that the second does not share, each
// element entered at its end nearer the running point. Segments, polylines
// (piece by piece), arcs, splines (one cubic per piece, in the chord-length
// moment form the spline is drawn with; zero moments when its coefficient
// blocks do not hold them) and a circle alone. False when the contour cannot
// be integrated: empty, an element that does not lock (after the guard box)
// or of another type, a circle among other elements, an element whose end
// is not within 0.001 in x and in y of the running point (also the last
// element back to the start: an open chain), a coordinate that is not
// finite.
bool Read_Contour_Pieces(const Contour_Type* contour, std::vector<Contour_Piece>* pieces);

// Every contour of the surface, outer contours first. False when the
// surface has no outer contour or one of its contours cannot be read.
bool Read_Surface_Loops(Surface_Type* surface, std::vector<Surface_Loop>* loops);

// The six raw sums of a region: area, integrals of x, y, x^2, y^2, x y.
struct Raw_Sums {
  double a = 0, sx = 0, sy = 0, sxx = 0, syy = 0, sxy = 0;
  void Add(const Raw_Sums& o, double f) {
    a += f * o.a, sx += f * o.sx, sy += f * o.sy;
    sxx += f * o.sxx, syy += f * o.syy, sxy += f * o.sxy;
  }
};

// The sums of the region a closed loop of pieces encloses, about the point
// (x0, y0), by Green's theorem; negative area for a clockwise loop. Exact
// for lines, arcs and cubics up to rounding.
Raw_Sums Integrate_Loop(const std::vector<Contour_Piece>& pieces, double x0, double y0);

// The surface's sums about (x0, y0): outer contours added, holes
// subtracted, each whatever its travel sense.
Raw_Sums Integrate_Surface(const std::vector<Surface_Loop>& loops, double x0, double y0);
