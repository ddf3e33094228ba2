// Point containment: crossings of a horizontal ray with a contour's segments,
// circles and arcs.
#include <cmath>
#include <cstdint>

#include "contour/lists.h"
#include "geometry/angles.h"
#include "model/box.h"
#include "tessaline/contour/surface.h"
#include "tessaline/geometry/intersect.h"
#include "tessaline/geometry/vector.h"

namespace {

constexpr double kRay_Nudge = 1e-10;

// The ray height moved up off a vertex. Where 1e-10 is below the spacing of
// doubles the sum would not move, and the count would restart for ever.
double Nudged(double y) {
  double up = y + kRay_Nudge;
  return up != y ? up : std::nextafter(y, INFINITY);
}

// Whether the circle point (x, y) lies on the arc: on the side of the chord
// from its first stored end to its second where a counter-clockwise arc
// runs (the right). The stored ends are shared bit for bit with the
// neighbours, so at a joint exactly one of two arcs takes a crossing that
// lies off the joint by a rounding hair; a direction test (atan2 against the
// end angles, ends included) can give it to both. An arc whose ends
// coincide falls back to the direction test.
bool On_Arc(const Element_Record::Arc_Data& a, double x, double y) {
  if (a.x1 == a.x2 && a.y1 == a.y2) {
    double angle = Normalize_Angle(std::atan2(y - a.yc, x - a.xc));
    return Arc_Passes(Normalize_Angle(a.a1), Normalize_Angle(a.a2), angle);
  }
  return Vect_Mul(a.x2 - a.x1, a.y2 - a.y1, x - a.x1, y - a.y1) <= 0;
}

// The arc's crossings with the line at height yr, as Cross_Horiz_Line_Arc
// gives them: the candidates (xc + d, yr) then (xc - d, yr), one at an end's
// height made that end exactly (the nearer in x; the second on a tie), the
// kept ones in that order; a tangent point twice. On_Arc decides the others.
// Returns their number; xs gets their x, at_end whether each is an end.
int Arc_Crossings(const Element_Record::Arc_Data& a, double yr, double xs[2], bool at_end[2]) {
  double ya, yb, cand[2];
  if (Cross_Horiz_Line_Circle(yr, a.xc, a.yc, a.r, &cand[0], &ya, &cand[1], &yb) == 0) return 0;
  bool end[2] = {false, false};
  const double ends[2][2] = {{a.x1, a.y1}, {a.x2, a.y2}};
  for (const auto& e : ends) {
    if (yr != e[1]) continue;
    int i = std::fabs(cand[0] - e[0]) < std::fabs(cand[1] - e[0]) ? 0 : 1;
    cand[i] = e[0];
    end[i] = true;
  }
  int kept = 0;
  for (int i = 0; i < 2; ++i) {
    if (!end[i] && !On_Arc(a, cand[i], yr)) continue;
    xs[kept] = cand[i];
    at_end[kept] = end[i];
    ++kept;
  }
  return kept;
}

bool Is_Node(const Element_Record& r, double x, double y) {
  double e[4];
  if (Contour_Ends(r, e)) return (e[0] == x && e[1] == y) || (e[2] == x && e[3] == y);
  return r.type == EL_POINT && r.u.point.x == x && r.u.point.y == y;
}

// What an arc's second crossing at its end point (x, y) adds: the neighbour
// sharing the point (previous first, then next) decides whether the contour
// passes through the ray's height there (1/2 from each side) or turns back.
double Shared_End_Crossing(const Handle_Slots& parts, size_t i, HGLOBAL arc, double x, double y,
                           double yr) {
  const size_t n = parts.size();
  HGLOBAL neighbour = 0;
  for (size_t j : {(i + n - 1) % n, (i + 1) % n}) {
    HGLOBAL h = Part_Element(parts[j]);
    Locked_Element e(h);
    if (e && Is_Node(*e, x, y)) {
      neighbour = h;
      break;
    }
  }
  if (!neighbour) return 0;
  Box span = Element_Box(arc);
  span.Add(Element_Box(neighbour));
  return span.bottom < yr && yr < span.top ? 0.5 : 1;
}

// One pass of the crossing count at height yr. Sets *vertex when the ray
// met a vertex that moves it (only while `may_nudge`); *unreadable when an
// element did not lock.
double Count_Crossings(const Handle_Slots& parts, double px, double yr, bool may_nudge,
                       bool* vertex, bool* unreadable) {
  double k = 0;
  for (size_t i = 0; i < parts.size(); ++i) {
    HGLOBAL h = Part_Element(parts[i]);
    Locked_Element e(h);
    if (!Lock_Guarded(e)) {
      *unreadable = true;
      return 0;
    }
    const auto& u = e->u;
    double xa, ya, xb, yb;
    if (e->type == EL_SEGMENT) {
      const auto& s = u.seg;
      if (Cross_Horiz_Line_Segment(yr, s.x1, s.y1, s.x2, s.y2, &xa, &ya) != 1 || xa > px) continue;
      if (may_nudge && ((xa == s.x1 && ya == s.y1) || (xa == s.x2 && ya == s.y2))) {
        *vertex = true;
        return 0;
      }
      k += 1;
    } else if (e->type == EL_CIRCLE) {
      const auto& c = u.circle;
      if (Cross_Horiz_Line_Circle(yr, c.xc, c.yc, c.r, &xa, &ya, &xb, &yb) == 0) continue;
      k += (px >= xa ? 1 : 0) + (px >= xb ? 1 : 0);
    } else if (e->type == EL_ARC) {
      double xs[2];
      bool at_end[2];
      int n = Arc_Crossings(u.arc, yr, xs, at_end);
      if (n >= 1 && xs[0] <= px) {
        if (may_nudge && at_end[0]) {
          *vertex = true;
          return 0;
        }
        k += 1;
      }
      if (n == 2 && xs[1] <= px) {
        k += at_end[1] ? Shared_End_Crossing(parts, i, h, xs[1], yr, yr) : 1;
      }
    }
  }
  return k;
}

}  // namespace

int Is_Point_In_Contour(Contour_Type* contour, double x, double y) {
  Handle_Slots parts = Contour_Parts(contour);
  if (parts.size() == 0) return 0;
  double yr = y;
  for (int nudges = 0;; ++nudges) {
    bool vertex = false, unreadable = false;
    double k = Count_Crossings(parts, x, yr, nudges < kContour_Max_Nudges, &vertex, &unreadable);
    if (unreadable) return 0;
    if (!vertex) return static_cast<int64_t>(k) % 2 != 0 ? 1 : 0;
    yr = Nudged(yr);
  }
}

int Is_Point_In_Surface(Surface_Type* surface, double x, double y) {
  if (!surface) return 0;
  for (int list : {kHoles, kOuters}) {
    Handle_Slots contours = Surface_List(surface, list);
    for (size_t i = 0; i < contours.size(); ++i) {
      Locked<Contour_Type> c(contours[i]);
      if (c && Is_Point_In_Contour(c.get(), x, y)) return list == kHoles ? 0 : 1;
    }
  }
  return 0;
}
