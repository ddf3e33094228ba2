// Constructors of auxiliary construction lines, points and circles.
#include "tessaline/construct/aux_create.h"

#include <cmath>

#include "construct/build.h"
#include "tessaline/construct/tangent.h"
#include "tessaline/geometry/vector.h"
#include "tessaline/model/create.h"

using construct::Finish;
using construct::Node_Slot;

namespace {

bool Same(double x0, double y0, double x1, double y1) {
  return x0 == x1 && y0 == y1;
}

// An auxiliary segment or circle: the constructor's element with its
// attribute word cleared.
HGLOBAL Aux_Line(double x1, double y1, double x2, double y2) {
  HGLOBAL h = Create_Line(x1, y1, x2, y2);
  construct::Set_Attr(h, 0);
  return h;
}

HGLOBAL Aux_Circle(double xc, double yc, double r) {
  HGLOBAL h = Create_Circle(xc, yc, r);
  construct::Set_Attr(h, 0);
  return h;
}

// The node of an element, or false when it gives none.
bool Node_Of(HGLOBAL element, int node, double* x, double* y) {
  double nx = NAN, ny = NAN;
  if (!Get_El_Node_Coord_by_Handle(element, node, &nx, &ny)) return false;
  if (!std::isfinite(nx) || !std::isfinite(ny)) return false;
  *x = nx;
  *y = ny;
  return true;
}

// The vertical (dx = 0, dy = 10) or horizontal (dx = 10, dy = 0) line of
// Add_Aux_V_Line_P and Add_Aux_H_Line_P.
HGLOBAL Line_Through_Node(const Curs_Pos_Type* c, Objects_Array_Type* a, HGLOBAL element, int node,
                          double dx, double dy) {
  if (!c || !a) return 0;
  if (!element) return Finish(a, Aux_Line(c->x[0], c->y[0], c->x[0] + dx, c->y[0] + dy), 0, {});
  double x, y;
  if (!Node_Of(element, node, &x, &y)) return 0;
  return Finish(a, Aux_Line(x, y, x + dx, y + dy), 11, {element, Node_Slot(node)});
}

// Line P0 - P1 with one parent in slot 0, refused when P0 = P1.
HGLOBAL Line_With_Parent(const Curs_Pos_Type* c, Objects_Array_Type* a, HGLOBAL parent, int32_t ct,
                         bool count) {
  if (!c || !a || Same(c->x[0], c->y[0], c->x[1], c->y[1])) return 0;
  return Finish(a, Aux_Line(c->x[0], c->y[0], c->x[1], c->y[1]), ct, {parent}, count);
}

// Circle (xc, yc, r) with creation type ct and one parent, or 0 without.
HGLOBAL Circle_With_Parent(Objects_Array_Type* a, double xc, double yc, double r, HGLOBAL parent,
                           int32_t ct) {
  if (!(r > 0)) return 0;
  if (!parent) return Finish(a, Aux_Circle(xc, yc, r), 0, {});
  return Finish(a, Aux_Circle(xc, yc, r), ct, {parent});
}

}  // namespace

HGLOBAL Add_Auxil_Vert_Line(const Curs_Pos_Type* c, Objects_Array_Type* a) {
  return Line_Through_Node(c, a, 0, 0, 0.0, 10.0);
}

HGLOBAL Add_Auxil_Horiz_Line(const Curs_Pos_Type* c, Objects_Array_Type* a) {
  return Line_Through_Node(c, a, 0, 0, 10.0, 0.0);
}

HGLOBAL Add_Aux_V_Line_P(const Curs_Pos_Type* c, Objects_Array_Type* a, HGLOBAL element, int node) {
  return Line_Through_Node(c, a, element, node, 0.0, 10.0);
}

HGLOBAL Add_Aux_H_Line_P(const Curs_Pos_Type* c, Objects_Array_Type* a, HGLOBAL element, int node) {
  return Line_Through_Node(c, a, element, node, 10.0, 0.0);
}

