#include "document/WavFile.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/Arithmetic.h"

namespace parlowen {
namespace {

constexpr std::int64_t kFmtSizeAt = 16, kRateAt = 24, kBlockAlignAt = 32, kBitsAt = 34, kDataSizeAt = 40;
constexpr std::uint32_t kSmallestFmt = 16, kLargestFmt = 65536;
constexpr std::string_view kContourTag("PCH\0", 4);
constexpr std::int64_t kFmtEnd =
    20;  // chunk identifiers and sizes are counted from the end of the fmt header

/// Little-endian fields of a file at any place; what lies past the end reads as zeros and fails.
ByteReader FieldsAt(const InputFile& file, std::int64_t offset, std::span<std::uint8_t> buffer) {
  return ByteReader(ByteSpan(buffer.data(), file.ReadAt(offset, buffer.data(), buffer.size())));
}

/// The offset of the data size field, or −1: the field behind the fmt chunk, or behind one further chunk.
std::int64_t FindDataSize(const InputFile& file, std::uint32_t fmtSize) {
  std::array<std::uint8_t, 8> buffer{};
  const std::int64_t next = kFmtEnd + fmtSize;
  ByteReader chunk = FieldsAt(file, next, buffer);
  if (chunk.TakeTag("data")) return next + 4;
  const std::int64_t size = chunk.TakeUint32LE();
  if (chunk.failed()) return -1;
  std::int64_t end = next + 8 + size;
  // Some writers pad an odd chunk with a zero byte, others do not.
  std::uint8_t pad = 1;
  if (size % 2 != 0 && file.ReadAt(end, &pad, 1) == 1 && pad == 0) ++end;
  return end + 4;
}

constexpr std::size_t kChunkHead = 8;  // identifier and size

struct ChunkHead {
  std::string id;
  std::int64_t size = 0;
};
std::optional<ChunkHead> ChunkAt(const InputFile& file, std::int64_t offset) {
  std::array<std::uint8_t, kChunkHead> buffer{};
  if (file.ReadAt(offset, buffer.data(), buffer.size()) < buffer.size()) return {};
  ByteReader reader(buffer);
  reader.SeekTo(4);
  return ChunkHead{std::string(buffer.begin(), buffer.begin() + 4), reader.TakeUint32LE()};
}

/// The only thing that a list of notes says is often the name of the program that wrote it.
bool NamesOnlyItsWriter(const InputFile& file, std::int64_t offset, const ChunkHead& list) {
  constexpr std::int64_t kTypeBytes = 4;
  const auto note = ChunkAt(file, offset + std::int64_t{kChunkHead} + kTypeBytes);
  return note && note->id == "ISFT" && list.size - kTypeBytes - std::int64_t{kChunkHead} - note->size <= 1;
}

/// Room that a recorder reserved; what is longer than this is not looked at to its end and counts as content.
bool OnlyZeros(const InputFile& file, std::int64_t offset, std::int64_t end) {
  constexpr std::int64_t kMostZeros = std::int64_t{64} << 20;
  std::vector<std::uint8_t> block(std::size_t{1} << 16);
  if (end - offset > kMostZeros) return false;
  while (offset < end) {
    const auto wanted = static_cast<std::size_t>(std::min<std::int64_t>(end - offset, std::ssize(block)));
    const std::size_t got = file.ReadAt(offset, block.data(), wanted);
    if (got == 0) break;
    if (std::any_of(block.begin(), block.begin() + static_cast<std::ptrdiff_t>(got),
                    [](std::uint8_t byte) { return byte != 0; }))
      return false;
    offset += static_cast<std::int64_t>(got);
  }
  return true;
}

/// True when nothing of what the chunks from `offset` to `end` hold would be missed.
bool OnlyFills(const InputFile& file, std::int64_t offset, std::int64_t end) {
  constexpr int kMostChunks = 1000;  // a file of nothing but empty ones is no sound's
  constexpr std::string_view kFilling[] = {"fmt ", "fact", "PEAK", "JUNK", "PAD ", "FLLR"};
  constexpr std::string_view kZeros("\0\0\0\0", 4);
  for (int i = 0; offset + std::int64_t{kChunkHead} <= end; ++i) {
    const auto chunk = ChunkAt(file, offset);
    if (!chunk) return true;
    if (i == kMostChunks) return false;
    if (chunk->id == kZeros && chunk->size == 0) return OnlyZeros(file, offset, end);
    const bool fills = std::find(std::begin(kFilling), std::end(kFilling), chunk->id) != std::end(kFilling) ||
                       (chunk->id == "LIST" && NamesOnlyItsWriter(file, offset, *chunk));
    if (!fills) return false;
    offset += std::int64_t{kChunkHead} + chunk->size + chunk->size % 2;
  }
  return true;
}

}  // namespace

bool HoldsMoreThanSound(const InputFile& file, const WavLayout& layout) {
  constexpr std::int64_t kFirstChunk = 12;
  if (!OnlyFills(file, kFirstChunk, layout.dataOffset - std::int64_t{kChunkHead})) return true;
  std::int64_t behind = layout.dataOffset + layout.dataBytes;
  const auto tail = ChunkAt(file, behind);
  if (tail && tail->id == kContourTag) {
    if (layout.blockAlign != 2) return true;  // two channels are saved without a contour
    behind += 6 + (tail->size & 0xFFFF) * 4;
  }
  return !OnlyFills(file, behind + behind % 2, file.size());
}

bool HasRiffTag(const InputFile& file) {
  std::array<std::uint8_t, 4> tag{};
  return file.size() >= kWavHeaderBytes && FieldsAt(file, 0, tag).TakeTag("RIFF");
}

std::optional<WavLayout> ReadWavLayout(const InputFile& file, WavHeaderRule rule) {
  if (!HasRiffTag(file)) return {};
  std::array<std::uint8_t, kWavHeaderBytes> buffer{};
  ByteReader header = FieldsAt(file, 0, buffer);
  header.SeekTo(kFmtSizeAt);
  const std::uint32_t fmtSize = header.TakeUint32LE();
  WavLayout layout;
  header.SeekTo(kRateAt);
  layout.sampleRate = header.TakeUint32LE();
  header.SeekTo(kBlockAlignAt);
  layout.blockAlign = header.TakeUint16LE();
  layout.bitsPerSample = header.TakeUint16LE();
  if (header.failed()) return {};

  std::int64_t sizeAt = kDataSizeAt;
  if (rule == WavHeaderRule::OneChunkSkipped) {
    if (fmtSize < kSmallestFmt || fmtSize > kLargestFmt) return {};
    sizeAt = FindDataSize(file, fmtSize);
  }
  std::array<std::uint8_t, 4> sizeBytes{};
  if (sizeAt < 0) return {};
  ByteReader size = FieldsAt(file, sizeAt, sizeBytes);
  const std::int64_t announced = size.TakeUint32LE();
  if (size.failed()) return {};
  layout.dataOffset = sizeAt + 4;
  layout.dataBytes = std::min(announced, file.size() - layout.dataOffset);
  return layout;
}

void WriteWavHeader(ByteWriter& out, int sampleRate, int channels, int sampleCount) {
  const std::int64_t dataBytes = std::int64_t{sampleCount} * 2 * channels;
  out.PutTag("RIFF");
  out.PutInt32LE(LowInt32(dataBytes + 36));
  out.PutTag("WAVE");
  out.PutTag("fmt ");
  out.PutInt32LE(16);
  out.PutUint16LE(1);  // linear PCM
  out.PutUint16LE(1);  // also for two channels
  out.PutInt32LE(sampleRate);
  out.PutInt32LE(LowInt32(std::int64_t{sampleRate} * 2 * channels));
  out.PutUint16LE(static_cast<std::uint16_t>(2 * channels));
  out.PutUint16LE(16);
  out.PutTag("data");
  out.PutInt32LE(LowInt32(dataBytes));
}

LongFileStretch PlanLongFile(std::int64_t dataBytes, int sampleRate, int startSecond) {
  constexpr std::int64_t kReadBytes = std::int64_t{kMaxSamples} * 2;
  const std::int64_t seconds = dataBytes / 2 / sampleRate;
  LongFileStretch stretch;
  const std::int64_t start = std::min<std::int64_t>(startSecond, seconds - 3) * sampleRate;
  stretch.startSample = SaturateInt32(start);
  stretch.offset = start * 2;
  stretch.bytes = kReadBytes;
  const std::int64_t rest = dataBytes - stretch.offset;
  if (rest <= kReadBytes) {
    const std::int64_t least = std::int64_t{sampleRate} * 3;  // bytes: 1.5 s
    if (rest < least) stretch.offset = dataBytes - least;
    stretch.bytes = std::max(rest, least);
  }
  return stretch;
}

int ReadMonoSamples(const InputFile& file, std::int64_t offset, int count, std::int16_t* target) {
  const std::size_t wanted = static_cast<std::size_t>(count) * 2;
  const auto got = static_cast<int>(file.ReadAt(offset, target, wanted) / 2);
  if constexpr (std::endian::native == std::endian::big)
    for (int i = 0; i < got; ++i) target[i] = LowInt16(((target[i] & 0xFF) << 8) | ((target[i] >> 8) & 0xFF));
  return got;
}

int ReadStereoFrames(const InputFile& file, std::int64_t offset, int count, std::int16_t* left,
                     std::int16_t* right) {
  constexpr int kFramesAtOnce = 16384;
  std::vector<std::int16_t> pairs(2 * kFramesAtOnce);
  int done = 0;
  while (done < count) {
    const int wanted = std::min(kFramesAtOnce, count - done);
    const int got = ReadMonoSamples(file, offset + std::int64_t{done} * 4, wanted * 2, pairs.data()) / 2;
    for (int i = 0; i < got; ++i) {
      left[done + i] = pairs[static_cast<std::size_t>(2 * i)];
      if (right != nullptr) right[done + i] = pairs[static_cast<std::size_t>(2 * i + 1)];
    }
    done += got;
    if (got < wanted) break;
  }
  return done;
}

void ReadPitchTail(const InputFile& file, std::int64_t offset, SoundDocument& document) {
  document.resetPitch();
  std::array<std::uint8_t, 6> head{};
  ByteReader reader = FieldsAt(file, offset, head);
  if (!reader.TakeTag(kContourTag)) return;
  const int count = reader.TakeUint16LE();
  if (reader.failed()) return;
  const int kept = std::min(count, kContourFrames);
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(kept) * 4);
  if (file.ReadAt(offset + 6, bytes.data(), bytes.size()) < bytes.size()) return;
  ByteReader values(bytes);
  std::vector<float> periods(static_cast<std::size_t>(kept));
  for (float& period : periods) period = values.TakeFloat32LE();
  TakeStoredContour(periods, document);
}

