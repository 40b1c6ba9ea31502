#include "shell/report/CorpusValues.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>

namespace parlowen {
namespace {

/// 0 for what is no number, or none that a duration in seconds or a frequency in hertz can be.
float NumberIn(const std::string& text) {
  double value = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, value);
  return error == std::errc() && rest == end && value >= 1e-6 && value <= 1e6 ? static_cast<float>(value) : 0;
}

}  // namespace

int ReadCorpusValues(CsvRows& rows, CorpusValues& values) {
  std::vector<std::string> cells;
  if (!rows.Next(cells) || cells[0] != "recording") return -1;
  const std::size_t columns = cells.size();
  const auto columnOf = [&](const char* name) {
    return static_cast<std::size_t>(std::find(cells.begin(), cells.end(), name) - cells.begin());
  };
  const std::size_t tierAt = columnOf("tier"), labelAt = columnOf("label"), startAt = columnOf("start");
  const std::size_t durationAt = columnOf("duration"), f0At = columnOf("f0_mean");
  const std::size_t f1At = columnOf("f1"), f2At = columnOf("f2");

  std::map<std::string, std::size_t> tiers;
  std::vector<std::map<std::string, int>> labels;
  while (rows.Next(cells)) {
    if (cells.size() != columns) return -1;
    cells.emplace_back();  // what a missing column holds
    if (startAt < columns && cells[startAt].empty()) continue;
    std::size_t index = CorpusValues::kMostTiers - 1;
    if (const auto known = tiers.find(cells[tierAt]); known != tiers.end()) {
      index = known->second;
    } else if (values.tiers.size() < CorpusValues::kMostTiers) {
      index = values.tiers.size();
      tiers.emplace(cells[tierAt], index);
      values.tiers.push_back({cells[tierAt], {}, {}, {}, {}});
      labels.emplace_back();
    } else {
      values.moreTiers = true;
    }
    CorpusValues::Tier& tier = values.tiers[index];
    if (const float duration = NumberIn(cells[durationAt]); duration > 0) tier.durations.push_back(duration);
    if (const float f0 = NumberIn(cells[f0At]); f0 > 0) tier.f0.push_back(f0);
    const float f1 = NumberIn(cells[f1At]), f2 = NumberIn(cells[f2At]);
    if (!(f1 > 0 && f2 > 0)) continue;
    int label = -1;
    const auto name = labels[index].find(cells[labelAt]);
    if (name != labels[index].end()) {
      label = name->second;
    } else if (tier.labels.size() < CorpusValues::kMostLabels && !cells[labelAt].empty()) {
      label = static_cast<int>(tier.labels.size());
      labels[index].emplace(cells[labelAt], label);
      tier.labels.push_back(cells[labelAt]);
    }
    tier.vowels.push_back({f1, f2, label});
  }
  return rows.failed() ? -1 : 0;
}

}  // namespace parlowen
