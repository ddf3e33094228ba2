// Sections drawn in DXF drawings.
//
// What is read: LINE, ARC, CIRCLE, LWPOLYLINE and 2-D POLYLINE (a bulge
// becomes the circular arc it describes), ELLIPSE when it is a circle or a
// circular arc (axis ratio 1), and INSERT of blocks with their base point,
// scales, rotation and column/row arrays, nested up to 16 deep. A block
// inserted with unequal x and y scales turns its arcs into ellipses: those
// arcs are refused. SPLINE and true ellipses are refused with a message
// that names the entity and its layer (the outline they belong to is then
// reported open): redraw them as arcs, lines or polylines with bulges.
// Everything else (text, dimensions, hatches, points) is passed over.
//
// Coordinates are converted to millimetres from the drawing's $INSUNITS
// (unitless drawings are taken as millimetres). Ends closer than the
// joining tolerance (0.01 mm unless stated) are joined at one point. Each
// closed outline that is not inside a hole of another becomes a section,
// with the closed outlines directly inside it as its holes; an outline
// inside a hole (an island) is a section of its own. A group of elements
// that does not close (an end that meets nothing, three ends at a point) is
// reported with its location and makes no section.
#pragma once

#include <string>
#include <vector>

#include "outline.h"

namespace tessaline::app {

inline constexpr double kDxf_Join_Tolerance = 0.01;  // mm

// One piece of the drawing in world millimetres with the layer it is on.
struct Layered_Piece {
  Piece piece;
  std::string layer;
};

// One section found in a drawing: named "<layer>@<x>,<y>" after the layer
// of its outer outline and the centre of its bounding box (mm).
struct Dxf_Section {
  std::string name;
  Outline outline;
  double x, y;  // centre of its bounding box
};

struct Dxf_Drawing {
  double unit_mm = 1;                 // millimetres per drawing unit
  std::vector<Dxf_Section> sections;  // left to right, then bottom to top
  std::vector<std::string> problems;  // what was refused or could not close
};

// The piece from (x1, y1) to (x2, y2) that bulges by `bulge`, the tangent
// of a quarter of its included angle (positive: counter-clockwise from the
// first point), as polylines give it; a segment for a bulge of 0.
Piece Bulge_Piece(double x1, double y1, double x2, double y2, double bulge);

// Reads the entities of the drawing's model space in millimetres. False
// with the reason in `error` when the file is missing, is not an ASCII DXF
// drawing, is larger than 256 MB or cannot be parsed; refused entities go
// to `problems`.
bool Read_Dxf_Pieces(const std::string& path, std::vector<Layered_Piece>* pieces, double* unit_mm,
                     std::vector<std::string>* problems, std::string* error);

// Joins the pieces' ends within `tolerance` mm, finds the closed outlines
// and groups them into sections (outer outline and holes).
void Find_Sections(std::vector<Layered_Piece> pieces, double tolerance, Dxf_Drawing* drawing);

// Read_Dxf_Pieces then Find_Sections. False only when the file cannot be
// read; a drawing with no closed outline gives no section and its problems.
bool Read_Dxf(const std::string& path, double tolerance, Dxf_Drawing* drawing, std::string* error);

}  // namespace tessaline::app
