#include "prosody/Durations.h"

#include <cmath>

#include "base/Arithmetic.h"
#include "base/Format.h"
#include "base/Gbk.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr FileText kReportTitle = "\r\n          音长统计数据\r\n";
constexpr FileText kGroupTitle = "\r\n          第%d组：组名：";
constexpr FileText kDataTitle = "\r\n\r\n数据(ms)：";
constexpr FileText kMean = "\r\n平均值=%7.1fms,  标准差=%6.1fms\r\n";

}  // namespace

std::uint16_t DurationOf(int samples, int sampleRate) {
  if (sampleRate <= 0) return 0;
  return static_cast<std::uint16_t>(LowInt16(WrapMul32(samples, 10000) / sampleRate));
}

DurationGroup SummaryOf(const ValueGroup& group) {
  const double n = static_cast<double>(group.values.size());
  double sum = 0, squares = 0;
  for (const std::uint16_t value : group.values) sum += 0.1 * value;
  const double mean = sum / n;
  for (const std::uint16_t value : group.values) squares += (mean - 0.1 * value) * (mean - 0.1 * value);
  return {group.name, group.values.size(), group.negative ? -mean : mean, std::sqrt(squares / n)};
}

std::vector<DurationGroup> SummariesOf(const std::vector<ValueGroup>& groups) {
  std::vector<DurationGroup> summaries;
  summaries.reserve(groups.size());
  for (const ValueGroup& group : groups) summaries.push_back(SummaryOf(group));
  return summaries;
}

std::string DurationReport(const std::vector<ValueGroup>& groups) {
  std::string text = ToGbk(kReportTitle);
  int number = 0;
  for (const ValueGroup& group : groups) {
    text += ToGbk(Format(kGroupTitle, ++number)) + "'" + group.name + "'" + ToGbk(kDataTitle);
    const int sign = group.negative ? -1 : 1;
    int column = 0;
    for (const std::uint16_t value : group.values) {
      text += Format("%7.1f", sign * value * 0.1);
      if (++column % 6 == 0) text += "\r\n          ";
    }
    const DurationGroup summary = SummaryOf(group);
    text += ToGbk(Format(kMean, summary.mean, summary.deviation));
  }
  return text;
}

}  // namespace parlowen
