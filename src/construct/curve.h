// Private helpers of the constructions: a segment, circle or arc read from
// its element as a carrier (infinite line or whole circle) with its bounds,
// and the crossings and positions the constructions share.
#pragma once

#include <cmath>

#include "geometry/angles.h"
#include "model/record.h"

namespace construct {

// A segment (A = (x1, y1), B = (x2, y2), unit direction (dx, dy) from A to
// B), a circle or an arc (centre, radius, angles normalised into [0, 2*pi);
// the arc's stored end points in x1 .. y2).
struct Curve {
  int32_t type = 0;
  int32_t attr = 0;
  double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  double dx = 0, dy = 0;
  double xc = 0, yc = 0, r = 0, a1 = 0, a2 = 0;
  bool line() const { return type == EL_SEGMENT; }
};

// Reads a segment, circle or arc; false for any other element, a handle that
// does not lock, non-finite values, a segment of equal ends or a radius not
// greater than 0. Arcs also need a sweep: a1 and a2 apart after normalising.
bool Read_Curve(HGLOBAL h, Curve* out);
// Read_Curve of an element that must be a straight line (segment or
// construction line), or a circle or arc.
inline bool Read_Line(HGLOBAL h, Curve* c) {
  return Read_Curve(h, c) && c->line();
}
inline bool Read_Circle(HGLOBAL h, Curve* c) {
  return Read_Curve(h, c) && !c->line();
}

// Crossings of two circles: 0, 1 (touching) or 2 points, written to x[], y[].
int Cross_2Circle(double x1, double y1, double r1, double x2, double y2, double r2, double* x,
                  double* y);

// Crossings of the carriers of two curves (lines infinite, arcs as whole
// circles): 0 .. 2 points. Parallel lines have none.
int Cross_Carriers(const Curve& a, const Curve& b, double* x, double* y);

// Angle of (x, y) seen from the curve's centre, in [0, 2*pi).
inline double Angle_At(const Curve& c, double x, double y) {
  return Normalize_Angle(std::atan2(y - c.yc, x - c.xc));
}

// An angle difference wrapped into (-pi, pi].
inline double Wrap(double a) {
  a = Normalize_Angle(a);
  return a > kPi ? a - 2 * kPi : a;
}

// Position of a direction along an arc from its start, in radians: 0 .. span
// on the arc; the gap beyond it is split at its middle, the first half
// counting as past the end, the second as before the start (negative).
inline double Arc_Position(const Curve& c, double angle) {
  double span = Normalize_Angle(c.a2 - c.a1);
  double s = Normalize_Angle(angle - c.a1);
  return s > span + (2 * kPi - span) * 0.5 ? s - 2 * kPi : s;
}

// Signed position of (x, y) along the curve from the point (ox, oy): the
// distance along a line, the angle along an arc (towards its end positive),
// or along a circle (counter-clockwise positive, wrapped into (-pi, pi]).
inline double Along(const Curve& c, double ox, double oy, double x, double y) {
  if (c.line()) return (x - ox) * c.dx + (y - oy) * c.dy;
  if (c.type == EL_ARC) {
    return Arc_Position(c, Angle_At(c, x, y)) - Arc_Position(c, Angle_At(c, ox, oy));
  }
  return Wrap(Angle_At(c, x, y) - Angle_At(c, ox, oy));
}

// Unit tangent at the curve point (x, y): the line's direction, or counter-
// clockwise along a circle.
inline void Tangent_At(const Curve& c, double x, double y, double* tx, double* ty) {
  if (c.line()) {
    *tx = c.dx;
    *ty = c.dy;
    return;
  }
  double a = Angle_At(c, x, y);
  *tx = -std::sin(a);
  *ty = std::cos(a);
}

// The point of the curve's carrier nearest to (px, py); false for a
// circle's centre.
bool Foot_On_Carrier(const Curve& c, double px, double py, double* x, double* y);

}  // namespace construct
