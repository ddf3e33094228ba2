#include "outline.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tessaline::app {

namespace {

constexpr double kPi = std::numbers::pi;

struct Vec {
  double x, y;
};
Vec Sub(Vec a, Vec b) {
  return {a.x - b.x, a.y - b.y};
}
double Dot(Vec a, Vec b) {
  return a.x * b.x + a.y * b.y;
}
double Cross(Vec a, Vec b) {
  return a.x * b.y - a.y * b.x;
}
double Len(Vec a) {
  return std::hypot(a.x, a.y);
}

// Where a corner's fillet touches its two edges and the arc between them.
struct Fillet {
  Vec in;   // on the edge from the previous corner
  Vec out;  // on the edge to the next corner
  Piece arc{};
  bool round = false;
};

bool Make_Fillet(Vec prev, Vec p, Vec next, double r, bool ccw, Fillet* f, std::string* error) {
  f->in = p;
  f->out = p;
  if (r == 0) return true;
  Vec a = Sub(prev, p), b = Sub(next, p);
  double la = Len(a), lb = Len(b);
  Vec u{a.x / la, a.y / la}, w{b.x / lb, b.y / lb};
  double cos_t = std::clamp(Dot(u, w), -1.0, 1.0);
  double theta = std::acos(cos_t);  // angle between the edges at the corner
  if (theta < 1e-9 || theta > kPi - 1e-9) {
    *error = "a fillet on a corner without an angle";
    return false;
  }
  double d = r / std::tan(theta / 2);  // from the corner to each tangent point
  Vec bis{u.x + w.x, u.y + w.y};
  double lbis = Len(bis);
  double dc = r / std::sin(theta / 2);
  Vec c{p.x + bis.x / lbis * dc, p.y + bis.y / lbis * dc};
  f->in = {p.x + u.x * d, p.y + u.y * d};
  f->out = {p.x + w.x * d, p.y + w.y * d};
  // A left turn of a counter-clockwise polygon is a convex corner, whose arc
  // runs with the outline; at a concave corner it runs against it.
  bool convex = (Cross(Sub(p, prev), Sub(next, p)) > 0) == ccw;
  bool forward = convex == ccw;  // arc counter-clockwise from `in` to `out`
  Vec s = forward ? f->in : f->out, e = forward ? f->out : f->in;
  double a1 = std::atan2(s.y - c.y, s.x - c.x);
  double a2 = std::atan2(e.y - c.y, e.x - c.x);
  while (a2 <= a1) a2 += 2 * kPi;
  f->arc = {Piece::kArc, s.x, s.y, e.x, e.y, c.x, c.y, r, a1, a2};
  f->round = true;
  return true;
}

}  // namespace

bool Outline::Add_Polygon(const std::vector<Corner>& corners, std::string* error) {
  size_t n = corners.size();
  if (n < 3) {
    *error = "an outline needs three corners";
    return false;
  }
  double area2 = 0;
  for (size_t i = 0; i < n; ++i) {
    const Corner &p = corners[i], &q = corners[(i + 1) % n];
    if (!std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.r)) {
      *error = "a dimension is not a number";
      return false;
    }
    if (p.r < 0) {
      *error = "a negative radius";
      return false;
    }
    if (Len(Sub({q.x, q.y}, {p.x, p.y})) <= 0) {
      *error = "an edge of no length";
      return false;
    }
    area2 += p.x * q.y - q.x * p.y;
  }
  if (!(std::fabs(area2) > 0)) {
    *error = "an outline that encloses no area";
    return false;
  }
  bool ccw = area2 > 0;
  std::vector<Fillet> f(n);
  for (size_t i = 0; i < n; ++i) {
    const Corner &a = corners[(i + n - 1) % n], &p = corners[i], &b = corners[(i + 1) % n];
    if (!Make_Fillet({a.x, a.y}, {p.x, p.y}, {b.x, b.y}, p.r, ccw, &f[i], error)) return false;
  }
  std::vector<Piece> out;
  for (size_t i = 0; i < n; ++i) {
    if (f[i].round) out.push_back(f[i].arc);
    const Fillet& g = f[(i + 1) % n];
    Vec s = f[i].out, e = g.in;
    Vec edge = Sub({corners[(i + 1) % n].x, corners[(i + 1) % n].y}, {corners[i].x, corners[i].y});
    double along = Dot(Sub(e, s), edge);
    double tol = 1e-9 * Len(edge);
    if (along < -tol * Len(edge)) {
      *error = "fillets that do not fit on their edge";
      return false;
    }
    if (Len(Sub(e, s)) > tol) out.push_back({Piece::kSegment, s.x, s.y, e.x, e.y, 0, 0, 0, 0, 0});
  }
  pieces.insert(pieces.end(), out.begin(), out.end());
  return true;
}

bool Outline::Add_Circle(double xc, double yc, double r, std::string* error) {
  if (!(r > 0) || !std::isfinite(r) || !std::isfinite(xc) || !std::isfinite(yc)) {
    *error = "a circle whose radius is not positive";
    return false;
  }
  pieces.push_back({Piece::kCircle, 0, 0, 0, 0, xc, yc, r, 0, 2 * kPi});
  return true;
}

bool Outline::Add_Rounded_Rect(double x0, double y0, double x1, double y1, double r,
                               std::string* error) {
  return Add_Polygon({{x0, y0, r}, {x1, y0, r}, {x1, y1, r}, {x0, y1, r}}, error);
}

int Add_Outline_Elements(const Outline& outline, Objects_Array_Type* array) {
  int added = 0;
  for (const Piece& p : outline.pieces) {
    HGLOBAL h = 0;
    switch (p.kind) {
      case Piece::kSegment:
        h = Create_Line(p.x1, p.y1, p.x2, p.y2);
        break;
      case Piece::kArc:
        h = Create_Arc(p.xc, p.yc, p.r, p.a1, p.a2);
        if (h) Set_Arc_Ends(h, p.x1, p.y1, p.x2, p.y2);
        break;
      case Piece::kCircle:
        h = Create_Circle(p.xc, p.yc, p.r);
        break;
    }
    if (!h) return -1;
    if (Add_Element_In_Array_by_Handle(array, h) < 0) {
      Delete_Element(h);
      return -1;
    }
    ++added;
  }
  return added;
}

}  // namespace tessaline::app
