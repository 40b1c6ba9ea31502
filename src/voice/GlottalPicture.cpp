#include "voice/GlottalPicture.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "base/Arithmetic.h"
#include "base/Format.h"
#include "ui/Colours.h"
#include "ui/Messages.h"
#include "ui/Plot.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kSpeech = "语音", kFlow = "声门流", kDerivative = "声门流导数", kSecondChannel = "声道2";
constexpr UiText kHarmonics = "谐波(dB)";
constexpr UiText kNames[] = {"F0(Hz)", "OQ", "QOQ", "SQ", "NAQ", "H1-H2(dB)", "HRF(dB)"};
constexpr UiText kMean = "平均", kDeviation = "标准差", kChosen = "周期";
constexpr UiText kFigures = "%d个周期  jitter=%s%%  shimmer=%s%%", kTurnedOver = "  波形已反相";
constexpr int kDecimals[] = {1, 3, 3, 2, 3, 1, 1};

constexpr int kLeft = 60, kRightMargin = 20;

/// Rows of the parts of a picture of this height.
struct Layout {
  PlotBox speech, flow, derivative, harmonics;
  int axis = 0;
  PlotStyle style;

  Layout(int width, int height) {
    style = PlotStyle{}.Scaled(std::clamp(std::min(width / 1024.0, height / 640.0), 0.8, 2.0));
    const int gap = style.name + style.name / 2;
    const int axisRows = style.AxisHeight() + style.name;
    const int lower = std::max(60, height * 3 / 10);
    const int band = std::max(20, (height - lower - axisRows - 4 * gap) / 3);
    const int columns = std::max(1, width - kLeft - kRightMargin);
    speech = {kLeft, gap, columns, band};
    flow = {kLeft, speech.Bottom() + 1 + gap, columns, band};
    derivative = {kLeft, flow.Bottom() + 1 + gap, columns, band};
    axis = derivative.Bottom() + 2;
    harmonics = {kLeft, axis + axisRows + gap, columns * 2 / 5,
                 std::max(20, height - axis - axisRows - 2 * gap - axisRows)};
  }
};

/// A number for the table; "--" for what is none.
std::string Number(double value, int decimals) {
  return std::isfinite(value) ? Format("%.*f", decimals, value) : "--";
}

/// A band with its frame and name, and the scale of its values: zero inside, both extremes at the edges.
PlotScale AddBand(Picture& picture, const PlotBox& box, const PlotStyle& style, const UiText& name,
                  double low, double high) {
  if (!(high > low)) high = low + 1;
  const PlotScale rows{low, high, box.Bottom(), box.top};
  if (rows.Holds(0)) {
    const int zero = rows.PixelOf(0);
    picture.Add(LineMark{{box.left, zero}, {box.Right(), zero}, colours::kGrid});
  }
  picture.Add(TextMark{box.left, box.top - style.name / 4, name, colours::kText, style.name});
  return rows;
}

/// The line of `count` values over the stretch, as smallest and largest a column where there are many.
template <typename ValueAt>
void AddWave(Picture& picture, const GlottalWave& wave, int width, const PlotScale& rows, ValueAt valueAt,
             Colour colour) {
  const int count = wave.end - wave.start;
  const auto sampleAt = [&](int x) { return std::int64_t{GlottalSampleAt(wave, x, width)} - wave.start; };
  const auto extremes = [&](std::int64_t from, std::int64_t end) {
    double low = valueAt(static_cast<int>(from)), high = low;
    for (std::int64_t i = from + 1; i < end; ++i) {
      const double value = valueAt(static_cast<int>(i));
      low = std::min(low, value);
      high = std::max(high, value);
    }
    return std::pair{low, high};
  };
  AddCurve(picture, WavePoints(kLeft, std::max(kLeft + 1, width - kRightMargin), count, sampleAt, extremes),
           rows, colour);
}

template <typename ValueAt>
std::pair<double, double> RangeOf(int count, ValueAt valueAt) {
  double low = 0, high = 0;
  for (int i = 0; i < count; ++i) {
    low = std::min(low, static_cast<double>(valueAt(i)));
    high = std::max(high, static_cast<double>(valueAt(i)));
  }
  return {low, high};
}

void AddHarmonics(Picture& picture, const GlottalWave& wave, const Layout& layout) {
  const PlotBox& box = layout.harmonics;
  double low = -20;
  for (const double level : wave.harmonics) low = std::min(low, level);
  low = std::floor(std::max(low, -80.0) / 20) * 20;
  const PlotScale rows{low, 10, box.Bottom(), box.top};
  const int most = std::max(2, static_cast<int>(wave.harmonics.size()));
  const PlotScale columns{0, static_cast<double>(most + 1), box.left, box.Right()};
  picture.Add(
      TextMark{box.left, box.top - layout.style.name / 4, kHarmonics, colours::kText, layout.style.name});
  AddLevelAxis(picture, TicksEvery(rows, 20),
               {box.left, box.Right(), box.left - 6, Anchor::Right, GridLines::Dotted}, layout.style);
  AddColumnAxis(picture, columns, TicksEvery(columns, most > 12 ? 5 : 1), box.Bottom() + 1, layout.style);
  const int width = std::max(1, box.width / (most + 1) / 2);
  for (std::size_t k = 0; k < wave.harmonics.size(); ++k) {
    const int x = columns.PixelOf(static_cast<double>(k + 1));
    const int top = rows.PixelOf(std::clamp(wave.harmonics[k], low, 10.0));
    picture.Add(BoxMark{x - width / 2, top, width, box.Bottom() - top + 1, colours::kCurve[1]});
  }
}

