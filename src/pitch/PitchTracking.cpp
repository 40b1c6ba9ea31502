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
//   MakeBands        the samples up to 900 Hz and up to 2 kHz, one of `decimation` (the first stage's factor)
//   MeasureLevels    the level of every frame, that of the loud frames, the noise between them
//   FindCandidates   a frame's correlation over all lags, its maxima, what each of them and silence costs
//   Search           the cheapest way through the frames
//   PreferRegister   the speaker's pitch of these seconds, and what it costs to be an octave away from it;
//                    then Search again; short runs of voice are dropped
//   Refine           every period once more, in the wider band and a short window
//   FitGlides        a straight line through each period and its neighbours, read at the frame's centre
//
// The numbers below were found together, on synthetic voices (clean, white and pink noise, mains hum), on
// diphones of two men joined at known periods (also as women, with creak, hum, alternating periods and a
// microphone's high-pass) and on recordings of some thirty speakers; bench/pitch_accuracy prints what they
// reach.

namespace parlowen {
namespace {

// Bands
constexpr double kLowPass = 900, kHighPass = 50;  // Hz
constexpr double kWideLowPass = 2000;
constexpr double kHighestCutoff = 0.45;  // of the document's rate
constexpr double kMargin = 0.1;          // seconds on either side, more than a window and a lag

// Correlation
constexpr double kWindow = 0.020;      // seconds
constexpr double kWindowPerLag = 0.5;  // long periods get a longer window
constexpr int kBlock = 16;             // windows are whole blocks of samples
// 0: √(E₁E₂) under the product; 1: (E₁ + E₂)/2, which falls where the voice dies away and only the tract
// rings on.
constexpr double kArithmeticShare = 0.5;
constexpr int kMostCandidates = 8;
constexpr float kLeastPeak = 0.1f;
// A creak slower than the lowest bound of all is heard and told as that bound; mains hum lies there too, so
// a quiet one must be clearer.
constexpr int kLowestBound = 64;
constexpr double kCreak = 55;                            // Hz
constexpr double kCreakCost = 0.15, kQuietCreak = 0.04;  // a dB, from kQuietBelow on

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
    0.36;  // a period of the longest lag scores that much less than half of it could
constexpr double kHintWeight = 0.03;   // an octave away from the time-domain stage's period
constexpr double kVoicingBias = 0.14;  // of voice over silence
constexpr double kHintBonus = 0.12;    // for voice where the time-domain stage found it, against it elsewhere
constexpr double kQuietBelow = 15, kQuietSlope = 0.013;  // dB below the loud frames; a dB
// Where the level changes fast a window reaches into a voice that is not there yet, or no longer.
constexpr double kChangeFrom = 3, kChangeMost = 0.4;      // dB in 20 ms
constexpr double kFallSlope = 0.05, kRiseSlope = 0.025;   // a dB
constexpr double kSwitch = 0.75;                          // between voice and silence
constexpr double kOctaveWeight = 1.0, kOctaveMost = 1.0;  // of successive periods
constexpr float kLeastCorrelation = 0.2f;
constexpr int kShortestRun = 4;  // frames

// Register
constexpr int kRegisterReach = 200;  // frames on either side
constexpr int kBins = 96, kBinsPerOctave = 24;
constexpr int kLeastRegister = 20;       // clear frames that make one
constexpr double kRegisterLevel = 15;    // dB below the loud frames
constexpr float kRegisterClear = 0.8f;   // correlation
constexpr double kRegisterFree = 0.5;    // octaves about the median that cost nothing
constexpr double kRegisterWeight = 0.4;  // an octave
constexpr double kRegisterMost = 0.3;

// Fine periods
constexpr double kFineWindow = 0.015;     // seconds
constexpr int kFineReach = 3;             // lags on either side
constexpr double kMostOffCentre = 0.006;  // seconds
constexpr double kFitReach = 0.013;       // seconds on either side
constexpr double kFitApart = 0.08;        // a neighbour's period differs by less than this share

/// Σ a[i]·b[i]; `count` is a multiple of kBlock. The sums are kept apart so that they add in vectors.
PARLOWEN_INLINE float Product(const float* a, const float* b, int count) {
  std::array<float, kBlock> sums{};
  for (int i = 0; i < count; i += kBlock)
    for (int j = 0; j < kBlock; ++j) sums[static_cast<std::size_t>(j)] += a[i + j] * b[i + j];
  float total = 0;
  for (const float sum : sums) total += sum;
  return total;
}

/// The length of both windows at a lag: whole blocks.
PARLOWEN_INLINE int WindowOf(int window, int lag) {
  return std::max(1, (window + static_cast<int>(kWindowPerLag * lag)) / kBlock) * kBlock;
}

/// Where the parabola through the three values about a maximum has its own, −0.5..0.5 from the middle one.
float PeakShift(const float* r) {
  const float curve = r[-1] - 2 * r[0] + r[1];
  return curve < 0 ? 0.5f * (r[-1] - r[1]) / curve : 0.0f;
}

/// r of the lags lowest..highest at a frame: two windows lie symmetrically about `centre`, one lag apart.
/// energy[i] − energy[j] is Σx² from j to i − 1; `floor` is added to the energy of every sample.
PARLOWEN_CLONES void Correlate(const float* centre, const double* energy, double floor, int window,
                               int lowest, int highest, float* r) {
  for (int lag = lowest; lag <= highest; ++lag) {
    const int width = WindowOf(window, lag);
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

/// The document's samples at the working rate, between kHighPass and a frequency of its own.
struct Band {
  double lowPass = 0;  // Hz
  std::vector<float> taps{}, samples{};
  std::vector<double> energy{};  // Σ of the squares before a sample
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
  float best = 0;                                   // correlation
  float silence = 0;                                // cost of being unvoiced
  std::array<Candidate, kMostCandidates> voices{};  // the cheapest
};

class Tracking {
 public:
  Tracking(const PitchTrackingRequest& request, std::span<float> periods);
  bool Run(const std::function<bool(double)>& progress);

 private:
  void MakeBands();
  void MeasureLevels();
  void FindCandidates(std::size_t frame);
  void AddCandidate(FrameCandidates& frame, float hint, int lag) const;
  double SilenceCost(std::size_t frame, float best, float hint) const;
  void Balance();
  void PreferRegister();
  void Search();
  double StepCost(const FrameCandidates& before, int from, const FrameCandidates& now, int to) const;
  void FollowBack(int state);
  void DropShortRuns();
  void Refine();
  double OffCentre(std::size_t frame) const;
  void FitGlides();

  int FineWindow() const { return TruncateToInt32(rate_ * kFineWindow); }
  double BelowLoud(float level) const {
    return std::max(0.0, loudLevel_ - static_cast<double>(level) - kQuietBelow);
  }
  float CreakCost(float lag, float level) const {
    return static_cast<double>(lag) > rate_ / bounds_.lowest
               ? static_cast<float>(kCreakCost + kQuietCreak * BelowLoud(level))
               : 0.0f;
  }
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
  double slowest_ = 0;            // the longest period that is looked for
  std::int64_t origin_ = 0;       // document sample of the bands' first
  Band band_{kLowPass}, wide_{kWideLowPass};
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
  slowest_ = rate_ / (bounds_.lowest > kLowestBound ? bounds_.lowest : kCreak);
  highest_ = std::max(lowest_, TruncateToInt32(std::ceil(slowest_)));
}

bool Tracking::Run(const std::function<bool(double)>& progress) {
  if (periods_.empty()) return true;
  frames_.resize(periods_.size());
  cameFrom_.resize(periods_.size());
  correlation_.resize(static_cast<std::size_t>(highest_ - lowest_ + 3));
  MakeBands();
  MeasureLevels();
  for (std::size_t f = 0; f < frames_.size(); ++f) {
    if (progress && f % 512 == 0 && !progress(static_cast<double>(f) / static_cast<double>(frames_.size())))
      return false;
    FindCandidates(f);
  }
  Balance();
  Search();
  PreferRegister();
  Balance();
  Search();
  DropShortRuns();
  Refine();
  FitGlides();
  return true;
}

/// The samples from half before the first output to half behind the last one, sorted by their place among
/// `decimation` ones, so that what neighbouring outputs need lies side by side.
struct Phases {
  int decimation = 1, half = 0, stride = 0;
  std::vector<float> samples{};

  void Put(int i, std::int16_t sample) {
    samples[static_cast<std::size_t>(i % decimation * stride + i / decimation)] = sample;
  }
  const float* At(int i) const { return samples.data() + i % decimation * stride + i / decimation; }
};

PARLOWEN_CLONES void AddTap(float tap, const float* a, const float* b, int count, float* output) {
  for (int n = 0; n < count; ++n) output[n] += tap * (a[n] + b[n]);
}

/// The low-pass, one output for `decimation` samples.
void LowPassDecimated(const Phases& phases, std::span<const float> taps, int count, float* output) {
  const float* middle = phases.At(phases.half);
  for (int n = 0; n < count; ++n) output[n] = taps[0] * middle[n];
  for (int k = 1; k <= phases.half; ++k)
    AddTap(taps[static_cast<std::size_t>(k)], phases.At(phases.half - k), phases.At(phases.half + k), count,
           output);
}

void Tracking::MakeBands() {
  const int half = std::max(4, request_.sampleRate / 500);
  const int margin = TruncateToInt32(rate_ * kMargin);
  origin_ = CentreOf(0) - std::int64_t{margin} * decimation_;
  const std::size_t count = BandIndex(frames_.size() - 1) + static_cast<std::size_t>(margin);
  for (Band* band : {&band_, &wide_}) {
    band->taps = LowPassTaps(half, std::min(kHighestCutoff, band->lowPass / request_.sampleRate));
    band->samples.resize(count);
    band->energy.resize(count + 1);
  }

  // In pieces, each copied with its neighbours, so that what lies outside the document is silence.
  constexpr int kPiece = 1024;
  Phases phases{decimation_, half, kPiece + 2 * half / decimation_ + 1};
  phases.samples.resize(static_cast<std::size_t>(decimation_ * phases.stride));
  for (std::size_t first = 0; first < count; first += kPiece) {
    const int length = static_cast<int>(std::min<std::size_t>(kPiece, count - first));
    const std::int64_t from = origin_ + static_cast<std::int64_t>(first) * decimation_ - half;
    for (int i = 0; i < length * decimation_ + 2 * half; ++i) phases.Put(i, request_.samples.At(from + i));
    for (Band* band : {&band_, &wide_})
      LowPassDecimated(phases, band->taps, length, band->samples.data() + first);
  }
  for (Band* band : {&band_, &wide_}) {
    HighPass highPass(kHighPass, rate_);
    for (std::size_t n = 0; n < count; ++n) {
      float& x = band->samples[n];
      x = static_cast<float>(highPass.Next(static_cast<double>(x)));
      band->energy[n + 1] = band->energy[n] + static_cast<double>(x) * static_cast<double>(x);
    }
  }
}

void Tracking::MeasureLevels() {
  const auto half = static_cast<std::size_t>(rate_ * kLevelHalfWindow);
  std::vector<double> powers(frames_.size());
  for (std::size_t f = 0; f < frames_.size(); ++f) {
    const std::size_t centre = BandIndex(f);
    powers[f] = (band_.energy[centre + half] - band_.energy[centre - half]) / static_cast<double>(2 * half);
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
  Correlate(band_.samples.data() + centre, band_.energy.data() + centre, noise_,
            TruncateToInt32(rate_ * kWindow), lowest_ - 1, highest_ + 1, correlation_.data());
  const float hint = request_.hints[f];
  frame.count = 0;
  float best = 0;
  for (int lag = lowest_; lag <= highest_; ++lag) {
    const float* r = correlation_.data() + (lag - lowest_ + 1);
    if (r[0] < kLeastPeak || r[0] < r[-1] || r[0] <= r[1]) continue;
    best = std::max(best, r[0] - CreakCost(static_cast<float>(lag), frame.level));
    AddCandidate(frame, hint, lag);
  }
  frame.best = best;
  frame.silence = static_cast<float>(SilenceCost(f, best, hint));
}

/// A maximum of the correlation, refined by the parabola through its neighbours.
void Tracking::AddCandidate(FrameCandidates& frame, float hint, int lag) const {
  const float* r = correlation_.data() + (lag - lowest_ + 1);
  const float shift = PeakShift(r);
  Candidate found;
  found.lag = std::clamp(static_cast<float>(lag) + shift, static_cast<float>(rate_ / bounds_.highest),
                         static_cast<float>(slowest_));
  found.octaves = std::log2(found.lag);
  found.r = r[0] - 0.25f * (r[-1] - r[1]) * shift;
  const double longest = rate_ / bounds_.lowest;
  double cost =
      1 - static_cast<double>(found.r) * (1 - kLagWeight * static_cast<double>(found.lag) / longest);
  cost += static_cast<double>(CreakCost(found.lag, frame.level));
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
  cost -= kQuietSlope * BelowLoud(frames_[f].level);
  const auto change = [&](std::size_t other, double slope) {
    const double above = static_cast<double>(frames_[other].level) - level - kChangeFrom;
    return std::min(kChangeMost, slope * std::max(0.0, above));
  };
  if (f >= 2) cost -= change(f - 2, kFallSlope);
  if (f + 2 < frames_.size()) cost -= change(f + 2, kRiseSlope);
  return cost;
}

/// Whether there is a voice is decided by the correlation alone, whatever its lag: the cheapest candidate
/// costs 1 − r of the best, the others as much more as their scores are apart.
void Tracking::Balance() {
  for (FrameCandidates& frame : frames_) {
    const std::span<Candidate> voices(frame.voices.data(), static_cast<std::size_t>(frame.count));
    float cheapest = 0;
    for (std::size_t i = 0; i < voices.size(); ++i)
      cheapest = i == 0 ? voices[i].cost : std::min(cheapest, voices[i].cost);
    for (Candidate& voice : voices) voice.cost += 1 - frame.best - cheapest;
  }
}

/// A voice whose periods alternate correlates better over two of them, and a woman's over two as well as over
/// one; what she speaks in before and after tells them apart. A creak is too far from any other candidate to
/// be drawn up.
void Tracking::PreferRegister() {
  std::array<int, kBins> histogram{};  // of the clear frames within reach, by log2 of the lag
  int total = 0;
  const double base = std::log2(rate_ / bounds_.highest);
  const auto count = static_cast<std::ptrdiff_t>(frames_.size());
  const auto add = [&](std::ptrdiff_t at, int sign) {
    if (at < 0 || at >= count) return;
    const auto f = static_cast<std::size_t>(at);
    if (periods_[f] <= 0 || frames_[f].best < kRegisterClear ||
        static_cast<double>(frames_[f].level) < loudLevel_ - kRegisterLevel)
      return;
    const double octaves = std::log2(static_cast<double>(periods_[f]) / decimation_) - base;
    const int bin = std::clamp(TruncateToInt32(octaves * kBinsPerOctave), 0, kBins - 1);
    histogram[static_cast<std::size_t>(bin)] += sign;
    total += sign;
  };
  for (std::ptrdiff_t f = 0; f < kRegisterReach; ++f) add(f, 1);
  for (std::ptrdiff_t f = 0; f < count; ++f) {
    add(f + kRegisterReach, 1);
    add(f - kRegisterReach - 1, -1);
    if (total < kLeastRegister) continue;
    std::size_t median = 0;
    for (int below = histogram[0]; 2 * below < total; below += histogram[median]) ++median;
    const double middle = base + (static_cast<double>(median) + 0.5) / kBinsPerOctave;
    FrameCandidates& frame = frames_[static_cast<std::size_t>(f)];
    for (std::size_t i = 0; i < static_cast<std::size_t>(frame.count); ++i) {
      const double apart = std::fabs(static_cast<double>(frame.voices[i].octaves) - middle) - kRegisterFree;
      frame.voices[i].cost +=
          static_cast<float>(std::min(kRegisterMost, kRegisterWeight * std::max(0.0, apart)));
    }
  }
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

/// The maximum of the correlation in the wider band, next to the period that was found.
void Tracking::Refine() {
  std::array<float, 2 * kFineReach + 1> r{};
  for (std::size_t f = 0; f < periods_.size(); ++f) {
    if (periods_[f] <= 0) continue;
    const int lag = TruncateToInt32(static_cast<double>(periods_[f]) / decimation_ + 0.5);
    const int from = std::max(1, lag - kFineReach), to = lag + kFineReach;
    Correlate(wide_.samples.data() + BandIndex(f), wide_.energy.data() + BandIndex(f), kLeastNoise,
              FineWindow(), from, to, r.data());
    const auto top = std::max_element(r.begin() + 1, r.begin() + (to - from));
    if (top[0] < top[-1] || top[0] <= top[1]) continue;
    const float lagFound = static_cast<float>(from + (top - r.begin())) + PeakShift(&*top);
    periods_[f] = lagFound * static_cast<float>(decimation_);
  }
}

/// Seconds from the frame's centre to the moment that its period stands for: where the products of the two
/// windows have their centre. At the beginning and the end of a voice that is several milliseconds away.
double Tracking::OffCentre(std::size_t f) const {
  const int lag = TruncateToInt32(static_cast<double>(periods_[f]) / decimation_ + 0.5);
  const int width = WindowOf(FineWindow(), lag), first = -(width + lag) / 2;
  const float* x = wide_.samples.data() + BandIndex(f) + first;
  double moment = 0, total = 0;
  for (int i = 0; i < width; ++i) {
    const auto product = static_cast<double>(x[i] * x[i + lag]);
    moment += i * product;
    total += product;
  }
  if (total <= 0) return 0;
  return std::clamp((first + moment / total + lag / 2.0) / rate_, -kMostOffCentre, kMostOffCentre);
}

/// Least squares with triangular weights: no glide is bent, and noise and jitter are averaged out.
void Tracking::FitGlides() {
  const double shortest = static_cast<double>(request_.sampleRate) / bounds_.highest;
  const double longest = static_cast<double>(request_.sampleRate) / bounds_.lowest;
  std::vector<double> offCentre(periods_.size());
  for (std::size_t f = 0; f < periods_.size(); ++f)
    if (periods_[f] > 0) offCentre[f] = OffCentre(f);
  const std::vector<float> raw(periods_.begin(), periods_.end());
  for (std::size_t f = 0; f < raw.size(); ++f) {
    if (raw[f] <= 0) continue;
    const auto own = static_cast<double>(raw[f]);
    double w0 = 0, w1 = 0, w2 = 0, y0 = 0, y1 = 0;
    // False ends the walk: outside the reach, unvoiced or a jump.
    const auto take = [&](std::size_t other) {
      const double period = static_cast<double>(raw[other]);
      const double t = (static_cast<double>(other) - static_cast<double>(f)) / 100 + offCentre[other];
      const double weight = 1 - std::fabs(t) / kFitReach;
      if (period <= 0 || weight <= 0 || std::fabs(period / own - 1) > kFitApart) return false;
      w0 += weight;
      w1 += weight * t;
      w2 += weight * t * t;
      y0 += weight * period;
      y1 += weight * t * period;
      return true;
    };
    take(f);
    for (std::size_t other = f; other > 0 && take(other - 1);) --other;
    for (std::size_t other = f + 1; other < raw.size() && take(other);) ++other;
    const double spread = w0 * w2 - w1 * w1;
    const double fitted = spread > 1e-8 * w0 * w0 ? (w2 * y0 - w1 * y1) / spread : y0 / w0;
    periods_[f] = static_cast<float>(std::clamp(fitted, shortest, longest));
  }
}

}  // namespace

bool TrackPitch(const PitchTrackingRequest& request, std::span<float> periods,
                const std::function<bool(double)>& progress) {
  return Tracking(request, periods).Run(progress);
}

}  // namespace parlowen
