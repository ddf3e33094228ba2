// The section library loader on arbitrary bytes: the header and table are
// loaded, then every section's record, preview and geometry read.
#include <tessaline/tessaline.h>

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // In memory where the machine has it: every input is written to a file.
  static const std::string path = (access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp") +
                                  std::string("/tessaline-fuzz-") + std::to_string(getpid()) +
                                  ".slb";
  {
    CFile f(path.c_str(), CFile::modeCreate | CFile::modeWrite);
    f.Write(data, static_cast<UINT>(size));
  }
  {
    CString p = path;
    CCrossSectionLibrary lib(p);
    int count = lib.GetCount() < 4 ? lib.GetCount() : 4;
    try {
      CStringArray names;
      lib.GetSectionNames(names, 0, count);
      for (int i = 0; i <= count; ++i) {
        _Cross_Section geometry;
        CBeamCrosSect s(&geometry);
        try {
          lib.GetSection(s, i);
        } catch (const std::out_of_range&) {
          // The count itself: the table's bounds check, as it always was.
        }
        geometry.Delete_Cross_Section();
        CDIBitmap dib;
        lib.GetPreviewBitmap(dib, i);
        tagGeometryParams params;
        lib.GetGeometryParams(i, params);
      }
    } catch (const CFileException&) {
    }
  }
  std::remove(path.c_str());
  return 0;
}
