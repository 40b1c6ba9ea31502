#pragma once
#include <optional>
#include <span>
#include <vector>

#include "document/SoundDocument.h"
#include "pitch/SemitoneScale.h"
#include "prosody/ToneScales.h"

namespace parlowen {

// From a marked stretch to the pitch of one syllable:
//   1. runs of voiced frames; those under 3 frames do not count;
//   2. runs with at most 10 frames between them form a chain (creak breaks a tone into pieces): the chain with
//      the most voiced frames is the syllable's, of equal ones the first;
//   3. weak ends: voiced frames at either end more than 20 dB below the chain's strongest are dropped;
//   4. what is left, at least 5 frames from the first to the last, is the tone.

struct ToneCurveOptions {
  bool dropWeakEnds = true;
  int shortestRun = 3;    ///< frames
  int longestBreak = 10;  ///< frames between the runs of a chain
  double weakness = 20;   ///< dB
  int shortestCurve = 5;  ///< frames from the first to the last
};

/// The pitch of a syllable, a value each 10 ms.
struct ToneCurve {
  int first = 0;              ///< the frame of the first value
  std::vector<double> hertz;  ///< 0 in gaps; the first and the last value are none

  double Milliseconds() const { return 10.0 * static_cast<double>(hertz.size()); }
};

/// Runs of frames of `span` with a period, at least `shortest` frames long. `span` lies in `periods`.
std::vector<FrameSpan> VoicedRuns(std::span<const float> periods, FrameSpan span, int shortest);

/// The frames of samples start .. end, that of `end` included, held to the document's contour; `last` is below
/// `first` where there is none.
FrameSpan ToneFrames(const SoundDocument& document, int start, int end);

/// The tone in frames `span` of a contour of periods in samples at `sampleRate`; nothing where it is too short.
/// `levels` is the level curve of the same sound, three values a frame, in dB.
std::optional<ToneCurve> FindToneCurve(std::span<const float> periods, FrameSpan span, int sampleRate,
                                       std::span<const double> levels, const ToneCurveOptions& options = {});

/// The same of a document's stretch.
std::optional<ToneCurve> FindToneCurve(const SoundDocument& document, int start, int end,
                                       const ToneCurveOptions& options = {});

/// The points of a curve in semitones: point p lies p·(n − 1)/10 frames behind the first; between voiced frames
/// the semitones are linear, over gaps too. There is a value, and neither the first nor the last is a gap.
TonePoints TonePointsOf(std::span<const double> hertz);
TonePoints TonePointsOf(std::span<const float> hertz);

}  // namespace parlowen
