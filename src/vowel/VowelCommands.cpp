#include "vowel/VowelCommands.h"

#include <algorithm>

#include "base/Arithmetic.h"
#include "base/Files.h"
#include "ui/Messages.h"
#include "ui/Saving.h"
#include "ui/Text.h"
#include "ui/TextExport.h"
#include "vowel/AverageVowels.h"
#include "vowel/FormantFile.h"
#include "vowel/SegmentChart.h"
#include "vowel/VowelChartFile.h"
#include "vowel/VowelFormants.h"

namespace parlowen {
namespace {

constexpr UiText kReferenceLabel = "参考音高(Hz)";
constexpr UiText kRateTooHigh = "本功能采样频率不能超过16000Hz！";
constexpr UiText kRateTooHighCaption = "频率太高";
constexpr UiText kConnect = "用直线连接各点（Yes/No)？";
constexpr UiText kInsertHint = "在幅度/能量图中单击某点，在元音音位图中插入该点数据";
constexpr UiText kInsertHintCaption = "音位图插入";
constexpr UiText kCoordinates = "使用频率坐标(yes)? 或 Bark 相对坐标（No)？";
constexpr UiText kReferenceTitle = "输入某说话人的参考音高值";
constexpr UiText kChartFull = "点数已满，不能再加入!";
constexpr UiText kDeleteOrModify = "删除(Yes)?修改(No)？";
constexpr UiText kDeleteOrModifyCaption = "删除或修改";
constexpr UiText kSplit = "分解F1为两个(yes)?";
constexpr UiText kSplitCaption = "分解F1？";
constexpr UiText kMergeOrDelete = "合并F1,F2(yes)?删除F1(No)";
constexpr UiText kMergeOrDeleteCaption = "修改方法";
constexpr UiText kShapeTitle = "插入点形状选择";
/// In the order of PointShape.
constexpr UiText kShapes[] = {"圆形", "方形", "菱形", "三角形", "倒三角形"};
constexpr UiText kOnlyPointChart = "只能在画单点的元音图时使用！";
constexpr UiText kTypeTitle = "人工加入元音图的一点";
constexpr UiText kWrongPair = "输入的 F1,F2 值错误";
constexpr UiText kNoChartShown = "不在元音图状态，不能调入！";
constexpr UiText kAveragesTitle = "调入统计平均元音位置";
constexpr UiText kSaveChartTitle = "保存元音图数据文件", kOpenChartTitle = "打开元音图数据文件";
constexpr UiText kSaveFormantsTitle = "保存共振峰数据文件", kOpenFormantsTitle = "打开共振峰数据文件";
constexpr UiText kNoChartFile = "无此元音图数据文件！";
constexpr UiText kNoFormantFile = "无共振峰数据文件！";
constexpr UiText kBadFormantFile = "共振峰数据文件错误！";
constexpr const char* kChartListName = "VchDt.txt";
constexpr const char* kFormantListName = "Formant.txt";

// Half an hour of frames. A longer file is none, and its listing would fill the memory.
constexpr std::size_t kLongestFormantFile = std::size_t{8} << 20;

constexpr int kHighestRate = 16000;
constexpr int kShortestSelection = 200;  // samples of a stretch whose formants are saved
constexpr int kField1 = 1000, kField2 = 1008;
constexpr int kButtons[] = {1010, 1011, 1012, 1013, 1030, 1037};

FileDialog ChartDialog(UiText title) {
  constexpr const FileKind& kKind = FileKindNamed("vch");
  return {title, {kKind}, kKind.extension};
}
FileDialog FormantDialog(UiText title) {
  constexpr const FileKind& kKind = FileKindNamed("fmt");
  return {title, {kKind}, kKind.extension};
}

bool RefuseHighRate(Window& window, const SoundDocument& document) {
  if (document.sampleRate <= kHighestRate) return false;
  window.ShowMessage(kRateTooHigh, kRateTooHighCaption, Icon::None);
  return true;
}

FormField RadioButton(int index, UiText label, bool checked) {
  FormField button;
  button.control = kButtons[index];
  button.kind = FieldKind::Radio;
  button.label = label;
  button.checked = checked;
  return button;
}

FormField HertzField(int control, UiText label) {
  FormField field;
  field.control = control;
  field.kind = FieldKind::Number;
  field.label = label;
  return field;
}

void AskReferencePitch(Window& window, VowelChart& chart) {
  if (!chart.barkMode || chart.referenceF0 != 0) return;
  InputForm form = OneFieldForm(kReferenceTitle, kReferenceLabel, "");
  if (window.AskInput(form)) chart.referenceF0 = LowInt16(form.CountOf(kField1));
}

/// Shows the point chart, after the questions that its coordinates need. Places are computed again when an
/// answer changed them, but those of a chart that has just been loaded stay.
void ShowPointChart(Window& window, const VowelDesk& desk, bool askCoordinates) {
  const auto& [document, states, vowels] = desk;
  VowelChart& chart = vowels.chart;
  document.activity = Activity::PointChart;
  const bool loaded = std::exchange(chart.loadedFromFile, false);
  const bool oldMode = chart.barkMode;
  const int oldReference = chart.referenceF0;
  if (askCoordinates && !loaded) chart.barkMode = !window.AskYesNo(kCoordinates, window.Caption());
  AskReferencePitch(window, chart);
  const bool changed = chart.barkMode != oldMode || (chart.barkMode && chart.referenceF0 != oldReference);
  if (changed && !loaded) chart.PlaceAgain();
  UpdateVowelCommands(desk);
  window.Repaint();
}

/// Asks how to correct the formants.
void Correct(Window& window, VowelFormants& formants) {
  if (window.AskYesNo(kSplit, kSplitCaption)) {
    SplitFirst(formants);
  } else if (window.AskYesNo(kMergeOrDelete, kMergeOrDeleteCaption)) {
    MergeFirstTwo(formants);
  } else {
    DeleteFirst(formants);
  }
}

/// Measures a moment and stores it when it is a vowel.
void AddMoment(Window& window, const SoundDocument& document, VowelState& vowels, int sample, bool correct) {
  VowelFormants formants = ChooseFormants(FormantsAt(document, sample), document.sampleRate);
  if (correct) Correct(window, formants);
  if (!IsVowel(formants)) return;
  vowels.chart.Add(formants.f[0], formants.f[1], formants.f[2]);
}

/// The chart of a file; nothing when it is refused, with its message.
std::optional<VowelChart> LoadChart(Window& window, const VowelChart& present, const std::string& path) {
  const auto bytes = ReadWholeFile(path);
  auto chart = bytes ? ReadChart(*bytes, present) : std::nullopt;
  if (!chart) window.Notify(kNoChartFile, Icon::Error);
  return chart;
}

}  // namespace

bool MayBeTyped(int f1, int f2) { return f1 >= 150 && f1 <= 1500 && f2 >= 420 && f2 <= 4000 && f1 < f2; }

void UpdateVowelCommands(const VowelDesk& desk) {
  const auto& [document, states, vowels] = desk;
  const Activity activity = document.activity;
  states.Tell(Need::ChartedPoints, activity == Activity::PointChart && vowels.chart.count > 0);
  states.Tell(Need::VowelChart, activity == Activity::SegmentChart || activity == Activity::PointChart);
}

// --- The charts

bool SegmentChartCommand(Window& window, const VowelDesk& desk) {
  const auto& [document, states, vowels] = desk;
  if (RefuseHighRate(window, document) || !document.selectionDefined()) return false;
  vowels.chart.connectPoints = window.AskYesNo(kConnect, window.Caption());
  vowels.segmentAverages.clear();
  window.OpenToolWindow(std::make_unique<SegmentChart>(document, vowels, SegmentTrack(document)));
  // Not before: a chart that was open ends its activity when it is closed.
  document.BeginTool(Activity::SegmentChart);
  UpdateVowelCommands(desk);
  window.Repaint();
  return true;
}

bool PointChartCommand(Window& window, const VowelDesk& desk) {
  if (RefuseHighRate(window, desk.document)) return false;
  window.ShowMessage(kInsertHint, kInsertHintCaption, Icon::None);
  ShowPointChart(window, desk, true);
  return true;
}

void ClickVowel(Window& window, const VowelDesk& desk, int sample) {
  const auto& [document, states, vowels] = desk;
  if (vowels.chart.count >= VowelChart::kMostClicked) return window.Notify(kChartFull, Icon::Error);
  vowels.lastClick = sample;
  vowels.lastClickSound = document.Stamp();
  AddMoment(window, document, vowels, sample, false);
  UpdateVowelCommands(desk);
  window.Repaint(Pane::Chart);
}

bool UndoPointCommand(Window& window, const VowelDesk& desk) {
  const auto& [document, states, vowels] = desk;
  if (vowels.chart.count < 1) return false;
  if (window.AskYesNo(kDeleteOrModify, kDeleteOrModifyCaption)) {
    --vowels.chart.count;
  } else if (vowels.lastClick < 0 || vowels.lastClickSound != document.Stamp()) {
    // there is nothing to measure again
  } else if (vowels.chart.count > VowelChart::kMostClicked) {
    window.Notify(kChartFull, Icon::Error);  // the last one was typed, and clicks stop before it
  } else {
    // A correction that leaves no vowel takes the point away.
    --vowels.chart.count;
    AddMoment(window, document, vowels, vowels.lastClick, true);
  }
  ShowPointChart(window, desk, false);
  return true;
}

bool ChoosePointShapeCommand(Window& window, VowelState& vowels) {
  InputForm form;
  form.title = kShapeTitle;
  for (int i = 0; i < std::ssize(kShapes); ++i)
    form.fields.push_back(RadioButton(i, kShapes[i], static_cast<PointShape>(i) == vowels.chart.shape));
  if (!window.AskInput(form)) return false;
  if (const int chosen = form.CheckedIndex(); chosen >= 0)
    vowels.chart.shape = static_cast<PointShape>(chosen);
  return true;
}

void ClearChartCommand(Window& window, const VowelDesk& desk) {
  const auto& [document, states, vowels] = desk;
  vowels.chart.count = 0;
  vowels.averages.clear();
  ShowPointChart(window, desk, false);
}

bool AverageVowelsCommand(Window& window, const SoundDocument& document, VowelState& vowels) {
  const bool pointChart = document.activity == Activity::PointChart;
  if (!pointChart && document.activity != Activity::SegmentChart) return window.Refuse(kNoChartShown);
  InputForm form;
  form.title = kAveragesTitle;
  for (int i = 0; i < kSpeakerClasses; ++i)
    form.fields.push_back(RadioButton(i, SpeakerClassName(i), i == 0));
  if (!window.AskInput(form)) return false;
  std::vector<int>& shown = pointChart ? vowels.averages : vowels.segmentAverages;
  const int chosen = form.CheckedIndex();
  if (chosen >= 0 && std::find(shown.begin(), shown.end(), chosen) == shown.end()) shown.push_back(chosen);
  window.Repaint();
  return true;
}

bool TypePointCommand(Window& window, const VowelDesk& desk) {
  const auto& [document, states, vowels] = desk;
  if (document.activity != Activity::PointChart && document.activity != Activity::GroupPlot)
    return window.Refuse(kOnlyPointChart);
  if (vowels.chart.count >= VowelChart::kCapacity) return window.Refuse(kChartFull, Icon::Error);
  InputForm form;
  form.title = kTypeTitle;
  form.fields = {HertzField(kField1, "F1 (Hz)"), HertzField(kField2, "F2 (Hz)")};
  while (window.AskInput(form)) {
    const int f1 = form.CountOf(kField1), f2 = form.CountOf(kField2);
    if (!MayBeTyped(f1, f2)) {
      window.Notify(kWrongPair);
      continue;
    }
    vowels.chart.Add(f1, f2, 0);
    UpdateVowelCommands(desk);
    window.Repaint(Pane::Chart);
    return true;
  }
  return false;
}

bool VowelKey(Window& window, const VowelDesk& desk, const std::string& key) {
  const auto& [document, states, vowels] = desk;
  const bool plot = document.activity == Activity::GroupPlot;
  if (!plot && document.activity != Activity::PointChart) return false;
  if (key == "M" || key == "L") {
    bool& flag = plot ? vowels.plot.showNames : vowels.showNumbers;
    if (key == "M") flag = !flag;
    if (!plot) vowels.averages.clear();  // both draw the chart anew
  } else if (key == "B" && plot) {
    LeaveChart(window, desk);
  } else {
    return false;
  }
  window.Repaint(Pane::Chart);
  return true;
}

void LeaveChart(Window& window, const VowelDesk& desk) {
  const auto& [document, states, vowels] = desk;
  document.activity = document.activity == Activity::GroupPlot ? Activity::PointChart : Activity::Waveform;
  UpdateVowelCommands(desk);
  window.Repaint();
}

// --- Files

void SaveChartCommand(Window& window, VowelState& vowels) {
  if (vowels.chart.count < 1) return;
  const auto choice = window.AskSaveFile(ChartDialog(kSaveChartTitle));
  if (!choice || choice->path.empty()) return;
  if (SaveFile(window, choice->path, ChartBytes(vowels.chart)) < 0)
    return window.Notify(messages::kCannotCreate, Icon::Error);
}

bool OpenChartCommand(Window& window, const VowelDesk& desk) {
  const auto choice = window.AskOpenFile(ChartDialog(kOpenChartTitle));
  return choice && !choice->path.empty() && OpenChartFile(window, desk, choice->path);
}

bool OpenChartFile(Window& window, const VowelDesk& desk, const std::string& path) {
  const auto& [document, states, vowels] = desk;
  auto chart = LoadChart(window, vowels.chart, path);
  if (!chart) return false;
  vowels.chart = *chart;
  vowels.chart.loadedFromFile = true;
  vowels.averages.clear();
  ShowPointChart(window, desk, true);
  return true;
}

void ListChartCommand(Window& window, const VowelDesk& desk, const std::string& exportFolder) {
  const auto& [document, states, vowels] = desk;
  const auto choice = window.AskOpenFile(ChartDialog(kOpenChartTitle));
  if (!choice || choice->path.empty()) return;
  auto chart = LoadChart(window, vowels.chart, choice->path);
  if (!chart) return;
  if (WriteTextExport(window, exportFolder, kChartListName, ChartListing(*chart)) < 0) return;
  // The chart that is listed is the present one from now on.
  vowels.chart = *chart;
  UpdateVowelCommands(desk);
  window.Repaint(Pane::Chart);
  ShowTextExport(window, exportFolder, kChartListName);
}

void SaveFormantsCommand(Window& window, const SoundDocument& document) {
  if (document.SelectionLength() < kShortestSelection) return;
  const auto choice = window.AskSaveFile(FormantDialog(kSaveFormantsTitle));
  if (!choice || choice->path.empty()) return;
  const auto restart = window.AskBeforeWriting(messages::kRestartOrAppend, messages::kRestartOrAppendCaption);
  if (!restart) return;
  ByteWriter block;
  WriteFormantBlock(block, SelectionTrack(document));
  const int result =
      *restart ? SaveFile(window, choice->path, block) : SaveBehindFile(window, choice->path, block);
  if (result < 0) window.Notify(*restart ? messages::kCannotCreate : messages::kNoSuchFile, Icon::Error);
}

void ListFormantsCommand(Window& window, const SoundDocument& document, const std::string& exportFolder) {
  const auto choice = window.AskOpenFile(FormantDialog(kOpenFormantsTitle));
  if (!choice || choice->path.empty()) return;
  const InputFile file(choice->path);
  const bool tooLong = file.isOpen() && file.size() > static_cast<std::int64_t>(kLongestFormantFile);
  const auto bytes = ReadWholeFile(choice->path, kLongestFormantFile);
  if (!bytes) return window.Notify(tooLong ? kBadFormantFile : kNoFormantFile, Icon::Error);
  std::vector<FormantBlock> blocks;
  const FormantFileEnd end = ReadFormantBlocks(*bytes, blocks);
  std::string text;
  for (std::size_t i = 0; i < blocks.size(); ++i)
    text += FormantListing(blocks[i], static_cast<int>(i) + 1, document.sampleRate);
  if (WriteTextExport(window, exportFolder, kFormantListName, text) < 0) return;
  if (end == FormantFileEnd::Broken) return window.Notify(kBadFormantFile, Icon::Error);
  ShowTextExport(window, exportFolder, kFormantListName);
}

}  // namespace parlowen
