// Draws a section with two holes, files its contours into a surface, fills
// and frames the surface's region on a 640 x 480 memory context and writes
// it as PNG: surface_picture [file.png] (default surface.png).
//
// The section is the plate of plate.h.
#include <cstdio>

#include <tessaline/tessaline.h>

#include "picture.h"
#include "plate.h"

int main(int argc, char** argv) {
  const char* path = argc > 1 ? argv[1] : "surface.png";
  constexpr int kWidth = 640, kHeight = 480;

  Objects_Array_Type drawing{};
  plate::Draw(&drawing);
  Surface_Type surface{};
  int filed = Make_Surface_From_Objects(&drawing, &surface);
  std::printf("%d contours: %d outer, %d holes\n", filed, surface.outer_count, surface.hole_count);

  const Coord_Syst cs = plate::View(kWidth, kHeight);

  Picture picture(kWidth, kHeight);
  picture.Fill(RGB(255, 255, 255));
  HDC dc = picture.dc();
  int drawn = Draw_Surface(&surface, dc, &cs, RGB(120, 170, 220), RGB(20, 40, 90));
  const bool written = drawn && picture.Write(path);

  Delete_Surface(&surface);
  DeleteObjectsArray(&drawing);
  return written ? 0 : 1;
}
