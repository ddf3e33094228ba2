// Fillets and chamfers: rounding or cutting the corner between two elements.
//
// Both take two ordinary drawing elements, each a segment or an arc (a whole
// circle cannot be trimmed and is refused), and the points where the user
// picked them: P0 on e1 and P1 on e2 of the cursor-position record c. They
// trim (or extend) both elements in place, append the new corner element to
// the objects array a and return its handle.
//
// The corner is the crossing of the two elements' carriers (a segment's
// infinite line, an arc's whole circle) nearest to the midpoint of P0 and P1.
// Each pick says which side of the corner is kept: the part of e1 on P0's
// side of the corner and the part of e2 on P1's side stay, the rest up to
// the new element is cut away (or the element is extended to reach it).
// Picking does not have to be precise: only the side of the corner counts.
//
// The new element records the trimmed elements and which of their ends it
// meets (0 the first end, 1 the second; an arc's first end is its start), so
// that the parent links keep it attached to them:
//   fillet arc        creation type 24, slots {e1, end1, e2, end2}
//   chamfer segment   creation type 22, slots {e1, end1, e2, end2}
//
// Refused with a null handle, changing nothing (neither element, nor the
// array): a null record or array, e1 = e2, a handle that does not lock or is
// not a segment or an arc, parallel lines or elements whose carriers do not
// cross (a fillet also accepts arcs apart, below), a pick on the corner
// itself, a radius or distance not greater than 0, and a corner element that
// does not fit: a touching point that falls beyond the far (kept) end of an
// element, for a radius too large for the pieces.
#pragma once

#include "tessaline/export.h"
#include "tessaline/model/element.h"

// Rounds the corner with an arc of radius r tangent to both elements. Of the
// circles of radius r that touch both carriers, the fillet is the one whose
// touching points lie on the kept sides of the corner and that joins both
// kept parts without a kink (the element's direction at the touching point
// runs on into the arc); among several, the one of the smallest sweep. When
// the carriers do not cross (an arc and a segment or arc apart from it), the
// pick on each element says which part stays beyond its touching point.
// The arc runs counter-clockwise; its ends are the touching points exactly,
// and the trimmed ends of e1 and e2 are set to the same points.
TESSALINE_API HGLOBAL Create_Fillet(const Curs_Pos_Type* c, Objects_Array_Type* a, HGLOBAL e1,
                                    HGLOBAL e2, double r);

// Cuts the corner with a segment from the point at distance d1 from the
// corner along e1 (an arc length along an arc) to the point at distance d2
// along e2, each on its kept side; the elements end at those points.
TESSALINE_API HGLOBAL Create_Chamfer(const Curs_Pos_Type* c, Objects_Array_Type* a, HGLOBAL e1,
                                     HGLOBAL e2, double d1, double d2);
