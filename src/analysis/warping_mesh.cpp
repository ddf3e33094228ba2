// Building, refining and walking the boundary of 6-node triangle meshes.
#include "analysis/warping_mesh.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <unordered_set>

#include "contour/outline.h"
#include "platform/locked.h"

namespace {

// Whether a boundary node may lie on the curve's sampling: within a quarter
// of the radius of a circle; for an arc, in its sector between the arc and
// its chord (a mesher may sample a fillet by its chord alone and put nodes
// on it, as far inside as the arc's sagitta) or a quarter radius outside.
bool Near_Curve(const Warping_Curve& c, double x, double y) {
  const double d = std::hypot(x - c.xc, y - c.yc);
  if (d > 1.25 * c.r) return false;
  if (c.sweep >= 2 * std::numbers::pi) return d >= 0.75 * c.r;
  const double chord = c.r * std::cos(0.5 * std::min(c.sweep, std::numbers::pi));
  if (d < std::min(0.75 * c.r, chord * (1 - 1e-9))) return false;
  double t = std::atan2(y - c.yc, x - c.xc) - c.a1;
  t -= 2 * std::numbers::pi * std::floor(t / (2 * std::numbers::pi));
  return t <= c.sweep + 1e-9 || t >= 2 * std::numbers::pi - 1e-9;
}

void Project(const Warping_Curve& c, double* x, double* y);

// The curve of every boundary edge that follows an arc or a circle of the
// surface, found along the boundary chains rather than by distance alone
// (a mesher may add boundary nodes on the chords between its samples): an
// arc's edges are the chain between the nodes at its two end points whose
// nodes all lie near its circle and within its sweep; a circle's are a
// whole chain near it. Their nodes are moved onto the curve.
std::unordered_map<uint64_t, int> Match_Curves(std::vector<double>* x, std::vector<double>* y,
                                               const std::vector<std::array<int32_t, 3>>& tri,
                                               const std::vector<Warping_Curve>& curves) {
  std::unordered_map<uint64_t, int> uses;
  for (const auto& t : tri) {
    for (int i = 0; i < 3; ++i) ++uses[Edge_Key(t[i], t[(i + 1) % 3])];
  }
  std::unordered_map<int32_t, int32_t> next;
  for (const auto& t : tri) {
    for (int i = 0; i < 3; ++i) {
      if (uses[Edge_Key(t[i], t[(i + 1) % 3])] == 1) next[t[i]] = t[(i + 1) % 3];
    }
  }
  std::unordered_map<uint64_t, int> found;
  auto near = [&](int c, int32_t v) { return Near_Curve(curves[c], (*x)[v], (*y)[v]); };
  auto node_at = [&](double px, double py, double scale) {
    for (const auto& [v, w] : next) {
      if (std::fabs((*x)[v] - px) <= 1e-7 * scale && std::fabs((*y)[v] - py) <= 1e-7 * scale) {
        return v;
      }
    }
    return -1;
  };
  // Walks from `from` to `to` along the chain; true (edges recorded) when
  // every node on the way is near the curve.
  auto walk = [&](int c, int32_t from, int32_t to) {
    std::vector<uint64_t> edges;
    int32_t v = from;
    for (size_t steps = 0; steps <= next.size(); ++steps) {
      auto it = next.find(v);
      if (it == next.end() || !near(c, it->second)) return false;
      edges.push_back(Edge_Key(v, it->second));
      v = it->second;
      if (v == to) {
        for (uint64_t e : edges) found[e] = c;
        return true;
      }
    }
    return false;
  };
  for (int c = 0; c < static_cast<int>(curves.size()); ++c) {
    const Warping_Curve& k = curves[c];
    const double scale = 1.0 + std::fabs(k.xc) + std::fabs(k.yc) + k.r;
    if (k.sweep >= 2 * std::numbers::pi) {
      // Of the closed chains near the circle, the one that keeps closest to
      // it: a thin tube's two circles lie within each other's tolerance.
      std::unordered_set<int32_t> seen;
      int32_t best = -1;
      double best_deviation = HUGE_VAL;
      for (const auto& [v, w] : next) {
        if (seen.count(v) || found.count(Edge_Key(v, w))) continue;
        double deviation = 0;
        bool closed = false;
        int32_t u = v;
        for (size_t steps = 0; steps <= next.size(); ++steps) {
          seen.insert(u);
          if (!near(c, u)) break;
          deviation =
              std::max(deviation, std::fabs(std::hypot((*x)[u] - k.xc, (*y)[u] - k.yc) - k.r));
          auto it = next.find(u);
          if (it == next.end()) break;
          u = it->second;
          if (u == v) {
            closed = true;
            break;
          }
        }
        if (closed && deviation < best_deviation) {
          best_deviation = deviation;
          best = v;
        }
      }
      if (best >= 0) walk(c, best, best);
      continue;
    }
    const int32_t a = node_at(k.x1, k.y1, scale), b = node_at(k.x2, k.y2, scale);
    if (a < 0 || b < 0 || a == b) continue;
    if (!walk(c, a, b)) walk(c, b, a);
  }
  for (const auto& [e, c] : found) {
    for (int32_t v : {static_cast<int32_t>(e >> 32), static_cast<int32_t>(e & 0xffffffffu)}) {
      Project(curves[c], &(*x)[v], &(*y)[v]);
    }
  }
  return found;
}

// The middle node of a boundary edge a-b on curve c: on the curve's normal
// through the chord's middle, at the offset that makes the parabola through
// a, the node and b enclose the arc's own segment area. It lies within
// r theta^4 / 100 or so of the arc (theta the angle the edge subtends), and
// the meshed region keeps the section's area to rounding, which keeps its
// torsion constant an order closer than the parabola through a point of
// the arc would.
void Curved_Middle(const Warping_Curve& c, double ax, double ay, double bx, double by, double* x,
                   double* y) {
  const double mx = 0.5 * (ax + bx), my = 0.5 * (ay + by);
  const double L = std::hypot(bx - ax, by - ay);
  double nx = mx - c.xc, ny = my - c.yc;
  double nl = std::hypot(nx, ny);
  if (nl == 0.0) {  // a half circle: the normal of the chord
    nx = -(by - ay);
    ny = bx - ax;
    nl = L;
  }
  if (L == 0.0 || nl == 0.0 || L > 2 * c.r) {
    *x = mx;
    *y = my;
    return;
  }
  const double theta = 2.0 * std::asin(std::min(1.0, 0.5 * L / c.r));
  const double segment = 0.5 * c.r * c.r * (theta - std::sin(theta));
  const double d = 1.5 * segment / L;
  *x = mx + d * nx / nl;
  *y = my + d * ny / nl;
}

void Project(const Warping_Curve& c, double* x, double* y) {
  const double d = std::hypot(*x - c.xc, *y - c.yc);
  if (d == 0.0) return;
  *x = c.xc + (*x - c.xc) * c.r / d;
  *y = c.yc + (*y - c.yc) * c.r / d;
}

// Reference coordinates of the six nodes.
constexpr double kRef[6][2] = {{0, 0}, {1, 0}, {0, 1}, {0.5, 0}, {0.5, 0.5}, {0, 0.5}};

void Map_Point(const P2_Mesh& m, const std::array<int32_t, 6>& t, double xi, double eta, double* x,
               double* y) {
  const double l0 = 1 - xi - eta, l1 = xi, l2 = eta;
  const double n[6] = {l0 * (2 * l0 - 1), l1 * (2 * l1 - 1), l2 * (2 * l2 - 1),
                       4 * l0 * l1,       4 * l1 * l2,       4 * l2 * l0};
  *x = *y = 0;
  for (int i = 0; i < 6; ++i) {
    *x += n[i] * m.x[t[i]];
    *y += n[i] * m.y[t[i]];
  }
}

}  // namespace

