#include "spectral/LtaFile.h"

namespace parlowen {

void WriteLta(ByteWriter& file, const LtaRecord& record) {
  for (const double level : record.levels) file.PutFloat64LE(level);
  file.PutInt32LE(record.sampleRate);
}

std::optional<LtaRecord> ParseLta(ByteSpan bytes) {
  ByteReader reader(bytes);
  LtaRecord record;
  for (double& level : record.levels) level = reader.TakeFloat64LE();
  record.sampleRate = reader.TakeInt32LE();
  if (reader.failed() || !IsFinite(record.levels)) return {};
  return record;
}

}  // namespace parlowen
