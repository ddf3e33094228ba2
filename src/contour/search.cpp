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

#include "contour/lists.h"

namespace {

constexpr int32_t kFirst_Capacity = 10;
// The search stores every element as {element, 0, 1}.
constexpr int32_t kSearch_Index = 0;
constexpr int32_t kSearch_Flag = 1;

// The index files each end under a square cell four tolerances wide. An end
// that joins (px, py) lies within one tolerance of it; a query takes the
// cells that the window widened to 1.5 tolerances touches (at most two per
// axis). Every step from a coordinate to its cell number (subtracting,
// scaling, rounding, flooring) is monotone, so the half tolerance to spare
// outweighs rounding wherever ends closer than the tolerance can differ at
// all; where a double's spacing exceeds the tolerance, only equal ends join,
// and equal values fall in the same cell.
constexpr double kCells_Per_Unit = 0.25 / kContour_Join_Tolerance;
constexpr double kQuery_Reach = 1.5 * kContour_Join_Tolerance;
constexpr double kCell_Limit = 4.0e18;  // keeps cell numbers in int64
constexpr int64_t kEmpty = INT64_MIN;   // no cell number: marks an empty bucket

int64_t Cell(double v) {
  double c = std::floor(v * kCells_Per_Unit);
  return static_cast<int64_t>(std::clamp(c, -kCell_Limit, kCell_Limit));
}

// Both cell numbers mixed into every bit (the finaliser of splitmix64), so
// that neighbouring cells scatter over the table.
size_t Cell_Hash(int64_t cx, int64_t cy) {
  uint64_t h = static_cast<uint64_t>(cx) * 0x9E3779B97F4A7C15ull + static_cast<uint64_t>(cy);
  h = (h ^ (h >> 30)) * 0xBF58476D1CE4E5B9ull;
  h = (h ^ (h >> 27)) * 0x94D049BB133111EBull;
  return static_cast<size_t>(h ^ (h >> 31));
}

bool Ends_Join(double px, double py, double x, double y) {
  return std::fabs(px - x) < kContour_Join_Tolerance && std::fabs(py - y) < kContour_Join_Tolerance;
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
  std::vector<HGLOBAL> handles;
  {
    Array_Slots slots(array_);
    handles.assign(slots.data(), slots.data() + slots.size());
  }
  const size_t n = handles.size();
  outside_id_ = static_cast<int32_t>(n);
  used_.assign(n + 1, 0);
  id_of_.reserve(n);
  size_t size = 1;
  while (size < 4 * n) size *= 2;  // two ends each: never more than half full
  buckets_.assign(size, Bucket{kEmpty, 0, 0, 0});

  // First pass: read every element, find the cells of its ends and count
  // the ends of each cell (in `end` for now).
  std::vector<Entry> read(n);
  std::vector<int64_t> bucket_of(2 * n, -1);
  for (size_t pos = 0; pos < n; ++pos) {
    Entry& r = read[pos];
    if (!Read_Contour_Ends(handles[pos], r.e)) continue;
    r.pos = static_cast<int32_t>(pos);
    r.id = id_of_.emplace(handles[pos], r.pos).first->second;
    r.handle = handles[pos];
    for (size_t k = 0; k < 2; ++k) {
      // A non-finite end joins nothing: every window test with it is false.
      if (!std::isfinite(r.e[2 * k]) || !std::isfinite(r.e[2 * k + 1])) continue;
      int64_t b = Bucket_Of(Cell(r.e[2 * k]), Cell(r.e[2 * k + 1]), true);
      if (k == 1 && b == bucket_of[2 * pos]) continue;  // both ends in one cell: filed once
      bucket_of[2 * pos + k] = b;
      buckets_[static_cast<size_t>(b)].end += 1;
    }
  }
  uint32_t total = 0;
  for (Bucket& b : buckets_) {
    b.begin = total;
    total += b.end;
    b.end = b.begin;
  }
  // Second pass: file the entries in array order, so each run is sorted.
  entries_.resize(total);
  for (size_t i = 0; i < bucket_of.size(); ++i) {
    if (bucket_of[i] >= 0)
      entries_[buckets_[static_cast<size_t>(bucket_of[i])].end++] = read[i / 2];
  }
}

int64_t Contour_Search::Bucket_Of(int64_t cx, int64_t cy, bool add) {
  const size_t mask = buckets_.size() - 1;
  size_t b = Cell_Hash(cx, cy) & mask;
  for (; buckets_[b].cx != kEmpty; b = (b + 1) & mask) {
    if (buckets_[b].cx == cx && buckets_[b].cy == cy) return static_cast<int64_t>(b);
  }
  if (!add) return -1;
  buckets_[b].cx = cx;
  buckets_[b].cy = cy;
  return static_cast<int64_t>(b);
}

void Contour_Search::Query(double px, double py, int32_t exclude) {
  if (!std::isfinite(px) || !std::isfinite(py) || entries_.empty()) return;
  const int64_t x_hi = Cell(px + kQuery_Reach), y_hi = Cell(py + kQuery_Reach);
  scratch_.clear();
  for (int64_t cx = Cell(px - kQuery_Reach); cx <= x_hi; ++cx) {
    for (int64_t cy = Cell(py - kQuery_Reach); cy <= y_hi; ++cy) {
      int64_t b = Bucket_Of(cx, cy, false);
      if (b < 0) continue;
      const Bucket& r = buckets_[static_cast<size_t>(b)];
      for (uint32_t i = r.begin; i < r.end; ++i) scratch_.push_back(&entries_[i]);
    }
  }
  // Runs of up to four cells into array order, each element once (an
  // element whose ends lie in two of the cells is filed in both).
  std::sort(scratch_.begin(), scratch_.end(),
            [](const Entry* a, const Entry* b) { return a->pos < b->pos; });
  auto same = [](const Entry* a, const Entry* b) { return a->pos == b->pos; };
  scratch_.erase(std::unique(scratch_.begin(), scratch_.end(), same), scratch_.end());
  for (const Entry* r : scratch_) {
    double ox, oy;
    if (r->id != exclude && Other_End(r->e, px, py, &ox, &oy)) {
      cands_.push_back({r->id, r->handle, ox, oy});
    }
  }
}

void Contour_Search::Push(int32_t id, HGLOBAL handle, double ex, double ey) {
  used_[static_cast<size_t>(id)] = kOn_Chain;
  size_t begin = cands_.size();
  Query(ex, ey, id);
  frames_.push_back({id, ex, ey, handle, begin, cands_.size(), begin});
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
  // Only segments and arcs chain: the chain can come back to nothing else.
  if (type != EL_SEGMENT && type != EL_ARC) return Fail(contour);
  if (!built_) Build();

  auto known = id_of_.find(start);
  const int32_t start_id = known != id_of_.end() ? known->second : outside_id_;
  if (used_[static_cast<size_t>(start_id)] == kExcluded) return Fail(contour);
  frames_.clear();
  cands_.clear();
  Push(start_id, start, s[2], s[3]);
  int32_t peak = 0;  // the most elements the chain has held: the record's capacity follows it
  bool closed = false;
  while (!frames_.empty() && !closed) {
    Frame& f = frames_.back();
    if (f.next == f.end) {  // a dead end: back out and try the parent's next candidate
      used_[static_cast<size_t>(f.id)] = kFree;
      cands_.resize(f.begin);
      frames_.pop_back();
      if (!frames_.empty()) frames_.back().next += 1;
      continue;
    }
    peak = std::max(peak, static_cast<int32_t>(frames_.size()));
    const Candidate c = cands_[f.next];
    if (c.id == start_id && Ends_Join(s[0], s[1], f.ex, f.ey)) {
      closed = true;
    } else if (used_[static_cast<size_t>(c.id)]) {
      f.next += 1;  // each element once in a chain
    } else {
      Push(c.id, c.handle, c.ox, c.oy);
    }
  }
  for (const Frame& f : frames_) used_[static_cast<size_t>(f.id)] = kFree;
  return closed ? Store(contour, peak) : Fail(contour);
}

int32_t Contour_Search::Id_Of(HGLOBAL element) {
  if (!built_) Build();
  auto known = id_of_.find(element);
  return known != id_of_.end() ? known->second : -1;
}

void Contour_Search::Exclude(HGLOBAL element) {
  int32_t id = Id_Of(element);
  if (id >= 0) used_[static_cast<size_t>(id)] = kExcluded;
}

bool Contour_Search::Is_Excluded(HGLOBAL element) {
  int32_t id = Id_Of(element);
  return id >= 0 && used_[static_cast<size_t>(id)] == kExcluded;
}

void Contour_Search::Exclude_Dead_Ends() {
  if (!built_) Build();
  // The ends of each element, by identity.
  std::vector<const Entry*> by_id(used_.size(), nullptr);
  for (const Entry& r : entries_) by_id[static_cast<size_t>(r.id)] = &r;
  std::vector<int32_t> work;
  for (size_t id = 0; id < by_id.size(); ++id) {
    if (by_id[id]) work.push_back(static_cast<int32_t>(id));
  }
  while (!work.empty()) {
    const int32_t id = work.back();
    work.pop_back();
    if (used_[static_cast<size_t>(id)] == kExcluded) continue;
    const Entry& r = *by_id[static_cast<size_t>(id)];
    cands_.clear();
    bool dead = false;
    for (int k = 0; k < 2; ++k) {  // both ends' candidates: all of them are rechecked below
      size_t begin = cands_.size();
      Query(r.e[2 * k], r.e[2 * k + 1], id);
      dead |= std::none_of(
          cands_.begin() + static_cast<ptrdiff_t>(begin), cands_.end(),
          [this](const Candidate& c) { return used_[static_cast<size_t>(c.id)] != kExcluded; });
    }
    if (!dead) continue;
    used_[static_cast<size_t>(id)] = kExcluded;
    for (const Candidate& c : cands_) work.push_back(c.id);  // their ends may be dead now
  }
  cands_.clear();
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
