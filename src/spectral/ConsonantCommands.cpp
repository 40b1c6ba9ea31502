#include "spectral/ConsonantCommands.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "base/Arithmetic.h"
#include "base/Files.h"
#include "base/Format.h"
#include "spectral/ConsonantFile.h"
#include "spectral/SpectralPlot.h"
#include "spectral/ToolTexts.h"
#include "ui/Messages.h"
#include "ui/Plot.h"
#include "ui/Saving.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kFrameTitle = "辅音的帧参数";
constexpr UiText kStretchTitle = "一段辅音的参数图";
constexpr UiText kFrameTime = "T=%.2f 秒";
constexpr UiText kStretchTimes = "T=%.2f -- %.2f（秒）";
constexpr UiText kRateRange = "辅音分析的采样频率必须在 16000Hz--22050Hz 之间！";
constexpr UiText kNoStretch =
    "\t\t要分析的辅音段未定义！\n\r请用鼠标左、右键在上方的幅度能量图或下方的波形图中定义辅音段";
constexpr UiText kNoStretchCaption = "辅音段未定义";
constexpr UiText kLowGravity =
    "谱图重心的频率偏低，可能不是清辅音！\n\r请在上方的幅度能量图中用鼠标左键选择辅音断面";
constexpr UiText kSaveTitle = "保存辅音数据文件", kOpenTitle = "打开辅音数据文件";
constexpr UiText kNoFile = "无辅音数据文件！";
constexpr const char* kTextName = "Cons.txt";
constexpr UiText kHead = "Band energy strengths graph (Band No. 2--24):";
constexpr UiText kMeasures = "Gravity: %.2lf    Dispersion: %.2lf    Mean_intensity(db)=%.2lf";
constexpr UiText kGravity = "Gravity", kDispersion = "Dispersion", kIntensity = "Mean_intensity(db)";

constexpr double kLowestGravity = 9.0;  // bands
constexpr std::size_t kLargestFile = std::size_t{1} << 26;

constexpr int kPanelTop = 60, kBarsLeft = 50, kBarWidth = 10, kBarsHeight = 150;
constexpr double kFinestTick = 1e-3;              // seconds
constexpr int kPanelLeft = 70, kPanelRight = 44;  // what the panels leave free

FileDialog ConsonantDialog(UiText title) {
  constexpr const FileKind& kKind = FileKindNamed("con");
  return {title, {kKind}, kKind.extension};
}

bool RateFits(const SoundDocument& document) {
  return document.sampleRate >= kLowestConsonantRate && document.sampleRate <= kHighestConsonantRate;
}

std::string MeasuresLine(const ConsonantFrame& frame) {
  return Format(kMeasures.Get(), frame.gravity, frame.dispersion, frame.intensity);
}

void TakeFrame(const SoundDocument& document, ConsonantState& state) {
  const int start = document.selectionStart;
  if (std::int64_t{start} + kConsonantEndMargin < document.sampleCount)
    state.frame = AnalyseConsonantFrame(document.Samples(), document.sampleRate, start);
  state.stretch.clear();
  state.sampleRate = document.sampleRate;
  state.shownStart = start;
  state.sound = document.Stamp();
  state.shown = true;
}

class ConsonantWindow : public ToolWindow {
 public:
  ConsonantWindow(SoundDocument& document, ConsonantState& state) : document_(document), state_(state) {}
  std::string Name() const override { return "consonant"; }
  std::string Title() const override { return state_.stretch.empty() ? kFrameTitle : kStretchTitle; }
  Picture Draw(int width, int height) const override { return ConsonantPicture(state_, width, height); }
  std::string Text() const override {
    if (!state_.shown) return {};
    std::string text;
    if (state_.stretch.empty()) {
      text = std::string(kHead) + "\n";
      for (int band = 0; band < kBandCount; ++band)
        text += Format("%d\t%.6g\n", band + kFirstBand, state_.frame.bands[static_cast<std::size_t>(band)]);
      return text + MeasuresLine(state_.frame) + "\n";
    }
    for (std::size_t i = 0; i < state_.stretch.size(); ++i) {
      const ConsonantFrame& frame = state_.stretch[i];
      const double time =
          (state_.start + static_cast<double>(i) * state_.step) / std::max(1, state_.sampleRate);
      text += Format("%.3f\t%.2f\t%.2f\t%.2f\n", time, frame.gravity, frame.dispersion, frame.intensity);
    }
    return text;
  }
  void Closed(Window& window) override {
    state_.frameOpen = false;
    EndActivity(window, document_, Activity::Consonant);
  }

