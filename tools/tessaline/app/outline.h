// Outlines of sections as segments, circular arcs and circles.
//
// A shape is drawn as polygons whose corners may carry a fillet radius: the
// corner is replaced by the circular arc of that radius tangent to both
// edges, whatever the angle between them (square corners, tapered flanges).
// A fillet at a convex corner removes material (a rounded outer corner, a
// toe radius), one at a concave corner adds it (a root fillet). The pieces
// join bit for bit: each tangent point is computed once and used as the end
// of the arc and of the segment beside it. World millimetres, y up; arcs run
// counter-clockwise from their start angle to their end angle.
#pragma once

#include <string>
#include <vector>

#include <tessaline/tessaline.h>

namespace tessaline::app {

// One corner of a polygon and the fillet radius there (0: a sharp corner).
struct Corner {
  double x;
  double y;
  double r;
};

// One piece of an outline.
struct Piece {
  enum Kind { kSegment, kArc, kCircle } kind;
  double x1, y1, x2, y2;  // segment and arc ends (arc: counter-clockwise start, end)
  double xc, yc, r;       // arc and circle
  double a1, a2;          // arc angles, a1 < a2 <= a1 + 2 pi
};

// The pieces of a section, outer outlines and holes alike: which is which
// the surface finds from the drawing, as for any drawing a user makes.
struct Outline {
  std::vector<Piece> pieces;

  // Appends the polygon `corners` (either winding) with its fillets. False,
  // with the reason in `error`, when a fillet does not fit on its edges, a
  // radius is negative, an edge has no length or a value is not finite.
  bool Add_Polygon(const std::vector<Corner>& corners, std::string* error);
  // Appends a full circle; false for a radius that is not positive.
  bool Add_Circle(double xc, double yc, double r, std::string* error);
  // Appends the axis-parallel rectangle [x0, x1] x [y0, y1] with the same
  // radius r at all four corners.
  bool Add_Rounded_Rect(double x0, double y0, double x1, double y1, double r, std::string* error);
};

// Creates one drawing element per piece (Create_Line, Create_Arc with its
// ends set exactly, Create_Circle) and adds it to `array`. Returns the
// number added, or -1 when an element could not be created (those added so
// far stay in the array, which the caller owns).
int Add_Outline_Elements(const Outline& outline, Objects_Array_Type* array);

}  // namespace tessaline::app
