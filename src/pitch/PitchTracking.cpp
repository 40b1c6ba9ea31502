#include "pitch/PitchTracking.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

#include "base/Arithmetic.h"
#include "dsp/Clones.h"

// The stages, in order:
//
//   MakeBand         the samples between 40 and 900 Hz, one of `decimation` (the first stage's factor)
//   MeasureLevels    the level of every frame, that of the loud frames, the noise between them
//   FindCandidates   a frame's correlation over all lags, its maxima, what each of them and silence costs
//   Search           the cheapest way through the frames; short runs of voice are dropped
//
// The numbers below were found together, on synthetic voices (clean, white and pink noise, mains hum) and on
// diphone voices of men, women and a child; bench/pitch_accuracy prints what they reach.

namespace parlowen {
namespace {

// Band
constexpr double kLowPass = 900, kHighPass = 40;  // Hz
constexpr double kMargin = 0.1;                   // seconds on either side, more than a window and a lag

// Correlation
constexpr double kWindow = 0.020;      // seconds
constexpr double kWindowPerLag = 0.5;  // long periods get a longer window
constexpr int kBlock = 16;             // windows are whole blocks of samples
// 0: √(E₁E₂) under the product; 1: (E₁ + E₂)/2, which falls where the voice dies away and only the tract
// rings on.
constexpr double kArithmeticShare = 0.5;
constexpr int kMostCandidates = 8;
constexpr float kLeastPeak = 0.1f;

// Levels, of 30 ms
constexpr double kLevelHalfWindow = 0.015;
constexpr double kLoudShare = 0.95, kNoiseShare = 0.20;  // quantiles of the frames' powers
constexpr double kLoudestToLoud =
    0.03;  // a recording that is nearly all silence: loud is −15 dB of its loudest
constexpr double kNoiseToLoud = 3.2e-4;  // the noise is at most −35 dB: a sound may be voiced all through
constexpr double kNoiseWeight = 2.0;     // times the noise is added to every energy
constexpr double kLeastNoise = 4.0;      // of 16-bit samples, squared

// Costs
constexpr double kLagWeight =
    0.25;  // a period of the longest lag scores that much less than half of it could
constexpr double kHintWeight = 0.05;   // an octave away from the time-domain stage's period
constexpr double kVoicingBias = 0.14;  // of voice over silence
constexpr double kHintBonus = 0.20;    // for voice where the time-domain stage found it, against it elsewhere
constexpr double kQuietBelow = 15, kQuietSlope = 0.01;               // dB below the loud frames; a dB
constexpr double kFallFrom = 3, kFallSlope = 0.05, kFallMost = 0.4;  // dB in 20 ms; a dB
constexpr double kSwitch = 0.7;                                      // between voice and silence
constexpr double kOctaveWeight = 1.0, kOctaveMost = 1.2;             // of successive periods
constexpr float kLeastCorrelation = 0.2f;
constexpr int kShortestRun = 4;  // frames

/// Σ a[i]·b[i]; `count` is a multiple of kBlock. The sums are kept apart so that they add in vectors.
PARLOWEN_INLINE float Product(const float* a, const float* b, int count) {
  std::array<float, kBlock> sums{};
  for (int i = 0; i < count; i += kBlock)
    for (int j = 0; j < kBlock; ++j) sums[static_cast<std::size_t>(j)] += a[i + j] * b[i + j];
  float total = 0;
  for (const float sum : sums) total += sum;
  return total;
}

/// r of the lags lowest..highest at a frame: two windows lie symmetrically about `centre`, one lag apart.
/// energy[i] − energy[j] is Σx² from j to i − 1; `floor` is added to the energy of every sample.
PARLOWEN_CLONES void Correlate(const float* centre, const double* energy, double floor, int window,
                               int lowest, int highest, float* r) {
  for (int lag = lowest; lag <= highest; ++lag) {
    const int width = (window + static_cast<int>(kWindowPerLag * lag)) / kBlock * kBlock;
    const int first = -(width + lag) / 2, second = first + lag;
    const double e1 = energy[first + width] - energy[first] + floor * width;
    const double e2 = energy[second + width] - energy[second] + floor * width;
    const double geometric = std::sqrt(e1 * e2), arithmetic = (e1 + e2) / 2;
    const double product = Product(centre + first, centre + second, width);
    r[lag - lowest] = static_cast<float>(product / (geometric + kArithmeticShare * (arithmetic - geometric)));
  }
}

/// Half of a symmetric low-pass (windowed sinc, Hamming), unit gain at 0 Hz.
std::vector<float> LowPassTaps(int half, double cutoff) {
  std::vector<double> taps(static_cast<std::size_t>(half) + 1);
  double sum = 0;
  for (int k = 0; k <= half; ++k) {
    const double angle = 2 * std::numbers::pi * cutoff * k;
    const double sinc = k == 0 ? 2 * cutoff : std::sin(angle) / (std::numbers::pi * k);
    taps[static_cast<std::size_t>(k)] = sinc * (0.54 + 0.46 * std::cos(std::numbers::pi * k / (half + 1)));
    sum += (k == 0 ? 1 : 2) * taps[static_cast<std::size_t>(k)];
  }
  std::vector<float> result;
  for (const double tap : taps) result.push_back(static_cast<float>(tap / sum));
  return result;
}

/// Butterworth high-pass of second order.
class HighPass {
 public:
  HighPass(double cutoff, double rate) {
    const double w = std::tan(std::numbers::pi * std::min(cutoff / rate, 0.4)), q = std::numbers::sqrt2 * w;
    gain_ = 1 / (1 + q + w * w);
    a1_ = 2 * (w * w - 1) * gain_;
    a2_ = (1 - q + w * w) * gain_;
  }
  double Next(double x) {
    const double y = gain_ * (x - 2 * x1_ + x2_) - a1_ * y1_ - a2_ * y2_;
    x2_ = x1_;
    x1_ = x;
    y2_ = y1_;
    y1_ = y;
    return y;
  }

