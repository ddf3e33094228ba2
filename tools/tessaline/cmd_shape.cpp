// tessaline shape: standard shapes as drawings, their list, and our
// properties beside the published ones.
#include <cstdio>
#include <iostream>

#include "analysis.h"
#include "cli_common.h"
#include "compare.h"
#include "shape_tables.h"
#include "shapes.h"

namespace tessaline::cli {

namespace {

struct Shape_Args {
  std::string designation;
  std::string output;
  std::string family;
  bool list = false;
  bool compare = false;
  bool json = false;
};

bool Same_Family(const app::Shape_Row& row, const std::string& family) {
  auto lower = [](std::string s) {
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
  };
  std::string f = lower(family);
  return f.empty() || lower(row.Family()) == f || lower(row.kind) == f || lower(row.table) == f;
}

int List(const Shape_Args& a) {
  std::vector<const app::Shape_Row*> rows;
  for (const auto& row : app::Shape_Rows())
    if (Same_Family(row, a.family)) rows.push_back(&row);
  if (rows.empty()) {
    std::string known;
    for (const auto& f : app::Shape_Families()) known += (known.empty() ? "" : ", ") + f;
    throw Bad_Input("--list " + a.family + ": unknown family (families: " + known + ")");
  }
  if (a.json) {
    nlohmann::json out = nlohmann::json::array();
    for (const auto* r : rows)
      out.push_back({{"designation", r->designation}, {"family", r->Family()}});
    std::cout << out.dump(2) << "\n";
  } else {
    for (const auto* r : rows) std::cout << r->designation << "\n";
  }
  return 0;
}

int Compare(const Shape_Args& a) {
  const app::Shape_Row* row = app::Find_Shape(a.designation);
  if (!row) throw Bad_Input(a.designation + ": not a designation of the shape tables");
  auto section = Load_Section(a.designation);
  app::Section_Result r;
  std::string error;
  Terminal_Progress progress(a.designation);
  app::Analyze_Options options;
  options.progress = &progress;
  if (!app::Analyze_Section(*section, options, &r, &error))
    throw Bad_Input(a.designation + ": " + error);
  auto rows = app::Compare_With_Published(*row, r);
  if (a.json) {
    nlohmann::json out = nlohmann::json::array();
    for (const auto& c : rows) {
      nlohmann::json j = {{"property", c.property}, {"published", c.published}};
      j["ours"] = std::isfinite(c.ours) ? nlohmann::json(c.ours) : nlohmann::json(nullptr);
      j["relative"] =
          std::isfinite(c.relative) ? nlohmann::json(c.relative) : nlohmann::json(nullptr);
      out.push_back(j);
    }
    std::cout << nlohmann::json{{"designation", row->designation},
                                {"family", row->Family()},
                                {"properties", out}}
                     .dump(2)
              << "\n";
    return 0;
  }
  std::printf("%s (%s), mm units\n%-9s %16s %16s %10s\n", row->designation.c_str(),
              row->Family().c_str(), "property", "ours", "published", "ours/pub-1");
  for (const auto& c : rows) {
    char diff[32] = "-";
    if (std::isfinite(c.relative)) std::snprintf(diff, sizeof diff, "%+.3f %%", 100 * c.relative);
    std::printf("%-9s %16.6g %16.6g %10s\n", c.property.c_str(), c.ours, c.published, diff);
  }
  return 0;
}

int Run_Shape(const Shape_Args& a) {
  if (a.list) return List(a);
  if (a.designation.empty()) throw Bad_Input("shape: give a designation, or --list");
  if (a.compare) return Compare(a);
  auto section = Load_Section(a.designation);  // checks that it draws
  if (a.output.empty()) throw Bad_Input("shape " + a.designation + ": give -o section.wgf");
  return Write_Geometry(*section, a.output);
}

}  // namespace

void Add_Shape(CLI::App& app, Action* action) {
  auto args = std::make_shared<Shape_Args>();
  CLI::App* cmd = app.add_subcommand(
      "shape",
      "A standard shape as a drawing of segments and arcs, the list of designations, "
      "or its properties beside the published ones");
  cmd->add_option("designation", args->designation, "IPE300, HEB200, W14X90, RHS200x100x8 ...");
  cmd->add_option("-o,--output", args->output, "geometry file to write (section.wgf)");
  cmd->add_option("--list", args->family, "list the designations (of one family: IPE, W, SHS ...)")
      ->expected(0, 1);
  cmd->add_flag("--compare", args->compare, "our properties beside the published ones");
  cmd->add_flag("--json", args->json, "machine-readable output");
  cmd->callback([args, action, cmd] {
    args->list = cmd->count("--list") > 0;
    *action = [args] { return Run_Shape(*args); };
  });
}

}  // namespace tessaline::cli
