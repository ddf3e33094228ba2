// A contour's outline as straight pieces: what surface segments and surface
// regions are made of.
#pragma once

#include <vector>

#include "tessaline/contour/contour.h"
#include "tessaline/model/element.h"

// One straight piece of an outline, world coordinates, in the travel sense.
struct Outline_Piece {
  double x1, y1, x2, y2;
};

// How finely arcs and circles are divided: no piece turns through more than
// max_angle, none strays more than `chord` from the curve (0: no such
// bound), and no arc or circle has more than max_pieces pieces.
struct Arc_Division {
  double max_angle;
  double chord;
  int max_pieces;
};

// The drawing elements of a contour, in stored order, copied out of their
// blocks. False after the "Messsage" / "pElem==NULL" box when an element
// does not lock; an empty contour gives true and an empty list.
bool Read_Contour(const Contour_Type* contour, std::vector<Element_Record>* elements);

// The point where the stored chain starts: the end of the first element
// that it does not share with the second (end-point distances compared with
// a tolerance of 1e-6; its first end when that does not decide). A circle
// starts at its point at angle 0. False for an empty list or a first
// element that is not a segment, an arc or a circle.
bool Chain_Start(const std::vector<Element_Record>& elements, double* x, double* y);

// Appends the straight pieces of the outline, travelled forwards (stored
// order from the chain's start) or backwards (the first element, then the
// last, back to the second). Each segment runs from its end nearer the
// running point to the other, each arc likewise along its curve, so the
// pieces keep the elements' own end points. A circle is travelled once
// round from angle 0, counter-clockwise forwards. Other element types add
// nothing.
void Outline_Pieces(const std::vector<Element_Record>& elements, bool forward,
                    const Arc_Division& division, std::vector<Outline_Piece>* pieces);

// A point on the contour away from its vertices: the middle of the first
// element (for an arc at its middle angle, for a circle at angle 0). False
// when the first element is not a segment, an arc or a circle.
bool Contour_Probe_Point(const Element_Record& first, double* x, double* y);

// The middle angle of an arc from a1 to a2 (counter-clockwise) and its
// sweep in [0, 2*pi): the angles normalised, a2 taken a turn higher when it
// is below a1.
void Arc_Middle(double a1, double a2, double* middle, double* sweep);
