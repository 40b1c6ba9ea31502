#pragma once
#include <functional>
#include <vector>

#include "document/SoundDocument.h"
#include "pitch/FastPitch.h"
#include "pitch/PitchTracking.h"
#include "pitch/SemitoneScale.h"

namespace parlowen {

struct PitchAnalysisRequest {
  PitchRange range = PitchRange::Automatic;
  bool timeDomain = true;  ///< false: of the time-domain stage only its level and noise test
  bool tracking = true;    ///< false: the time-domain stage alone, for measurements
  int paneWidth = 1024;    ///< a stretch of the time-domain stage has at most this width less 20 in frames
  VoicingStudy study{};
};

/// The share done, 0..1; false stops the work.
using PitchProgress = std::function<bool(double)>;

/// Pitch of samples start .. start + count − 1 on the document's own frame grid, both stages. The time-domain
/// stage goes stretch by stretch, each cut at the quietest frame of its last second; the second stage over
/// all frames at once. `periods` becomes one value a frame of `frames`: 0, or a period in document samples.
/// False when it was stopped. Makes the AnalysisWindow that frames of this rate are looked at with:
/// sampleRate/30, at most 512 samples, a sine.
bool RunPitchAnalysis(const SoundDocument& document, int start, int count,
                      const PitchAnalysisRequest& request, FrameSpan frames, std::vector<float>& periods,
                      const PitchProgress& progress = {});

}  // namespace parlowen
