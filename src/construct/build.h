// Private helpers of the constructors: finishing a new element (attribute
// word, creation type, parent slots) and appending it to an objects array.
#pragma once

#include <initializer_list>

#include "model/record.h"

namespace construct {

// Sets the attribute word of a simple element.
inline void Set_Attr(HGLOBAL h, int32_t attr) {
  Locked_Element e(h);
  if (e) e->attr = attr;
}

// A parent slot holding a node number instead of a handle.
inline HGLOBAL Node_Slot(int node) {
  return static_cast<HGLOBAL>(static_cast<uint32_t>(node));
}

// Writes the creation type and, when `slots` is not empty, a new parent list
// holding them in order. With `count` false the parent count is left 0 (the
// list is still allocated and filled). False when the list cannot be made.
inline bool Link(HGLOBAL h, int32_t ct, std::initializer_list<HGLOBAL> slots, bool count = true) {
  Write_Creation_Type(h, ct);
  if (slots.size() == 0) return true;
  if (!Alloc_Parent(h, static_cast<int>(slots.size()))) return false;
  int i = 0;
  for (HGLOBAL p : slots) Write_Parent(h, p, i++);
  if (!count) {
    Locked_Element e(h);
    if (e) e->parent_count = 0;
  }
  return true;
}

// Appends h to the array and returns it; deletes it and returns 0 when h is
// 0, the array is null or it cannot grow, so a refused element leaves no block.
inline HGLOBAL Append(Objects_Array_Type* a, HGLOBAL h) {
  if (!h) return 0;
  if (!a || Add_Element_In_Array_by_Handle(a, h) < 0) {
    Delete_Element(h);
    return 0;
  }
  return h;
}

// Link then Append; deletes h when the link cannot be made.
inline HGLOBAL Finish(Objects_Array_Type* a, HGLOBAL h, int32_t ct,
                      std::initializer_list<HGLOBAL> slots, bool count = true) {
  if (!h) return 0;
  if (!a || !Link(h, ct, slots, count)) {
    Delete_Element(h);
    return 0;
  }
  return Append(a, h);
}

}  // namespace construct
