#pragma once
#include <string>

#include "document/SoundDocument.h"
#include "vowel/VowelFormants.h"

namespace parlowen {

/// The track as a text object "Formant 2" in the time of the whole sound. Formants without a bandwidth are
/// left out. The intensity of a frame is the mean square of its sampleRate/50 samples, full scale being 1.
/// The track has frames.
std::string FormantText(const SoundDocument& document, const VowelTrack& track);

}  // namespace parlowen
