// The finite-element split: node blocks, the grid and mesher splits checked
// against the surface they cover, sliver removal and renumbering.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <numbers>
#include <set>
#include <utility>
#include <vector>

#include <tessaline/tessaline.h>

#include "platform/mesher.h"
#include "support/capture.h"
#include "support/section.h"
#include "support/sections.h"

namespace {

constexpr double kPi = std::numbers::pi;

// The rectangle from (x0, y0) to (x1, y1).
void Rect(Section& s, double x0, double y0, double x1, double y1) {
  s.Outline({{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}});
}

// A plate 200 x 100 with two rectangular holes: area 14 400.
Surface_Type* Plate(Section& s) {
  Rect(s, 0, 0, 200, 100);
  Rect(s, 20, 20, 60, 80);
  Rect(s, 100, 30, 180, 70);
  return s.surface();
}

// A plate with a half-round end, a rounded corner, a round and a square
// hole (the section of the surface picture).
Surface_Type* Rounded(Section& s, double* area) {
  s.Segment(0, 0, 160, 0);
  s.Arc(160, 60, 160, 0, 160, 120);
  s.Segment(160, 120, 20, 120);
  s.Arc(20, 100, 20, 120, 0, 100);
  s.Segment(0, 100, 0, 0);
  s.Circle(160, 60, 30);
  Rect(s, 30, 30, 100, 90);
  *area = 160 * 120 + kPi * 3600 / 2 - (400 - kPi * 100) - kPi * 900 - 70 * 60;
  return s.surface();
}

double Distance_To_Contour(HGLOBAL contour_block, double x, double y) {
  auto* c = static_cast<Contour_Type*>(GlobalLock(contour_block));
  double best = 1e300;
  for (int i = 0; i < c->count; ++i) {
    HGLOBAL e = Get_ContEl_Handle(c, i);
    double x1, y1, x2, y2, xc, yc, r, a1, a2;
    if (Get_Segment_Coord_by_Handle(e, &x1, &y1, &x2, &y2)) {
      best = std::min(best, Distance_Segment_Point(x1, y1, x2, y2, x, y));
    } else if (Get_Arc_Param(e, &x1, &y1, &x2, &y2, &xc, &yc, &r, &a1, &a2)) {
      best = std::min(best, Distance_Arc_Point(xc, yc, r, a1, a2, x, y));
    } else if (Get_Circle_Param_by_Handle(e, &xc, &yc, &r)) {
      best = std::min(best, Distance_Circle_Point(xc, yc, r, x, y));
    }
  }
  GlobalUnlock(contour_block);
  return best;
}

// Distance of (x, y) to the contour that flag names: any outer contour for
// 1, hole flag - 2 for the others.
double Distance_To_Flagged(Surface_Type* s, int flag, double x, double y) {
  auto* outers = static_cast<HGLOBAL*>(GlobalLock(s->outers));
  auto* holes = static_cast<HGLOBAL*>(GlobalLock(s->holes));
  double d = 1e300;
  if (flag == 1) {
    for (int i = 0; i < s->outer_count; ++i) d = std::min(d, Distance_To_Contour(outers[i], x, y));
  } else if (flag - 2 < s->hole_count) {
    d = Distance_To_Contour(holes[flag - 2], x, y);
  }
  GlobalUnlock(s->outers);
  if (holes) GlobalUnlock(s->holes);
  return d;
}

double Distance_To_Any(Surface_Type* s, double x, double y) {
  double d = Distance_To_Flagged(s, 1, x, y);
  for (int i = 0; i < s->hole_count; ++i) d = std::min(d, Distance_To_Flagged(s, 2 + i, x, y));
  return d;
}

struct Mesh {
  std::vector<FEPOINT> nodes;
  std::vector<FE3Ang> tris;
  Mesh(HGLOBAL n, int nc, HGLOBAL t, int tc) {
    auto* pn = static_cast<FEPOINT*>(GlobalLock(n));
    auto* pt = static_cast<FE3Ang*>(GlobalLock(t));
    if (pn) nodes.assign(pn, pn + nc), GlobalUnlock(n);
    if (pt) tris.assign(pt, pt + tc), GlobalUnlock(t);
  }
  double Area(const FE3Ang& t) const {
    const FEPOINT &a = nodes[t.n[0]], &b = nodes[t.n[1]], &c = nodes[t.n[2]];
    return ((b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x)) / 2;
  }
};

// Checks that the mesh covers the surface: corners valid, every triangle
// counter-clockwise with its centroid in the surface, every edge used once
// each way at most (so no two triangles overlap across it), the edges used
// one way only (the mesh's boundary) joining boundary nodes, every boundary
// node on the contour its flag names. Returns the total area.
double Check_Cover(Surface_Type* s, const Mesh& m, double on_tolerance, double cut = 0) {
  std::set<std::pair<int, int>> directed;
  double area = 0;
  for (const FE3Ang& t : m.tris) {
    for (int32_t c : t.n) EXPECT_TRUE(c >= 0 && c < static_cast<int>(m.nodes.size()));
    double a = m.Area(t);
    EXPECT_GT(a, 0) << "inverted or flat triangle";
    area += a;
    double gx = 0, gy = 0;
    for (int32_t c : t.n) gx += m.nodes[c].x / 3, gy += m.nodes[c].y / 3;
    // Within the cut of a contour a centroid may lie outside.
    if (cut == 0 || Distance_To_Any(s, gx, gy) > cut) {
      EXPECT_EQ(Is_Point_In_Surface(s, gx, gy), 1)
          << "centroid " << gx << ", " << gy << " corners " << m.nodes[t.n[0]].x << ","
          << m.nodes[t.n[0]].y << " " << m.nodes[t.n[1]].x << "," << m.nodes[t.n[1]].y << " "
          << m.nodes[t.n[2]].x << "," << m.nodes[t.n[2]].y;
    }
    for (int k = 0; k < 3; ++k) {
      EXPECT_TRUE(directed.insert({t.n[k], t.n[(k + 1) % 3]}).second) << "overlapping triangles";
    }
  }
  for (auto [a, b] : directed) {
    if (directed.count({b, a})) continue;
    EXPECT_NE(m.nodes[a].flag, 0) << "a mesh boundary edge ends at an inner node";
    EXPECT_NE(m.nodes[b].flag, 0);
  }
  for (const FEPOINT& p : m.nodes) {
    if (p.flag) {
      EXPECT_LE(Distance_To_Flagged(s, p.flag, p.x, p.y), on_tolerance) << int(p.flag);
    }
  }
  return area;
}

std::set<int> Flags(const Mesh& m) {
  std::set<int> f;
  for (const FEPOINT& p : m.nodes) f.insert(p.flag);
  return f;
}

// A grid split that frees its blocks.
struct Grid {
  HGLOBAL nodes = 0, tris = 0;
  int nc = 0, tc = 0;
  ~Grid() {
    GlobalFree(nodes);
    GlobalFree(tris);
  }
  int Run(Surface_Type* s, double h, CProgressDlg* progress = nullptr) {
    return Split_Surface_By_Grid(s, &nodes, &nc, h, h, progress, &tc, &tris);
  }
  Mesh mesh() const { return Mesh(nodes, nc, tris, tc); }
};

// A mesher split that frees its blocks.
struct Mesher {
  FE_Split split{};
  ~Mesher() { Free_FE_Split(&split); }
  int Run(Surface_Type* s, double h) {
    return Split_Surface_By_Mesher(s, &split, &split.node_count, &split.triangles,
                                   &split.triangle_count, nullptr, h);
  }
  Mesh mesh() const {
    return Mesh(split.nodes, split.node_count, split.triangles, split.triangle_count);
  }
};

struct Recorder : CProgressDlg {
  std::vector<int> seen;
  int SetPos(int pos) override {
    seen.push_back(pos);
    return CProgressDlg::SetPos(pos);
  }
};

}  // namespace

