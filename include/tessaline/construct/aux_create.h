// Constructors of auxiliary construction elements: construction lines,
// points and circles that help the user place real geometry.
//
// Every constructor reads its points from the cursor-position record c
// (P0 = (x[0], y[0]), P1 = (x[1], y[1]), P2 = (x[2], y[2])), makes a new
// element, appends it to the objects array a and returns its handle; a null
// handle when it refuses (below), when c or a is null, or when a block
// cannot be allocated or the array cannot grow (nothing is then added and
// nothing is left allocated). Points are compared exactly.
//
// A construction line is a segment through two of its points, drawn across
// the whole view (aux_draw.h). The attribute word of every element made here
// is 0 (auxiliary, unselected, inactive), except for Add_Circle_3P.
//
// The creation type and the parent slots record what the element was made
// from, so that the parent links (model/parent.h) keep it attached:
//
//   ct   made by                                 slots
//    0   any constructor without elements        none
//    1   Add_Aux_Par_Line                        {parent}          count left 0
//    2   Add_Aux_Per_Line                        {parent}
//    5   Add_Aux_Node_Cross2L                    {line1, line2}    count left 0
//   11   Add_Aux_V_Line_P, Add_Aux_H_Line_P,     {element, node}
//        Add_Auxil_Line with one element
//   12   Add_Auxil_Line_PerToCircle              {circle}
//   13   Add_Aux_Circle_CR with a parent         {parent}
//   14   Add_Aux_Circle_D with a parent          {parent}
//   25   Add_Auxil_Line_2P                       {p1, p2}
//        Add_Auxil_Line with two elements        {e1, i1, e2, i2}
//   28   Add_Circle_3P with p1, p2               {p1, p2, 0}
//   29   Add_Circle_3P with p1, p2, p3           {p1, p2, p3}
//
// A node number is stored in its slot as a plain number, not a handle. The
// parallel line and the crossing point fill their lists but leave the parent
// count at 0; kept so that such elements read, copy and save as they always
// have (a host that trusts the count sees no parents there).
// Parents are stored as given; a constructor does not check them.
#pragma once

#include "tessaline/export.h"
#include "tessaline/model/element.h"

// Vertical line through P0: the segment P0 - (x0, y0 + 10).
TESSALINE_API HGLOBAL Add_Auxil_Vert_Line(const Curs_Pos_Type* c, Objects_Array_Type* a);
// Horizontal line through P0: the segment P0 - (x0 + 10, y0).
TESSALINE_API HGLOBAL Add_Auxil_Horiz_Line(const Curs_Pos_Type* c, Objects_Array_Type* a);
// Vertical (horizontal) line through node `node` of `element`
// (Get_El_Node_Coord_by_Handle), creation type 11 {element, node}; through P0
// with creation type 0 when element is 0. Refused when the element gives no
// node (a circle, a handle that does not lock, a node index it does not hold).
TESSALINE_API HGLOBAL Add_Aux_V_Line_P(const Curs_Pos_Type* c, Objects_Array_Type* a,
                                       HGLOBAL element, int node);
TESSALINE_API HGLOBAL Add_Aux_H_Line_P(const Curs_Pos_Type* c, Objects_Array_Type* a,
                                       HGLOBAL element, int node);
// Line P0 - P1, refused when P0 = P1. Both elements 0: creation type 0; e1
// only: 11 {e1, i1}; both: 25 {e1, i1, e2, i2}; e2 only: the segment P1 - P0
// (ends swapped, so that its first end is again the one on its parent), 11
// {e2, i2}.
TESSALINE_API HGLOBAL Add_Auxil_Line(const Curs_Pos_Type* c, Objects_Array_Type* a, HGLOBAL e1,
                                     int i1, HGLOBAL e2, int i2);
// Line between the point elements p1 and p2 (an element that is not a point
// gives (0, 0)); creation type 25 {p1, p2}. Not refused for equal points.
TESSALINE_API HGLOBAL Add_Auxil_Line_2P(const Curs_Pos_Type* c, Objects_Array_Type* a, HGLOBAL p1,
                                        HGLOBAL p2);
// Lines P0 - P1 that the host made perpendicular (ct 2) or parallel (ct 1,
// count 0) to `parent`, or perpendicular to the circle `circle` (ct 12).
// Refused when P0 = P1.
TESSALINE_API HGLOBAL Add_Aux_Per_Line(const Curs_Pos_Type* c, Objects_Array_Type* a,
                                       HGLOBAL parent);
TESSALINE_API HGLOBAL Add_Aux_Par_Line(const Curs_Pos_Type* c, Objects_Array_Type* a,
                                       HGLOBAL parent);
TESSALINE_API HGLOBAL Add_Auxil_Line_PerToCircle(const Curs_Pos_Type* c, Objects_Array_Type* a,
                                                 HGLOBAL circle);
// Point P0, where the host found the crossing of line1 and line2; ct 5,
// count 0.
TESSALINE_API HGLOBAL Add_Aux_Node_Cross2L(const Curs_Pos_Type* c, Objects_Array_Type* a,
                                           HGLOBAL line1, HGLOBAL line2);
// Circle centred on P0 through P1; ct 13 {parent} or 0 without a parent.
// Refused when the radius is not greater than 0.
TESSALINE_API HGLOBAL Add_Aux_Circle_CR(const Curs_Pos_Type* c, Objects_Array_Type* a,
                                        HGLOBAL parent);
// Circle on the diameter P0 - P1; ct 14 {parent} or 0. Refused when the
// radius is not greater than 0.
TESSALINE_API HGLOBAL Add_Aux_Circle_D(const Curs_Pos_Type* c, Objects_Array_Type* a,
                                       HGLOBAL parent);
// Circle through P0, P1, P2 (Circle_3Points, tangent.h, with its refusal of
// |(y2 - y1)(x1 - x0)| == |(x2 - x1)(y1 - y0)|, which also refuses chords of
// equal and opposite slopes). The low bit of `flag` becomes attribute bit
// 0x01, so the circle may be ordinary. With p1 and p2: ct 29 when p3 is
// given, else 28, a three-slot list {p1, p2, p3}; otherwise ct 0.
TESSALINE_API HGLOBAL Add_Circle_3P(const Curs_Pos_Type* c, Objects_Array_Type* a, int flag,
                                    HGLOBAL p1, HGLOBAL p2, HGLOBAL p3);
