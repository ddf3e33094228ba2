#include "output_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace tessaline::app {

namespace fs = std::filesystem;

bool Write_Atomically(const std::string& path,
                      const std::function<bool(const std::string& temp, std::string* error)>& write,
                      std::string* error) {
  fs::path target(path);
  fs::path dir = target.has_parent_path() ? target.parent_path() : fs::path(".");
  std::error_code ec;
  if (!fs::is_directory(dir, ec)) {
    *error = "no such directory: " + dir.string();
    return false;
  }
  if (fs::is_directory(target, ec)) {
    *error = "is a directory";
    return false;
  }
  // A unique name beside the target, so that the rename stays on one file system.
  std::string pattern = (dir / ("." + target.filename().string() + ".XXXXXX")).string();
  std::string temp = pattern;
  int fd = mkstemp(temp.data());
  if (fd < 0) {
    *error = std::string("cannot write in ") + dir.string() + ": " + std::strerror(errno);
    return false;
  }
  mode_t mask = umask(0);  // mkstemp makes the file private; give it the usual mode
  umask(mask);
  fchmod(fd, 0666 & ~mask);
  close(fd);
  std::string why;
  bool ok = write(temp, &why);
  if (ok && std::rename(temp.c_str(), path.c_str()) != 0) {
    why = std::string("cannot rename over it: ") + std::strerror(errno);
    ok = false;
  }
  if (!ok) {
    std::remove(temp.c_str());
    *error = why.empty() ? "could not be written" : why;
  }
  return ok;
}

}  // namespace tessaline::app
