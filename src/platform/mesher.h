// Stand-in for the in-house finite-element mesher: its entry
// GetFinalElementsForArea and the node and element lists it fills.
//
// The lists own their records; a node stays at its address while its list
// lives, so elements refer to their corners by pointer. World coordinates.
#pragma once

#include <cstdint>
#include <deque>

#include "tessaline/platform/win_types.h"

struct CMeshNode {
  double x;
  double y;
  uint8_t flag;  // 0 inner, 1 on an outer contour, 2, 3, ... on the first, second, ... hole
  CMeshNode* next;
};

class CMeshNodeList {
 public:
  CMeshNodeList() = default;
  CMeshNodeList(const CMeshNodeList&) = delete;
  CMeshNodeList& operator=(const CMeshNodeList&) = delete;

  CMeshNode* GetHead() const { return head_; }
  int GetCount() const { return static_cast<int>(nodes_.size()); }
  CMeshNode* Add(double x, double y, uint8_t flag);
  void RemoveAll();

 private:
  std::deque<CMeshNode> nodes_;
  CMeshNode* head_ = nullptr;
  CMeshNode* tail_ = nullptr;
};

class CMeshElement {
 public:
  // Corner i (0, 1, 2, counter-clockwise); null for any other i.
  CMeshNode* GetNode(int i) const { return i >= 0 && i < 3 ? corners_[i] : nullptr; }
  CMeshElement* GetNext() const { return next_; }

 private:
  friend class CMeshElementList;
  CMeshNode* corners_[3] = {nullptr, nullptr, nullptr};
  CMeshElement* next_ = nullptr;
};

class CMeshElementList {
 public:
  CMeshElementList() = default;
  CMeshElementList(const CMeshElementList&) = delete;
  CMeshElementList& operator=(const CMeshElementList&) = delete;

  CMeshElement* GetHead() const { return head_; }
  int GetCount() const { return static_cast<int>(elements_.size()); }
  CMeshElement* Add(CMeshNode* a, CMeshNode* b, CMeshNode* c);
  void RemoveAll();

 private:
  std::deque<CMeshElement> elements_;
  CMeshElement* head_ = nullptr;
  CMeshElement* tail_ = nullptr;
};

// True when the mesher is built in (the library was configured with CGAL).
bool Mesher_Available();

// Triangulates the region bounded by `contours` closed polygons, given by
// their node counts and x and y arrays (each polygon closes from its last
// node back to its first). The first `outer_count` polygons are outer
// contours, the rest holes; a point is meshed when it lies inside an odd
// number of outer contours and an even number of holes.
//
// The elements are a constrained Delaunay triangulation of the polygons'
// edges, refined until no edge is longer than h and, where the input
// allows, no angle is below angle_bound degrees (0: about 20.7 degrees, the
// bound that refinement is sure to reach). Refinement splits contour edges
// too; those nodes take the flag of the contour they lie on. The lists,
// which must be empty, receive the nodes (each used by some element) and
// the elements; *node_count and *element_count their numbers.
//
// max_nodes bounds the nodes refinement may make (0: a bound from the
// region's area and h, at most 2^23); `reserved` must be 0. Returns 1 done;
// 0 for bad arguments (no polygon, a polygon of fewer than three nodes, a
// coordinate or h not finite, h not positive), when the bound is reached or
// the mesher is not built in; the lists are then empty. `window` is not used.
int GetFinalElementsForArea(int contours, const int* node_counts, const double* const* xs,
                            const double* const* ys, double h, double angle_bound, int max_nodes,
                            int reserved, int outer_count, CMeshNodeList* nodes,
                            CMeshElementList* elements, int* node_count, int* element_count,
                            HWND window);
