// Element constructors: each allocates a zero-filled record, writes the type
// and the geometry and marks the element (or each node) as ordinary.
#include <algorithm>
#include <cstring>
#include <initializer_list>

#include "model/record.h"
#include "tessaline/model/create.h"

namespace {

// A new record of `type` with attribute word `attr`, or 0.
HGLOBAL New_Record(int32_t type, int32_t attr, const Element_Record::Geometry& g) {
  HGLOBAL h = Alloc_Element();
  Locked_Element e(h);
  if (!e) {
    if (h) GlobalFree(h);
    return 0;
  }
  e->type = type;
  e->attr = attr;
  e->u = g;
  return h;
}

// Largest node count whose blocks stay within the memory table's bound.
constexpr int32_t kMaxNodes = 1 << 25;

// A block of n int32 words, each ATTR_ORDINARY.
HGLOBAL New_Attr_Block(size_t words) {
  HGLOBAL b = GlobalAlloc(GHND, words * sizeof(int32_t));
  Locked<int32_t> w(b);
  for (size_t i = 0; w && i < w.count(); ++i) w[i] = ATTR_ORDINARY;
  return b;
}

// A block of n doubles copied from src (left zero when src is null).
HGLOBAL New_Double_Block(size_t n, const double* src) {
  HGLOBAL b = GlobalAlloc(GHND, n * sizeof(double));
  Locked<double> d(b);
  if (d && src) std::memcpy(d.get(), src, std::min(n, d.count()) * sizeof(double));
  return b;
}

void Free_All(std::initializer_list<HGLOBAL> blocks) {
  for (HGLOBAL b : blocks) {
    if (b) GlobalFree(b);
  }
}

}  // namespace

HGLOBAL Create_Point(double x, double y) {
  Element_Record::Geometry g{};
  g.point = {x, y};
  return New_Record(EL_POINT, ATTR_ORDINARY, g);
}

HGLOBAL Create_Line(double x1, double y1, double x2, double y2) {
  Element_Record::Geometry g{};
  g.seg = {x1, y1, x2, y2};
  return New_Record(EL_SEGMENT, ATTR_ORDINARY, g);
}

HGLOBAL Create_Circle(double xc, double yc, double r) {
  Element_Record::Geometry g{};
  g.circle = {xc, yc, r};
  return New_Record(EL_CIRCLE, ATTR_ORDINARY, g);
}

HGLOBAL Create_Arc(double xc, double yc, double r, double a1, double a2) {
  Element_Record::Geometry g{};
  g.arc = {xc, yc, r, a1, a2, 0.0, 0.0, 0.0, 0.0};  // ends stay 0 until Set_Arc_Ends
  return New_Record(EL_ARC, ATTR_ORDINARY, g);
}

HGLOBAL Create_Polyline(int32_t n, const double* x, const double* y) {
  // A count that no block could hold is refused; a polyline of no node is
  // allowed (its blocks are empty).
  if (n < 0 || n > kMaxNodes) return 0;
  size_t count = static_cast<size_t>(n);
  HGLOBAL nodes = GlobalAlloc(GHND, count * 2 * sizeof(double));
  HGLOBAL attrs = nodes ? New_Attr_Block(count) : 0;
  HGLOBAL h = attrs ? New_Record(EL_POLYLINE, 0, Element_Record::Geometry{}) : 0;
  if (!h) {  // nothing half-made is left behind
    Free_All({nodes, attrs});
    return 0;
  }
  {
    Locked<double> xy(nodes);
    for (size_t i = 0; xy && x && y && i < count; ++i) {
      xy[2 * i] = x[i];
      xy[2 * i + 1] = y[i];
    }
  }
  Locked_Element e(h);
  e->attr = static_cast<int32_t>(attrs);
  e->u.poly.n = n;
  e->u.poly.nodes = nodes;
  return h;
}

HGLOBAL Create_Spline(int32_t n, const double* x, const double* y, const double* m1,
                      const double* m2) {
  if (n < 1 || n > kMaxNodes) return 0;
  size_t count = static_cast<size_t>(n);
  HGLOBAL bx = New_Double_Block(count, x);
  HGLOBAL by = bx ? New_Double_Block(count, y) : 0;
  HGLOBAL b1 = by ? New_Double_Block(count, m1) : 0;
  HGLOBAL b2 = b1 ? New_Double_Block(count, m2) : 0;
  // n x 8 bytes: two words per node, the node's own and the piece after it.
  HGLOBAL attrs = b2 ? New_Attr_Block(2 * count) : 0;
  HGLOBAL h = attrs ? New_Record(EL_SPLINE, 0, Element_Record::Geometry{}) : 0;
  if (!h) {
    Free_All({bx, by, b1, b2, attrs});
    return 0;
  }
  Locked_Element e(h);
  e->u.spline.n = n;
  e->u.spline.x = bx;
  e->u.spline.y = by;
  e->u.spline.m1 = b1;
  e->u.spline.m2 = b2;
  e->attr = static_cast<int32_t>(attrs);
  return h;
}
