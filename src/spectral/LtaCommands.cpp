#include "spectral/LtaCommands.h"

#include <algorithm>
#include <memory>

#include "base/Files.h"
#include "base/Format.h"
#include "spectral/LtaFile.h"
#include "spectral/SpectralPlot.h"
#include "spectral/ToolTexts.h"
#include "ui/Messages.h"
#include "ui/Saving.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kTitle = "帧参数（LTA 谱）/波形";
constexpr UiText kTextHead = "LTA 谱\tT=%.1lf\n";
constexpr UiText kName = "LTA 谱";
constexpr UiText kRedIs = "红色是";
constexpr UiText kPreviousOne = "前一个";
constexpr UiText kComparison = "比较";
constexpr UiText kDifference = "谱的差图";
constexpr UiText kZeroMean = "（归一为0均值）";
constexpr UiText kDeviation = "均方差=%.2lf(db)";
constexpr UiText kLargest = "最大差=%.1lfdb";
constexpr UiText kLargestAt = "在%dHz";
constexpr UiText kSaveButton = "保存此LTA谱";
constexpr UiText kCompareButton = "LTA谱比较";
constexpr UiText kSaveTitle = "保存 lta 谱图数据文件", kOpenTitle = "打开 lta 谱图数据文件";
constexpr UiText kNoSuchFile = "无此 lta 谱图数据文件！";
constexpr UiText kRatesDiffer = "采样频率不一致，不能比较！";

constexpr double kFrameSeconds = 0.0025;
constexpr std::size_t kLargestFile = 1 << 20;

int Compute(Window& window, const SoundDocument& document, LtaState& state) {
  const bool selected = document.selectionDefined();
  const int start = selected ? document.selectionStart : document.viewStart;
  const int end = selected ? document.selectionEnd : document.viewStart + document.viewLength;
  state.previous = state.levels;
  state.hasPrevious = state.frames > 0;
  state.difference.reset();
  state.sampleRate = document.sampleRate;
  state.soundPath = document.filePath;
  state.start = start;
  state.end = end;
  LtaSpectrum levels;
  // The curve runs along while it is computed.
  const int frames = ComputeLongTermSpectrum(document.Samples(), document.sampleRate, start, end, levels,
                                             [&](int count, const LtaSpectrum& average) {
                                               state.levels = average;
                                               state.frames = count;
                                               state.time = count * kFrameSeconds;
                                               window.Repaint();
                                             });
  state.levels = levels;
  state.frames = frames;
  state.time = frames * kFrameSeconds;
  window.Repaint();
  return 2;
}

int Save(Window& window, const LtaState& state) {
  if (state.frames == 0 || !IsFinite(state.levels)) return 1;
  constexpr const FileKind& kKind = FileKindNamed("saved lta");
  const auto choice = window.AskSaveFile({kSaveTitle, {kKind}, kKind.extension});
  if (!choice) {
    window.Repaint();
    return 1;
  }
  ByteWriter file;
  WriteLta(file, {state.levels, state.sampleRate});
  if (SaveFile(window, choice->path, file) < 0) {
    window.Notify(messages::kCannotCreate, Icon::Error);
    return 1;
  }
  return 0;
}

int Compare(Window& window, const SoundDocument& document, LtaState& state) {
  const auto choice = window.AskOpenFile({kOpenTitle, {FileKindNamed("lta")}});
  if (!choice) return 1;
  const auto bytes = ReadWholeFile(choice->path, kLargestFile);
  const auto record = bytes ? ParseLta(*bytes) : std::nullopt;
  if (!record) {
    window.Notify(kNoSuchFile, Icon::Error);
    return 1;
  }
  state.previous = record->levels;  // also when the comparison is refused
  state.hasPrevious = true;
  state.difference.reset();
  // The loaded sound may be another one than the spectrum's.
  if (record->sampleRate != state.sampleRate || record->sampleRate != document.sampleRate) {
    state.hasPrevious = false;
    window.Notify(kRatesDiffer);
    return 1;
  }
  state.difference = CompareLongTermSpectra(state.levels, state.previous, state.sampleRate);
  window.Repaint();
  return 0;
}

SpectralPlot LeftPlot(const LtaState& state, int width, int height) {
  const int panel = std::max(256, (width - 220) / 2);
  return {60, height - 60, panel / 256.0, 2.0, kLtaBins, std::max(1, state.sampleRate)};
}
SpectralPlot RightPlot(const LtaState& state, int width, int height) {
  SpectralPlot plot = LeftPlot(state, width, height);
  plot.left = plot.Right() + 90;
  plot.base = height / 2 + 40;  // four lines of figures stand above
  return plot;
}

