// The canvas the picture examples draw on: a memory device context with a
// w x h bitmap selected into it, written out as PNG, and released (bitmap
// deselected, bitmap and context deleted) when it goes out of scope.
#pragma once

#include <cstdio>

#include <tessaline/tessaline.h>

class Picture {
 public:
  Picture(int width, int height)
      : width_(width),
        height_(height),
        dc_(CreateCompatibleDC(nullptr)),
        bitmap_(CreateCompatibleBitmap(dc_, width, height)),
        old_(SelectObject(dc_, bitmap_)) {}
  Picture(const Picture&) = delete;
  Picture& operator=(const Picture&) = delete;
  ~Picture() {
    SelectObject(dc_, old_);
    DeleteObject(bitmap_);
    DeleteDC(dc_);
  }

  HDC dc() const { return dc_; }

  // Paints the whole picture with one colour.
  void Fill(COLORREF colour) const {
    HBRUSH brush = CreateSolidBrush(colour);
    RECT all{0, 0, width_, height_};
    FillRect(dc_, &all, brush);
    DeleteObject(brush);
  }

  // Writes the picture as a PNG file and says so; false when it cannot.
  bool Write(const char* path) const {
    if (!WriteDCPng(dc_, path)) {
      std::fprintf(stderr, "cannot write %s\n", path);
      return false;
    }
    std::printf("wrote %s (%d x %d)\n", path, width_, height_);
    return true;
  }

 private:
  int width_, height_;
  HDC dc_;
  HBITMAP bitmap_;
  HGDIOBJ old_;
};
