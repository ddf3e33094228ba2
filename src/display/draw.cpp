// Element drawing: the colour schemes, the pen rule, the point marker and the
// drawing of every element type.
#include "tessaline/display/draw.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "display/draw_internal.h"
#include "display/mapping.h"
#include "model/record.h"
#include "model/spline_curve.h"
#include "tessaline/construct/aux_draw.h"
#include "tessaline/display/raster.h"
#include "tessaline/platform/user.h"

namespace {

// Entries 1 to 10 of the four colour schemes.
constexpr COLORREF kSchemes[4][10] = {
    {0xC0C0C0, 0x000080, 0x00FFFF, 0x800000, 0xFFFFFF, 0x808080, 0xFF0000, 0x0000FF, 0xFFFFFF,
     0xFFFF00},
    {0xFFFFFF, 0x000080, 0x00FFFF, 0x800000, 0xFF00FF, 0x808080, 0xFF0000, 0x0000FF, 0xC0C0C0,
     0xFF00FF},
    {0x000000, 0x0000FF, 0x00FFFF, 0xFFFF00, 0x0000FF, 0xC0C0C0, 0xFF0000, 0x0000FF, 0xC0C0C0,
     0x808000},
    {0xFFFFFF, 0x0000FF, 0x00FFFF, 0x000000, 0x0000FF, 0x808080, 0xFF0000, 0x0000FF, 0xC0C0C0,
     0xFF00FF},
};

bool Fits_Int32(int64_t v) {
  return v >= INT32_MIN && v <= INT32_MAX;
}

// Strokes of one piece of a polyline or spline: the piece's pen (selected by
// the caller) and, for a selected piece, the same stroke once more with the
// overlay pen in exclusive-or.
class Piece_Painter {
 public:
  Piece_Painter(HDC dc, const Coord_Syst* cs, HPEN overlay) : dc_(dc), cs_(cs), overlay_(overlay) {}

  void Line(bool selected, double x1, double y1, double x2, double y2) const {
    rLine_2p(dc_, &cs_->world, &cs_->window, x1, y1, x2, y2);
    if (!selected) return;
    Scoped_Select pen(dc_, overlay_, false);
    SetROP2(dc_, R2_XORPEN);
    rLine_2p(dc_, &cs_->world, &cs_->window, x1, y1, x2, y2);
    SetROP2(dc_, R2_COPYPEN);
  }

  // The hollow marker of a node in the pen of its word, overlaid when selected.
  void Node(int32_t word, const COLORREF* colours, double x, double y) const {
    Scoped_Select pen(dc_, Create_Rule_Pen(word, colours), true);
    Scoped_Select brush(dc_, GetStockObject(NULL_BRUSH), false);
    Draw_Point_Marker(dc_, cs_, x, y);
    if (!(word & ATTR_SELECTED)) return;
    Scoped_Select over(dc_, overlay_, false);
    SetROP2(dc_, R2_XORPEN);
    Draw_Point_Marker(dc_, cs_, x, y);
    SetROP2(dc_, R2_COPYPEN);
  }

 private:
  HDC dc_;
  const Coord_Syst* cs_;
  HPEN overlay_;
};

}  // namespace

int Pen_Rule_Entry(int32_t attr) {
  if (attr & ATTR_ACTIVE) return 5;
  if (attr & ATTR_SELECTED) return 3;
  if (attr & ATTR_ORDINARY) return 4;
  return 6;
}

HPEN Create_Rule_Pen(int32_t attr, const COLORREF* colours) {
  return CreatePen((attr & ATTR_ORDINARY) ? PS_SOLID : PS_DASH, 1, colours[Pen_Rule_Entry(attr)]);
}

BOOL Draw_Point_Marker(HDC dc, const Coord_Syst* cs, double x, double y) {
  if (!In_Widened_World(cs->world, x, y)) return 0;
  POINT p = Map_Point(&cs->world, &cs->window, x, y);
  int32_t lx = p.x, ly = p.y;
  int64_t l = int64_t{lx} - kMarker_Radius, t = int64_t{ly} - kMarker_Radius;
  int64_t r = int64_t{lx} + kMarker_Radius + 1, b = int64_t{ly} + kMarker_Radius + 1;
  if (!Fits_Int32(l) || !Fits_Int32(t) || !Fits_Int32(r) || !Fits_Int32(b)) return 0;
  return Ellipse(dc, static_cast<int>(l), static_cast<int>(t), static_cast<int>(r),
                 static_cast<int>(b));
}

double Spline_Step(const Coord_Syst* cs) {
  double step = LPtoWP_Dist(&cs->world, &cs->window, 2);
  return std::isfinite(step) && step > 0 ? step : 0.0;
}

COLORREF* Set_Object_Colors(unsigned scheme, COLORREF* table) {
  if (!table) return table;
  table[0] = scheme;
  if (scheme < 4) std::memcpy(table + 1, kSchemes[scheme], sizeof kSchemes[scheme]);
  return table;
}

