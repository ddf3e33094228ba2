// Draws the torsion shear stress of an I-section (IPE 300 with its root
// fillets) and of a rectangular hollow section (RHS 200x100x8 with its
// corner radii) under a torque of 1 kN m as colour maps over the triangles
// of the torsion and warping analysis, each with a colour bar from 0 (blue)
// to its largest stress (red) labelled in N/mm^2, and writes them as PNG:
//   torsion_picture [out.png] [shape table folder]
// Dimensions come from the shape tables eu_i.csv and eu_hollow.csv.
#include <tessaline/tessaline.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "picture.h"

namespace {

std::map<std::string, double> Shape_Row(const std::string& path, const std::string& name) {
  std::ifstream in(path);
  std::string line, header;
  std::getline(in, header);
  std::map<std::string, double> row;
  while (std::getline(in, line)) {
    if (line.rfind(name + ",", 0) != 0) continue;
    std::stringstream h(header), v(line);
    std::string key, value;
    while (std::getline(h, key, ',') && std::getline(v, value, ',')) {
      row[key] = value.empty() ? 0.0 : std::atof(value.c_str());
    }
  }
  return row;
}

// A closed outline of segments and arcs: each vertex starts a segment, or an
// arc about (cx, cy) when `arc`, counter-clockwise when `ccw`.
struct Vertex {
  double x, y;
  bool arc = false;
  double cx = 0, cy = 0;
  bool ccw = true;
};

void Outline(Objects_Array_Type* a, const std::vector<Vertex>& v) {
  for (size_t i = 0; i < v.size(); ++i) {
    const Vertex& p = v[i];
    const Vertex& q = v[(i + 1) % v.size()];
    if (!p.arc) {
      Add_Element_In_Array_by_Handle(a, Create_Line(p.x, p.y, q.x, q.y));
      continue;
    }
    const double r = std::hypot(p.x - p.cx, p.y - p.cy);
    double a1 = std::atan2(p.y - p.cy, p.x - p.cx), a2 = std::atan2(q.y - p.cy, q.x - p.cx);
    double x1 = p.x, y1 = p.y, x2 = q.x, y2 = q.y;
    if (!p.ccw) {
      std::swap(a1, a2);
      std::swap(x1, x2);
      std::swap(y1, y2);
    }
    HGLOBAL h = Create_Arc(p.cx, p.cy, r, a1, a2);
    Set_Arc_Ends(h, x1, y1, x2, y2);
    Add_Element_In_Array_by_Handle(a, h);
  }
}

void I_Section(Objects_Array_Type* a, double b, double h, double tw, double tf, double r) {
  const double x = b / 2, y = h / 2, w = tw / 2, f = y - tf, c = w + r, g = f - r;
  Outline(a, {{-x, -y},
              {x, -y},
              {x, -f},
              {c, -f, true, c, -g, false},
              {w, -g},
              {w, g, true, c, g, false},
              {c, f},
              {x, f},
              {x, y},
              {-x, y},
              {-x, f},
              {-c, f, true, -c, g, false},
              {-w, g},
              {-w, -g, true, -c, -g, false},
              {-c, -f},
              {-x, -f}});
}

void Rounded_Rectangle(Objects_Array_Type* a, double X, double Y, double r) {
  Outline(a, {{-X + r, -Y},
              {X - r, -Y, true, X - r, -Y + r},
              {X, -Y + r},
              {X, Y - r, true, X - r, Y - r},
              {X - r, Y},
              {-X + r, Y, true, -X + r, Y - r},
              {-X, Y - r},
              {-X, -Y + r, true, -X + r, -Y + r}});
}

// Blue (0) to red (1) on the system's hue scale.
COLORREF Scale_Colour(double v) {
  double r = 0, g = 0, b = 0;
  HSVtoRGB(300.0 - 240.0 * std::clamp(v, 0.0, 1.0), 1.0, 1.0, &r, &g, &b);
  return RGB(static_cast<int>(r * 255), static_cast<int>(g * 255), static_cast<int>(b * 255));
}

// Digits and a point in a 3 x 5 cell font, drawn s pixels a dot.
void Draw_Text(HDC dc, int x, int y, const std::string& text, int s) {
  static const char* kGlyphs[11] = {"111101101101111", "010110010010111", "111001111100111",
                                    "111001111001111", "101101111001001", "111100111001111",
                                    "111100111101111", "111001001001001", "111101111101111",
                                    "111101111001111", "000000000000010"};
  HBRUSH black = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
  for (char ch : text) {
    const int k = ch == '.' ? 10 : ch - '0';
    if (k < 0 || k > 10) continue;
    for (int i = 0; i < 15; ++i) {
      if (kGlyphs[k][i] != '1') continue;
      RECT d{x + (i % 3) * s, y + (i / 3) * s, x + (i % 3 + 1) * s, y + (i / 3 + 1) * s};
      FillRect(dc, &d, black);
    }
    x += 4 * s;
  }
}

// Analyses the surface and draws its stress map into the panel
// (left, top, width, height) with a colour bar below it.
bool Draw_Panel(HDC dc, Surface_Type* surface, int left, int top, int width, int height) {
  Torsion_Warping_Options o{1e-5, 200000, 1.0e6};  // 1 kN m in N mm: stresses in N/mm^2
  Torsion_Warping_Result r{};
  FE_Split split{};
  if (Calc_Torsion_Warping(surface, &o, &r, &split) == TORSION_WARPING_FAILED) return false;
  std::printf(
      "J %.6g mm^4 (bounds %.8g .. %.8g), Cw %.6g mm^6, largest shear %.4g N/mm^2, %d elements\n",
      r.J, r.J_lower, r.J_upper, r.Cw, r.max_shear_stress, r.elements);
  double x0 = 0, y1 = 0, x1 = 0, y0 = 0;
  Get_Surface_Extern_Rect(surface, &x0, &y1, &x1, &y0);
  const double scale = 0.9 * std::min((width) / (x1 - x0), (height - 80) / (y1 - y0));
  const int cx = left + width / 2, cy = top + (height - 80) / 2;
  auto pixel = [&](const FEPOINT& p) {
    return POINT{cx + static_cast<LONG>(std::lround((p.x - 0.5 * (x0 + x1)) * scale)),
                 cy - static_cast<LONG>(std::lround((p.y - 0.5 * (y0 + y1)) * scale))};
  };
  auto* nodes = static_cast<FEPOINT*>(GlobalLock(split.nodes));
  auto* tris = static_cast<FE3Ang*>(GlobalLock(split.triangles));
  auto* tx = static_cast<double*>(GlobalLock(split.tau_x));
  auto* ty = static_cast<double*>(GlobalLock(split.tau_y));
  HGDIOBJ old_pen = SelectObject(dc, GetStockObject(NULL_PEN));
  for (int e = 0; nodes && tris && tx && ty && e < split.triangle_count; ++e) {
    POINT c[3];
    for (int k = 0; k < 3; ++k) c[k] = pixel(nodes[tris[e].n[k]]);
    HBRUSH b = CreateSolidBrush(Scale_Colour(std::hypot(tx[e], ty[e]) / r.max_shear_stress));
    HGDIOBJ old = SelectObject(dc, b);
    Polygon(dc, c, 3);
    SelectObject(dc, old);
    DeleteObject(b);
  }
  for (HGLOBAL h : {split.nodes, split.triangles, split.tau_x, split.tau_y}) GlobalUnlock(h);
  // The colour bar: 0 at its left end, the largest stress at its right.
  const int bar_left = left + width / 8, bar_width = width * 3 / 4, bar_top = top + height - 60;
  for (int i = 0; i < bar_width; ++i) {
    HBRUSH b = CreateSolidBrush(Scale_Colour(static_cast<double>(i) / (bar_width - 1)));
    RECT d{bar_left + i, bar_top, bar_left + i + 1, bar_top + 20};
    FillRect(dc, &d, b);
    DeleteObject(b);
  }
  char label[32];
  std::snprintf(label, sizeof label, "%.1f", r.max_shear_stress);
  Draw_Text(dc, bar_left, bar_top + 28, "0", 3);
  Draw_Text(dc, bar_left + bar_width - 12 * static_cast<int>(std::string(label).size()),
            bar_top + 28, label, 3);
  SelectObject(dc, old_pen);
  Free_FE_Split(&split);
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  const char* path = argc > 1 ? argv[1] : "torsion.png";
  const std::string tables = argc > 2 ? argv[2] : TESSALINE_SHAPE_DIR;
  auto ipe = Shape_Row(tables + "/eu_i.csv", "IPE300");
  auto rhs = Shape_Row(tables + "/eu_hollow.csv", "RHS200x100x8");
  if (ipe.empty() || rhs.empty()) {
    std::printf("shape tables not found in %s\n", tables.c_str());
    return 1;
  }
  Objects_Array_Type a{}, b{};
  I_Section(&a, ipe["b_mm"], ipe["h_mm"], ipe["tw_mm"], ipe["tf_mm"], ipe["r_mm"]);
  Rounded_Rectangle(&b, rhs["h_mm"] / 2, rhs["b_mm"] / 2, rhs["ro_mm"]);
  Rounded_Rectangle(&b, rhs["h_mm"] / 2 - rhs["t_mm"], rhs["b_mm"] / 2 - rhs["t_mm"], rhs["ri_mm"]);
  Surface_Type sa{}, sb{};
  Make_Surface_From_Objects(&a, &sa);
  Make_Surface_From_Objects(&b, &sb);

  constexpr int kWidth = 1000, kHeight = 520;
  Picture picture(kWidth, kHeight);
  picture.Fill(RGB(255, 255, 255));
  HDC dc = picture.dc();
  const bool done = Draw_Panel(dc, &sa, 0, 10, kWidth / 2, kHeight - 10) &&
                    Draw_Panel(dc, &sb, kWidth / 2, 10, kWidth / 2, kHeight - 10);
  const bool written = done && picture.Write(path);
  Delete_Surface(&sa);
  Delete_Surface(&sb);
  DeleteObjectsArray(&a);
  DeleteObjectsArray(&b);
  return written ? 0 : 1;
}
