#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "base/Arithmetic.h"
#include "dsp/Clones.h"
#include "dsp/Fir.h"
#include "pitch/FastPitchSteps.h"

namespace parlowen {
namespace {

constexpr int kShortestRun = 5;  // frames

// Noise
constexpr int kNoiseZeroCrossings = 20;  // a frame
constexpr double kNoiseSlope = 1000.0;   // Σ|Δy|/Σ|y| in thousandths

// Magnitudes, the sound's peak being 1000
constexpr int kFullScale = 1000;
constexpr int kUnscaledTail = 100;         // outputs at the end that do not count for the peak
constexpr std::int64_t kSilentHalf = 240;  // Σ|x| of half a frame
constexpr int kLeastMagnitude = 23;
constexpr int kSoftMagnitude = 80;  // below it a frame needs a low band
constexpr double kLeastLowBand = 19;
constexpr int kSoftStart = 25, kStartFrames = 6;  // a beginning is soft below the one, in its first frames,
constexpr int kLoudRun = 56;                      // and stays in runs whose loudest frame reaches this

// Splitting
constexpr int kLongestRun = 100, kSplitInside = 30;  // frames

struct FilterTaps {
  std::array<double, 9> taps{};
  int half = 0;
};

FilterTaps Design(int cutoff, double a, int half, int sampleRate) {
  FilterTaps filter;
  filter.half = half;
  DesignFirFilter(cutoff, a, half, 0, filter.taps.data(), sampleRate);
  return filter;
}

/// Centred symmetric filter of 2·half + 1 taps: `count` outputs from `input`, which has `half` samples on
/// either side.
template <int half>
PARLOWEN_INLINE void Convolve(const double* taps, const std::int32_t* input, int count, double* output) {
  for (int n = 0; n < count; ++n) {
    double sum = taps[half] * input[n];
    for (int k = 1; k <= half; ++k) sum += taps[half + k] * (input[n - k] + input[n + k]);
    output[n] = sum;
  }
}
PARLOWEN_CLONES void LowPass7(const double* taps, const std::int32_t* input, int count, double* output) {
  Convolve<3>(taps, input, count, output);
}
PARLOWEN_CLONES void LowPass9(const double* taps, const std::int32_t* input, int count, double* output) {
  Convolve<4>(taps, input, count, output);
}
void LowPass(const FilterTaps& filter, const std::int32_t* input, int count, double* output) {
  (filter.half == 3 ? LowPass7 : LowPass9)(filter.taps.data(), input, count, output);
}

/// y·1000/largest + 0.5, truncated and saturated at 16 bits.
PARLOWEN_CLONES void Scale(const double* y, int count, double largest, std::int32_t* output) {
  for (int n = 0; n < count; ++n) {
    const double scaled = y[n] * kFullScale / largest + 0.5;
    output[n] = static_cast<std::int32_t>(std::max(-32768.0, std::min(32767.0, scaled)));
  }
}

PARLOWEN_CLONES int CountCrossings(const std::int32_t* x, int count) {
  int crossings = 0;
  for (int n = 1; n < count; ++n) crossings += (x[n] < 0) != (x[n - 1] < 0);
  return crossings;
}

/// Σ trunc(|x|/10).
PARLOWEN_CLONES int SumTenths(const std::int32_t* x, int count) {
  int level = 0;
  for (int n = 0; n < count; ++n) level += std::abs(x[n]) / 10;
  return level;
}

bool IsNoise(const WorkingSamples& samples, const FilterTaps& filter, FrameRun run,
             std::vector<double>& filtered) {
  const int step = samples.step();
  filtered.resize(static_cast<std::size_t>(run.Length() * step));
  LowPass(filter, samples.Frame(run.first), run.Length() * step, filtered.data());
  int noisy = 0;
  for (int f = 0; f < run.Length(); ++f) {
    const double* y = filtered.data() + f * step;
    double slope = 0, sum = std::fabs(y[0]);
    for (int n = 1; n < step; ++n) {
      slope += std::fabs(y[n] - y[n - 1]);
      sum += std::fabs(y[n]);
    }
    const double divisor = sum < 1 ? slope / 2 : sum;
    if (divisor > 0 && 1000 * slope / divisor > kNoiseSlope) ++noisy;
  }
  return noisy > 2 * run.Length() / 3;
}

/// The largest |output| of a filter run but for its tail.
double LargestOutput(std::span<const double> output) {
  double largest = 0;
  for (std::size_t n = 0; n + kUnscaledTail < output.size(); ++n)
    largest = std::max(largest, std::fabs(output[n]));
  return largest;
}

/// Of each `decimation` inputs the least when the first is negative, else the largest.
template <int decimation, typename At>
void KeepExtremes(const At& at, int count, std::int32_t* output) {
  for (int n = 0; n < count; ++n) {
    const std::int32_t first = at(std::int64_t{n} * decimation);
    std::int32_t lowest = first, highest = first;
    for (int i = 1; i < decimation; ++i) {
      const std::int32_t other = at(std::int64_t{n} * decimation + i);
      lowest = std::min(lowest, other);
      highest = std::max(highest, other);
    }
    output[n] = first < 0 ? lowest : highest;
  }
}
template <typename At>
void KeepExtremes(const At& at, int decimation, int count, std::int32_t* output) {
  if (decimation == 1) KeepExtremes<1>(at, count, output);
  if (decimation == 2) KeepExtremes<2>(at, count, output);
  if (decimation == 3) KeepExtremes<3>(at, count, output);
}

void Unvoice(FastPitchFrames& frames, int first, int last) {
  for (int f = first; f <= last; ++f) frames[static_cast<std::size_t>(f)].voiced = false;
}

void DropWeakLowBand(const WorkingSamples& samples, int sampleRate, FastPitchFrames& frames) {
  const FilterTaps filter = Design(500, 0.98, 4, sampleRate);
  const int step = samples.step();
  std::vector<double> filtered(static_cast<std::size_t>(step));
  for (std::size_t f = 0; f < frames.size(); ++f) {
    FastPitchFrame& frame = frames[f];
    if (frame.magnitude < 1 || frame.magnitude >= kSoftMagnitude) continue;
    LowPass(filter, samples.Frame(static_cast<int>(f)), step, filtered.data());
    double sum = 0;
    for (const double y : filtered) sum += std::fabs(y);
    if (sum / step < kLeastLowBand) frame.voiced = false;
  }
}

void DropShortRuns(FastPitchFrames& frames) {
  for (const FrameRun run : VoicedRuns(frames))
    if (run.Length() < kShortestRun) Unvoice(frames, run.first, run.last);
}

void DropSoftStarts(FastPitchFrames& frames) {
  for (const FrameRun run : VoicedRuns(frames)) {
    int largest = 0, soft = -1;
    for (int f = run.first; f <= run.last; ++f) {
      const int magnitude = frames[static_cast<std::size_t>(f)].magnitude;
      largest = std::max(largest, magnitude);
      if (f < run.first + kStartFrames && magnitude < kSoftStart) soft = f;
    }
    if (largest < kLoudRun) Unvoice(frames, run.first, soft);
  }
}

}  // namespace

std::vector<FrameRun> VoicedRuns(const FastPitchFrames& frames) {
  std::vector<FrameRun> runs;
  const int count = static_cast<int>(frames.size());
  const auto voiced = [&](int f) { return f < count && frames[static_cast<std::size_t>(f)].voiced; };
  for (int f = 0; f < count; ++f) {
    if (!voiced(f)) continue;
    const int first = f;
    while (voiced(f + 1)) ++f;
    runs.push_back({first, f});
  }
  return runs;
}

WorkingSamples WorkingSamples::Negated() const {
  WorkingSamples negated = *this;
  for (std::int32_t& x : negated.values_) x = -x;
  return negated;
}

void Decimate(SampleSpan document, int start, int decimation, WorkingSamples& samples) {
  constexpr int kMargin = WorkingSamples::kMargin;
  const std::int64_t first = start - std::int64_t{kMargin} * decimation;
  const int count = samples.count() + 2 * kMargin;
  if (first >= 0 && first + std::int64_t{count} * decimation <= document.count) {
    KeepExtremes([x = document.data + first](std::int64_t i) { return x[i]; }, decimation, count,
                 samples.From(-kMargin));
  } else {
    KeepExtremes([&](std::int64_t i) { return document.At(first + i); }, decimation, count,
                 samples.From(-kMargin));
  }
}

void RemoveDc(std::int64_t insideFrom, std::int64_t insideEnd, WorkingSamples& samples) {
  constexpr int kMargin = WorkingSamples::kMargin;
  const int block = 2 * samples.step(), count = samples.count();
  for (int first = 0; first < count; first += block) {
    const int end = std::min(first + block, count);
    std::int64_t sum = 0;
    for (int n = first; n < end; ++n) sum += samples[n];
    const auto mean = static_cast<std::int32_t>(sum / (end - first));
    // What lies outside the document is zero already: a step there would count as the largest output.
    const int from = first == 0 ? -kMargin : first, to = end == count ? end + kMargin : end;
    const auto insideFirst = static_cast<int>(std::max<std::int64_t>(from, insideFrom));
    const auto insideLast = static_cast<int>(std::min<std::int64_t>(to, insideEnd));
    for (int n = insideFirst; n < insideLast; ++n) *samples.From(n) -= mean;
  }
}

void MeasureFrames(const WorkingSamples& samples, FastPitchFrames& frames) {
  for (std::size_t f = 0; f < frames.size(); ++f) {
    const std::int32_t* x = samples.Frame(static_cast<int>(f));
    frames[f].zeroCrossings = CountCrossings(x, samples.step());
    frames[f].level = SumTenths(x, samples.step());
  }
}

void FindNoiseRuns(const WorkingSamples& samples, int sampleRate, FastPitchFrames& frames) {
  const FilterTaps filter = Design(2000, 0.92, 3, sampleRate);
  const int count = static_cast<int>(frames.size());
  int largestLevel = 0;
  for (const FastPitchFrame& frame : frames) largestLevel = std::max(largestLevel, frame.level);
  const auto candidate = [&](int f) {
    const FastPitchFrame& frame = frames[static_cast<std::size_t>(f)];
    return frame.zeroCrossings > kNoiseZeroCrossings && frame.level < largestLevel / 2;
  };
  std::vector<double> filtered;
  for (int f = 0; f < count; ++f) {
    if (!candidate(f)) continue;
    const int first = f;
    while (f + 1 < count && candidate(f + 1)) ++f;
    if (f - first + 1 <= kShortestRun || !IsNoise(samples, filter, {first, f}, filtered)) continue;
    for (int i = first; i <= f; ++i) frames[static_cast<std::size_t>(i)].zeroCrossings = kNoiseCrossings;
  }
}

bool ScaleToThousand(int sampleRate, WorkingSamples& samples) {
  constexpr int kMargin = WorkingSamples::kMargin;
  const FilterTaps filter = Design(1000, 0.98, 3, sampleRate);
  const int count = samples.count();
  std::vector<double> filtered(static_cast<std::size_t>(count));
  LowPass(filter, samples.From(0), count, filtered.data());
  const double largest = LargestOutput(filtered);
  if (largest <= 0) return false;
  Scale(filtered.data(), count, largest, samples.From(0));
  std::fill(samples.From(-kMargin), samples.From(0), 0);
  std::fill(samples.From(count), samples.From(count + kMargin), 0);
  return true;
}

void DecideByMagnitude(const WorkingSamples& samples, FastPitchFrames& frames) {
  const int step = samples.step();
  for (std::size_t f = 0; f < frames.size(); ++f) {
    const std::int32_t* x = samples.Frame(static_cast<int>(f));
    std::int64_t first = 0, second = 0;
    for (int n = 0; n < step / 2; ++n) first += std::abs(x[n]);
    for (int n = step / 2; n < step; ++n) second += std::abs(x[n]);
    const bool halfSilent = first < kSilentHalf || second < kSilentHalf;
    FastPitchFrame& frame = frames[f];
    frame.magnitude = halfSilent ? 0 : static_cast<int>((first + second) / step);
    frame.voiced = frame.magnitude >= kLeastMagnitude && frame.zeroCrossings != kNoiseCrossings;
  }
}

void DropShortLeadIn(FastPitchFrames& frames) {
  std::size_t length = 0;
  while (length < frames.size() && frames[length].voiced) ++length;
  if (length < kShortestRun) Unvoice(frames, 0, static_cast<int>(length) - 1);
}

void CleanUpVoicing(const WorkingSamples& samples, int sampleRate, FastPitchFrames& frames) {
  DropWeakLowBand(samples, sampleRate, frames);
  DropShortRuns(frames);
  DropSoftStarts(frames);
}

void SplitLongRuns(FastPitchFrames& frames) {
  for (bool changed = true; changed;) {
    changed = false;
    for (const FrameRun run : VoicedRuns(frames)) {
      if (run.Length() <= kLongestRun) continue;
      const int quietest = QuietestFrame(frames, run.first + kSplitInside, run.last - kSplitInside);
      Unvoice(frames, quietest, quietest);
      changed = true;
    }
  }
}

void SilenceUnvoiced(const FastPitchFrames& frames, WorkingSamples& samples) {
  for (std::size_t f = 0; f < frames.size(); ++f) {
    const bool next = f + 1 < frames.size() && frames[f + 1].voiced;
    std::int32_t* x = samples.Frame(static_cast<int>(f));
    if (!frames[f].voiced && !next) std::fill(x, x + samples.step(), 0);
  }
}

}  // namespace parlowen