 private:
  SoundDocument& document_;
  ConsonantState& state_;
};

void Open(Window& window, SoundDocument& document, ConsonantState& state, bool oneFrame) {
  window.OpenToolWindow(std::make_unique<ConsonantWindow>(document, state));
  state.frameOpen = oneFrame;
  document.BeginTool(Activity::Consonant);
  window.Repaint();
}

void SaveStretch(Window& window, const ConsonantState& state) {
  const auto choice = window.AskSaveFile(ConsonantDialog(kSaveTitle));
  if (!choice) return window.Repaint();
  ConsonantRecord record{state.start, state.step, {}};
  for (const ConsonantFrame& frame : state.stretch)
    record.frames.push_back({frame.gravity, frame.dispersion});
  ByteWriter file;
  WriteConsonants(file, record);
  if (SaveFile(window, choice->path, file) < 0) window.Notify(messages::kCannotCreate, Icon::Error);
}

void AddBars(Picture& picture, const ConsonantFrame& frame) {
  const int base = kPanelTop + kBarsHeight;
  const double strongest = *std::max_element(frame.bands.begin(), frame.bands.end());
  for (int i = 0; i < kBandCount; ++i) {
    const int height = BandBarHeight(frame.bands[static_cast<std::size_t>(i)], strongest);
    const int x = kBarsLeft + i * kBarWidth;
    if (height > 0) {
      BoxMark bar{x, base - height, kBarWidth, height, colours::kBandBar};
      bar.outlined = true;
      picture.Add(bar);
    }
    const int band = i + kFirstBand;
    if (band % 2 == 0)
      picture.Add(TextMark{x + kBarWidth / 2, base + 14, Format("%d", band), colours::kText, 9,
                           Anchor::Middle, Face::Figures});
  }
  picture.Add(LineMark{{kBarsLeft, base}, {kBarsLeft + kBandCount * kBarWidth, base}, colours::kText});
}

/// The time under the panels: a frame lies over its step.
PlotScale SecondsOf(const ConsonantState& state, int width) {
  const double rate = std::max(1, state.sampleRate);
  const double end = state.start + static_cast<double>(state.stretch.size()) * state.step;
  return {state.start / rate, end / rate, kPanelLeft, std::max(kPanelLeft + 1, width - kPanelRight)};
}

/// A measure over time in a panel of its own.
void AddPanel(Picture& picture, const ConsonantState& state, const PlotScale& rows, double step, UiText name,
              Colour colour, double ConsonantFrame::*measure) {
  const PlotScale seconds = SecondsOf(state, picture.width);
  AddLevelAxis(picture, TicksEvery(rows, step), {seconds.from, seconds.to, seconds.from - 6});
  AddLine(picture, seconds.from, rows.to - 6, name, colour);
  BrokenLine curve;
  for (std::size_t i = 0; i < state.stretch.size(); ++i) {
    const double middle = state.start + (static_cast<double>(i) + 0.5) * state.step;
    curve.To({seconds.PixelOf(middle / std::max(1, state.sampleRate)),
              rows.PixelOf(std::clamp(state.stretch[i].*measure, rows.first, rows.last))});
  }
  AddCurve(picture, curve, colour);
}

}  // namespace

int BandBarHeight(double energy, double strongest) {
  if (!(energy > 0) || !(strongest > 0)) return 0;
  return std::max(0, TruncateToInt32(120 + 30 * std::log10(energy / strongest)));
}

