// The grid split: a surface cut into the cells of a rectangular grid, the
// cells that the contours cross cut along the chords between the crossings.
#include <algorithm>
#include <cmath>
#include <new>
#include <unordered_map>

#include "analysis/split_contours.h"
#include "analysis/split_internal.h"
#include "model/box.h"
#include "tessaline/contour/surface.h"
#include "tessaline/geometry/intersect.h"
#include "tessaline/platform/memory.h"
#include "tessaline/platform/progress.h"

namespace {

constexpr double kMax_Cells = 1 << 23;

// A contour crossing on a grid line: its coordinate along the line.
struct Crossing {
  double t;
  uint8_t flag;
  bool operator<(const Crossing& o) const { return t < o.t; }
};
using Line_Crossings = std::vector<Crossing>;

struct Grid {
  std::vector<double> gx, gy;          // grid lines; cells lie between neighbours
  std::vector<Line_Crossings> vx, hy;  // crossings on each vertical / horizontal line
  double left, bottom, right, top;     // the surface's outer rectangle
};

void Add_Crossing(Line_Crossings* line, double t, uint8_t flag) {
  if (std::isfinite(t)) line->push_back({t, flag});
}

// The crossings of one element with the grid lines near its box.
void Cross_Element(const Element_Record& r, uint8_t flag, Grid* g) {
  Box b = Record_Box(r);
  if (b.empty) return;
  auto lines = [](const std::vector<double>& at, double lo, double hi) {
    size_t first = static_cast<size_t>(std::lower_bound(at.begin(), at.end(), lo) - at.begin());
    size_t last = static_cast<size_t>(std::upper_bound(at.begin(), at.end(), hi) - at.begin());
    return std::pair<size_t, size_t>(first > 0 ? first - 1 : 0, std::min(last + 1, at.size()));
  };
  double x1, y1, x2, y2;
  auto [k0, k1] = lines(g->gx, b.left, b.right);
  for (size_t k = k0; k < k1; ++k) {
    double x = g->gx[k];
    Line_Crossings* line = &g->vx[k];
    if (r.type == EL_SEGMENT) {
      const auto& s = r.u.seg;
      int n = Cross_Vert_Line_Segment(x, s.x1, s.y1, s.x2, s.y2, &x1, &y1);
      if (n == 1) Add_Crossing(line, y1, flag);
      if (n == -1) Add_Crossing(line, s.y1, flag), Add_Crossing(line, s.y2, flag);
    } else if (r.type == EL_CIRCLE) {
      const auto& c = r.u.circle;
      int n = Cross_Vert_Line_Circle(x, c.xc, c.yc, c.r, &x1, &y1, &x2, &y2);
      if (n >= 1) Add_Crossing(line, y1, flag);
      if (n == 2) Add_Crossing(line, y2, flag);
    } else if (r.type == EL_ARC) {
      const auto& a = r.u.arc;
      int n = Cross_Vert_Line_Arc(x, a.xc, a.yc, a.r, a.a1, a.a2, &x1, &y1, &x2, &y2);
      // An end on the line is that end exactly, as its neighbour gives it.
      if (n >= 1) Add_Crossing(line, y1, flag);
      if (n == 2) Add_Crossing(line, y2, flag);
      if (a.x1 == x) Add_Crossing(line, a.y1, flag);
      if (a.x2 == x) Add_Crossing(line, a.y2, flag);
    }
  }
  auto [j0, j1] = lines(g->gy, b.bottom, b.top);
  for (size_t j = j0; j < j1; ++j) {
    double y = g->gy[j];
    Line_Crossings* line = &g->hy[j];
    if (r.type == EL_SEGMENT) {
      const auto& s = r.u.seg;
      int n = Cross_Horiz_Line_Segment(y, s.x1, s.y1, s.x2, s.y2, &x1, &y1);
      if (n == 1) Add_Crossing(line, x1, flag);
      if (n == -1) Add_Crossing(line, s.x1, flag), Add_Crossing(line, s.x2, flag);
    } else if (r.type == EL_CIRCLE) {
      const auto& c = r.u.circle;
      int n = Cross_Horiz_Line_Circle(y, c.xc, c.yc, c.r, &x1, &y1, &x2, &y2);
      if (n >= 1) Add_Crossing(line, x1, flag);
      if (n == 2) Add_Crossing(line, x2, flag);
    } else if (r.type == EL_ARC) {
      const auto& a = r.u.arc;
      int n = Cross_Horiz_Line_Arc(y, a.x1, a.y1, a.x2, a.y2, a.xc, a.yc, a.r, a.a1, a.a2, &x1, &y1,
                                   &x2, &y2);
      if (n >= 1) Add_Crossing(line, x1, flag);
      if (n == 2) Add_Crossing(line, x2, flag);
    }
  }
}

// Sorted, one crossing per coordinate (the first found keeps its flag).
void Sort_Crossings(std::vector<Line_Crossings>* lines) {
  for (Line_Crossings& l : *lines) {
    std::stable_sort(l.begin(), l.end());
    l.erase(std::unique(l.begin(), l.end(),
                        [](const Crossing& a, const Crossing& b) { return a.t == b.t; }),
            l.end());
  }
}

// The crossing at exactly t on the line, or null.
const Crossing* Crossing_At(const Line_Crossings& l, double t) {
  auto it = std::lower_bound(l.begin(), l.end(), Crossing{t, 0});
  return it != l.end() && it->t == t ? &*it : nullptr;
}

// Appends the crossings strictly between a and b (a < b), ascending or not.
template <class Point_Of>
void Side_Crossings(const Line_Crossings& l, double a, double b, bool ascending, Point_Of point,
                    std::vector<std::pair<Cell_Point, uint8_t>>* out) {
  auto lo = std::upper_bound(l.begin(), l.end(), Crossing{a, 0});
  auto hi = std::lower_bound(l.begin(), l.end(), Crossing{b, 0});
  if (lo >= hi) return;
  if (ascending) {
    for (auto it = lo; it != hi; ++it) out->push_back({point(it->t), it->flag});
  } else {
    for (auto it = hi; it != lo; --it) out->push_back({point((it - 1)->t), (it - 1)->flag});
  }
}

class Grid_Split {
 public:
  Grid_Split(Surface_Type* surface, Grid* grid, CProgressDlg* progress)
      : surface_(surface), g_(*grid), progress_(progress) {
    inside_.assign(g_.gx.size() * g_.gy.size(), -1);
  }

