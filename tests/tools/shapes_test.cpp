// Every designation of every shape table through the shape builder, its
// properties against the published ones.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <map>
#include <numbers>
#include <set>

#include "analysis.h"
#include "compare.h"
#include "section.h"
#include "shapes.h"

namespace tessaline::app {
namespace {

// The exact area of a drawn outline, through the section it makes.
double Exact_Area(const Outline& o) {
  std::string error;
  auto s = Section_From_Outline(o, "x", &error);
  surface_geometry g{};
  if (!s || !Calc_Exact_Surface_Param(&s->surface, &g)) return -1;
  return g.area;
}

// Largest relative difference accepted for the section properties (A, I,
// S, centroid) of a family. The tables' README measured these drawings
// against the same data: families whose radii or slopes are not published
// are approximate drawings. The UPE moduli about y are the source's own
// (3 figures, up to 3.3 % from I / (b - xc)); UPN80's published centroid is
// 2.3 % from its drawing.
double Section_Tolerance(const std::string& family) {
  static const std::map<std::string, double> loose = {
      {"W", 0.02},  {"HP", 0.035}, {"M", 0.08},    {"S", 0.05},      {"C", 0.05},
      {"MC", 0.35}, {"UPE", 0.04}, {"UPN", 0.025}, {"L (US)", 0.03}, {"Pipe", 0.04},
  };
  auto it = loose.find(family);
  return it == loose.end() ? 0.015 : it->second;
}

struct Stats {
  std::vector<double> diffs;
  std::string worst_shape;
  double worst = 0;
};

TEST(Shapes, EveryTableRowDrawsAndMatchesItsPublishedProperties) {
  // family -> property -> differences
  std::map<std::string, std::map<std::string, Stats>> stats;
  std::vector<std::string> families = Shape_Families();
  int drawn = 0;
  // J and Cw come from a torsion solve per section: for every row when the
  // report is asked for (a coarse 1e-3 bound gap, minutes in all), else for
  // the first row of a few families (an I, a channel, an angle, a box, a tube).
  const char* report = std::getenv("TESSALINE_SHAPE_REPORT");
  std::string last_family;
  for (const Shape_Row& row : Shape_Rows()) {
    Analyze_Options options;
    static const std::set<std::string> solved = {"IPE", "UPN", "L (EU equal)", "SHS", "CHS"};
    options.torsion = report || (row.Family() != last_family && solved.count(row.Family()));
    options.gap = report ? 1e-3 : 1e-2;
    last_family = row.Family();
    Outline outline;
    std::string error;
    ASSERT_TRUE(Draw_Standard_Shape(row, &outline, &error)) << row.designation << ": " << error;
    auto section = Section_From_Outline(outline, row.designation, &error);
    ASSERT_TRUE(section) << row.designation << ": " << error;
    Section_Result r;
    ASSERT_TRUE(Analyze_Section(*section, options, &r, &error)) << row.designation << error;
    if (options.torsion) {
      EXPECT_LE(r.j_lower, r.j_upper) << row.designation;
      EXPECT_GT(r.j_lower, 0) << row.designation;
      EXPECT_GE(r.cw, 0) << row.designation;
    }
    ++drawn;
    for (const Comparison& c : Compare_With_Published(row, r)) {
      if (!std::isfinite(c.relative)) continue;
      Stats& s = stats[row.Family()][c.property];
      s.diffs.push_back(c.relative);
      if (std::fabs(c.relative) >= std::fabs(s.worst)) {
        s.worst = c.relative;
        s.worst_shape = row.designation;
      }
      // Plastic moduli, J, Cw, the shear centre and the minor principal moment are reported,
      // not bounded: their published values follow conventions of their own.
      bool section_property = c.property != "J" && c.property != "Cw" && c.property != "Iv" &&
                              c.property != "ym" && c.property != "eo" && c.property[0] != 'Z';
      if (section_property) {
        EXPECT_LE(std::fabs(c.relative), Section_Tolerance(row.Family()))
            << row.designation << " " << c.property << ": ours " << c.ours << ", published "
            << c.published;
      }
    }
  }
  EXPECT_EQ(drawn, 2087);

  // The report that bench/RESULTS.md quotes, written when asked for.
  if (report) {
    std::ofstream out(report);
    out << "| family | property | n | median | worst | worst shape |\n|---|---|---|---|---|---|\n";
    for (const std::string& f : families) {
      for (auto& [prop, s] : stats[f]) {
        std::vector<double> d = s.diffs;
        std::sort(d.begin(), d.end());
        double median = d[d.size() / 2];
        char line[256];
        std::snprintf(line, sizeof line, "| %s | %s | %zu | %+.3f %% | %+.3f %% | %s |\n",
                      f.c_str(), prop.c_str(), d.size(), 100 * median, 100 * s.worst,
                      s.worst_shape.c_str());
        out << line;
      }
    }
  }
}

TEST(Shapes, DrawnAreaMatchesTheClosedFormOfEachConvention) {
  // IPE: A = 2 b tf + (h - 2 tf) tw + (4 - pi) r^2, a root fillet adding
  // (1 - pi/4) r^2 at each of the four corners.
  const Shape_Row* ipe = Find_Shape("ipe300");
  ASSERT_TRUE(ipe);
  double h = ipe->Get("h"), b = ipe->Get("b"), tw = ipe->Get("tw"), tf = ipe->Get("tf"),
         r = ipe->Get("r");
  Outline o;
  std::string error;
  ASSERT_TRUE(Draw_Standard_Shape(*ipe, &o, &error)) << error;
  double expected = 2 * b * tf + (h - 2 * tf) * tw + (4 - std::numbers::pi) * r * r;
  EXPECT_NEAR(Exact_Area(o), expected, 1e-12 * expected);

  // SHS: outer radius 1.5 t and inner t remove (1 - pi/4)(ro^2 - ri^2) per corner.
  const Shape_Row* shs = Find_Shape("SHS100x100x5");
  ASSERT_TRUE(shs);
  Outline box;
  ASSERT_TRUE(Draw_Standard_Shape(*shs, &box, &error)) << error;
  double t = 5, ro = 7.5, ri = 5;
  double box_area = 100 * 100 - 90 * 90 - 4 * (1 - std::numbers::pi / 4) * (ro * ro - ri * ri);
  EXPECT_NEAR(Exact_Area(box), box_area, 1e-12 * box_area);
  (void)t;

  // US tables are in inches: W14X90 is 14.0 in deep.
  const Shape_Row* w = Find_Shape("W14X90");
  ASSERT_TRUE(w);
  EXPECT_DOUBLE_EQ(w->Get("d"), 14.0 * 25.4);
  EXPECT_NEAR(w->Get("A"), 26.5 * 25.4 * 25.4, 1e-9);
}

TEST(Shapes, PlainShapesAndBadDesignations) {
  Outline o;
  std::string error;
  ASSERT_TRUE(Draw_Designation("PL100x50", &o, &error)) << error;
  auto plate = Section_From_Outline(o, "PL100x50", &error);
  ASSERT_TRUE(plate);
  Section_Result r;
  Analyze_Options options;
  options.gap = 1e-4;
  ASSERT_TRUE(Analyze_Section(*plate, options, &r, &error)) << error;
  EXPECT_NEAR(r.area, 5000, 1e-9);
  EXPECT_NEAR(r.ixx, 100 * 50.0 * 50 * 50 / 12, 1e-6);  // b t^3 / 12
  EXPECT_NEAR(r.zx, 100 * 50.0 * 50 / 4, 1e-6);         // b t^2 / 4
  EXPECT_NEAR(r.angle, M_PI / 2, 1e-15);                // the major axis is y
  // Saint-Venant's series for a 2:1 rectangle: J = 0.2287 b t^3 (to 4 figures).
  EXPECT_NEAR(r.j, 0.22868 * 100 * 50.0 * 50 * 50, 2e-4 * r.j);
  EXPECT_LE(r.j_lower, r.j);
  EXPECT_GE(r.j_upper, r.j);
  EXPECT_NEAR(r.xs, 50, 1e-4);  // the shear centre of a doubly symmetric section
  EXPECT_NEAR(r.ys, 25, 1e-4);
  // The seed path (linear triangles) converges to the same J from below.
  options.seed = true;
  options.elements = 3200;
  ASSERT_TRUE(Analyze_Section(*plate, options, &r, &error)) << error;
  EXPECT_NEAR(r.j, 0.22868 * 100 * 50.0 * 50 * 50, 0.01 * r.j);

  Outline tube;
  ASSERT_TRUE(Draw_Designation("tube60x5", &tube, &error)) << error;
  EXPECT_NEAR(Exact_Area(tube), std::numbers::pi * (30 * 30 - 25 * 25), 1e-12 * 864);

  for (const char* bad : {"PL0x50", "PL-100x50", "RD0", "TUBE60x30", "TUBE60x-5"}) {
    Outline x;
    EXPECT_FALSE(Draw_Designation(bad, &x, &error)) << bad;
    EXPECT_TRUE(x.pieces.empty()) << bad;
  }
  Outline x;
  EXPECT_FALSE(Draw_Designation("IPE301", &x, &error));
  EXPECT_NE(error.find("unknown designation"), std::string::npos);
}

// A root fillet much smaller than the starting elements (W21X201: r = 12.7
// against 21 mm) once made a curved element fold over its own triangle,
// and the bounds on J crossed; a sharp re-entrant corner (US angles) once
// ended the refinement early as "budget spent".
TEST(Shapes, SmallFilletsAndSharpCornersKeepTheBoundsOrdered) {
  for (const char* name : {"W21X201", "L12X12X1-1/4", "MC12X14.3"}) {
    Outline o;
    std::string error;
    ASSERT_TRUE(Draw_Designation(name, &o, &error)) << error;
    auto section = Section_From_Outline(o, name, &error);
    ASSERT_TRUE(section) << error;
    Section_Result r;
    Analyze_Options options;
    options.gap = 1e-3;
    ASSERT_TRUE(Analyze_Section(*section, options, &r, &error)) << error;
    EXPECT_EQ(r.torsion_note.rfind("gap reached", 0), 0u) << name << ": " << r.torsion_note;
    EXPECT_LE(r.j_lower, r.j_upper) << name;
    EXPECT_LE(r.j_upper - r.j_lower, 1e-3 * r.j_upper) << name;
  }
}

}  // namespace
}  // namespace tessaline::app
