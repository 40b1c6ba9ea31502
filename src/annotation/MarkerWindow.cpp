#include "annotation/MarkerWindow.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <memory>

#include "annotation/MarkerFile.h"
#include "base/Arithmetic.h"
#include "base/Files.h"
#include "base/Format.h"
#include "base/Gbk.h"
#include "base/IpaCodes.h"
#include "document/SoundFileCommands.h"
#include "document/WavFile.h"
#include "ui/Messages.h"
#include "ui/Saving.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr int kSave = 1, kExpand = 1048, kShrink = 1049, kFirstTool = 1050;

struct ToolTexts {
  UiText button;
  UiText instruction;
  std::optional<UiText> refusal;  ///< when there is no marker (no label) yet
};
/// In the order of MarkerTool, from AddMarker on.
constexpr ToolTexts kTools[] = {
    {"加标志", "单击某标志带中某点，即在该标志带的此处设置标志", {}},
    {"删标志", "单击某标志带中的某标志区域，即删除该标志", "没有标志！"},
    {"加标注文字", "单击某标志处加点标注文字，单击某两标志间加段标注文字", kNoMarkerForLabel},
    {"删标注文字", "单击某标志处删点标注文字，单击某两标志间删段标注文字", kNoLabel},
    {"标志间段放音", "单击某两标志间的一段将该段放音", "没有标志，不能放音！"},
    {"段保存为文件", "单击某两标志间的一段将该段保存为声音文件", "没有标志，不能保存！"},
};
constexpr UiText kTitle = "增减标志";
constexpr UiText kMarkerLine = "%d\t标志\t%s\n", kLabelLine = "%d\t标注\t%s\t%s\t%s\n";
constexpr UiText kSaveButton = "保存标志";
constexpr UiText kExpandButton = "波形扩展";
constexpr UiText kShrinkButton = "波形收缩";
constexpr UiText kBandLabel = "标志带（1--4）";
constexpr UiText kTimeLabel = "时间（秒）";
constexpr UiText kHoverLine = "%.3f s  样点 %d";
constexpr UiText kHoverBand = "  标志带 %d";
constexpr UiText kHoverStretch = "  段 %.3f--%.3f s";
constexpr UiText kZoomInstruction = "用波形扩展、收缩按钮变更波形比例";
constexpr UiText kCannotExpand = "不能再扩展！";
constexpr UiText kCannotShrink = "不能再收缩！";
constexpr UiText kScrollHelp =
    "单击滑动条左、右端方块使波形后退、前进2秒；单击滑动块左、右空处波形后退、前进一屏 ";
constexpr int kArrowSeconds = 2;

constexpr UiText kNothingToSave = "没有标志，不用保存！";
constexpr UiText kSaveSoundFirst = "请先把录音保存为文件，再保存标志数据";
constexpr UiText kSaved = "标志数据已保存为 %s";
constexpr UiText kDamaged = "标志文件已损坏，没有读入：%s";
constexpr UiText kCorrected = "标志文件中有位置超出声音或次序不对，已更正：%s";

constexpr UiText kSaveStretchTitle = "保存声音数据文件";
constexpr UiText kLabelTitle = "输入标注文字";
constexpr UiText kLabelPrompt = "输入标注文字（最长12字符或6汉字）";
constexpr UiText kPlaceTitle = "指定位置";
constexpr UiText kNoSuchPlace = "没有这个标志带或时间，请重新输入";
constexpr UiText kChooseToolFirst = "请先选择一种操作";
constexpr int kFirstField = 1000, kSecondField = 1001;

int IndexOf(MarkerTool tool) { return static_cast<int>(tool) - 1; }

/// Takes the file's markers into the state. Returns what is to be said about the file, "" when nothing.
std::string ReadMarkers(const SoundDocument& document, MarkerState& state) {
  const bool open = state.windowOpen, shown = state.paneShown;
  const int columns = state.view.columns;
  state = {};
  state.windowOpen = open;
  state.paneShown = shown;
  state.view.columns = columns;
  state.sound = document.Stamp();
  if (document.filePath.empty()) return {};
  const std::string path = MarkerPathOf(document.filePath);
  if (!InputFile(path).isOpen()) return {};
  const auto bytes = ReadWholeFile(path, kMarkerFileBytes);
  auto content = bytes ? ParseMarkers(*bytes, document.sampleCount) : std::nullopt;
  if (!content) return Format(kDamaged.Get(), path.c_str());
  state.set = std::move(content->set);
  return content->corrected ? Format(kCorrected.Get(), path.c_str()) : "";
}

void Open(Window& window, const SoundDocument& document, MarkerState& state, const PlayStretch& play) {
  window.OpenToolWindow(std::make_unique<MarkerWindow>(document, state, play));
  state.windowOpen = true;  // one that was open before has closed
}

