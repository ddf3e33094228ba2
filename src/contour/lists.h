// Bounded views of the handle lists that contours and surfaces keep: a
// block of handles and the number of entries a record claims for it.
#pragma once

#include "model/record.h"
#include "tessaline/contour/contour.h"

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

// The drawing element of a contour-element block, or 0 when it does not lock.
inline HGLOBAL Part_Element(HGLOBAL part) {
  Locked<ContEl_Type> p(part);
  return p ? p->element : 0;
}
