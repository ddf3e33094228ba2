// Device-independent bitmaps: the packed form of the library's previews.
#include "tessaline/library/dibitmap.h"

#include <cstring>
#include <vector>

#include "tessaline/platform/memory.h"

namespace {

constexpr WORD kBitmapType = 0x4D42;  // "BM"
constexpr UINT kFileHeaderBytes = 14;

void Put16(BYTE* p, WORD v) {
  p[0] = static_cast<BYTE>(v);
  p[1] = static_cast<BYTE>(v >> 8);
}
void Put32(BYTE* p, DWORD v) {
  for (int i = 0; i < 4; ++i) p[i] = static_cast<BYTE>(v >> (8 * i));
}
WORD Get16(const BYTE* p) {
  return static_cast<WORD>(p[0] | (p[1] << 8));
}
DWORD Get32(const BYTE* p) {
  return DWORD{p[0]} | (DWORD{p[1]} << 8) | (DWORD{p[2]} << 16) | (DWORD{p[3]} << 24);
}

bool Is_Core(const void* header) {
  DWORD size = 0;
  std::memcpy(&size, header, 4);
  return size == sizeof(BITMAPCOREHEADER);
}

}  // namespace

CDIBitmap::CDIBitmap()
    : m_lpbi(nullptr),
      m_hDIB(0),
      m_hPal(nullptr),
      m_hBitmap(nullptr),
      m_wZero(0),
      m_wBits(0),
      m_wWidth(0),
      m_wHeight(0) {}

// The argument is ignored, as the system has it. The fields start empty all
// the same: a destructor must never free handles it did not get.
CDIBitmap::CDIBitmap(HBITMAP) : CDIBitmap() {}

CDIBitmap::~CDIBitmap() {
  if (m_hPal) DeleteObject(m_hPal);
  if (m_hBitmap) DeleteObject(m_hBitmap);
  if (m_hDIB) GlobalFree(m_hDIB);
}

CDIBitmap& CDIBitmap::operator=(const CDIBitmap& other) {
  m_lpbi = other.m_lpbi;
  m_hDIB = other.m_hDIB;
  m_hPal = other.m_hPal;
  m_hBitmap = other.m_hBitmap;
  m_wZero = other.m_wZero;
  m_wBits = other.m_wBits;
  m_wWidth = other.m_wWidth;
  m_wHeight = other.m_wHeight;
  return *this;
}

WORD CDIBitmap::NumColorsOf(const void* header) {
  if (!header) return 0;
  WORD bits = 0;
  if (Is_Core(header)) {
    BITMAPCOREHEADER h;
    std::memcpy(&h, header, sizeof h);
    bits = h.bcBitCount;
  } else {
    BITMAPINFOHEADER h;
    std::memcpy(&h, header, sizeof h);
    if (h.biSize == sizeof h && h.biClrUsed != 0) return static_cast<WORD>(h.biClrUsed);
    bits = h.biBitCount;
  }
  switch (bits) {
    case 1:
      return 2;
    case 4:
      return 16;
    case 8:
      return 256;
    default:
      return 0;
  }
}

WORD CDIBitmap::PaletteSizeOf(const void* header) {
  if (!header) return 0;
  return static_cast<WORD>(NumColorsOf(header) * (Is_Core(header) ? 3 : 4));
}

WORD CDIBitmap::DIBNumColors() {
  auto* p = static_cast<const BYTE*>(GlobalLock(m_hDIB));
  if (!p) return 0;
  WORD n = GlobalSize(m_hDIB) >= sizeof(BITMAPINFOHEADER) || Is_Core(p) ? NumColorsOf(p) : 0;
  GlobalUnlock(m_hDIB);
  return n;
}

WORD CDIBitmap::PaletteSize() {
  auto* p = static_cast<const BYTE*>(GlobalLock(m_hDIB));
  if (!p) return 0;
  WORD n = GlobalSize(m_hDIB) >= sizeof(BITMAPINFOHEADER) || Is_Core(p) ? PaletteSizeOf(p) : 0;
  GlobalUnlock(m_hDIB);
  return n;
}

void CDIBitmap::RealizeDIBPalette(HDC, BITMAPINFO*) {}

BYTE* CDIBitmap::FindDIBBits() {
  if (!m_lpbi) return nullptr;
  return reinterpret_cast<BYTE*>(m_lpbi) + m_lpbi->biSize + PaletteSizeOf(m_lpbi);
}

void CDIBitmap::ResetDIB() {
  if (m_hPal) DeleteObject(m_hPal);
  if (m_hBitmap) DeleteObject(m_hBitmap);
  if (m_hDIB) GlobalFree(m_hDIB);
  m_hPal = nullptr;
  m_hBitmap = nullptr;
  m_hDIB = 0;
  m_lpbi = nullptr;
}

