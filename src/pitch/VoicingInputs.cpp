#include "pitch/VoicingInputs.h"

#include <algorithm>
#include <cmath>

#include "base/Arithmetic.h"
#include "dsp/Clones.h"

namespace parlowen {
namespace {

constexpr double kUnknownPeriod = 1.0 / 150;     // seconds, where there is no candidate
constexpr double kPeriodWindow = 0.015;          // seconds, of the r in the wider bands
constexpr int kPeriodReach = 2, kSideReach = 1;  // working samples about the period
constexpr double kShortestSide = 0.005;          // seconds
constexpr double kTiltHalf = 0.010;              // seconds, half the stretch of tilt and crossings
constexpr float kUnclearWeight = 0.5f;           // octaves that an r of 0 counts for
constexpr float kFarthest = 1;                   // octaves

PARLOWEN_CLONES int CountCrossings(const float* x, int count) {
  int crossings = 0;
  for (int n = 0; n < count; ++n) crossings += (x[n] < 0) != (x[n - 1] < 0);
  return crossings;
}

/// How far a period is from the nearest of another frame.
float Distance(float octaves, const CandidateFrame& other) {
  float least = kFarthest;
  for (const PitchCandidate& voice : other.Voices())
    least = std::min(least, std::fabs(voice.octaves - octaves) + (1 - voice.r) * kUnclearWeight);
  return least;
}

class Measure {
 public:
  Measure(const PitchBands& bands, double floor, std::size_t frame, int lag)
      : floor_(floor), rate_(bands.rate()), centre_(bands.Centre(frame)), lag_(lag) {}

  int Samples(double seconds) const { return std::max(1, TruncateToInt32(rate_ * seconds)); }

  /// r of the period before the centre and the one behind it.
  float Pair(const Band& band) const { return Correlation(band, Before(lag_), lag_, lag_, floor_); }
  float AboutCentre(const Band& band) const {
    const int width = Samples(kPeriodWindow);
    float best = 0;
    for (int lag = std::max(1, lag_ - kPeriodReach); lag <= lag_ + kPeriodReach; ++lag)
      best = std::max(best, CentredCorrelation(band, centre_, lag, width, floor_));
    return best;
  }
  /// r at the period, both windows before the centre or both behind it.
  float Side(const Band& band, bool before) const {
    const int width = std::max(lag_, Samples(kShortestSide));
    float best = 0;
    for (int lag = std::max(1, lag_ - kSideReach); lag <= lag_ + kSideReach; ++lag)
      best = std::max(best, Correlation(band, before ? Before(width + lag) : centre_, lag, width, floor_));
    return best;
  }
  float Level(const Band& band) const {
    return static_cast<float>(Decibels(band.Power(centre_, Samples(kTiltHalf)) + kLeastPower));
  }
  /// Zero crossings a millisecond.
  float Crossings(const Band& band) const {
    const int half = Samples(kTiltHalf);
    const float* first = band.At(Before(half) + 1);
    return static_cast<float>(CountCrossings(first, 2 * half)) / static_cast<float>(2000 * kTiltHalf);
  }

 private:
  std::size_t Before(int samples) const { return centre_ - static_cast<std::size_t>(samples); }

  const double floor_, rate_;
  const std::size_t centre_;
  const int lag_;
};

}  // namespace

VoicingInputs MeasureVoicing(const PitchBands& bands, const SpeechLevels& levels,
                             std::span<const CandidateFrame> frames, std::size_t f) {
  const CandidateFrame& frame = frames[f];
  const auto other = [&](int frameOffset) -> const CandidateFrame& {
    const auto at = static_cast<std::ptrdiff_t>(f) + frameOffset;
    return frames[static_cast<std::size_t>(
        std::clamp<std::ptrdiff_t>(at, 0, static_cast<std::ptrdiff_t>(frames.size()) - 1))];
  };
  const bool any = frame.count > 0;
  const PitchCandidate& cheapest = frame.voices.front();
  const double period = any ? static_cast<double>(cheapest.lag) : bands.rate() * kUnknownPeriod;
  const Measure measure(bands, levels.floor, f, std::max(1, TruncateToInt32(period + 0.5)));
  const float full = measure.Level(bands.full);
  const auto loud = static_cast<float>(levels.loud);
  const auto change = [&](int frameOffset) { return other(frameOffset).level10 - frame.level10; };

  VoicingInputs inputs;
  inputs[kBestR] = frame.best;
  inputs[kCheapestR] = any ? cheapest.r : 0;
  inputs[kPairR] = measure.Pair(bands.low);
  inputs[kWideR] = measure.AboutCentre(bands.wide);
  inputs[kFullR] = measure.AboutCentre(bands.full);
  inputs[kLeftR] = measure.Side(bands.low, true);
  inputs[kRightR] = measure.Side(bands.low, false);
  inputs[kLevel30] = frame.level30 - loud;
  inputs[kLevel10] = frame.level10 - loud;
  inputs[kLevelMinus30] = change(-3);
  inputs[kLevelMinus20] = change(-2);
  inputs[kLevelMinus10] = change(-1);
  inputs[kLevelPlus10] = change(+1);
  inputs[kLevelPlus20] = change(+2);
  inputs[kLevelPlus30] = change(+3);
  inputs[kAboveNoise] = frame.level30 - static_cast<float>(levels.noise);
  inputs[kFullOverLow] = full - measure.Level(bands.low);
  inputs[kFullOverWide] = full - measure.Level(bands.wide);
  inputs[kCrossings] = measure.Crossings(bands.full);
  inputs[kOctaves] = any ? cheapest.octaves - static_cast<float>(Log2(bands.rate())) + 7 : 0;
  inputs[kDistanceBefore] = any && f > 0 ? Distance(cheapest.octaves, other(-1)) : kFarthest;
  inputs[kDistanceBehind] = any && f + 1 < frames.size() ? Distance(cheapest.octaves, other(+1)) : kFarthest;
  inputs[kBestRMinus2] = other(-2).best;
  inputs[kBestRMinus1] = other(-1).best;
  inputs[kBestRPlus1] = other(+1).best;
  inputs[kBestRPlus2] = other(+2).best;
  return inputs;
}

}  // namespace parlowen
