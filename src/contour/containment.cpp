// Point containment: crossings of a horizontal ray with a contour's segments,
// circles and arcs.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <new>

#include "contour/lists.h"
#include "contour/shape.h"
#include "geometry/angles.h"
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

// The heights an element can be crossed at, a little widened (an arc's box
// comes from its angles, its crossings at the ends from its stored ends);
// lo > hi for an element that is never crossed.
std::pair<double, double> Crossing_Span(const Element_Record& r) {
  if (r.type != EL_SEGMENT && r.type != EL_CIRCLE && r.type != EL_ARC) return {1, 0};
  Box b = Record_Box(r);
  double e[4];
  if (Contour_Ends(r, e)) b.Add(e[0], e[1]), b.Add(e[2], e[3]);
  double pad = 1e-9 * (1 + std::fabs(b.bottom) + std::fabs(b.top));
  return {b.bottom - pad, b.top + pad};
}

}  // namespace

// ---- Y_Bands -----------------------------------------------------------------

void Y_Bands::Build(const std::vector<std::pair<double, double>>& spans) {
  *this = Y_Bands();
  bool any = false;
  for (const auto& [lo, hi] : spans) {
    if (!std::isfinite(lo) || !std::isfinite(hi)) all_ = true;
    if (lo > hi) continue;
    lo_ = any ? std::min(lo_, lo) : lo;
    hi_ = any ? std::max(hi_, hi) : hi;
    any = true;
  }
  if (all_) {
    for (uint32_t i = 0; i < spans.size(); ++i) members_.push_back(i);
    return;
  }
  if (!any) return;
  // As many bands as items; fewer when long items would be filed too often.
  bands_ = std::max<size_t>(1, spans.size());
  for (;; bands_ = std::max<size_t>(1, bands_ / 2)) {
    scale_ = hi_ > lo_ ? static_cast<double>(bands_) / (hi_ - lo_) : 0;
    size_t filed = 0;
    for (const auto& [lo, hi] : spans) filed += lo <= hi ? Band(hi) - Band(lo) + 1 : 0;
    if (filed <= 8 * spans.size() + 64 || bands_ == 1) break;
  }
  start_.assign(bands_ + 1, 0);
  for (const auto& [lo, hi] : spans) {
    if (lo > hi) continue;
    for (size_t b = Band(lo); b <= Band(hi); ++b) start_[b + 1] += 1;
  }
  for (size_t b = 0; b < bands_; ++b) start_[b + 1] += start_[b];
  members_.resize(start_[bands_]);
  std::vector<uint32_t> next(start_.begin(), start_.end() - 1);
  for (uint32_t i = 0; i < spans.size(); ++i) {
    if (spans[i].first > spans[i].second) continue;
    for (size_t b = Band(spans[i].first); b <= Band(spans[i].second); ++b) {
      members_[next[b]++] = i;
    }
  }
}

// Monotone in v, so an item whose span holds y is filed in y's band.
size_t Y_Bands::Band(double v) const {
  double b = std::floor((v - lo_) * scale_);
  if (!(b > 0)) return 0;
  return b < static_cast<double>(bands_ - 1) ? static_cast<size_t>(b) : bands_ - 1;
}

std::span<const uint32_t> Y_Bands::At(double y) const {
  if (all_) return members_;
  if (bands_ == 0 || !(y >= lo_ && y <= hi_)) return {};
  size_t b = Band(y);
  return std::span<const uint32_t>(members_).subspan(start_[b], start_[b + 1] - start_[b]);
}

// ---- Contour_Shape -------------------------------------------------------------

bool Contour_Shape::Read(const Contour_Type* contour) {
  indexed_ = false;
  box_ = Box{};
  elements_.clear();
  Handle_Slots parts = Contour_Parts(contour);
  elements_.reserve(parts.size());
  for (size_t i = 0; i < parts.size(); ++i) {
    Locked_Element e(Part_Element(parts[i]));
    if (!Lock_Guarded(e)) return false;
    elements_.push_back(*e);
  }
  return true;
}

void Contour_Shape::Index() {
  std::vector<std::pair<double, double>> spans;
  spans.reserve(elements_.size());
  for (const Element_Record& r : elements_) {
    box_.Add(Record_Box(r));
    spans.push_back(Crossing_Span(r));
  }
  bands_.Build(spans);
  indexed_ = true;
}

