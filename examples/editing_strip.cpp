// An editing session, step by step, drawn as one strip of pictures:
//
//   1 the right half of a plate outline, with a round hole
//   2 two corners rounded with fillets
//   3 one corner cut with a chamfer
//   4 a construction line through a node of the outline
//   5 the hole picked with the cursor and moved
//   6 the half mirrored about the plate's centre line
//   7 the closed outer contour of the result found and shown selected
//
// Each step draws its state into the next panel of a memory context, which
// is written as a PNG file at the end.
//
//   editing_strip [out.png]      (default editing.png)
#include <cstdio>

#include <tessaline/tessaline.h>

#include "picture.h"

namespace {

constexpr int kPanelW = 300, kPanelH = 180, kPanels = 7;

// Panel i shows the world rectangle (-75, -15) to (75, 75) millimetres, y up,
// in the strip's columns i * kPanelW .. (i + 1) * kPanelW.
Coord_Syst Panel(int i) {
  Coord_Syst cs{};
  cs.vp_org_x = i * kPanelW;
  cs.vp_ext_x = kPanelW;
  cs.vp_ext_y = kPanelH;
  cs.window = Logical_Window{i * kPanelW, kPanelH, kPanelW, -kPanelH};
  cs.world = World_Window{-75, -15, 150, 90};
  return cs;
}

// Paints the panel's background, the construction elements and the drawing,
// clipped to the panel.
void Draw_Panel(HDC dc, const Coord_Syst& cs, Objects_Array_Type* objects, Objects_Array_Type* aux,
                const COLORREF* colours) {
  HRGN clip = CreateRectRgn(cs.vp_org_x, 0, cs.vp_org_x + kPanelW - 2, kPanelH);
  SelectClipRgn(dc, clip);
  HBRUSH background = CreateSolidBrush(colours[1]);
  RECT r{cs.vp_org_x, 0, cs.vp_org_x + kPanelW, kPanelH};
  FillRect(dc, &r, background);
  DeleteObject(background);
  Draw_Auxil_Objects(dc, &cs, aux, colours);
  Draw_Objects(dc, &cs, objects, colours);
  SelectClipRgn(dc, nullptr);
  DeleteObject(clip);
}

// A cursor-position record holding the points the user placed.
Curs_Pos_Type Clicks(double x0, double y0, double x1 = 0, double y1 = 0) {
  Curs_Pos_Type c{};
  c.x[0] = x0, c.y[0] = y0, c.x[1] = x1, c.y[1] = y1;
  c.count = 2;
  return c;
}

}  // namespace

int main(int argc, char** argv) {
  const char* path = argc > 1 ? argv[1] : "editing.png";
  Picture picture(kPanelW * kPanels, kPanelH);
  HDC dc = picture.dc();
  COLORREF colours[kObject_Colors];
  Set_Object_Colors(2, colours);

  // The drawing and its construction elements live in two objects arrays.
  Objects_Array_Type objects{}, aux{};
  auto add = [&](HGLOBAL h) {
    Add_Element_In_Array_by_Handle(&objects, h);
    return h;
  };

  // 1. The right half of the outline, from the centre line at the bottom
  //    round to the centre line at the top, and a hole.
  HGLOBAL bottom = add(Create_Line(0, 0, 60, 0));
  HGLOBAL side = add(Create_Line(60, 0, 60, 30));
  HGLOBAL step = add(Create_Line(60, 30, 25, 30));
  HGLOBAL neck = add(Create_Line(25, 30, 25, 60));
  HGLOBAL top = add(Create_Line(25, 60, 0, 60));
  add(Create_Circle(30, 14, 6));
  Draw_Panel(dc, Panel(0), &objects, &aux, colours);

  // 2. Fillets: the outer corner at (60, 0) with radius 10, the inner one at
  //    (25, 30) with radius 6. The picks say which side of each corner stays.
  Curs_Pos_Type c = Clicks(40, 0, 60, 20);
  Create_Fillet(&c, &objects, bottom, side, 10);
  c = Clicks(40, 30, 25, 45);
  Create_Fillet(&c, &objects, step, neck, 6);
  Draw_Panel(dc, Panel(1), &objects, &aux, colours);

  // 3. A chamfer of 6 by 6 at the top corner (25, 60).
  c = Clicks(25, 50, 10, 60);
  Create_Chamfer(&c, &objects, neck, top, 6, 6);
  Draw_Panel(dc, Panel(2), &objects, &aux, colours);

  // 4. A horizontal construction line through the far end of the step,
  //    attached to that node (creation type 11), and the centre line.
  Add_Aux_H_Line_P(&c, &aux, step, 0);
  c = Clicks(0, 0);
  Add_Auxil_Vert_Line(&c, &aux);
  Draw_Panel(dc, Panel(3), &objects, &aux, colours);

  // 5. Pick the hole with the cursor on its rim and move what is selected
  //    10 mm to the right; the links of what moved are brought up to date.
  Coord_Syst pick_view = Panel(4);
  Select_Elements(dc, &objects, &pick_view, 36, 14, colours);
  int selected[64];
  int n = Get_Selected_Elem_Index(&objects, selected);
  Objects_Array_Type moved{};
  Copy_ObjAr_by_Index(&objects, &moved, selected, n);
  Move_Objects_by_Index(&objects, selected, n, 10, 0);
  Do_Objects_Attach_Moving(&moved, &objects);
  DeleteObjectsArray_Without_El_Deleting(&moved);
  Draw_Panel(dc, Panel(4), &objects, &aux, colours);
  Draw_Cros_Cursor(dc, &pick_view, 46, 14, colours[7]);

  // 6. Clear the selection (the elements are redrawn into the next panel,
  //    which is painted afresh below), then mirror everything about the
  //    centre line x = 0 into the same array.
  Coord_Syst next_view = Panel(5);
  Unselect_All_Elements(&objects, dc, &next_view, colours);
  c = Clicks(0, 0, 0, 10);
  Symmetry_Objects_Line(&c, &objects, &objects, 0);
  Draw_Panel(dc, Panel(5), &objects, &aux, colours);

  // 7. The closed contour through the bottom edge: every piece of the outer
  //    outline, each once, in the order of travel. Show it selected.
  Contour_Type contour{};
  int found = Search_Contour(&objects, bottom, &contour);
  for (int i = 0; i < contour.count; ++i)
    Set_Element_Select_Attribute(Get_ContEl_Handle(&contour, i), 1);
  Draw_Panel(dc, Panel(6), &objects, &aux, colours);
  std::printf("outer contour: %s, %d pieces of %d elements\n", found ? "closed" : "not found",
              contour.count, objects.count);
  Delete_El_Contour(&contour);

  const bool written = picture.Write(path);
  DeleteObjectsArray(&objects);
  DeleteObjectsArray(&aux);
  return written && found ? 0 : 1;
}
