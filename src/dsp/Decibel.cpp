#include "dsp/Decibel.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

#include "dsp/Clones.h"
#include "dsp/SignalTables.h"

// The decade d with 10^d <= x < 10^(d+1) is counted up in principle. Here it comes from the binary exponent,
// which leaves at most one power of ten to compare with; quotient, index and sum are those of the definition,
// so every result is the same to the bit.

namespace parlowen {
namespace {

constexpr double kLargestPower = 1e14;
constexpr std::array<double, 16> kPowersOfTen{1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                              1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

// The decade of 2^e, for e = 0..46 (2^46 is the last power of two below 1e14).
constexpr auto kDecadeOfExponent = [] {
  std::array<std::int32_t, 47> decades{};
  for (std::size_t e = 0; e < decades.size(); ++e) {
    const auto power = static_cast<double>(std::uint64_t{1} << e);
    std::size_t decade = 0;
    while (power >= kPowersOfTen[decade + 1]) ++decade;
    decades[e] = static_cast<std::int32_t>(decade);
  }
  return decades;
}();

// NaN fails the comparison and counts as 1.
PARLOWEN_INLINE double ClampPower(double power) {
  const double raised = power >= 1.0 ? power : 1.0;
  return raised < kLargestPower ? raised : kLargestPower;
}

PARLOWEN_INLINE std::int32_t DecadeOf(double power) {
  const auto exponent = static_cast<std::size_t>((std::bit_cast<std::uint64_t>(power) >> 52) - 1023);
  const std::int32_t decade = kDecadeOfExponent[exponent];
  return decade + (power >= kPowersOfTen[static_cast<std::size_t>(decade) + 1] ? 1 : 0);
}

// Index into Log10Table of a mantissa from 1 up to, not including, 10.
PARLOWEN_INLINE std::int32_t LogarithmIndex(double mantissa) {
  const double start = mantissa < 2.0 ? 1.0 : mantissa < 5.0 ? 2.0 : 5.0;
  const double perUnit = mantissa < 2.0 ? 400.0 : mantissa < 5.0 ? 200.0 : 100.0;
  const std::int32_t run = mantissa < 2.0 ? 0 : mantissa < 5.0 ? 400 : 1000;
  return run + static_cast<std::int32_t>(perUnit * (mantissa - start));
}

PARLOWEN_INLINE double LevelOf(std::int32_t decade, std::int32_t index, int reference) {
  const double level = 10.0 * (decade + Log10Table[static_cast<std::size_t>(index)]) - reference;
  return level < 0.0 ? 0.0 : level;
}

}  // namespace

double PowerToDb(double power, int reference) {
  const double clamped = ClampPower(power);
  const std::int32_t decade = DecadeOf(clamped);
  const double mantissa = clamped / kPowersOfTen[static_cast<std::size_t>(decade)];
  return LevelOf(decade, LogarithmIndex(mantissa), reference);
}

// Three short loops a block instead of one: the quotients and indices in the middle go four at a time, the
// look-ups before and behind them do not.
PARLOWEN_CLONES void PowersToDb(const double* powers, int count, int reference, double* levels) {
  constexpr int kBlock = 64;
  alignas(64) double mantissas[kBlock];
  alignas(64) double tens[kBlock];
  alignas(64) std::int32_t decades[kBlock];
  alignas(64) std::int32_t indexes[kBlock];
  std::fill(std::begin(mantissas), std::end(mantissas), 1.0);
  std::fill(std::begin(tens), std::end(tens), 1.0);
  for (int start = 0; start < count; start += kBlock) {
    const int here = std::min(kBlock, count - start);
    for (int i = 0; i < here; ++i) {
      mantissas[i] = ClampPower(powers[start + i]);
      decades[i] = DecadeOf(mantissas[i]);
      tens[i] = kPowersOfTen[static_cast<std::size_t>(decades[i])];
    }
    for (int i = 0; i < kBlock; ++i) indexes[i] = LogarithmIndex(mantissas[i] / tens[i]);
    for (int i = 0; i < here; ++i) levels[start + i] = LevelOf(decades[i], indexes[i], reference);
  }
}

}  // namespace parlowen
