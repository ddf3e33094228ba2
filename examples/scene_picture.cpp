// Draws a small section scene into a 640 x 480 memory context and writes it
// as a PNG file.
//
//   scene_picture [out.png]      (default scene.png)
#include <cstdio>

#include <tessaline/tessaline.h>

#include "scene.h"

int main(int argc, char** argv) {
  const char* path = argc > 1 ? argv[1] : "scene.png";
  constexpr int kWidth = 640, kHeight = 480;

  HDC dc = CreateCompatibleDC(nullptr);
  HBITMAP bitmap = CreateCompatibleBitmap(dc, kWidth, kHeight);
  HGDIOBJ old = SelectObject(dc, bitmap);

  Objects_Array_Type objects{}, aux{};
  scene::Build(&objects, &aux);
  const Coord_Syst cs = scene::Coordinates(kWidth, kHeight);
  scene::Draw(dc, cs, &objects, &aux);

  BOOL written = WriteDCPng(dc, path);
  DeleteObjectsArray(&objects);
  DeleteObjectsArray(&aux);
  SelectObject(dc, old);
  DeleteObject(bitmap);
  DeleteDC(dc);
  if (!written) {
    std::fprintf(stderr, "cannot write %s\n", path);
    return 1;
  }
  std::printf("wrote %s (%d x %d)\n", path, kWidth, kHeight);
  return 0;
}
