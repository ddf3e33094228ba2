// What the subcommands share: the error that ends the program with exit
// code 1, the progress bar, and the registration of each subcommand.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

#include <tessaline/tessaline.h>

#include "section.h"

namespace tessaline::cli {

// Bad input: the message is one line naming the file or argument and what
// is wrong with it; the program prints it and ends with exit code 1.
struct Bad_Input : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// A progress bar on standard error, drawn only when standard error is a
// terminal, so that pipes and logs stay clean.
class Terminal_Progress : public CProgressDlg {
 public:
  explicit Terminal_Progress(std::string label);
  ~Terminal_Progress() override;
  int SetPos(int pos) override;

 private:
  std::string label_;
  bool shown_ = false;
  bool terminal_;
};

// The section named by an argument, or Bad_Input.
std::unique_ptr<app::Section> Load_Section(const std::string& source);
// The sections named by an argument (a DXF drawing names all of its), or
// Bad_Input.
std::vector<std::unique_ptr<app::Section>> Load_Sections(const std::string& source);

// Writes the section's drawing as a geometry file, whole or not at all;
// Bad_Input when it cannot.
int Write_Geometry(app::Section& section, const std::string& path);

// Each registers its subcommand on `app`; when the command line selects it,
// `action` is set to the code that runs it.
using Action = std::function<int()>;
void Add_Analyze(CLI::App& app, Action* action);
void Add_Shape(CLI::App& app, Action* action);
void Add_Draw(CLI::App& app, Action* action);
void Add_Library(CLI::App& app, Action* action);
void Add_Import(CLI::App& app, Action* action);

}  // namespace tessaline::cli
