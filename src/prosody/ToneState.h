#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "document/SoundStamp.h"
#include "prosody/ToneCurve.h"
#include "prosody/ToneStatistics.h"

namespace parlowen {

/// One tone in the window "degree".
struct DegreeCurve {
  int start = 0, end = 0;  ///< the selection, samples
  int first = 0;           ///< frame
  double milliseconds = 0;
  TonePoints points{};  ///< semitones
};

inline constexpr std::size_t kMostDegreeCurves = 12;

/// The window "degree"; forgotten when it closes.
struct DegreeState {
  bool open = false;
  ToneRange range;                  ///< of all curves
  std::vector<DegreeCurve> curves;  ///< the oldest first
  bool equalDurations = true;
};

/// What the window "tones" shows.
enum class ToneView { None, Pattern, Group };

/// The run of tone statistics. It and its settings last as long as the program, whatever sound is loaded.
struct ToneState {
  bool open = false;
  std::string path;      ///< of the .pit file
  bool written = false;  ///< the file holds the run: what was in it before is gone or among its items
  std::optional<std::vector<std::uint8_t>>
      begunOver;                ///< what the file held, if there was one, when the run began
  std::vector<ToneItem> items;  ///< change them through SetItems
  ToneStatistics statistics;    ///< of the items
  /// The sound without a file that the nameless items from `firstUnsaved` on were taken from.
  SoundStamp unsavedSound;
  std::size_t firstUnsaved = 0;

  // Settings.
  std::string groupName;  ///< the last one that was entered, UTF-8
  bool dropWeakEnds = true;
  ToneAxis axis = ToneAxis::T;
  std::optional<ToneRange> givenRange;
  bool equalDurations = true;
  bool showsStandard = false;  ///< the textbook's four tones

  // The window.
  ToneView view = ToneView::None;
  std::string group;  ///< GBK, of ToneView::Group
  int picked = -1;    ///< an item (Group) or a group (Pattern)
  std::optional<ToneResult> compared;

  /// `picked` stays: who does more than add items at the end looks after it.
  void SetItems(std::vector<ToneItem> newItems);
  void SetGivenRange(const std::optional<ToneRange>& range);
  ToneScale Scale() const { return statistics.ScaleOf(axis); }
  /// The items of the group that is shown; none in other views.
  std::vector<int> ShownItems() const;
};

}  // namespace parlowen
