#pragma once
#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "document/SoundStamp.h"

namespace parlowen {

inline constexpr int kMarkerBands = 4, kMarkersPerBand = 20, kLabelsPerBand = 20;
/// Longest text of a label: GBK bytes, phonetic symbols included.
inline constexpr int kMarkerLabelBytes = 12;

/// A label on one marker (start = end) or on the stretch between two; positions are samples.
struct MarkerLabel {
  std::int32_t start = 0, end = 0;
  std::string text;  ///< UTF-8
  bool IsPoint() const { return start == end; }
  bool operator==(const MarkerLabel&) const = default;
};

/// The markers and labels of the current sound, in four independent bands 0..3. Entries of band b begin at
/// b·20; those behind its count are unused.
struct MarkerSet {
  std::array<std::int16_t, kMarkerBands> markerCount{};                  ///< 0..20
  std::array<std::int16_t, kMarkerBands> labelCount{};                   ///< 0..20
  std::array<std::int32_t, kMarkerBands * kMarkersPerBand> markerPos{};  ///< samples, ascending in each band
  std::array<MarkerLabel, kMarkerBands * kLabelsPerBand> labels{};       ///< in the order they were added

  std::span<const std::int32_t> Markers(int band) const;
  std::span<const MarkerLabel> Labels(int band) const;
  bool HasMarkers() const { return markerCount != decltype(markerCount){}; }
  bool HasLabels() const { return labelCount != decltype(labelCount){}; }
  bool operator==(const MarkerSet&) const = default;
};

/// What a click in the bands does.
enum class MarkerTool { None, AddMarker, DeleteMarker, AddLabel, DeleteLabel, PlayStretch, SaveStretch };

/// A marker (start = end) or a stretch between two of a band.
struct ChosenPlace {
  int band = 0;
  std::int32_t start = 0, end = 0;
  bool operator==(const ChosenPlace&) const = default;
};

/// What the marker window shows, and the tool in hand. The label pane shares the band.
struct MarkerView {
  MarkerTool tool = MarkerTool::None;
  std::string instruction{};              ///< the line about the last button
  int band = 0;                           ///< 0..3, the one worked on last
  std::int32_t start = 0;                 ///< sample at the left edge
  int zoom = 1;                           ///< the divisor d, a power of two
  int columns = 1000;                     ///< pixels of the waveform
  std::optional<ChosenPlace> chosen{};    ///< what the label pane has in hand
  std::optional<std::int32_t> clicked{};  ///< where in the chosen stretch it was clicked
};

/// The last step of work on a set, to be taken back. Moves of one marker, one after the other, are one step.
struct MarkerStep {
  MarkerSet before, after;
  bool moves = false;  ///< the next move belongs to it
};

/// The marker set with what belongs to it beside its file.
struct MarkerState {
  MarkerSet set;
  SoundStamp sound;      ///< the sound it belongs to: of another one it counts as empty
  bool changed = false;  ///< since it was read or saved
  MarkerView view;
  bool windowOpen = false;
  std::optional<std::int32_t> cursor{};  ///< of a running play
  bool paneShown = false;                ///< the label pane of the main window
  std::optional<MarkerStep> step{};
  /// The set around the last edit of the sound, for its undo.
  MarkerSet beforeEdit, afterEdit;

  /// To be called after each change of the set by hand, with what it was.
  void Changed(const MarkerSet& before, bool moves = false);
  /// Takes the last step back; false when there is none, or something else has changed the set since.
  bool UndoStep();
  bool CanUndoStep() const { return step && step->after == set; }
};

}  // namespace parlowen
