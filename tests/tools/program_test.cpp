// The tessaline program run as a process: what a user sees for good and bad
// input (exit code, one-line error naming the argument, no partial output,
// a library left as it was).
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <numbers>
#include <sstream>

#include "section.h"
#include "section_files.h"

namespace tessaline::app {
namespace {

namespace fs = std::filesystem;

struct Run_Result {
  int code;
  std::string out, err;
};

std::string Slurp(const fs::path& p) {
  std::ifstream in(p, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

class Program : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() /
           ("tessaline_program_" + std::to_string(::getpid()) + "_" +
            ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::create_directories(dir_);
  }
  void TearDown() override { fs::remove_all(dir_); }

  Run_Result Run(const std::string& args) {
    std::string cmd = "cd '" + dir_.string() + "' && '" TESSALINE_PROGRAM "' " + args +
                      " >stdout.txt 2>stderr.txt";
    int status = std::system(cmd.c_str());
    Run_Result r{WIFEXITED(status) ? WEXITSTATUS(status) : -1, Slurp(dir_ / "stdout.txt"),
                 Slurp(dir_ / "stderr.txt")};
    fs::remove(dir_ / "stdout.txt");
    fs::remove(dir_ / "stderr.txt");
    return r;
  }
  // Bad input: exit code 1 and one line on standard error that names `what`.
  void Expect_Bad_Input(const std::string& args, const std::string& what) {
    Run_Result r = Run(args);
    EXPECT_EQ(r.code, 1) << args << "\n" << r.err;
    EXPECT_NE(r.err.find(what), std::string::npos) << args << "\n" << r.err;
    EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << args << "\n" << r.err;
  }
  // Only the files in `keep` are in the folder (no temporary file left over).
  void Expect_Only(std::initializer_list<std::string> keep) {
    for (const auto& e : fs::directory_iterator(dir_)) {
      std::string name = e.path().filename().string();
      EXPECT_NE(std::find(keep.begin(), keep.end(), name), keep.end()) << "left over: " << name;
    }
  }
  void Write(const std::string& name, const std::string& bytes) {
    std::ofstream(dir_ / name, std::ios::binary) << bytes;
  }

  fs::path dir_;
};

TEST_F(Program, BadInputGivesOneLineAndExitCodeOne) {
  Expect_Bad_Input("analyze missing.wgf", "missing.wgf: no such file");
  Write("text.wgf", "hello, not a section\n");
  Expect_Bad_Input("analyze text.wgf", "text.wgf: not a geometry file");
  Write("cut.wgf", std::string("WGFF\x43\x47\0\0\x52\x43\0\0", 12));
  Expect_Bad_Input("analyze cut.wgf", "cut.wgf: corrupt");
  Expect_Bad_Input("analyze IPE300 IPE301", "IPE301: unknown designation");
  Expect_Bad_Input("analyze PL0x50", "PL0x50: dimensions must be positive");
  Expect_Bad_Input("draw PL-20x5 -o p.png", "PL-20x5: dimensions must be positive");
  Expect_Bad_Input("draw TUBE50x30 -o p.png", "TUBE50x30");

  // An open outline: three sides of a square saved as a geometry file.
  {
    Section open;
    open.name = "open";
    for (HGLOBAL h :
         {Create_Line(0, 0, 10, 0), Create_Line(10, 0, 10, 10), Create_Line(10, 10, 0, 10)})
      Add_Element_In_Array_by_Handle(&open.drawing, h);
    std::string error;
    ASSERT_TRUE(Write_Geometry_File(open, (dir_ / "open.wgf").string(), &error)) << error;
  }
  Expect_Bad_Input("analyze open.wgf", "open.wgf: open outline");

  Write("notalib.slb", "just text, no library\n");
  Expect_Bad_Input("library list notalib.slb", "notalib.slb: not a section library");
  Expect_Bad_Input("library add notalib.slb IPE300", "notalib.slb: not a section library");
  EXPECT_EQ(Slurp(dir_ / "notalib.slb"), "just text, no library\n");
  Expect_Bad_Input("analyze notalib.slb:IPE300", "not a section library");
  Expect_Bad_Input("library list missing.slb", "missing.slb: no such file");
  EXPECT_FALSE(fs::exists(dir_ / "missing.slb"));

  // Nothing half-written, and an existing output stays as it was.
  Write("keep.png", "old");
  Expect_Bad_Input("draw IPE301 -o keep.png", "IPE301");
  Expect_Bad_Input("shape IPE301 -o new.wgf", "IPE301");
  Expect_Bad_Input("draw IPE300 -o nodir/x.png", "no such directory");
  EXPECT_EQ(Slurp(dir_ / "keep.png"), "old");
  Expect_Only({"text.wgf", "cut.wgf", "open.wgf", "notalib.slb", "keep.png"});
}

TEST_F(Program, UsageErrorsAndHelp) {
  EXPECT_EQ(Run("").code, 2);
  EXPECT_EQ(Run("analyze").code, 2);
  EXPECT_EQ(Run("frobnicate").code, 2);
  EXPECT_EQ(Run("analyze IPE300 --elements -3").code, 2);
  for (const char* sub : {"analyze", "draw", "shape", "library", "library add"}) {
    Run_Result r = Run(std::string(sub) + " --help");
    EXPECT_EQ(r.code, 0) << sub;
    EXPECT_NE(r.out.find("Usage"), std::string::npos) << sub;
  }
}

TEST_F(Program, ShapeFileLibraryRoundTrip) {
  ASSERT_EQ(Run("shape IPE300 -o ipe.wgf").code, 0);
  Run_Result a = Run("analyze IPE300 ipe.wgf --json --no-torsion");
  ASSERT_EQ(a.code, 0) << a.err;
  auto j = nlohmann::json::parse(a.out);
  ASSERT_EQ(j.size(), 2u);
  EXPECT_EQ(j[1]["name"], "IPE300");
  EXPECT_DOUBLE_EQ(j[0]["area"].get<double>(), j[1]["area"].get<double>());
  EXPECT_DOUBLE_EQ(j[0]["ixx"].get<double>(), j[1]["ixx"].get<double>());

  ASSERT_EQ(Run("library add lib.slb ipe.wgf HEB200 PL100x10").code, 0);
  Run_Result list = Run("library list lib.slb");
  EXPECT_EQ(list.out, "IPE300\nHEB200\nPL100x10\n");
  std::string before = Slurp(dir_ / "lib.slb");
  Expect_Bad_Input("library add lib.slb HEB200", "already holds");
  EXPECT_EQ(Slurp(dir_ / "lib.slb"), before);

  Run_Result show = Run("library show lib.slb HEB200 --json --preview heb.png");
  ASSERT_EQ(show.code, 0) << show.err;
  EXPECT_NEAR(nlohmann::json::parse(show.out)["area"].get<double>(), 7808.1, 0.1);
  EXPECT_TRUE(fs::exists(dir_ / "heb.png"));

  Run_Result entry = Run("analyze lib.slb:HEB200 --json --no-torsion");
  ASSERT_EQ(entry.code, 0) << entry.err;
  EXPECT_NEAR(nlohmann::json::parse(entry.out)["iyy"].get<double>(), 2.003e7, 1e4);

  ASSERT_EQ(Run("library export lib.slb PL100x10 -o plate.wgf").code, 0);
  Run_Result plate = Run("analyze plate.wgf --json --no-torsion");
  EXPECT_DOUBLE_EQ(nlohmann::json::parse(plate.out)["area"].get<double>(), 1000);

  ASSERT_EQ(Run("library remove lib.slb IPE300").code, 0);
  EXPECT_EQ(Run("library list lib.slb").out, "HEB200\nPL100x10\n");
  Expect_Bad_Input("library remove lib.slb IPE300", "no section 'IPE300'");
}

// Import writes one geometry file per closed section of a drawing, says so
// once per file, and names what does not close without writing it.
TEST_F(Program, ImportWritesOneFilePerSectionAndReportsOpenOutlines) {
  const std::string dxf = std::string(TESSALINE_TEST_DATA) + "/dxf/";
  Run_Result r = Run("import '" + dxf + "entities.dxf' -o out");
  ASSERT_EQ(r.code, 0) << r.err;
  EXPECT_EQ(std::count(r.out.begin(), r.out.end(), '\n'), 7) << r.out;
  EXPECT_TRUE(r.err.empty()) << r.err;
  int files = 0;
  for (const auto& e : fs::directory_iterator(dir_ / "out")) {
    ++files;
    EXPECT_EQ(e.path().extension(), ".wgf") << e.path();
  }
  EXPECT_EQ(files, 7);
  EXPECT_NE(r.out.find("entities.dxf:3  lwpoly@440,20  -> out/entities_3.wgf\n"), std::string::npos)
      << r.out;
  // A file read back is the drawing's section: 80 x 40 with corners r 8.
  std::string error;
  auto third = Resolve_Section((dir_ / "out" / "entities_3.wgf").string(), &error);
  ASSERT_TRUE(third) << error;
  EXPECT_EQ(third->name, "lwpoly@440,20");
  surface_geometry g{};
  ASSERT_TRUE(Calc_Exact_Surface_Param(&third->surface, &g));
  EXPECT_NEAR(g.area, 80 * 40 - (4 - std::numbers::pi) * 64, 1e-9);
  EXPECT_NEAR(g.centroid_x, 440, 1e-9);

  // --json: the list and nothing else.
  Run_Result j = Run("import '" + dxf + "entities.dxf' -o again --json");
  ASSERT_EQ(j.code, 0) << j.err;
  auto list = nlohmann::json::parse(j.out);
  ASSERT_EQ(list.size(), 7u);
  EXPECT_EQ(list[6]["name"], "island@1050,50");
  EXPECT_EQ(list[6]["file"], "again/entities_7.wgf");

  // The gap outside the tolerance: the closed section is written, each
  // open end is named with its place and layer, and the exit code says so.
  Run_Result gaps = Run("import '" + dxf + "gaps.dxf' -o gaps");
  EXPECT_EQ(gaps.code, 1);
  EXPECT_EQ(std::count(gaps.out.begin(), gaps.out.end(), '\n'), 1) << gaps.out;
  EXPECT_NE(gaps.err.find("open outline: the end at (200, 0) on layer far"), std::string::npos)
      << gaps.err;
  EXPECT_TRUE(fs::exists(dir_ / "gaps" / "gaps_1.wgf"));
  EXPECT_FALSE(fs::exists(dir_ / "gaps" / "gaps_2.wgf"));
  // With a wider tolerance it closes.
  EXPECT_EQ(Run("import '" + dxf + "gaps.dxf' -o wide --tolerance 0.02").code, 0);
  EXPECT_TRUE(fs::exists(dir_ / "wide" / "gaps_2.wgf"));

  // Nothing closes, or nothing can be read: exit 1 and no file.
  Run_Result open = Run("import '" + dxf + "open.dxf' -o open");
  EXPECT_EQ(open.code, 1);
  EXPECT_NE(open.err.find("open outline"), std::string::npos) << open.err;
  EXPECT_TRUE(open.out.empty()) << open.out;
  EXPECT_TRUE(fs::is_empty(dir_ / "open"));
  Expect_Bad_Input("import '" + dxf + "corrupt.dxf' -o bad", "not an ASCII DXF");
  Expect_Bad_Input("import missing.dxf -o bad", "missing.dxf: no such file");
  EXPECT_FALSE(fs::exists(dir_ / "bad"));
  EXPECT_EQ(Run("import '" + dxf + "entities.dxf'").code, 2);  // no -o
}

}  // namespace
}  // namespace tessaline::app
