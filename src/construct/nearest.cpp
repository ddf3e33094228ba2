// Nearest-element queries over one objects array: the per-kind searches and
// the squared distance to an element of any kind.
#include "tessaline/construct/nearest.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "construct/nearest_internal.h"
#include "model/record.h"
#include "model/spline_curve.h"
#include "tessaline/geometry/projection.h"
#include "tessaline/geometry/vector.h"

namespace {

// The running best of a scan: the first candidate sets it, a later one
// replaces it only when strictly nearer, so ties keep the lower index.
struct Best {
  int index = -1;
  double distance = 0.0;

  void Offer(int i, double d) {
    if (index < 0 || d < distance) {
      index = i;
      distance = d;
    }
  }
};

// Walks the records of the array in index order; `measure(record, handle)`
// gives the element's distance and whether it qualifies. Each record is
// locked only while it is read.
template <class F>
Best Scan(const Objects_Array_Type* array, F measure) {
  Best best;
  Array_Slots slots(array);
  for (size_t i = 0; i < slots.size(); ++i) {
    Locked_Element e(slots[i]);
    if (!e) continue;
    double d;
    if (measure(*e, slots[i], &d)) best.Offer(static_cast<int>(i), d);
  }
  return best;
}

int Report(const Best& best, double* distance) {
  if (distance) *distance = best.distance;
  return best.index;
}

// Distance to the infinite line through a construction line's ends; -1.0
// for an ordinary segment, which the line searches never take.
double Line_Distance(const Element_Record& e, double x, double y) {
  if (e.attr & ATTR_ORDINARY) return -1.0;
  const auto& s = e.u.seg;
  return Distance_Line_Point(s.x1, s.y1, s.x2, s.y2, x, y);
}

int Nearest_Line(const Objects_Array_Type* array, double x, double y, HGLOBAL excluded) {
  return Scan(array,
              [&](const Element_Record& e, HGLOBAL h, double* d) {
                if (e.type != EL_SEGMENT || (excluded && h == excluded)) return false;
                *d = Line_Distance(e, x, y);
                return *d >= 0;  // the test comes before the comparison
              })
      .index;
}

int Nearest_Circle(const Objects_Array_Type* array, double x, double y, double* distance,
                   HGLOBAL excluded) {
  Best best = Scan(array, [&](const Element_Record& e, HGLOBAL h, double* d) {
    if (e.type != EL_CIRCLE || (excluded && h == excluded)) return false;
    *d = Distance_Circle_Point(e.u.circle.xc, e.u.circle.yc, e.u.circle.r, x, y);
    return true;
  });
  return Report(best, distance);
}

}  // namespace

int Get_Nearest_Segment_End(const Objects_Array_Type* array, double x, double y, double* distance) {
  Best best = Scan(array, [&](const Element_Record& e, HGLOBAL, double* d) {
    if (e.type != EL_SEGMENT) return false;
    const auto& s = e.u.seg;
    *d = std::min(Distance_2Points(x, y, s.x1, s.y1), Distance_2Points(x, y, s.x2, s.y2));
    return true;
  });
  return Report(best, distance);
}

int Get_Nearest_Circle(const Objects_Array_Type* array, double x, double y, double* distance) {
  return Nearest_Circle(array, x, y, distance, 0);
}

int Get_Nearest_Circle_Besides1(const Objects_Array_Type* array, double x, double y,
                                double* distance, HGLOBAL excluded) {
  // A null excluded handle names no element: every circle qualifies.
  return Nearest_Circle(array, x, y, distance, excluded);
}

int Get_Nearest_Line(const Objects_Array_Type* array, double x, double y) {
  return Nearest_Line(array, x, y, 0);
}

int Get_Nearest_Line_Besides1(const Objects_Array_Type* array, double x, double y,
                              HGLOBAL excluded) {
  return Nearest_Line(array, x, y, excluded);
}

int Get_Nearest_Segment(const Objects_Array_Type* array, double x, double y, double* sq_distance) {
  Best best = Scan(array, [&](const Element_Record& e, HGLOBAL, double* d) {
    if (e.type != EL_SEGMENT) return false;
    const auto& s = e.u.seg;
    *d = (e.attr & ATTR_ORDINARY) ? SQDistance_Segment_Point(s.x1, s.y1, s.x2, s.y2, x, y)
                                  : SQDistance_Line_Point(s.x1, s.y1, s.x2, s.y2, x, y);
    return true;
  });
  return Report(best, sq_distance);
}

int Get_Nearest_Arc(const Objects_Array_Type* array, double x, double y) {
  return Scan(array,
              [&](const Element_Record& e, HGLOBAL, double* d) {
                if (e.type != EL_ARC) return false;
                const auto& a = e.u.arc;
                *d = Distance_Arc_Point(a.xc, a.yc, a.r, a.a1, a.a2, x, y);
                return true;
              })
      .index;
}

// ---- Any kind ----------------------------------------------------------------

