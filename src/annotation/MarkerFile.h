#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "annotation/MarkerSet.h"
#include "base/Bytes.h"

namespace parlowen {

inline constexpr std::size_t kMarkerFileBytes = 2576;

/// The marker file beside a sound: the full path up to and with its first dot, then "lbl". A dot in a
/// folder's name cuts the name there. A path without a dot gets ".lbl".
std::string MarkerPathOf(const std::string& soundPath);

/// The file's bytes. Unused entries are 0; a text is its GBK bytes, phonetic symbols by their codes, at most
/// 19, and 0.
std::vector<std::uint8_t> MarkerBytesOf(const MarkerSet& set);

struct MarkerFileContent {
  MarkerSet set;
  bool corrected = false;  ///< positions lay outside the sound or out of order
};

/// Nothing when the size is not 2576 or a count lies outside 0..20. Positions are clamped to 0..sampleCount,
/// markers sorted, labels turned the right way round.
std::optional<MarkerFileContent> ParseMarkers(ByteSpan bytes, std::int32_t sampleCount);

}  // namespace parlowen
