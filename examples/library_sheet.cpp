// Builds a small section library (a few common steel shapes), then lays the
// 100 x 100 previews stored in it out as one contact sheet with the
// sections' names and writes it as a PNG.
//
//   library_sheet [sheet.png] [fixture_dir]
//
// With a fixture directory it also writes the files the tests and the
// fuzzers start from: one section's geometry file, a compact one-section
// library and one preview bitmap.
#include <tessaline/tessaline.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "picture.h"

namespace {

// A 5 x 7 font for the names: one row of five bits per byte, top row first.
struct Glyph {
  char c;
  unsigned char rows[7];
};
constexpr Glyph kFont[] = {
    {'0', {14, 17, 19, 21, 25, 17, 14}}, {'1', {4, 12, 4, 4, 4, 4, 14}},
    {'2', {14, 17, 1, 2, 4, 8, 31}},     {'3', {31, 2, 4, 2, 1, 17, 14}},
    {'4', {2, 6, 10, 18, 31, 2, 2}},     {'5', {31, 16, 30, 1, 1, 17, 14}},
    {'6', {6, 8, 16, 30, 17, 17, 14}},   {'7', {31, 1, 2, 4, 8, 8, 8}},
    {'8', {14, 17, 17, 14, 17, 17, 14}}, {'9', {14, 17, 17, 15, 1, 2, 12}},
    {'A', {14, 17, 17, 31, 17, 17, 17}}, {'B', {30, 17, 17, 30, 17, 17, 30}},
    {'C', {14, 17, 16, 16, 16, 17, 14}}, {'D', {28, 18, 17, 17, 17, 18, 28}},
    {'E', {31, 16, 16, 30, 16, 16, 31}}, {'F', {31, 16, 16, 30, 16, 16, 16}},
    {'H', {17, 17, 17, 31, 17, 17, 17}}, {'I', {14, 4, 4, 4, 4, 4, 14}},
    {'L', {16, 16, 16, 16, 16, 16, 31}}, {'N', {17, 17, 25, 21, 19, 17, 17}},
    {'O', {14, 17, 17, 17, 17, 17, 14}}, {'P', {30, 17, 17, 30, 16, 16, 16}},
    {'R', {30, 17, 17, 30, 20, 18, 17}}, {'S', {15, 16, 16, 14, 1, 1, 30}},
    {'T', {31, 4, 4, 4, 4, 4, 4}},       {'U', {17, 17, 17, 17, 17, 17, 14}},
    {'X', {17, 17, 10, 4, 10, 17, 17}},  {'x', {0, 0, 17, 10, 4, 10, 17}},
    {'-', {0, 0, 0, 31, 0, 0, 0}},       {' ', {0, 0, 0, 0, 0, 0, 0}},
};

void Draw_Text(HDC dc, int x, int y, const std::string& text, COLORREF color) {
  for (char c : text) {
    for (const Glyph& g : kFont) {
      if (g.c != c) continue;
      for (int r = 0; r < 7; ++r) {
        for (int b = 0; b < 5; ++b) {
          if (g.rows[r] & (16 >> b)) SetPixel(dc, x + b, y + r, color);
        }
      }
    }
    x += 6;
  }
}

// A section drawn from closed polygons (the first the outline, the others
// holes) and circles, its surface found from the elements.
struct Shape {
  std::string name;
  _Geo_Cross_Section geometry;

