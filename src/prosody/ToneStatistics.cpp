#include "prosody/ToneStatistics.h"

#include <algorithm>
#include <cmath>

#include "base/Format.h"
#include "base/Gbk.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr FileText kReportHead = "\r\n          声调统计数据\r\n\r\n基频范围：%.1f--%.1fHz（%s）\r\n";
constexpr FileText kRangeOfMeans = "各组均值的最小、最大", kRangeGiven = "指定";
constexpr FileText kGroupHead = "\r\n          第%d组：组名：";
constexpr FileText kGroupCount = "，%d个\r\n\r\n";
constexpr FileText kGroupFoot = "调值：%s，时长：平均=%.1fms，标准差=%.1fms\r\n";
constexpr FileText kPercent = "时刻(%)", kHertz = "频率(Hz)", kSemitones = "半音",
                   kDeviation = "标准差(半音)";
constexpr FileText kT = "T值", kD = "D值", kLz = "LZ值";
constexpr std::size_t kNameWidth = 14;  // bytes of a line's name
constexpr double kNoSpread = 1e-9;      // semitones: what rounding leaves of equal points

struct Moments {
  double mean = 0, deviation = 0;
};

/// Mean and deviation, divided by n, of value(0) .. value(n − 1); n > 0.
template <typename Value>
Moments MomentsOf(std::size_t n, Value value) {
  Moments moments;
  for (std::size_t i = 0; i < n; ++i) moments.mean += value(i);
  moments.mean /= static_cast<double>(n);
  double squares = 0;
  for (std::size_t i = 0; i < n; ++i) squares += (value(i) - moments.mean) * (value(i) - moments.mean);
  moments.deviation = std::sqrt(squares / static_cast<double>(n));
  return moments;
}

void Pool(ToneGroup& group, std::span<const ToneItem> items) {
  const std::size_t n = group.items.size();
  const auto item = [&](std::size_t i) -> const ToneItem& {
    return items[static_cast<std::size_t>(group.items[i])];
  };
  for (std::size_t p = 0; p < kTonePoints; ++p) {
    const Moments moments = MomentsOf(n, [&](std::size_t i) { return item(i).points[p]; });
    group.mean[p] = moments.mean;
    group.deviation[p] = moments.deviation;
  }
  const Moments moments = MomentsOf(n, [&](std::size_t i) { return item(i).Milliseconds(); });
  group.milliseconds = moments.mean;
  group.millisecondsDeviation = moments.deviation;
}

std::string ReportLine(FileText name, const TonePoints& values, int decimals) {
  std::string line = ToGbk(name);
  line.resize(std::max(line.size(), kNameWidth), ' ');
  for (const double value : values)
    line += std::isfinite(value) ? Format("%8.*f", decimals, value) : Format("%8s", "--");
  return line + "\r\n";
}

std::string GroupReport(std::span<const ToneItem> items, const ToneStatistics& statistics,
                        std::size_t index) {
  const ToneGroup& group = statistics.groups[index];
  const auto in = [&](ToneAxis axis) { return statistics.ScaleOf(axis).Of(group.mean); };
  TonePoints percent;
  for (std::size_t p = 0; p < kTonePoints; ++p) percent[p] = 10.0 * static_cast<double>(p);
  std::string text = ToGbk(Format(kGroupHead, static_cast<int>(index) + 1)) + group.name +
                     ToGbk(Format(kGroupCount, static_cast<int>(group.items.size())));
  text += ReportLine(kPercent, percent, 0);
  text += ReportLine(kHertz, in(ToneAxis::Hertz), 1);
  text += ReportLine(kSemitones, group.mean, 2);
  text += ReportLine(kDeviation, group.deviation, 2);
  text += ReportLine(kT, in(ToneAxis::T), 2);
  text += ReportLine(kD, in(ToneAxis::D), 2);
  text += ReportLine(kLz, in(ToneAxis::Lz), 2);
  text += ToGbk(Format(kGroupFoot, statistics.DigitsOf(group).c_str(), group.milliseconds,
                       group.millisecondsDeviation));
  for (std::size_t i = 0; i < group.items.size(); ++i) {
    const ToneItem& item = items[static_cast<std::size_t>(group.items[i])];
    const double rate = item.sampleRate;
    text += Format("%4d%9.3f%9.3f%8.1f", static_cast<int>(i) + 1, item.start / rate, item.end / rate,
                   item.Milliseconds());
    for (const double semitones : item.points) text += Format("%8.1f", ToneHertz(semitones));
    text += "  " + item.sound + "\r\n";
  }
  return text;
}

}  // namespace

int ToneStatistics::GroupNamed(const std::string& gbkName) const {
  for (std::size_t g = 0; g < groups.size(); ++g)
    if (groups[g].name == gbkName) return static_cast<int>(g);
  return -1;
}

ToneSpread SpreadOf(std::span<const double> semitones) {
  const Moments moments = MomentsOf(semitones.size(), [&](std::size_t i) { return semitones[i]; });
  ToneSpread spread;
  spread.mean = moments.mean;
  spread.deviation = moments.deviation > kNoSpread ? moments.deviation : 0;
  return spread;
}

ToneStatistics PoolTones(std::span<const ToneItem> items, const std::optional<ToneRange>& given) {
  ToneStatistics statistics;
  for (std::size_t i = 0; i < items.size(); ++i) {
    int g = statistics.GroupNamed(items[i].group);
    if (g < 0) {
      g = static_cast<int>(statistics.groups.size());
      statistics.groups.emplace_back().name = items[i].group;
    }
    statistics.groups[static_cast<std::size_t>(g)].items.push_back(static_cast<int>(i));
  }
  std::vector<double> all;
  for (ToneGroup& group : statistics.groups) {
    Pool(group, items);
    all.insert(all.end(), group.mean.begin(), group.mean.end());
  }
  if (!all.empty()) {
    const auto [lowest, highest] = std::minmax_element(all.begin(), all.end());
    statistics.range = ToneRange::OfSemitones(*lowest, *highest);
    statistics.spread = SpreadOf(all);
  }
  statistics.rangeIsGiven = given.has_value();
  if (given) statistics.range = *given;
  return statistics;
}

ToneResult ToneResultOf(const ToneStatistics& statistics) {
  ToneResult result{statistics.range.lowHertz, statistics.range.highHertz, {}};
  for (const ToneGroup& group : statistics.groups)
    result.groups.push_back({group.name, static_cast<int>(group.items.size()), group.mean, group.deviation,
                             group.milliseconds, group.millisecondsDeviation});
  return result;
}

int NumberInGroup(std::span<const ToneItem> items, int item) {
  const std::string& group = items[static_cast<std::size_t>(item)].group;
  return static_cast<int>(std::count_if(items.begin(), items.begin() + item + 1,
                                        [&](const ToneItem& other) { return other.group == group; }));
}

std::string ToneReport(std::span<const ToneItem> items, const ToneStatistics& statistics) {
  std::string text = ToGbk(Format(kReportHead, statistics.range.lowHertz, statistics.range.highHertz,
                                  statistics.rangeIsGiven ? kRangeGiven : kRangeOfMeans));
  for (std::size_t g = 0; g < statistics.groups.size(); ++g) text += GroupReport(items, statistics, g);
  return text;
}

}  // namespace parlowen
