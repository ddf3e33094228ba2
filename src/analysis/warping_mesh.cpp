// Building, refining and walking the boundary of 6-node triangle meshes.
#include "analysis/warping_mesh.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include "contour/outline.h"
#include "platform/locked.h"

namespace {

uint64_t Edge_Key(int32_t a, int32_t b) {
  if (a > b) std::swap(a, b);
  return (static_cast<uint64_t>(static_cast<uint32_t>(a)) << 32) | static_cast<uint32_t>(b);
}

// The point of the curve nearest (x, y) when both ends (ax, ay), (bx, by) lie
// on it; false otherwise.
bool On_Curve(const Warping_Curve& c, double ax, double ay, double bx, double by) {
  const double tol = 1e-9 * std::max(1.0, c.r);
  auto on = [&](double x, double y) {
    if (std::fabs(std::hypot(x - c.xc, y - c.yc) - c.r) > tol) return false;
    if (c.sweep >= 2 * std::numbers::pi) return true;
    double t = std::atan2(y - c.yc, x - c.xc) - c.a1;
    t -= 2 * std::numbers::pi * std::floor(t / (2 * std::numbers::pi));
    return t <= c.sweep + 1e-9 || t >= 2 * std::numbers::pi - 1e-9;
  };
  return on(ax, ay) && on(bx, by);
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
          out.push_back({e.u.circle.xc, e.u.circle.yc, e.u.circle.r, 0.0, 2 * std::numbers::pi});
        } else if (e.type == EL_ARC) {
          double middle = 0, sweep = 0;
          Arc_Middle(e.u.arc.a1, e.u.arc.a2, &middle, &sweep);
          out.push_back({e.u.arc.xc, e.u.arc.yc, e.u.arc.r, middle - sweep * 0.5, sweep});
        }
      }
    }
  }
  return out;
}

P2_Mesh Build_P2_Mesh(const std::vector<double>& x, const std::vector<double>& y,
                      const std::vector<std::array<int32_t, 3>>& tri,
                      std::vector<Warping_Curve> curves) {
  P2_Mesh m;
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
          int curve = -1;
          for (size_t c = 0; c < m.curves.size() && curve < 0; ++c) {
            if (On_Curve(m.curves[c], x[a], y[a], x[b], y[b])) curve = static_cast<int>(c);
          }
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
