#include "spectral/FramePicture.h"

#include <algorithm>
#include <utility>

#include "base/Format.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kCurves = "黑色为 LPC 谱图，红色为窄带谱图";
constexpr UiText kPosition = "本帧位置 : %.2lf秒（Fi, Bi 分别是第 i 个共振峰的频率和宽度，单位 Hz）";
constexpr UiText kLevelTwoPitches = "音强 E=%4.1lfdb  基频 F0=%3.0f/%dHz";
constexpr UiText kLevelOnePitch = "音强 E=%4.1lfdb  基频 F0=%3.0fHz";
constexpr UiText kFormants = "共振峰:";
constexpr UiText kComparedCurves =
    "绿色背景为A帧谱图，红色为B帧谱图（在波形图中用鼠标左、右键选择要比较的A、B帧位置）";
constexpr UiText kComparedTimes = "A 帧：T=%.2f 秒       B 帧：T=%.2f秒";
constexpr UiText kComparedHead = "共振峰      F1      F2      F3        带宽：B1     B2     B3";
constexpr UiText kFrameA = "  A 帧： %5d  %5d  %5d (Hz)      %5d   %5d  %5d (Hz)";
constexpr UiText kFrameB = "  B 帧： %5d  %5d  %5d (Hz)      %5d   %5d  %5d (Hz)";
constexpr UiText kTimeA = "A 帧：T=%.2f 秒", kTimeB = "B 帧：T=%.2f秒", kNameA = "A 帧：", kNameB = "B 帧：";
constexpr UiText kFormantsHead = "共振峰", kBandwidthHead = "带宽：", kHertz = "(Hz)";
constexpr UiText kFrameTitle = "帧谱图";
constexpr UiText kComparisonTitle = "对比";

constexpr int kTextLeft = 20, kFirstLine = 24, kLineStep = 20;
constexpr int kTableLeft = 640, kTableTop = 110;
constexpr int kAxisRoom = 40;                                // under the base line
constexpr int kVoicedTop = 3500;                             // Hz
constexpr double kFrameScale = 1.2, kComparisonScale = 1.5;  // units of the curves a dB
constexpr double kRowsPerDecibel = 3.6, kComparedRowsPerDecibel = 2.3;

constexpr int kBandwidthColumn = 70;  // behind the frequency

int Whole(double value) { return TruncateToInt32(value); }

std::string FrequencyText(const FormantFrame& formants, int index) {
  return Format("F%d=%-4d", index + 1, Whole(formants.frequency[static_cast<std::size_t>(index)]));
}
std::string BandwidthText(const FormantFrame& formants, int index) {
  return Format("B%d=%5d", index + 1, Whole(formants.bandwidth[static_cast<std::size_t>(index)]));
}

}  // namespace

std::vector<std::string> FrameLines(const FrameParameters& frame) {
  std::vector<std::string> lines;
  lines.push_back(kCurves);
  lines.push_back(Format(kPosition.Get(), frame.time));
  if (frame.f0 > 0 && frame.f0Cepstral > 0) {
    lines.push_back(Format(kLevelTwoPitches.Get(), frame.level, frame.f0, frame.f0Cepstral));
  } else {
    lines.push_back(Format(kLevelOnePitch.Get(), frame.level, frame.f0 > 0 ? frame.f0 : frame.f0Cepstral));
  }
  lines.push_back(kFormants);
  for (int i = 0; i < frame.formants.count; ++i)
    lines.push_back(FrequencyText(frame.formants, i) + "  " + BandwidthText(frame.formants, i));
  return lines;
}

std::vector<std::string> ComparisonLines(const FrameComparison& comparison) {
  const auto row = [](UiText format, const ComparedFrame& frame) {
    return Format(format.Get(), Whole(frame.frequency[0]), Whole(frame.frequency[1]),
                  Whole(frame.frequency[2]), Whole(frame.bandwidth[0]), Whole(frame.bandwidth[1]),
                  Whole(frame.bandwidth[2]));
  };
  return {kComparedCurves, Format(kComparedTimes.Get(), comparison.a.time, comparison.b.time), kComparedHead,
          row(kFrameA, comparison.a), row(kFrameB, comparison.b)};
}

SpectralPlot FramePlot(int sampleRate, int height) {
  return {100, height - kAxisRoom, 2, kRowsPerDecibel / kFrameScale, 256, std::max(1, sampleRate)};
}

