// Exact 128-bit signed integers for the raster arithmetic (mapping products,
// large ellipse rows). Compilers for 64-bit targets have __int128; 32-bit
// targets (i386, wasm32) do not, and use Wide_Int, which gives the same
// results bit for bit: two's complement modulo 2^128, division truncating
// toward zero.
#pragma once

#include <cstdint>

namespace gdi {

class Wide_Int {
 public:
  constexpr Wide_Int() = default;
  constexpr Wide_Int(int64_t v)  // NOLINT: converts implicitly, as the builtin does
      : hi_(v < 0 ? ~uint64_t{0} : 0), lo_(static_cast<uint64_t>(v)) {}

  // The low bits, as a cast of the builtin gives them.
  constexpr explicit operator int64_t() const { return static_cast<int64_t>(lo_); }
  constexpr explicit operator int32_t() const { return static_cast<int32_t>(lo_); }

  friend constexpr Wide_Int operator+(Wide_Int a, Wide_Int b) {
    const uint64_t lo = a.lo_ + b.lo_;
    return Wide_Int(a.hi_ + b.hi_ + (lo < a.lo_ ? 1 : 0), lo);
  }
  friend constexpr Wide_Int operator-(Wide_Int a) { return Wide_Int(~a.hi_, ~a.lo_) + 1; }
  friend constexpr Wide_Int operator-(Wide_Int a, Wide_Int b) { return a + -b; }
  friend constexpr Wide_Int operator*(Wide_Int a, Wide_Int b) {
    const Wide_Int low = Mul_64(a.lo_, b.lo_);
    return Wide_Int(low.hi_ + a.hi_ * b.lo_ + a.lo_ * b.hi_, low.lo_);
  }
  friend constexpr Wide_Int operator/(Wide_Int a, Wide_Int b) {
    Wide_Int q, r;
    Div_Mod(a, b, q, r);
    return q;
  }
  friend constexpr Wide_Int operator%(Wide_Int a, Wide_Int b) {
    Wide_Int q, r;
    Div_Mod(a, b, q, r);
    return r;
  }
  friend constexpr bool operator==(Wide_Int a, Wide_Int b) {
    return a.hi_ == b.hi_ && a.lo_ == b.lo_;
  }
  friend constexpr bool operator<(Wide_Int a, Wide_Int b) {
    const auto ah = static_cast<int64_t>(a.hi_), bh = static_cast<int64_t>(b.hi_);
    return ah != bh ? ah < bh : a.lo_ < b.lo_;
  }
  friend constexpr bool operator>(Wide_Int a, Wide_Int b) { return b < a; }
  friend constexpr bool operator<=(Wide_Int a, Wide_Int b) { return !(b < a); }
  friend constexpr bool operator>=(Wide_Int a, Wide_Int b) { return !(a < b); }

 private:
  constexpr Wide_Int(uint64_t hi, uint64_t lo) : hi_(hi), lo_(lo) {}

  // The full product of two unsigned 64-bit values, from 32-bit halves.
  static constexpr Wide_Int Mul_64(uint64_t a, uint64_t b) {
    const uint64_t a0 = a & 0xFFFFFFFF, a1 = a >> 32, b0 = b & 0xFFFFFFFF, b1 = b >> 32;
    const uint64_t p00 = a0 * b0, p01 = a0 * b1, p10 = a1 * b0, p11 = a1 * b1;
    const uint64_t mid = (p00 >> 32) + (p01 & 0xFFFFFFFF) + (p10 & 0xFFFFFFFF);
    return Wide_Int(p11 + (p01 >> 32) + (p10 >> 32) + (mid >> 32),
                    (mid << 32) | (p00 & 0xFFFFFFFF));
  }

  // Truncating division of magnitudes, bit by bit; b != 0.
  static constexpr void Div_Mod(Wide_Int a, Wide_Int b, Wide_Int& q, Wide_Int& r) {
    const bool neg_a = static_cast<int64_t>(a.hi_) < 0, neg_b = static_cast<int64_t>(b.hi_) < 0;
    const Wide_Int n = neg_a ? -a : a, d = neg_b ? -b : b;
    Wide_Int quo, rem;
    for (int bit = 127; bit >= 0; --bit) {
      rem = Wide_Int((rem.hi_ << 1) | (rem.lo_ >> 63), rem.lo_ << 1);
      const uint64_t next = bit >= 64 ? (n.hi_ >> (bit - 64)) & 1 : (n.lo_ >> bit) & 1;
      rem.lo_ |= next;
      if (!(rem.hi_ < d.hi_ || (rem.hi_ == d.hi_ && rem.lo_ < d.lo_))) {
        rem = rem - d;
        if (bit >= 64) {
          quo.hi_ |= uint64_t{1} << (bit - 64);
        } else {
          quo.lo_ |= uint64_t{1} << bit;
        }
      }
    }
    q = neg_a != neg_b ? -quo : quo;
    r = neg_a ? -rem : rem;
  }

  uint64_t hi_ = 0;
  uint64_t lo_ = 0;
};

#ifdef __SIZEOF_INT128__
__extension__ typedef __int128 Int128;
#else
using Int128 = Wide_Int;
#endif

}  // namespace gdi
