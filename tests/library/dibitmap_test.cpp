// Packed bitmaps: conversion of a drawing, the file layout, loading what is
// and is not a bitmap, colour counts and table sizes.
#include <gtest/gtest.h>

#include <cstring>

#include <tessaline/tessaline.h>

#include "support/surface.h"
#include "support/temp_dir.h"

namespace {

struct Open_Dib : CDIBitmap {
  using CDIBitmap::InitBitmapInfoHeader;
};

// A 100 x 100 drawing: a light face, a white square framed in black.
void Draw_Preview_Like(Surface& s) {
  s.Clear(RGB(240, 240, 240));
  HBRUSH white = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
  HGDIOBJ old = SelectObject(s.dc(), white);
  Rectangle(s.dc(), 20, 30, 70, 80);
  SelectObject(s.dc(), old);
  SetPixel(s.dc(), 50, 50, RGB(0, 0, 120));
}

TEST(DIBitmap, ConvertsSavesLoadsAndDraws) {
  Temp_Dir dir;
  Surface s(100, 100);
  Draw_Preview_Like(s);
  CDIBitmap dib;
  ASSERT_EQ(dib.AssignDDP(s.bitmap()), 1);
  EXPECT_EQ(dib.DIBWidth(), 100u);
  EXPECT_EQ(dib.DIBHeight(), 100u);
  EXPECT_EQ(dib.BitsPerPixel(), 4);
  EXPECT_EQ(dib.DIBNumColors(), 16);
  EXPECT_EQ(dib.PaletteSize(), 64);
  EXPECT_EQ(GlobalSize(dib.GetDIBHandle()), 40u + 64u + 5200u);
  EXPECT_EQ(dib.GetPaletteHandle(), nullptr);  // a true-colour screen has no system palette

  std::string p = dir / "preview.bmp";
  {
    CFile f(p.c_str(), CFile::modeCreate | CFile::modeWrite);
    EXPECT_EQ(dib.Save(f), 1);
  }
  std::vector<unsigned char> bytes = Read_All(p);
  ASSERT_EQ(bytes.size(), 14u + 5304u);
  EXPECT_EQ(bytes[0], 'B');
  EXPECT_EQ(bytes[1], 'M');
  uint32_t size, offset;
  std::memcpy(&size, &bytes[2], 4);
  std::memcpy(&offset, &bytes[10], 4);
  EXPECT_EQ(size, 5318u);
  EXPECT_EQ(offset, 14u + 40u + 64u);

  CDIBitmap back;
  {
    CFile f(p.c_str(), CFile::modeRead);
    ASSERT_EQ(back.Load(f), 1);
    EXPECT_EQ(f.GetPosition(), 5318u);
  }
  EXPECT_NE(back.GetPaletteHandle(), nullptr);  // made from the 16-entry table
  {
    CFile f((dir / "again.bmp").c_str(), CFile::modeCreate | CFile::modeWrite);
    back.Save(f);
  }
  EXPECT_EQ(Read_All(dir / "again.bmp"), bytes);

  // Drawing shows the 16-colour picture: the face became white, the frame
  // stays black, the dark blue pixel is navy.
  Surface out(120, 120, RGB(1, 2, 3));
  CDC dc(out.dc());
  CRect r(10, 10, 110, 110);
  EXPECT_EQ(back.Draw(dc, r), 1);
  dc.Detach();
  EXPECT_EQ(GetPixel(out.dc(), 10, 10), RGB(255, 255, 255));
  EXPECT_EQ(GetPixel(out.dc(), 30, 40), RGB(0, 0, 0));
  EXPECT_EQ(GetPixel(out.dc(), 60, 60), RGB(0, 0, 128));
  EXPECT_EQ(GetPixel(out.dc(), 9, 9), RGB(1, 2, 3));
  EXPECT_EQ(GetPixel(out.dc(), 110, 110), RGB(1, 2, 3));
}

TEST(DIBitmap, RefusesWhatIsNotAWholeBitmap) {
  Temp_Dir dir;
  CDIBitmap dib;
  std::string p = dir / "x.bin";
  {
    CFile f(p.c_str(), CFile::modeCreate | CFile::modeWrite);
    EXPECT_EQ(dib.Save(f), 0);  // nothing to save, nothing written
    EXPECT_EQ(f.GetLength(), 0u);
  }
  Write_All(p, std::vector<unsigned char>(40, 'X'));
  {
    CFile f(p.c_str(), CFile::modeRead);
    EXPECT_EQ(dib.Load(f), 0);
    EXPECT_EQ(f.GetPosition(), 14u);  // only the file header was read
  }
  Surface s(100, 100);
  Draw_Preview_Like(s);
  dib.AssignDDP(s.bitmap());
  {
    CFile f(p.c_str(), CFile::modeCreate | CFile::modeWrite);
    dib.Save(f);
  }
  std::vector<unsigned char> whole = Read_All(p);
  // A size field beyond the file, or rows cut short, leave the picture as it was.
  std::vector<unsigned char> lying = whole;
  lying[5] = 0x7F;
  std::vector<unsigned char> cut(whole.begin(), whole.end() - 100);
  uint32_t cut_size = static_cast<uint32_t>(cut.size());
  std::memcpy(&cut[2], &cut_size, 4);
  HGLOBAL held = dib.GetDIBHandle();
  for (const auto& bad : {lying, cut}) {
    Write_All(p, bad);
    CFile f(p.c_str(), CFile::modeRead);
    EXPECT_EQ(dib.Load(f), 0);
    EXPECT_EQ(dib.GetDIBHandle(), held);
  }
  EXPECT_EQ(dib.AssignDDP(nullptr), 0);
  EXPECT_EQ(dib.GetDIBHandle(), held);
}

TEST(DIBitmap, ColourCountsAndTableSizes) {
  BITMAPINFOHEADER h{40, 1, 1, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
  EXPECT_EQ(CDIBitmap::NumColorsOf(&h), 0);
  EXPECT_EQ(CDIBitmap::PaletteSizeOf(&h), 0);
  h.biBitCount = 8;
  h.biClrUsed = 20;
  EXPECT_EQ(CDIBitmap::NumColorsOf(&h), 20);
  EXPECT_EQ(CDIBitmap::PaletteSizeOf(&h), 80);
  BITMAPCOREHEADER c{12, 1, 1, 1, 8};
  EXPECT_EQ(CDIBitmap::PaletteSizeOf(&c), 768);
  c.bcBitCount = 1;
  EXPECT_EQ(CDIBitmap::PaletteSizeOf(&c), 6);

  Open_Dib dib;
  BITMAPINFOHEADER made;
  dib.InitBitmapInfoHeader(&made, 100, 100, 3);
  EXPECT_EQ(made.biBitCount, 4);
  EXPECT_EQ(made.biSizeImage, 5200u);
  dib.InitBitmapInfoHeader(&made, 10, 1, 9);
  EXPECT_EQ(made.biBitCount, 24);
  EXPECT_EQ(made.biSizeImage, 32u);
}

}  // namespace