TEST(Split, NodeBlocks) {
  Leak_Check leaks;
  HGLOBAL none = Alloc_FEPoints(0);
  EXPECT_EQ(GlobalSize(none), 0u);
  GlobalFree(none);
  HGLOBAL a = Alloc_FEPoints(3), t = Alloc_FE3Ang(5);
  EXPECT_EQ(GlobalSize(a), 72u);
  EXPECT_EQ(GlobalSize(t), 60u);
  EXPECT_EQ(Alloc_FE3Ang(-1), 0u);
  FE_Split split{a, 0, 3, t, 0, Alloc_FEPoints(1), 0, 0, 5, {7, 8}};
  Free_FE_Split(&split);
  Free_FE_Split(&split);  // harmless when empty
  EXPECT_EQ(split.nodes | split.triangles | split.further, 0u);
  EXPECT_EQ(split.node_count + split.triangle_count, 0);
  EXPECT_EQ(split.spare[1], 8);

  HGLOBAL nodes = 0;
  int count = 99;
  EXPECT_EQ(Add_FE_Point(&nodes, &count, 1, 2, 1), 0);  // first node: count starts at 0
  EXPECT_EQ(Add_FE_Point(&nodes, &count, 3, 4, 0), 1);
  EXPECT_EQ(Insert_FE_Point(&nodes, &count, 1, 2, 5, 6), 1);
  EXPECT_EQ(Insert_FE_Point(&nodes, &count, 4, 2, 5, 6), -1);
  EXPECT_EQ(Add_FE_Point(&nodes, &count, 1, 2, 3), 3);  // a repeat of node 0
  EXPECT_EQ(count, 4);
  EXPECT_EQ(GlobalSize(nodes), 96u);
  EXPECT_EQ(Find_FE_Point(nodes, count, 1, 2), 0);
  EXPECT_EQ(Find_FE_Point_Back(nodes, 3, 1, 2), 3);
  EXPECT_EQ(Find_FE_Point_Back(nodes, 2, 1, 2), 0);
  EXPECT_EQ(Find_FE_Point_Back(nodes, -5, 1, 2), 0);
  EXPECT_EQ(Find_FE_Point(nodes, count, 5, 7), -1);
  EXPECT_EQ(Find_FE_Point(nodes, 1, 5, 6), -1);
  EXPECT_EQ(Remove_FE_Point(&nodes, &count, 0), 1);
  EXPECT_EQ(Find_FE_Point(nodes, count, 5, 6), 0);
  EXPECT_EQ(Remove_FE_Point(&nodes, &count, 3), 0);
  while (count > 0) Remove_FE_Point(&nodes, &count, 0);
  EXPECT_EQ(GlobalSize(nodes), 24u);  // the last node's room stays
  GlobalFree(nodes);

  HGLOBAL stale = Alloc_FEPoints(1);
  GlobalFree(stale);
  count = 1;
  EXPECT_EQ(Add_FE_Point(&stale, &count, 0, 0, 0), -1);
}

