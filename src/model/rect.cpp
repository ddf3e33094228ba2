// Bounding rectangles of elements and objects arrays.
#include "tessaline/model/rect.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "geometry/angles.h"
#include "model/box.h"
#include "model/record.h"

namespace {

// A spline's curve, sampled through the moment form of each cubic piece
// (parameter: chord length from node i). Zero moments give the polyline.
void Add_Spline(Box& box, const Element_Record::Spline_Data& s) {
  Locked<double> x(s.x), y(s.y), mx(s.m1), my(s.m2);
  long long n = s.n;
  if (n < 1 || !x.holds(n - 1) || !y.holds(n - 1)) return;
  bool moments = mx.holds(n - 1) && my.holds(n - 1);
  box.Add(x[0], y[0]);
  constexpr int kSamples = 16;
  for (long long i = 0; i + 1 < n; ++i) {
    double h = std::hypot(x[i + 1] - x[i], y[i + 1] - y[i]);
    box.Add(x[i + 1], y[i + 1]);
    if (h == 0 || !moments) continue;
    for (int k = 1; k < kSamples; ++k) {
      double t = h * k / kSamples, u = h - t;
      auto eval = [&](const Locked<double>& v, const Locked<double>& m) {
        return m[i] * u * u * u / (6 * h) + m[i + 1] * t * t * t / (6 * h) +
               (v[i] - m[i] * h * h / 6) * u / h + (v[i + 1] - m[i + 1] * h * h / 6) * t / h;
      };
      box.Add(eval(x, mx), eval(y, my));
    }
  }
}

int Report(const Box& box, double* left, double* top, double* right, double* bottom) {
  if (box.empty) return 0;
  *left = box.left;
  *top = box.top;
  *right = box.right;
  *bottom = box.bottom;
  return 1;
}

}  // namespace

void Add_Arc(Box& box, const Element_Record::Arc_Data& arc) {
  double a1 = Normalize_Angle(arc.a1);
  double a2 = Normalize_Angle(arc.a2);
  box.Add(arc.xc + arc.r * std::cos(a1), arc.yc + arc.r * std::sin(a1));
  box.Add(arc.xc + arc.r * std::cos(a2), arc.yc + arc.r * std::sin(a2));
  const double quarter[4][3] = {{0, 1, 0}, {kPi / 2, 0, 1}, {kPi, -1, 0}, {3 * kPi / 2, 0, -1}};
  for (const auto& q : quarter) {
    if (Arc_Passes(a1, a2, q[0])) box.Add(arc.xc + arc.r * q[1], arc.yc + arc.r * q[2]);
  }
}

Box Element_Box(HGLOBAL h) {
  Locked_Element e(h);
  return e ? Record_Box(*e) : Box{};
}

Box Record_Box(const Element_Record& e) {
  Box box;
  const auto& u = e.u;
  switch (e.type) {
    case EL_POINT:
      box.Add(u.point.x, u.point.y);
      break;
    case EL_SEGMENT:
      box.Add(u.seg.x1, u.seg.y1);
      box.Add(u.seg.x2, u.seg.y2);
      break;
    case EL_CIRCLE:
      box.Add(u.circle.xc - std::fabs(u.circle.r), u.circle.yc - std::fabs(u.circle.r));
      box.Add(u.circle.xc + std::fabs(u.circle.r), u.circle.yc + std::fabs(u.circle.r));
      break;
    case EL_ARC:
      Add_Arc(box, u.arc);
      break;
    case EL_POLYLINE: {
      Locked<double> xy(u.poly.nodes);
      for (long long i = 0; i < u.poly.n && xy.holds(2 * i + 1); ++i)
        box.Add(xy[2 * i], xy[2 * i + 1]);
      break;
    }
    case EL_SPLINE:
      Add_Spline(box, u.spline);
      break;
    default:
      break;
  }
  return box;
}

int Get_Element_Rect(HGLOBAL h, double* left, double* top, double* right, double* bottom) {
  return Report(Element_Box(h), left, top, right, bottom);
}

int GetRectangle(Objects_Array_Type* array, double* left, double* top, double* right,
                 double* bottom) {
  std::vector<HGLOBAL> elements;
  {
    Array_Slots slots(array);
    elements.assign(slots.data(), slots.data() + slots.size());
  }
  Box all;
  for (HGLOBAL h : elements) all.Add(Element_Box(h));
  return Report(all, left, top, right, bottom);
}

int Is_Element_in_Rect(HGLOBAL h, double left, double top, double right, double bottom) {
  Box box = Element_Box(h);
  if (box.empty) return 0;
  double x0 = std::min(left, right), x1 = std::max(left, right);
  double y0 = std::min(bottom, top), y1 = std::max(bottom, top);
  return box.left >= x0 && box.right <= x1 && box.bottom >= y0 && box.top <= y1 ? 1 : 0;
}
