// Display copies: logical-coordinate stand-ins of elements that a host draws
// shifted, in exclusive-or, while the user drags them.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "display/draw_internal.h"
#include "display/mapping.h"
#include "display/visible_arcs.h"
#include "model/child_index.h"
#include "model/record.h"
#include "model/spline_curve.h"
#include "tessaline/model/edit.h"

namespace {

// Most points a circle or arc copy is chained with.
constexpr double kMax_Arc_Pieces = 2048;

// A movable block holding `bytes`, filled from `data`; 0 when it cannot be made.
HGLOBAL Block_Of(const void* data, size_t bytes) {
  HGLOBAL h = GlobalAlloc(GHND, bytes);
  if (!h) return 0;
  if (bytes) {
    Locked<unsigned char> p(h);
    if (p) std::memcpy(p.get(), data, bytes);
  }
  return h;
}

// One block: the header, then the points.
HGLOBAL Simple_Copy(int32_t type, const std::vector<POINT>& pts) {
  std::vector<unsigned char> bytes(sizeof(iElement_Header) + pts.size() * sizeof(POINT));
  iElement_Header header{};
  header.type = type;
  header.node_count = static_cast<int32_t>(pts.size());
  std::memcpy(bytes.data(), &header, sizeof header);
  if (!pts.empty())
    std::memcpy(bytes.data() + sizeof header, pts.data(), pts.size() * sizeof(POINT));
  return Block_Of(bytes.data(), bytes.size());
}

// The header with its inner blocks; when an inner block cannot be made,
// those made are freed and 0 is returned.
HGLOBAL Compound_Copy(int32_t type, int32_t n,
                      std::initializer_list<std::pair<const void*, size_t>> inner) {
  iElement_Header header{};
  header.type = type;
  header.node_count = n;
  int k = 0;
  for (auto [data, bytes] : inner) {
    HGLOBAL b = Block_Of(data, bytes);
    if (!b) {
      for (int j = 0; j < k; ++j) GlobalFree(header.blocks[j]);
      return 0;
    }
    header.blocks[k++] = b;
  }
  HGLOBAL h = Block_Of(&header, sizeof header);
  if (!h) {
    for (int j = 0; j < k; ++j) GlobalFree(header.blocks[j]);
  }
  return h;
}

// The circle (whole) or the arc as a chain whose chords stay within a
// quarter of a logical unit of the curve.
std::vector<POINT> Arc_Chain(const Coord_Syst* cs, double xc, double yc, double r, double start,
                             double span) {
  std::vector<POINT> pts;
  if (!(r > 0) || !std::isfinite(r) || !std::isfinite(xc) || !std::isfinite(yc)) return pts;
  double k = std::max(std::fabs(cs->window.ext_x / cs->world.w),
                      std::fabs(cs->window.ext_y / cs->world.h));
  double logical_r = r * k;
  double pieces = kMax_Arc_Pieces;
  if (std::isfinite(logical_r) && logical_r > 0) {
    double step = 2 * std::sqrt(2 * 0.25 / logical_r);
    pieces = std::clamp(std::ceil(span / step), 4.0, kMax_Arc_Pieces);
  }
  int count = static_cast<int>(pieces);
  for (int i = 0; i <= count; ++i) {
    double t = start + span * i / count;
    pts.push_back(Map_Point(&cs->world, &cs->window, xc + r * std::cos(t), yc + r * std::sin(t)));
  }
  return pts;
}

HGLOBAL Copy_Of(const Coord_Syst* cs, const Element_Record& e) {
  auto map = [&](double x, double y) { return Map_Point(&cs->world, &cs->window, x, y); };
  const auto& u = e.u;
  switch (e.type) {
    case EL_POINT:
      return Simple_Copy(e.type, {map(u.point.x, u.point.y)});
    case EL_SEGMENT:
      return Simple_Copy(e.type, {map(u.seg.x1, u.seg.y1), map(u.seg.x2, u.seg.y2)});
    case EL_CIRCLE:
      return Simple_Copy(e.type,
                         Arc_Chain(cs, u.circle.xc, u.circle.yc, u.circle.r, 0, 2 * kArc_Pi));
    case EL_ARC: {
      Angle_Interval a = Arc_Interval(u.arc.a1, u.arc.a2);
      return Simple_Copy(e.type,
                         Arc_Chain(cs, u.arc.xc, u.arc.yc, u.arc.r, a.start, a.end - a.start));
    }
    case EL_POLYLINE: {
      Locked<double> xy(u.poly.nodes);
      Locked<int32_t> words(static_cast<HGLOBAL>(e.attr));
      size_t n = std::min(static_cast<size_t>(std::max(u.poly.n, 0)), xy.count() / 2);
      std::vector<POINT> nodes;
      for (size_t i = 0; i < n; ++i) nodes.push_back(map(xy[2 * i], xy[2 * i + 1]));
      std::vector<int32_t> attrs(n, 0);
      for (size_t i = 0; i < n && i < words.count(); ++i) attrs[i] = words[i];
      return Compound_Copy(
          e.type, static_cast<int32_t>(n),
          {{nodes.data(), n * sizeof(POINT)}, {attrs.data(), n * sizeof(int32_t)}});
    }
    case EL_SPLINE: {
      Spline_Curve curve(u.spline);
      Locked<int32_t> words(static_cast<HGLOBAL>(e.attr));
      size_t n = curve.nodes();
      std::vector<POINT> chain, nodes;
      for (size_t i = 0; i < n; ++i) nodes.push_back(map(curve.x(i), curve.y(i)));
      if (n > 0) chain.push_back(nodes[0]);
      curve.Walk(
          Spline_Step(cs), [](size_t) {}, [&](double x, double y) { chain.push_back(map(x, y)); });
      std::vector<int32_t> attrs(2 * n, 0);
      for (size_t i = 0; i < 2 * n && i < words.count(); ++i) attrs[i] = words[i];
      return Compound_Copy(e.type, static_cast<int32_t>(n),
                           {{chain.data(), chain.size() * sizeof(POINT)},
                            {nodes.data(), n * sizeof(POINT)},
                            {attrs.data(), 2 * n * sizeof(int32_t)}});
    }
    default:
      return 0;
  }
}

// Frees a copy that never reached an array, with its inner blocks.
void Free_Copy(HGLOBAL copy) {
  {
    Locked<iElement_Header> header(copy);
    if (header) {
      for (HGLOBAL b : header->blocks) GlobalFree(b);
    }
  }
  GlobalFree(copy);
}

// The points shifted by (dx, dy); false when one leaves the 32-bit range.
bool Shift(const POINT* p, size_t n, int32_t dx, int32_t dy, std::vector<POINT>& out) {
  out.resize(n);
  for (size_t i = 0; i < n; ++i) {
    int64_t x = int64_t{p[i].x} + dx, y = int64_t{p[i].y} + dy;
    if (x < INT32_MIN || x > INT32_MAX || y < INT32_MIN || y > INT32_MAX) return false;
    out[i] = POINT{static_cast<LONG>(x), static_cast<LONG>(y)};
  }
  return true;
}

void Markers(HDC dc, const std::vector<POINT>& pts) {
  for (const POINT& p : pts) {
    if (p.x < INT32_MIN + kMarker_Radius || p.x > INT32_MAX - kMarker_Radius - 1 ||
        p.y < INT32_MIN + kMarker_Radius || p.y > INT32_MAX - kMarker_Radius - 1)
      continue;
    Ellipse(dc, p.x - kMarker_Radius, p.y - kMarker_Radius, p.x + kMarker_Radius + 1,
            p.y + kMarker_Radius + 1);
  }
}

void Draw_Copy(HDC dc, HGLOBAL copy, int32_t dx, int32_t dy) {
  iElement_Header header;
  std::vector<POINT> chain, nodes;
  {
    Locked<unsigned char> block(copy);
    if (!block || block.count() < sizeof header) return;
    std::memcpy(&header, block.get(), sizeof header);
    if (header.type != EL_POLYLINE && header.type != EL_SPLINE) {
      size_t n = (block.count() - sizeof header) / sizeof(POINT);
      n = std::min(n, static_cast<size_t>(std::max(header.node_count, 0)));
      if (!Shift(reinterpret_cast<const POINT*>(block.get() + sizeof header), n, dx, dy, chain))
        return;
    }
  }
  if (header.type == EL_POLYLINE || header.type == EL_SPLINE) {
    Locked<POINT> first(header.blocks[0]);
    if (first && !Shift(first.get(), first.count(), dx, dy, chain)) return;
    if (header.type == EL_SPLINE) {
      Locked<POINT> second(header.blocks[1]);
      if (second && !Shift(second.get(), second.count(), dx, dy, nodes)) return;
    }
  }
  if (header.type == EL_POINT) {
    Markers(dc, chain);
    return;
  }
  if (chain.size() >= 2) Polyline(dc, chain.data(), static_cast<int>(chain.size()));
  Markers(dc, nodes);
}

}  // namespace

int Create_Moved_iObjects(const Objects_Array_Type* source, const Coord_Syst* cs,
                          Objects_Array_Type* copies) {
  if (!cs || !copies) return 0;
  int made = 0;
  for (HGLOBAL h : Array_Handles(source)) {
    HGLOBAL copy;
    {
      Locked_Element e(h);
      if (!e) continue;
      copy = Copy_Of(cs, *e);
    }
    if (!copy) continue;
    if (Add_Element_In_Array_by_Handle(copies, copy) < 0) {
      Free_Copy(copy);
      continue;
    }
    ++made;
  }
  return made;
}

int Draw_iObjects_with_Disp(HDC dc, const Objects_Array_Type* copies, int32_t dx, int32_t dy,
                            COLORREF colour) {
  Rubber_Paint paint(dc, PS_SOLID, colour, GetStockObject(NULL_BRUSH), false);
  for (HGLOBAL copy : Array_Handles(copies)) Draw_Copy(dc, copy, dx, dy);
  return paint.previous_rop();
}
