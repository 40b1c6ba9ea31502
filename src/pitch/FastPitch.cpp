#include "pitch/FastPitch.h"

#include <algorithm>

#include "pitch/FastPitchSteps.h"

// The steps, in order. They work on a copy of the samples at the working rate.
//
//   preparation    Decimate, RemoveDc
//   voicing        MeasureFrames     zero crossings and level
//                  FindNoiseRuns     noise crosses zero often and is rough
//                  ScaleToThousand   low-passed; the sound's peak is 1000 from here on
//                  DecideByMagnitude, DropShortLeadIn   (the voicing decision alone ends here)
//                  CleanUpVoicing, SplitLongRuns, SilenceUnvoiced
//   period range   FindPolarity, EstimateRun, BoundPeriods
//   marks          TrackMarks        on the positive peaks, then on the negative ones
//   periods        PeriodsOfTrack    the mean interval between a frame's marks, by each track
//                  JoinTracks        one period where the tracks agree
//                  FillLongGaps, SpreadNeighbours   one of the two where they do not
//                  ToDocumentSamples
//                  SplitWeakRuns, DropOutOfRange, BridgeSingles, KeepSteadyStretches
//
// FastPitchVoicing.cpp holds those down to SilenceUnvoiced, FastPitchMarks.cpp those down to TrackMarks,
// FastPitchPeriods.cpp the rest.

namespace parlowen {
namespace {

constexpr int kMarkSpansASecond = 50;  // a frame looks at the marks of 20 ms

/// Where sample 0 of the document and the one behind its last lie in the working samples.
std::int64_t FirstInside(const FastPitchRequest& request, int decimation) {
  const std::int64_t before = -std::int64_t{request.start};
  return before <= 0 ? before / decimation : (before + decimation - 1) / decimation;
}
std::int64_t EndInside(const FastPitchRequest& request, int decimation) {
  const std::int64_t after = std::int64_t{request.samples.count} - request.start;
  return after <= 0 ? after / decimation : (after + decimation - 1) / decimation;
}

std::vector<double> EstimateRuns(const WorkingSamples& samples, int rate, const FastPitchFrames& frames,
                                 const std::vector<FrameRun>& runs) {
  std::vector<double> estimates;
  for (const FrameRun run : runs) {
    const double estimate = EstimateRun(samples, rate, frames, run);
    if (estimate > 0) estimates.push_back(estimate);
  }
  return estimates;
}

/// The two mark tracks and the periods that they give.
TrackPeriods TrackBothPeaks(const WorkingSamples& samples, int rate, const FastPitchFrames& frames,
                            PeriodBounds bounds, double startPeriod) {
  const int step = samples.step(), span = rate / kMarkSpansASecond;
  return {PeriodsOfTrack(frames, step, span, TrackMarks(samples, bounds, startPeriod), bounds),
          PeriodsOfTrack(frames, step, span, TrackMarks(samples.Negated(), bounds, startPeriod), bounds)};
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
  const int decimation = PitchDecimation(request.sampleRate), rate = request.sampleRate / decimation;
  const int step = rate / 100;
  const int whole = step > 0 ? std::min(request.count / decimation / step, request.maxFrames) : 0;
  const int frameCount = std::max(0, whole);
  FastPitchFrames& frames = result.frames;
  std::vector<float>& periods = result.periods;
  result.stepSamples = step * decimation;
  frames.assign(static_cast<std::size_t>(frameCount), {});
  periods.assign(static_cast<std::size_t>(frameCount), 0.0f);
  if (frameCount == 0) return 0;

  WorkingSamples samples(frameCount, step);
  Decimate(request.samples, request.start, decimation, samples);
  RemoveDc(FirstInside(request, decimation), EndInside(request, decimation), samples);

  MeasureFrames(samples, frames);
  FindNoiseRuns(samples, request.sampleRate, frames);
  if (!ScaleToThousand(request.sampleRate, samples)) return frameCount;
  DecideByMagnitude(samples, frames);
  DropShortLeadIn(frames);
  for (FastPitchFrame& frame : frames) frame.leveled = frame.voiced;
  if (!request.full) return frameCount;
  CleanUpVoicing(samples, request.sampleRate, frames);
  SplitLongRuns(frames);
  SilenceUnvoiced(frames, samples);

  FindPolarity(samples, frames);
  const std::vector<FrameRun> runs = VoicedRuns(frames);
  const std::vector<double> estimates = EstimateRuns(samples, rate, frames, runs);
  PeriodBounds bounds = BoundPeriods(request.range, rate, estimates, runs.size() == 1);

  const TrackPeriods tracks = TrackBothPeaks(samples, rate, frames, bounds, StartPeriod(estimates, bounds));
  periods = JoinTracks(frames, tracks);
  FillLongGaps(tracks, frames, periods);
  SpreadNeighbours(tracks, frames, periods);
  ToDocumentSamples(decimation, periods, bounds);
  SplitWeakRuns(frames, periods);
  DropOutOfRange(frames, bounds, periods);
  BridgeSingles(frames, bounds, periods);
  KeepSteadyStretches(frames, periods);
  frames.front().voiced = false;
  periods.front() = 0;
  return frameCount;
}

}  // namespace parlowen