  void Sweep(bool along_x) {
    size_t cols = g_.gx.size() - 1, rows = g_.gy.size() - 1;
    size_t outer = along_x ? cols : rows, inner = along_x ? rows : cols;
    const std::vector<double>& at = along_x ? g_.gx : g_.gy;
    double lo = along_x ? g_.left : g_.bottom, hi = along_x ? g_.right : g_.top;
    for (size_t u = 0; u < outer; ++u) {
      if (progress_) {
        progress_->SetPos(static_cast<int>((at[u] - lo) / (hi - lo) * 30));
      }
      for (size_t v = 0; v < inner; ++v) Cell(along_x ? u : v, along_x ? v : u);
    }
  }

  Split_Mesh& mesh() { return mesh_; }

 private:
  bool Inside(double x, double y) { return Is_Point_In_Surface(surface_, x, y) != 0; }

  bool Corner_Inside(size_t k, size_t j) {
    int8_t& s = inside_[k * g_.gy.size() + j];
    if (s < 0) s = Inside(g_.gx[k], g_.gy[j]) ? 1 : 0;
    return s == 1;
  }

  // The node at exactly (x, y), made with the flag when new: the first
  // node with these coordinates, as a search from the start would find it.
  int Node(double x, double y, uint8_t flag) {
    auto key = std::make_pair(x, y);
    auto it = index_.find(key);
    if (it != index_.end()) return it->second;
    int n = static_cast<int>(mesh_.nodes.size());
    mesh_.nodes.push_back(FEPOINT{x, y, flag});
    index_.emplace(key, n);
    return n;
  }

  // A grid corner on the ring: on a contour when a crossing lies on it.
  void Corner(size_t k, size_t j, std::vector<std::pair<Cell_Point, uint8_t>>* ring,
              std::vector<int>* status) {
    double x = g_.gx[k], y = g_.gy[j];
    const Crossing* c = Crossing_At(g_.vx[k], y);
    if (!c) c = Crossing_At(g_.hy[j], x);
    ring->push_back({Cell_Point{x, y, -1}, c ? c->flag : 0});
    status->push_back(c ? 2 : (Corner_Inside(k, j) ? 1 : 0));
  }

