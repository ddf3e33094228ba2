// The split by the finite-element mesher: the contours sampled into nodes
// about h apart, the mesher's triangles taken over and renumbered.
#include <algorithm>
#include <cmath>
#include <new>
#include <unordered_map>

#include "analysis/split_contours.h"
#include "analysis/split_internal.h"
#include "contour/lists.h"
#include "geometry/angles.h"
#include "platform/mesher.h"
#include "tessaline/platform/framework.h"
#include "tessaline/platform/memory.h"

namespace {

constexpr double kMax_Samples = 1 << 22;

using Node_Array = CArray<FEPOINT, FEPOINT&>;

class Sampler {
 public:
  Sampler(double h, double max_angle, Node_Array* nodes, double* budget)
      : h_(h), max_angle_(max_angle), nodes_(nodes), budget_(budget) {}

  // Adds the node unless its squared distance to the node before it is not
  // greater than h * 0.001 (a squared length against a length: the rule the
  // splits have always used to drop the joins between elements).
  void Node(double x, double y, uint8_t flag) {
    int n = nodes_->GetSize();
    if (n > 0) {
      const FEPOINT& p = nodes_->GetAt(n - 1);
      double dx = x - p.x, dy = y - p.y;
      if (dx * dx + dy * dy <= h_ * 0.001) return;
    }
    FEPOINT f{x, y, flag};
    nodes_->Add(f);
  }
  // Pieces of about h along a length, and for an arc turning by `turn`
  // radians at most max_angle each when that is set; false when the
  // sampling grows too big.
  bool Pieces(double length, int* n, double turn = 0.0) {
    double pieces = std::ceil(length / h_);
    if (max_angle_ > 0) pieces = std::max({pieces, std::ceil(turn / max_angle_), 2.0});
    if (!(pieces <= *budget_)) return false;
    *budget_ -= pieces;
    *n = pieces < 1 ? 1 : static_cast<int>(pieces);
    return true;
  }

 private:
  double h_;
  double max_angle_;
  Node_Array* nodes_;
  double* budget_;
};

// A segment or an arc from its start (included) towards its end (left to
// the next element), the start being its first end unless reversed.
bool Sample_Element(const Element_Record& r, bool reversed, uint8_t flag, Sampler* s) {
  int n = 0;
  if (r.type == EL_SEGMENT) {
    const auto& g = r.u.seg;
    double ax = reversed ? g.x2 : g.x1, ay = reversed ? g.y2 : g.y1;
    double bx = reversed ? g.x1 : g.x2, by = reversed ? g.y1 : g.y2;
    if (!s->Pieces(std::hypot(bx - ax, by - ay), &n)) return false;
    s->Node(ax, ay, flag);
    for (int k = 1; k < n; ++k) {
      double t = static_cast<double>(k) / n;
      s->Node(ax + (bx - ax) * t, ay + (by - ay) * t, flag);
    }
  } else if (r.type == EL_ARC) {
    const auto& g = r.u.arc;
    double span = Normalize_Angle(g.a2 - g.a1);
    if (span <= 0) span = 2 * kPi;
    if (!s->Pieces(g.r * span, &n, span)) return false;
    s->Node(reversed ? g.x2 : g.x1, reversed ? g.y2 : g.y1, flag);
    for (int k = 1; k < n; ++k) {
      double a = reversed ? g.a2 - span * k / n : g.a1 + span * k / n;
      s->Node(g.xc + g.r * std::cos(a), g.yc + g.r * std::sin(a), flag);
    }
  } else if (r.type == EL_CIRCLE) {
    const auto& g = r.u.circle;
    if (!s->Pieces(2 * kPi * g.r, &n, 2 * kPi)) return false;
    n = n < 3 ? 3 : n;  // three nodes at least, or the circle encloses nothing
    for (int k = 0; k < n; ++k) {
      double a = 2 * kPi * k / n;
      s->Node(g.xc + g.r * std::cos(a), g.yc + g.r * std::sin(a), flag);
    }
  }
  return true;
}

double Sq_Distance(double ax, double ay, double bx, double by) {
  return (ax - bx) * (ax - bx) + (ay - by) * (ay - by);
}

// The contour's nodes in its order of travel. Each element runs from the
// end nearer the previous element's far end; the first from the end that
// its successor does not touch.
bool Sample_Contour(const Split_Contour& c, double h, double max_arc_angle, double* budget,
                    Node_Array* nodes) {
  Sampler s(h, max_arc_angle, nodes, budget);
  double cx = 0, cy = 0;  // where the travel stands
  for (size_t i = 0; i < c.elements.size(); ++i) {
    const Element_Record& r = c.elements[i];
    double e[4];
    bool reversed = false;
    if (Contour_Ends(r, e)) {
      if (i == 0 && c.elements.size() > 1) {
        double n[4];
        if (Contour_Ends(c.elements[1], n)) {
          double to_first =
              std::min(Sq_Distance(e[0], e[1], n[0], n[1]), Sq_Distance(e[0], e[1], n[2], n[3]));
          double to_second =
              std::min(Sq_Distance(e[2], e[3], n[0], n[1]), Sq_Distance(e[2], e[3], n[2], n[3]));
          reversed = to_first < to_second;
        }
      } else if (i > 0) {
        reversed = Sq_Distance(e[2], e[3], cx, cy) < Sq_Distance(e[0], e[1], cx, cy);
      }
      cx = reversed ? e[0] : e[2];
      cy = reversed ? e[1] : e[3];
    }
    if (!Sample_Element(r, reversed, c.flag, &s)) return false;
  }
  // The closing node must not repeat the first.
  int n = nodes->GetSize();
  if (n > 1) {
    const FEPOINT& a = nodes->GetAt(0);
    const FEPOINT& b = nodes->GetAt(n - 1);
    if (Sq_Distance(a.x, a.y, b.x, b.y) <= h * 0.001) nodes->RemoveAt(n - 1);
  }
  return true;
}

// The mesher's lists as a mesh: nodes in list order, each element's corners
// numbered by their positions in the node list.
bool Take_Mesh(const CMeshNodeList& nodes, const CMeshElementList& elements, Split_Mesh* mesh) {
  std::unordered_map<const CMeshNode*, int> number;
  number.reserve(static_cast<size_t>(nodes.GetCount()));
  for (const CMeshNode* n = nodes.GetHead(); n; n = n->next) {
    number.emplace(n, static_cast<int>(mesh->nodes.size()));
    mesh->nodes.push_back(FEPOINT{n->x, n->y, n->flag});
  }
  for (const CMeshElement* e = elements.GetHead(); e; e = e->GetNext()) {
    FE3Ang t;
    for (int i = 0; i < 3; ++i) {
      auto it = number.find(e->GetNode(i));
      if (it == number.end()) return false;
      t.n[i] = it->second;
    }
    mesh->triangles.push_back(t);
  }
  return !mesh->nodes.empty() && !mesh->triangles.empty();
}

}  // namespace

