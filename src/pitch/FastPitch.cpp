#include "pitch/FastPitch.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <span>

#include "base/Arithmetic.h"
#include "dsp/Clones.h"
#include "dsp/Fir.h"

// The stages, in order. Samples are those of the working rate, in a copy with a margin on both sides.
//
//   preparation      1 Decimate            2 LowPass (designed with the document's rate)   3 RemoveDc
//   voicing          4 MeasureFrames       5 FindNoiseRuns        6 ScaleToThousand        7
//   DecideByMagnitude
//                    8 DropShortLeadIn     9 (the voicing decision alone ends here)
//                   10 CleanUpVoicing     11 SplitLongRuns, SilenceUnvoiced
//   period range    12 FindPolarity       13 EstimateRun          14 FixBounds
//   marks           15 TrackMarks (positive and negative peaks)
//   periods         16 PeriodsOfTrack     17 JoinTracks           18 FillLongGaps          19
//   SpreadNeighbours
//                   20 (periods in document samples)              21 SplitWeakRuns
//                   22 DropOutOfRange, BridgeSingles, KeepSteadyStretches                  23 (frame 0 is
//                   unvoiced)

namespace parlowen {
namespace {

constexpr int kMargin = 8;       // samples kept on either side for the filters
constexpr int kShortestRun = 5;  // frames
constexpr int kMaxMarks = 6000;
constexpr float kUndetermined = 1.0f;
constexpr std::uint8_t kPositiveTrack = 1, kNegativeTrack = 255;

constexpr int kNoiseZeroCrossings = 20;    // a frame, and
constexpr double kNoiseSlope = 1000.0;     // Σ|Δy|/Σ|y| in thousandths
constexpr std::int64_t kSilentHalf = 240;  // Σ|x| of half a frame
constexpr int kLeastMagnitude = 23;
constexpr double kRunPeakShare = 0.75;   // of the largest |x| of the strongest stretch
constexpr double kMarkPeakShare = 0.35;  // of the largest peak within one longest period
constexpr int kLeastMarkPeak = 10;
constexpr int kStable = 7;  // steps without a jump, from which marks are taken by interval alone
constexpr int kMostCandidates = 6;

/// First and last voiced frame of a run.
struct FrameRun {
  int first = 0, last = 0;
  int Length() const { return last - first + 1; }
};

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

/// The largest |output| of a filter run but for its last hundred samples.
double LargestOutput(std::span<const double> output) {
  double largest = 0;
  for (std::size_t n = 0; n + 100 < output.size(); ++n) largest = std::max(largest, std::fabs(output[n]));
  return largest;
}

class Extraction {
 public:
  Extraction(const FastPitchRequest& request, FastPitch& result)
      : request_(request), result_(result), frames_(result.frames), periods_(result.periods) {}

  int Run();

 private:
  /// Peaks that may be the next mark.
  struct Candidates {
    std::array<int, kMostCandidates> places{};
    int count = 0;
    std::span<const int> All() const { return {places.data(), static_cast<std::size_t>(count)}; }
  };
  /// What a track expects next.
  struct Track {
    double period = 0;
    int stability = 0;  ///< intervals without a jump
  };

  void Decimate();
  void RemoveDc();
  void MeasureFrames();
  void FindNoiseRuns();
  bool IsNoise(FrameRun run);
  bool ScaleToThousand();
  void DecideByMagnitude();
  void DropShortLeadIn();
  void CleanUpVoicing();
  void DropWeakLowBand();
  void DropWeakStarts();
  void SplitLongRuns();
  void SilenceUnvoiced();
  void FindPolarity();
  int StrongestStretch(FrameRun run, int length) const;
  double EstimateRun(FrameRun run) const;
  void FixBounds();
  void TrackMarks(int polarity, std::vector<int>& marks) const;
  Candidates CollectCandidates(int polarity, int last) const;
  int CheapestCandidate(const Candidates& candidates, int polarity, int last, const Track& track) const;
  int MostSimilarCandidate(const Candidates& candidates, int last) const;
  int NextMark(int polarity, int last, Track& track) const;
  double StartPeriod() const;
  int LargestPeak(int polarity, int from, int end) const;
  double Similarity(int last, int candidate) const;
  void PeriodsOfTrack(const std::vector<int>& marks, std::vector<double>& periods) const;
  void JoinTracks();
  void FillLongGaps();
  void SpreadNeighbours();
  void TakeNearest(int frame, float neighbour);
  void ToDocumentSamples();
  void SplitWeakRuns();
  void DropOutOfRange();
  void BridgeSingles();
  void KeepSteadyStretches();

