#pragma once
#include <array>
#include <cstdint>
#include <span>
#include <string>

namespace parlowen {

inline constexpr int kMarkerBands = 4, kMarkersPerBand = 20, kLabelsPerBand = 20;
/// Longest text of a label: GBK bytes, phonetic symbols included.
inline constexpr int kMarkerLabelBytes = 12;

/// A label on one marker (start = end) or on the stretch between two; positions are samples.
struct MarkerLabel {
  std::int32_t start = 0, end = 0;
  std::string text;   ///< UTF-8
  bool IsPoint() const { return start == end; }
};

/// The markers and labels of the current sound, in four independent bands 0..3. Entries of band b begin at b·20; those
/// behind its count are unused.
struct MarkerSet {
  std::array<std::int16_t, kMarkerBands> markerCount{};   ///< 0..20
  std::array<std::int16_t, kMarkerBands> labelCount{};    ///< 0..20
  std::array<std::int32_t, kMarkerBands * kMarkersPerBand> markerPos{};   ///< samples, ascending in each band
  std::array<MarkerLabel, kMarkerBands * kLabelsPerBand> labels{};        ///< in the order they were added

  std::span<const std::int32_t> Markers(int band) const;
  std::span<const MarkerLabel> Labels(int band) const;
  bool HasMarkers() const { return markerCount != decltype(markerCount){}; }
};

/// The marker set with what belongs to it beside its file.
struct MarkerState {
  MarkerSet set;
  std::uint64_t generation = 0;   ///< the sound it belongs to: of another one it counts as empty
  bool changed = false;           ///< since it was read or saved
};

}  // namespace parlowen
