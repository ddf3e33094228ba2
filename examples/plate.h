// The plate section of the surface and split pictures: 160 mm long with a
// half-round right end (radius 60) and a rounded top-left corner (radius
// 20), 120 mm high, a round hole of radius 30 at the centre of the round end
// and a rectangular hole.
#pragma once

#include <numbers>

#include <tessaline/tessaline.h>

namespace plate {

inline void Add(Objects_Array_Type* a, HGLOBAL h) {
  Add_Element_In_Array_by_Handle(a, h);
}

// An arc with its end points given exactly, so that they meet the
// neighbouring segments' ends bit for bit.
inline void Add_Arc(Objects_Array_Type* a, double xc, double yc, double r, double a1, double a2,
                    double x1, double y1, double x2, double y2) {
  HGLOBAL h = Create_Arc(xc, yc, r, a1, a2);
  Set_Arc_Ends(h, x1, y1, x2, y2);
  Add(a, h);
}

inline void Draw(Objects_Array_Type* a) {
  constexpr double kPi = std::numbers::pi;
  // Outline, counter-clockwise from the bottom-left corner.
  Add(a, Create_Line(0, 0, 160, 0));
  Add_Arc(a, 160, 60, 60, -kPi / 2, kPi / 2, 160, 0, 160, 120);
  Add(a, Create_Line(160, 120, 20, 120));
  Add_Arc(a, 20, 100, 20, kPi / 2, kPi, 20, 120, 0, 100);
  Add(a, Create_Line(0, 100, 0, 0));
  // Holes.
  Add(a, Create_Circle(160, 60, 30));
  Add(a, Create_Line(30, 30, 100, 30));
  Add(a, Create_Line(100, 90, 100, 30));  // drawn in any direction
  Add(a, Create_Line(100, 90, 30, 90));
  Add(a, Create_Line(30, 30, 30, 90));
}

// World 260 x 195 mm about the section's middle onto w x h pixels, y up.
inline Coord_Syst View(int w, int h) {
  Coord_Syst cs{};
  cs.world = {-20, 60 - 97.5, 260, 195};
  cs.window = {0, h, w, -h};
  return cs;
}

}  // namespace plate
