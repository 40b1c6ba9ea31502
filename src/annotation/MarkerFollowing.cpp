#include "annotation/MarkerFollowing.h"

#include <algorithm>
#include <vector>

#include "annotation/MarkerEditing.h"

namespace parlowen {
namespace {

/// Where positions of the old sound stand in the new one.
struct Change {
  int at = 0, removed = 0, inserted = 0;   ///< samples
  int oldRate = 1, newRate = 1;
  int oldCount = 0, newCount = 0;

  bool Removes(int position) const { return position > at && position < at + removed; }
  int Moved(int position) const {
    if (position >= at + removed) {
      position += inserted - removed;
    } else {
      position = std::min(position, at);
    }
    return std::clamp(static_cast<int>(std::int64_t{position} * newRate / oldRate), 0, newCount);
  }
};

void MoveBand(MarkerSet& set, int band, const Change& change) {
  const auto oldMarkers = set.Markers(band);
  std::vector<MarkerLabel> labels;
  std::vector<std::int32_t> edges;   // of stretches that live on
  for (MarkerLabel label : set.Labels(band)) {
    if (label.IsPoint() && change.Removes(label.start)) continue;
    const MarkerLabel old = label;
    // The ends of the sound are no markers: a label that has none there keeps to them.
    const bool fromStart = old.start == 0 && !std::binary_search(oldMarkers.begin(), oldMarkers.end(), 0);
    label.start = fromStart && !old.IsPoint() ? 0 : change.Moved(old.start);
    label.end = old.end == change.oldCount && !old.IsPoint() ? change.newCount : change.Moved(old.end);
    if (!old.IsPoint() && label.start >= label.end) continue;
    if (!old.IsPoint()) edges.insert(edges.end(), {old.start, old.end});
    labels.push_back(std::move(label));
  }
  std::vector<std::int32_t> markers;
  for (const std::int32_t position : oldMarkers) {
    if (change.Removes(position) && std::find(edges.begin(), edges.end(), position) == edges.end()) continue;
    const int moved = change.Moved(position);
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

Change ChangeOf(SoundEdit edit, const SoundShape& before, const SoundDocument& after) {
  Change change;
  change.oldCount = before.sampleCount;
  change.newCount = after.sampleCount;
  if (edit == SoundEdit::RateConversion) {
    change.oldRate = std::max(1, before.sampleRate);
    change.newRate = after.sampleRate;
    return change;
  }
  const bool undo = edit == SoundEdit::Undo;
  const int kind = undo ? before.undoKind : after.undoKind;
  if (kind == 0) return change;
  const int length = undo ? before.undoLength : after.undoLength;
  change.at = undo ? before.undoPosition : after.undoPosition;
  // A cut takes out, and so does the undo of a paste.
  ((kind == 1) != undo ? change.removed : change.inserted) = length;
  return change;
}

}  // namespace

SoundShape ShapeOf(const SoundDocument& document) {
  return {document.soundGeneration, document.samplesVersion, document.sampleCount,  document.sampleRate,
          document.undoKind,        document.undoPosition,   document.undoLength};
}

void FollowEdit(MarkerState& state, SoundEdit edit, const SoundShape& before, const SoundDocument& after) {
  if (state.generation != before.generation || before.samplesVersion == after.samplesVersion) return;
  state.generation = after.soundGeneration;
  const bool restored = edit == SoundEdit::Undo && state.set == state.afterEdit;
  const MarkerSet old = state.set;
  if (restored) {
    state.set = state.beforeEdit;
  } else {
    const Change change = ChangeOf(edit, before, after);
    for (int band = 0; band < kMarkerBands; ++band) MoveBand(state.set, band, change);
  }
  const bool undoable = edit == SoundEdit::Cut || edit == SoundEdit::Paste;
  state.beforeEdit = undoable ? old : MarkerSet{};
  state.afterEdit = undoable ? state.set : MarkerSet{};
  state.changed = state.changed || state.set != old;
  ScrollMarkersTo(state.view, state.view.start, after.sampleCount);
}

}  // namespace parlowen
