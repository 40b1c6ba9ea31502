#include "voice/VoiceMeasures.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <numbers>
#include <utility>

#include "base/Arithmetic.h"
#include "dsp/Clones.h"
#include "dsp/Fft.h"
#include "pitch/PitchBands.h"

namespace parlowen {
namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

// Marks: (1 + cos(π·k/4))/8, whose sum over −3..3 is 1.
constexpr std::array<double, 4> kMarkTaps{0.25, 0.21338834764831845, 0.125, 0.03661165235168155};

constexpr double kMatchFactor = 1.2;  // of the period expected, on either side
constexpr double kLeastMatch = 0.3;   // r
constexpr double kMostPeriodFactor = 1.3, kMostPeakFactor = 1.6;

// Correlation
constexpr double kLeastPeriod = 4;  // samples
constexpr double kLagShare = 0.02;  // of the period, on either side
constexpr double kWindowPeriods = 2;
constexpr int kSincReach = 8;  // lags on either side
constexpr int kSteps = 8;      // places a lag
constexpr double kLeastR = 1e-5;
constexpr int kApart = 8;  // sums that are kept apart, so that they add in vectors

// Spectrum
constexpr double kFrameSeconds = 0.0512;
constexpr int kShortestFrame = 16;
constexpr double kLeastPower = 1e-9;  // under any that samples of 16 bits have
constexpr double kLineFrom = 0.001;   // seconds

double Smoothed(SampleSpan samples, std::int64_t at) {
  double sum = kMarkTaps[0] * samples.At(at);
  for (int k = 1; k < static_cast<int>(kMarkTaps.size()); ++k)
    sum += kMarkTaps[static_cast<std::size_t>(k)] * (samples.At(at - k) + samples.At(at + k));
  return sum;
}

/// Where the parabola through three values has its top, −0.5..0.5 from the middle one, and how high that is.
struct Top {
  double shift = 0, value = 0;
};
Top TopOf(double before, double middle, double behind) {
  const double curve = before - 2 * middle + behind;
  if (!(curve < 0)) return {0, middle};
  const double shift = std::clamp(0.5 * (before - behind) / curve, -0.5, 0.5);
  return {shift, middle - 0.25 * (before - behind) * shift};
}

/// Sums of products, always in this order.
PARLOWEN_INLINE double Product(const double* a, const double* b, int count) {
  double sums[kApart] = {};
  int i = 0;
  for (; i + kApart <= count; i += kApart)
    for (int j = 0; j < kApart; ++j) sums[j] += a[i + j] * b[i + j];
  double total = ((sums[0] + sums[4]) + (sums[2] + sums[6])) + ((sums[1] + sums[5]) + (sums[3] + sums[7]));
  for (; i < count; ++i) total += a[i] * b[i];
  return total;
}

/// r of the windows at x and at x + lag, lag = first .. first + lags − 1.
PARLOWEN_CLONES void Correlate(const double* x, int width, int first, int lags, double* r) {
  const double own = Product(x, x, width);
  double other = Product(x + first, x + first, width);
  for (int i = 0; i < lags; ++i) {
    const double* y = x + first + i;
    const double energy = own * other;
    r[i] = energy > 0 ? Product(x, y, width) / std::sqrt(energy) : 0.0;
    other = std::max(0.0, other + y[width] * y[width] - y[0] * y[0]);
  }
}

/// Windowed sinc (raised cosine) for the places step/kSteps between two lags, step = 1 .. kSteps − 1.
using SincTaps = std::array<std::array<double, 2 * kSincReach>, kSteps>;
const SincTaps& Sincs() {
  static const SincTaps kTaps = [] {
    SincTaps taps{};
    for (std::size_t step = 1; step < kSteps; ++step)
      for (std::size_t k = 0; k < 2 * kSincReach; ++k) {
        const double x = static_cast<double>(k) - (kSincReach - 1) - static_cast<double>(step) / kSteps;
        const double angle = std::numbers::pi * x;
        taps[step][k] = std::sin(angle) / angle * (0.5 + 0.5 * std::cos(angle / kSincReach));
      }
    return taps;
  }();
  return kTaps;
}

struct Match {
  double lag = 0, r = 0;
  bool inside = false;  ///< a maximum, not the end of the range
};

/// The lag from .. to at which `width` samples are most like themselves; the windows lie on either side of `centre`
/// where they are `middle` apart. Without their mean; between samples by a windowed sinc in steps of 1/kSteps and the
/// parabola. 1 ≤ from ≤ to.
Match BestMatch(SampleSpan samples, double centre, int middle, int width, int from, int to) {
  const int lowest = std::max(1, from - kSincReach), lags = to + kSincReach - lowest + 1;
  const std::int64_t begin = TruncateToInt64(centre) - (width + middle) / 2;
  std::vector<double> x(static_cast<std::size_t>(width + lowest + lags));
  double mean = 0;
  for (std::size_t i = 0; i < x.size(); ++i) mean += x[i] = samples.At(begin + static_cast<std::int64_t>(i));
  mean /= static_cast<double>(x.size());
  for (double& value : x) value -= mean;
  std::vector<double> r(static_cast<std::size_t>(lags));
  Correlate(x.data(), width, lowest, lags, r.data());

  const auto best = std::max_element(r.begin() + (from - lowest), r.begin() + (to - lowest) + 1);
  const auto whole = static_cast<int>(best - r.begin());
  Match match{static_cast<double>(lowest + whole), *best, lowest + whole > from && lowest + whole < to};
  if (whole < kSincReach || whole + kSincReach >= lags) return match;
  // From the whole lag before to the one behind.
  std::array<double, 2 * kSteps + 1> fine{};
  for (int step = 0; step <= 2 * kSteps; ++step) {
    const int base = whole - 1 + step / kSteps;
    double& sum = fine[static_cast<std::size_t>(step)];
    if (step % kSteps == 0) {
      sum = r[static_cast<std::size_t>(base)];
      continue;
    }
    const auto& taps = Sincs()[static_cast<std::size_t>(step % kSteps)];
    for (std::size_t k = 0; k < taps.size(); ++k)
      sum += taps[k] * r[static_cast<std::size_t>(base - (kSincReach - 1)) + k];
  }
  const auto peak = std::max_element(fine.begin() + 1, fine.end() - 1);
  const Top top = TopOf(peak[-1], peak[0], peak[1]);
  match.lag += (static_cast<double>(peak - fine.begin()) + top.shift) / kSteps - 1;
  match.r = std::min(top.value, 1.0);
  return match;
}

/// The largest smoothed value of one period about a sample, above their mean.
double PeakAbout(SampleSpan samples, int mark, int period) {
  double mean = 0;
  Top largest{0, -1e300};
  double before = Smoothed(samples, std::int64_t{mark} - period / 2 - 1),
         here = Smoothed(samples, std::int64_t{mark} - period / 2);
  for (int n = 0; n < period; ++n) {
    const double behind = Smoothed(samples, std::int64_t{mark} - period / 2 + n + 1);
    mean += here / period;
    if (here >= before && here >= behind && here > largest.value) largest = TopOf(before, here, behind);
    before = std::exchange(here, behind);
  }
  return largest.value > -1e300 ? largest.value - mean : kNone;
}

}  // namespace

