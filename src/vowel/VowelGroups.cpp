#include "vowel/VowelGroups.h"

#include <algorithm>
#include <cmath>

#include "base/Arithmetic.h"
#include "base/Format.h"
#include "base/Gbk.h"
#include "ui/Text.h"
#include "vowel/VowelChart.h"

namespace parlowen {
namespace {

constexpr FileText kRelativeTitle =
    "\r\n各组平均 F1,F2 频率的相对 Bark 值 V1,V2(百分比)：\r\n"
    "  (V1i=(B1i-B1min)/(B1max-B1min), V2i=(B2i-B2min)/(B2max-B2min), B代表 Bark 值)";
constexpr FileText kMean = "\r\n平均F%d值=%7.1fHz(Bark=%6.2f),  标准差=%6.2fHz\r\n";
constexpr FileText kReportTitle = "\r\n          元音统计数据\r\n";
constexpr FileText kGroupTitle = "\r\n          第%d组：组名：";
constexpr FileText kDataTitle = "\r\n\r\n数据(Hz)：";
constexpr FileText kGroupName = "\r\n  组名：";
constexpr FileText kRelativeValues = ":  V1 值：%3d,    V2 值：%3d";

constexpr double kSmallestSpan = 2.0;  // Bark
constexpr int kPairsALine = 4;

/// Mean, in single precision, and deviation of every second value from `first` on.
void Summarise(const std::vector<std::uint16_t>& values, std::size_t first, float& mean, double& deviation) {
  const std::size_t n = values.size() / 2;
  float sum = 0;
  for (std::size_t i = first; i < values.size(); i += 2) sum += static_cast<float>(values[i]);
  mean = sum / static_cast<float>(n);
  double squares = 0;
  for (std::size_t i = first; i < values.size(); i += 2) {
    const double difference = static_cast<double>(mean) - values[i];
    squares += difference * difference;
  }
  deviation = std::sqrt(squares / static_cast<double>(n));
}

/// A GBK text of at least six bytes, blanks before it.
std::string PaddedName(const std::string& gbk) {
  return std::string(gbk.size() < 6 ? 6 - gbk.size() : 0, ' ') + gbk;
}

std::string MeanLine(int formant, float mean, double deviation) {
  return ToGbk(Format(kMean, formant, static_cast<double>(mean), Bark(mean), deviation));
}

}  // namespace

std::vector<VowelGroup> SummariesOfVowels(const std::vector<ValueGroup>& groups) {
  std::vector<VowelGroup> summaries;
  for (const ValueGroup& group : groups) {
    VowelGroup& summary = summaries.emplace_back();
    summary.name = group.name;
    Summarise(group.values, 0, summary.mean1, summary.deviation1);
    Summarise(group.values, 1, summary.mean2, summary.deviation2);
  }
  return summaries;
}

bool PlaceGroups(std::vector<VowelGroup>& summaries) {
  if (summaries.empty()) return false;
  const auto by1 = [](const VowelGroup& a, const VowelGroup& b) { return a.mean1 < b.mean1; };
  const auto by2 = [](const VowelGroup& a, const VowelGroup& b) { return a.mean2 < b.mean2; };
  const auto [low1, high1] = std::minmax_element(summaries.begin(), summaries.end(), by1);
  const auto [low2, high2] = std::minmax_element(summaries.begin(), summaries.end(), by2);
  const double min1 = Bark(low1->mean1), span1 = Bark(high1->mean1) - min1;
  const double min2 = Bark(low2->mean2), span2 = Bark(high2->mean2) - min2;
  if (span1 < kSmallestSpan || span2 < kSmallestSpan) return false;
  for (VowelGroup& group : summaries) {
    group.x = TruncateToInt32(900.0 - 200.0 * (Bark(group.mean2) - min2) / span2);
    group.y = TruncateToInt32(320.0 + 200.0 * (Bark(group.mean1) - min1) / span1);
  }
  return true;
}

std::string VowelReport(const std::vector<ValueGroup>& groups, const std::vector<VowelGroup>& summaries,
                        bool placed) {
  std::string text = ToGbk(kReportTitle);
  for (std::size_t g = 0; g < groups.size(); ++g) {
    text += ToGbk(Format(kGroupTitle, static_cast<int>(g + 1))) + groups[g].name + ToGbk(kDataTitle);
    const std::vector<std::uint16_t>& values = groups[g].values;
    for (std::size_t i = 0; i + 1 < values.size(); i += 2) {
      text += Format("%8d%8d    ", values[i], values[i + 1]);
      if ((i / 2 + 1) % kPairsALine == 0) text += "\r\n          ";
    }
    text += MeanLine(1, summaries[g].mean1, summaries[g].deviation1);
    text += MeanLine(2, summaries[g].mean2, summaries[g].deviation2);
  }
  if (!placed) return text;
  text += ToGbk(kRelativeTitle);
  for (const VowelGroup& group : summaries)
    text +=
        ToGbk(kGroupName) + PaddedName(group.name) + ToGbk(Format(kRelativeValues, group.V1(), group.V2()));
  return text;
}

}  // namespace parlowen
