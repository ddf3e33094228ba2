// Torsion entry points on a surface, and the step rounding of the
// subsystem.
#include <cmath>

#include "analysis/torsion_split.h"
#include "tessaline/analysis/torsion.h"
#include "tessaline/geometry/vector.h"

double Best_Step(double step) {
  if (step == 0.0 || !std::isfinite(step)) return step == 0.0 ? 0.0 : step;
  double m = 0.0;
  const int e = Get_Decimal_Order(&m, step);
  const double rounded = std::ceil(m * 100.0 / 5.0) / 20.0;
  const double x = std::pow(10.0, e) * rounded;
  // Every step up to 1 becomes a whole 1 (or 0 when negative): kept, hosts
  // rely on grid steps of at least one unit.
  return std::fabs(x) > 1.0 ? x : std::ceil(x);
}

bool Split_For_Torsion(Surface_Type* surface, double A, FE_Split* split, const int* options,
                       CProgressDlg* progress, HWND window, double* W, double* H, double* h) {
  if (!split) return false;
  Free_FE_Split(split);
  double left = 0, top = 0, right = 0, bottom = 0;
  if (!surface || !Get_Surface_Extern_Rect(surface, &left, &top, &right, &bottom)) return false;
  *W = right - left;
  *H = top - bottom;
  const int mode = options ? options[0] : 0;
  // Only the two counts of the array are read, whatever the mode says.
  const double count = options ? options[mode == 1 ? 2 : 1] : kTorsion_Default_Elements;
  const double n = std::trunc(*W * *H * count / A);
  if (!(A > 0) || !std::isfinite(n) || n < 1 || n > kTorsion_Max_Elements) return false;
  *h = std::sqrt(2.0 * *W * *H / n);
  if (mode == 1) {
    Split_Surface_By_Mesher(surface, split, &split->node_count, &split->triangles,
                            &split->triangle_count, window, *h);
  } else {
    Split_Surface_By_Grid(surface, &split->nodes, &split->node_count, *h, *h, progress,
                          &split->triangle_count, &split->triangles);
  }
  return split->triangle_count > 0 && split->node_count > 0;
}

double Calc_Torsion_Moment(Surface_Type* surface, double A, double E, double nu, FE_Split* split,
                           double F, CProgressDlg* progress, HWND window, int* options) {
  double W = 0, H = 0, h = 0;
  if (!Split_For_Torsion(surface, A, split, options, progress, window, &W, &H, &h)) {
    return kTorsion_Empty_Split;
  }
  const int b = Get_FE_Bandwidth(split->triangles, split->triangle_count);
  return Solve_Torsion_FE_Moment(split->node_count, split->triangles, split->triangle_count,
                                 split->nodes, b, surface, progress, E, nu, F, h);
}
