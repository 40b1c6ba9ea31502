#include "pitch/PitchTracking.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <optional>
#include <vector>

#include "base/Arithmetic.h"
#include "pitch/PitchBands.h"
#include "pitch/VoicingInputs.h"

// The stages, in order:
//
//   PitchBands       the samples up to 900 Hz, 2 kHz and 3.4 kHz at a working rate of 8 kHz or a little above,
//                    without the hum of the mains
//   MeasureLevels    the level of every frame, that of the loud frames, the noise between them
//   CreakPulses      single pulses, their spacing and how alike they are
//   FindCandidates   a frame's correlation over all lags, its maxima and what each of them costs; the spacing
//                    of its single pulses
//   DecideVoicing    what silence costs, by the trained net
//   Search           the cheapest way through the frames
//   PreferRegister   the speaker's pitch of these seconds, and what it costs to be an octave away from it,
//                    but for single pulses below; then Search again
//   MendRims         the first and last frames of a stretch beyond a jump are found again, kept where clearly
//                    better or dropped, then short stretches are
//   Refine           every period once more, in the wider band and a short window
//   FitGlides        a straight line through each period and its neighbours, read at the frame's centre
//
// docs/pitch.md tells how the numbers below were found and what they reach.

namespace parlowen {
namespace {

// Correlation
constexpr double kWindow = 0.020;  // seconds
constexpr float kLeastPeak = 0.1f;
// A creak slower than the lowest bound of all is heard and told as that bound; mains hum lies there too, so
// a quiet one must be clearer.
constexpr int kLowestBound = 64;
constexpr double kCreak = 55;                            // Hz
constexpr double kCreakCost = 0.15, kQuietCreak = 0.04;  // a dB, from kQuietBelow on

// Levels, of 30 ms
constexpr double kLoudShare = 0.95, kNoiseShare = 0.20;  // quantiles of the frames' powers
constexpr double kLoudestToLoud =
    0.03;  // a recording that is nearly all silence: loud is −15 dB of its loudest
constexpr double kNoiseToLoud = 3.2e-4;  // the noise is at most −35 dB: a sound may be voiced all through
constexpr double kNoiseWeight = 2.0;     // times the noise is added to every energy

// Costs
constexpr double kLagWeight = 0.36;   // that share of r is lost by a period of the longest lag
constexpr double kHintWeight = 0.03;  // an octave away from the time-domain stage's period
constexpr double kOddsWeight = 0.25;  // of the natural logarithm of the odds for voice
constexpr double kMostOdds = 12;
constexpr double kQuietBelow = 15;                        // dB below the loud frames
constexpr double kSwitch = 0.4;                           // between voice and silence
constexpr double kOctaveWeight = 1.0, kOctaveMost = 1.0;  // of successive periods
constexpr double kCreakMost = 0.3;                        // where one of them is creak, which is irregular
constexpr float kSameOctaves = 0.1f;                      // a candidate as near is that of the pulses
constexpr float kLeastCorrelation = 0.2f;

// Register
constexpr int kRegisterReach = 200;  // frames on either side
constexpr int kBins = 96, kBinsPerOctave = 24;
constexpr int kLeastRegister = 20;       // clear frames that make one
constexpr double kRegisterLevel = 15;    // dB below the loud frames
constexpr float kRegisterClear = 0.8f;   // correlation
constexpr double kRegisterFree = 0.5;    // octaves about the median that cost nothing
constexpr double kRegisterWeight = 0.4;  // an octave
constexpr double kRegisterMost = 0.3;
// Above it begins to yield where what it prefers is worse by so much in r, and has yielded a tenth further on.
constexpr double kYieldFrom = 0.2, kYieldSpan = 0.1;

// Rims
constexpr std::ptrdiff_t kRimReach = 5, kOctaveReach = 10;  // frames
constexpr std::ptrdiff_t kRimEdge = 3;                      // the outermost of them
constexpr double kRimJump = 0.3, kEdgeJump = 0.18;          // octaves between successive periods
constexpr double kRimNear = 1.05;                           // times the inner period, or under it, is near
constexpr double kOctaveNear = 0.15;                        // octaves from a whole one
constexpr float kRimLeast = 0.2f;                           // r of a period found again,
constexpr float kRimWorse = 0.1f, kOctaveWorse = 0.6f;      // which may be so much under that of its own,
constexpr float kRimClear = 0.5f;                           // which else stays where it is as clear as this
constexpr std::size_t kShortestRun = 3;                     // frames

// Fine periods
constexpr double kFineWindow = 0.015;     // seconds
constexpr int kFineReach = 3;             // lags on either side
constexpr double kMostOffCentre = 0.006;  // seconds
constexpr double kFitReach = 0.013;       // seconds on either side
constexpr double kFitApart = 0.08;        // a neighbour's period differs by less than this share

class Tracking {
 public:
  Tracking(const PitchTrackingRequest& request, std::span<float> periods);
  bool Run(const std::function<bool(double)>& progress);

