// DIB conversion at 1, 4, 8 and 24 bits, block copies, saved states and
// palettes of the software device context.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include <tessaline/tessaline.h>

#include "support/surface.h"

namespace {

struct Dib {
  std::vector<unsigned char> block;  // header, 256-entry table room, rows
  BITMAPINFO* info() { return reinterpret_cast<BITMAPINFO*>(block.data()); }
  unsigned char* rows() { return block.data() + 40 + 1024; }
};

Dib Convert(HBITMAP bm, int w, int h, WORD bits) {
  Dib d;
  d.block.assign(40 + 1024 + DibRowBytes(w, bits) * static_cast<size_t>(h), 0);
  BITMAPINFOHEADER hdr{40, w, h, 1, bits, BI_RGB, 0, 0, 0, 0, 0};
  std::memcpy(d.block.data(), &hdr, 40);
  HDC screen = GetDC(nullptr);
  EXPECT_EQ(GetDIBits(screen, bm, 0, static_cast<UINT>(h), d.rows(), d.info(), DIB_RGB_COLORS), h);
  ReleaseDC(nullptr, screen);
  return d;
}

// A colour table entry of the converted DIB (the fixed reduction table).
COLORREF Table_Color(Dib& d, int i) {
  RGBQUAD q = d.info()->bmiColors[i];
  return RGB(q.rgbRed, q.rgbGreen, q.rgbBlue);
}

TEST(Dib, ConversionRoundTripsAtEveryDepth) {
  for (WORD bits : {1, 4, 8, 24}) {
    Surface s(13, 7);  // odd width: padded rows and partial bytes
    Dib probe = Convert(s.bitmap(), 13, 7, bits);
    int colours = bits == 24 ? 0 : 1 << bits;
    // Paint colours the depth holds exactly, so the round trip is lossless.
    std::mt19937 rng(bits);
    for (int y = 0; y < 7; ++y) {
      for (int x = 0; x < 13; ++x) {
        COLORREF c =
            colours ? Table_Color(probe, static_cast<int>(rng() % colours)) : rng() & 0xFFFFFF;
        SetPixel(s.dc(), x, y, c);
      }
    }
    Dib d = Convert(s.bitmap(), 13, 7, bits);
    EXPECT_EQ(d.info()->bmiHeader.biSizeImage, DibRowBytes(13, bits) * 7) << bits;
    HDC screen = GetDC(nullptr);
    HBITMAP back =
        CreateDIBitmap(screen, &d.info()->bmiHeader, CBM_INIT, d.rows(), d.info(), DIB_RGB_COLORS);
    ReleaseDC(nullptr, screen);
    ASSERT_NE(back, nullptr);
    std::vector<uint32_t> px(13 * 7);
    GetBitmapBits(back, static_cast<LONG>(px.size() * 4), px.data());
    EXPECT_EQ(px, s.Bits()) << bits;
    DeleteObject(back);
  }
}

TEST(Dib, RowsRunBottomUpAndColoursReduceToTheNearest) {
  Surface s(100, 2, RGB(240, 240, 240));    // a light face colour goes to white at 4 bits
  SetPixel(s.dc(), 0, 1, RGB(10, 0, 120));  // bottom row, first pixel: near navy
  Dib d = Convert(s.bitmap(), 100, 2, 4);
  EXPECT_EQ(DibRowBytes(100, 4), 52u);
  EXPECT_EQ(d.rows()[0], 0x4F);   // navy (4), then white (15)
  EXPECT_EQ(d.rows()[52], 0xFF);  // top row all white
  EXPECT_EQ(Table_Color(d, 4), RGB(0, 0, 128));

  // SetDIBitsToDevice puts the DIB's bottom row at the bottom of the block.
  Surface t(100, 2, RGB(1, 2, 3));
  EXPECT_EQ(SetDIBitsToDevice(t.dc(), 0, 0, 100, 2, 0, 0, 0, 2, d.rows(), d.info(), DIB_RGB_COLORS),
            2);
  EXPECT_EQ(GetPixel(t.dc(), 0, 1), RGB(0, 0, 128));
  EXPECT_EQ(GetPixel(t.dc(), 0, 0), RGB(255, 255, 255));
}

TEST(Dib, PackedSizeRefusesWhatTheDataCannotHold) {
  BITMAPINFOHEADER h{40, 100, 100, 1, 4, BI_RGB, 0, 0, 0, 0, 0};
  std::vector<unsigned char> b(40 + 64 + 5200);
  std::memcpy(b.data(), &h, 40);
  EXPECT_EQ(DibPackedSize(b.data(), b.size()), b.size());
  EXPECT_EQ(DibPackedSize(b.data(), b.size() - 1), 0u);
  h.biClrUsed = 257;
  std::memcpy(b.data(), &h, 40);
  EXPECT_EQ(DibPackedSize(b.data(), b.size()), 0u);
  h.biClrUsed = 0;
  h.biCompression = 1;  // run-length data are not read
  std::memcpy(b.data(), &h, 40);
  EXPECT_EQ(DibPackedSize(b.data(), b.size()), 0u);
  h = BITMAPINFOHEADER{40, 40000, 1, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
  std::memcpy(b.data(), &h, 40);
  EXPECT_EQ(DibPackedSize(b.data(), b.size()), 0u);
}

TEST(Dib, BitBltCopiesClippedBlocks) {
  Surface src(4, 4);
  src.Noise(3);
  Surface dst(6, 6, RGB(9, 9, 9));
  EXPECT_TRUE(BitBlt(dst.dc(), 3, 3, 4, 4, src.dc(), 0, 0, SRCCOPY));
  for (int y = 0; y < 6; ++y) {
    for (int x = 0; x < 6; ++x) {
      COLORREF want = x >= 3 && y >= 3 ? GetPixel(src.dc(), x - 3, y - 3) : RGB(9, 9, 9);
      EXPECT_EQ(GetPixel(dst.dc(), x, y), want) << x << "," << y;
    }
  }
  EXPECT_FALSE(BitBlt(dst.dc(), 0, 0, 2, 2, src.dc(), 0, 0, 0x00EE0086));  // only SRCCOPY
}

TEST(Dib, SavedStatesAndPalettes) {
  Surface s(4, 4);
  HPEN pen = CreatePen(PS_SOLID, 1, RGB(1, 2, 3));
  EXPECT_EQ(SaveDC(s.dc()), 1);
  HGDIOBJ old = SelectObject(s.dc(), pen);
  SetMapMode(s.dc(), MM_LOMETRIC);
  SetROP2(s.dc(), R2_XORPEN);
  EXPECT_EQ(SaveDC(s.dc()), 2);
  EXPECT_TRUE(RestoreDC(s.dc(), 1));
  EXPECT_EQ(GetCurrentObject(s.dc(), OBJ_PEN), old);
  EXPECT_EQ(GetMapMode(s.dc()), MM_TEXT);
  EXPECT_EQ(GetROP2(s.dc()), R2_COPYPEN);
  EXPECT_FALSE(RestoreDC(s.dc(), 1));  // popped
  EXPECT_TRUE(DeleteObject(pen));

  std::vector<unsigned char> block(sizeof(LOGPALETTE) + 3 * sizeof(PALETTEENTRY));
  auto* lp = reinterpret_cast<LOGPALETTE*>(block.data());
  lp->palVersion = 0x300;
  lp->palNumEntries = 2;
  lp->palPalEntry[1] = PALETTEENTRY{7, 8, 9, 0};
  HPALETTE pal = CreatePalette(lp);
  ASSERT_NE(pal, nullptr);
  HPALETTE def = SelectPalette(s.dc(), pal, FALSE);
  EXPECT_EQ(GetObjectType(def), OBJ_PAL);
  EXPECT_EQ(RealizePalette(s.dc()), 0u);  // true colour: nothing to map
  EXPECT_EQ(SelectPalette(s.dc(), def, FALSE), pal);
  PALETTEENTRY e[3];
  EXPECT_EQ(GetPaletteEntries(pal, 1, 3, e), 1u);
  EXPECT_EQ(e[0].peBlue, 9);
  EXPECT_TRUE(DeleteObject(pal));
  lp->palVersion = 0x200;
  EXPECT_EQ(CreatePalette(lp), nullptr);
  EXPECT_EQ(ReleaseDC(nullptr, s.dc()), 0);  // not a GetDC context
}

}  // namespace
