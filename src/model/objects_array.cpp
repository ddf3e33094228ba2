// Objects arrays: growable lists of element handles.
#include <vector>

#include "model/record.h"
#include "tessaline/model/parent.h"

namespace {

constexpr int32_t kFirstCapacity = 10;

// Fails on an array whose fields do not fit its block (a host's array).
bool Consistent(const Objects_Array_Type* a) {
  if (a->count < 0 || a->capacity < a->count) return false;
  SIZE_T bytes = GlobalSize(a->handles);
  return bytes >= static_cast<SIZE_T>(a->capacity) * sizeof(HGLOBAL);
}

}  // namespace

int Add_Element_In_Array_by_Handle(Objects_Array_Type* array, HGLOBAL h) {
  if (!array || h == 0) return -1;
  if (!array->handles) {
    HGLOBAL block = GlobalAlloc(GHND, kFirstCapacity * sizeof(HGLOBAL));
    if (!block) return -1;
    array->handles = block;
    array->capacity = kFirstCapacity;
    array->count = 0;
  }
  if (!Consistent(array)) return -1;
  if (array->count >= array->capacity) {
    if (array->capacity == INT32_MAX) return -1;
    // One slot more per overflow, deliberately: the array never doubles. The
    // memory table keeps spare room behind the block, so this stays linear.
    SIZE_T bytes = static_cast<SIZE_T>(array->capacity) * sizeof(HGLOBAL) + sizeof(HGLOBAL);
    if (!GlobalReAlloc(array->handles, bytes, GMEM_MOVEABLE)) return -1;
    array->capacity += 1;
  }
  Locked<HGLOBAL> slots(array->handles);
  if (!slots.holds(array->count)) return -1;
  slots[array->count] = h;
  array->count += 1;
  return array->count - 1;
}

HGLOBAL Get_Element_Handle_by_Index(Objects_Array_Type* array, int index) {
  Array_Slots slots(array);
  if (index < 0 || static_cast<size_t>(index) >= slots.size()) return 0;
  return slots[static_cast<size_t>(index)];
}

int Get_Element_Index_by_Handle(Objects_Array_Type* array, HGLOBAL h) {
  Array_Slots slots(array);
  for (size_t i = 0; i < slots.size(); ++i) {
    if (slots[i] == h) return static_cast<int>(i);
  }
  return -1;
}

int Delete_Element_by_Index(Objects_Array_Type* array, int index) {
  if (!array || index < 0 || index >= array->count) return 0;
  HGLOBAL victim;
  {
    Array_Slots slots(array);
    size_t n = slots.size();
    if (static_cast<size_t>(index) >= n) return 0;
    HGLOBAL* p = slots.data();
    victim = p[index];
    for (size_t i = static_cast<size_t>(index); i + 1 < n; ++i) p[i] = p[i + 1];
    p[n - 1] = 0;
  }
  // Only the record block: inner blocks belong to callers that free them first.
  GlobalFree(victim);
  array->count -= 1;
  return 1;
}

void DeleteObjectsArray(Objects_Array_Type* array) {
  if (!array) return;
  if (array->handles) {
    std::vector<HGLOBAL> handles;
    {
      Array_Slots slots(array);
      handles.assign(slots.data(), slots.data() + slots.size());
    }
    for (size_t i = handles.size(); i-- > 0;) Delete_Element(handles[i]);
    array->handles = GlobalFree(array->handles);
  }
  array->capacity = 0;
  array->count = 0;
}

void DeleteObjectsArray_Without_El_Deleting(Objects_Array_Type* array) {
  if (!array) return;
  if (array->handles) GlobalFree(array->handles);
  array->handles = 0;
  array->capacity = 0;
  array->count = 0;
}

namespace {

void Cut_Links_To(Objects_Array_Type* children, HGLOBAL parent) {
  std::vector<HGLOBAL> elements;
  {
    Array_Slots slots(children);
    elements.assign(slots.data(), slots.data() + slots.size());
  }
  for (HGLOBAL e : elements) Cut_Parent_Link(e, parent);
}

}  // namespace

int ClearObjectsArray(Objects_Array_Type* array, Objects_Array_Type* second,
                      Objects_Array_Type* third) {
  if (!array) return 0;
  int former = array->count;
  for (int i = array->count - 1; i >= 0; --i) {
    HGLOBAL h = Get_Element_Handle_by_Index(array, i);
    int index = Get_Element_Index_by_Handle(array, h);
    if (index < 0) continue;
    Cut_Links_To(second, h);
    Cut_Links_To(third, h);
    Delete_Element_by_Index(array, index);
  }
  array->count = 0;  // capacity and block stay, ready for reuse
  return former;
}

void DeleteiObjectsArray(Objects_Array_Type* display_array) {
  if (!display_array) return;
  if (display_array->handles) {
    std::vector<HGLOBAL> copies;
    {
      Array_Slots slots(display_array);
      copies.assign(slots.data(), slots.data() + slots.size());
    }
    for (HGLOBAL c : copies) {
      int inner = 0;
      HGLOBAL blocks[7] = {};
      {
        Locked<iElement_Header> copy(c);
        if (copy) {
          inner = copy->type == EL_POLYLINE ? 2 : copy->type == EL_SPLINE ? 7 : 0;
          for (int k = 0; k < inner; ++k) blocks[k] = copy->blocks[k];
        }
      }
      for (int k = 0; k < inner; ++k) GlobalFree(blocks[k]);
      GlobalFree(c);
    }
    GlobalFree(display_array->handles);
  }
  display_array->handles = 0;
  display_array->capacity = 0;
  display_array->count = 0;
}
