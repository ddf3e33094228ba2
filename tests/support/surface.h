// A memory context with a bitmap, made the Win32 way, for pixel tests, and
// a view of it in world coordinates.
#pragma once

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <utility>
#include <vector>

#include <tessaline/tessaline.h>

using Pixel_Set = std::set<std::pair<int, int>>;  // (x, y)

class Surface {
 public:
  Surface(int w, int h, COLORREF background = RGB(255, 255, 255)) : w_(w), h_(h) {
    dc_ = CreateCompatibleDC(nullptr);
    bm_ = CreateCompatibleBitmap(dc_, w, h);
    old_ = SelectObject(dc_, bm_);
    Clear(background);
  }
  ~Surface() {
    SelectObject(dc_, old_);
    DeleteObject(bm_);
    DeleteDC(dc_);
  }
  Surface(const Surface&) = delete;
  Surface& operator=(const Surface&) = delete;

  HDC dc() const { return dc_; }
  HBITMAP bitmap() const { return bm_; }
  int w() const { return w_; }
  int h() const { return h_; }

  void Clear(COLORREF c) {
    HBRUSH b = CreateSolidBrush(c);
    RECT r{0, 0, w_, h_};
    FillRect(dc_, &r, b);
    DeleteObject(b);
  }
  // Every pixel a random colour.
  void Noise(unsigned seed) {
    std::mt19937 rng(seed);
    for (int y = 0; y < h_; ++y) {
      for (int x = 0; x < w_; ++x) SetPixel(dc_, x, y, rng() & 0xFFFFFF);
    }
  }
  std::vector<uint32_t> Bits() const {
    std::vector<uint32_t> px(static_cast<size_t>(w_) * h_);
    GetBitmapBits(bm_, static_cast<LONG>(px.size() * 4), px.data());
    return px;
  }
  // The pixels whose colour is (or with `equal` false, is not) c.
  Pixel_Set Where(COLORREF c, bool equal = true) const {
    Pixel_Set s;
    for (int y = 0; y < h_; ++y) {
      for (int x = 0; x < w_; ++x) {
        if ((GetPixel(dc_, x, y) == c) == equal) s.insert({x, y});
      }
    }
    return s;
  }

 private:
  int w_, h_;
  HDC dc_;
  HBITMAP bm_;
  HGDIOBJ old_;
};

// Selects an object into a context for a scope, restoring and deleting.
class Selected {
 public:
  Selected(HDC dc, HGDIOBJ obj, bool owned = true) : dc_(dc), obj_(obj), owned_(owned) {
    old_ = SelectObject(dc, obj);
  }
  ~Selected() {
    SelectObject(dc_, old_);
    if (owned_) DeleteObject(obj_);
  }
  Selected(const Selected&) = delete;
  Selected& operator=(const Selected&) = delete;

 private:
  HDC dc_;
  HGDIOBJ obj_;
  HGDIOBJ old_;
  bool owned_;
};

inline HGDIOBJ Stock(int i) {
  return GetStockObject(i);
}

// A view of w x h pixels showing the world (0, 0)-(world_w, world_h), y up.
inline Coord_Syst World_View(int w, int h, double world_w, double world_h) {
  Coord_Syst cs{};
  cs.vp_ext_x = w;
  cs.vp_ext_y = h;
  cs.window = Logical_Window{0, h, w, -h};
  cs.world = World_Window{0, 0, world_w, world_h};
  return cs;
}
