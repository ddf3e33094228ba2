// Splits a section with two holes into triangles with the finite-element
// mesher and draws the split over the filled section as PNG:
// split_picture [file.png] (default split.png).
//
// The section is the plate of plate.h, as in surface_picture. Triangle
// edges are drawn dark blue; boundary nodes are marked by their flag: red
// on the outer contour, green on the first hole, orange on the second.
#include <cstdio>

#include <tessaline/tessaline.h>

#include "picture.h"
#include "plate.h"

namespace {

COLORREF Flag_Colour(int flag) {
  switch (flag) {
    case 1:
      return RGB(210, 30, 30);
    case 2:
      return RGB(20, 150, 40);
    default:
      return RGB(240, 140, 0);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const char* path = argc > 1 ? argv[1] : "split.png";
  constexpr int kWidth = 800, kHeight = 600;

  Objects_Array_Type drawing{};
  plate::Draw(&drawing);
  Surface_Type surface{};
  Make_Surface_From_Objects(&drawing, &surface);
  FE_Split split{};
  int done = Split_Surface_By_Mesher(&surface, &split, &split.node_count, &split.triangles,
                                     &split.triangle_count, nullptr, 8.0);
  std::printf("mesher: %s, %d nodes, %d triangles, bandwidth %d\n", done ? "done" : "failed",
              split.node_count, split.triangle_count,
              Get_FE_Bandwidth(split.triangles, split.triangle_count));

  const Coord_Syst cs = plate::View(kWidth, kHeight);
  Picture picture(kWidth, kHeight);
  picture.Fill(RGB(255, 255, 255));
  HDC dc = picture.dc();
  Draw_Surface(&surface, dc, &cs, RGB(200, 220, 240), CLR_INVALID);

  auto* nodes = static_cast<FEPOINT*>(GlobalLock(split.nodes));
  auto* tris = static_cast<FE3Ang*>(GlobalLock(split.triangles));
  auto pixel = [&](const FEPOINT& p) {
    POINT q;
    int32_t x, y;
    WPtoLP(&cs.world, &cs.window, p.x, p.y, &x, &y);
    q.x = x, q.y = y;
    return q;
  };
  HPEN edge_pen = CreatePen(PS_SOLID, 1, RGB(30, 60, 120));
  HGDIOBJ old_pen = SelectObject(dc, edge_pen);
  for (int i = 0; nodes && tris && i < split.triangle_count; ++i) {
    POINT c[3];
    for (int k = 0; k < 3; ++k) c[k] = pixel(nodes[tris[i].n[k]]);
    MoveToEx(dc, c[2].x, c[2].y, nullptr);
    for (const POINT& p : c) LineTo(dc, p.x, p.y);
  }
  SelectObject(dc, GetStockObject(NULL_PEN));
  for (int i = 0; nodes && i < split.node_count; ++i) {
    if (nodes[i].flag == 0) continue;
    HBRUSH b = CreateSolidBrush(Flag_Colour(nodes[i].flag));
    HGDIOBJ old_brush = SelectObject(dc, b);
    POINT p = pixel(nodes[i]);
    Ellipse(dc, p.x - 3, p.y - 3, p.x + 4, p.y + 4);
    SelectObject(dc, old_brush);
    DeleteObject(b);
  }
  SelectObject(dc, old_pen);
  DeleteObject(edge_pen);
  if (nodes) GlobalUnlock(split.nodes);
  if (tris) GlobalUnlock(split.triangles);

  const bool written = done && picture.Write(path);
  Free_FE_Split(&split);
  Delete_Surface(&surface);
  DeleteObjectsArray(&drawing);
  return written ? 0 : 1;
}
