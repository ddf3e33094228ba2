// Distances from a point to whole elements, shared by the nearest searches
// and the hit tests of picking.
#pragma once

#include <cmath>
#include <cstdint>

#include "tessaline/model/element.h"

// Squared distance to the nearest piece of a polyline record (a lower piece
// wins a tie; a one-node polyline measures to its node, piece 0). -1.0 when
// it has no node. *piece (null allowed) := the piece.
double Polyline_SQDist(const Element_Record& e, double x, double y, int* piece);

// Squared distance to a spline's curve stroked with chords of world length
// `step` (as Draw_Element strokes it; 0 for the plain chain of nodes), the
// nearest piece in *piece (a lower piece wins a tie). -1.0 when it has no node.
// Pieces that cannot come nearer than `bound` are not sampled: when the
// result exceeds the bound it only says so (neither it nor *piece is then
// the exact answer).
double Spline_SQDist(const Element_Record::Spline_Data& s, double step, double x, double y,
                     int* piece, double bound = INFINITY);

// The stroke length SQDist_Element_Point measures a spline with: its whole
// chord length over kSpline_Pick_Strokes strokes a piece.
double Spline_Pick_Step(const Element_Record::Spline_Data& s);

// SQDist_Element_Point for a record already read, with *part written for a
// polyline (its piece) and a spline, 0 for the other kinds. A spline is
// measured exactly only when it comes within `bound` (see Spline_SQDist).
double Record_SQDist(const Element_Record& e, double x, double y, int* part,
                     double bound = INFINITY);
