#pragma once
#include <optional>
#include <string>
#include <vector>

#include "base/Bytes.h"
#include "prosody/Intonation.h"

namespace parlowen {

inline constexpr std::size_t kLargestIntonationFile = std::size_t{64} << 20;

/// What an .itn file keeps of an analysis. Figures that are not known are 0.
struct SavedIntonation {
  int sampleRate = 0, start = 0, end = 0;
  SemitoneSpan sentence{0, 0};
  std::vector<IntonationUnit> units;  ///< 1..100; `frames` 0 is a pause
  double SecondsFromStart(int sample) const { return (static_cast<double>(sample) - start) / sampleRate; }
};

ByteWriter WriteIntonation(const Intonation& intonation);
/// Nothing when the file is broken, holds a number that is not finite, or speaks of no stretch.
std::optional<SavedIntonation> ParseIntonation(ByteSpan bytes);

/// One sentence of a speaker: a record of a .tnr file.
struct SpeakerRecord {
  int units = 0;                                      ///< without pauses
  double smallestBase = 0, largestTop = 0, mean = 0;  ///< semitones; the mean is that of all frames
  bool operator==(const SpeakerRecord&) const = default;
};

/// Nothing while every unit is a pause.
std::optional<SpeakerRecord> SpeakerRecordOf(const Intonation& intonation);
ByteWriter WriteSpeakerRecord(const SpeakerRecord& record);
/// From the smallest base to the largest top of all records; nothing when there is none or one is broken.
std::optional<SemitoneSpan> ParseSpeakerRange(ByteSpan bytes);

/// The text of ToneDom.txt in GBK.
std::string IntonationReport(const Intonation& intonation);

}  // namespace parlowen
