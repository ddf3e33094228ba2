// Handles and their checks, raster operations, PNG files and golden images.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <vector>

#include "support/golden.h"
#include "support/surface.h"

namespace {

TEST(GdiObjects, BadHandlesFailWithoutHarm) {
  const long live = GdiObjectCount();
  HPEN pen = CreatePen(PS_SOLID, 1, RGB(1, 2, 3));
  HRGN rgn = CreateRectRgn(0, 0, 5, 5);
  EXPECT_EQ(GdiObjectCount(), live + 2);
  // The wrong kind of object, a made-up value, a deleted handle.
  EXPECT_FALSE(PtInRegion(reinterpret_cast<HRGN>(pen), 1, 1));
  EXPECT_EQ(CombineRgn(rgn, rgn, reinterpret_cast<HRGN>(pen), RGN_OR), ERROR);
  HDC made_up = reinterpret_cast<HDC>(static_cast<intptr_t>(0x7654321));
  EXPECT_FALSE(LineTo(made_up, 1, 1));
  EXPECT_EQ(SelectObject(made_up, pen), nullptr);
  EXPECT_EQ(GetObjectType(made_up), 0u);
  EXPECT_TRUE(DeleteObject(rgn));
  EXPECT_FALSE(DeleteObject(rgn));
  EXPECT_FALSE(PtInRegion(rgn, 1, 1));
  HRGN fresh = CreateRectRgn(0, 0, 1, 1);  // may reuse the slot, never the handle
  EXPECT_NE(fresh, rgn);
  EXPECT_FALSE(PtInRegion(rgn, 0, 0));
  DeleteObject(fresh);
  EXPECT_EQ(CreateCompatibleDC(made_up), nullptr);
  EXPECT_EQ(CreatePen(42, 1, 0), nullptr);
  EXPECT_EQ(CreateCompatibleBitmap(nullptr, -1, 5), nullptr);
  EXPECT_EQ(CreateCompatibleBitmap(nullptr, 40000, 40000), nullptr);

  // A selected object cannot be deleted; stock objects are never deleted.
  {
    Surface s(4, 4);
    EXPECT_EQ(GetObjectType(s.dc()), OBJ_MEMDC);
    HGDIOBJ old = SelectObject(s.dc(), pen);
    EXPECT_EQ(old, Stock(BLACK_PEN));
    EXPECT_FALSE(DeleteObject(pen));
    EXPECT_EQ(GetCurrentObject(s.dc(), OBJ_PEN), pen);
    // A bitmap lives in one memory context at a time.
    HDC other = CreateCompatibleDC(s.dc());
    EXPECT_EQ(SelectObject(other, s.bitmap()), nullptr);
    DeleteDC(other);
    SelectObject(s.dc(), old);
  }
  EXPECT_TRUE(DeleteObject(pen));
  EXPECT_TRUE(DeleteObject(Stock(WHITE_BRUSH)));
  EXPECT_EQ(GetObjectType(Stock(WHITE_BRUSH)), OBJ_BRUSH);
  EXPECT_EQ(GetStockObject(9), nullptr);
  // A short buffer gets only the first bytes of a description. BITMAP ends
  // in a pointer, 24 bytes in all on a 32-bit target and 32 on a 64-bit one.
  HBITMAP bm = CreateCompatibleBitmap(nullptr, 7, 5);
  BITMAP info{};
  info.bmBits = &info;
  EXPECT_EQ(GetObjectA(bm, 0, nullptr), static_cast<int>(sizeof(BITMAP)));
  EXPECT_EQ(GetObjectA(bm, 20, &info), 20);
  EXPECT_TRUE(info.bmWidthBytes == 28 && info.bmBitsPixel == 32 && info.bmBits == &info);
  DeleteObject(bm);
  EXPECT_EQ(GdiObjectCount(), live);
}

TEST(GdiObjects, EveryRasterOperationFollowsItsTruthTable) {
  const COLORREF pen_color = RGB(0xF0, 0xCC, 0x0F), dest = RGB(0x5A, 0x3C, 0xA5);
  Surface s(2, 1, dest);
  Selected pen(s.dc(), CreatePen(PS_SOLID, 1, pen_color));
  for (int rop = R2_BLACK; rop <= R2_WHITE; ++rop) {
    SetPixel(s.dc(), 0, 0, dest);
    EXPECT_EQ(SetROP2(s.dc(), rop), rop == R2_BLACK ? R2_COPYPEN : rop - 1);
    MoveToEx(s.dc(), 0, 0, nullptr);
    LineTo(s.dc(), 1, 0);
    COLORREF want = 0;
    for (int bit = 0; bit < 24; ++bit) {
      const int p = (pen_color >> bit) & 1, d = (dest >> bit) & 1;
      want |= static_cast<COLORREF>(((rop - 1) >> (2 * p + d)) & 1) << bit;
    }
    EXPECT_EQ(GetPixel(s.dc(), 0, 0), want) << "rop " << rop;
    EXPECT_EQ(GetPixel(s.dc(), 1, 0), dest);  // the end pixel is left out
  }
  EXPECT_EQ(SetROP2(s.dc(), 0), 0);
  EXPECT_EQ(GetROP2(s.dc()), R2_WHITE);
}

TEST(GdiObjects, FreedHandleNeverNamesTheObjectThatReusesItsSlot) {
  // Guards the handle layout on 32-bit targets, where packing the
  // generation with a 32-bit shift lost it: the object that took over a
  // freed slot got the freed handle's value, and the stale handle reached it.
  HRGN freed = CreateRectRgn(0, 0, 1, 1);
  ASSERT_TRUE(DeleteObject(freed));
  std::vector<HRGN> made;
  for (int i = 0; i < 3000; ++i) made.push_back(CreateRectRgn(0, 0, 2, 2));  // one reuses the slot
  EXPECT_EQ(std::count(made.begin(), made.end(), freed), 0);
  EXPECT_EQ(GetObjectType(freed), 0u);
  EXPECT_FALSE(PtInRegion(freed, 1, 1));
  for (HRGN r : made) DeleteObject(r);
}

TEST(GdiObjects, PngRoundTripKeepsEveryPixel) {
  Surface s(37, 23);
  s.Noise(5);
  const std::string path =
      (std::filesystem::temp_directory_path() / "tessaline_gdi_roundtrip.png").string();
#if !TESSALINE_WITH_PNG
  EXPECT_FALSE(WriteDCPng(s.dc(), path.c_str()));
  EXPECT_EQ(ReadBitmapPng(path.c_str()), nullptr);
  GTEST_SKIP() << "built without libpng (TESSALINE_WITH_PNG off): PNG files cannot be written";
#endif
  ASSERT_TRUE(WriteDCPng(s.dc(), path.c_str()));
  HBITMAP back = ReadBitmapPng(path.c_str());
  int w = 0, h = 0;
  EXPECT_TRUE(golden::Pixels_Of(back, &w, &h) == s.Bits() && w == 37 && h == 23);
  DeleteObject(back);
  // Not a PNG, no file, no directory.
  std::ofstream(path) << "not a picture";
  EXPECT_EQ(ReadBitmapPng(path.c_str()), nullptr);
  std::remove(path.c_str());
  EXPECT_EQ(ReadBitmapPng(path.c_str()), nullptr);
  EXPECT_FALSE(WriteBitmapPng(s.bitmap(), "/nonexistent-dir/x.png"));
  EXPECT_FALSE(WriteDCPng(nullptr, path.c_str()));
}

// One picture of every primitive, kept as a golden image.
TEST(GdiObjects, PrimitivesMatchTheirGoldenImage) {
  Surface s(160, 120);
  HDC dc = s.dc();
  for (int k = 0; k < 16; ++k) {  // a fan of lines in every octant
    const int dx[] = {30, 30, 15, 0, -15, -30, -30, -30, -30, -30, -15, 0, 15, 30, 30, 30};
    const int dy[] = {0, 15, 30, 30, 30, 30, 15, 0, 0, -15, -30, -30, -30, -30, -15, -7};
    MoveToEx(dc, 32, 32, nullptr);
    LineTo(dc, 32 + dx[k], 32 + dy[k]);
  }
  {
    Selected pen(dc, CreatePen(PS_DASHDOT, 1, RGB(0, 0, 160)));
    Selected brush(dc, CreateSolidBrush(RGB(255, 220, 120)));
    SetBkColor(dc, RGB(200, 200, 255));
    Rectangle(dc, 70, 4, 110, 30);
    Ellipse(dc, 114, 4, 156, 40);
  }
  {
    Selected pen(dc, CreatePen(PS_SOLID, 3, RGB(180, 0, 0)));
    Selected brush(dc, Stock(NULL_BRUSH), false);
    Arc(dc, 66, 36, 110, 80, 110, 58, 66, 40);
    const POINT zig[] = {{4, 75}, {20, 100}, {36, 70}, {52, 110}};
    Polyline(dc, zig, 4);
  }
  {
    Selected brush(dc, CreateSolidBrush(RGB(0, 140, 70)));
    SetPolyFillMode(dc, WINDING);
    const POINT star[] = {{134, 44}, {148, 86}, {112, 60}, {156, 60}, {120, 86}};
    Polygon(dc, star, 5);
  }
  HRGN a = CreateEllipticRgn(60, 84, 110, 118);
  HRGN b = CreateRectRgn(80, 90, 140, 112);
  CombineRgn(a, a, b, RGN_XOR);
  FillRgn(dc, a, static_cast<HBRUSH>(Stock(LTGRAY_BRUSH)));
  FrameRgn(dc, a, static_cast<HBRUSH>(Stock(BLACK_BRUSH)), 2, 1);
  SelectClipRgn(dc, a);
  {
    Selected pen(dc, CreatePen(PS_SOLID, 1, RGB(255, 0, 255)));
    SetROP2(dc, R2_XORPEN);
    for (int x = 56; x < 146; x += 6) {
      MoveToEx(dc, x, 80, nullptr);
      LineTo(dc, x + 20, 119);
    }
  }
  SelectClipRgn(dc, nullptr);
  DeleteObject(a);
  DeleteObject(b);
  EXPECT_TRUE(golden::Matches_Golden(s.bitmap(), "gdi_primitives"));
}

}  // namespace
