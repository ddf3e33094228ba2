// Surfaces: regions of a section made of outer contours minus holes.
//
// A surface holds two lists of contour records (tessaline/contour/contour.h),
// each record in a movable block of its own: the outer contours and the
// holes (inner contours). A point belongs to the surface when it lies inside
// some outer contour and inside no hole. World coordinates (millimetres,
// y up), radians, arcs counter-clockwise from start to end angle.
#pragma once

#include <cstdint>

#include "tessaline/contour/contour.h"
#include "tessaline/display/coord.h"
#include "tessaline/export.h"
#include "tessaline/platform/gdi.h"
#include "tessaline/platform/win_types.h"

// A surface record, owned by the caller; all zero is a valid empty surface.
// Each list is a block of `capacity` handles whose first `count` entries are
// movable blocks holding one Contour_Type each. The surface owns those
// blocks, their contour elements and the two list blocks, never the drawing
// elements. A list grows by exactly one entry per overflow and never shrinks.
struct Surface_Type {
  int32_t hole_capacity;
  int32_t hole_count;
  HGLOBAL holes;
  int32_t outer_capacity;
  int32_t outer_count;
  HGLOBAL outers;
};
static_assert(sizeof(Surface_Type) == 24, "surface record is six words");

// Largest number of times Is_Point_In_Contour moves its ray off a vertex
// before it counts a vertex hit as an ordinary crossing.
inline constexpr int kContour_Max_Nudges = 100;

// ---- Containment ------------------------------------------------------------

// 1 when (x, y) lies inside the closed contour, else 0.
//
// Counts the crossings of a horizontal ray from the point towards smaller x
// (a crossing at the point's own x counts) and takes the point as inside
// when their number is odd; no tolerance is applied:
//  - a segment crossed at one of its end points moves the ray up by 1e-10
//    (to the next double where 1e-10 is below the spacing of doubles) and
//    the count restarts; a segment lying on the ray counts nothing;
//  - a circle counts each of its two crossings left of the point, so a
//    tangent ray counts two;
//  - an arc's crossings are those of Cross_Horiz_Line_Arc (a crossing at an
//    end's height is that end exactly), except that a crossing is taken as
//    on the arc by the side of the chord through its stored ends rather
//    than by its direction: two arcs meeting at a joint then never both
//    take a crossing that passes the joint by a rounding hair (a circle
//    drawn as two half arcs, tested at the height of its centre);
//  - an arc's first crossing at an arc end point moves the ray as above; its
//    second crossing at an end point counts half when the arc and the
//    neighbour sharing that point (the previous element first, then the
//    next) span the ray's height strictly between the bottom and the top of
//    their rectangles together (the contour passes through: half from each
//    side), one when the height is at that bottom or top (it turns back),
//    nothing when no neighbour shares the point exactly;
//  - other element types count nothing.
// After kContour_Max_Nudges moves a vertex hit counts as one crossing, so
// no contour can keep the test going. An empty contour, a null record or a
// contour element whose drawing element does not lock gives 0 (the latter
// after the "Messsage" / "pElem==NULL" box).
TESSALINE_API int Is_Point_In_Contour(Contour_Type* contour, double x, double y);

// 1 when (x, y) is inside no hole and inside some outer contour, else 0
// (also for a null surface or one without outer contours).
TESSALINE_API int Is_Point_In_Surface(Surface_Type* surface, double x, double y);

// ---- Elements of a surface --------------------------------------------------

// Position in the outer list of the first outer contour holding a contour
// element {element, index, flag}, or -1.
TESSALINE_API int Is_Ext_Surface_El(Surface_Type* surface, HGLOBAL element, int index, int flag);
// The same over the holes.
TESSALINE_API int Is_Int_Surface_El(Surface_Type* surface, HGLOBAL element, int index, int flag);
// 1 when some contour of the surface holds {element, 0, 1} (as the contour
// search stores it), else 0.
TESSALINE_API int Is_Surface_El(Surface_Type* surface, HGLOBAL element);

// ---- Rectangles -------------------------------------------------------------

// The union of the rectangles (Get_Element_Rect) of every element of every
// outer contour: left the smallest x, right the largest, top the largest y,
// bottom the smallest. 1 done; 0 with the outputs untouched when the
// surface has no outer contour with a readable element.
TESSALINE_API int Get_Surface_Extern_Rect(Surface_Type* surface, double* left, double* top,
                                          double* right, double* bottom);

