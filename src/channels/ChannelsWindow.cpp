#include "channels/ChannelsWindow.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <memory>
#include <utility>

#include "base/Files.h"
#include "base/Format.h"
#include "channels/ChannelFiles.h"
#include "document/EditCommands.h"
#include "ui/Messages.h"
#include "ui/Saving.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr int kPlayFirst = 1, kPlaySecond = 2, kFullBand = 1201, kCalibrate = 1202, kSave = 1203,
              kOpen = 1204, kShow = 1205, kExport = 1206;

constexpr UiText kTitle = "双声道数据";
constexpr UiText kPlayFirstButton = "放声道1";
constexpr UiText kPlaySecondButton = "放声道2";
constexpr UiText kCalibrateButton = "校准";
constexpr UiText kOpenButton = "打开数据";
constexpr UiText kHoverLine = "%.3f s  样点 %d  声道1：%d  声道2：%d";
constexpr UiText kHoverRatio = "  鼻音能量比 %.1f%%";
constexpr UiText kFullBandOn = "全频带 ✓";
constexpr UiText kNoEqualSound = "校准段内两个声道都应有声音！";
constexpr UiText kSaveTitle = "保存鼻音能量比数据文件", kOpenTitle = "打开鼻音能量比数据文件";
constexpr UiText kNoCurve = "没有鼻音能量比数据！";
constexpr UiText kNoNasFile = "无此鼻音能量比数据文件！";
constexpr const char* kTextName = "NasRatio.txt";

FileDialog NasDialog(UiText title) {
  constexpr const FileKind& kKind = FileKindNamed("nas");
  return {title, {kKind}, kKind.extension};
}

ByteSpan BytesOf(const std::string& text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

}  // namespace

void ShowTwoChannelsCommand(Window& window, const ChannelsDesk& desk) {
  if (!RequireTwoChannels(window, desk.document)) return;
  desk.state.DropOpened();
  window.OpenToolWindow(std::make_unique<ChannelsWindow>(desk));
  desk.document.BeginTool(Activity::TwoChannels);  // a window open before has ended its own
  window.Repaint();
}

ChannelsWindow::ChannelsWindow(const ChannelsDesk& desk) : desk_(desk) {
  view_.width = desk.document.paneWidth;
}

std::string ChannelsWindow::Title() const { return kTitle; }

std::vector<ToolControl> ChannelsWindow::Controls() const {
  const bool two = desk_.document.twoChannel;
  const bool curve = !desk_.state.Curve(desk_.document).values.empty();
  return {{kPlayFirst, kPlayFirstButton, two},
          {kPlaySecond, kPlaySecondButton, two},
          {kFullBand, desk_.state.settings.fullBand ? kFullBandOn : kFullBandName, two},
          {kCalibrate, kCalibrateButton, two},
          {kSave, messages::kSaveData, curve},
          {kOpen, kOpenButton, true},
          {kShow, messages::kShowData, curve},
          {kExport, messages::kExportStereo, two}};
}

Picture ChannelsWindow::Draw(int width, int height) const {
  view_.width = std::max(width, kPaneMargin + 1);
  view_.start =
      std::clamp(view_.start, 0, std::max(0, desk_.document.sampleCount - view_.Length(desk_.document)));
  return ChannelsPicture(desk_.document, desk_.state, view_, height);
}

void ChannelsWindow::Click(Window& window, Point at, MouseButton button, bool) {
  if (!desk_.document.twoChannel) return;
  const int sample = view_.SampleAt(desk_.document, at.x);
  if (button == MouseButton::Left) {
    MarkStart(desk_.document, desk_.states, sample);
  } else {
    MarkEnd(desk_.document, desk_.states, sample);
  }
  window.Repaint();
}

bool ChannelsWindow::Key(Window& window, const std::string& key) {
  const int length = view_.Length(desk_.document);
  std::string name = key;
  if (name.size() == 1) name[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(name[0])));
  if (name == "1" || name == "2") {
    Play(window, name == "1" ? 1 : 2);
  } else if (name == "S" || name == "X") {
    ZoomBy(name == "S");
  } else if (name == "Left" || name == "Right") {
    MoveTo(view_.start + (name == "Left" ? -1 : 1) * std::int64_t{length} / 10);
  } else if (name == "PageUp" || name == "PageDown") {
    MoveTo(view_.start + (name == "PageUp" ? -1 : 1) * std::int64_t{length});
  } else if (name == "Home") {
    MoveTo(0);
  } else if (name == "End") {
    MoveTo(desk_.document.sampleCount);
  } else {
    return false;
  }
  return true;
}

void ChannelsWindow::Press(Window& window, const ToolControl& control) {
  switch (control.number) {
    case kPlayFirst: return Play(window, 1);
    case kPlaySecond: return Play(window, 2);
    case kFullBand: return ToggleFullBand(window);
    case kCalibrate: return Calibrate(window);
    case kSave: return SaveCurve(window);
    case kOpen: return OpenCurve(window);
    case kShow: return ShowCurve(window);
    case kExport: return ExportStereo(window);
    default: return;
  }
}

void ChannelsWindow::Scroll(Window&, int steps) {
  MoveTo(view_.start + std::int64_t{steps} * view_.Length(desk_.document) / 10);
}