/// Reads the markers of a sound that is seen for the first time, for what shows them all the time.
void ReadShown(Window& window, const SoundDocument& document, MarkerState& state) {
  const std::string notice = ReadMarkers(document, state);
  if (!notice.empty()) window.ShowStatus(notice);
}

}  // namespace

std::optional<std::string> AskLabelText(Window& window, const std::string& present, FormPlace* place) {
  InputForm form = OneFieldForm(kLabelTitle, kLabelPrompt, present, FieldKind::Text);
  form.fields[0].maxGbkBytes = kMarkerLabelBytes;
  form.fields[0].phonetic = true;
  form.place = place;
  while (window.AskInput(form)) {
    const std::string& text = form.ValueOf(kFirstField);
    const std::string gbk = IpaToGbk(text);
    if (IpaFromGbk(gbk) == text) return IpaFromGbk(CutGbk(gbk, kMarkerLabelBytes));
    window.Notify(messages::kNoGbkCode);
  }
  return {};
}

void OpenMarkerWindow(Window& window, const SoundDocument& document, MarkerState& state,
                      const PlayStretch& play) {
  const std::string notice = ReadMarkers(document, state);
  Open(window, document, state, play);
  if (state.paneShown) window.Repaint(Pane::Labels);
  if (!notice.empty()) window.ShowStatus(notice);
}

void ShowMarkers(Window& window, const SoundDocument& document, MarkerState& state, const PlayStretch& play) {
  state.sound = document.Stamp();
  state.changed = true;
  state.step.reset();
  state.view.chosen.reset();
  if (state.windowOpen) return window.Repaint();
  state.view = {};
  Open(window, document, state, play);
  if (state.paneShown) window.Repaint(Pane::Labels);
}

bool SaveMarkers(Window& window, const SoundDocument& document, MarkerState& state) {
  // The caption of a sound that is a WAV file ends in its name.
  const bool isFile = HasEnding(window.Caption(), ".wav") && !document.filePath.empty();
  if (!state.set.HasMarkers() || !isFile) {
    window.Notify(isFile || !state.set.HasMarkers() ? kNothingToSave : kSaveSoundFirst);
    return false;
  }
  const std::string path = MarkerPathOf(document.filePath);
  if (SaveFile(window, path, MarkerBytesOf(state.set)) < 0) {
    window.Notify(messages::kCannotCreate, Icon::Error);
    return false;
  }
  state.changed = false;
  window.ShowStatus(Format(kSaved.Get(), path.c_str()));
  return true;
}

void EnsureMarkersRead(const SoundDocument& document, MarkerState& state) {
  if (state.sound != document.Stamp()) ReadMarkers(document, state);
}

void ShowLabelPane(Window& window, const SoundDocument& document, MarkerState& state, bool shown) {
  state.paneShown = shown;
  if (shown && state.sound != document.Stamp()) ReadShown(window, document, state);
  window.Repaint();
}

void DropOldMarkers(Window& window, const SoundDocument& document, MarkerState& state) {
  if (state.sound == document.Stamp()) return;
  if (state.windowOpen || state.paneShown) return ReadShown(window, document, state);
  state = {};
}

MarkerWindow::MarkerWindow(const SoundDocument& document, MarkerState& state, const PlayStretch& play)
    : document_(document), state_(state), play_(play), height_(MarkerWindow::PreferredSize().y) {}

std::string MarkerWindow::Title() const { return kTitle; }

std::vector<ToolControl> MarkerWindow::Controls() const {
  std::vector<ToolControl> controls = {{kSave, kSaveButton},
                                       {kExpand, kExpandButton, true, false, kZoomInstruction},
                                       {kShrink, kShrinkButton, true, false, kZoomInstruction}};
  for (int i = 0; i < std::ssize(kTools); ++i)
    controls.push_back(
        {kFirstTool + i, kTools[i].button, true, i == IndexOf(state_.view.tool), kTools[i].instruction});
  return controls;
}

Picture MarkerWindow::Draw(int, int height) const {
  pyramid_.Update(document_.Samples(), document_.samplesVersion);
  Picture picture = MarkersPicture(document_, pyramid_, state_.set, state_.view, height);
  const std::int64_t after =
      state_.cursor ? std::int64_t{*state_.cursor} - state_.view.start : -1;  // samples from the left edge
  if (after >= 0 && after <= MarkerViewLength(state_.view, document_.sampleCount)) {
    const int x = Scale().Column(*state_.cursor);
    picture.Add(LineMark{{x, MarkerLayout(height).waveTop}, {x, height - 1}, colours::kCursor});
  }
  return picture;
}