HGLOBAL Add_Auxil_Line(const Curs_Pos_Type* c, Objects_Array_Type* a, HGLOBAL e1, int i1,
                       HGLOBAL e2, int i2) {
  if (!c || !a || Same(c->x[0], c->y[0], c->x[1], c->y[1])) return 0;
  const double x0 = c->x[0], y0 = c->y[0], x1 = c->x[1], y1 = c->y[1];
  if (!e1 && !e2) return Finish(a, Aux_Line(x0, y0, x1, y1), 0, {});
  if (e1 && !e2) return Finish(a, Aux_Line(x0, y0, x1, y1), 11, {e1, Node_Slot(i1)});
  if (!e1) return Finish(a, Aux_Line(x1, y1, x0, y0), 11, {e2, Node_Slot(i2)});
  return Finish(a, Aux_Line(x0, y0, x1, y1), 25, {e1, Node_Slot(i1), e2, Node_Slot(i2)});
}

HGLOBAL Add_Auxil_Line_2P(const Curs_Pos_Type* c, Objects_Array_Type* a, HGLOBAL p1, HGLOBAL p2) {
  if (!c || !a) return 0;
  double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  if (Get_Element_Type_by_Handle(p1) == EL_POINT) Get_Point_Coord_by_Handle(p1, &x1, &y1);
  if (Get_Element_Type_by_Handle(p2) == EL_POINT) Get_Point_Coord_by_Handle(p2, &x2, &y2);
  return Finish(a, Aux_Line(x1, y1, x2, y2), 25, {p1, p2});
}

HGLOBAL Add_Aux_Per_Line(const Curs_Pos_Type* c, Objects_Array_Type* a, HGLOBAL parent) {
  return Line_With_Parent(c, a, parent, 2, true);
}

HGLOBAL Add_Aux_Par_Line(const Curs_Pos_Type* c, Objects_Array_Type* a, HGLOBAL parent) {
  return Line_With_Parent(c, a, parent, 1, false);
}

HGLOBAL Add_Auxil_Line_PerToCircle(const Curs_Pos_Type* c, Objects_Array_Type* a, HGLOBAL circle) {
  return Line_With_Parent(c, a, circle, 12, true);
}

HGLOBAL Add_Aux_Node_Cross2L(const Curs_Pos_Type* c, Objects_Array_Type* a, HGLOBAL line1,
                             HGLOBAL line2) {
  if (!c || !a) return 0;
  HGLOBAL h = Create_Point(c->x[0], c->y[0]);
  construct::Set_Attr(h, 0);
  return Finish(a, h, 5, {line1, line2}, false);
}

HGLOBAL Add_Aux_Circle_CR(const Curs_Pos_Type* c, Objects_Array_Type* a, HGLOBAL parent) {
  if (!c || !a) return 0;
  return Circle_With_Parent(a, c->x[0], c->y[0],
                            Distance_2Points(c->x[0], c->y[0], c->x[1], c->y[1]), parent, 13);
}

HGLOBAL Add_Aux_Circle_D(const Curs_Pos_Type* c, Objects_Array_Type* a, HGLOBAL parent) {
  if (!c || !a) return 0;
  return Circle_With_Parent(a, (c->x[0] + c->x[1]) * 0.5, (c->y[0] + c->y[1]) * 0.5,
                            Distance_2Points(c->x[0], c->y[0], c->x[1], c->y[1]) * 0.5, parent, 14);
}

HGLOBAL Add_Circle_3P(const Curs_Pos_Type* c, Objects_Array_Type* a, int flag, HGLOBAL p1,
                      HGLOBAL p2, HGLOBAL p3) {
  double xc, yc, r;
  if (!c || !a ||
      !Circle_3Points(c->x[0], c->y[0], c->x[1], c->y[1], c->x[2], c->y[2], &xc, &yc, &r))
    return 0;
  HGLOBAL h = Create_Circle(xc, yc, r);
  construct::Set_Attr(h, flag & ATTR_ORDINARY);
  if (!p1 || !p2) return Finish(a, h, 0, {});
  return Finish(a, h, p3 ? 29 : 28, {p1, p2, p3});
}
