#pragma once
#include "annotation/Annotations.h"
#include "annotation/InsertedCharacters.h"
#include "annotation/MarkerSet.h"
#include "document/SoundDocument.h"

namespace parlowen {

// Markers, annotations and inserted characters keep to the speech they were put on while the sound is edited.

/// What belongs to moments of the sound.
struct PlacedThings {
  MarkerState& markers;
  AnnotationState& annotations;
  InsertedCharacters& characters;
};

/// Moves what belongs to the sound before the edit with it.
/// - Things behind the place move by its length, those inside a removed stretch go; labels whose stretch is
///   gone go with it.
/// - The undo of the last edit brings markers and annotations back, unless they were worked on in between.
/// - A label up to the end of the sound goes on to its new end.
/// - After a conversion of the rate they belong to the new sound, at their time.
void FollowEdit(const PlacedThings& things, const Edit& edit, const SoundDocument& document);

}  // namespace parlowen
