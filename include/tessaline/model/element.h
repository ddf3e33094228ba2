// Element records and objects arrays: the base of the whole system.
//
// Every drawn thing is an element living in its own movable, zero-filled
// memory block; the block's handle is the element handle. Coordinates are
// world coordinates (millimetres, y up), angles radians, arcs run
// counter-clockwise from the start angle to the end angle.
#pragma once

#include <cstddef>
#include <cstdint>

#include "tessaline/export.h"
#include "tessaline/platform/win_types.h"

// Element type codes: the first word of every record.
enum : int32_t {
  EL_POINT = 1,
  EL_SEGMENT = 2,
  EL_POLYLINE = 3,
  EL_CIRCLE = 4,
  EL_ARC = 5,
  EL_SPLINE = 6,
};

// Attribute bits: of the attribute word of a simple element (point, segment,
// circle, arc), or of each per-node word of a polyline or a spline.
enum : int32_t {
  ATTR_ORDINARY = 0x01,  // clear for an auxiliary construction element
  ATTR_SELECTED = 0x02,
  ATTR_ACTIVE = 0x08,  // highlighted as the one under the cursor
  ATTR_EDIT = 0x10,    // being edited
};

// The element record: 24 little-endian 32-bit words (96 bytes). Words 0 and 1
// are the type and the attribute word (for a polyline or a spline, the handle
// of its per-node attribute block); the geometry follows from word 2; words
// 20 to 23 are the common tail whatever the type.
struct Element_Record {
  int32_t type;
  int32_t attr;  // HGLOBAL of the per-node attribute block for types 3 and 6

  struct Point_Data {
    double x, y;
  };
  struct Segment_Data {
    double x1, y1, x2, y2;
  };
  struct Circle_Data {
    double xc, yc, r;
  };
  // The five values Create_Arc takes, then the two end points.
  struct Arc_Data {
    double xc, yc, r, a1, a2, x1, y1, x2, y2;
  };
  // n nodes in a block of n (x, y) pairs; attribute block of n words, entry i
  // for the piece from node i to node i + 1.
  struct Polyline_Data {
    int32_t n;
    HGLOBAL nodes;
  };
  // n nodes in separate x and y blocks, the second-derivative moments for x
  // and for y in two coefficient blocks (n doubles each); the attribute block
  // holds 2n words: node i in word 2i, the piece after it in word 2i + 1.
  struct Spline_Data {
    int32_t n;
    HGLOBAL x, y, m1, m2;
  };
  union Geometry {
    Point_Data point;
    Segment_Data seg;
    Circle_Data circle;
    Arc_Data arc;
    Polyline_Data poly;
    Spline_Data spline;
    int32_t words[18];
  } u;

  int32_t creation_type;  // word 20: how the element was constructed (0: free)
  int32_t parent_count;   // word 21: slots in the parent list
  HGLOBAL parents;        // word 22: block of parent_count element handles
  HGLOBAL second;         // word 23: optional second list, freed with simple elements
};
static_assert(sizeof(Element_Record) == 96, "element record is 24 words");
static_assert(offsetof(Element_Record, u) == 8, "geometry starts at word 2");
static_assert(offsetof(Element_Record, creation_type) == 80, "common tail at word 20");

// A growable list of element handles owned by the host. All zero is a valid
// empty array. Room for 10 at the first add, then exactly one slot more per
// overflow: capacity never doubles and never shrinks.
struct Objects_Array_Type {
  int32_t capacity;
  int32_t count;
  HGLOBAL handles;  // block of capacity element handles, in index order
};

// World and logical cursor positions that the rubber bands read: entry i of
// x and of y for the i-th placed point, count of points placed.
struct Curs_Pos_Type {
  double x[8];
  double y[8];
  int32_t count;
};

// A display copy, the logical-coordinate stand-in of an element shown while
// it is dragged. Word 0 is the element type; a polyline's copy holds two inner
// blocks in blocks[0..1], a spline's seven in blocks[0..6], a simple copy none
// (its logical points follow the header in its own block). The layout of
// each kind: Create_Moved_iObjects (edit.h).
struct iElement_Header {
  int32_t type;
  int32_t node_count;
  HGLOBAL blocks[7];
};

// ---- Record access ---------------------------------------------------------

TESSALINE_API HGLOBAL Alloc_Element();
TESSALINE_API int Get_Element_Type_by_Handle(HGLOBAL h);
TESSALINE_API int Get_Element_Attribute(HGLOBAL h);
TESSALINE_API int Get_Selected_Attr_by_Handle(HGLOBAL h);
TESSALINE_API int Set_Element_Select_Attribute(HGLOBAL h, int value);
TESSALINE_API int Set_Element_Active_Attribute(HGLOBAL h, int index, int value);
TESSALINE_API int Set_Element_Edit_Attribute(HGLOBAL h, int index, int value);
TESSALINE_API void Write_Creation_Type(HGLOBAL h, int32_t code);
TESSALINE_API int Get_Creation_Type(HGLOBAL h);
TESSALINE_API HGLOBAL Alloc_Parent(HGLOBAL h, int n);
TESSALINE_API int Write_Parent(HGLOBAL h, HGLOBAL parent, int slot);
TESSALINE_API HGLOBAL Get_Parent(HGLOBAL h, int slot);
TESSALINE_API HGLOBAL Create_Element_Copy(HGLOBAL h);
TESSALINE_API void Delete_Element(HGLOBAL h);

// ---- Objects arrays ---------------------------------------------------------

TESSALINE_API int Add_Element_In_Array_by_Handle(Objects_Array_Type* array, HGLOBAL h);
TESSALINE_API HGLOBAL Get_Element_Handle_by_Index(Objects_Array_Type* array, int index);
TESSALINE_API int Get_Element_Index_by_Handle(Objects_Array_Type* array, HGLOBAL h);
TESSALINE_API void DeleteObjectsArray(Objects_Array_Type* array);
TESSALINE_API void DeleteObjectsArray_Without_El_Deleting(Objects_Array_Type* array);
TESSALINE_API int ClearObjectsArray(Objects_Array_Type* array, Objects_Array_Type* second,
                                    Objects_Array_Type* third);
TESSALINE_API void DeleteiObjectsArray(Objects_Array_Type* display_array);
TESSALINE_API Curs_Pos_Type* Clear_Curs_Pos(Curs_Pos_Type* pos);

// Removes the entry at index and frees the element's record block only (its
// node, coefficient, attribute and parent blocks stay: callers that own them
// free them with Delete_Element first). 1 removed, 0 index out of range.
TESSALINE_API int Delete_Element_by_Index(Objects_Array_Type* array, int index);