std::vector<Warping_Curve> Read_Warping_Curves(Surface_Type* surface) {
  std::vector<Warping_Curve> out;
  if (!surface) return out;
  for (auto [list, count] : {std::pair{surface->outers, surface->outer_count},
                             std::pair{surface->holes, surface->hole_count}}) {
    if (count <= 0) continue;
    Locked<HGLOBAL> handles(list);
    for (int i = 0; handles && i < count && handles.holds(i); ++i) {
      Locked<Contour_Type> c(handles[i]);
      std::vector<Element_Record> elements;
      if (!c || !Read_Contour(c.get(), &elements)) continue;
      for (const Element_Record& e : elements) {
        if (e.type == EL_CIRCLE) {
          out.push_back(
              {e.u.circle.xc, e.u.circle.yc, e.u.circle.r, 0.0, 2 * std::numbers::pi, 0, 0, 0, 0});
        } else if (e.type == EL_ARC) {
          double middle = 0, sweep = 0;
          Arc_Middle(e.u.arc.a1, e.u.arc.a2, &middle, &sweep);
          out.push_back({e.u.arc.xc, e.u.arc.yc, e.u.arc.r, middle - sweep * 0.5, sweep, e.u.arc.x1,
                         e.u.arc.y1, e.u.arc.x2, e.u.arc.y2});
        }
      }
    }
  }
  return out;
}

