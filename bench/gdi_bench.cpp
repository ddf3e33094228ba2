// Speed of the software device context on a 1920 x 1080 memory context.
#include <benchmark/benchmark.h>

#include <cmath>
#include <numbers>
#include <random>
#include <vector>

#include <tessaline/tessaline.h>

namespace {

class Screen {
 public:
  Screen() {
    dc_ = CreateCompatibleDC(nullptr);
    bm_ = CreateCompatibleBitmap(dc_, 1920, 1080);
    old_ = SelectObject(dc_, bm_);
  }
  ~Screen() {
    SelectObject(dc_, old_);
    DeleteObject(bm_);
    DeleteDC(dc_);
  }
  HDC dc() const { return dc_; }

 private:
  HDC dc_;
  HBITMAP bm_;
  HGDIOBJ old_;
};

// 1000-pixel lines (1000 steps along the major axis) through the centre of
// the screen in 16 directions; range(1) 1 keeps to horizontal lines.
void BM_LineTo_1000px(benchmark::State& state) {
  Screen s;
  HPEN pen = CreatePen(static_cast<int>(state.range(0)), 1, RGB(0, 0, 128));
  HGDIOBJ old = SelectObject(s.dc(), pen);
  const bool flat = state.range(1) != 0;
  int k = 0;
  for (auto _ : state) {
    const int d = flat ? 0 : -1000 + 250 * (k % 8);  // minor extent
    const bool x_major = flat || (k / 8) % 2 == 0;
    ++k;
    const int dx = x_major ? 1000 : d, dy = x_major ? d : 1000;
    MoveToEx(s.dc(), 960 - dx / 2, 540 - dy / 2, nullptr);
    LineTo(s.dc(), 960 + dx / 2, 540 + dy / 2);
  }
  SelectObject(s.dc(), old);
  DeleteObject(pen);
  state.SetItemsProcessed(state.iterations() * 1000);
}
BENCHMARK(BM_LineTo_1000px)->Args({PS_SOLID, 0})->Args({PS_DASH, 0})->Args({PS_SOLID, 1});

// A rubber band: the same line drawn and erased with R2_XORPEN.
void BM_Xor_Line_Pair(benchmark::State& state) {
  Screen s;
  SetROP2(s.dc(), R2_XORPEN);
  HPEN pen = CreatePen(PS_SOLID, 1, RGB(255, 255, 0));
  HGDIOBJ old = SelectObject(s.dc(), pen);
  for (auto _ : state) {
    for (int pass = 0; pass < 2; ++pass) {
      MoveToEx(s.dc(), 400, 200, nullptr);
      LineTo(s.dc(), 1400, 800);
    }
  }
  SelectObject(s.dc(), old);
  DeleteObject(pen);
}
BENCHMARK(BM_Xor_Line_Pair);

// Ellipse of 200 pixels across; range(0) 0: hollow, 1: filled, 2: pen width 3.
void BM_Ellipse_200px(benchmark::State& state) {
  Screen s;
  const int mode = static_cast<int>(state.range(0));
  HPEN pen = CreatePen(PS_SOLID, mode == 2 ? 3 : 1, RGB(0, 0, 0));
  HGDIOBJ old_pen = SelectObject(s.dc(), pen);
  HBRUSH brush = CreateSolidBrush(RGB(200, 100, 0));
  HGDIOBJ old_brush = SelectObject(s.dc(), mode == 0 ? GetStockObject(NULL_BRUSH) : brush);
  for (auto _ : state) benchmark::DoNotOptimize(Ellipse(s.dc(), 800, 400, 1000, 600));
  SelectObject(s.dc(), old_pen);
  SelectObject(s.dc(), old_brush);
  DeleteObject(pen);
  DeleteObject(brush);
}
BENCHMARK(BM_Ellipse_200px)->Arg(0)->Arg(1)->Arg(2);

// A star-shaped polygon of n vertices within 800 x 800 pixels, filled
// (winding) with a pen outline.
void BM_Polygon_Fill(benchmark::State& state) {
  Screen s;
  const int n = static_cast<int>(state.range(0));
  std::mt19937 rng(1);
  std::uniform_real_distribution<double> radius(150, 400);
  std::vector<POINT> pts(static_cast<size_t>(n));
  for (int i = 0; i < n; ++i) {
    const double a = 2 * std::numbers::pi * i / n, r = radius(rng);
    pts[static_cast<size_t>(i)] = POINT{960 + static_cast<LONG>(r * std::cos(a)),
                                        540 + static_cast<LONG>(r * std::sin(a))};
  }
  HBRUSH brush = CreateSolidBrush(RGB(0, 120, 60));
  HGDIOBJ old = SelectObject(s.dc(), brush);
  SetPolyFillMode(s.dc(), WINDING);
  for (auto _ : state) benchmark::DoNotOptimize(Polygon(s.dc(), pts.data(), n));
  SelectObject(s.dc(), old);
  DeleteObject(brush);
}
BENCHMARK(BM_Polygon_Fill)->Arg(10)->Arg(100)->Arg(1000);

// Two regions of n random rectangles each (built outside the timing),
// combined into a third.
void BM_Combine_Region(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const int mode = static_cast<int>(state.range(1));
  std::mt19937 rng(static_cast<unsigned>(n));
  std::uniform_int_distribution<int> c(0, 1000), size(5, 60);
  HRGN src[2];
  for (HRGN& r : src) {
    r = CreateRectRgn(0, 0, 0, 0);
    for (int i = 0; i < n; ++i) {
      const int x = c(rng), y = c(rng);
      HRGN one = CreateRectRgn(x, y, x + size(rng), y + size(rng));
      CombineRgn(r, r, one, RGN_OR);
      DeleteObject(one);
    }
  }
  HRGN out = CreateRectRgn(0, 0, 0, 0);
  for (auto _ : state) benchmark::DoNotOptimize(CombineRgn(out, src[0], src[1], mode));
  DeleteObject(out);
  DeleteObject(src[0]);
  DeleteObject(src[1]);
}
BENCHMARK(BM_Combine_Region)
    ->Args({10, RGN_OR})
    ->Args({100, RGN_OR})
    ->Args({1000, RGN_OR})
    ->Args({1000, RGN_AND})
    ->Args({1000, RGN_XOR});

}  // namespace
