// Little-endian field I/O over a CFile for the geometry file, and the bound
// on what a count read from the file may claim.
#pragma once

#include <cstdint>
#include <cstring>

#include "tessaline/platform/file.h"

namespace geo_io {

inline void Put32(CFile& f, uint32_t v) {
  unsigned char b[4] = {static_cast<unsigned char>(v), static_cast<unsigned char>(v >> 8),
                        static_cast<unsigned char>(v >> 16), static_cast<unsigned char>(v >> 24)};
  f.Write(b, 4);
}
inline void PutI32(CFile& f, int32_t v) {
  Put32(f, static_cast<uint32_t>(v));
}
inline void PutDouble(CFile& f, double v) {
  uint64_t u;
  std::memcpy(&u, &v, 8);
  Put32(f, static_cast<uint32_t>(u));
  Put32(f, static_cast<uint32_t>(u >> 32));
}

// A reader that remembers whether every field arrived whole.
class Reader {
 public:
  explicit Reader(CFile& f) : f_(f) {}

  // 0 when fewer than 4 bytes are left (the tag variable is cleared before
  // every read, so a short read yields 0).
  int32_t I32() {
    unsigned char b[4] = {};
    if (f_.Read(b, 4) != 4) ok_ = false;
    return static_cast<int32_t>(uint32_t{b[0]} | (uint32_t{b[1]} << 8) | (uint32_t{b[2]} << 16) |
                                (uint32_t{b[3]} << 24));
  }
  double Double() {
    uint64_t lo = static_cast<uint32_t>(I32());
    uint64_t hi = static_cast<uint32_t>(I32());
    uint64_t u = lo | (hi << 32);
    double v;
    std::memcpy(&v, &u, 8);
    return v;
  }
  void Bytes(void* p, uint32_t n) {
    if (f_.Read(p, n) != n) ok_ = false;
  }
  // True when `count` items of `size` bytes each fit in the rest of the file.
  bool Fits(int64_t count, int64_t size) {
    if (count < 0) return false;
    uint64_t len = f_.GetLength();
    uint64_t pos = f_.GetPosition();
    uint64_t left = len > pos ? len - pos : 0;
    return static_cast<uint64_t>(count) <= left / static_cast<uint64_t>(size);
  }
  bool ok() const { return ok_; }
  CFile& file() { return f_; }

 private:
  CFile& f_;
  bool ok_ = true;
};

}  // namespace geo_io
