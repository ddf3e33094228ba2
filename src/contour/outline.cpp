// A contour's outline as straight pieces.
#include "contour/outline.h"

#include <algorithm>
#include <cmath>

#include "contour/lists.h"
#include "geometry/angles.h"

namespace {

constexpr double kStart_Tolerance = 1e-6;

double Distance(double x1, double y1, double x2, double y2) {
  return std::hypot(x1 - x2, y1 - y2);
}

// Pieces for an arc of `sweep` radians and radius r: enough for both bounds
// of the division, at least `least`, at most its max_pieces. A value that is
// not a number (a broken record) gives the least.
int Piece_Count(double r, double sweep, const Arc_Division& d, int least) {
  double n = sweep / d.max_angle;
  r = std::fabs(r);
  if (d.chord > 0 && r > d.chord) n = std::max(n, sweep / (2 * std::acos(1 - d.chord / r)));
  n = std::ceil(n - 1e-9);  // a sweep that is a whole number of steps but for rounding
  if (!(n >= least)) return least;
  return n < d.max_pieces ? static_cast<int>(n) : std::max(least, d.max_pieces);
}

// The arc's curve from angle `from` through `sweep` (negative: clockwise),
// from (x1, y1) to (x2, y2) exactly, divided into n pieces.
void Add_Curve(double xc, double yc, double r, double from, double sweep, int n, double x1,
               double y1, double x2, double y2, std::vector<Outline_Piece>* pieces) {
  double px = x1, py = y1;
  for (int j = 1; j <= n; ++j) {
    double qx = x2, qy = y2;
    if (j < n) {
      double a = from + sweep * j / n;
      qx = xc + r * std::cos(a);
      qy = yc + r * std::sin(a);
    }
    pieces->push_back({px, py, qx, qy});
    px = qx, py = qy;
  }
}

}  // namespace

void Arc_Middle(double a1, double a2, double* middle, double* sweep) {
  double n1 = Normalize_Angle(a1);
  double n2 = Normalize_Angle(a2);
  if (n2 < n1) n2 += 2 * kPi;
  *middle = (n1 + n2) / 2;
  *sweep = n2 - n1;
}

bool Read_Contour(const Contour_Type* contour, std::vector<Element_Record>* elements) {
  elements->clear();
  Handle_Slots parts = Contour_Parts(contour);
  elements->reserve(parts.size());
  for (size_t i = 0; i < parts.size(); ++i) {
    Locked_Element e(Part_Element(parts[i]));
    if (!Lock_Guarded(e)) return false;
    elements->push_back(*e);
  }
  return true;
}

bool Chain_Start(const std::vector<Element_Record>& elements, double* x, double* y) {
  if (elements.empty()) return false;
  const Element_Record& first = elements[0];
  if (first.type == EL_CIRCLE) {
    *x = first.u.circle.xc + first.u.circle.r;
    *y = first.u.circle.yc;
    return true;
  }
  double e[4], n[4];
  if (!Contour_Ends(first, e)) return false;
  *x = e[0], *y = e[1];
  if (elements.size() < 2 || !Contour_Ends(elements[1], n)) return true;
  // How far each end of the first element lies from the second element.
  double d0 = std::min(Distance(e[0], e[1], n[0], n[1]), Distance(e[0], e[1], n[2], n[3]));
  double d1 = std::min(Distance(e[2], e[3], n[0], n[1]), Distance(e[2], e[3], n[2], n[3]));
  if (d0 <= kStart_Tolerance && d1 > kStart_Tolerance) *x = e[2], *y = e[3];
  return true;
}

void Outline_Pieces(const std::vector<Element_Record>& elements, bool forward,
                    const Arc_Division& division, std::vector<Outline_Piece>* pieces) {
  double rx, ry;
  if (!Chain_Start(elements, &rx, &ry)) return;
  const size_t n = elements.size();
  double e[4];
  if (!forward && Contour_Ends(elements[0], e)) {
    // Backwards the first element is entered from its other end.
    bool at_first = Distance(rx, ry, e[0], e[1]) <= Distance(rx, ry, e[2], e[3]);
    rx = at_first ? e[2] : e[0];
    ry = at_first ? e[3] : e[1];
  }
  for (size_t step = 0; step < n; ++step) {
    const Element_Record& r = elements[forward || step == 0 ? step : n - step];
    if (r.type == EL_CIRCLE) {
      const auto& c = r.u.circle;
      int count = Piece_Count(c.r, 2 * kPi, division, 8);
      double x0 = c.xc + c.r, y0 = c.yc;
      Add_Curve(c.xc, c.yc, c.r, 0, forward ? 2 * kPi : -2 * kPi, count, x0, y0, x0, y0, pieces);
      continue;
    }
    if (!Contour_Ends(r, e)) continue;
    bool from_first = Distance(rx, ry, e[0], e[1]) <= Distance(rx, ry, e[2], e[3]);
    double sx = from_first ? e[0] : e[2], sy = from_first ? e[1] : e[3];
    double tx = from_first ? e[2] : e[0], ty = from_first ? e[3] : e[1];
    if (r.type == EL_SEGMENT) {
      pieces->push_back({sx, sy, tx, ty});
    } else {
      const auto& a = r.u.arc;
      double middle, sweep;
      Arc_Middle(a.a1, a.a2, &middle, &sweep);
      int count = Piece_Count(a.r, sweep, division, 1);
      double from = from_first ? middle - sweep / 2 : middle + sweep / 2;
      Add_Curve(a.xc, a.yc, a.r, from, from_first ? sweep : -sweep, count, sx, sy, tx, ty, pieces);
    }
    rx = tx, ry = ty;
  }
}

bool Contour_Probe_Point(const Element_Record& first, double* x, double* y) {
  if (first.type == EL_SEGMENT) {
    *x = (first.u.seg.x1 + first.u.seg.x2) / 2;
    *y = (first.u.seg.y1 + first.u.seg.y2) / 2;
  } else if (first.type == EL_ARC) {
    const auto& a = first.u.arc;
    double middle, sweep;
    Arc_Middle(a.a1, a.a2, &middle, &sweep);
    *x = a.xc + a.r * std::cos(middle);
    *y = a.yc + a.r * std::sin(middle);
  } else if (first.type == EL_CIRCLE) {
    *x = first.u.circle.xc + first.u.circle.r;
    *y = first.u.circle.yc;
  } else {
    return false;
  }
  return true;
}
