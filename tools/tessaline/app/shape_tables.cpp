#include "shape_tables.h"

#include <cctype>
#include <cmath>
#include <limits>

#include "csv.h"

namespace tessaline::app {

namespace {

// Unit suffixes of the tables' column names and the factor to millimetre
// units; columns without one (tan_alpha, sloped_flanges) are taken as they are.
struct Unit {
  const char* suffix;
  double factor;
};
constexpr double kIn = 25.4;
constexpr Unit kUnits[] = {
    {"_mm", 1},
    {"_mm2", 1},
    {"_mm3", 1},
    {"_mm4", 1},
    {"_mm6", 1},
    {"_in", kIn},
    {"_in2", kIn* kIn},
    {"_in3", kIn* kIn* kIn},
    {"_in4", kIn* kIn* kIn* kIn},
    {"_in6", kIn* kIn* kIn* kIn* kIn* kIn},
    {"_kg_m", 1},
    {"_lb_ft", 1},
    {"_pct", 1},
};

std::string Base_Name(const std::string& column, double* factor) {
  *factor = 1;
  for (const Unit& u : kUnits) {
    std::string_view s(u.suffix);
    if (column.size() > s.size() && column.compare(column.size() - s.size(), s.size(), s) == 0) {
      *factor = u.factor;
      return column.substr(0, column.size() - s.size());
    }
  }
  return column;
}

const char* Kind_Column(const Csv_Table& t) {
  for (const char* c : {"series", "kind", "type"})
    if (t.Column(c) >= 0) return c;
  return nullptr;
}

std::vector<Shape_Row> Load_All() {
  std::vector<Shape_Row> rows;
  for (const Embedded_Table& e : Embedded_Shape_Tables()) {
    Csv_Table t;
    std::string error;
    if (!Parse_Csv(e.text, &t, &error)) continue;  // the build checks the tables
    const char* kind_col = Kind_Column(t);
    int kind_index = kind_col ? t.Column(kind_col) : -1;
    std::vector<std::string> names(t.header.size());
    std::vector<double> factors(t.header.size());
    for (size_t c = 0; c < t.header.size(); ++c) names[c] = Base_Name(t.header[c], &factors[c]);
    for (const auto& cells : t.rows) {
      Shape_Row r;
      r.designation = cells[0];
      r.table = e.name;
      r.kind = kind_index >= 0 ? cells[kind_index] : "L";
      for (size_t c = 1; c < cells.size(); ++c) {
        double v;
        if (Parse_Number(cells[c], &v)) r.value[names[c]] = v * factors[c];
      }
      if (!r.designation.empty()) rows.push_back(std::move(r));
    }
  }
  return rows;
}

bool Same_Ignoring_Case(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (std::tolower(static_cast<unsigned char>(a[i])) !=
        std::tolower(static_cast<unsigned char>(b[i])))
      return false;
  return true;
}

}  // namespace

double Shape_Row::Get(std::string_view name) const {
  auto it = value.find(name);
  return it == value.end() ? std::numeric_limits<double>::quiet_NaN() : it->second;
}

std::string Shape_Row::Family() const {
  if (table == "eu_angle") return kind == "equal" ? "L (EU equal)" : "L (EU unequal)";
  if (table == "us_angle") return "L (US)";
  if (table == "us_hss") {
    if (kind == "RECT") return "HSS (rect.)";
    if (kind == "ROUND") return "HSS (round)";
    return "Pipe";
  }
  return kind;
}

const std::vector<Shape_Row>& Shape_Rows() {
  static const std::vector<Shape_Row> rows = Load_All();
  return rows;
}

const Shape_Row* Find_Shape(std::string_view designation) {
  for (const Shape_Row& r : Shape_Rows())
    if (Same_Ignoring_Case(r.designation, designation)) return &r;
  return nullptr;
}

std::vector<std::string> Shape_Families() {
  std::vector<std::string> out;
  for (const Shape_Row& r : Shape_Rows()) {
    std::string f = r.Family();
    bool seen = false;
    for (const auto& o : out) seen = seen || o == f;
    if (!seen) out.push_back(f);
  }
  return out;
}

}  // namespace tessaline::app
