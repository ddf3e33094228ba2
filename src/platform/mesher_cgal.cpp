// The mesher entry over CGAL's constrained Delaunay triangulation and
// Delaunay mesher. The only translation unit that includes CGAL; built
// without it (TESSALINE_WITH_CGAL off, or CGAL not found) the entry reports
// failure and the callers fall back on the grid split.
#include <cmath>
#include <cstdint>

#include "platform/mesher.h"

#if TESSALINE_HAVE_CGAL

#include <CGAL/Constrained_Delaunay_triangulation_2.h>
#include <CGAL/Delaunay_mesh_face_base_2.h>
#include <CGAL/Delaunay_mesh_size_criteria_2.h>
#include <CGAL/Delaunay_mesher_2.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/Triangulation_face_base_with_info_2.h>
#include <CGAL/Triangulation_vertex_base_with_info_2.h>

#include <algorithm>
#include <deque>
#include <exception>
#include <vector>

namespace {

struct Vertex_Tag {
  int contour = -1;           // the input polygon the vertex lies on; -1 inner
  CMeshNode* node = nullptr;  // its node in the output list
};

using K = CGAL::Exact_predicates_inexact_constructions_kernel;
using Vb = CGAL::Triangulation_vertex_base_with_info_2<Vertex_Tag, K>;
// A face's info is the pass number of the last domain marking that reached it.
using Fb = CGAL::Triangulation_face_base_with_info_2<int, K, CGAL::Delaunay_mesh_face_base_2<K>>;
using Tds = CGAL::Triangulation_data_structure_2<Vb, Fb>;
// Exact_predicates_tag: crossing contours (bad input) are split where they
// cross instead of stopping the triangulation.
using CDT = CGAL::Constrained_Delaunay_triangulation_2<K, Tds, CGAL::Exact_predicates_tag>;
using Criteria = CGAL::Delaunay_mesh_size_criteria_2<CDT>;
using Mesher = CGAL::Delaunay_mesher_2<CDT, Criteria>;
using Face_handle = CDT::Face_handle;
using Vertex_handle = CDT::Vertex_handle;

// The polygon that a constrained edge belongs to: that of its ends, the
// first end's when they differ.
int Edge_Contour(Face_handle f, int i) {
  int a = f->vertex(CDT::cw(i))->info().contour;
  int b = f->vertex(CDT::ccw(i))->info().contour;
  return a >= 0 ? a : b;
}

// Marks the faces inside an odd number of outer contours and an even number
// of holes as the domain: regions are flooded from the infinite face, and
// crossing a constrained edge counts one more outer contour or hole.
void Mark_Domain(CDT& cdt, int outer_count, int pass) {
  struct Depth {
    Face_handle face;
    int outer, holes;
  };
  auto seen = [pass](Face_handle f) { return f->info() == pass; };
  std::deque<Depth> border{{cdt.infinite_face(), 0, 0}};
  std::vector<Face_handle> flood;
  while (!border.empty()) {
    Depth d = border.front();
    border.pop_front();
    if (seen(d.face)) continue;
    d.face->info() = pass;
    bool inside = d.outer % 2 == 1 && d.holes % 2 == 0;
    flood.assign(1, d.face);
    while (!flood.empty()) {
      Face_handle f = flood.back();
      flood.pop_back();
      f->set_in_domain(inside);
      for (int i = 0; i < 3; ++i) {
        Face_handle n = f->neighbor(i);
        if (seen(n)) continue;
        if (f->is_constrained(i)) {
          bool outer = Edge_Contour(f, i) < outer_count;
          border.push_back({n, d.outer + (outer ? 1 : 0), d.holes + (outer ? 0 : 1)});
        } else {
          n->info() = pass;
          flood.push_back(n);
        }
      }
    }
  }
}

// The contour edges filed into square buckets of side `size`, to find
// those near a point.
class Edge_Buckets {
 public:
  Edge_Buckets(int contours, const int* counts, const double* const* xs, const double* const* ys,
               double size)
      : size_(size) {
    for (int c = 0; c < contours; ++c) {
      for (int i = 0; i < counts[c]; ++i) {
        x0_ = std::min(x0_, xs[c][i]), y0_ = std::min(y0_, ys[c][i]);
        x1_ = std::max(x1_, xs[c][i]), y1_ = std::max(y1_, ys[c][i]);
      }
    }
    nx_ = static_cast<long long>((x1_ - x0_) / size) + 1;
    ny_ = static_cast<long long>((y1_ - y0_) / size) + 1;
    if (nx_ * ny_ > (1LL << 24)) return;  // too fine to file: no seeds
    buckets_.resize(static_cast<size_t>(nx_ * ny_));
    for (int c = 0; c < contours; ++c) {
      for (int i = 0; i < counts[c]; ++i) {
        int j = (i + 1) % counts[c];
        Edge e{xs[c][i], ys[c][i], xs[c][j], ys[c][j]};
        long long bx0 = Col(std::min(e.ax, e.bx)), bx1 = Col(std::max(e.ax, e.bx));
        long long by0 = Row(std::min(e.ay, e.by)), by1 = Row(std::max(e.ay, e.by));
        for (long long bx = bx0; bx <= bx1; ++bx) {
          for (long long by = by0; by <= by1; ++by) buckets_[by * nx_ + bx].push_back(e);
        }
      }
    }
  }
  bool usable() const { return !buckets_.empty(); }
  // Whether some contour edge passes nearer than `size` to (x, y).
  bool Near(double x, double y) const {
    long long cx = Col(x), cy = Row(y);
    for (long long bx = std::max(0LL, cx - 1); bx <= std::min(nx_ - 1, cx + 1); ++bx) {
      for (long long by = std::max(0LL, cy - 1); by <= std::min(ny_ - 1, cy + 1); ++by) {
        for (const Edge& e : buckets_[by * nx_ + bx]) {
          if (Sq_Distance(e, x, y) < size_ * size_) return true;
        }
      }
    }
    return false;
  }
  double x0() const { return x0_; }
  double y0() const { return y0_; }
  double x1() const { return x1_; }
  double y1() const { return y1_; }

