// Mirror copies: the other half of a symmetric section.
#pragma once

#include "tessaline/export.h"
#include "tessaline/model/element.h"

// Appends to the objects array a a mirror image of every element of the
// array `source` (a may be `source`: then only the elements it held on entry
// are mirrored), reflected in the mirror line: the segment element `line`
// when it is one (its infinite line), otherwise the line P0 - P1 of the
// cursor-position record c. Returns the number of copies appended; 0 when
// there is no mirror line (no segment given and P0 = P1, or a null record),
// a or source is null, or nothing could be copied.
//
// Points, segment ends, circle centres, polyline and spline nodes are
// reflected (a spline's moments too, as vectors, so the curve is the
// mirror image of the original). An arc is reflected and then stored
// counter-clockwise again: its start is the image of the original's end, and
// its angles are normalised into [0, 2*pi).
//
// A copy is unselected, inactive and not being edited, and otherwise keeps
// its attribute bits. A copy of a point, segment, circle or arc records
// where it came from: creation type 26 with the slots {original, line} (the
// mirror line slot is 0 when the line came from the record). The parent
// links keep it on its original (slot 0); deleting the original releases it
// to creation type 3. The mirror line in slot 1 is recorded for the host and
// is not a link. Copies of polylines and splines are free (creation type 0,
// no parent list), since deleting such an element never frees a parent list.
// Elements whose handles do not lock are skipped.
TESSALINE_API int Symmetry_Objects_Line(const Curs_Pos_Type* c, Objects_Array_Type* a,
                                        Objects_Array_Type* source, HGLOBAL line);
