// Bounding boxes of elements, for the code that unites or turns them.
#pragma once

#include <algorithm>

#include "tessaline/model/element.h"

// A growing axis-aligned box in world coordinates; empty until the first point.
struct Box {
  double left = 0, bottom = 0, right = 0, top = 0;
  bool empty = true;

  void Add(double x, double y) {
    if (empty) {
      left = right = x;
      bottom = top = y;
      empty = false;
      return;
    }
    left = std::min(left, x);
    right = std::max(right, x);
    bottom = std::min(bottom, y);
    top = std::max(top, y);
  }
  void Add(const Box& b) {
    if (b.empty) return;
    Add(b.left, b.bottom);
    Add(b.right, b.top);
  }
};

// Adds the arc's points at its two angles and the extreme points of the
// circle that it passes.
void Add_Arc(Box& box, const Element_Record::Arc_Data& arc);

// The box of Get_Element_Rect; empty for a handle that is not an element.
Box Element_Box(HGLOBAL h);
// The same for a record already read (a polyline's or spline's node blocks
// are locked through their handles).
Box Record_Box(const Element_Record& e);
