// tessaline draw <section> -o out.png: a picture of the section.
#include <cstdio>
#include <iostream>
#include <nlohmann/json.hpp>

#include "analysis.h"
#include "cli_common.h"
#include "picture.h"

namespace tessaline::cli {

namespace {

struct Draw_Args {
  std::string section;
  std::string output;
  std::string stress;
  std::string size = "800x600";
  bool mesh = false;
  bool json = false;
  int elements = 2000;
};

int Run_Draw(const Draw_Args& a) {
  app::Picture_Options o;
  if (std::sscanf(a.size.c_str(), "%dx%d", &o.width, &o.height) != 2)
    throw Bad_Input("--size " + a.size + ": expected WIDTHxHEIGHT in pixels");
  o.mesh = a.mesh;
  o.torsion_stress = a.stress == "torsion";
  o.elements = a.elements;
  auto section = Load_Section(a.section);
  app::Analyze_Options options;
  options.torsion = false;
  app::Section_Result r;
  std::string error;
  if (!app::Analyze_Section(*section, options, &r, &error))
    throw Bad_Input(a.section + ": " + error);
  if (!app::Write_Section_Picture(*section, r, o, a.output, &error))
    throw Bad_Input(a.output + ": " + error);
  if (a.json) {
    nlohmann::ordered_json j;
    j["section"] = r.name;
    j["picture"] = a.output;
    std::cout << j.dump(2) << "\n";
  } else {
    std::cout << "picture written to " << a.output << "\n";
  }
  return 0;
}

}  // namespace

void Add_Draw(CLI::App& app, Action* action) {
  auto args = std::make_shared<Draw_Args>();
  CLI::App* cmd = app.add_subcommand(
      "draw",
      "A PNG picture of the section: filled with its holes, centroid and principal axes, "
      "bounding-box dimensions in mm");
  cmd->add_option("section", args->section, "geometry file, library entry or designation")
      ->required();
  cmd->add_option("-o,--output", args->output, "PNG file to write")->required();
  cmd->add_flag("--mesh", args->mesh, "draw the finite-element split");
  cmd->add_option("--stress", args->stress, "colour by a stress: torsion")
      ->check(CLI::IsMember({"torsion"}));
  cmd->add_option("--elements", args->elements, "elements of the split for --mesh and --stress")
      ->check(CLI::Range(10, 200000));
  cmd->add_option("--size", args->size, "picture size in pixels, WIDTHxHEIGHT (800x600)");
  cmd->add_flag("--json", args->json, "machine-readable output");
  cmd->callback([args, action] { *action = [args] { return Run_Draw(*args); }; });
}

}  // namespace tessaline::cli
