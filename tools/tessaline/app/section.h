// A section the program works on: a drawing (objects array) and the surface
// found in it, made from a designation, a geometry file or a library entry.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <tessaline/tessaline.h>

#include "outline.h"

namespace tessaline::app {

// Owns its geometry (drawing elements, surface, split) and frees it on
// destruction. `drawing` and `surface` are the geometry's own.
class Section {
 public:
  Section() = default;
  Section(const Section&) = delete;
  Section& operator=(const Section&) = delete;
  ~Section();

  std::string name;
  _Geo_Cross_Section geo;
  Objects_Array_Type& drawing = geo.objects;
  Surface_Type& surface = geo.surface;
  // The outline it was drawn from, when it comes from a designation.
  bool has_outline = false;
  Outline outline;
};

// Draws `outline` into a new section and files its surface. Null, with the
// reason in `error`, when an element closes no contour (an open outline),
// no outer contour is found, or memory runs out.
std::unique_ptr<Section> Section_From_Outline(const Outline& outline, const std::string& name,
                                              std::string* error);

// Files the surface of a section whose drawing is filled in; false with the
// reason when the drawing does not make a closed section.
bool File_Surface(Section* section, std::string* error);

// Resolves a section argument: a library entry ("deflib.slb:IPE300"), a
// geometry file (a path that exists or ends in .wgf), or a designation
// ("IPE300", "PL100x50"). Null with a one-line reason in `error` that names
// the argument ("IPE301: unknown designation ...").
std::unique_ptr<Section> Resolve_Section(std::string_view source, std::string* error);

// True when the argument names a DXF drawing ("drawing.dxf") or one of its
// sections ("drawing.dxf:2", numbered from 1).
bool Is_Dxf_Source(std::string_view source);

// Resolves an argument that may stand for several sections: a DXF drawing
// gives all its sections, "drawing.dxf:N" its N-th; any other argument as
// Resolve_Section. Empty, with a one-line reason naming the argument, when
// the drawing cannot be read, holds an outline that does not close (the
// first such problem is named) or has no section N.
std::vector<std::unique_ptr<Section>> Resolve_Sections(std::string_view source, std::string* error);

}  // namespace tessaline::app
