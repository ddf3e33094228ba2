// The warping and stress-function solves on a 6-node mesh.
#pragma once

#include <vector>

#include "analysis/warping_mesh.h"

struct Warping_Solution {
  bool ok = false;
  double J_upper = 0, J_lower = 0, area = 0, cx = 0, cy = 0;
  double xs = 0, ys = 0;  // shear centre, world coordinates
  double Cw = 0, shear_area_x = 0, shear_area_y = 0;
  double max_tau = 0;                // for the torque Mt
  std::vector<double> tau_x, tau_y;  // per element at its centroid, for Mt
};

// Solves both problems on the mesh; stresses for the torque Mt, scaled by
// the mean of the two bounds of J.
Warping_Solution Solve_Warping(const P2_Mesh& mesh, double Mt);
