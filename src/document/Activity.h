#pragma once
#include <cstdint>

namespace parlowen {

/// What a click in the main window means now. The numbers are told to scripts.
enum class Activity : std::int16_t {
  Start = 0,
  Waveform = 1,
  Spectrum = 2,
  Frame = 3,
  Compare = 4,
  Consonant = 5,
  Lta = 6,
  RegionDrag = 7,
  RegionChosen = 8,
  PitchRepair = 9,
  Intonation = 10,
  Statistics = 11,
  Palate = 12,
  TwoChannels = 13,
  GlottalWave = 14,
  SegmentChart = 25,
  PointChart = 26,
  GroupPlot = 27,
  Annotation = 30,
  Characters = 31,
};

}  // namespace parlowen