std::string ChannelsWindow::Hover(Point at) const {
  const SoundDocument& document = desk_.document;
  if (!document.twoChannel || document.sampleCount == 0 || document.sampleRate <= 0) return {};
  const int sample = std::min(view_.SampleAt(document, at.x), document.sampleCount - 1);
  std::string line = Format(kHoverLine.Get(), sample / double(document.sampleRate), sample,
                            document.samples[sample], document.samples2[sample]);
  // The frame whose middle is nearest.
  const NasalanceCurve& curve = desk_.state.Curve(document);
  if (curve.step < 1) return line;
  const int frame = (sample - curve.start + curve.step / 2) / curve.step - 1;
  if (frame < 0 || frame >= std::ssize(curve.values)) return line;
  const float value = curve.values[static_cast<std::size_t>(frame)];
  return std::isnan(value) ? line : line + Format(kHoverRatio.Get(), static_cast<double>(value));
}

void ChannelsWindow::Closed(Window& window) {
  desk_.document.EndTool(Activity::TwoChannels);
  window.Repaint();
}

void ChannelsWindow::Play(Window& window, int channel) {
  const SoundDocument& document = desk_.document;
  if (!RequireTwoChannels(window, document)) return;
  if (!desk_.play) return;
  const bool selected = document.selectionDefined();
  desk_.play(window, channel, selected ? document.selectionStart : 0,
             selected ? document.selectionEnd : document.sampleCount);
}

void ChannelsWindow::ToggleFullBand(Window& window) {
  desk_.state.settings.fullBand = !desk_.state.settings.fullBand;
  desk_.state.DropOpened();
  window.ShowStatus(FiguresLine(desk_.document, desk_.state));
}

void ChannelsWindow::Calibrate(Window& window) {
  const SoundDocument& document = desk_.document;
  if (!RequireTwoChannels(window, document)) return;
  if (!document.selectionDefined()) return window.ShowStatus(messages::kMarkFirst);
  const float ratio = MeasureGainRatio(document.Samples(), {document.samples2.data(), document.sampleCount},
                                       document.sampleRate, document.selectionStart, document.selectionEnd,
                                       desk_.state.settings.fullBand);
  if (ratio <= 0) return window.Notify(kNoEqualSound);
  desk_.state.settings.gainRatio = ratio;
  desk_.state.DropOpened();
  window.ShowStatus(FiguresLine(document, desk_.state));
}

void ChannelsWindow::SaveCurve(Window& window) {
  if (desk_.state.Curve(desk_.document).values.empty()) return window.Notify(kNoCurve);
  const auto choice = window.AskSaveFile(NasDialog(kSaveTitle));
  if (!choice) return;
  if (SaveFile(window, choice->path, NasBytesOf(desk_.state.Curve(desk_.document))) < 0)
    window.Notify(messages::kCannotCreate, Icon::Error);
}

void ChannelsWindow::OpenCurve(Window& window) {
  const auto choice = window.AskOpenFile(NasDialog(kOpenTitle));
  if (!choice) return;
  constexpr std::size_t kLargestNas = 20 + 4 * std::size_t{kMaxSamples};
  const auto bytes = ReadWholeFile(choice->path, kLargestNas);
  auto curve = bytes ? ParseNas(*bytes) : std::nullopt;
  if (!curve) return window.Notify(kNoNasFile, Icon::Error);
  desk_.state.ShowOpened(std::move(*curve), FileNameOf(choice->path), desk_.document);
  window.ShowStatus(FiguresLine(desk_.document, desk_.state));
}

void ChannelsWindow::ShowCurve(Window& window) {
  const NasalanceCurve& curve = desk_.state.Curve(desk_.document);
  if (curve.values.empty()) return window.Notify(kNoCurve);
  const std::string opened = desk_.state.OpenedName(desk_.document);
  const std::string source = opened.empty() ? desk_.document.filePath : opened;
  const std::string text = NasRatioText(curve, source, desk_.document.sampleRate);
  const std::string path = desk_.exportFolder.empty() ? kTextName : desk_.exportFolder + "/" + kTextName;
  if (SaveFile(window, path, BytesOf(text)) < 0)
    return window.Notify(messages::kCannotOpenListing, Icon::Error);
  window.OpenInEditor(path);
}

void ChannelsWindow::ExportStereo(Window& window) {
  if (!RequireTwoChannels(window, desk_.document)) return;
  constexpr const FileKind& kKind = FileKindNamed("saved wav");
  const auto choice = window.AskSaveFile({messages::kExportStereo, {kKind}, kKind.extension});
  if (!choice) return;
  if (SaveFile(window, choice->path, StereoWavBytesOf(desk_.document)) < 0)
    window.ShowError(messages::kBadSaveName, messages::kBadNameCaption);
}

void ChannelsWindow::MoveTo(std::int64_t start) {
  const std::int64_t last = std::max(0, desk_.document.sampleCount - view_.Length(desk_.document));
  view_.start = static_cast<int>(std::clamp<std::int64_t>(start, 0, last));
}

void ChannelsWindow::ZoomBy(bool out) {
  // A column is never less than a sample.
  if (!out && view_.Columns(desk_.document).SamplesPerColumn() < 2) return;
  view_.zoom = out ? std::max(1, view_.zoom / 2) : view_.zoom * 2;
  MoveTo(view_.start);
}

}  // namespace parlowen
