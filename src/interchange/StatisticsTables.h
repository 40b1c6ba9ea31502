#pragma once
#include <string>
#include <vector>

#include "annotation/MarkerSet.h"
#include "document/SoundDocument.h"
#include "prosody/GroupFile.h"
#include "vowel/VowelChart.h"

namespace parlowen {

// Charts, groups and labels as CSV tables. Points and groups come from any number of sounds: the sound that a
// table names is the one that was loaded when it was written.

/// point, shape, F1_Hz, F2_Hz, F3_Hz, B1_Bark, B2_Bark; empty where there is no F3.
std::string VowelChartCsv(const VowelChart& chart, const SoundDocument& document);

/// One value a row with its group's figures (deviations divide by n): group, value, duration_ms, mean_ms,
/// deviation_ms.
std::string DurationsCsv(const std::vector<ValueGroup>& groups, const std::string& file,
                         const SoundDocument& document);

/// group, point, F1_Hz, F2_Hz, mean_F1_Hz, deviation_F1_Hz, mean_F2_Hz, deviation_F2_Hz
std::string VowelGroupsCsv(const std::vector<ValueGroup>& groups, const std::string& file,
                           const SoundDocument& document);

/// All markers and labels by band and time: band, kind (marker, point, segment), start_s, end_s, duration_s,
/// start_sample, end_sample, text.
std::string MarkersCsv(const MarkerSet& markers, const SoundDocument& document);

}  // namespace parlowen
