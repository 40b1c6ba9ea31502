#include "prosody/IntonationFile.h"

#include <algorithm>
#include <cmath>

#include "base/Format.h"
#include "base/Gbk.h"
#include "base/IpaCodes.h"
#include "prosody/ToneScales.h"
#include "ui/Text.h"

// .itn, little-endian:
//
//   0   4   "HEAD"
//   4   4   int32 bytes behind this field: 32 + 104·n
//   8   4   int32 sampling rate, 12 int32 start, 16 int32 end of the stretch, 20 int32 n, units
//   24  8   float64 smallest base, 32 float64 largest top of the sentence, semitones
//   40      n records of 104 bytes:
//     0   8   name in GBK, the rest 0
//     8   4   int32 start, 12 int32 end, 16 int32 frames, 20 int32 0
//     24  80  ten float64: time, duration, top, base, range, mean, Q top, Q base, two ratios
//
// .tnr: records of 40 bytes.
//
//   0   4   "HEAD"
//   4   4   int32 32
//   8   4   int32 units but pauses, 12 int32 0
//   16  24  float64 smallest base, largest top, mean, semitones

namespace parlowen {
namespace {

constexpr std::int32_t kHeadFields = 32, kUnitFields = 104, kSpeakerFields = 32;
constexpr std::size_t kHeadBytes = 40, kSpeakerBytes = 40, kNameBytes = 8;

constexpr FileText kReportHead =
    "\r\n          语调分析数据\r\n\r\n语音段：%.3f--%.3f秒，调域：%s--%s半音（%s--%sHz）\r\n";
constexpr FileText kReportLines = "上线：%s半音，斜率=%s半音/秒；下线：%s半音，斜率=%s半音/秒\r\n";
constexpr FileText kUnitHead =
    "\r\n单元      起(秒)  止(秒)   上限   下限   调域   平均    Q上    Q下  停延率  音强比\r\n";
constexpr FileText kPointHead = "\r\n转折点(秒, 半音, Hz)：\r\n";

double Stored(double value) { return std::isfinite(value) ? value : 0.0; }

/// A number in a field of that width; what is not known is "--".
std::string Field(double value, int width, int decimals) {
  return std::isfinite(value) ? Format("%*.*f", width, decimals, value) : Format("%*s", width, "--");
}

void PutName(ByteWriter& out, const std::string& utf8) {
  const std::string gbk = IpaToGbk(utf8);
  const std::string_view cut = CutGbk(gbk, kNameBytes - 1);
  out.PutTag(cut);
  for (std::size_t i = cut.size(); i < kNameBytes; ++i) out.PutUint8(0);
}

std::string TakeName(ByteReader& in) {
  const ByteSpan field = in.Take(kNameBytes);
  return IpaFromGbk(std::string(field.begin(), std::find(field.begin(), field.end(), std::uint8_t{0})));
}

template <typename Unit>
auto FiguresOf(Unit& unit) {
  return std::to_array({&unit.time, &unit.duration, &unit.top, &unit.base, &unit.range, &unit.mean,
                        &unit.qTop, &unit.qBase, &unit.durationRatio, &unit.energyRatio});
}

}  // namespace

ByteWriter WriteIntonation(const Intonation& intonation) {
  ByteWriter out;
  const auto count = static_cast<std::int32_t>(intonation.units.size());
  out.Reserve(kHeadBytes + static_cast<std::size_t>(kUnitFields) * intonation.units.size());
  out.PutTag("HEAD");
  out.PutInt32LE(kHeadFields + kUnitFields * count);
  out.PutInt32LE(intonation.sampleRate);
  out.PutInt32LE(intonation.start);
  out.PutInt32LE(intonation.end);
  out.PutInt32LE(count);
  out.PutFloat64LE(Stored(intonation.sentence.low));
  out.PutFloat64LE(Stored(intonation.sentence.high));
  for (const IntonationUnit& unit : intonation.units) {
    PutName(out, unit.name);
    out.PutInt32LE(unit.start);
    out.PutInt32LE(unit.end);
    out.PutInt32LE(unit.frames);
    out.PutInt32LE(0);
    for (const double* figure : FiguresOf(unit)) out.PutFloat64LE(Stored(*figure));
  }
  return out;
}

std::optional<SavedIntonation> ParseIntonation(ByteSpan bytes) {
  ByteReader in(bytes);
  SavedIntonation saved;
  const bool tagged = in.TakeTag("HEAD");
  const std::int32_t length = in.TakeInt32LE();
  saved.sampleRate = in.TakeInt32LE();
  saved.start = in.TakeInt32LE();
  saved.end = in.TakeInt32LE();
  const std::int32_t count = in.TakeInt32LE();
  saved.sentence.low = in.TakeFloat64LE();
  saved.sentence.high = in.TakeFloat64LE();
  if (!tagged || in.failed() || count < 1 || count > kMostIntonationUnits ||
      length != kHeadFields + kUnitFields * count ||
      in.Remaining() != static_cast<std::size_t>(count) * static_cast<std::size_t>(kUnitFields) ||
      saved.sampleRate < kSmallestRate || saved.sampleRate > kLargestRate || saved.start >= saved.end ||
      !std::isfinite(saved.sentence.low) || !std::isfinite(saved.sentence.high))
    return {};
  for (int u = 0; u < count; ++u) {
    IntonationUnit unit;
    unit.name = TakeName(in);
    unit.start = in.TakeInt32LE();
    unit.end = in.TakeInt32LE();
    unit.frames = in.TakeInt32LE();
    in.Skip(4);
    for (double* figure : FiguresOf(unit)) {
      *figure = in.TakeFloat64LE();
      if (!std::isfinite(*figure)) return {};
    }
    if (unit.start > unit.end || unit.frames < 0) return {};
    saved.units.push_back(std::move(unit));
  }
  return saved;
}

std::optional<SpeakerRecord> SpeakerRecordOf(const Intonation& intonation) {
  SpeakerRecord record{0, intonation.sentence.low, intonation.sentence.high, 0};
  int frames = 0;
  for (const IntonationUnit& unit : intonation.units) {
    if (unit.IsPause()) continue;
    ++record.units;
    frames += unit.frames;
    record.mean += unit.mean * unit.frames;
  }
  if (record.units == 0) return {};
  record.mean /= frames;
  return record;
}

ByteWriter WriteSpeakerRecord(const SpeakerRecord& record) {
  ByteWriter out;
  out.Reserve(kSpeakerBytes);
  out.PutTag("HEAD");
  out.PutInt32LE(kSpeakerFields);
  out.PutInt32LE(record.units);
  out.PutInt32LE(0);
  out.PutFloat64LE(record.smallestBase);
  out.PutFloat64LE(record.largestTop);
  out.PutFloat64LE(record.mean);
  return out;
}

std::optional<SemitoneSpan> ParseSpeakerRange(ByteSpan bytes) {
  ByteReader in(bytes);
  SemitoneSpan range{HUGE_VAL, -HUGE_VAL};
  if (bytes.empty()) return {};
  while (in.Remaining() > 0) {
    const bool tagged = in.TakeTag("HEAD");
    const std::int32_t length = in.TakeInt32LE(), units = in.TakeInt32LE();
    in.Skip(4);
    const double base = in.TakeFloat64LE(), top = in.TakeFloat64LE(), mean = in.TakeFloat64LE();
    if (!tagged || in.failed() || length != kSpeakerFields || units < 1 || !std::isfinite(base) ||
        !std::isfinite(top) || !std::isfinite(mean) || base > top)
      return {};
    range.low = std::min(range.low, base);
    range.high = std::max(range.high, top);
  }
  return range;
}

std::string IntonationReport(const Intonation& intonation) {
  const SemitoneSpan domain = intonation.Domain();
  const auto hertz = [](double semitones) { return Field(ToneHertz(semitones), 0, 1); };
  const auto level = [](const std::optional<IntonationLine>& line) {
    return Field(line ? line->atStart : kNoFigure, 0, 2);
  };
  const auto slope = [](const std::optional<IntonationLine>& line) {
    return Field(line ? line->slope : kNoFigure, 0, 2);
  };
  std::string text = ToGbk(
      Format(kReportHead, intonation.StartSeconds(), intonation.EndSeconds(), Field(domain.low, 0, 2).c_str(),
             Field(domain.high, 0, 2).c_str(), hertz(domain.low).c_str(), hertz(domain.high).c_str()) +
      Format(kReportLines, level(intonation.topLine).c_str(), slope(intonation.topLine).c_str(),
             level(intonation.baseLine).c_str(), slope(intonation.baseLine).c_str()) +
      kUnitHead);
  for (const IntonationUnit& unit : intonation.units) {
    const double rate = intonation.sampleRate;
    text += Format("%-8s%8.3f%8.3f", IpaToGbk(unit.name).c_str(), unit.start / rate, unit.end / rate);
    for (const double semitones : {unit.top, unit.base, unit.range, unit.mean})
      text += Field(semitones, 7, 2);
    for (const double place : {unit.qTop, unit.qBase}) text += Field(place, 7, 1);
    for (const double ratio : {unit.durationRatio, unit.energyRatio}) text += Field(ratio, 8, 2);
    text += "\r\n";
  }
  text += ToGbk(kPointHead);
  for (const MelodyPoint& point : intonation.closeCopy)
    text += Format("%9.2f%8.2f%8.1f\r\n", point.Seconds(), point.semitones, ToneHertz(point.semitones));
  return text;
}

}  // namespace parlowen
