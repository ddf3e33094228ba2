// Pixel sets of ellipses, polygons and wide strokes.
#include "platform/shapes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace gdi {

// ---------------------------------------------------------------------------
// Ellipses.

Ellipse_Shape::Ellipse_Shape(int64_t left, int64_t top, int64_t right, int64_t bottom)
    : l_(left),
      t_(top),
      r_(right),
      b_(bottom),
      a2_(right - left - 1),
      b2_(bottom - top - 1),
      cx2_(left + right - 1),
      cy2_(top + bottom - 1) {}

namespace {

// Moves the estimate d to the largest value with (d / p)^2 + (dy2 / q)^2 <= 1,
// p = a2 + 1 and q = b2 + 1, in exact arithmetic of type T.
template <class T>
void Settle(int64_t& d, int64_t a2, int64_t b2, int64_t dy2) {
  const T p = a2 + 1, q = b2 + 1;
  const T rhs = p * p * (q * q - T{dy2} * dy2);
  while (d < a2 && T{d + 1} * (d + 1) * q * q <= rhs) ++d;
  while (d > 0 && T{d} * d * q * q > rhs) --d;
}

}  // namespace

bool Ellipse_Shape::row(int64_t y, int64_t& x0, int64_t& x1) const {
  if (y < t_ || y >= b_) return false;
  const int64_t dy2 = std::abs(2 * y - cy2_);
  int64_t d = a2_;  // doubled half width of the row's span
  if (dy2 > 1) {
    // The largest d with (d / P)^2 + (dy2 / Q)^2 <= 1, P and Q the doubled
    // semi-axes grown by half a pixel each side: estimated in floating
    // point, settled exactly.
    const double f = static_cast<double>(dy2) / static_cast<double>(b2_ + 1);
    d = static_cast<int64_t>(static_cast<double>(a2_ + 1) * std::sqrt(std::max(0.0, 1 - f * f)));
    d = std::clamp<int64_t>(d, 0, a2_);
    if (a2_ < (1 << 14) && b2_ < (1 << 14)) {
      Settle<int64_t>(d, a2_, b2_, dy2);  // every product fits in 64 bits
    } else {
      Settle<Int128>(d, a2_, b2_, dy2);
    }
    if ((a2_ - d) % 2 != 0) --d;  // pixel centres lie at the parity of a2
    d = std::max(d, a2_ % 2);     // the middle column(s) reach every row
  }
  x0 = (cx2_ - d) / 2;
  x1 = (cx2_ + d) / 2;
  return true;
}

void Ellipse_Rows(const Ellipse_Shape& e, const RECT& box, std::vector<Row_Span>& out) {
  const int64_t y0 = std::max<int64_t>(e.top(), box.top);
  const int64_t y1 = std::min<int64_t>(e.bottom(), box.bottom);
  for (int64_t y = y0; y < y1; ++y) {
    int64_t x0, x1;
    e.row(y, x0, x1);
    x0 = std::max<int64_t>(x0, box.left);
    x1 = std::min<int64_t>(x1 + 1, box.right);
    if (x0 < x1) {
      out.push_back(
          Row_Span{static_cast<int32_t>(y), static_cast<int32_t>(x0), static_cast<int32_t>(x1)});
    }
  }
}

// ---------------------------------------------------------------------------
// Polygons.

namespace {

struct Edge {
  int64_t xa, ya, xb, yb;  // ya < yb
  int dir;                 // +1 running down, -1 running up
};

// ceil(a / b) for b > 0.
int64_t Ceil_Div(int64_t a, int64_t b) {
  int64_t q = a / b;
  if (a % b != 0 && a > 0) ++q;
  return q;
}

}  // namespace

