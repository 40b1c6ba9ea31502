#pragma once
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "annotation/Annotations.h"
#include "base/Bytes.h"

namespace parlowen {

class SoundDocument;

// An .ipa file is a mono WAV file with records behind its samples: "IPA" and a zero byte, 10 bytes of text,
// the position; at last, when the contour goes with it, "PCH" and a zero byte, a 16-bit count, the periods.

/// The records behind the samples.
struct IpaRecords {
  std::vector<Annotation> annotations;  ///< at most kMostAnnotations; positions as they stand
  bool tooMany = false;                 ///< there were more of them
  std::optional<std::vector<float>>
      periods;  ///< as they stand, at most kContourFrames; the last block counts
};

/// Reads records up to the end of the bytes, an unknown tag, or a record that is cut off.
IpaRecords ReadIpaRecords(ByteSpan behindSamples);

/// Channel 1 of the document with the annotations; with `withPitch` the contour follows, one value a frame.
std::vector<std::uint8_t> IpaBytesOf(const SoundDocument& document, std::span<const Annotation> annotations,
                                     bool withPitch);

}  // namespace parlowen