 private:
  struct Edge {
    double ax, ay, bx, by;
  };
  static double Sq_Distance(const Edge& e, double x, double y) {
    double dx = e.bx - e.ax, dy = e.by - e.ay, l = dx * dx + dy * dy;
    double t = l > 0 ? ((x - e.ax) * dx + (y - e.ay) * dy) / l : 0;
    t = std::clamp(t, 0.0, 1.0);
    double px = e.ax + t * dx - x, py = e.ay + t * dy - y;
    return px * px + py * py;
  }
  long long Col(double x) const {
    return std::clamp(static_cast<long long>((x - x0_) / size_), 0LL, nx_ - 1);
  }
  long long Row(double y) const {
    return std::clamp(static_cast<long long>((y - y0_) / size_), 0LL, ny_ - 1);
  }

  double size_;
  double x0_ = INFINITY, y0_ = INFINITY, x1_ = -INFINITY, y1_ = -INFINITY;
  long long nx_ = 0, ny_ = 0;
  std::vector<std::vector<Edge>> buckets_;
};

// Points of a triangular lattice of spacing s inside the domain and at
// least s/2 from every contour edge (so no contour edge of length up to s
// is encroached): inserted at once, they leave refinement only the bands
// along the contours, where it is slow per point.
std::vector<K::Point_2> Lattice_Seeds(const CDT& cdt, const Edge_Buckets& edges, double s,
                                      long long most) {
  std::vector<K::Point_2> seeds;
  double row = s * std::sqrt(3.0) / 2;
  Face_handle hint;
  long long rows = static_cast<long long>((edges.y1() - edges.y0()) / row);
  for (long long r = 1; r <= rows; ++r) {
    double y = edges.y0() + static_cast<double>(r) * row;
    double x = edges.x0() + (r % 2 ? s / 2 : s);
    for (; x < edges.x1(); x += s) {
      if (edges.Near(x, y)) continue;
      K::Point_2 p(x, y);
      hint = cdt.locate(p, hint);
      if (cdt.is_infinite(hint) || !hint->is_in_domain()) continue;
      seeds.push_back(p);
      if (static_cast<long long>(seeds.size()) > most) return {};
    }
  }
  return seeds;
}

// Nodes that refinement put on contour edges take the polygon of the
// constrained edges they lie on, passed along those edges from the input.
void Tag_Contour_Steiner_Points(CDT& cdt) {
  std::vector<Vertex_handle> queue;
  for (Vertex_handle v : cdt.finite_vertex_handles()) {
    if (v->info().contour >= 0) queue.push_back(v);
  }
  while (!queue.empty()) {
    Vertex_handle v = queue.back();
    queue.pop_back();
    CDT::Edge_circulator e = cdt.incident_edges(v), done = e;
    if (e == nullptr) continue;
    do {
      if (cdt.is_infinite(*e) || !cdt.is_constrained(*e)) continue;
      Vertex_handle a = e->first->vertex(CDT::cw(e->second));
      Vertex_handle w = a == v ? e->first->vertex(CDT::ccw(e->second)) : a;
      if (w->info().contour < 0) {
        w->info().contour = v->info().contour;
        queue.push_back(w);
      }
    } while (++e != done);
  }
}

uint8_t Contour_Flag(int contour, int outer_count) {
  if (contour < 0) return 0;
  if (contour < outer_count) return 1;
  int flag = 2 + contour - outer_count;
  return static_cast<uint8_t>(flag < 255 ? flag : 255);
}

bool Arguments_Valid(int contours, const int* counts, const double* const* xs,
                     const double* const* ys, double h, double angle_bound, int reserved) {
  if (contours <= 0 || !counts || !xs || !ys || reserved != 0) return false;
  if (!std::isfinite(h) || h <= 0 || !(angle_bound >= 0 && angle_bound <= 33)) return false;
  for (int c = 0; c < contours; ++c) {
    if (counts[c] < 3 || !xs[c] || !ys[c]) return false;
    for (int i = 0; i < counts[c]; ++i) {
      if (!std::isfinite(xs[c][i]) || !std::isfinite(ys[c][i])) return false;
    }
  }
  return true;
}

}  // namespace

