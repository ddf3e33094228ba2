// Picking: the hit test of every element kind against the pick aperture,
// toggling the selection of what is hit, and clearing the selection. Builds
// on the nearest-element distances and on element drawing.
#include <algorithm>
#include <cmath>
#include <vector>

#include "construct/nearest_internal.h"
#include "display/draw_internal.h"
#include "model/child_index.h"
#include "model/record.h"
#include "tessaline/display/draw.h"
#include "tessaline/geometry/projection.h"
#include "tessaline/geometry/vector.h"
#include "tessaline/model/edit.h"

namespace {

// The aperture of one pick in world and logical units.
struct Aperture {
  double world;
  double logical;
};

// What a hit toggles: the attribute word of a simple element (word < 0) or
// per-node word `word` of a polyline or spline.
struct Hit {
  bool hit = false;
  long long word = -1;
};

// Larger on-screen extent of a segment, logical units.
int32_t Screen_Extent(const Coord_Syst* cs, const Element_Record::Segment_Data& s) {
  double extent = std::max(std::fabs(s.x2 - s.x1), std::fabs(s.y2 - s.y1));
  return WPtoLP_Dist(&cs->world, &cs->window, extent);
}

double Segment_Pick_Distance(const Coord_Syst* cs, const Element_Record& e, double x, double y,
                             const Aperture& ap) {
  const auto& s = e.u.seg;
  // Construction lines are measured as the line searches measure them.
  if (!(e.attr & ATTR_ORDINARY)) return Distance_Line_Point(s.x1, s.y1, s.x2, s.y2, x, y);
  // A segment too short to aim at is picked by its midpoint.
  if (Screen_Extent(cs, s) <= ap.logical / 4)
    return Distance_2Points((s.x1 + s.x2) * 0.5, (s.y1 + s.y2) * 0.5, x, y);
  return Distance_Segment_Point(s.x1, s.y1, s.x2, s.y2, x, y);
}

Hit Spline_Hit(const Coord_Syst* cs, const Element_Record& e, double x, double y,
               const Aperture& ap) {
  // A node under the cursor wins over the curve through it.
  Locked<double> xs(e.u.spline.x), ys(e.u.spline.y);
  long long n = std::min({static_cast<long long>(std::max(e.u.spline.n, 0)),
                          static_cast<long long>(xs.count()), static_cast<long long>(ys.count())});
  long long node = -1;
  double best = 0;
  for (long long i = 0; i < n; ++i) {
    double d = Distance_2Points(xs[static_cast<size_t>(i)], ys[static_cast<size_t>(i)], x, y);
    if (node < 0 || d < best) {
      node = i;
      best = d;
    }
  }
  if (node >= 0 && best <= ap.world) return {true, 2 * node};
  int piece = 0;
  // Pieces farther than the aperture are not sampled.
  double sq = Spline_SQDist(e.u.spline, Spline_Step(cs), x, y, &piece, ap.world * ap.world);
  if (sq >= 0 && std::sqrt(sq) <= ap.world) return {true, 2LL * piece + 1};
  return {};
}

Hit Hit_Test(const Coord_Syst* cs, const Element_Record& e, double x, double y,
             const Aperture& ap) {
  const auto& u = e.u;
  double d = -1;
  switch (e.type) {
    case EL_POINT:
      d = Distance_2Points(u.point.x, u.point.y, x, y);
      break;
    case EL_SEGMENT:
      d = Segment_Pick_Distance(cs, e, x, y, ap);
      break;
    case EL_CIRCLE:
      d = Distance_Circle_Point(u.circle.xc, u.circle.yc, u.circle.r, x, y);
      break;
    case EL_ARC:
      d = Distance_Arc_Point(u.arc.xc, u.arc.yc, u.arc.r, u.arc.a1, u.arc.a2, x, y);
      break;
    case EL_POLYLINE: {
      int piece = 0;
      double sq = Polyline_SQDist(e, x, y, &piece);
      if (sq >= 0 && std::sqrt(sq) <= ap.world) return {true, piece};
      return {};
    }
    case EL_SPLINE:
      return Spline_Hit(cs, e, x, y, ap);
    default:
      return {};
  }
  return {d >= 0 && d <= ap.world, -1};
}

// Flips the selection bit the hit names. A one-node polyline has no piece
// word: nothing to flip.
void Toggle(Element_Record& e, const Hit& hit) {
  if (hit.word < 0) {
    e.attr ^= ATTR_SELECTED;
    return;
  }
  if (e.type == EL_POLYLINE && hit.word + 1 >= e.u.poly.n) return;
  Locked<int32_t> words(static_cast<HGLOBAL>(e.attr));
  if (words.holds(hit.word)) words[static_cast<size_t>(hit.word)] ^= ATTR_SELECTED;
}

}  // namespace

double Get_Pick_Aperture(const Coord_Syst* cs) {
  if (!cs) return kDefault_Pick_Aperture;
  double a = cs->unused_a[0];
  return std::isfinite(a) && a > 0 ? a : kDefault_Pick_Aperture;
}

Coord_Syst* Set_Pick_Aperture(Coord_Syst* cs, double logical_units) {
  if (cs) cs->unused_a[0] = logical_units;
  return cs;
}

int Select_Elements(HDC dc, Objects_Array_Type* array, const Coord_Syst* cs, double x, double y,
                    const COLORREF* colours) {
  std::vector<HGLOBAL> handles = Array_Handles(array);
  if (handles.empty() || !cs) return -1;
  Aperture ap;
  ap.logical = Get_Pick_Aperture(cs);
  // Logical units to world units along x, as LPtoWP_Dist converts them.
  ap.world = std::fabs(ap.logical * cs->world.w / cs->window.ext_x);
  if (!std::isfinite(ap.world)) return -1;
  int last = -1;
  for (size_t i = 0; i < handles.size(); ++i) {
    HGLOBAL h = handles[i];
    {
      Locked_Element e(h);
      if (!e) continue;
      Hit hit = Hit_Test(cs, *e, x, y, ap);
      if (!hit.hit) continue;
      Toggle(*e, hit);
    }
    last = static_cast<int>(i);
    Draw_Element(h, dc, cs, colours);
  }
  return last;
}

void Unselect_All_Elements(Objects_Array_Type* array, HDC dc, const Coord_Syst* cs,
                           const COLORREF* colours) {
  if (!array) return;
  for (HGLOBAL h : Array_Handles(array)) {
    Set_Element_Select_Attribute(h, 0);
    Draw_Element(h, dc, cs, colours);
  }
  // The walk's lock of the handles block, and at the end a second lock where
  // an unlock belonged: the block's lock count ends two higher, kept so.
  if (GlobalLock(array->handles)) GlobalLock(array->handles);
}
