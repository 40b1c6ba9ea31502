#include <algorithm>
#include <cmath>

#include "pitch/FastPitchSteps.h"

namespace parlowen {
namespace {

constexpr std::uint8_t kPositiveTrack = 1, kNegativeTrack = 255;

constexpr double kTracksAgreeFrom = 0.95, kTracksAgreeBelow = 1.05;  // ratio of their periods
constexpr int kLongGap = 6;                                          // frames
constexpr int kSpreadReach = 5;

// Where a run is weak enough to be split; the longer of two kinds may be louder there.
constexpr int kSplitRun = 31, kSplitInside = 15;  // frames
constexpr int kSplitMagnitude = 35;
constexpr int kLongSplitRun = 46, kLongSplitMagnitude = 55;

// Continuity
constexpr float kSteadyJump = 0.15f;                                  // relative, from one frame to the next
constexpr float kSteadySlopeFrom = 0.75f, kSteadySlopeBelow = 1.33f;  // ratio of two differences in a row
constexpr int kLongestUnsteady = 5;                                   // frames
constexpr std::size_t kMostStretches = 30;                            // of a run; the last takes the rest

/// Gives an undetermined frame the one of its two periods that is nearer to a neighbour's.
void TakeNearest(const TrackPeriods& tracks, std::size_t f, float neighbour, FastPitchFrames& frames,
                 std::vector<float>& periods) {
  const auto p = static_cast<float>(tracks.positive[f]), n = static_cast<float>(tracks.negative[f]);
  if (p <= 0 && n <= 0) return;
  const bool positive = n <= 0 || (p > 0 && std::fabs(p - neighbour) <= std::fabs(n - neighbour));
  periods[f] = positive ? p : n;
  frames[f].choice = positive ? kPositiveTrack : kNegativeTrack;
}

bool HoldsPeriod(PeriodBounds bounds, float period) {
  return period > static_cast<float>(bounds.shortest) && period < static_cast<float>(bounds.longest);
}

/// Whether frame f goes on as those before it, of which `first` is the stretch's first.
bool IsSteady(const std::vector<float>& periods, std::size_t first, std::size_t f) {
  const float p = periods[f], before = periods[f - 1];
  if (std::fabs(p - before) / before < kSteadyJump) return true;
  if (f < first + 2) return false;
  const float earlier = before - periods[f - 2];
  if (earlier == 0) return false;
  const float ratio = (p - before) / earlier;
  return ratio >= kSteadySlopeFrom && ratio < kSteadySlopeBelow;
}

}  // namespace

int QuietestFrame(const FastPitchFrames& frames, int first, int last) {
  int quietest = first;
  for (int f = first + 1; f <= last; ++f)
    if (frames[static_cast<std::size_t>(f)].magnitude < frames[static_cast<std::size_t>(quietest)].magnitude)
      quietest = f;
  return quietest;
}

std::vector<double> PeriodsOfTrack(const FastPitchFrames& frames, int step, int span,
                                   std::span<const int> marks, PeriodBounds bounds) {
  std::vector<double> periods(frames.size(), 0.0);
  std::size_t begin = 0;
  for (std::size_t f = 0; f < frames.size(); ++f) {
    const int from = static_cast<int>(f) * step, end = from + span;
    while (begin < marks.size() && marks[begin] < from) ++begin;
    if (!frames[f].voiced) continue;
    double sum = 0;
    int intervals = 0;
    for (std::size_t m = begin; m + 1 < marks.size() && marks[m + 1] < end; ++m) {
      const int interval = marks[m + 1] - marks[m];
      if (!bounds.Hold(interval)) continue;
      sum += interval;
      ++intervals;
    }
    if (intervals > 0) periods[f] = sum / intervals;
  }
  return periods;
}

std::vector<float> JoinTracks(const FastPitchFrames& frames, const TrackPeriods& tracks) {
  std::vector<float> periods(frames.size(), 0.0f);
  for (std::size_t f = 0; f < frames.size(); ++f) {
    if (!frames[f].voiced) continue;
    const double p = tracks.positive[f], n = tracks.negative[f];
    const double ratio = n > 0 ? p / n : 0.0;
    const bool agree = ratio >= kTracksAgreeFrom && ratio < kTracksAgreeBelow;
    periods[f] = agree ? static_cast<float>((p + n) / 2) : kUndeterminedPeriod;
  }
  return periods;
}

void FillLongGaps(const TrackPeriods& tracks, FastPitchFrames& frames, std::vector<float>& periods) {
  const auto open = [&](std::size_t f) {
    return f < frames.size() && frames[f].voiced && !IsDetermined(periods[f]);
  };
  for (std::size_t f = 0; f < frames.size(); ++f) {
    if (!open(f)) continue;
    const std::size_t first = f;
    while (open(f + 1)) ++f;
    if (f - first + 1 < kLongGap) continue;
    int votes = 0;
    for (std::size_t i = first; i <= f; ++i) votes += frames[i].polarity;
    for (std::size_t i = first; i <= f; ++i) {
      const double period = (votes >= 0 ? tracks.positive : tracks.negative)[i];
      if (period <= 0) continue;
      periods[i] = static_cast<float>(period);
      frames[i].choice = votes >= 0 ? kPositiveTrack : kNegativeTrack;
    }
  }
}

void SpreadNeighbours(const TrackPeriods& tracks, FastPitchFrames& frames, std::vector<float>& periods) {
  const std::size_t count = frames.size();
  const auto open = [&](std::size_t f) { return frames[f].voiced && !IsDetermined(periods[f]); };
  for (std::size_t f = 1; f < count; ++f)
    if (open(f) && IsDetermined(periods[f - 1])) TakeNearest(tracks, f, periods[f - 1], frames, periods);
  for (std::size_t f = count; f-- > 0;)
    if (f + 1 < count && open(f) && IsDetermined(periods[f + 1]))
      TakeNearest(tracks, f, periods[f + 1], frames, periods);
  // Frames without a period of their own stop the two passes; the third reaches over them.
  for (std::size_t f = count; f-- > 0;) {
    if (!open(f)) continue;
    for (std::size_t g = f + 1; g <= f + kSpreadReach && g < count && frames[g].voiced; ++g) {
      if (!IsDetermined(periods[g])) continue;
      TakeNearest(tracks, f, periods[g], frames, periods);
      break;
    }
  }
}

void ToDocumentSamples(int decimation, std::vector<float>& periods, PeriodBounds& bounds) {
  for (float& period : periods)
    if (IsDetermined(period)) period *= static_cast<float>(decimation);
  bounds = {bounds.shortest * decimation, bounds.longest * decimation};
}

void SplitWeakRuns(FastPitchFrames& frames, std::vector<float>& periods) {
  for (bool changed = true; changed;) {
    changed = false;
    for (const FrameRun run : VoicedRuns(frames)) {
      if (run.Length() < kSplitRun) continue;
      const auto quietest =
          static_cast<std::size_t>(QuietestFrame(frames, run.first + kSplitInside, run.last - kSplitInside));
      const int least = run.Length() < kLongSplitRun ? kSplitMagnitude : kLongSplitMagnitude;
      if (frames[quietest].magnitude >= least) continue;
      frames[quietest].voiced = false;
      periods[quietest] = 0;
      changed = true;
    }
  }
}

void DropOutOfRange(const FastPitchFrames& frames, PeriodBounds bounds, std::vector<float>& periods) {
  for (std::size_t f = 0; f < frames.size(); ++f)
    if (frames[f].voiced && !HoldsPeriod(bounds, periods[f])) periods[f] = kUndeterminedPeriod;
}

void BridgeSingles(const FastPitchFrames& frames, PeriodBounds bounds, std::vector<float>& periods) {
  for (bool changed = true; changed;) {
    changed = false;
    for (std::size_t f = 1; f + 1 < frames.size(); ++f) {
      const float before = periods[f - 1], after = periods[f + 1];
      if (!frames[f].voiced || IsDetermined(periods[f])) continue;
      if (!HoldsPeriod(bounds, before) || !HoldsPeriod(bounds, after)) continue;
      periods[f] = (before + after) / 2;
      changed = true;
    }
  }
}

void KeepSteadyStretches(const FastPitchFrames& frames, std::vector<float>& periods) {
  for (const FrameRun run : VoicedRuns(frames)) {
    std::vector<FrameRun> stretches;
    for (int f = run.first; f <= run.last; ++f) {
      const auto at = static_cast<std::size_t>(f);
      if (!IsDetermined(periods[at])) continue;
      const bool follows = f > run.first && IsDetermined(periods[at - 1]);
      const bool full = follows && stretches.size() >= kMostStretches;
      if (follows && (full || IsSteady(periods, static_cast<std::size_t>(stretches.back().first), at))) {
        stretches.back().last = f;
      } else {
        stretches.push_back({f, f});
      }
    }
    for (const FrameRun stretch : stretches)
      if (stretch.Length() <= kLongestUnsteady)
        std::fill_n(periods.begin() + stretch.first, stretch.Length(), kUndeterminedPeriod);
  }
}

}  // namespace parlowen
