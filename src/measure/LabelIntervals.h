#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "annotation/MarkerSet.h"

namespace parlowen {

/// A labelled stretch of a recording.
struct LabelInterval {
  std::string tier;           ///< "" of a file whose labels stand in no tiers
  int index = 0;              ///< its number in the tier, from 1, stretches without text included
  std::string text;           ///< UTF-8
  double start = 0, end = 0;  ///< seconds
};

struct LabelFile {
  std::vector<LabelInterval> intervals;  ///< those with a text, tier by tier as the file has them
  std::string problem;                   ///< why it could not be read; empty when it was
};

/// The labels that lie beside a recording under its name: .TextGrid, .lbl, .txt, the first that there is;
/// endings in capitals or small letters too.
std::optional<std::string> LabelFileBeside(const std::string& recording);

/// Reads a file by its content: a marker file when it ends in .lbl, a TextGrid when it says so, else a label
/// track. Without names every interval tier is taken, otherwise those named; the four bands of a marker file
/// are "1".."4", that of a label track is "". `sampleCount` and `sampleRate` are the recording's.
LabelFile ReadLabelFile(const std::string& path, std::int64_t sampleCount, int sampleRate,
                        const std::vector<std::string>& tiers);

/// The segment labels of a marker set, band by band, from left to right.
std::vector<LabelInterval> IntervalsOfMarkers(const MarkerSet& markers, int sampleRate);

}  // namespace parlowen