TEST(Split, MesherCoversSections) {
  if (!Mesher_Available()) GTEST_SKIP() << "built without CGAL: no mesher";
  Leak_Check leaks;
  Section plate;
  Mesher m;
  ASSERT_EQ(m.Run(Plate(plate), 8.0), 1);
  const Mesh mesh = m.mesh();
  EXPECT_NEAR(Check_Cover(plate.surface(), mesh, 1e-9), 14400, 1e-9 * 14400);
  EXPECT_EQ(Flags(mesh), (std::set<int>{0, 1, 2, 3}));
  for (const FE3Ang& t : mesh.tris) {  // no edge longer than h
    for (int k = 0; k < 3; ++k) {
      const FEPOINT &a = mesh.nodes[t.n[k]], &b = mesh.nodes[t.n[(k + 1) % 3]];
      EXPECT_LE(std::hypot(a.x - b.x, a.y - b.y), 8.0 * (1 + 1e-12));
    }
  }
  EXPECT_LT(Get_FE_Bandwidth(m.split.triangles, m.split.triangle_count), m.split.node_count / 5);

  // Chords of at most h on radii of at least 20 cut at most h^2 / (8 r) off
  // the curves' 520 mm.
  Section rounded;
  double exact = 0, h = 4;
  Mesher curved;
  ASSERT_EQ(curved.Run(Rounded(rounded, &exact), h), 1);
  EXPECT_NEAR(Check_Cover(rounded.surface(), curved.mesh(), h * h / (8 * 20)), exact,
              520 * h * h / (8 * 20));
  EXPECT_EQ(Flags(curved.mesh()), (std::set<int>{0, 1, 2, 3}));
}

