// Drawing of auxiliary construction elements: infinite lines across the view,
// circles and points, and their rubber bands.
#include "tessaline/construct/aux_draw.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "display/draw_internal.h"
#include "display/mapping.h"
#include "model/record.h"
#include "platform/controls.h"
#include "tessaline/construct/tangent.h"
#include "tessaline/display/raster.h"
#include "tessaline/geometry/vector.h"
#include "tessaline/platform/user.h"

namespace {

bool Fits(int64_t v) {
  return v >= INT32_MIN && v <= INT32_MAX;
}

POINT Map(const Coord_Syst* cs, double x, double y) {
  return Map_Point(&cs->world, &cs->window, x, y);
}

// Strokes from (x1, y1) to (x2, y2) when every coordinate is a 32-bit value.
void Stroke(HDC dc, int64_t x1, int64_t y1, int64_t x2, int64_t y2) {
  if (Fits(x1) && Fits(y1) && Fits(x2) && Fits(y2)) {
    Stroke_Line(dc, static_cast<int>(x1), static_cast<int>(y1), static_cast<int>(x2),
                static_cast<int>(y2));
  }
}

// The viewport of the record: left, top, width, height.
struct View_Box {
  int64_t l, t, w, h;
};
View_Box Viewport(const Coord_Syst* cs) {
  return {cs->vp_org_x, cs->vp_org_y, cs->vp_ext_x, cs->vp_ext_y};
}

// The infinite line through the logical points a and b across the viewport.
// The other coordinate comes from MulDiv, which must get 32-bit arguments.
void Infinite_Line(HDC dc, const Coord_Syst* cs, POINT a, POINT b) {
  const View_Box v = Viewport(cs);
  const int64_t dx = int64_t{b.x} - a.x, dy = int64_t{b.y} - a.y;
  if (std::llabs(dx) > std::llabs(dy)) {  // flatter than 45 degrees on the screen
    const int64_t n1 = v.l - a.x, n2 = v.l + v.w - a.x;
    if (!Fits(dx) || !Fits(dy) || !Fits(n1) || !Fits(n2)) return;
    int dyi = static_cast<int>(dy), dxi = static_cast<int>(dx);
    Stroke(dc, v.l, a.y + int64_t{MulDiv(dyi, static_cast<int>(n1), dxi)}, v.l + v.w,
           a.y + int64_t{MulDiv(dyi, static_cast<int>(n2), dxi)});
  } else {
    const int64_t n1 = v.t - a.y, n2 = v.t + v.h - a.y;
    if (!Fits(dx) || !Fits(dy) || !Fits(n1) || !Fits(n2)) return;
    int dyi = static_cast<int>(dy), dxi = static_cast<int>(dx);
    Stroke(dc, a.x + int64_t{MulDiv(dxi, static_cast<int>(n1), dyi)}, v.t,
           a.x + int64_t{MulDiv(dxi, static_cast<int>(n2), dyi)}, v.t + v.h);
  }
}

void Vertical_Through(HDC dc, const Coord_Syst* cs, POINT p) {
  const View_Box v = Viewport(cs);
  Stroke(dc, p.x, v.t, p.x, v.t + v.h);
}

void Horizontal_Through(HDC dc, const Coord_Syst* cs, POINT p) {
  const View_Box v = Viewport(cs);
  Stroke(dc, v.l, p.y, v.l + v.w, p.y);
}

// A copy of the element's record: false when it does not lock (after the
// guard box when `guard`) or when it is not of `type` (0: any type).
bool Read_Element(HGLOBAL h, int32_t type, bool guard, Element_Record* out) {
  Locked_Element e(h);
  if (!e) {
    if (guard) Show_Null_Element_Box();
    return false;
  }
  if (type && e->type != type) return false;
  *out = *e;
  return true;
}

// Modes and pen of a stored element's drawing: R2_COPYPEN, a transparent
// background and the pen rule's pen for its attribute word.
class Stored_Paint {
 public:
  Stored_Paint(HDC dc, int32_t attr, const COLORREF* colours, bool hollow)
      : modes_(dc, R2_COPYPEN, TRANSPARENT),
        pen_(dc, Create_Rule_Pen(attr, colours), true),
        brush_(dc, hollow ? GetStockObject(NULL_BRUSH) : nullptr, false) {}

