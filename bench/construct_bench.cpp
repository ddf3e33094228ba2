// Constructions: a fillet on a fresh corner, and mirroring a drawing of n
// elements (which must stay linear in n: one copy and one append each).
#include <benchmark/benchmark.h>

#include <cmath>

#include <tessaline/tessaline.h>

// One fillet of two segments and one of a segment and an arc, each on a
// fresh pair of elements (the fillet trims its elements).
static void BM_Fillet(benchmark::State& state) {
  const bool arc = state.range(0) != 0;
  Curs_Pos_Type c{};
  c.x[0] = 40, c.y[0] = 0, c.x[1] = arc ? 30 * std::cos(1.0) : 60;
  c.y[1] = arc ? 30 * std::sin(1.0) : 20;
  for (auto _ : state) {
    state.PauseTiming();
    Objects_Array_Type a{};
    HGLOBAL e1 = Create_Line(arc ? -50 : 0, 0, arc ? 50 : 60, 0);
    HGLOBAL e2 = arc ? Create_Arc(0, 0, 30, 0, 3.14159265358979) : Create_Line(60, 0, 60, 30);
    if (arc) Set_Arc_Ends(e2, 30, 0, -30, 0);
    Add_Element_In_Array_by_Handle(&a, e1);
    Add_Element_In_Array_by_Handle(&a, e2);
    state.ResumeTiming();
    benchmark::DoNotOptimize(Create_Fillet(&c, &a, e1, e2, 5));
    state.PauseTiming();
    DeleteObjectsArray(&a);
    state.ResumeTiming();
  }
}
BENCHMARK(BM_Fillet)->Arg(0)->Arg(1);

// Mirror copies of n elements (segments, arcs, circles and points in turn).
static void BM_Mirror(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  Objects_Array_Type source{};
  for (int i = 0; i < n; ++i) {
    double x = i % 1000, y = i / 1000;
    HGLOBAL h = i % 4 == 0   ? Create_Line(x, y, x + 1, y + 0.5)
                : i % 4 == 1 ? Create_Arc(x, y, 0.5, 0.2, 2.5)
                : i % 4 == 2 ? Create_Circle(x, y, 0.3)
                             : Create_Point(x, y);
    Add_Element_In_Array_by_Handle(&source, h);
  }
  Curs_Pos_Type c{};
  c.x[1] = 1, c.y[1] = 1;
  for (auto _ : state) {
    Objects_Array_Type copies{};
    benchmark::DoNotOptimize(Symmetry_Objects_Line(&c, &copies, &source, 0));
    state.PauseTiming();
    DeleteObjectsArray(&copies);
    state.ResumeTiming();
  }
  DeleteObjectsArray(&source);
  state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(BM_Mirror)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
