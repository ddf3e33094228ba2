// Device contexts: creation, capabilities, attributes and the mapping from
// logical to device coordinates.
#include <algorithm>
#include <atomic>
#include <cctype>
#include <climits>
#include <cstring>
#include <new>
#include <utility>

#include "platform/raster.h"
#include "tessaline/host.h"
#include "tessaline/platform/user.h"

namespace gdi {
namespace {

constexpr int kDefaultMetrics[4] = {508, 286, 1920, 1080};
std::atomic<int> display_metrics[4] = {kDefaultMetrics[0], kDefaultMetrics[1], kDefaultMetrics[2],
                                       kDefaultMetrics[3]};

int32_t Clamp32(Int128 v) {
  return v < INT32_MIN ? INT32_MIN : (v > INT32_MAX ? INT32_MAX : static_cast<int32_t>(v));
}

int64_t Clamp64(Int128 v) {
  return v < INT64_MIN ? INT64_MIN : (v > INT64_MAX ? INT64_MAX : static_cast<int64_t>(v));
}

Int128 Floor_Div(Int128 a, Int128 b) {
  Int128 q = a / b;
  if (a % b != 0 && ((a < 0) != (b < 0))) q = q - 1;
  return q;
}

bool Same_Driver(const char* driver) {
  static const char kDisplay[] = "DISPLAY";
  if (!driver) return false;
  for (size_t i = 0; i < sizeof kDisplay; ++i) {
    if (std::toupper(static_cast<unsigned char>(driver[i])) != kDisplay[i]) return false;
  }
  return true;
}

HDC Make_Dc(Dc_Kind kind) {
  try {
    auto d = std::make_unique<Dc>();
    d->dc_kind = kind;
    d->pen = static_cast<HPEN>(Stock(BLACK_PEN));
    d->brush = static_cast<HBRUSH>(Stock(WHITE_BRUSH));
    if (kind == Dc_Kind::memory) d->bitmap = Stock_Bitmap();
    return static_cast<HDC>(Register(std::move(d)));
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

// Extents of the fixed mapping modes: so many logical units across the
// screen's millimetres, y up.
void Set_Fixed_Extents(Dc& d, int mode) {
  int64_t units_per_mm_num = 1, units_per_mm_den = 1;
  switch (mode) {
    case MM_LOMETRIC:
      units_per_mm_num = 10;
      break;
    case MM_HIMETRIC:
      units_per_mm_num = 100;
      break;
    case MM_LOENGLISH:
      units_per_mm_num = 1000;
      units_per_mm_den = 254;
      break;
    case MM_HIENGLISH:
      units_per_mm_num = 10000;
      units_per_mm_den = 254;
      break;
    case MM_TWIPS:
      units_per_mm_num = 14400;
      units_per_mm_den = 254;
      break;
    default:
      return;
  }
  auto extent = [&](int mm) {
    return std::max<int32_t>(1,
                             Clamp32(Round_Div(Int128{mm} * units_per_mm_num, units_per_mm_den)));
  };
  d.window_ext = SIZE{extent(Display_Metric(0)), extent(Display_Metric(1))};
  d.viewport_ext = SIZE{Display_Metric(2), -Display_Metric(3)};
}

// In MM_ISOTROPIC a logical unit must span as many pixels across as up:
// the viewport extent of the axis with the larger scale is shrunk.
void Fix_Isotropic(Dc& d) {
  Int128 wx = d.window_ext.cx < 0 ? -Int128{d.window_ext.cx} : Int128{d.window_ext.cx};
  Int128 wy = d.window_ext.cy < 0 ? -Int128{d.window_ext.cy} : Int128{d.window_ext.cy};
  Int128 vx = d.viewport_ext.cx < 0 ? -Int128{d.viewport_ext.cx} : Int128{d.viewport_ext.cx};
  Int128 vy = d.viewport_ext.cy < 0 ? -Int128{d.viewport_ext.cy} : Int128{d.viewport_ext.cy};
  Int128 scale_x = vx * wy, scale_y = vy * wx;  // |vx / wx| against |vy / wy|
  if (scale_x > scale_y) {
    int32_t n = std::max<int32_t>(1, Clamp32(Round_Div(vy * wx, wy)));
    d.viewport_ext.cx = d.viewport_ext.cx < 0 ? -n : n;
  } else if (scale_y > scale_x) {
    int32_t n = std::max<int32_t>(1, Clamp32(Round_Div(vx * wy, wx)));
    d.viewport_ext.cy = d.viewport_ext.cy < 0 ? -n : n;
  }
}

bool Free_Extents(const Dc& d) {
  return d.map_mode == MM_ISOTROPIC || d.map_mode == MM_ANISOTROPIC;
}

void Fill_Row(uint32_t* p, int64_t n, int rop, uint32_t color) {
  switch (rop) {
    case R2_COPYPEN:
      std::fill(p, p + n, color);
      break;
    case R2_XORPEN:
      for (int64_t i = 0; i < n; ++i) p[i] ^= color;
      break;
    case R2_NOT:
      for (int64_t i = 0; i < n; ++i) p[i] = ~p[i] & 0xFFFFFF;
      break;
    case R2_NOP:
      break;
    default:
      for (int64_t i = 0; i < n; ++i) p[i] = Apply_Rop(rop, p[i], color);
      break;
  }
}

}  // namespace

int Display_Metric(int i) {
  return display_metrics[i].load(std::memory_order_relaxed);
}

int64_t Round_Div(Int128 n, Int128 d) {
  if (d < 0) {
    n = -n;
    d = -d;
  }
  return Clamp64(Floor_Div(2 * n + d, 2 * d));
}

int64_t Mapping::x(int64_t v) const {
  if (!scaled) return v - wox + vox;
  return Clamp64(Int128{Round_Div(Int128{v - wox} * vex, wex)} + vox);
}

int64_t Mapping::y(int64_t v) const {
  if (!scaled) return v - woy + voy;
  return Clamp64(Int128{Round_Div(Int128{v - woy} * vey, wey)} + voy);
}

int64_t Mapping::width(int64_t w) const {
  if (w <= 0) return 1;  // a zero width is one pixel under any mapping
  int64_t d = scaled ? Round_Div(Int128{w} * vex, wex) : w;
  if (d < 0) d = -d;
  return std::clamp<int64_t>(d, 1, int64_t{1} << 16);
}

Mapping Mapping_Of(const Dc& d) {
  Mapping m{d.window_org.x,    d.window_org.y,    d.window_ext.cx,
            d.window_ext.cy,   d.viewport_org.x,  d.viewport_org.y,
            d.viewport_ext.cx, d.viewport_ext.cy, false};
  m.scaled = m.wex != m.vex || m.wey != m.vey;
  return m;
}

void Target::span(int64_t y, int64_t x0, int64_t x1, uint32_t color) const {
  if (y < box.top || y >= box.bottom) return;
  x0 = std::max<int64_t>(x0, box.left);
  x1 = std::min<int64_t>(x1, box.right);
  if (x0 >= x1) return;
  uint32_t* row = pixels + static_cast<size_t>(y) * static_cast<size_t>(width);
  if (!clip) {
    Fill_Row(row + x0, x1 - x0, rop, color);
    return;
  }
  const Region::Band* b = clip->band_at(static_cast<int32_t>(y));
  if (!b) return;
  const Span* s = clip->spans(*b);
  for (uint32_t k = 0; k < b->count; ++k) {
    int64_t a = std::max<int64_t>(x0, s[k].x0);
    int64_t z = std::min<int64_t>(x1, s[k].x1);
    if (a < z) Fill_Row(row + a, z - a, rop, color);
  }
}

bool Begin_Drawing(HDC handle, Dc*& dc, Target& t) {
  dc = Lookup_As<Dc>(handle);
  if (!dc || dc->dc_kind == Dc_Kind::information) return false;
  t = Target{};
  t.rop = dc->rop2;
  if (dc->dc_kind == Dc_Kind::memory) {
    Bitmap* bm = Lookup_As<Bitmap>(dc->bitmap);
    if (bm && !bm->stock) {
      t.pixels = bm->pixels.data();
      t.width = bm->width;
      t.box = RECT{0, 0, bm->width, bm->height};
    }
  }
  if (dc->clip && !t.empty()) {
    RECT c = dc->clip->box();
    t.box = RECT{std::max(t.box.left, c.left), std::max(t.box.top, c.top),
                 std::min(t.box.right, c.right), std::min(t.box.bottom, c.bottom)};
    if (dc->clip->type() != SIMPLEREGION) t.clip = &*dc->clip;
  }
  return true;
}

Stroke Stroke_Of(const Dc& dc, const Mapping& m) {
  Stroke s;
  Pen* p = Lookup_As<Pen>(dc.pen);
  if (!p || p->style == PS_NULL) return s;
  s.null = false;
  s.color = To_Pixel(p->color);
  s.bk = To_Pixel(dc.bk_color);
  s.opaque = dc.bk_mode == OPAQUE;
  s.width = static_cast<int>(m.width(p->width));
  s.inside_frame = p->style == PS_INSIDEFRAME && s.width > 1;
  static const std::vector<int> kPatterns[] = {{18, 6}, {3, 3}, {9, 6, 3, 6}, {9, 3, 3, 3, 3, 3}};
  // Only pens one device pixel wide are dashed; wider ones draw solid.
  if (s.width == 1 && p->style >= PS_DASH && p->style <= PS_DASHDOTDOT) {
    s.dashed = true;
    s.period = 0;
    bool on = true;
    for (int run : kPatterns[p->style - PS_DASH]) {
      for (int k = 0; k < run; ++k) s.on[static_cast<size_t>(s.period++)] = on;
      on = !on;
    }
  }
  return s;
}

Region To_Device(const Region& r, const Mapping& m) {
  if (!m.scaled) {
    Region out = r;
    if (!out.offset(m.vox - m.wox, m.voy - m.woy)) return Region();
    return out;
  }
  // The mapping keeps order on each axis (or reverses it, for a negative
  // extent), so bands map to disjoint device bands and spans to sorted
  // spans; rows or columns that collapse to nothing drop out.
  const auto& bands = r.bands();
  const bool flip_y = (m.vey < 0) != (m.wey < 0), flip_x = (m.vex < 0) != (m.wex < 0);
  Region_Builder builder;
  std::vector<Span> spans;
  for (size_t i = 0; i < bands.size(); ++i) {
    const Region::Band& b = bands[flip_y ? bands.size() - 1 - i : i];
    int64_t y0 = m.y(b.y0), y1 = m.y(b.y1);
    if (flip_y) std::swap(y0, y1);
    spans.clear();
    const Span* s = r.spans(b);
    for (uint32_t k = 0; k < b.count; ++k) {
      const Span& sp = s[flip_x ? b.count - 1 - k : k];
      int64_t x0 = m.x(sp.x0), x1 = m.x(sp.x1);
      if (flip_x) std::swap(x0, x1);
      spans.push_back(Span{Clamp32(x0), Clamp32(x1)});
    }
    builder.add(Clamp32(y0), Clamp32(y1), spans.data(), spans.size());
  }
  return builder.finish();
}

}  // namespace gdi

using namespace gdi;

void SetDisplayMetrics(int horzsize_mm, int vertsize_mm, int horzres_px, int vertres_px) {
  int values[4] = {horzsize_mm, vertsize_mm, horzres_px, vertres_px};
  for (int i = 0; i < 4; ++i) display_metrics[i] = values[i] > 0 ? values[i] : kDefaultMetrics[i];
}

HDC CreateCompatibleDC(HDC dc) {
  if (dc && !Lookup_As<Dc>(dc)) return nullptr;
  return Make_Dc(Dc_Kind::memory);
}

HDC CreateDCA(const char* driver, const char*, const char*, const DEVMODEA*) {
  return Same_Driver(driver) ? Make_Dc(Dc_Kind::display) : nullptr;
}

HDC CreateICA(const char* driver, const char*, const char*, const DEVMODEA*) {
  return Same_Driver(driver) ? Make_Dc(Dc_Kind::information) : nullptr;
}

BOOL DeleteDC(HDC dc) {
  Dc* d = Lookup_As<Dc>(dc);
  if (!d) return FALSE;
  for (HGDIOBJ h : {static_cast<HGDIOBJ>(d->pen), static_cast<HGDIOBJ>(d->brush),
                    static_cast<HGDIOBJ>(d->bitmap)}) {
    if (Object* o = Lookup(h); o && !o->stock) --o->selections;
  }
  return Unregister(dc) ? TRUE : FALSE;
}

int GetDeviceCaps(HDC dc, int index) {
  if (!Lookup_As<Dc>(dc)) return 0;
  switch (index) {
    case TECHNOLOGY:
      return DT_RASDISPLAY;
    case HORZSIZE:
      return Display_Metric(0);
    case VERTSIZE:
      return Display_Metric(1);
    case HORZRES:
      return Display_Metric(2);
    case VERTRES:
      return Display_Metric(3);
    case BITSPIXEL:
      return 32;
    case PLANES:
      return 1;
    case NUMCOLORS:
      return -1;
    case ASPECTX:
    case ASPECTY:
      return 36;
    case ASPECTXY:
      return 51;
    case LOGPIXELSX:
    case LOGPIXELSY:
      return 96;
    case SIZEPALETTE:
      return 0;
    case COLORRES:
      return 24;
    default:
      return 0;
  }
}

// ---------------------------------------------------------------------------
// Attributes.

int SetROP2(HDC dc, int rop) {
  Dc* d = Lookup_As<Dc>(dc);
  if (!d || rop < R2_BLACK || rop > R2_WHITE) return 0;
  return std::exchange(d->rop2, rop);
}

int GetROP2(HDC dc) {
  Dc* d = Lookup_As<Dc>(dc);
  return d ? d->rop2 : 0;
}

int SetBkMode(HDC dc, int mode) {
  Dc* d = Lookup_As<Dc>(dc);
  if (!d || (mode != TRANSPARENT && mode != OPAQUE)) return 0;
  return std::exchange(d->bk_mode, mode);
}

int GetBkMode(HDC dc) {
  Dc* d = Lookup_As<Dc>(dc);
  return d ? d->bk_mode : 0;
}

COLORREF SetBkColor(HDC dc, COLORREF color) {
  Dc* d = Lookup_As<Dc>(dc);
  return d ? std::exchange(d->bk_color, color & 0xFFFFFF) : CLR_INVALID;
}

COLORREF GetBkColor(HDC dc) {
  Dc* d = Lookup_As<Dc>(dc);
  return d ? d->bk_color : CLR_INVALID;
}

COLORREF SetTextColor(HDC dc, COLORREF color) {
  Dc* d = Lookup_As<Dc>(dc);
  return d ? std::exchange(d->text_color, color & 0xFFFFFF) : CLR_INVALID;
}

COLORREF GetTextColor(HDC dc) {
  Dc* d = Lookup_As<Dc>(dc);
  return d ? d->text_color : CLR_INVALID;
}

int SetPolyFillMode(HDC dc, int mode) {
  Dc* d = Lookup_As<Dc>(dc);
  if (!d || (mode != ALTERNATE && mode != WINDING)) return 0;
  return std::exchange(d->poly_fill_mode, mode);
}

int GetPolyFillMode(HDC dc) {
  Dc* d = Lookup_As<Dc>(dc);
  return d ? d->poly_fill_mode : 0;
}

// ---------------------------------------------------------------------------
// Mapping.

int SetMapMode(HDC dc, int mode) {
  Dc* d = Lookup_As<Dc>(dc);
  if (!d || mode < MM_TEXT || mode > MM_ANISOTROPIC) return 0;
  int old = std::exchange(d->map_mode, mode);
  if (mode == MM_TEXT) {
    d->window_ext = SIZE{1, 1};
    d->viewport_ext = SIZE{1, 1};
  } else if (mode == MM_ISOTROPIC) {
    Set_Fixed_Extents(*d, MM_LOMETRIC);
    Fix_Isotropic(*d);
  } else if (mode != MM_ANISOTROPIC) {
    Set_Fixed_Extents(*d, mode);
  }
  return old;
}

int GetMapMode(HDC dc) {
  Dc* d = Lookup_As<Dc>(dc);
  return d ? d->map_mode : 0;
}

BOOL SetWindowOrgEx(HDC dc, int x, int y, POINT* old) {
  Dc* d = Lookup_As<Dc>(dc);
  if (!d) return FALSE;
  if (old) *old = d->window_org;
  d->window_org = POINT{x, y};
  return TRUE;
}

BOOL GetWindowOrgEx(HDC dc, POINT* out) {
  Dc* d = Lookup_As<Dc>(dc);
  if (!d || !out) return FALSE;
  *out = d->window_org;
  return TRUE;
}

BOOL SetViewportOrgEx(HDC dc, int x, int y, POINT* old) {
  Dc* d = Lookup_As<Dc>(dc);
  if (!d) return FALSE;
  if (old) *old = d->viewport_org;
  d->viewport_org = POINT{x, y};
  return TRUE;
}

BOOL GetViewportOrgEx(HDC dc, POINT* out) {
  Dc* d = Lookup_As<Dc>(dc);
  if (!d || !out) return FALSE;
  *out = d->viewport_org;
  return TRUE;
}

BOOL SetWindowExtEx(HDC dc, int x, int y, SIZE* old) {
  Dc* d = Lookup_As<Dc>(dc);
  if (!d) return FALSE;
  if (old) *old = d->window_ext;
  if (!Free_Extents(*d)) return TRUE;
  if (x == 0 || y == 0) return FALSE;
  d->window_ext = SIZE{x, y};
  if (d->map_mode == MM_ISOTROPIC) Fix_Isotropic(*d);
  return TRUE;
}

BOOL GetWindowExtEx(HDC dc, SIZE* out) {
  Dc* d = Lookup_As<Dc>(dc);
  if (!d || !out) return FALSE;
  *out = d->window_ext;
  return TRUE;
}

BOOL SetViewportExtEx(HDC dc, int x, int y, SIZE* old) {
  Dc* d = Lookup_As<Dc>(dc);
  if (!d) return FALSE;
  if (old) *old = d->viewport_ext;
  if (!Free_Extents(*d)) return TRUE;
  if (x == 0 || y == 0) return FALSE;
  d->viewport_ext = SIZE{x, y};
  if (d->map_mode == MM_ISOTROPIC) Fix_Isotropic(*d);
  return TRUE;
}

BOOL GetViewportExtEx(HDC dc, SIZE* out) {
  Dc* d = Lookup_As<Dc>(dc);
  if (!d || !out) return FALSE;
  *out = d->viewport_ext;
  return TRUE;
}

BOOL LPtoDP(HDC dc, POINT* points, int count) {
  Dc* d = Lookup_As<Dc>(dc);
  if (!d || !points || count < 0) return FALSE;
  Mapping m = Mapping_Of(*d);
  for (int i = 0; i < count; ++i) {
    points[i] = POINT{Clamp32(m.x(points[i].x)), Clamp32(m.y(points[i].y))};
  }
  return TRUE;
}

BOOL DPtoLP(HDC dc, POINT* points, int count) {
  Dc* d = Lookup_As<Dc>(dc);
  if (!d || !points || count < 0) return FALSE;
  // The inverse mapping is the same rule with window and viewport swapped.
  Mapping m = Mapping_Of(*d);
  Mapping inv{m.vox, m.voy, m.vex, m.vey, m.wox, m.woy, m.wex, m.wey, m.scaled};
  for (int i = 0; i < count; ++i) {
    points[i] = POINT{Clamp32(inv.x(points[i].x)), Clamp32(inv.y(points[i].y))};
  }
  return TRUE;
}

BOOL MoveToEx(HDC dc, int x, int y, POINT* old) {
  Dc* d = Lookup_As<Dc>(dc);
  if (!d) return FALSE;
  if (old) *old = d->position;
  d->position = POINT{x, y};
  d->dash_phase = 0;
  return TRUE;
}

BOOL GetCurrentPositionEx(HDC dc, POINT* out) {
  Dc* d = Lookup_As<Dc>(dc);
  if (!d || !out) return FALSE;
  *out = d->position;
  return TRUE;
}