TEST(Split, GridCoversSections) {
  Leak_Check leaks;
  for (bool tall : {false, true}) {
    Section s;
    if (tall) {  // the plate stood up: the other sweep
      Rect(s, 0, 0, 100, 200);
      Rect(s, 20, 20, 80, 60);
      Rect(s, 30, 100, 70, 180);
    }
    Surface_Type* surface = tall ? s.surface() : Plate(s);
    Grid g;
    // At a step of 5 every corner of the section lies on grid lines and
    // the cut is exact; at 6 each of the twelve corners is cut off by a
    // chord across its cell (half a cell at most).
    for (double h : {5.0, 6.0}) {
      Recorder progress;
      EXPECT_GE(g.Run(surface, h, &progress), 0);
      const Mesh m = g.mesh();
      double cut = h == 6 ? 1.5 * h : 0;
      EXPECT_NEAR(Check_Cover(surface, m, 1e-9, cut), 14400, h == 6 ? 12 * h * h / 2 : 1e-9);
      EXPECT_EQ(Flags(m), (std::set<int>{0, 1, 2, 3}));
      ASSERT_GE(progress.seen.size(), 3u);
      EXPECT_TRUE(std::is_sorted(progress.seen.begin(), progress.seen.end()));
      EXPECT_LE(progress.seen[progress.seen.size() - 3], 30);
      EXPECT_EQ(progress.seen[progress.seen.size() - 2], 40);
      EXPECT_EQ(progress.seen.back(), 50);
    }
  }
  // Curves: chords across cells of diagonal h sqrt 2 on radii of at least
  // 20, and the rounded corner's cut.
  Section s;
  double exact = 0;
  Surface_Type* surface = Rounded(s, &exact);
  Grid g;
  for (double h : {4.0, 2.5}) {
    g.Run(surface, h);
    EXPECT_NEAR(Check_Cover(surface, g.mesh(), 1e-9, 1.5 * h), exact,
                520 * 2 * h * h / (8 * 20) + h * h);
  }
}

TEST(Split, GridTakesCellByItsCentre) {
  Section s;  // a diamond inside one cell, touching its sides
  s.Outline({{5, 0}, {10, 5}, {5, 10}, {0, 5}});
  Grid g;
  g.Run(s.surface(), 10);
  EXPECT_NEAR(Check_Cover(s.surface(), g.mesh(), 0), 50, 1e-12);
}

