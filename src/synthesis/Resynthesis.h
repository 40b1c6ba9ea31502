#pragma once
#include <cstdint>
#include <span>
#include <vector>

#include "dsp/SampleSpan.h"
#include "synthesis/TargetCurve.h"

namespace parlowen {

// The same speech with another melody, by overlap-add of pitch-synchronous pieces (TD-PSOLA), in 16-bit
// samples:
//   1. FindPitchMarks places one mark a period on the selection, from its contour;
//   2. SynthesizeOverlapAdd lays pieces of two periods down again at the distances of the target.

/// Behind the selection's last sample the output has so much room.
inline constexpr int kOutputMargin = 100;
/// Marks a job can hold, the largest 16-bit count: one a period of 11 s at up to 2978 Hz.
inline constexpr int kMostMarks = 32767;

/// One resynthesis of a selection.
struct SynthesisJob {
  int firstFrame = 0, frames = 0;    ///< 10 ms frames of the selection, that of its end included
  int start = 0, length = 0;         ///< samples of the document
  int sampleRate = 0;                ///< Hz
  bool ready = false;                ///< `output` has been made
  std::vector<std::int32_t> marks;   ///< samples from the start, increasing; at most kMostMarks
  std::vector<std::int16_t> output;  ///< length + kOutputMargin samples; empty before the first synthesis

  std::vector<std::int16_t> samples;  ///< the selection and what is read behind it
  std::vector<double> cosines;  ///< cos(n·π/L), n below 2L, for every distance L of two marks; made once
  std::vector<int> cosinesOf;   ///< where those of L begin; −1 for none
};

/// A job over samples start .. end − 1 of a sound, without marks yet. Behind the sound is silence.
SynthesisJob MakeSynthesisJob(SampleSpan sound, int sampleRate, int start, int end);

/// Fills the marks of a job and returns how many there are. `contour` is the sound's: a period in samples a
/// frame, below 1 unvoiced; frames behind it are unvoiced. The first mark of a voiced run stands on a peak of
/// that polarity (+1, −1) of the smoothed samples, at least a tenth of their largest magnitude; the others
/// stand on positive peaks, within a quarter of a period around the expected place, the last ones also behind
/// the selection. Periods count in whole samples and up to sampleRate/80.
int FindPitchMarks(SynthesisJob& job, std::span<const float> contour, int polarity);

/// Makes the output, all of it anew, from the target: trunc(target) samples are one new period. Where there
/// is no target, or marks are more than sampleRate/64 apart, the samples are copied as they stand. Behind the
/// last piece is silence. Without a mark everything is copied. Sums wrap at 16 bits; products are truncated
/// toward zero first.
void SynthesizeOverlapAdd(SynthesisJob& job, const TargetCurve& target);

}  // namespace parlowen
