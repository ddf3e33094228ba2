// Cross-sections for file tests: an outline of segments and an arc with a
// circular hole, construction lines in the second array that a derived
// point refers to, optionally a polyline and a spline, a split and a name.
#pragma once

#include <cmath>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <tessaline/tessaline.h>

struct Section_Options {
  bool compound = false;  // add a polyline and a spline
  bool split = false;
  const char* name = "IPE 100";
  double size = 1.0;  // scales the outline
};

inline void Clear_Ordinary_Bit(HGLOBAL h) {
  auto* r = static_cast<Element_Record*>(GlobalLock(h));
  r->attr &= ~ATTR_ORDINARY;
  GlobalUnlock(h);
}

template <class T>
HGLOBAL Block_Of(const std::vector<T>& v) {
  HGLOBAL h = GlobalAlloc(GHND, v.size() * sizeof(T));
  std::memcpy(GlobalLock(h), v.data(), v.size() * sizeof(T));
  GlobalUnlock(h);
  return h;
}

inline void Build_Section(_Geo_Cross_Section& g, const Section_Options& o = {}) {
  double s = o.size;
  // Outline: three segments and a half-circle arc on top, then a hole.
  Add_Element_In_Array_by_Handle(&g.objects, Create_Line(0, 0, 40 * s, 0));
  Add_Element_In_Array_by_Handle(&g.objects, Create_Line(40 * s, 0, 40 * s, 30 * s));
  HGLOBAL arc = Create_Arc(20 * s, 30 * s, 20 * s, 0, M_PI);
  Set_Arc_Ends(arc, 40 * s, 30 * s, 0, 30 * s);  // an arc keeps its ends in the record
  Add_Element_In_Array_by_Handle(&g.objects, arc);
  Add_Element_In_Array_by_Handle(&g.objects, Create_Line(0, 30 * s, 0, 0));
  Add_Element_In_Array_by_Handle(&g.objects, Create_Circle(20 * s, 20 * s, 5 * s));
  // Construction lines and a point derived from both (creation type 5 keeps
  // two parent slots), and one derived from an ordinary element.
  for (int i = 0; i < 3; ++i) {
    HGLOBAL aux = Create_Line(-10, i * 10.0, 50, i * 10.0 + 1);
    Clear_Ordinary_Bit(aux);
    Add_Element_In_Array_by_Handle(&g.aux_objects, aux);
  }
  HGLOBAL p = Create_Point(5, 5);
  Write_Creation_Type(p, 5);
  Alloc_Parent(p, 2);
  Write_Parent(p, Get_Element_Handle_by_Index(&g.aux_objects, 2), 0);
  Write_Parent(p, Get_Element_Handle_by_Index(&g.objects, 0), 1);
  Add_Element_In_Array_by_Handle(&g.objects, p);
  if (o.compound) {
    double x[4] = {1, 2, 3, 5}, y[4] = {1, 3, 2, 4};
    Add_Element_In_Array_by_Handle(&g.objects, Create_Polyline(4, x, y));
    Add_Element_In_Array_by_Handle(&g.objects, Create_Spline(4, x, y, nullptr, nullptr));
  }
  Make_Surface_From_Objects(&g.objects, &g.surface);
  for (int i = 0; i < 21; ++i) (&g.geom.area)[i] = 1.5 * i - 3.25;
  if (o.split) {
    g.split.nodes = Block_Of(std::vector<FEPOINT>{{0, 0, 1}, {1, 0, 1}, {0, 1, 2}, {0.3, 0.3, 0}});
    g.split.node_count = 4;
    g.split.second = Block_Of(std::vector<double>{1, 2, 3, 4, 5, 6, 7, 8});
    g.split.triangles = Block_Of(std::vector<FE3Ang>{{{0, 1, 3}}, {{1, 2, 3}}});
    g.split.triangle_count = 2;
    g.split.results = Block_Of(std::vector<double>{0.5, 0.25});
    g.split.tau_x = Block_Of(std::vector<double>{-1, 1});
    g.split.tau_y = Block_Of(std::vector<double>{2, -2});
    g.split.further = Block_Of(std::vector<double>{1, 2, 3, 4, 5, 6});
    g.split.spare[0] = 7;
    g.split.spare[1] = -9;
  }
  std::strncpy(g.name, o.name, sizeof g.name - 1);
  g.extra_code = 0x1234;
}

// The bytes Save_GeoCrossSectData writes for `g` (in a file under `dir`).
inline std::vector<unsigned char> Saved_Bytes(const std::string& path, _Geo_Cross_Section& g,
                                              DWORD version) {
  {
    CFile f(path.c_str(), CFile::modeCreate | CFile::modeWrite);
    Save_GeoCrossSectData(f, &g, version);
  }
  std::ifstream in(path, std::ios::binary);
  return std::vector<unsigned char>(std::istreambuf_iterator<char>(in), {});
}
