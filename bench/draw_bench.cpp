// Element drawing: Draw_Objects of mixed elements into a full-screen memory
// context, and a rubber-band line drawn and erased.
#include <benchmark/benchmark.h>

#include <random>

#include <tessaline/tessaline.h>

namespace {

constexpr int kWidth = 1920, kHeight = 1080;

// A memory context of the screen's size showing the world (0, 0)-(1920, 1080)
// millimetres, y up, one pixel a millimetre.
struct Screen {
  HDC dc = CreateCompatibleDC(nullptr);
  HBITMAP bitmap = CreateCompatibleBitmap(dc, kWidth, kHeight);
  HGDIOBJ old = SelectObject(dc, bitmap);
  Coord_Syst cs{};
  COLORREF colours[kObject_Colors];

  Screen() {
    cs.vp_ext_x = kWidth;
    cs.vp_ext_y = kHeight;
    cs.window = Logical_Window{0, kHeight, kWidth, -kHeight};
    cs.world = World_Window{0, 0, kWidth, kHeight};
    Set_Object_Colors(2, colours);
  }
  ~Screen() {
    SelectObject(dc, old);
    DeleteObject(bitmap);
    DeleteDC(dc);
  }
};

// n elements spread over the view: of every 16, 6 segments, 3 arcs,
// 3 circles, 2 points, 1 polyline of 8 nodes and 1 spline of 6 nodes; sizes
// up to 100 mm; one in 8 selected.
void Fill(Objects_Array_Type* a, int n) {
  std::mt19937 gen(5);
  std::uniform_real_distribution<> x(0, kWidth), y(0, kHeight), d(-50, 50), r(2, 50), t(0, 6.28);
  for (int i = 0; i < n; ++i) {
    double x0 = x(gen), y0 = y(gen);
    HGLOBAL h = 0;
    switch (i % 16) {
      case 0:
      case 1:
      case 2:
      case 3:
      case 4:
      case 5:
        h = Create_Line(x0, y0, x0 + d(gen), y0 + d(gen));
        break;
      case 6:
      case 7:
      case 8:
        h = Create_Arc(x0, y0, r(gen), t(gen), t(gen));
        break;
      case 9:
      case 10:
      case 11:
        h = Create_Circle(x0, y0, r(gen));
        break;
      case 12:
      case 13:
        h = Create_Point(x0, y0);
        break;
      case 14: {
        double xs[8], ys[8];
        for (int k = 0; k < 8; ++k) xs[k] = x0 + d(gen), ys[k] = y0 + d(gen);
        h = Create_Polyline(8, xs, ys);
        break;
      }
      default: {
        double xs[6], ys[6];
        for (int k = 0; k < 6; ++k) xs[k] = x0 + 15 * k, ys[k] = y0 + d(gen);
        h = Create_Spline(6, xs, ys, nullptr, nullptr);
        Calc_Spline_Coef(h);
        break;
      }
    }
    if (i % 8 == 0) Set_Element_Select_Attribute(h, 1);
    Add_Element_In_Array_by_Handle(a, h);
  }
}

void BM_Draw_Objects(benchmark::State& state) {
  Screen s;
  Objects_Array_Type a{};
  Fill(&a, static_cast<int>(state.range(0)));
  for (auto _ : state) Draw_Objects(s.dc, &s.cs, &a, s.colours);
  state.SetItemsProcessed(state.iterations() * state.range(0));
  DeleteObjectsArray(&a);
}
BENCHMARK(BM_Draw_Objects)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

// One iteration: a 300-pixel rubber-band line drawn, then drawn again to erase it.
void BM_Rubber_Line_Pair(benchmark::State& state) {
  Screen s;
  Curs_Pos_Type c{};
  c.x[0] = 800, c.y[0] = 500, c.x[1] = 1100, c.y[1] = 640;
  for (auto _ : state) {
    Draw_Rubber_Line(s.dc, &s.cs, &c, RGB(255, 255, 255));
    Draw_Rubber_Line(s.dc, &s.cs, &c, RGB(255, 255, 255));
  }
}
BENCHMARK(BM_Rubber_Line_Pair);

}  // namespace
