#include "interchange/LabelTrack.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

#include "base/Format.h"
#include "base/IpaCodes.h"
#include "interchange/FrameGrid.h"
#include "interchange/MarkerSetBuilder.h"

namespace parlowen {
namespace {

constexpr std::string_view kBlanks = " \t";

void SkipBlanks(std::string_view& line) {
  line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
}

std::optional<double> TakeTime(std::string_view& line) {
  SkipBlanks(line);
  double seconds = 0;
  const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), seconds);
  if (error != std::errc() || !std::isfinite(seconds)) return {};
  line.remove_prefix(static_cast<std::size_t>(end - line.data()));
  if (!line.empty() && kBlanks.find(line[0]) == std::string_view::npos) return {};
  return seconds;
}

std::optional<TrackLabel> LabelOf(std::string_view line) {
  const auto start = TakeTime(line), end = start ? TakeTime(line) : std::nullopt;
  if (!end || *end < *start) return {};
  SkipBlanks(line);
  return TrackLabel{*start, *end, std::string(line)};
}

/// A line of its own: the text of a label must not end it.
std::string OneLine(std::string text) {
  for (char& character : text)
    if (static_cast<unsigned char>(character) < ' ') character = ' ';
  return text;
}

/// True when the band takes the label, and it is there then.
bool Place(MarkerSetBuilder& builder, int band, int start, int end, const std::string& text,
           int sampleCount) {
  const MarkerSet& set = builder.set();
  if (!text.empty() && set.Labels(band).size() == kLabelsPerBand) return false;
  std::size_t more = 0;
  std::vector<int> edges = {start};
  if (end != start) edges.push_back(end);
  // The ends of the sound bound a stretch without a marker, but a moment needs one.
  if (end != start)
    std::erase_if(edges, [sampleCount](int edge) { return edge == 0 || edge == sampleCount; });
  for (const int edge : edges) {
    if (builder.IsInsideLabel(band, edge)) return false;
    more += !builder.HasMarker(band, edge);
  }
  const auto markers = set.Markers(band);
  if (markers.size() + more > kMarkersPerBand) return false;
  if (std::any_of(markers.begin(), markers.end(), [=](int marker) { return start < marker && marker < end; }))
    return false;
  for (const int edge : edges) builder.AddMarker(band, edge);
  return text.empty() || builder.AddLabel(band, start, end, text);
}

}  // namespace

std::string LabelTrackText(const std::vector<TrackLabel>& labels) {
  std::string text;
  for (const TrackLabel& label : labels)
    text += Format("%.6f\t%.6f\t", label.start, label.end) + OneLine(label.text) + "\n";
  return text;
}

std::vector<TrackLabel> ReadLabelTrack(std::string_view utf8, int& badLine) {
  std::vector<TrackLabel> labels;
  badLine = 0;
  for (int number = 1; !utf8.empty() && labels.size() < kMostTrackLabels; ++number) {
    const std::size_t end = std::min(utf8.find_first_of("\r\n"), utf8.size());
    const std::string_view line = utf8.substr(0, end);
    const bool pair = utf8.substr(end).starts_with("\r\n");
    utf8.remove_prefix(std::min(end + (pair ? 2 : 1), utf8.size()));
    if (line.find_first_not_of(kBlanks) == std::string_view::npos || line.starts_with('\\')) continue;
    auto label = LabelOf(line);
    if (!label) {
      badLine = number;
      return labels;
    }
    labels.push_back(std::move(*label));
  }
  return labels;
}

std::vector<TrackLabel> TrackOfMarkers(const MarkerSet& markers, int sampleRate) {
  std::vector<TrackLabel> labels;
  for (int band = 0; band < kMarkerBands; ++band)
    for (const MarkerLabel& label : markers.Labels(band))
      labels.push_back(
          {SecondsOf(label.start, sampleRate), SecondsOf(label.end, sampleRate), IpaAsDrawn(label.text)});
  std::stable_sort(labels.begin(), labels.end(),
                   [](const TrackLabel& a, const TrackLabel& b) { return a.start < b.start; });
  return labels;
}

ImportedMarkers MarkersOfTrack(std::vector<TrackLabel> labels, int sampleCount, int sampleRate) {
  ImportedMarkers result;
  result.hasBands = true;
  MarkerSetBuilder builder(sampleCount);
  std::stable_sort(labels.begin(), labels.end(),
                   [](const TrackLabel& a, const TrackLabel& b) { return a.start < b.start; });
  for (const TrackLabel& label : labels) {
    const std::int64_t start = SampleAt(label.start, sampleRate), end = SampleAt(label.end, sampleRate);
    const bool outside =
        start > sampleCount || end < 0 || (start != end && (start == sampleCount || end == 0));
    if (outside) {
      ++result.losses.outside;
      continue;
    }
    const std::string text = FittingText(label.text, kMarkerLabelBytes, result.losses);
    const int from = static_cast<int>(std::max<std::int64_t>(start, 0));
    const int to = static_cast<int>(std::min<std::int64_t>(end, sampleCount));
    bool placed = false;
    for (int band = 0; band < kMarkerBands && !placed; ++band)
      placed = Place(builder, band, from, to, text, sampleCount);
    if (!placed) ++result.losses.labels;
  }
  result.set = builder.set();
  return result;
}

}  // namespace parlowen
