#pragma once
#include <cstdint>

#include "annotation/MarkerSet.h"
#include "document/SoundDocument.h"

namespace parlowen {

// Markers keep to the speech they were set on while the sound is edited.

enum class SoundEdit { Cut, Paste, Undo, RateConversion };

/// What an edit changes, as it was before it.
struct SoundShape {
  std::uint64_t generation = 0, samplesVersion = 0;
  int sampleCount = 0, sampleRate = 0;
  int undoKind = 0, undoPosition = 0, undoLength = 0;
};
SoundShape ShapeOf(const SoundDocument& document);

/// Moves markers and labels with the edit that has just been made; nothing when it changed no samples.
/// - Behind a cut or paste they move by its length; those inside a cut go, and labels whose stretch is gone with them.
///   The undo of the last such edit brings them back, unless the set was worked on in between.
/// - A rate conversion moves position p to trunc(p·new rate/old rate).
/// - A label up to the end of the sound goes on to its new end.
void FollowEdit(MarkerState& state, SoundEdit edit, const SoundShape& before, const SoundDocument& after);

}  // namespace parlowen
