// Vector and distance primitives.
#include "tessaline/geometry/vector.h"

#include <cmath>

#include "geometry/angles.h"
#include "geometry/arc_point.h"

double sign(double x) {
  return x < 0 ? -1.0 : 1.0;
}

int Get_Decimal_Order(double* mantissa, double x) {
  // Zero and non-finite values would never leave the scaling loops.
  if (x == 0.0 || !std::isfinite(x)) {
    if (mantissa) *mantissa = x;
    return 0;
  }
  double v = x;
  int e = 0;
  if (std::fabs(v) >= 1) {
    do {
      v *= 0.1;
      ++e;
    } while (std::fabs(v) >= 1);
  } else if (std::fabs(v) < 0.1) {
    while (std::fabs(v) < 0.1) {
      v *= 10;
      --e;
    }
  }
  // p = 10^|e| by repeated squaring over the bits of |e|.
  double p = 1.0;
  double base = 10.0;
  for (unsigned k = static_cast<unsigned>(std::abs(e)); k; k >>= 1) {
    if (k & 1) p *= base;
    base *= base;
  }
  if (mantissa) *mantissa = e >= 0 ? x / p : x / (1.0 / p);
  return e;
}

int Get_Fract_Pow(double x) {
  if (!std::isfinite(x)) return 0;
  double whole;
  double f = std::modf(x, &whole);
  if (f == 0.0) return 0;
  // The running value is multiplied by the growing power, not by 10: the
  // count grows more slowly than the number of decimal places, deliberately.
  double p = 1.0;
  double v = f;
  int n = 0;
  do {
    p *= 10;
    ++n;
    v *= p;
  } while (std::modf(v, &whole) != 0.0 && std::isfinite(v));
  return n;
}

double RadToDeg(double a) {
  return a * 57.29577951308232;
}
double DegToRad(double a) {
  return a * 0.017453292519943295;
}

int Sq_Eq(double a, double b, double c, double* x1, double* x2) {
  double d = b * b - 4 * a * c;
  if (d < 0) return 0;
  double s = std::sqrt(d);
  *x1 = (s - b) * 0.5 / a;
  *x2 = (-b - s) * 0.5 / a;
  return 1;
}

double Scal_Mul(double x1, double y1, double x2, double y2) {
  return x1 * x2 + y1 * y2;
}
double Vect_Mul(double x1, double y1, double x2, double y2) {
  return x1 * y2 - y1 * x2;
}

int Perp_Vect(double x, double y, double* px, double* py) {
  if (x == 0 && y == 0) return 0;
  double qx, qy;
  if (y == 0) {
    qx = 0;
    qy = 1;
  } else {
    double t = x / y;
    double s = std::sqrt(t * t + 1);
    qx = 1 / s;
    qy = -t / s;
  }
  if (x * qy - y * qx < 0) {
    qx = -qx;
    qy = -qy;
  }
  *px = qx;
  *py = qy;
  return 1;
}

int Make_Unit_Vector(double* x, double* y) {
  if (*x == 0 && *y == 0) return 0;
  double len = std::sqrt(*x * *x + *y * *y);
  if (len == 0) return 0;
  *x /= len;
  *y /= len;
  return 1;
}

double Angle_Between_Vectors(double x1, double y1, double x2, double y2) {
  Make_Unit_Vector(&x1, &y1);
  Make_Unit_Vector(&x2, &y2);
  // Rounding can push the product of two unit vectors just past 1: clamp so
  // that parallel directions give 0 or pi rather than NaN.
  double c = Scal_Mul(x1, y1, x2, y2);
  c = c > 1 ? 1 : c < -1 ? -1 : c;
  return std::acos(c);
}

void Rotate2D(double angle, double x, double y, double* xr, double* yr) {
  double c = std::cos(angle);
  double s = std::sin(angle);
  *xr = c * x + s * y;
  *yr = c * y - s * x;
}

double SQDistance_2Points(double x1, double y1, double x2, double y2) {
  return (x1 - x2) * (x1 - x2) + (y1 - y2) * (y1 - y2);
}

double Distance_2Points(double x1, double y1, double x2, double y2) {
  return std::sqrt(SQDistance_2Points(x1, y1, x2, y2));
}

double SQDistance_Line_Point(double x1, double y1, double x2, double y2, double px, double py) {
  if (x1 == x2 && y1 == y2) return SQDistance_2Points(px, py, x1, y1);
  double dx = x2 - x1;
  double dy = y2 - y1;
  double c = (px - x1) * dy - (py - y1) * dx;
  return c * c / (dx * dx + dy * dy);
}

double Distance_Line_Point(double x1, double y1, double x2, double y2, double px, double py) {
  if (x1 == x2 && y1 == y2) return Distance_2Points(px, py, x1, y1);
  double dx = x2 - x1;
  double dy = y2 - y1;
  return std::fabs((px - x1) * dy - (py - y1) * dx) / std::sqrt(dx * dx + dy * dy);
}

double SQDistance_Segment_Point(double x1, double y1, double x2, double y2, double px, double py) {
  if (px == x1 && py == y1) return 0;
  if (px == x2 && py == y2) return 0;
  if (x1 == x2 && y1 == y2) return SQDistance_2Points(px, py, x1, y1);
  if (Scal_Mul(px - x1, py - y1, x2 - x1, y2 - y1) < 0) return SQDistance_2Points(px, py, x1, y1);
  if (Scal_Mul(px - x2, py - y2, x1 - x2, y1 - y2) < 0) return SQDistance_2Points(px, py, x2, y2);
  return SQDistance_Line_Point(x1, y1, x2, y2, px, py);
}

double SQDistance_Circle_Point(double cx, double cy, double r, double px, double py) {
  // At the centre the result is r itself, not r^2: callers compare it so.
  if (px == cx && py == cy) return r;
  double qx, qy;
  Circle_Point_Toward(cx, cy, r, px, py, &qx, &qy);
  return SQDistance_2Points(px, py, qx, qy);
}

double SQDistance_Arc_Point(double cx, double cy, double r, double a1, double a2, double px,
                            double py) {
  if (px == cx && py == cy) return r;
  double qx, qy;
  return Nearest_Arc_Point(cx, cy, r, a1, a2, px, py, &qx, &qy);
}
