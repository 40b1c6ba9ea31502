#pragma once
#include <functional>
#include <span>
#include <vector>

#include "dsp/SampleSpan.h"
#include "pitch/FastPitch.h"
#include "pitch/VoicingNet.h"

namespace parlowen {

/// For training and measurements: another net, and a list that becomes what it saw, one element a frame.
struct VoicingStudy {
  const VoicingNet* net = &kTrainedVoicing;
  std::vector<VoicingInputs>* inputs = nullptr;
};

struct PitchTrackingRequest {
  SampleSpan samples;  ///< the document's; only read
  int sampleRate = 0;  ///< Hz, at least 1000
  PitchRange range = PitchRange::Automatic;
  int firstFrame = 0;  ///< document frame of element 0
  /// What the time-domain stage found, one value a frame: a period in document samples, 1.0 voiced without a
  /// period, 0 unvoiced. It decides between octaves that are equally good, not about voice.
  std::span<const float> hints;
  VoicingStudy study{};
};

/// Pitch of the document frames firstFrame .. firstFrame + periods.size() − 1, each looked at about its
/// sample f·sampleRate/100 + sampleRate/100: candidates of the normalised cross-correlation joined by dynamic
/// programming (Talkin 1995; Secrest and Doddington 1983), voice told from silence by a trained net.
/// periods[i] becomes 0, or a period in document samples, with its fraction, within the setting's bounds; where
/// these begin at 64 Hz slower creak (by correlation down to 55 Hz, by single pulses down to 20 Hz) is told as
/// 64 Hz. Between octaves the clear frames of the 2 s on either side decide, but for single pulses below.
/// `progress` is asked now and then with the share done, 0..1; when it answers false the work stops and false
/// is returned, with `periods` unspecified. `hints` has as many elements as `periods`. docs/pitch.md tells what
/// it reaches.
bool TrackPitch(const PitchTrackingRequest& request, std::span<float> periods,
                const std::function<bool(double)>& progress = {});

}  // namespace parlowen
