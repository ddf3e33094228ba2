// Device-independent bitmaps, palettes, screen contexts and block copies of
// the software device context.
//
// DIB data are Win32's: a BITMAPINFOHEADER (40 bytes) or an old-style
// BITMAPCOREHEADER (12 bytes), then the colour table (RGBQUAD or RGBTRIPLE
// entries), then the pixel rows, each padded to a multiple of 4 bytes, the
// bottom row first for a positive height and the top row first for a
// negative one. 1, 4, 8 and 24 bits per pixel, uncompressed (BI_RGB), are
// understood; other formats are refused.
//
// Converting a true-colour bitmap to 1, 4 or 8 bits maps every pixel to the
// nearest colour (squared distance in RGB, the lowest index on a tie) of a
// fixed table that GetDIBits also writes as the colour table: black and
// white for 1 bit, the 16 VGA colours for 4 bits, and for 8 bits the 216
// colours of the 6 x 6 x 6 cube (levels 0, 51, ... 255) followed by 40 greys.
//
// The screen is a true-colour device: palettes can be made, selected and
// realised, but drawing never goes through them.
#pragma once

#include <cstdint>

#include "tessaline/export.h"
#include "tessaline/platform/gdi.h"
#include "tessaline/platform/win_types.h"

struct BITMAPINFOHEADER {
  DWORD biSize;
  LONG biWidth;
  LONG biHeight;
  WORD biPlanes;
  WORD biBitCount;
  DWORD biCompression;
  DWORD biSizeImage;
  LONG biXPelsPerMeter;
  LONG biYPelsPerMeter;
  DWORD biClrUsed;
  DWORD biClrImportant;
};
static_assert(sizeof(BITMAPINFOHEADER) == 40, "the DIB header is 40 bytes");

struct BITMAPCOREHEADER {
  DWORD bcSize;
  WORD bcWidth;
  WORD bcHeight;
  WORD bcPlanes;
  WORD bcBitCount;
};
static_assert(sizeof(BITMAPCOREHEADER) == 12, "the old-style header is 12 bytes");

struct RGBQUAD {
  BYTE rgbBlue;
  BYTE rgbGreen;
  BYTE rgbRed;
  BYTE rgbReserved;
};

struct RGBTRIPLE {
  BYTE rgbtBlue;
  BYTE rgbtGreen;
  BYTE rgbtRed;
};

struct BITMAPINFO {
  BITMAPINFOHEADER bmiHeader;
  RGBQUAD bmiColors[1];
};

struct BITMAPCOREINFO {
  BITMAPCOREHEADER bmciHeader;
  RGBTRIPLE bmciColors[1];
};

struct PALETTEENTRY {
  BYTE peRed;
  BYTE peGreen;
  BYTE peBlue;
  BYTE peFlags;
};

struct LOGPALETTE {
  WORD palVersion;
  WORD palNumEntries;
  PALETTEENTRY palPalEntry[1];
};

constexpr DWORD BI_RGB = 0;
constexpr UINT DIB_RGB_COLORS = 0;
constexpr UINT DIB_PAL_COLORS = 1;
constexpr DWORD CBM_INIT = 4;
constexpr DWORD SRCCOPY = 0x00CC0020;
constexpr int BLACKONWHITE = 1;
constexpr int WHITEONBLACK = 2;
constexpr int COLORONCOLOR = 3;
constexpr int HALFTONE = 4;
constexpr BYTE PC_RESERVED = 1;
constexpr BYTE PC_EXPLICIT = 2;
constexpr BYTE PC_NOCOLLAPSE = 4;
constexpr int DEFAULT_PALETTE = 15;

// ---------------------------------------------------------------------------
// Screen and window contexts.

// A display context for the window's client area (NULL: the whole screen).
// It has the screen's capabilities and no pixels of its own. Release it with
// ReleaseDC.
TESSALINE_API HDC GetDC(HWND window);
// 1 when the context came from GetDC and is now freed, else 0.
TESSALINE_API int ReleaseDC(HWND window, HDC dc);

