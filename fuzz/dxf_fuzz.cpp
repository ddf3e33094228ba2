// libFuzzer target for the DXF reader: any bytes as a drawing, through the
// reader, the joining of ends and the nesting of outlines, and each section
// found filed as a surface; every block a section made must be gone with
// it. Seeds: tests/data/dxf/.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "dxf.h"
#include "section.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const std::string path = "/tmp/tessaline_dxf_fuzz_" + std::to_string(getpid()) + ".dxf";
  FILE* f = std::fopen(path.c_str(), "wb");
  if (!f) return 0;
  std::fwrite(data, 1, size, f);
  std::fclose(f);
  long blocks = GlobalBlockCount();
  {
    tessaline::app::Dxf_Drawing drawing;
    std::string error;
    if (tessaline::app::Read_Dxf(path, tessaline::app::kDxf_Join_Tolerance, &drawing, &error)) {
      for (const auto& s : drawing.sections)
        tessaline::app::Section_From_Outline(s.outline, s.name, &error);
    }
  }
  if (GlobalBlockCount() != blocks) std::abort();
  return 0;
}
