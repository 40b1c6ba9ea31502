#include "channels/ChannelsPicture.h"

#include <algorithm>
#include <cmath>

#include "base/Arithmetic.h"
#include "base/Format.h"
#include "document/WavePyramid.h"
#include "dsp/Decibel.h"
#include "ui/Messages.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kOralBandName = "350--650 Hz";
constexpr UiText kGainRatio = "  增益比 %.3f";
constexpr UiText kFigures = "  鼻音能量比：平均 %.1f%%  标准差 %.1f%%  最小 %.1f%%  最大 %.1f%%";
constexpr UiText kNoseName = "声道1：鼻", kMouthName = "声道2：口", kLevelName = "幅度 (dB)",
                 kRatioName = "鼻音能量比 (%)";
constexpr int kLineHeight = 18, kAxisHeight = 18, kGap = 4, kTitleHeight = 16;
constexpr double kDecibelSpan = 90.0;  // a full-scale square wave
constexpr double kFinestTick = 1e-3;
constexpr PlotStyle kScaleStyle{.text = 9};

struct Band {
  int top = 0, height = 0;
  int Bottom() const { return top + height - 1; }
};

struct Layout {
  Band first, second, levels, ratio;
  explicit Layout(int height) {
    const int room = std::max(40, height - kLineHeight - kAxisHeight - 3 * kGap - 2 * kTitleHeight);
    first = {kLineHeight, room * 3 / 10};
    second = {first.Bottom() + 1 + kGap, first.height};
    levels = {second.Bottom() + 1 + kGap + kTitleHeight, room * 17 / 100};
    ratio = {levels.Bottom() + 1 + kGap + kTitleHeight, room - 2 * first.height - levels.height};
  }
};

void AddName(Picture& picture, int baseline, const std::string& name, Colour colour) {
  picture.Add(TextMark{kPaneMargin + 4, baseline, name, colour, 12});
}

void AddWaveform(Picture& picture, SampleSpan channel, const SampleScale& columns, Band band, int range,
                 Colour colour, const std::string& name) {
  const int middle = band.top + band.height / 2;
  picture.Add(LineMark{{kPaneMargin, middle}, {picture.width - 1, middle}, colours::kGrid});
  const auto points = WavePoints(
      columns.left, picture.width, channel.count, [&](int x) { return columns.SampleAt(x); },
      ExtremesFrom(channel));
  AddCurve(picture, points, {0, static_cast<double>(range), middle, band.top + 1}, colour);
  AddName(picture, band.top + 12, name, colour);
}

PlotScale RowsOf(Band band, double largest) { return {0, largest, band.Bottom(), band.top}; }

/// The level in dB of every column, over 10 ms where a column is shorter.
void AddLevels(Picture& picture, SampleSpan channel, int sampleRate, const SampleScale& columns, Band band,
               Colour colour) {
  std::vector<CurvePoint> curve;
  for (int x = columns.left; x < picture.width && columns.SampleAt(x) < channel.count; ++x) {
    const int start = static_cast<int>(columns.SampleAt(x));
    const int next = SaturateInt32(columns.SampleAt(x + 1));
    const int end = std::min(channel.count, std::max(next, start + std::max(1, sampleRate / 100)));
    std::int64_t sum = 0;
    for (int i = start; i < end; ++i) sum += std::int64_t{channel.data[i]} * channel.data[i];
    curve.push_back({x, PowerToDb(static_cast<double>(sum) / (end - start), 0)});
  }
  AddCurve(picture, curve, RowsOf(band, kDecibelSpan), colour);
}

void AddScale(Picture& picture, Band band, double step, double largest) {
  AddLevelAxis(picture, TicksEvery(RowsOf(band, largest), step),
               {kPaneMargin, picture.width - 1, 1, Anchor::Left, GridLines::Dotted}, kScaleStyle);
}

