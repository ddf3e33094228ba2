// The finite-element split of a section with two holes (a plate with a
// half-round end, a rounded corner, a round and a square hole: area about
// 17 700 mm^2) at about 800, 20 000 and 200 000 triangles, by the grid and
// by the mesher. Counters: triangles, the smallest angle in degrees, the
// bandwidth as the split numbers its nodes and after reverse Cuthill-McKee.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include <tessaline/tessaline.h>

#include "analysis/split_internal.h"
#include "platform/mesher.h"

namespace {

constexpr double kPi = std::numbers::pi;

struct Section {
  Objects_Array_Type a{};
  Surface_Type s{};
  Section() {
    auto add = [&](HGLOBAL h) { Add_Element_In_Array_by_Handle(&a, h); };
    auto arc = [&](double xc, double yc, double r, double a1, double a2, double x1, double y1,
                   double x2, double y2) {
      HGLOBAL h = Create_Arc(xc, yc, r, a1, a2);
      Set_Arc_Ends(h, x1, y1, x2, y2);
      add(h);
    };
    add(Create_Line(0, 0, 160, 0));
    arc(160, 60, 60, -kPi / 2, kPi / 2, 160, 0, 160, 120);
    add(Create_Line(160, 120, 20, 120));
    arc(20, 100, 20, kPi / 2, kPi, 20, 120, 0, 100);
    add(Create_Line(0, 100, 0, 0));
    add(Create_Circle(160, 60, 30));
    add(Create_Line(30, 30, 100, 30));
    add(Create_Line(100, 30, 100, 90));
    add(Create_Line(100, 90, 30, 90));
    add(Create_Line(30, 90, 30, 30));
    Make_Surface_From_Objects(&a, &s);
  }
  ~Section() {
    Delete_Surface(&s);
    DeleteObjectsArray(&a);
  }
};

double Smallest_Angle(const Split_Mesh& m) {
  double least = 180;
  for (const FE3Ang& t : m.triangles) {
    const FEPOINT &a = m.nodes[t.n[0]], &b = m.nodes[t.n[1]], &c = m.nodes[t.n[2]];
    double x[3];
    Get_3Ang_Angles(a.x, a.y, b.x, b.y, c.x, c.y, &x[0], &x[1], &x[2]);
    least = std::min({least, x[0], x[1], x[2]});
  }
  return least * 180 / kPi;
}

void Report(benchmark::State& state, Split_Mesh& m) {
  state.counters["triangles"] = static_cast<double>(m.triangles.size());
  state.counters["min_angle"] = Smallest_Angle(m);
  state.counters["band_split"] = FE_Bandwidth(m.triangles);
  Renumber_RCM(&m);
  state.counters["band_rcm"] = FE_Bandwidth(m.triangles);
}

// Element sizes giving about 800, 20 000 and 200 000 triangles.
constexpr double kGrid_Step[] = {6.97, 1.35, 0.426};
constexpr double kMesh_Size[] = {9.14, 1.643, 0.508};

void BM_Split_Grid(benchmark::State& state) {
  Section sec;
  double h = kGrid_Step[state.range(0)];
  HGLOBAL nodes = 0, tris = 0;
  int nc = 0, tc = 0;
  for (auto _ : state) {
    Split_Surface_By_Grid(&sec.s, &nodes, &nc, h, h, nullptr, &tc, &tris);
  }
  Split_Mesh m;
  Read_FE_Nodes(nodes, nc, &m.nodes);
  Read_FE_Triangles(tris, tc, &m.triangles);
  Report(state, m);
  state.counters["h"] = h;
  GlobalFree(nodes);
  GlobalFree(tris);
}
BENCHMARK(BM_Split_Grid)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

void BM_Split_Mesher(benchmark::State& state) {
  if (!Mesher_Available()) {
    state.SkipWithError("built without CGAL");
    return;
  }
  Section sec;
  double h = kMesh_Size[state.range(0)];
  FE_Split split{};
  for (auto _ : state) {
    Split_Surface_By_Mesher(&sec.s, &split, &split.node_count, &split.triangles,
                            &split.triangle_count, nullptr, h);
  }
  Free_FE_Split(&split);
  Split_Mesh m;
  Mesh_Surface(&sec.s, nullptr, h, false, &m);
  Report(state, m);
  state.counters["h"] = h;
}
BENCHMARK(BM_Split_Mesher)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

}  // namespace
