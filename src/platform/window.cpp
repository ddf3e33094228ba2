// Host windows, the cursor, system colours and MulDiv.
#include <atomic>
#include <climits>
#include <map>
#include <mutex>

#include "tessaline/host.h"
#include "tessaline/platform/user.h"

namespace {

struct Host_Window {
  int w = 0, h = 0;  // client size
  int x = 0, y = 0;  // client origin on the screen
};

struct Windows {
  std::mutex mutex;
  std::map<HWND, Host_Window> known;
  POINT cursor{0, 0};
};

Windows& The_Windows() {
  static Windows* w = new Windows;  // never destroyed: may be used during exit
  return *w;
}

constexpr int kSysColorCount = 31;

// Today's default colours of display elements (index 25 is unused).
constexpr COLORREF kDefaultSysColors[kSysColorCount] = {
    RGB(200, 200, 200), RGB(0, 0, 0),       RGB(153, 180, 209), RGB(191, 205, 219),
    RGB(240, 240, 240), RGB(255, 255, 255), RGB(100, 100, 100), RGB(0, 0, 0),
    RGB(0, 0, 0),       RGB(0, 0, 0),       RGB(180, 180, 180), RGB(244, 247, 252),
    RGB(171, 171, 171), RGB(0, 120, 215),   RGB(255, 255, 255), RGB(240, 240, 240),
    RGB(160, 160, 160), RGB(109, 109, 109), RGB(0, 0, 0),       RGB(0, 0, 0),
    RGB(255, 255, 255), RGB(105, 105, 105), RGB(227, 227, 227), RGB(0, 0, 0),
    RGB(255, 255, 225), RGB(0, 0, 0),       RGB(0, 102, 204),   RGB(185, 209, 234),
    RGB(215, 228, 242), RGB(0, 120, 215),   RGB(240, 240, 240)};

std::atomic<COLORREF>* Sys_Colors() {
  static std::atomic<COLORREF>* colors = [] {
    auto* c = new std::atomic<COLORREF>[kSysColorCount];
    for (int i = 0; i < kSysColorCount; ++i) c[i] = kDefaultSysColors[i];
    return c;
  }();
  return colors;
}

// Runs f on the window's record; false when the window is not known.
template <class F>
bool With_Window(HWND window, F&& f) {
  Windows& w = The_Windows();
  std::lock_guard<std::mutex> guard(w.mutex);
  auto it = w.known.find(window);
  if (!window || it == w.known.end()) return false;
  f(it->second);
  return true;
}

}  // namespace

void SetWindowClientSize(HWND window, int w, int h) {
  if (!window) return;
  Windows& all = The_Windows();
  std::lock_guard<std::mutex> guard(all.mutex);
  Host_Window& hw = all.known[window];
  hw.w = w;
  hw.h = h;
}

void SetWindowClientOrigin(HWND window, int x, int y) {
  if (!window) return;
  Windows& all = The_Windows();
  std::lock_guard<std::mutex> guard(all.mutex);
  Host_Window& hw = all.known[window];
  hw.x = x;
  hw.y = y;
}

BOOL GetClientRect(HWND window, RECT* rect) {
  if (!rect) return FALSE;
  return With_Window(window, [&](const Host_Window& hw) { *rect = RECT{0, 0, hw.w, hw.h}; });
}

BOOL GetCursorPos(POINT* point) {
  if (!point) return FALSE;
  Windows& w = The_Windows();
  std::lock_guard<std::mutex> guard(w.mutex);
  *point = w.cursor;
  return TRUE;
}

BOOL SetCursorPos(int x, int y) {
  Windows& w = The_Windows();
  std::lock_guard<std::mutex> guard(w.mutex);
  w.cursor = POINT{x, y};
  return TRUE;
}

BOOL ScreenToClient(HWND window, POINT* point) {
  if (!point) return FALSE;
  return With_Window(window, [&](const Host_Window& hw) {
    point->x = static_cast<LONG>(static_cast<int64_t>(point->x) - hw.x);
    point->y = static_cast<LONG>(static_cast<int64_t>(point->y) - hw.y);
  });
}

BOOL ClientToScreen(HWND window, POINT* point) {
  if (!point) return FALSE;
  return With_Window(window, [&](const Host_Window& hw) {
    point->x = static_cast<LONG>(static_cast<int64_t>(point->x) + hw.x);
    point->y = static_cast<LONG>(static_cast<int64_t>(point->y) + hw.y);
  });
}

DWORD GetSysColor(int index) {
  if (index < 0 || index >= kSysColorCount) return 0;
  return Sys_Colors()[index].load(std::memory_order_relaxed);
}

BOOL SetSysColors(int count, const int* indexes, const COLORREF* colors) {
  if (count < 0 || (count > 0 && (!indexes || !colors))) return FALSE;
  for (int i = 0; i < count; ++i) {
    if (indexes[i] < 0 || indexes[i] >= kSysColorCount) return FALSE;
  }
  for (int i = 0; i < count; ++i) Sys_Colors()[indexes[i]] = colors[i] & 0xFFFFFF;
  return TRUE;
}

int MulDiv(int a, int b, int c) {
  if (c == 0) return -1;
  const int64_t p = static_cast<int64_t>(a) * b;
  const uint64_t ap = p < 0 ? 0 - static_cast<uint64_t>(p) : static_cast<uint64_t>(p);
  const uint64_t ac =
      c < 0 ? 0 - static_cast<uint64_t>(static_cast<int64_t>(c)) : static_cast<uint64_t>(c);
  // Half away from zero: add half the divisor to the magnitude.
  const uint64_t q = (ap + ac / 2) / ac;
  const bool negative = (p < 0) != (c < 0);
  if (negative ? q > uint64_t{1} << 31 : q > INT_MAX) return -1;
  return negative ? static_cast<int>(-static_cast<int64_t>(q)) : static_cast<int>(q);
}
