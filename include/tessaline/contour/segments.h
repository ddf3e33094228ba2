// Surface segments: a surface turned into plain straight segments, contour
// by contour, each contour travelled with its interior on a chosen side,
// shifted to an origin and scaled. The form in which hosts and the
// finite-element code consume a section outline.
#pragma once

#include <cstdint>

#include "tessaline/contour/contour.h"
#include "tessaline/contour/surface.h"
#include "tessaline/export.h"
#include "tessaline/platform/framework.h"

// A straight segment from (x1, y1) to (x2, y2), in the shifted and scaled
// coordinates of the call that made it. flag1 and flag2 are 1 on every
// segment made from a drawing element (both straight segments and the
// pieces of arcs and circles); 0 in a default-constructed one.
struct SEGMENT_2D {
  double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  uint8_t flag1 = 0, flag2 = 0;
};

using Segment_List = CArray<SEGMENT_2D, SEGMENT_2D&>;

// Segment lists of a surface: one per outer contour, one per hole, and for
// each hole the index of the outer contour that contains it (-1 for none).
// The container owns the lists it points to. An index outside the arrays
// gives null or -1, never an error.
class TESSALINE_API CSurface_Segments {
 public:
  CSurface_Segments() = default;
  ~CSurface_Segments();
  CSurface_Segments(const CSurface_Segments&) = delete;
  CSurface_Segments& operator=(const CSurface_Segments&) = delete;

  // Deletes every segment list and empties the three arrays.
  void RemoveAll();
  int GetExternalNum() const;
  int GetInternalNum() const;
  // Appends the list and takes it over; its index, or -1 (the caller keeps
  // it) for null or a list the container already holds.
  int AddExternal(Segment_List* list);
  int AddInternal(Segment_List* list);
  // The list at index i, or null.
  Segment_List* GetExternalAt(int i) const;
  Segment_List* GetInternalAt(int i) const;
  // Records that hole i lies in outer contour j, growing the owner array to
  // hold index i (new entries -1). 1 done; 0 for a negative i or an i at or
  // beyond both the number of holes and kMax_Pending_Owners.
  int SetIntInExtIndex(int i, int j);
  // The owner of hole i, or -1.
  int GetIntInExtAt(int i) const;
  // How many holes (with a list) have owner j.
  int GetIntContNumbers_InExtContour(int j) const;
  // The n-th hole list (0-based, in hole order) whose owner is j, or null.
  Segment_List* GetIntCont_InExtContourAt(int j, int n) const;

  // Owners may be set ahead of the hole lists up to this index.
  static constexpr int kMax_Pending_Owners = 65536;

 private:
  using List_Array = CArray<Segment_List*, Segment_List*>;
  // Appends the list to `to` unless it is null or held already; its index or -1.
  int Adopt(List_Array& to, Segment_List* list);

  List_Array m_External;
  List_Array m_Internal;
  CArray<int, int> m_IntInExt;
};

// Pieces of an arc or a circle turn through at most this angle (5 degrees).
inline constexpr double kSegment_Arc_Step = 3.14159265358979323846 / 36;

// The sense in which to travel the contour so that its interior (the inside
// of the contour itself, Is_Point_In_Contour) lies on a fixed side:
// `sense` 0 puts it on the left (an outer boundary runs counter-clockwise),
// any other value on the right (clockwise).
//
// A probe is taken 1e-5 beside the middle of the first element (to the left
// of a segment, outside an arc or a circle, in the element's stored
// direction, a circle's being counter-clockwise) and tested against the
// contour; the result is 1 to travel the stored order, -1 to travel it
// backwards. The outputs, when not null, get the unit normal at that probe
// that points into the interior. 0 (outputs untouched) for a null or empty
// contour or a first element that does not lock (after the "Messsage" /
// "pElem==NULL" box) or is not a segment, an arc or a circle.
TESSALINE_API int Find_Contour_Direction(Contour_Type* contour, int sense, double* inward_x,
                                         double* inward_y);

// The element where the stored chain starts and the point where it does:
// position 0 and the end of the first element that it does not share with
// the second (ends compared with a tolerance of 1e-6; its first end when
// that does not decide); a circle starts at its point at angle 0. -1
// (outputs untouched) as Find_Contour_Direction fails.
TESSALINE_API int Find_Start_ContEl(Contour_Type* contour, double* x, double* y);

// Appends to `list` the segments of every outer contour, then of every hole,
// with material on the left: outer contours counter-clockwise, holes
// clockwise. Points become ((x - x0) * scale, (y - y0) * scale); a segment
// runs from the end where the previous one stopped; arcs and circles become
// chains of pieces of at most kSegment_Arc_Step. A contour that cannot be
// read adds nothing. Returns the number of segments appended, -1 for a null
// surface or list.
TESSALINE_API int Make_Surface_Segments(Surface_Type* surface, Segment_List* list, double x0,
                                        double y0, double scale);

// RemoveAll, then one new list per outer contour and per hole, in the
// surface's order and travelled as by Make_Surface_Segments (a contour that
// cannot be read gets an empty list). The owner of a hole is the outer
// contour that contains it (tested at the middle of the hole's first
// element); when several do (an island in a hole of another outer contour),
// the one of smallest area; -1 when none does. Returns the number of
// segments made, -1 for a null surface or container.
TESSALINE_API int Make_Surface_Segments_Extended(Surface_Type* surface, CSurface_Segments* segments,
                                                 double x0, double y0, double scale);
