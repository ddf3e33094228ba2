// tessaline analyze <section>...: properties, plastic moduli and torsion.
#include <cstdio>
#include <iostream>

#include "analysis.h"
#include "cli_common.h"

namespace tessaline::cli {

namespace {

struct Analyze_Args {
  std::vector<std::string> sections;
  bool json = false;
  bool seed = false;
  bool grid = false;
  bool no_torsion = false;
  int elements = 803;
  double gap = 1e-6;
};

std::string Cell(double v) {
  if (!std::isfinite(v)) return "-";
  char buf[32];
  std::snprintf(buf, sizeof buf, "%.6g", v);
  return buf;
}

// One row a section, columns aligned to their widest cell.
void Print_Table(const std::vector<app::Section_Result>& results) {
  const char* head[] = {"section", "A mm2",  "cx mm",  "cy mm",  "Ix mm4", "Iy mm4", "Ixy mm4",
                        "I1 mm4",  "I2 mm4", "angle",  "Wx mm3", "Wy mm3", "Zx mm3", "Zy mm3",
                        "J mm4",   "J gap",  "Cw mm6", "xs mm",  "ys mm"};
  constexpr size_t kCols = std::size(head);
  std::vector<std::vector<std::string>> rows;
  rows.emplace_back(std::begin(head), std::end(head));
  for (const auto& r : results) {
    double gap = (r.j_upper - r.j_lower) / r.j;
    rows.push_back({r.name, Cell(r.area), Cell(r.cx), Cell(r.cy), Cell(r.ixx), Cell(r.iyy),
                    Cell(r.ixy), Cell(r.i1), Cell(r.i2), Cell(r.angle),
                    Cell(std::min(r.wx_top, r.wx_bottom)), Cell(std::min(r.wy_left, r.wy_right)),
                    Cell(r.zx), Cell(r.zy), Cell(r.j), Cell(gap), Cell(r.cw), Cell(r.xs),
                    Cell(r.ys)});
  }
  std::vector<size_t> width(kCols, 0);
  for (const auto& row : rows)
    for (size_t c = 0; c < kCols; ++c) width[c] = std::max(width[c], row[c].size());
  for (const auto& row : rows) {
    std::string line;
    for (size_t c = 0; c < kCols; ++c) {
      std::string cell = row[c];
      std::string pad(width[c] - cell.size(), ' ');
      line += c == 0 ? cell + pad : "  " + pad + cell;
    }
    std::cout << line << "\n";
  }
  std::cout << "Wx, Wy: elastic moduli to the farther fibre; Zx, Zy: plastic moduli; "
               "J gap: relative gap of the bounds on J\n";
}

int Run_Analyze(const Analyze_Args& a) {
  app::Analyze_Options options;
  options.torsion = !a.no_torsion;
  options.seed = a.seed;
  options.grid = a.grid;
  options.elements = a.elements;
  options.gap = a.gap;
  // Every argument is resolved before any solve, so a bad one is reported at once.
  std::vector<std::unique_ptr<app::Section>> sections;
  for (const std::string& spec : a.sections) sections.push_back(Load_Section(spec));
  std::vector<app::Section_Result> results;
  for (size_t i = 0; i < sections.size(); ++i) {
    Terminal_Progress progress(a.sections[i]);
    options.progress = &progress;
    app::Section_Result r;
    std::string error;
    if (!app::Analyze_Section(*sections[i], options, &r, &error))
      throw Bad_Input(a.sections[i] + ": " + error);
    results.push_back(std::move(r));
    sections[i].reset();
  }
  if (a.json) {
    nlohmann::ordered_json out;
    if (results.size() == 1) {
      out = app::Result_Json(results[0]);
    } else {
      out = nlohmann::ordered_json::array();
      for (const auto& r : results) out.push_back(app::Result_Json(r));
    }
    std::cout << out.dump(2) << "\n";
  } else {
    Print_Table(results);
  }
  return 0;
}

}  // namespace

void Add_Analyze(CLI::App& app, Action* action) {
  auto args = std::make_shared<Analyze_Args>();
  CLI::App* cmd = app.add_subcommand(
      "analyze",
      "Exact section properties, plastic moduli and torsion (J with its bounds, Cw, shear "
      "centre) of each section, in mm units");
  cmd->add_option("section", args->sections, "geometry file, library entry or designation")
      ->required();
  cmd->add_flag("--json", args->json, "machine-readable output (one object, or an array)");
  cmd->add_flag("--seed", args->seed, "torsion by linear triangles instead of the high-order path");
  cmd->add_option("--elements", args->elements, "element count of the --seed path")
      ->check(CLI::Range(10, 2000000));
  cmd->add_flag("--grid", args->grid, "the --seed path on the grid split instead of the mesher");
  cmd->add_option("--gap", args->gap, "relative gap of the bounds on J to refine to")
      ->check(CLI::Range(1e-12, 0.5));
  cmd->add_flag("--no-torsion", args->no_torsion, "leave out J, Cw and the shear centre");
  cmd->callback([args, action] { *action = [args] { return Run_Analyze(*args); }; });
}

}  // namespace tessaline::cli
