// A picture held both as a packed device-independent bitmap (header, colour
// table and rows in one movable block, as stored in files) and as a
// device-dependent bitmap with its palette, ready to be copied to a context.
//
// The section library keeps each section's 100 x 100 preview this way: a
// screen-compatible drawing is reduced to 16 colours (AssignDDP), written
// to the library (Save) and read back for display (Load, Draw).
#pragma once

#include "tessaline/export.h"
#include "tessaline/platform/dc.h"
#include "tessaline/platform/dib.h"
#include "tessaline/platform/file.h"
#include "tessaline/platform/gdi.h"
#include "tessaline/platform/win_types.h"

class TESSALINE_API CDIBitmap {
 public:
  CDIBitmap();
  // Kept as the system has it: the argument is ignored and nothing is
  // initialised. Use the default constructor and AssignDDP.
  explicit CDIBitmap(HBITMAP);
  // Deletes the palette and the device-dependent bitmap and frees the
  // packed block, each when set.
  ~CDIBitmap();
  CDIBitmap(const CDIBitmap&) = delete;
  // Copies every field, handles included: both objects then name the same
  // handles. The platform's handles are checked, so the second owner's
  // release of an already released handle does nothing.
  CDIBitmap& operator=(const CDIBitmap& other);

  // Reads a bitmap in the file layout (14-byte "BM" header, then the packed
  // block) at the file's position. 0 when the header is short or not "BM",
  // or the data are not a complete picture of a supported format (the
  // object then keeps what it held); 1 with the new picture.
  int Load(CFile& file);
  // Writes the file header and the whole packed block; 0 without one.
  int Save(CFile& file);
  // Copies the picture to the left and top of `rect`, rect's size, unstretched.
  int Draw(CDC& dc, CRect& rect);
  // Replaces the picture by a 4-bit conversion of `bitmap`; 0 for null.
  int AssignDDP(HBITMAP bitmap);

  DWORD DIBWidth() const { return m_wWidth; }
  DWORD DIBHeight() const { return m_wHeight; }
  WORD DIBNumColors();
  WORD PaletteSize();
  // Does nothing: the screen is a true-colour device.
  void RealizeDIBPalette(HDC dc, BITMAPINFO* info);

  HGLOBAL GetDIBHandle() const { return m_hDIB; }
  HBITMAP GetBitmapHandle() const { return m_hBitmap; }
  HPALETTE GetPaletteHandle() const { return m_hPal; }
  WORD BitsPerPixel() const { return m_wBits; }

  // Colour count and table size of a locked header (40 or 12 bytes).
  static WORD NumColorsOf(const void* header);
  static WORD PaletteSizeOf(const void* header);

 protected:
  BYTE* FindDIBBits();
  void ResetDIB();
  HGLOBAL BitmapToDIB(HBITMAP bitmap);
  HBITMAP DIBToBitmap();
  HPALETTE CreateDIBPalette();
  HPALETTE GetSystemPalette();
  void InitBitmapInfoHeader(BITMAPINFOHEADER* header, DWORD width, DWORD height, int bits);

  BITMAPINFOHEADER* m_lpbi;  // the packed block's header while it is locked
  HGLOBAL m_hDIB;
  HPALETTE m_hPal;
  HBITMAP m_hBitmap;
  WORD m_wZero;
  WORD m_wBits;
  WORD m_wWidth;
  WORD m_wHeight;
};
