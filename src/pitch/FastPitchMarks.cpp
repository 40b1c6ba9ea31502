#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "base/Arithmetic.h"
#include "dsp/Clones.h"
#include "pitch/FastPitchSteps.h"

namespace parlowen {
namespace {

// Estimates of the runs
constexpr int kStrongestFrames = 8;
constexpr double kRunPeakShare = 0.75;                 // of the largest |x| of the strongest frames
constexpr int kHighestEstimate = 512, kLowestHz = 64;  // Hz
constexpr double kNoEstimate = 400;                    // samples; longer ones say nothing about the shortest

// The track
constexpr int kMostMarks = 6000, kMostCandidates = 6;
constexpr double kMarkPeakShare = 0.35;  // of the largest peak within one longest period
constexpr int kLeastMarkPeak = 10;
constexpr int kStable = 7;  // steps without a jump, from which intervals decide alone
constexpr double kSteady = 0.1, kNearlySteady = 0.2;  // relative change from one interval to the next
constexpr int kNearlySteadySteps = 3;                 // what is left of the steps after the latter
constexpr double kLongerIsWorse = 0.3;                // of similarity, at the longest period
constexpr double kNearlyAsSimilar = 0.9;
constexpr double kSharperEarlier = 0.4, kSharperLater = 0.2;  // of |x|, for the second best to win

/// Σ a[i]·b[i].
PARLOWEN_CLONES std::int64_t Product(const std::int32_t* a, const std::int32_t* b, int count) {
  std::int64_t sum = 0;
  for (int i = 0; i < count; ++i) sum += std::int64_t{a[i]} * b[i];
  return sum;
}

/// The largest of `count` samples, at least 0.
PARLOWEN_CLONES int LargestOf(const std::int32_t* x, int count) {
  std::int32_t largest = 0;
  for (int i = 0; i < count; ++i) largest = std::max(largest, x[i]);
  return largest;
}

/// Peaks that may be the next mark.
struct Candidates {
  std::array<int, kMostCandidates> places{};
  int count = 0;
  std::span<const int> All() const { return {places.data(), static_cast<std::size_t>(count)}; }
};

/// What a track expects next.
struct Expectation {
  double period = 0;
  int stability = 0;  ///< intervals without a jump
};

class MarkTrack {
 public:
  MarkTrack(const WorkingSamples& samples, PeriodBounds bounds, double startPeriod)
      : samples_(samples), bounds_(bounds), startPeriod_(startPeriod) {}

  std::vector<int> Run() const;

 private:
  int NextMark(int last, Expectation& expected) const;
  Candidates Collect(int last) const;
  int Cheapest(const Candidates& candidates, int last, const Expectation& expected) const;
  int MostSimilar(const Candidates& candidates, int last) const;
  double Similarity(int last, int candidate) const;
  int LargestPeak(int from, int end) const;
  bool IsPeak(int n) const { return samples_[n] >= samples_[n - 1] && samples_[n] > samples_[n + 1]; }