 private:
  void MeasureLevels();
  void FindCandidates(std::size_t frame);
  void AddCandidate(CandidateFrame& frame, float hint, int lag) const;
  void AddPulses(CandidateFrame& frame) const;
  void Insert(CandidateFrame& frame, const PitchCandidate& found) const;
  double CostOf(const PitchCandidate& candidate, const CandidateFrame& frame) const;
  void DecideVoicing();
  void Balance();
  void PreferRegister();
  std::vector<int> RegisterBins(double base) const;
  void ChargeRegister(std::size_t frame, double middle);
  void Search();
  double StepCost(const CandidateFrame& before, int from, const CandidateFrame& now, int to) const;
  void FollowBack(int state);
  struct Found {
    float period, r;
  };
  Found PeriodNear(std::size_t frame, float period) const;
  float OwnR(std::size_t frame) const;
  double OctavesBetween(std::size_t one, std::size_t other) const;
  bool MendRim(std::size_t frame, float inner, bool alone);
  std::ptrdiff_t BeyondJump(std::ptrdiff_t rim, std::ptrdiff_t inward, std::ptrdiff_t length) const;
  void MendRims();
  void DropShortRuns();
  void Refine();
  double OffCentre(std::size_t frame) const;
  void FitGlides();

  int FineWindow() const { return TruncateToInt32(rate_ * kFineWindow); }
  double BelowLoud(float level) const {
    return std::max(0.0, levels_.loud - static_cast<double>(level) - kQuietBelow);
  }
  float CreakCost(float lag, float level) const {
    return static_cast<double>(lag) > rate_ / bounds_.lowest
               ? static_cast<float>(kCreakCost + kQuietCreak * BelowLoud(level))
               : 0.0f;
  }

