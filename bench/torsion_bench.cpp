// Torsion: the seed path (Calc_Torsion_Moment on the grid and the mesher
// split at 803, 3 212 and 12 848 elements) on a 100 x 50 rectangle, an
// IPE 300 with its root fillets and an RHS 200x100x8 with its corner radii;
// RelaxMethod at the grid cap of the stress evaluation; the quadratic
// torsion and warping analysis to bound gaps of 1e-6 and 1e-8, refined
// adaptively and (for comparison) uniformly.
//
// Dimensions come from the program's compiled-in shape tables. Counters:
// J_err is |J - J_ref| / J_ref with J_ref the series for the rectangle and
// the mean of the warping analysis's bounds at a gap of 1e-6 for the others
// (within 5e-7 of J); elements; gap; peak_MB the process's peak resident
// memory after the case.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <cmath>
#include <map>
#include <memory>
#include <numbers>

#include "../tests/support/sections.h"
#include "analysis/torsion_grid.h"
#include "analysis/warping_solve.h"
#include "shape_tables.h"

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kE = 200000.0, kNu = 0.3;
const double kG = kE * 0.5 / (kNu + 1.0);

// A b x h rectangle tube with wall t, outer corner radius ro, inner ri.
void Rounded_Tube(Section& s, double b, double h, double t, double ro, double ri) {
  auto outline = [&](double X, double Y, double r) {
    s.Outline({{-X + r, -Y},
               {X - r, -Y, true, X - r, -Y + r},
               {X, -Y + r},
               {X, Y - r, true, X - r, Y - r},
               {X - r, Y},
               {-X + r, Y, true, -X + r, Y - r},
               {-X, Y - r},
               {-X, -Y + r, true, -X + r, -Y + r}});
  };
  outline(b / 2, h / 2, ro);
  outline(b / 2 - t, h / 2 - t, ri);
}

double Rectangle_J(double a, double b) {
  double s = 0.0;
  for (int n = 1; n < 200; n += 2) s += std::tanh(n * kPi * a / (2 * b)) / std::pow(n, 5);
  return a * b * b * b / 3.0 * (1.0 - 192.0 / std::pow(kPi, 5) * b / a * s);
}

enum Shape { kRectangle, kIpe, kRhs };

std::unique_ptr<Section> Make(Shape shape) {
  auto s = std::make_unique<Section>();
  if (shape == kRectangle) {
    s->Rectangle(100, 50);
  } else if (shape == kIpe) {
    const auto& r = *tessaline::app::Find_Shape("IPE300");
    s->I_Section(r.Get("b"), r.Get("h"), r.Get("tw"), r.Get("tf"), r.Get("r"));
  } else {
    const auto& r = *tessaline::app::Find_Shape("RHS200x100x8");
    Rounded_Tube(*s, r.Get("h"), r.Get("b"), r.Get("t"), r.Get("ro"), r.Get("ri"));
  }
  return s;
}

double Reference_J(Shape shape) {
  static std::map<Shape, double> cache;
  if (shape == kRectangle) return Rectangle_J(100, 50);
  if (!cache.count(shape)) {
    auto s = Make(shape);
    Torsion_Warping_Options o{1e-6, 400000, 1.0};
    Torsion_Warping_Result r{};
    Torsion_Warping_Of_Surface(s->surface(), &o, &r, nullptr, Warping_Refinement::kAdaptive);
    cache[shape] = r.J;
  }
  return cache[shape];
}

double Peak_MB() {
  rusage u{};
  getrusage(RUSAGE_SELF, &u);
  return u.ru_maxrss / 1024.0;
}

void BM_Seed_Path(benchmark::State& state) {
  const Shape shape = static_cast<Shape>(state.range(0));
  const int mode = static_cast<int>(state.range(1));
  int options[3] = {mode, static_cast<int>(state.range(2)), static_cast<int>(state.range(2))};
  auto s = Make(shape);
  surface_geometry g{};
  Calc_Exact_Surface_Param(s->surface(), &g);
  const double ref = Reference_J(shape);
  FE_Split split{};
  double It = 0;
  for (auto _ : state) {
    It = Calc_Torsion_Moment(s->surface(), g.area, kE, kNu, &split, 1.0 / kG, nullptr, nullptr,
                             options);
    benchmark::DoNotOptimize(It);
  }
  state.counters["elements"] = split.triangle_count;
  state.counters["J_err"] = std::fabs(It - ref) / ref;
  Free_FE_Split(&split);
}
BENCHMARK(BM_Seed_Path)
    ->ArgNames({"shape", "mesher", "count"})
    ->ArgsProduct({{kRectangle, kIpe, kRhs}, {0, 1}, {803, 3212, 12848}})
    ->Unit(benchmark::kMillisecond);

