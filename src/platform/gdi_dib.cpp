// Device-independent bitmap data: reading DIB rows into true-colour
// surfaces, writing surfaces out as DIB rows, and block copies.
#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "platform/dib_internal.h"
#include "platform/raster.h"

namespace gdi {
namespace {

constexpr LONG kMaxSide = 32767;
constexpr int64_t kMaxPixels = int64_t{1} << 26;

// One colour-table entry as a surface pixel 0x00RRGGBB.
uint32_t Pixel_Of(BYTE r, BYTE g, BYTE b) {
  return (uint32_t{r} << 16) | (uint32_t{g} << 8) | b;
}

// The fixed table that true-colour pixels are reduced to at 1, 4 or 8 bits.
const std::vector<uint32_t>& Reduction_Table(int bits) {
  static const std::vector<uint32_t> mono = {0x000000, 0xFFFFFF};
  static const std::vector<uint32_t> vga = {
      0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080, 0x008080, 0xC0C0C0,
      0x808080, 0xFF0000, 0x00FF00, 0xFFFF00, 0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF};
  static const std::vector<uint32_t> cube = [] {
    std::vector<uint32_t> t;
    for (int r = 0; r < 6; ++r) {
      for (int g = 0; g < 6; ++g) {
        for (int b = 0; b < 6; ++b) {
          t.push_back(Pixel_Of(static_cast<BYTE>(51 * r), static_cast<BYTE>(51 * g),
                               static_cast<BYTE>(51 * b)));
        }
      }
    }
    for (int i = 0; i < 40; ++i) {
      auto v = static_cast<BYTE>((i * 255 + 19) / 39);
      t.push_back(Pixel_Of(v, v, v));
    }
    return t;
  }();
  return bits == 1 ? mono : (bits == 4 ? vga : cube);
}

int Nearest(const std::vector<uint32_t>& table, uint32_t p) {
  int best = 0;
  long best_d = -1;
  for (size_t i = 0; i < table.size(); ++i) {
    long dr = static_cast<long>((p >> 16) & 0xFF) - static_cast<long>((table[i] >> 16) & 0xFF);
    long dg = static_cast<long>((p >> 8) & 0xFF) - static_cast<long>((table[i] >> 8) & 0xFF);
    long db = static_cast<long>(p & 0xFF) - static_cast<long>(table[i] & 0xFF);
    long d = dr * dr + dg * dg + db * db;
    if (best_d < 0 || d < best_d) {
      best_d = d;
      best = static_cast<int>(i);
    }
  }
  return best;
}

// A DIB described by its header and colour table.
struct Dib_Format {
  LONG width = 0;
  LONG height = 0;  // rows, positive
  bool top_down = false;
  int bits = 0;
  DWORD header_bytes = 0;
  DWORD table_entries = 0;
  DWORD table_bytes = 0;
  DWORD row_bytes = 0;
  std::vector<uint32_t> colors;  // surface pixels of the colour table
};

// Reads the header at `info` (40 or 12 bytes) and, with `with_table`, its
// colour table. False for a header that is not understood.
bool Parse_Format(const void* info, bool with_table, Dib_Format& f) {
  if (!info) return false;
  DWORD size = 0;
  std::memcpy(&size, info, 4);
  if (size == sizeof(BITMAPCOREHEADER)) {
    BITMAPCOREHEADER h;
    std::memcpy(&h, info, sizeof h);
    f.width = h.bcWidth;
    f.height = h.bcHeight;
    f.bits = h.bcBitCount;
    if (h.bcPlanes != 1) return false;
  } else if (size == sizeof(BITMAPINFOHEADER)) {
    BITMAPINFOHEADER h;
    std::memcpy(&h, info, sizeof h);
    if (h.biPlanes != 1 || h.biCompression != BI_RGB || h.biHeight == INT32_MIN) return false;
    f.width = h.biWidth;
    f.top_down = h.biHeight < 0;
    f.height = h.biHeight < 0 ? -h.biHeight : h.biHeight;
    f.bits = h.biBitCount;
    // A used-colour count sizes the table at any depth; beyond 256 the
    // data are not a picture this layer makes or reads.
    if (h.biClrUsed > 256) return false;
    f.table_entries = h.biClrUsed;
  } else {
    return false;
  }
  if (f.bits != 1 && f.bits != 4 && f.bits != 8 && f.bits != 24 && f.bits != 32) return false;
  if (f.width <= 0 || f.height <= 0 || f.width > kMaxSide || f.height > kMaxSide ||
      int64_t{f.width} * f.height > kMaxPixels) {
    return false;
  }
  f.header_bytes = size;
  DWORD full = f.bits <= 8 ? DWORD{1} << f.bits : 0;
  if (f.table_entries == 0) f.table_entries = full;
  f.table_bytes = f.table_entries * (size == sizeof(BITMAPCOREHEADER) ? 3 : 4);
  f.row_bytes = DibRowBytes(f.width, static_cast<WORD>(f.bits));
  if (with_table) {
    const auto* t = static_cast<const BYTE*>(info) + size;
    DWORD step = size == sizeof(BITMAPCOREHEADER) ? 3 : 4;
    f.colors.resize(std::max(full, f.table_entries), 0);
    for (DWORD i = 0; i < f.table_entries; ++i) {
      f.colors[i] = Pixel_Of(t[i * step + 2], t[i * step + 1], t[i * step]);
    }
  }
  return true;
}

// The pixel at column x of a DIB row.
uint32_t Read_Pixel(const Dib_Format& f, const BYTE* row, LONG x) {
  switch (f.bits) {
    case 1:
      return f.colors[(row[x >> 3] >> (7 - (x & 7))) & 1];
    case 4:
      return f.colors[(row[x >> 1] >> ((x & 1) ? 0 : 4)) & 0xF];
    case 8:
      return f.colors[row[x]];
    case 24:
      return Pixel_Of(row[3 * x + 2], row[3 * x + 1], row[3 * x]);
    default:
      return Pixel_Of(row[4 * x + 2], row[4 * x + 1], row[4 * x]);
  }
}

void Write_Pixel(int bits, BYTE* row, LONG x, uint32_t p, const std::vector<uint32_t>& table) {
  switch (bits) {
    case 1: {
      BYTE mask = static_cast<BYTE>(0x80 >> (x & 7));
      if (Nearest(table, p)) {
        row[x >> 3] |= mask;
      } else {
        row[x >> 3] &= static_cast<BYTE>(~mask);
      }
      break;
    }
    case 4: {
      auto v = static_cast<BYTE>(Nearest(table, p));
      BYTE& b = row[x >> 1];
      b = (x & 1) ? static_cast<BYTE>((b & 0xF0) | v) : static_cast<BYTE>((b & 0x0F) | (v << 4));
      break;
    }
    case 8:
      row[x] = static_cast<BYTE>(Nearest(table, p));
      break;
    case 24:
      row[3 * x] = static_cast<BYTE>(p);
      row[3 * x + 1] = static_cast<BYTE>(p >> 8);
      row[3 * x + 2] = static_cast<BYTE>(p >> 16);
      break;
    default:
      row[4 * x] = static_cast<BYTE>(p);
      row[4 * x + 1] = static_cast<BYTE>(p >> 8);
      row[4 * x + 2] = static_cast<BYTE>(p >> 16);
      row[4 * x + 3] = 0;
      break;
  }
}

// The row of DIB data holding DIB row j (0 = bottom) when `bits` holds rows
// start .. start + lines - 1.
const BYTE* Row_At(const Dib_Format& f, const void* bits, UINT start, UINT lines, LONG j) {
  auto k = static_cast<size_t>(f.top_down ? (start + lines - 1 - static_cast<UINT>(j))
                                          : (static_cast<UINT>(j) - start));
  return static_cast<const BYTE*>(bits) + k * f.row_bytes;
}

}  // namespace
}  // namespace gdi

