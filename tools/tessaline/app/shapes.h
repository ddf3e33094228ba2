// Standard shapes drawn from their table rows, and the plain shapes that
// have no table.
//
// Placement: I shapes and hollow sections centred on the origin; channels
// with the back of the web on x = 0 and the flanges towards +x, centred on
// y = 0; angles with the heel at the origin, the short leg along +x and the
// long leg along +y. The strong axis is x (depth along y).
#pragma once

#include <string>
#include <string_view>

#include "outline.h"
#include "shape_tables.h"

namespace tessaline::app {

// Draws the row's shape as its table's drawing conventions say (root
// fillets, toe radii, tapered flanges, corner radii). False, with the
// reason in `error`, for a row whose dimensions do not make a section.
bool Draw_Standard_Shape(const Shape_Row& row, Outline* outline, std::string* error);

// Recognises PL<b>x<t> (a plate b wide along x, t high along y, sharp
// corners), RD<d> (a round bar) and TUBE<d>x<t> (a round tube), in mm,
// ignoring case. Returns 0 when `designation` is none of these, 1 when it
// was drawn, -1 when it is one of them with dimensions that make no
// section (the reason in `error`).
int Draw_Plain_Shape(std::string_view designation, Outline* outline, std::string* error);

// Draws any designation: a table row or a plain shape. False with the
// reason in `error` ("unknown designation" when it is neither).
bool Draw_Designation(std::string_view designation, Outline* outline, std::string* error);

}  // namespace tessaline::app
