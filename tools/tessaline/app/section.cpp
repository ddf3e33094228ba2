#include "section.h"

#include <algorithm>
#include <cctype>

#include "dxf.h"
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

std::unique_ptr<Section> Resolve_Section(std::string_view source, std::string* error) {
  std::string arg(source);
  if (Is_Dxf_Source(source)) {
    auto all = Resolve_Sections(source, error);
    if (all.size() == 1) return std::move(all[0]);
    if (all.size() > 1)
      *error = arg + ": the drawing holds " + std::to_string(all.size()) +
               " sections; name one as " + arg + ":N";
    return nullptr;
  }
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

namespace {

bool Ends_With_Dxf(std::string_view s) {
  if (s.size() < 4) return false;
  std::string ext(s.substr(s.size() - 4));
  std::transform(ext.begin(), ext.end(), ext.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return ext == ".dxf";
}

// Splits "drawing.dxf:N" into the path and N (0 for the whole drawing, -1
// for a number that is not one).
std::string_view Split_Dxf_Source(std::string_view source, long* index) {
  *index = 0;
  size_t colon = source.rfind(':');
  if (colon != std::string_view::npos && Ends_With_Dxf(source.substr(0, colon))) {
    std::string_view num = source.substr(colon + 1);
    *index = -1;
    if (!num.empty() && num.size() < 7 &&
        std::all_of(num.begin(), num.end(), [](char c) { return c >= '0' && c <= '9'; }))
      *index = std::stol(std::string(num));
    if (*index == 0) *index = -1;
    return source.substr(0, colon);
  }
  return source;
}

}  // namespace

bool Is_Dxf_Source(std::string_view source) {
  long index;
  return Ends_With_Dxf(Split_Dxf_Source(source, &index));
}

std::vector<std::unique_ptr<Section>> Resolve_Sections(std::string_view source,
                                                       std::string* error) {
  std::vector<std::unique_ptr<Section>> out;
  if (!Is_Dxf_Source(source)) {
    if (auto s = Resolve_Section(source, error)) out.push_back(std::move(s));
    return out;
  }
  long index;
  std::string path(Split_Dxf_Source(source, &index));
  std::string arg(source), why;
  Dxf_Drawing drawing;
  if (index < 0) {
    *error = arg + ": the section number after ':' is not a number from 1";
    return out;
  }
  if (!Read_Dxf(path, kDxf_Join_Tolerance, &drawing, &why)) {
    *error = path + ": " + why;
    return out;
  }
  if (!drawing.problems.empty()) {
    *error = path + ": " + drawing.problems[0];
    return out;
  }
  if (drawing.sections.empty() || index > static_cast<long>(drawing.sections.size())) {
    *error = arg + ": the drawing holds " + std::to_string(drawing.sections.size()) +
             " closed section(s)";
    return out;
  }
  for (size_t i = 0; i < drawing.sections.size(); ++i) {
    if (index > 0 && static_cast<long>(i) + 1 != index) continue;
    auto s = Section_From_Outline(drawing.sections[i].outline, drawing.sections[i].name, &why);
    if (!s) {
      *error = path + ":" + std::to_string(i + 1) + ": " + why;
      out.clear();
      return out;
    }
    out.push_back(std::move(s));
  }
  return out;
}

}  // namespace tessaline::app
