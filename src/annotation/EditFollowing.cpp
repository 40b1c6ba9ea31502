#include "annotation/EditFollowing.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "annotation/MarkerEditing.h"

namespace parlowen {
namespace {

/// Where samples of the old sound stand in the new one.
struct Move {
  explicit Move(const Edit& told) : edit(told) {}
  const Edit& edit;

  bool Removes(int sample) const { return sample > edit.at && sample < edit.at + edit.removed; }
  int operator()(int sample) const {
    sample =
        sample >= edit.at + edit.removed ? sample + edit.inserted - edit.removed : std::min(sample, edit.at);
    const std::int64_t moved = std::int64_t{sample} * edit.newRate / std::max(1, edit.oldRate);
    return static_cast<int>(std::clamp<std::int64_t>(moved, 0, edit.newCount));
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
    label.end = old.end == move.edit.oldCount && !old.IsPoint() ? move.edit.newCount : move(old.end);
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
  const EditKind kind = move.edit.kind;
  Items old = items;
  if (kind == EditKind::Undo && items == state.afterEdit) {
    items = state.beforeEdit;
  } else {
    MoveAll(items, move);
  }
  state.changed = state.changed || !(items == old);
  const bool canBeUndone = kind == EditKind::Cut || kind == EditKind::Paste;
  state.beforeEdit = canBeUndone ? std::move(old) : Items{};
  state.afterEdit = canBeUndone ? items : Items{};
}

}  // namespace

void FollowEdit(const PlacedThings& things, const Edit& edit, const SoundDocument& document) {
  if (!edit) return;
  const Move move(edit);
  if (things.markers.sound == edit.soundBefore) {
    MoveWithUndo(things.markers, things.markers.set, move);
    ScrollMarkersTo(things.markers.view, things.markers.view.start, document.sampleCount);
    things.markers.sound = document.Stamp();
    things.markers.step.reset();  // its places are those of the old sound
    things.markers.view.chosen.reset();
  }
  if (things.annotations.sound == edit.soundBefore) {
    MoveWithUndo(things.annotations, things.annotations.items, move);
    things.annotations.sound = document.Stamp();
  }
  if (things.characters.sound == edit.soundBefore) {
    MoveAll(things.characters.items, move);
    things.characters.sound = document.Stamp();
  }
}

}  // namespace parlowen
