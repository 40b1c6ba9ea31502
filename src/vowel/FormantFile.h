#pragma once
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

enum class FormantFileEnd { Complete, Broken };

/// The blocks of a file, up to its end or to the first one that is broken: another tag, a size below that of
/// an empty block or larger than what follows. Fewer than four bytes behind the last block are ignored.
FormantFileEnd ReadFormantBlocks(ByteSpan file, std::vector<FormantBlock>& blocks);

/// A block as "Formant.txt" shows it, in GBK: its number (from 1) and times, a column head, a line a frame.
/// The file does not know its rate: times are those of a sound at `sampleRate`.
std::string FormantListing(const FormantBlock& block, int number, int sampleRate);

}  // namespace parlowen
