// The portable 128-bit integer that 32-bit targets use for the raster
// arithmetic, against the compiler's own where there is one.
#include <gtest/gtest.h>

#include <random>

#include "platform/wide_int.h"

namespace {

using gdi::Wide_Int;

// The low and high 64 bits of a value: (x - low) / 2^64 is exact.
std::pair<int64_t, int64_t> Halves(Wide_Int x) {
  const auto low = static_cast<int64_t>(x);
  const Wide_Int high = (x - Wide_Int(low)) / (Wide_Int(int64_t{1} << 62) * 4);
  return {low, static_cast<int64_t>(high)};
}

TEST(WideInt, AgreesWithExactArithmetic) {
  // Products of mapping operands and ellipse terms, quotients by extents.
  EXPECT_EQ(Halves(Wide_Int(INT64_MAX) * INT64_MAX),
            (std::pair<int64_t, int64_t>{1, INT64_MAX / 2}));
  EXPECT_EQ(static_cast<int64_t>(Wide_Int(-7) / 2), -3);  // truncates toward zero
  EXPECT_EQ(static_cast<int64_t>(Wide_Int(-7) % 2), -1);
  EXPECT_EQ(static_cast<int64_t>(Wide_Int(7) / -2), -3);
  EXPECT_EQ(static_cast<int32_t>(Wide_Int(int64_t{1} << 40) + 5), 5);
  EXPECT_TRUE(Wide_Int(-1) < 0 && Wide_Int(INT64_MIN) * 2 < INT64_MIN &&
              Wide_Int(INT64_MAX) + 1 > INT64_MAX);
  const Wide_Int big = Wide_Int(int64_t{1} << 56) * (int64_t{1} << 56);  // 2^112
  EXPECT_EQ(static_cast<int64_t>(big / (int64_t{1} << 60)), int64_t{1} << 52);
  EXPECT_TRUE(big % 3 == 1 && (-big) % 3 == -1);

#ifdef __SIZEOF_INT128__
  // Where the compiler has a 128-bit type, every operation matches it bit
  // for bit, so the 32-bit build rasterises exactly as the 64-bit one.
  __extension__ typedef __int128 Builtin;
  std::mt19937_64 rng(128);
  auto draw = [&]() -> int64_t {
    const int bits = static_cast<int>(rng() % 64);
    const auto v = static_cast<int64_t>(rng() >> (63 - bits));
    return rng() % 2 ? v : -v;
  };
  auto same = [](Wide_Int w, Builtin b) {
    return static_cast<int64_t>(w) == static_cast<int64_t>(b) &&
           static_cast<int64_t>((w - Wide_Int(static_cast<int64_t>(w))) /
                                (Wide_Int(int64_t{1} << 62) * 4)) ==
               static_cast<int64_t>((b - static_cast<int64_t>(b)) / (Builtin{1} << 64));
  };
  for (int i = 0; i < 20000; ++i) {
    const int64_t a = draw(), b = draw(), c = draw();
    const Wide_Int wa = Wide_Int(a) * b + c, wb = Wide_Int(b) + c;
    const Builtin ba = Builtin{a} * b + c, bb = Builtin{b} + c;
    ASSERT_TRUE(same(wa, ba)) << a << " " << b << " " << c;
    ASSERT_EQ(wa < wb, ba < bb);
    ASSERT_EQ(wa == wb, ba == bb);
    if (bb != 0) {
      ASSERT_TRUE(same(wa / wb, ba / bb)) << a << " " << b << " " << c;
      ASSERT_TRUE(same(wa % wb, ba % bb)) << a << " " << b << " " << c;
    }
  }
#endif
}

}  // namespace
