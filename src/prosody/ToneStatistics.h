#pragma once
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "prosody/ToneFile.h"
#include "prosody/ToneScales.h"

namespace parlowen {

/// The items of one name. Means and deviations (divided by n) are those of each point in semitones.
struct ToneGroup {
  std::string name;        ///< GBK
  std::vector<int> items;  ///< indices into the run
  TonePoints mean{}, deviation{};
  double milliseconds = 0, millisecondsDeviation = 0;
};

struct ToneStatistics {
  std::vector<ToneGroup> groups;  ///< in the order of their first items
  ToneRange range;                ///< the user's, else from the smallest to the largest point of all means
  bool rangeIsGiven = false;
  ToneSpread spread;

  ToneScale ScaleOf(ToneAxis axis) const { return {axis, range, spread}; }
  int GroupNamed(const std::string& gbkName) const;  ///< −1 when there is none
  /// The tone of a mean curve in digits.
  std::string DigitsOf(const ToneGroup& group) const { return ToneDigits(ToneTs(group.mean, range)); }
};

/// Of semitones: what rounding leaves of equal values is no deviation. There is a value.
ToneSpread SpreadOf(std::span<const double> semitones);

/// Pools the items; `given` is the user's range.
ToneStatistics PoolTones(std::span<const ToneItem> items, const std::optional<ToneRange>& given);

/// What the .bin file of a run keeps.
ToneResult ToneResultOf(const ToneStatistics& statistics);

/// The number of an item in its group, from 1.
int NumberInGroup(std::span<const ToneItem> items, int item);

/// The text of ToneStat.txt in GBK. There is an item.
std::string ToneReport(std::span<const ToneItem> items, const ToneStatistics& statistics);

}  // namespace parlowen