// What an arc's second crossing at its end point (x, yr) adds: the
// neighbour sharing the point (previous first, then next) decides whether
// the contour passes through the ray's height there (1/2 from each side) or
// turns back there (strictly inside their joint vertical range, or on its
// bottom or top).
double Contour_Shape::Shared_End_Crossing(size_t i, double x, double yr) const {
  const size_t n = elements_.size();
  for (size_t j : {(i + n - 1) % n, (i + 1) % n}) {
    if (!Is_Node(elements_[j], x, yr)) continue;
    Box span = Record_Box(elements_[i]);
    span.Add(Record_Box(elements_[j]));
    return span.bottom < yr && yr < span.top ? 0.5 : 1;
  }
  return 0;
}

// The crossings of element i with the line at height yr: 0, 1 or 2.
int Contour_Shape::Element_Crossings(size_t i, double yr, Ray_Crossing out[2]) const {
  const Element_Record& e = elements_[i];
  double xa, ya, xb, yb;
  if (e.type == EL_SEGMENT) {
    const auto& s = e.u.seg;
    if (Cross_Horiz_Line_Segment(yr, s.x1, s.y1, s.x2, s.y2, &xa, &ya) != 1) return 0;
    bool end = (xa == s.x1 && ya == s.y1) || (xa == s.x2 && ya == s.y2);
    out[0] = {xa, 1, end, true};
    return 1;
  }
  if (e.type == EL_CIRCLE) {
    const auto& c = e.u.circle;
    if (Cross_Horiz_Line_Circle(yr, c.xc, c.yc, c.r, &xa, &ya, &xb, &yb) == 0) return 0;
    out[0] = {xa, 1, false, false};
    out[1] = {xb, 1, false, false};
    return 2;
  }
  if (e.type == EL_ARC) {
    double xs[2];
    bool at_end[2];
    int n = Arc_Crossings(e.u.arc, yr, xs, at_end);
    if (n >= 1) out[0] = {xs[0], 1, at_end[0], false};
    if (n == 2) out[1] = {xs[1], at_end[1] ? Shared_End_Crossing(i, xs[1], yr) : 1, false, false};
    return n;
  }
  return 0;
}

void Contour_Shape::Row_Crossings(double yr, std::vector<Ray_Crossing>* out) const {
  Ray_Crossing c[2];
  auto add = [&](size_t i) {
    int n = Element_Crossings(i, yr, c);
    out->insert(out->end(), c, c + n);
  };
  if (indexed_) {
    for (uint32_t i : bands_.At(yr)) add(i);
  } else {
    for (size_t i = 0; i < elements_.size(); ++i) add(i);
  }
}

// One pass of the crossing count at height yr. Sets *vertex, and gives up,
// when the ray meets a vertex that moves it (only while `may_nudge`).
double Contour_Shape::Count(double px, double yr, bool may_nudge, bool* vertex) const {
  double k = 0;
  Ray_Crossing c[2];
  auto count = [&](size_t i) {
    int n = Element_Crossings(i, yr, c);
    for (int j = 0; j < n; ++j) {
      if (!c[j].Left_Of(px)) continue;
      if (may_nudge && c[j].end) {
        *vertex = true;
        return;
      }
      k += c[j].add;
    }
  };
  if (indexed_) {
    for (uint32_t i : bands_.At(yr)) {
      count(i);
      if (*vertex) return 0;
    }
  } else {
    for (size_t i = 0; i < elements_.size(); ++i) {
      count(i);
      if (*vertex) return 0;
    }
  }
  return k;
}

int Contour_Shape::Contains(double x, double y) const {
  if (elements_.empty()) return 0;
  double yr = y;
  for (int nudges = 0;; ++nudges) {
    bool vertex = false;
    double k = Count(x, yr, nudges < kContour_Max_Nudges, &vertex);
    if (!vertex) return static_cast<int64_t>(k) % 2 != 0 ? 1 : 0;
    yr = Nudged(yr);
  }
}

// ---- Exported ----------------------------------------------------------------

int Is_Point_In_Contour(Contour_Type* contour, double x, double y) {
  try {
    Contour_Shape shape;
    return shape.Read(contour) ? shape.Contains(x, y) : 0;
  } catch (const std::bad_alloc&) {
    return 0;
  }
}

int Is_Point_In_Surface(Surface_Type* surface, double x, double y) {
  if (!surface) return 0;
  try {
    Contour_Shape shape;  // one buffer for every contour
    for (int list : {kHoles, kOuters}) {
      Handle_Slots contours = Surface_List(surface, list);
      for (size_t i = 0; i < contours.size(); ++i) {
        Locked<Contour_Type> c(contours[i]);
        if (c && shape.Read(c.get()) && shape.Contains(x, y)) return list == kHoles ? 0 : 1;
      }
    }
  } catch (const std::bad_alloc&) {
    // Treated as outside, like a contour that cannot be read.
  }
  return 0;
}
