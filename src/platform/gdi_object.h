// The objects behind GDI handles and the table that hands them out.
//
// A handle is not a pointer to its object: it is a slot index, a generation
// and a kind packed into a pointer-sized value,
//
//   64-bit targets                       32-bit targets
//   bits 63..32  generation (1..2^32-1)   bits 31..20  generation (1..4095)
//   bits 31..4   slot index (1..2^28-1)   bits 19..4   slot index (1..65535)
//   bits  3..0   kind (Kind below)        bits  3..0   kind
//
// (the generation being the slot's when the object was made), so that a deleted, made-up or wrongly
// typed handle is refused instead of reaching memory. The table is guarded by a mutex; an object
// itself is used without a lock (callers do not share one object between threads while changing it,
// as with Win32).
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "platform/region.h"
#include "tessaline/platform/gdi.h"

namespace gdi {

enum class Kind : uint8_t { dc = 1, pen, brush, region, bitmap, palette };

struct Object {
  explicit Object(Kind k) : kind(k) {}
  virtual ~Object() = default;
  Kind kind;
  bool stock = false;
  std::atomic<int> selections{0};  // contexts this object is selected into
};

struct Pen : Object {
  Pen() : Object(Kind::pen) {}
  int style = PS_SOLID;
  int width = 0;  // logical units, scaled by the mapping; 0 is one device pixel
  COLORREF color = 0;
};

struct Brush : Object {
  Brush() : Object(Kind::brush) {}
  bool hollow = false;
  COLORREF color = 0;
};

// A device-dependent bitmap. Pixels are kept as Win32 keeps a 32-bit
// surface: rows top-down, each pixel the bytes blue, green, red, 0 (a
// little-endian uint32 0x00RRGGBB). A stock bitmap (the one a fresh memory
// context holds) is read-only.
struct Bitmap : Object {
  Bitmap() : Object(Kind::bitmap) {}
  int width = 0;
  int height = 0;
  std::vector<uint32_t> pixels;
};

struct Region_Object : Object {
  Region_Object() : Object(Kind::region) {}
  Region region;  // logical or device coordinates: the caller's choice
};

enum class Dc_Kind { memory, display, information };

struct Dc : Object {
  Dc() : Object(Kind::dc) {}
  Dc_Kind dc_kind = Dc_Kind::memory;
  HPEN pen = nullptr;
  HBRUSH brush = nullptr;
  HBITMAP bitmap = nullptr;  // memory contexts only
  int rop2 = R2_COPYPEN;
  int bk_mode = OPAQUE;
  COLORREF bk_color = 0xFFFFFF;
  COLORREF text_color = 0;
  int poly_fill_mode = ALTERNATE;
  int map_mode = MM_TEXT;
  POINT window_org{0, 0};
  SIZE window_ext{1, 1};
  POINT viewport_org{0, 0};
  SIZE viewport_ext{1, 1};
  POINT position{0, 0};        // logical
  long dash_phase = 0;         // pixels of the pen pattern used since MoveToEx
  std::optional<Region> clip;  // device coordinates
};

// Registers an object and returns its handle; null when the table is full.
HGDIOBJ Register(std::unique_ptr<Object> object);
// The live object of a handle, or null.
Object* Lookup(HGDIOBJ h);
// Frees the object of a handle; false when the handle is not live.
bool Unregister(HGDIOBJ h);

template <class T>
struct Kind_Of;
template <>
struct Kind_Of<Pen> {
  static constexpr Kind value = Kind::pen;
};
template <>
struct Kind_Of<Brush> {
  static constexpr Kind value = Kind::brush;
};
template <>
struct Kind_Of<Bitmap> {
  static constexpr Kind value = Kind::bitmap;
};
template <>
struct Kind_Of<Region_Object> {
  static constexpr Kind value = Kind::region;
};
template <>
struct Kind_Of<Dc> {
  static constexpr Kind value = Kind::dc;
};

// The live object of a handle if it has kind T, else null.
template <class T>
T* Lookup_As(const void* h) {
  Object* o = Lookup(const_cast<void*>(h));
  return o && o->kind == Kind_Of<T>::value ? static_cast<T*>(o) : nullptr;
}

// 0x00BBGGRR (COLORREF) to the surface's 0x00RRGGBB and back; the top byte
// of a COLORREF is dropped.
inline uint32_t To_Pixel(COLORREF c) {
  return ((c & 0xFF) << 16) | (c & 0xFF00) | ((c >> 16) & 0xFF);
}
inline COLORREF To_Colorref(uint32_t p) {
  return ((p & 0xFF) << 16) | (p & 0xFF00) | ((p >> 16) & 0xFF);
}

// The display metrics: 0 HORZSIZE, 1 VERTSIZE (mm), 2 HORZRES, 3 VERTRES.
int Display_Metric(int index);

// Stock objects by index, and the 1 x 1 stock bitmap of fresh memory
// contexts.
HGDIOBJ Stock(int index);
HBITMAP Stock_Bitmap();

// The colour of a brush handle, or nothing for a hollow or invalid brush.
// Values 1..31 are system colour indexes + 1, as FillRect accepts them.
struct Brush_Color {
  bool valid = false;
  bool hollow = true;
  uint32_t pixel = 0;
};
Brush_Color Resolve_Brush(HBRUSH brush);

}  // namespace gdi
