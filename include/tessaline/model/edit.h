// Editing whole objects arrays: picking and toggling the selection under the
// cursor, clearing and listing the selection, deleting, moving and copying
// elements, and the display copies that a host drags.
//
// Selection is attribute bit 0x02: on the attribute word of a point,
// segment, circle or arc; on the piece words 0 .. n-2 of a polyline (word i
// for the piece from node i to node i + 1); on the words of a spline, node i
// in word 2i and the piece after it in word 2i + 1. Index lists are int
// arrays of indexes into an objects array; the caller gives room for the
// count it passes (or, for Get_Selected_Elem_Index, for the array's count).
// Indexes that do not name an element are passed over.
#pragma once

#include <cstdint>

#include "tessaline/display/coord.h"
#include "tessaline/export.h"
#include "tessaline/model/element.h"
#include "tessaline/platform/gdi.h"

// ---- Picking ---------------------------------------------------------------

// The pick aperture lives in the coordinate record's first spare double
// (cs->unused_a[0]), in logical units; the library never writes it. 0 (as in
// a fresh record), a negative or a non-finite value means the default.
inline constexpr double kDefault_Pick_Aperture = 4.0;
// The aperture in logical units that Select_Elements uses for this record.
TESSALINE_API double Get_Pick_Aperture(const Coord_Syst* cs);
// Stores an aperture in logical units; returns the record.
TESSALINE_API Coord_Syst* Set_Pick_Aperture(Coord_Syst* cs, double logical_units);

// Toggles the selection of every element within the aperture of the world
// point (x, y) and redraws each one hit with Draw_Element. The aperture,
// logical units, becomes world units through LPtoWP_Dist. Hit tests:
//  - point: its distance;
//  - ordinary segment: its distance, or for a segment whose larger on-screen
//    extent (width or height, logical units) is at most a quarter of the
//    aperture, the distance to its midpoint;
//  - circle, arc: distance to the curve;
//  - construction element (bit 0x01 clear): as Get_Nearest_Line measures a
//    line (the infinite line), other kinds as above;
//  - polyline: its nearest piece; that piece's word is toggled;
//  - spline: its nearest node when within the aperture (the node's word is
//    toggled), else the nearest piece of the curve as this view draws it (its
//    piece word is toggled).
// Returns the index of the last element hit, -1 when none was hit or the
// array holds no element (then the context is not touched).
TESSALINE_API int Select_Elements(HDC dc, Objects_Array_Type* array, const Coord_Syst* cs, double x,
                                  double y, const COLORREF* colours);

// Clears the selection of every element and redraws it. The handles block is
// then locked once more instead of unlocked, so each call leaves its lock
// count two higher (the count saturates at 255): kept on purpose, the block
// is reached only through lock/unlock pairs, which tolerate it.
TESSALINE_API void Unselect_All_Elements(Objects_Array_Type* array, HDC dc, const Coord_Syst* cs,
                                         const COLORREF* colours);

// Writes the index of every selected element, from index 0 upward, and
// returns how many. A simple element: bit 0x02. A polyline: every piece word
// 0 .. n-2 (so a one-node polyline counts as selected). A spline: (word 0 or
// 1) and (word 2n-2 or 2n-3) and, for k = 1 .. 2n-4, one of the words k,
// k+1, k+2. 0 for a null list.
TESSALINE_API int Get_Selected_Elem_Index(const Objects_Array_Type* array, int* list);

// ---- Deleting, copying, moving ------------------------------------------------

// From the last index down: each selected point, segment, circle or arc is
// released by every element of the second and then the third array
// (Cut_Parent_Link) and removed (its record, parent list and second list are
// freed). A spline makes the result 1 without being deleted; a polyline is
// left alone. Returns 1 when something was deleted (or a spline met), else -1.
TESSALINE_API int Delete_Elements(Objects_Array_Type* array, Objects_Array_Type* second,
                                  Objects_Array_Type* third);

// Appends the source's handle at each of the n listed indexes to the
// destination (shared, not copied). Nothing for n < 1 or a null list.
TESSALINE_API void Copy_ObjAr_by_Index(const Objects_Array_Type* source,
                                       Objects_Array_Type* destination, const int* list, int n);

// Translates elements by (dx, dy) world units: a point, both ends of a
// segment, a circle's centre, an arc's centre and end points (radius and
// angles unchanged), every node of a polyline or spline (the moments do not
// change under translation).
TESSALINE_API void Move_Objects(const Objects_Array_Type* array, double dx, double dy);
TESSALINE_API void Move_Objects_by_Index(const Objects_Array_Type* array, const int* list, int n,
                                         double dx, double dy);

// Sorts the first n elements of the source into A (attribute bit 0x01 set,
// ordinary) and B (clear, construction). A polyline or a spline, whose
// attribute word is a handle, goes where the previous element went (B for
// the first). Returns 1, or 0 for n < 1.
TESSALINE_API int Add_Objects_by_Selected_Attr(Objects_Array_Type* a, Objects_Array_Type* b,
                                               const Objects_Array_Type* source, int n);

// ---- Display copies ----------------------------------------------------------
//
// A display copy is a movable block: an iElement_Header (type, node_count,
// blocks) followed, for a simple copy, by node_count logical POINTs.
//   point     one POINT, drawn as the point marker;
//   segment   its two ends;
//   circle    a closed chain round it, arc  a chain along it (chords within a
//             quarter of a logical unit, at most 2049 points);
//   polyline  blocks[0]: its n nodes as POINTs, blocks[1]: its n attribute
//             words (node_count = n);
//   spline    blocks[0]: the curve as Draw_Element strokes it in this view,
//             blocks[1]: its n nodes, blocks[2]: its 2n attribute words,
//             blocks[3..6] 0 (node_count = n).
// DeleteiObjectsArray frees a display array with its copies.

// Appends a display copy of every element of the source, mapped through the
// record, to `copies`. Returns the number of copies made.
TESSALINE_API int Create_Moved_iObjects(const Objects_Array_Type* source, const Coord_Syst* cs,
                                        Objects_Array_Type* copies);
// Draws every copy shifted by (dx, dy) logical units with a solid width-1
// pen of the colour in exclusive-or and a hollow brush, so that drawing the
// same shift twice erases it: draw at the old shift, then at the new one,
// while the host drags. Returns the previous raster mode.
TESSALINE_API int Draw_iObjects_with_Disp(HDC dc, const Objects_Array_Type* copies, int32_t dx,
                                          int32_t dy, COLORREF colour);