void TakeStoredContour(std::span<const float> periods, SoundDocument& document) {
  document.resetPitch();
  std::transform(periods.begin(),
                 periods.begin() + std::min<std::ptrdiff_t>(std::ssize(periods), kContourFrames),
                 document.pitch.begin(), [&document](float period) {
                   if (!std::isfinite(period) || period > static_cast<float>(document.sampleRate))
                     return kUnvoiced;
                   return period < 0 ? kNoValue : period;
                 });
  document.pitchBackup = document.pitch;
  document.pitchPresent = true;
}

bool HasComputedContour(const SoundDocument& document) {
  const int frames = document.ContourLength();
  return frames > 1 && std::all_of(document.pitch.begin() + 1, document.pitch.begin() + frames,
                                   [](float value) { return value >= -0.5f; });
}

std::vector<std::uint8_t> WavBytesOf(const SoundDocument& document, bool withPitch) {
  ByteWriter out;
  const int channels = document.twoChannel ? 2 : 1;
  const auto count = static_cast<std::size_t>(document.sampleCount);
  out.Reserve(kWavHeaderBytes + count * 2 * static_cast<std::size_t>(channels) + 6 + 4 * kContourFrames);
  WriteWavHeader(out, document.sampleRate, channels, document.sampleCount);
  if (document.twoChannel) {
    for (int i = 0; i < document.sampleCount; ++i) {
      out.PutInt16LE(document.samples[i]);
      out.PutInt16LE(document.samples2[i]);
    }
  } else {
    out.PutInt16sLE({document.samples.data(), count});
  }
  if (withPitch) {
    const int frames = document.ContourLength();
    out.PutTag(kContourTag);
    out.PutUint16LE(static_cast<std::uint16_t>(frames + 2));
    for (int i = 0; i < frames; ++i) out.PutFloat32LE(document.pitch[static_cast<std::size_t>(i)]);
    out.PutFloat32LE(0);
    out.PutFloat32LE(0);
  }
  return out.bytes();
}

}  // namespace parlowen
