#include "prosody/ToneFile.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "base/Gbk.h"
#include "document/SoundDocument.h"

// .pit: records, little-endian, one a syllable.
//
//   0    4    "HEAD"
//   4    4    int32 bytes behind this field: 96 + 4·n
//   8    8    group name in GBK, the rest 0
//   16   4    int32 sampling rate
//   20   4    int32 start, 24 int32 end of the selection, samples
//   28   4    int32 first frame
//   32   2    int16 1 = weak ends dropped
//   34   2    int16 0
//   36   4    int32 n
//   40   64   file name of the sound in GBK, the rest 0
//   104  4·n  float32 Hz, 0 in gaps
//
// .bin:
//
//   0    4    "HEAD"
//   4    4    int32 bytes behind this field: 20 + 208·G
//   8    2    int16 G, groups
//   10   2    int16 11, points
//   12   8    float64 lower, 20 float64 upper limit of the range, Hz
//   28        G records of 208 bytes:
//     0    8    name in GBK
//     8    2    int16 items
//     10   6    0
//     16   88   11 float64 mean, semitones
//     104  88   11 float64 standard deviation
//     192  8    float64 mean duration, 200 float64 standard deviation, ms

namespace parlowen {
namespace {

constexpr std::size_t kGroupBytes = 8, kSoundBytes = 64, kItemHead = 104, kResultHead = 28;
constexpr std::int32_t kItemFields = 96, kResultFields = 20, kGroupFields = 208;
constexpr std::size_t kShortestItem = 5, kLongestItem = kUsableContourFrames;

/// Text in a field of fixed length, zeros behind it.
void PutText(ByteWriter& out, std::string_view gbk, std::size_t bytes) {
  const std::string_view cut = CutGbk(gbk, bytes);
  out.PutTag(cut);
  for (std::size_t i = cut.size(); i < bytes; ++i) out.PutUint8(0);
}

std::string TakeText(ByteReader& in, std::size_t bytes) {
  const ByteSpan field = in.Take(bytes);
  return {field.begin(), std::find(field.begin(), field.end(), std::uint8_t{0})};
}

bool IsGoodHertz(float hertz) {
  return hertz == 0 || (hertz >= kLowestToneHertz && hertz <= kHighestToneHertz);
}

void WriteItem(ByteWriter& out, const ToneItem& item) {
  const auto n = static_cast<std::int32_t>(item.hertz.size());
  out.PutTag("HEAD");
  out.PutInt32LE(kItemFields + 4 * n);
  PutText(out, item.group, kGroupBytes);
  out.PutInt32LE(item.sampleRate);
  out.PutInt32LE(item.start);
  out.PutInt32LE(item.end);
  out.PutInt32LE(item.first);
  out.PutInt16LE(item.weakEndsDropped ? 1 : 0);
  out.PutInt16LE(0);
  out.PutInt32LE(n);
  PutText(out, CutGbk(item.sound, kSoundBytes - 1), kSoundBytes);
  for (const float hertz : item.hertz) out.PutFloat32LE(hertz);
}

std::optional<ToneItem> TakeItem(ByteReader& in) {
  ToneItem item;
  const bool tagged = in.TakeTag("HEAD");
  const std::int32_t length = in.TakeInt32LE();
  item.group = TakeText(in, kGroupBytes);
  item.sampleRate = in.TakeInt32LE();
  item.start = in.TakeInt32LE();
  item.end = in.TakeInt32LE();
  item.first = in.TakeInt32LE();
  item.weakEndsDropped = in.TakeInt16LE() != 0;
  in.Skip(2);
  const std::int32_t n = in.TakeInt32LE();
  item.sound = CutGbk(TakeText(in, kSoundBytes), kSoundBytes - 1);
  if (!tagged || in.failed() || n < static_cast<std::int32_t>(kShortestItem) ||
      n > static_cast<std::int32_t>(kLongestItem) || length != kItemFields + 4 * n ||
      static_cast<std::size_t>(n) > in.Remaining() / 4)
    return {};
  item.hertz.resize(static_cast<std::size_t>(n));
  for (float& hertz : item.hertz) hertz = in.TakeFloat32LE();
  if (!IsGoodItem(item)) return {};
  item.points = TonePointsOf(item.hertz);
  return item;
}

void PutPoints(ByteWriter& out, const TonePoints& points) {
  for (const double value : points) out.PutFloat64LE(value);
}

/// False when a value is not finite.
bool TakePoints(ByteReader& in, TonePoints& points) {
  for (double& value : points) value = in.TakeFloat64LE();
  return std::all_of(points.begin(), points.end(), [](double value) { return std::isfinite(value); });
}

}  // namespace

bool IsGoodItem(const ToneItem& item) {
  const std::size_t n = item.hertz.size();
  return !item.group.empty() && item.sampleRate >= kSmallestRate && item.sampleRate <= kLargestRate &&
         item.start >= 0 && item.start < item.end && item.end <= kMaxSamples && n >= kShortestItem &&
         n <= kLongestItem && item.hertz.front() != 0 && item.hertz.back() != 0 &&
         std::all_of(item.hertz.begin(), item.hertz.end(), IsGoodHertz);
}

std::size_t ToneItemBytes(std::span<const ToneItem> items) {
  std::size_t bytes = 0;
  for (const ToneItem& item : items) bytes += kItemHead + 4 * item.hertz.size();
  return bytes;
}

ByteWriter WriteToneItems(std::span<const ToneItem> items) {
  ByteWriter out;
  out.Reserve(ToneItemBytes(items));
  for (const ToneItem& item : items) WriteItem(out, item);
  return out;
}

std::optional<std::vector<ToneItem>> ParseToneItems(ByteSpan bytes) {
  ByteReader in(bytes);
  std::vector<ToneItem> items;
  std::set<std::string> groups;
  while (in.Remaining() > 0) {
    auto item = TakeItem(in);
    if (!item || items.size() == kMostToneItems) return {};
    groups.insert(item->group);
    if (groups.size() > kMostToneGroups) return {};
    items.push_back(std::move(*item));
  }
  return items;
}

ByteWriter WriteToneResult(const ToneResult& result) {
  ByteWriter out;
  const auto count = static_cast<std::int32_t>(result.groups.size());
  out.Reserve(kResultHead + static_cast<std::size_t>(kGroupFields) * result.groups.size());
  out.PutTag("HEAD");
  out.PutInt32LE(kResultFields + kGroupFields * count);
  out.PutInt16LE(static_cast<std::int16_t>(count));
  out.PutInt16LE(kTonePoints);
  out.PutFloat64LE(result.lowHertz);
  out.PutFloat64LE(result.highHertz);
  for (const ToneGroupResult& group : result.groups) {
    PutText(out, group.name, kGroupBytes);
    out.PutInt16LE(static_cast<std::int16_t>(group.items));
    out.PutInt16LE(0);
    out.PutInt32LE(0);
    PutPoints(out, group.mean);
    PutPoints(out, group.deviation);
    out.PutFloat64LE(group.milliseconds);
    out.PutFloat64LE(group.millisecondsDeviation);
  }
  return out;
}

std::optional<ToneResult> ParseToneResult(ByteSpan bytes) {
  ByteReader in(bytes);
  ToneResult result;
  const bool tagged = in.TakeTag("HEAD");
  const std::int32_t length = in.TakeInt32LE();
  const int count = in.TakeInt16LE(), points = in.TakeInt16LE();
  result.lowHertz = in.TakeFloat64LE();
  result.highHertz = in.TakeFloat64LE();
  if (!tagged || in.failed() || points != kTonePoints || count < 1 ||
      count > static_cast<int>(kMostToneGroups) || length != kResultFields + kGroupFields * count ||
      in.Remaining() != static_cast<std::size_t>(count) * static_cast<std::size_t>(kGroupFields) ||
      !(result.lowHertz > 0 && result.lowHertz <= result.highHertz && std::isfinite(result.highHertz)))
    return {};
  for (int g = 0; g < count; ++g) {
    ToneGroupResult group;
    group.name = TakeText(in, kGroupBytes);
    group.items = in.TakeInt16LE();
    in.Skip(6);
    const bool finite = TakePoints(in, group.mean) & TakePoints(in, group.deviation);
    group.milliseconds = in.TakeFloat64LE();
    group.millisecondsDeviation = in.TakeFloat64LE();
    if (!finite || !std::isfinite(group.milliseconds) || !std::isfinite(group.millisecondsDeviation))
      return {};
    result.groups.push_back(std::move(group));
  }
  return result;
}

}  // namespace parlowen
