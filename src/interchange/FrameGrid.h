#pragma once
#include "document/SoundDocument.h"
#include "pitch/SemitoneScale.h"

namespace parlowen {

/// How long after the beginning of its 10 ms frame a value is given to other programs: the measured pitch is
/// that of the sound 10.0 ms behind the frame's first sample (docs/interchange.md), and the formants are
/// those of 20 ms.
inline constexpr int kFrameOffsetMs = 10;

/// The time of a frame in every export, in seconds: frame/100 + 0.01.
inline double TimeOfFrame(int frame) { return (frame * 10.0 + kFrameOffsetMs) / 1000.0; }
/// The time of a frame that begins at that sample.
inline double TimeOfFrameAt(int sample, int sampleRate) {
  return static_cast<double>(sample) / sampleRate + kFrameOffsetMs / 1000.0;
}

/// Seconds of a sample.
inline double SecondsOf(int sample, int sampleRate) { return static_cast<double>(sample) / sampleRate; }

/// The document's frames; of those that begin in the selection where there is one. `last` is below `first`
/// where there are none.
FrameSpan FramesToExport(const SoundDocument& document);

/// Hertz of a contour value; 0 for a frame without voice.
double FrequencyOf(float period, int sampleRate);

}  // namespace parlowen
