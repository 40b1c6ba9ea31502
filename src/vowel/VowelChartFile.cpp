#include "vowel/VowelChartFile.h"

#include "base/Format.h"
#include "base/Gbk.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr FileText kBarkTitle =
    "\r\n 使用 Bark 相对坐标：Bark(f)=7*log((f/650.)+sqrt(f*f/422500.+1))\r\n\t\t  参考音高F0=%d, B0=%4.2f\r\n ";
constexpr FileText kBarkColumns = "\r\n 点序号      F1(Hz)       B1      F2(Hz)        B2\r\n";
constexpr FileText kHertzColumns = "\r\n 点序号      F1(Hz)      F2(Hz)      F3(Hz)\r\n";

constexpr std::int16_t kBarkMarker = -1;
constexpr std::size_t kFrequencyPoint = 22, kBarkPoint = 16, kPadding = 2;

}  // namespace

ByteWriter ChartBytes(const VowelChart& chart) {
  ByteWriter file;
  if (chart.barkMode) {
    file.PutInt16LE(kBarkMarker);
    file.PutInt16LE(chart.referenceF0);
  }
  file.PutInt16LE(static_cast<std::int16_t>(chart.count));
  for (int i = 0; i < chart.count; ++i) {
    const VowelPoint& point = chart.points[static_cast<std::size_t>(i)];
    file.PutInt16LE(point.x);
    file.PutInt16LE(point.y);
    if (!chart.barkMode) file.PutInt16LE(point.x3);
    file.PutInt16LE(static_cast<std::int16_t>(point.shape));
    file.PutInt16LE(0);
    file.PutFloat32LE(point.f1);
    file.PutFloat32LE(point.f2);
    if (!chart.barkMode) file.PutFloat32LE(point.f3);
  }
  return file;
}

std::optional<VowelChart> ReadChart(ByteSpan bytes, VowelChart chart) {
  ByteReader file(bytes);
  int count = file.TakeInt16LE();
  chart.barkMode = count == kBarkMarker;
  if (chart.barkMode) {
    chart.referenceF0 = file.TakeInt16LE();
    count = file.TakeInt16LE();
  }
  if (file.failed() || count < 0 || count > VowelChart::kCapacity) return {};
  const std::size_t pointSize = chart.barkMode ? kBarkPoint : kFrequencyPoint;
  const std::size_t number = static_cast<std::size_t>(count);
  const bool unpadded = file.Remaining() == number * (pointSize - kPadding);
  if (!unpadded && file.Remaining() < number * pointSize) return {};
  chart.count = count;
  for (std::size_t i = 0; i < number; ++i) {
    VowelPoint& point = chart.points[i];
    point.x = file.TakeInt16LE();
    point.y = file.TakeInt16LE();
    point.x3 = chart.barkMode ? std::int16_t{0} : file.TakeInt16LE();
    point.shape = static_cast<PointShape>(file.TakeInt16LE());
    if (!unpadded) file.Skip(kPadding);
    point.f1 = file.TakeFloat32LE();
    point.f2 = file.TakeFloat32LE();
    point.f3 = chart.barkMode ? 0.0f : file.TakeFloat32LE();
  }
  return chart;
}

std::string ChartListing(const VowelChart& chart) {
  std::string text;
  if (chart.barkMode) {
    text = Format(kBarkTitle, chart.referenceF0, Bark(chart.referenceF0));
    text += kBarkColumns;
  } else {
    text = kHertzColumns;
  }
  for (int i = 0; i < chart.count; ++i) {
    const VowelPoint& point = chart.points[static_cast<std::size_t>(i)];
    const double f1 = point.f1, f2 = point.f2, f3 = point.f3;
    text += chart.barkMode ? Format("%4d       %6.1f     %6.2f     %6.1f     %6.2f\r\n", i + 1, f1, Bark(f1),
                                    f2, Bark(f2))
                           : Format("%4d       %6.1f       %6.1f       %6.1f\r\n", i + 1, f1, f2, f3);
  }
  return ToGbk(text);
}

}  // namespace parlowen
