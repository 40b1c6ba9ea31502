#include "dsp/FrameSpectrum.h"

#include <algorithm>
#include <cmath>

#include "base/Arithmetic.h"
#include "dsp/AnalysisWindow.h"
#include "dsp/Decibel.h"
#include "dsp/Transform.h"

// The stages of a frame spectrum:
//
//   FrameSamples     the samples in one piece, silence outside the span
//   WeightFrame      emphasis, scale and window; answers Σ|y·w|
//   PackFrame        truncation to integers, even samples as real, odd ones as imaginary parts
//   PackLoudFrame    the same where the transform could wrap: halves the frame until it does not
//   PackedPowers     transform, real split, power

namespace parlowen {

namespace detail {

constexpr int kPackedSize = kLongestFrame / 2;

// No value can pass 16 bits in any stage while the magnitudes of the frame add up to this.
constexpr double kNeverWraps = 65535.0;

// Far more than any frame needs: 16-bit samples, a boost of 4 and a sample rate of 1 Hz are 2^48.
constexpr int kMostHalvings = 64;

constexpr int kLanes = 16;

PARLOWEN_CLONES double WeightFrame(const std::int16_t* x, int length, double emphasis, double scale,
                                   double* __restrict frame) {
  for (int n = 0; n < length; ++n)
    frame[n] = (x[n + 1] - emphasis * x[n]) * scale * AnalysisWindow[static_cast<std::size_t>(n)];
  std::fill(frame + length, frame + kLongestFrame, 0.0);
  double sums[kLanes] = {};
  for (int n = 0; n < length; n += kLanes) {
    for (int lane = 0; lane < kLanes; ++lane) sums[lane] += std::fabs(frame[n + lane]);
  }
  double sum = 0.0;
  for (const double lane : sums) sum += lane;
  return sum;
}

PARLOWEN_CLONES void PackFrame(const double* __restrict frame, Planes<std::int32_t> packed) {
  std::int32_t* __restrict re = packed.re;
  std::int32_t* __restrict im = packed.im;
  for (int n = 0; n < kPackedSize; ++n) {
    re[n] = static_cast<std::int32_t>(frame[2 * n]);
    im[n] = static_cast<std::int32_t>(frame[2 * n + 1]);
  }
}

PARLOWEN_CLONES void PackedPowers(Planes<const std::int32_t> packed, double* __restrict powers) {
  PlaneBuffer<std::int32_t> first;
  PlaneBuffer<std::int32_t> second;
  alignas(64) double re[kPackedSize];
  alignas(64) double im[kPackedSize];
  const auto z = Transform(packed, kPackedSize, first.All(), second.All());
  SplitReal(z.re, z.im, kPackedSize, re, im);
  for (int k = 0; k < kPackedSize; ++k) powers[k] = re[k] * re[k] + im[k] * im[k];
}

}  // namespace detail

namespace {

using detail::kPackedSize;
using Packed = detail::PlaneBuffer<std::int32_t>;

bool Fits32(std::int64_t value) { return value >= INT32_MIN && value <= INT32_MAX; }

// Only what is turned must fit 17 bits, and in the last stage, where values are largest, that is a transform of
// every other packed value. No such transform has a value above the sum of its moduli, and truncation only makes
// values smaller.
bool CannotWrap(const double* frame) {
  double sums[2] = {0.0, 0.0};
  for (int n = 0; n < kPackedSize; ++n) {
    const double re = frame[2 * n];
    const double im = frame[2 * n + 1];
    sums[n % 2] += std::sqrt(re * re + im * im);
  }
  return sums[0] <= detail::kNeverWraps && sums[1] <= detail::kNeverWraps;
}

// The transform of the packed frame in 64 bits: true when a turned value or a sum leaves 32 bits before its
// division. (An upper value may leave them for a while: a sum that comes back is right.)
bool Wraps(const double* frame) {
  std::int64_t re[kPackedSize];
  std::int64_t im[kPackedSize];
  const std::int16_t* order = BitReverseTable(kPackedSize);
  for (int k = 0; k < kPackedSize; ++k) {
    re[k] = TruncateToInt64(frame[2 * order[k]]);
    im[k] = TruncateToInt64(frame[2 * order[k] + 1]);
    if (!Fits32(re[k]) || !Fits32(im[k])) return true;
  }
  for (int half = 1; half < kPackedSize; half *= 2) {
    const std::int32_t* cosines = stageTwiddlesQ15.re.data() + half;
    const std::int32_t* sines = stageTwiddlesQ15.im.data() + half;
    for (int group = 0; group < kPackedSize; group += 2 * half) {
      for (int j = 0; j < half; ++j) {
        const int upper = group + j;
        const int lower = upper + half;
        const std::int64_t productRe = re[lower] * cosines[j] - im[lower] * sines[j];
        const std::int64_t productIm = im[lower] * cosines[j] + re[lower] * sines[j];
        if (!Fits32(productRe) || !Fits32(productIm)) return true;
        const std::int64_t turnedRe = productRe / 32768;
        const std::int64_t turnedIm = productIm / 32768;
        re[lower] = re[upper] - turnedRe;
        im[lower] = im[upper] - turnedIm;
        re[upper] += turnedRe;
        im[upper] += turnedIm;
      }
    }
  }
  const auto fitsTwice = [](std::int64_t value) { return Fits32(2 * value); };  // the split adds two
  return !std::all_of(re, re + kPackedSize, fitsTwice) || !std::all_of(im, im + kPackedSize, fitsTwice);
}

// Returns the number of halvings.
int PackLoudFrame(double* frame, Packed& packed) {
  int halvings = 0;
  while (halvings < detail::kMostHalvings && !CannotWrap(frame) && Wraps(frame)) {
    for (int n = 0; n < kLongestFrame; ++n) frame[n] *= 0.5;
    ++halvings;
  }
  for (int n = 0; n < kPackedSize; ++n) {
    packed.re[n] = TruncateToInt32(frame[2 * n]);
    packed.im[n] = TruncateToInt32(frame[2 * n + 1]);
  }
  return halvings;
}

// `length` + 1 samples from `start`: in place where the span holds them all, else copied to `copy`.
const std::int16_t* FrameSamples(SampleSpan samples, int start, int length, std::int16_t* copy) {
  if (start >= 0 && start < samples.count - length) return samples.data + start;
  for (int n = 0; n <= length; ++n) copy[n] = samples.At(std::int64_t{start} + n);
  return copy;
}

int ReferenceOf(int frameLength, int emphasisMode, int sampleRate) {
  if (emphasisMode == 0) return 26;
  return (frameLength <= 150 ? 26 : 30) + (sampleRate < 10000 ? 8 : 0);
}

}  // namespace

int ComputeFrameSpectrum(SampleSpan samples, int start, int frameLength, int emphasisMode, int level,
                         FrameSpectrum& spectrum, const FrameContext& context) {
  const int length = std::clamp(frameLength, 0, kLongestFrame);
  const double emphasis = emphasisMode == 1 ? 0.95 : 0.9;
  const double peak = std::max(level, 1);
  const double rate = std::max(context.sampleRate, 1);
  const double scale = context.rise * 1500.0 / (peak * rate * 0.0001);

  std::int16_t copy[kLongestFrame + 1];
  alignas(64) double frame[kLongestFrame];
  Packed packed;
  const std::int16_t* x = FrameSamples(samples, start, length, copy);
  const double magnitude = detail::WeightFrame(x, length, emphasis, scale, frame);
  int halvings = 0;
  if (magnitude <= detail::kNeverWraps) {
    detail::PackFrame(frame, packed.All());
  } else {
    halvings = PackLoudFrame(frame, packed);
  }
  alignas(64) double powers[kPackedSize];
  detail::PackedPowers({packed.re, packed.im}, powers);
  if (halvings > 0) {
    for (double& power : powers) power = std::ldexp(power, 2 * halvings);
  }
  PowersToDb(powers, kPackedSize, ReferenceOf(frameLength, emphasisMode, context.sampleRate),
             spectrum.data());
  return 0;
}

}  // namespace parlowen