// The same union in axes turned counter-clockwise by `angle` (coordinates
// as Rotate2D gives them). Points, segments, circles and arcs are bounded
// exactly; any other element by its turned plain rectangle.
TESSALINE_API int Get_Surface_Extern_Angled_Rect(Surface_Type* surface, double angle, double* left,
                                                 double* top, double* right, double* bottom);

// ---- Regions and drawing ---------------------------------------------------

// The surface as a graphics region in the logical coordinates of `cs` (its
// world window mapped onto its logical window by WPtoLP): the union of the
// outer contours' regions minus the holes' regions. Each contour's region is
// the polygon of its outline (WINDING fill), arcs and circles divided so
// that no chord strays more than half a pixel of `dc` from the curve (the
// context's window and viewport extents give a pixel's logical size; a
// null context counts one logical unit as a pixel), at most 4096 pieces an
// arc. A contour whose element does not lock adds nothing (after the
// "Messsage" / "pElem==NULL" box); a surface without outer contours gives
// an empty region. The caller deletes the region. NULL for a null surface
// or record, a world or logical window of no size, or when a region cannot
// be made.
TESSALINE_API HRGN Create_Surface_Rgn(Surface_Type* surface, HDC dc, const Coord_Syst* cs);

// The same region from a world window and a logical window given directly
// (a preview's mapping that has no Coord_Syst), one logical unit counted as
// a pixel.
TESSALINE_API HRGN Create_Surface_Rgn1(Surface_Type* surface, const World_Window* world,
                                       const Logical_Window* window);

// Fills the region with `fill`, then frames it one pixel wide with `frame`,
// on the context switched for the call to MM_TEXT with both origins at 0,
// so the region's coordinates are device pixels; the context's mapping is
// restored after. Colours go through the context's raster operation;
// CLR_INVALID leaves out the fill or the frame. 1 done, 0 for a context or
// region that is not valid.
TESSALINE_API int Draw_Cont_Rgn_MM_TEXT(HDC dc, HRGN rgn, COLORREF fill, COLORREF frame);

// Draws the surface on the context in the logical coordinates of `cs`
// (the context's own mapping applies): its region (Create_Surface_Rgn)
// filled with `fill` and framed about one pixel wide with `frame`, which
// outlines the holes too. CLR_INVALID leaves out the fill or the frame. 1 done, 0 as
// Create_Surface_Rgn fails or the context cannot draw.
TESSALINE_API int Draw_Surface(Surface_Type* surface, HDC dc, const Coord_Syst* cs, COLORREF fill,
                               COLORREF frame);

// ---- Building and freeing ---------------------------------------------------

// Appends a contour record block (a movable block holding one Contour_Type,
// as Create_El_Contour makes it) to the holes when `is_hole` is non-zero,
// else to the outer contours. The surface takes the block over. Returns its
// position in that list, or -1 (the caller keeps the block) when the surface
// is null or inconsistent, the block does not hold a contour record, or the
// list cannot grow.
TESSALINE_API int Add_Surface_Contour(Surface_Type* surface, HGLOBAL contour_block, int is_hole);

// Empties the surface, then finds every closed contour among the elements
// of `array` and files it as an outer contour or a hole.
//
// Elements are taken in array order; each one not yet in a contour starts a
// contour search (Search_Contour's rules) that may use only elements not yet
// in a contour, so every element lies in at most one contour and a circle
// is a contour by itself. Elements that close no chain are left out. A
// contour is filed by its depth: the number of other contours that contain
// it (tested at the middle of its first element). Depth 0 (a section's
// outline) makes an outer contour, depth 1 a hole. A contour at depth 2 or
// more (an island drawn inside a hole, and anything inside that) is left
// out: a surface is its outer contours minus its holes, so every point of
// the island would test as in the hole. Make a surface of its own from the
// island's elements. Within each list contours keep the order in which
// they were found.
//
// Returns the number of contours filed; -1 for a null array or surface, or
// when memory runs out while filing (the surface is then left empty). A
// search that runs out of memory is one start lost: the contour is still
// found from its other elements (a circle then stays out).
TESSALINE_API int Make_Surface_From_Objects(Objects_Array_Type* array, Surface_Type* surface);

// Frees every contour of both lists (contour elements, handle blocks and the
// record blocks), then the two list blocks, and zeroes the record.
TESSALINE_API void Delete_Surface(Surface_Type* surface);