void CDIBitmap::InitBitmapInfoHeader(BITMAPINFOHEADER* header, DWORD width, DWORD height,
                                     int bits) {
  std::memset(header, 0, sizeof *header);
  header->biSize = sizeof *header;
  header->biWidth = static_cast<LONG>(width);
  header->biHeight = static_cast<LONG>(height);
  header->biPlanes = 1;
  WORD count = bits <= 1 ? 1 : (bits <= 4 ? 4 : (bits <= 8 ? 8 : 24));
  header->biBitCount = count;
  header->biSizeImage = (width * count + 31) / 32 * 4 * height;
  m_wZero = 0;
  m_wBits = count;
  m_wWidth = static_cast<WORD>(width);
  m_wHeight = static_cast<WORD>(height);
}

int CDIBitmap::Load(CFile& file) {
  BYTE head[kFileHeaderBytes];
  if (file.Read(head, kFileHeaderBytes) != kFileHeaderBytes) return 0;
  if (Get16(head) != kBitmapType) return 0;
  DWORD size = Get32(head + 2);
  // The size comes from the file: it must name a packed block that the
  // rest of the file can hold.
  uint64_t left = file.GetLength() - std::min(file.GetLength(), file.GetPosition());
  if (size <= kFileHeaderBytes + sizeof(BITMAPCOREHEADER) || size - kFileHeaderBytes > left) {
    return 0;
  }
  DWORD bytes = size - kFileHeaderBytes;
  HGLOBAL block = GlobalAlloc(GHND, bytes);
  if (!block) return 0;
  auto* p = static_cast<BYTE*>(GlobalLock(block));
  UINT got = 0;
  try {
    got = file.Read(p, bytes);
  } catch (...) {
    GlobalUnlock(block);
    GlobalFree(block);
    throw;
  }
  if (got == 0 || DibPackedSize(p, got) == 0) {
    GlobalUnlock(block);
    GlobalFree(block);
    return 0;
  }
  ResetDIB();
  m_hDIB = block;
  m_lpbi = reinterpret_cast<BITMAPINFOHEADER*>(p);
  m_wZero = 0;
  if (Is_Core(p)) {
    BITMAPCOREHEADER h;
    std::memcpy(&h, p, sizeof h);
    m_wBits = static_cast<WORD>(h.bcPlanes * h.bcBitCount);
    m_wWidth = h.bcWidth;
    m_wHeight = h.bcHeight;
  } else {
    m_wBits = static_cast<WORD>(m_lpbi->biPlanes * m_lpbi->biBitCount);
    m_wWidth = static_cast<WORD>(m_lpbi->biWidth);
    m_wHeight = static_cast<WORD>(m_lpbi->biHeight);
  }
  GlobalUnlock(block);
  m_lpbi = nullptr;
  CreateDIBPalette();
  DIBToBitmap();
  return 1;
}

int CDIBitmap::Save(CFile& file) {
  if (!m_hDIB) return 0;
  auto* p = static_cast<BYTE*>(GlobalLock(m_hDIB));
  if (!p) return 0;
  auto size = static_cast<DWORD>(GlobalSize(m_hDIB));
  DWORD header_size = 0;
  std::memcpy(&header_size, p, 4);
  BYTE head[kFileHeaderBytes] = {};
  Put16(head, kBitmapType);
  Put32(head + 2, size + kFileHeaderBytes);
  Put32(head + 10, kFileHeaderBytes + header_size + PaletteSizeOf(p));
  try {
    file.Write(head, kFileHeaderBytes);
    file.Write(p, size);
  } catch (...) {
    GlobalUnlock(m_hDIB);
    throw;
  }
  GlobalUnlock(m_hDIB);
  return 1;
}

int CDIBitmap::Draw(CDC& dc, CRect& rect) {
  CDC memory;
  if (!memory.CreateCompatibleDC(&dc)) return 0;
  HPALETTE old_pal = nullptr;
  HPALETTE old_mem_pal = nullptr;
  if (m_hPal) {
    old_pal = dc.SelectPalette(m_hPal, TRUE);
    old_mem_pal = memory.SelectPalette(m_hPal, TRUE);
  }
  HGDIOBJ old_bitmap = memory.SelectObject(m_hBitmap);
  dc.SetStretchBltMode(COLORONCOLOR);
  dc.BitBlt(rect.left, rect.top, rect.Width(), rect.Height(), &memory, 0, 0, SRCCOPY);
  if (old_bitmap) memory.SelectObject(old_bitmap);
  if (old_pal) dc.SelectPalette(old_pal, TRUE);
  if (old_mem_pal) memory.SelectPalette(old_mem_pal, TRUE);
  memory.DeleteDC();
  return 1;
}

int CDIBitmap::AssignDDP(HBITMAP bitmap) {
  if (!bitmap) return 0;
  ResetDIB();
  m_hPal = GetSystemPalette();
  m_hDIB = BitmapToDIB(bitmap);
  DIBToBitmap();
  return 1;
}

