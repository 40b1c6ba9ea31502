#include "base/Arithmetic.h"

#include <gtest/gtest.h>

#include <limits>

namespace parlowen {
namespace {

constexpr std::int32_t kLow = INT32_MIN, kHigh = INT32_MAX;

TEST(Arithmetic, SumsDifferencesAndProductsWrapModulo32Bits) {
  for (const std::int64_t a : {std::int64_t{kLow}, std::int64_t{-65537}, std::int64_t{-1}, std::int64_t{0},
                               std::int64_t{46341}, std::int64_t{kHigh}})
    for (const std::int64_t b : {std::int64_t{kLow}, std::int64_t{-32768}, std::int64_t{1},
                                 std::int64_t{46341}, std::int64_t{kHigh}}) {
      const auto x = static_cast<std::int32_t>(a), y = static_cast<std::int32_t>(b);
      // Exact in 64 bits, then brought into the range by whole multiples of 2^32.
      const auto wrapped = [](std::int64_t exact) {
        const std::int64_t low = ((exact % 4294967296) + 4294967296) % 4294967296;
        return low > kHigh ? low - 4294967296 : low;
      };
      EXPECT_EQ(WrapAdd32(x, y), wrapped(a + b)) << a << ' ' << b;
      EXPECT_EQ(WrapSub32(x, y), wrapped(a - b)) << a << ' ' << b;
      EXPECT_EQ(WrapMul32(x, y), wrapped(a * b)) << a << ' ' << b;
    }
}

TEST(Arithmetic, TruncationIsTowardZeroAndDefinedForEveryDouble) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const struct {
    double value;
    std::int64_t wide;
    std::int32_t narrow;
  } cases[] = {
      {-1.999, -1, -1},
      {1.999, 1, 1},
      {2147483647.9, kHigh, kHigh},
      {2147483648.0, 2147483648, kHigh},
      {-2147483648.9, kLow, kLow},
      {-2147483649.0, -2147483649, kLow},
      {9223372036854774784.0, 9223372036854774784, kHigh},  // the largest double below 2^63
      {9223372036854775808.0, INT64_MAX, kHigh},
      {-9223372036854775808.0, INT64_MIN, kLow},
      {-1e300, INT64_MIN, kLow},
      {kInfinity, INT64_MAX, kHigh},
      {-kInfinity, INT64_MIN, kLow},
      {std::numeric_limits<double>::quiet_NaN(), 0, 0},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(TruncateToInt64(c.value), c.wide) << c.value;
    EXPECT_EQ(TruncateToInt32(c.value), c.narrow) << c.value;
  }
}

TEST(Arithmetic, LowBitsAndSaturationMeetAtTheLimits) {
  const struct {
    std::int64_t value;
    int low16, near16;
    std::int64_t low32, near32;
  } cases[] = {
      {32767, 32767, 32767, 32767, 32767},     {32768, -32768, 32767, 32768, 32768},
      {-32769, 32767, -32768, -32769, -32769}, {2147483648, 0, 32767, kLow, kHigh},
      {-2147483649, -1, -32768, kHigh, kLow},  {INT64_MIN, 0, -32768, 0, kLow},
      {INT64_MAX, -1, 32767, -1, kHigh},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(LowInt16(c.value), c.low16) << c.value;
    EXPECT_EQ(SaturateInt16(c.value), c.near16) << c.value;
    EXPECT_EQ(LowInt32(c.value), c.low32) << c.value;
    EXPECT_EQ(SaturateInt32(c.value), c.near32) << c.value;
  }
}

}  // namespace
}  // namespace parlowen
