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
  // Deleting a polyline or a spline leaves its parent list, as the element
  // model always has: free those here, then everything the reader made
  // must be gone.
  for (Objects_Array_Type* a : {&g.objects, &g.aux_objects}) {
    for (int i = 0; i < a->count; ++i) {
      HGLOBAL h = Get_Element_Handle_by_Index(a, i);
      int type = Get_Element_Type_by_Handle(h);
      if (type != EL_POLYLINE && type != EL_SPLINE) continue;
      auto* r = static_cast<Element_Record*>(GlobalLock(h));
      if (r && r->parents) GlobalFree(r->parents);
      GlobalUnlock(h);
    }
  }
  Free_Geo_Cross_Section(&g);
  if (GlobalBlockCount() != blocks) std::abort();
  return 0;
}