using namespace gdi;

DWORD DibRowBytes(LONG w, WORD bits) {
  if (w <= 0) return 0;
  return static_cast<DWORD>((static_cast<uint64_t>(w) * bits + 31) / 32 * 4);
}

SIZE_T DibPackedSize(const void* packed, SIZE_T available) {
  if (!packed || available < 4) return 0;
  DWORD size = 0;
  std::memcpy(&size, packed, 4);
  if (size != sizeof(BITMAPINFOHEADER) && size != sizeof(BITMAPCOREHEADER)) return 0;
  if (available < size) return 0;
  Dib_Format f;
  if (!Parse_Format(packed, false, f)) return 0;
  SIZE_T need = SIZE_T{f.header_bytes} + f.table_bytes + SIZE_T{f.row_bytes} * f.height;
  return need <= available ? need : 0;
}

HBITMAP CreateDIBitmap(HDC dc, const BITMAPINFOHEADER* header, DWORD init, const void* bits,
                       const BITMAPINFO* info, UINT usage) {
  Dib_Format size_of;
  if (!Parse_Format(header, false, size_of)) return nullptr;
  HBITMAP bm = CreateCompatibleBitmap(dc, size_of.width, size_of.height);
  if (!bm || !(init & CBM_INIT)) return bm;
  Dib_Format f;
  Bitmap* b = Lookup_As<Bitmap>(bm);
  if (!bits || usage != DIB_RGB_COLORS || !Parse_Format(info, true, f) ||
      f.width != size_of.width || f.height != size_of.height) {
    DeleteObject(bm);
    return nullptr;
  }
  for (LONG j = 0; j < f.height; ++j) {
    const BYTE* row = Row_At(f, bits, 0, static_cast<UINT>(f.height), j);
    uint32_t* out = b->pixels.data() + static_cast<size_t>(f.height - 1 - j) * f.width;
    for (LONG x = 0; x < f.width; ++x) out[x] = Read_Pixel(f, row, x);
  }
  return bm;
}

