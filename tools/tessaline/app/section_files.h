// Sections kept in files: geometry files and section-library entries.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "section.h"

namespace tessaline::app {

// True when the argument names a file rather than a designation: it
// exists, holds a path separator or ends in a file extension of ours.
bool Looks_Like_File(const std::string& arg);

// Reads a geometry file into a section (named by the file's name block, or
// its stem) and files its surface when the file holds none. Null with the
// reason in `error`.
std::unique_ptr<Section> Read_Geometry_File(const std::string& path, std::string* error);

// Writes the section as a geometry file with its exact properties and its
// name, whole or not at all. False with the reason.
bool Write_Geometry_File(Section& section, const std::string& path, std::string* error);

// Reads the entry `name` (or, for a number, that position from 1) of the
// section library `path`. Null with the reason in `error`.
std::unique_ptr<Section> Read_Library_Section(const std::string& path, const std::string& name,
                                              std::string* error);

}  // namespace tessaline::app
