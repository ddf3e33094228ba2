// Point containment in a surface, and filing a drawing's contours into a
// surface.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <vector>

#include <tessaline/tessaline.h>

namespace {

constexpr double kPi = std::numbers::pi;

struct Section {
  Objects_Array_Type a{};
  ~Section() { DeleteObjectsArray(&a); }
  void Add(HGLOBAL h) { Add_Element_In_Array_by_Handle(&a, h); }
};

// A section of about n elements: an outline of 0.8 n pieces round a circle
// of radius 100 (every fourth an arc, the others segments) and 0.05 n
// square holes of four segments on a ring inside it. Segments reversed and
// the array shuffled at random.
void Make_Section(Section* s, int n, std::mt19937& rng) {
  std::vector<HGLOBAL> all;
  auto seg = [&](double x1, double y1, double x2, double y2) {
    all.push_back(rng() % 2 ? Create_Line(x1, y1, x2, y2) : Create_Line(x2, y2, x1, y1));
  };
  const int outline = n * 8 / 10;
  for (int i = 0; i < outline; ++i) {
    double a1 = 2 * kPi * i / outline, a2 = 2 * kPi * (i + 1) / outline;
    double x1 = 100 * std::cos(a1), y1 = 100 * std::sin(a1);
    double x2 = 100 * std::cos(a2), y2 = 100 * std::sin(a2);
    if (i % 4 == 0) {
      HGLOBAL h = Create_Arc(0, 0, 100, a1, a2);
      Set_Arc_Ends(h, x1, y1, x2, y2);
      all.push_back(h);
    } else {
      seg(x1, y1, x2, y2);
    }
  }
  const int holes = std::max(1, n / 20);
  const double side = std::min(20.0, 300.0 / holes);
  for (int k = 0; k < holes; ++k) {
    double t = 2 * kPi * k / holes;
    double x = 60 * std::cos(t) - side / 2, y = 60 * std::sin(t) - side / 2;
    seg(x, y, x + side, y), seg(x + side, y, x + side, y + side);
    seg(x + side, y + side, x, y + side), seg(x, y + side, x, y);
  }
  std::shuffle(all.begin(), all.end(), rng);
  for (HGLOBAL h : all) s->Add(h);
}

void BM_Is_Point_In_Surface(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  std::mt19937 rng(static_cast<unsigned>(n));
  Section s;
  Make_Section(&s, n, rng);
  Surface_Type surface{};
  if (Make_Surface_From_Objects(&s.a, &surface) != 1 + std::max(1, n / 20)) {
    state.SkipWithError("the section was not filed");
  }
  std::uniform_real_distribution<double> coord(-110, 110);
  std::vector<double> px(1024), py(1024);
  for (size_t i = 0; i < px.size(); ++i) px[i] = coord(rng), py[i] = coord(rng);
  size_t i = 0;
  int inside = 0;
  for (auto _ : state) {
    inside += Is_Point_In_Surface(&surface, px[i], py[i]);
    i = (i + 1) % px.size();
  }
  benchmark::DoNotOptimize(inside);
  state.counters["elements"] = static_cast<double>(s.a.count);
  Delete_Surface(&surface);
}

// Fine outlines: a polygon of n/2 segments and n/8 square holes.
void BM_Make_Surface_From_Objects(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  std::mt19937 rng(static_cast<unsigned>(n));
  Section s;
  std::vector<HGLOBAL> all;
  const int outline = n / 2, holes = n / 8;
  for (int i = 0; i < outline; ++i) {
    double a1 = 2 * kPi * i / outline, a2 = 2 * kPi * (i + 1) / outline;
    all.push_back(Create_Line(1000 * std::cos(a1), 1000 * std::sin(a1), 1000 * std::cos(a2),
                              1000 * std::sin(a2)));
  }
  const int per_row = static_cast<int>(std::ceil(std::sqrt(holes)));
  for (int k = 0; k < holes; ++k) {
    double x = -600 + 1200.0 * (k % per_row) / per_row, y = -600 + 1200.0 * (k / per_row) / per_row;
    double side = 600.0 / per_row;
    all.push_back(Create_Line(x, y, x + side, y));
    all.push_back(Create_Line(x + side, y, x + side, y + side));
    all.push_back(Create_Line(x + side, y + side, x, y + side));
    all.push_back(Create_Line(x, y + side, x, y));
  }
  std::shuffle(all.begin(), all.end(), rng);
  for (HGLOBAL h : all) s.Add(h);
  Surface_Type surface{};
  int filed = 0;
  for (auto _ : state) filed = Make_Surface_From_Objects(&s.a, &surface);
  if (filed != 1 + holes || surface.hole_count != holes) state.SkipWithError("wrong filing");
  state.SetItemsProcessed(state.iterations() * n);
  Delete_Surface(&surface);
}

}  // namespace

BENCHMARK(BM_Is_Point_In_Surface)->Arg(100)->Arg(1000);
BENCHMARK(BM_Make_Surface_From_Objects)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond);
