// A section library as the program uses it: opened only when it is one,
// changed only through the library's safe path (a change either happens
// whole or leaves the file as it was).
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <tessaline/tessaline.h>

#include "section.h"

namespace tessaline::app {

class Library {
 public:
  // Opens the library at `path`. A missing file is created (empty) only
  // when `create` is set; a file that is not a section library is refused
  // and left untouched. False with the reason.
  bool Open(const std::string& path, bool create, std::string* error);

  int Count() const { return lib_.GetCount(); }
  std::vector<std::string> Names();
  std::string Description() const { return lib_.GetHeader()->description; }

  // Index of the section named `name` (or numbered, from 1), or -1 with
  // "no section NAME in the library".
  int Find(const std::string& name, std::string* error);

  std::unique_ptr<Section> Get(int index, std::string* error);
  bool Params(int index, tagGeometryParams* params, std::string* error);
  // Writes the section's stored preview as PNG, whole or not at all.
  bool Preview_Png(int index, const std::string& path, std::string* error);

  // Adds the section under its name, or replaces the section of that name
  // when `replace` is set (an existing name without it is an error).
  bool Add(Section& section, bool replace, std::string* error);
  bool Remove(int index, std::string* error);

 private:
  CCrossSectionLibrary lib_;
};

// Where the default library "deflib.slb" is: the INI setting
// (TESSALINE_INI names the profile file, section "Library", key "Path"),
// then beside the program, then the install tree's share/tessaline.
// Empty when none of them exists.
std::string Find_Default_Library(const std::string& program_dir);

// The library a path names: the path itself when it exists or holds a
// directory part; for a bare "deflib.slb" that does not exist here, the
// default library wherever Find_Default_Library finds it.
std::string Library_Path(const std::string& path);

// The folder of the running program (from /proc/self/exe), for finding the
// default library beside it.
std::string Program_Dir();

}  // namespace tessaline::app
