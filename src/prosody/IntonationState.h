#pragma once
#include <cstdint>
#include <optional>

#include "document/SoundStamp.h"
#include "prosody/Intonation.h"
#include "prosody/IntonationFile.h"

namespace parlowen {

/// The last analysis of intonation; it lasts until the next one or another sound.
struct IntonationState {
  std::optional<Intonation> result;
  int chosen = -1;  ///< a unit
  std::optional<SavedIntonation> compared;
  SoundStamp sound;  ///< that the result was made from
};

}  // namespace parlowen
