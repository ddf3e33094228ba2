// The contour search over one objects array, with an index of element ends
// so that many searches (one per contour of a drawing) share one pass over
// the array.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "tessaline/contour/contour.h"

class Contour_Search {
 public:
  // The array and its elements must not change while this object is used.
  explicit Contour_Search(const Objects_Array_Type* array) : array_(array) {}

  // Search_Contour over the array: 1 with the contour through `start` stored
  // in `contour`, else 0 with the record emptied.
  int Find(HGLOBAL start, Contour_Type* contour);

 private:
  // A way on from a free end: the array position of the element and its
  // other end.
  struct Candidate {
    int32_t pos;
    double ox, oy;
  };
  // An element on the current chain, the candidates found at its free end
  // (a range of cands_) and the next of them to try.
  struct Frame {
    int32_t id;
    HGLOBAL handle;
    double ex, ey;
    size_t begin, end, next;
  };
  // A run of ends_in_cells_ that lies in one cell.
  struct Cell_Range {
    int64_t cx, cy;
    uint32_t begin, end;
  };

  void Build();
  const Cell_Range* Lookup(int64_t cx, int64_t cy) const;
  // Appends to cands_ the elements with an end in the join window of
  // (px, py), in array order, leaving out every entry of element `exclude`.
  void Query(double px, double py, int32_t exclude);
  void Push(int32_t id, HGLOBAL handle, double ex, double ey);
  int Store(Contour_Type* contour, int32_t peak);

  const Objects_Array_Type* array_;
  bool built_ = false;
  std::vector<HGLOBAL> handles_;  // by array position
  std::vector<double> ends_;      // x1, y1, x2, y2 by position
  std::vector<int32_t> id_;       // first position holding the same handle; -1: takes no part
  std::unordered_map<HGLOBAL, int32_t> id_of_;
  std::vector<int32_t> ends_in_cells_;  // positions, grouped by cell, array order within one
  std::vector<Cell_Range> ranges_;
  std::vector<int32_t> buckets_;  // open addressing over ranges_; -1 empty
  std::vector<uint8_t> used_;     // by id; one more for a start outside the array
  std::vector<Frame> frames_;
  std::vector<Candidate> cands_;
  std::vector<int32_t> scratch_;
};
