// Regions built from world shapes, in logical or (clipped) device units.
#include <algorithm>
#include <vector>

#include "display/mapping.h"
#include "tessaline/display/raster.h"
#include "tessaline/platform/memory.h"
#include "tessaline/platform/user.h"

namespace {

// Clamps device corners into the client rectangle: x first against the
// right edge then the left, y first against the top then the bottom.
void Clamp_To_Client(POINT* p, const RECT& client) {
  p->x = std::min(p->x, client.right);
  p->x = std::max(p->x, client.left);
  p->y = std::max(p->y, client.top);
  p->y = std::min(p->y, client.bottom);
}

// The intersection of `shape` with the window's client rectangle; both
// parts are deleted.
HRGN Clip_To_Client(HWND window, HRGN shape) {
  RECT client = {0, 0, 0, 0};
  GetClientRect(window, &client);
  HRGN result = CreateRectRgn(0, 0, 0, 0);
  HRGN client_rgn = CreateRectRgn(client.left, client.top, client.right, client.bottom);
  CombineRgn(result, client_rgn, shape, RGN_AND);
  DeleteObject(client_rgn);
  DeleteObject(shape);
  return result;
}

}  // namespace

HRGN Create_Rect_Rgn_W(const Logical_Window* l, const World_Window* w, double x1, double y1,
                       double x2, double y2) {
  POINT a = Map_Point(w, l, x1, y1), b = Map_Point(w, l, x2, y2);
  return CreateRectRgn(a.x, a.y, b.x, b.y);
}

HRGN Create_Ellipse_Rgn_W(const Logical_Window* l, const World_Window* w, double x1, double y1,
                          double x2, double y2) {
  POINT a = Map_Point(w, l, x1, y1), b = Map_Point(w, l, x2, y2);
  HRGN rgn = CreateEllipticRgn(a.x, a.y, b.x, b.y);
  RECT box;
  GetRgnBox(rgn, &box);
  return rgn;
}

HRGN Create_Polygon_Rgn_W(const Logical_Window* l, const World_Window* w, const double* points,
                          int n) {
  return With_Mapped_Points<HRGN>(w, l, points, n, nullptr, [](const POINT* p, int count) {
    return CreatePolygonRgn(p, count, ALTERNATE);
  });
}

namespace {

// The two world corners in device units of the context.
void Device_Corners(HDC dc, const Coord_Syst* cs, double x1, double y1, double x2, double y2,
                    POINT p[2]) {
  p[0] = Map_Point(&cs->world, &cs->window, x1, y1);
  p[1] = Map_Point(&cs->world, &cs->window, x2, y2);
  LPtoDP(dc, p, 2);
}

}  // namespace

HRGN Create_Rect_Rgn_Clipped(HDC dc, HWND window, const Coord_Syst* cs, double x1, double y1,
                             double x2, double y2) {
  if (!cs) return nullptr;
  POINT p[2];
  Device_Corners(dc, cs, x1, y1, x2, y2, p);
  RECT client = {0, 0, 0, 0};
  GetClientRect(window, &client);
  Clamp_To_Client(&p[0], client);
  Clamp_To_Client(&p[1], client);
  return CreateRectRgn(p[0].x, p[0].y, p[1].x, p[1].y);
}

HRGN Create_Ellipse_Rgn_Clipped(HDC dc, HWND window, const Coord_Syst* cs, double x1, double y1,
                                double x2, double y2) {
  if (!cs) return nullptr;
  POINT p[2];
  Device_Corners(dc, cs, x1, y1, x2, y2, p);
  return Clip_To_Client(window, CreateEllipticRgn(p[0].x, p[0].y, p[1].x, p[1].y));
}

HRGN Create_Polygon_Rgn_Clipped(HDC dc, const double* points, int n, HWND window,
                                const Coord_Syst* cs) {
  if (!cs) return nullptr;
  HRGN polygon = With_Mapped_Points<HRGN>(&cs->world, &cs->window, points, n, nullptr,
                                          [&](POINT* p, int count) {
                                            LPtoDP(dc, p, count);
                                            return CreatePolygonRgn(p, count, ALTERNATE);
                                          });
  if (!polygon) return nullptr;
  return Clip_To_Client(window, polygon);
}
