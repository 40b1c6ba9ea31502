#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "shell/report/CsvRows.h"

namespace parlowen {

/// What the pictures of a corpus need of its table, tier by tier in the table's order.
struct CorpusValues {
  static constexpr int kMostTiers = 8;      ///< those behind count as one, the last
  static constexpr int kMostLabels = 4096;  ///< told apart in a tier; those behind have no name

  struct Vowel {
    float f1 = 0, f2 = 0;  ///< Hz, both above 0
    int label = -1;        ///< into `labels`
  };
  struct Tier {
    std::string name;              ///< "" for whole recordings
    std::vector<float> durations;  ///< s, above 0
    std::vector<float> f0;         ///< Hz, above 0: means of rows
    std::vector<Vowel> vowels;
    std::vector<std::string> labels;
  };
  std::vector<Tier> tiers;
  bool moreTiers = false;  ///< the last tier holds several
};

/// Reads the columns `tier`, `label`, `start`, `duration`, `f0_mean`, `f1` and `f2`, where they are; a row without a start
/// is a recording that could not be measured. 0, or −1 when there is no header with `recording` or the table is damaged.
int ReadCorpusValues(CsvRows& rows, CorpusValues& values);

}  // namespace parlowen