// The seed path against closed forms: rectangles of aspect 1, 2, 4 and 10
// (series), a circle, a hollow circle (its hole constant from the grid), an
// ellipse 2:1 drawn as a 720-gon (the polygon's J is within 1e-4 of the
// ellipse's) and an equilateral triangle.
void BM_Seed_Closed_Form(benchmark::State& state) {
  const int shape = static_cast<int>(state.range(0));
  int options[3] = {static_cast<int>(state.range(1)), static_cast<int>(state.range(2)),
                    static_cast<int>(state.range(2))};
  Section s;
  double J = 0, A = 0;
  if (shape < 4) {
    const double aspect[4] = {1, 2, 4, 10};
    s.Rectangle(10 * aspect[shape], 10);
    J = Rectangle_J(10 * aspect[shape], 10);
    A = 100 * aspect[shape];
  } else if (shape == 4) {
    s.Round(10);
    J = kPi / 2 * 1e4;
    A = kPi * 100;
  } else if (shape == 5) {
    s.Annulus(10, 5);
    J = kPi / 2 * (1e4 - 625);
    A = kPi * 75;
  } else if (shape == 6) {
    std::vector<Vertex> v;
    for (int i = 0; i < 720; ++i)
      v.push_back({20 * std::cos(i * kPi / 360), 10 * std::sin(i * kPi / 360)});
    s.Outline(v);
    J = kPi * 8000.0 * 1000.0 / 500.0;
    A = kPi * 200;
  } else {
    s.Outline({{0, 0}, {12, 0}, {6, 6 * std::sqrt(3.0)}});
    J = std::sqrt(3.0) * std::pow(12, 4) / 80;
    A = std::sqrt(3.0) / 4 * 144;
  }
  FE_Split split{};
  double It = 0;
  for (auto _ : state) {
    It = Calc_Torsion_Moment(s.surface(), A, kE, kNu, &split, 1.0 / kG, nullptr, nullptr, options);
    benchmark::DoNotOptimize(It);
  }
  state.counters["elements"] = split.triangle_count;
  state.counters["J_err"] = (It - J) / J;
  Free_FE_Split(&split);
}
BENCHMARK(BM_Seed_Closed_Form)
    ->ArgNames({"shape", "mesher", "count"})
    ->ArgsProduct({{0, 1, 2, 3, 4, 5, 6, 7}, {0, 1}, {803, 3212, 12848}})
    ->Unit(benchmark::kMillisecond);

// The grid of the hole constants at its cap: the RHS's rectangle in
// 135 913.5 cells.
void BM_Relax_At_Cap(benchmark::State& state) {
  auto s = Make(kRhs);
  double left = 0, top = 0, right = 0, bottom = 0;
  Get_Surface_Extern_Rect(s->surface(), &left, &top, &right, &bottom);
  const double step = std::sqrt((right - left) * (top - bottom) / kRelax_Max_Cells);
  double k = 0, area = 0;
  for (auto _ : state) {
    RelaxMethod(s->surface(), kE, kNu, kTorsion_Theta, step, &k, &area, nullptr);
    benchmark::DoNotOptimize(k);
  }
  Relax_Grid grid;
  Build_Relax_Grid(s->surface(), kTorsion_Theta, step, &grid);
  state.counters["cells"] = (grid.columns - 1.0) * (grid.rows - 1.0);
  state.counters["unknowns"] = grid.m;
  state.counters["peak_MB"] = Peak_MB();
}
BENCHMARK(BM_Relax_At_Cap)->Unit(benchmark::kMillisecond);

