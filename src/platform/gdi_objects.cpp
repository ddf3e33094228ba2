// The GDI handle table, stock objects, pens, brushes, bitmaps and selection.
#include <algorithm>
#include <atomic>
#include <cstring>
#include <deque>
#include <mutex>
#include <new>

#include "platform/gdi_object.h"
#include "tessaline/platform/user.h"

namespace gdi {
namespace {

// The handle layout of gdi_object.h: a 64-bit handle holds a 28-bit slot
// index and a 32-bit generation; a 32-bit one a 16-bit index (as many
// objects as a Win32 process may hold) and a 12-bit generation.
constexpr uint32_t kKindBits = 4;
constexpr uint32_t kHandleBits = sizeof(uintptr_t) * 8;
constexpr uint32_t kIndexBits = kHandleBits >= 64 ? 28 : 16;
constexpr uint32_t kMaxIndex = (1u << kIndexBits) - 1;
constexpr uint32_t kGenerationShift = kKindBits + kIndexBits;
constexpr uint32_t kGenerationBits = std::min<uint32_t>(32, kHandleBits - kGenerationShift);
constexpr uint32_t kMaxGeneration =
    kGenerationBits >= 32 ? UINT32_MAX : (1u << kGenerationBits) - 1;
static_assert(kGenerationShift + kGenerationBits <= kHandleBits, "a handle holds its fields");
constexpr int kStockCount = NULL_PEN + 1;

struct Slot {
  std::unique_ptr<Object> object;
  uint32_t generation = 1;
};

struct Table {
  std::mutex mutex;
  std::vector<Slot> slots{1};  // slot 0 is never used
  std::deque<uint32_t> free_slots;
  long live = 0;  // objects that are not stock
  HGDIOBJ stock[kStockCount] = {};
  HBITMAP stock_bitmap = nullptr;
};

HGDIOBJ Make_Handle(uint32_t index, uint32_t generation, Kind kind) {
  uintptr_t v = (static_cast<uintptr_t>(generation) << kGenerationShift) |
                (static_cast<uintptr_t>(index) << kKindBits) | static_cast<uintptr_t>(kind);
  return reinterpret_cast<HGDIOBJ>(v);
}

// Call with the mutex held.
HGDIOBJ Insert(Table& t, std::unique_ptr<Object> object) {
  uint32_t index;
  if (!t.free_slots.empty()) {
    index = t.free_slots.front();
    t.free_slots.pop_front();
  } else {
    if (t.slots.size() > kMaxIndex) return nullptr;
    index = static_cast<uint32_t>(t.slots.size());
    t.slots.emplace_back();
  }
  Slot& s = t.slots[index];
  Kind kind = object->kind;
  if (!object->stock) ++t.live;
  s.object = std::move(object);
  return Make_Handle(index, s.generation, kind);
}

// Call with the mutex held.
Slot* Find(Table& t, HGDIOBJ h) {
  uintptr_t v = reinterpret_cast<uintptr_t>(h);
  uint32_t index = static_cast<uint32_t>((v >> kKindBits) & kMaxIndex);
  uint32_t generation = static_cast<uint32_t>(v >> kGenerationShift);
  auto kind = static_cast<uint8_t>(v & ((1u << kKindBits) - 1));
  if (index == 0 || index >= t.slots.size()) return nullptr;
  Slot& s = t.slots[index];
  if (!s.object || s.generation != generation || static_cast<uint8_t>(s.object->kind) != kind) {
    return nullptr;
  }
  return &s;
}

std::unique_ptr<Object> Make_Stock_Pen(int style, COLORREF color) {
  auto p = std::make_unique<Pen>();
  p->style = style;
  p->color = color;
  p->stock = true;
  return p;
}

std::unique_ptr<Object> Make_Stock_Brush(bool hollow, COLORREF color) {
  auto b = std::make_unique<Brush>();
  b->hollow = hollow;
  b->color = color;
  b->stock = true;
  return b;
}

// The table lives until the module releases it (Release_Gdi_Table, when
// the library is unloaded); a call after that starts a fresh one.
std::atomic<Table*> the_table{nullptr};
std::mutex creation;

Table* Make_Table() {
  {
    auto* table = new Table;
    std::lock_guard<std::mutex> guard(table->mutex);
    table->stock[WHITE_BRUSH] = Insert(*table, Make_Stock_Brush(false, RGB(255, 255, 255)));
    table->stock[LTGRAY_BRUSH] = Insert(*table, Make_Stock_Brush(false, RGB(192, 192, 192)));
    table->stock[GRAY_BRUSH] = Insert(*table, Make_Stock_Brush(false, RGB(128, 128, 128)));
    table->stock[DKGRAY_BRUSH] = Insert(*table, Make_Stock_Brush(false, RGB(64, 64, 64)));
    table->stock[BLACK_BRUSH] = Insert(*table, Make_Stock_Brush(false, RGB(0, 0, 0)));
    table->stock[NULL_BRUSH] = Insert(*table, Make_Stock_Brush(true, 0));
    table->stock[WHITE_PEN] = Insert(*table, Make_Stock_Pen(PS_SOLID, RGB(255, 255, 255)));
    table->stock[BLACK_PEN] = Insert(*table, Make_Stock_Pen(PS_SOLID, RGB(0, 0, 0)));
    table->stock[NULL_PEN] = Insert(*table, Make_Stock_Pen(PS_NULL, 0));
    auto bm = std::make_unique<Bitmap>();
    bm->width = bm->height = 1;
    bm->pixels.assign(1, 0);
    bm->stock = true;
    table->stock_bitmap = static_cast<HBITMAP>(Insert(*table, std::move(bm)));
    return table;
  }
}

Table& The_Table() {
  Table* t = the_table.load(std::memory_order_acquire);
  if (t) return *t;
  std::lock_guard<std::mutex> guard(creation);
  t = the_table.load(std::memory_order_relaxed);
  if (!t) {
    t = Make_Table();
    the_table.store(t, std::memory_order_release);
  }
  return *t;
}

// Adjusts the selection count when a context swaps `old_h` for `new_h`.
void Count_Selection(HGDIOBJ old_h, HGDIOBJ new_h) {
  if (Object* o = Lookup(old_h); o && !o->stock) --o->selections;
  if (Object* o = Lookup(new_h); o && !o->stock) ++o->selections;
}

}  // namespace

HGDIOBJ Register(std::unique_ptr<Object> object) {
  if (!object) return nullptr;
  Table& t = The_Table();
  std::lock_guard<std::mutex> guard(t.mutex);
  return Insert(t, std::move(object));
}

Object* Lookup(HGDIOBJ h) {
  if (!h) return nullptr;
  Table& t = The_Table();
  std::lock_guard<std::mutex> guard(t.mutex);
  Slot* s = Find(t, h);
  return s ? s->object.get() : nullptr;
}

bool Unregister(HGDIOBJ h) {
  std::unique_ptr<Object> doomed;  // destroyed after the lock is released
  {
    Table& t = The_Table();
    std::lock_guard<std::mutex> guard(t.mutex);
    Slot* s = Find(t, h);
    if (!s || s->object->stock) return false;
    doomed = std::move(s->object);
    // Generation 0 never names a live object, so wrap from the top to 1.
    s->generation = s->generation == kMaxGeneration ? 1 : s->generation + 1;
    t.free_slots.push_back(static_cast<uint32_t>(s - t.slots.data()));
    --t.live;
  }
  return true;
}

HGDIOBJ Stock(int index) {
  if (index < 0 || index >= kStockCount) return nullptr;
  return The_Table().stock[index];
}

HBITMAP Stock_Bitmap() {
  return The_Table().stock_bitmap;
}

Brush_Color Resolve_Brush(HBRUSH brush) {
  Brush_Color out;
  auto v = reinterpret_cast<uintptr_t>(brush);
  if (v >= 1 && v <= 31) {
    out.valid = true;
    out.hollow = false;
    out.pixel = To_Pixel(GetSysColor(static_cast<int>(v - 1)));
    return out;
  }
  Brush* b = Lookup_As<Brush>(brush);
  if (!b) return out;
  out.valid = true;
  out.hollow = b->hollow;
  out.pixel = To_Pixel(b->color);
  return out;
}

}  // namespace gdi

