// Private helpers of the element model: locking a record, the guard box, the
// slots of an objects array.
#pragma once

#include "platform/locked.h"
#include "tessaline/model/element.h"

using Locked_Element = Locked<Element_Record>;

// The guard message shown when an element block cannot be locked.
void Show_Null_Element_Box();

// Locks the record; shows the guard box when it cannot.
inline bool Lock_Guarded(const Locked_Element& e) {
  if (!e) Show_Null_Element_Box();
  return static_cast<bool>(e);
}

// The handle slots of an objects array, bounded by both the count the array
// claims and the size of its block (a host's array is not trusted).
class Array_Slots {
 public:
  explicit Array_Slots(const Objects_Array_Type* a) : lock_(a ? a->handles : 0) {
    if (a && lock_ && a->count > 0) {
      size_t n = static_cast<size_t>(a->count);
      size_ = n < lock_.count() ? n : lock_.count();
    }
  }
  size_t size() const { return size_; }
  HGLOBAL operator[](size_t i) const { return lock_[i]; }
  HGLOBAL* data() const { return lock_.get(); }

 private:
  Locked<HGLOBAL> lock_;
  size_t size_ = 0;
};

inline bool Is_Simple_Type(int32_t type) {
  return type == EL_POINT || type == EL_SEGMENT || type == EL_CIRCLE || type == EL_ARC;
}
