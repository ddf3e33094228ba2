// Our properties of a standard shape beside the published ones.
#pragma once

#include <string>
#include <vector>

#include "analysis.h"
#include "shape_tables.h"

namespace tessaline::app {

struct Comparison {
  std::string property;  // A, Ix, Iy, Sx, Sy, Zx, Zy, J, Cw, Iu, Iv, xc, yc, ym, eo
  double ours;
  double published;
  double relative;  // ours / published - 1; NaN when ours is not known
};

// Every property that the row publishes and the result can be set beside.
// Elastic moduli compare with the smaller of the two fibres' (I over the
// largest distance to an extreme fibre); centroid distances are from the
// back of the long leg (xc) and of the short leg (yc) for angles, from the
// back of the web for channels.
std::vector<Comparison> Compare_With_Published(const Shape_Row& row, const Section_Result& r);

}  // namespace tessaline::app