P2_Mesh Build_P2_Mesh(const std::vector<double>& x0, const std::vector<double>& y0,
                      const std::vector<std::array<int32_t, 3>>& tri0,
                      std::vector<Warping_Curve> curves) {
  P2_Mesh m;
  std::vector<double> x(x0), y(y0);
  // Counter-clockwise first: the boundary chains run with the material on their left.
  std::vector<std::array<int32_t, 3>> tri(tri0);
  for (auto& t : tri) {
    const double area2 =
        (x[t[1]] - x[t[0]]) * (y[t[2]] - y[t[0]]) - (x[t[2]] - x[t[0]]) * (y[t[1]] - y[t[0]]);
    if (area2 < 0) std::swap(t[1], t[2]);
  }
  const std::unordered_map<uint64_t, int> on_curve = Match_Curves(&x, &y, tri, curves);
  m.x = x;
  m.y = y;
  m.curves = std::move(curves);
  std::unordered_map<uint64_t, int> uses;
  for (const auto& t : tri) {
    for (int i = 0; i < 3; ++i) ++uses[Edge_Key(t[i], t[(i + 1) % 3])];
  }
  std::unordered_map<uint64_t, int32_t> middle;
  for (auto t : tri) {
    const double area2 =
        (x[t[1]] - x[t[0]]) * (y[t[2]] - y[t[0]]) - (x[t[2]] - x[t[0]]) * (y[t[1]] - y[t[0]]);
    if (area2 < 0) std::swap(t[1], t[2]);
    std::array<int32_t, 6> e{t[0], t[1], t[2], 0, 0, 0};
    for (int i = 0; i < 3; ++i) {
      const int32_t a = t[i], b = t[(i + 1) % 3];
      const uint64_t key = Edge_Key(a, b);
      auto [it, fresh] = middle.try_emplace(key, static_cast<int32_t>(m.x.size()));
      if (fresh) {
        double mx = 0.5 * (x[a] + x[b]), my = 0.5 * (y[a] + y[b]);
        if (uses[key] == 1) {
          auto c = on_curve.find(key);
          const int curve = c == on_curve.end() ? -1 : c->second;
          m.edge_curve[key] = curve;
          if (curve >= 0) Curved_Middle(m.curves[curve], x[a], y[a], x[b], y[b], &mx, &my);
        }
        m.x.push_back(mx);
        m.y.push_back(my);
      }
      e[3 + i] = it->second;
    }
    m.tri.push_back(e);
  }
  return m;
}

P2_Mesh Refine_P2_Mesh(const P2_Mesh& m) {
  P2_Mesh r;
  r.x = m.x;
  r.y = m.y;
  r.curves = m.curves;
  // Middles of curved edges become corners: onto their curve.
  for (const auto& t : m.tri) {
    for (int i = 0; i < 3; ++i) {
      auto pc = m.edge_curve.find(Edge_Key(t[i], t[(i + 1) % 3]));
      if (pc != m.edge_curve.end() && pc->second >= 0) {
        Project(r.curves[pc->second], &r.x[t[3 + i]], &r.y[t[3 + i]]);
      }
    }
  }
  // Children by parent node positions 0..5: three corner triangles and the middle one.
  constexpr int kChild[4][3] = {{0, 3, 5}, {3, 1, 4}, {5, 4, 2}, {3, 4, 5}};
  std::unordered_map<uint64_t, int32_t> middle;
  for (const auto& t : m.tri) {
    for (const auto& ch : kChild) {
      std::array<int32_t, 6> e{t[ch[0]], t[ch[1]], t[ch[2]], 0, 0, 0};
      for (int i = 0; i < 3; ++i) {
        const int pa = ch[i], pb = ch[(i + 1) % 3];
        const uint64_t key = Edge_Key(t[pa], t[pb]);
        auto [it, fresh] = middle.try_emplace(key, static_cast<int32_t>(r.x.size()));
        if (fresh) {
          double mx = 0, my = 0;
          Map_Point(m, t, 0.5 * (kRef[pa][0] + kRef[pb][0]), 0.5 * (kRef[pa][1] + kRef[pb][1]), &mx,
                    &my);
          // A half of a parent's boundary edge keeps the parent's curve.
          const int corner = pa < 3 ? pa : pb;  // the parent corner of a half edge
          const int mid = pa < 3 ? pb : pa;
          if (corner < 3 && mid >= 3) {
            const int other = mid == 3 ? (corner == 0 ? 1 : 0)
                                       : (mid == 4 ? (corner == 1 ? 2 : 1) : (corner == 2 ? 0 : 2));
            auto pc = m.edge_curve.find(Edge_Key(t[corner], t[other]));
            if (pc != m.edge_curve.end()) {
              r.edge_curve[key] = pc->second;
              if (pc->second >= 0) {
                Curved_Middle(r.curves[pc->second], r.x[t[pa]], r.y[t[pa]], r.x[t[pb]], r.y[t[pb]],
                              &mx, &my);
              }
            }
          }
          r.x.push_back(mx);
          r.y.push_back(my);
        }
        e[3 + i] = it->second;
      }
      r.tri.push_back(e);
    }
  }
  return r;
}