void Polygon_Rows(const std::vector<POINT>& points, int mode, const RECT& box,
                  std::vector<Row_Span>& out) {
  std::vector<Edge> edges;
  const size_t n = points.size();
  for (size_t i = 0; i < n; ++i) {
    const POINT& p = points[i];
    const POINT& q = points[(i + 1) % n];
    if (p.y == q.y) continue;  // a horizontal edge crosses no sample row
    if (p.y < q.y) {
      edges.push_back(Edge{p.x, p.y, q.x, q.y, 1});
    } else {
      edges.push_back(Edge{q.x, q.y, p.x, p.y, -1});
    }
  }
  if (edges.empty()) return;
  std::sort(edges.begin(), edges.end(), [](const Edge& a, const Edge& b) { return a.ya < b.ya; });
  int64_t top = edges.front().ya, bottom = top;
  for (const Edge& e : edges) bottom = std::max(bottom, e.yb);
  top = std::max<int64_t>(top, box.top);
  bottom = std::min<int64_t>(bottom, box.bottom);

  std::vector<const Edge*> active;
  std::vector<std::pair<int64_t, int>> crossings;
  size_t next = 0;
  for (int64_t y = top; y < bottom; ++y) {
    while (next < edges.size() && edges[next].ya <= y) active.push_back(&edges[next++]);
    std::erase_if(active, [y](const Edge* e) { return e->yb <= y; });
    crossings.clear();
    for (const Edge* e : active) {
      // A pixel is right of the edge from the first column at or after the
      // exact crossing: left edges include their pixels, right edges not.
      const int64_t h = e->yb - e->ya;
      crossings.emplace_back(Ceil_Div(e->xa * h + (y - e->ya) * (e->xb - e->xa), h), e->dir);
    }
    std::sort(crossings.begin(), crossings.end());
    auto emit = [&](int64_t x0, int64_t x1) {
      x0 = std::max<int64_t>(x0, box.left);
      x1 = std::min<int64_t>(x1, box.right);
      if (x0 >= x1) return;
      if (!out.empty() && out.back().y == y && out.back().x1 >= x0) {
        out.back().x1 = static_cast<int32_t>(std::max<int64_t>(out.back().x1, x1));
      } else {
        out.push_back(
            Row_Span{static_cast<int32_t>(y), static_cast<int32_t>(x0), static_cast<int32_t>(x1)});
      }
    };
    if (mode == WINDING) {
      int winding = 0;
      int64_t start = 0;
      for (const auto& [x, dir] : crossings) {
        const int before = winding;
        winding += dir;
        if (before == 0 && winding != 0) start = x;
        if (before != 0 && winding == 0) emit(start, x);
      }
    } else {
      for (size_t k = 0; k + 1 < crossings.size(); k += 2) {
        emit(crossings[k].first, crossings[k + 1].first);
      }
    }
  }
}

// ---------------------------------------------------------------------------
// Wide strokes.

namespace {

// The open interval of x where row sy is closer than r to segment a-b.
bool Capsule_Row(DPoint a, DPoint b, double r, double sy, double& lo, double& hi) {
  lo = std::numeric_limits<double>::infinity();
  hi = -lo;
  for (DPoint c : {a, b}) {
    const double h2 = r * r - (sy - c.y) * (sy - c.y);
    if (h2 > 0) {
      const double h = std::sqrt(h2);
      lo = std::min(lo, c.x - h);
      hi = std::max(hi, c.x + h);
    }
  }
  const double dx = b.x - a.x, dy = b.y - a.y, len2 = dx * dx + dy * dy;
  if (len2 > 0) {
    const double len = std::sqrt(len2), ey = sy - a.y;
    double s0 = -std::numeric_limits<double>::infinity(), s1 = -s0;
    bool ok = true;
    // Projection onto the segment within [0, len2] ...
    if (dx != 0) {
      const double u0 = -ey * dy / dx + a.x, u1 = (len2 - ey * dy) / dx + a.x;
      s0 = std::max(s0, std::min(u0, u1));
      s1 = std::min(s1, std::max(u0, u1));
    } else {
      ok = ey * dy >= 0 && ey * dy <= len2;
    }
    // ... and distance from its line below r.
    if (dy != 0) {
      const double v0 = (ey * dx - r * len) / dy + a.x, v1 = (ey * dx + r * len) / dy + a.x;
      s0 = std::max(s0, std::min(v0, v1));
      s1 = std::min(s1, std::max(v0, v1));
    } else {
      ok = ok && std::abs(ey * dx) < r * len;
    }
    if (ok && s0 < s1) {
      lo = std::min(lo, s0);
      hi = std::max(hi, s1);
    }
  }
  return lo < hi;
}

}  // namespace

