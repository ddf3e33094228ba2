// Torsion entry points on a surface, and the step rounding of the
// subsystem.
#include <cmath>

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