  const WorkingSamples& samples_;
  const PeriodBounds bounds_;
  const double startPeriod_;
};

std::vector<int> MarkTrack::Run() const {
  std::vector<int> marks;
  Expectation expected{startPeriod_, 0};
  int from = 0, mark = -1;  // where the search for a new beginning stands, and the last mark
  while (static_cast<int>(marks.size()) < kMostMarks) {
    const int next = mark >= 0 ? NextMark(mark, expected) : -1;
    if (next >= 0) {
      mark = next;
    } else {
      if (mark >= 0) from = mark + std::max(1, bounds_.shortest);
      const int end = std::min(from + bounds_.longest, samples_.count());
      if (from >= end) break;
      expected = {startPeriod_, 0};
      mark = LargestPeak(from, end);
      from = end;
      if (mark < 0) continue;
    }
    marks.push_back(mark);
  }
  return marks;
}

/// The mark that follows `last`, or −1 when no peak is there; the expectation goes on with it.
int MarkTrack::NextMark(int last, Expectation& expected) const {
  const Candidates candidates = Collect(last);
  if (candidates.count == 0) return -1;
  int mark = Cheapest(candidates, last, expected);
  if (candidates.count > 2 && expected.stability < kStable) {
    const int similar = MostSimilar(candidates, last);
    if (similar >= 0) mark = similar;
  }
  const double next = std::clamp<double>(mark - last, bounds_.shortest, bounds_.longest);
  const double change = std::fabs(next - expected.period) / next;
  expected.stability = change < kSteady          ? expected.stability + 1
                       : change <= kNearlySteady ? kNearlySteadySteps
                                                 : 0;
  expected.period = next;
  return mark;
}

/// The peaks between the bounds after the last mark.
Candidates MarkTrack::Collect(int last) const {
  Candidates found;
  const int end = std::min(last + bounds_.longest, samples_.count() - 2);
  const int largest = LargestOf(samples_.From(last + 1), end - last);
  const double threshold = std::max<double>(kMarkPeakShare * largest, kLeastMarkPeak - 1);
  for (int n = last + std::max(1, bounds_.shortest); n <= end && found.count < kMostCandidates; ++n)
    if (samples_[n] > threshold && IsPeak(n)) found.places[static_cast<std::size_t>(found.count++)] = n;
  return found;
}

/// The candidate whose interval is nearest to the period and whose peak is nearest to the largest one.
int MarkTrack::Cheapest(const Candidates& candidates, int last, const Expectation& expected) const {
  int strongest = 0;
  for (const int c : candidates.All()) strongest = std::max(strongest, samples_[c]);
  int winner = candidates.places[0];
  double least = 1e300;
  for (const int c : candidates.All()) {
    double cost = std::fabs(c - last - expected.period) / expected.period;
    if (expected.stability >= kStable) cost *= 2;
    cost += static_cast<double>(strongest - samples_[c]) / strongest;
    if (cost >= least) continue;
    least = cost;
    winner = c;
  }
  return winner;
}

/// The candidate after which the wave goes on as after the last mark; of two that are nearly as good, the
/// sharper peak. −1 when the wave does not repeat at all.
int MarkTrack::MostSimilar(const Candidates& candidates, int last) const {
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
  if (second < 0 || secondScore <= kNearlyAsSimilar * bestScore) return best;
  const auto sharpness = [this](int c) {
    return 2 * std::abs(samples_[c]) - std::abs(samples_[c - 1] + samples_[c + 1]);
  };
  const double share = second < best ? kSharperEarlier : kSharperLater;
  return sharpness(second) - sharpness(best) > share * std::abs(samples_[second]) ? second : best;
}

/// Σab/√(Σa²Σb²) of one interval after the last mark and one after the candidate, less for longer intervals.
double MarkTrack::Similarity(int last, int candidate) const {
  const int interval = candidate - last;
  const int count = std::min(interval, samples_.count() - candidate);
  const std::int32_t *a = samples_.From(last), *b = samples_.From(candidate);
  const std::int64_t ab = Product(a, b, count), aa = Product(a, a, count), bb = Product(b, b, count);
  if (ab <= 0 || aa == 0 || bb == 0) return 0;
  const double r = static_cast<double>(ab) / std::sqrt(static_cast<double>(aa) * static_cast<double>(bb));
  return r * (1 - kLongerIsWorse * interval / bounds_.longest);
}

/// The largest peak in from .. end − 1, or −1.
int MarkTrack::LargestPeak(int from, int end) const {
  int mark = -1, largest = kLeastMarkPeak - 1;
  for (int n = from; n < end; ++n) {
    if (samples_[n] <= largest || !IsPeak(n)) continue;
    largest = samples_[n];
    mark = n;
  }
  return mark;
}

/// First frame of the run's eight (or fewer) loudest ones in a row.
int StrongestStretch(const FastPitchFrames& frames, FrameRun run, int length) {
  int strongest = run.first, largestSum = -1;
  for (int first = run.first; first + length - 1 <= run.last; ++first) {
    int sum = 0;
    for (int f = first; f < first + length; ++f) sum += frames[static_cast<std::size_t>(f)].magnitude;
    if (sum <= largestSum) continue;
    largestSum = sum;
    strongest = first;
  }
  return strongest;
}

}  // namespace

void FindPolarity(const WorkingSamples& samples, FastPitchFrames& frames) {
  const int step = samples.step();
  for (std::size_t f = 0; f < frames.size(); ++f) {
    frames[f].polarity = 0;
    if (!frames[f].voiced) continue;
    const int first = static_cast<int>(f) * step, end = std::min(first + step + step / 2, samples.count());
    int highest = 0, lowest = 0;
    for (int n = first; n < end; ++n) {
      highest = std::max(highest, samples[n]);
      lowest = std::min(lowest, samples[n]);
    }
    frames[f].polarity = highest > 0 && highest > -lowest ? +1 : -1;
  }
}

double EstimateRun(const WorkingSamples& samples, int rate, const FastPitchFrames& frames, FrameRun run) {
  const int length = std::min(kStrongestFrames, run.Length()), step = samples.step();
  const int from = StrongestStretch(frames, run, length) * step, end = from + length * step;
  int largest = 0;
  for (int n = from; n < end; ++n) largest = std::max(largest, std::abs(samples[n]));
  const double threshold = kRunPeakShare * largest;
  const int lowest = rate / kHighestEstimate, highest = rate / kLowestHz;

  double sum = 0;
  int intervals = 0, last = -1, before = -1;
  const auto take = [&] {
    const int interval = last - before;
    if (before < 0 || interval <= lowest || interval >= highest) return;
    sum += interval;
    ++intervals;
  };
  for (int n = from + 1; n + 1 < end; ++n) {
    const int x = std::abs(samples[n]);
    if (x <= threshold || x < std::abs(samples[n - 1]) || x <= std::abs(samples[n + 1])) continue;
    if (last >= 0 && n - last < lowest) {  // of two close peaks the larger one stays
      if (x > std::abs(samples[last])) last = n;
      continue;
    }
    take();
    before = last;
    last = n;
  }
  take();
  return intervals > 0 ? sum / intervals : 0.0;
}

PeriodBounds BoundPeriods(PitchRange range, int rate, std::span<const double> estimates, bool singleRun) {
  const PitchBounds hertz = BoundsOf(range);
  PeriodBounds bounds{rate / hertz.highest, rate / hertz.lowest};
  if (range != PitchRange::Automatic) return bounds;
  double smallest = kNoEstimate, largest = 0;
  for (const double estimate : estimates) {
    smallest = std::min(smallest, estimate);
    largest = std::max(largest, estimate);
  }
  if (smallest >= kNoEstimate) return bounds;
  const int narrowed = TruncateToInt32(singleRun ? smallest * 2 / 3 : smallest * 0.7142857142857143);
  const int widened = TruncateToInt32(largest * (singleRun ? 2.4 : 1.9));
  const int shortest = std::max(bounds.shortest, narrowed);
  return {shortest, std::min(std::max(widened, shortest * 7 / 2), bounds.longest)};
}

double StartPeriod(std::span<const double> estimates, PeriodBounds bounds) {
  double sum = 0;
  int inRange = 0;
  for (const double estimate : estimates) {
    if (estimate < bounds.shortest || estimate > bounds.longest) continue;
    sum += estimate;
    ++inRange;
  }
  return inRange > 0 ? sum / inRange : (bounds.shortest + bounds.longest) / 2.0;
}

std::vector<int> TrackMarks(const WorkingSamples& samples, PeriodBounds bounds, double startPeriod) {
  return MarkTrack(samples, bounds, startPeriod).Run();
}

}  // namespace parlowen
