// Contour search: chaining segments and arcs end to end into a closed contour.
//
// The result is defined by an exhaustive depth-first search that rescans the
// array from the start for every step and looks through the chain to see
// whether an element is in use. Here the same search runs on an explicit
// stack, finds the ends near a point through a grid of cells, and keeps a
// flag per element for "on the chain", so a simple chain costs linear time
// and any length of chain fits. Candidates are still tried in array order
// and filtered by the very same window test, so ties resolve as the scan's.
#include "contour/search.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "model/record.h"

namespace {

constexpr int32_t kFirst_Capacity = 10;
// The search stores every element as {element, 0, 1}.
constexpr int32_t kSearch_Index = 0;
constexpr int32_t kSearch_Flag = 1;

// Cells are twice as wide as the join tolerance: ends that join lie in the
// same or neighbouring cells even after the rounding of x * kCells_Per_Unit.
constexpr double kCells_Per_Unit = 0.5 / kContour_Join_Tolerance;
constexpr double kCell_Limit = 4.0e18;  // keeps cell numbers and their neighbours in int64

int64_t Cell(double v) {
  double c = std::floor(v * kCells_Per_Unit);
  return static_cast<int64_t>(std::clamp(c, -kCell_Limit, kCell_Limit));
}

size_t Cell_Hash(int64_t cx, int64_t cy) {
  uint64_t h = static_cast<uint64_t>(cx) * 0x9E3779B97F4A7C15ull;
  h ^= static_cast<uint64_t>(cy) * 0xC2B2AE3D27D4EB4Full;
  return static_cast<size_t>(h ^ (h >> 29));
}

bool Ends_Join(double px, double py, double x, double y) {
  return std::fabs(px - x) < kContour_Join_Tolerance && std::fabs(py - y) < kContour_Join_Tolerance;
}

// The ends x1, y1, x2, y2 of a segment or an arc (its stored end points);
// false for every other type.
bool Contour_Ends(const Element_Record& r, double e[4]) {
  if (r.type == EL_SEGMENT) {
    e[0] = r.u.seg.x1, e[1] = r.u.seg.y1, e[2] = r.u.seg.x2, e[3] = r.u.seg.y2;
  } else if (r.type == EL_ARC) {
    e[0] = r.u.arc.x1, e[1] = r.u.arc.y1, e[2] = r.u.arc.x2, e[3] = r.u.arc.y2;
  } else {
    return false;
  }
  return true;
}

// A handle that does not lock takes no part, like a type that cannot chain.
bool Read_Contour_Ends(HGLOBAL h, double e[4]) {
  Locked_Element r(h);
  return r && Contour_Ends(*r, e);
}

// When an end of e lies in the window of (px, py), the first end tested
// first: the other end, and true.
bool Other_End(const double e[4], double px, double py, double* ox, double* oy) {
  if (Ends_Join(px, py, e[0], e[1])) {
    *ox = e[2], *oy = e[3];
  } else if (Ends_Join(px, py, e[2], e[3])) {
    *ox = e[0], *oy = e[1];
  } else {
    return false;
  }
  return true;
}

int Fail(Contour_Type* contour) {
  Delete_El_Contour(contour);
  return 0;
}

}  // namespace

int Find_Next_ContEl(Objects_Array_Type* array, int start, HGLOBAL exclude, double px, double py,
                     HGLOBAL* next, double* ox, double* oy) {
  if (start < 0) return -1;
  Array_Slots slots(array);
  for (size_t i = static_cast<size_t>(start); i < slots.size(); ++i) {
    HGLOBAL h = slots[i];
    double e[4], x, y;
    if (h == exclude || !Read_Contour_Ends(h, e) || !Other_End(e, px, py, &x, &y)) continue;
    if (next) *next = h;
    if (ox) *ox = x;
    if (oy) *oy = y;
    return static_cast<int>(i);
  }
  return -1;
}