bool Mesher_Available() {
  return true;
}

int GetFinalElementsForArea(int contours, const int* node_counts, const double* const* xs,
                            const double* const* ys, double h, double angle_bound, int max_nodes,
                            int reserved, int outer_count, CMeshNodeList* nodes,
                            CMeshElementList* elements, int* node_count, int* element_count,
                            HWND /*window*/) {
  if (!nodes || !elements || !node_count || !element_count) return 0;
  nodes->RemoveAll();
  elements->RemoveAll();
  *node_count = *element_count = 0;
  if (!Arguments_Valid(contours, node_counts, xs, ys, h, angle_bound, reserved)) return 0;
  try {
    CDT cdt;
    long long input = 0;
    for (int c = 0; c < contours; ++c) {
      std::vector<Vertex_handle> v;
      v.reserve(static_cast<size_t>(node_counts[c]));
      Face_handle hint;
      for (int i = 0; i < node_counts[c]; ++i) {
        Vertex_handle vh = cdt.insert(K::Point_2(xs[c][i], ys[c][i]), hint);
        if (vh->info().contour < 0) vh->info().contour = c;
        hint = vh->face();
        v.push_back(vh);
      }
      for (size_t i = 0; i < v.size(); ++i) {
        Vertex_handle a = v[i], b = v[(i + 1) % v.size()];
        if (a != b) cdt.insert_constraint(a, b);
      }
      input += node_counts[c];
    }
    if (cdt.dimension() < 2) return 0;
    for (Face_handle f : cdt.all_face_handles()) f->info() = 0;
    Mark_Domain(cdt, outer_count, 1);

    double area = 0;
    for (Face_handle f : cdt.finite_face_handles()) {
      if (f->is_in_domain()) area += std::fabs(CGAL::to_double(cdt.triangle(f).area()));
    }
    long long cap = max_nodes > 0 ? max_nodes
                                  : static_cast<long long>(std::min(16.0 * area / (h * h), 8e6)) +
                                        4 * input + 1024;
    cap = std::min<long long>(cap, 1LL << 23);

    Edge_Buckets edges(contours, node_counts, xs, ys, h / 2);
    if (edges.usable()) {
      std::vector<K::Point_2> seeds = Lattice_Seeds(cdt, edges, 0.9 * h, cap);
      if (!seeds.empty()) {
        cdt.insert(seeds.begin(), seeds.end());
        for (Face_handle f : cdt.all_face_handles()) f->info() = 0;
        Mark_Domain(cdt, outer_count, 1);
      }
    }

    double degrees = angle_bound > 0 ? angle_bound : 20.7;
    double sine = std::sin(degrees * M_PI / 180.0);
    Mesher mesher(cdt, Criteria(sine * sine, h));
    mesher.init(true);  // the domain is marked
    long long steps = 0;
    while (!mesher.is_refinement_done()) {
      mesher.step_by_step_refine_mesh();
      if ((++steps & 1023) == 0 && static_cast<long long>(cdt.number_of_vertices()) > cap) return 0;
    }
    if (static_cast<long long>(cdt.number_of_vertices()) > cap) return 0;
    Tag_Contour_Steiner_Points(cdt);

    for (Face_handle f : cdt.finite_face_handles()) {
      if (!f->is_in_domain()) continue;
      CMeshNode* corner[3];
      for (int i = 0; i < 3; ++i) {
        Vertex_Tag& tag = f->vertex(i)->info();
        if (!tag.node) {
          const K::Point_2& p = f->vertex(i)->point();
          tag.node = nodes->Add(p.x(), p.y(), Contour_Flag(tag.contour, outer_count));
        }
        corner[i] = tag.node;
      }
      elements->Add(corner[0], corner[1], corner[2]);  // CGAL's faces are counter-clockwise
    }
  } catch (const std::exception&) {
    nodes->RemoveAll();
    elements->RemoveAll();
    return 0;
  }
  *node_count = nodes->GetCount();
  *element_count = elements->GetCount();
  return 1;
}

#else  // built without CGAL

bool Mesher_Available() {
  return false;
}

int GetFinalElementsForArea(int, const int*, const double* const*, const double* const*, double,
                            double, int, int, int, CMeshNodeList* nodes, CMeshElementList* elements,
                            int* node_count, int* element_count, HWND) {
  if (nodes) nodes->RemoveAll();
  if (elements) elements->RemoveAll();
  if (node_count) *node_count = 0;
  if (element_count) *element_count = 0;
  return 0;
}

#endif
