#include "interchange/StatisticsTables.h"

#include <algorithm>

#include "base/Files.h"
#include "base/Format.h"
#include "base/IpaCodes.h"
#include "interchange/CsvTable.h"
#include "interchange/FrameGrid.h"
#include "prosody/Durations.h"
#include "vowel/VowelGroups.h"

namespace parlowen {
namespace {

constexpr const char* kShapeNames[] = {"circle", "square", "diamond", "triangle", "inverted triangle",
                                       "cross"};

std::string ShapeName(PointShape shape) {
  const int number = static_cast<int>(shape);
  return number >= 0 && number < std::ssize(kShapeNames) ? kShapeNames[number] : std::to_string(number);
}

std::string Number(std::size_t number) { return std::to_string(number); }

/// The group's own sign and unit: tenths of a millisecond.
double Milliseconds(const ValueGroup& group, std::uint16_t value) {
  return (group.negative ? -value : value) / 10.0;
}

}  // namespace

std::string VowelChartCsv(const VowelChart& chart, const SoundDocument& document) {
  const std::string settings = chart.barkMode ? Format("relative Bark, reference F0 %d Hz", chart.referenceF0)
                                              : std::string("frequency");
  CsvTable table =
      MakeCsvTable(OriginOf(document, "coordinates: " + settings + "; Bark(f) = 7 asinh(f/650)"));
  table.AddRow({"point", "shape", "F1_Hz", "F2_Hz", "F3_Hz", "B1_Bark", "B2_Bark"});
  for (std::size_t i = 0; i < static_cast<std::size_t>(chart.count); ++i) {
    const VowelPoint& point = chart.points[i];
    table.AddRow({Number(i + 1), ShapeName(point.shape), ShortestNumber(point.f1), ShortestNumber(point.f2),
                  point.f3 > 0 ? ShortestNumber(point.f3) : "", CsvNumber(Bark(point.f1)),
                  CsvNumber(Bark(point.f2))});
  }
  return table.text();
}

std::string DurationsCsv(const std::vector<ValueGroup>& groups, const std::string& file,
                         const SoundDocument& document) {
  CsvTable table = MakeCsvTable(OriginOf(document, "durations of " + FileNameOf(file)));
  table.AddRow({"group", "value", "duration_ms", "mean_ms", "deviation_ms"});
  for (const ValueGroup& group : groups) {
    const DurationGroup summary = SummaryOf(group);
    for (std::size_t i = 0; i < group.values.size(); ++i)
      table.AddRow({IpaFromGbk(group.name), Number(i + 1), CsvNumber(Milliseconds(group, group.values[i])),
                    CsvNumber(summary.mean), CsvNumber(summary.deviation)});
  }
  return table.text();
}

std::string VowelGroupsCsv(const std::vector<ValueGroup>& groups, const std::string& file,
                           const SoundDocument& document) {
  CsvTable table = MakeCsvTable(OriginOf(document, "vowel points of " + FileNameOf(file)));
  table.AddRow(
      {"group", "point", "F1_Hz", "F2_Hz", "mean_F1_Hz", "deviation_F1_Hz", "mean_F2_Hz", "deviation_F2_Hz"});
  const std::vector<VowelGroup> summaries = SummariesOfVowels(groups);
  for (std::size_t g = 0; g < groups.size(); ++g) {
    const VowelGroup& summary = summaries[g];
    const std::vector<std::uint16_t>& values = groups[g].values;
    for (std::size_t i = 0; i + 1 < values.size(); i += 2)
      table.AddRow({IpaFromGbk(groups[g].name), Number(i / 2 + 1), Number(values[i]), Number(values[i + 1]),
                    ShortestNumber(summary.mean1), CsvNumber(summary.deviation1),
                    ShortestNumber(summary.mean2), CsvNumber(summary.deviation2)});
  }
  return table.text();
}

std::string MarkersCsv(const MarkerSet& markers, const SoundDocument& document) {
  CsvTable table = MakeCsvTable(OriginOf(document, "bands 1-4"));
  table.AddRow({"band", "kind", "start_s", "end_s", "duration_s", "start_sample", "end_sample", "text"});
  const int rate = document.sampleRate;
  for (int band = 0; band < kMarkerBands; ++band) {
    struct Row {
      int start, end;
      const char* kind;
      std::string text;
    };
    std::vector<Row> rows;
    for (const std::int32_t marker : markers.Markers(band)) rows.push_back({marker, marker, "marker", ""});
    for (const MarkerLabel& label : markers.Labels(band))
      rows.push_back({label.start, label.end, label.IsPoint() ? "point" : "segment", IpaAsDrawn(label.text)});
    std::stable_sort(rows.begin(), rows.end(), [](const Row& a, const Row& b) { return a.start < b.start; });
    for (const Row& row : rows) {
      const double duration = (static_cast<double>(row.end) - row.start) / rate;
      table.AddRow({std::to_string(band + 1), row.kind, CsvNumber(SecondsOf(row.start, rate)),
                    CsvNumber(SecondsOf(row.end, rate)), CsvNumber(duration), std::to_string(row.start),
                    std::to_string(row.end), row.text});
    }
  }
  return table.text();
}

}  // namespace parlowen
