#pragma once
#include <optional>
#include <string>
#include <vector>

#include "base/Bytes.h"
#include "palatography/ContactFrames.h"

namespace parlowen {

/// The statistics of one stretch of a sound, one record of a `.pal` file.
struct PalateRecord {
  int start = 0, end = 0;  ///< samples
  int sampleRate = 0;
  int frames = 0;   ///< that were counted
  double rate = 0;  ///< frames a second
  ContactStatistics statistics;
};

inline constexpr std::size_t kPalateRecordBytes = 664, kMostPalateRecords = 4096;

/// Adds a record; what is undefined (centre of gravity and asymmetry of a stretch without contact) is written as 0.
void WritePalateRecord(ByteWriter& out, const PalateRecord& record);

/// All records of a file: nothing when a tag, a length or a value is none that a record has, or when there are
/// fewer than 1 or more than 4096. Centre of gravity and asymmetry of a record without contact are NaN.
std::optional<std::vector<PalateRecord>> ReadPalateFile(ByteSpan bytes);

/// The statistics of several records together.
ContactStatistics MeanOf(const std::vector<PalateRecord>& records);

/// The records as a text, GBK with "\r\n"; of two or more their mean as well.
std::string PalateText(const std::vector<PalateRecord>& records);

/// Contact frames that other laboratories keep in files of their own: 8 bytes each, or 12 of which the first four
/// are not used. Nothing when the length is 0 or no multiple of that.
std::optional<std::vector<ContactFrame>> ParseContactFrames(ByteSpan bytes, std::size_t bytesPerFrame);

}  // namespace parlowen
