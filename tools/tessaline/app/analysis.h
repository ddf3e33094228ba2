// The analysis of one section as the program reports it: exact properties,
// plastic moduli, torsion and warping, in the drawing's units (mm, mm^2,
// mm^3, mm^4, mm^6).
#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include <tessaline/tessaline.h>

#include "section.h"

namespace tessaline::app {

struct Analyze_Options {
  bool torsion = true;  // J, its bounds, Cw and the shear centre
  bool seed = false;    // the finite-element torsion of the seed path instead
  int elements = 803;   // its element count
  bool grid = false;    // its grid split instead of the mesher
  double gap = 1e-6;    // relative bound gap the high-order torsion refines to
  CProgressDlg* progress = nullptr;
};

// One section's results. A value the analysis could not give is NaN
// (null in JSON).
struct Section_Result {
  std::string name;
  double area, cx, cy;
  double ixx, iyy, ixy;  // about the centroid; ixx = integral of (y - cy)^2
  double i1, i2, angle;  // principal moments, angle from x to the axis of i1 (radians)
  double ip;             // polar moment about the centroid
  double xmin, ymin, xmax, ymax;
  double wx_top, wx_bottom, wy_left, wy_right;
  double zx, zy;
  double j, j_lower, j_upper, cw, xs, ys;
  std::string torsion_note;  // how the torsion ended (gap reached, budget spent)
};

// The mesher's element size for about `count` equilateral triangles over `area`.
double Element_Size(double area, int count);

// Computes the results of `section`. False with the reason in `error` when
// the section cannot be integrated.
bool Analyze_Section(Section& section, const Analyze_Options& options, Section_Result* result,
                     std::string* error);

// The JSON object of one result with the keys the program documents.
nlohmann::ordered_json Result_Json(const Section_Result& r);

}  // namespace tessaline::app
