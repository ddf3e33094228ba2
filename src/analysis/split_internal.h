// Private helpers of the finite-element split: nodes and triangles read out
// of their blocks into vectors and written back, and the steps that work on
// the vectors (renumbering, sliver removal) for the splits to share.
#pragma once

#include <functional>
#include <vector>

#include "tessaline/analysis/split.h"

struct Split_Mesh {
  std::vector<FEPOINT> nodes;
  std::vector<FE3Ang> triangles;
};

// The first count records of a block, bounded by the block; false when the
// count is negative, more than the block holds, or a non-empty block does
// not lock.
bool Read_FE_Nodes(HGLOBAL block, int count, std::vector<FEPOINT>* out);
bool Read_FE_Triangles(HGLOBAL block, int count, std::vector<FE3Ang>* out);
// Writes the records over the start of the block (which must hold them).
bool Write_FE_Nodes(HGLOBAL block, const std::vector<FEPOINT>& nodes);
bool Write_FE_Triangles(HGLOBAL block, const std::vector<FE3Ang>& triangles);
// A new block holding the records; 0 for none or when it cannot be made.
HGLOBAL New_FE_Node_Block(const std::vector<FEPOINT>& nodes);
HGLOBAL New_FE_Triangle_Block(const std::vector<FE3Ang>& triangles);

// True when every corner names one of node_count nodes.
bool FE_Corners_Valid(const std::vector<FE3Ang>& triangles, size_t node_count);

// Largest difference between node numbers of one triangle.
int FE_Bandwidth(const std::vector<FE3Ang>& triangles);
// Reverse Cuthill-McKee renumbering of the mesh, in place (corners valid).
void Renumber_RCM(Split_Mesh* mesh);
// Remove_Sliver_Triangles on the vectors (corners valid); returns the
// number of triangles removed.
int Remove_Slivers(Split_Mesh* mesh, double min_angle);

// The mesher split of Split_Surface_By_Mesher into vectors, renumbered or
// in the mesher's own order (for measuring what renumbering gains). With
// max_arc_angle > 0 an arc or circle is also sampled into pieces that turn
// by at most that angle (radians), however short they get. 1 done.
int Mesh_Surface(struct Surface_Type* surface, HWND window, double h, bool renumber,
                 Split_Mesh* mesh, double max_arc_angle = 0.0);

// The largest angle a boundary piece of an arc or circle turns by in the
// torsion analysis's splits: its curved elements move each such chord's
// middle onto the arc, by the chord's sagitta, and a chord of a small
// fillet sampled only h apart can bulge past the triangle on it (the
// quadratic element folds). At 12 degrees the sagitta stays under a fifth
// of the lowest triangle the mesher's angle bound leaves.
inline constexpr double kTorsion_Arc_Angle = 3.14159265358979323846 / 15;

// Split_Surface_By_Mesher with arcs and circles sampled at most
// max_arc_angle a piece, and every arc in two pieces at least (a mesher
// node in the middle of a single chord lies too far inside to be known as
// the arc's): the starting split of the torsion analysis.
int Split_Surface_For_Torsion(struct Surface_Type* surface, FE_Split* split, double h,
                              double max_arc_angle = kTorsion_Arc_Angle);

// Counter-clockwise order: swaps two corners of a triangle of negative
// signed area.
void Orient_CCW(Split_Mesh* mesh);

// A corner of a cell's polygon: its position and its node.
struct Cell_Point {
  double x, y;
  int node;
};

// Triangulates a polygon whose corners lie counter-clockwise on the
// boundary of a convex cell (so the polygon is convex; corners may lie in
// line along a side). Every corner is a corner of some triangle unless the
// polygon has no area, so neighbouring cells that share the corners of a
// side meet without a hanging node. Thin ears are avoided (the fattest ear
// first); when no ear is left that keeps the rest a proper polygon, a fan
// from a new inner node at the corners' mean finishes it (inner_node makes
// that node and returns its number).
void Triangulate_Cell_Polygon(std::vector<Cell_Point> poly,
                              const std::function<int(double, double)>& inner_node,
                              std::vector<FE3Ang>* out);
