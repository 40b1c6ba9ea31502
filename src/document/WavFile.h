#pragma once
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "base/Files.h"
#include "document/SoundDocument.h"

namespace parlowen {

inline constexpr int kWavHeaderBytes = 44;

/// Where the sound lies in a file, as its header says. The fields are taken as they stand; only `dataBytes`
/// is already bounded by the bytes that the file really has behind `dataOffset`.
struct WavLayout {
  std::uint32_t sampleRate = 0;
  std::uint16_t blockAlign = 0;  ///< 2 mono, 4 stereo
  std::uint16_t bitsPerSample = 0;
  std::int64_t dataOffset = 0;
  std::int64_t dataBytes = 0;
};

enum class WavHeaderRule {
  OneChunkSkipped,  ///< follows the fmt size and tolerates one chunk before the data
  Fixed44           ///< every field at its place in the canonical header
};

/// Reads a RIFF header. Nothing when the file is no such file: no "RIFF", under 44 bytes, a fmt size outside
/// 16..65536, a skipped chunk that reaches past the end.
std::optional<WavLayout> ReadWavLayout(const InputFile& file, WavHeaderRule rule);

/// True when the file has something beside format, samples and contour that a save would not write again:
/// records, marks or notes of another program, bytes behind the samples. What only fills or repeats does not
/// count: "fact", "PEAK", padding, the name of the writing program.
bool HoldsMoreThanSound(const InputFile& file, const WavLayout& layout);

/// True when the file is long enough for a header and begins with "RIFF".
bool HasRiffTag(const InputFile& file);

/// The 44-byte header that the program writes. The channel count is always 1; the block align carries the
/// number of channels.
void WriteWavHeader(ByteWriter& out, int sampleRate, int channels, int sampleCount);

/// Which bytes of a mono sound longer than the document are loaded from a start second on.
struct LongFileStretch {
  std::int32_t startSample = 0;  ///< as the user chose it
  std::int64_t offset = 0;       ///< bytes behind the start of the data
  std::int64_t bytes = 0;
};
/// `startSecond` >= 0; within three seconds of the end it means three seconds before the end.
LongFileStretch PlanLongFile(std::int64_t dataBytes, int sampleRate, int startSecond);

/// Reads up to `count` mono samples from the byte offset into `target`; returns how many there were.
int ReadMonoSamples(const InputFile& file, std::int64_t offset, int count, std::int16_t* target);

/// Reads up to `count` stereo frames; the right channel goes to `right` unless that is null.
int ReadStereoFrames(const InputFile& file, std::int64_t offset, int count, std::int16_t* left,
                     std::int16_t* right);

/// Reads the pitch tail behind the samples into the contour; without a whole tail the contour is reset.
void ReadPitchTail(const InputFile& file, std::int64_t offset, SoundDocument& document);

/// Takes stored periods, frame 0 first, as the contour and its backup and sets `pitchPresent`; frames behind
/// them have no value. Values that no contour can have are made harmless: not finite or longer than a second
/// becomes unvoiced, negative becomes "no value".
void TakeStoredContour(std::span<const float> periods, SoundDocument& document);

/// True when every frame from 1 to the last has a value, so that the contour may go into the file.
bool HasComputedContour(const SoundDocument& document);

/// The document as a WAV file; with `withPitch` the contour follows the samples, closed by two zero values.
std::vector<std::uint8_t> WavBytesOf(const SoundDocument& document, bool withPitch);

}  // namespace parlowen