 private:
  double gain_ = 1, a1_ = 0, a2_ = 0, x1_ = 0, x2_ = 0, y1_ = 0, y2_ = 0;
};

struct Candidate {
  float lag = 0;      // working samples, with a fraction
  float octaves = 0;  // log2 of the lag
  float r = 0;
  float cost = 0;
};

struct FrameCandidates {
  int count = 0;
  float level = 0;                                  // dB
  float silence = 0;                                // cost of being unvoiced
  std::array<Candidate, kMostCandidates> voices{};  // cheapest first
};

class Tracking {
 public:
  Tracking(const PitchTrackingRequest& request, std::span<float> periods);
  bool Run(const std::function<bool(double)>& progress);

 private:
  void MakeBand();
  void MeasureLevels();
  void FindCandidates(std::size_t frame);
  void AddCandidate(FrameCandidates& frame, float hint, int lag) const;
  double SilenceCost(std::size_t frame, float best, float hint) const;
  void Search();
  double StepCost(const FrameCandidates& before, int from, const FrameCandidates& now, int to) const;
  void FollowBack(int state);
  void DropShortRuns();

  std::int64_t CentreOf(std::size_t frame) const {
    const std::int64_t rate = request_.sampleRate;
    return (request_.firstFrame + static_cast<std::int64_t>(frame)) * rate / 100 + rate / 100;
  }
  std::size_t BandIndex(std::size_t frame) const {
    return static_cast<std::size_t>((CentreOf(frame) - origin_) / decimation_);
  }

