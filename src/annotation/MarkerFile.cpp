#include "annotation/MarkerFile.h"

#include <algorithm>
#include <utility>

#include "annotation/MarkerEditing.h"
#include "base/Gbk.h"
#include "base/IpaCodes.h"

namespace parlowen {
namespace {

// Offset  Size  Content
//      0     8  markers in each band, four int16
//      8     8  labels in each band, four int16
//     16   320  marker positions, 4 x 20 int32
//    336  2240  labels, 4 x 20 of 28 bytes: int32 start, int32 end, 20 bytes of text
constexpr std::size_t kTextBytes = 20;

template <typename Count>
bool AreCounts(const Count& counts, int most) {
  return std::all_of(counts.begin(), counts.end(), [most](int count) { return count >= 0 && count <= most; });
}

void PutLabel(ByteWriter& out, const MarkerLabel& label) {
  out.PutInt32LE(label.start);
  out.PutInt32LE(label.end);
  const std::string gbk = IpaToGbk(label.text);
  const std::string_view kept = CutGbk(gbk, kTextBytes - 1);
  out.PutTag(kept);
  for (std::size_t i = kept.size(); i < kTextBytes; ++i) out.PutUint8(0);
}

MarkerLabel TakeLabel(ByteReader& in) {
  MarkerLabel label;
  label.start = in.TakeInt32LE();
  label.end = in.TakeInt32LE();
  const ByteSpan text = in.Take(kTextBytes);
  const auto end = std::find(text.begin(), text.end(), std::uint8_t{0});
  label.text = IpaFromGbk(CutGbk(std::string(text.begin(), end), kTextBytes - 1));
  return label;
}

}  // namespace

std::string MarkerPathOf(const std::string& soundPath) {
  return soundPath.substr(0, soundPath.find('.')) + ".lbl";
}

std::vector<std::uint8_t> MarkerBytesOf(const MarkerSet& set) {
  ByteWriter out;
  out.Reserve(kMarkerFileBytes);
  out.PutInt16sLE(set.markerCount);
  out.PutInt16sLE(set.labelCount);
  MarkerSet used;  // unused entries stay 0 whatever lies in memory
  for (int band = 0; band < kMarkerBands; ++band) {
    const auto markers = set.Markers(band);
    const auto labels = set.Labels(band);
    std::copy(markers.begin(), markers.end(), used.markerPos.begin() + band * kMarkersPerBand);
    std::copy(labels.begin(), labels.end(), used.labels.begin() + band * kLabelsPerBand);
  }
  for (const std::int32_t position : used.markerPos) out.PutInt32LE(position);
  for (const MarkerLabel& label : used.labels) PutLabel(out, label);
  return out.bytes();
}

std::optional<MarkerFileContent> ParseMarkers(ByteSpan bytes, std::int32_t sampleCount) {
  if (bytes.size() != kMarkerFileBytes) return {};
  ByteReader in(bytes);
  MarkerFileContent content;
  MarkerSet& set = content.set;
  for (std::int16_t& count : set.markerCount) count = in.TakeInt16LE();
  for (std::int16_t& count : set.labelCount) count = in.TakeInt16LE();
  if (!AreCounts(set.markerCount, kMarkersPerBand) || !AreCounts(set.labelCount, kLabelsPerBand)) return {};
  const auto correct = [&](std::int32_t& position) {
    const std::int32_t inside = std::clamp(position, 0, sampleCount);
    content.corrected = content.corrected || inside != position;
    position = inside;
  };
  for (int i = 0; i < kMarkerBands * kMarkersPerBand; ++i) {
    const std::int32_t position = in.TakeInt32LE();
    if (i % kMarkersPerBand >= set.markerCount[static_cast<std::size_t>(i / kMarkersPerBand)]) continue;
    set.markerPos[static_cast<std::size_t>(i)] = position;
    correct(set.markerPos[static_cast<std::size_t>(i)]);
  }
  content.corrected = SortMarkers(set) || content.corrected;
  for (int i = 0; i < kMarkerBands * kLabelsPerBand; ++i) {
    MarkerLabel label = TakeLabel(in);
    if (i % kLabelsPerBand >= set.labelCount[static_cast<std::size_t>(i / kLabelsPerBand)]) continue;
    correct(label.start);
    correct(label.end);
    if (label.start > label.end) {
      std::swap(label.start, label.end);
      content.corrected = true;
    }
    set.labels[static_cast<std::size_t>(i)] = std::move(label);
  }
  return content;
}

}  // namespace parlowen
