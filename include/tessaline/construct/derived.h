// Elements derived from others: circles and lines tangent to lines and
// circles, arcs and segments whose ends sit on other elements' nodes, and the
// circle on a diameter between two points.
//
// Each reads the cursor-position record c (P0 = (x[0], y[0]), P1, P2 the
// points the user placed or picked), makes a new element, appends it to the
// objects array a and returns its handle; a null handle when it refuses (a
// null record or array, a parent of the wrong kind or whose handle does not
// lock, the refusals below, a failed allocation), and nothing is then added.
// The low bit of `flag`, where there is one, becomes attribute bit 0x01: 1
// makes an ordinary element, 0 an auxiliary construction element. Arcs are
// always ordinary (construction drawing has no arcs). "Line" means a segment
// element taken as its infinite line; "circle" a circle or an arc element
// taken as its whole circle.
//
// Creation types and parent slots (the parent links keep the element on its
// parents and step it down when one goes):
//    6  Add_TanCirToLine          {line}
//    7  Add_TanCirTo2Line         {line1, line2}       (one gone: 6)
//    8  Add_Aux_TanLineToCir      {circle}
//    9  Add_TanLineTo2Cir         {circle1, circle2}   (one gone: 8)
//   10  Add_TanCircleToCir        {circle}
//   14  Add_Circle_by_Diam2P with one point            {point}
//   15  Add_Circle_by_Diam2P with two points           {p1, p2}  (one gone: 14)
//   21  Add_Line_OnN with one node                     {element, node}
//   22  Add_Line_OnN with two nodes                    {e1, i1, e2, i2}
//   23  Add_Arc2PC with one node                       {e1, i1, 0, 0} or {0, 0, e2, i2}
//   24  Add_Arc2PC with two nodes                      {e1, i1, e2, i2}
// Without parents the creation type is 0. Node numbers are stored in their
// slots as plain numbers: 0 for the first end of a segment or an arc, any
// other number for the second, a node's index on a polyline or a spline.
#pragma once

#include "tessaline/export.h"
#include "tessaline/model/element.h"

// Circle centred on P0 touching the line: radius the distance from P0 to it.
// Refused when P0 lies on the line.
TESSALINE_API HGLOBAL Add_TanCirToLine(const Curs_Pos_Type* c, Objects_Array_Type* a, int flag,
                                       HGLOBAL line);
// Circle touching both lines in the angle sector that holds P0, centred
// where P0 projects onto that sector's bisector (the rubber band
// Draw_Rubber_Circle_Tan2L_with_Pen shows the same circle); for parallel
// lines the circle between them at P0. Refused for P0 on the crossing or one
// line given twice.
TESSALINE_API HGLOBAL Add_TanCirTo2Line(const Curs_Pos_Type* c, Objects_Array_Type* a, int flag,
                                        HGLOBAL line1, HGLOBAL line2);
// Auxiliary line from P0 touching the circle: the segment from P0 to the
// touching point nearer P1 (where the circle was picked); for P0 on the
// circle the tangent there, P0 to 10 units along it. Refused for P0 inside.
TESSALINE_API HGLOBAL Add_Aux_TanLineToCir(const Curs_Pos_Type* c, Objects_Array_Type* a,
                                           HGLOBAL circle);
// Line touching both circles: of the (up to four) common tangents the one
// whose touching points lie nearest P0 on circle1 and P1 on circle2 (least
// sum of squared distances); the segment from one touching point to the
// other. Refused when there is none (one circle inside the other) or the
// touching points coincide.
TESSALINE_API HGLOBAL Add_TanLineTo2Cir(const Curs_Pos_Type* c, Objects_Array_Type* a, int flag,
                                        HGLOBAL circle1, HGLOBAL circle2);
// Circle centred on P0 touching the circle, from outside or inside: of the
// two, the one touching nearer P1, where the circle was picked
// (Tangent_Circle_Centred). Refused for P0 on the centre or on the circle.
TESSALINE_API HGLOBAL Add_TanCircleToCir(const Curs_Pos_Type* c, Objects_Array_Type* a, int flag,
                                         HGLOBAL circle);
// Ordinary segment from node i1 of e1 to node i2 of e2
// (Get_El_Node_Coord_by_Handle); an element given as 0 takes P0 (for the
// first end) or P1 (for the second) instead. With e2 alone the ends are
// swapped, so that the first end is always the one on the first parent.
// Refused when the ends coincide or a given element has no such node.
TESSALINE_API HGLOBAL Add_Line_OnN(const Curs_Pos_Type* c, Objects_Array_Type* a, HGLOBAL e1,
                                   int i1, HGLOBAL e2, int i2);
// Arc from the first end counter-clockwise to the second, the ends taken as
// Add_Line_OnN takes them, centred where P2 projects onto the ends'
// perpendicular bisector (Arc_2Points_Centre; the rubber band
// Draw_Rubber_Arc2PC shows it with P0, P1, P2). Refused when the ends
// coincide or a given element has no such node.
TESSALINE_API HGLOBAL Add_Arc2PC(const Curs_Pos_Type* c, Objects_Array_Type* a, HGLOBAL e1, int i1,
                                 HGLOBAL e2, int i2);
// Circle on the diameter between the point elements p1 and p2; an element
// given as 0 (or that is not a point) takes P0 (P1) instead and is not
// recorded as a parent. Refused when the ends coincide.
TESSALINE_API HGLOBAL Add_Circle_by_Diam2P(const Curs_Pos_Type* c, Objects_Array_Type* a, int flag,
                                           HGLOBAL p1, HGLOBAL p2);
