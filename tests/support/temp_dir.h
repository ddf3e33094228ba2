// A fresh directory for a test's files, removed with everything in it at
// the end; Enter() makes it the current directory (the section library
// builds its scratch file there) until the object goes.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

class Temp_Dir {
 public:
  Temp_Dir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tessaline-XXXXXX").string();
    std::vector<char> buf(pattern.begin(), pattern.end());
    buf.push_back(0);
    if (mkdtemp(buf.data())) path_ = buf.data();
  }
  ~Temp_Dir() {
    if (!old_.empty()) std::filesystem::current_path(old_);
    std::error_code ec;
    if (!path_.empty()) std::filesystem::remove_all(path_, ec);
  }
  Temp_Dir(const Temp_Dir&) = delete;
  Temp_Dir& operator=(const Temp_Dir&) = delete;

  void Enter() {
    old_ = std::filesystem::current_path();
    std::filesystem::current_path(path_);
  }
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
  std::filesystem::path old_;
};

inline std::vector<unsigned char> Read_All(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::vector<unsigned char>(std::istreambuf_iterator<char>(in), {});
}

inline void Write_All(const std::string& path, const std::vector<unsigned char>& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(bytes.data()),
            static_cast<std::streamsize>(bytes.size()));
}