  const PitchTrackingRequest& request_;
  std::span<float> periods_;
  const PitchBounds bounds_;
  const PitchBands bands_;
  const int decimation_;
  const double rate_;
  int lowest_ = 0, highest_ = 0;    // lags of the coarse band
  const double slowest_;            // the longest period that is looked for
  const float perCoarse_;           // working samples
  std::vector<float> correlation_;  // from lowest_ − 1 to highest_ + 1
  std::vector<CandidateFrame> frames_;
  std::vector<std::array<std::uint8_t, CandidateFrame::kMostVoices + 1>> cameFrom_;
  SpeechLevels levels_;
  std::optional<CreakPulses> pulses_;
};

Tracking::Tracking(const PitchTrackingRequest& request, std::span<float> periods)
    : request_(request),
      periods_(periods),
      bounds_(BoundsOf(request.range)),
      bands_(request.samples, request.sampleRate, request.firstFrame, periods.size()),
      decimation_(bands_.decimation()),
      rate_(bands_.rate()),
      slowest_(rate_ / (bounds_.lowest > kLowestBound ? bounds_.lowest : kCreak)),
      perCoarse_(static_cast<float>(rate_ / bands_.coarseRate())) {
  lowest_ = std::max(2, TruncateToInt32(bands_.coarseRate() / bounds_.highest));
  highest_ = std::max(lowest_, TruncateToInt32(std::ceil(slowest_ / static_cast<double>(perCoarse_))));
}

bool Tracking::Run(const std::function<bool(double)>& progress) {
  frames_.resize(periods_.size());
  cameFrom_.resize(periods_.size());
  correlation_.resize(static_cast<std::size_t>(highest_ - lowest_ + 3));
  MeasureLevels();
  pulses_.emplace(bands_, levels_.floor);
  for (std::size_t f = 0; f < frames_.size(); ++f) {
    if (progress && f % 512 == 0 && !progress(static_cast<double>(f) / static_cast<double>(frames_.size())))
      return false;
    FindCandidates(f);
  }
  DecideVoicing();
  Balance();
  Search();
  PreferRegister();
  Balance();
  Search();
  MendRims();
  DropShortRuns();
  Refine();
  FitGlides();
  return true;
}

void Tracking::MeasureLevels() {
  const auto samples = [this](double seconds) { return std::max(1, TruncateToInt32(rate_ * seconds)); };
  const int half30 = samples(0.015), half10 = samples(0.005);
  std::vector<double> powers(frames_.size());
  for (std::size_t f = 0; f < frames_.size(); ++f) {
    const std::size_t centre = bands_.Centre(f);
    powers[f] = bands_.low.Power(centre, half30);
    frames_[f].level30 = static_cast<float>(Decibels(powers[f] + kLeastPower));
    frames_[f].level10 = static_cast<float>(Decibels(bands_.low.Power(centre, half10) + kLeastPower));
  }
  std::sort(powers.begin(), powers.end());
  const auto quantile = [&powers](double share) {
    return powers[static_cast<std::size_t>(share * static_cast<double>(powers.size() - 1))];
  };
  const double loud = std::max(quantile(kLoudShare), kLoudestToLoud * powers.back());
  const double noise = std::min(quantile(kNoiseShare), kNoiseToLoud * loud);
  levels_.loud = Decibels(loud + kLeastPower);
  levels_.noise = Decibels(noise + kLeastPower);
  levels_.floor = kNoiseWeight * noise + kLeastPower;
}

void Tracking::FindCandidates(std::size_t f) {
  CandidateFrame& frame = frames_[f];
  CorrelateCoarse(bands_, bands_.CoarseCentre(f), levels_.floor,
                  TruncateToInt32(bands_.coarseRate() * kWindow), lowest_ - 1, highest_ + 1,
                  correlation_.data());
  const float hint = request_.hints[f];
  frame.count = 0;
  frame.pulses = pulses_->About(bands_.Centre(f));
  float best = 0;
  for (int lag = lowest_; lag <= highest_; ++lag) {
    const float* r = correlation_.data() + (lag - lowest_ + 1);
    if (r[0] < kLeastPeak || r[0] < r[-1] || r[0] <= r[1]) continue;
    best = std::max(best, r[0] - CreakCost(static_cast<float>(lag) * perCoarse_, frame.level30));
    AddCandidate(frame, hint, lag);
  }
  frame.best = best;
  if (frame.pulses.IsSingle()) AddPulses(frame);
}

double Tracking::CostOf(const PitchCandidate& candidate, const CandidateFrame& frame) const {
  const double longest = rate_ / bounds_.lowest;
  return 1 -
         static_cast<double>(candidate.r) * (1 - kLagWeight * static_cast<double>(candidate.lag) / longest) +
         static_cast<double>(CreakCost(candidate.lag, frame.level30));
}

/// A maximum of the correlation, refined by the parabola through its neighbours.
void Tracking::AddCandidate(CandidateFrame& frame, float hint, int lag) const {
  const float* r = correlation_.data() + (lag - lowest_ + 1);
  const float shift = PeakShift(r);
  PitchCandidate found;
  found.lag = std::clamp((static_cast<float>(lag) + shift) * perCoarse_,
                         static_cast<float>(rate_ / bounds_.highest), static_cast<float>(slowest_));
  found.octaves = static_cast<float>(Log2(static_cast<double>(found.lag)));
  found.r = r[0] - 0.25f * (r[-1] - r[1]) * shift;
  double cost = CostOf(found, frame);
  if (hint > 1) {
    const double apart = static_cast<double>(found.octaves) - Log2(static_cast<double>(hint) / decimation_);
    cost += kHintWeight * std::min(1.0, std::fabs(apart));
  }
  found.cost = static_cast<float>(cost);
  Insert(frame, found);
}

/// The spacing of a frame's single pulses, which may be that of a candidate already. Slower than the lowest
/// bound of all it is told as that.
void Tracking::AddPulses(CandidateFrame& frame) const {
  const auto slowest = static_cast<float>(slowest_);
  PitchCandidate found;
  found.lag = frame.pulses.spacing;
  if (found.lag < static_cast<float>(rate_ / bounds_.highest) ||
      (found.lag > slowest && bounds_.lowest > kLowestBound))
    return;
  found.r = frame.pulses.r;
  found.cost = static_cast<float>(CostOf(found, frame));
  frame.best = std::max(frame.best, found.r - CreakCost(found.lag, frame.level30));
  found.lag = std::min(found.lag, slowest);
  found.octaves = static_cast<float>(Log2(static_cast<double>(found.lag)));
  found.single = true;
  for (PitchCandidate& voice : frame.Voices()) {
    if (std::fabs(voice.octaves - found.octaves) >= kSameOctaves) continue;
    voice.single = true;
    voice.r = std::max(voice.r, found.r);
    voice.cost = std::min(voice.cost, found.cost);
    return;
  }
  Insert(frame, found);
}

void Tracking::Insert(CandidateFrame& frame, const PitchCandidate& found) const {
  auto& voices = frame.voices;
  if (frame.count == CandidateFrame::kMostVoices && found.cost >= voices.back().cost) return;
  if (frame.count < CandidateFrame::kMostVoices) ++frame.count;
  auto place = static_cast<std::size_t>(frame.count - 1);
  for (; place > 0 && voices[place - 1].cost > found.cost; --place) voices[place] = voices[place - 1];
  voices[place] = found;
}

/// Silence costs as much more than the cheapest voice as the odds for voice are.
void Tracking::DecideVoicing() {
  if (request_.study.inputs) request_.study.inputs->resize(frames_.size());
  for (std::size_t f = 0; f < frames_.size(); ++f) {
    const VoicingInputs inputs = MeasureVoicing(bands_, levels_, frames_, f);
    if (request_.study.inputs) (*request_.study.inputs)[f] = inputs;
    const auto odds = static_cast<double>(VoicingLogOdds(*request_.study.net, inputs));
    const double against = 1 - static_cast<double>(frames_[f].best);
    frames_[f].silence = static_cast<float>(against + kOddsWeight * std::clamp(odds, -kMostOdds, kMostOdds));
  }
}

/// Whether there is a voice is decided by the correlation alone, whatever its lag: the cheapest candidate
/// costs 1 − r of the best, the others as much more as their scores are apart.
void Tracking::Balance() {
  for (CandidateFrame& frame : frames_) {
    const std::span<PitchCandidate> voices(frame.voices.data(), static_cast<std::size_t>(frame.count));
    float cheapest = 0;
    for (std::size_t i = 0; i < voices.size(); ++i)
      cheapest = i == 0 ? voices[i].cost : std::min(cheapest, voices[i].cost);
    for (PitchCandidate& voice : voices) voice.cost += 1 - frame.best - cheapest;
  }
}

/// The bins of the clear frames' periods, by log2 of the lag; −1 for the other frames.
std::vector<int> Tracking::RegisterBins(double base) const {
  std::vector<int> bins(frames_.size(), -1);
  for (std::size_t f = 0; f < frames_.size(); ++f) {
    if (periods_[f] <= 0 || frames_[f].best < kRegisterClear ||
        static_cast<double>(frames_[f].level30) < levels_.loud - kRegisterLevel)
      continue;
    const double octaves = Log2(static_cast<double>(periods_[f]) / decimation_) - base;
    bins[f] = std::clamp(TruncateToInt32(octaves * kBinsPerOctave), 0, kBins - 1);
  }
  return bins;
}

/// A voice whose periods alternate correlates better over two of them, and a woman's over two as well as over
/// one; what she speaks in before and after tells them apart.
void Tracking::PreferRegister() {
  const double base = Log2(rate_ / bounds_.highest);
  const std::vector<int> bins = RegisterBins(base);
  std::array<int, kBins> histogram{};  // of the frames within reach
  int total = 0;
  const auto count = static_cast<std::ptrdiff_t>(frames_.size());
  const auto add = [&](std::ptrdiff_t f, int sign) {
    if (f < 0 || f >= count || bins[static_cast<std::size_t>(f)] < 0) return;
    histogram[static_cast<std::size_t>(bins[static_cast<std::size_t>(f)])] += sign;
    total += sign;
  };
  for (std::ptrdiff_t f = 0; f < kRegisterReach; ++f) add(f, 1);
  for (std::ptrdiff_t f = 0; f < count; ++f) {
    add(f + kRegisterReach, 1);
    add(f - kRegisterReach - 1, -1);
    if (total < kLeastRegister) continue;
    std::size_t median = 0;
    for (int below = histogram[0]; 2 * below < total; below += histogram[median]) ++median;
    ChargeRegister(static_cast<std::size_t>(f), base + (static_cast<double>(median) + 0.5) / kBinsPerOctave);
  }
}

/// Adds to a frame's candidates what their distance from the register costs. It yields above, where all that it
/// prefers is clearly worse; below, a voice of alternating periods is always better over two of them, and it
/// yields to single pulses alone.
void Tracking::ChargeRegister(std::size_t f, double middle) {
  const std::span<PitchCandidate> voices = frames_[f].Voices();
  std::array<double, CandidateFrame::kMostVoices> charges{};
  for (std::size_t i = 0; i < voices.size(); ++i) {
    const double below = static_cast<double>(voices[i].octaves) - middle;
    charges[i] = std::min(kRegisterMost, kRegisterWeight * std::max(0.0, std::fabs(below) - kRegisterFree));
    voices[i].creak = voices[i].single && below > kRegisterFree;
    if (voices[i].creak) charges[i] = 0;
  }
  for (std::size_t i = 0; i < voices.size(); ++i) {
    if (charges[i] <= 0) continue;
    float preferred = 0;
    for (std::size_t j = 0; j < voices.size(); ++j)
      if (charges[j] < charges[i]) preferred = std::max(preferred, voices[j].r);
    const bool above = static_cast<double>(voices[i].octaves) < middle;
    const double worse = static_cast<double>(voices[i].r - preferred) - kYieldFrom;
    const double share = above ? std::clamp(1 - worse / kYieldSpan, 0.0, 1.0) : 1.0;
    voices[i].cost += static_cast<float>(charges[i] * share);
  }
}

/// What it costs to go from a state of the frame before to one of this frame; state 0 is silence.
double Tracking::StepCost(const CandidateFrame& before, int from, const CandidateFrame& now, int to) const {
  if ((from == 0) != (to == 0)) return kSwitch;
  if (to == 0) return 0;
  const PitchCandidate& one = before.voices[static_cast<std::size_t>(from - 1)];
  const PitchCandidate& other = now.voices[static_cast<std::size_t>(to - 1)];
  return std::min(one.creak || other.creak ? kCreakMost : kOctaveMost,
                  kOctaveWeight * std::fabs(static_cast<double>(other.octaves - one.octaves)));
}

void Tracking::Search() {
  const CandidateFrame silence;  // lies before the first frame
  std::array<double, CandidateFrame::kMostVoices + 1> cost{}, next{};
  for (std::size_t f = 0; f < frames_.size(); ++f) {
    const CandidateFrame& now = frames_[f];
    const CandidateFrame& before = f > 0 ? frames_[f - 1] : silence;
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
      cameFrom_[f][static_cast<std::size_t>(to)] = static_cast<std::uint8_t>(best);
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
      const PitchCandidate& voice = frames_[f].voices[static_cast<std::size_t>(state - 1)];
      if (voice.r >= kLeastCorrelation) periods_[f] = voice.lag * static_cast<float>(decimation_);
    }
    state = cameFrom_[f][static_cast<std::size_t>(state)];
  }
}

/// The period of the largest r near another period; 0 when r is small there.
Tracking::Found Tracking::PeriodNear(std::size_t f, float period) const {
  const double lag = static_cast<double>(period) / decimation_;
  const int from = std::max(2, TruncateToInt32(std::ceil(lag / kRimNear)));
  const int to = std::min(TruncateToInt32(lag * kRimNear), TruncateToInt32(slowest_));
  float best = kRimLeast;
  int found = 0;
  for (int i = from; i <= to; ++i) {
    const int width = CorrelationWidth(TruncateToInt32(rate_ * kWindow), i);
    const float r = CentredCorrelation(bands_.low, bands_.Centre(f), i, width, levels_.floor);
    if (r <= best) continue;
    best = r;
    found = i;
  }
  return {static_cast<float>(found * decimation_), best};
}

/// r at a frame's period, that of its pulses where these gave it.
float Tracking::OwnR(std::size_t f) const {
  const auto octaves = static_cast<float>(Log2(static_cast<double>(periods_[f]) / decimation_));
  float best = 0;
  for (const PitchCandidate& voice : frames_[f].Voices())
    if (std::fabs(voice.octaves - octaves) < kSameOctaves) best = std::max(best, voice.r);
  return best;
}

/// How far apart two successive periods are.
double Tracking::OctavesBetween(std::size_t one, std::size_t other) const {
  return std::fabs(Log2(static_cast<double>(periods_[one]) / static_cast<double>(periods_[other])));
}

/// The frames from `rim` inwards that lie beyond a jump, less than half of the stretch. More of them may be
/// wrong an octave below, where they end slower than the lowest bound.
std::ptrdiff_t Tracking::BeyondJump(std::ptrdiff_t rim, std::ptrdiff_t inward, std::ptrdiff_t length) const {
  const double slowest = static_cast<double>(request_.sampleRate) / bounds_.lowest;
  const bool tooSlow = static_cast<double>(periods_[static_cast<std::size_t>(rim)]) > slowest;
  for (std::ptrdiff_t count = std::min(tooSlow ? kOctaveReach : kRimReach, (length - 1) / 2); count > 0;
       --count) {
    const std::ptrdiff_t inner = rim + count * inward;
    const double octaves =
        OctavesBetween(static_cast<std::size_t>(inner - inward), static_cast<std::size_t>(inner));
    const bool jump = count <= kRimEdge    ? octaves > kEdgeJump
                      : count <= kRimReach ? octaves > kRimJump
                                           : std::fabs(octaves - 1) < kOctaveNear;
    if (jump) return count;
  }
  return 0;
}

/// A frame beyond a jump takes a period near that of its inner neighbour, if it has one about as good as its
/// own; after a jump of an octave that need not be good. Else it keeps a clear one of its own that is not slower
/// than the lowest bound, but not where it would stand `alone`. False: it has none, and what lies beyond has none
/// either.
bool Tracking::MendRim(std::size_t f, float inner, bool alone) {
  const double octaves = std::fabs(Log2(static_cast<double>(periods_[f] / inner)));
  const bool octave = std::fabs(octaves - 1) < kOctaveNear;
  const bool tooSlow = static_cast<double>(periods_[f]) * bounds_.lowest > request_.sampleRate;
  const float own = OwnR(f);
  const Found near = PeriodNear(f, inner);
  if (near.period > 0 && near.r >= own - (octave ? kOctaveWorse : kRimWorse))
    periods_[f] = near.period;
  else if (alone || own < kRimClear || tooSlow)
    periods_[f] = 0;
  return periods_[f] > 0;
}

/// Where a stretch begins or ends with a few frames beyond a jump.
void Tracking::MendRims() {
  const auto count = static_cast<std::ptrdiff_t>(periods_.size());
  const auto voiced = [&](std::ptrdiff_t f) {
    return f < count && periods_[static_cast<std::size_t>(f)] > 0;
  };
  for (std::ptrdiff_t first = 0; first < count; ++first) {
    if (!voiced(first)) continue;
    std::ptrdiff_t last = first;
    while (voiced(last + 1)) ++last;
    for (const std::ptrdiff_t inward : {1, -1}) {
      const std::ptrdiff_t rim = inward > 0 ? first : last;
      bool found = true, alone = true;
      for (std::ptrdiff_t k = BeyondJump(rim, inward, last - first + 1); k-- > 0;) {
        const auto f = static_cast<std::size_t>(rim + k * inward);
        if (!found) periods_[f] = 0;
        const float before = periods_[f];
        found = found && MendRim(f, periods_[f + static_cast<std::size_t>(inward)], alone && k == 0);
        alone = alone && periods_[f] != before;
      }
    }
    first = last;
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
    for (int i = from; i <= to; ++i)
      r[static_cast<std::size_t>(i - from)] = CentredCorrelation(
          bands_.wide, bands_.Centre(f), i, CorrelationWidth(FineWindow(), i), kLeastPower);
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
  const int width = CorrelationWidth(FineWindow(), lag);
  const double seconds = CentreOfProducts(bands_.wide, bands_.Centre(f), lag, width) / rate_;
  return std::clamp(seconds, -kMostOffCentre, kMostOffCentre);
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
  return periods.empty() || Tracking(request, periods).Run(progress);
}

}  // namespace parlowen
