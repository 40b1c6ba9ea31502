#include "annotation/TextFollowing.h"

#include <algorithm>

namespace parlowen {
namespace {

/// Where samples of the old sound stand in the new one.
struct Move {
  int at = 0, removed = 0, inserted = 0;   ///< samples
  int oldRate = 1, newRate = 1;
  int newCount = 0;

  bool Removes(int sample) const { return sample > at && sample < at + removed; }
  int operator()(int sample) const {
    if (sample >= at + removed) sample += inserted - removed;
    const std::int64_t moved = std::int64_t{sample} * newRate / oldRate;
    return static_cast<int>(std::clamp<std::int64_t>(moved, 0, newCount));
  }
};

void MoveAnnotations(std::vector<Annotation>& items, const Move& move) {
  std::erase_if(items, [&](const Annotation& annotation) { return move.Removes(annotation.position); });
  for (Annotation& annotation : items) annotation.position = move(annotation.position);
}

void MoveCharacters(std::vector<PlacedText>& items, const Move& move) {
  std::erase_if(items, [&](const PlacedText& text) { return move.Removes(text.sample); });
  for (PlacedText& text : items) text.sample = move(text.sample);
}

}  // namespace

EditPlace EditPlaceOf(const SoundDocument& document) {
  return {document.sampleCount, document.undoKind, document.undoPosition, document.undoLength};
}

void FollowEdit(AnnotationState& annotations, InsertedCharacters& characters, const EditPlace& before,
                const SoundDocument& document) {
  constexpr int kCut = 1;
  const EditPlace after = EditPlaceOf(document);
  if (after == before) return;
  const bool undone = after.kind == 0;
  const EditPlace& edit = undone ? before : after;
  if (edit.kind == 0) return;
  Move move;
  move.at = edit.position;
  move.newCount = document.sampleCount;
  // A cut takes out, and so does the undo of a paste.
  ((edit.kind == kCut) != undone ? move.removed : move.inserted) = edit.length;

  if (characters.generation == document.soundGeneration) MoveCharacters(characters.items, move);
  if (annotations.generation != document.soundGeneration) return;
  std::vector<Annotation> old = annotations.items;
  if (undone && annotations.items == annotations.afterEdit) {
    annotations.items = annotations.beforeEdit;
  } else {
    MoveAnnotations(annotations.items, move);
  }
  annotations.changed = annotations.changed || annotations.items != old;
  annotations.beforeEdit = undone ? std::vector<Annotation>() : std::move(old);
  annotations.afterEdit = undone ? std::vector<Annotation>() : annotations.items;
}

void FollowConversion(AnnotationState& annotations, InsertedCharacters& characters, std::uint64_t oldSound, int oldRate,
                      const SoundDocument& document) {
  if (document.soundGeneration == oldSound) return;
  Move move;
  move.oldRate = std::max(1, oldRate);
  move.newRate = document.sampleRate;
  move.newCount = document.sampleCount;
  if (characters.generation == oldSound) {
    MoveCharacters(characters.items, move);
    characters.generation = document.soundGeneration;
  }
  if (annotations.generation == oldSound) {
    MoveAnnotations(annotations.items, move);
    annotations.generation = document.soundGeneration;
  }
}

}  // namespace parlowen
