// Finite-element split of a surface into linear triangles.
//
// Nodes and triangles live in movable, zero-filled blocks that the split
// record owns. World coordinates (millimetres, y up).
#pragma once

#include <cstdint>

#include "tessaline/export.h"
#include "tessaline/platform/win_types.h"

// One node: its position and a flag, 0 for an inner node, 1 for a node on the
// outer boundary, 2, 3, ... for a node on the first, second, ... hole's
// boundary. Node blocks hold these records 24 bytes apart.
struct FEPOINT {
  double x;
  double y;
  uint8_t flag;
};
static_assert(sizeof(FEPOINT) == 24, "nodes lie 24 bytes apart");

// One triangle: three node numbers (indices into the node block), in the
// order of its corners.
struct FE3Ang {
  int32_t n[3];
};
static_assert(sizeof(FE3Ang) == 12, "a triangle is three 32-bit node numbers");

// A split record, owned by its caller; all zero is an empty split. Every
// handle that is set names a block the record owns (Free_FE_Split frees
// them). tau_x and tau_y hold one double per triangle after a torsion solve,
// results one double per triangle after a stress evaluation.
struct FE_Split {
  HGLOBAL nodes;   // FEPOINT block
  HGLOBAL second;  // freed with the record
  int32_t node_count;
  HGLOBAL triangles;  // FE3Ang block
  HGLOBAL results;    // one double per triangle
  HGLOBAL further;    // freed with the record
  HGLOBAL tau_x;      // torsion shear stress along x, one per triangle
  HGLOBAL tau_y;      // torsion shear stress along y, one per triangle
  int32_t triangle_count;
  int32_t spare[2];  // never touched by the split
};
static_assert(sizeof(FE_Split) == 44, "the split record is eleven 32-bit words");

class CProgressDlg;
struct Surface_Type;

// ---- Blocks and nodes ------------------------------------------------------

// A zero-filled movable block of count triangles (count * 12 bytes); 0 for
// a negative count or when it cannot be allocated.
TESSALINE_API HGLOBAL Alloc_FE3Ang(int count);
// A zero-filled movable block of count nodes (count * 24 bytes); 0 as above.
TESSALINE_API HGLOBAL Alloc_FEPoints(int count);

// Frees the seven blocks of the record that are set, in field order, sets
// each handle to 0 and both counts to 0. An empty or null record is left as
// it is.
TESSALINE_API void Free_FE_Split(FE_Split* split);

// Appends the node (x, y, flag) to the block *nodes holding *count nodes:
// a block of one node is allocated when *nodes is 0 (and *count set to 0),
// otherwise the block is reallocated to *count + 1 nodes. Returns the new
// node's index (the old count) and increases *count; -1 when the block
// cannot grow, or after the "Warning" box (its text and caption swapped, as
// hosts know it) when it cannot be locked.
TESSALINE_API int Add_FE_Point(HGLOBAL* nodes, int* count, double x, double y, int flag);
// Moves nodes position .. *count-1 one place up and writes (x, y, flag) at
// position (0 <= position <= *count). Returns position, or -1 with nothing
// changed.
TESSALINE_API int Insert_FE_Point(HGLOBAL* nodes, int* count, int position, int flag, double x,
                                  double y);
// Moves the nodes after position one place down. The block shrinks by one
// node only while more than one node remains, but the count always drops by
// one (a block of one node is kept for the next Add_FE_Point). 1 done, 0 for
// a position outside 0 .. *count-1.
TESSALINE_API int Remove_FE_Point(HGLOBAL* nodes, int* count, int position);
// Index of the first of the first count nodes whose coordinates equal
// (x, y) exactly, or -1.
TESSALINE_API int Find_FE_Point(HGLOBAL nodes, int count, double x, double y);
// The same, searching from index start down to 0 (a negative start is taken
// as 0; a start past the block as its last node).
TESSALINE_API int Find_FE_Point_Back(HGLOBAL nodes, int start, double x, double y);

