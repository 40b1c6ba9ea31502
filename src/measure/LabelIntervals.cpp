#include "measure/LabelIntervals.h"

#include <algorithm>
#include <utility>

#include "annotation/MarkerFile.h"
#include "base/Arithmetic.h"
#include "base/Files.h"
#include "base/IpaCodes.h"
#include "interchange/LabelTrack.h"
#include "interchange/TextDecoding.h"
#include "interchange/TextGrid.h"

namespace parlowen {
namespace {

constexpr const char* kCannotRead = "the label file cannot be read";
constexpr const char* kTooLarge = "the label file holds more than 32 MB";
constexpr const char* kBadMarkers = "the marker file is damaged";
constexpr const char* kBadGrid = "the TextGrid is damaged";
constexpr const char* kNoGrid = "the label file is no TextGrid";

bool HasText(const std::string& text) { return text.find_first_not_of(" \t\r\n") != std::string::npos; }

/// Line ends in a label would be those of the table.
std::string WithoutReturns(std::string text) {
  for (std::size_t at = 0; (at = text.find('\r', at)) != std::string::npos;)
    at + 1 < text.size() && text[at + 1] == '\n' ? text.erase(at, 1) : text.replace(at, 1, "\n");
  return text;
}

bool IsWanted(const std::vector<std::string>& tiers, const std::string& name) {
  return tiers.empty() || std::find(tiers.begin(), tiers.end(), name) != tiers.end();
}

/// A recording without any of the tiers that were asked for is told, so that a name that was mistyped is
/// noticed.
void CheckTiers(const std::vector<std::string>& tiers, bool anyTier, LabelFile& file) {
  if (tiers.empty() || anyTier) return;
  file.problem = "no interval tier";
  for (std::size_t i = 0; i < tiers.size(); ++i) file.problem += (i == 0 ? " \"" : ", \"") + tiers[i] + "\"";
}

LabelFile OfMarkers(ByteSpan bytes, std::int64_t sampleCount, int sampleRate,
                    const std::vector<std::string>& tiers) {
  LabelFile file;
  const auto content = ParseMarkers(bytes, SaturateInt32(sampleCount));
  if (!content) return {{}, kBadMarkers};
  bool anyTier = false;
  for (int band = 1; band <= kMarkerBands; ++band) anyTier = anyTier || IsWanted(tiers, std::to_string(band));
  for (LabelInterval& interval : IntervalsOfMarkers(content->set, sampleRate))
    if (IsWanted(tiers, interval.tier)) file.intervals.push_back(std::move(interval));
  CheckTiers(tiers, anyTier, file);
  return file;
}

LabelFile OfGrid(TextGrid& grid, const std::vector<std::string>& tiers) {
  LabelFile file;
  bool anyTier = false;
  for (GridTier& tier : grid.tiers) {
    if (tier.isPoints || !IsWanted(tiers, tier.name)) continue;
    anyTier = true;
    int index = 0;
    for (GridInterval& interval : tier.intervals) {
      ++index;
      if (HasText(interval.text))
        file.intervals.push_back(
            {tier.name, index, WithoutReturns(std::move(interval.text)), interval.start, interval.end});
    }
  }
  CheckTiers(tiers, anyTier, file);
  return file;
}

LabelFile OfTrack(const std::string& text, const std::vector<std::string>& tiers) {
  LabelFile file;
  int badLine = 0, index = 0;
  std::vector<TrackLabel> labels = ReadLabelTrack(text, badLine);
  if (badLine > 0) return {{}, "line " + std::to_string(badLine) + " of the label track is no label"};
  for (TrackLabel& label : labels) {
    ++index;
    if (label.end > label.start && HasText(label.text) && IsWanted(tiers, ""))
      file.intervals.push_back({"", index, std::move(label.text), label.start, label.end});
  }
  CheckTiers(tiers, IsWanted(tiers, ""), file);
  return file;
}

}  // namespace

std::optional<std::string> LabelFileBeside(const std::string& recording) {
  constexpr const char* kEndings[] = {".TextGrid", ".textgrid", ".TEXTGRID", ".lbl", ".LBL", ".txt", ".TXT"};
  const std::size_t name = recording.rfind('/') + 1, dot = recording.rfind('.');
  const std::string stem = dot != std::string::npos && dot > name ? recording.substr(0, dot) : recording;
  for (const char* ending : kEndings)
    if (const std::string path = stem + ending; path != recording && StampOf(path)) return path;
  return {};
}

LabelFile ReadLabelFile(const std::string& path, std::int64_t sampleCount, int sampleRate,
                        const std::vector<std::string>& tiers) {
  const auto stamp = StampOf(path);
  if (stamp && stamp->size > static_cast<std::int64_t>(kLargestTextFile)) return {{}, kTooLarge};
  const auto bytes = stamp ? ReadWholeFile(path, kLargestTextFile) : std::nullopt;
  if (!bytes) return {{}, kCannotRead};
  if (HasEnding(path, ".lbl")) return OfMarkers(*bytes, sampleCount, sampleRate, tiers);
  const std::string text = DecodeText(*bytes).text;
  GridFault fault = GridFault::None;
  if (auto grid = ReadTextGrid(text, fault)) return OfGrid(*grid, tiers);
  if (fault == GridFault::Damaged) return {{}, kBadGrid};
  if (HasEnding(path, ".textgrid")) return {{}, kNoGrid};
  return OfTrack(text, tiers);
}

std::vector<LabelInterval> IntervalsOfMarkers(const MarkerSet& markers, int sampleRate) {
  std::vector<LabelInterval> intervals;
  for (int band = 0; band < kMarkerBands; ++band) {
    std::vector<MarkerLabel> labels;
    for (const MarkerLabel& label : markers.Labels(band))
      if (!label.IsPoint() && HasText(label.text)) labels.push_back(label);
    std::stable_sort(labels.begin(), labels.end(),
                     [](const MarkerLabel& a, const MarkerLabel& b) { return a.start < b.start; });
    int index = 0;
    for (const MarkerLabel& label : labels)
      intervals.push_back({std::to_string(band + 1), ++index, IpaAsDrawn(label.text),
                           static_cast<double>(label.start) / sampleRate,
                           static_cast<double>(label.end) / sampleRate});
  }
  return intervals;
}

}  // namespace parlowen
