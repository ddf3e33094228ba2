// Bounded views of the handle lists that contours and surfaces keep (a
// block of handles and the number of entries a record claims for it), and
// the ends of the elements that chain.
#pragma once

#include "model/record.h"
#include "tessaline/contour/contour.h"
#include "tessaline/contour/surface.h"

// The first `entries` handles of a block, bounded by the block itself (a
// host's record is not trusted): size() never reaches past the block.
class Handle_Slots {
 public:
  Handle_Slots(HGLOBAL block, int32_t entries) : list_{0, entries, block}, slots_(&list_) {}
  size_t size() const { return slots_.size(); }
  HGLOBAL& operator[](size_t i) const { return slots_.data()[i]; }

 private:
  Objects_Array_Type list_;  // the same three words, so the array's bounded view serves
  Array_Slots slots_;
};

// The live contour elements of a contour record (0 .. count-1).
inline Handle_Slots Contour_Parts(const Contour_Type* c) {
  return Handle_Slots(c ? c->parts : 0, c ? c->count : 0);
}

// The two lists of a surface.
enum Surface_List_Kind { kHoles, kOuters };

// The contour-record blocks of one list of a surface (0 .. count-1).
inline Handle_Slots Surface_List(const Surface_Type* s, int kind) {
  if (!s) return Handle_Slots(0, 0);
  return kind == kHoles ? Handle_Slots(s->holes, s->hole_count)
                        : Handle_Slots(s->outers, s->outer_count);
}

// The drawing element of a contour-element block, or 0 when it does not lock.
inline HGLOBAL Part_Element(HGLOBAL part) {
  Locked<ContEl_Type> p(part);
  return p ? p->element : 0;
}

// The ends x1, y1, x2, y2 of a segment or an arc (its stored end points);
// false for every other type.
inline bool Contour_Ends(const Element_Record& r, double e[4]) {
  if (r.type == EL_SEGMENT) {
    e[0] = r.u.seg.x1, e[1] = r.u.seg.y1, e[2] = r.u.seg.x2, e[3] = r.u.seg.y2;
  } else if (r.type == EL_ARC) {
    e[0] = r.u.arc.x1, e[1] = r.u.arc.y1, e[2] = r.u.arc.x2, e[3] = r.u.arc.y2;
  } else {
    return false;
  }
  return true;
}
