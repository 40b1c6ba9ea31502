#pragma once
#include <array>
#include <cstdint>

#include "dsp/Complex.h"

namespace parlowen {

// The tables of the transforms and of the decibel conversion. They are zero until InitSignalTables() has run
// and are only read afterwards.

inline constexpr int kLargestFft = 1024;

/// W[k] = cos(k·c) + j·sin(k·c) for k = 0..511 with c = -0.00613592314453125, that is -2π/1024 to nine
/// digits. Entries 512..1023 stay zero and are never read.
extern std::array<Complex, kLargestFft> TwiddleTable;

/// W[k] in steps of 1/32768, truncated toward zero: CosQ15[0] is 32768, SinQ15[256] is -32768.
extern std::array<std::int32_t, kLargestFft / 2> CosQ15;
extern std::array<std::int32_t, kLargestFft / 2> SinQ15;

/// Stage s of a transform joins pairs of FftSizes[s] points into FftSizes[s + 1].
inline constexpr std::array<std::int16_t, 11> FftSizes{1, 2, 4, 8, 16, 32, 64, 128, 256, 512, 1024};

/// True for the sizes the transforms take: the powers of two from 2 to 1024.
constexpr bool IsFftSize(int size) { return size >= 2 && size <= kLargestFft && (size & (size - 1)) == 0; }

/// Where element k of a transform of `size` points comes from before the first stage, k = 0..size-1: the bits
/// of k in reverse order. One table a size, made by InitSignalTables(). `nullptr` for any other size.
const std::int16_t* BitReverseTable(int size);

inline constexpr int kMagnitudeSteps = 500;
/// sqrt(1 + 0.002·k), k = 0..500.
extern std::array<double, kMagnitudeSteps + 1> MagnitudeTable;

/// log10 of 1 + 0.0025·k (400 entries), 2 + 0.005·k (600 entries) and 5 + 0.01·k (500 entries), one run
/// behind the other: the decade from 1 to 10 in steps that are at most 0.25 % wide.
extern std::array<double, 1500> Log10Table;

/// The twiddles in the order in which the stages read them: entry h + j is W[j·512/h], j = 0..h-1, for the
/// stage that joins pairs of h points (h = 1, 2, 4 .. 512).
template <class Number>
struct StageTwiddles {
  alignas(64) std::array<Number, kLargestFft> re;
  alignas(64) std::array<Number, kLargestFft> im;
};
extern StageTwiddles<double> stageTwiddles;
extern StageTwiddles<std::int32_t> stageTwiddlesQ15;

/// Fills every table. Called once by the program's entry routine, before anything else of this room. Returns
/// 0.
int InitSignalTables();

}  // namespace parlowen
