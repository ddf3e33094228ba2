// Draws a small section scene into a 640 x 480 memory context and writes it
// as a PNG file.
//
//   scene_picture [out.png]      (default scene.png)
#include <tessaline/tessaline.h>

#include "picture.h"
#include "scene.h"

int main(int argc, char** argv) {
  const char* path = argc > 1 ? argv[1] : "scene.png";
  constexpr int kWidth = 640, kHeight = 480;

  Picture picture(kWidth, kHeight);
  Objects_Array_Type objects{}, aux{};
  scene::Build(&objects, &aux);
  const Coord_Syst cs = scene::Coordinates(kWidth, kHeight);
  scene::Draw(picture.dc(), cs, &objects, &aux);

  const bool written = picture.Write(path);
  DeleteObjectsArray(&objects);
  DeleteObjectsArray(&aux);
  return written ? 0 : 1;
}
