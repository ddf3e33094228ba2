#include "section_files.h"

#include <filesystem>

namespace tessaline::app {

namespace fs = std::filesystem;

bool Looks_Like_File(const std::string& arg) {
  std::error_code ec;
  if (fs::exists(arg, ec)) return true;
  if (arg.find('/') != std::string::npos) return true;
  std::string ext = fs::path(arg).extension().string();
  return ext == ".wgf" || ext == ".slb";
}

std::unique_ptr<Section> Read_Geometry_File(const std::string& path, std::string* error) {
  std::error_code ec;
  if (!fs::exists(path, ec)) {
    *error = "no such file";
    return nullptr;
  }
  *error = "geometry files cannot be read by this build";
  return nullptr;
}

std::unique_ptr<Section> Read_Library_Section(const std::string& path, const std::string&,
                                              std::string* error) {
  std::error_code ec;
  if (!fs::exists(path, ec)) {
    *error = "no such file";
    return nullptr;
  }
  *error = "section libraries cannot be read by this build";
  return nullptr;
}

}  // namespace tessaline::app