TEST(Split, BadInputGivesEmptySplit) {
  Leak_Check leaks;
  Box_Capture boxes;
  Section empty, flat, nan;
  flat.Outline({{0, 0}, {10, 0}, {20, 0}});
  Rect(nan, 0, 0, 10, std::nan(""));
  for (Section* s : {&empty, &flat, &nan}) {
    Grid g;
    g.Run(s->surface(), 1);
    EXPECT_EQ(g.tc, 0);
    Mesher m;
    EXPECT_EQ(m.Run(s->surface(), 1), 0);
    EXPECT_EQ(m.split.triangle_count, 0);
  }
  HGLOBAL nodes = 0, tris = 0;
  int nc = 0, tc = 0;
  Section ok;
  Rect(ok, 0, 0, 10, 10);
  for (double h : {0.0, -1.0, std::nan(""), 1e-9}) {
    EXPECT_EQ(Split_Surface_By_Grid(ok.surface(), &nodes, &nc, h, 1, nullptr, &tc, &tris), -1);
  }
  EXPECT_EQ(Split_Surface_By_Grid(nullptr, &nodes, &nc, 1, 1, nullptr, &tc, &tris), -1);
  Mesher fine;  // would need 10^8 nodes: refused at once
  EXPECT_EQ(fine.Run(ok.surface(), 1e-3), 0);
  EXPECT_EQ(tc + nc, 0);

  // A hole outside its outer contour takes nothing away: both splits give
  // the outer square, as containment does.
  Section two;
  Rect(two, 0, 0, 10, 10);
  Rect(two, 20, 0, 30, 10);
  auto* outers = static_cast<HGLOBAL*>(GlobalLock(two.surface()->outers));
  Surface_Type bad{};
  Add_Surface_Contour(&bad, outers[0], 0);
  Add_Surface_Contour(&bad, outers[1], 1);
  GlobalUnlock(two.surface()->outers);
  two.surface()->outer_count = 0;  // now owned by `bad`
  {
    Grid g;
    g.Run(&bad, 1);
    EXPECT_NEAR(Check_Cover(&bad, g.mesh(), 0), 100, 1e-12);
    Mesher m;
    if (Mesher_Available()) {
      EXPECT_EQ(m.Run(&bad, 2), 1);
      EXPECT_NEAR(Check_Cover(&bad, m.mesh(), 0), 100, 1e-12);
    }
  }
  Delete_Surface(&bad);
}

namespace {

// Runs Remove_Sliver_Triangles on the nodes and triangles given; returns
// the number removed and leaves the result in the vectors.
int Slivers(std::vector<FEPOINT>* nodes, std::vector<FE3Ang>* tris) {
  HGLOBAL n = Block_Of(*nodes), t = Block_Of(*tris);
  int nc = static_cast<int>(nodes->size()), tc = static_cast<int>(tris->size());
  int removed = Remove_Sliver_Triangles(&t, &tc, &n, &nc, 5.0);
  Mesh m(n, nc, t, tc);
  EXPECT_EQ(GlobalSize(n), nc * sizeof(FEPOINT));
  EXPECT_EQ(GlobalSize(t), tc * sizeof(FE3Ang));
  GlobalFree(n);
  GlobalFree(t);
  *nodes = m.nodes;
  *tris = m.tris;
  return removed;
}

bool Same(const FEPOINT& p, double x, double y) {
  return p.x == x && p.y == y;
}

}  // namespace

TEST(Split, SliversKeepBoundaryNodes) {
  Leak_Check leaks;
  // A flat triangle on a boundary: its inner apex goes into the boundary
  // node of the shortest edge (the earlier of two equal edges).
  std::vector<FEPOINT> nodes{{0, 0, 1}, {10, 0, 1}, {5, 0.1, 0}};
  std::vector<FE3Ang> tris{{{0, 1, 2}}};
  EXPECT_EQ(Slivers(&nodes, &tris), 1);
  ASSERT_EQ(nodes.size(), 2u);
  EXPECT_TRUE(Same(nodes[1], 10, 0));
  EXPECT_TRUE(tris.empty());
  // The boundary node is kept when it is the edge's second corner too.
  nodes = {{5, 0.1, 0}, {0, 0, 2}, {10, 0, 2}};
  tris = {{{1, 2, 0}}};
  EXPECT_EQ(Slivers(&nodes, &tris), 1);
  EXPECT_TRUE(Same(nodes[1], 10, 0) && nodes.size() == 2);
  // Inner nodes only: never touched, however thin.
  nodes = {{0, 0, 0}, {10, 0, 0}, {5, 0.01, 0}};
  tris = {{{0, 1, 2}}};
  EXPECT_EQ(Slivers(&nodes, &tris), 0);
  EXPECT_EQ(nodes.size(), 3u);
}

