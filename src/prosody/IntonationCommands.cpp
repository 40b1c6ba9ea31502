#include "prosody/IntonationCommands.h"

#include <cmath>
#include <memory>

#include "base/Files.h"
#include "base/Format.h"
#include "prosody/IntonationWindow.h"
#include "ui/FileKind.h"
#include "ui/Messages.h"
#include "ui/Saving.h"
#include "ui/Text.h"
#include "ui/TextExport.h"

namespace parlowen {
namespace {

constexpr UiText kMarkStretch = "请在幅度能量图中用鼠标左、右键选定要分析的语音段！";
constexpr UiText kHint = "左键：加边界，右键：删边界；←→：选单元";
constexpr UiText kSaveTitle = "保存语调数据文件", kOpenTitle = "打开语调数据文件";
constexpr UiText kNoIntonationFile = "无此语调数据文件！";
constexpr UiText kSpeakerTitle = "保存说话人调域文件", kOpenSpeakerTitle = "打开说话人调域文件";
constexpr UiText kNoSpeakerFile = "无此说话人调域文件！";
constexpr UiText kUnitLine = "%s：%s--%s半音  Q %s--%s  停延率 %s  音强比 %s";
constexpr FileText kReportName = "ToneDom.txt";

FileDialog SpeakerDialog(UiText title) {
  return {title, {FileKindNamed("tnr")}, FileKindNamed("tnr").extension};
}
FileDialog ItnDialog(UiText title) { return {title, {FileKindNamed("itn")}, FileKindNamed("itn").extension}; }

std::string Figure(double value, int decimals) {
  return std::isfinite(value) ? Format("%.*f", decimals, value) : std::string("--");
}

}  // namespace

UiText IntonationHint() { return kHint; }

bool IntonationCommand(Window& window, const ProsodyDesk& desk, IntonationState& state) {
  SoundDocument& document = desk.document;
  if (!document.selectionDefined()) return window.Refuse(kMarkStretch);
  if (!document.pitchPresent) return window.Refuse(messages::kNoContour);
  const std::int64_t length = document.SelectionLength(), rate = document.sampleRate;
  if (10 * length < 3 * rate || length > 60 * rate) return window.Refuse(messages::kWrongLength);
  auto result = AnalyseIntonation(document, document.selectionStart, document.selectionEnd, desk.firstBand());
  if (!result) return window.Refuse(messages::kNoPitchInStretch);
  window.OpenToolWindow(std::make_unique<IntonationWindow>(desk, state));
  document.BeginTool(Activity::Intonation);  // a window open before has ended its own
  state = {std::move(result), -1, {}, document.Stamp()};
  window.Repaint();
  return true;
}

void SaveIntonation(Window& window, const IntonationState& state) {
  if (!state.result) return;
  const auto choice = window.AskSaveFile(ItnDialog(kSaveTitle));
  if (!choice || choice->path.empty()) return;
  if (SaveFile(window, choice->path, WriteIntonation(*state.result)) < 0)
    window.Notify(messages::kCannotCreate, Icon::Error);
}

void CompareIntonation(Window& window, IntonationState& state) {
  const auto choice = window.AskOpenFile(ItnDialog(kOpenTitle));
  if (!choice || choice->path.empty()) return;
  const auto bytes = ReadWholeFile(choice->path, kLargestIntonationFile);
  auto saved = bytes ? ParseIntonation(*bytes) : std::nullopt;
  if (!saved) return window.Notify(kNoIntonationFile, Icon::Error);
  state.compared = std::move(saved);
  window.Repaint();
}

void ShowIntonationReport(Window& window, const ProsodyDesk& desk, const IntonationState& state) {
  if (!state.result) return;
  if (WriteTextExport(window, desk.exportFolder, kReportName, IntonationReport(*state.result)) == 0)
    ShowTextExport(window, desk.exportFolder, kReportName);
}

void AddToSpeakerRange(Window& window, const IntonationState& state) {
  const auto record = state.result ? SpeakerRecordOf(*state.result) : std::nullopt;
  if (!record) return;
  const auto choice = window.AskSaveFile(SpeakerDialog(kSpeakerTitle));
  if (!choice || choice->path.empty()) return;
  const auto restart = window.AskBeforeWriting(messages::kRestartOrAppend, messages::kRestartOrAppendCaption);
  if (!restart) return;
  const ByteWriter bytes = WriteSpeakerRecord(*record);
  if ((*restart ? SaveFile(window, choice->path, bytes) : SaveBehindFile(window, choice->path, bytes)) < 0)
    window.Notify(*restart ? messages::kCannotCreate : messages::kNoSuchFile, Icon::Error);
}

void UseSpeakerRange(Window& window, IntonationState& state) {
  if (!state.result) return;
  std::optional<SemitoneSpan> range;
  if (!state.result->speaker) {
    const auto choice = window.AskOpenFile(SpeakerDialog(kOpenSpeakerTitle));
    if (!choice || choice->path.empty()) return;
    const auto bytes = ReadWholeFile(choice->path, kLargestIntonationFile);
    range = bytes ? ParseSpeakerRange(*bytes) : std::nullopt;
    if (!range) return window.Notify(kNoSpeakerFile, Icon::Error);
  }
  state.result->speaker = range;
  MeasureIntonation(*state.result);
  window.Repaint();
}

void ChooseIntonationUnit(Window& window, IntonationState& state, int unit) {
  state.chosen = unit;
  window.ShowStatus(UnitLine(state.result->units[static_cast<std::size_t>(unit)]));
  window.Repaint();
}

std::string UnitLine(const IntonationUnit& unit) {
  return Format(kUnitLine.Get(), unit.name.c_str(), Figure(unit.base, 2).c_str(), Figure(unit.top, 2).c_str(),
                Figure(unit.qBase, 0).c_str(), Figure(unit.qTop, 0).c_str(),
                Figure(unit.durationRatio, 2).c_str(), Figure(unit.energyRatio, 2).c_str());
}

}  // namespace parlowen