int GetDIBits(HDC dc, HBITMAP bitmap, UINT start, UINT lines, void* bits, BITMAPINFO* info,
              UINT usage) {
  Bitmap* b = Lookup_As<Bitmap>(bitmap);
  if (!Lookup_As<Dc>(dc) || !b || !info || usage != DIB_RGB_COLORS) return 0;
  BITMAPINFOHEADER& h = info->bmiHeader;
  if (h.biSize != sizeof(BITMAPINFOHEADER)) return 0;
  if (h.biBitCount == 0) {
    h.biWidth = b->width;
    h.biHeight = b->height;
    h.biPlanes = 1;
    h.biBitCount = 32;
    h.biCompression = BI_RGB;
    h.biSizeImage = DibRowBytes(b->width, 32) * static_cast<DWORD>(b->height);
    return b->height;
  }
  Dib_Format f;
  if (!Parse_Format(info, false, f) || f.width != b->width || f.height != b->height) return 0;
  h.biClrUsed = 0;
  h.biSizeImage = f.row_bytes * static_cast<DWORD>(f.height);
  const std::vector<uint32_t>& table = Reduction_Table(f.bits);
  if (f.bits <= 8) {
    for (size_t i = 0; i < table.size(); ++i) {
      info->bmiColors[i] = RGBQUAD{static_cast<BYTE>(table[i]), static_cast<BYTE>(table[i] >> 8),
                                   static_cast<BYTE>(table[i] >> 16), 0};
    }
  }
  if (!bits) return f.height;
  if (start >= static_cast<UINT>(f.height)) return 0;
  lines = std::min(lines, static_cast<UINT>(f.height) - start);
  for (UINT k = 0; k < lines; ++k) {
    auto j = static_cast<LONG>(start + k);
    auto* row = const_cast<BYTE*>(Row_At(f, bits, start, lines, j));
    std::memset(row, 0, f.row_bytes);
    const uint32_t* in = b->pixels.data() + static_cast<size_t>(f.height - 1 - j) * f.width;
    for (LONG x = 0; x < f.width; ++x) Write_Pixel(f.bits, row, x, in[x], table);
  }
  return static_cast<int>(lines);
}

