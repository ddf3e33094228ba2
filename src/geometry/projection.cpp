// Projections and distances of lines, segments, circles and arcs.
#include "tessaline/geometry/projection.h"

#include <cmath>

#include "geometry/angles.h"
#include "tessaline/geometry/vector.h"

void Projection_Line_Point(double x1, double y1, double x2, double y2, double px, double py,
                           double* qx, double* qy) {
  double dx = x2 - x1;
  double dy = y2 - y1;
  if (dx == 0 && dy == 0) {
    *qx = x1;
    *qy = y1;
  } else if ((px - x1) * dy - (py - y1) * dx == 0) {
    *qx = px;  // already on the line: no rounding
    *qy = py;
  } else if (dx == 0) {
    *qx = x1;
    *qy = py;
  } else if (dy == 0) {
    *qx = px;
    *qy = y1;
  } else {
    // The line as x = x1 + k (y - y1), crossed with the perpendicular
    // through P.
    double k = dx / dy;
    double s = dy / dx;
    double y = (k * y1 + s * py + px - x1) / (s + k);
    *qx = k * y + (x1 - k * y1);
    *qy = y;
  }
}

double Distance_Segment_Point(double x1, double y1, double x2, double y2, double px, double py) {
  if ((px == x1 && py == y1) || (px == x2 && py == y2)) return 0;
  if (x1 == x2 && y1 == y2) return Distance_2Points(px, py, x1, y1);
  if (Scal_Mul(px - x1, py - y1, x2 - x1, y2 - y1) < 0) return Distance_2Points(px, py, x1, y1);
  if (Scal_Mul(px - x2, py - y2, x1 - x2, y1 - y2) < 0) return Distance_2Points(px, py, x2, y2);
  return Distance_Line_Point(x1, y1, x2, y2, px, py);
}

void Projection_Segment_Point(double x1, double y1, double x2, double y2, double px, double py,
                              double* qx, double* qy) {
  if (x1 == x2 && y1 == y2) {
    *qx = x1;
    *qy = y1;
  } else if ((px == x1 && py == y1) || (px == x2 && py == y2)) {
    *qx = px;
    *qy = py;
  } else if (Scal_Mul(px - x1, py - y1, x2 - x1, y2 - y1) < 0) {
    *qx = x1;
    *qy = y1;
  } else if (Scal_Mul(px - x2, py - y2, x1 - x2, y1 - y2) < 0) {
    *qx = x2;
    *qy = y2;
  } else {
    Projection_Line_Point(x1, y1, x2, y2, px, py, qx, qy);
  }
}

void Projection_Circle_Point(double cx, double cy, double r, double px, double py, double* qx,
                             double* qy) {
  double dx = px - cx;
  double dy = py - cy;
  double len = std::sqrt(dx * dx + dy * dy);
  if ((px == cx && py == cy) || len == r) {
    *qx = px;  // the centre itself, or a point already on the circle
    *qy = py;
    return;
  }
  *qx = cx + r * dx / len;
  *qy = cy + r * dy / len;
}

double Distance_Circle_Point(double cx, double cy, double r, double px, double py) {
  if (px == cx && py == cy) return r;
  double qx, qy;
  Projection_Circle_Point(cx, cy, r, px, py, &qx, &qy);
  return Distance_2Points(px, py, qx, qy);
}

void Projection_Arc_Point(double cx, double cy, double r, double a1, double a2, double px,
                          double py, double* qx, double* qy) {
  if (px == cx && py == cy) {
    *qx = cx;
    *qy = cy;
    return;
  }
  // The same choice as SQDistance_Arc_Point, with the point kept.
  double x0, y0;
  Circle_Point_Toward(cx, cy, r, px, py, &x0, &y0);
  a1 = Normalize_Angle(a1);
  a2 = Normalize_Angle(a2);
  double ap = Normalize_Angle(std::atan2(py - cy, px - cx));
  double e1x = cx + r * std::cos(a1);
  double e1y = cy + r * std::sin(a1);
  double e2x = cx + r * std::cos(a2);
  double e2y = cy + r * std::sin(a2);
  double d1 = SQDistance_2Points(px, py, e1x, e1y);
  double d2 = SQDistance_2Points(px, py, e2x, e2y);
  bool e2_nearer = d2 < d1;
  if (!Direction_On_Arc(a1, a2, ap)) {
    double ao = std::fmod(ap + kPi, 2 * kPi);
    if (!Opposite_On_Arc(a1, a2, ao)) {
      *qx = e2_nearer ? e2x : e1x;
      *qy = e2_nearer ? e2y : e1y;
      return;
    }
    x0 = 2 * cx - x0;  // the circle point opposite P's direction
    y0 = 2 * cy - y0;
  }
  double dc = SQDistance_2Points(px, py, x0, y0);
  if (dc < d1 && dc < d2) {
    *qx = x0;
    *qy = y0;
  } else {
    *qx = e2_nearer ? e2x : e1x;
    *qy = e2_nearer ? e2y : e1y;
  }
}

double Distance_Arc_Point(double cx, double cy, double r, double a1, double a2, double px,
                          double py) {
  // SQDistance_Arc_Point makes the same choice as Projection_Arc_Point and
  // measures it the same way (r at the centre).
  if (px == cx && py == cy) return r;
  return std::sqrt(SQDistance_Arc_Point(cx, cy, r, a1, a2, px, py));
}

void Mirror_Point_Line(double x1, double y1, double x2, double y2, double px, double py, double* mx,
                       double* my) {
  double qx, qy;
  Projection_Line_Point(x1, y1, x2, y2, px, py, &qx, &qy);
  *mx = qx - (px - qx);
  *my = qy - (py - qy);
}