using namespace gdi;

long GdiObjectCount() {
  Table& t = The_Table();
  std::lock_guard<std::mutex> guard(t.mutex);
  return t.live;
}

HGDIOBJ GetStockObject(int index) {
  return Stock(index);
}

HPEN CreatePen(int style, int width, COLORREF color) {
  if (style < PS_SOLID || style > PS_INSIDEFRAME) return nullptr;
  try {
    auto p = std::make_unique<Pen>();
    p->style = style;
    p->width = std::max(width, 0);
    p->color = color & 0xFFFFFF;
    return static_cast<HPEN>(Register(std::move(p)));
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

HPEN CreatePenIndirect(const LOGPEN* pen) {
  if (!pen) return nullptr;
  return CreatePen(static_cast<int>(pen->lopnStyle), pen->lopnWidth.x, pen->lopnColor);
}

HBRUSH CreateSolidBrush(COLORREF color) {
  try {
    auto b = std::make_unique<Brush>();
    b->color = color & 0xFFFFFF;
    return static_cast<HBRUSH>(Register(std::move(b)));
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

HBITMAP CreateCompatibleBitmap(HDC dc, int w, int h) {
  if (dc && !Lookup_As<Dc>(dc)) return nullptr;
  if (w < 0 || h < 0 || w > 32767 || h > 32767) return nullptr;
  if (w == 0 || h == 0) w = h = 1;
  if (static_cast<int64_t>(w) * h > (int64_t{1} << 26)) return nullptr;
  try {
    auto bm = std::make_unique<Bitmap>();
    bm->width = w;
    bm->height = h;
    bm->pixels.assign(static_cast<size_t>(w) * h, 0);
    return static_cast<HBITMAP>(Register(std::move(bm)));
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

LONG GetBitmapBits(HBITMAP bm, LONG bytes, void* bits) {
  Bitmap* b = Lookup_As<Bitmap>(bm);
  if (!b || bytes < 0) return 0;
  size_t size = b->pixels.size() * 4;
  if (!bits) return static_cast<LONG>(size);
  size_t n = std::min(size, static_cast<size_t>(bytes));
  std::memcpy(bits, b->pixels.data(), n);
  return static_cast<LONG>(n);
}

LONG SetBitmapBits(HBITMAP bm, DWORD bytes, const void* bits) {
  Bitmap* b = Lookup_As<Bitmap>(bm);
  if (!b || b->stock || !bits) return 0;
  size_t n = std::min(b->pixels.size() * 4, static_cast<size_t>(bytes));
  std::memcpy(b->pixels.data(), bits, n);
  // Keep the unused top byte 0, as GetPixel and the raster operations expect.
  for (size_t i = 0; i < (n + 3) / 4; ++i) b->pixels[i] &= 0xFFFFFF;
  return static_cast<LONG>(n);
}

HGDIOBJ SelectObject(HDC dc, HGDIOBJ obj) {
  Dc* d = Lookup_As<Dc>(dc);
  if (!d) return obj && Lookup_As<Region_Object>(obj) ? HGDI_ERROR : nullptr;
  Object* o = Lookup(obj);
  if (!o) return nullptr;
  HGDIOBJ old = nullptr;
  switch (o->kind) {
    case Kind::pen:
      old = d->pen;
      d->pen = static_cast<HPEN>(obj);
      break;
    case Kind::brush:
      old = d->brush;
      d->brush = static_cast<HBRUSH>(obj);
      break;
    case Kind::bitmap:
      if (d->dc_kind != Dc_Kind::memory) return nullptr;
      if (!o->stock && o->selections > 0 && d->bitmap != obj) return nullptr;
      old = d->bitmap;
      d->bitmap = static_cast<HBITMAP>(obj);
      break;
    case Kind::region: {
      int type = SelectClipRgn(dc, static_cast<HRGN>(obj));
      if (type == ERROR) return HGDI_ERROR;
      return reinterpret_cast<HGDIOBJ>(static_cast<intptr_t>(type));
    }
    default:
      return nullptr;
  }
  Count_Selection(old, obj);
  return old;
}

BOOL DeleteObject(HGDIOBJ obj) {
  Object* o = Lookup(obj);
  if (!o || o->kind == Kind::dc) return FALSE;
  if (o->stock) return TRUE;
  if (o->selections > 0) return FALSE;
  return Unregister(obj) ? TRUE : FALSE;
}

DWORD GetObjectType(HGDIOBJ obj) {
  Object* o = Lookup(obj);
  if (!o) return 0;
  switch (o->kind) {
    case Kind::dc:
      return static_cast<Dc*>(o)->dc_kind == Dc_Kind::memory ? OBJ_MEMDC : OBJ_DC;
    case Kind::pen:
      return OBJ_PEN;
    case Kind::brush:
      return OBJ_BRUSH;
    case Kind::region:
      return OBJ_REGION;
    case Kind::bitmap:
      return OBJ_BITMAP;
    case Kind::palette:
      return OBJ_PAL;
  }
  return 0;
}

int GetObjectA(HGDIOBJ obj, int size, void* out) {
  Object* o = Lookup(obj);
  if (!o || size < 0) return 0;
  auto copy = [&](const auto& record) {
    if (!out) return static_cast<int>(sizeof(record));
    int n = std::min(size, static_cast<int>(sizeof(record)));
    std::memcpy(out, &record, static_cast<size_t>(n));
    return n;
  };
  switch (o->kind) {
    case Kind::pen: {
      auto* p = static_cast<Pen*>(o);
      LOGPEN lp{static_cast<UINT>(p->style), POINT{p->width, 0}, p->color};
      return copy(lp);
    }
    case Kind::brush: {
      auto* b = static_cast<Brush*>(o);
      LOGBRUSH lb{b->hollow ? BS_NULL : BS_SOLID, b->hollow ? 0 : b->color, 0};
      return copy(lb);
    }
    case Kind::bitmap: {
      auto* b = static_cast<Bitmap*>(o);
      BITMAP bm{0, b->width, b->height, b->width * 4, 1, 32, nullptr};
      return copy(bm);
    }
    default:
      return 0;
  }
}

HGDIOBJ GetCurrentObject(HDC dc, UINT type) {
  Dc* d = Lookup_As<Dc>(dc);
  if (!d) return nullptr;
  switch (type) {
    case OBJ_PEN:
      return d->pen;
    case OBJ_BRUSH:
      return d->brush;
    case OBJ_BITMAP:
      return d->bitmap;
    default:
      return nullptr;
  }
}

void Release_Gdi_Table() {
  std::lock_guard<std::mutex> guard(creation);
  delete the_table.exchange(nullptr);
}
