// tessaline library list|show|add|remove|export: section libraries, and
// geometry files written by the other subcommands.
#include <cstdio>
#include <iostream>
#include <nlohmann/json.hpp>

#include "cli_common.h"
#include "library_file.h"
#include "section_files.h"
#include "shape_tables.h"

namespace tessaline::cli {

int Write_Geometry(app::Section& section, const std::string& path) {
  std::string error;
  if (!app::Write_Geometry_File(section, path, &error)) throw Bad_Input(path + ": " + error);
  std::cout << section.name << " written to " << path << "\n";
  return 0;
}

namespace {

struct Library_Args {
  std::string file;
  std::string name;
  std::vector<std::string> sections;
  std::string output;
  std::string preview;
  bool replace = false;
  bool all_shapes = false;
  bool json = false;
};

void Open(const Library_Args& a, bool create, app::Library* lib, std::string* path) {
  *path = app::Library_Path(a.file);
  std::string error;
  if (!lib->Open(*path, create, &error)) throw Bad_Input(*path + ": " + error);
}

int List(const Library_Args& a) {
  std::string path;
  app::Library lib;
  Open(a, false, &lib, &path);
  std::vector<std::string> names = lib.Names();
  if (a.json) {
    nlohmann::ordered_json j;
    j["library"] = path;
    j["description"] = lib.Description();
    j["sections"] = names;
    std::cout << j.dump(2) << "\n";
  } else {
    for (const auto& n : names) std::cout << n << "\n";
  }
  return 0;
}

int Show(const Library_Args& a) {
  std::string path, error;
  app::Library lib;
  Open(a, false, &lib, &path);
  int index = lib.Find(a.name, &error);
  if (index < 0) throw Bad_Input(path + ": " + error);
  tagGeometryParams p;
  if (!lib.Params(index, &p, &error)) throw Bad_Input(path + ": " + error);
  if (!a.preview.empty() && !lib.Preview_Png(index, a.preview, &error))
    throw Bad_Input(a.preview + ": " + error);
  const std::pair<const char*, double> fields[] = {
      {"area", p.area},
      {"cx", p.centroid_x},
      {"cy", p.centroid_y},
      {"ixx", p.moment_x},
      {"iyy", p.moment_y},
      {"ip", p.polar_moment},
      {"i1", p.principal_moment_1},
      {"i2", p.principal_moment_2},
      {"angle", p.principal_angle},
  };
  if (a.json) {
    nlohmann::ordered_json j;
    j["name"] = lib.Names()[index];
    for (const auto& [k, v] : fields) j[k] = v;
    std::cout << j.dump(2) << "\n";
  } else {
    std::cout << lib.Names()[index] << "\n";
    for (const auto& [k, v] : fields) std::printf("  %-6s %.6g\n", k, v);
    if (!a.preview.empty()) std::cout << "preview written to " << a.preview << "\n";
  }
  return 0;
}

int Add(const Library_Args& a) {
  if (!a.name.empty() && a.sections.size() != 1)
    throw Bad_Input("--name " + a.name + ": give one section with --name");
  std::vector<std::string> sources = a.sections;
  if (a.all_shapes)
    for (const auto& row : app::Shape_Rows()) sources.push_back(row.designation);
  if (sources.empty()) throw Bad_Input("library add: give sections, or --all-shapes");
  // Every section is read before the library is touched.
  std::vector<std::unique_ptr<app::Section>> sections;
  for (const auto& source : sources) {
    sections.push_back(Load_Section(source));
    if (!a.name.empty()) sections.back()->name = a.name;
  }
  std::string path, error;
  app::Library lib;
  Open(a, true, &lib, &path);
  for (auto& s : sections) {
    if (!lib.Add(*s, a.replace, &error)) throw Bad_Input(path + ": " + error);
    if (!a.json) std::cout << s->name << " added to " << path << "\n";
  }
  return 0;
}

int Remove(const Library_Args& a) {
  std::string path, error;
  app::Library lib;
  Open(a, false, &lib, &path);
  int index = lib.Find(a.name, &error);
  if (index < 0) throw Bad_Input(path + ": " + error);
  if (!lib.Remove(index, &error)) throw Bad_Input(path + ": " + error);
  std::cout << a.name << " removed from " << path << "\n";
  return 0;
}

int Export(const Library_Args& a) {
  std::string path, error;
  app::Library lib;
  Open(a, false, &lib, &path);
  int index = lib.Find(a.name, &error);
  if (index < 0) throw Bad_Input(path + ": " + error);
  auto s = lib.Get(index, &error);
  if (!s) throw Bad_Input(path + ": " + error);
  return Write_Geometry(*s, a.output);
}

CLI::App* Sub(CLI::App* library, const char* name, const char* help,
              const std::shared_ptr<Library_Args>& args) {
  CLI::App* cmd = library->add_subcommand(name, help);
  cmd->add_option("library", args->file, "section library (.slb); deflib.slb finds the default")
      ->required();
  cmd->add_flag("--json", args->json, "machine-readable output");
  return cmd;
}

}  // namespace

void Add_Library(CLI::App& app, Action* action) {
  auto args = std::make_shared<Library_Args>();
  CLI::App* library = app.add_subcommand("library",
                                         "Section libraries (.slb): list, show, add, "
                                         "remove and export sections");
  library->require_subcommand(1);
  auto on = [action, args](int (*run)(const Library_Args&)) {
    return [action, args, run] { *action = [args, run] { return run(*args); }; };
  };
  Sub(library, "list", "the names of the sections", args)->callback(on(List));
  CLI::App* show = Sub(library, "show", "one section's parameters and preview", args);
  show->add_option("name", args->name, "section name (or its number from 1)")->required();
  show->add_option("--preview", args->preview, "write the stored preview as PNG");
  show->callback(on(Show));
  CLI::App* add = Sub(library, "add", "add sections (geometry files or designations)", args);
  add->add_option("section", args->sections, "geometry file, library entry or designation");
  add->add_flag("--all-shapes", args->all_shapes, "add every standard shape of the tables");
  add->add_option("--name", args->name, "name in the library (one section only)");
  add->add_flag("--replace", args->replace, "replace a section of the same name");
  add->callback(on(Add));
  CLI::App* remove = Sub(library, "remove", "remove a section", args);
  remove->add_option("name", args->name, "section name (or its number from 1)")->required();
  remove->callback(on(Remove));
  CLI::App* exp = Sub(library, "export", "write a section as a geometry file", args);
  exp->add_option("name", args->name, "section name (or its number from 1)")->required();
  exp->add_option("-o,--output", args->output, "geometry file to write")->required();
  exp->callback(on(Export));
}

}  // namespace tessaline::cli
