#pragma once
#include <cstdint>

#include "annotation/Annotations.h"
#include "annotation/InsertedCharacters.h"
#include "annotation/MarkerSet.h"
#include "document/SoundDocument.h"

namespace parlowen {

// Markers, annotations and inserted characters keep to the speech they were put on while the sound is edited.

/// A sound's length and rate, and where its last cut or paste took place as long as that can be undone.
struct EditPlace {
  std::uint64_t generation = 0;
  int sampleCount = 0, sampleRate = 0;
  UndoKind kind = UndoKind::None;
  int position = 0, length = 0;  ///< the document's undo fields
  bool operator==(const EditPlace&) const = default;
};
EditPlace EditPlaceOf(const SoundDocument& document);

/// What belongs to moments of the sound.
struct PlacedThings {
  MarkerState& markers;
  AnnotationState& annotations;
  InsertedCharacters& characters;
};

/// Moves what belongs to the sound with the cut, paste or undo between `before` and now; nothing when there
/// was none.
/// - Things behind the place move by its length, those inside a cut go; labels whose stretch is gone go with
///   it.
/// - The undo of the last edit brings markers and annotations back, unless they were worked on in between.
/// - A label up to the end of the sound goes on to its new end.
void FollowEdit(const PlacedThings& things, const EditPlace& before, const SoundDocument& document);

/// After a conversion of the rate, which makes another sound of the one before: a position p becomes
/// trunc(p·new rate/old rate).
void FollowConversion(const PlacedThings& things, const EditPlace& before, const SoundDocument& document);

}  // namespace parlowen