void AddRatio(Picture& picture, const NasalanceCurve& curve, const SampleScale& columns, Band band) {
  AddScale(picture, band, 50, 100);
  const PlotScale rows = RowsOf(band, 100);
  BrokenLine line;
  for (std::size_t i = 0; i < curve.values.size(); ++i) {
    const int x = columns.ColumnOf(curve.start + static_cast<std::int64_t>(i + 1) * curve.step);
    if (std::isnan(curve.values[i]) || x < kPaneMargin || x >= picture.width)
      line.Break();
    else
      line.To({x, rows.PixelOf(curve.values[i])});
  }
  AddCurve(picture, line, colours::kRatio);
  AddName(picture, band.top - 4, kRatioName, colours::kRatio);
}

}  // namespace

SampleScale ChannelsView::Columns(const SoundDocument& document) const {
  return {start, std::max(1, document.sampleCount), std::int64_t{std::max(1, width - kPaneMargin)} * zoom,
          kPaneMargin};
}

int ChannelsView::SampleAt(const SoundDocument& document, int x) const {
  const std::int64_t sample = Columns(document).SampleAt(std::max(x, kPaneMargin));
  return static_cast<int>(std::clamp<std::int64_t>(sample, 0, document.sampleCount));
}

int ChannelsView::Length(const SoundDocument& document) const { return document.sampleCount / zoom; }

std::string FiguresLine(const SoundDocument& document, const ChannelsState& state) {
  const NasalanceCurve& curve = state.Curve(document);
  const NasalanceFigures figures = FiguresOf(curve.values);
  const std::string opened = state.OpenedName(document);
  std::string line = !opened.empty() ? opened : state.settings.fullBand ? kFullBandName : kOralBandName;
  line += Format(kGainRatio.Get(), static_cast<double>(curve.gainRatio));
  if (figures.count == 0) return line;
  return line + Format(kFigures.Get(), figures.mean, figures.deviation, figures.smallest, figures.largest);
}

Picture ChannelsPicture(const SoundDocument& document, const ChannelsState& state, const ChannelsView& view,
                        int height) {
  Picture picture{view.width, height, {}};
  if (!document.twoChannel || document.sampleRate <= 0) {
    picture.Add(
        TextMark{view.width / 2, height / 2, messages::kNoTwoChannels, colours::kText, 14, Anchor::Middle});
    return picture;
  }
  const Layout layout(height);
  const SampleScale columns = view.Columns(document);
  const SampleSpan nose = document.Samples(), mouth{document.samples2.data(), document.sampleCount};
  // One scale for both.
  const int range = WaveRange(std::max(PeakOf(ExtremesOfAll(nose)), PeakOf(ExtremesOfAll(mouth))));
  picture.Add(TextMark{kPaneMargin, 13, FiguresLine(document, state), colours::kText, 12});
  AddWaveform(picture, nose, columns, layout.first, range, colours::kWave, kNoseName);
  AddWaveform(picture, mouth, columns, layout.second, range, colours::kSecondWave, kMouthName);
  AddScale(picture, layout.levels, 30, kDecibelSpan);
  AddName(picture, layout.levels.top - 4, kLevelName, colours::kText);
  AddLevels(picture, nose, document.sampleRate, columns, layout.levels, colours::kWave);
  AddLevels(picture, mouth, document.sampleRate, columns, layout.levels, colours::kSecondWave);
  AddRatio(picture, state.Curve(document), columns, layout.ratio);
  const PlotScale seconds = PlotScale::Seconds(columns, document.sampleRate, picture.width);
  AddColumnAxis(picture, seconds, RoundTicks(seconds, kTimeLabelRoom, kFinestTick), height - kAxisHeight, {},
                kTimeUnit);
  SelectionColumns marked;
  if (document.selectionStart >= 0) marked.start = columns.ColumnOf(document.selectionStart);
  if (document.selectionEnd >= 0) marked.end = columns.ColumnOf(document.selectionEnd);
  AddSelection(picture,
               {kPaneMargin, kLineHeight, picture.width - kPaneMargin, height - kAxisHeight - kLineHeight},
               marked);
  return picture;
}

}  // namespace parlowen
