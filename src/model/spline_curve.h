// The curve of a spline as it is drawn: each piece is the moment-form cubic
// parametrised by chord length, stroked as chords between points at whole
// steps of the accumulated chord length. Drawing, picking and the display
// copies walk the same points, so what is picked is what is seen.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "model/record.h"
#include "tessaline/geometry/vector.h"

// Largest number of strokes one spline piece is drawn with.
inline constexpr double kSpline_Max_Strokes = 4096;

// The cubic of piece i at parameter u in [0, 1] (moment form), for one
// coordinate: v the node values, m the moments, h the chord.
inline double Spline_Value(const double* v, const double* m, size_t i, double h, double u) {
  return (1 - u) * v[i] + u * v[i + 1] -
         (u * (1 - u) / 6.0) * h * h * ((2 - u) * m[i] + (1 + u) * m[i + 1]);
}

// A spline's node and moment blocks, locked for a scope. nodes() is bounded
// by the count the record claims and by every block, so a walk never reads
// past one.
class Spline_Curve {
 public:
  explicit Spline_Curve(const Element_Record::Spline_Data& s)
      : x_(s.x), y_(s.y), mx_(s.m1), my_(s.m2) {
    size_t n = static_cast<size_t>(std::max(s.n, 0));
    n_ = std::min({n, x_.count(), y_.count(), mx_.count(), my_.count()});
  }

  size_t nodes() const { return n_; }
  double x(size_t i) const { return x_[i]; }
  double y(size_t i) const { return y_[i]; }
  double mx(size_t i) const { return mx_[i]; }
  double my(size_t i) const { return my_[i]; }
  // Chord of piece i (node i to node i + 1).
  double Chord(size_t i) const { return Distance_2Points(x_[i], y_[i], x_[i + 1], y_[i + 1]); }

  // Calls emit(x, y) for the points of piece i after node i, as Draw_Element
  // strokes it: t0 and t1 are the accumulated chord lengths at nodes i and
  // i + 1, base_step the world length of one stroke (0: none). The points are
  // the cubic at whole multiples of the step strictly inside (t0, t1), at
  // most kSpline_Max_Strokes of them (the step grows for a long piece), then
  // node i + 1 itself.
  template <class F>
  void Piece(size_t i, double t0, double t1, double base_step, F&& emit) const {
    double hc = t1 - t0;
    if (hc > 0 && base_step > 0) {
      double step = std::max(base_step, hc / kSpline_Max_Strokes);
      // Whole steps strictly after the piece's start (the node begins the
      // chain) and before its end (the next node closes it).
      const double k0 = std::floor(t0 / step) + 1;
      for (int j = 0; j <= kSpline_Max_Strokes && (k0 + j) * step < t1; ++j) {
        double u = ((k0 + j) * step - t0) / hc;
        emit(Spline_Value(x_.get(), mx_.get(), i, hc, u),
             Spline_Value(y_.get(), my_.get(), i, hc, u));
      }
    }
    emit(x_[i + 1], y_[i + 1]);
  }

  // A box that holds piece i (chord hc): the box of its two nodes grown by
  // the largest offset of the cubic from its chord, h^2/6 * max u(1-u)(2-u)
  // * (|m_i| + |m_i+1|) per coordinate (max u(1-u)(2-u) = 2/(3*sqrt(3))),
  // with a margin for rounding.
  void Piece_Box(size_t i, double hc, double* x0, double* y0, double* x1, double* y1) const {
    constexpr double kPeak = 0.3849001794597505;  // 2 / (3 sqrt 3)
    double k = hc * hc / 6 * kPeak;
    double gx = k * (std::fabs(mx_[i]) + std::fabs(mx_[i + 1]));
    double gy = k * (std::fabs(my_[i]) + std::fabs(my_[i + 1]));
    *x0 = std::min(x_[i], x_[i + 1]), *x1 = std::max(x_[i], x_[i + 1]);
    *y0 = std::min(y_[i], y_[i + 1]), *y1 = std::max(y_[i], y_[i + 1]);
    gx += 1e-9 * (gx + std::fabs(*x0) + std::fabs(*x1));
    gy += 1e-9 * (gy + std::fabs(*y0) + std::fabs(*y1));
    *x0 -= gx, *x1 += gx, *y0 -= gy, *y1 += gy;
  }

  // Walks every piece: emit_piece(i) before the points of piece i, then
  // emit(x, y) for each point after node i (node 0 is not emitted).
  template <class G, class F>
  void Walk(double base_step, G&& begin_piece, F&& emit) const {
    double t0 = 0;
    for (size_t i = 0; i + 1 < n_; ++i) {
      double t1 = t0 + Chord(i);
      begin_piece(i);
      Piece(i, t0, t1, base_step, emit);
      t0 = t1;
    }
  }

 private:
  Locked<double> x_, y_, mx_, my_;
  size_t n_ = 0;
};
