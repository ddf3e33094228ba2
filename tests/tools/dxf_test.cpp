// DXF drawings written by an independent writer (tests/make_dxf_fixtures.py)
// against the same sections built directly.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <numbers>

#include "dxf.h"
#include "section.h"

namespace tessaline::app {
namespace {

constexpr double kPi = std::numbers::pi;

std::string Fixture(const char* name) {
  return std::string(TESSALINE_TEST_DATA) + "/dxf/" + name;
}

surface_geometry Props(const Outline& o) {
  std::string error;
  auto s = Section_From_Outline(o, "x", &error);
  surface_geometry g{};
  EXPECT_TRUE(s) << error;
  if (s) {
    EXPECT_TRUE(Calc_Exact_Surface_Param(&s->surface, &g));
  }
  return g;
}

// Area, first and second moments agree to 1e-9 of their own scale.
void Expect_Same(const Outline& imported, const Outline& direct, const std::string& what) {
  surface_geometry a = Props(imported), b = Props(direct);
  double i_scale = std::abs(b.central_moment_x) + std::abs(b.central_moment_y);
  double l = std::sqrt(b.area);
  EXPECT_NEAR(a.area, b.area, 1e-9 * b.area) << what;
  EXPECT_NEAR(a.centroid_x, b.centroid_x, 1e-9 * (l + std::abs(b.centroid_x))) << what;
  EXPECT_NEAR(a.centroid_y, b.centroid_y, 1e-9 * (l + std::abs(b.centroid_y))) << what;
  EXPECT_NEAR(a.central_moment_x, b.central_moment_x, 1e-9 * i_scale) << what;
  EXPECT_NEAR(a.central_moment_y, b.central_moment_y, 1e-9 * i_scale) << what;
  EXPECT_NEAR(a.central_product_moment, b.central_product_moment, 1e-9 * i_scale) << what;
}

Dxf_Drawing Read(const char* name) {
  Dxf_Drawing d;
  std::string error;
  EXPECT_TRUE(Read_Dxf(Fixture(name), kDxf_Join_Tolerance, &d, &error)) << name << ": " << error;
  return d;
}

Outline Rect(double x0, double y0, double x1, double y1) {
  Outline o;
  std::string e;
  EXPECT_TRUE(o.Add_Rounded_Rect(x0, y0, x1, y1, 0, &e));
  return o;
}

TEST(Dxf, EveryEntityKindGivesTheSectionBuiltDirectly) {
  Dxf_Drawing d = Read("entities.dxf");
  EXPECT_TRUE(d.problems.empty()) << d.problems[0];
  ASSERT_EQ(d.sections.size(), 7u);  // left to right
  std::string e;
  Outline plate = Rect(0, 0, 100, 50);
  ASSERT_TRUE(plate.Add_Circle(50, 25, 10, &e));
  Expect_Same(d.sections[0].outline, plate, "lines and a circle");
  EXPECT_EQ(d.sections[0].name, "lines@50,25");
  Outline rounded;
  ASSERT_TRUE(rounded.Add_Rounded_Rect(200, 0, 280, 40, 8, &e));
  Expect_Same(d.sections[1].outline, rounded, "lines and arcs");
  Outline bulged;
  ASSERT_TRUE(bulged.Add_Rounded_Rect(400, 0, 480, 40, 8, &e));
  Expect_Same(d.sections[2].outline, bulged, "lwpolyline with bulges");
  Outline slot;
  slot.pieces = {{Piece::kSegment, 600, 0, 700, 0, 0, 0, 0, 0, 0},
                 {Piece::kArc, 700, 0, 700, 40, 700, 20, 20, -kPi / 2, kPi / 2},
                 {Piece::kSegment, 700, 40, 600, 40, 0, 0, 0, 0, 0},
                 {Piece::kArc, 600, 40, 600, 0, 600, 20, 20, kPi / 2, 3 * kPi / 2}};
  Expect_Same(d.sections[3].outline, slot, "polyline with negative bulges");
  Outline bar;
  ASSERT_TRUE(bar.Add_Circle(850, 20, 15, &e));
  Expect_Same(d.sections[4].outline, bar, "circular ellipse");
  Outline ring = Rect(1000, 0, 1100, 100);
  for (const Piece& p : Rect(1020, 20, 1080, 80).pieces) ring.pieces.push_back(p);
  Expect_Same(d.sections[5].outline, ring, "outer contour with its hole");
  Expect_Same(d.sections[6].outline, Rect(1040, 40, 1060, 60), "island in the hole");
  EXPECT_EQ(d.sections[6].name, "island@1050,50");
}

TEST(Dxf, BlocksAreInsertedWithRotationScaleAndMirror) {
  Dxf_Drawing d = Read("blocks.dxf");
  EXPECT_TRUE(d.problems.empty()) << d.problems[0];
  ASSERT_EQ(d.sections.size(), 2u);
  // Block PLATE: 40 x 20 with a hole r 5 at (20, 10), base point (10, 5).
  auto placed = [](double ipx, double ipy, double sx, double sy, double deg) {
    double c = std::cos(deg * kPi / 180), s = std::sin(deg * kPi / 180);
    auto map = [&](double x, double y, double* ox, double* oy) {
      double u = (x - 10) * sx, v = (y - 5) * sy;
      *ox = ipx + c * u - s * v, *oy = ipy + s * u + c * v;
    };
    std::vector<Corner> corners(4);
    double bx[] = {0, 40, 40, 0}, by[] = {0, 0, 20, 20};
    for (int i = 0; i < 4; ++i) map(bx[i], by[i], &corners[i].x, &corners[i].y), corners[i].r = 0;
    Outline o;
    std::string e;
    EXPECT_TRUE(o.Add_Polygon(corners, &e));
    double hx, hy;
    map(20, 10, &hx, &hy);
    EXPECT_TRUE(o.Add_Circle(hx, hy, 5 * std::abs(sx), &e));
    return o;
  };
  Expect_Same(d.sections[0].outline, placed(0, 0, 2, 2, 30), "rotated and scaled");
  Expect_Same(d.sections[1].outline, placed(300, 0, -1.5, 1.5, 0), "mirrored");
  EXPECT_EQ(d.sections[0].name.substr(0, 8), "rotated@");
}

TEST(Dxf, InchesBecomeMillimetres) {
  Dxf_Drawing d = Read("inches.dxf");
  EXPECT_EQ(d.unit_mm, 25.4);
  ASSERT_EQ(d.sections.size(), 1u);
  Expect_Same(d.sections[0].outline, Rect(0, 0, 4 * 25.4, 2 * 25.4), "inches");
}

TEST(Dxf, GapsJoinWithinTheToleranceAndOpenOutlinesAreReported) {
  Dxf_Drawing d = Read("gaps.dxf");
  ASSERT_EQ(d.sections.size(), 1u);
  EXPECT_EQ(d.sections[0].name, "near@50,25");
  surface_geometry g = Props(d.sections[0].outline);
  EXPECT_NEAR(g.area, 5000, 1e-6);   // joined at the corner the first line starts at
  ASSERT_EQ(d.problems.size(), 2u);  // both ends of the gap
  EXPECT_NE(d.problems[0].find("open outline"), std::string::npos);
  EXPECT_NE(d.problems[0].find("layer far"), std::string::npos);
  EXPECT_NE(d.problems[0].find("(200, "), std::string::npos) << d.problems[0];
  // A wider tolerance closes it too.
  Dxf_Drawing wide;
  std::string error;
  ASSERT_TRUE(Read_Dxf(Fixture("gaps.dxf"), 0.02, &wide, &error));
  EXPECT_EQ(wide.sections.size(), 2u);
  EXPECT_TRUE(wide.problems.empty());

  Dxf_Drawing open = Read("open.dxf");
  EXPECT_TRUE(open.sections.empty());
  EXPECT_EQ(open.problems.size(), 2u);
  Dxf_Drawing refused = Read("refused.dxf");
  EXPECT_TRUE(refused.sections.empty());
  ASSERT_GE(refused.problems.size(), 2u);
  EXPECT_NE(refused.problems[0].find("SPLINE on layer curves refused"), std::string::npos);
  EXPECT_NE(refused.problems[1].find("ELLIPSE on layer curves refused"), std::string::npos);
}

TEST(Dxf, BadFilesAreRefusedWithoutACrash) {
  Dxf_Drawing d;
  std::string error;
  EXPECT_FALSE(Read_Dxf(Fixture("corrupt.dxf"), kDxf_Join_Tolerance, &d, &error));
  EXPECT_NE(error.find("not an ASCII DXF"), std::string::npos);
  EXPECT_FALSE(Read_Dxf(Fixture("missing.dxf"), kDxf_Join_Tolerance, &d, &error));
  EXPECT_EQ(error, "no such file");
  // A file cut short reads what it holds; nothing it holds is a section.
  Dxf_Drawing cut;
  if (Read_Dxf(Fixture("truncated.dxf"), kDxf_Join_Tolerance, &cut, &error)) {
    for (const Dxf_Section& s : cut.sections) EXPECT_TRUE(Props(s.outline).area > 0);
  }
}

TEST(Dxf, SectionArgumentsNameTheDrawingOrOneOfItsSections) {
  std::string error;
  auto all = Resolve_Sections(Fixture("entities.dxf"), &error);
  EXPECT_EQ(all.size(), 7u) << error;
  auto third = Resolve_Sections(Fixture("entities.dxf") + ":3", &error);
  ASSERT_EQ(third.size(), 1u) << error;
  EXPECT_EQ(third[0]->name, "lwpoly@440,20");
  EXPECT_TRUE(Resolve_Section(Fixture("inches.dxf"), &error));
  EXPECT_FALSE(Resolve_Section(Fixture("entities.dxf"), &error));
  EXPECT_NE(error.find("holds 7 sections"), std::string::npos) << error;
  EXPECT_TRUE(Resolve_Sections(Fixture("entities.dxf") + ":8", &error).empty());
  EXPECT_TRUE(Resolve_Sections(Fixture("entities.dxf") + ":0", &error).empty());
  EXPECT_TRUE(Resolve_Sections(Fixture("gaps.dxf"), &error).empty());
  EXPECT_NE(error.find("open outline"), std::string::npos) << error;
}

// Reads a drawing given as text (written to a scratch file).
Dxf_Drawing Read_Text(const std::string& text) {
  std::string path = (std::filesystem::temp_directory_path() /
                      ("tessaline_dxf_" + std::to_string(::getpid()) + ".dxf"))
                         .string();
  std::ofstream(path, std::ios::binary) << text;
  Dxf_Drawing d;
  std::string error;
  EXPECT_TRUE(Read_Dxf(path, kDxf_Join_Tolerance, &d, &error)) << error;
  std::filesystem::remove(path);
  return d;
}

bool Has_Problem(const Dxf_Drawing& d, const std::string& what) {
  for (const std::string& p : d.problems)
    if (p.find(what) != std::string::npos) return true;
  return false;
}

// Blocks that insert each other several times over, and a block inserted
// in itself: refused with a problem each, in bounded time, and the rest of
// the drawing still read.
TEST(Dxf, BlocksThatMultiplyOrInsertThemselvesAreRefused) {
  auto insert = [](const std::string& block, double x, int copies) {
    return "0\nINSERT\n8\n0\n2\n" + block + "\n10\n" + std::to_string(x) + "\n20\n0\n30\n0\n70\n" +
           std::to_string(copies) + "\n71\n" + std::to_string(copies) + "\n44\n1\n45\n1\n";
  };
  auto square = [](const std::string& layer, double x) {
    return "0\nLWPOLYLINE\n8\n" + layer + "\n90\n4\n70\n1\n10\n" + std::to_string(x) +
           "\n20\n0\n10\n" + std::to_string(x + 10) + "\n20\n0\n10\n" + std::to_string(x + 10) +
           "\n20\n10\n10\n" + std::to_string(x) + "\n20\n10\n";
  };
  auto block = [](const std::string& name, const std::string& body) {
    return "0\nBLOCK\n8\n0\n2\n" + name + "\n70\n0\n10\n0\n20\n0\n30\n0\n" + body +
           "0\nENDBLK\n8\n0\n";
  };
  std::string blocks = block("SELF", square("0", 0) + insert("SELF", 20, 1));
  for (int i = 0; i < 12; ++i) {
    std::string next = "L" + std::to_string(i + 1);
    blocks += block("L" + std::to_string(i), insert(next, 0, 10) + insert(next, 50, 10));
  }
  blocks += block("L12", "");
  std::string text = "0\nSECTION\n2\nBLOCKS\n" + blocks + "0\nENDSEC\n0\nSECTION\n2\nENTITIES\n" +
                     square("plain", -500) + insert("SELF", 1000, 1) + insert("L0", 5000, 1) +
                     "0\nENDSEC\n0\nEOF\n";
  Dxf_Drawing d = Read_Text(text);
  EXPECT_TRUE(Has_Problem(d, "INSERT of block SELF refused: the block inserts itself"));
  EXPECT_TRUE(Has_Problem(d, "the blocks expand to more than"));
  ASSERT_GE(d.sections.size(), 2u);
  EXPECT_EQ(d.sections[0].name, "plain@-495,5");
  EXPECT_EQ(d.sections[1].name, "0@1005,5");  // the block's own square, placed once
}

// Angles of any size end in time: a turn is never stepped through.
TEST(Dxf, ArcAndEllipseAnglesOfAnySize) {
  auto entities = [](const std::string& body) {
    return "0\nSECTION\n2\nENTITIES\n" + body + "0\nENDSEC\n0\nEOF\n";
  };
  auto line = [](const char* layer, double x1, double x2) {
    return std::string("0\nLINE\n8\n") + layer + "\n10\n" + std::to_string(x1) +
           "\n20\n0\n30\n0\n11\n" + std::to_string(x2) + "\n21\n0\n31\n0\n";
  };
  // A half circle r 10 from 0 to 180 degrees, written 2.8e9 turns apart,
  // closed by its diameter.
  Dxf_Drawing a = Read_Text(
      entities("0\nARC\n8\na\n10\n0\n20\n0\n30\n0\n40\n10\n50\n-999999999720\n51\n999999999900\n" +
               line("a", -10, 10)));
  ASSERT_EQ(a.sections.size(), 1u);
  EXPECT_NEAR(Props(a.sections[0].outline).area, kPi * 50,
              1e-5 * kPi * 50);  // digits lost to 1e12 degrees
  // An ellipse's end angle 1e12 turns on.
  Dxf_Drawing e = Read_Text(
      entities("0\nELLIPSE\n8\ne\n10\n0\n20\n0\n30\n0\n11\n15\n21\n0\n31\n0\n40\n1\n41\n0\n42\n" +
               std::to_string(2 * kPi * 1e12 + kPi) + "\n" + line("e", -15, 15)));
  EXPECT_EQ(e.sections.size() + e.problems.size(), 1u);
}

}  // namespace
}  // namespace tessaline::app
