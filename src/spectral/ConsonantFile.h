#pragma once
#include <optional>
#include <string>
#include <vector>

#include "base/Bytes.h"

namespace parlowen {

/// The measures of a stretch as a .con file holds them.
struct ConsonantRecord {
  struct Frame {
    double gravity = 0, dispersion = 0;
  };
  int start = 0;  ///< first sample
  int step = 0;   ///< samples from frame to frame
  std::vector<Frame> frames;
};

/// "HEAD", int32 bytes that follow, int32 start, int32 step, char[16] "Gravity", char[16] "Dispersion", then
/// two float64 a frame.
void WriteConsonants(ByteWriter& file, const ConsonantRecord& record);

/// Nothing when the tag or the length is not that of such a file.
std::optional<ConsonantRecord> ParseConsonants(ByteSpan bytes);

/// The text of Cons.txt: a head line, then gravity and dispersion of each frame.
std::string ConsonantText(const ConsonantRecord& record);

}  // namespace parlowen
