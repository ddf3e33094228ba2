// World and logical coordinates.
#include "tessaline/display/coord.h"

#include <cmath>
#include <limits>

#include "platform/controls.h"

namespace {

// trunc toward zero into the 32-bit logical range (NaN gives 0).
int32_t Trunc_To_Logical(double v) {
  if (std::isnan(v)) return 0;
  double t = std::trunc(v);
  if (t >= 2147483647.0) return std::numeric_limits<int32_t>::max();
  if (t <= -2147483648.0) return std::numeric_limits<int32_t>::min();
  return static_cast<int32_t>(t);
}

int32_t Add_Clamped(int32_t a, int32_t b) {
  int64_t s = static_cast<int64_t>(a) + b;
  if (s > std::numeric_limits<int32_t>::max()) return std::numeric_limits<int32_t>::max();
  if (s < std::numeric_limits<int32_t>::min()) return std::numeric_limits<int32_t>::min();
  return static_cast<int32_t>(s);
}

void Scroll_Axis(Scroll_Par& p, double origin, double size) {
  p.min = origin - 4 * size;  // four window widths each way
  p.max = origin + 4 * size;
  p.pos = origin;
  p.line = std::fabs(size) * 0.01;
  p.page = std::fabs(size) * 0.25;
}

}  // namespace

Coord_Syst* Set_Scale(Coord_Syst* cs, double scale_x, double scale_y) {
  if (!cs) return cs;
  cs->scale_x = scale_x;
  cs->scale_y = scale_y;
  return cs;
}

void Make_Coord_Syst_Settings(Coord_Syst* cs, int32_t /*unused*/, double scale_x, double scale_y,
                              double x0, double y0) {
  if (!cs) return;
  cs->scale_x = scale_x;
  cs->scale_y = scale_y;
  cs->world.w = scale_x * cs->paper_w;
  cs->world.h = scale_y * cs->paper_h;
  cs->world.x0 = x0;
  cs->world.y0 = y0;
  Set_Standard_Scroll_Par(cs);
}

void Rescale_World(Coord_Syst* cs, int32_t keep_centre) {
  if (!cs) return;
  double cx = cs->world.x0 + cs->world.w / 2;
  double cy = cs->world.y0 + cs->world.h / 2;
  cs->world.w = cs->scale_x * cs->paper_w;
  cs->world.h = cs->scale_y * cs->paper_h;
  if (keep_centre == 0) {
    cs->world.x0 = 0.0;
    cs->world.y0 = 0.0;
  } else {
    cs->world.x0 = cx - cs->world.w / 2;
    cs->world.y0 = cy - cs->world.h / 2;
  }
  Set_Standard_Scroll_Par(cs);
}

void Set_Standard_Scroll_Par(Coord_Syst* cs) {
  if (!cs) return;
  Scroll_Axis(cs->scroll_x, cs->world.x0, cs->world.w);
  Scroll_Axis(cs->scroll_y, cs->world.y0, cs->world.h);
}

void WPtoLP(const World_Window* world, const Logical_Window* window, double x, double y,
            int32_t* lx, int32_t* ly) {
  *lx = Add_Clamped(Trunc_To_Logical(window->ext_x / world->w * (x - world->x0)), window->org_x);
  *ly = Add_Clamped(Trunc_To_Logical(window->ext_y / world->h * (y - world->y0)), window->org_y);
}

void LPtoWP(const World_Window* world, const Logical_Window* window, double* x, double* y,
            int32_t lx, int32_t ly) {
  *x = world->w / window->ext_x * (static_cast<double>(lx) - window->org_x) + world->x0;
  *y = world->h / window->ext_y * (static_cast<double>(ly) - window->org_y) + world->y0;
}

double LPtoWP_Dist(const World_Window* world, const Logical_Window* window, int32_t d) {
  double k = world->w / window->ext_x;
  double ox = window->org_x;
  return std::fabs((d - ox) * k + world->x0 - ((-ox) * k + world->x0));
}

int32_t WPtoLP_Dist(const World_Window* world, const Logical_Window* window, double d) {
  double k = window->ext_x / world->w;
  int64_t a = Trunc_To_Logical((d - world->x0) * k);
  int64_t b = Trunc_To_Logical((0 - world->x0) * k);
  int64_t diff = a > b ? a - b : b - a;
  return diff > std::numeric_limits<int32_t>::max() ? std::numeric_limits<int32_t>::max()
                                                    : static_cast<int32_t>(diff);
}

double Snap_To_Grid(double v, double s) {
  if (s == 0.0) return v;
  double sgn = v >= 0 ? 1.0 : -1.0;
  double r = std::fmod(v, s);
  return r >= sgn * s / 2 ? std::ceil(v / s) * s : std::floor(v / s) * s;
}

void Init_Units(Coord_Syst* cs, int32_t code) {
  if (!cs) return;
  cs->unit_factor = Get_Unit_Factor(code);  // asked with the code exactly as given
  cs->unit_code = code >= 1 && code <= 6 ? code : 1;
}
