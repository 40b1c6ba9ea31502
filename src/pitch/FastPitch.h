#pragma once
#include <cstdint>
#include <vector>

#include "dsp/SampleSpan.h"

namespace parlowen {

/// The four pitch-range settings.
enum class PitchRange { Automatic, High, Middle, Low };

/// What a setting allows, in Hz: 64–500, 144–600, 96–400, 64–280.
struct PitchBounds {
  int lowest = 64, highest = 500;
};
PitchBounds BoundsOf(PitchRange range);

/// The working rate of the time-domain stage is sampleRate / decimation: below 16000 Hz every sample, below
/// 32000 Hz one of two, else one of three.
int PitchDecimation(int sampleRate);

/// What the extractor found out about one of its 10 ms frames.
struct FastPitchFrame {
  int zeroCrossings = 0;  ///< kNoiseCrossings in a run of noise
  int level = 0;          ///< Σ trunc(|x|/10)
  int magnitude =
      0;  ///< mean |x| after the 1000 Hz low-pass, the sound's peak being 1000; 0 when half is silent
  bool leveled = false;     ///< loud enough and no noise: what steps 7 and 8 leave voiced
  bool voiced = false;      ///< what is left of that after the clean-up
  int polarity = 0;         ///< +1, −1; 0 unvoiced
  std::uint8_t choice = 0;  ///< track that gave the value: 1 positive, 255 negative, 0 both
};
inline constexpr int kNoiseCrossings = 5000;

/// The contour of a stretch on the extractor's own grid: frame i begins at start + i·stepSamples.
struct FastPitch {
  int stepSamples = 0;                 ///< document samples a frame: (working rate / 100)·decimation
  std::vector<FastPitchFrame> frames;  ///< the number of frames analysed
  std::vector<float> periods;          ///< document samples; 0 unvoiced, 1.0 voiced but undetermined
};

struct FastPitchRequest {
  SampleSpan samples;  ///< the document's; only read
  int sampleRate = 0;
  int start = 0, count = 0;
  PitchRange range = PitchRange::Automatic;
  int maxFrames = 0;  ///< the width of the pitch pane less 20
  bool full = true;   ///< false: the voicing decision alone, periods stay 0
};

/// Time-domain pitch of samples start .. start + count − 1: marks on positive and negative peaks of the
/// low-passed wave, one period a frame from the intervals between marks. Returns the number of frames.
int ExtractPitchFast(const FastPitchRequest& request, FastPitch& result);

}  // namespace parlowen