VoiceCycle MeasureCycle(SampleSpan samples, int mark, double period) {
  if (!(period >= kLeastPeriod) || period > samples.count) return {kNone, kNone};
  const int width = TruncateToInt32(period + 0.5);
  VoiceCycle cycle{kNone, PeakAbout(samples, mark, width)};
  const int from = std::max(1, TruncateToInt32(period / kMatchFactor)),
            to = TruncateToInt32(period * kMatchFactor) + 1;
  // The first window about the mark.
  const Match match = BestMatch(samples, mark + width / 2, width, width, from, to);
  if (match.inside && match.r >= kLeastMatch) cycle.period = match.lag;
  return cycle;
}

Perturbation LocalPerturbation(std::span<const std::vector<VoiceCycle>> runs) {
  struct Sum {
    double values = 0, steps = 0;
    int count = 0, pairs = 0;
    double Percent() const {
      return pairs > 0 && values > 0 ? 100 * (steps / pairs) / (values / count) : kNone;
    }
    void Add(double value) {
      if (!std::isfinite(value)) return;
      values += value;
      ++count;
    }
    void Compare(double a, double b, double factor) {
      if (!(a > 0 && b > 0 && a <= factor * b && b <= factor * a)) return;
      steps += std::fabs(a - b);
      ++pairs;
    }
  } periods, peaks;
  for (const std::vector<VoiceCycle>& run : runs)
    for (std::size_t i = 0; i < run.size(); ++i) {
      periods.Add(run[i].period);
      peaks.Add(run[i].peak);
      if (i == 0) continue;
      periods.Compare(run[i - 1].period, run[i].period, kMostPeriodFactor);
      peaks.Compare(run[i - 1].peak, run[i].peak, kMostPeakFactor);
    }
  return {periods.Percent(), peaks.Percent()};
}

