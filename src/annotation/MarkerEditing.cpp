#include "annotation/MarkerEditing.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "base/Arithmetic.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kStretchLabelled = "段中有标注，不能加！";
constexpr UiText kMarkerLabelled = "有相关的标注文字，不能删！请先删标注文字！";

constexpr int kLeftColumn = 20, kBandHeight = 40;
constexpr int kMarkerReach = 2, kLabelReach = 3;  // columns
constexpr int kLargestZoom = 1 << 20;

std::span<std::int32_t> MarkersOf(MarkerSet& set, int band) {
  const auto b = static_cast<std::size_t>(band);
  return std::span(set.markerPos).subspan(b * kMarkersPerBand, static_cast<std::size_t>(set.markerCount[b]));
}

std::span<MarkerLabel> LabelsOf(MarkerSet& set, int band) {
  const auto b = static_cast<std::size_t>(band);
  return std::span(set.labels).subspan(b * kLabelsPerBand, static_cast<std::size_t>(set.labelCount[b]));
}

/// Takes the entry out of a band's list and zeroes the one that becomes unused.
template <typename T>
void CloseUp(std::span<T> items, std::size_t index, std::int16_t& count) {
  std::move(items.begin() + static_cast<std::ptrdiff_t>(index) + 1, items.end(),
            items.begin() + static_cast<std::ptrdiff_t>(index));
  items.back() = T{};
  --count;
}

}  // namespace

MarkerScale::MarkerScale(const MarkerView& view, std::int32_t count)
    : start(view.start), sampleCount(count), samplesPerPixel(count / double(view.columns) / view.zoom) {}

int MarkerScale::Column(std::int32_t position) const {
  if (samplesPerPixel <= 0) return kLeftColumn;
  constexpr double kFar = 1e9;  // columns; no window is as wide
  const double offset = (double(position) - start) / samplesPerPixel;
  return TruncateToInt32(std::clamp(offset, -kFar, kFar)) + kLeftColumn;
}

std::int32_t MarkerScale::SampleAt(int column) const {
  const double offset = (double(std::max(column, kLeftColumn)) - kLeftColumn) * samplesPerPixel;
  return TruncateToInt32(std::clamp(start + offset, 0.0, double(sampleCount)));
}

int BandOfRow(int row) { return std::min((std::max(row, 1) - 1) / kBandHeight, kMarkerBands - 1); }

MarkerOutcome AddMarker(MarkerSet& set, const MarkerScale& scale, const MarkerPoint& at) {
  const auto b = static_cast<std::size_t>(at.band);
  if (set.markerCount[b] >= kMarkersPerBand) return {false, kMarkersFull};
  for (const std::int32_t position : set.Markers(at.band))
    if (std::abs(scale.Column(position) - at.column) < kMarkerReach) return {false, kMarkerNear};
  for (const MarkerLabel& label : set.Labels(at.band))
    if (label.start < at.sample && at.sample < label.end) return {false, kStretchLabelled};
  ++set.markerCount[b];
  const auto markers = MarkersOf(set, at.band);
  markers.back() = at.sample;
  std::sort(markers.begin(), markers.end());
  return {true, {}};
}

MarkerOutcome DeleteMarker(MarkerSet& set, const MarkerScale& scale, const MarkerPoint& at) {
  const auto markers = MarkersOf(set, at.band);
  const auto found = std::find_if(markers.begin(), markers.end(), [&](std::int32_t position) {
    return std::abs(scale.Column(position) - at.column) < kMarkerReach;
  });
  return found == markers.end() ? MarkerOutcome{} : DeleteMarkerAt(set, at.band, *found);
}

MarkerOutcome DeleteMarkerAt(MarkerSet& set, int band, std::int32_t position) {
  const auto markers = MarkersOf(set, band);
  const auto found = std::find(markers.begin(), markers.end(), position);
  if (found == markers.end()) return {};
  for (const MarkerLabel& label : set.Labels(band))
    if (label.start == position || label.end == position) return {false, kMarkerLabelled};
  CloseUp(markers, static_cast<std::size_t>(found - markers.begin()),
          set.markerCount[static_cast<std::size_t>(band)]);
  return {true, {}};
}

std::optional<std::int32_t> MarkerNear(const MarkerSet& set, const MarkerScale& scale,
                                       const MarkerPoint& at) {
  std::optional<std::int32_t> found;
  int nearest = kLabelReach;
  for (const std::int32_t position : set.Markers(at.band)) {
    const int distance = std::abs(scale.Column(position) - at.column);
    if (distance >= nearest) continue;
    nearest = distance;
    found = position;
  }
  return found;
}

std::int32_t MoveMarker(MarkerSet& set, int band, std::int32_t from, std::int32_t to,
                        std::int32_t sampleCount) {
  const auto markers = MarkersOf(set, band);
  const auto found = std::find(markers.begin(), markers.end(), from);
  if (found == markers.end()) return from;
  std::int32_t lowest = found == markers.begin() ? 0 : *(found - 1) + 1;
  std::int32_t highest = found + 1 == markers.end() ? sampleCount : *(found + 1) - 1;
  const auto labels = LabelsOf(set, band);
  // The labels of a file may end where no marker stands.
  for (const MarkerLabel& label : labels) {
    if (label.IsPoint()) continue;
    if (label.end == from) lowest = std::max(lowest, label.start + 1);
    if (label.start == from) highest = std::min(highest, label.end - 1);
  }
  if (lowest > highest) return from;
  to = std::clamp(to, lowest, highest);
  *found = to;
  for (MarkerLabel& label : labels) {
    const bool starts = label.start == from, ends = label.end == from;
    if (starts) label.start = to;
    if (ends) label.end = to;
  }
  return to;
}

