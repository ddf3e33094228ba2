// Closed-form stresses of a butt-welded section.
#include "tessaline/analysis/weld.h"

#include <cmath>
#include <numbers>
#include <vector>

#include "contour/outline.h"
#include "platform/locked.h"

namespace {

double Normal_Stress(double x, double y, double N, double Mx, double My, double A, double Ix,
                     double Iy, double alpha) {
  const double c = std::cos(alpha), s = std::sin(alpha);
  const double M1 = c * Mx + s * My, M2 = c * My - s * Mx;
  const double u = c * x + s * y, w = c * y - s * x;
  return N / A + (M2 / Iy) * u - (M1 / Ix) * w;
}

void Principal_Moments(double Mx, double My, double alpha, double* M1, double* M2) {
  const double c = std::cos(alpha), s = std::sin(alpha);
  *M1 = c * Mx + s * My;
  *M2 = c * My - s * Mx;
}

double Equivalent(double sigma, double tx, double ty, double* out_sigma, double* out_ty,
                  double* out_tx) {
  if (out_sigma) *out_sigma = sigma;
  if (out_ty) *out_ty = ty;
  if (out_tx) *out_tx = tx;
  return std::sqrt(sigma * sigma + 3.0 * (tx * tx + ty * ty));
}

}  // namespace

double Get_Butt_Weld_Stress(double x, double y, double Qx, double Qy, double N, double Mx,
                            double My, double Mt, double A, double Ix, double Iy, double alpha,
                            double It, double* sigma, double* tau_y, double* tau_x) {
  double tx = Qx / A, ty = Qy / A;
  if (Mt != 0.0) {
    const double r = std::sqrt(x * x + y * y) * Mt / It;
    double phi = std::atan2(y, x) + (Mt > 0.0 ? std::numbers::pi / 2 : -std::numbers::pi / 2);
    phi += std::numbers::pi;  // kept: hosts read the torque's shear with this turn
    tx += r * std::cos(phi);
    ty += r * std::sin(phi);
  }
  return Equivalent(Normal_Stress(x, y, N, Mx, My, A, Ix, Iy, alpha), tx, ty, sigma, tau_y, tau_x);
}

double Get_Butt_Weld_Stress(double x, double y, double Qx, double Qy, double N, double Mx,
                            double My, double Mt, double A, double Ix, double Iy, double alpha,
                            double It) {
  return Get_Butt_Weld_Stress(x, y, Qx, Qy, N, Mx, My, Mt, A, Ix, Iy, alpha, It, nullptr, nullptr,
                              nullptr);
}

double Get_Butt_Weld_Stress_With_Torsion(double x, double y, double Qx, double Qy, double N,
                                         double Mx, double My, double A, double Ix, double Iy,
                                         double alpha, double Tx, double Ty, double* sigma,
                                         double* tau_y, double* tau_x) {
  return Equivalent(Normal_Stress(x, y, N, Mx, My, A, Ix, Iy, alpha), Qx / A + Tx, Qy / A + Ty,
                    sigma, tau_y, tau_x);
}

double Get_Butt_Weld_Stress_With_Torsion(double x, double y, double Qx, double Qy, double N,
                                         double Mx, double My, double A, double Ix, double Iy,
                                         double alpha, double Tx, double Ty) {
  return Get_Butt_Weld_Stress_With_Torsion(x, y, Qx, Qy, N, Mx, My, A, Ix, Iy, alpha, Tx, Ty,
                                           nullptr, nullptr, nullptr);
}

void Get_X_By_Butt_Weld_Str_Without_Torsion(double y, double S, double Qx, double Qy, double N,
                                            double Mx, double My, double A, double Ix, double Iy,
                                            double alpha, double* x1, double* x2) {
  double M1, M2;
  Principal_Moments(Mx, My, alpha, &M1, &M2);
  const double k = std::sqrt(S * S - 3.0 * ((Qy / A) * (Qy / A) + (Qx / A) * (Qx / A)));
  const double a = (M1 / Ix) * y, b = M2 / Iy;
  if (x1) *x1 = (a - (N / A + k)) / b;
  if (x2) *x2 = (a + (k - N / A)) / b;
}

