#include "palatography/PalateCommands.h"

#include <algorithm>
#include <memory>

#include "base/Arithmetic.h"
#include "base/Files.h"
#include "base/Format.h"
#include "palatography/PalateWindow.h"
#include "ui/Messages.h"
#include "ui/Saving.h"
#include "ui/Text.h"
#include "ui/TextExport.h"

namespace parlowen {
namespace {

constexpr UiText kNoStretch = "请用鼠标左、右键定义要进行统计的段";
constexpr UiText kNoStretchCaption = "语音段未正确定义";
constexpr UiText kSaveTitle = "保存腭位统计数据文件";
constexpr UiText kOpenTitle = "打开腭位统计数据文件";
constexpr UiText kRestartOrAppend = "从头开始（Yes)?在已有数据中添加（No）？";
constexpr UiText kNoStatistics = "无此腭位统计数据文件！";
constexpr UiText kImport = "导入腭位帧";
constexpr UiText kFramesASecond = "每秒帧数";
constexpr UiText kEightBytes = "每帧8字节";
constexpr UiText kTwelveBytes = "每帧12字节（前4字节不用）";
constexpr UiText kWrongRate = "输入的帧数错误！";

constexpr const char* kTextName = "PalaStat.txt";
constexpr const char* kIndexName = "PalaIndx.txt";
constexpr const char* kIntroduction = "/help/zh/epg.html";

constexpr std::size_t kLargestFile = std::size_t{64} << 20;
constexpr int kRateField = 1000, kEightButton = 1010, kTwelveButton = 1011;
constexpr int kUsualRate = 200, kLowestRate = 10, kHighestRate = 1000;

FileDialog StatisticsDialog(UiText title) {
  return {title, {FileKindNamed("pal")}, FileKindNamed("pal").extension};
}

/// True when the frames can be shown; else says why not.
bool RequireFrames(Window& window, const PalateDesk& desk) {
  switch (FaultOf(desk.palate, desk.document)) {
    case ContactFault::Damaged: window.Notify(kPalateDamaged, Icon::Error); return false;
    case ContactFault::Edited: window.Notify(kPalateEdited); return false;
    case ContactFault::None: break;
  }
  return true;
}

PalateRecord MeasureSelection(const PalateDesk& desk) {
  const SoundDocument& document = desk.document;
  const ContactTiming timing = TimingOf(desk.palate, document);
  const ContactSpan span = timing.FramesOf(document.selectionStart, document.selectionEnd);
  const auto frames =
      FramesOf(desk.palate, document)
          .subspan(static_cast<std::size_t>(span.first), static_cast<std::size_t>(span.Count()));
  return {document.selectionStart,  document.selectionEnd, document.sampleRate, span.Count(), timing.rate,
          MeasureStatistics(frames)};
}

/// A file that is not there yet, or an empty one, takes a first record.
void AppendRecord(Window& window, const std::string& path, const ByteWriter& record) {
  const auto present = ReadWholeFile(path, kLargestFile);
  if (present && !present->empty()) {
    const auto records = ReadPalateFile(*present);
    if (!records) return window.Notify(kNoStatistics, Icon::Error);
    if (records->size() >= kMostPalateRecords) return window.Notify(messages::kTooMuchData);
  }
  if (SaveBehindFile(window, path, record) < 0) window.Notify(messages::kNoSuchFile, Icon::Error);
}

void SaveStatistics(Window& window, const PalateRecord& record) {
  const auto choice = window.AskSaveFile(StatisticsDialog(kSaveTitle));
  if (!choice) return window.Repaint();
  const auto restart = window.AskBeforeWriting(kRestartOrAppend, messages::kRestartOrAppendCaption);
  if (!restart) return window.Repaint();
  ByteWriter bytes;
  WritePalateRecord(bytes, record);
  if (!*restart) return AppendRecord(window, choice->path, bytes);
  if (SaveFile(window, choice->path, bytes) < 0) window.Notify(messages::kCannotCreate, Icon::Error);
}

struct StatisticsFile {
  std::string name;
  std::vector<PalateRecord> records;
};

std::optional<StatisticsFile> AskStatistics(Window& window) {
  const auto choice = window.AskOpenFile(StatisticsDialog(kOpenTitle));
  if (!choice) return {};
  const auto bytes = ReadWholeFile(choice->path, kLargestFile);
  auto records = bytes ? ReadPalateFile(*bytes) : std::nullopt;
  if (!records) {
    window.Notify(kNoStatistics, Icon::Error);
    return {};
  }
  return StatisticsFile{FileNameOf(choice->path), std::move(*records)};
}

void ShowStatistics(Window& window, const PalateDesk& desk, PalateStatistics statistics) {
  desk.view.statistics = std::move(statistics);
  window.OpenToolWindow(std::make_unique<PalateStatisticsWindow>(desk));
  desk.document.BeginTool(Activity::Palate);  // a window open before has ended its own
  window.Repaint();
}

void OpenOr(Window& window, const std::string& path) {
  if (!InputFile(path).isOpen()) return window.Notify(messages::kCannotOpenListing, Icon::Error);
  window.OpenInEditor(path);
}

FormField FrameSizeButton(int control, UiText label, bool checked) {
  FormField button;
  button.control = control;
  button.kind = FieldKind::Radio;
  button.label = label;
  button.checked = checked;
  return button;
}

struct FrameKind {
  int rate = 0;
  std::size_t bytes = 0;
};
std::optional<FrameKind> AskFrameKind(Window& window) {
  InputForm form = OneFieldForm(kImport, kFramesASecond, Format("%d", kUsualRate));
  form.fields.push_back(FrameSizeButton(kEightButton, kEightBytes, true));
  form.fields.push_back(FrameSizeButton(kTwelveButton, kTwelveBytes, false));
  while (window.AskInput(form)) {
    const int rate = form.CountOf(kRateField);
    if (rate >= kLowestRate && rate <= kHighestRate)
      return FrameKind{rate, form.CheckedIndex() == 1 ? std::size_t{12} : kContactFrameBytes};
    window.Notify(kWrongRate);
  }
  return {};
}

}  // namespace

bool ShowPalateCommand(Window& window, const PalateDesk& desk, bool withSpectrum) {
  if (!RequireFrames(window, desk)) return false;
  window.OpenToolWindow(std::make_unique<PalateWindow>(desk, withSpectrum));
  desk.view.framesOpen = true;
  desk.view.current = ShownFramesOf(TimingOf(desk.palate, desk.document), desk.document).first;
  desk.document.BeginTool(Activity::Palate);
  window.Repaint();
  return true;
}

bool PalateStatisticsCommand(Window& window, const PalateDesk& desk) {
  if (!RequireFrames(window, desk)) return false;
  if (!desk.document.selectionDefined()) {
    window.ShowMessage(kNoStretch, kNoStretchCaption, Icon::None);
    return false;
  }
  const PalateRecord record = MeasureSelection(desk);
  PalateStatistics statistics;
  statistics.records = {record};
  ShowStatistics(window, desk, std::move(statistics));
  if (window.AskYesNo(messages::kSaveFigures, messages::kSaveFiguresCaption)) SaveStatistics(window, record);
  return true;
}

bool OpenPalateStatisticsCommand(Window& window, const PalateDesk& desk) {
  auto file = AskStatistics(window);
  if (!file) return false;
  if (WriteTextExport(window, desk.exportFolder, kTextName, PalateText(file->records)) < 0) return false;
  ShowTextExport(window, desk.exportFolder, kTextName);
  PalateStatistics statistics;
  statistics.records = std::move(file->records);
  statistics.ofFile = true;
  statistics.name = std::move(file->name);
  ShowStatistics(window, desk, std::move(statistics));
  return true;
}

void ComparePalateStatistics(Window& window, PalateStatistics& statistics) {
  auto file = AskStatistics(window);
  if (!file) return;
  statistics.other = MeanOf(file->records);
  statistics.otherName = std::move(file->name);
  window.Repaint();
}

void ShowPalateIndexCommand(Window& window, const PalateState& palate, const std::string& dataFolder) {
  const std::string beside = palate.libraryFolder + "/" + kIndexName;
  const bool own = !palate.libraryFolder.empty() && InputFile(beside).isOpen();
  OpenOr(window, own ? beside : dataFolder + "/" + kIndexName);
}

void ShowPalateIntroductionCommand(Window& window, const std::string& dataFolder) {
  OpenOr(window, dataFolder + kIntroduction);
}

void ImportContactFramesCommand(Window& window, const SoundDocument& document, CommandStates& states,
                                PalateState& palate) {
  if (document.sampleCount < 1 || document.sampleRate < 1) return;
  const auto choice = window.AskOpenFile({kImport, {FileKindNamed("epg")}});
  if (!choice) return;
  const auto bytes = ReadWholeFile(choice->path, kLargestFile);
  if (!bytes) return window.Notify(messages::kCannotOpenListing, Icon::Error);
  const auto kind = AskFrameKind(window);
  if (!kind) return;
  auto frames = ParseContactFrames(*bytes, kind->bytes);
  if (!frames) return window.Notify(kPalateDamaged, Icon::Error);
  // Those that begin in the sound.
  const ContactTiming timing{SaturateInt32(static_cast<std::int64_t>(frames->size())),
                             static_cast<double>(kind->rate), document.sampleRate};
  frames->resize(static_cast<std::size_t>(timing.FramesOf(0, document.sampleCount).Count()));

  EpgRecording recording;
  if (palate.FitsSamples(document)) recording = std::move(palate.recording);
  recording.sampleRate = document.sampleRate;
  recording.sampleCount = document.sampleCount;
  recording.hasPalate = true;
  recording.palate.clear();
  for (const ContactFrame& frame : *frames)
    recording.palate.insert(recording.palate.end(), frame.begin(), frame.end());
  palate.recording = std::move(recording);
  palate.loaded = true;
  palate.sound = document.Stamp();
  palate.toldRate = kind->rate;
  states.Tell(Need::PalateFile);
  window.Repaint();
}

}  // namespace parlowen
