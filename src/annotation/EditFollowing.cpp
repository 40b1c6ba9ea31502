#include "annotation/EditFollowing.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "annotation/MarkerEditing.h"

namespace parlowen {
namespace {

/// Where samples of the old sound stand in the new one.
struct Move {
  int at = 0, removed = 0, inserted = 0;  ///< samples
  int oldRate = 1, newRate = 1;
  int oldCount = 0, newCount = 0;
  bool undone = false;  ///< it takes an edit back

  bool Removes(int sample) const { return sample > at && sample < at + removed; }
  int operator()(int sample) const {
    sample = sample >= at + removed ? sample + inserted - removed : std::min(sample, at);
    const std::int64_t moved = std::int64_t{sample} * newRate / oldRate;
    return static_cast<int>(std::clamp<std::int64_t>(moved, 0, newCount));
  }
};

void MoveBand(MarkerSet& set, int band, const Move& move) {
  const auto oldMarkers = set.Markers(band);
  std::vector<MarkerLabel> labels;
  std::vector<std::int32_t> edges;  // of stretches that live on
  for (MarkerLabel label : set.Labels(band)) {
    if (label.IsPoint() && move.Removes(label.start)) continue;
    const MarkerLabel old = label;
    // The ends of the sound are no markers: a label that has none there keeps to them.
    const bool fromStart = old.start == 0 && !std::binary_search(oldMarkers.begin(), oldMarkers.end(), 0);
    label.start = fromStart && !old.IsPoint() ? 0 : move(old.start);
    label.end = old.end == move.oldCount && !old.IsPoint() ? move.newCount : move(old.end);
    if (!old.IsPoint() && label.start >= label.end) continue;
    if (!old.IsPoint()) edges.insert(edges.end(), {old.start, old.end});
    labels.push_back(std::move(label));
  }
  std::vector<std::int32_t> markers;
  for (const std::int32_t position : oldMarkers) {
    if (move.Removes(position) && std::find(edges.begin(), edges.end(), position) == edges.end()) continue;
    const int moved = move(position);
    if (markers.empty() || markers.back() != moved) markers.push_back(moved);
  }

  const auto b = static_cast<std::size_t>(band);
  const auto place = std::span(set.markerPos).subspan(b * kMarkersPerBand, kMarkersPerBand);
  std::fill(std::copy(markers.begin(), markers.end(), place.begin()), place.end(), 0);
  set.markerCount[b] = static_cast<std::int16_t>(markers.size());
  const auto records = std::span(set.labels).subspan(b * kLabelsPerBand, kLabelsPerBand);
  std::fill(std::move(labels.begin(), labels.end(), records.begin()), records.end(), MarkerLabel{});
  set.labelCount[b] = static_cast<std::int16_t>(labels.size());
}

void MoveAll(MarkerSet& set, const Move& move) {
  for (int band = 0; band < kMarkerBands; ++band) MoveBand(set, band, move);
}

void MoveAll(std::vector<Annotation>& items, const Move& move) {
  std::erase_if(items, [&](const Annotation& annotation) { return move.Removes(annotation.position); });
  for (Annotation& annotation : items) annotation.position = move(annotation.position);
}

void MoveAll(std::vector<PlacedText>& items, const Move& move) {
  std::erase_if(items, [&](const PlacedText& text) { return move.Removes(text.sample); });
  for (PlacedText& text : items) text.sample = move(text.sample);
}

/// Moves them, or takes them back to what they were before the edit that is undone, and remembers them for
/// the next undo.
template <typename State, typename Items>
void MoveWithUndo(State& state, Items& items, const Move& move) {
  Items old = items;
  if (move.undone && items == state.afterEdit) {
    items = state.beforeEdit;
  } else {
    MoveAll(items, move);
  }
  state.changed = state.changed || !(items == old);
  state.beforeEdit = move.undone ? Items{} : std::move(old);
  state.afterEdit = move.undone ? Items{} : items;
}

void MoveThings(const PlacedThings& things, std::uint64_t generation, const Move& move,
                const SoundDocument& document) {
  if (things.markers.generation == generation) {
    MoveWithUndo(things.markers, things.markers.set, move);
    ScrollMarkersTo(things.markers.view, things.markers.view.start, document.sampleCount);
    things.markers.generation = document.soundGeneration;
  }
  if (things.annotations.generation == generation) {
    MoveWithUndo(things.annotations, things.annotations.items, move);
    things.annotations.generation = document.soundGeneration;
  }
  if (things.characters.generation == generation) {
    MoveAll(things.characters.items, move);
    things.characters.generation = document.soundGeneration;
  }
}

}  // namespace

EditPlace EditPlaceOf(const SoundDocument& document) {
  return {document.soundGeneration, document.sampleCount,  document.sampleRate,
          document.undoKind,        document.undoPosition, document.undoLength};
}

void FollowEdit(const PlacedThings& things, const EditPlace& before, const SoundDocument& document) {
  const EditPlace after = EditPlaceOf(document);
  if (after == before || after.generation != before.generation) return;
  Move move;
  move.undone = after.kind == UndoKind::None;
  const EditPlace& edit = move.undone ? before : after;
  if (edit.kind == UndoKind::None) return;
  move.at = edit.position;
  // A cut takes out, and so does the undo of a paste.
  ((edit.kind == UndoKind::Cut) != move.undone ? move.removed : move.inserted) = edit.length;
  move.oldCount = before.sampleCount;
  move.newCount = after.sampleCount;
  MoveThings(things, before.generation, move, document);
}

void FollowConversion(const PlacedThings& things, const EditPlace& before, const SoundDocument& document) {
  if (document.soundGeneration == before.generation) return;
  Move move;
  move.undone = true;  // nothing can be undone behind it
  move.oldRate = std::max(1, before.sampleRate);
  move.newRate = document.sampleRate;
  move.oldCount = before.sampleCount;
  move.newCount = document.sampleCount;
  things.markers.afterEdit = {};
  things.markers.beforeEdit = {};
  things.annotations.afterEdit.clear();
  things.annotations.beforeEdit.clear();
  MoveThings(things, before.generation, move, document);
}

}  // namespace parlowen
