// Colour conversion for the colour scales.
#include "tessaline/display/colour.h"

#include <cmath>

int HSVtoRGB(double h, double s, double v, double* r, double* g, double* b) {
  if (!(h >= 0 && h <= 360 && s >= 0 && s <= 1 && v >= 0 && v <= 1)) return 0;
  if (s == 0) {
    *r = *g = *b = v;
    return 1;
  }
  double x = h == 360 ? 0 : h / 60;
  int i = static_cast<int>(std::floor(x));
  double f = x - i;
  double p = (1 - s) * v;
  double q = (1 - s * f) * v;
  double t = (1 - s * (1 - f)) * v;
  switch (i) {
    case 1:
      *r = v;
      *g = t;
      *b = p;
      break;
    case 2:
      *r = q;
      *g = v;
      *b = p;
      break;
    case 3:
      *r = p;
      *g = v;
      *b = t;
      break;
    case 4:
      *r = p;
      *g = q;
      *b = v;
      break;
    case 5:
      *r = t;
      *g = p;
      *b = v;
      break;
    default:
      *r = v;
      *g = p;
      *b = q;
      break;  // sectors 0 and 6
  }
  return 1;
}
