// A surface's contours read into oriented pieces.
#include "analysis/pieces.h"

#include <array>
#include <cmath>
#include <initializer_list>
#include <new>
#include <utility>

#include "contour/lists.h"
#include "contour/outline.h"
#include "geometry/angles.h"
#include "model/record.h"

namespace {

constexpr double kJoin = 0.001;  // as the contour search joins ends

bool Joins(double x1, double y1, double x2, double y2) {
  return std::fabs(x1 - x2) < kJoin && std::fabs(y1 - y2) < kJoin;
}

bool Finite(std::initializer_list<double> v) {
  for (double d : v) {
    if (!std::isfinite(d)) return false;
  }
  return true;
}

// The nodes of a polyline or a spline, bounded by its blocks; moments of a
// spline when its coefficient blocks hold them.
struct Nodes {
  std::vector<double> x, y, mx, my;
};

bool Read_Nodes(const Element_Record& e, Nodes* n) {
  if (e.type == EL_POLYLINE) {
    Locked<double> xy(e.u.poly.nodes);
    long long count = e.u.poly.n;
    if (count < 2 || !xy.holds(2 * count - 1)) return false;
    for (long long i = 0; i < count; ++i) {
      n->x.push_back(xy[2 * i]);
      n->y.push_back(xy[2 * i + 1]);
    }
  } else {
    const auto& s = e.u.spline;
    Locked<double> x(s.x), y(s.y), mx(s.m1), my(s.m2);
    long long count = s.n;
    if (count < 2 || !x.holds(count - 1) || !y.holds(count - 1)) return false;
    bool moments = mx.holds(count - 1) && my.holds(count - 1);
    for (long long i = 0; i < count; ++i) {
      n->x.push_back(x[i]);
      n->y.push_back(y[i]);
      n->mx.push_back(moments ? mx[i] : 0);
      n->my.push_back(moments ? my[i] : 0);
    }
  }
  for (size_t i = 0; i < n->x.size(); ++i) {
    if (!Finite({n->x[i], n->y[i]}) || (!n->mx.empty() && !Finite({n->mx[i], n->my[i]}))) {
      return false;
    }
  }
  return true;
}

// The first and last point of an open element.
bool Ends(const Element_Record& e, const Nodes& n, double end[4]) {
  if (Contour_Ends(e, end)) return Finite({end[0], end[1], end[2], end[3]});
  if (n.x.empty()) return false;
  end[0] = n.x.front(), end[1] = n.y.front(), end[2] = n.x.back(), end[3] = n.y.back();
  return true;
}

// Coefficients in s of one coordinate of spline piece i (node i to i + 1,
// chord h): (1 - s) v0 + s v1 - s (1 - s) h^2 / 6 ((2 - s) m0 + (1 + s) m1).
void Cubic(double v0, double v1, double m0, double m1, double h, double c[4]) {
  double k = h * h / 6;
  c[0] = v0;
  c[1] = (v1 - v0) - k * (2 * m0 + m1);
  c[2] = 3 * k * m0;
  c[3] = -k * (m0 - m1);
}

// p(1 - s) for the cubic p.
void Reverse(double c[4]) {
  double q[4] = {c[0] + c[1] + c[2] + c[3], -c[1] - 2 * c[2] - 3 * c[3], c[2] + 3 * c[3], -c[3]};
  for (int i = 0; i < 4; ++i) c[i] = q[i];
}

Contour_Piece Line(double x1, double y1, double x2, double y2) {
  Contour_Piece p{};
  p.kind = Contour_Piece::kLine;
  p.x1 = x1, p.y1 = y1, p.x2 = x2, p.y2 = y2;
  return p;
}

// The pieces of an open element entered at its first end (forward) or its
// last.
void Add_Element(const Element_Record& e, const Nodes& n, bool forward,
                 std::vector<Contour_Piece>* out) {
  if (e.type == EL_SEGMENT) {
    const auto& s = e.u.seg;
    out->push_back(forward ? Line(s.x1, s.y1, s.x2, s.y2) : Line(s.x2, s.y2, s.x1, s.y1));
  } else if (e.type == EL_ARC) {
    const auto& a = e.u.arc;
    double middle, sweep;
    Arc_Middle(a.a1, a.a2, &middle, &sweep);
    Contour_Piece p = forward ? Line(a.x1, a.y1, a.x2, a.y2) : Line(a.x2, a.y2, a.x1, a.y1);
    p.kind = Contour_Piece::kArc;
    p.cx = a.xc, p.cy = a.yc, p.r = std::fabs(a.r);
    p.t1 = forward ? middle - sweep / 2 : middle + sweep / 2;
    p.sweep = forward ? sweep : -sweep;
    out->push_back(p);
  } else {
    const size_t count = n.x.size();
    for (size_t k = 0; k + 1 < count; ++k) {
      size_t i = forward ? k : count - 2 - k;
      Contour_Piece p = Line(n.x[i], n.y[i], n.x[i + 1], n.y[i + 1]);
      if (e.type == EL_SPLINE) {
        double h = std::hypot(n.x[i + 1] - n.x[i], n.y[i + 1] - n.y[i]);
        p.kind = Contour_Piece::kCubic;
        Cubic(n.x[i], n.x[i + 1], n.mx[i], n.mx[i + 1], h, p.ax);
        Cubic(n.y[i], n.y[i + 1], n.my[i], n.my[i + 1], h, p.ay);
      }
      if (!forward) {
        std::swap(p.x1, p.x2), std::swap(p.y1, p.y2);
        Reverse(p.ax), Reverse(p.ay);
      }
      out->push_back(p);
    }
  }
}

}  // namespace

