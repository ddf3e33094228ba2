// Scoped lock of a movable block, seen as an array of T.
//
// The view is empty (null) when the handle does not lock or the block is too
// small to hold one T; count() is how many whole T the block holds, so code
// that walks a block never reads past it whatever a record claims.
#pragma once

#include <cstddef>

#include "platform/memory_internal.h"
#include "tessaline/platform/memory.h"

template <class T>
class Locked {
 public:
  explicit Locked(HGLOBAL h) : handle_(h) {
    SIZE_T bytes = 0;
    void* p = h ? Global_Lock_Sized(h, &bytes) : nullptr;
    if (!p) return;
    if (bytes < sizeof(T)) {
      GlobalUnlock(h);
      return;
    }
    ptr_ = static_cast<T*>(p);
    count_ = static_cast<size_t>(bytes / sizeof(T));
  }
  ~Locked() {
    if (ptr_) GlobalUnlock(handle_);
  }
  Locked(const Locked&) = delete;
  Locked& operator=(const Locked&) = delete;

  explicit operator bool() const { return ptr_ != nullptr; }
  T* get() const { return ptr_; }
  T* operator->() const { return ptr_; }
  T& operator*() const { return *ptr_; }
  T& operator[](size_t i) const { return ptr_[i]; }
  size_t count() const { return count_; }
  // True when index i names a whole T inside the block.
  bool holds(long long i) const { return i >= 0 && static_cast<size_t>(i) < count_; }

 private:
  HGLOBAL handle_;
  T* ptr_ = nullptr;
  size_t count_ = 0;
};
