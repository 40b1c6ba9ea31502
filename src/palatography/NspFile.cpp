// Both readers: head, header chunk, then chunk after chunk into a local recording that is handed over at the
// end.
//
//   0  "FORMDS16"      8  form length      12  header id      16  header length      20  header body

#include "palatography/NspFile.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "base/Gbk.h"
#include "document/SoundDocument.h"

namespace parlowen {
namespace {

constexpr std::string_view kMagic = "FORMDS16";
constexpr std::uint32_t kSpeechHeader = 100, kEpgHeader = 32;  // bytes of the header bodies
constexpr std::size_t kSpeechRateAt = 56, kSpeechChunksAt = 120;
constexpr std::size_t kEpgRateAt = 40;
constexpr std::int64_t kFormHead = 12;
constexpr std::size_t kLargestMarkerCount = 4096, kLongestLabel = 255;

bool Is(ByteSpan id, std::string_view name) {
  return id.size() == name.size() && std::memcmp(id.data(), name.data(), name.size()) == 0;
}

/// The body of a speech chunk: what there is of it.
ByteSpan TakeSpeech(ByteReader& reader, std::uint32_t length) {
  return reader.Take(std::min<std::size_t>(length, reader.Remaining()));
}

std::vector<std::int16_t> SamplesOf(ByteSpan body, int most) {
  std::vector<std::int16_t> samples(std::min(body.size() / 2, static_cast<std::size_t>(most)));
  ByteReader reader(body);
  for (std::int16_t& sample : samples) sample = reader.TakeInt16LE();
  return samples;
}

/// Skips the pad byte of an odd chunk, if the file has one more byte.
void SkipPad(ByteReader& reader, std::uint32_t length) {
  if (length % 2 != 0 && reader.Remaining() > 0) reader.Skip(1);
}

/// A label ends at its first zero byte.
EpgMarker TakeMarker(ByteReader& body, std::uint32_t& position) {
  position = body.TakeUint32LE();
  const ByteSpan text = body.Take(std::min(body.Remaining(), kLongestLabel));
  const auto end = std::find(text.begin(), text.end(), 0);
  return {0, FromGbk(std::string(text.begin(), end))};
}

}  // namespace

int NspSampleLimit(int sampleRate) {
  const std::int64_t hundredths = std::int64_t{kMaxSamples} * 100 / sampleRate;
  return static_cast<int>((hundredths - 20) * sampleRate / 100);
}

NspRefusal ParseTwoChannelNsp(ByteSpan file, TwoChannelNsp& recording) {
  ByteReader reader(file);
  if (!reader.TakeTag(kMagic)) return NspRefusal::NotNsp;
  std::int64_t budget = reader.TakeUint32LE() + kFormHead - static_cast<std::int64_t>(kSpeechChunksAt);
  if (!reader.TakeTag("NHDR") || reader.TakeUint32LE() != kSpeechHeader) return NspRefusal::WrongFormat;
  reader.SeekTo(kSpeechRateAt);
  const std::uint32_t rate = reader.TakeUint32LE();
  if (rate > kLargestNspRate) return NspRefusal::RateTooHigh;
  if (rate < kSmallestRate) return NspRefusal::WrongFormat;

  TwoChannelNsp read;
  read.sampleRate = static_cast<int>(rate);
  const int limit = NspSampleLimit(read.sampleRate);
  std::int64_t lengthOfFirst = 0;
  reader.SeekTo(kSpeechChunksAt);
  while (true) {
    const ByteSpan id = reader.Take(4);
    budget -= 4;
    if (reader.failed() || budget < 1) break;
    const bool isFirst = Is(id, "SDA_");
    if (!isFirst && !Is(id, "SD_B")) continue;
    const std::uint32_t length = reader.TakeUint32LE();
    if (reader.failed()) break;
    if (isFirst) lengthOfFirst = length;
    budget -= 4 + lengthOfFirst;
    std::vector<std::int16_t>& channel = isFirst ? read.first : read.second;
    channel = SamplesOf(TakeSpeech(reader, length), limit);
    (isFirst ? read.hasFirst : read.hasSecond) = true;
    read.sampleCount = static_cast<int>(channel.size());
  }
  if (!read.hasFirst && !read.hasSecond) return NspRefusal::WrongFormat;
  for (std::vector<std::int16_t>* channel : {&read.first, &read.second})
    channel->resize(std::min(channel->size(), static_cast<std::size_t>(read.sampleCount)));
  recording = std::move(read);
  return NspRefusal::None;
}

NspRefusal ParseEpgNsp(ByteSpan file, EpgRecording& recording) {
  ByteReader reader(file);
  if (!reader.TakeTag(kMagic)) return NspRefusal::NotNsp;
  reader.Skip(4);  // the form length: the chunks end where the file ends
  if (!reader.TakeTag("HEDR") || reader.TakeUint32LE() != kEpgHeader) return NspRefusal::NotNsp;
  reader.SeekTo(kEpgRateAt);
  const std::uint32_t rate = reader.TakeUint32LE();
  const std::uint32_t announced = reader.TakeUint32LE();
  EpgRecording read;
  read.maximumA = reader.TakeInt16LE();
  read.maximumB = reader.TakeInt16LE();
  if (rate > kLargestNspRate) return NspRefusal::RateTooHigh;
  if (reader.failed() || rate < kSmallestRate) return NspRefusal::NotNsp;
  read.sampleRate = static_cast<int>(rate);
  const auto limit = static_cast<int>(std::min<std::int64_t>(announced, NspSampleLimit(read.sampleRate)));
  read.sampleCount = limit;

  struct FoundMarker {
    EpgMarker marker;
    std::uint32_t position = 0;
    char channel = 0;
  };
  std::vector<FoundMarker> markers;
  while (true) {
    const ByteSpan id = reader.Take(4);
    if (reader.failed()) break;
    if (Is(id, "SDAB")) return NspRefusal::TwoChannelSpeech;
    const std::uint32_t length = reader.TakeUint32LE();
    if (reader.failed()) break;
    if (Is(id, "PREF") && length != kPreferenceBytes) return NspRefusal::WrongPreferences;
    if (Is(id, "SDA_") || Is(id, "SD_B")) {
      const ByteSpan body = TakeSpeech(reader, length);
      if (read.channel != 0) continue;
      read.channel = Is(id, "SDA_") ? 'A' : 'B';
      read.samples = SamplesOf(body, limit);
      continue;
    }
    const ByteSpan body = reader.Take(length);
    if (reader.failed()) break;
    SkipPad(reader, length);
    if (Is(id, "PREF")) {
      std::copy(body.begin(), body.end(), read.preferences.begin());
      read.hasPreferences = true;
    } else if (Is(id, "PALA")) {
      read.palate.assign(body.begin(), body.end());
      read.hasPalate = true;
    } else if ((Is(id, "MKA_") || Is(id, "MK_B")) && body.size() >= 4 &&
               markers.size() < kLargestMarkerCount) {
      FoundMarker found;
      ByteReader marker(body);
      found.marker = TakeMarker(marker, found.position);
      found.channel = Is(id, "MKA_") ? 'A' : 'B';
      markers.push_back(std::move(found));
    }
  }
  if (read.channel == 0) return NspRefusal::NotNsp;
  for (FoundMarker& found : markers) {
    if (found.channel != read.channel || found.position > static_cast<std::uint32_t>(read.sampleCount))
      continue;
    found.marker.position = static_cast<int>(found.position);
    read.markers.push_back(std::move(found.marker));
  }
  recording = std::move(read);
  return NspRefusal::None;
}

}  // namespace parlowen