HGLOBAL CDIBitmap::BitmapToDIB(HBITMAP bitmap) {
  BITMAP bm;
  if (!bitmap || !GetObjectA(bitmap, 24, &bm)) return 0;
  BITMAPINFOHEADER header;
  // Every conversion is a 16-colour picture, whatever the screen's depth.
  InitBitmapInfoHeader(&header, static_cast<DWORD>(bm.bmWidth), static_cast<DWORD>(bm.bmHeight), 4);
  DWORD table = PaletteSizeOf(&header);
  HGLOBAL block = GlobalAlloc(GHND, sizeof header + table + header.biSizeImage);
  if (!block) return 0;
  auto* p = static_cast<BYTE*>(GlobalLock(block));
  std::memcpy(p, &header, sizeof header);
  HDC screen = GetDC(nullptr);
  HPALETTE old = nullptr;
  if (m_hPal && screen) {
    old = SelectPalette(screen, m_hPal, FALSE);
    RealizePalette(screen);
  }
  int rows = screen ? GetDIBits(screen, bitmap, 0, static_cast<UINT>(header.biHeight),
                                p + sizeof header + table, reinterpret_cast<BITMAPINFO*>(p),
                                DIB_RGB_COLORS)
                    : 0;
  GlobalUnlock(block);
  if (rows == 0) {
    GlobalFree(block);
    block = 0;
  }
  if (old) SelectPalette(screen, old, FALSE);
  if (screen) ReleaseDC(nullptr, screen);
  return block;
}

HBITMAP CDIBitmap::DIBToBitmap() {
  if (!m_hDIB) return nullptr;
  auto* p = static_cast<BYTE*>(GlobalLock(m_hDIB));
  if (!p) return nullptr;
  if (DibPackedSize(p, GlobalSize(m_hDIB)) == 0) {
    GlobalUnlock(m_hDIB);
    return nullptr;
  }
  m_lpbi = reinterpret_cast<BITMAPINFOHEADER*>(p);
  HDC screen = GetDC(nullptr);
  if (!screen) {
    GlobalUnlock(m_hDIB);
    m_lpbi = nullptr;
    return nullptr;
  }
  HPALETTE old = nullptr;
  if (m_hPal) {
    old = SelectPalette(screen, m_hPal, FALSE);
    RealizePalette(screen);
  }
  HBITMAP made = CreateDIBitmap(screen, m_lpbi, CBM_INIT, FindDIBBits(),
                                reinterpret_cast<BITMAPINFO*>(p), DIB_RGB_COLORS);
  if (m_hBitmap) DeleteObject(m_hBitmap);
  m_hBitmap = made;
  if (old) SelectPalette(screen, old, FALSE);
  ReleaseDC(nullptr, screen);
  GlobalUnlock(m_hDIB);
  m_lpbi = nullptr;
  return m_hBitmap;
}

HPALETTE CDIBitmap::CreateDIBPalette() {
  if (!m_hDIB) return nullptr;
  auto* p = static_cast<BYTE*>(GlobalLock(m_hDIB));
  if (!p) return nullptr;
  WORD n = NumColorsOf(p);
  HPALETTE made = nullptr;
  if (n != 0) {
    bool core = Is_Core(p);
    std::vector<BYTE> block(sizeof(LOGPALETTE) + sizeof(PALETTEENTRY) * n);
    auto* pal = reinterpret_cast<LOGPALETTE*>(block.data());
    pal->palVersion = 0x300;
    pal->palNumEntries = n;
    const BYTE* table = p + (core ? sizeof(BITMAPCOREHEADER) : sizeof(BITMAPINFOHEADER));
    size_t step = core ? 3 : 4;
    for (WORD i = 0; i < n; ++i) {
      pal->palPalEntry[i] =
          PALETTEENTRY{table[i * step + 2], table[i * step + 1], table[i * step], 0};
    }
    made = CreatePalette(pal);
    if (made) {
      if (m_hPal) DeleteObject(m_hPal);
      m_hPal = made;
    }
  }
  GlobalUnlock(m_hDIB);
  return made;
}

HPALETTE CDIBitmap::GetSystemPalette() {
  HDC screen = GetDC(nullptr);
  if (!screen) return nullptr;
  int n = GetDeviceCaps(screen, SIZEPALETTE);
  if (n == 0) n = GetDeviceCaps(screen, NUMCOLORS);
  ReleaseDC(nullptr, screen);
  // A true-colour screen has no system palette to refer to.
  if (n <= 0 || n > 65535) return nullptr;
  std::vector<BYTE> block(sizeof(LOGPALETTE) + sizeof(PALETTEENTRY) * static_cast<size_t>(n));
  auto* pal = reinterpret_cast<LOGPALETTE*>(block.data());
  pal->palVersion = 0x300;
  pal->palNumEntries = static_cast<WORD>(n);
  for (int i = 0; i < n; ++i) {
    pal->palPalEntry[i] =
        PALETTEENTRY{static_cast<BYTE>(i), static_cast<BYTE>(i >> 8), 0, PC_EXPLICIT};
  }
  return CreatePalette(pal);
}
