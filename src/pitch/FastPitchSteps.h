#pragma once
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "dsp/SampleSpan.h"
#include "pitch/FastPitch.h"

namespace parlowen {

// The steps of ExtractPitchFast(), each from arrays to arrays, in the order in which they run. Lengths and
// places are in samples of the working rate and in frames of 10 ms, until ToDocumentSamples(); magnitudes in
// thousandths of the sound's peak from ScaleToThousand() on. Frames and periods are of equal number.

/// A stretch at the working rate: whole frames of `step` samples, with silence on either side for filters.
class WorkingSamples {
 public:
  static constexpr int kMargin = 8;

  WorkingSamples(int frameCount, int step)
      : frameCount_(frameCount),
        step_(step),
        values_(static_cast<std::size_t>(frameCount) * static_cast<std::size_t>(step) + 2 * kMargin) {}

  int step() const { return step_; }
  int frameCount() const { return frameCount_; }
  int count() const { return frameCount_ * step_; }
  /// Sample n on, n from −kMargin to count() + kMargin.
  const std::int32_t* From(int n) const { return values_.data() + kMargin + n; }
  std::int32_t* From(int n) { return values_.data() + kMargin + n; }
  const std::int32_t* Frame(int f) const { return From(f * step_); }
  std::int32_t* Frame(int f) { return From(f * step_); }
  std::int32_t operator[](int n) const { return *From(n); }
  WorkingSamples Negated() const;

 private:
  int frameCount_, step_;
  std::vector<std::int32_t> values_;
};

using FastPitchFrames = std::vector<FastPitchFrame>;

/// First and last voiced frame of a run.
struct FrameRun {
  int first = 0, last = 0;
  int Length() const { return last - first + 1; }
};
std::vector<FrameRun> VoicedRuns(const FastPitchFrames& frames);
/// The frame of least magnitude among first .. last, the first of equals.
int QuietestFrame(const FastPitchFrames& frames, int first, int last);

/// Periods lie strictly between the two.
struct PeriodBounds {
  int shortest = 0, longest = 0;
  bool Hold(double period) const { return period > shortest && period < longest; }
};

/// A period of 0 is none; kUndeterminedPeriod is that of a voiced frame for which none is known.
inline constexpr float kUndeterminedPeriod = 1.0f;
inline bool IsDetermined(float period) { return period > kUndeterminedPeriod; }

// --- Preparation

/// Of each `decimation` (1, 2 or 3) document samples from `start` on one: the least when the first is negative, else the
/// largest. The margins are filled too; what lies outside the document is 0.
void Decimate(SampleSpan document, int start, int decimation, WorkingSamples& samples);

/// Takes its mean (truncated) off every two frames, an odd last frame by itself. The margins go with the frames
/// beside them, but for places outside insideFrom .. insideEnd − 1, which lie outside the document.
void RemoveDc(std::int64_t insideFrom, std::int64_t insideEnd, WorkingSamples& samples);

// --- Voicing

/// Zero crossings and level of every frame.
void MeasureFrames(const WorkingSamples& samples, FastPitchFrames& frames);

/// Runs of more than five frames that cross zero often, lie under half of the largest level and stay rough after
/// a low-pass at 2000 Hz get kNoiseCrossings.
void FindNoiseRuns(const WorkingSamples& samples, int sampleRate, FastPitchFrames& frames);

/// Low-pass at 1000 Hz, then the largest |output| but for the last hundred becomes 1000; the margins become 0.
/// False, and nothing changed, when nothing is left after the low-pass.
bool ScaleToThousand(int sampleRate, WorkingSamples& samples);

/// Magnitude, and by it voiced or not.
void DecideByMagnitude(const WorkingSamples& samples, FastPitchFrames& frames);

/// Fewer than five voiced frames at the very start become unvoiced.
void DropShortLeadIn(FastPitchFrames& frames);

/// Soft frames without a low band, runs of fewer than five frames, then soft beginnings of runs that never get
/// loud become unvoiced.
void CleanUpVoicing(const WorkingSamples& samples, int sampleRate, FastPitchFrames& frames);

/// Runs of more than a hundred frames are split at their quietest frame, 30 frames inside or more.
void SplitLongRuns(FastPitchFrames& frames);

/// The samples of a frame become 0 where it and the next are unvoiced.
void SilenceUnvoiced(const FastPitchFrames& frames, WorkingSamples& samples);

// --- Period range

/// +1 where the largest sample of one and a half frames exceeds the largest negative magnitude, else −1.
void FindPolarity(const WorkingSamples& samples, FastPitchFrames& frames);

/// The mean interval of the strong peaks of |x| in the run's eight loudest frames, in samples at `rate` (Hz); 0
/// when there is none between rate/512 and rate/64.
double EstimateRun(const WorkingSamples& samples, int rate, const FastPitchFrames& frames, FrameRun run);

/// The bounds of a setting; the automatic ones from the estimates of all runs, those above 0. A single run gets
/// wider ones.
PeriodBounds BoundPeriods(PitchRange range, int rate, std::span<const double> estimates, bool singleRun);

/// The period that a track begins with: the mean of the estimates within the bounds, else their middle.
double StartPeriod(std::span<const double> estimates, PeriodBounds bounds);

// --- Marks

/// Places of the pitch marks on the positive peaks, at most 6000, at least bounds.shortest and at most
/// bounds.longest apart within a voice.
std::vector<int> TrackMarks(const WorkingSamples& samples, PeriodBounds bounds, double startPeriod);

// --- Periods

/// A voiced frame's mean interval by each of the two tracks; 0 where a track has none.
struct TrackPeriods {
  std::vector<double> positive, negative;
};

/// Of the marks within `span` samples from a voiced frame's start on, the mean of the intervals within bounds.
std::vector<double> PeriodsOfTrack(const FastPitchFrames& frames, int step, int span,
                                   std::span<const int> marks, PeriodBounds bounds);

/// The mean of both tracks where their ratio lies in [0.95, 1.05), else undetermined.
std::vector<float> JoinTracks(const FastPitchFrames& frames, const TrackPeriods& tracks);

/// Six or more undetermined frames in a row take their periods from the track that the polarities vote for.
void FillLongGaps(const TrackPeriods& tracks, FastPitchFrames& frames, std::vector<float>& periods);

/// An undetermined frame beside a determined one takes the period of the track that is nearer to it: forward,
/// backward, and backward once more over up to five frames that have none of their own.
void SpreadNeighbours(const TrackPeriods& tracks, FastPitchFrames& frames, std::vector<float>& periods);

/// From working samples to document samples. Everything below is in these.
void ToDocumentSamples(int decimation, std::vector<float>& periods, PeriodBounds& bounds);

/// Splits runs of more than 30 frames at a frame that is weak enough, until none is.
void SplitWeakRuns(FastPitchFrames& frames, std::vector<float>& periods);

/// A voiced frame's period outside the bounds becomes undetermined.
void DropOutOfRange(const FastPitchFrames& frames, PeriodBounds bounds, std::vector<float>& periods);

/// A single undetermined frame between two periods takes their mean.
void BridgeSingles(const FastPitchFrames& frames, PeriodBounds bounds, std::vector<float>& periods);

/// Stretches of at most five frames between jumps become undetermined.
void KeepSteadyStretches(const FastPitchFrames& frames, std::vector<float>& periods);

}  // namespace parlowen
