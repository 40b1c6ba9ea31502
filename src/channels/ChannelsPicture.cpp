#include "channels/ChannelsPicture.h"

#include <algorithm>
#include <cmath>

#include "base/Arithmetic.h"
#include "base/Format.h"
#include "dsp/Decibel.h"

namespace parlowen {
namespace {

constexpr Colour kNose = 0x1F3F77, kMouth = 0xB03000, kRatio = 0x00664D, kSelectionFill = 0x3080FF;
constexpr int kLineHeight = 18, kAxisHeight = 18, kGap = 4, kTitleHeight = 16;
constexpr double kDecibelSpan = 90.0;  // a full-scale square wave
constexpr int kFullScale = 32768;

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

class Columns {
 public:
  Columns(const SoundDocument& document, const ChannelsView& view) : document_(document), view_(view) {}
  int Count() const { return std::max(0, view_.width - kPaneMargin); }
  int Start(int column) const { return view_.SampleAt(document_, kPaneMargin + column); }
  /// One behind the column's last sample; a column stands for at least one.
  int End(int column) const {
    return std::min(document_.sampleCount, std::max(Start(column) + 1, Start(column + 1)));
  }

 private:
  const SoundDocument& document_;
  const ChannelsView& view_;
};

int PeakOf(SampleSpan channel) {
  int peak = 0;
  for (int i = 0; i < channel.count; ++i) peak = std::max(peak, std::abs(int{channel.data[i]}));
  return peak;
}

void AddWaveform(Picture& picture, SampleSpan channel, const Columns& columns, Band band, int range,
                 Colour colour, const char* name) {
  const int middle = band.top + band.height / 2, reach = band.height / 2 - 1;
  const auto rowOf = [&](int value) { return middle - value * reach / range; };
  picture.Add(LineMark{{kPaneMargin, middle}, {picture.width - 1, middle}, colours::kGrid});
  PolylineMark wave{{}, colour};
  for (int c = 0; c < columns.Count() && columns.Start(c) < channel.count; ++c) {
    const auto [low, high] =
        std::minmax_element(channel.data + columns.Start(c), channel.data + columns.End(c));
    // Up and down in turn, so that neighbouring columns join.
    wave.points.push_back({kPaneMargin + c, rowOf(c % 2 == 0 ? *high : *low)});
    wave.points.push_back({kPaneMargin + c, rowOf(c % 2 == 0 ? *low : *high)});
  }
  if (!wave.points.empty()) picture.Add(std::move(wave));
  picture.Add(TextMark{kPaneMargin + 4, band.top + 12, name, colour, 12});
}

/// The level in dB of every column, over 10 ms where a column is shorter.
void AddLevels(Picture& picture, SampleSpan channel, int sampleRate, const Columns& columns, Band band,
               Colour colour) {
  PolylineMark curve{{}, colour};
  for (int c = 0; c < columns.Count() && columns.Start(c) < channel.count; ++c) {
    const int start = columns.Start(c);
    const int end = std::min(channel.count, std::max(columns.End(c), start + sampleRate / 100));
    std::int64_t sum = 0;
    for (int i = start; i < end; ++i) sum += std::int64_t{channel.data[i]} * channel.data[i];
    const double level = PowerToDb(static_cast<double>(sum) / (end - start), 0);
    const int y = band.Bottom() - TruncateToInt32(level * (band.height - 1) / kDecibelSpan);
    curve.points.push_back({kPaneMargin + c, y});
  }
  if (!curve.points.empty()) picture.Add(std::move(curve));
}

void AddScale(Picture& picture, Band band, std::initializer_list<int> values, int largest) {
  for (const int value : values) {
    const int y = band.Bottom() - value * (band.height - 1) / largest;
    picture.Add(LineMark{{kPaneMargin, y}, {picture.width - 1, y}, colours::kGrid, 1, LineStyle::Dashed});
    picture.Add(TextMark{1, std::clamp(y + 3, band.top + 8, band.Bottom()), Format("%d", value),
                         colours::kText, 9, Anchor::Left, Face::Figures});
  }
}

void AddRatio(Picture& picture, const SoundDocument& document, const NasalanceCurve& curve,
              const ChannelsView& view, Band band) {
  AddScale(picture, band, {0, 50, 100}, 100);
  PolylineMark piece{{}, kRatio, 2};
  const auto finish = [&] {
    if (piece.points.size() == 1)
      picture.Add(BoxMark{piece.points[0].x, piece.points[0].y - 1, 2, 2, kRatio});
    if (piece.points.size() > 1) picture.Add(piece);
    piece.points.clear();
  };
  for (std::size_t i = 0; i < curve.values.size(); ++i) {
    const std::int64_t middle = curve.start + static_cast<std::int64_t>(i + 1) * curve.step;
    const int x = view.ColumnOf(document, SaturateInt32(middle));
    if (std::isnan(curve.values[i]) || x < kPaneMargin || x >= picture.width) {
      finish();
      continue;
    }
    piece.points.push_back(
        {x, band.Bottom() - TruncateToInt32(double{curve.values[i]} * (band.height - 1) / 100.0)});
  }
  finish();
  picture.Add(TextMark{kPaneMargin + 4, band.top - 4, "鼻音能量比 (%)", kRatio, 12});
}

void AddAxis(Picture& picture, const SoundDocument& document, const ChannelsView& view, int top) {
  constexpr int kPixelsPerLabel = 70;
  picture.Add(LineMark{{kPaneMargin, top}, {picture.width - 1, top}, colours::kText});
  const double perColumn = view.SamplesPerColumn(document) / document.sampleRate;
  // The finest of 1, 2, 5 · 10^k ms that leaves room for the labels.
  std::int64_t step = 1;
  for (int i = 0; static_cast<double>(step) * 1e-3 < kPixelsPerLabel * perColumn && i < 18; ++i)
    step = i % 3 == 1 ? step * 5 / 2 : step * 2;
  const std::int64_t first = std::int64_t{view.start} * 1000 / document.sampleRate / step * step;
  for (std::int64_t time = first;; time += step) {
    const int x = view.ColumnOf(document, SaturateInt32(time * document.sampleRate / 1000));
    if (x >= picture.width) break;
    if (x < kPaneMargin) continue;
    picture.Add(LineMark{{x, top}, {x, top + 4}, colours::kText});
    const Anchor anchor = x < kPaneMargin + 20     ? Anchor::Left
                          : x > picture.width - 24 ? Anchor::Right
                                                   : Anchor::Middle;
    const std::string label = Format("%.3f", static_cast<double>(time) / 1000);
    picture.Add(TextMark{x, top + 14, label, colours::kText, 10, anchor, Face::Figures});
  }
}

void AddSelection(Picture& picture, const SoundDocument& document, const ChannelsView& view, int top,
                  int bottom) {
  const auto edge = [&](int sample, Colour colour) {
    const int x = view.ColumnOf(document, sample);
    if (sample >= 0 && x >= kPaneMargin && x < picture.width)
      picture.Add(LineMark{{x, top}, {x, bottom}, colour});
  };
  if (document.selectionDefined()) {
    const int from = std::max(kPaneMargin, view.ColumnOf(document, document.selectionStart));
    const int to = std::min(picture.width, view.ColumnOf(document, document.selectionEnd));
    if (to > from) picture.Add(BoxMark{from, top, to - from, bottom - top + 1, kSelectionFill, 0.18});
  }
  edge(document.selectionStart, colours::kStart);
  edge(document.selectionEnd, colours::kEnd);
}

}  // namespace

double ChannelsView::SamplesPerColumn(const SoundDocument& document) const {
  const double columns = std::max(1, width - kPaneMargin);
  return std::max(1, document.sampleCount) / columns / zoom;
}

int ChannelsView::SampleAt(const SoundDocument& document, int x) const {
  const double column = std::max(x, kPaneMargin) - kPaneMargin;
  const std::int64_t sample = start + TruncateToInt64(column * SamplesPerColumn(document));
  return static_cast<int>(std::clamp<std::int64_t>(sample, 0, document.sampleCount));
}

int ChannelsView::ColumnOf(const SoundDocument& document, int sample) const {
  const double offset = static_cast<double>(sample) - start;
  return kPaneMargin +
         TruncateToInt32(std::floor(std::clamp(offset / SamplesPerColumn(document), -1e6, 1e6)));
}

int ChannelsView::Length(const SoundDocument& document) const { return document.sampleCount / zoom; }

std::string FiguresLine(const SoundDocument& document, const ChannelsState& state) {
  const NasalanceCurve& curve = state.Curve(document);
  const NasalanceFigures figures = FiguresOf(curve.values);
  const std::string opened = state.OpenedName(document);
  std::string line = !opened.empty() ? opened : state.settings.fullBand ? "全频带" : "350--650 Hz";
  line += Format("  增益比 %.3f", static_cast<double>(curve.gainRatio));
  if (figures.count == 0) return line;
  return line + Format("  鼻音能量比：平均 %.1f%%  标准差 %.1f%%  最小 %.1f%%  最大 %.1f%%", figures.mean,
                       figures.deviation, figures.smallest, figures.largest);
}

Picture ChannelsPicture(const SoundDocument& document, const ChannelsState& state, const ChannelsView& view,
                        int height) {
  Picture picture{view.width, height, {}};
  if (!document.twoChannel || document.sampleRate <= 0) {
    picture.Add(TextMark{view.width / 2, height / 2, "没有双声道数据！", colours::kText, 14, Anchor::Middle});
    return picture;
  }
  const Layout layout(height);
  const Columns columns(document, view);
  const SampleSpan nose = document.Samples(), mouth{document.samples2.data(), document.sampleCount};
  // One scale for both: the smallest of 32768, 16384 … 256 that holds them.
  const int peak = std::max(PeakOf(nose), PeakOf(mouth));
  int range = kFullScale;
  while (range > 256 && peak <= range / 2) range /= 2;

  picture.Add(TextMark{kPaneMargin, 13, FiguresLine(document, state), colours::kText, 12});
  AddWaveform(picture, nose, columns, layout.first, range, kNose, "声道1：鼻");
  AddWaveform(picture, mouth, columns, layout.second, range, kMouth, "声道2：口");
  AddScale(picture, layout.levels, {0, 30, 60, 90}, 90);
  picture.Add(TextMark{kPaneMargin + 4, layout.levels.top - 4, "幅度 (dB)", colours::kText, 12});
  AddLevels(picture, nose, document.sampleRate, columns, layout.levels, kNose);
  AddLevels(picture, mouth, document.sampleRate, columns, layout.levels, kMouth);
  AddRatio(picture, document, state.Curve(document), view, layout.ratio);
  AddAxis(picture, document, view, height - kAxisHeight);
  AddSelection(picture, document, view, kLineHeight, height - kAxisHeight - 1);
  return picture;
}

}  // namespace parlowen
