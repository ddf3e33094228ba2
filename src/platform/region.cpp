// Region sets and their boolean combination by a sweep over bands.
#include "platform/region.h"

#include <algorithm>
#include <climits>

#include "tessaline/platform/gdi.h"

namespace gdi {

Region Region::Rect(int32_t l, int32_t t, int32_t r, int32_t b) {
  if (l > r) std::swap(l, r);
  if (t > b) std::swap(t, b);
  Region_Builder builder;
  if (l < r && t < b) {
    Span s{l, r};
    builder.add(t, b, &s, 1);
  }
  return builder.finish();
}

int Region::type() const {
  if (bands_.empty()) return NULLREGION;
  return bands_.size() == 1 && spans_.size() == 1 ? SIMPLEREGION : COMPLEXREGION;
}

RECT Region::box() const {
  if (bands_.empty()) return RECT{0, 0, 0, 0};
  RECT r{INT32_MAX, bands_.front().y0, INT32_MIN, bands_.back().y1};
  for (const Band& b : bands_) {
    r.left = std::min(r.left, spans_[b.first].x0);
    r.right = std::max(r.right, spans_[b.first + b.count - 1].x1);
  }
  return r;
}

const Region::Band* Region::band_at(int32_t y) const {
  auto it = std::upper_bound(bands_.begin(), bands_.end(), y,
                             [](int32_t v, const Band& b) { return v < b.y1; });
  if (it == bands_.end() || it->y0 > y) return nullptr;
  return &*it;
}

bool Region::contains(int32_t x, int32_t y) const {
  const Band* b = band_at(y);
  if (!b) return false;
  const Span* first = spans(*b);
  const Span* last = first + b->count;
  const Span* s =
      std::upper_bound(first, last, x, [](int32_t v, const Span& sp) { return v < sp.x1; });
  return s != last && s->x0 <= x;
}

bool Region::offset(int64_t dx, int64_t dy) {
  if (bands_.empty()) return true;
  RECT b = box();
  auto fits = [](int64_t v) { return v >= INT32_MIN && v <= INT32_MAX; };
  if (!fits(b.left + dx) || !fits(b.right + dx) || !fits(b.top + dy) || !fits(b.bottom + dy)) {
    return false;
  }
  for (Band& band : bands_) {
    band.y0 = static_cast<int32_t>(band.y0 + dy);
    band.y1 = static_cast<int32_t>(band.y1 + dy);
  }
  for (Span& s : spans_) {
    s.x0 = static_cast<int32_t>(s.x0 + dx);
    s.x1 = static_cast<int32_t>(s.x1 + dx);
  }
  return true;
}

bool Region::operator==(const Region& o) const {
  if (bands_.size() != o.bands_.size() || spans_ != o.spans_) return false;
  for (size_t i = 0; i < bands_.size(); ++i) {
    if (bands_[i].y0 != o.bands_[i].y0 || bands_[i].y1 != o.bands_[i].y1 ||
        bands_[i].count != o.bands_[i].count) {
      return false;
    }
  }
  return true;
}

void Region_Builder::add(int32_t y0, int32_t y1, const Span* spans, size_t n) {
  if (y0 >= y1) return;
  merged_.clear();
  for (size_t i = 0; i < n; ++i) {
    if (spans[i].x0 >= spans[i].x1) continue;
    if (!merged_.empty() && spans[i].x0 <= merged_.back().x1) {
      merged_.back().x1 = std::max(merged_.back().x1, spans[i].x1);
    } else {
      merged_.push_back(spans[i]);
    }
  }
  if (merged_.empty()) return;
  auto& bands = r_.bands_;
  auto& all = r_.spans_;
  if (!bands.empty()) {
    Region::Band& last = bands.back();
    if (last.y1 == y0 && last.count == merged_.size() &&
        std::equal(merged_.begin(), merged_.end(), all.begin() + last.first)) {
      last.y1 = y1;
      return;
    }
  }
  bands.push_back(Region::Band{y0, y1, static_cast<uint32_t>(all.size()),
                               static_cast<uint32_t>(merged_.size())});
  all.insert(all.end(), merged_.begin(), merged_.end());
}

Region Region_Builder::finish() {
  Region out;
  std::swap(out, r_);
  return out;
}

namespace {

bool Apply(int mode, bool a, bool b) {
  switch (mode) {
    case RGN_AND:
      return a && b;
    case RGN_OR:
      return a || b;
    case RGN_XOR:
      return a != b;
    case RGN_DIFF:
      return a && !b;
    default:
      return false;
  }
}

// One row of the combination: both span lists are canonical, so their
// boundaries are strictly increasing and each one toggles its list's state.
void Combine_Spans(const Span* a, size_t na, const Span* b, size_t nb, int mode,
                   std::vector<Span>& out) {
  out.clear();
  size_t i = 0, j = 0;  // boundary indexes: span k has boundaries 2k and 2k + 1
  bool in_a = false, in_b = false, in = false;
  int32_t start = 0;
  auto boundary = [](const Span* s, size_t k) { return k % 2 ? s[k / 2].x1 : s[k / 2].x0; };
  while (i < 2 * na || j < 2 * nb) {
    int64_t xa = i < 2 * na ? boundary(a, i) : INT64_MAX;
    int64_t xb = j < 2 * nb ? boundary(b, j) : INT64_MAX;
    int64_t x = std::min(xa, xb);
    if (xa == x) {
      in_a = !in_a;
      ++i;
    }
    if (xb == x) {
      in_b = !in_b;
      ++j;
    }
    bool now = Apply(mode, in_a, in_b);
    if (now != in) {
      if (now) {
        start = static_cast<int32_t>(x);
      } else {
        out.push_back(Span{start, static_cast<int32_t>(x)});
      }
      in = now;
    }
  }
}

}  // namespace

Region Combine(const Region& a, const Region& b, int mode) {
  if (mode == RGN_COPY) return a;
  if (mode < RGN_AND || mode > RGN_DIFF) return Region();
  // Quick answers that skip the sweep.
  if (mode == RGN_AND && (a.empty() || b.empty())) return Region();
  if (mode == RGN_DIFF && (a.empty() || b.empty())) return a;
  if ((mode == RGN_OR || mode == RGN_XOR) && b.empty()) return a;
  if ((mode == RGN_OR || mode == RGN_XOR) && a.empty()) return b;

  Region_Builder builder;
  std::vector<Span> row;
  const auto& ba = a.bands();
  const auto& bb = b.bands();
  size_t i = 0, j = 0;
  int64_t y = std::min(ba.empty() ? INT64_MAX : ba[0].y0, bb.empty() ? INT64_MAX : bb[0].y0);
  while (i < ba.size() || j < bb.size()) {
    // The spans of each source on [y, next) and where that changes.
    int64_t next = INT64_MAX;
    const Span* sa = nullptr;
    size_t na = 0;
    if (i < ba.size()) {
      if (y < ba[i].y0) {
        next = std::min<int64_t>(next, ba[i].y0);
      } else {
        sa = a.spans(ba[i]);
        na = ba[i].count;
        next = std::min<int64_t>(next, ba[i].y1);
      }
    }
    const Span* sb = nullptr;
    size_t nb = 0;
    if (j < bb.size()) {
      if (y < bb[j].y0) {
        next = std::min<int64_t>(next, bb[j].y0);
      } else {
        sb = b.spans(bb[j]);
        nb = bb[j].count;
        next = std::min<int64_t>(next, bb[j].y1);
      }
    }
    if (na || nb) {
      Combine_Spans(sa, na, sb, nb, mode, row);
      builder.add(static_cast<int32_t>(y), static_cast<int32_t>(next), row.data(), row.size());
    }
    y = next;
    if (i < ba.size() && y >= ba[i].y1) ++i;
    if (j < bb.size() && y >= bb[j].y1) ++j;
  }
  return builder.finish();
}

}  // namespace gdi
