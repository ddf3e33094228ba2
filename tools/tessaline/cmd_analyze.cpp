// tessaline analyze <section>...: properties, plastic moduli and torsion.
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <iostream>
#include <thread>

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
  int jobs = 1;
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
  // Sections are resolved in order, then analysed on `jobs` threads: the
  // analysis keeps no state outside its section, and each thread takes the
  // next section not yet taken. The first failure in argument order is
  // reported, as a serial run reports it.
  std::vector<std::unique_ptr<app::Section>> sections;
  std::vector<std::string> sources;
  for (const std::string& source : a.sections)
    for (auto& section : Load_Sections(source)) {
      sections.push_back(std::move(section));
      sources.push_back(source);
    }
  std::vector<app::Section_Result> results(sections.size());
  std::vector<std::string> errors(sections.size());
  std::vector<char> ok(sections.size(), 0);
  std::atomic<size_t> next{0};
  int jobs = static_cast<int>(std::min<size_t>(std::max(a.jobs, 1), sections.size()));
  auto work = [&](bool progress_bar) {
    for (size_t i; (i = next++) < sections.size();) {
      Terminal_Progress progress(sources[i]);
      app::Analyze_Options o = options;
      o.progress = progress_bar ? &progress : nullptr;
      ok[i] = app::Analyze_Section(*sections[i], o, &results[i], &errors[i]);
    }
  };
  if (jobs <= 1) {
    work(true);
  } else {
    std::vector<std::thread> threads;
    for (int t = 0; t < jobs; ++t) threads.emplace_back(work, false);
    for (auto& t : threads) t.join();
  }
  for (size_t i = 0; i < sections.size(); ++i)
    if (!ok[i]) throw Bad_Input(sources[i] + ": " + errors[i]);
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
  cmd->add_option("--jobs,-j", args->jobs, "sections analysed at once, on as many threads")
      ->check(CLI::Range(1, 256));
  cmd->add_flag("--no-torsion", args->no_torsion, "leave out J, Cw and the shear centre");
  cmd->callback([args, action] { *action = [args] { return Run_Analyze(*args); }; });
}

}  // namespace tessaline::cli
