#include "pitch/CreakPulses.h"

#include <algorithm>
#include <cmath>

#include "base/Arithmetic.h"

namespace parlowen {
namespace {

constexpr double kBlock = 0.00025;                       // seconds
constexpr double kSmoothing = 0.0013;                    // seconds of the mean that is taken twice
constexpr float kRise = 4;                               // power
constexpr double kShortest = 0.008, kLongest = 0.050;    // seconds
constexpr double kBefore = 0.002, kBehind = 0.005;       // seconds about a pulse that are compared
constexpr double kShift = 0.001;                         // seconds by which they may be moved
constexpr double kWithinFrom = 0.22, kWithinEnd = 0.62;  // of the spacing
constexpr float kSingleR = 0.7f, kSingleGain = 0.2f, kMostWithin = 0.6f;
constexpr double kStep = 0.010;                            // seconds of a power whose quantiles are taken
constexpr double kLoudShare = 0.95, kNoiseShare = 0.20;    // these
constexpr float kNoiseToLoud = 3.2e-4f, kNoiseWeight = 2;  // as of the levels of the frames

/// The mean of `width` (odd) samples about each; beyond the ends lies silence.
std::vector<float> Smoothed(const std::vector<float>& x, std::size_t width) {
  std::vector<float> y(x.size());
  const std::size_t half = width / 2;
  const double share = 1 / static_cast<double>(width);
  double sum = 0;
  for (std::size_t n = 0; n < x.size() + half; ++n) {
    if (n < x.size()) sum += static_cast<double>(x[n]);
    if (n >= width) sum -= static_cast<double>(x[n - width]);
    if (n >= half) y[n - half] = static_cast<float>(std::max(0.0, sum) * share);
  }
  return y;
}

/// What a power must be held against where nobody speaks.
float NoiseOf(const std::vector<float>& power, std::size_t step) {
  std::vector<float> means;
  means.reserve(power.size() / step + 1);
  for (std::size_t first = 0; first + step <= power.size(); first += step) {
    float sum = 0;
    for (std::size_t n = first; n < first + step; ++n) sum += power[n];
    means.push_back(sum / static_cast<float>(step));
  }
  if (means.empty()) return 0;
  const auto quantile = [&means](double share) {
    const auto place =
        means.begin() + static_cast<std::ptrdiff_t>(share * static_cast<double>(means.size() - 1));
    std::nth_element(means.begin(), place, means.end());
    return *place;
  };
  return kNoiseWeight * std::min(quantile(kNoiseShare), kNoiseToLoud * quantile(kLoudShare));
}

/// Samples that one value of the short-time power stands for.
std::size_t BlockOf(const PitchBands& bands) {
  return static_cast<std::size_t>(std::max(1, TruncateToInt32(bands.rate() * kBlock)));
}

/// Short-time power of the slope of the 2 kHz band, which is steepest where the folds close; the noise added.
std::vector<float> SlopePower(const PitchBands& bands) {
  const std::vector<float>& x = bands.wide.samples;
  const std::size_t block = BlockOf(bands);
  std::vector<float> power((x.size() - 1) / block);
  for (std::size_t b = 0; b < power.size(); ++b) {
    for (std::size_t n = b * block; n < (b + 1) * block; ++n)
      power[b] += (x[n + 1] - x[n]) * (x[n + 1] - x[n]);
  }
  const double rate = bands.rate() / static_cast<double>(block);
  const auto width = static_cast<std::size_t>(TruncateToInt32(rate * kSmoothing)) | 1;
  power = Smoothed(Smoothed(power, width), width);
  const float noise =
      NoiseOf(power, static_cast<std::size_t>(std::max(1, TruncateToInt32(rate * kStep)))) + 1;
  for (float& own : power) own += noise;
  return power;
}

/// Peaks of the power with a rise and a fall by kRise on either side, in samples.
std::vector<std::size_t> FindPulses(const PitchBands& bands) {
  const std::vector<float> power = SlopePower(bands);
  const std::size_t block = BlockOf(bands);
  std::vector<std::size_t> pulses;
  bool rising = true;
  std::size_t turn = 0;  // where the highest of this rise or the lowest of this fall lies
  for (std::size_t b = 0; b < power.size(); ++b) {
    if (rising ? power[b] > power[turn] : power[b] < power[turn]) turn = b;
    if (rising && power[b] * kRise < power[turn]) {
      pulses.push_back(turn * block + block / 2);
      rising = false;
      turn = b;
    } else if (!rising && power[b] > power[turn] * kRise) {
      rising = true;
      turn = b;
    }
  }
  return pulses;
}

class PairMeasure {
 public:
  PairMeasure(const PitchBands& bands, double floor) : bands_(bands), floor_(floor) {}

