// Parent links: which slots a creation type uses, and how a link is cut when
// a parent goes away.
#include <initializer_list>

#include "model/child_index.h"
#include "model/record.h"
#include "tessaline/model/create.h"
#include "tessaline/model/parent.h"

namespace {

thread_local Cut_Observer cut_observer = nullptr;
thread_local void* cut_context = nullptr;

// The parent slots that Get_Parent_Elem and Set_Parent_Elem use, by creation
// type: up to three slot numbers, -1 for none. Types 11, 21, 26, 27 and 28
// use fewer slots here than a copy allocates for them; both tables stay.
struct Parent_Slots {
  int slot[3];
};

Parent_Slots Slots_For(int32_t ct) {
  switch (ct) {
    case 1:
    case 2:
    case 6:
    case 8:
    case 10:
    case 11:
    case 12:
    case 13:
    case 14:
    case 16:
    case 18:
    case 21:
    case 26:
    case 27:
      return {{0, -1, -1}};
    case 5:
    case 7:
    case 9:
    case 15:
    case 17:
    case 19:
    case 20:
    case 28:
      return {{0, 1, -1}};
    case 22:
    case 23:
    case 24:
    case 25:
      return {{0, 2, -1}};  // two parents of a four-slot list
    case 29:
      return {{0, 1, 2}};
    default:
      return {{-1, -1, -1}};
  }
}

void Free_Parent_List(HGLOBAL h) {
  Locked_Element e(h);
  if (!e) return;
  if (e->parents) GlobalFree(e->parents);
  e->parents = 0;
  e->parent_count = 0;
}

// Replaces the parent list by a new one holding `parents` in slots 0, 1, ...
void New_Parent_List(HGLOBAL h, std::initializer_list<HGLOBAL> parents) {
  Free_Parent_List(h);
  int n = static_cast<int>(parents.size());
  if (!Alloc_Parent(h, n)) return;
  int slot = 0;
  for (HGLOBAL p : parents) Write_Parent(h, p, slot++);
}

}  // namespace

void Set_Cut_Observer(Cut_Observer observer, void* context) {
  cut_observer = observer;
  cut_context = context;
}

void Get_Parent_Elem(HGLOBAL h, HGLOBAL* p1, HGLOBAL* p2, HGLOBAL* p3) {
  HGLOBAL* out[3] = {p1, p2, p3};
  for (HGLOBAL* p : out) {
    if (p) *p = 0;
  }
  // One lock of the record and one of its list (this runs once per element
  // when attached objects are indexed).
  Locked_Element e(h);
  if (!e || !e->parents) return;
  Parent_Slots s = Slots_For(e->creation_type);
  if (s.slot[0] < 0) return;
  Locked<HGLOBAL> list(e->parents);
  for (int k = 0; k < 3; ++k) {
    if (s.slot[k] >= 0 && out[k] && list.holds(s.slot[k])) *out[k] = list[s.slot[k]];
  }
}

void Set_Parent_Elem(HGLOBAL h, HGLOBAL parent, int k) {
  int32_t ct = Get_Creation_Type(h);
  Parent_Slots s = Slots_For(ct);
  if (s.slot[0] < 0) return;
  if (s.slot[1] < 0) {
    Write_Parent(h, parent, 0);  // one-parent types: slot 0 whatever k is
  } else if (k >= 0 && k < 3 && s.slot[k] >= 0) {
    Write_Parent(h, parent, s.slot[k]);
  }
}

int Cut_Parent_Link(HGLOBAL h, HGLOBAL m) {
  int32_t ct = Get_Creation_Type(h);
  if (m == 0 || ct == 0) return ct;
  Parent_Slots s = Slots_For(ct);
  HGLOBAL p[3] = {0, 0, 0};
  int cut = -1;  // which parent number holds m
  for (int k = 0; k < 3; ++k) {
    if (s.slot[k] < 0) continue;
    p[k] = Get_Parent(h, s.slot[k]);
    if (p[k] == m && cut < 0) cut = k;
  }
  if (cut < 0) return ct;
  if (cut_observer) cut_observer(h, m, cut_context);
  // With two parents, the one that does not hold m remains.
  HGLOBAL remaining = cut == 0 ? p[1] : p[0];

  switch (ct) {
    case 1:
    case 2:
    case 6:
    case 8:
    case 10:
    case 11:
    case 12:
    case 13:
    case 14:
    case 16:
    case 18:
    case 21:
    case 23:
      Free_Parent_List(h);
      Write_Creation_Type(h, 0);
      break;
    case 5:
    case 17:
      New_Parent_List(h, {remaining});
      Write_Creation_Type(h, 16);
      break;
    case 7:
    case 9:
    case 15:
    case 19:
      // Each two-parent construction steps down to its one-parent form.
      New_Parent_List(h, {remaining});
      Write_Creation_Type(h, ct == 7 ? 6 : ct == 9 ? 8 : ct == 15 ? 14 : 18);
      break;
    case 20:
      New_Parent_List(h, {remaining});
      Write_Creation_Type(h, Get_Element_Type_by_Handle(remaining) == EL_SEGMENT ? 16 : 18);
      break;
    case 22:
    case 25: {
      if (remaining == m) {
        Free_Parent_List(h);
        Write_Creation_Type(h, 0);
        break;
      }
      // The four slots hold two pairs: (0, 1) and (2, 3). The pair that does
      // not hold m stays, as a two-slot list.
      HGLOBAL keep0 = Get_Parent(h, cut == 0 ? 2 : 0);
      HGLOBAL keep1 = Get_Parent(h, cut == 0 ? 3 : 1);
      if (cut == 0) {
        // The first pair is gone: the line's ends are swapped so that its
        // first end is again the one on the first remaining parent.
        double x1, y1, x2, y2;
        if (Get_Segment_Coord_by_Handle(h, &x1, &y1, &x2, &y2))
          Set_Segment_Coord_by_Handle(h, x2, y2, x1, y1);
      }
      New_Parent_List(h, {keep0, keep1});
      Write_Creation_Type(h, 21);
      break;
    }
    case 24:
      if (remaining == m) {
        Free_Parent_List(h);
        Write_Creation_Type(h, 0);
      } else {
        Write_Parent(h, 0, s.slot[cut]);
        Write_Creation_Type(h, 23);
      }
      break;
    case 26:
      Write_Creation_Type(h, 3);  // no parents; the list is kept
      break;
    case 27:
      Write_Creation_Type(h, 4);
      break;
    case 28:
      Write_Parent(h, remaining, 0);
      Write_Parent(h, 0, 1);
      Write_Creation_Type(h, 14);
      break;
    case 29: {
      HGLOBAL rest[2];
      int n = 0;
      for (int k = 0; k < 3; ++k) {
        if (k != cut) rest[n++] = p[k];
      }
      Write_Parent(h, rest[0], 0);
      Write_Parent(h, rest[1], 1);
      Write_Parent(h, 0, 2);
      Write_Creation_Type(h, 28);
      break;
    }
    default:
      break;
  }
  return ct;
}