void AddTable(Picture& picture, const GlottalWave& wave, int chosen, const Layout& layout, int width) {
  const int left = layout.harmonics.Right() + 30, step = std::max(48, (width - kRightMargin - left - 70) / 3);
  const int row = layout.style.name * 3 / 2;
  int y = layout.harmonics.top;
  const auto text = [&](int x, const std::string& words, Anchor anchor = Anchor::Right) {
    picture.Add(TextMark{x, y, words, colours::kText, layout.style.name, anchor, Face::Interface});
  };
  const bool one = chosen >= 0 && chosen < std::ssize(wave.periods);
  text(left + 70 + step, kMean);
  text(left + 70 + 2 * step, kDeviation);
  if (one) text(left + 70 + 3 * step, std::string(kChosen) + Format(" %d", chosen + 1));
  int index = 0;
  for (const auto measure : kGlottalMeasures) {
    y += row;
    const int decimals = kDecimals[index];
    text(left, kNames[index++], Anchor::Left);
    text(left + 70 + step, Number(wave.mean.*measure, decimals));
    text(left + 70 + 2 * step, Number(wave.sd.*measure, decimals));
    if (one)
      text(left + 70 + 3 * step,
           Number(wave.periods[static_cast<std::size_t>(chosen)].measures.*measure, decimals));
  }
  y += row;
  text(left,
       Format(kFigures.Get(), static_cast<int>(wave.periods.size()), Number(wave.jitter, 2).c_str(),
              Number(wave.shimmer, 2).c_str()) +
           (wave.inverted ? kTurnedOver.Get() : ""),
       Anchor::Left);
}

}  // namespace

int GlottalColumn(const GlottalWave& wave, int sample, int width) {
  const std::int64_t length = std::max(1, wave.end - wave.start);
  return SaturateInt32(kLeft + (std::int64_t{sample} - wave.start) * (width - kLeft - kRightMargin) / length);
}

int GlottalSampleAt(const GlottalWave& wave, int x, int width) {
  const std::int64_t length = std::max(1, wave.end - wave.start),
                     columns = std::max(1, width - kLeft - kRightMargin);
  return wave.start + static_cast<int>(std::clamp<std::int64_t>((std::int64_t{x} - kLeft) * length / columns,
                                                                0, length - 1));
}

Picture GlottalPicture(const GlottalWave& wave, SampleSpan speech, SampleSpan second, int chosen, int width,
                       int height) {
  Picture picture{width, height, {}};
  const Layout layout(width, height);
  const int count = wave.end - wave.start;
  if (count < 1 || wave.sampleRate < 1) return picture;
  if (chosen >= 0 && chosen < std::ssize(wave.periods)) {
    const GlottalPeriod& period = wave.periods[static_cast<std::size_t>(chosen)];
    const int from = GlottalColumn(wave, period.start, width),
              to = GlottalColumn(wave, period.start + period.length, width);
    picture.Add(BoxMark{from, layout.speech.top, std::max(1, to - from),
                        layout.derivative.Bottom() - layout.speech.top, colours::kChosenPeriod});
  }
  const double sign = wave.inverted ? -1 : 1;
  const auto speechAt = [&](int i) { return sign * speech.At(wave.start + i); };
  const auto secondAt = [&](int i) { return static_cast<double>(second.At(wave.start + i)); };
  const auto flowAt = [&](int i) { return wave.flow[static_cast<std::size_t>(i)]; };
  const auto derivativeAt = [&](int i) { return wave.derivative[static_cast<std::size_t>(i)]; };

  auto [low, high] = RangeOf(count, speechAt);
  AddWave(picture, wave, width, AddBand(picture, layout.speech, layout.style, kSpeech, low, high), speechAt,
          colours::kWave);
  std::tie(low, high) = RangeOf(count, flowAt);
  AddWave(picture, wave, width, AddBand(picture, layout.flow, layout.style, kFlow, low, high), flowAt,
          colours::kCurve[2]);
  if (second.count > 0) {
    // Often a laryngograph: its steps stand where the closures should.
    std::tie(low, high) = RangeOf(count, secondAt);
    if (high > low)
      AddWave(picture, wave, width, {low, high, layout.derivative.Bottom(), layout.derivative.top}, secondAt,
              colours::kBehind);
    picture.Add(TextMark{layout.derivative.Right(), layout.derivative.top - layout.style.name / 4,
                         kSecondChannel, colours::kBehindName, layout.style.name, Anchor::Right});
  }
  std::tie(low, high) = RangeOf(count, derivativeAt);
  const PlotScale rows = AddBand(picture, layout.derivative, layout.style, kDerivative, low, high);
  AddWave(picture, wave, width, rows, derivativeAt, colours::kCurve[1]);
  for (const int mark : wave.marks) {
    const int x = GlottalColumn(wave, mark, width);
    picture.Add(LineMark{{x, layout.derivative.Bottom() - layout.derivative.height / 6},
                         {x, layout.derivative.Bottom()},
                         colours::kEnd});
  }
  const PlotScale time{wave.start / static_cast<double>(wave.sampleRate),
                       wave.end / static_cast<double>(wave.sampleRate), kLeft,
                       std::max(kLeft + 1, width - kRightMargin)};
  AddColumnAxis(picture, time, RoundTicks(time, kTimeLabelRoom), layout.axis, layout.style,
                messages::kSeconds);
  AddHarmonics(picture, wave, layout);
  AddTable(picture, wave, chosen, layout, width);
  return picture;
}

}  // namespace parlowen
