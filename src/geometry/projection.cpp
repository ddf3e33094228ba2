// Projections and distances of lines, segments, circles and arcs.
#include "tessaline/geometry/projection.h"

#include <cmath>

#include "geometry/arc_point.h"
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
  Nearest_Arc_Point(cx, cy, r, a1, a2, px, py, qx, qy);
}

double Distance_Arc_Point(double cx, double cy, double r, double a1, double a2, double px,
                          double py) {
  if (px == cx && py == cy) return r;
  double qx, qy;
  return std::sqrt(Nearest_Arc_Point(cx, cy, r, a1, a2, px, py, &qx, &qy));
}

void Mirror_Point_Line(double x1, double y1, double x2, double y2, double px, double py, double* mx,
                       double* my) {
  double qx, qy;
  Projection_Line_Point(x1, y1, x2, y2, px, py, &qx, &qy);
  *mx = qx - (px - qx);
  *my = qy - (py - qy);
}
