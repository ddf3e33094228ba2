// Second-derivative moments of the parametric cubic spline through a
// spline's nodes, parametrised by chord length.
//
// With chords h[i] = |node i+1 - node i| and, at node i,
// lambda[i] = h[i-1] / (h[i-1] + h[i]) and mu[i] = 1 - lambda[i], the moments
// of x (and likewise of y) satisfy at every inner node
//   lambda[i] * M[i-1] + 2 * M[i] + mu[i] * M[i+1] = d[i],
//   d[i] = 6 * ((x[i+1] - x[i]) / h[i] - (x[i] - x[i-1]) / h[i-1]) / (h[i-1] + h[i]),
// which makes the curve twice continuously differentiable there. A drawing
// routine evaluates piece i with the moment form of the cubic.
#include <cmath>
#include <new>
#include <vector>

#include "model/record.h"
#include "tessaline/model/create.h"
#include "tessaline/platform/user.h"

namespace {

using Vec = std::vector<double>;

// The tridiagonal system a[k] u[k-1] + b[k] u[k] + c[k] u[k+1] = r[k],
// k = 0 .. m-1 (a[0] and c[m-1] unused), solved by plain elimination without
// pivoting. The factors are kept so that several right-hand sides share them.
class Tridiagonal {
 public:
  // False on a zero pivot; the system cannot be solved then. `a` must
  // outlive the solves.
  bool Factor(const Vec& a, const Vec& b, const Vec& c) {
    size_t m = b.size();
    a_ = &a;
    pivot_.assign(m, 0.0);
    upper_.assign(m, 0.0);
    for (size_t k = 0; k < m; ++k) {
      double p = k == 0 ? b[0] : b[k] - a[k] * upper_[k - 1];
      if (p == 0.0) return false;
      pivot_[k] = p;
      upper_[k] = c[k] / p;
    }
    return true;
  }

  // Replaces r by the solution.
  void Solve(Vec& r) const {
    size_t m = pivot_.size();
    r[0] /= pivot_[0];
    for (size_t k = 1; k < m; ++k) r[k] = (r[k] - (*a_)[k] * r[k - 1]) / pivot_[k];
    for (size_t k = m - 1; k-- > 0;) r[k] -= upper_[k] * r[k + 1];
  }

 private:
  const Vec* a_ = nullptr;
  Vec pivot_, upper_;
};

void Beep_Failure() {
  MessageBeep(MB_OK);
}

// Chords, lambda, mu and the right-hand sides of one spline.
struct Spline_System {
  size_t n;
  const double* x;
  const double* y;
  Vec h, lambda, mu;

  Spline_System(const double* xs, const double* ys, size_t count)
      : n(count), x(xs), y(ys), h(count), lambda(count), mu(count) {
    for (size_t i = 0; i + 1 < n; ++i) {
      double dx = x[i + 1] - x[i];
      double dy = y[i + 1] - y[i];
      h[i] = std::sqrt(dx * dx + dy * dy);
    }
    h[n - 1] = h[0];  // the wrapped chord of a closed spline
    for (size_t i = 1; i < n; ++i) {
      lambda[i] = h[i - 1] / (h[i - 1] + h[i]);
      mu[i] = 1 - lambda[i];
    }
  }

  // d[i] for the values v; past the last node the closed spline goes on
  // with node 1 (node n-1 is node 0 again).
  double Rhs(const double* v, size_t i) const {
    double next = i + 1 < n ? v[i + 1] : v[1];
    return 6.0 * ((next - v[i]) / h[i] - (v[i] - v[i - 1]) / h[i - 1]) / (h[i - 1] + h[i]);
  }
};

// The moment equations at nodes 1 .. m (row k for node k + 1), diagonal 2,
// with the right-hand sides for x and for y.
struct Band_Rows {
  Vec a, b, c, rx, ry;

  Band_Rows(const Spline_System& s, size_t m) : a(m), b(m, 2.0), c(m), rx(m), ry(m) {
    for (size_t k = 0; k < m; ++k) {
      a[k] = s.lambda[k + 1];
      c[k] = s.mu[k + 1];
      rx[k] = s.Rhs(s.x, k + 1);
      ry[k] = s.Rhs(s.y, k + 1);
    }
  }