double PeriodCorrelation(SampleSpan samples, double centre, double period) {
  if (!(period >= kLeastPeriod) || period > samples.count) return 0;
  const int lag = TruncateToInt32(period + 0.5), width = TruncateToInt32(kWindowPeriods * period + 0.5);
  const int reach = std::max(1, TruncateToInt32(kLagShare * period + 0.5));
  return BestMatch(samples, centre, lag, width, lag - reach, lag + reach).r;
}

double HarmonicsToNoise(double r) {
  const double share = std::clamp(r, kLeastR, 1 - kLeastR);
  return Decibels(share / (1 - share));
}

VoiceSpectrum::VoiceSpectrum(int sampleRate)
    : sampleRate_(sampleRate),
      length_(std::clamp(TruncateToInt32(kFrameSeconds * sampleRate + 0.5), kShortestFrame, kLargest)),
      size_(static_cast<int>(std::bit_ceil(static_cast<unsigned>(length_)))) {
  for (int n = 0; n < length_; ++n)
    window_[static_cast<std::size_t>(n)] = 0.54 - 0.46 * std::cos(2 * std::numbers::pi * (n + 0.5) / length_);
}

void VoiceSpectrum::Take(SampleSpan samples, int centre) {
  double frame[kLargest] = {};
  const std::int64_t from = std::int64_t{centre} - length_ / 2;
  double mean = 0;
  for (int n = 0; n < length_; ++n) mean += frame[n] = samples.At(from + n);
  mean /= length_;
  for (int n = 0; n < length_; ++n) frame[n] = (frame[n] - mean) * window_[static_cast<std::size_t>(n)];
  Complex bins[kLargest / 2];
  RealFft(frame, size_, bins);
  const auto half = static_cast<std::size_t>(size_ / 2);
  for (std::size_t k = 0; k < half; ++k)
    levels_[k] = Decibels(bins[k].re * bins[k].re + bins[k].im * bins[k].im + kLeastPower);
  levels_[half] = levels_[half - 1];  // the transform does not give it
}

double VoiceSpectrum::Prominence(double lowest, double highest) const {
  double ripple[kLargest];
  const int half = size_ / 2;
  for (int k = 0; k <= half; ++k) ripple[k] = levels_[static_cast<std::size_t>(k)];
  for (int k = 1; k < half; ++k) ripple[size_ - k] = ripple[k];
  Complex bins[kLargest / 2];
  RealFft(ripple, size_, bins);

  const int first = std::max(1, TruncateToInt32(std::ceil(kLineFrom * sampleRate_)));
  const int from = std::max(first + 1, TruncateToInt32(std::ceil(sampleRate_ / highest)));
  const int to = std::min(half - 2, TruncateToInt32(sampleRate_ / lowest));
  if (to < from) return kNone;
  double cepstrum[kLargest / 2];
  double n = 0, sumX = 0, sumY = 0, sumXx = 0, sumXy = 0;
  for (int q = first; q < half; ++q) {
    const double value = bins[q].re / size_;  // even, so that it is real
    const double level = cepstrum[q] = Decibels(value * value + kLeastPower);
    n += 1;
    sumX += q;
    sumY += level;
    sumXx += static_cast<double>(q) * q;
    sumXy += q * level;
  }
  const double slope = (n * sumXy - sumX * sumY) / (n * sumXx - sumX * sumX),
               base = (sumY - slope * sumX) / n;
  int peak = from;
  for (int q = from + 1; q <= to; ++q)
    if (cepstrum[q] > cepstrum[peak]) peak = q;
  const Top top = TopOf(cepstrum[peak - 1], cepstrum[peak], cepstrum[peak + 1]);
  return top.value - (base + slope * (peak + top.shift));
}

double VoiceSpectrum::LevelNear(double frequency, double reach) const {
  const double spacing = static_cast<double>(sampleRate_) / size_;
  const double room = std::max(reach, spacing);
  const int from = std::max(1, TruncateToInt32(std::ceil((frequency - room) / spacing)));
  const int to = std::min(size_ / 2 - 1, TruncateToInt32((frequency + room) / spacing));
  if (to < from) return kNone;
  const auto peak = std::max_element(levels_.begin() + from, levels_.begin() + to + 1);
  return TopOf(peak[-1], peak[0], peak[1]).value;
}

double VoiceSpectrum::HarmonicDifference(double f0) const {
  if (!(f0 > 0) || 2.2 * f0 > sampleRate_ / 2.0) return kNone;
  return LevelNear(f0, 0.1 * f0) - LevelNear(2 * f0, 0.1 * f0);
}

}  // namespace parlowen
