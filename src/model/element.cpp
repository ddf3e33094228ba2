// Element records: allocation, type, attribute bits, creation type, parent
// list, copying and deletion.
#include <algorithm>
#include <cstring>
#include <vector>

#include "model/record.h"
#include "tessaline/model/create.h"
#include "tessaline/platform/user.h"

void Show_Null_Element_Box() {
  MessageBoxA(nullptr, "Messsage", "pElem==NULL", MB_OK);
}

HGLOBAL Alloc_Element() {
  return GlobalAlloc(GHND, sizeof(Element_Record));
}

int Get_Element_Type_by_Handle(HGLOBAL h) {
  Locked_Element e(h);
  if (!Lock_Guarded(e)) return 0;
  return e->type;
}

int Get_Element_Attribute(HGLOBAL h) {
  Locked_Element e(h);
  if (!Lock_Guarded(e)) return 0;
  if (e->type == EL_POLYLINE || e->type == EL_SPLINE) return 0;  // word 1 is a handle there
  return e->attr;
}

int Get_Selected_Attr_by_Handle(HGLOBAL h) {
  Locked_Element e(h);
  if (!e) return 0;
  return (e->attr & ATTR_SELECTED) ? 1 : 0;
}

namespace {

// Sets or clears `bit` in word w; returns the bit's previous state as 0/1.
int Set_Bit(int32_t& w, int32_t bit, int value) {
  int previous = (w & bit) ? 1 : 0;
  if (value & 1) {
    w |= bit;
  } else {
    w &= ~bit;
  }
  return previous;
}

// Number of per-node attribute words in use for the selection bit:
// polyline pieces 0..n-2, spline words 0..2n-2.
long long Select_Words(const Element_Record& r) {
  if (r.type == EL_POLYLINE) return static_cast<long long>(r.u.poly.n) - 1;
  return 2LL * r.u.spline.n - 1;
}

}  // namespace

int Set_Element_Select_Attribute(HGLOBAL h, int value) {
  Locked_Element e(h);
  if (!Lock_Guarded(e)) return 0;
  if (Is_Simple_Type(e->type)) return Set_Bit(e->attr, ATTR_SELECTED, value);
  if (e->type != EL_POLYLINE && e->type != EL_SPLINE) return 0;
  Locked<int32_t> words(static_cast<HGLOBAL>(e->attr));
  long long n = std::min<long long>(Select_Words(*e), static_cast<long long>(words.count()));
  int any = 0;
  for (long long i = 0; i < n; ++i) any |= Set_Bit(words[i], ATTR_SELECTED, value);
  return any;
}

int Set_Element_Active_Attribute(HGLOBAL h, int index, int value) {
  Locked_Element e(h);
  if (!e) return -1;
  if (Is_Simple_Type(e->type)) return Set_Bit(e->attr, ATTR_ACTIVE, value);
  if (e->type != EL_POLYLINE && e->type != EL_SPLINE) return -1;
  // The bound is the node count for the spline too, although its block holds 2n words.
  int32_t n = e->type == EL_POLYLINE ? e->u.poly.n : e->u.spline.n;
  if (index < 0 || index > n - 1) return -1;
  Locked<int32_t> words(static_cast<HGLOBAL>(e->attr));
  if (!words.holds(index)) return -1;
  return Set_Bit(words[index], ATTR_ACTIVE, value);
}

int Set_Element_Edit_Attribute(HGLOBAL h, int index, int value) {
  Locked_Element e(h);
  if (!Lock_Guarded(e)) return 0;
  if (Is_Simple_Type(e->type)) return Set_Bit(e->attr, ATTR_EDIT, value);
  // A polyline cannot be put into edit state while a spline can: kept so.
  if (e->type != EL_SPLINE) return 0;
  Locked<int32_t> words(static_cast<HGLOBAL>(e->attr));
  if (!words.holds(index)) return 0;
  return Set_Bit(words[index], ATTR_EDIT, value);
}

void Write_Creation_Type(HGLOBAL h, int32_t code) {
  Locked_Element e(h);
  if (e) e->creation_type = code;
}

int Get_Creation_Type(HGLOBAL h) {
  Locked_Element e(h);
  return e ? e->creation_type : 0;
}

HGLOBAL Alloc_Parent(HGLOBAL h, int n) {
  Locked_Element e(h);
  if (!e || n < 1 || n > 64) return 0;
  HGLOBAL list = GlobalAlloc(GHND, static_cast<SIZE_T>(n) * sizeof(HGLOBAL));
  if (!list) return 0;
  // A previous list is not freed here: callers free it first.
  e->parents = list;
  e->parent_count = n;
  return list;
}

int Write_Parent(HGLOBAL h, HGLOBAL parent, int slot) {
  Locked_Element e(h);
  if (!e || !e->parents) return 0;
  Locked<HGLOBAL> list(e->parents);
  if (!list.holds(slot)) return 0;
  list[slot] = parent;
  return 1;
}

HGLOBAL Get_Parent(HGLOBAL h, int slot) {
  Locked_Element e(h);
  if (!e || !e->parents) return 0;
  Locked<HGLOBAL> list(e->parents);
  return list.holds(slot) ? list[slot] : 0;
}