  void Polygon(const std::vector<double>& xy) {
    size_t n = xy.size() / 2;
    for (size_t i = 0; i < n; ++i) {
      size_t j = (i + 1) % n;
      Add_Element_In_Array_by_Handle(
          &geometry.objects, Create_Line(xy[2 * i], xy[2 * i + 1], xy[2 * j], xy[2 * j + 1]));
    }
  }
  void Circle(double x, double y, double r) {
    Add_Element_In_Array_by_Handle(&geometry.objects, Create_Circle(x, y, r));
  }
  // An arc counter-clockwise from a1 to a2 with its ends stored.
  void Arc(double x, double y, double r, double a1, double a2) {
    HGLOBAL h = Create_Arc(x, y, r, a1, a2);
    Set_Arc_Ends(h, x + r * std::cos(a1), y + r * std::sin(a1), x + r * std::cos(a2),
                 y + r * std::sin(a2));
    Add_Element_In_Array_by_Handle(&geometry.objects, h);
  }
  void Line(double x1, double y1, double x2, double y2) {
    Add_Element_In_Array_by_Handle(&geometry.objects, Create_Line(x1, y1, x2, y2));
  }
  void Finish() { Make_Surface_From_Objects(&geometry.objects, &geometry.surface); }
};

std::vector<std::unique_ptr<Shape>> Make_Shapes() {
  std::vector<std::unique_ptr<Shape>> s;
  auto add = [&](const char* name) {
    s.push_back(std::make_unique<Shape>());
    s.back()->name = name;
    return s.back().get();
  };
  add("IPE 200")->Polygon({-50, -100, 50,  -100, 50,  -91.5, 2.8,  -91.5, 2.8,  91.5,  50,  91.5,
                           50,  100,  -50, 100,  -50, 91.5,  -2.8, 91.5,  -2.8, -91.5, -50, -91.5});
  Shape* rhs = add("RHS 120x80");
  rhs->Polygon({-60, -40, 60, -40, 60, 40, -60, 40});
  rhs->Polygon({-54, -34, 54, -34, 54, 34, -54, 34});
  Shape* chs = add("CHS 100");
  chs->Circle(0, 0, 50);
  chs->Circle(0, 0, 42);
  add("UPN 160")->Polygon(
      {0, 0, 65, 0, 65, 10.5, 7.5, 10.5, 7.5, 149.5, 65, 149.5, 65, 160, 0, 160});
  add("L 100x60")->Polygon({0, 0, 100, 0, 100, 10, 10, 10, 10, 60, 0, 60});
  add("T 100")->Polygon({-5.5, 0, 5.5, 0, 5.5, 89, 50, 89, 50, 100, -50, 100, -50, 89, -5.5, 89});
  Shape* d = add("D 80");
  d->Line(-40, 0, 40, 0);
  d->Arc(0, 0, 40, 0, M_PI);
  d->Circle(0, 15, 10);
  for (auto& shape : s) shape->Finish();
  return s;
}

bool Write_Fixtures(const std::string& dir, CCrossSectionLibrary& lib, Shape& first) {
  std::string geo = dir + "/section.wgf";
  {
    CFile f(geo.c_str(), CFile::modeCreate | CFile::modeWrite);
    const char magic[4] = {'W', 'G', 'F', 'F'};
    f.Write(magic, 4);
    Save_GeoCrossSectData(f, &first.geometry, Cross_Section_Version(9, 2));
  }
  CDIBitmap dib;
  if (!lib.GetPreviewBitmap(dib, 0)) return false;
  {
    CFile f((dir + "/preview.bmp").c_str(), CFile::modeCreate | CFile::modeWrite);
    dib.Save(f);
  }
  // A one-section library whose table holds one entry and whose block
  // follows it at once: small enough to mutate quickly.
  CString path;
  lib.GetPathName(path);
  CFile in(path.c_str(), CFile::modeRead);
  std::vector<unsigned char> all(in.GetLength());
  in.Read(all.data(), static_cast<UINT>(all.size()));
  uint32_t offset, length;
  std::memcpy(&offset, &all[360], 4);
  std::memcpy(&length, &all[offset + 80], 4);
  std::vector<unsigned char> compact(all.begin(), all.begin() + 360);
  compact[306] = 1;
  compact[307] = 0;
  uint32_t at = 364;
  compact.insert(compact.end(), reinterpret_cast<unsigned char*>(&at),
                 reinterpret_cast<unsigned char*>(&at) + 4);
  compact.insert(compact.end(), all.begin() + offset, all.begin() + offset + length);
  CFile out((dir + "/compact.slb").c_str(), CFile::modeCreate | CFile::modeWrite);
  out.Write(compact.data(), static_cast<UINT>(compact.size()));
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  std::string png = argc > 1 ? argv[1] : "library.png";
  std::string fixtures = argc > 2 ? argv[2] : "";
  std::string lib_path = "library_sheet.slb";  // in the current directory, removed at the end
  std::remove(lib_path.c_str());
  auto shapes = Make_Shapes();
  int rc = 0;
  {
    CString path = lib_path;
    CCrossSectionLibrary lib(path);
    for (auto& s : shapes) {
      CBeamCrosSect beam(&s->geometry);
      beam.SetName(s->name.c_str());
      surface_geometry g{};
      Calc_Exact_Surface_Param(&s->geometry.surface, &g);
      beam.ReadFromSurfGeom(&g);
      if (!lib.SafeAddSection(beam)) {
        std::fprintf(stderr, "%s\n", lib.GetLastErrorText().c_str());
        return 1;
      }
    }
    // The sheet: one cell of 120 x 124 pixels per section, previews read
    // back from the library.
    const int cols = 4, cell_w = 120, cell_h = 124;
    int rows = (lib.GetCount() + cols - 1) / cols;
    Picture sheet(cols * cell_w, rows * cell_h);
    sheet.Fill(RGB(250, 250, 250));
    HDC dc = sheet.dc();
    CStringArray names;
    lib.GetSectionNames(names, 0, lib.GetCount() - 1);
    CDC cdc;
    cdc.Attach(dc);
    for (int i = 0; i < lib.GetCount(); ++i) {
      CDIBitmap dib;
      lib.GetPreviewBitmap(dib, i);
      int x = (i % cols) * cell_w + 10, y = (i / cols) * cell_h + 6;
      CRect r(x, y, x + 100, y + 100);
      dib.Draw(cdc, r);
      Draw_Text(dc, x + (100 - 6 * static_cast<int>(names[static_cast<size_t>(i)].size())) / 2,
                y + 106, names[static_cast<size_t>(i)], RGB(0, 0, 0));
    }
    cdc.Detach();
    if (!sheet.Write(png.c_str())) rc = 1;
    if (!fixtures.empty() && !Write_Fixtures(fixtures, lib, *shapes[0])) rc = 1;
  }
  std::remove(lib_path.c_str());
  for (auto& s : shapes) Free_Geo_Cross_Section(&s->geometry);
  std::printf("%s: %zu sections\n", png.c_str(), shapes.size());
  return rc;
}