void Get_Y_By_Butt_Weld_Str_Without_Torsion(double x, double S, double Qx, double Qy, double N,
                                            double Mx, double My, double A, double Ix, double Iy,
                                            double alpha, double* y1, double* y2) {
  double M1, M2;
  Principal_Moments(Mx, My, alpha, &M1, &M2);
  const double k = std::sqrt(S * S - 3.0 * ((Qy / A) * (Qy / A) + (Qx / A) * (Qx / A)));
  if (y1) *y1 = (N / A + k + (M2 / Iy) * x) / (M1 / Ix);
  if (y2) *y2 = (N / A - k + (M2 / Iy) * x) / (M1 / Ix);
}

void Get_X_By_Normal_Stress(double y, double S, double, double, double N, double Mx, double My,
                            double A, double Ix, double Iy, double alpha, double* x1, double* x2) {
  double M1, M2;
  Principal_Moments(Mx, My, alpha, &M1, &M2);
  const double x = ((S - N / A) + (M1 / Ix) * y) / (M2 / Iy);
  if (x1) *x1 = x;
  if (x2) *x2 = x;
}

void Get_Y_By_Normal_Stress(double x, double S, double, double, double N, double Mx, double My,
                            double A, double Ix, double Iy, double alpha, double* y1, double* y2) {
  double M1, M2;
  Principal_Moments(Mx, My, alpha, &M1, &M2);
  const double y = ((M2 / Iy) * x + N / A - S) / (M1 / Ix);
  if (y1) *y1 = y;
  if (y2) *y2 = y;
}

double Get_Bend_Eq_Stress(double a, double b, double t) {
  const double c = (a + b) * 0.5;
  const double r = 0.5 * std::sqrt((a - b) * (a - b) + 4.0 * t * t);
  // Halved twice on purpose: hosts compare it with their own quarter-range.
  return ((c + r) - (c - r)) * 0.5 * 0.5;
}

namespace {

constexpr int kWeld_Pieces = 130;

// The 131 piece ends of one contour element, into f(x, y).
template <class F>
void Walk_Element(const Element_Record& e, F&& f) {
  for (int i = 0; i <= kWeld_Pieces; ++i) {
    const double t = static_cast<double>(i) / kWeld_Pieces;
    if (e.type == EL_SEGMENT) {
      f(e.u.seg.x1 + t * (e.u.seg.x2 - e.u.seg.x1), e.u.seg.y1 + t * (e.u.seg.y2 - e.u.seg.y1));
    } else if (e.type == EL_CIRCLE) {
      const double a = t * 2.0 * std::numbers::pi;
      f(e.u.circle.xc + e.u.circle.r * std::cos(a), e.u.circle.yc + e.u.circle.r * std::sin(a));
    } else if (e.type == EL_ARC) {
      double middle = 0, sweep = 0;
      Arc_Middle(e.u.arc.a1, e.u.arc.a2, &middle, &sweep);
      const double a = middle - sweep * 0.5 + t * sweep;
      f(e.u.arc.xc + e.u.arc.r * std::cos(a), e.u.arc.yc + e.u.arc.r * std::sin(a));
    } else {
      return;  // a contour holds segments, arcs and circles only
    }
  }
}

void Walk_List(HGLOBAL list, int count, const auto& f) {
  if (count <= 0) return;
  Locked<HGLOBAL> handles(list);
  if (!handles) return;
  for (int i = 0; i < count && handles.holds(i); ++i) {
    Locked<Contour_Type> c(handles[i]);
    std::vector<Element_Record> elements;
    if (!c || !Read_Contour(c.get(), &elements)) continue;
    for (const Element_Record& e : elements) Walk_Element(e, f);
  }
}

}  // namespace

int Get_Surf_Butt_Weld_MinMax_Stress(Surface_Type* surface, double xc, double yc, double Qx,
                                     double Qy, double N, double Mx, double My, double Mt, double A,
                                     double Ix, double Iy, double alpha, double It,
                                     double* min_stress, double* max_stress) {
  if (!surface || !min_stress || !max_stress) return 0;
  if (surface->outer_count <= 0 && surface->hole_count <= 0) return 0;
  double lo = 1.7e307, hi = 0.0;
  auto f = [&](double x, double y) {
    const double s =
        Get_Butt_Weld_Stress(x - xc, y - yc, Qx, Qy, N, Mx, My, Mt, A, Ix, Iy, alpha, It);
    if (s < lo) lo = s;
    if (s > hi) hi = s;
  };
  Walk_List(surface->outers, surface->outer_count, f);
  Walk_List(surface->holes, surface->hole_count, f);
  *min_stress = lo;
  *max_stress = hi;
  return 1;
}
