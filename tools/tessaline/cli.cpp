#include <unistd.h>

#include <cstdio>
#include <iostream>

#include "cli_common.h"
#include "commands.h"

namespace tessaline::cli {

Terminal_Progress::Terminal_Progress(std::string label)
    : label_(std::move(label)), terminal_(isatty(STDERR_FILENO) != 0) {}

Terminal_Progress::~Terminal_Progress() {
  if (shown_) std::fprintf(stderr, "\r\033[K");
}

int Terminal_Progress::SetPos(int pos) {
  int old = CProgressDlg::SetPos(pos);
  if (terminal_ && m_nPos != old) {
    constexpr int kWidth = 30;
    int filled = m_nPos * kWidth / 100;
    std::fprintf(stderr, "\r%s [%.*s%*s] %3d%%", label_.c_str(), filled,
                 "##############################", kWidth - filled, "", m_nPos);
    std::fflush(stderr);
    shown_ = true;
  }
  return old;
}

std::unique_ptr<app::Section> Load_Section(const std::string& source) {
  std::string error;
  auto s = app::Resolve_Section(source, &error);
  if (!s) throw Bad_Input(error);
  return s;
}

std::vector<std::unique_ptr<app::Section>> Load_Sections(const std::string& source) {
  std::string error;
  auto sections = app::Resolve_Sections(source, &error);
  if (sections.empty()) throw Bad_Input(error);
  return sections;
}

int Run(int argc, char** argv) {
  CLI::App app{
      "tessaline: analyse, draw and keep cross-sections.\n"
      "A <section> is a geometry file (section.wgf), a library entry "
      "(deflib.slb:IPE300), a DXF drawing (drawing.dxf: all its sections; drawing.dxf:2: "
      "its second) or a designation (IPE300, RHS200x100x8, W14X90, "
      "PL100x50, RD40, TUBE60x5; dimensions in mm).",
      "tessaline"};
  app.require_subcommand(1);
  Action action;
  Add_Analyze(app, &action);
  Add_Shape(app, &action);
  Add_Draw(app, &action);
  Add_Library(app, &action);
  Add_Import(app, &action);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp& e) {
    return app.exit(e);
  } catch (const CLI::CallForAllHelp& e) {
    return app.exit(e);
  } catch (const CLI::ParseError& e) {
    std::fprintf(stderr, "tessaline: %s (see --help)\n", e.what());
    return 2;
  }
  try {
    return action ? action() : 2;
  } catch (const Bad_Input& e) {
    std::fprintf(stderr, "tessaline: %s\n", e.what());
    return 1;
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "tessaline: out of memory\n");
    return 1;
  }
}

}  // namespace tessaline::cli
