// Contour search on fine polygons (a drawing imported with many short
// segments): one Search_Contour, storing the contour, per iteration.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <random>
#include <vector>

#include <tessaline/tessaline.h>

namespace {

// A closed polygon of n segments on a circle, each segment the right way
// round or reversed at random, added to the array in shuffled order.
void Make_Polygon(Objects_Array_Type* a, int n) {
  std::mt19937 rng(static_cast<unsigned>(n));
  std::vector<int> order(static_cast<size_t>(n));
  std::iota(order.begin(), order.end(), 0);
  std::shuffle(order.begin(), order.end(), rng);
  auto x = [n](int i) { return 1000 * std::cos(2 * std::numbers::pi * (i % n) / n); };
  auto y = [n](int i) { return 1000 * std::sin(2 * std::numbers::pi * (i % n) / n); };
  for (int i : order) {
    HGLOBAL h = rng() % 2 ? Create_Line(x(i), y(i), x(i + 1), y(i + 1))
                          : Create_Line(x(i + 1), y(i + 1), x(i), y(i));
    Add_Element_In_Array_by_Handle(a, h);
  }
}

void BM_Search_Contour(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  Objects_Array_Type a{};
  Make_Polygon(&a, n);  // fresh input for every size, not timed
  HGLOBAL start = Get_Element_Handle_by_Index(&a, 0);
  Contour_Type c{};
  for (auto _ : state) benchmark::DoNotOptimize(Search_Contour(&a, start, &c));
  if (c.count != n) state.SkipWithError("the polygon was not found");
  state.SetComplexityN(n);
  state.SetItemsProcessed(state.iterations() * n);
  Delete_El_Contour(&c);
  DeleteObjectsArray(&a);
}

}  // namespace

BENCHMARK(BM_Search_Contour)
    ->RangeMultiplier(10)
    ->Range(1000, 100000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);
