// Points on elements and at their crossings: snapping a point to a line, a
// circle or an arc, or to where two of them cross.
//
// Each takes the cursor-position record c (P0 = (x[0], y[0]) is where the
// user placed the point), the objects array a, a flag whose low bit becomes
// attribute bit 0x01 (1: an ordinary point element, 0: an auxiliary node
// drawn by the construction drawing), and the elements the point lies on. It
// appends a new point element to a and returns its handle, or a null handle
// when it refuses: a null record or array, an element of the wrong kind or
// whose handle does not lock, no crossing, a failed allocation. Nothing is
// then added.
//
// "Line" means a segment element: an auxiliary segment (bit 0x01 clear,
// drawn across the view) counts as its infinite line, an ordinary one as the
// segment itself for the projection of Add_Point_OnL; crossings are always
// taken with the infinite lines, so a point may lie on a segment's
// extension. "Circle" means a circle or an arc element; crossings and
// projections on an arc keep to the arc itself.
//
// Creation types and parent slots, so that the parent links keep the point
// on what it was made from and step it down when one of them goes:
//   16  Add_Point_OnL    {line}
//   17  Add_Point_On2L   {line1, line2}       (either gone: 16 on the other)
//   18  Add_Point_OnC    {circle}
//   19  Add_Point_On2C   {circle1, circle2}   (either gone: 18 on the other)
//   20  Add_Point_OnLC   {line, circle}       (either gone: 16 or 18)
#pragma once

#include "tessaline/export.h"
#include "tessaline/model/element.h"

// The point of the line nearest to P0 (the foot of the perpendicular).
TESSALINE_API HGLOBAL Add_Point_OnL(const Curs_Pos_Type* c, Objects_Array_Type* a, int flag,
                                    HGLOBAL line);
// The crossing of the two lines; refused for parallel lines or one line.
TESSALINE_API HGLOBAL Add_Point_On2L(const Curs_Pos_Type* c, Objects_Array_Type* a, int flag,
                                     HGLOBAL line1, HGLOBAL line2);
// The point of the circle or arc nearest to P0 (for an arc, its nearer end
// when P0's direction misses it); refused for P0 at the centre.
TESSALINE_API HGLOBAL Add_Point_OnC(const Curs_Pos_Type* c, Objects_Array_Type* a, int flag,
                                    HGLOBAL circle);
// The crossing of the line with the circle or arc nearest to P0 (a tie takes
// the first along the line); refused when they do not meet.
TESSALINE_API HGLOBAL Add_Point_OnLC(const Curs_Pos_Type* c, Objects_Array_Type* a, int flag,
                                     HGLOBAL line, HGLOBAL circle);
// The crossing of two circles or arcs nearest to P0; refused when they do
// not meet (also for concentric ones and one element given twice).
TESSALINE_API HGLOBAL Add_Point_On2C(const Curs_Pos_Type* c, Objects_Array_Type* a, int flag,
                                     HGLOBAL circle1, HGLOBAL circle2);
