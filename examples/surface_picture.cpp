// Draws a section with two holes, files its contours into a surface, fills
// and frames the surface's region on a 640 x 480 memory context and writes
// it as PNG: surface_picture [file.png] (default surface.png).
//
// The section: a plate 0..160 mm long with a half-round right end (radius
// 60) and a rounded top-left corner (radius 20), 120 mm high; a circular
// hole of radius 30 at the centre of the round end and a rectangular hole.
#include <cstdio>
#include <numbers>

#include <tessaline/tessaline.h>

namespace {

constexpr double kPi = std::numbers::pi;

void Add(Objects_Array_Type* a, HGLOBAL h) {
  Add_Element_In_Array_by_Handle(a, h);
}

// An arc with its end points given exactly, so that they meet the
// neighbouring segments' ends bit for bit.
void Add_Arc(Objects_Array_Type* a, double xc, double yc, double r, double a1, double a2, double x1,
             double y1, double x2, double y2) {
  HGLOBAL h = Create_Arc(xc, yc, r, a1, a2);
  Set_Arc_Ends(h, x1, y1, x2, y2);
  Add(a, h);
}

void Draw_Section(Objects_Array_Type* a) {
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

}  // namespace

int main(int argc, char** argv) {
  const char* path = argc > 1 ? argv[1] : "surface.png";
  constexpr int kWidth = 640, kHeight = 480;

  Objects_Array_Type drawing{};
  Draw_Section(&drawing);
  Surface_Type surface{};
  int filed = Make_Surface_From_Objects(&drawing, &surface);
  std::printf("%d contours: %d outer, %d holes\n", filed, surface.outer_count, surface.hole_count);

  // World 260 x 195 mm about the section's middle onto 640 x 480 pixels, y up.
  Coord_Syst cs{};
  cs.world = {-20, 60 - 97.5, 260, 195};
  cs.window = {0, kHeight, kWidth, -kHeight};

  HDC dc = CreateCompatibleDC(nullptr);
  HBITMAP bitmap = CreateCompatibleBitmap(dc, kWidth, kHeight);
  HGDIOBJ old = SelectObject(dc, bitmap);
  RECT all{0, 0, kWidth, kHeight};
  FillRect(dc, &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
  int drawn = Draw_Surface(&surface, dc, &cs, RGB(120, 170, 220), RGB(20, 40, 90));
  BOOL written = drawn && WriteDCPng(dc, path);
  std::printf("%s %s\n", written ? "written to" : "could not write", path);

  SelectObject(dc, old);
  DeleteObject(bitmap);
  DeleteDC(dc);
  Delete_Surface(&surface);
  DeleteObjectsArray(&drawing);
  return written ? 0 : 1;
}
