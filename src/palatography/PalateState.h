#pragma once
#include <cstdint>

#include "document/SoundDocument.h"
#include "palatography/NspFile.h"

namespace parlowen {

/// The palate recording whose speech is in the document. It lasts until another sound is loaded.
struct PalateState {
  bool loaded = false;
  EpgRecording recording;        ///< without its samples: those are the document's
  std::uint64_t generation = 0;  ///< the load that it belongs to

  /// Speech, preference record and palate frames: what the displays need.
  bool IsComplete() const { return loaded && recording.hasPreferences && recording.hasPalate; }
  /// True while a sample of the document is the sample of the file: not after a cut, paste or rate
  /// conversion.
  bool FitsSamples(const SoundDocument& document) const {
    return loaded && generation == document.soundGeneration &&
           recording.sampleCount == document.sampleCount && recording.sampleRate == document.sampleRate;
  }
};

}  // namespace parlowen
