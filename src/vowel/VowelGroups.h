#pragma once
#include <optional>
#include <string>
#include <vector>

#include "prosody/GroupFile.h"

namespace parlowen {

/// Groups of vowel points (.vls): up to 47 pairs F1, F2 in Hz a group.
inline constexpr GroupLayout kVowelLayout{8, 2, 47};

/// What the report tells of a group.
struct VowelGroup {
  std::string name;                       ///< GBK
  float mean1 = 0, mean2 = 0;             ///< Hz
  double deviation1 = 0, deviation2 = 0;  ///< of the population: divided by n
  int x = 0, y = 0;                       ///< on the plot
  /// Relative Bark values in percent, from the plotted pixels: (y − 320)/2 and (900 − x)/2.
  int V1() const { return (y - 320) / 2; }
  int V2() const { return (900 - x) / 2; }
};

std::vector<VowelGroup> SummariesOfVowels(const std::vector<ValueGroup>& groups);

/// Places the group means between the smallest and the largest of all: x = trunc(900 − 200·(B2 −
/// B2min)/(B2max − B2min)), y = trunc(320 + 200·(B1 − B1min)/(B1max − B1min)). False, and no places, when
/// either span is below 2 Bark.
bool PlaceGroups(std::vector<VowelGroup>& summaries);

/// The text of "VwlPoints.txt" in GBK; `summaries` are those of `groups`. The relative values follow only
/// when they have been placed.
std::string VowelReport(const std::vector<ValueGroup>& groups, const std::vector<VowelGroup>& summaries,
                        bool placed);

}  // namespace parlowen
