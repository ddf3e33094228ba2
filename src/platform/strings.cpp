// The table of string resources that the host sets.
#include "tessaline/platform/strings.h"

#include <cstring>
#include <map>
#include <mutex>
#include <string>

#include "tessaline/host.h"

namespace {

struct Strings {
  std::mutex mutex;
  std::map<UINT, std::string> texts;
};

Strings& The_Strings() {
  static Strings s;
  return s;
}

}  // namespace

void SetStringResource(UINT id, const char* text) {
  Strings& s = The_Strings();
  std::lock_guard<std::mutex> guard(s.mutex);
  if (text) {
    s.texts[id] = text;
  } else {
    s.texts.erase(id);
  }
}

int LoadStringA(HINSTANCE, UINT id, char* buffer, int size) {
  if (!buffer || size <= 0) return 0;
  Strings& s = The_Strings();
  std::lock_guard<std::mutex> guard(s.mutex);
  auto it = s.texts.find(id);
  size_t n = it == s.texts.end() ? 0 : std::min(it->second.size(), static_cast<size_t>(size - 1));
  if (n) std::memcpy(buffer, it->second.data(), n);
  buffer[n] = 0;
  return static_cast<int>(n);
}

void ClearStringResources() {
  Strings& s = The_Strings();
  std::lock_guard<std::mutex> guard(s.mutex);
  s.texts.clear();
}
