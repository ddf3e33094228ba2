// The five-point grid system behind RelaxMethod, exposed to the tests so
// that the sparse solve can be checked against a dense one.
#pragma once

#include <vector>

#include <Eigen/SparseCore>

#include "tessaline/contour/surface.h"

struct Relax_Grid {
  int columns = 0, rows = 0;
  double left = 0, bottom = 0, step = 0;
  // Unknown of every node (row-major from the bottom left): -1 outside the
  // surface and its holes (phi = 0), else an index; the nodes of hole k all
  // share the unknown representative[k].
  std::vector<int> unknown;
  std::vector<int> representative;  // -1: the hole holds no grid node
  std::vector<double> hole_area;
  int m = 0;                      // number of unknowns
  Eigen::SparseMatrix<double> K;  // symmetric positive definite, m x m
  Eigen::VectorXd rhs;
};

// Marks the nodes and numbers the unknowns; builds K and rhs when every hole
// has a representative. False for a surface without outer contours or a
// contour that does not read.
bool Build_Relax_Grid(Surface_Type* surface, double theta, double step, Relax_Grid* grid);