  // The solutions into entries 1 .. m of the coefficient blocks.
  void Store(double* mx, double* my) const {
    for (size_t k = 0; k < rx.size(); ++k) {
      mx[k + 1] = rx[k];
      my[k + 1] = ry[k];
    }
  }
};

// Open chain: unknowns M[1] .. M[n-2]. The end moments are extrapolated
// linearly from their two neighbours (the third derivative is continuous at
// nodes 1 and n-2):
//   M[0] = (M[1] - lambda[1] M[2]) / mu[1],
//   M[n-1] = (M[n-2] - mu[n-2] M[n-3]) / lambda[n-2];
// substituting them into the first and last equations gives the folded rows
//   (1 + mu[1]) M[1] + (mu[1] - lambda[1]) M[2] = mu[1] d[1],
//   (lambda[j] - mu[j]) M[j-1] + (1 + lambda[j]) M[j] = lambda[j] d[j], j = n-2.
void Solve_Open(const Spline_System& s, double* mx, double* my) {
  size_t n = s.n;
  size_t m = n - 2;
  Band_Rows rows(s, m);
  double mu1 = s.mu[1];
  rows.b[0] = 1 + mu1;
  rows.c[0] = mu1 - s.lambda[1];
  rows.rx[0] *= mu1;
  rows.ry[0] *= mu1;
  size_t j = n - 2;
  double lj = s.lambda[j];
  rows.a[m - 1] = lj - s.mu[j];
  rows.b[m - 1] = 1 + lj;
  rows.rx[m - 1] *= lj;
  rows.ry[m - 1] *= lj;

  Tridiagonal t;
  if (!t.Factor(rows.a, rows.b, rows.c)) {
    Beep_Failure();  // the blocks keep what they held
    return;
  }
  t.Solve(rows.rx);
  t.Solve(rows.ry);
  rows.Store(mx, my);
  for (double* mv : {mx, my}) {
    mv[0] = (mv[1] - s.lambda[1] * mv[2]) / mu1;
    mv[n - 1] = (mv[n - 2] - mv[n - 3] * s.mu[j]) / lj;
  }
}

// Closed chain (node n-1 is node 0): unknowns M[1] .. M[n-1] with M[0] =
// M[n-1], diagonal 2 throughout, the wrapped chord joining the ends. The
// cyclic system is split into a plain tridiagonal one and a rank-one
// correction (Sherman-Morrison), so plain eliminations solve it.
void Solve_Closed(const Spline_System& s, double* mx, double* my) {
  size_t n = s.n;
  size_t m = n - 1;
  Band_Rows rows(s, m);
  // Corners: row 0 reaches u[m-1] (M[0] = M[n-1]), row m-1 reaches u[0].
  double beta = rows.a[0];
  double alpha = rows.c[m - 1];
  double gamma = -rows.b[0];
  rows.b[0] -= gamma;
  rows.b[m - 1] -= alpha * beta / gamma;

  Tridiagonal t;
  Vec z(m, 0.0);
  z[0] = gamma;
  z[m - 1] = alpha;
  bool ok = t.Factor(rows.a, rows.b, rows.c);
  double den = 0.0;
  if (ok) {
    t.Solve(z);
    den = 1 + z[0] + beta / gamma * z[m - 1];
  }
  if (!ok || den == 0.0) {
    Beep_Failure();
    return;
  }
  for (Vec* r : {&rows.rx, &rows.ry}) {
    Vec& v = *r;
    t.Solve(v);
    double f = (v[0] + beta / gamma * v[m - 1]) / den;
    for (size_t k = 0; k < m; ++k) v[k] -= f * z[k];
  }
  rows.Store(mx, my);
  mx[0] = mx[n - 1];
  my[0] = my[n - 1];
}

}  // namespace

int Calc_Spline_Coef(HGLOBAL h) {
  Locked_Element e(h);
  if (!e || e->type != EL_SPLINE || e->u.spline.n < 1) return 0;
  size_t n = static_cast<size_t>(e->u.spline.n);
  if (n < 4) return 1;  // too few nodes: the coefficients stay as they are
  Locked<double> bx(e->u.spline.x);
  Locked<double> by(e->u.spline.y);
  Locked<double> b1(e->u.spline.m1);
  Locked<double> b2(e->u.spline.m2);
  // A record whose blocks do not hold its n nodes is refused.
  for (const Locked<double>* b : {&bx, &by, &b1, &b2}) {
    if (b->count() < n) return 0;
  }
  try {
    Spline_System s(bx.get(), by.get(), n);
    bool closed = bx[0] == bx[n - 1] && by[0] == by[n - 1];
    if (closed) {
      Solve_Closed(s, b1.get(), b2.get());
    } else {
      Solve_Open(s, b1.get(), b2.get());
    }
  } catch (const std::bad_alloc&) {
    return 0;  // no room for the working arrays; the blocks are untouched
  }
  return 1;
}
