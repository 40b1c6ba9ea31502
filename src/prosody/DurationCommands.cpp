#include "prosody/DurationCommands.h"

#include "prosody/DurationChart.h"
#include "prosody/Durations.h"
#include "ui/Text.h"
#include "ui/TextExport.h"

namespace parlowen {
namespace {

constexpr UiText kDamaged = "声音长度统计文件错误！";
constexpr UiText kMissing = "无此音长统计数据文件！";
constexpr UiText kOpenTitle = "打开音长统计数据文件";
constexpr const char* kReportName = "WvLength.txt";

}  // namespace

const GroupKind& DurationKind() {
  static const GroupKind kind = {
      kDurationLayout,
      {kOpenTitle, {FileKindNamed("lgs")}, FileKindNamed("lgs").extension},
      kDamaged,
      kMissing,
      true,
      true,
  };
  return kind;
}

void AddDurationCommand(Window& window, const SoundDocument& document, CurrentGroup& current) {
  if (!document.selectionDefined()) return;
  const std::uint16_t duration = DurationOf(document.SelectionLength(), document.sampleRate);
  AddToGroups(window, current, DurationKind(), {&duration, 1});
}

void ShowDurationsCommand(Window& window, const std::string& exportFolder) {
  const auto groups = AskForGroups(window, DurationKind());
  if (!groups) return;
  if (WriteTextExport(window, exportFolder, kReportName, DurationReport(*groups)) < 0) return;
  window.OpenToolWindow(std::make_unique<DurationChart>(SummariesOf(*groups)));
  ShowTextExport(window, exportFolder, kReportName);
}

}  // namespace parlowen