Point MarkerWindow::PreferredSize() const { return {kPaneMargin + 1000 + kMarkerRightMargin, 520}; }

void MarkerWindow::Resized(int width, int height) {
  state_.view.columns = std::max(100, width - kPaneMargin - kMarkerRightMargin);
  height_ = height;
}

std::optional<ToolScrollBar> MarkerWindow::ScrollBar() const {
  const int page = MarkerViewLength(state_.view, document_.sampleCount);
  return ToolScrollBar{state_.view.start, document_.sampleCount - page, page,
                       kArrowSeconds * document_.sampleRate, kScrollHelp};
}

void MarkerWindow::ScrollTo(Window&, int position) { MoveTo(position); }

void MarkerWindow::Scroll(Window&, int steps) {
  MoveTo(state_.view.start + std::int64_t{steps} * MarkerViewLength(state_.view, document_.sampleCount) / 10);
}

MarkerPoint MarkerWindow::PointAt(Point at) const {
  constexpr int kWidest = 100000;
  const int column = std::clamp(at.x, kPaneMargin, kWidest);
  return {BandOfRow(at.y - ClickOrigin().y), column, Scale().SampleAt(column)};
}

void MarkerWindow::Click(Window& window, Point at, MouseButton button, bool) {
  if (button == MouseButton::Left && at.y >= ClickOrigin().y) Act(window, PointAt(at));
}

bool MarkerWindow::Key(Window& window, const std::string& key) {
  const std::int64_t arrow = std::int64_t{kArrowSeconds} * document_.sampleRate;
  const int page = MarkerViewLength(state_.view, document_.sampleCount);
  const std::int64_t start = state_.view.start;
  if (key == "S" || key == "s" || key == "X" || key == "x") {
    Zoom(window, key == "X" || key == "x");
  } else if (key == "Left" || key == "Right") {
    MoveTo(start + (key == "Left" ? -arrow : arrow));
  } else if (key == "PageUp" || key == "PageDown") {
    MoveTo(start + (key == "PageUp" ? -page : page));
  } else if (key == "Home" || key == "End") {
    MoveTo(key == "Home" ? 0 : document_.sampleCount);
  } else if (key == "Up" || key == "Down") {
    state_.view.band = std::clamp(state_.view.band + (key == "Up" ? -1 : 1), 0, kMarkerBands - 1);
  } else if (key.size() == 1 && key[0] >= '1' && key[0] < '1' + std::ssize(kTools)) {
    Choose(window, static_cast<MarkerTool>(key[0] - '0'));
  } else if (key == "P" || key == "p") {
    AskPlace(window);
  } else if (key == "Escape" && state_.view.tool != MarkerTool::None) {
    state_.view.tool = MarkerTool::None;
    state_.view.instruction.clear();
  } else {
    return false;
  }
  return true;
}

void MarkerWindow::Press(Window& window, const ToolControl& control) {
  switch (control.number) {
    case kSave: SaveMarkers(window, document_, state_); return;
    case kExpand: return Zoom(window, true);
    case kShrink: return Zoom(window, false);
    default: break;
  }
  const int index = control.number - kFirstTool;
  if (index >= 0 && index < std::ssize(kTools)) Choose(window, static_cast<MarkerTool>(index + 1));
}

void MarkerWindow::Choose(Window& window, MarkerTool tool) {
  const ToolTexts& texts = kTools[IndexOf(tool)];
  const bool usable = tool == MarkerTool::DeleteLabel ? state_.set.HasLabels() : state_.set.HasMarkers();
  if (texts.refusal && !usable) return window.Notify(*texts.refusal);
  state_.view.tool = tool;
  Instruct(window, texts.instruction);
}

void MarkerWindow::Zoom(Window& window, bool expand) {
  const bool done = expand ? ExpandMarkerView(state_.view, document_.sampleCount, document_.sampleRate)
                           : ShrinkMarkerView(state_.view);
  if (!done) return window.Notify(expand ? kCannotExpand : kCannotShrink);
  Instruct(window, kZoomInstruction);
}

void MarkerWindow::Instruct(Window& window, UiText text) {
  state_.view.instruction = text;
  window.ShowStatus(text);
}

void MarkerWindow::Act(Window& window, const MarkerPoint& at) {
  if (document_.sampleCount == 0) return;
  state_.view.band = at.band;
  const MarkerStretch stretch = StretchAt(state_.set, at, document_.sampleCount);
  const MarkerSet before = state_.set;
  switch (state_.view.tool) {
    case MarkerTool::None: return;
    case MarkerTool::AddMarker: return Take(window, before, AddMarker(state_.set, Scale(), at));
    case MarkerTool::DeleteMarker: return Take(window, before, DeleteMarker(state_.set, Scale(), at));
    case MarkerTool::AddLabel: return LabelAt(window, at);
    case MarkerTool::DeleteLabel: return Take(window, before, DeleteLabel(state_.set, Scale(), at));
    case MarkerTool::PlayStretch:
      if (play_ && stretch.start < stretch.end) play_(window, stretch.start, stretch.end);
      return;
    case MarkerTool::SaveStretch: return SaveStretch(window, stretch);
  }
}

