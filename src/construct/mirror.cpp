// Mirror copies of elements in a line.
#include "tessaline/construct/mirror.h"

#include <cmath>
#include <vector>

#include "construct/build.h"
#include "construct/curve.h"
#include "tessaline/geometry/projection.h"

using namespace construct;

namespace {

// Reflection in the line through A with unit direction u.
struct Mirror {
  double ax, ay, ux, uy;
  void Point(double* x, double* y) const {
    double px = *x - ax, py = *y - ay;
    double t = px * ux + py * uy;
    *x = ax + 2 * t * ux - px;
    *y = ay + 2 * t * uy - py;
  }
  void Vector(double* x, double* y) const {
    double t = *x * ux + *y * uy;
    double vx = 2 * t * ux - *x, vy = 2 * t * uy - *y;
    *x = vx;
    *y = vy;
  }
  // The image of a direction angle.
  double Angle(double a) const { return Normalize_Angle(2 * std::atan2(uy, ux) - a); }
};

constexpr int32_t kCopy_Clears = ATTR_SELECTED | ATTR_ACTIVE | ATTR_EDIT;

// Reflects the nodes (and moments) of a polyline or spline and clears the
// copy's selection in every node word; frees a parent list the copy got.
void Mirror_Compound(Element_Record& e, const Mirror& m) {
  if (e.parents) GlobalFree(e.parents);
  e.parents = 0;
  e.parent_count = 0;
  e.creation_type = 0;
  {
    Locked<int32_t> words(static_cast<HGLOBAL>(e.attr));
    for (size_t i = 0; i < words.count(); ++i) words[i] &= ~kCopy_Clears;
  }
  if (e.type == EL_POLYLINE) {
    Locked<double> nodes(e.u.poly.nodes);
    for (size_t i = 0; i + 1 < nodes.count(); i += 2) m.Point(&nodes[i], &nodes[i + 1]);
    return;
  }
  auto pairs = [](HGLOBAL hx, HGLOBAL hy, auto f) {
    Locked<double> x(hx), y(hy);
    size_t n = x.count() < y.count() ? x.count() : y.count();
    for (size_t i = 0; i < n; ++i) f(&x[i], &y[i]);
  };
  pairs(e.u.spline.x, e.u.spline.y, [&](double* x, double* y) { m.Point(x, y); });
  pairs(e.u.spline.m1, e.u.spline.m2, [&](double* x, double* y) { m.Vector(x, y); });
}

void Mirror_Simple(Element_Record& e, const Mirror& m) {
  e.attr &= ~kCopy_Clears;
  switch (e.type) {
    case EL_POINT:
      m.Point(&e.u.point.x, &e.u.point.y);
      break;
    case EL_SEGMENT:
      m.Point(&e.u.seg.x1, &e.u.seg.y1);
      m.Point(&e.u.seg.x2, &e.u.seg.y2);
      break;
    case EL_CIRCLE:
      m.Point(&e.u.circle.xc, &e.u.circle.yc);
      break;
    case EL_ARC: {
      auto& a = e.u.arc;
      m.Point(&a.xc, &a.yc);
      double x1 = a.x2, y1 = a.y2, x2 = a.x1, y2 = a.y1;  // start and end change places
      m.Point(&x1, &y1);
      m.Point(&x2, &y2);
      double a1 = m.Angle(a.a2), a2 = m.Angle(a.a1);
      a.x1 = x1, a.y1 = y1, a.x2 = x2, a.y2 = y2, a.a1 = a1, a.a2 = a2;
      break;
    }
    default:
      break;
  }
}

// Reflects a fresh copy in place; the parent list that the copy took over
// from its original is dropped (the caller links the copy anew).
bool Mirror_Copy(HGLOBAL copy, const Mirror& m) {
  Locked_Element e(copy);
  if (!e) return false;
  if (!Is_Simple_Type(e->type)) {
    Mirror_Compound(*e, m);
    return true;
  }
  Mirror_Simple(*e, m);
  if (e->parents) GlobalFree(e->parents);
  e->parents = 0;
  e->parent_count = 0;
  return true;
}

}  // namespace

int Symmetry_Objects_Line(const Curs_Pos_Type* c, Objects_Array_Type* a, Objects_Array_Type* source,
                          HGLOBAL line) {
  if (!a || !source) return 0;
  double x1, y1, x2, y2;
  Curve l;
  if (Read_Curve(line, &l) && l.line()) {
    x1 = l.x1, y1 = l.y1, x2 = l.x2, y2 = l.y2;
  } else if (c) {
    x1 = c->x[0], y1 = c->y[0], x2 = c->x[1], y2 = c->y[1];
    line = 0;
  } else {
    return 0;
  }
  double len = std::hypot(x2 - x1, y2 - y1);
  if (!(len > 0) || !std::isfinite(len) || !std::isfinite(x1) || !std::isfinite(y1)) return 0;
  const Mirror m{x1, y1, (x2 - x1) / len, (y2 - y1) / len};

  std::vector<HGLOBAL> originals;
  {
    Array_Slots slots(source);
    originals.assign(slots.data(), slots.data() + slots.size());
  }
  int made = 0;
  for (HGLOBAL h : originals) {
    int32_t type;
    {
      Locked_Element e(h);
      if (!e) continue;
      type = e->type;
    }
    if (type < EL_POINT || type > EL_SPLINE) continue;
    HGLOBAL copy = Create_Element_Copy(h);
    if (!Mirror_Copy(copy, m)) {
      Delete_Element(copy);
      continue;
    }
    if (Is_Simple_Type(type) ? Finish(a, copy, 26, {h, line}) : Finish(a, copy, 0, {})) ++made;
  }
  return made;
}