  void Cell(size_t k, size_t j) {
    bool any = false;
    for (size_t dk = 0; dk < 2; ++dk) {
      for (size_t dj = 0; dj < 2; ++dj) any = Corner_Inside(k + dk, j + dj) || any;
    }
    double x0 = g_.gx[k], x1 = g_.gx[k + 1], y0 = g_.gy[j], y1 = g_.gy[j + 1];
    bool centre = !any && Inside(x0 + (x1 - x0) / 2, y0 + (y1 - y0) / 2);
    if (!any && !centre) return;

    // The cell's boundary counter-clockwise: corners, and the crossings on
    // each side; status 0 outside, 1 inside, 2 on a contour.
    ring_.clear();
    status_.clear();
    auto crossings = [&](const Line_Crossings& l, double a, double b, bool up, auto point) {
      size_t before = ring_.size();
      Side_Crossings(l, a, b, up, point, &ring_);
      status_.resize(status_.size() + ring_.size() - before, 2);
    };
    Corner(k, j, &ring_, &status_);
    crossings(g_.hy[j], x0, x1, true, [&](double t) { return Cell_Point{t, y0, -1}; });
    Corner(k + 1, j, &ring_, &status_);
    crossings(g_.vx[k + 1], y0, y1, true, [&](double t) { return Cell_Point{x1, t, -1}; });
    Corner(k + 1, j + 1, &ring_, &status_);
    crossings(g_.hy[j + 1], x0, x1, false, [&](double t) { return Cell_Point{t, y1, -1}; });
    Corner(k, j + 1, &ring_, &status_);
    crossings(g_.vx[k], y0, y1, false, [&](double t) { return Cell_Point{x0, t, -1}; });

    size_t m = ring_.size();
    if (m == 4 && !any) {  // taken by its centre alone: the whole cell
      std::vector<Cell_Point> poly;
      for (auto& [p, flag] : ring_) poly.push_back(Cell_Point{p.x, p.y, Node(p.x, p.y, 0)});
      Emit_Polygon(poly);
      return;
    }
    // Whether the border from point i to the next lies inside: a corner
    // off the contours tells; between two crossings the middle is tested,
    // moved a hair into the cell so that a stretch along a contour counts
    // as inside for the cell on the contour's inner side only.
    std::vector<char> in(m);
    bool all = true;
    for (size_t i = 0; i < m; ++i) {
      size_t n = (i + 1) % m;
      if (status_[i] != 2) {
        in[i] = static_cast<char>(status_[i]);
      } else if (status_[n] != 2) {
        in[i] = static_cast<char>(status_[n]);
      } else {
        const Cell_Point &a = ring_[i].first, &b = ring_[n].first;
        double mx = a.x + (b.x - a.x) / 2, my = a.y + (b.y - a.y) / 2;
        double cx = x0 + (x1 - x0) / 2, cy = y0 + (y1 - y0) / 2;
        in[i] = Inside(mx + (cx - mx) * 1e-6, my + (cy - my) * 1e-6) ? 1 : 0;
      }
      all = all && in[i];
    }
    auto point = [&](size_t i) {
      const auto& [p, flag] = ring_[i % m];
      return Cell_Point{p.x, p.y, Node(p.x, p.y, status_[i % m] == 2 ? flag : 0)};
    };
    std::vector<Cell_Point> poly;
    if (all) {
      for (size_t i = 0; i < m; ++i) poly.push_back(point(i));
      Emit_Polygon(poly);
      return;
    }
    size_t runs = 0;
    for (size_t i = 0; i < m; ++i) runs += in[i] && !in[(i + m - 1) % m] ? 1 : 0;
    // Several pieces of border inside, or only points on it (a contour
    // touching each side): the centre tells whether they are one piece of
    // the surface (a wall across the cell) or apart (two corners).
    if (runs != 1 && (centre || (any && Inside(x0 + (x1 - x0) / 2, y0 + (y1 - y0) / 2)))) {
      for (size_t i = 0; i < m; ++i) {
        if (status_[i] != 0) poly.push_back(point(i));
      }
      Emit_Polygon(poly);
      return;
    }
    // Each run of inside stretches is a polygon closed by the chord from
    // its last point back to its first.
    size_t start = 0;
    while (in[start]) ++start;  // an outside stretch: runs begin after it
    for (size_t s = 1; s <= m; ++s) {
      size_t i = (start + s) % m;
      if (!in[i]) continue;
      if (!in[(i + m - 1) % m]) poly.assign(1, point(i));
      poly.push_back(point(i + 1));
      if (!in[(i + 1) % m]) Emit_Polygon(poly);
    }
  }

  void Emit_Polygon(const std::vector<Cell_Point>& poly) {
    Triangulate_Cell_Polygon(
        poly, [this](double x, double y) { return Node(x, y, 0); }, &mesh_.triangles);
  }

  struct Pair_Hash {
    size_t operator()(const std::pair<double, double>& p) const {
      size_t a = std::hash<double>()(p.first), b = std::hash<double>()(p.second);
      return a ^ (b + 0x9e3779b97f4a7c15ULL + (a << 6) + (a >> 2));
    }
  };

