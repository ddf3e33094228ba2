#include "section_files.h"

#include <cstring>
#include <filesystem>

#include "library_file.h"
#include "output_file.h"

namespace tessaline::app {

namespace fs = std::filesystem;

// The version our geometry files are written in.
constexpr DWORD kGeometry_Version = Cross_Section_Version(10, 1);

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
  if (fs::is_directory(path, ec)) {
    *error = "is a directory";
    return nullptr;
  }
  auto s = std::make_unique<Section>();
  try {
    CFile file;
    if (!file.Open(path.c_str(), CFile::modeRead)) {
      *error = "cannot be opened";
      return nullptr;
    }
    uint32_t magic = 0;
    if (file.Read(&magic, 4) != 4 || magic != kCross_Section_Magic) {
      *error = "not a geometry file (no WGFF signature)";
      return nullptr;
    }
    if (!Read_GeoCrossSectData(file, &s->geo)) {
      *error = "corrupt geometry file (its data end early or do not hold together)";
      return nullptr;
    }
  } catch (const CFileException&) {
    *error = "read error";
    return nullptr;
  }
  s->name = s->geo.name[0] ? std::string(s->geo.name) : fs::path(path).stem().string();
  if (s->surface.outer_count <= 0 && !File_Surface(s.get(), error)) return nullptr;
  return s;
}

bool Write_Geometry_File(Section& s, const std::string& path, std::string* error) {
  std::memset(s.geo.name, 0, sizeof s.geo.name);
  std::strncpy(s.geo.name, s.name.c_str(), sizeof s.geo.name - 1);
  surface_geometry g{};
  if (Calc_Exact_Surface_Param(&s.surface, &g)) s.geo.geom = g;
  return Write_Atomically(
      path,
      [&](const std::string& temp, std::string* why) {
        try {
          CFile file;
          if (!file.Open(temp.c_str(), CFile::modeCreate | CFile::modeWrite)) {
            *why = "cannot be created";
            return false;
          }
          uint32_t magic = kCross_Section_Magic;
          file.Write(&magic, 4);
          Save_GeoCrossSectData(file, &s.geo, kGeometry_Version);
          file.Close();
          return true;
        } catch (const CFileException&) {
          *why = "write error";
          return false;
        }
      },
      error);
}

std::unique_ptr<Section> Read_Library_Section(const std::string& path, const std::string& name,
                                              std::string* error) {
  Library lib;
  if (!lib.Open(Library_Path(path), false, error)) return nullptr;
  int index = lib.Find(name, error);
  if (index < 0) return nullptr;
  return lib.Get(index, error);
}

}  // namespace tessaline::app
