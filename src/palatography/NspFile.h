#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "base/Bytes.h"

namespace parlowen {

/// Rates that the recording instruments use end here, in Hz.
inline constexpr std::uint32_t kLargestNspRate = 32000;
inline constexpr std::size_t kPreferenceBytes = 392;

/// Why a file is refused. All but `NotNsp` are told to the user.
enum class NspRefusal {
  None,
  NotNsp,       ///< another kind of file
  WrongFormat,  ///< the container with a header that the reader does not know, or without speech
  RateTooHigh,
  TwoChannelSpeech,  ///< interleaved channels where one is expected
  WrongPreferences   ///< a preference record of another length
};

/// Samples that a document takes from such a file: a fifth of a second of the room stays free.
/// (C − 20)·sampleRate/100 with the capacity C in hundredths of a second.
int NspSampleLimit(int sampleRate);

/// Two-channel speech: header chunk "NHDR". A missing channel is empty.
struct TwoChannelNsp {
  int sampleRate = 0;
  int sampleCount = 0;  ///< of the chunk that came last, within the limit
  bool hasFirst = false, hasSecond = false;
  std::vector<std::int16_t> first, second;  ///< at most `sampleCount` samples each
};

/// Reads two-channel speech. `recording` is filled only when nothing is refused.
/// - The form length of the head bounds the reading: from (length + 12) − 120 on, 4 are taken off for every
///   id, and the
///   reading ends below 1. A "SDA_" chunk takes off 4 + its length, a "SD_B" chunk 4 + the length of the
///   "SDA_" chunk:
///   both channels are taken to be of equal size.
/// - An unknown id has no length: the next four bytes are the next id. Odd chunks have no pad byte.
/// - A chunk that is cut off gives the samples that are there; of two chunks of one channel the later one
///   counts.
NspRefusal ParseTwoChannelNsp(ByteSpan file, TwoChannelNsp& recording);

struct EpgMarker {
  int position = 0;   ///< sample, 0..sampleCount
  std::string label;  ///< UTF-8
};

/// A recording with an artificial palate: header chunk "HEDR".
struct EpgRecording {
  int sampleRate = 0;
  int sampleCount = 0;
  char channel = 0;  ///< 'A' or 'B': which one was read
  std::int16_t maximumA = 0, maximumB = 0;
  std::vector<std::int16_t> samples;
  bool hasPreferences = false, hasPalate = false;
  std::array<std::uint8_t, kPreferenceBytes> preferences{};
  std::vector<std::uint8_t> palate;  ///< contact frames as they stand in the file
  std::vector<EpgMarker> markers;    ///< of the channel read, in the order of the file, at most 4096
};

/// Reads a palate recording. `recording` is filled only when nothing is refused.
/// - The first speech chunk counts, and of it the samples that the header announces; its markers may stand
///   before it.
/// - Chunks other than speech have a pad byte when their length is odd. One that does not fit into the file
///   ends the
///   reading; speech that is cut off gives what is there.
NspRefusal ParseEpgNsp(ByteSpan file, EpgRecording& recording);

}  // namespace parlowen
