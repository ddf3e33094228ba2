// Contour records and contour elements: a growable list of small blocks, each
// naming one drawing element of a closed chain.
#include <algorithm>

#include "contour/lists.h"

namespace {

// Fails on a record whose fields do not fit its block.
bool Consistent(const Contour_Type* c) {
  if (c->count < 0 || c->capacity < c->count) return false;
  return GlobalSize(c->parts) >= static_cast<SIZE_T>(c->capacity) * sizeof(HGLOBAL);
}

// Contour element i (0 .. count-1) of the record, or 0.
HGLOBAL Part_At(const Contour_Type* c, int i) {
  if (!c || i < 0) return 0;
  Handle_Slots slots(c->parts, c->count);
  return static_cast<size_t>(i) < slots.size() ? slots[static_cast<size_t>(i)] : 0;
}

}  // namespace

HGLOBAL Init_El_Contour(Contour_Type* contour, int n) {
  if (!contour) return 0;
  *contour = {};
  if (n <= 0) return 0;
  HGLOBAL block = GlobalAlloc(GHND, static_cast<SIZE_T>(n) * sizeof(HGLOBAL));
  if (block) *contour = {n, 0, block};
  return block;
}

HGLOBAL Create_El_Part(HGLOBAL element, int index, int flag) {
  HGLOBAL part = GlobalAlloc(GHND, sizeof(ContEl_Type));
  Locked<ContEl_Type> p(part);
  if (p) *p = {element, index, flag};
  return part;
}

HGLOBAL Create_El_Contour(int n) {
  if (n < 0) return 0;
  HGLOBAL record = GlobalAlloc(GHND, sizeof(Contour_Type));
  if (!record) return 0;
  Contour_Type c;
  Init_El_Contour(&c, n);
  {
    Handle_Slots slots(c.parts, c.capacity);
    for (size_t i = 0; i < slots.size(); ++i) {
      slots[i] = Create_El_Part(0, 0, 0);
      if (!slots[i]) break;  // memory is out: the rest would fail too
    }
  }
  Locked<Contour_Type> r(record);
  *r = c;
  return record;
}

int Add_ContEl(Contour_Type* contour, HGLOBAL part) {
  if (!contour || part == 0) return -1;
  if (!contour->parts) {
    if (contour->capacity != 0 || contour->count != 0) return -1;
    HGLOBAL block = GlobalAlloc(GHND, sizeof(HGLOBAL));
    if (!block) return -1;
    *contour = {1, 0, block};
  }
  if (!Consistent(contour)) return -1;
  if (contour->count >= contour->capacity) {
    if (contour->capacity == INT32_MAX) return -1;
    // Exactly one entry more per overflow; the memory table keeps spare room
    // behind the block, so appending stays linear.
    SIZE_T bytes = (static_cast<SIZE_T>(contour->capacity) + 1) * sizeof(HGLOBAL);
    if (!GlobalReAlloc(contour->parts, bytes, GMEM_MOVEABLE)) return -1;
    contour->capacity += 1;
  }
  HGLOBAL spare;
  {
    Locked<HGLOBAL> slots(contour->parts);
    if (!slots.holds(contour->count)) return -1;
    spare = slots[contour->count];
    slots[contour->count] = part;
  }
  if (spare && spare != part) GlobalFree(spare);  // a spare of Create_El_Contour
  contour->count += 1;
  return contour->count - 1;
}

HGLOBAL Get_ContEl_Handle(Contour_Type* contour, int i) {
  Locked<ContEl_Type> p(Part_At(contour, i));
  return p ? p->element : 0;
}

int Set_ContEl_Handle(Contour_Type* contour, HGLOBAL element, int i) {
  Locked<ContEl_Type> p(Part_At(contour, i));
  if (!p) return 0;
  p->element = element;
  return 1;
}

int Set_ContEl_Index(Contour_Type* contour, int index, int flag, int i) {
  Locked<ContEl_Type> p(Part_At(contour, i));
  if (!p) return 0;
  p->index = index;
  p->flag = flag;
  return 1;
}

void Delete_El_Contour(Contour_Type* contour) {
  if (!contour) return;
  if (contour->parts) {
    {
      // Spares past count belong to the record too; freed entries are always
      // zeroed, so nothing here is freed twice.
      Handle_Slots slots(contour->parts, std::max(contour->capacity, contour->count));
      for (size_t i = slots.size(); i-- > 0;) {
        if (slots[i]) GlobalFree(slots[i]);
      }
    }
    GlobalFree(contour->parts);
  }
  *contour = {};
}

int Find_ContEl(Contour_Type* contour, HGLOBAL element, int index, int flag) {
  if (!contour) return -1;
  Handle_Slots slots(contour->parts, contour->count);
  for (size_t i = 0; i < slots.size(); ++i) {
    Locked<ContEl_Type> p(slots[i]);
    if (p && p->element == element && p->index == index && p->flag == flag) {
      return static_cast<int>(i);
    }
  }
  return -1;
}

void Truncate_El_Contour(Contour_Type* contour, int k) {
  if (!contour || k < 0 || k >= contour->count) return;
  {
    Handle_Slots slots(contour->parts, contour->count);
    for (size_t i = slots.size(); i-- > static_cast<size_t>(k);) {
      GlobalFree(slots[i]);
      slots[i] = 0;
    }
  }
  contour->count = k;
}

HGLOBAL Copy_Contour(const Contour_Type* source) {
  if (!source) return 0;
  Handle_Slots from(source->parts, source->count);
  if (from.size() == 0) return 0;
  Contour_Type copy;
  if (!Init_El_Contour(&copy, static_cast<int>(from.size()))) return 0;
  copy.count = copy.capacity;
  {
    Handle_Slots to(copy.parts, copy.count);
    for (size_t i = 0; i < from.size(); ++i) {
      Locked<ContEl_Type> p(from[i]);
      to[i] = p ? Create_El_Part(p->element, p->index, p->flag) : 0;
      if (!to[i]) break;
    }
    if (!to[from.size() - 1]) copy.count = 0;  // a source element did not lock or memory is out
  }
  if (copy.count == 0) {
    Delete_El_Contour(&copy);
    return 0;
  }
  return copy.parts;
}
