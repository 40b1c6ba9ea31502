#include "annotation/MarkerSet.h"

#include <utility>

namespace parlowen {

std::span<const std::int32_t> MarkerSet::Markers(int band) const {
  const auto b = static_cast<std::size_t>(band);
  return std::span(markerPos).subspan(b * kMarkersPerBand, static_cast<std::size_t>(markerCount[b]));
}

std::span<const MarkerLabel> MarkerSet::Labels(int band) const {
  const auto b = static_cast<std::size_t>(band);
  return std::span(labels).subspan(b * kLabelsPerBand, static_cast<std::size_t>(labelCount[b]));
}

void MarkerState::Changed(const MarkerSet& before, bool moves) {
  if (moves && step && step->moves && step->after == before) {
    step->after = set;
  } else {
    step = MarkerStep{before, set, moves};
  }
  changed = true;
}

bool MarkerState::UndoStep() {
  if (!CanUndoStep()) return false;
  set = std::exchange(step, {})->before;
  changed = true;
  return true;
}

}  // namespace parlowen
