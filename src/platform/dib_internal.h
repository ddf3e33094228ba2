// Palettes and DIB helpers shared by the context-state and DIB code.
#pragma once

#include <vector>

#include "platform/gdi_object.h"
#include "tessaline/platform/dib.h"

namespace gdi {

struct Palette : Object {
  Palette() : Object(Kind::palette) {}
  std::vector<PALETTEENTRY> entries;
};

// The live palette of a handle, or null.
Palette* Lookup_Palette(HGDIOBJ h);

}  // namespace gdi
