// Which elements hang on which parents: built once from the arrays of
// possible children, so that code which releases or re-points children
// visits only the linked pairs instead of every (parent, element) pair.
#pragma once

#include <unordered_map>
#include <vector>

#include "model/record.h"
#include "tessaline/model/parent.h"

// A test hook: when set, called with (element, parent) each time
// Cut_Parent_Link actually releases an element from a parent, in order.
// Thread-local, so concurrent callers on other data are not disturbed.
using Cut_Observer = void (*)(HGLOBAL element, HGLOBAL parent, void* context);
void Set_Cut_Observer(Cut_Observer observer, void* context);

// The handles an array holds, copied out of its block (bounded by the block).
inline std::vector<HGLOBAL> Array_Handles(const Objects_Array_Type* array) {
  Array_Slots slots(array);
  return std::vector<HGLOBAL>(slots.data(), slots.data() + slots.size());
}

class Child_Index {
 public:
  // Indexes, for every handle of `parents`, the elements of `arrays` (walked
  // in order, each occurrence of an element counted) whose parents as
  // Get_Parent_Elem reads them include that handle. A cut never gives an
  // element a parent it did not have, so the index stays a superset of the
  // links while cuts are made.
  Child_Index(const std::vector<HGLOBAL>& parents,
              std::initializer_list<const Objects_Array_Type*> arrays) {
    slot_.reserve(parents.size());
    for (HGLOBAL p : parents) {
      if (p) slot_.try_emplace(p, 0u);
    }
    if (slot_.empty()) return;
    uint32_t next = 0;
    for (auto& entry : slot_) entry.second = next++;
    children_.resize(next);
    for (const Objects_Array_Type* array : arrays) {
      for (HGLOBAL e : Array_Handles(array)) {
        HGLOBAL p[3];
        Get_Parent_Elem(e, &p[0], &p[1], &p[2]);
        for (int k = 0; k < 3; ++k) {
          if (!p[k] || (k > 0 && p[k] == p[0]) || (k > 1 && p[k] == p[1])) continue;
          auto it = slot_.find(p[k]);
          if (it != slot_.end()) children_[it->second].push_back(e);
        }
      }
    }
  }

  // The children of a parent in the arrays' order; empty when it has none.
  const std::vector<HGLOBAL>& Children(HGLOBAL parent) const {
    static const std::vector<HGLOBAL> none;
    auto it = slot_.find(parent);
    return it == slot_.end() ? none : children_[it->second];
  }

 private:
  std::unordered_map<HGLOBAL, uint32_t> slot_;
  std::vector<std::vector<HGLOBAL>> children_;
};
