#include "dsp/SignalTables.h"

#include <cmath>

namespace parlowen {

std::array<Complex, kLargestFft> TwiddleTable;
std::array<std::int32_t, kLargestFft / 2> CosQ15;
std::array<std::int32_t, kLargestFft / 2> SinQ15;
std::array<double, kMagnitudeSteps + 1> MagnitudeTable;
std::array<double, 1500> Log10Table;
StageTwiddles<double> stageTwiddles;
StageTwiddles<std::int32_t> stageTwiddlesQ15;

namespace {

constexpr double kTwiddleStep = -0.00613592314453125;

// The table of `size` points begins at entry `size`.
std::array<std::int16_t, 2 * kLargestFft> bitReverse;

void FillTwiddles() {
  for (std::size_t k = 0; k < kLargestFft / 2; ++k) {
    // In extended precision: the double product would already miss the last bit of the angle.
    const long double angle = static_cast<long double>(k) * static_cast<long double>(kTwiddleStep);
    TwiddleTable[k] = Complex(static_cast<double>(std::cos(angle)), static_cast<double>(std::sin(angle)));
    CosQ15[k] = static_cast<std::int32_t>(TwiddleTable[k].re * 32768.0);
    SinQ15[k] = static_cast<std::int32_t>(TwiddleTable[k].im * 32768.0);
  }
}

void FillStageTwiddles() {
  for (std::size_t half = 1; half < kLargestFft; half *= 2) {
    for (std::size_t j = 0; j < half; ++j) {
      const std::size_t k = j * (kLargestFft / 2 / half);
      stageTwiddles.re[half + j] = TwiddleTable[k].re;
      stageTwiddles.im[half + j] = TwiddleTable[k].im;
      stageTwiddlesQ15.re[half + j] = CosQ15[k];
      stageTwiddlesQ15.im[half + j] = SinQ15[k];
    }
  }
}

void FillBitReverse() {
  for (std::size_t size = 2; size <= kLargestFft; size *= 2) {
    std::int16_t* table = bitReverse.data() + size;
    const auto half = static_cast<std::int16_t>(size / 2);
    table[1] = half;
    for (std::size_t i = 1; i < size / 2; ++i) {
      table[2 * i] = static_cast<std::int16_t>(table[i] / 2);
      table[2 * i + 1] = static_cast<std::int16_t>(table[i] / 2 + half);
    }
  }
}

void FillLogarithms() {
  auto entry = Log10Table.begin();
  for (int k = 0; k < 400; ++k) *entry++ = std::log10(1.0 + 0.0025 * k);
  for (int k = 0; k < 600; ++k) *entry++ = std::log10(2.0 + 0.005 * k);
  for (int k = 0; k < 500; ++k) *entry++ = std::log10(5.0 + 0.01 * k);
}

void FillMagnitudes() {
  for (std::size_t k = 0; k <= kMagnitudeSteps; ++k) {
    MagnitudeTable[k] = std::sqrt(1.0 + 0.002 * static_cast<double>(k));
  }
}

}  // namespace

const std::int16_t* BitReverseTable(int size) { return IsFftSize(size) ? bitReverse.data() + size : nullptr; }

int InitSignalTables() {
  FillTwiddles();
  FillStageTwiddles();
  FillBitReverse();
  FillLogarithms();
  FillMagnitudes();
  return 0;
}

}  // namespace parlowen
