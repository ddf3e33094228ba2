// Screen contexts, the saved-state stack, palettes and the stretch mode.
//
// These are kept beside the context objects, in a table keyed by context
// handle, so that the context record itself stays as the drawing code knows
// it. Entries of contexts that no longer exist are dropped as the table is
// used.
#include <map>
#include <mutex>
#include <vector>

#include "platform/dib_internal.h"
#include "platform/gdi_object.h"
#include "tessaline/platform/dib.h"

namespace gdi {
namespace {

struct Saved_State {
  HPEN pen;
  HBRUSH brush;
  HBITMAP bitmap;
  HPALETTE palette;
  int stretch_mode;
  int rop2, bk_mode, poly_fill_mode, map_mode;
  COLORREF bk_color, text_color;
  POINT window_org, viewport_org, position;
  SIZE window_ext, viewport_ext;
  long dash_phase;
  std::optional<Region> clip;
};

struct Dc_Extra {
  bool from_get_dc = false;
  HPALETTE palette = nullptr;  // null: the stock default palette
  int stretch_mode = BLACKONWHITE;
  std::vector<Saved_State> saved;
};

struct Extras {
  std::mutex mutex;
  std::map<HDC, Dc_Extra> table;
};

Extras& The_Extras() {
  static Extras e;
  return e;
}

// The extra state of a live context (made on first use), under the lock.
Dc_Extra& Extra_Of(Extras& e, HDC dc) {
  if (e.table.size() > 64 && e.table.find(dc) == e.table.end()) {
    for (auto it = e.table.begin(); it != e.table.end();) {
      it = Lookup_As<Dc>(it->first) ? std::next(it) : e.table.erase(it);
    }
  }
  return e.table[dc];
}

HPALETTE Default_Palette() {
  static HPALETTE stock = [] {
    auto p = std::make_unique<Palette>();
    p->stock = true;
    // The twenty static colours of a palette device's default palette.
    static const BYTE kStatic[20][3] = {
        {0, 0, 0},       {128, 0, 0},     {0, 128, 0},     {128, 128, 0},   {0, 0, 128},
        {128, 0, 128},   {0, 128, 128},   {192, 192, 192}, {192, 220, 192}, {166, 202, 240},
        {255, 251, 240}, {160, 160, 164}, {128, 128, 128}, {255, 0, 0},     {0, 255, 0},
        {255, 255, 0},   {0, 0, 255},     {255, 0, 255},   {0, 255, 255},   {255, 255, 255}};
    for (const auto& c : kStatic) p->entries.push_back(PALETTEENTRY{c[0], c[1], c[2], 0});
    return static_cast<HPALETTE>(Register(std::move(p)));
  }();
  return stock;
}

}  // namespace

Palette* Lookup_Palette(HGDIOBJ h) {
  Object* o = Lookup(h);
  return o && o->kind == Kind::palette ? static_cast<Palette*>(o) : nullptr;
}

}  // namespace gdi

using namespace gdi;

HDC GetDC(HWND) {
  HDC dc = CreateDCA("DISPLAY", nullptr, nullptr, nullptr);
  if (!dc) return nullptr;
  Extras& e = The_Extras();
  std::lock_guard<std::mutex> guard(e.mutex);
  Extra_Of(e, dc).from_get_dc = true;
  return dc;
}

int ReleaseDC(HWND, HDC dc) {
  Extras& e = The_Extras();
  {
    std::lock_guard<std::mutex> guard(e.mutex);
    auto it = e.table.find(dc);
    if (it == e.table.end() || !it->second.from_get_dc) return 0;
    e.table.erase(it);
  }
  return DeleteDC(dc) ? 1 : 0;
}

int SaveDC(HDC dc) {
  Dc* d = Lookup_As<Dc>(dc);
  if (!d) return 0;
  Extras& e = The_Extras();
  std::lock_guard<std::mutex> guard(e.mutex);
  Dc_Extra& x = Extra_Of(e, dc);
  try {
    x.saved.push_back(Saved_State{d->pen, d->brush, d->bitmap, x.palette, x.stretch_mode, d->rop2,
                                  d->bk_mode, d->poly_fill_mode, d->map_mode, d->bk_color,
                                  d->text_color, d->window_org, d->viewport_org, d->position,
                                  d->window_ext, d->viewport_ext, d->dash_phase, d->clip});
  } catch (const std::bad_alloc&) {
    return 0;
  }
  return static_cast<int>(x.saved.size());
}