 private:
  Scoped_Modes modes_;
  Scoped_Select pen_;
  Scoped_Select brush_;
};

// A dashed rubber line of the colour through the points that `draw` strokes.
template <class F>
int Rubber_Line(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c, COLORREF colour, F draw) {
  if (!cs || !c) return GetROP2(dc);
  Rubber_Paint paint(dc, PS_DASH, colour, nullptr, false, TRANSPARENT);
  draw(Map(cs, c->x[0], c->y[0]));
  return paint.previous_rop();
}

}  // namespace

void Draw_Auxil_Objects(HDC dc, const Coord_Syst* cs, const Objects_Array_Type* array,
                        const COLORREF* colours) {
  if (!array || !array->handles) return;
  Array_Slots slots(array);
  for (size_t i = 0; i < slots.size(); ++i) Draw_Auxil_Element(dc, cs, slots[i], colours);
}

void Draw_Auxil_Element(HDC dc, const Coord_Syst* cs, HGLOBAL h, const COLORREF* colours) {
  Element_Record r;
  if (!Read_Element(h, 0, true, &r) || (r.attr & ATTR_ORDINARY)) return;
  switch (r.type) {
    case EL_POINT:
      Draw_Auxil_Node(dc, cs, h, colours);
      break;
    case EL_SEGMENT:
      Draw_Auxil_Line(dc, cs, h, colours);
      break;
    case EL_CIRCLE:
      Draw_Auxil_Circle(dc, cs, h, colours);
      break;
    default:
      break;
  }
}

void Draw_Auxil_Node(HDC dc, const Coord_Syst* cs, HGLOBAL h, const COLORREF* colours) {
  Element_Record r;
  if (!cs || !colours || !Read_Element(h, EL_POINT, false, &r)) return;
  Stored_Paint paint(dc, r.attr, colours, true);
  Draw_Point_Marker(dc, cs, r.u.point.x, r.u.point.y);
}

void Draw_Auxil_Line(HDC dc, const Coord_Syst* cs, HGLOBAL h, const COLORREF* colours) {
  Element_Record r;
  if (!cs || !colours || !Read_Element(h, EL_SEGMENT, false, &r)) return;
  const auto& s = r.u.seg;
  if (s.x1 == s.x2) {
    Draw_Auxil_Vert_Line(dc, cs, h, colours);
    return;
  }
  if (s.y1 == s.y2) {
    Draw_Auxil_Horiz_Line(dc, cs, h, colours);
    return;
  }
  Stored_Paint paint(dc, r.attr, colours, false);
  Infinite_Line(dc, cs, Map(cs, s.x1, s.y1), Map(cs, s.x2, s.y2));
}

void Draw_Auxil_Vert_Line(HDC dc, const Coord_Syst* cs, HGLOBAL h, const COLORREF* colours) {
  Element_Record r;
  if (!cs || !colours || !Read_Element(h, EL_SEGMENT, false, &r)) return;
  Stored_Paint paint(dc, r.attr, colours, false);
  Vertical_Through(dc, cs, Map(cs, r.u.seg.x1, r.u.seg.y1));
}

void Draw_Auxil_Horiz_Line(HDC dc, const Coord_Syst* cs, HGLOBAL h, const COLORREF* colours) {
  Element_Record r;
  if (!cs || !colours || !Read_Element(h, EL_SEGMENT, false, &r)) return;
  Stored_Paint paint(dc, r.attr, colours, false);
  Horizontal_Through(dc, cs, Map(cs, r.u.seg.x1, r.u.seg.y1));
}

