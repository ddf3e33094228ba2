#include "library_file.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>

#include "output_file.h"

namespace tessaline::app {

namespace fs = std::filesystem;

bool Library::Open(const std::string& path, bool create, std::string* error) {
  std::error_code ec;
  if (!fs::exists(path, ec)) {
    if (!create) {
      *error = "no such file";
      return false;
    }
  } else if (!fs::is_regular_file(path, ec)) {
    *error = "not a regular file";
    return false;
  }
  CString p(path);
  try {
    if (!lib_.Load(p)) {
      *error = fs::exists(path, ec) ? "not a section library (no library signature)"
                                    : "cannot be created";
      return false;
    }
  } catch (const CFileException&) {
    *error = "read error, or not a section library";
    return false;
  }
  return true;
}

std::vector<std::string> Library::Names() {
  std::vector<std::string> out;
  if (Count() == 0) return out;
  CStringArray names;
  try {
    lib_.GetSectionNames(names, 0, Count() - 1);
  } catch (const std::exception&) {
    return out;
  }
  out.assign(names.begin(), names.end());
  return out;
}

int Library::Find(const std::string& name, std::string* error) {
  std::vector<std::string> names = Names();
  for (size_t i = 0; i < names.size(); ++i)
    if (names[i] == name) return static_cast<int>(i);
  char* end = nullptr;
  long n = std::strtol(name.c_str(), &end, 10);
  if (!name.empty() && *end == 0 && n >= 1 && n <= Count()) return static_cast<int>(n - 1);
  *error = "no section '" + name + "' in the library";
  return -1;
}

std::unique_ptr<Section> Library::Get(int index, std::string* error) {
  auto s = std::make_unique<Section>();
  CBeamCrosSect record(&s->geo);
  try {
    if (index < 0 || index >= Count() || !lib_.GetSection(record, index)) {
      *error = "section " + std::to_string(index + 1) + " cannot be read";
      return nullptr;
    }
  } catch (const std::exception&) {
    *error = "corrupt library: section " + std::to_string(index + 1) + " cannot be read";
    return nullptr;
  }
  s->name = record.GetName();
  if (s->surface.outer_count <= 0 && !File_Surface(s.get(), error)) return nullptr;
  return s;
}

bool Library::Params(int index, tagGeometryParams* params, std::string* error) {
  try {
    if (lib_.GetGeometryParams(index, *params)) return true;
  } catch (const std::exception&) {
  }
  *error = "corrupt library: the parameters of section " + std::to_string(index + 1);
  return false;
}

bool Library::Preview_Png(int index, const std::string& path, std::string* error) {
  CDIBitmap dib;
  try {
    if (!lib_.GetPreviewBitmap(dib, index) || !dib.GetBitmapHandle()) {
      *error = "the library holds no preview for this section";
      return false;
    }
  } catch (const std::exception&) {
    *error = "corrupt library: the preview cannot be read";
    return false;
  }
  return Write_Atomically(
      path,
      [&](const std::string& temp, std::string* why) {
        if (WriteBitmapPng(dib.GetBitmapHandle(), temp.c_str())) return true;
        *why = "the PNG could not be written";
        return false;
      },
      error);
}

bool Library::Add(Section& s, bool replace, std::string* error) {
  if (s.name.empty() || s.name.size() > 39) {
    *error = "a library name must have 1 to 39 characters: '" + s.name + "'";
    return false;
  }
  std::string ignored;
  int existing = Find(s.name, &ignored);
  if (existing >= 0 && Names()[existing] != s.name) existing = -1;  // a number, not a name
  if (existing >= 0 && !replace) {
    *error = "the library already holds '" + s.name + "' (use --replace)";
    return false;
  }
  surface_geometry g{};
  if (!Calc_Exact_Surface_Param(&s.surface, &g)) {
    *error = "'" + s.name + "' cannot be integrated";
    return false;
  }
  s.geo.geom = g;
  CBeamCrosSect record(&s.geo);
  record.SetName(s.name.c_str());
  record.ReadFromSurfGeom(&g);
  int ok = existing >= 0 ? lib_.SafeReplaceSection(record, existing) : lib_.SafeAddSection(record);
  if (!ok) *error = lib_.GetLastErrorText();
  return ok != 0;
}

bool Library::Remove(int index, std::string* error) {
  if (lib_.SafeRemoveSection(index)) return true;
  *error = lib_.GetLastErrorText();
  return false;
}

std::string Find_Default_Library(const std::string& program_dir) {
  std::error_code ec;
  if (const char* ini = std::getenv("TESSALINE_INI")) {
    char buf[1024] = {0};
    GetPrivateProfileStringA("Library", "Path", "", buf, sizeof buf, ini);
    if (buf[0] && fs::exists(buf, ec)) return buf;
  }
  for (fs::path p : {fs::path(program_dir) / "deflib.slb",
                     fs::path(program_dir) / ".." / "share" / "tessaline" / "deflib.slb"})
    if (fs::exists(p, ec)) return p.lexically_normal().string();
  return "";
}

}  // namespace tessaline::app

namespace tessaline::app {

std::string Program_Dir() {
  std::error_code ec;
  fs::path exe = fs::read_symlink("/proc/self/exe", ec);
  return ec ? std::string(".") : exe.parent_path().string();
}

std::string Library_Path(const std::string& path) {
  std::error_code ec;
  if (path != "deflib.slb" || fs::exists(path, ec)) return path;
  std::string found = Find_Default_Library(Program_Dir());
  return found.empty() ? path : found;
}

}  // namespace tessaline::app
