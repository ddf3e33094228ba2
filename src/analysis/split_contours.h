// The contours of a surface read for splitting: each contour's drawing
// elements with the node flag its boundary nodes carry.
#pragma once

#include <cstdint>
#include <vector>

#include "tessaline/contour/surface.h"
#include "tessaline/model/element.h"

struct Split_Contour {
  std::vector<Element_Record> elements;  // in the contour's order of travel
  uint8_t flag;                          // 1 outer contour, 2, 3, ... first, second, ... hole
};

// The outer contours in the surface's order, then the holes; *outer_count
// of them are outer contours. False, after the "Messsage" / "pElem==NULL"
// box, when a drawing element does not lock; also for a contour record that
// does not lock.
bool Read_Split_Contours(const Surface_Type* surface, std::vector<Split_Contour>* out,
                         int* outer_count);

// Flag of the hole at position i of the hole list.
inline uint8_t Hole_Flag(size_t i) {
  return static_cast<uint8_t>(i < 253 ? i + 2 : 255);
}