int Mesh_Surface(Surface_Type* surface, HWND window, double h, bool renumber, Split_Mesh* mesh,
                 double max_arc_angle) {
  std::vector<Split_Contour> contours;
  int outer_count = 0;
  if (!Read_Split_Contours(surface, &contours, &outer_count) || outer_count == 0) return 0;
  std::vector<Node_Array> sampled(contours.size());
  double budget = kMax_Samples;
  for (size_t c = 0; c < contours.size(); ++c) {
    if (!Sample_Contour(contours[c], h, max_arc_angle, &budget, &sampled[c])) return 0;
  }
  std::vector<std::vector<double>> x(contours.size()), y(contours.size());
  std::vector<const double*> xs, ys;
  std::vector<int> counts;
  for (size_t c = 0; c < contours.size(); ++c) {
    for (int i = 0; i < sampled[c].GetSize(); ++i) {
      x[c].push_back(sampled[c][i].x);
      y[c].push_back(sampled[c][i].y);
    }
    counts.push_back(sampled[c].GetSize());
    xs.push_back(x[c].data());
    ys.push_back(y[c].data());
  }
  CMeshNodeList node_list;
  CMeshElementList element_list;
  int node_count = 0, element_count = 0;
  // The mesher's defaults (angle bound, node bound, reserved word), then
  // how many of the contours are outer ones: 1 for a section in one piece;
  // a surface of several pieces passes all its outer contours, so that
  // their nodes are flagged 1 too.
  if (!GetFinalElementsForArea(static_cast<int>(contours.size()), counts.data(), xs.data(),
                               ys.data(), h, 0, 0, 0, outer_count, &node_list, &element_list,
                               &node_count, &element_count, window))
    return 0;
  if (!Take_Mesh(node_list, element_list, mesh)) return 0;
  Orient_CCW(mesh);
  if (renumber) Renumber_RCM(mesh);
  return 1;
}

namespace {

// The mesher split into the record's blocks (its earlier blocks freed).
int Split_Into(Surface_Type* surface, FE_Split* split, int* node_count, HGLOBAL* triangles,
               int* triangle_count, HWND window, double h, double max_arc_angle) {
  if (!surface || !split || !node_count || !triangles || !triangle_count) return 0;
  if (split->nodes) GlobalFree(split->nodes);
  if (*triangles) GlobalFree(*triangles);
  split->nodes = *triangles = 0;
  *node_count = *triangle_count = 0;
  if (!std::isfinite(h) || h <= 0) return 0;
  try {
    Split_Mesh mesh;
    if (!Mesh_Surface(surface, window, h, true, &mesh, max_arc_angle)) return 0;
    HGLOBAL n = New_FE_Node_Block(mesh.nodes);
    HGLOBAL t = New_FE_Triangle_Block(mesh.triangles);
    if (!n || !t) {
      if (n) GlobalFree(n);
      if (t) GlobalFree(t);
      return 0;
    }
    split->nodes = n;
    *node_count = static_cast<int>(mesh.nodes.size());
    *triangles = t;
    *triangle_count = static_cast<int>(mesh.triangles.size());
    return 1;
  } catch (const std::bad_alloc&) {
    return 0;
  } catch (const std::out_of_range&) {
    return 0;
  }
}

}  // namespace

int Split_Surface_By_Mesher(Surface_Type* surface, FE_Split* split, int* node_count,
                            HGLOBAL* triangles, int* triangle_count, HWND window, double h) {
  return Split_Into(surface, split, node_count, triangles, triangle_count, window, h, 0.0);
}

int Split_Surface_For_Torsion(Surface_Type* surface, FE_Split* split, double h,
                              double max_arc_angle) {
  if (!split || !(max_arc_angle > 0)) return 0;
  return Split_Into(surface, split, &split->node_count, &split->triangles, &split->triangle_count,
                    nullptr, h, max_arc_angle);
}
