#pragma once
#include <optional>
#include <string>
#include <vector>

#include "base/Bytes.h"
#include "vowel/VowelFormants.h"

namespace parlowen {

/// Appends one block of a formant file (.fmt): "HEAD", int32 48·N + 8, int32 start sample, then per frame six
/// float64 F1, B1, F2, B2, F3, B3 in Hz, 0 where there is none.
void WriteFormantBlock(ByteWriter& file, const VowelTrack& track);

struct FormantBlock {
  int start = 0;                              ///< sample
  std::vector<std::array<double, 6>> frames;  ///< F1, B1, F2, B2, F3, B3
};

/// All blocks of a file; nothing when one does not begin with "HEAD" or is longer than what is left.
std::optional<std::vector<FormantBlock>> ReadFormantFile(ByteSpan file);

/// The text of "Formant.txt" in GBK. The file does not know its rate: times are those of a sound at
/// `sampleRate`.
std::string FormantListing(const std::vector<FormantBlock>& blocks, int sampleRate);

}  // namespace parlowen
