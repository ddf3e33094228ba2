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

  // Leaves the element out of every later search as a way on (it must not
  // start one). For filing a drawing's contours, each element once.
  void Exclude(HGLOBAL element);
  bool Is_Excluded(HGLOBAL element);
  // Leaves out, over and over, every segment and arc with an end that joins
  // no other element still in: none of them can lie on a closed chain, and
  // a search from an open chain would walk it to its end again and again.
  void Exclude_Dead_Ends();

 private:
  // An end filed in the index: the element's array position, identity (the
  // first position holding the same handle), handle and both ends, kept
  // together so that a query reads one run of memory.
  struct Entry {
    int32_t pos;
    int32_t id;
    HGLOBAL handle;
    double e[4];  // x1, y1, x2, y2
  };
  // A cell of the index: its run of entries_. Empty buckets have cx = kEmpty.
  struct Bucket {
    int64_t cx, cy;
    uint32_t begin, end;
  };
  // A way on from a free end: the element and its other end.
  struct Candidate {
    int32_t id;
    HGLOBAL handle;
    double ox, oy;
  };
  // An element on the current chain, the candidates found at its free end
  // (a range of cands_) and the next of them to try.
  struct Frame {
    int32_t id;
    double ex, ey;
    HGLOBAL handle;
    size_t begin, end, next;
  };

  void Build();
  // The bucket of cell (cx, cy); a new one when `add`, else -1 for none.
  int64_t Bucket_Of(int64_t cx, int64_t cy, bool add);
  // Appends to cands_ the elements with an end in the join window of
  // (px, py), in array order, leaving out every entry of element `exclude`.
  void Query(double px, double py, int32_t exclude);
  void Push(int32_t id, HGLOBAL handle, double ex, double ey);
  int Store(Contour_Type* contour, int32_t peak);
  int32_t Id_Of(HGLOBAL element);  // -1 when the array does not hold it

  enum : uint8_t { kFree = 0, kOn_Chain = 1, kExcluded = 2 };

  const Objects_Array_Type* array_;
  bool built_ = false;
  int32_t outside_id_ = 0;  // the identity of a start that the array does not hold
  std::unordered_map<HGLOBAL, int32_t> id_of_;
  std::vector<Bucket> buckets_;  // open addressing, at most half full
  std::vector<Entry> entries_;   // grouped by cell, in array order within a cell
  std::vector<uint8_t> used_;    // by identity: kFree, kOn_Chain or kExcluded
  std::vector<Frame> frames_;
  std::vector<Candidate> cands_;
  std::vector<const Entry*> scratch_;
};
