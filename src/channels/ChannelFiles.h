#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/Bytes.h"
#include "channels/Nasalance.h"
#include "document/SoundDocument.h"

namespace parlowen {

/// The curve as a `.nas` file: "HEAD", int32 bytes that follow, int32 start sample, int32 step in samples,
/// float32 gain ratio, then float32 percentages, −1 where the curve is blank.
std::vector<std::uint8_t> NasBytesOf(const NasalanceCurve& curve);

/// Nothing when the tag is another, the length is not the file's, or start, step or ratio make no sense.
/// Values outside 0..100 are blank.
std::optional<NasalanceCurve> ParseNas(ByteSpan file);

/// The curve as a table with its figures, GBK with "\r\n". Times are the middles of the frames in seconds.
std::string NasRatioText(const NasalanceCurve& curve, const std::string& source, int sampleRate);

/// The document as a WAV file whose header says two channels, for programs that do not look at the block
/// align.
std::vector<std::uint8_t> StereoWavBytesOf(const SoundDocument& document);

}  // namespace parlowen
