#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "annotation/MarkerSet.h"
#include "interchange/MarkerTiers.h"

namespace parlowen {

/// A label of a track: a stretch, or a moment where start = end; seconds.
struct TrackLabel {
  double start = 0, end = 0;
  std::string text;  ///< UTF-8
  bool operator==(const TrackLabel&) const = default;
};

/// One label a line: start TAB end TAB text, seconds with 6 decimals, UTF-8, LF.
std::string LabelTrackText(const std::vector<TrackLabel>& labels);

/// Labels beyond these are not looked at.
inline constexpr std::size_t kMostTrackLabels = 1000000;

/// The labels of a track in the order of the file. Empty lines and lines that begin with "\" (the frequencies
/// of the label before) are skipped; the text may be missing. `badLine` becomes the number of the first line
/// that is no label, from 1, and the labels before it are returned; 0 when all are good.
std::vector<TrackLabel> ReadLabelTrack(std::string_view utf8, int& badLine);

/// All segment and point labels of the four bands by their times.
std::vector<TrackLabel> TrackOfMarkers(const MarkerSet& markers, int sampleRate);

/// The reverse: a label's ends become markers, as far as they lie strictly inside the sound, in the first
/// band where they and the label have room and no labelled stretch is split.
ImportedMarkers MarkersOfTrack(std::vector<TrackLabel> labels, int sampleCount, int sampleRate);

}  // namespace parlowen
