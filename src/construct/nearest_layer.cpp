// Layered nearest searches: the same layer of two sets of layers is searched
// and the nearer answer is kept, the first set winning ties.
#include <algorithm>

#include "model/record.h"
#include "tessaline/construct/nearest.h"
#include "tessaline/geometry/vector.h"

namespace {

// The answer of a single-array search: handle (0: none), distance, node.
struct Found {
  HGLOBAL handle = 0;
  double distance = 0.0;
  double x = 0.0, y = 0.0;

  // First candidate sets it; a later one only when strictly nearer.
  void Offer(HGLOBAL h, double d, double px, double py) {
    if (!handle || d < distance) {
      handle = h;
      distance = d;
      x = px;
      y = py;
    }
  }
};

// Calls visit(record, handle) for each lockable element of the array.
template <class F>
void For_Each_Record(const Objects_Array_Type* array, F visit) {
  Array_Slots slots(array);
  for (size_t i = 0; i < slots.size(); ++i) {
    if (!slots[i]) continue;
    Locked_Element e(slots[i]);
    if (e) visit(*e, slots[i]);
  }
}

Found Nearest_Circle(const Objects_Array_Type* array, double x, double y, HGLOBAL excluded) {
  Found best;
  For_Each_Record(array, [&](const Element_Record& e, HGLOBAL h) {
    if (e.type != EL_CIRCLE || (excluded && h == excluded)) return;
    const auto& c = e.u.circle;
    best.Offer(h, SQDistance_Circle_Point(c.xc, c.yc, c.r, x, y), c.xc, c.yc);
  });
  return best;
}

Found Nearest_Point(const Objects_Array_Type* array, double x, double y, HGLOBAL excluded) {
  Found best;
  For_Each_Record(array, [&](const Element_Record& e, HGLOBAL h) {
    if (e.type != EL_POINT || (excluded && h == excluded)) return;
    const auto& p = e.u.point;
    best.Offer(h, Distance_2Points(p.x, p.y, x, y), p.x, p.y);
  });
  return best;
}

// Calls node(x, y) for each node of the record, in node order; with
// `centres`, the centre of a circle or an arc too (after an arc's ends).
template <class F>
void For_Each_Node(const Element_Record& e, bool centres, F node) {
  const auto& u = e.u;
  switch (e.type) {
    case EL_POINT:
      node(u.point.x, u.point.y);
      break;
    case EL_SEGMENT:
      node(u.seg.x1, u.seg.y1);
      node(u.seg.x2, u.seg.y2);
      break;
    case EL_CIRCLE:
      if (centres) node(u.circle.xc, u.circle.yc);
      break;
    case EL_ARC:
      node(u.arc.x1, u.arc.y1);
      node(u.arc.x2, u.arc.y2);
      if (centres) node(u.arc.xc, u.arc.yc);
      break;
    case EL_POLYLINE: {
      Locked<double> xy(u.poly.nodes);
      size_t n = std::min(static_cast<size_t>(std::max(u.poly.n, 0)), xy.count() / 2);
      for (size_t i = 0; i < n; ++i) node(xy[2 * i], xy[2 * i + 1]);
      break;
    }
    case EL_SPLINE: {
      Locked<double> xs(u.spline.x), ys(u.spline.y);
      size_t n = std::min({static_cast<size_t>(std::max(u.spline.n, 0)), xs.count(), ys.count()});
      for (size_t i = 0; i < n; ++i) node(xs[i], ys[i]);
      break;
    }
    default:
      break;
  }
}

Found Nearest_Node(const Objects_Array_Type* array, double x, double y, bool centres) {
  Found best;
  For_Each_Record(array, [&](const Element_Record& e, HGLOBAL h) {
    For_Each_Node(e, centres, [&](double px, double py) {
      best.Offer(h, SQDistance_2Points(px, py, x, y), px, py);
    });
  });
  return best;
}

// The layer of a set, or null for a null set or a negative layer.
const Objects_Array_Type* Layer(const Objects_Array_Type* set, int layer) {
  return set && layer >= 0 ? set + layer : nullptr;
}

// Runs the search on the layer of the second set, then of the first, and
// keeps the second set's answer only when it is strictly nearer.
template <class F>
Found In_Layer(const Objects_Array_Type* first, const Objects_Array_Type* second, int layer,
               F search) {
  const Objects_Array_Type* b = Layer(second, layer);
  const Objects_Array_Type* a = Layer(first, layer);
  Found in_b = b ? search(b) : Found{};
  Found in_a = a ? search(a) : Found{};
  if (in_b.handle && in_a.handle) return in_b.distance < in_a.distance ? in_b : in_a;
  return in_b.handle ? in_b : in_a;
}

// Writes the answer's distance (and node) when there is one; the outputs
// stay as they were when neither set has an element.
HGLOBAL Answer(const Found& f, double* distance, double* node_x = nullptr,
               double* node_y = nullptr) {
  if (!f.handle) return 0;
  if (distance) *distance = f.distance;
  if (node_x) *node_x = f.x;
  if (node_y) *node_y = f.y;
  return f.handle;
}

}  // namespace

HGLOBAL SQNearest_Circle_Point_In_Layer(const Objects_Array_Type* first,
                                        const Objects_Array_Type* second, int layer, double x,
                                        double y, double* sq_distance) {
  return SQNearest_Cir_P_In_Layer_Bes1(first, second, layer, x, y, 0, sq_distance);
}

HGLOBAL SQNearest_Cir_P_In_Layer_Bes1(const Objects_Array_Type* first,
                                      const Objects_Array_Type* second, int layer, double x,
                                      double y, HGLOBAL excluded, double* sq_distance) {
  Found f = In_Layer(first, second, layer, [&](const Objects_Array_Type* a) {
    return Nearest_Circle(a, x, y, excluded);
  });
  return Answer(f, sq_distance);
}

HGLOBAL SQNearest_El_Node_Point_In_Layer(const Objects_Array_Type* first,
                                         const Objects_Array_Type* second, int layer, double x,
                                         double y, double* node_x, double* node_y,
                                         double* sq_distance) {
  Found f = In_Layer(first, second, layer,
                     [&](const Objects_Array_Type* a) { return Nearest_Node(a, x, y, false); });
  return Answer(f, sq_distance, node_x, node_y);
}

HGLOBAL SQNear_El_Node_Point_In_Layer(const Objects_Array_Type* first,
                                      const Objects_Array_Type* second, int layer, double x,
                                      double y, double* node_x, double* node_y,
                                      double* sq_distance) {
  Found f = In_Layer(first, second, layer,
                     [&](const Objects_Array_Type* a) { return Nearest_Node(a, x, y, true); });
  return Answer(f, sq_distance, node_x, node_y);
}

HGLOBAL Nearest_Point_Point_In_Layer(const Objects_Array_Type* first,
                                     const Objects_Array_Type* second, int layer, double x,
                                     double y, double* distance) {
  return Nearest_Point_P_In_Layer_Bes1(first, second, layer, x, y, 0, distance);
}

HGLOBAL Nearest_Point_P_In_Layer_Bes1(const Objects_Array_Type* first,
                                      const Objects_Array_Type* second, int layer, double x,
                                      double y, HGLOBAL excluded, double* distance) {
  Found f = In_Layer(first, second, layer,
                     [&](const Objects_Array_Type* a) { return Nearest_Point(a, x, y, excluded); });
  return Answer(f, distance);
}