std::vector<P2_Loop> Boundary_Loops(const P2_Mesh& m, std::vector<int32_t>* component,
                                    int* component_count) {
  // Components by union-find over the elements.
  std::vector<int32_t> parent(m.x.size());
  std::iota(parent.begin(), parent.end(), 0);
  auto find = [&](int32_t a) {
    while (parent[a] != a) a = parent[a] = parent[parent[a]];
    return a;
  };
  for (const auto& t : m.tri) {
    for (int i = 1; i < 6; ++i) parent[find(t[i])] = find(t[0]);
  }
  component->assign(m.x.size(), -1);
  std::unordered_map<int32_t, int32_t> ids;
  for (const auto& t : m.tri) {
    for (int32_t v : t) {
      auto [it, fresh] = ids.try_emplace(find(v), static_cast<int32_t>(ids.size()));
      (*component)[v] = it->second;
    }
  }
  *component_count = static_cast<int>(ids.size());
  // Boundary edges, directed as their element travels them (counter-clockwise).
  std::unordered_map<uint64_t, int> uses;
  for (const auto& t : m.tri) {
    for (int i = 0; i < 3; ++i) ++uses[Edge_Key(t[i], t[(i + 1) % 3])];
  }
  std::unordered_map<int32_t, std::pair<int32_t, int32_t>> next;  // start -> (middle, end)
  for (const auto& t : m.tri) {
    for (int i = 0; i < 3; ++i) {
      if (uses[Edge_Key(t[i], t[(i + 1) % 3])] == 1) next[t[i]] = {t[3 + i], t[(i + 1) % 3]};
    }
  }
  std::vector<P2_Loop> loops;
  std::vector<double> best(ids.size(), -1.0);
  std::vector<int> best_loop(ids.size(), -1);
  while (!next.empty()) {
    P2_Loop loop;
    int32_t v = next.begin()->first;
    double twice = 0.0;
    while (true) {
      auto it = next.find(v);
      if (it == next.end()) break;
      const auto [mid, end] = it->second;
      next.erase(it);
      loop.nodes.push_back(v);
      loop.nodes.push_back(mid);
      // Twice the area swept by the parabola v - mid - end about the origin:
      // the chord's part plus -4/3 (end - v) x (mid - chord middle).
      const double ax = m.x[v], ay = m.y[v], bx = m.x[end], by = m.y[end];
      const double ux = bx - ax, uy = by - ay;
      const double dx = m.x[mid] - 0.5 * (ax + bx), dy = m.y[mid] - 0.5 * (ay + by);
      twice += (ax * by - bx * ay) - 4.0 / 3.0 * (ux * dy - uy * dx);
      v = end;
    }
    loop.area = std::fabs(0.5 * twice);
    const int c = (*component)[loop.nodes[0]];
    if (loop.area > best[c]) {
      best[c] = loop.area;
      best_loop[c] = static_cast<int>(loops.size());
    }
    loops.push_back(std::move(loop));
  }
  for (int l : best_loop) {
    if (l >= 0) loops[l].outer = true;
  }
  return loops;
}