void Contour_Search::Build() {
  built_ = true;
  {
    Array_Slots slots(array_);
    handles_.assign(slots.data(), slots.data() + slots.size());
  }
  size_t n = handles_.size();
  ends_.assign(4 * n, 0.0);
  id_.assign(n, -1);
  used_.assign(n + 1, 0);
  id_of_.reserve(n);

  struct End {
    int64_t cx, cy;
    int32_t pos;
  };
  std::vector<End> ends;
  ends.reserve(2 * n);
  for (size_t pos = 0; pos < n; ++pos) {
    double* e = &ends_[4 * pos];
    if (!Read_Contour_Ends(handles_[pos], e)) continue;
    auto p = static_cast<int32_t>(pos);
    id_[pos] = id_of_.emplace(handles_[pos], p).first->second;
    // A non-finite end joins nothing: every window test with it is false.
    bool first = std::isfinite(e[0]) && std::isfinite(e[1]);
    bool second = std::isfinite(e[2]) && std::isfinite(e[3]);
    if (first) ends.push_back({Cell(e[0]), Cell(e[1]), p});
    if (second && !(first && Cell(e[2]) == ends.back().cx && Cell(e[3]) == ends.back().cy)) {
      ends.push_back({Cell(e[2]), Cell(e[3]), p});
    }
  }
  std::sort(ends.begin(), ends.end(), [](const End& a, const End& b) {
    if (a.cx != b.cx) return a.cx < b.cx;
    if (a.cy != b.cy) return a.cy < b.cy;
    return a.pos < b.pos;
  });

  ends_in_cells_.resize(ends.size());
  for (size_t i = 0; i < ends.size(); ++i) {
    ends_in_cells_[i] = ends[i].pos;
    if (i == 0 || ends[i].cx != ends[i - 1].cx || ends[i].cy != ends[i - 1].cy) {
      ranges_.push_back({ends[i].cx, ends[i].cy, static_cast<uint32_t>(i), 0});
    }
    ranges_.back().end = static_cast<uint32_t>(i + 1);
  }
  size_t size = 1;
  while (size < 2 * ranges_.size()) size *= 2;
  buckets_.assign(size, -1);
  for (size_t r = 0; r < ranges_.size(); ++r) {
    size_t b = Cell_Hash(ranges_[r].cx, ranges_[r].cy) & (size - 1);
    while (buckets_[b] >= 0) b = (b + 1) & (size - 1);
    buckets_[b] = static_cast<int32_t>(r);
  }
}

const Contour_Search::Cell_Range* Contour_Search::Lookup(int64_t cx, int64_t cy) const {
  size_t mask = buckets_.size() - 1;
  for (size_t b = Cell_Hash(cx, cy) & mask; buckets_[b] >= 0; b = (b + 1) & mask) {
    const Cell_Range& r = ranges_[static_cast<size_t>(buckets_[b])];
    if (r.cx == cx && r.cy == cy) return &r;
  }
  return nullptr;
}

void Contour_Search::Query(double px, double py, int32_t exclude) {
  if (!std::isfinite(px) || !std::isfinite(py) || ranges_.empty()) return;
  int64_t cx = Cell(px), cy = Cell(py);
  scratch_.clear();
  for (int64_t dx = -1; dx <= 1; ++dx) {
    for (int64_t dy = -1; dy <= 1; ++dy) {
      const Cell_Range* r = Lookup(cx + dx, cy + dy);
      if (r) {
        scratch_.insert(scratch_.end(), ends_in_cells_.begin() + r->begin,
                        ends_in_cells_.begin() + r->end);
      }
    }
  }
  std::sort(scratch_.begin(), scratch_.end());
  scratch_.erase(std::unique(scratch_.begin(), scratch_.end()), scratch_.end());
  for (int32_t pos : scratch_) {
    double ox, oy;
    if (id_[static_cast<size_t>(pos)] == exclude) continue;
    if (Other_End(&ends_[4 * static_cast<size_t>(pos)], px, py, &ox, &oy)) {
      cands_.push_back({pos, ox, oy});
    }
  }
}

