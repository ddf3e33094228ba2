// tessaline library list|show|add|remove|export: section libraries, and
// geometry files written by the other subcommands.
#include <iostream>

#include "cli_common.h"

namespace tessaline::cli {

int Write_Geometry(app::Section&, const std::string& path) {
  throw Bad_Input(path + ": this build cannot write geometry files");
}

void Add_Library(CLI::App&, Action*) {}

}  // namespace tessaline::cli
