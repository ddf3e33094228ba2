// Section properties by a square grid of cells, and by the triangles of a
// finite-element split.
#include "analysis/grid.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "contour/lists.h"
#include "contour/prepared.h"
#include "model/box.h"
#include "platform/locked.h"
#include "tessaline/analysis/properties.h"
#include "tessaline/geometry/triangle.h"
#include "tessaline/geometry/vector.h"

namespace {

constexpr double kShortcut_Cells = 200000;
constexpr double kMax_Pass_Cells = 1099511627776.0;  // 2^40: no grid pass is meant this fine
constexpr double kMax_Final_Cells = 268435456.0;     // 2^28

// The one hole's inner rectangle, when the grid is fine enough to use it.
// The rectangle is used only when its centre lies in the hole, so a hole
// whose middle is not its own (a "C") never hides cells of the section.
bool Hole_Shortcut(Surface_Type* surface, double cells, Box* inner) {
  if (cells <= kShortcut_Cells || !surface || surface->hole_count != 1) return false;
  Handle_Slots holes = Surface_List(surface, kHoles);
  if (holes.size() != 1) return false;
  Locked<Contour_Type> hole(holes[0]);
  if (!hole) return false;
  double l, t, r, b;
  if (!Find_Inner_Rect(hole.get(), &l, &t, &r, &b)) return false;
  if (!Is_Point_In_Contour(hole.get(), (l + r) / 2, (t + b) / 2)) return false;
  *inner = Box{l, b, r, t, false};
  return true;
}

}  // namespace

void Grid_Pass_Sums(Surface_Type* surface, surface_geometry* g, double left, double top,
                    double right, double bottom, double h, bool prepared) {
  if (!g) return;
  g->area = g->first_moment_x = g->first_moment_y = 0;
  g->second_moment_x = g->second_moment_y = g->product_moment = 0;
  if (!(h > 0) || !std::isfinite(h) || !std::isfinite(left) || !std::isfinite(right) ||
      !std::isfinite(top) || !std::isfinite(bottom)) {
    return;
  }
  const double nx = std::ceil((right - left) / h), ny = std::ceil((top - bottom) / h);
  // A step below the spacing of the coordinates would never leave the row.
  if (nx * ny > kMax_Pass_Cells || left + h == left || bottom + h == bottom) return;
  Box inner;
  const bool shortcut = Hole_Shortcut(surface, nx * ny, &inner);
  Prepared_Surface shape;
  Prepared_Row row;
  try {
    prepared = prepared && shape.Read(surface);
  } catch (const std::bad_alloc&) {
    prepared = false;
  }
  const double a = h * h;
  double sa = 0, sx = 0, sy = 0, sxx = 0, syy = 0, sxy = 0;
  for (double y = bottom; y < top; y += h) {
    const double yc = (y + (y + h)) / 2;
    const bool in_band = shortcut && yc > inner.bottom && yc < inner.top;
    if (prepared) shape.Set_Row(yc, &row);
    for (double x = left; x < right; x += h) {
      const double xc = (x + (x + h)) / 2;
      if (in_band && xc > inner.left && xc < inner.right) continue;  // in the hole
      if (!(prepared ? row.Contains(xc) : Is_Point_In_Surface(surface, xc, yc))) continue;
      sa += a;
      sy += a * yc;
      sx += a * xc;
      syy += a * yc * yc;
      sxx += a * xc * xc;
      sxy += a * xc * yc;
    }
  }
  g->area = sa;
  g->first_moment_x = sx;
  g->first_moment_y = sy;
  g->second_moment_x = sxx;
  g->second_moment_y = syy;
  g->product_moment = sxy;
}

void Grid_Pass(Surface_Type* surface, surface_geometry* g, double left, double top, double right,
               double bottom, double h) {
  Grid_Pass_Sums(surface, g, left, top, right, bottom, h, true);
}

void Calc_Rect_Grid_Surface_Param(Surface_Type* surface, surface_geometry* g) {
  if (!g) return;
  double left, top, right, bottom;
  if (!Get_Surface_Extern_Rect(surface, &left, &top, &right, &bottom)) return;
  const double w = right - left, ht = top - bottom;
  const double h0 = std::min(w, ht) * 0.01;
  if (h0 == 0 || !std::isfinite(h0)) return;
  Grid_Pass(surface, g, left, top, right, bottom, h0);  // coarse: the area only
  const double fill = (g->area / std::fabs(w)) / std::fabs(ht);
  double h = fill == 0 ? h0 / 20 : fill * h0;
  h = std::max(h, std::sqrt(w * ht / kMax_Final_Cells));
  *g = surface_geometry{};
  Grid_Pass(surface, g, left, top, right, bottom, h);
  Finish_Surface_Geometry(surface, g);
}

void Sum_FE_Triangles(FE_Split* split, surface_geometry* g) {
  if (!split || !g || split->triangle_count <= 0 || split->node_count <= 0) return;
  Locked<FEPOINT> nodes(split->nodes);
  Locked<FE3Ang> triangles(split->triangles);
  if (!nodes || !triangles) return;
  // Counts the record claims, bounded by its blocks.
  const long long node_count = std::min<long long>(split->node_count, nodes.count());
  const long long count = std::min<long long>(split->triangle_count, triangles.count());
  for (long long t = 0; t < count; ++t) {
    const int32_t* n = triangles[t].n;
    if (std::any_of(n, n + 3, [&](int32_t i) { return i < 0 || i >= node_count; })) continue;
    const FEPOINT &p = nodes[n[0]], &q = nodes[n[1]], &r = nodes[n[2]];
    double a =
        Calc_3Ang_Area(Distance_2Points(p.x, p.y, q.x, q.y), Distance_2Points(q.x, q.y, r.x, r.y),
                       Distance_2Points(r.x, r.y, p.x, p.y));
    double xg = (p.x + q.x + r.x) / 3, yg = (p.y + q.y + r.y) / 3;
    g->area += a;
    g->first_moment_y += a * yg;
    g->first_moment_x += a * xg;
    g->second_moment_y += a * yg * yg;
    g->second_moment_x += a * xg * xg;
    g->product_moment += a * xg * yg;
  }
}

void Calc_Rect_Grid_Surface_Param_Using_FE_Mesh(FE_Split* split, Surface_Type* surface,
                                                surface_geometry* g) {
  if (!g) return;
  *g = surface_geometry{};
  Sum_FE_Triangles(split, g);
  Finish_Surface_Geometry(surface, g);
}
