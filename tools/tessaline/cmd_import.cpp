// tessaline import drawing.dxf -o dir/: one geometry file per section of a
// DXF drawing.
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>

#include "cli_common.h"
#include "dxf.h"
#include "section_files.h"

namespace tessaline::cli {

namespace {

struct Import_Args {
  std::string drawing;
  std::string output;
  double tolerance = app::kDxf_Join_Tolerance;
  bool json = false;
};

// Writes the sections that close and reports what does not: the drawing's
// sections are numbered as `drawing.dxf:N` numbers them, and a file is
// written only for a section whose outline closes. Exit 1 when anything
// was refused or left open (the closed sections are still written).
int Run_Import(const Import_Args& a) {
  namespace fs = std::filesystem;
  app::Dxf_Drawing drawing;
  std::string error;
  if (!app::Read_Dxf(a.drawing, a.tolerance, &drawing, &error))
    throw Bad_Input(a.drawing + ": " + error);
  if (drawing.sections.empty() && drawing.problems.empty())
    throw Bad_Input(a.drawing + ": the drawing holds no closed section");
  std::error_code ec;
  fs::create_directories(a.output, ec);
  if (!fs::is_directory(a.output, ec)) throw Bad_Input(a.output + ": not a folder");
  std::string stem = fs::path(a.drawing).stem().string();
  nlohmann::ordered_json out = nlohmann::ordered_json::array();
  for (size_t i = 0; i < drawing.sections.size(); ++i) {
    const app::Dxf_Section& d = drawing.sections[i];
    auto section = app::Section_From_Outline(d.outline, d.name, &error);
    std::string label = a.drawing + ":" + std::to_string(i + 1);
    if (!section) {
      drawing.problems.push_back(label + " (" + d.name + "): " + error);
      continue;
    }
    std::string path =
        (fs::path(a.output) / (stem + "_" + std::to_string(i + 1) + ".wgf")).string();
    // Written here rather than through Write_Geometry, which prints a line
    // of its own: one line per file below, and nothing but the list with --json.
    if (!app::Write_Geometry_File(*section, path, &error)) throw Bad_Input(path + ": " + error);
    out.push_back({{"section", label}, {"name", d.name}, {"file", path}});
    if (!a.json) std::cout << label << "  " << d.name << "  -> " << path << "\n";
  }
  if (a.json) std::cout << out.dump(2) << "\n";
  for (const std::string& p : drawing.problems)
    std::fprintf(stderr, "tessaline: %s: %s\n", a.drawing.c_str(), p.c_str());
  return drawing.problems.empty() ? 0 : 1;
}

}  // namespace

void Add_Import(CLI::App& app, Action* action) {
  auto args = std::make_shared<Import_Args>();
  CLI::App* cmd = app.add_subcommand(
      "import",
      "One geometry file per section of a DXF drawing (LINE, ARC, CIRCLE, polylines with "
      "bulges, circular ELLIPSE, blocks; SPLINE is refused), converted to mm");
  cmd->add_option("drawing", args->drawing, "the DXF drawing")->required();
  cmd->add_option("-o,--output", args->output, "folder for the geometry files")->required();
  cmd->add_option("--tolerance", args->tolerance, "ends closer than this (mm) are joined")
      ->check(CLI::Range(0.0, 1000.0));
  cmd->add_flag("--json", args->json, "list the files written as JSON");
  cmd->callback([args, action] { *action = [args] { return Run_Import(*args); }; });
}

}  // namespace tessaline::cli