void Wide_Stroke(const std::vector<DPoint>& path, bool closed, int width, const RECT& box,
                 std::vector<Row_Span>& out) {
  out.clear();
  if (path.empty()) return;
  const double r = width / 2.0;
  const double off = width % 2 == 0 ? 0.5 : 0.0;  // sample point offset
  const size_t segments = path.size() == 1 ? 1 : (closed ? path.size() : path.size() - 1);
  std::vector<Row_Span> raw;
  for (size_t i = 0; i < segments; ++i) {
    const DPoint a = path[i], b = path.size() == 1 ? path[0] : path[(i + 1) % path.size()];
    const double ylo = std::min(a.y, b.y) - r, yhi = std::max(a.y, b.y) + r;
    const int64_t y0 = std::max<int64_t>(static_cast<int64_t>(std::floor(ylo - off)) + 1, box.top);
    const int64_t y1 = std::min<int64_t>(static_cast<int64_t>(std::ceil(yhi - off)), box.bottom);
    for (int64_t y = y0; y < y1; ++y) {
      double lo, hi;
      if (!Capsule_Row(a, b, r, static_cast<double>(y) + off, lo, hi)) continue;
      const double x0 = std::max(std::floor(lo - off) + 1, static_cast<double>(box.left));
      const double x1 = std::min(std::ceil(hi - off), static_cast<double>(box.right));
      if (x0 < x1) {
        raw.push_back(
            Row_Span{static_cast<int32_t>(y), static_cast<int32_t>(x0), static_cast<int32_t>(x1)});
      }
    }
  }
  std::sort(raw.begin(), raw.end(), [](const Row_Span& p, const Row_Span& q) {
    return p.y != q.y ? p.y < q.y : p.x0 < q.x0;
  });
  for (const Row_Span& s : raw) {
    if (!out.empty() && out.back().y == s.y && out.back().x1 >= s.x0) {
      out.back().x1 = std::max(out.back().x1, s.x1);
    } else {
      out.push_back(s);
    }
  }
}

std::vector<DPoint> Ellipse_Path(const Ellipse_Shape& e, int64_t sx, int64_t sy, int64_t ex,
                                 int64_t ey, bool full) {
  const double a = static_cast<double>(e.right() - e.left() - 1) / 2;
  const double b = static_cast<double>(e.bottom() - e.top() - 1) / 2;
  const double cx = static_cast<double>(e.cx2()) / 2, cy = static_cast<double>(e.cy2()) / 2;
  // The ellipse parameter of the point in a radial's direction.
  auto parameter = [&](int64_t vx, int64_t vy) {
    const double t = std::atan2(static_cast<double>(vy), static_cast<double>(vx));
    return a > 0 && b > 0 ? std::atan2(a * std::sin(t), b * std::cos(t)) : t;
  };
  const double two_pi = 2 * std::numbers::pi;
  double start = 0, sweep = two_pi;
  if (!full) {
    start = parameter(sx, sy);
    sweep = parameter(ex, ey) - start;
    while (sweep <= 0) sweep += two_pi;
  }
  const double steps = std::ceil(sweep * std::max({a, b, 1.0}) / 2);
  const int n = static_cast<int>(std::clamp(steps, 4.0, 8192.0));
  std::vector<DPoint> path;
  path.reserve(static_cast<size_t>(n) + 1);
  for (int k = 0; k <= n; ++k) {
    if (full && k == n) break;  // closed: the start point ends it
    const double p = start + sweep * k / n;
    path.push_back(DPoint{cx + a * std::cos(p), cy - b * std::sin(p)});
  }
  return path;
}

bool Same_Cut(const Ellipse_Shape& e, int64_t sx, int64_t sy, int64_t ex, int64_t ey) {
  const double a = static_cast<double>(e.right() - e.left() - 1) / 2;
  const double b = static_cast<double>(e.bottom() - e.top() - 1) / 2;
  // The pixel where the ray from the centre along (vx, vy) meets the
  // ellipse; a ray along a degenerate (zero) axis meets it at the centre.
  auto cut = [&](int64_t vx, int64_t vy) {
    if (vx == 0 && vy == 0) vx = 1;  // as the sector takes a null radial
    auto term = [](int64_t v, double axis) {
      if (v == 0) return 0.0;
      if (axis == 0) return std::numeric_limits<double>::infinity();
      const double q = static_cast<double>(v) / axis;
      return q * q;
    };
    const double k = 1 / std::sqrt(term(vx, a) + term(vy, b));
    const double x = static_cast<double>(e.cx2()) / 2 + k * static_cast<double>(vx);
    const double y = static_cast<double>(e.cy2()) / 2 - k * static_cast<double>(vy);
    return std::pair{std::floor(x + 0.5), std::floor(y + 0.5)};
  };
  return cut(sx, sy) == cut(ex, ey);
}

