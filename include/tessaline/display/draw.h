// Element drawing and rubber-band feedback.
//
// Elements are painted (R2_COPYPEN, transparent background, both restored
// afterwards) in colours that their attribute bits choose from the colour
// table; rubber bands are drawn with exclusive-or (R2_XORPEN), so drawing the
// same band twice leaves the picture as it was: that is how a host erases the
// previous band before drawing the next. Coordinates are world units, mapped
// through the record's world rectangle and logical window.
//
// Colour table: COLORREF[kObject_Colors]; entry 0 holds the scheme number,
// entries 1 to 10 colours (0x00BBGGRR). Element drawing reads entry 3
// (selected, and the exclusive-or overlay of selected pieces), 4 (ordinary),
// 5 (active, wins over selected) and 6 (auxiliary construction element).
//
// Pen rule for an attribute word: width 1, PS_SOLID when bit 0x01 is set and
// PS_DASH when clear; colour entry 5 if bit 0x08, else 3 if 0x02, else 4 if
// 0x01, else 6. Every pen lives for one stroke or one element.
//
// Point marker: a circle 7 logical units across (radius 3) about the point,
// hollow for elements; a point outside the world rectangle widened by a
// tenth of its size is not marked.
//
// Cursor-position record (Curs_Pos_Type): point i is (x[i], y[i]), i = 0..7.
// A band that reads points i.. i+k draws nothing unless all of them exist
// (0 <= i and i + k <= 7). A band given a null record or coordinate system, or
// a bad index, draws nothing and returns the context's current mode.
#pragma once

#include <cstdint>

#include "tessaline/display/coord.h"
#include "tessaline/export.h"
#include "tessaline/model/element.h"
#include "tessaline/platform/gdi.h"

inline constexpr int kObject_Colors = 11;

// Fills table entries 0..10 for schemes 0..3; a scheme of 4 or more only
// stores its number in entry 0. Returns the table (null stays null).
TESSALINE_API COLORREF* Set_Object_Colors(unsigned scheme, COLORREF* table);

// Draws one element. Points, segments, circles and arcs whose attribute bit
// 0x01 is clear are handed to the auxiliary drawing (Draw_Auxil_Element).
// Polylines and splines are drawn piece by piece, each piece by its own word;
// a selected piece is painted in its pen and then exclusive-or'ed once more
// with a pen of entry 3 (both strokes are kept on purpose, although a piece
// selected but not active ends up black). Spline pieces are sampled at
// whole steps of the accumulated chord length, one step being the world
// length of 2 logical units (at most 4096 strokes a piece). Nothing for a
// null or unlockable handle, an unknown type, or a null context record or
// colour table.
TESSALINE_API void Draw_Element(HGLOBAL h, HDC dc, const Coord_Syst* cs, const COLORREF* colours);
// Draw_Element for every element of the array from index 0 upward; nothing
// when the array has no handles block.
TESSALINE_API void Draw_Objects(HDC dc, const Coord_Syst* cs, const Objects_Array_Type* array,
                                const COLORREF* colours);

// ---- Rubber bands: solid pen of the colour, exclusive-or, hollow brush for
// closed figures; each returns the previous raster mode. -------------------

// Marker at P0, filled with a solid brush of the colour.
TESSALINE_API int Draw_Rubber_Point(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c,
                                    COLORREF colour);
// Hollow marker at Pi (0 <= i <= 7).
TESSALINE_API int Draw_Rubber_Point_by_Index(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c,
                                             int i, COLORREF colour);
// Line P0 - P1.
TESSALINE_API int Draw_Rubber_Line(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c,
                                   COLORREF colour);
// Line Pi - Pi+1 (0 <= i <= 6).
TESSALINE_API int Draw_Rubber_Line_by_Index(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c,
                                            int i, COLORREF colour);
// Rectangle with the corners P0 and P1.
TESSALINE_API int Draw_Rubber_Rectangle(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c,
                                        COLORREF colour);
// Rectangle centred on P0 with a corner at P1.
TESSALINE_API int Draw_Rubber_Rectangle_CentDiag(HDC dc, const Coord_Syst* cs,
                                                 const Curs_Pos_Type* c, COLORREF colour);
// Circle centred on P0 through P1.
TESSALINE_API int Draw_Rubber_Circle(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c,
                                     COLORREF colour);
// Circle on the diameter P0 - P1.
TESSALINE_API int Draw_Rubber_Circle_by_Diam(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c,
                                             COLORREF colour);
// Circle centred on P0 tangent to the given circle (centre P1, radius x[2]);
// of the two tangent circles the one touching nearer P3 (the point where the
// given circle was picked), as Tangent_Circle_Centred chooses. Dashed pen
// when `solid` is 0. Also sets a transparent background; returns the
// previous background mode.
TESSALINE_API int Draw_Rubber_Circle_TanCir(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c,
                                            int solid, COLORREF colour);
// Arc from P0 counter-clockwise to P1 whose centre is P2 moved onto the
// perpendicular bisector of P0 - P1 (Arc_2Points_Centre).
TESSALINE_API int Draw_Rubber_Arc2PC(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c,
                                     COLORREF colour);
// Arc centred on Pi from the start Pi+1 counter-clockwise to the direction of
// Pi+2 (0 <= i <= 5; Arc_Centre_Start_End).
TESSALINE_API int Draw_Rubber_Arc_CenBegEnd_by_Index(HDC dc, const Coord_Syst* cs,
                                                     const Curs_Pos_Type* c, int i,
                                                     COLORREF colour);
// Circle tangent to the lines P0 - P1 and P2 - P3 in the angle sector that
// holds P4, centred where P4 projects onto that sector's bisector
// (Tangent_Circle_2Line), drawn with the caller's pen (not deleted; a handle
// that is not a pen draws nothing).
TESSALINE_API int Draw_Rubber_Circle_Tan2L_with_Pen(HDC dc, const Coord_Syst* cs,
                                                    const Curs_Pos_Type* c, HPEN pen);
// Line from P0 to the touching point of its tangent to the circle (centre P1,
// radius x[2]); of the two tangents the one touching nearer P3 (the point
// where the circle was picked). Nothing when P0 lies inside the circle.
TESSALINE_API int Draw_Rubber_Line_TanCir(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c,
                                          COLORREF colour);