  Surface_Type* surface_;
  Grid& g_;
  CProgressDlg* progress_;
  std::vector<int8_t> inside_;  // per grid corner: -1 not tested, 0, 1
  Split_Mesh mesh_;
  std::unordered_map<std::pair<double, double>, int, Pair_Hash> index_;
  std::vector<std::pair<Cell_Point, uint8_t>> ring_;
  std::vector<int> status_;
};

// Grid lines from lo in steps of h until one reaches hi; false when there
// would be more than `most`.
bool Grid_Lines(double lo, double hi, double h, double most, std::vector<double>* at) {
  double n = std::ceil((hi - lo) / h);
  if (!(n >= 1 && n <= most)) return false;
  at->clear();
  for (size_t k = 0;; ++k) {
    double v = lo + static_cast<double>(k) * h;
    at->push_back(v);
    if (v >= hi) break;
    if (static_cast<double>(k) > most) return false;
  }
  return true;
}

// Nodes numbered in the order the triangles first use them; unused nodes go.
void Number_By_First_Use(Split_Mesh* mesh) {
  std::vector<int> new_of(mesh->nodes.size(), -1);
  std::vector<FEPOINT> nodes;
  nodes.reserve(mesh->nodes.size());
  for (FE3Ang& t : mesh->triangles) {
    for (int32_t& c : t.n) {
      if (new_of[c] < 0) {
        new_of[c] = static_cast<int>(nodes.size());
        nodes.push_back(mesh->nodes[c]);
      }
      c = new_of[c];
    }
  }
  mesh->nodes.swap(nodes);
}

int Split(Surface_Type* surface, double hx, double hy, CProgressDlg* progress, Split_Mesh* out) {
  double left, top, right, bottom;
  if (!surface || surface->outer_count <= 0 ||
      !Get_Surface_Extern_Rect(surface, &left, &top, &right, &bottom))
    return -1;
  if (!std::isfinite(left) || !std::isfinite(right) || !std::isfinite(top) ||
      !std::isfinite(bottom) || !(right > left) || !(top > bottom))
    return -1;
  Grid g;
  g.left = left, g.bottom = bottom, g.right = right, g.top = top;
  if (!Grid_Lines(left, right, hx, kMax_Cells, &g.gx) ||
      !Grid_Lines(bottom, top, hy, kMax_Cells, &g.gy) ||
      static_cast<double>(g.gx.size() - 1) * static_cast<double>(g.gy.size() - 1) > kMax_Cells)
    return -1;
  std::vector<Split_Contour> contours;
  int outer_count = 0;
  if (!Read_Split_Contours(surface, &contours, &outer_count)) return -1;
  g.vx.resize(g.gx.size());
  g.hy.resize(g.gy.size());
  for (const Split_Contour& c : contours) {
    for (const Element_Record& r : c.elements) Cross_Element(r, c.flag, &g);
  }
  Sort_Crossings(&g.vx);
  Sort_Crossings(&g.hy);

  if (progress) progress->SetPos(0);
  Grid_Split split(surface, &g, progress);
  split.Sweep(right - left > top - bottom);
  if (progress) progress->SetPos(40);
  *out = std::move(split.mesh());
  Number_By_First_Use(out);
  int removed = Remove_Slivers(out, 5.0);
  if (progress) progress->SetPos(50);
  return removed;
}

}  // namespace

int Split_Surface_By_Grid(Surface_Type* surface, HGLOBAL* nodes, int* node_count, double hx,
                          double hy, CProgressDlg* progress, int* triangle_count,
                          HGLOBAL* triangles) {
  if (!nodes || !node_count || !triangle_count || !triangles) return -1;
  if (*nodes) GlobalFree(*nodes);
  if (*triangles) GlobalFree(*triangles);
  *nodes = *triangles = 0;
  *node_count = *triangle_count = 0;
  if (!std::isfinite(hx) || !std::isfinite(hy) || !(hx > 0) || !(hy > 0)) return -1;
  try {
    Split_Mesh mesh;
    int removed = Split(surface, hx, hy, progress, &mesh);
    if (removed < 0 || mesh.triangles.empty()) return removed < 0 ? -1 : 0;
    HGLOBAL n = New_FE_Node_Block(mesh.nodes);
    HGLOBAL t = New_FE_Triangle_Block(mesh.triangles);
    if (!n || !t) {
      if (n) GlobalFree(n);
      if (t) GlobalFree(t);
      return -1;
    }
    *nodes = n;
    *node_count = static_cast<int>(mesh.nodes.size());
    *triangles = t;
    *triangle_count = static_cast<int>(mesh.triangles.size());
    return removed;
  } catch (const std::bad_alloc&) {
    return -1;
  }
}