int SetDIBitsToDevice(HDC dc, int x_dest, int y_dest, DWORD w, DWORD h, int x_src, int y_src,
                      UINT start, UINT lines, const void* bits, const BITMAPINFO* info,
                      UINT usage) {
  Dc* d = nullptr;
  Target t;
  Dib_Format f;
  if (!bits || usage != DIB_RGB_COLORS || !Begin_Drawing(dc, d, t) || !Parse_Format(info, true, f))
    return 0;
  if (lines == 0 || start >= static_cast<UINT>(f.height)) return 0;
  UINT usable = std::min(lines, static_cast<UINT>(f.height) - start);
  t.rop = R2_COPYPEN;
  Mapping m = Mapping_Of(*d);
  int64_t dx0 = m.x(x_dest);
  int64_t dy0 = m.y(y_dest);
  int64_t top = int64_t{y_src} + h - 1;  // DIB row drawn at dy0
  for (int64_t j = std::max<int64_t>({y_src, start, 0});
       j < std::min<int64_t>({int64_t{y_src} + h, int64_t{start} + usable, f.height}); ++j) {
    const BYTE* row = Row_At(f, bits, start, lines, static_cast<LONG>(j));
    int64_t y = dy0 + (top - j);
    for (int64_t i = std::max<int64_t>(x_src, 0);
         i < std::min<int64_t>(int64_t{x_src} + w, f.width); ++i) {
      t.pixel(dx0 + (i - x_src), y, Read_Pixel(f, row, static_cast<LONG>(i)));
    }
  }
  return static_cast<int>(lines);
}

BOOL BitBlt(HDC dc, int x, int y, int w, int h, HDC src, int x_src, int y_src, DWORD rop) {
  Dc* d = nullptr;
  Target t;
  Dc* s = Lookup_As<Dc>(src);
  if (rop != SRCCOPY || !s || w < 0 || h < 0 || !Begin_Drawing(dc, d, t)) return FALSE;
  Bitmap* sb = s->dc_kind == Dc_Kind::memory ? Lookup_As<Bitmap>(s->bitmap) : nullptr;
  if (!sb || int64_t{w} * h > kMaxPixels) return FALSE;
  t.rop = R2_COPYPEN;
  Mapping md = Mapping_Of(*d);
  Mapping ms = Mapping_Of(*s);
  int64_t dx0 = md.x(x), dy0 = md.y(y), sx0 = ms.x(x_src), sy0 = ms.y(y_src);
  // Copy the source block first: source and destination may be one surface.
  std::vector<uint32_t> block;
  std::vector<bool> present;
  try {
    block.assign(static_cast<size_t>(w) * static_cast<size_t>(h), 0);
    present.assign(block.size(), false);
  } catch (const std::bad_alloc&) {
    return FALSE;
  }
  for (int64_t r = 0; r < h; ++r) {
    int64_t sy = sy0 + r;
    if (sy < 0 || sy >= sb->height) continue;
    for (int64_t c = 0; c < w; ++c) {
      int64_t sx = sx0 + c;
      if (sx < 0 || sx >= sb->width) continue;
      size_t k = static_cast<size_t>(r * w + c);
      block[k] = sb->pixels[static_cast<size_t>(sy * sb->width + sx)];
      present[k] = true;
    }
  }
  for (int64_t r = 0; r < h; ++r) {
    for (int64_t c = 0; c < w; ++c) {
      size_t k = static_cast<size_t>(r * w + c);
      if (present[k]) t.pixel(dx0 + c, dy0 + r, block[k]);
    }
  }
  return TRUE;
}
