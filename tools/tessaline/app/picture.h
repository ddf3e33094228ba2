// Pictures of a section as PNG: the section filled with its holes, its
// centroid and principal axes, the dimensions of its bounding box, and
// optionally its finite-element split or the torsion shear-stress map with
// a colour legend. Drawn on the software device context.
#pragma once

#include <string>

#include "analysis.h"
#include "section.h"

namespace tessaline::app {

struct Picture_Options {
  int width = 800;
  int height = 600;
  bool mesh = false;  // draw the finite-element split over the section
  // Colour the section by the size of its torsion shear stress per unit
  // torque (1/mm^3; the legend gives the largest), from the torsion
  // analysis refined to a 1e-3 bound gap.
  bool torsion_stress = false;
  int elements = 2000;  // elements of the split drawn or coloured
};

// Draws the section into `path` (written in full or not at all: a
// temporary file beside it is renamed over it). False with the reason.
bool Write_Section_Picture(Section& section, const Section_Result& result,
                           const Picture_Options& options, const std::string& path,
                           std::string* error);

}  // namespace tessaline::app
