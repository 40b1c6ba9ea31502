#pragma once
#include <cstdint>

#include "annotation/Annotations.h"
#include "annotation/InsertedCharacters.h"
#include "document/SoundDocument.h"

namespace parlowen {

// Annotations and inserted characters keep to the speech they were put on while the sound is edited.

/// Where the last cut or paste took place, as long as it can be undone.
struct EditPlace {
  int sampleCount = 0;
  int kind = 0, position = 0, length = 0;   ///< the document's undo fields
  bool operator==(const EditPlace&) const = default;
};
EditPlace EditPlaceOf(const SoundDocument& document);

/// Moves the texts with the cut, paste or undo between `before` and now; nothing when there was none. Those behind it move
/// by its length, those inside a cut go. The undo brings annotations back unless they were worked on in between.
void FollowEdit(AnnotationState& annotations, InsertedCharacters& characters, const EditPlace& before,
                const SoundDocument& document);

/// After a conversion of the rate, which makes another sound of `oldSound`: a position p becomes trunc(p·new rate/old rate).
void FollowConversion(AnnotationState& annotations, InsertedCharacters& characters, std::uint64_t oldSound, int oldRate,
                      const SoundDocument& document);

}  // namespace parlowen
