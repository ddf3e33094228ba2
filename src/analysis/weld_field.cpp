// The equivalent stress over a surface with the torsion stresses of its
// finite-element field.
#include <cmath>
#include <vector>

#include "analysis/torsion_split.h"
#include "platform/locked.h"
#include "tessaline/analysis/torsion.h"
#include "tessaline/analysis/weld.h"
#include "tessaline/platform/memory.h"

int Calc_Butt_Weld_Torsion(Surface_Type* surface, double A, double xc, double yc, double Qx,
                           double Qy, double N, double Mx, double My, double Mt, double Ix,
                           double Iy, double alpha, double E, double nu, FE_Split* split,
                           int /*reserved*/, double* max_stress, double* torsion, int* options) {
  double W = 0, H = 0, h = 0;
  if (!Split_For_Torsion(surface, A, split, options, nullptr, nullptr, &W, &H, &h)) return -1;
  const int b = Get_FE_Bandwidth(split->triangles, split->triangle_count);
  // The grid of the hole constants never holds more than kRelax_Max_Cells cells.
  const double step = std::max(h, std::sqrt(W * H / kRelax_Max_Cells));
  const double t =
      Solve_Torsion_FE(split->node_count, split->triangles, split->triangle_count, split->nodes, b,
                       &split->tau_x, &split->tau_y, surface, E, nu, Mt, step);
  if (torsion) *torsion = t;
  const int n = split->triangle_count;
  HGLOBAL results =
      GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, static_cast<SIZE_T>(n) * sizeof(double));
  if (!results) return -1;
  if (split->results) GlobalFree(split->results);
  split->results = results;
  Locked<FEPOINT> pts(split->nodes);
  Locked<FE3Ang> tris(split->triangles);
  Locked<double> tx(split->tau_x), ty(split->tau_y), out(results);
  if (!pts || !tris || !tx || !ty || !out || !tris.holds(n - 1) || !tx.holds(n - 1) ||
      !ty.holds(n - 1) || !out.holds(n - 1)) {
    return -1;
  }
  int at = -1;
  double largest = 0.0;
  for (int e = 0; e < n; ++e) {
    const FE3Ang& tr = tris[e];
    if (!pts.holds(tr.n[0]) || !pts.holds(tr.n[1]) || !pts.holds(tr.n[2])) continue;
    const FEPOINT &p0 = pts[tr.n[0]], &p1 = pts[tr.n[1]], &p2 = pts[tr.n[2]];
    const double gx = p0.x + 2.0 / 3.0 * ((p1.x + p2.x) / 2 - p0.x);
    const double gy = p0.y + 2.0 / 3.0 * ((p1.y + p2.y) / 2 - p0.y);
    out[e] = Get_Butt_Weld_Stress_With_Torsion(gx - xc, gy - yc, Qx, Qy, N, Mx, My, A, Ix, Iy,
                                               alpha, tx[e], ty[e]);
    if (at < 0 || std::fabs(out[e]) > largest) {
      largest = std::fabs(out[e]);
      at = e;
    }
  }
  if (max_stress) *max_stress = largest;
  return at;
}

int Calc_Eq_Stress(Surface_Type* surface, surface_geometry* g, FE_Split* split, double Mx,
                   double My, double Mt, double E, double nu, double* result, int* options) {
  if (!surface || !g || surface->outer_count <= 0 || g->area == 0.0) return -1;
  double torsion = 0.0;  // produced and dropped: the caller asked for the stress
  return Calc_Butt_Weld_Torsion(surface, g->area, g->centroid_x, g->centroid_y, 0, 0, 0, Mx, My, Mt,
                                g->principal_moment_1, g->principal_moment_2, g->principal_angle, E,
                                nu, split, 0, result, &torsion, options);
}
