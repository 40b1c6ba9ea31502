#include "interchange/ProsodyTables.h"

#include "base/Files.h"
#include "base/Format.h"
#include "base/Gbk.h"
#include "base/IpaCodes.h"
#include "interchange/CsvTable.h"
#include "interchange/FrameGrid.h"

namespace parlowen {
namespace {

std::string Number(int number) { return std::to_string(number); }

}  // namespace

std::string TonesCsv(const ToneState& tones, const SoundDocument& document) {
  const ToneStatistics& statistics = tones.statistics;
  const std::string settings = Format(
      "tones of %s; range %s - %s Hz (%s); T = 5 (st - low)/(high - low), D = 1 + 4 (st - low)/(high - low), "
      "LZ = (st - mean)/deviation of all group means",
      FileNameOf(tones.path).c_str(), ShortestNumber(statistics.range.lowHertz).c_str(),
      ShortestNumber(statistics.range.highHertz).c_str(),
      statistics.rangeIsGiven ? "given" : "smallest and largest group mean");
  CsvTable table = MakeCsvTable(OriginOf(document, settings));
  table.AddRow({"group", "item", "sound", "start_s", "end_s", "duration_ms", "percent", "Hz", "semitones",
                "T", "D", "LZ"});
  for (std::size_t i = 0; i < tones.items.size(); ++i) {
    const ToneItem& item = tones.items[i];
    const int number = NumberInGroup(tones.items, static_cast<int>(i));
    for (std::size_t p = 0; p < kTonePoints; ++p) {
      const double st = item.points[p];
      const auto in = [&](ToneAxis axis) { return CsvNumber(statistics.ScaleOf(axis).Of(st)); };
      table.AddRow({IpaFromGbk(item.group), Number(number), FromGbk(item.sound),
                    CsvNumber(SecondsOf(item.start, item.sampleRate)),
                    CsvNumber(SecondsOf(item.end, item.sampleRate)), CsvNumber(item.Milliseconds()),
                    Number(10 * static_cast<int>(p)), in(ToneAxis::Hertz), CsvNumber(st), in(ToneAxis::T),
                    in(ToneAxis::D), in(ToneAxis::Lz)});
    }
  }
  return table.text();
}

std::string IntonationCsv(const Intonation& intonation, const SoundDocument& document) {
  const SemitoneSpan domain = intonation.Domain();
  CsvOrigin origin = OriginOf(
      document, Format("intonation; semitones above 64 Hz; range %s - %s (%s)", CsvNumber(domain.low).c_str(),
                       CsvNumber(domain.high).c_str(), intonation.speaker ? "speaker" : "sentence"));
  origin.start = intonation.start;
  origin.end = intonation.end;
  CsvTable table = MakeCsvTable(origin);
  table.AddRow({"name", "start", "end", "frames", "time", "duration", "top", "base", "range", "mean", "qTop",
                "qBase", "durationRatio", "energyRatio"});
  for (const IntonationUnit& unit : intonation.units)
    table.AddRow({unit.name, Number(unit.start), Number(unit.end), Number(unit.frames), CsvNumber(unit.time),
                  CsvNumber(unit.duration), CsvNumber(unit.top), CsvNumber(unit.base), CsvNumber(unit.range),
                  CsvNumber(unit.mean), CsvNumber(unit.qTop), CsvNumber(unit.qBase),
                  CsvNumber(unit.durationRatio), CsvNumber(unit.energyRatio)});
  return table.text();
}

PitchTier IntonationTier(const Intonation& intonation, const SoundDocument& document) {
  PitchTier tier;
  tier.end = SecondsOf(document.sampleCount, document.sampleRate);
  for (const MelodyPoint& point : intonation.closeCopy) {
    if (TimeOfFrame(point.frame) > tier.end) break;  // the sound was cut since
    tier.points.push_back({TimeOfFrame(point.frame), ToneHertz(point.semitones)});
  }
  return tier;
}

}  // namespace parlowen