// ---- Splitting a surface ----------------------------------------------------
//
// Both splits write triangles counter-clockwise (positive area in world
// axes, y up) and replace the blocks that the handles they fill name.

// Splits the surface on a grid of steps hx by hy over its outer rectangle.
//
// The sweep runs along the rectangle's longer side, one row of cells across
// it at a time. Where grid lines cross the contours, boundary nodes are made
// (flag 1 on an outer contour, 2, 3, ... on the first, second, ... hole),
// one node for crossings at the same coordinates. A cell with a corner
// inside the surface (Is_Point_In_Surface), or with its centre inside, is
// split: its part inside the surface, bounded by the cell's sides and the
// chords between the crossings on them, becomes triangles whose corners are
// cell corners and crossings. Neighbouring cells share their nodes, so the
// triangles cover the cut surface without overlap or gap; a contour is
// followed by its chords through each cell (the boundary cut), so a corner
// of a contour inside a cell is cut off and a hole that no grid line crosses
// is missed. Nodes are numbered in the order the sweep first uses them.
// The progress sink, when given, gets 0 .. 30 during the sweep, 40 before
// and 50 after Remove_Sliver_Triangles (5 degrees).
//
// Returns the number of triangles Remove_Sliver_Triangles took away; -1
// with empty outputs for null outputs, steps that are not positive and
// finite, a surface without outer contours or a rectangle without area or
// not finite, or a grid of more than 2^23 cells.
TESSALINE_API int Split_Surface_By_Grid(Surface_Type* surface, HGLOBAL* nodes, int* node_count,
                                        double hx, double hy, CProgressDlg* progress,
                                        int* triangle_count, HGLOBAL* triangles);

// Splits the surface with the finite-element mesher (GetFinalElementsForArea)
// at element size h: every contour is sampled into nodes about h apart, the
// mesher triangulates the region between them (no edge longer than h, no
// angle below about 20 degrees where the contours allow it) and the nodes
// are renumbered by reverse Cuthill-McKee. The nodes go into split->nodes
// and *node_count, the triangles into *triangles and *triangle_count (the
// callers pass the record's own fields). Returns 1 done; 0 when the mesher
// fails or is not built in, the surface has no outer contour, h is not
// positive and finite, or the sampling would exceed 2^22 nodes. A mesher
// result without nodes or elements leaves the record without triangles.
TESSALINE_API int Split_Surface_By_Mesher(Surface_Type* surface, FE_Split* split, int* node_count,
                                          HGLOBAL* triangles, int* triangle_count, HWND window,
                                          double h);

// Merges away the corner of every triangle with an angle below min_angle
// degrees that has a corner on a boundary (flag not 0): the shortest edge's
// ends are merged, the boundary end kept (the edge's first corner when both
// are on a boundary), the triangles that collapse removed, and the scan
// starts over at the second triangle (the first is never looked at again;
// kept as the splits have always done it). Triangles whose corners are all
// inner nodes are never touched. Both blocks are shrunk to their counts.
// Returns the number of triangles removed; 0 for bad arguments or a
// triangle naming a node that is not there.
TESSALINE_API int Remove_Sliver_Triangles(HGLOBAL* triangles, int* triangle_count, HGLOBAL* nodes,
                                          int* node_count, double min_angle);

// ---- Numbering --------------------------------------------------------------

// The largest difference between two node numbers of one triangle, over the
// first triangle_count triangles; 0 for none or a block that does not lock.
TESSALINE_API int Get_FE_Bandwidth(HGLOBAL triangles, int triangle_count);

// Renumbers the nodes by reverse Cuthill-McKee: each connected component in
// node order gets a pseudo-peripheral root, is numbered level by level (new
// neighbours by increasing degree, ties in order of discovery) and then
// reversed. Rewrites the node block in the new order and the triangles'
// node numbers. 1 done, 0 for blocks that do not hold the counts or a
// triangle naming a node that is not there (nothing changed).
TESSALINE_API int Renumber_FE_Nodes(HGLOBAL nodes, int node_count, HGLOBAL triangles,
                                    int triangle_count);
