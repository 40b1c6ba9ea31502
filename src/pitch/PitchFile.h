#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "base/Bytes.h"
#include "document/SoundDocument.h"
#include "pitch/SemitoneScale.h"

namespace parlowen {

/// One kept segment: the sample its selection began at and one period (samples, 0 unvoiced) a frame.
/// The file knows no sampling rate: times and frequencies are those of the rate it is read with.
struct PitchRecord {
  std::int32_t start = 0;
  std::vector<float> periods;
};

/// The frames of samples start .. end, the frame of `end` included; both numbers are kept in 16 bits.
FrameSpan RecordedFrames(int start, int end, int sampleRate);

/// Appends one record with the contour's values of the frames; frames that a contour cannot have are written
/// as 0. False, and nothing appended, when the span is empty.
bool WritePitchRecord(ByteWriter& out, const SoundDocument& document, int start, FrameSpan frames);

enum class PitchFileEnd { Complete, Broken };

/// The records of a file, up to its end or to the first one that is broken: another tag, a count below one
/// value or larger than what follows. Fewer than four bytes behind the last record are ignored.
PitchFileEnd ReadPitchRecords(ByteSpan bytes, std::vector<PitchRecord>& records);

/// A record as the listing shows it, UTF-8 with "\r\n": its number (from 1) and times, a column head, its
/// frames two to a line. The time of a frame is summed in single precision, 0.01 a frame. An odd last frame
/// has no line end.
std::string PitchListing(const PitchRecord& record, int number, int sampleRate);

}  // namespace parlowen