bool Read_Contour_Pieces(const Contour_Type* contour, std::vector<Contour_Piece>* pieces) {
  pieces->clear();
  std::vector<Element_Record> elements;
  if (!Read_Contour(contour, &elements) || elements.empty()) return false;
  if (elements[0].type == EL_CIRCLE) {
    const auto& c = elements[0].u.circle;
    if (elements.size() != 1 || !Finite({c.xc, c.yc, c.r})) return false;
    Contour_Piece p = Line(c.xc + std::fabs(c.r), c.yc, c.xc + std::fabs(c.r), c.yc);
    p.kind = Contour_Piece::kArc;
    p.cx = c.xc, p.cy = c.yc, p.r = std::fabs(c.r), p.t1 = 0, p.sweep = 2 * kPi;
    pieces->push_back(p);
    return true;
  }
  std::vector<Nodes> nodes(elements.size());
  std::vector<std::array<double, 4>> ends(elements.size());
  for (size_t i = 0; i < elements.size(); ++i) {
    const Element_Record& e = elements[i];
    bool many = e.type == EL_POLYLINE || e.type == EL_SPLINE;
    if (!many && e.type != EL_SEGMENT && e.type != EL_ARC) return false;
    if (many && !Read_Nodes(e, &nodes[i])) return false;
    if (!Ends(e, nodes[i], ends[i].data())) return false;
    if (e.type == EL_ARC && !Finite({e.u.arc.xc, e.u.arc.yc, e.u.arc.r, e.u.arc.a1, e.u.arc.a2})) {
      return false;
    }
  }
  // Start at the first element's end that the second does not share.
  const auto& f = ends[0];
  double sx = f[0], sy = f[1];
  if (elements.size() > 1) {
    const auto& s = ends[1];
    bool first_shared = Joins(f[0], f[1], s[0], s[1]) || Joins(f[0], f[1], s[2], s[3]);
    bool last_shared = Joins(f[2], f[3], s[0], s[1]) || Joins(f[2], f[3], s[2], s[3]);
    if (first_shared && !last_shared) sx = f[2], sy = f[3];
  }
  double rx = sx, ry = sy;
  for (size_t i = 0; i < elements.size(); ++i) {
    const auto& e = ends[i];
    bool forward = std::hypot(rx - e[0], ry - e[1]) <= std::hypot(rx - e[2], ry - e[3]);
    double ex = forward ? e[0] : e[2], ey = forward ? e[1] : e[3];
    if (!Joins(rx, ry, ex, ey)) return false;
    Add_Element(elements[i], nodes[i], forward, pieces);
    rx = forward ? e[2] : e[0];
    ry = forward ? e[3] : e[1];
  }
  return Joins(rx, ry, sx, sy);
}

bool Read_Surface_Loops(Surface_Type* surface, std::vector<Surface_Loop>* loops) {
  loops->clear();
  if (!surface) return false;
  try {
    for (int list : {kOuters, kHoles}) {
      Handle_Slots contours = Surface_List(surface, list);
      for (size_t i = 0; i < contours.size(); ++i) {
        Locked<Contour_Type> c(contours[i]);
        Surface_Loop loop{{}, list == kHoles};
        if (!c || !Read_Contour_Pieces(c.get(), &loop.pieces)) return false;
        loops->push_back(std::move(loop));
      }
      if (list == kOuters && loops->empty()) return false;
    }
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}
