// Sections from loose pieces: ends joined within a tolerance, closed
// outlines walked, outlines nested into outer contours, holes and islands.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <numbers>
#include <numeric>
#include <unordered_map>

#include "dxf.h"

namespace tessaline::app {

namespace {

constexpr double kPi = std::numbers::pi;

struct Union_Find {
  std::vector<int> parent;
  explicit Union_Find(size_t n) : parent(n) { std::iota(parent.begin(), parent.end(), 0); }
  int Find(int i) {
    while (parent[i] != i) i = parent[i] = parent[parent[i]];
    return i;
  }
  void Join(int a, int b) { parent[Find(a)] = Find(b); }
};

std::string Point_Text(double x, double y) {
  char buf[64];
  std::snprintf(buf, sizeof buf, "(%.6g, %.6g)", x, y);
  return buf;
}

// A closed outline: its pieces, points along it (for nesting) and its area.
struct Loop {
  std::vector<int> pieces;
  std::vector<double> px, py;
  double area = 0;  // absolute
  double xmin = HUGE_VAL, ymin = HUGE_VAL, xmax = -HUGE_VAL, ymax = -HUGE_VAL;
  int parent = -1, depth = 0;
};

// Points along a piece from its end `from_start` side to the other, the
// first end included and the last left out.
void Sample(const Piece& p, bool forward, Loop* loop) {
  auto add = [&](double x, double y) {
    loop->px.push_back(x);
    loop->py.push_back(y);
    loop->xmin = std::min(loop->xmin, x), loop->xmax = std::max(loop->xmax, x);
    loop->ymin = std::min(loop->ymin, y), loop->ymax = std::max(loop->ymax, y);
  };
  if (p.kind == Piece::kSegment) {
    forward ? add(p.x1, p.y1) : add(p.x2, p.y2);
    return;
  }
  int n = p.kind == Piece::kCircle ? 64 : 32;
  double a1 = p.kind == Piece::kCircle ? 0 : p.a1, a2 = p.kind == Piece::kCircle ? 2 * kPi : p.a2;
  for (int k = 0; k < n; ++k) {
    double t = forward ? a1 + (a2 - a1) * k / n : a2 - (a2 - a1) * k / n;
    add(p.xc + p.r * std::cos(t), p.yc + p.r * std::sin(t));
  }
}

// A point on the piece away from its ends.
void Mid_Point(const Piece& p, double* x, double* y) {
  if (p.kind == Piece::kSegment) {
    *x = (p.x1 + p.x2) / 2, *y = (p.y1 + p.y2) / 2;
    return;
  }
  double t = p.kind == Piece::kCircle ? 0.3 : (p.a1 + p.a2) / 2;
  *x = p.xc + p.r * std::cos(t), *y = p.yc + p.r * std::sin(t);
}

bool Inside(const Loop& l, double x, double y) {
  if (x < l.xmin || x > l.xmax || y < l.ymin || y > l.ymax) return false;
  bool in = false;
  size_t n = l.px.size();
  for (size_t i = 0, j = n - 1; i < n; j = i++) {
    if ((l.py[i] > y) != (l.py[j] > y) &&
        x < (l.px[j] - l.px[i]) * (y - l.py[i]) / (l.py[j] - l.py[i]) + l.px[i])
      in = !in;
  }
  return in;
}

double Shoelace(const Loop& l) {
  double s = 0;
  size_t n = l.px.size();
  for (size_t i = 0, j = n - 1; i < n; j = i++) s += l.px[j] * l.py[i] - l.px[i] * l.py[j];
  return std::abs(s) / 2;
}

}  // namespace

void Find_Sections(std::vector<Layered_Piece> pieces, double tol, Dxf_Drawing* drawing) {
  auto& problems = drawing->problems;
  if (!(tol >= 0) || !std::isfinite(tol)) tol = kDxf_Join_Tolerance;
  // Pieces with a coordinate that is not finite cannot be placed.
  std::erase_if(pieces, [](const Layered_Piece& lp) {
    const Piece& p = lp.piece;
    return !std::isfinite(p.x1 + p.y1 + p.x2 + p.y2 + p.xc + p.yc + p.r + p.a1 + p.a2);
  });
  size_t n = pieces.size();
  // Ends 2i (start) and 2i + 1 (end) of each piece that is not a circle,
  // joined when closer than tol: neighbours are found through a grid of
  // cells tol wide.
  Union_Find ends(2 * n);
  auto end_x = [&](size_t e) { return e % 2 ? pieces[e / 2].piece.x2 : pieces[e / 2].piece.x1; };
  auto end_y = [&](size_t e) { return e % 2 ? pieces[e / 2].piece.y2 : pieces[e / 2].piece.y1; };
  double cell = std::max(tol, 1e-9);
  // Hashed in unsigned arithmetic: far cells' products wrap rather than overflow.
  auto key = [&](int64_t i, int64_t j) {
    return static_cast<int64_t>((static_cast<uint64_t>(i) * 73856093u) ^
                                (static_cast<uint64_t>(j) * 19349663u));
  };
  std::unordered_map<int64_t, std::vector<int>> grid;
  auto cell_of = [&](double v) {
    return static_cast<int64_t>(std::clamp(std::floor(v / cell), -1e15, 1e15));
  };
  for (size_t e = 0; e < 2 * n; ++e) {
    if (pieces[e / 2].piece.kind == Piece::kCircle) continue;
    double x = end_x(e), y = end_y(e);
    int64_t ci = cell_of(x), cj = cell_of(y);
    for (int64_t di = -1; di <= 1; ++di)
      for (int64_t dj = -1; dj <= 1; ++dj) {
        auto it = grid.find(key(ci + di, cj + dj));
        if (it == grid.end()) continue;
        for (int o : it->second)
          if (std::hypot(end_x(o) - x, end_y(o) - y) <= tol) ends.Join(static_cast<int>(e), o);
      }
    grid[key(ci, cj)].push_back(static_cast<int>(e));
  }
  // One point per group of joined ends: a segment's end when there is one
  // (lines and polylines hold their corners exactly), then both ends of
  // every piece moved onto it.
  std::vector<int> rep(2 * n, -1);
  for (int pass = 0; pass < 2; ++pass)
    for (size_t e = 0; e < 2 * n; ++e) {
      if (pieces[e / 2].piece.kind == Piece::kCircle) continue;
      int root = ends.Find(static_cast<int>(e));
      bool segment = pieces[e / 2].piece.kind == Piece::kSegment;
      if (rep[root] < 0 && (segment || pass == 1)) rep[root] = static_cast<int>(e);
    }
  std::vector<int> node(2 * n, -1);
  std::vector<int> degree(2 * n, 0);
  std::vector<char> dropped(n, 0);
  for (size_t i = 0; i < n; ++i) {
    Piece& p = pieces[i].piece;
    if (p.kind == Piece::kCircle) continue;
    int s = ends.Find(static_cast<int>(2 * i)), t = ends.Find(static_cast<int>(2 * i + 1));
    double sx = end_x(rep[s]), sy = end_y(rep[s]), tx = end_x(rep[t]), ty = end_y(rep[t]);
    p.x1 = sx, p.y1 = sy, p.x2 = tx, p.y2 = ty;
    if (s == t && p.kind == Piece::kSegment) {  // shorter than the tolerance
      dropped[i] = 1;
      continue;
    }
    node[2 * i] = s, node[2 * i + 1] = t;
    ++degree[s], ++degree[t];
  }
  // Groups of pieces linked through their ends; a group with an end that
  // meets nothing, or with a branch, is not a closed outline.
  Union_Find groups(2 * n);
  for (size_t i = 0; i < n; ++i)
    if (node[2 * i] >= 0) groups.Join(node[2 * i], node[2 * i + 1]);
  std::vector<char> bad(2 * n, 0), seen(2 * n, 0);
  size_t reported = 0;
  for (size_t e = 0; e < 2 * n; ++e) {
    int v = node[e];
    if (v < 0 || degree[v] == 2 || seen[v]) continue;
    seen[v] = 1;
    bad[groups.Find(v)] = 1;
    if (++reported > 20) continue;
    std::string where =
        Point_Text(end_x(rep[v]), end_y(rep[v])) + " on layer " + pieces[e / 2].layer;
    problems.push_back(degree[v] == 1 ? "open outline: the end at " + where +
                                            " meets no other end within the joining tolerance"
                                      : "outline branches: " + std::to_string(degree[v]) +
                                            " ends meet at " + where);
  }
  if (reported > 20)
    problems.push_back("... and " + std::to_string(reported - 20) + " more open or branching ends");
  // Pieces at each end point, to walk the closed outlines.
  std::vector<std::vector<int>> at(2 * n);
  for (size_t i = 0; i < n; ++i)
    if (node[2 * i] >= 0 && !bad[groups.Find(node[2 * i])]) {
      at[node[2 * i]].push_back(static_cast<int>(i));
      at[node[2 * i + 1]].push_back(static_cast<int>(i));
    }
  std::vector<Loop> loops;
  std::vector<char> used(n, 0);
  for (size_t i = 0; i < n; ++i) {
    if (used[i] || dropped[i]) continue;
    const Piece& p0 = pieces[i].piece;
    Loop loop;
    if (p0.kind == Piece::kCircle) {
      used[i] = 1;
      loop.pieces.push_back(static_cast<int>(i));
      Sample(p0, true, &loop);
    } else {
      if (bad[groups.Find(node[2 * i])]) continue;
      int cur = static_cast<int>(i);
      bool forward = true;
      while (!used[cur]) {
        used[cur] = 1;
        loop.pieces.push_back(cur);
        Sample(pieces[cur].piece, forward, &loop);
        int v = forward ? node[2 * cur + 1] : node[2 * cur];
        int next = at[v][0] == cur ? at[v][1] : at[v][0];
        forward = node[2 * next] == v;
        cur = next;
      }
    }
    loop.area = Shoelace(loop);
    loops.push_back(std::move(loop));
  }
  // Nesting: the parent of an outline is the smallest outline around it.
  std::vector<size_t> order(loops.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(),
                   [&](size_t a, size_t b) { return loops[a].area > loops[b].area; });
  for (size_t k = 0; k < order.size(); ++k) {
    Loop& l = loops[order[k]];
    double x, y;
    Mid_Point(pieces[l.pieces[0]].piece, &x, &y);
    for (size_t j = k; j-- > 0;)
      if (Inside(loops[order[j]], x, y)) {
        l.parent = static_cast<int>(order[j]);
        l.depth = loops[order[j]].depth + 1;
        break;
      }
  }
  std::vector<int> section_of(loops.size(), -1);
  for (size_t k = 0; k < order.size(); ++k) {
    size_t li = order[k];
    Loop& l = loops[li];
    if (l.depth % 2 == 0) {
      section_of[li] = static_cast<int>(drawing->sections.size());
      Dxf_Section s;
      s.x = (l.xmin + l.xmax) / 2, s.y = (l.ymin + l.ymax) / 2;
      char buf[80];
      std::snprintf(buf, sizeof buf, "@%.6g,%.6g", s.x, s.y);
      s.name = pieces[l.pieces[0]].layer + buf;
      drawing->sections.push_back(std::move(s));
    } else {
      section_of[li] = section_of[l.parent];
    }
    Outline& o = drawing->sections[section_of[li]].outline;
    for (int pi : l.pieces) o.pieces.push_back(pieces[pi].piece);
  }
  std::stable_sort(drawing->sections.begin(), drawing->sections.end(),
                   [](const Dxf_Section& a, const Dxf_Section& b) {
                     return a.x != b.x ? a.x < b.x : a.y < b.y;
                   });
}

bool Read_Dxf(const std::string& path, double tolerance, Dxf_Drawing* drawing, std::string* error) {
  std::vector<Layered_Piece> pieces;
  if (!Read_Dxf_Pieces(path, &pieces, &drawing->unit_mm, &drawing->problems, error)) return false;
  Find_Sections(std::move(pieces), tolerance, drawing);
  return true;
}

}  // namespace tessaline::app