// ---------------------------------------------------------------------------
// Sectors.

namespace {

int Half(int64_t x, int64_t y) {
  return y > 0 || (y == 0 && x > 0) ? 0 : 1;
}

// Direction a strictly before direction b, counting from angle 0.
bool Angle_Less(int64_t ax, int64_t ay, int64_t bx, int64_t by) {
  const int ha = Half(ax, ay), hb = Half(bx, by);
  if (ha != hb) return ha < hb;
  return ax * by - ay * bx > 0;
}

void Nonzero(int64_t& x, int64_t& y) {
  if (x == 0 && y == 0) x = 1;
}

}  // namespace

Sector::Sector(int64_t sx, int64_t sy, int64_t ex, int64_t ey)
    : sx_(sx), sy_(sy), ex_(ex), ey_(ey) {
  Nonzero(sx_, sy_);
  Nonzero(ex_, ey_);
  full_ = sx_ * ey_ - sy_ * ex_ == 0 && sx_ * ex_ + sy_ * ey_ > 0;
}

bool Sector::before(int64_t ax, int64_t ay, int64_t bx, int64_t by) const {
  Nonzero(ax, ay);
  Nonzero(bx, by);
  // Directions before the start come after a whole turn.
  const bool wa = Angle_Less(ax, ay, sx_, sy_), wb = Angle_Less(bx, by, sx_, sy_);
  if (wa != wb) return wb;
  return Angle_Less(ax, ay, bx, by);
}

bool Sector::contains(int64_t vx, int64_t vy) const {
  return full_ || before(vx, vy, ex_, ey_);
}

// ---------------------------------------------------------------------------
// Row sets.

std::vector<Row_Span> Rows_Of_Pixels(const std::vector<std::pair<int64_t, int64_t>>& xy,
                                     const RECT& box) {
  // A counting sort by row, then a small sort within each row.
  const auto rows = static_cast<size_t>(std::max<int64_t>(0, int64_t{box.bottom} - box.top));
  std::vector<uint32_t> start(rows + 1, 0);
  for (const auto& p : xy) ++start[static_cast<size_t>(p.second - box.top) + 1];
  for (size_t r = 0; r < rows; ++r) start[r + 1] += start[r];
  std::vector<int32_t> xs(xy.size());
  std::vector<uint32_t> fill(start.begin(), start.end() - 1);
  for (const auto& p : xy)
    xs[fill[static_cast<size_t>(p.second - box.top)]++] = static_cast<int32_t>(p.first);
  std::vector<Row_Span> out;
  for (size_t r = 0; r < rows; ++r) {
    const auto first = xs.begin() + start[r], last = xs.begin() + start[r + 1];
    std::sort(first, last);
    const auto y = static_cast<int32_t>(box.top + static_cast<int64_t>(r));
    for (auto it = first; it != last; ++it) {
      if (!out.empty() && out.back().y == y && out.back().x1 >= *it) {
        out.back().x1 = std::max(out.back().x1, *it + 1);
      } else {
        out.push_back(Row_Span{y, *it, *it + 1});
      }
    }
  }
  return out;
}

std::vector<Row_Span> Subtract_Rows(const std::vector<Row_Span>& a,
                                    const std::vector<Row_Span>& b) {
  std::vector<Row_Span> out;
  size_t j = 0;
  for (const Row_Span& s : a) {
    while (j < b.size() && (b[j].y < s.y || (b[j].y == s.y && b[j].x1 <= s.x0))) ++j;
    int32_t cur = s.x0;
    for (size_t k = j; k < b.size() && b[k].y == s.y && b[k].x0 < s.x1; ++k) {
      if (b[k].x0 > cur) out.push_back(Row_Span{s.y, cur, b[k].x0});
      cur = std::max(cur, b[k].x1);
    }
    if (cur < s.x1) out.push_back(Row_Span{s.y, cur, s.x1});
  }
  return out;
}

Region Region_Of_Rows(const std::vector<Row_Span>& rows) {
  Region_Builder builder;
  std::vector<Span> spans;
  for (size_t i = 0; i < rows.size();) {
    const int32_t y = rows[i].y;
    spans.clear();
    for (; i < rows.size() && rows[i].y == y; ++i) spans.push_back(Span{rows[i].x0, rows[i].x1});
    builder.add(y, y + 1, spans.data(), spans.size());
  }
  return builder.finish();
}

}  // namespace gdi
