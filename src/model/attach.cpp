// Attached objects: releasing elements from moved parents, re-pointing
// children to a new element, and copying elements with their links.
#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "model/child_index.h"
#include "model/record.h"
#include "tessaline/model/parent.h"

namespace {

using Handle_Map = std::unordered_map<HGLOBAL, HGLOBAL>;

// Replaces every slot of the element's parent list that holds a key of the
// map by its value; returns the number of slots replaced.
int Repoint(HGLOBAL e, const Handle_Map& to) {
  Locked_Element r(e);
  if (!r || !r->parents || r->parent_count < 1) return 0;
  Locked<HGLOBAL> list(r->parents);
  size_t n = std::min(static_cast<size_t>(r->parent_count), list.count());
  int changed = 0;
  for (size_t k = 0; k < n; ++k) {
    auto it = to.find(list[k]);
    if (it == to.end()) continue;
    list[k] = it->second;
    ++changed;
  }
  return changed;
}

bool Is_Element(HGLOBAL h) {
  return static_cast<bool>(Locked_Element(h));
}

// Gives `to` the creation type and a copy of the parent list of `from`.
bool Take_Links(HGLOBAL from, HGLOBAL to) {
  int32_t ct;
  std::vector<HGLOBAL> parents;
  {
    Locked_Element r(from);
    if (!r) return false;
    ct = r->creation_type;
    Locked<HGLOBAL> list(r->parents);
    size_t n = std::min(static_cast<size_t>(std::max(r->parent_count, 0)), list.count());
    parents.assign(list.get(), list.get() + n);
  }
  HGLOBAL fresh = 0;
  if (!parents.empty()) {
    fresh = GlobalAlloc(GHND, parents.size() * sizeof(HGLOBAL));
    if (!fresh) return false;
    Locked<HGLOBAL> list(fresh);
    std::copy(parents.begin(), parents.end(), list.get());
  }
  Locked_Element r(to);
  if (!r) {
    if (fresh) GlobalFree(fresh);
    return false;
  }
  if (r->parents) GlobalFree(r->parents);
  r->parents = fresh;
  r->parent_count = static_cast<int32_t>(parents.size());
  r->creation_type = ct;
  return true;
}

}  // namespace

void Do_Objects_Attach_Moving(const Objects_Array_Type* moved, const Objects_Array_Type* all) {
  std::vector<HGLOBAL> movers = Array_Handles(moved);
  if (movers.empty()) return;
  std::unordered_set<HGLOBAL> in_moved(movers.begin(), movers.end());
  Child_Index children(movers, {all});
  for (HGLOBAL m : movers) {
    // 1. Elements built on m stay attached only when m is their first parent
    //    and not also their second.
    for (HGLOBAL e : children.Children(m)) {
      HGLOBAL p1, p2;
      Get_Parent_Elem(e, &p1, &p2, nullptr);
      if ((p2 == m || p1 != m) && !in_moved.count(e)) Cut_Parent_Link(e, m);
    }
    // 2. m moved without its parents lets go of them.
    HGLOBAL p[3];
    Get_Parent_Elem(m, &p[0], &p[1], &p[2]);
    for (HGLOBAL parent : p) {
      if (parent && !in_moved.count(parent)) Cut_Parent_Link(m, parent);
    }
  }
}

int Change_All_Childs(HGLOBAL old_h, HGLOBAL new_h, int flag, const Objects_Array_Type* array,
                      const Objects_Array_Type* second) {
  if (!Is_Element(old_h) || !Is_Element(new_h)) return -1;
  if (old_h == new_h) return 0;
  if ((flag & 1) && !Take_Links(old_h, new_h)) return -2;
  const Handle_Map to = {{old_h, new_h}};
  int changed = 0;
  for (const Objects_Array_Type* a : {array, second}) {
    for (HGLOBAL e : Array_Handles(a)) {
      if (e != old_h && e != new_h) changed += Repoint(e, to);
    }
  }
  return changed;
}

void Create_Same_Objects_With_Attach(const Objects_Array_Type* source,
                                     Objects_Array_Type* destination, int count) {
  if (!destination || count < 1) return;
  std::vector<HGLOBAL> handles = Array_Handles(source);
  size_t n = std::min(handles.size(), static_cast<size_t>(count));
  Handle_Map copy_of;
  std::vector<HGLOBAL> made;
  for (size_t i = 0; i < n; ++i) {
    if (!Is_Element(handles[i])) continue;  // a stale entry is passed over
    HGLOBAL c = Create_Element_Copy(handles[i]);
    if (!c) continue;
    if (Add_Element_In_Array_by_Handle(destination, c) < 0) {
      Delete_Element(c);
      continue;
    }
    copy_of.try_emplace(handles[i], c);
    made.push_back(c);
  }
  for (HGLOBAL c : made) Repoint(c, copy_of);
}

int Create_Analog_Attach(const Objects_Array_Type* originals, const Objects_Array_Type* copies,
                         const Objects_Array_Type* children) {
  if (!originals || !copies || !children) return -1;
  std::vector<HGLOBAL> from = Array_Handles(originals), to = Array_Handles(copies);
  if (to.size() < from.size()) return -1;
  Handle_Map analog;
  for (size_t i = 0; i < from.size(); ++i) {
    if (from[i]) analog.try_emplace(from[i], to[i]);
  }
  int changed = 0;
  for (HGLOBAL e : Array_Handles(children)) changed += Repoint(e, analog);
  return changed;
}
