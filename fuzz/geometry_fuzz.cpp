// The geometry file reader on arbitrary bytes; what it reads is written
// again, so the writer meets every structure the reader can make.
#include <tessaline/tessaline.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // A host skips the file's "WGFF" magic before it reads the geometry.
  if (size >= 4 && std::memcmp(data, "WGFF", 4) == 0) {
    data += 4;
    size -= 4;
  }
  long blocks = GlobalBlockCount();
  CMemFile in(data, size);
  _Geo_Cross_Section g;
  try {
    if (Read_GeoCrossSectData(in, &g)) {
      CMemFile out;
      Save_GeoCrossSectData(out, &g, Cross_Section_Version(9, 2));
    }
  } catch (const CFileException&) {
    // A seek before the start of the data: a file error, as on disk.
  }
  // Everything the reader made must be gone with the section.
  Free_Geo_Cross_Section(&g);
  if (GlobalBlockCount() != blocks) std::abort();
  return 0;
}
