// The scratch block of the library's editing operations: a new section
// block built in "temp.$$$" in the current directory, removed again on
// every way out, failure or success.
#pragma once

#include <cstdint>

#include "tessaline/library/library.h"

struct Scratch_Block {
  CFile file;
  bool created = false;  // the scratch file exists and must go

  Scratch_Block() = default;
  Scratch_Block(const Scratch_Block&) = delete;
  Scratch_Block& operator=(const Scratch_Block&) = delete;
  ~Scratch_Block();

  // Writes the record (parameters, name cut to 39 characters), the preview
  // that `preview` makes and the section's data, then the record again with
  // the block's length; leaves the file at its start. The block's length,
  // or 0 with `created` false when the scratch file cannot be made. File
  // errors throw.
  uint32_t Build(CCrossSection& section, int (*preview)(void*, CDIBitmap&, CCrossSection&),
                 void* owner);
};

// The library's protected preview maker, for the scratch builder.
struct Library_Access {
  static int Preview(void* library, CDIBitmap& dib, CCrossSection& section);
};