  const PitchTrackingRequest& request_;
  std::span<float> periods_;
  const int decimation_;
  const double rate_;
  const PitchBounds bounds_;
  int lowest_ = 0, highest_ = 0;  // lags
  std::int64_t origin_ = 0;       // document sample of band_[0]
  std::vector<float> band_;
  std::vector<double> energy_;      // Σ of the squares before a sample
  std::vector<float> correlation_;  // from lowest_ − 1 to highest_ + 1
  std::vector<FrameCandidates> frames_;
  std::vector<std::array<std::int8_t, kMostCandidates + 1>> cameFrom_;
  double noise_ = 0, loudLevel_ = 0;
};

Tracking::Tracking(const PitchTrackingRequest& request, std::span<float> periods)
    : request_(request),
      periods_(periods),
      decimation_(PitchDecimation(request.sampleRate)),
      rate_(static_cast<double>(request.sampleRate) / decimation_),
      bounds_(BoundsOf(request.range)) {
  lowest_ = std::max(2, TruncateToInt32(rate_ / bounds_.highest));
  highest_ = std::max(lowest_, TruncateToInt32(std::ceil(rate_ / bounds_.lowest)));
}

bool Tracking::Run(const std::function<bool(double)>& progress) {
  if (periods_.empty()) return true;
  frames_.resize(periods_.size());
  cameFrom_.resize(periods_.size());
  correlation_.resize(static_cast<std::size_t>(highest_ - lowest_ + 3));
  MakeBand();
  MeasureLevels();
  for (std::size_t f = 0; f < frames_.size(); ++f) {
    if (progress && f % 512 == 0 && !progress(static_cast<double>(f) / static_cast<double>(frames_.size())))
      return false;
    FindCandidates(f);
  }
  Search();
  DropShortRuns();
  return true;
}

/// The low-pass of one sample of the band; `at` lies far enough inside.
PARLOWEN_CLONES void LowPassDecimated(const std::int16_t* samples, int decimation,
                                      std::span<const float> taps, int count, float* output) {
  for (int n = 0; n < count; ++n) {
    const std::int16_t* x = samples + static_cast<std::ptrdiff_t>(n) * decimation;
    float sum = taps[0] * static_cast<float>(x[0]);
    for (int k = 1; k < static_cast<int>(taps.size()); ++k)
      sum += taps[static_cast<std::size_t>(k)] * static_cast<float>(x[-k] + x[k]);
    output[n] = sum;
  }
}

void Tracking::MakeBand() {
  const std::vector<float> taps =
      LowPassTaps(std::max(4, request_.sampleRate / 500), kLowPass / request_.sampleRate);
  const int half = static_cast<int>(taps.size()) - 1;
  const int margin = TruncateToInt32(rate_ * kMargin);
  origin_ = CentreOf(0) - std::int64_t{margin} * decimation_;
  const std::size_t count = BandIndex(frames_.size() - 1) + static_cast<std::size_t>(margin);
  band_.resize(count);
  energy_.resize(count + 1);

  // In pieces, each copied with its neighbours, so that what lies outside the document is silence.
  constexpr int kPiece = 4096;
  std::vector<std::int16_t> piece(static_cast<std::size_t>(kPiece * decimation_ + 2 * half));
  for (std::size_t first = 0; first < count; first += kPiece) {
    const int length = static_cast<int>(std::min<std::size_t>(kPiece, count - first));
    const std::int64_t from = origin_ + static_cast<std::int64_t>(first) * decimation_ - half;
    for (int i = 0; i < length * decimation_ + 2 * half; ++i)
      piece[static_cast<std::size_t>(i)] = request_.samples.At(from + i);
    LowPassDecimated(piece.data() + half, decimation_, taps, length, band_.data() + first);
  }
  HighPass highPass(kHighPass, rate_);
  for (std::size_t n = 0; n < count; ++n) {
    band_[n] = static_cast<float>(highPass.Next(static_cast<double>(band_[n])));
    energy_[n + 1] = energy_[n] + static_cast<double>(band_[n]) * static_cast<double>(band_[n]);
  }
}

void Tracking::MeasureLevels() {
  const auto half = static_cast<std::size_t>(rate_ * kLevelHalfWindow);
  std::vector<double> powers(frames_.size());
  for (std::size_t f = 0; f < frames_.size(); ++f) {
    const std::size_t centre = BandIndex(f);
    powers[f] = (energy_[centre + half] - energy_[centre - half]) / static_cast<double>(2 * half);
    frames_[f].level = static_cast<float>(10 * std::log10(powers[f] + kLeastNoise));
  }
  std::sort(powers.begin(), powers.end());
  const auto quantile = [&powers](double share) {
    return powers[static_cast<std::size_t>(share * static_cast<double>(powers.size() - 1))];
  };
  const double loud = std::max(quantile(kLoudShare), kLoudestToLoud * powers.back());
  loudLevel_ = 10 * std::log10(loud + kLeastNoise);
  noise_ = kNoiseWeight * std::min(quantile(kNoiseShare), kNoiseToLoud * loud) + kLeastNoise;
}

void Tracking::FindCandidates(std::size_t f) {
  FrameCandidates& frame = frames_[f];
  const std::size_t centre = BandIndex(f);
  Correlate(band_.data() + centre, energy_.data() + centre, noise_, TruncateToInt32(rate_ * kWindow),
            lowest_ - 1, highest_ + 1, correlation_.data());
  const float hint = request_.hints[f];
  frame.count = 0;
  float best = 0;
  for (int lag = lowest_; lag <= highest_; ++lag) {
    const float* r = correlation_.data() + (lag - lowest_ + 1);
    if (r[0] < kLeastPeak || r[0] < r[-1] || r[0] <= r[1]) continue;
    best = std::max(best, r[0]);
    AddCandidate(frame, hint, lag);
  }
  // Whether there is a voice is decided by the correlation alone, whatever its lag: the cheapest candidate
  // costs 1 − r of the best, the others as much more as their scores are apart.
  const float cheapest = frame.voices[0].cost;
  for (int i = 0; i < frame.count; ++i) frame.voices[static_cast<std::size_t>(i)].cost += 1 - best - cheapest;
  frame.silence = static_cast<float>(SilenceCost(f, best, hint));
}

/// A maximum of the correlation, refined by the parabola through its neighbours.
void Tracking::AddCandidate(FrameCandidates& frame, float hint, int lag) const {
  const float* r = correlation_.data() + (lag - lowest_ + 1);
  const float curve = r[-1] - 2 * r[0] + r[1];
  const float shift = curve < 0 ? 0.5f * (r[-1] - r[1]) / curve : 0.0f;
  Candidate found;
  found.lag = std::clamp(static_cast<float>(lag) + shift, static_cast<float>(rate_ / bounds_.highest),
                         static_cast<float>(rate_ / bounds_.lowest));
  found.octaves = std::log2(found.lag);
  found.r = r[0] - 0.25f * (r[-1] - r[1]) * shift;
  double cost =
      1 - static_cast<double>(found.r) * (1 - kLagWeight * static_cast<double>(found.lag) / highest_);
  if (hint > 1) {
    const double apart =
        static_cast<double>(found.octaves) - std::log2(static_cast<double>(hint) / decimation_);
    cost += kHintWeight * std::min(1.0, std::fabs(apart));
  }
  found.cost = static_cast<float>(cost);

  auto& voices = frame.voices;
  if (frame.count == kMostCandidates && found.cost >= voices.back().cost) return;
  if (frame.count < kMostCandidates) ++frame.count;
  auto place = static_cast<std::size_t>(frame.count - 1);
  for (; place > 0 && voices[place - 1].cost > found.cost; --place) voices[place] = voices[place - 1];
  voices[place] = found;
}

double Tracking::SilenceCost(std::size_t f, float best, float hint) const {
  double cost = static_cast<double>(best) + kVoicingBias + (hint >= 1 ? kHintBonus : -kHintBonus);
  const auto level = static_cast<double>(frames_[f].level);
  cost -= kQuietSlope * std::max(0.0, loudLevel_ - level - kQuietBelow);
  if (f >= 2) {
    const double fall = static_cast<double>(frames_[f - 2].level) - level;
    cost -= std::min(kFallMost, kFallSlope * std::max(0.0, fall - kFallFrom));
  }
  return cost;
}

/// What it costs to go from a state of the frame before to one of this frame; state 0 is silence.
double Tracking::StepCost(const FrameCandidates& before, int from, const FrameCandidates& now, int to) const {
  if ((from == 0) != (to == 0)) return kSwitch;
  if (to == 0) return 0;
  const float octaves = now.voices[static_cast<std::size_t>(to - 1)].octaves -
                        before.voices[static_cast<std::size_t>(from - 1)].octaves;
  return std::min(kOctaveMost, kOctaveWeight * std::fabs(static_cast<double>(octaves)));
}

void Tracking::Search() {
  std::array<double, kMostCandidates + 1> cost{}, next{};
  for (std::size_t f = 0; f < frames_.size(); ++f) {
    const FrameCandidates& now = frames_[f];
    const FrameCandidates& before =
        f > 0 ? frames_[f - 1] : FrameCandidates();  // silence lies before the first frame
    for (int to = 0; to <= now.count; ++to) {
      double least = 1e300;
      int best = 0;
      for (int from = 0; from <= before.count; ++from) {
        const double sum = cost[static_cast<std::size_t>(from)] + StepCost(before, from, now, to);
        if (sum >= least) continue;
        least = sum;
        best = from;
      }
      const auto own = to == 0 ? now.silence : now.voices[static_cast<std::size_t>(to - 1)].cost;
      next[static_cast<std::size_t>(to)] = least + static_cast<double>(own);
      cameFrom_[f][static_cast<std::size_t>(to)] = static_cast<std::int8_t>(best);
    }
    cost = next;
  }
  FollowBack(static_cast<int>(std::min_element(cost.begin(), cost.begin() + frames_.back().count + 1) -
                              cost.begin()));
}

void Tracking::FollowBack(int state) {
  for (std::size_t f = frames_.size(); f-- > 0;) {
    periods_[f] = 0;
    if (state > 0) {
      const Candidate& voice = frames_[f].voices[static_cast<std::size_t>(state - 1)];
      if (voice.r >= kLeastCorrelation) periods_[f] = voice.lag * static_cast<float>(decimation_);
    }
    state = cameFrom_[f][static_cast<std::size_t>(state)];
  }
}

void Tracking::DropShortRuns() {
  for (std::size_t f = 0; f < periods_.size(); ++f) {
    if (periods_[f] <= 0) continue;
    const std::size_t first = f;
    while (f + 1 < periods_.size() && periods_[f + 1] > 0) ++f;
    if (f - first + 1 < kShortestRun)
      std::fill(periods_.begin() + static_cast<std::ptrdiff_t>(first),
                periods_.begin() + static_cast<std::ptrdiff_t>(f + 1), 0.0f);
  }
}

}  // namespace

bool TrackPitch(const PitchTrackingRequest& request, std::span<float> periods,
                const std::function<bool(double)>& progress) {
  return Tracking(request, periods).Run(progress);
}

}  // namespace parlowen