namespace {

// Longest-edge bisection of a 6-node mesh in place. Every edge is known by
// its corner pair with its middle node and the (at most two) elements on it.
class Bisector {
 public:
  explicit Bisector(P2_Mesh* mesh) : m_(*mesh) {
    for (int32_t e = 0; e < static_cast<int32_t>(m_.tri.size()); ++e) {
      const auto& t = m_.tri[e];
      for (int i = 0; i < 3; ++i) {
        const uint64_t key = Edge_Key(t[i], t[(i + 1) % 3]);
        middle_[key] = t[3 + i];
        Add_Owner(key, e);
      }
    }
    level_.assign(m_.tri.size(), 0);
    cut_.assign(m_.tri.size(), -1);
    if (m_.cut.size() == m_.tri.size()) cut_.assign(m_.cut.begin(), m_.cut.end());
    origin_.resize(m_.tri.size());
    std::iota(origin_.begin(), origin_.end(), 0);
  }

  int Level(int32_t e) const { return level_[e]; }
  // Each element's cut edge into the mesh, for the next refinement.
  void Keep_Cuts() { m_.cut.assign(cut_.begin(), cut_.end()); }
  // The element of the starting mesh that e is part of.
  int32_t Origin(int32_t e) const { return origin_[e]; }

  // Bisects element e across its longest edge; first the neighbour across
  // that edge as often as it takes for the edge to be the neighbour's
  // longest too (the chain ends: the longest edge grows along it).
  void Refine(int32_t e) {
    std::vector<int32_t> chain{e};
    while (!chain.empty()) {
      const int32_t t = chain.back();
      const int i = Longest(t);
      const uint64_t key = Edge_Key(m_.tri[t][i], m_.tri[t][(i + 1) % 3]);
      const int32_t n = Other_Owner(key, t);
      int j = n >= 0 ? Longest(n) : 0;
      if (n >= 0 && Edge_Key(m_.tri[n][j], m_.tri[n][(j + 1) % 3]) != key) {
        if (std::find(chain.begin(), chain.end(), n) == chain.end()) {
          chain.push_back(n);
          continue;
        }
        // A loop of equally long edges: the neighbour is bisected across
        // the shared edge instead of its own longest.
        for (j = 0; Edge_Key(m_.tri[n][j], m_.tri[n][(j + 1) % 3]) != key; ++j) {
        }
      }
      Bisect(t, i);
      if (n >= 0) Bisect(n, j);
      chain.pop_back();
    }
  }

