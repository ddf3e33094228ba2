// The CSV reader of the shape tables and the filleted outlines.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "csv.h"
#include "outline.h"
#include "section.h"

namespace tessaline::app {
namespace {

TEST(Csv, QuotesLineEndsAndBadRows) {
  Csv_Table t;
  std::string error;
  ASSERT_TRUE(Parse_Csv("a,b,c\r\n1,\"x,\"\"y\"\"\",3\r\n\r\n4,5\n", &t, &error)) << error;
  ASSERT_EQ(t.rows.size(), 2u);
  EXPECT_EQ(t.rows[0][1], "x,\"y\"");
  EXPECT_EQ(t.rows[1][2], "");  // a short row is padded
  EXPECT_EQ(t.Column("c"), 2);
  EXPECT_FALSE(Parse_Csv("a,b\n1,2,3\n", &t, &error));
  EXPECT_NE(error.find("line 2"), std::string::npos);
  EXPECT_FALSE(Parse_Csv("a\n\"open\n", &t, &error));
  EXPECT_FALSE(Parse_Csv("", &t, &error));
  double v = 0;
  EXPECT_TRUE(Parse_Number(" 12.5 ", &v));
  EXPECT_EQ(v, 12.5);
  for (const char* bad : {"", "1.2.3", "nan", "inf", "1e999", "12mm"})
    EXPECT_FALSE(Parse_Number(bad, &v)) << bad;
}

double Area(const Outline& o) {
  std::string error;
  auto s = Section_From_Outline(o, "t", &error);
  surface_geometry g{};
  if (!s || !Calc_Exact_Surface_Param(&s->surface, &g)) return -1;
  return g.area;
}

TEST(Outline, FilletsOnAnyCornerAndEitherWinding) {
  // A 40 x 20 rectangle with r = 5 at every corner, drawn both ways round.
  const double removed = 4 * (1 - std::numbers::pi / 4) * 25;
  for (bool clockwise : {false, true}) {
    std::vector<Corner> c = {{0, 0, 5}, {40, 0, 5}, {40, 20, 5}, {0, 20, 5}};
    if (clockwise) std::reverse(c.begin(), c.end());
    Outline o;
    std::string error;
    ASSERT_TRUE(o.Add_Polygon(c, &error)) << error;
    EXPECT_EQ(o.pieces.size(), 8u);  // four arcs, four segments
    EXPECT_NEAR(Area(o), 800 - removed, 1e-9);
  }
  // A fillet at a 60-degree corner of a triangle removes
  // r^2 (cot(theta/2) - (pi - theta)/2).
  const double r = 2, th = std::numbers::pi / 3;
  const double h = 30 * std::sqrt(3.0) / 2;
  Outline tri;
  std::string error;
  ASSERT_TRUE(tri.Add_Polygon({{0, 0, r}, {30, 0, 0}, {15, h, 0}}, &error)) << error;
  double cut = r * r * (1 / std::tan(th / 2) - (std::numbers::pi - th) / 2);
  EXPECT_NEAR(Area(tri), 15 * h - cut, 1e-9);
}

TEST(Outline, RefusesWhatMakesNoOutline) {
  Outline o;
  std::string error;
  EXPECT_FALSE(o.Add_Polygon({{0, 0, 6}, {10, 0, 6}, {10, 10, 0}, {0, 10, 0}}, &error));
  EXPECT_NE(error.find("do not fit"), std::string::npos);
  EXPECT_FALSE(o.Add_Polygon({{0, 0, -1}, {10, 0, 0}, {10, 10, 0}}, &error));
  EXPECT_FALSE(o.Add_Polygon({{0, 0, 0}, {0, 0, 0}, {10, 10, 0}}, &error));
  EXPECT_FALSE(o.Add_Polygon({{0, 0, 0}, {5, 5, 0}, {10, 10, 0}}, &error));
  EXPECT_FALSE(o.Add_Polygon({{0, 0, 0}, {NAN, 0, 0}, {10, 10, 0}}, &error));
  EXPECT_FALSE(o.Add_Circle(0, 0, 0, &error));
  EXPECT_TRUE(o.pieces.empty());
}

}  // namespace
}  // namespace tessaline::app
