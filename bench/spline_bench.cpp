// Spline moments: Calc_Spline_Coef on open and closed chains of n nodes.
// The work is two tridiagonal eliminations, so the time must be linear in n.
#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include <tessaline/tessaline.h>

namespace {

// A wavy open chain, or a closed one around an ellipse (last node = first).
HGLOBAL Make_Spline(int n, bool closed) {
  std::vector<double> x(n), y(n);
  for (int i = 0; i < n; ++i) {
    double t = 6.283185307179586 * i / (n - 1);
    x[i] = closed ? 100 * std::cos(t) : i * 0.5;
    y[i] = closed ? 40 * std::sin(t) : 10 * std::sin(i * 0.37);
  }
  if (closed) {
    x[n - 1] = x[0];
    y[n - 1] = y[0];
  }
  return Create_Spline(n, x.data(), y.data(), nullptr, nullptr);
}

void Moments(benchmark::State& state, bool closed) {
  const int n = static_cast<int>(state.range(0));
  HGLOBAL h = Make_Spline(n, closed);  // a fresh spline for every size
  for (auto _ : state) benchmark::DoNotOptimize(Calc_Spline_Coef(h));
  Delete_Element(h);
  state.SetComplexityN(n);
  state.SetItemsProcessed(state.iterations() * n);
}

}  // namespace

static void BM_Calc_Spline_Coef_Open(benchmark::State& state) {
  Moments(state, false);
}
BENCHMARK(BM_Calc_Spline_Coef_Open)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMicrosecond)
    ->Complexity(benchmark::oN);

static void BM_Calc_Spline_Coef_Closed(benchmark::State& state) {
  Moments(state, true);
}
BENCHMARK(BM_Calc_Spline_Coef_Closed)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMicrosecond)
    ->Complexity(benchmark::oN);
