// Output files written whole or not at all.
#pragma once

#include <functional>
#include <string>

namespace tessaline::app {

// Calls `write` with the name of a fresh temporary file in the directory of
// `path`, then renames it over `path`. When `write` returns false or the
// rename fails, the temporary file is removed and `path` is left as it was.
// False with the reason in `error` (the writer's reason when it gives one).
bool Write_Atomically(const std::string& path,
                      const std::function<bool(const std::string& temp, std::string* error)>& write,
                      std::string* error);

}  // namespace tessaline::app