void MarkerWindow::Take(Window& window, const MarkerSet& before, const MarkerOutcome& outcome) {
  if (outcome.refusal) window.Notify(*outcome.refusal);
  if (!outcome.changed) return;
  state_.Changed(before);
  window.Repaint();
}

void MarkerWindow::LabelAt(Window& window, const MarkerPoint& at) {
  const LabelPlace place = PlaceOfLabel(state_.set, Scale(), at);
  if (place.refusal) return window.Notify(*place.refusal);
  const std::string text = AskLabelText(window, "", nullptr).value_or("");
  if (text.empty()) return;
  const MarkerSet before = state_.set;
  Take(window, before,
       {AppendLabel(state_.set, at.band, {place.stretch.start, place.stretch.end, text}), {}});
}

void MarkerWindow::SaveStretch(Window& window, MarkerStretch stretch) {
  if (stretch.start >= stretch.end) return;
  constexpr const FileKind& kKind = FileKindNamed("marked wav");
  const auto choice = window.AskSaveFile({kSaveStretchTitle, {kKind}, kKind.extension});
  if (!choice) return;
  const int length = stretch.end - stretch.start;
  ByteWriter file;
  WriteWavHeader(file, document_.sampleRate, 1, length);
  file.PutInt16sLE({document_.samples.data() + stretch.start, static_cast<std::size_t>(length)});
  if (SaveFile(window, choice->path, file) < 0) SayCannotSave(window);
}

/// A click in figures: band and time in seconds.
void MarkerWindow::AskPlace(Window& window) {
  if (state_.view.tool == MarkerTool::None) return window.ShowStatus(kChooseToolFirst);
  InputForm form{kPlaceTitle, {}};
  form.fields.push_back({kFirstField, FieldKind::Number, kBandLabel, Format("%d", state_.view.band + 1)});
  form.fields.push_back({kSecondField, FieldKind::Number, kTimeLabel, ""});
  while (window.AskInput(form)) {
    const int band = form.CountOf(kFirstField) - 1;
    const std::string& text = form.ValueOf(kSecondField);
    double seconds = -1;
    std::from_chars(text.data(), text.data() + text.size(), seconds);
    const double sample = std::nearbyint(seconds * document_.sampleRate);
    if (band < 0 || band >= kMarkerBands || !(sample >= 0 && sample <= document_.sampleCount)) {
      window.Notify(kNoSuchPlace);
      continue;
    }
    const auto position = static_cast<std::int32_t>(sample);
    const int length = MarkerViewLength(state_.view, document_.sampleCount);
    if (position < state_.view.start || position > state_.view.start + length)
      MoveTo(std::int64_t{position} - length / 2);
    return Act(window, {band, Scale().Column(position), position});
  }
}

std::string MarkerWindow::Hover(Point at) const {
  if (document_.sampleCount == 0 || document_.sampleRate <= 0) return {};
  const MarkerPoint point = PointAt(at);
  std::string line = Format(kHoverLine.Get(), point.sample / double(document_.sampleRate), point.sample);
  if (at.y < ClickOrigin().y) return line;
  line += Format(kHoverBand.Get(), point.band + 1);
  const MarkerStretch around = StretchAt(state_.set, point, document_.sampleCount);
  const double rate = document_.sampleRate;
  line += Format(kHoverStretch.Get(), around.start / rate, around.end / rate);
  for (const MarkerLabel& label : state_.set.Labels(point.band))
    if (!label.IsPoint() && label.start <= point.sample && point.sample < label.end)
      line += "  " + label.text;
  return line;
}

std::string MarkerWindow::Text() const {
  if (document_.sampleRate <= 0) return {};
  const auto seconds = [&](std::int32_t position) {
    return Format("%.6f", position / double(document_.sampleRate));
  };
  std::string text;
  for (int band = 0; band < kMarkerBands; ++band) {
    for (const std::int32_t position : state_.set.Markers(band))
      text += Format(kMarkerLine.Get(), band + 1, seconds(position).c_str());
    for (const MarkerLabel& label : state_.set.Labels(band))
      text += Format(kLabelLine.Get(), band + 1, seconds(label.start).c_str(), seconds(label.end).c_str(),
                     label.text.c_str());
  }
  return text;
}

}  // namespace parlowen