std::int32_t NearestZeroCrossing(std::span<const std::int16_t> samples, std::int32_t at, std::int32_t reach) {
  const auto crosses = [&](std::int64_t i) {
    return i > 0 && i < std::ssize(samples) &&
           (samples[static_cast<std::size_t>(i - 1)] < 0) != (samples[static_cast<std::size_t>(i)] < 0);
  };
  for (std::int32_t away = 0; away <= reach; ++away) {
    if (crosses(std::int64_t{at} - away)) return at - away;
    if (crosses(std::int64_t{at} + away)) return at + away;
  }
  return at;
}

MarkerStretch StretchAt(const MarkerSet& set, const MarkerPoint& at, std::int32_t sampleCount) {
  MarkerStretch stretch{0, sampleCount};
  for (const std::int32_t position : set.Markers(at.band)) {
    if (position > at.sample) {
      stretch.end = position;
      break;
    }
    stretch.start = position;
  }
  return stretch;
}

LabelPlace PlaceOfLabel(const MarkerSet& set, const MarkerScale& scale, const MarkerPoint& at) {
  if (set.labelCount[static_cast<std::size_t>(at.band)] >= kLabelsPerBand) return {{}, kMarkersFull};
  if (set.markerCount[static_cast<std::size_t>(at.band)] == 0) return {{}, kNoMarkerForLabel};
  if (const auto marker = MarkerNear(set, scale, at)) return {{*marker, *marker}, {}};
  return {StretchAt(set, at, scale.sampleCount), {}};
}

bool AppendLabel(MarkerSet& set, int band, MarkerLabel label) {
  const auto b = static_cast<std::size_t>(band);
  if (set.labelCount[b] >= kLabelsPerBand) return false;
  set.labels[b * kLabelsPerBand + static_cast<std::size_t>(set.labelCount[b]++)] = std::move(label);
  return true;
}

int FindLabel(const MarkerSet& set, const MarkerScale& scale, const MarkerPoint& at) {
  const auto labels = set.Labels(at.band);
  int nearest = kLabelReach;
  auto found = labels.end();
  for (auto label = labels.begin(); label != labels.end(); ++label) {
    const int distance = std::abs(scale.Column(label->start) - at.column);
    if (!label->IsPoint() || distance >= nearest) continue;
    nearest = distance;
    found = label;
  }
  if (found == labels.end())
    found = std::find_if(labels.begin(), labels.end(), [&](const MarkerLabel& label) {
      // The last sample there is to point at belongs to the stretch up to the sound's end.
      return label.start <= at.sample && (at.sample < label.end || label.end == scale.sampleCount);
    });
  return found == labels.end() ? -1 : static_cast<int>(found - labels.begin());
}

int LabelOn(const MarkerSet& set, const ChosenPlace& place) {
  const auto labels = set.Labels(place.band);
  const auto found = std::find_if(labels.begin(), labels.end(), [&](const MarkerLabel& label) {
    return label.start == place.start && label.end == place.end;
  });
  return found == labels.end() ? -1 : static_cast<int>(found - labels.begin());
}

void RemoveLabel(MarkerSet& set, int band, int index) {
  CloseUp(LabelsOf(set, band), static_cast<std::size_t>(index),
          set.labelCount[static_cast<std::size_t>(band)]);
}

MarkerOutcome DeleteLabel(MarkerSet& set, const MarkerScale& scale, const MarkerPoint& at) {
  if (set.Labels(at.band).empty()) return {false, kNoLabel};
  const int found = FindLabel(set, scale, at);
  if (found < 0) return {};
  RemoveLabel(set, at.band, found);
  return {true, {}};
}

bool SortMarkers(MarkerSet& set) {
  bool moved = false;
  for (int band = 0; band < kMarkerBands; ++band) {
    const auto markers = MarkersOf(set, band);
    moved = moved || !std::is_sorted(markers.begin(), markers.end());
    std::sort(markers.begin(), markers.end());
  }
  return moved;
}

std::int32_t MarkerViewLength(const MarkerView& view, std::int32_t sampleCount) {
  return sampleCount / view.zoom;
}

void ScrollMarkersTo(MarkerView& view, std::int64_t start, std::int32_t sampleCount) {
  const std::int64_t last = sampleCount - MarkerViewLength(view, sampleCount);
  view.start = static_cast<std::int32_t>(std::clamp<std::int64_t>(start, 0, last));
}

bool ExpandMarkerView(MarkerView& view, std::int32_t sampleCount, int sampleRate) {
  if (MarkerScale(view, sampleCount).samplesPerPixel < sampleRate / 300 || view.zoom >= kLargestZoom)
    return false;
  view.zoom *= 2;
  view.start = 0;
  return true;
}

bool ShrinkMarkerView(MarkerView& view) {
  if (view.zoom < 2) return false;
  view.zoom /= 2;
  view.start = 0;
  return true;
}

}  // namespace parlowen
