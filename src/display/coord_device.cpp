// The coordinate functions that ask the device: screen size and cursor.
#include "tessaline/display/coord_device.h"

#include "tessaline/platform/gdi.h"
#include "tessaline/platform/user.h"

void Get_Display_Dimensions(int32_t dims[4]) {
  if (!dims) return;
  HDC ic = CreateICA("DISPLAY", nullptr, nullptr, nullptr);
  dims[0] = GetDeviceCaps(ic, HORZSIZE);
  dims[1] = GetDeviceCaps(ic, VERTSIZE);
  dims[2] = GetDeviceCaps(ic, HORZRES);
  dims[3] = GetDeviceCaps(ic, VERTRES);
  DeleteDC(ic);
}

void Get_World_Cursor_Pos(HWND window, HDC dc, const Coord_Syst* cs, double* x, double* y,
                          double step) {
  if (!cs || !x || !y) return;
  POINT p = {0, 0};
  GetCursorPos(&p);
  ScreenToClient(window, &p);
  DPtoLP(dc, &p, 1);
  const World_Window& w = cs->world;
  const Logical_Window& l = cs->window;
  double wx = w.w / l.ext_x * (static_cast<double>(p.x) - l.org_x) + w.x0;
  double wy = w.h / l.ext_y * (static_cast<double>(p.y) - l.org_y) + w.y0;
  *x = Snap_To_Grid(wx, step);
  *y = Snap_To_Grid(wy, step);
}