void Draw_Auxil_Circle(HDC dc, const Coord_Syst* cs, HGLOBAL h, const COLORREF* colours) {
  Element_Record r;
  if (!Read_Element(h, 0, true, &r) || r.type != EL_CIRCLE || !cs || !colours) return;
  Stored_Paint paint(dc, r.attr, colours, true);
  rCircle(dc, &cs->world, &cs->window, r.u.circle.xc, r.u.circle.yc, r.u.circle.r);
}

int Draw_Rubber_Auxil_Line(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c, COLORREF colour) {
  if (!cs || !c) return GetROP2(dc);
  POINT b = Map(cs, c->x[1], c->y[1]);
  POINT a = Map(cs, c->x[0], c->y[0]);
  if (a.x == b.x && a.y == b.y) return GetROP2(dc);
  return Rubber_Line(dc, cs, c, colour, [&](POINT p) { Infinite_Line(dc, cs, p, b); });
}

int Draw_Rubber_Auxil_Vert_Line(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c,
                                COLORREF colour) {
  return Rubber_Line(dc, cs, c, colour, [&](POINT p) { Vertical_Through(dc, cs, p); });
}

int Draw_Rubber_Auxil_Horiz_Line(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c,
                                 COLORREF colour) {
  return Rubber_Line(dc, cs, c, colour, [&](POINT p) { Horizontal_Through(dc, cs, p); });
}

int Draw_Rubber_Circle_with_Pen(HDC dc, const Coord_Syst* cs, double xc, double yc, double r,
                                HPEN pen) {
  if (!cs || GetObjectType(pen) != OBJ_PEN) return GetROP2(dc);
  Scoped_Modes modes(dc, R2_XORPEN, TRANSPARENT);
  Scoped_Select pen_used(dc, pen, false);
  Scoped_Select brush(dc, GetStockObject(NULL_BRUSH), false);
  rCircle(dc, &cs->world, &cs->window, xc, yc, r);
  return modes.previous_rop();
}

int Draw_Rubber_Circle_CenRad_with_Pen(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c,
                                       HPEN pen) {
  if (!c) return GetROP2(dc);
  return Draw_Rubber_Circle_with_Pen(dc, cs, c->x[0], c->y[0],
                                     Distance_2Points(c->x[0], c->y[0], c->x[1], c->y[1]), pen);
}

int Draw_Rubber_Circle_by_Diam_with_Pen(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c,
                                        HPEN pen) {
  if (!c) return GetROP2(dc);
  return Draw_Rubber_Circle_with_Pen(dc, cs, (c->x[0] + c->x[1]) * 0.5, (c->y[0] + c->y[1]) * 0.5,
                                     Distance_2Points(c->x[0], c->y[0], c->x[1], c->y[1]) * 0.5,
                                     pen);
}

double Draw_Rubber_Circle_3Points_with_Pen(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c,
                                           int count, HPEN pen) {
  count = std::min(count, 8);
  double xc, yc, r;
  if (!c || !cs || count < 2 || GetObjectType(pen) != OBJ_PEN ||
      !Circle_3Points(c->x[0], c->y[0], c->x[1], c->y[1], c->x[2], c->y[2], &xc, &yc, &r))
    return 0.0;
  Draw_Rubber_Circle_with_Pen(dc, cs, xc, yc, r, pen);
  return r;
}

int Draw_Cros_Cursor(HDC dc, const Coord_Syst* cs, double x, double y, COLORREF colour) {
  if (!cs || !std::isfinite(x) || !std::isfinite(y)) return GetROP2(dc);
  Rubber_Paint paint(dc, PS_SOLID, colour, nullptr, false, TRANSPARENT);
  const POINT p = Map(cs, x, y);
  const View_Box v = Viewport(cs);
  Vertical_Through(dc, cs, p);
  // The horizontal stroke leaves out the crossing pixel, which the vertical
  // one has already inverted.
  Stroke(dc, v.l, p.y, p.x, p.y);
  Stroke(dc, int64_t{p.x} + 1, p.y, v.l + v.w, p.y);
  return paint.previous_rop();
}
