// Section properties: the two-pass grid on a compact and a thin-walled
// section (cells, time, error against the exact method), one grid pass with
// and without the prepared surface, and the exact and plastic methods on
// outlines of 10^3 to 10^5 pieces.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "analysis/grid.h"
#include "support/sections.h"

namespace {

constexpr double kPi = std::numbers::pi;

// 0: a solid round bar of diameter 100 (compact); 1: a thin-walled
// I-section 200 x 400, web 8, flanges 12, root fillets 10 (fill ratio 0.1).
void Draw(Section& s, int kind) {
  if (kind == 0) {
    s.Round(50);
  } else {
    s.I_Section(200, 400, 8, 12, 10);
  }
}

// The cells of the final pass, as Calc_Rect_Grid_Surface_Param chooses them.
double Final_Cells(Surface_Type* surface) {
  double l, t, r, b;
  Get_Surface_Extern_Rect(surface, &l, &t, &r, &b);
  double h0 = std::min(r - l, t - b) * 0.01;
  surface_geometry g{};
  Grid_Pass(surface, &g, l, t, r, b, h0);
  double h = g.area / (r - l) / (t - b) * h0;
  return std::ceil((r - l) / h) * std::ceil((t - b) / h);
}

void BM_Grid_Two_Pass(benchmark::State& state) {
  Section s;
  Draw(s, static_cast<int>(state.range(0)));
  surface_geometry exact{}, g{};
  if (Calc_Exact_Surface_Param(s.surface(), &exact) != 1) state.SkipWithError("no section");
  for (auto _ : state) {
    Calc_Rect_Grid_Surface_Param(s.surface(), &g);
    benchmark::DoNotOptimize(g);
  }
  state.counters["cells"] = Final_Cells(s.surface());
  state.counters["err_area"] = std::fabs(g.area - exact.area) / exact.area;
  state.counters["err_Ix"] =
      std::fabs(g.central_moment_x - exact.central_moment_x) / exact.central_moment_x;
  state.counters["err_Iy"] =
      std::fabs(g.central_moment_y - exact.central_moment_y) / exact.central_moment_y;
}
BENCHMARK(BM_Grid_Two_Pass)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// One pass of 10^6 cells over the I-section, prepared (1) or each cell
// asking Is_Point_In_Surface (0).
void BM_Grid_Pass(benchmark::State& state) {
  Section s;
  Draw(s, 1);
  surface_geometry g{};
  const double h = std::sqrt(200.0 * 400 / 1e6);
  for (auto _ : state) {
    Grid_Pass_Sums(s.surface(), &g, -100, 200, 100, -200, h, state.range(0) != 0);
    benchmark::DoNotOptimize(g);
  }
  state.counters["cells"] = std::ceil(200 / h) * std::ceil(400 / h);
}
BENCHMARK(BM_Grid_Pass)->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);

// A ring of radius 100 and 10 whose outline has n pieces in all: outer and
// inner each n/2, every fourth an arc, the others segments.
void Draw_Ring(Section& s, int n) {
  for (double r : {100.0, 10.0}) {
    const int m = n / 2;
    for (int i = 0; i < m; ++i) {
      double a1 = 2 * kPi * i / m, a2 = 2 * kPi * (i + 1) / m;
      double x1 = r * std::cos(a1), y1 = r * std::sin(a1);
      double x2 = i + 1 == m ? r : r * std::cos(a2), y2 = i + 1 == m ? 0 : r * std::sin(a2);
      if (i % 4 == 0) {
        s.Arc(0, 0, x1, y1, x2, y2);
      } else {
        s.Segment(x1, y1, x2, y2);
      }
    }
  }
}

void BM_Exact(benchmark::State& state) {
  Section s;
  Draw_Ring(s, static_cast<int>(state.range(0)));
  if (s.contours() != 2) state.SkipWithError("the ring was not filed");
  surface_geometry g{};
  for (auto _ : state) {
    Calc_Exact_Surface_Param(s.surface(), &g);
    benchmark::DoNotOptimize(g);
  }
  state.counters["pieces"] = static_cast<double>(state.range(0));
  state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_Exact)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

void BM_Plastic(benchmark::State& state) {
  Section s;
  Draw_Ring(s, static_cast<int>(state.range(0)));
  if (s.contours() != 2) state.SkipWithError("the ring was not filed");
  Plastic_Geometry p{};
  for (auto _ : state) {
    Calc_Plastic_Surface_Param(s.surface(), &p);
    benchmark::DoNotOptimize(p);
  }
  state.counters["pieces"] = static_cast<double>(state.range(0));
}
BENCHMARK(BM_Plastic)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