// The quadratic analysis of the 100 x 50 rectangle from a 4 x 2 grid of
// cells, to a bound gap of state.range(0) times 1e-9; state.range(1) 0 for
// the adaptive refinement, 1 for the uniform one.
void BM_Warping_Rectangle(benchmark::State& state) {
  const double gap = state.range(0) * 1e-9;
  const auto refinement =
      state.range(1) ? Warping_Refinement::kUniform : Warping_Refinement::kAdaptive;
  Torsion_Warping_Result r{};
  for (auto _ : state) {
    state.PauseTiming();
    FE_Split split{};
    split.nodes = Alloc_FEPoints(15);
    split.triangles = Alloc_FE3Ang(16);
    auto* p = static_cast<FEPOINT*>(GlobalLock(split.nodes));
    auto* t = static_cast<FE3Ang*>(GlobalLock(split.triangles));
    for (int j = 0, n = 0; j <= 2; ++j) {
      for (int i = 0; i <= 4; ++i) p[n++] = {25.0 * i, 25.0 * j, 0};
    }
    for (int j = 0, e = 0; j < 2; ++j) {
      for (int i = 0; i < 4; ++i) {
        const int a = j * 5 + i;
        t[e++] = {{a, a + 1, a + 6}};
        t[e++] = {{a, a + 6, a + 5}};
      }
    }
    GlobalUnlock(split.nodes);
    GlobalUnlock(split.triangles);
    split.node_count = 15;
    split.triangle_count = 16;
    Torsion_Warping_Options o{gap, 2000000, 1.0};
    state.ResumeTiming();
    Torsion_Warping_On_Split(nullptr, &split, &o, &r, refinement);
    state.PauseTiming();
    Free_FE_Split(&split);
    state.ResumeTiming();
  }
  const double J = Rectangle_J(100, 50);
  state.counters["elements"] = r.elements;
  state.counters["gap"] = r.relative_gap;
  state.counters["J_err"] = std::fabs(r.J - J) / J;
  state.counters["lower_err"] = (J - r.J_lower) / J;
  state.counters["upper_err"] = (r.J_upper - J) / J;
}
BENCHMARK(BM_Warping_Rectangle)
    ->ArgNames({"gap_e9", "uniform"})
    ->ArgsProduct({{20000, 2000, 1000, 20}, {0, 1}})
    ->Unit(benchmark::kMillisecond);

// From the surface alone (mesher start) to a bound gap of 1e-6;
// state.range(1) 0 for the adaptive refinement, 1 for the uniform one.
void BM_Warping_Section(benchmark::State& state) {
  const Shape shape = static_cast<Shape>(state.range(0));
  const auto refinement =
      state.range(1) ? Warping_Refinement::kUniform : Warping_Refinement::kAdaptive;
  auto s = Make(shape);
  Torsion_Warping_Result r{};
  Torsion_Warping_Options o{1e-6, 400000, 1.0};
  for (auto _ : state) {
    Torsion_Warping_Of_Surface(s->surface(), &o, &r, nullptr, refinement);
    benchmark::ClobberMemory();
  }
  state.counters["elements"] = r.elements;
  state.counters["gap"] = r.relative_gap;
  state.counters["J_mm4"] = r.J;
  state.counters["Cw"] = r.Cw;
  state.counters["status"] = r.status;
  state.counters["refinements"] = r.refinements;
}
BENCHMARK(BM_Warping_Section)
    ->ArgNames({"shape", "uniform"})
    ->ArgsProduct({{kIpe, kRhs}, {0, 1}})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

// The same from the surface alone by raising the elements' order on a
// coarse mesh (Calc_Torsion_Warping without a split), to the same gap;
// J_diff is the difference from the quadratic path's J (the series for
// the rectangle).
void BM_Warping_High_Order(benchmark::State& state) {
  const Shape shape = static_cast<Shape>(state.range(0));
  auto s = Make(shape);
  Torsion_Warping_Result r{};
  Torsion_Warping_Options o{1e-6, 400000, 1.0};
  for (auto _ : state) {
    Calc_Torsion_Warping(s->surface(), &o, &r, nullptr);
    benchmark::ClobberMemory();
  }
  state.counters["elements"] = r.elements;
  state.counters["order"] = r.order;
  state.counters["gap"] = r.relative_gap;
  state.counters["J_mm4"] = r.J;
  state.counters["J_diff"] = std::fabs(r.J - Reference_J(shape)) / Reference_J(shape);
  state.counters["Cw"] = r.Cw;
  state.counters["status"] = r.status;
}
BENCHMARK(BM_Warping_High_Order)
    ->ArgNames({"shape"})
    ->DenseRange(kRectangle, kRhs)
    ->Unit(benchmark::kMillisecond);

}  // namespace
