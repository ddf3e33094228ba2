// Stress recovery of the four-node plane-stress elements.
#include "tessaline/analysis/plane_stress.h"

#include "tessaline/geometry/triangle.h"

namespace {

// The plane-stress material matrix, zeroed, filled and scaled as one step.
dmatrix Plane_Stress_D(double E, double nu) {
  dmatrix d(3, 3);
  d.SetValue(0.0);
  d[0][0] = 1.0;
  d[0][1] = nu;
  d[1][0] = nu;
  d[1][1] = 1.0;
  d[2][2] = (1.0 - nu) * 0.5;
  d *= E / (1.0 - nu * nu);
  return d;
}

// Columns 2i and 2i + 1 of the strain matrix for a node with the given
// shape-function derivatives.
void Set_B_Node(dmatrix& b, int i, double dndx, double dndy) {
  b[0][2 * i] = dndx;
  b[2][2 * i] = dndy;
  b[1][2 * i + 1] = dndy;
  b[2][2 * i + 1] = dndx;
}

// result = D * B * u after the size checks of the rectangle functions.
int Stress_From_B(dvect& result, const dvect& u, const dmatrix& d, const dmatrix& b, int columns) {
  int dr = 0, dc = 0, br = 0, bc = 0;
  d.Size(&dr, &dc);
  b.Size(&br, &bc);
  if (dr != 3 || dc != 3 || br != 3 || bc != columns || u.Size() != columns) return 0;
  dmatrix db(3, columns);
  if (!db.Mul2Matrix(d, b)) return 0;
  dvect out(3);
  if (!out.MulMatrVect(db, u)) return 0;
  result = out;
  return 1;
}

}  // namespace

int Get_4Ang_FE_Plain_Stress(dvect& result, dvect& u, double E, double nu, double a, double b,
                             double x, double y) {
  const double alpha = a * 0.5;
  const double beta = b * 0.5;
  const double k = 0.25 / alpha / beta;
  dmatrix bm(3, 8);
  Set_B_Node(bm, 0, (y - beta) * k, (x - alpha) * k);
  Set_B_Node(bm, 1, (beta - y) * k, (-alpha - x) * k);
  Set_B_Node(bm, 2, (beta + y) * k, (alpha + x) * k);
  Set_B_Node(bm, 3, (-beta - y) * k, (alpha - x) * k);
  return Stress_From_B(result, u, Plane_Stress_D(E, nu), bm, 8);
}

int Get_4Ang_FE_Plain_Stress_Shel(dvect& result, dvect& u, double E, double nu, double a, double b,
                                  double x, double y) {
  const double xi = x / a;
  const double eta = y / b;
  dmatrix bm(3, 8);
  Set_B_Node(bm, 0, (1.0 - eta) * (-1.0 / a), (1.0 - xi) * (-1.0 / b));
  Set_B_Node(bm, 1, (1.0 / a) * (1.0 - eta), (-1.0 / b) * xi);
  Set_B_Node(bm, 2, (1.0 / a) * eta, (1.0 / b) * xi);
  Set_B_Node(bm, 3, (-1.0 / a) * eta, (1.0 / b) * (1.0 - xi));
  return Stress_From_B(result, u, Plane_Stress_D(E, nu), bm, 8);
}

int Get_4Ang_FE_Plain_Stress(dvect& result, dvect& u, double E, double nu, double x1, double y1,
                             double x2, double y2, double x3, double y3, double x4, double y4,
                             double px, double py) {
  if (u.Size() != 8) return 0;
  const double s = ((x3 - x1) * (y2 - y1) - (y3 - y1) * (x2 - x1)) *
                   ((py - y1) * (x3 - x1) - (px - x1) * (y3 - y1));
  const bool second = s < 0.0;  // the point lies across the diagonal 1-3 from node 2
  const int nodes[3] = {0, second ? 2 : 1, second ? 3 : 2};
  const double xs[4] = {x1, x2, x3, x4};
  const double ys[4] = {y1, y2, y3, y4};
  double tx[3], ty[3];
  dvect ut(6);
  for (int i = 0; i < 3; ++i) {
    tx[i] = xs[nodes[i]];
    ty[i] = ys[nodes[i]];
    ut[2 * i] = u[2 * nodes[i]];
    ut[2 * i + 1] = u[2 * nodes[i] + 1];
  }
  if (Get_3Ang_Area(tx[0], ty[0], tx[1], ty[1], tx[2], ty[2]) == 0.0) return 1;
  // Twice the signed area: the derivatives below then hold for either winding.
  const double a2 = (tx[1] - tx[0]) * (ty[2] - ty[0]) - (tx[2] - tx[0]) * (ty[1] - ty[0]);
  if (a2 == 0.0) return 1;
  dmatrix bm(3, 6);
  for (int i = 0; i < 3; ++i) {
    const int j = (i + 1) % 3, k = (i + 2) % 3;
    Set_B_Node(bm, i, (ty[j] - ty[k]) / a2, (tx[k] - tx[j]) / a2);
  }
  Stress_From_B(result, ut, Plane_Stress_D(E, nu), bm, 6);
  return 1;
}