Picture ConsonantPicture(const ConsonantState& state, int width, int height) {
  Picture picture{width, height, {}};
  if (!state.shown) return picture;
  const double rate = std::max(1, state.sampleRate);
  if (state.stretch.empty()) {
    AddLine(picture, 20, 24, kHead);
    AddLine(picture, 20, 44, MeasuresLine(state.frame));
    AddLine(picture, 600, 24, Format(kFrameTime.Get(), state.shownStart / rate));
    AddBars(picture, state.frame);
    return picture;
  }
  const double end = state.start + static_cast<double>(state.stretch.size()) * state.step;
  AddLine(picture, 20, 24, Format(kStretchTimes.Get(), state.start / rate, end / rate));
  const int panel = std::max(40, (height - 120) / 3 - 30), step = panel + 40;
  const auto rows = [&](int number, double low, double high) {
    return PlotScale{low, high, kPanelTop + number * step + panel, kPanelTop + number * step};
  };
  AddPanel(picture, state, rows(0, 0, 24), 4, kGravity, colours::kSpectrumRed, &ConsonantFrame::gravity);
  AddPanel(picture, state, rows(1, 0, 12), 2, kDispersion, colours::kSpectrumBlue,
           &ConsonantFrame::dispersion);
  AddPanel(picture, state, rows(2, -50, 100), 25, kIntensity, colours::kBlack, &ConsonantFrame::intensity);
  const PlotScale seconds = SecondsOf(state, width);
  AddColumnAxis(picture, seconds, RoundTicks(seconds, kTimeLabelRoom, kFinestTick), rows(2, 0, 1).from, {},
                kTimeUnit);
  return picture;
}

bool ConsonantFrameCommand(Window& window, SoundDocument& document, ConsonantState& state) {
  if (!RateFits(document)) return window.Refuse(kRateRange);
  if (document.selectionStart < 0) {
    window.ShowStatus(messages::kMarkFirst);
    return false;
  }
  TakeFrame(document, state);
  Open(window, document, state, true);
  if (state.frame.gravity < kLowestGravity) window.Notify(kLowGravity);
  return true;
}

bool ConsonantStretchCommand(Window& window, SoundDocument& document, ConsonantState& state) {
  if (!document.selectionDefined()) {
    window.ShowMessage(kNoStretch, kNoStretchCaption, Icon::None);
    return false;
  }
  if (!RateFits(document)) return window.Refuse(kRateRange);
  state.start = document.selectionStart;
  state.step = document.sampleRate / 100;
  state.sampleRate = document.sampleRate;
  state.stretch = AnalyseConsonant(document.Samples(), document.sampleRate, state.start,
                                   document.selectionEnd, state.frame);
  state.frame = state.stretch.back();
  state.sound = document.Stamp();
  state.shown = true;
  Open(window, document, state, false);
  if (window.AskYesNo(messages::kSaveFigures, messages::kSaveFiguresCaption)) SaveStretch(window, state);
  return true;
}

void ListConsonantFileCommand(Window& window, const std::string& exportFolder) {
  const auto choice = window.AskOpenFile(ConsonantDialog(kOpenTitle));
  if (!choice || !FileExists(choice->path)) return window.Notify(kNoFile, Icon::Error);
  const auto bytes = ReadWholeFile(choice->path, kLargestFile);
  const auto record = bytes ? ParseConsonants(*bytes) : std::nullopt;
  if (!record) return window.Notify(messages::kCannotOpenListing, Icon::Error);
  const std::string text = ConsonantText(*record);
  const std::string path = exportFolder.empty() ? kTextName : exportFolder + "/" + kTextName;
  if (SaveFile(window, path, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}) < 0)
    return window.Notify(messages::kCannotOpenListing, Icon::Error);
  window.OpenInEditor(path);
}

void FollowSelectedConsonant(Window& window, const SoundDocument& document, ConsonantState& state) {
  const bool moved = document.selectionStart >= 0 && document.selectionStart != state.shownStart;
  if (!state.frameOpen || !moved || !RateFits(document)) return;
  TakeFrame(document, state);
  window.Repaint();
}

}  // namespace parlowen
