// Rubber bands: the figures that follow the cursor while the user places
// points, drawn with exclusive-or so that drawing one twice erases it.
#include <cmath>

#include "display/draw_internal.h"
#include "tessaline/construct/aux_draw.h"
#include "tessaline/construct/tangent.h"
#include "tessaline/display/draw.h"
#include "tessaline/display/raster.h"
#include "tessaline/geometry/vector.h"

namespace {

// Whether the record exists and holds the points i .. i + more (checked
// before i + more is formed, so no index can overflow).
bool Holds(const Curs_Pos_Type* c, int i, int more) {
  return c && i >= 0 && i <= 7 - more;
}

HGDIOBJ Hollow() {
  return GetStockObject(NULL_BRUSH);
}

// Draws `figure` with a solid pen of the colour (and the hollow brush when
// `closed`) in exclusive-or; the previous raster mode, or the current one
// when the inputs are missing.
template <class F>
int Rubber(HDC dc, const Coord_Syst* cs, bool ok, COLORREF colour, bool closed, F figure) {
  if (!cs || !ok) return GetROP2(dc);
  Rubber_Paint paint(dc, PS_SOLID, colour, closed ? Hollow() : nullptr, false);
  figure(&cs->world, &cs->window);
  return paint.previous_rop();
}

}  // namespace

int Draw_Rubber_Point(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c, COLORREF colour) {
  if (!cs || !c) return GetROP2(dc);
  Rubber_Paint paint(dc, PS_SOLID, colour, CreateSolidBrush(colour), true);
  Draw_Point_Marker(dc, cs, c->x[0], c->y[0]);
  return paint.previous_rop();
}

int Draw_Rubber_Point_by_Index(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c, int i,
                               COLORREF colour) {
  return Rubber(dc, cs, Holds(c, i, 0), colour, true,
                [&](auto, auto) { Draw_Point_Marker(dc, cs, c->x[i], c->y[i]); });
}

int Draw_Rubber_Line(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c, COLORREF colour) {
  return Draw_Rubber_Line_by_Index(dc, cs, c, 0, colour);
}

int Draw_Rubber_Line_by_Index(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c, int i,
                              COLORREF colour) {
  return Rubber(dc, cs, Holds(c, i, 1), colour, false, [&](auto w, auto l) {
    rLine_2p(dc, w, l, c->x[i], c->y[i], c->x[i + 1], c->y[i + 1]);
  });
}

int Draw_Rubber_Rectangle(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c, COLORREF colour) {
  return Rubber(dc, cs, Holds(c, 0, 1), colour, true,
                [&](auto w, auto l) { rRectangle(dc, w, l, c->x[0], c->y[0], c->x[1], c->y[1]); });
}

int Draw_Rubber_Rectangle_CentDiag(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c,
                                   COLORREF colour) {
  return Rubber(dc, cs, Holds(c, 0, 1), colour, true, [&](auto w, auto l) {
    rRectangle(dc, w, l, c->x[1], c->y[1], 2 * c->x[0] - c->x[1], 2 * c->y[0] - c->y[1]);
  });
}

int Draw_Rubber_Circle(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c, COLORREF colour) {
  return Rubber(dc, cs, Holds(c, 0, 1), colour, true, [&](auto w, auto l) {
    double dx = c->x[1] - c->x[0], dy = c->y[1] - c->y[0];
    rCircle(dc, w, l, c->x[0], c->y[0], std::sqrt(dx * dx + dy * dy));
  });
}

int Draw_Rubber_Circle_by_Diam(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c,
                               COLORREF colour) {
  return Rubber(dc, cs, Holds(c, 0, 1), colour, true, [&](auto w, auto l) {
    rCircle(dc, w, l, (c->x[0] + c->x[1]) * 0.5, (c->y[0] + c->y[1]) * 0.5,
            Distance_2Points(c->x[0], c->y[0], c->x[1], c->y[1]) * 0.5);
  });
}

int Draw_Rubber_Circle_TanCir(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c, int solid,
                              COLORREF colour) {
  double r;
  if (!cs || !c ||
      !Tangent_Circle_Centred(c->x[1], c->y[1], c->x[2], c->x[0], c->y[0], c->x[3], c->y[3], &r))
    return GetBkMode(dc);
  Rubber_Paint paint(dc, solid ? PS_SOLID : PS_DASH, colour, Hollow(), false, TRANSPARENT);
  rCircle(dc, &cs->world, &cs->window, c->x[0], c->y[0], r);
  return paint.previous_bk_mode();
}

int Draw_Rubber_Arc2PC(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c, COLORREF colour) {
  double xc = 0, yc = 0, r = 0, a1 = 0, a2 = 0;
  bool ok = c && Arc_2Points_Centre(c->x[0], c->y[0], c->x[1], c->y[1], c->x[2], c->y[2], &xc, &yc,
                                    &r, &a1, &a2);
  return Rubber(dc, cs, ok, colour, false,
                [&](auto w, auto l) { rArc(dc, w, l, xc, yc, r, a1, a2); });
}

int Draw_Rubber_Arc_CenBegEnd_by_Index(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c, int i,
                                       COLORREF colour) {
  double r = 0, a1 = 0, a2 = 0;
  bool ok = Holds(c, i, 2) && Arc_Centre_Start_End(c->x[i], c->y[i], c->x[i + 1], c->y[i + 1],
                                                   c->x[i + 2], c->y[i + 2], &r, &a1, &a2);
  return Rubber(dc, cs, ok, colour, false,
                [&](auto w, auto l) { rArc(dc, w, l, c->x[i], c->y[i], r, a1, a2); });
}

int Draw_Rubber_Circle_Tan2L_with_Pen(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c,
                                      HPEN pen) {
  double xc = 0, yc = 0, r = 0;
  if (!c || !Tangent_Circle_2Line(c->x[0], c->y[0], c->x[1], c->y[1], c->x[2], c->y[2], c->x[3],
                                  c->y[3], c->x[4], c->y[4], &xc, &yc, &r))
    return GetROP2(dc);
  return Draw_Rubber_Circle_with_Pen(dc, cs, xc, yc, r, pen);
}

int Draw_Rubber_Line_TanCir(HDC dc, const Coord_Syst* cs, const Curs_Pos_Type* c, COLORREF colour) {
  double xa = 0, ya = 0, xb = 0, yb = 0;
  bool ok = c && Tangent_Points_Circle(c->x[1], c->y[1], c->x[2], c->x[0], c->y[0], &xa, &ya, &xb,
                                       &yb) > 0;
  if (ok &&
      SQDistance_2Points(xb, yb, c->x[3], c->y[3]) < SQDistance_2Points(xa, ya, c->x[3], c->y[3])) {
    xa = xb;
    ya = yb;
  }
  return Rubber(dc, cs, ok, colour, false,
                [&](auto w, auto l) { rLine_2p(dc, w, l, c->x[0], c->y[0], xa, ya); });
}
