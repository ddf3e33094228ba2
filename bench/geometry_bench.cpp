// Geometry kernel: projections, distances and crossings, nanoseconds per call.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#include <tessaline/tessaline.h>

namespace {

// 1024 random cases, cycled: segments or arcs (centre, radius, angles, ends)
// and query points, all within 100 mm. Arcs through angle 0 are among them.
struct Case {
  double x1, y1, x2, y2, cx, cy, r, a1, a2, px, py;
  double ex1, ey1, ex2, ey2;  // the arc's end points
};

const std::vector<Case>& Cases() {
  static const std::vector<Case> cases = [] {
    std::mt19937 gen(11);
    std::uniform_real_distribution<> u(-100, 100), a(0, 6.283185307179586);
    std::vector<Case> v(1024);
    for (Case& c : v) {
      c = {u(gen), u(gen), u(gen), u(gen), u(gen) / 2, u(gen) / 2, std::fabs(u(gen)) / 2 + 1,
           a(gen), a(gen), u(gen), u(gen), 0,          0,          0,
           0};
      c.ex1 = c.cx + c.r * std::cos(c.a1);
      c.ey1 = c.cy + c.r * std::sin(c.a1);
      c.ex2 = c.cx + c.r * std::cos(c.a2);
      c.ey2 = c.cy + c.r * std::sin(c.a2);
    }
    return v;
  }();
  return cases;
}

// Runs f on every case in turn; one iteration is one call.
template <class F>
void Run(benchmark::State& state, F f) {
  const std::vector<Case>& cases = Cases();
  size_t i = 0;
  for (auto _ : state) {
    f(cases[i]);
    i = (i + 1) & 1023;
  }
}

}  // namespace

static void BM_Projection_Segment_Point(benchmark::State& state) {
  Run(state, [](const Case& c) {
    double qx, qy;
    Projection_Segment_Point(c.x1, c.y1, c.x2, c.y2, c.px, c.py, &qx, &qy);
    benchmark::DoNotOptimize(qx + qy);
  });
}
BENCHMARK(BM_Projection_Segment_Point);

static void BM_Projection_Arc_Point(benchmark::State& state) {
  Run(state, [](const Case& c) {
    double qx, qy;
    Projection_Arc_Point(c.cx, c.cy, c.r, c.a1, c.a2, c.px, c.py, &qx, &qy);
    benchmark::DoNotOptimize(qx + qy);
  });
}
BENCHMARK(BM_Projection_Arc_Point);

static void BM_Projection_Circle_Point(benchmark::State& state) {
  Run(state, [](const Case& c) {
    double qx, qy;
    Projection_Circle_Point(c.cx, c.cy, c.r, c.px, c.py, &qx, &qy);
    benchmark::DoNotOptimize(qx + qy);
  });
}
BENCHMARK(BM_Projection_Circle_Point);

static void BM_SQDistance_Segment_Point(benchmark::State& state) {
  Run(state, [](const Case& c) {
    benchmark::DoNotOptimize(SQDistance_Segment_Point(c.x1, c.y1, c.x2, c.y2, c.px, c.py));
  });
}
BENCHMARK(BM_SQDistance_Segment_Point);

static void BM_SQDistance_Arc_Point(benchmark::State& state) {
  Run(state, [](const Case& c) {
    benchmark::DoNotOptimize(SQDistance_Arc_Point(c.cx, c.cy, c.r, c.a1, c.a2, c.px, c.py));
  });
}
BENCHMARK(BM_SQDistance_Arc_Point);

static void BM_Distance_Arc_Point(benchmark::State& state) {
  Run(state, [](const Case& c) {
    benchmark::DoNotOptimize(Distance_Arc_Point(c.cx, c.cy, c.r, c.a1, c.a2, c.px, c.py));
  });
}
BENCHMARK(BM_Distance_Arc_Point);

static void BM_Cross_2Line(benchmark::State& state) {
  Run(state, [](const Case& c) {
    double x, y;
    benchmark::DoNotOptimize(Cross_2Line(c.x1, c.y1, c.x2, c.y2, c.cx, c.cy, c.px, c.py, &x, &y));
  });
}
BENCHMARK(BM_Cross_2Line);

static void BM_Cross_2Segment(benchmark::State& state) {
  Run(state, [](const Case& c) {
    double x, y;
    benchmark::DoNotOptimize(
        Cross_2Segment(c.x1, c.y1, c.x2, c.y2, c.cx, c.cy, c.px, c.py, &x, &y));
  });
}
BENCHMARK(BM_Cross_2Segment);

static void BM_Cross_Horiz_Line_Segment(benchmark::State& state) {
  Run(state, [](const Case& c) {
    double x, y;
    benchmark::DoNotOptimize(Cross_Horiz_Line_Segment(c.py, c.x1, c.y1, c.x2, c.y2, &x, &y));
  });
}
BENCHMARK(BM_Cross_Horiz_Line_Segment);

static void BM_Cross_Horiz_Line_Circle(benchmark::State& state) {
  Run(state, [](const Case& c) {
    double x1, y1, x2, y2;
    benchmark::DoNotOptimize(
        Cross_Horiz_Line_Circle(c.cy + c.py * c.r / 100, c.cx, c.cy, c.r, &x1, &y1, &x2, &y2));
  });
}
BENCHMARK(BM_Cross_Horiz_Line_Circle);

// Lines at heights across the arc's circle, so most calls find crossings.
static void BM_Cross_Horiz_Line_Arc(benchmark::State& state) {
  Run(state, [](const Case& c) {
    double xa, ya, xb, yb;
    benchmark::DoNotOptimize(Cross_Horiz_Line_Arc(c.cy + c.py * c.r / 100, c.ex1, c.ey1, c.ex2,
                                                  c.ey2, c.cx, c.cy, c.r, c.a1, c.a2, &xa, &ya, &xb,
                                                  &yb));
  });
}
BENCHMARK(BM_Cross_Horiz_Line_Arc);

static void BM_Cross_Line_Arc(benchmark::State& state) {
  Run(state, [](const Case& c) {
    double xa, ya, xb, yb;
    benchmark::DoNotOptimize(Cross_Line_Arc(c.x1 / 4, c.y1 / 4, c.px, c.py, c.cx / 4, c.cy / 4, c.r,
                                            c.a1, c.a2, &xa, &ya, &xb, &yb));
  });
}
BENCHMARK(BM_Cross_Line_Arc);

static void BM_Cross_Vert_Line_Arc(benchmark::State& state) {
  Run(state, [](const Case& c) {
    double xa, ya, xb, yb;
    benchmark::DoNotOptimize(Cross_Vert_Line_Arc(c.cx + c.px * c.r / 100, c.cx, c.cy, c.r, c.a1,
                                                 c.a2, &xa, &ya, &xb, &yb));
  });
}
BENCHMARK(BM_Cross_Vert_Line_Arc);
