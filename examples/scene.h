// A small drawing scene: a plate section with rounded corners, a round hole
// and a slot, construction lines and a construction circle, a selected and an
// active element, and a rubber band. scene_picture draws it at 640 x 480;
// the display tests keep a small rendering of it as a golden image.
#pragma once

#include <tessaline/tessaline.h>

namespace scene {

constexpr double kPi = 3.14159265358979323846;

// The world rectangle (-20, -20) to (140, 100) millimetres, y up, shown on a
// w x h surface (logical units = pixels; the logical window's negative y
// extent turns the world's y axis up).
inline Coord_Syst Coordinates(int w, int h) {
  Coord_Syst cs{};
  cs.vp_ext_x = w;
  cs.vp_ext_y = h;
  cs.window = Logical_Window{0, h, w, -h};
  cs.world = World_Window{-20, -20, 160, 120};
  return cs;
}

// Clears attribute bit 0x01: the element becomes a construction element.
inline HGLOBAL Auxiliary(HGLOBAL h) {
  if (auto* e = static_cast<Element_Record*>(GlobalLock(h))) {
    e->attr &= ~ATTR_ORDINARY;
    GlobalUnlock(h);
  }
  return h;
}

// The section's elements into `objects`, the construction elements into `aux`.
inline void Build(Objects_Array_Type* objects, Objects_Array_Type* aux) {
  auto add = [&](HGLOBAL h) {
    Add_Element_In_Array_by_Handle(objects, h);
    return h;
  };
  // Outline: 120 x 80 with corners of radius 10.
  add(Create_Line(10, 0, 110, 0));
  add(Create_Arc(110, 10, 10, -kPi / 2, 0));
  add(Create_Line(120, 10, 120, 70));
  add(Create_Arc(110, 70, 10, 0, kPi / 2));
  HGLOBAL top = add(Create_Line(110, 80, 10, 80));
  add(Create_Arc(10, 70, 10, kPi / 2, kPi));
  add(Create_Line(0, 70, 0, 10));
  add(Create_Arc(10, 10, 10, kPi, 3 * kPi / 2));
  // A round hole and a slot of two arcs and two segments.
  add(Create_Circle(35, 40, 15));
  add(Create_Line(75, 32, 95, 32));
  HGLOBAL right_end = add(Create_Arc(95, 40, 8, -kPi / 2, kPi / 2));
  add(Create_Line(95, 48, 75, 48));
  add(Create_Arc(75, 40, 8, kPi / 2, 3 * kPi / 2));
  add(Create_Point(35, 40));
  add(Create_Point(85, 40));
  Set_Element_Select_Attribute(top, 1);
  Set_Element_Active_Attribute(right_end, 0, 1);

  // Construction: the axis through both centres, a diagonal and a circle.
  Add_Element_In_Array_by_Handle(aux, Auxiliary(Create_Line(35, 40, 85, 40)));
  Add_Element_In_Array_by_Handle(aux, Auxiliary(Create_Line(0, 0, 120, 80)));
  Add_Element_In_Array_by_Handle(aux, Auxiliary(Create_Circle(35, 40, 22)));
}

// The whole picture: background, construction elements, section, and the
// rubber band of a line from a cursor at (-10, 95) tangent to the hole,
// touching on the side where the hole was picked.
inline void Draw(HDC dc, const Coord_Syst& cs, Objects_Array_Type* objects,
                 Objects_Array_Type* aux) {
  COLORREF colours[kObject_Colors];
  Set_Object_Colors(2, colours);
  HBRUSH background = CreateSolidBrush(colours[1]);
  RECT all{0, 0, cs.vp_ext_x, cs.vp_ext_y};
  FillRect(dc, &all, background);
  DeleteObject(background);

  Draw_Auxil_Objects(dc, &cs, aux, colours);
  Draw_Objects(dc, &cs, objects, colours);

  Curs_Pos_Type band{};
  band.x[0] = -10, band.y[0] = 95;  // the cursor
  band.x[1] = 35, band.y[1] = 40;   // the hole's centre ...
  band.x[2] = 15;                   // ... and radius
  band.x[3] = 20, band.y[3] = 45;   // where the hole was picked
  band.count = 1;
  Draw_Rubber_Line_TanCir(dc, &cs, &band, RGB(255, 255, 255));
  Draw_Rubber_Point(dc, &cs, &band, RGB(255, 255, 255));
}

}  // namespace scene
