// Surfaces as graphics regions: a polygon of each contour's outline in
// logical coordinates, outer contours united, holes taken out.
#include <algorithm>
#include <cmath>
#include <vector>

#include "contour/lists.h"
#include "contour/outline.h"
#include "tessaline/contour/surface.h"

namespace {

constexpr int kMax_Arc_Pieces = 4096;
// A piece never turns through more than this, however coarse the pixels.
constexpr double kMax_Region_Step = 3.14159265358979323846 / 4;

// Logical units per device pixel along x and y under the context's mapping;
// (1, 1) without a context.
void Pixel_Size(HDC dc, double* px, double* py) {
  *px = *py = 1;
  SIZE window, viewport;
  if (!dc || !GetWindowExtEx(dc, &window) || !GetViewportExtEx(dc, &viewport)) return;
  if (viewport.cx == 0 || viewport.cy == 0 || window.cx == 0 || window.cy == 0) return;
  *px = std::fabs(static_cast<double>(window.cx) / viewport.cx);
  *py = std::fabs(static_cast<double>(window.cy) / viewport.cy);
}

// The region of one contour's outline, or NULL when it has none (fewer than
// three distinct logical points, or an element that does not lock). Sets
// *failed when a region could not be made.
HRGN Contour_Region(const Contour_Type* contour, const World_Window& world,
                    const Logical_Window& window, const Arc_Division& division, bool* failed) {
  std::vector<Element_Record> elements;
  if (!Read_Contour(contour, &elements)) return nullptr;
  std::vector<Outline_Piece> pieces;
  Outline_Pieces(elements, true, division, &pieces);
  std::vector<POINT> points;
  points.reserve(pieces.size());
  for (const Outline_Piece& p : pieces) {
    int32_t x, y;
    WPtoLP(&world, &window, p.x1, p.y1, &x, &y);
    if (points.empty() || points.back().x != x || points.back().y != y) points.push_back({x, y});
  }
  while (points.size() > 1 && points.back().x == points[0].x && points.back().y == points[0].y) {
    points.pop_back();
  }
  if (points.size() < 3) return nullptr;
  HRGN rgn = CreatePolygonRgn(points.data(), static_cast<int>(points.size()), WINDING);
  if (!rgn) *failed = true;
  return rgn;
}

HRGN Build_Region(Surface_Type* surface, const World_Window& world, const Logical_Window& window,
                  double pixel) {
  auto sized = [](double v) { return std::isfinite(v) && v != 0; };
  if (!surface || !sized(world.w) || !sized(world.h) || window.ext_x == 0 || window.ext_y == 0) {
    return nullptr;
  }
  // Half a pixel in world units, on the finer axis.
  const double per_x = std::fabs(world.w / window.ext_x);
  const double per_y = std::fabs(world.h / window.ext_y);
  const Arc_Division division{kMax_Region_Step, 0.5 * pixel * std::min(per_x, per_y),
                              kMax_Arc_Pieces};
  HRGN result = CreateRectRgn(0, 0, 0, 0);
  bool failed = !result;
  for (int kind : {kOuters, kHoles}) {
    Handle_Slots contours = Surface_List(surface, kind);
    for (size_t i = 0; i < contours.size() && !failed; ++i) {
      Locked<Contour_Type> c(contours[i]);
      HRGN part = c ? Contour_Region(c.get(), world, window, division, &failed) : nullptr;
      if (!part) continue;
      failed = CombineRgn(result, result, part, kind == kOuters ? RGN_OR : RGN_DIFF) == ERROR;
      DeleteObject(part);
    }
  }
  if (failed && result) {
    DeleteObject(result);
    result = nullptr;
  }
  return result;
}

// Fills and frames the region with the colours that are not CLR_INVALID.
bool Fill_And_Frame(HDC dc, HRGN rgn, COLORREF fill, COLORREF frame, int w, int h) {
  bool done = true;
  if (fill != CLR_INVALID) {
    HBRUSH brush = CreateSolidBrush(fill);
    done = FillRgn(dc, rgn, brush) != 0;
    DeleteObject(brush);
  }
  if (frame != CLR_INVALID && done) {
    HBRUSH brush = CreateSolidBrush(frame);
    done = FrameRgn(dc, rgn, brush, w, h) != 0;
    DeleteObject(brush);
  }
  return done;
}

}  // namespace

HRGN Create_Surface_Rgn(Surface_Type* surface, HDC dc, const Coord_Syst* cs) {
  if (!cs) return nullptr;
  double px, py;
  Pixel_Size(dc, &px, &py);
  return Build_Region(surface, cs->world, cs->window, std::min(px, py));
}

HRGN Create_Surface_Rgn1(Surface_Type* surface, const World_Window* world,
                         const Logical_Window* window) {
  if (!world || !window) return nullptr;
  return Build_Region(surface, *world, *window, 1);
}

int Draw_Cont_Rgn_MM_TEXT(HDC dc, HRGN rgn, COLORREF fill, COLORREF frame) {
  const int mode = GetMapMode(dc);
  if (mode == 0 || GetObjectType(rgn) != OBJ_REGION) return 0;
  POINT window_org, viewport_org;
  SIZE window_ext, viewport_ext;
  GetWindowOrgEx(dc, &window_org);
  GetViewportOrgEx(dc, &viewport_org);
  GetWindowExtEx(dc, &window_ext);
  GetViewportExtEx(dc, &viewport_ext);
  SetMapMode(dc, MM_TEXT);
  SetWindowOrgEx(dc, 0, 0, nullptr);
  SetViewportOrgEx(dc, 0, 0, nullptr);
  bool done = Fill_And_Frame(dc, rgn, fill, frame, 1, 1);
  // Back to the host's mapping: the extents count only in the scalable modes.
  SetMapMode(dc, mode);
  SetWindowExtEx(dc, window_ext.cx, window_ext.cy, nullptr);
  SetViewportExtEx(dc, viewport_ext.cx, viewport_ext.cy, nullptr);
  SetWindowOrgEx(dc, window_org.x, window_org.y, nullptr);
  SetViewportOrgEx(dc, viewport_org.x, viewport_org.y, nullptr);
  return done ? 1 : 0;
}

int Draw_Surface(Surface_Type* surface, HDC dc, const Coord_Syst* cs, COLORREF fill,
                 COLORREF frame) {
  if (GetMapMode(dc) == 0) return 0;
  HRGN rgn = Create_Surface_Rgn(surface, dc, cs);
  if (!rgn) return 0;
  double px, py;
  Pixel_Size(dc, &px, &py);
  // About one pixel wide whatever the mapping.
  int w = static_cast<int>(std::lround(std::clamp(px, 1.0, 1e6)));
  int h = static_cast<int>(std::lround(std::clamp(py, 1.0, 1e6)));
  bool done = Fill_And_Frame(dc, rgn, fill, frame, w, h);
  DeleteObject(rgn);
  return done ? 1 : 0;
}