  PulsePair Of(std::size_t one, std::size_t next) const {
    const std::size_t spacing = next - one, before = Samples(kBefore), behind = Samples(kBehind);
    const double seconds = static_cast<double>(spacing) / bands_.rate();
    if (seconds < kShortest || seconds > kLongest) return {};
    const std::size_t shift = Samples(kShift);
    if (one < before || one + 2 * (spacing + shift) > bands_.wide.samples.size()) return {};
    PulsePair pair;
    for (std::size_t lag = spacing - shift; lag <= spacing + shift; ++lag) {
      const float r = Correlation(bands_.wide, one - before, static_cast<int>(lag),
                                  static_cast<int>(before + behind), floor_);
      if (r <= pair.r) continue;
      pair.r = r;
      pair.spacing = static_cast<float>(lag);
    }
    if (pair.spacing == 0) return {};
    pair.within = Within(one - before, pair.spacing);
    return pair;
  }

 private:
  std::size_t Samples(double seconds) const {
    return static_cast<std::size_t>(std::max(1, TruncateToInt32(bands_.rate() * seconds)));
  }
  /// At the coarse rate: many lags, and no more than 900 Hz are asked for.
  float Within(std::size_t first, float spacing) const {
    const double step = bands_.rate() / bands_.coarseRate(), coarse = static_cast<double>(spacing) / step;
    const auto from = static_cast<std::size_t>(static_cast<double>(first) / step);
    const int width = std::max(1, TruncateToInt32(coarse));
    float best = 0;
    for (int lag = std::max(1, TruncateToInt32(kWithinFrom * coarse));
         lag <= TruncateToInt32(kWithinEnd * coarse); ++lag)
      best = std::max(best, Correlation(bands_.coarse, from, lag, width, floor_));
    return best;
  }
  const PitchBands& bands_;
  const double floor_;
};

}  // namespace

bool PulsePair::IsSingle() const {
  return spacing > 0 && r >= kSingleR && within <= std::min(kMostWithin, r - kSingleGain);
}

CreakPulses::CreakPulses(const PitchBands& bands, double floor) : places_(FindPulses(bands)) {
  const PairMeasure measure(bands, floor);
  pairs_.resize(places_.size());
  for (std::size_t i = 0; i + 1 < places_.size(); ++i) pairs_[i] = measure.Of(places_[i], places_[i + 1]);
}

PulsePair CreakPulses::About(std::size_t sample) const {
  const auto next =
      static_cast<std::size_t>(std::upper_bound(places_.begin(), places_.end(), sample) - places_.begin());
  if (next > 0 && pairs_[next - 1].spacing > 0) return pairs_[next - 1];
  const auto near = [](std::size_t distance, const PulsePair& pair) {
    return 2 * static_cast<float>(distance) < pair.spacing;
  };
  if (next > 1 && near(sample - places_[next - 1], pairs_[next - 2])) return pairs_[next - 2];
  if (next < places_.size() && near(places_[next] - sample, pairs_[next])) return pairs_[next];
  return {};
}

}  // namespace parlowen