SpectralPlot ComparisonPlot(const FrameState& state) {
  SpectralPlot plot = FramePlot(state.sampleRate, kComparisonHeight);
  plot.perPoint = 1;
  plot.perUnit = kComparedRowsPerDecibel / kComparisonScale;
  if (state.comparison.voiced) plot.points = std::min(256, kVoicedTop * 512 / plot.sampleRate + 1);
  return plot;
}

Picture FramePicture(const FrameState& state, int width, int height) {
  Picture picture{width, height, {}};
  if (!state.hasFrame) return picture;
  const SpectralPlot plot = FramePlot(state.sampleRate, height);
  AddAxes(picture, plot, state.sampleRate / 2000, 20, 100, kFrameScale);
  picture.Add(CurveOf(plot, state.frame.narrow.data(), colours::kSpectrumRed));
  picture.Add(CurveOf(plot, state.frame.lpc.data(), colours::kBlack));
  const std::vector<std::string> lines = FrameLines(state.frame);
  constexpr int kHeadLines = 3;  // the others are the formants, in a table of their own
  for (int i = 0; i < kHeadLines; ++i)
    AddLine(picture, kTextLeft, kFirstLine + i * kLineStep, lines[static_cast<std::size_t>(i)]);
  const int left = kTableLeft + 20;
  AddLine(picture, left, kTableTop, lines[kHeadLines]);
  for (int i = 0; i < state.frame.formants.count; ++i) {
    const int y = kTableTop + (i + 1) * kLineStep;
    AddLine(picture, left, y, FrequencyText(state.frame.formants, i));
    AddLine(picture, left + kBandwidthColumn, y, BandwidthText(state.frame.formants, i));
  }
  return picture;
}

namespace {

/// The formants of both frames in columns: figures stand under each other whatever the letters are wide.
void AddTable(Picture& picture, const FrameComparison& comparison) {
  constexpr int kColumns[] = {130, 190, 250, 390, 450, 510};  // where they end
  constexpr int kTimesColumn = 190, kUnitGap = 6, kBandwidthLeft = 300;
  int y = kFirstLine + kLineStep;
  AddLine(picture, kTextLeft, y, Format(kTimeA.Get(), comparison.a.time));
  AddLine(picture, kTimesColumn, y, Format(kTimeB.Get(), comparison.b.time));
  const auto row = [&](const std::string& name, const std::string& behind, const auto& cell) {
    y += kLineStep;
    AddLine(picture, kTextLeft, y, name);
    for (int i = 0; i < 6; ++i)
      picture.Add(TextMark{kColumns[i], y, cell(i), colours::kText, 13, Anchor::Right, Face::Figures});
    for (const int column : {2, 5})
      if (!behind.empty()) AddLine(picture, kColumns[column] + kUnitGap, y, behind);
  };
  row(kFormantsHead, "", [](int i) { return Format("%c%d", i < 3 ? 'F' : 'B', i % 3 + 1); });
  AddLine(picture, kBandwidthLeft, y, kBandwidthHead);
  for (const auto& [name, frame] : {std::pair{kNameA, &comparison.a}, {kNameB, &comparison.b}})
    row(name, kHertz, [frame = frame](int i) {
      const auto formant = static_cast<std::size_t>(i % 3);
      return Format("%d", Whole(i < 3 ? frame->frequency[formant] : frame->bandwidth[formant]));
    });
}

}  // namespace

Picture ComparisonPicture(const FrameState& state) {
  Picture picture{kComparisonWidth, kComparisonHeight, {}};
  if (!state.hasComparison) return picture;
  const FrameComparison& comparison = state.comparison;
  const SpectralPlot plot = ComparisonPlot(state);
  for (int k = 0; k < plot.points; ++k) {
    const int y = std::min(plot.base, plot.YOf(comparison.a.curve[static_cast<std::size_t>(k)]));
    picture.Add(BoxMark{plot.XOf(k), y, 1, plot.base - y + 1, colours::kSpectrumBars});
  }
  AddAxes(picture, plot, comparison.voiced ? 3 : state.sampleRate / 2000, 20, 100, kComparisonScale);
  picture.Add(CurveOf(plot, comparison.b.curve.data(), colours::kSpectrumRed));
  const std::vector<std::string> lines = ComparisonLines(comparison);
  AddLine(picture, kTextLeft, kFirstLine, kFrameTitle);
  AddLine(picture, kTextLeft + 60, kFirstLine, kComparisonTitle);
  AddLine(picture, kTextLeft + 110, kFirstLine, lines[0]);
  AddTable(picture, comparison);
  return picture;
}

}  // namespace parlowen