double Polyline_SQDist(const Element_Record& e, double x, double y, int* piece) {
  Locked<double> xy(e.u.poly.nodes);
  size_t n = std::min(static_cast<size_t>(std::max(e.u.poly.n, 0)), xy.count() / 2);
  if (n == 0) return -1.0;
  double best = SQDistance_2Points(x, y, xy[0], xy[1]);
  int at = 0;
  for (size_t i = 0; i + 1 < n; ++i) {
    double d =
        SQDistance_Segment_Point(xy[2 * i], xy[2 * i + 1], xy[2 * i + 2], xy[2 * i + 3], x, y);
    if (i == 0 || d < best) {
      best = d;
      at = static_cast<int>(i);
    }
  }
  if (piece) *piece = at;
  return best;
}

double Spline_Pick_Step(const Element_Record::Spline_Data& s) {
  Spline_Curve curve(s);
  size_t n = curve.nodes();
  if (n < 2) return 0.0;
  double length = 0;
  for (size_t i = 0; i + 1 < n; ++i) length += curve.Chord(i);
  return length / (static_cast<double>(kSpline_Pick_Strokes) * static_cast<double>(n - 1));
}

double Spline_SQDist(const Element_Record::Spline_Data& s, double step, double x, double y,
                     int* piece, double bound) {
  Spline_Curve curve(s);
  size_t n = curve.nodes();
  if (n == 0) return -1.0;
  double best = SQDistance_2Points(x, y, curve.x(0), curve.y(0));
  int at = 0;
  bool first = true;
  double t0 = 0;
  for (size_t i = 0; i + 1 < n; ++i) {
    const double hc = curve.Chord(i), t1 = t0 + hc;
    // A piece whose box lies farther than the best so far (or than the
    // caller's bound) cannot give a nearer chord: it is not sampled.
    double x0, y0, x1, y1;
    curve.Piece_Box(i, hc, &x0, &y0, &x1, &y1);
    double ex = std::max({x0 - x, 0.0, x - x1}), ey = std::max({y0 - y, 0.0, y - y1});
    double low = ex * ex + ey * ey;
    if (!(low > (first ? bound : std::min(best, bound)))) {
      double px = curve.x(i), py = curve.y(i);
      curve.Piece(i, t0, t1, step, [&](double qx, double qy) {
        double d = SQDistance_Segment_Point(px, py, qx, qy, x, y);
        if (first || d < best) {
          best = d;
          at = static_cast<int>(i);
          first = false;
        }
        px = qx;
        py = qy;
      });
    } else if (first && low < best) {
      best = low;  // stands for the piece: beyond the bound in any case
    }
    t0 = t1;
  }
  if (piece) *piece = at;
  return best;
}

double Record_SQDist(const Element_Record& e, double x, double y, int* part, double bound) {
  int p = 0;
  double d = -1.0;
  const auto& u = e.u;
  switch (e.type) {
    case EL_POINT:
      d = SQDistance_2Points(u.point.x, u.point.y, x, y);
      break;
    case EL_SEGMENT:
      d = (e.attr & ATTR_ORDINARY)
              ? SQDistance_Segment_Point(u.seg.x1, u.seg.y1, u.seg.x2, u.seg.y2, x, y)
              : SQDistance_Line_Point(u.seg.x1, u.seg.y1, u.seg.x2, u.seg.y2, x, y);
      break;
    case EL_POLYLINE:
      d = Polyline_SQDist(e, x, y, &p);
      break;
    case EL_CIRCLE:
      d = SQDistance_Circle_Point(u.circle.xc, u.circle.yc, u.circle.r, x, y);
      break;
    case EL_ARC:
      d = SQDistance_Arc_Point(u.arc.xc, u.arc.yc, u.arc.r, u.arc.a1, u.arc.a2, x, y);
      break;
    case EL_SPLINE:
      d = Spline_SQDist(u.spline, Spline_Pick_Step(u.spline), x, y, &p, bound);
      break;
    default:
      break;
  }
  if (part) *part = p;
  return d;
}

double SQDist_Element_Point(HGLOBAL h, double x, double y, int* part) {
  Locked_Element e(h);
  if (!e) return -1.0;
  int p = 0;
  double d = Record_SQDist(*e, x, y, &p);
  // The piece number is reported for a spline only; a polyline's piece
  // reaches the host through SQNearest_Element_Point.
  if (part && e->type == EL_SPLINE && d >= 0) *part = p;
  return d;
}

HGLOBAL SQNearest_Element_Point(const Objects_Array_Type* array, double x, double y, int* index,
                                int* part, double* sq_distance) {
  Best best;
  HGLOBAL best_handle = 0;
  int best_part = -1;
  Array_Slots slots(array);
  for (size_t i = 0; i < slots.size(); ++i) {
    Locked_Element e(slots[i]);
    if (!e) continue;
    int p = 0;
    // A spline is sampled only where it may come nearer than the best.
    double d = Record_SQDist(*e, x, y, &p, best.index < 0 ? INFINITY : best.distance);
    // An element without a distance (unknown type, no nodes, not a number)
    // is passed over rather than kept as the best for good.
    if (!(d >= 0)) continue;
    if (best.index < 0 || d < best.distance) {
      best.Offer(static_cast<int>(i), d);
      best_handle = slots[i];
      best_part = p;
    }
  }
  if (index) *index = best.index;
  if (part) *part = best_part;
  if (sq_distance) *sq_distance = best.index < 0 ? -1.0 : best.distance;
  return best_handle;
}
