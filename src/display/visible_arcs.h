// The parts of a circle or an arc that lie inside an axis-parallel rectangle.
#pragma once

#include <vector>

inline constexpr double kArc_Pi = 3.14159265358979323846;

struct Rect_Bounds {
  double xmin, xmax, ymin, ymax;
};

// Angles start <= end (radians, counter-clockwise), end - start <= 2 pi.
struct Angle_Interval {
  double start, end;
};

// The arc from a1 counter-clockwise to a2 as an interval: start normalised
// into [0, 2 pi), end above it by the swept angle; equal angles sweep the
// whole circle, as the device's Arc draws them.
Angle_Interval Arc_Interval(double a1, double a2);

// The sub-intervals of [a1, a1 + span] (span <= 2 pi) whose circle points lie
// inside the rectangle (edges included), in increasing angle, adjacent ones merged.
std::vector<Angle_Interval> Visible_Arcs(double xc, double yc, double r, double a1, double span,
                                         const Rect_Bounds& rect);
