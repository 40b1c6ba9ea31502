#include "annotation/MarkerSet.h"

namespace parlowen {

std::span<const std::int32_t> MarkerSet::Markers(int band) const {
  const auto b = static_cast<std::size_t>(band);
  return std::span(markerPos).subspan(b * kMarkersPerBand, static_cast<std::size_t>(markerCount[b]));
}

std::span<const MarkerLabel> MarkerSet::Labels(int band) const {
  const auto b = static_cast<std::size_t>(band);
  return std::span(labels).subspan(b * kLabelsPerBand, static_cast<std::size_t>(labelCount[b]));
}

}  // namespace parlowen
