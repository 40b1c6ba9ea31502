#include "vowel/VowelGroupCommands.h"

#include "base/Arithmetic.h"
#include "ui/Messages.h"
#include "ui/Text.h"
#include "ui/TextExport.h"
#include "vowel/VowelCommands.h"

namespace parlowen {
namespace {

constexpr UiText kDamaged = "元音统计文件错误！";
constexpr UiText kMissing = "无此元音统计数据文件！";
constexpr UiText kOpenTitle = "打开元音统计数据文件";
constexpr UiText kNoPoint = "必须在向元音图加入单个元音点的状态下使用";
constexpr UiText kNoPointCaption = "没有元音点";
constexpr UiText kOnlyPointChart = "请在逐点加入元音图的情况下使用！";
constexpr UiText kOnlyPointChartCaption = "不在此状态下使用";
constexpr UiText kShowNames = "标出组名吗？";
constexpr UiText kShowNamesCaption = "是否显示组名？";
constexpr const char* kReportName = "VwlPoints.txt";

std::uint16_t Low16(float hertz) { return static_cast<std::uint16_t>(LowInt16(TruncateToInt64(hertz))); }

}  // namespace

const GroupKind& VowelGroupKind() {
  static const GroupKind kind = {
      kVowelLayout,
      {kOpenTitle, {FileKindNamed("vls")}, FileKindNamed("vls").extension},
      kDamaged,
      kMissing,
  };
  return kind;
}

bool AddPointToGroupCommand(Window& window, const SoundDocument& document, VowelState& vowels) {
  if (vowels.chart.count < 1 || document.activity != Activity::PointChart) {
    window.ShowMessage(kNoPoint, kNoPointCaption, Icon::None);
    return false;
  }
  const VowelPoint& last = vowels.chart.points[static_cast<std::size_t>(vowels.chart.count - 1)];
  const std::uint16_t pair[] = {Low16(last.f1), Low16(last.f2)};
  return AddToGroups(window, vowels.group, VowelGroupKind(), pair);
}

bool ShowVowelGroupsCommand(Window& window, const VowelDesk& desk, const std::string& exportFolder) {
  const auto& [document, states, vowels] = desk;
  if (document.activity != Activity::PointChart) {
    window.ShowMessage(kOnlyPointChart, kOnlyPointChartCaption, Icon::None);
    return false;
  }
  const auto groups = AskForGroups(window, VowelGroupKind());
  if (!groups) return false;
  std::vector<VowelGroup> summaries = SummariesOfVowels(*groups);
  const bool placed = PlaceGroups(summaries);
  if (WriteTextExport(window, exportFolder, kReportName, VowelReport(*groups, summaries, placed)) < 0)
    return false;
  const bool showNames = window.AskYesNo(kShowNames, kShowNamesCaption);
  if (placed) {
    vowels.plot = {std::move(summaries), showNames};
    document.activity = Activity::GroupPlot;
    UpdateVowelCommands(desk);
    window.Repaint(Pane::Chart);
  } else {
    window.ShowMessage(messages::kTooFewData, messages::kTooFewDataCaption, Icon::None);
  }
  ShowTextExport(window, exportFolder, kReportName);
  return true;
}

}  // namespace parlowen
