#include "spectral/LongTermSpectrum.h"

#include <algorithm>
#include <cmath>

#include "base/Arithmetic.h"
#include "dsp/AnalysisWindow.h"
#include "dsp/Clones.h"
#include "dsp/Decibel.h"
#include "dsp/Fft.h"

namespace parlowen {
namespace {

constexpr int kFrameLength = 512;
constexpr double kFrameStep = 0.0025;  // seconds
constexpr int kReference = 35;         // dB
constexpr int kFramesPerReport = 100;

PARLOWEN_CLONES void Weight(const std::int16_t* __restrict x, const double* __restrict window,
                            double* __restrict frame) {
  for (int n = 0; n < kFrameLength; ++n) frame[n] = x[n] * window[n];
}

PARLOWEN_CLONES void Add(const double* __restrict levels, double* __restrict sums) {
  for (int k = 0; k < kLtaBins; ++k) sums[k] += levels[k];
}

}  // namespace

int ComputeLongTermSpectrum(SampleSpan samples, int sampleRate, int start, int end, LtaSpectrum& levels,
                            const LtaProgress& progress) {
  MakeAnalysisWindow(kFrameLength, 0.04);
  alignas(64) double sums[kLtaBins] = {};
  alignas(64) double powers[kLtaBins];
  alignas(64) double frame[kFrameLength];
  std::int16_t copy[kFrameLength];
  int count = 0;
  const std::int64_t last = std::int64_t{end} - sampleRate / 200;
  while (sampleRate > 0) {
    const std::int64_t at = start + TruncateToInt64(static_cast<double>(count) * sampleRate * kFrameStep);
    if (at > last) break;
    const std::int16_t* x = copy;
    if (at >= 0 && at + kFrameLength <= samples.count) {
      x = samples.data + at;
    } else {
      for (int n = 0; n < kFrameLength; ++n) copy[n] = samples.At(at + n);
    }
    Weight(x, AnalysisWindow.data(), frame);
    PowersOfReal512(frame, powers);
    PowersToDb(powers, kLtaBins, kReference, powers);
    Add(powers, sums);
    ++count;
    if (count % kFramesPerReport == 0 && progress) {
      LtaSpectrum average;
      for (std::size_t k = 0; k < average.size(); ++k) average[k] = 2 * sums[k] / count;
      progress(count, average);
    }
  }
  const double half = count / 2;
  for (std::size_t k = 0; k < levels.size(); ++k) levels[k] = sums[k] / half;
  return count;
}

bool IsFinite(const LtaSpectrum& spectrum) {
  return std::all_of(spectrum.begin(), spectrum.end(), [](double level) { return std::isfinite(level); });
}

LtaDifference CompareLongTermSpectra(const LtaSpectrum& one, const LtaSpectrum& other, int sampleRate) {
  LtaDifference difference;
  double mean = 0.0;
  for (std::size_t k = 0; k < kLtaBins; ++k) {
    difference.curve[k] = one[k] - other[k];
    mean += difference.curve[k];
  }
  mean /= kLtaBins;
  double squares = 0.0;
  double largest = 0.0;
  for (std::size_t k = 0; k < kLtaBins; ++k) {
    double& value = difference.curve[k];
    value -= mean;
    squares += value * value;
    if (std::fabs(value) > largest) {
      largest = std::fabs(value);
      difference.largestHz = static_cast<int>(static_cast<std::int64_t>(k) * sampleRate / 512);
    }
  }
  difference.deviation = 0.5 * std::sqrt(squares / kLtaBins);
  difference.largest = 0.5 * largest;
  return difference;
}

}  // namespace parlowen
