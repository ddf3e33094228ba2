// The standard-shape tables: catalogue dimensions and published properties
// of rolled and hollow steel shapes, one table per family file
// (data/shapes/*.csv, compiled into the program so that it needs no data
// folder). Values are kept in millimetre units whatever the table's own:
// the US tables' inches are converted on reading (in x 25.4, in^2 x 25.4^2 ...).
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tessaline::app {

struct Shape_Row {
  std::string designation;  // as published: IPE300, W14X90, L4X4X1/2
  std::string table;        // the file it comes from without extension: eu_i, us_w ...
  std::string kind;         // its series or type: IPE, HEA, IPN, UPN, equal, SHS, W, S, RECT ...
  // Every numeric cell by its column's base name (the unit suffix removed):
  // "h", "b", "tw", "A", "Ix", "J", "Cw" ... Dimensions in mm, A in mm^2,
  // S and Z in mm^3, I and J in mm^4, Cw in mm^6.
  std::map<std::string, double, std::less<>> value;

  // The value of a column, or NaN when the table leaves it empty.
  double Get(std::string_view name) const;
  bool Has(std::string_view name) const { return value.count(name) != 0; }
  // The family as reports group shapes: "IPE", "HEA", "UPN", "L (EU equal)", "W", "HSS (rect.)" ...
  std::string Family() const;
};

// Every row of every table, parsed once; the order is the tables' own.
const std::vector<Shape_Row>& Shape_Rows();

// The row whose designation equals `designation` ignoring case, or null.
const Shape_Row* Find_Shape(std::string_view designation);

// The families in table order, each once.
std::vector<std::string> Shape_Families();

// The embedded table texts: name (eu_i ...) and CSV text.
struct Embedded_Table {
  const char* name;
  std::string_view text;
};
const std::vector<Embedded_Table>& Embedded_Shape_Tables();

}  // namespace tessaline::app