  std::vector<FrameRun> VoicedRuns() const;
  FastPitchFrame& Frame(int f) { return frames_[static_cast<std::size_t>(f)]; }
  const FastPitchFrame& Frame(int f) const { return frames_[static_cast<std::size_t>(f)]; }
  float& Period(int f) { return periods_[static_cast<std::size_t>(f)]; }
  bool Determined(int f) const { return periods_[static_cast<std::size_t>(f)] > kUndetermined; }
  bool InRange(float period) const {
    return period > static_cast<float>(minPeriod_) && period < static_cast<float>(maxPeriod_);
  }
  void Unvoice(int f) {
    Frame(f).voiced = false;
    Period(f) = 0;
  }
  int QuietestFrame(int from, int to) const;
  bool IsInDocument(int n) const {
    const std::int64_t place = request_.start + std::int64_t{n} * decimation_;
    return place >= 0 && place < request_.samples.count;
  }
  const std::int32_t* Samples(int n) const { return samples_.data() + kMargin + n; }
  std::int32_t* Samples(int n) { return samples_.data() + kMargin + n; }
  std::int32_t At(int n) const { return *Samples(n); }

  const FastPitchRequest& request_;
  FastPitch& result_;
  std::vector<FastPitchFrame>& frames_;
  std::vector<float>& periods_;
  std::vector<std::int32_t> samples_;  ///< of the working rate, with kMargin on either side
  std::vector<double> filtered_;
  std::vector<int> positiveMarks_, negativeMarks_;
  std::vector<double> positive_, negative_;  ///< a frame's period by each track; 0 none
  std::vector<double> estimates_;
  int decimation_ = 1, rate_ = 0, step_ = 0, frameCount_ = 0, count_ = 0, largestLevel_ = 0;
  int minPeriod_ = 0, maxPeriod_ = 0;
};

int Extraction::Run() {
  decimation_ = PitchDecimation(request_.sampleRate);
  rate_ = request_.sampleRate / decimation_;
  step_ = rate_ / 100;
  result_.stepSamples = step_ * decimation_;
  frameCount_ = step_ > 0 ? std::min(request_.count / decimation_ / step_, request_.maxFrames) : 0;
  frameCount_ = std::max(0, frameCount_);
  count_ = frameCount_ * step_;
  frames_.assign(static_cast<std::size_t>(frameCount_), {});
  periods_.assign(static_cast<std::size_t>(frameCount_), 0.0f);
  if (frameCount_ == 0) return 0;

  Decimate();
  RemoveDc();
  MeasureFrames();
  FindNoiseRuns();
  if (!ScaleToThousand()) return frameCount_;
  DecideByMagnitude();
  DropShortLeadIn();
  for (FastPitchFrame& frame : frames_) frame.leveled = frame.voiced;
  if (!request_.full) return frameCount_;
  CleanUpVoicing();
  SplitLongRuns();
  SilenceUnvoiced();
  FindPolarity();
  FixBounds();
  TrackMarks(+1, positiveMarks_);
  TrackMarks(-1, negativeMarks_);
  PeriodsOfTrack(positiveMarks_, positive_);
  PeriodsOfTrack(negativeMarks_, negative_);
  JoinTracks();
  FillLongGaps();
  SpreadNeighbours();
  ToDocumentSamples();
  SplitWeakRuns();
  DropOutOfRange();
  BridgeSingles();
  KeepSteadyStretches();
  Unvoice(0);
  return frameCount_;
}

std::vector<FrameRun> Extraction::VoicedRuns() const {
  std::vector<FrameRun> runs;
  for (int f = 0; f < frameCount_; ++f) {
    if (!Frame(f).voiced) continue;
    const int first = f;
    while (f + 1 < frameCount_ && Frame(f + 1).voiced) ++f;
    runs.push_back({first, f});
  }
  return runs;
}

/// The frame of least magnitude in from..to, the first of equals.
int Extraction::QuietestFrame(int from, int to) const {
  int quietest = from;
  for (int f = from + 1; f <= to; ++f)
    if (Frame(f).magnitude < Frame(quietest).magnitude) quietest = f;
  return quietest;
}

// --- Preparation

void Extraction::Decimate() {
  samples_.resize(static_cast<std::size_t>(count_ + 2 * kMargin));
  for (int n = -kMargin; n < count_ + kMargin; ++n) {
    const std::int64_t first = request_.start + std::int64_t{n} * decimation_;
    std::int32_t kept = request_.samples.At(first);
    const bool lowest = kept < 0;
    for (int i = 1; i < decimation_; ++i) {
      const std::int32_t other = request_.samples.At(first + i);
      kept = lowest ? std::min(kept, other) : std::max(kept, other);
    }
    *Samples(n) = kept;
  }
}

void Extraction::RemoveDc() {
  const int block = 2 * step_;
  for (int first = 0; first < count_; first += block) {
    const int end = std::min(first + block, count_);
    std::int64_t sum = 0;
    for (int n = first; n < end; ++n) sum += At(n);
    const auto mean = static_cast<std::int32_t>(sum / (end - first));
    // The margins go with the block beside them, but for what lies outside the document, which is zero
    // already: a step there would count as the largest output.
    const int from = first == 0 ? -kMargin : first, to = end == count_ ? end + kMargin : end;
    for (int n = from; n < to; ++n)
      if (IsInDocument(n)) *Samples(n) -= mean;
  }
}

// --- Voicing decision

void Extraction::MeasureFrames() {
  largestLevel_ = 0;
  for (int f = 0; f < frameCount_; ++f) {
    const std::int32_t* x = Samples(f * step_);
    int crossings = 0, level = std::abs(x[0]) / 10;
    for (int n = 1; n < step_; ++n) {
      crossings += (x[n] < 0) != (x[n - 1] < 0);
      level += std::abs(x[n]) / 10;
    }
    Frame(f).zeroCrossings = crossings;
    Frame(f).level = level;
    largestLevel_ = std::max(largestLevel_, level);
  }
}

void Extraction::FindNoiseRuns() {
  const auto candidate = [this](int f) {
    return Frame(f).zeroCrossings > kNoiseZeroCrossings && Frame(f).level < largestLevel_ / 2;
  };
  for (int f = 0; f < frameCount_; ++f) {
    if (!candidate(f)) continue;
    const int first = f;
    while (f + 1 < frameCount_ && candidate(f + 1)) ++f;
    if (f - first + 1 <= kShortestRun || !IsNoise({first, f})) continue;
    for (int i = first; i <= f; ++i) Frame(i).zeroCrossings = kNoiseCrossings;
  }
}

bool Extraction::IsNoise(FrameRun run) {
  const FilterTaps filter = Design(2000, 0.92, 3, request_.sampleRate);
  filtered_.resize(static_cast<std::size_t>(run.Length() * step_));
  LowPass(filter, Samples(run.first * step_), run.Length() * step_, filtered_.data());
  int noisy = 0;
  for (int f = 0; f < run.Length(); ++f) {
    const double* y = filtered_.data() + f * step_;
    double slope = 0, sum = std::fabs(y[0]);
    for (int n = 1; n < step_; ++n) {
      slope += std::fabs(y[n] - y[n - 1]);
      sum += std::fabs(y[n]);
    }
    const double divisor = sum < 1 ? slope / 2 : sum;
    if (divisor > 0 && 1000 * slope / divisor > kNoiseSlope) ++noisy;
  }
  return noisy > 2 * run.Length() / 3;
}

/// False when nothing is left after the low-pass.
bool Extraction::ScaleToThousand() {
  const FilterTaps filter = Design(1000, 0.98, 3, request_.sampleRate);
  filtered_.resize(static_cast<std::size_t>(count_));
  LowPass(filter, Samples(0), count_, filtered_.data());
  const double largest = LargestOutput(filtered_);
  if (largest <= 0) return false;
  for (int n = 0; n < count_; ++n)
    *Samples(n) =
        SaturateInt16(TruncateToInt64(filtered_[static_cast<std::size_t>(n)] * 1000 / largest + 0.5));
  std::fill(samples_.begin(), samples_.begin() + kMargin, 0);
  std::fill(samples_.end() - kMargin, samples_.end(), 0);
  return true;
}

void Extraction::DecideByMagnitude() {
  for (int f = 0; f < frameCount_; ++f) {
    const std::int32_t* x = Samples(f * step_);
    std::int64_t first = 0, second = 0;
    for (int n = 0; n < step_ / 2; ++n) first += std::abs(x[n]);
    for (int n = step_ / 2; n < step_; ++n) second += std::abs(x[n]);
    const bool halfSilent = first < kSilentHalf || second < kSilentHalf;
    Frame(f).magnitude = halfSilent ? 0 : static_cast<int>((first + second) / step_);
    Frame(f).voiced = Frame(f).magnitude >= kLeastMagnitude && Frame(f).zeroCrossings != kNoiseCrossings;
  }
}

void Extraction::DropShortLeadIn() {
  int length = 0;
  while (length < frameCount_ && Frame(length).voiced) ++length;
  if (length >= kShortestRun) return;
  for (int f = 0; f < length; ++f) Unvoice(f);
}

void Extraction::CleanUpVoicing() {
  DropWeakLowBand();
  for (const FrameRun run : VoicedRuns())
    if (run.Length() < kShortestRun)
      for (int f = run.first; f <= run.last; ++f) Unvoice(f);
  DropWeakStarts();
}

void Extraction::DropWeakLowBand() {
  const FilterTaps filter = Design(500, 0.98, 4, request_.sampleRate);
  filtered_.resize(static_cast<std::size_t>(step_));
  for (int f = 0; f < frameCount_; ++f) {
    if (Frame(f).magnitude < 1 || Frame(f).magnitude >= 80) continue;
    LowPass(filter, Samples(f * step_), step_, filtered_.data());
    double sum = 0;
    for (const double y : filtered_) sum += std::fabs(y);
    if (sum / step_ < 19) Unvoice(f);
  }
}

void Extraction::DropWeakStarts() {
  for (const FrameRun run : VoicedRuns()) {
    int largest = 0, weak = -1;
    for (int f = run.first; f <= run.last; ++f) largest = std::max(largest, Frame(f).magnitude);
    for (int f = run.first; f <= std::min(run.last, run.first + 5); ++f)
      if (Frame(f).magnitude < 25) weak = f;
    if (largest >= 56) continue;
    for (int f = run.first; f <= weak; ++f) Unvoice(f);
  }
}

void Extraction::SplitLongRuns() {
  for (bool changed = true; changed;) {
    changed = false;
    for (const FrameRun run : VoicedRuns()) {
      if (run.Length() <= 100) continue;
      Unvoice(QuietestFrame(run.first + 30, run.last - 30));
      changed = true;
    }
  }
}

void Extraction::SilenceUnvoiced() {
  for (int f = 0; f < frameCount_; ++f) {
    const bool next = f + 1 < frameCount_ && Frame(f + 1).voiced;
    if (!Frame(f).voiced && !next) std::fill(Samples(f * step_), Samples(f * step_) + step_, 0);
  }
}

// --- Period range

void Extraction::FindPolarity() {
  for (int f = 0; f < frameCount_; ++f) {
    Frame(f).polarity = 0;
    if (!Frame(f).voiced) continue;
    const int first = f * step_, end = std::min(first + step_ + step_ / 2, count_);
    const auto [lowest, highest] = std::minmax_element(Samples(first), Samples(end));
    Frame(f).polarity = *highest > 0 && *highest > -*lowest ? +1 : -1;
  }
}

/// First frame of the eight (or fewer) loudest ones of a run.
int Extraction::StrongestStretch(FrameRun run, int length) const {
  int strongest = run.first, largestSum = -1;
  for (int first = run.first; first + length - 1 <= run.last; ++first) {
    int sum = 0;
    for (int f = first; f < first + length; ++f) sum += Frame(f).magnitude;
    if (sum <= largestSum) continue;
    largestSum = sum;
    strongest = first;
  }
  return strongest;
}

/// The mean interval of the strong peaks of |x| in a run's strongest stretch; 0 when there is none.
double Extraction::EstimateRun(FrameRun run) const {
  const int length = std::min(8, run.Length());
  const int from = StrongestStretch(run, length) * step_, end = from + length * step_;
  int largest = 0;
  for (int n = from; n < end; ++n) largest = std::max(largest, std::abs(At(n)));
  const double threshold = kRunPeakShare * largest;
  const int lowest = rate_ / 512, highest = rate_ / 64;

  double sum = 0;
  int intervals = 0, last = -1, before = -1;
  const auto take = [&] {
    const int interval = last - before;
    if (before < 0 || interval <= lowest || interval >= highest) return;
    sum += interval;
    ++intervals;
  };
  for (int n = from + 1; n + 1 < end; ++n) {
    const int x = std::abs(At(n));
    if (x <= threshold || x < std::abs(At(n - 1)) || x <= std::abs(At(n + 1))) continue;
    if (last >= 0 && n - last < lowest) {  // of two close peaks the larger one stays
      if (x > std::abs(At(last))) last = n;
      continue;
    }
    take();
    before = last;
    last = n;
  }
  take();
  return intervals > 0 ? sum / intervals : 0.0;
}

void Extraction::FixBounds() {
  const std::vector<FrameRun> runs = VoicedRuns();
  estimates_.clear();
  for (const FrameRun run : runs) {
    const double estimate = EstimateRun(run);
    if (estimate > 0) estimates_.push_back(estimate);
  }
  switch (request_.range) {
    case PitchRange::High:
      minPeriod_ = rate_ / 600;
      maxPeriod_ = rate_ / 144;
      return;
    case PitchRange::Middle:
      minPeriod_ = rate_ / 400;
      maxPeriod_ = rate_ / 96;
      return;
    case PitchRange::Low:
      minPeriod_ = rate_ / 280;
      maxPeriod_ = rate_ / 64;
      return;
    case PitchRange::Automatic: break;
  }
  minPeriod_ = rate_ / 500;
  maxPeriod_ = rate_ / 64;
  double smallest = 400, largest = 0;
  for (const double estimate : estimates_) {
    smallest = std::min(smallest, estimate);
    largest = std::max(largest, estimate);
  }
  if (smallest >= 400) return;
  const bool single = runs.size() == 1;
  const int narrowed = TruncateToInt32(single ? smallest * 2 / 3 : smallest * 0.7142857142857143);
  minPeriod_ = std::max(minPeriod_, narrowed);
  const int widened = TruncateToInt32(largest * (single ? 2.4 : 1.9));
  maxPeriod_ = std::min(std::max(widened, minPeriod_ * 7 / 2), rate_ / 64);
}

// --- Mark tracks

/// Σab/√(Σa²Σb²) of one interval after the last mark and one after the candidate, less for longer intervals.
double Extraction::Similarity(int last, int candidate) const {
  const int interval = candidate - last;
  std::int64_t ab = 0, aa = 0, bb = 0;
  for (int i = 0; i < interval && candidate + i < count_; ++i) {
    const std::int64_t a = At(last + i), b = At(candidate + i);
    ab += a * b;
    aa += a * a;
    bb += b * b;
  }
  if (ab <= 0 || aa == 0 || bb == 0) return 0;
  const double r = static_cast<double>(ab) / std::sqrt(static_cast<double>(aa) * static_cast<double>(bb));
  return r * (1 - 0.3 * interval / maxPeriod_);
}

/// The peaks between minP and maxP after the last mark; `x` values are times the polarity.
Extraction::Candidates Extraction::CollectCandidates(int polarity, int last) const {
  Candidates found;
  const int end = std::min(last + maxPeriod_, count_ - 2);
  int largest = 0;
  for (int n = last + 1; n <= end; ++n) largest = std::max(largest, At(n) * polarity);
  const double threshold = std::max<double>(kMarkPeakShare * largest, kLeastMarkPeak - 1);
  for (int n = last + std::max(1, minPeriod_); n <= end && found.count < kMostCandidates; ++n) {
    const int x = At(n) * polarity;
    if (x > threshold && x >= At(n - 1) * polarity && x > At(n + 1) * polarity)
      found.places[static_cast<std::size_t>(found.count++)] = n;
  }
  return found;
}

/// The candidate whose interval is nearest to the period and whose peak is nearest to the largest one.
int Extraction::CheapestCandidate(const Candidates& candidates, int polarity, int last,
                                  const Track& track) const {
  int strongest = 0;
  for (const int c : candidates.All()) strongest = std::max(strongest, At(c) * polarity);
  int winner = candidates.places[0];
  double least = 1e300;
  for (const int c : candidates.All()) {
    double cost = std::fabs(c - last - track.period) / track.period;
    if (track.stability >= kStable) cost *= 2;
    cost += static_cast<double>(strongest - At(c) * polarity) / strongest;
    if (cost >= least) continue;
    least = cost;
    winner = c;
  }
  return winner;
}

/// The candidate after which the wave goes on as after the last mark; of two that are nearly as good, the
/// sharper peak. −1 when the wave does not repeat at all.
int Extraction::MostSimilarCandidate(const Candidates& candidates, int last) const {
  int best = -1, second = -1;
  double bestScore = 0, secondScore = 0;
  for (const int c : candidates.All()) {
    const double score = Similarity(last, c);
    if (score > bestScore) {
      second = best;
      secondScore = bestScore;
      best = c;
      bestScore = score;
    } else if (score > secondScore) {
      second = c;
      secondScore = score;
    }
  }
  if (second < 0 || secondScore <= 0.9 * bestScore) return best;
  const auto sharpness = [this](int c) { return 2 * std::abs(At(c)) - std::abs(At(c - 1) + At(c + 1)); };
  const double share = second < best ? 0.4 : 0.2;
  return sharpness(second) - sharpness(best) > share * std::abs(At(second)) ? second : best;
}

/// The mark that follows `last`, or −1 when no peak is there; the track's period and stability go on with it.
int Extraction::NextMark(int polarity, int last, Track& track) const {
  const Candidates candidates = CollectCandidates(polarity, last);
  if (candidates.count == 0) return -1;
  int mark = CheapestCandidate(candidates, polarity, last, track);
  if (candidates.count > 2 && track.stability < kStable) {
    const int similar = MostSimilarCandidate(candidates, last);
    if (similar >= 0) mark = similar;
  }
  const double next = std::clamp<double>(mark - last, minPeriod_, maxPeriod_);
  const double change = std::fabs(next - track.period) / next;
  track.stability = change < 0.1 ? track.stability + 1 : change <= 0.2 ? 3 : 0;
  track.period = next;
  return mark;
}

/// The period that a track begins with: the mean of the run estimates within the bounds.
double Extraction::StartPeriod() const {
  double sum = 0;
  int inRange = 0;
  for (const double estimate : estimates_) {
    if (estimate < minPeriod_ || estimate > maxPeriod_) continue;
    sum += estimate;
    ++inRange;
  }
  return inRange > 0 ? sum / inRange : (minPeriod_ + maxPeriod_) / 2.0;
}

/// The largest peak in from..end − 1, or −1.
int Extraction::LargestPeak(int polarity, int from, int end) const {
  int mark = -1, largest = kLeastMarkPeak - 1;
  for (int n = from; n < end; ++n) {
    const int x = At(n) * polarity;
    if (x <= largest || x < At(n - 1) * polarity || x <= At(n + 1) * polarity) continue;
    largest = x;
    mark = n;
  }
  return mark;
}

void Extraction::TrackMarks(int polarity, std::vector<int>& marks) const {
  marks.clear();
  Track track{StartPeriod(), 0};
  int from = 0, mark = -1;  // where the search for a new beginning stands, and the last mark
  while (static_cast<int>(marks.size()) < kMaxMarks) {
    const int next = mark >= 0 ? NextMark(polarity, mark, track) : -1;
    if (next >= 0) {
      mark = next;
    } else {
      if (mark >= 0) from = mark + std::max(1, minPeriod_);
      const int end = std::min(from + maxPeriod_, count_);
      if (from >= end) return;
      track = {StartPeriod(), 0};
      mark = LargestPeak(polarity, from, end);
      from = end;
      if (mark < 0) continue;
    }
    marks.push_back(mark);
  }
}

// --- Frame periods

void Extraction::PeriodsOfTrack(const std::vector<int>& marks, std::vector<double>& periods) const {
  periods.assign(static_cast<std::size_t>(frameCount_), 0.0);
  std::size_t begin = 0;
  for (int f = 0; f < frameCount_; ++f) {
    const int from = f * step_, end = from + rate_ / 50;
    while (begin < marks.size() && marks[begin] < from) ++begin;
    if (!Frame(f).voiced) continue;
    double sum = 0;
    int intervals = 0;
    for (std::size_t m = begin; m + 1 < marks.size() && marks[m + 1] < end; ++m) {
      const int interval = marks[m + 1] - marks[m];
      if (interval <= minPeriod_ || interval >= maxPeriod_) continue;
      sum += interval;
      ++intervals;
    }
    if (intervals > 0) periods[static_cast<std::size_t>(f)] = sum / intervals;
  }
}

void Extraction::JoinTracks() {
  for (int f = 0; f < frameCount_; ++f) {
    Period(f) = 0;
    if (!Frame(f).voiced) continue;
    const double p = positive_[static_cast<std::size_t>(f)], n = negative_[static_cast<std::size_t>(f)];
    const double ratio = n > 0 ? p / n : 0.0;
    Period(f) = ratio >= 0.95 && ratio < 1.05 ? static_cast<float>((p + n) / 2) : kUndetermined;
  }
}

void Extraction::FillLongGaps() {
  for (int f = 0; f < frameCount_; ++f) {
    if (!Frame(f).voiced || Determined(f)) continue;
    const int first = f;
    while (f + 1 < frameCount_ && Frame(f + 1).voiced && !Determined(f + 1)) ++f;
    if (f - first + 1 < 6) continue;
    int votes = 0;
    for (int i = first; i <= f; ++i) votes += Frame(i).polarity;
    for (int i = first; i <= f; ++i) {
      const double period = (votes >= 0 ? positive_ : negative_)[static_cast<std::size_t>(i)];
      if (period <= 0) continue;
      Period(i) = static_cast<float>(period);
      Frame(i).choice = votes >= 0 ? kPositiveTrack : kNegativeTrack;
    }
  }
}

/// Gives an undetermined frame the one of its two periods that is nearer to a neighbour's.
void Extraction::TakeNearest(int f, float neighbour) {
  const auto p = static_cast<float>(positive_[static_cast<std::size_t>(f)]);
  const auto n = static_cast<float>(negative_[static_cast<std::size_t>(f)]);
  if (p <= 0 && n <= 0) return;
  const bool positive = n <= 0 || (p > 0 && std::fabs(p - neighbour) <= std::fabs(n - neighbour));
  Period(f) = positive ? p : n;
  Frame(f).choice = positive ? kPositiveTrack : kNegativeTrack;
}

void Extraction::SpreadNeighbours() {
  const auto open = [this](int f) { return Frame(f).voiced && !Determined(f); };
  for (int f = 1; f < frameCount_; ++f)
    if (open(f) && Determined(f - 1)) TakeNearest(f, Period(f - 1));
  for (int f = frameCount_ - 2; f >= 0; --f)
    if (open(f) && Determined(f + 1)) TakeNearest(f, Period(f + 1));
  // Frames without a period of their own stop the two passes; the third reaches over up to five of them.
  for (int f = frameCount_ - 2; f >= 0; --f) {
    if (!open(f)) continue;
    for (int g = f + 1; g <= f + 5 && g < frameCount_ && Frame(g).voiced; ++g) {
      if (!Determined(g)) continue;
      TakeNearest(f, Period(g));
      break;
    }
  }
}

void Extraction::ToDocumentSamples() {
  for (int f = 0; f < frameCount_; ++f)
    if (Determined(f)) Period(f) *= static_cast<float>(decimation_);
  minPeriod_ *= decimation_;
  maxPeriod_ *= decimation_;
}

void Extraction::SplitWeakRuns() {
  for (bool changed = true; changed;) {
    changed = false;
    for (const FrameRun run : VoicedRuns()) {
      if (run.Length() <= 30) continue;
      const int quietest = QuietestFrame(run.first + 15, run.last - 15);
      const int magnitude = Frame(quietest).magnitude;
      if (magnitude >= 35 && (run.Length() < 46 || magnitude >= 55)) continue;
      Unvoice(quietest);
      changed = true;
    }
  }
}

void Extraction::DropOutOfRange() {
  for (int f = 0; f < frameCount_; ++f)
    if (Frame(f).voiced && !InRange(Period(f))) Period(f) = kUndetermined;
}

void Extraction::BridgeSingles() {
  for (bool changed = true; changed;) {
    changed = false;
    for (int f = 1; f + 1 < frameCount_; ++f) {
      if (!Frame(f).voiced || Determined(f) || !InRange(Period(f - 1)) || !InRange(Period(f + 1))) continue;
      Period(f) = (Period(f - 1) + Period(f + 1)) / 2;
      changed = true;
    }
  }
}

void Extraction::KeepSteadyStretches() {
  const auto steady = [this](int first, int f) {
    const float p = Period(f), before = Period(f - 1);
    if (std::fabs(p - before) / before < 0.15f) return true;
    if (f - 2 < first) return false;
    const float earlier = before - Period(f - 2);
    if (earlier == 0) return false;
    const float ratio = (p - before) / earlier;
    return ratio >= 0.75f && ratio < 1.33f;
  };
  for (const FrameRun run : VoicedRuns()) {
    std::vector<FrameRun> stretches;
    for (int f = run.first; f <= run.last; ++f) {
      if (!Determined(f)) continue;
      const bool follows = f > run.first && Determined(f - 1);
      const bool full = follows && stretches.size() >= 30;  // the last stretch takes the rest
      if (follows && (full || steady(stretches.back().first, f))) {
        stretches.back().last = f;
      } else {
        stretches.push_back({f, f});
      }
    }
    for (const FrameRun stretch : stretches)
      if (stretch.Length() <= kShortestRun)
        for (int f = stretch.first; f <= stretch.last; ++f) Period(f) = kUndetermined;
  }
}

}  // namespace

PitchBounds BoundsOf(PitchRange range) {
  switch (range) {
    case PitchRange::High: return {144, 600};
    case PitchRange::Middle: return {96, 400};
    case PitchRange::Low: return {64, 280};
    case PitchRange::Automatic: break;
  }
  return {64, 500};
}

int PitchDecimation(int sampleRate) { return sampleRate < 16000 ? 1 : sampleRate < 32000 ? 2 : 3; }

int ExtractPitchFast(const FastPitchRequest& request, FastPitch& result) {
  return Extraction(request, result).Run();
}

}  // namespace parlowen