 private:
  void Add_Owner(uint64_t key, int32_t e) {
    auto [it, fresh] = owners_.try_emplace(key, std::array<int32_t, 2>{e, -1});
    if (!fresh) it->second[1] = e;
  }
  void Replace_Owner(uint64_t key, int32_t from, int32_t to) {
    auto& o = owners_[key];
    for (int32_t& v : o) {
      if (v == from) v = to;
    }
  }
  int32_t Other_Owner(uint64_t key, int32_t e) const {
    const auto& o = owners_.at(key);
    return o[0] == e ? o[1] : o[0];
  }
  // The local index of the longest edge. Of edges equally long (to
  // rounding) the one not made by the element's own bisection is taken,
  // then the one of the larger key: a choice that mirror images of an
  // element make alike, as long as their histories are alike.
  int Longest(int32_t e) const {
    const auto& t = m_.tri[e];
    double l[3];
    for (int i = 0; i < 3; ++i) {
      const int32_t a = t[i], b = t[(i + 1) % 3];
      l[i] = (m_.x[a] - m_.x[b]) * (m_.x[a] - m_.x[b]) + (m_.y[a] - m_.y[b]) * (m_.y[a] - m_.y[b]);
    }
    const double longest = std::max({l[0], l[1], l[2]});
    int best = -1;
    for (int i = 0; i < 3; ++i) {
      if (l[i] < longest * (1 - 1e-9)) continue;
      if (best < 0 || (best == cut_[e] && i != cut_[e]) ||
          ((i == cut_[e]) == (best == cut_[e]) &&
           Edge_Key(t[i], t[(i + 1) % 3]) > Edge_Key(t[best], t[(best + 1) % 3]))) {
        best = i;
      }
    }
    return best;
  }
  // The middle node of edge a-b: the existing one, else a new one at
  // (x, y).
  int32_t Middle(int32_t a, int32_t b, double x, double y) {
    auto [it, fresh] = middle_.try_emplace(Edge_Key(a, b), static_cast<int32_t>(m_.x.size()));
    if (fresh) {
      m_.x.push_back(x);
      m_.y.push_back(y);
    }
    return it->second;
  }
  // Splits element e across its local edge i (corners a, b, middle m,
  // opposite corner c) into (a, m, c), kept at e, and (m, b, c), appended.
  void Bisect(int32_t e, int i) {
    const std::array<int32_t, 6> t = m_.tri[e];
    const int ia = i, ib = (i + 1) % 3, ic = (i + 2) % 3;
    const int32_t a = t[ia], b = t[ib], c = t[ic], mid = t[3 + ia];
    const int32_t mbc = t[3 + ib], mca = t[3 + ic];
    const double rm[2] = {0.5 * (kRef[ia][0] + kRef[ib][0]), 0.5 * (kRef[ia][1] + kRef[ib][1])};
    double px[3], py[3];  // a-m, m-b, m-c halves by the parent's map
    Map_Point(m_, t, 0.5 * (kRef[ia][0] + rm[0]), 0.5 * (kRef[ia][1] + rm[1]), &px[0], &py[0]);
    Map_Point(m_, t, 0.5 * (kRef[ib][0] + rm[0]), 0.5 * (kRef[ib][1] + rm[1]), &px[1], &py[1]);
    Map_Point(m_, t, 0.5 * (kRef[ic][0] + rm[0]), 0.5 * (kRef[ic][1] + rm[1]), &px[2], &py[2]);
    const uint64_t key = Edge_Key(a, b);
    auto pc = m_.edge_curve.find(key);
    if (pc != m_.edge_curve.end()) {
      const int curve = pc->second;
      m_.edge_curve.erase(pc);
      m_.edge_curve[Edge_Key(a, mid)] = curve;
      m_.edge_curve[Edge_Key(mid, b)] = curve;
      if (curve >= 0) {
        const Warping_Curve& k = m_.curves[curve];
        Project(k, &m_.x[mid], &m_.y[mid]);
        Curved_Middle(k, m_.x[a], m_.y[a], m_.x[mid], m_.y[mid], &px[0], &py[0]);
        Curved_Middle(k, m_.x[mid], m_.y[mid], m_.x[b], m_.y[b], &px[1], &py[1]);
      }
    }
    const int32_t n_am = Middle(a, mid, px[0], py[0]);
    const int32_t n_mb = Middle(mid, b, px[1], py[1]);
    const int32_t n_mc = Middle(mid, c, px[2], py[2]);
    const int32_t f = static_cast<int32_t>(m_.tri.size());
    m_.tri[e] = {a, mid, c, n_am, n_mc, mca};
    m_.tri.push_back({mid, b, c, n_mb, mbc, n_mc});
    level_[e] += 1;
    level_.push_back(level_[e]);
    origin_.push_back(origin_[e]);
    cut_[e] = 1;        // m-c in (a, m, c)
    cut_.push_back(2);  // c-m in (m, b, c)
    auto& o = owners_[key];
    for (int32_t& v : o) {
      if (v == e) v = -1;
    }
    if (o[0] < 0 && o[1] < 0) owners_.erase(key);
    Add_Owner(Edge_Key(a, mid), e);
    Add_Owner(Edge_Key(mid, b), f);
    Add_Owner(Edge_Key(mid, c), e);
    Add_Owner(Edge_Key(mid, c), f);
    Replace_Owner(Edge_Key(b, c), e, f);
  }

  P2_Mesh& m_;
  std::unordered_map<uint64_t, int32_t> middle_;
  std::unordered_map<uint64_t, std::array<int32_t, 2>> owners_;
  std::vector<int> level_;  // bisections since the start, per element
  std::vector<int32_t> origin_;
  std::vector<int> cut_;  // local edge made by the element's bisection, -1 for none
};

}  // namespace

P2_Mesh Bisect_P2_Mesh(const P2_Mesh& mesh, const std::vector<char>& marked) {
  P2_Mesh r = mesh;
  Bisector b(&r);
  const size_t count = mesh.tri.size();
  for (int pass = 1; pass <= 2; ++pass) {
    // The marked elements and (second pass) their halves; one already split
    // by a neighbour's propagation counts as done for the pass.
    const int32_t start = static_cast<int32_t>(r.tri.size());
    for (int32_t e = 0; e < start; ++e) {
      const auto o = static_cast<size_t>(b.Origin(e));
      if (o < count && o < marked.size() && marked[o] && b.Level(e) < pass) b.Refine(e);
    }
  }
  b.Keep_Cuts();
  return r;
}
