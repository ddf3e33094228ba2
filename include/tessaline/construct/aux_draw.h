// Drawing of auxiliary construction elements and their rubber bands.
//
// Construction lines are segments through two of their points drawn as
// infinite lines across the view; construction circles and points are drawn
// as they are. Stored elements are painted (R2_COPYPEN, transparent
// background) with a width-1 pen of the colour table's pen rule (draw.h),
// dashed when attribute bit 0x01 is clear and solid when set; rubber bands
// use exclusive-or, so drawing one twice leaves the picture as it was.
//
// Infinite line through the logical points (X0, Y0) and (X1, Y1), with L, T,
// W, H the record's viewport origin and extent (vp_org_x, vp_org_y, vp_ext_x,
// vp_ext_y, taken as logical units: they are the same where the host draws in
// MM_TEXT): a line flatter than 45 degrees (|X1 - X0| > |Y1 - Y0|) runs from
// x = L to x = L + W, a steeper one from y = T to y = T + H, the other
// coordinate by MulDiv from the two points. A segment with equal x (equal y)
// values is drawn by the vertical (horizontal) variant. Lines whose logical
// coordinates MulDiv cannot take (beyond 32 bits) are not drawn.
#pragma once

#include "tessaline/display/coord.h"
#include "tessaline/export.h"
#include "tessaline/model/element.h"
#include "tessaline/platform/gdi.h"

// Draw_Auxil_Element for every element of the array, in index order; nothing
// when the array has no handles block.
TESSALINE_API void Draw_Auxil_Objects(HDC dc, const Coord_Syst* cs, const Objects_Array_Type* array,
                                      const COLORREF* colours);
// Nothing for an ordinary element (bit 0x01 set); otherwise a point, a
// segment or a circle by the functions below, other types not at all. An
// element that cannot be locked shows the guard box ("Messsage",
// "pElem==NULL") and draws nothing.
TESSALINE_API void Draw_Auxil_Element(HDC dc, const Coord_Syst* cs, HGLOBAL h,
                                      const COLORREF* colours);
// The point marker (draw.h) at a point element.
TESSALINE_API void Draw_Auxil_Node(HDC dc, const Coord_Syst* cs, HGLOBAL h,
                                   const COLORREF* colours);
// The infinite line through a segment's two points.
TESSALINE_API void Draw_Auxil_Line(HDC dc, const Coord_Syst* cs, HGLOBAL h,
                                   const COLORREF* colours);
// Vertical line through the segment's first point, from T to T + H.
TESSALINE_API void Draw_Auxil_Vert_Line(HDC dc, const Coord_Syst* cs, HGLOBAL h,
                                        const COLORREF* colours);
// Horizontal line through the segment's first point, from L to L + W.
TESSALINE_API void Draw_Auxil_Horiz_Line(HDC dc, const Coord_Syst* cs, HGLOBAL h,
                                         const COLORREF* colours);
// A circle element, hollow; shows the guard box for a handle that does not lock.
TESSALINE_API void Draw_Auxil_Circle(HDC dc, const Coord_Syst* cs, HGLOBAL h,
                                     const COLORREF* colours);

// ---- Rubber bands. The lines use a dashed pen of the colour and a
// transparent background; the circles the caller's pen (a handle that is not
// a pen draws nothing; the pen is not deleted), the hollow brush and a
// transparent background. Each returns the previous raster mode. ----------

// Infinite line through P0 and P1; nothing when they map to one logical point.
TESSALINE_API int Draw_Rubber_Auxil_Line(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c,
                                         COLORREF colour);
// Vertical (horizontal) line through P0.
TESSALINE_API int Draw_Rubber_Auxil_Vert_Line(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c,
                                              COLORREF colour);
TESSALINE_API int Draw_Rubber_Auxil_Horiz_Line(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c,
                                               COLORREF colour);
TESSALINE_API int Draw_Rubber_Circle_with_Pen(HDC dc, const Coord_Syst* cs, double xc, double yc,
                                              double r, HPEN pen);
// Circle centred on P0 through P1.
TESSALINE_API int Draw_Rubber_Circle_CenRad_with_Pen(HDC dc, const Coord_Syst* cs,
                                                     const Curs_Pos_Type* c, HPEN pen);
// Circle on the diameter P0 - P1.
TESSALINE_API int Draw_Rubber_Circle_by_Diam_with_Pen(HDC dc, const Coord_Syst* cs,
                                                      const Curs_Pos_Type* c, HPEN pen);
// Circle through P0, P1 and P2 (Circle_3Points, with its refusal test) once
// at least two points are placed (count >= 2; P2 is then the cursor; a count
// above 8 counts as 8). Returns the circle's radius, 0.0 when no circle is
// made or the pen is not a pen.
TESSALINE_API double Draw_Rubber_Circle_3Points_with_Pen(HDC dc, const Coord_Syst* cs,
                                                         const Curs_Pos_Type* c, int count,
                                                         HPEN pen);

// A cross-hair cursor at the world point (x, y): a vertical line from T to
// T + H and a horizontal one from L to L + W through it, in a solid pen of
// the colour with exclusive-or and a transparent background, so that drawing
// it twice at the same point erases it. Each pixel is inverted once (the
// crossing too). Nothing for a null record or a non-finite point. Returns
// the previous raster mode.
TESSALINE_API int Draw_Cros_Cursor(HDC dc, const Coord_Syst* cs, double x, double y,
                                   COLORREF colour);