TEST(Split, SliverScanRestartsAtSecondTriangle) {
  // Merging away node 3 (into node 4) flattens triangle A = (0, 1, 3). As
  // the first triangle it is never looked at again; as the second it is.
  std::vector<FEPOINT> base{{0, 0, 1}, {10, 0, 1},  {20, 20, 0},
                            {5, 1, 0}, {5, 0.1, 1}, {5.5, 30, 0}};
  FE3Ang a{{0, 1, 3}}, sliver{{3, 4, 5}}, other{{1, 2, 5}};
  std::vector<FEPOINT> nodes = base;
  std::vector<FE3Ang> tris{a, sliver};
  EXPECT_EQ(Slivers(&nodes, &tris), 1);
  ASSERT_EQ(tris.size(), 1u);
  EXPECT_TRUE(Same(nodes[tris[0].n[2]], 5, 0.1));  // flat, and kept
  nodes = base;
  tris = {other, a, sliver};
  EXPECT_EQ(Slivers(&nodes, &tris), 2);
  EXPECT_EQ(tris.size(), 1u);
}

TEST(Split, RenumberingNarrowsTheBand) {
  Leak_Check leaks;
  // A 30 x 4 grid of squares numbered column-wise across the long way, then
  // shuffled: the band is wide; after renumbering it is about a column.
  const int nx = 31, ny = 5;
  std::vector<int> label(nx * ny);
  for (int i = 0; i < nx * ny; ++i) label[i] = (i * 37) % (nx * ny);
  std::vector<FEPOINT> nodes(nx * ny);
  std::vector<FE3Ang> tris;
  for (int i = 0; i < nx; ++i) {
    for (int j = 0; j < ny; ++j) nodes[label[i * ny + j]] = {double(i), double(j), 0};
  }
  auto id = [&](int i, int j) { return label[i * ny + j]; };
  for (int i = 0; i + 1 < nx; ++i) {
    for (int j = 0; j + 1 < ny; ++j) {
      tris.push_back({{id(i, j), id(i + 1, j), id(i + 1, j + 1)}});
      tris.push_back({{id(i, j), id(i + 1, j + 1), id(i, j + 1)}});
    }
  }
  HGLOBAL n = Block_Of(nodes), t = Block_Of(tris);
  int tc = static_cast<int>(tris.size());
  EXPECT_GT(Get_FE_Bandwidth(t, tc), 100);
  ASSERT_EQ(Renumber_FE_Nodes(n, nx * ny, t, tc), 1);
  EXPECT_LE(Get_FE_Bandwidth(t, tc), 2 * ny);
  Mesh m(n, nx * ny, t, tc);
  for (size_t k = 0; k < tris.size(); ++k) {  // the same triangles, corner by corner
    for (int c = 0; c < 3; ++c) {
      EXPECT_TRUE(Same(m.nodes[m.tris[k].n[c]], nodes[tris[k].n[c]].x, nodes[tris[k].n[c]].y));
    }
  }
  static_cast<FE3Ang*>(GlobalLock(t))[0].n[0] = nx * ny;  // a corner naming no node
  GlobalUnlock(t);
  EXPECT_EQ(Renumber_FE_Nodes(n, nx * ny, t, tc), 0);
  EXPECT_EQ(Get_FE_Bandwidth(0, 3), 0);
  GlobalFree(n);
  GlobalFree(t);
}

TEST(Split, SectionInTwoPieces) {
  // Two plates, each with a hole: both outer contours flag 1, the holes 2
  // and 3, with either split.
  Section s;
  Rect(s, 0, 0, 40, 40);
  Rect(s, 60, 0, 100, 40);
  Rect(s, 10, 10, 20, 30);
  Rect(s, 70, 10, 90, 20);
  Surface_Type* surface = s.surface();
  ASSERT_EQ(surface->outer_count, 2);
  Grid g;
  g.Run(surface, 2);
  Mesher m;
  std::vector<Mesh> meshes{g.mesh()};
  if (Mesher_Available() && m.Run(surface, 3) == 1) meshes.push_back(m.mesh());
  EXPECT_EQ(meshes.size(), Mesher_Available() ? 2u : 1u);
  for (const Mesh& mesh : meshes) {
    EXPECT_NEAR(Check_Cover(surface, mesh, 1e-9), 3200 - 400, 1e-9);
    EXPECT_EQ(Flags(mesh), (std::set<int>{0, 1, 2, 3}));
  }
}