void Draw_Polyline_Element(HGLOBAL h, HDC dc, const Coord_Syst* cs, const COLORREF* colours) {
  Locked_Element e(h);
  if (!e) return;
  if (e->type != EL_POLYLINE) {
    MessageBoxA(nullptr, "pElem->type!=polyline", "Warning", MB_ICONHAND);
    return;
  }
  HPEN overlay = CreatePen(PS_SOLID, 1, colours[3]);
  {
    Locked<double> xy(e->u.poly.nodes);
    Locked<int32_t> words(static_cast<HGLOBAL>(e->attr));
    // Piece i - 1 needs node i and word i - 1: bounded by both blocks.
    size_t n = static_cast<size_t>(std::max(e->u.poly.n, 0));
    n = std::min({n, xy.count() / 2, words.count() + 1});
    Piece_Painter paint(dc, cs, overlay);
    for (size_t i = 1; i < n; ++i) {
      int32_t word = words[i - 1];
      Scoped_Select pen(dc, Create_Rule_Pen(word, colours), true);
      paint.Line(word & ATTR_SELECTED, xy[2 * i - 2], xy[2 * i - 1], xy[2 * i], xy[2 * i + 1]);
    }
  }
  DeleteObject(overlay);
}

void Draw_Spline_Element(HGLOBAL h, HDC dc, const Coord_Syst* cs, const COLORREF* colours) {
  Locked_Element e(h);
  if (!e || e->type != EL_SPLINE) return;
  Spline_Curve curve(e->u.spline);
  Locked<int32_t> words(static_cast<HGLOBAL>(e->attr));
  const size_t n = std::min(curve.nodes(), words.count() / 2);
  if (n == 0) return;
  const double base_step = Spline_Step(cs);
  HPEN overlay = CreatePen(PS_SOLID, 1, colours[3]);
  Piece_Painter paint(dc, cs, overlay);
  double t0 = 0.0;  // accumulated chord length at node i: the spline's parameter
  for (size_t i = 0; i + 1 < n; ++i) {
    const double t1 = t0 + curve.Chord(i);
    int32_t word = words[2 * i + 1];
    bool selected = word & ATTR_SELECTED;
    {
      Scoped_Select pen(dc, Create_Rule_Pen(word, colours), true);
      double px = curve.x(i), py = curve.y(i);
      curve.Piece(i, t0, t1, base_step, [&](double qx, double qy) {
        paint.Line(selected, px, py, qx, qy);
        px = qx;
        py = qy;
      });
    }
    paint.Node(words[2 * i], colours, curve.x(i), curve.y(i));
    t0 = t1;
  }
  paint.Node(words[2 * (n - 1)], colours, curve.x(n - 1), curve.y(n - 1));
  DeleteObject(overlay);
}

void Draw_Element(HGLOBAL h, HDC dc, const Coord_Syst* cs, const COLORREF* colours) {
  if (!h || !cs || !colours) return;
  Element_Record r;
  {
    Locked_Element e(h);
    if (!e) return;
    r = *e;
  }
  if (r.type < EL_POINT || r.type > EL_SPLINE) return;
  if (Is_Simple_Type(r.type) && !(r.attr & ATTR_ORDINARY)) {
    Draw_Auxil_Element(dc, cs, h, colours);
    return;
  }
  const World_Window* w = &cs->world;
  const Logical_Window* l = &cs->window;
  Scoped_Modes modes(dc, R2_COPYPEN, TRANSPARENT);
  switch (r.type) {
    case EL_POLYLINE:
      Draw_Polyline_Element(h, dc, cs, colours);
      return;
    case EL_SPLINE:
      Draw_Spline_Element(h, dc, cs, colours);
      return;
    default:
      break;
  }
  Scoped_Select pen(dc, Create_Rule_Pen(r.attr, colours), true);
  Scoped_Select brush(
      dc, r.type == EL_POINT || r.type == EL_CIRCLE ? GetStockObject(NULL_BRUSH) : nullptr, false);
  switch (r.type) {
    case EL_POINT:
      Draw_Point_Marker(dc, cs, r.u.point.x, r.u.point.y);
      break;
    case EL_SEGMENT:
      rLine_2p(dc, w, l, r.u.seg.x1, r.u.seg.y1, r.u.seg.x2, r.u.seg.y2);
      break;
    case EL_CIRCLE:
      rCircle(dc, w, l, r.u.circle.xc, r.u.circle.yc, r.u.circle.r);
      break;
    case EL_ARC:
      rArc(dc, w, l, r.u.arc.xc, r.u.arc.yc, r.u.arc.r, r.u.arc.a1, r.u.arc.a2);
      break;
    default:
      break;
  }
}

void Draw_Objects(HDC dc, const Coord_Syst* cs, const Objects_Array_Type* array,
                  const COLORREF* colours) {
  if (!array || !array->handles) return;
  Array_Slots slots(array);
  for (size_t i = 0; i < slots.size(); ++i) Draw_Element(slots[i], dc, cs, colours);
}
