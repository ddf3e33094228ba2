#include "section.h"

#include "section_files.h"
#include "shape_tables.h"
#include "shapes.h"

namespace tessaline::app {

Section::~Section() {
  Free_Geo_Cross_Section(&geo);
}

bool File_Surface(Section* s, std::string* error) {
  Delete_Surface(&s->surface);
  if (s->drawing.count <= 0) {
    *error = "the drawing holds no element";
    return false;
  }
  if (Make_Surface_From_Objects(&s->drawing, &s->surface) < 0) {
    *error = "out of memory while finding contours";
    return false;
  }
  if (s->surface.outer_count <= 0) {
    *error = "open outline: no closed contour in the drawing";
    return false;
  }
  for (int i = 0; i < s->drawing.count; ++i) {
    HGLOBAL h = Get_Element_Handle_by_Index(&s->drawing, i);
    if (!Is_Surface_El(&s->surface, h)) {
      *error = "open outline: element " + std::to_string(i + 1) +
               " closes no contour (or lies inside a hole)";
      return false;
    }
  }
  return true;
}

std::unique_ptr<Section> Section_From_Outline(const Outline& outline, const std::string& name,
                                              std::string* error) {
  auto s = std::make_unique<Section>();
  s->name = name;
  s->outline = outline;
  s->has_outline = true;
  if (Add_Outline_Elements(outline, &s->drawing) < 0) {
    *error = "out of memory while drawing";
    return nullptr;
  }
  if (!File_Surface(s.get(), error)) return nullptr;
  return s;
}

std::unique_ptr<Section> Resolve_Section(std::string_view spec, std::string* error) {
  std::string arg(spec);
  std::string why;
  std::unique_ptr<Section> s;
  size_t colon = arg.rfind(':');
  if (colon != std::string::npos && colon > 4 && arg.compare(colon - 4, 4, ".slb") == 0) {
    s = Read_Library_Section(arg.substr(0, colon), arg.substr(colon + 1), &why);
  } else if (!Find_Shape(arg) && Looks_Like_File(arg)) {
    s = Read_Geometry_File(arg, &why);
  } else {
    Outline outline;
    if (Draw_Designation(arg, &outline, &why)) s = Section_From_Outline(outline, arg, &why);
  }
  if (!s) *error = arg + ": " + why;
  return s;
}

}  // namespace tessaline::app
