#pragma once
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/Bytes.h"
#include "prosody/ToneCurve.h"
#include "prosody/ToneScales.h"

namespace parlowen {

inline constexpr std::size_t kMostToneItems = 2000, kMostToneGroups = 32;
/// A file of tones may have so many bytes; larger ones are not read and not written.
inline constexpr std::size_t kLargestToneFile = std::size_t{64} << 20;
/// The frequencies that an item may hold, in Hz.
inline constexpr float kLowestToneHertz = 10.0f, kHighestToneHertz = 4000.0f;

/// One syllable of a run.
struct ToneItem {
  std::string group;  ///< GBK, 1..8 bytes
  std::string sound;  ///< file name of its sound in GBK, at most 63 bytes; "" for one that was never saved
  std::int32_t sampleRate = 0, start = 0, end = 0;  ///< Hz; the selection in samples
  std::int32_t first = 0;                           ///< the frame of the first value
  bool weakEndsDropped = true;
  std::vector<float> hertz;  ///< 0 in gaps, 5..12498 values
  TonePoints points{};       ///< of these values, in semitones

  double Milliseconds() const { return 10.0 * static_cast<double>(hertz.size()); }
  bool operator==(const ToneItem&) const = default;
};

/// What the reader of a .pit file asks of an item; one that is not good is never written.
bool IsGoodItem(const ToneItem& item);

/// Bytes that the items take in a file.
std::size_t ToneItemBytes(std::span<const ToneItem> items);
/// A .pit file.
ByteWriter WriteToneItems(std::span<const ToneItem> items);
/// Its items; nothing when a record is broken or not good, or there are too many items or groups. An empty file
/// is a good one.
std::optional<std::vector<ToneItem>> ParseToneItems(ByteSpan bytes);

/// A group as the result of a run keeps it.
struct ToneGroupResult {
  std::string name;  ///< GBK
  int items = 0;
  TonePoints mean{}, deviation{};  ///< semitones
  double milliseconds = 0, millisecondsDeviation = 0;
  bool operator==(const ToneGroupResult&) const = default;
};

/// What a .bin file holds: a finished run.
struct ToneResult {
  double lowHertz = 0, highHertz = 0;
  std::vector<ToneGroupResult> groups;  ///< 1..32
  bool operator==(const ToneResult&) const = default;
};

ByteWriter WriteToneResult(const ToneResult& result);
/// Nothing when the file is broken, holds a number that is not finite, or a range that is none (0 < low ≤ high).
std::optional<ToneResult> ParseToneResult(ByteSpan bytes);

}  // namespace parlowen
