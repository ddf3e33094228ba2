// The bitmap loader on arbitrary bytes; a picture it accepts is drawn and
// saved again, and nothing it made may stay behind.
#include <tessaline/tessaline.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  long blocks = GlobalBlockCount(), objects = GdiObjectCount();
  {
    CMemFile in(data, size);
    CDIBitmap dib;
    if (dib.Load(in)) {
      HDC dc = CreateCompatibleDC(nullptr);
      HBITMAP bm = CreateCompatibleBitmap(dc, 40, 40);
      HGDIOBJ old = SelectObject(dc, bm);
      CDC cdc;
      cdc.Attach(dc);
      CRect r(-5, 3, 45, 30);
      dib.Draw(cdc, r);
      cdc.Detach();
      SelectObject(dc, old);
      DeleteObject(bm);
      DeleteDC(dc);
      CMemFile out;
      dib.Save(out);
    }
  }
  if (GlobalBlockCount() != blocks || GdiObjectCount() != objects) std::abort();
  return 0;
}
