// Editing whole objects arrays: listing the selection, deleting, copying,
// moving and sorting handles.
#include <algorithm>
#include <vector>

#include "model/child_index.h"
#include "model/record.h"
#include "tessaline/model/edit.h"
#include "tessaline/model/parent.h"

namespace {

bool Word_Selected(const Locked<int32_t>& words, long long k) {
  return words.holds(k) && (words[static_cast<size_t>(k)] & ATTR_SELECTED);
}

// Whether an element counts as selected for Get_Selected_Elem_Index.
bool Is_Selected(const Element_Record& e) {
  if (Is_Simple_Type(e.type)) return e.attr & ATTR_SELECTED;
  Locked<int32_t> words(static_cast<HGLOBAL>(e.attr));
  if (e.type == EL_POLYLINE) {
    // Every piece word; a polyline of one node has none and so counts as
    // selected, deliberately.
    for (long long k = 0; k + 1 < e.u.poly.n; ++k) {
      if (!Word_Selected(words, k)) return false;
    }
    return true;
  }
  if (e.type == EL_SPLINE) {
    long long n = e.u.spline.n;
    if (!(Word_Selected(words, 0) || Word_Selected(words, 1))) return false;
    if (!(Word_Selected(words, 2 * n - 2) || Word_Selected(words, 2 * n - 3))) return false;
    // Every word k is covered by a selected word among k, k + 1, k + 2.
    for (long long k = 1; k <= 2 * n - 4; ++k) {
      if (!Word_Selected(words, k) && !Word_Selected(words, k + 1) && !Word_Selected(words, k + 2))
        return false;
    }
    return true;
  }
  return false;
}

// Adds (dx, dy) to every coordinate of the element (not its radius, angles
// or spline moments).
void Move_Element(HGLOBAL h, double dx, double dy) {
  Locked_Element e(h);
  if (!e) return;
  auto& u = e->u;
  auto shift = [dx, dy](double& x, double& y) {
    x += dx;
    y += dy;
  };
  switch (e->type) {
    case EL_POINT:
      shift(u.point.x, u.point.y);
      break;
    case EL_SEGMENT:
      shift(u.seg.x1, u.seg.y1);
      shift(u.seg.x2, u.seg.y2);
      break;
    case EL_CIRCLE:
      shift(u.circle.xc, u.circle.yc);
      break;
    case EL_ARC:
      shift(u.arc.xc, u.arc.yc);
      shift(u.arc.x1, u.arc.y1);
      shift(u.arc.x2, u.arc.y2);
      break;
    case EL_POLYLINE: {
      Locked<double> xy(u.poly.nodes);
      size_t n = std::min(static_cast<size_t>(std::max(u.poly.n, 0)), xy.count() / 2);
      for (size_t i = 0; i < n; ++i) shift(xy[2 * i], xy[2 * i + 1]);
      break;
    }
    case EL_SPLINE: {
      Locked<double> xs(u.spline.x), ys(u.spline.y);
      size_t n = static_cast<size_t>(std::max(u.spline.n, 0));
      for (size_t i = 0; i < std::min(n, xs.count()); ++i) xs[i] += dx;
      for (size_t i = 0; i < std::min(n, ys.count()); ++i) ys[i] += dy;
      break;
    }
    default:
      break;
  }
}

// Frees a simple element's own lists: nothing else refers to them, and the
// removal from the array frees only the record block.
void Free_Own_Lists(HGLOBAL h) {
  Locked_Element e(h);
  if (!e) return;
  if (e->parents) GlobalFree(e->parents);
  if (e->second) GlobalFree(e->second);
  e->parents = e->second = 0;
  e->parent_count = 0;
}

}  // namespace

int Get_Selected_Elem_Index(const Objects_Array_Type* array, int* list) {
  if (!list) return 0;
  int written = 0;
  Array_Slots slots(array);
  for (size_t i = 0; i < slots.size(); ++i) {
    Locked_Element e(slots[i]);
    if (e && Is_Selected(*e)) list[written++] = static_cast<int>(i);
  }
  return written;
}

int Delete_Elements(Objects_Array_Type* array, Objects_Array_Type* second,
                    Objects_Array_Type* third) {
  if (!array) return -1;
  // The selected simple elements, the only ones that go: their children in
  // the other two arrays are indexed once, so each removal visits only the
  // elements linked to it (a cut of an unlinked element changes nothing).
  std::vector<HGLOBAL> handles = Array_Handles(array);
  std::vector<HGLOBAL> doomed;
  for (HGLOBAL h : handles) {
    Locked_Element e(h);
    if (e && Is_Simple_Type(e->type) && (e->attr & ATTR_SELECTED)) doomed.push_back(h);
  }
  Child_Index children(doomed, {second, third});
  int result = -1;
  for (int i = static_cast<int>(handles.size()) - 1; i >= 0; --i) {
    HGLOBAL h = Get_Element_Handle_by_Index(array, i);
    int type, attr;
    {
      Locked_Element e(h);
      if (!e) continue;
      type = e->type;
      attr = e->attr;
    }
    if (type == EL_SPLINE) result = 1;  // met, not deleted
    if (!Is_Simple_Type(type) || !(attr & ATTR_SELECTED)) continue;
    int index = Get_Element_Index_by_Handle(array, h);
    if (index < 0) continue;
    for (HGLOBAL child : children.Children(h)) Cut_Parent_Link(child, h);
    Free_Own_Lists(h);
    Delete_Element_by_Index(array, index);
    result = 1;
  }
  return result;
}

void Copy_ObjAr_by_Index(const Objects_Array_Type* source, Objects_Array_Type* destination,
                         const int* list, int n) {
  if (!list || !destination || n < 1) return;
  std::vector<HGLOBAL> handles = Array_Handles(source);
  for (int k = 0; k < n; ++k) {
    int i = list[k];
    // An index beyond the source gives the null handle, which the append refuses.
    if (i >= 0 && static_cast<size_t>(i) < handles.size())
      Add_Element_In_Array_by_Handle(destination, handles[static_cast<size_t>(i)]);
  }
}

void Move_Objects(const Objects_Array_Type* array, double dx, double dy) {
  for (HGLOBAL h : Array_Handles(array)) Move_Element(h, dx, dy);
}

void Move_Objects_by_Index(const Objects_Array_Type* array, const int* list, int n, double dx,
                           double dy) {
  if (!list || n < 1) return;
  std::vector<HGLOBAL> handles = Array_Handles(array);
  for (int k = 0; k < n; ++k) {
    int i = list[k];
    if (i >= 0 && static_cast<size_t>(i) < handles.size())
      Move_Element(handles[static_cast<size_t>(i)], dx, dy);
  }
}

int Add_Objects_by_Selected_Attr(Objects_Array_Type* a, Objects_Array_Type* b,
                                 const Objects_Array_Type* source, int n) {
  if (n < 1) return 0;
  std::vector<HGLOBAL> handles = Array_Handles(source);
  bool to_a = false;  // a polyline or spline first goes to B
  for (size_t i = 0; i < handles.size() && i < static_cast<size_t>(n); ++i) {
    {
      Locked_Element e(handles[i]);
      // The attribute word of a polyline or spline is a handle: the previous
      // element's decision stands for it.
      if (e && e->type != EL_POLYLINE && e->type != EL_SPLINE) to_a = e->attr & ATTR_ORDINARY;
    }
    Add_Element_In_Array_by_Handle(to_a ? a : b, handles[i]);
  }
  return 1;
}