BOOL RestoreDC(HDC dc, int level) {
  Dc* d = Lookup_As<Dc>(dc);
  if (!d || level == 0) return FALSE;
  Saved_State s;
  {
    Extras& e = The_Extras();
    std::lock_guard<std::mutex> guard(e.mutex);
    Dc_Extra& x = Extra_Of(e, dc);
    long depth = static_cast<long>(x.saved.size());
    long target = level > 0 ? level : depth + level + 1;
    if (target < 1 || target > depth) return FALSE;
    s = std::move(x.saved[static_cast<size_t>(target - 1)]);
    x.saved.resize(static_cast<size_t>(target - 1));
    x.palette = Lookup_Palette(s.palette) ? s.palette : nullptr;
    x.stretch_mode = s.stretch_mode;
  }
  // Objects go back through SelectObject, which keeps their selection counts.
  for (HGDIOBJ h : {static_cast<HGDIOBJ>(s.pen), static_cast<HGDIOBJ>(s.brush),
                    static_cast<HGDIOBJ>(s.bitmap)}) {
    if (Lookup(h)) SelectObject(dc, h);
  }
  d->rop2 = s.rop2;
  d->bk_mode = s.bk_mode;
  d->poly_fill_mode = s.poly_fill_mode;
  d->map_mode = s.map_mode;
  d->bk_color = s.bk_color;
  d->text_color = s.text_color;
  d->window_org = s.window_org;
  d->viewport_org = s.viewport_org;
  d->position = s.position;
  d->window_ext = s.window_ext;
  d->viewport_ext = s.viewport_ext;
  d->dash_phase = s.dash_phase;
  d->clip = std::move(s.clip);
  return TRUE;
}

HPALETTE CreatePalette(const LOGPALETTE* palette) {
  if (!palette || palette->palVersion != 0x300 || palette->palNumEntries == 0) return nullptr;
  try {
    auto p = std::make_unique<Palette>();
    p->entries.assign(palette->palPalEntry, palette->palPalEntry + palette->palNumEntries);
    return static_cast<HPALETTE>(Register(std::move(p)));
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

HPALETTE SelectPalette(HDC dc, HPALETTE palette, BOOL) {
  if (!Lookup_As<Dc>(dc) || !Lookup_Palette(palette)) return nullptr;
  Extras& e = The_Extras();
  std::lock_guard<std::mutex> guard(e.mutex);
  Dc_Extra& x = Extra_Of(e, dc);
  HPALETTE old = x.palette ? x.palette : Default_Palette();
  x.palette = palette == Default_Palette() ? nullptr : palette;
  return old;
}

UINT RealizePalette(HDC dc) {
  return Lookup_As<Dc>(dc) ? 0 : GDI_ERROR;
}

UINT GetPaletteEntries(HPALETTE palette, UINT start, UINT count, PALETTEENTRY* entries) {
  Palette* p = Lookup_Palette(palette);
  if (!p) return 0;
  size_t n = p->entries.size();
  if (!entries) return static_cast<UINT>(n);
  if (start >= n) return 0;
  size_t k = std::min<size_t>(count, n - start);
  for (size_t i = 0; i < k; ++i) entries[i] = p->entries[start + i];
  return static_cast<UINT>(k);
}

int SetStretchBltMode(HDC dc, int mode) {
  if (!Lookup_As<Dc>(dc) || mode < BLACKONWHITE || mode > HALFTONE) return 0;
  Extras& e = The_Extras();
  std::lock_guard<std::mutex> guard(e.mutex);
  Dc_Extra& x = Extra_Of(e, dc);
  int old = x.stretch_mode;
  x.stretch_mode = mode;
  return old;
}

int GetStretchBltMode(HDC dc) {
  if (!Lookup_As<Dc>(dc)) return 0;
  Extras& e = The_Extras();
  std::lock_guard<std::mutex> guard(e.mutex);
  return Extra_Of(e, dc).stretch_mode;
}