std::vector<std::string> DifferenceLines(const LtaDifference& difference) {
  return {kDifference, kZeroMean, Format(kDeviation.Get(), difference.deviation),
          Format(kLargest.Get(), difference.largest), Format(kLargestAt.Get(), difference.largestHz)};
}

class LtaWindow : public ToolWindow {
 public:
  LtaWindow(SoundDocument& document, LtaState& state) : document_(document), state_(state) {}
  std::string Name() const override { return "lta"; }
  std::string Title() const override { return kTitle; }
  std::vector<ToolControl> Controls() const override { return {{0, kSaveButton}, {0, kCompareButton}}; }
  Picture Draw(int width, int height) const override {
    width_ = width;
    return LtaPicture(state_, width, height);
  }
  void Press(Window& window, const ToolControl& control) override {
    RunLta(window, document_, state_, control.text == kSaveButton.Get() ? LtaMode::Save : LtaMode::Compare);
  }
  std::string Hover(Point at) const override {
    const int k = LeftPlot(state_, width_, 0).PointAt(at.x);
    if (k < 0 || state_.frames == 0) return {};
    return Format("%.0f Hz  %.1f dB", k * state_.sampleRate / 512.0,
                  state_.levels[static_cast<std::size_t>(k)] / 2);
  }
  std::string Text() const override {
    std::string text = Format(kTextHead.Get(), state_.time);
    if (state_.difference) text += JoinLines(DifferenceLines(*state_.difference));
    for (std::size_t k = 0; k < kLtaBins; ++k)
      text +=
          Format("%.1f\t%.2f\n", static_cast<double>(k) * state_.sampleRate / 512.0, state_.levels[k] / 2);
    return text;
  }
  void Closed(Window& window) override { EndActivity(window, document_, Activity::Lta); }

 private:
  SoundDocument& document_;
  LtaState& state_;
  mutable int width_ = 1024;  ///< as drawn last
};

}  // namespace

int RunLta(Window& window, const SoundDocument& document, LtaState& state, LtaMode mode) {
  switch (mode) {
    case LtaMode::Compute: return Compute(window, document, state);
    case LtaMode::Compare: return Compare(window, document, state);
    case LtaMode::Save: return Save(window, state);
  }
  return 1;
}

void LongTermSpectrumCommand(Window& window, SoundDocument& document, LtaState& state) {
  window.OpenToolWindow(std::make_unique<LtaWindow>(document, state));
  document.BeginTool(Activity::Lta);
  RunLta(window, document, state, LtaMode::Compute);
}

Picture LtaPicture(const LtaState& state, int width, int height) {
  Picture picture{width, height, {}};
  const SpectralPlot left = LeftPlot(state, width, height);
  AddLine(picture, 60, 24, kName);
  AddLine(picture, 160, 24, Format("T=%.1lf", state.time));
  if (state.sampleRate <= 0) return picture;
  constexpr double kUnitsPerDecibel = 2.0;  // the doubled scale
  AddAxes(picture, left, state.sampleRate / 2000, 20, 100, kUnitsPerDecibel);
  picture.Add(CurveOf(left, state.levels.data(), colours::kBlack));
  if (state.hasPrevious) {
    picture.Add(CurveOf(left, state.previous.data(), colours::kSpectrumRed));
    AddLine(picture, 260, 24, kRedIs, colours::kSpectrumRed);
    AddLine(picture, 310, 24, kPreviousOne, colours::kSpectrumRed);
  }
  if (!state.difference) return picture;
  const SpectralPlot right = RightPlot(state, width, height);
  AddLine(picture, right.left, 24, kComparison);
  AddAxes(picture, right, state.sampleRate / 2000, 20, 60, kUnitsPerDecibel);
  PolylineMark curve = CurveOf(right, state.difference->curve.data(), colours::kSpectrumBlue);
  for (Point& point : curve.points) point.y = std::clamp(point.y, 0, height);
  picture.Add(std::move(curve));
  const std::vector<std::string> lines = DifferenceLines(*state.difference);
  // The first two share a row, so that four stand above the curve.
  AddLine(picture, right.left + 60, 24, lines[0]);
  for (std::size_t i = 1; i < lines.size(); ++i)
    AddLine(picture, right.left + (i == 1 ? 118 : 60), 24 + 20 * static_cast<int>(i - 1), lines[i]);
  return picture;
}

}  // namespace parlowen
