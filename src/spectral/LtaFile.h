#pragma once
#include <optional>

#include "base/Bytes.h"
#include "spectral/LongTermSpectrum.h"

namespace parlowen {

/// What an .lta file holds.
struct LtaRecord {
  LtaSpectrum levels{};  ///< doubled scale
  int sampleRate = 0;
};

/// 2052 bytes without head or tag: 256 float64, bin 0 first, then the sampling rate as int32.
void WriteLta(ByteWriter& file, const LtaRecord& record);

/// Nothing when the file is shorter or holds a level that is no number. What follows the rate is not looked
/// at.
std::optional<LtaRecord> ParseLta(ByteSpan bytes);

}  // namespace parlowen
