// Contours: closed chains of drawing elements found in an objects array.
//
// A contour is an ordered, closed chain of segments and arcs that meet end to
// end, or a single circle. Ends join when they lie within 0.001 world units
// (millimetres) of each other in x and in y separately (a square window,
// strict less-than). The direction in which an element is travelled is not
// stored: a consumer finds it from the end points that neighbours share.
//
// Surfaces (outer contours and holes) are built from these records; their
// declarations sit beside this header in tessaline/contour/.
#pragma once

#include <cstdint>

#include "tessaline/export.h"
#include "tessaline/model/element.h"
#include "tessaline/platform/win_types.h"

// A contour record, owned by the caller. All zero is a valid empty record.
// The record owns its handle block and every contour element in it, never
// the drawing elements. Entries 0 .. count-1 are live contour elements in the
// order of travel; entries past count are 0 or spare contour elements that
// the record also owns (Create_El_Contour makes such spares). The block grows
// by exactly one entry per overflow and never shrinks.
struct Contour_Type {
  int32_t capacity;
  int32_t count;
  HGLOBAL parts;  // block of capacity contour-element handles; 0 when capacity is 0
};

// A contour element: a movable block of three words. The search stores
// {element, 0, 1}; index and flag have no other meaning for it.
struct ContEl_Type {
  HGLOBAL element;  // the drawing element that forms this piece
  int32_t index;
  int32_t flag;
};
static_assert(sizeof(Contour_Type) == 12, "contour record is three words");
static_assert(sizeof(ContEl_Type) == 12, "contour element is three words");

// Half the side of the square window within which two ends join.
inline constexpr double kContour_Join_Tolerance = 0.001;

// ---- Records ----------------------------------------------------------------

// Sets capacity n, count 0 and allocates a zero-filled block of n handles
// (none when n is 0). The record's previous block is not freed: call
// Delete_El_Contour first. Returns the block's handle; 0 when n is 0, n is
// negative or the block cannot be allocated (the record is then all zero).
TESSALINE_API HGLOBAL Init_El_Contour(Contour_Type* contour, int n);

// A contour record in a movable block of its own: capacity n, count 0, and n
// fresh empty contour elements as spares in its handle block. Returns the
// record block's handle, 0 when it cannot be allocated or n is negative. A
// contour element that cannot be allocated leaves its entry 0. Free with
// Delete_El_Contour on the locked record, then GlobalFree.
TESSALINE_API HGLOBAL Create_El_Contour(int n);

// One contour element {element, index, flag}; its handle, or 0.
TESSALINE_API HGLOBAL Create_El_Part(HGLOBAL element, int index, int flag);

// Appends a contour element (the record takes it over). Returns its position,
// or -1 when the handle is 0, the record is inconsistent or cannot grow (the
// record is then unchanged and the caller still owns the element). A record
// without a block gets a block of one entry.
TESSALINE_API int Add_ContEl(Contour_Type* contour, HGLOBAL part);

// The drawing element of contour element i; 0 when i is outside 0 .. count-1.
TESSALINE_API HGLOBAL Get_ContEl_Handle(Contour_Type* contour, int i);

// Sets the drawing element of contour element i. 1 done, 0 when i is outside
// 0 .. count-1 or the contour element cannot be locked.
TESSALINE_API int Set_ContEl_Handle(Contour_Type* contour, HGLOBAL element, int i);

// Sets the index and flag words of contour element i. 1 done, 0 as above.
TESSALINE_API int Set_ContEl_Index(Contour_Type* contour, int index, int flag, int i);

// Frees every contour element (last first) and the handle block; the record
// becomes all zero.
TESSALINE_API void Delete_El_Contour(Contour_Type* contour);

// Position of the first contour element whose three words are
// {element, index, flag}, or -1.
TESSALINE_API int Find_ContEl(Contour_Type* contour, HGLOBAL element, int index, int flag);

// When 0 <= k <= count-1: frees contour elements k .. count-1 (last first)
// and sets count to k; otherwise does nothing. Capacity stays.
TESSALINE_API void Truncate_El_Contour(Contour_Type* contour, int k);

// A new handle block of count entries, each a fresh contour element with the
// three words of the source's element at that position. The caller makes it
// a record {count, count, block}. Returns 0 for an empty source or when any
// block cannot be allocated (nothing is then left allocated).
TESSALINE_API HGLOBAL Copy_Contour(const Contour_Type* source);

// ---- Search -----------------------------------------------------------------

// The next element, in array order from position start, that has an end
// within the join window of (px, py): only segments and arcs (their stored
// ends) take part, every entry holding the handle `exclude` is skipped, the
// first end is tested before the second. Returns the position (or -1 when
// there is none or start is negative) and writes the element's handle and
// its other end to the outputs that are not null.
TESSALINE_API int Find_Next_ContEl(Objects_Array_Type* array, int start, HGLOBAL exclude, double px,
                                   double py, HGLOBAL* next, double* ox, double* oy);

// Finds the closed contour through `element` among the elements of `array`
// and stores it in `contour`, starting with `element` itself (from its first
// end towards its second), each element once in the order of travel.
//
// The result is that of an exhaustive depth-first search: from the free end
// the candidates are tried in array order (Find_Next_ContEl), a dead end is
// backed out of and the next candidate tried; the chain closes when it comes
// back to `element` at its first end. A circle is a contour by itself. The
// search keeps no recursion (a chain of any length is fine) and finds ends
// through an index, so a simple chain costs linear time; heavily branched
// drawings still cost what exhaustive search costs.
//
// Returns 1 when found. Otherwise 0 with the record emptied (all zero): no
// way back, a type that cannot start a contour, a handle that does not lock
// (after the "Messsage" / "pElem==NULL" box), or a failed allocation.
TESSALINE_API int Search_Contour(Objects_Array_Type* array, HGLOBAL element, Contour_Type* contour);