// Pushes the context's pen, brush, bitmap, palette, attributes, mapping,
// position and clipping region; returns the new depth (1, 2, ...) or 0.
TESSALINE_API int SaveDC(HDC dc);
// Pops back to `level` (a positive depth) or by -level steps (negative);
// objects deleted in between are left out. FALSE for a level not on the stack.
TESSALINE_API BOOL RestoreDC(HDC dc, int level);

// ---------------------------------------------------------------------------
// Palettes.

// NULL for a null record, a version other than 0x300 or no entries.
TESSALINE_API HPALETTE CreatePalette(const LOGPALETTE* palette);
// Selects the palette and returns the previous one (a fresh context holds the
// stock DEFAULT_PALETTE); NULL for a bad context or palette.
TESSALINE_API HPALETTE SelectPalette(HDC dc, HPALETTE palette, BOOL force_background);
// The number of entries mapped into the system palette: 0 on a true-colour
// device; GDI_ERROR for a bad context.
TESSALINE_API UINT RealizePalette(HDC dc);
// Copies entries [start, start + count) that exist; returns how many. With a
// null `entries`, the palette's number of entries.
TESSALINE_API UINT GetPaletteEntries(HPALETTE palette, UINT start, UINT count,
                                     PALETTEENTRY* entries);
constexpr UINT GDI_ERROR = 0xFFFFFFFF;

// ---------------------------------------------------------------------------
// Bitmaps and DIB data.

// Bytes of one padded row of w pixels at `bits` bits each.
TESSALINE_API DWORD DibRowBytes(LONG w, WORD bits);

// The bytes that a packed DIB (header, colour table, rows) whose first
// `available` bytes are at `packed` needs, or 0 when its header is not one
// that CreateDIBitmap takes or the data need more than `available` bytes.
// Check data from outside with it before handing them to the calls below,
// which trust the caller for the size of `bits`.
TESSALINE_API SIZE_T DibPackedSize(const void* packed, SIZE_T available);

// A bitmap of the header's size; with CBM_INIT its pixels come from the DIB
// rows `bits` described by `info` (its header and colour table). NULL for a
// bad header, an unsupported format or size, or missing data.
TESSALINE_API HBITMAP CreateDIBitmap(HDC dc, const BITMAPINFOHEADER* header, DWORD init,
                                     const void* bits, const BITMAPINFO* info, UINT usage);

// Converts `lines` rows of the bitmap, starting `start` rows from its bottom,
// into DIB rows at `info`'s bit count (1, 4, 8 or 24) and writes the colour
// table (1, 4, 8 bits) into `info`. `info`'s width and height must be the
// bitmap's (the height's sign picks the row order). With null `bits` only the
// header (size image) and colour table are filled. With a bit count of 0,
// the header is filled with the bitmap's size and 32 bits. Returns the
// number of rows converted, or 0.
TESSALINE_API int GetDIBits(HDC dc, HBITMAP bitmap, UINT start, UINT lines, void* bits,
                            BITMAPINFO* info, UINT usage);

// Copies DIB rows onto the context's surface: the w x h block whose lower
// left corner is (x_src, y_src) in the DIB goes to the logical point
// (x_dest, y_dest) as its upper left corner, copying (no raster operation),
// clipped to the surface and the clipping region. `bits` holds rows start .. start + lines - 1
// counted from the DIB's bottom. Returns the number of rows given, 0 on failure.
TESSALINE_API int SetDIBitsToDevice(HDC dc, int x_dest, int y_dest, DWORD w, DWORD h, int x_src,
                                    int y_src, UINT start, UINT lines, const void* bits,
                                    const BITMAPINFO* info, UINT usage);

// Copies a block of w x h device pixels from the source context's surface at
// (x_src, y_src) to the destination at (x, y), both corners logical points
// mapped to device pixels by their own context.
// SRCCOPY only; clipped to both surfaces and the destination's clipping
// region.
TESSALINE_API BOOL BitBlt(HDC dc, int x, int y, int w, int h, HDC src, int x_src, int y_src,
                          DWORD rop);

// The stretch mode is kept and reported; BitBlt never stretches.
TESSALINE_API int SetStretchBltMode(HDC dc, int mode);
TESSALINE_API int GetStretchBltMode(HDC dc);
