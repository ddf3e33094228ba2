// The editor core: nearest-element queries, picking, and the releasing of
// attached elements after a move.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <vector>

#include <tessaline/tessaline.h>

#include "../tests/support/attach_reference.h"

namespace {

// n elements of every kind spread over a 1000 x 1000 world: points,
// segments, construction lines, polylines of 5 nodes, circles, arcs and
// splines of 5 nodes (moments computed).
void Mixed_Drawing(int n, unsigned seed, Objects_Array_Type* a) {
  std::mt19937 rng(seed);
  std::uniform_real_distribution<double> at(0, 1000), off(-10, 10);
  for (int i = 0; i < n; ++i) {
    double x = at(rng), y = at(rng);
    HGLOBAL h = 0;
    double xs[5], ys[5];
    for (int k = 0; k < 5; ++k) {
      xs[k] = x + 4 * k;
      ys[k] = y + off(rng);
    }
    switch (i % 7) {
      case 0:
        h = Create_Point(x, y);
        break;
      case 1:
      case 2:
        h = Create_Line(x, y, x + off(rng), y + off(rng));
        if (i % 7 == 2) {
          static_cast<Element_Record*>(GlobalLock(h))->attr = 0;  // a construction line
          GlobalUnlock(h);
        }
        break;
      case 3:
        h = Create_Polyline(5, xs, ys);
        break;
      case 4:
        h = Create_Circle(x, y, 1 + std::fabs(off(rng)));
        break;
      case 5:
        h = Create_Arc(x, y, 1 + std::fabs(off(rng)), off(rng), off(rng));
        break;
      default:
        h = Create_Spline(5, xs, ys, nullptr, nullptr);
        Calc_Spline_Coef(h);
        break;
    }
    Add_Element_In_Array_by_Handle(a, h);
  }
}

}  // namespace

// One query over n elements of every kind, at points spread over the world.
static void BM_SQNearest_Element_Point(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  Objects_Array_Type a = {};
  Mixed_Drawing(n, 7, &a);
  std::mt19937 rng(11);
  std::uniform_real_distribution<double> at(0, 1000);
  std::vector<double> q(256);
  for (double& v : q) v = at(rng);
  size_t k = 0;
  for (auto _ : state) {
    int index, part;
    double d;
    HGLOBAL h = SQNearest_Element_Point(&a, q[k % 256], q[(k + 1) % 256], &index, &part, &d);
    benchmark::DoNotOptimize(h);
    ++k;
  }
  state.SetItemsProcessed(state.iterations() * n);
  DeleteObjectsArray(&a);
}
BENCHMARK(BM_SQNearest_Element_Point)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

// One pick over n elements in a view of the whole world (1000 logical units
// across): the hit tests of every element, the toggle and redraw of the few
// under the cursor.
static void BM_Select_Elements(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  Objects_Array_Type a = {};
  Mixed_Drawing(n, 7, &a);
  HDC dc = CreateCompatibleDC(nullptr);
  HBITMAP bm = CreateCompatibleBitmap(dc, 1000, 1000);
  HGDIOBJ old = SelectObject(dc, bm);
  Coord_Syst cs{};
  cs.world = {0, 0, 1000, 1000};
  cs.window = {0, 1000, 1000, -1000};
  COLORREF colours[kObject_Colors];
  Set_Object_Colors(0, colours);
  std::mt19937 rng(11);
  std::uniform_real_distribution<double> at(0, 1000);
  std::vector<double> q(256);
  for (double& v : q) v = at(rng);
  size_t k = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(Select_Elements(dc, &a, &cs, q[k % 256], q[(k + 1) % 256], colours));
    ++k;
  }
  state.SetItemsProcessed(state.iterations() * n);
  SelectObject(dc, old);
  DeleteObject(bm);
  DeleteDC(dc);
  DeleteObjectsArray(&a);
}
BENCHMARK(BM_Select_Elements)->Arg(10000)->Unit(benchmark::kMillisecond);

namespace {

// A fresh drawing of n elements, half of them derived (random creation
// types, parents among the 8 elements before), and k distinct elements of it
// as the moved array.
void Moved_Among(int n, int k, unsigned seed, Objects_Array_Type* all, Objects_Array_Type* moved) {
  Random_Link_Graph(seed, n, 0.5, 8, all);
  std::vector<int> order(static_cast<size_t>(n));
  std::iota(order.begin(), order.end(), 0);
  std::shuffle(order.begin(), order.end(), std::mt19937(seed));
  for (int i = 0; i < k; ++i) {
    Add_Element_In_Array_by_Handle(moved,
                                   Get_Element_Handle_by_Index(all, order[static_cast<size_t>(i)]));
  }
}

template <void (*Release)(const Objects_Array_Type*, const Objects_Array_Type*)>
void Run_Attach(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0)), k = static_cast<int>(state.range(1));
  unsigned seed = 1;
  for (auto _ : state) {
    state.PauseTiming();
    Objects_Array_Type all = {}, moved = {};
    Moved_Among(n, k, seed++, &all, &moved);
    state.ResumeTiming();
    Release(&moved, &all);
    state.PauseTiming();
    DeleteObjectsArray_Without_El_Deleting(&moved);
    DeleteObjectsArray(&all);
    state.ResumeTiming();
  }
}

void Double_Loop(const Objects_Array_Type* moved, const Objects_Array_Type* all) {
  Attach_Moving_Double_Loop(const_cast<Objects_Array_Type*>(moved),
                            const_cast<Objects_Array_Type*>(all));
}

}  // namespace

// Releasing after k of n elements moved: the library's indexed walk...
static void BM_Do_Objects_Attach_Moving(benchmark::State& state) {
  Run_Attach<Do_Objects_Attach_Moving>(state);
}
BENCHMARK(BM_Do_Objects_Attach_Moving)
    ->Args({1000, 100})
    ->Args({3000, 300})
    ->Args({30000, 3000})
    ->Args({100000, 10000})
    ->Unit(benchmark::kMillisecond);

// ... and the plain loop over every (moved, element) pair, at small sizes.
static void BM_Attach_Moving_Double_Loop(benchmark::State& state) {
  Run_Attach<Double_Loop>(state);
}
BENCHMARK(BM_Attach_Moving_Double_Loop)
    ->Args({1000, 100})
    ->Args({3000, 300})
    ->Unit(benchmark::kMillisecond);