namespace {

// The parent slots that a copy allocates for a creation type, and how many
// of them it copies from the source.
struct Copy_Slots {
  int allocated;
  int copied;
};

Copy_Slots Copy_Slots_For(int32_t ct) {
  switch (ct) {
    case 1:
    case 2:
    case 6:
    case 8:
    case 10:
    case 12:
    case 13:
    case 14:
    case 16:
    case 18:
      return {1, 1};
    case 5:
    case 7:
    case 9:
    case 11:
    case 15:
    case 17:
    case 19:
    case 20:
    case 21:
    case 26:
    case 27:
      return {2, 2};
    case 22:
    case 23:
    case 24:
    case 25:
      return {4, 4};
    case 28:
      return {3, 2};  // slot 2 stays 0, deliberately
    case 29:
      return {3, 3};
    default:
      return {0, 0};
  }
}

// The first n values of a block of T, zero past the block's end.
template <class T>
std::vector<T> Read_Block(HGLOBAL h, size_t n) {
  std::vector<T> out(n);
  Locked<T> b(h);
  for (size_t i = 0; i < n && b.holds(static_cast<long long>(i)); ++i) out[i] = b[i];
  return out;
}

// How many whole T a block holds (0 for one that does not lock).
template <class T>
size_t Block_Count(HGLOBAL h) {
  return static_cast<size_t>(GlobalSize(h) / sizeof(T));
}

// The node count a compound record claims, bounded by what its blocks hold:
// a record whose count lies is copied with the nodes that really exist.
size_t Real_Node_Count(int32_t claimed, size_t held) {
  size_t n = claimed > 0 ? static_cast<size_t>(claimed) : 0;
  return std::min(n, held);
}

// Copies min(sizes) bytes from block `from` into block `to`.
void Copy_Bytes(HGLOBAL from, HGLOBAL to) {
  Locked<unsigned char> a(from);
  Locked<unsigned char> b(to);
  if (a && b) std::memcpy(b.get(), a.get(), std::min(a.count(), b.count()));
}

void Free_Parent_List(Element_Record& r) {
  if (r.parents) GlobalFree(r.parents);
  r.parents = 0;
  r.parent_count = 0;
}

// A new element of the source's type holding the source's data; 0 on failure.
HGLOBAL Copy_Geometry(const Element_Record& src) {
  if (Is_Simple_Type(src.type)) {
    HGLOBAL h = Alloc_Element();
    Locked_Element d(h);
    if (!d) return 0;
    d->type = src.type;
    d->attr = src.attr;
    d->u = src.u;
    return h;
  }
  if (src.type == EL_POLYLINE) {
    size_t n = Real_Node_Count(src.u.poly.n, Block_Count<double>(src.u.poly.nodes) / 2);
    std::vector<double> xy = Read_Block<double>(src.u.poly.nodes, 2 * n);
    std::vector<double> x(n), y(n);
    for (size_t i = 0; i < n; ++i) {
      x[i] = xy[2 * i];
      y[i] = xy[2 * i + 1];
    }
    HGLOBAL h = Create_Polyline(static_cast<int32_t>(n), x.data(), y.data());
    Locked_Element d(h);
    if (d) Copy_Bytes(static_cast<HGLOBAL>(src.attr), static_cast<HGLOBAL>(d->attr));
    return h;
  }
  if (src.type == EL_SPLINE) {
    size_t n = Real_Node_Count(src.u.spline.n, std::min(Block_Count<double>(src.u.spline.x),
                                                        Block_Count<double>(src.u.spline.y)));
    std::vector<double> x = Read_Block<double>(src.u.spline.x, n);
    std::vector<double> y = Read_Block<double>(src.u.spline.y, n);
    std::vector<double> m1 = Read_Block<double>(src.u.spline.m1, n);
    std::vector<double> m2 = Read_Block<double>(src.u.spline.m2, n);
    HGLOBAL h = Create_Spline(static_cast<int32_t>(n), x.data(), y.data(), m1.data(), m2.data());
    Locked_Element d(h);
    if (d) Copy_Bytes(static_cast<HGLOBAL>(src.attr), static_cast<HGLOBAL>(d->attr));
    return h;
  }
  return 0;
}

}  // namespace

HGLOBAL Create_Element_Copy(HGLOBAL h) {
  Locked_Element src(h);
  if (!Lock_Guarded(src)) return 0;
  HGLOBAL copy = Copy_Geometry(*src);
  if (!copy) return 0;
  int32_t ct = src->creation_type;
  Copy_Slots slots = Copy_Slots_For(ct);
  {
    Locked_Element d(copy);
    d->creation_type = ct;
    Free_Parent_List(*d);
  }
  if (slots.allocated > 0) {
    if (!Alloc_Parent(copy, slots.allocated)) {
      Delete_Element(copy);
      return 0;
    }
    for (int i = 0; i < slots.copied; ++i) Write_Parent(copy, Get_Parent(h, i), i);
  }
  return copy;
}

void Delete_Element(HGLOBAL h) {
  Element_Record r;
  {
    Locked_Element e(h);
    if (!e) return;
    r = *e;
  }
  switch (r.type) {
    case EL_POINT:
    case EL_SEGMENT:
    case EL_CIRCLE:
    case EL_ARC:
      if (r.parents) GlobalFree(r.parents);
      if (r.second) GlobalFree(r.second);
      GlobalFree(h);
      break;
    case EL_POLYLINE:
      // The parent list of a compound element is not freed here, as it never was.
      GlobalFree(r.u.poly.nodes);
      GlobalFree(static_cast<HGLOBAL>(r.attr));
      GlobalFree(h);
      break;
    case EL_SPLINE:
      GlobalFree(r.u.spline.x);
      GlobalFree(r.u.spline.y);
      GlobalFree(r.u.spline.m1);
      GlobalFree(r.u.spline.m2);
      GlobalFree(static_cast<HGLOBAL>(r.attr));
      GlobalFree(h);
      break;
    default:
      break;  // an unknown type frees nothing
  }
}

Curs_Pos_Type* Clear_Curs_Pos(Curs_Pos_Type* pos) {
  if (!pos) return pos;
  for (int i = 0; i < 8; ++i) {
    pos->x[i] = 0.0;
    pos->y[i] = 0.0;
  }
  pos->count = 0;
  return pos;
}
