#include "shapes.h"

#include <cctype>
#include <cmath>

#include "csv.h"

namespace tessaline::app {

namespace {

// An I shape, symmetric about both axes. The flange's inner face falls from
// `t_web` at the web face to `t_tip` at the tip (equal for parallel
// flanges); `r1` is the root fillet, `r2` the toe radius.
bool Draw_I(double h, double b, double tw, double t_tip, double t_web, double r1, double r2,
            Outline* o, std::string* error) {
  double x = b / 2, y = h / 2, w = tw / 2;
  if (!(h > 0 && b > 0 && tw > 0 && t_tip > 0 && t_web > 0 && tw < b && 2 * t_web < h)) {
    *error = "dimensions that make no I section";
    return false;
  }
  return o->Add_Polygon({{-x, -y, 0},
                         {x, -y, 0},
                         {x, -y + t_tip, r2},
                         {w, -y + t_web, r1},
                         {w, y - t_web, r1},
                         {x, y - t_tip, r2},
                         {x, y, 0},
                         {-x, y, 0},
                         {-x, y - t_tip, r2},
                         {-w, y - t_web, r1},
                         {-w, -y + t_web, r1},
                         {-x, -y + t_tip, r2}},
                        error);
}

// A channel, back of the web on x = 0; flanges as for Draw_I.
bool Draw_Channel(double h, double b, double tw, double t_tip, double t_web, double r1, double r2,
                  Outline* o, std::string* error) {
  double y = h / 2;
  if (!(h > 0 && b > 0 && tw > 0 && t_tip > 0 && t_web > 0 && tw < b && 2 * t_web < h)) {
    *error = "dimensions that make no channel";
    return false;
  }
  return o->Add_Polygon({{0, -y, 0},
                         {b, -y, 0},
                         {b, -y + t_tip, r2},
                         {tw, -y + t_web, r1},
                         {tw, y - t_web, r1},
                         {b, y - t_tip, r2},
                         {b, y, 0},
                         {0, y, 0}},
                        error);
}

// An angle with its heel at the origin: long leg h along y, short leg b along x.
bool Draw_Angle(double h, double b, double t, double r1, double r2, Outline* o,
                std::string* error) {
  if (!(h > 0 && b > 0 && t > 0 && t < b && t < h)) {
    *error = "dimensions that make no angle";
    return false;
  }
  return o->Add_Polygon({{0, 0, 0}, {b, 0, 0}, {b, t, r2}, {t, t, r1}, {t, h, r2}, {0, h, 0}},
                        error);
}

// A rectangular hollow section h deep (y) and b wide (x), wall t, outer
// corner radius ro and inner ri, centred on the origin.
bool Draw_Box(double h, double b, double t, double ro, double ri, Outline* o, std::string* error) {
  if (!(h > 0 && b > 0 && t > 0 && 2 * t < h && 2 * t < b)) {
    *error = "dimensions that make no hollow section";
    return false;
  }
  return o->Add_Rounded_Rect(-b / 2, -h / 2, b / 2, h / 2, ro, error) &&
         o->Add_Rounded_Rect(-b / 2 + t, -h / 2 + t, b / 2 - t, h / 2 - t, ri, error);
}

bool Draw_Tube(double d, double t, Outline* o, std::string* error) {
  if (!(d > 0 && t > 0 && 2 * t < d)) {
    *error = "dimensions that make no tube (need 0 < 2 t < d)";
    return false;
  }
  return o->Add_Circle(0, 0, d / 2, error) && o->Add_Circle(0, 0, d / 2 - t, error);
}

// Flange thicknesses of a tapered flange: `slope` is the thickening per
// unit length towards the web, `tf` the thickness at `at` from the tip and
// `outstand` the length from the tip to the web face.
void Taper(double tf, double slope, double at, double outstand, double* t_tip, double* t_web) {
  *t_tip = tf - slope * at;
  *t_web = *t_tip + slope * outstand;
}

double Or_Zero(double v) {
  return std::isfinite(v) ? v : 0;
}

bool Draw_Row(const Shape_Row& s, Outline* o, std::string* error) {
  const std::string& t = s.table;
  if (t == "eu_i") {
    double h = s.Get("h"), b = s.Get("b"), tw = s.Get("tw"), tf = s.Get("tf"), r = s.Get("r");
    if (s.kind != "IPN") return Draw_I(h, b, tw, tf, tf, r, 0, o, error);
    // The flange thickness is given at a quarter of the width from the tip.
    double t_tip, t_web;
    Taper(tf, s.Get("flange_slope") / 100, b / 4, (b - tw) / 2, &t_tip, &t_web);
    return Draw_I(h, b, tw, t_tip, t_web, r, Or_Zero(s.Get("r2")), o, error);
  }
  if (t == "us_w") {
    double d = s.Get("d"), b = s.Get("bf"), tw = s.Get("tw"), tf = s.Get("tf");
    double kdes = s.Get("kdes");
    // Only S shapes are drawn tapered: M5X18.9, flagged sloped too, has no
    // published slope and its parallel drawing is the closer one.
    if (s.kind != "S") return Draw_I(d, b, tw, tf, tf, kdes - tf, 0, o, error);
    // 1:6 taper, tf the thickness at mid-outstand, the root fillet reaching kdes.
    double t_tip, t_web;
    Taper(tf, 1.0 / 6.0, (b - tw) / 4, (b - tw) / 2, &t_tip, &t_web);
    return Draw_I(d, b, tw, t_tip, t_web, std::max(0.0, kdes - t_web), 0, o, error);
  }
  if (t == "eu_channel") {
    double h = s.Get("h"), b = s.Get("b"), tw = s.Get("tw"), tf = s.Get("tf"), r = s.Get("r");
    if (s.kind != "UPN") return Draw_Channel(h, b, tw, tf, tf, r, 0, o, error);
    // 8 % sizes: tf at b/2 from the tip; 5 % sizes: at mid-outstand.
    double slope = s.Get("flange_slope") / 100;
    double at = slope > 0.06 ? b / 2 : (b - tw) / 2;
    double t_tip, t_web;
    Taper(tf, slope, at, b - tw, &t_tip, &t_web);
    return Draw_Channel(h, b, tw, t_tip, t_web, r, Or_Zero(s.Get("r2")), o, error);
  }
  if (t == "us_channel") {
    double d = s.Get("d"), b = s.Get("bf"), tw = s.Get("tw"), tf = s.Get("tf");
    if (s.kind == "MC") return Draw_Channel(d, b, tw, tf, tf, 0, 0, o, error);
    double t_tip, t_web;
    Taper(tf, 1.0 / 6.0, (b - tw) / 2, b - tw, &t_tip, &t_web);
    return Draw_Channel(d, b, tw, t_tip, t_web, std::max(0.0, s.Get("kdes") - t_web), 0, o, error);
  }
  if (t == "eu_angle")
    return Draw_Angle(s.Get("h"), s.Get("b"), s.Get("t"), s.Get("r1"), s.Get("r2"), o, error);
  if (t == "us_angle")
    return Draw_Angle(s.Get("leg_long"), s.Get("leg_short"), s.Get("t"), 0, 0, o, error);
  if (t == "eu_hollow") {
    double th = s.Get("t");
    if (s.kind == "CHS") return Draw_Tube(s.Get("D"), th, o, error);
    // The exact 1.5 t, not the table's rounded ro column.
    return Draw_Box(s.Get("h"), s.Get("b"), th, 1.5 * th, th, o, error);
  }
  if (t == "us_hss") {
    double td = s.Get("tdes");
    if (s.kind != "RECT") return Draw_Tube(s.Get("OD"), td, o, error);
    return Draw_Box(s.Get("Ht"), s.Get("B"), td, 2 * td, td, o, error);
  }
  *error = "no drawing rule for table " + t;
  return false;
}

bool Starts_With_Ignoring_Case(std::string_view s, std::string_view prefix) {
  if (s.size() < prefix.size()) return false;
  for (size_t i = 0; i < prefix.size(); ++i)
    if (std::toupper(static_cast<unsigned char>(s[i])) != prefix[i]) return false;
  return true;
}

// Splits "100x50" at 'x' or 'X' into numbers; false when a part is not a number.
bool Split_Dimensions(std::string_view text, std::vector<double>* dims) {
  dims->clear();
  size_t start = 0;
  for (size_t i = 0; i <= text.size(); ++i) {
    if (i == text.size() || text[i] == 'x' || text[i] == 'X') {
      double v;
      if (!Parse_Number(text.substr(start, i - start), &v)) return false;
      dims->push_back(v);
      start = i + 1;
    }
  }
  return true;
}

}  // namespace

bool Draw_Standard_Shape(const Shape_Row& row, Outline* outline, std::string* error) {
  Outline o;
  if (!Draw_Row(row, &o, error)) return false;
  outline->pieces.insert(outline->pieces.end(), o.pieces.begin(), o.pieces.end());
  return true;
}

int Draw_Plain_Shape(std::string_view designation, Outline* outline, std::string* error) {
  struct Form {
    const char* prefix;
    size_t count;
    const char* usage;
  };
  static constexpr Form kForms[] = {
      {"TUBE", 2, "TUBE<d>x<t>"}, {"PL", 2, "PL<b>x<t>"}, {"RD", 1, "RD<d>"}};
  for (const Form& f : kForms) {
    if (!Starts_With_Ignoring_Case(designation, f.prefix)) continue;
    std::vector<double> d;
    std::string_view rest = designation.substr(std::string_view(f.prefix).size());
    if (!Split_Dimensions(rest, &d) || d.size() != f.count) return 0;
    for (double v : d) {
      if (!(v > 0)) {
        *error = "dimensions must be positive in " + std::string(f.usage);
        return -1;
      }
    }
    Outline o;
    bool ok = false;
    if (f.count == 1) {
      ok = o.Add_Circle(0, 0, d[0] / 2, error);
    } else if (f.prefix[0] == 'T') {
      ok = Draw_Tube(d[0], d[1], &o, error);
    } else {
      ok = o.Add_Polygon({{0, 0, 0}, {d[0], 0, 0}, {d[0], d[1], 0}, {0, d[1], 0}}, error);
    }
    if (!ok) return -1;
    outline->pieces.insert(outline->pieces.end(), o.pieces.begin(), o.pieces.end());
    return 1;
  }
  return 0;
}

bool Draw_Designation(std::string_view designation, Outline* outline, std::string* error) {
  if (const Shape_Row* row = Find_Shape(designation))
    return Draw_Standard_Shape(*row, outline, error);
  int plain = Draw_Plain_Shape(designation, outline, error);
  if (plain == 1) return true;
  if (plain == 0) *error = "unknown designation (try 'tessaline shape --list')";
  return false;
}

}  // namespace tessaline::app