void Contour_Search::Push(int32_t id, HGLOBAL handle, double ex, double ey) {
  used_[static_cast<size_t>(id)] = 1;
  size_t begin = cands_.size();
  Query(ex, ey, id);
  frames_.push_back({id, handle, ex, ey, begin, cands_.size(), begin});
}

int Contour_Search::Find(HGLOBAL start, Contour_Type* contour) {
  if (!contour) return 0;
  Delete_El_Contour(contour);
  if (!Init_El_Contour(contour, kFirst_Capacity)) return 0;
  int32_t type;
  double s[4] = {};
  {
    Locked_Element e(start);
    if (!Lock_Guarded(e)) return Fail(contour);
    type = e->type;
    Contour_Ends(*e, s);
  }
  if (type == EL_CIRCLE) {  // a closed contour by itself
    HGLOBAL part = Create_El_Part(start, kSearch_Index, kSearch_Flag);
    if (Add_ContEl(contour, part) < 0) {
      GlobalFree(part);
      return Fail(contour);
    }
    return 1;
  }
  // Only segments and arcs chain, so nothing else can be come back to.
  if (type != EL_SEGMENT && type != EL_ARC) return Fail(contour);
  if (!built_) Build();

  auto known = id_of_.find(start);
  const int32_t start_id =
      known != id_of_.end() ? known->second : static_cast<int32_t>(handles_.size());
  frames_.clear();
  cands_.clear();
  Push(start_id, start, s[2], s[3]);
  int32_t peak = 0;  // the most elements the chain has held: the record's capacity follows it
  bool closed = false;
  while (!frames_.empty() && !closed) {
    Frame& f = frames_.back();
    if (f.next == f.end) {  // a dead end: back out and try the parent's next candidate
      used_[static_cast<size_t>(f.id)] = 0;
      cands_.resize(f.begin);
      frames_.pop_back();
      if (!frames_.empty()) frames_.back().next += 1;
      continue;
    }
    peak = std::max(peak, static_cast<int32_t>(frames_.size()));
    const Candidate c = cands_[f.next];
    const int32_t id = id_[static_cast<size_t>(c.pos)];
    if (id == start_id && Ends_Join(s[0], s[1], f.ex, f.ey)) {
      closed = true;
    } else if (used_[static_cast<size_t>(id)]) {
      f.next += 1;  // each element once in a chain
    } else {
      Push(id, handles_[static_cast<size_t>(c.pos)], c.ox, c.oy);
    }
  }
  for (const Frame& f : frames_) used_[static_cast<size_t>(f.id)] = 0;
  return closed ? Store(contour, peak) : Fail(contour);
}

// Writes the chain into the emptied record: one contour element per frame,
// in the order of travel, with the capacity that appending one element at a
// time, backing out of dead ends on the way, would have left.
int Contour_Search::Store(Contour_Type* contour, int32_t peak) {
  const auto length = static_cast<int32_t>(frames_.size());
  const int32_t capacity = std::max(kFirst_Capacity, peak);
  if (capacity > contour->capacity) {
    SIZE_T bytes = static_cast<SIZE_T>(capacity) * sizeof(HGLOBAL);
    if (!GlobalReAlloc(contour->parts, bytes, GMEM_MOVEABLE)) return Fail(contour);
    contour->capacity = capacity;
  }
  bool complete;
  {
    Locked<HGLOBAL> slots(contour->parts);
    complete = slots.holds(length - 1);
    for (int32_t i = 0; i < length && complete; ++i) {
      slots[i] =
          Create_El_Part(frames_[static_cast<size_t>(i)].handle, kSearch_Index, kSearch_Flag);
      complete = slots[i] != 0;
    }
  }
  // A chain with a piece missing would not be closed: give nothing instead.
  if (!complete) return Fail(contour);
  contour->count = length;
  return 1;
}

int Search_Contour(Objects_Array_Type* array, HGLOBAL element, Contour_Type* contour) {
  try {
    Contour_Search search(array);
    return search.Find(element, contour);
  } catch (const std::bad_alloc&) {
    return Fail(contour);
  }
}
