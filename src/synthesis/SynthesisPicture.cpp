#include "synthesis/SynthesisPicture.h"

#include <algorithm>

#include "base/Format.h"
#include "document/WavePyramid.h"
#include "synthesis/TargetDrawing.h"
#include "ui/Plot.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr int kAxisHeight = 20, kLeastWave = 40, kTopGap = 6;
constexpr int kLabels[] = {512, 64, 128, 256};
constexpr PlotStyle kStyle{.text = 11};
constexpr double kFrame = 0.01;  // seconds
constexpr UiText kNoVoice = "本段没有浊音：请先求出基频";

void AddFrequencyAxis(Picture& picture, int right) {
  picture.Add(BoxMark{0, 0, right, kHighestTargetRow, colours::kInvalid});
  picture.Add(BoxMark{0, kLowestTargetRow + 1, right, kTargetRows - kLowestTargetRow - 1, colours::kInvalid});
  std::vector<Tick> ticks;
  for (const int label : kLabels)
    ticks.push_back({RowOfTargetFrequency(label), static_cast<double>(label), Format("%d", label)});
  AddLevelAxis(picture, ticks, {0, right - 1, right + 4, Anchor::Left}, kStyle);
  picture.Add(TextMark{right + 4, kTargetRows - 6, "Hz", colours::kText, 11, Anchor::Left, Face::Figures});
}

/// A line through the frames that have a period.
void AddMelody(Picture& picture, std::span<const float> periods, const SynthesisView& view, int right,
               int sampleRate, Colour colour) {
  BrokenLine line;
  for (int frame = 0; frame < std::ssize(periods); ++frame) {
    const int x = view.ColumnOf(frame);
    if (x >= right) break;
    const float period = periods[static_cast<std::size_t>(frame)];
    const int row = period >= 1 ? RowOfTargetFrequency(sampleRate / static_cast<double>(period)) : -1;
    if (x < 0 || row < 0 || row >= kTargetRows)
      line.Break();
    else
      line.To({x, row});
  }
  AddCurve(picture, line, colour);
}

void AddTimeAxis(Picture& picture, const SynthesisJob& job, const SynthesisView& view, int right) {
  // Seconds of the sound.
  const double first = (job.firstFrame + static_cast<double>(view.scroll) / view.zoom) * kFrame;
  const PlotScale seconds{first, first + right * kFrame / view.zoom, 0, right};
  AddColumnAxis(picture, seconds, RoundTicks(seconds, kTimeLabelRoom, kFrame), kTargetRows, kStyle,
                kTimeUnit);
}

void AddWave(Picture& picture, const SynthesisJob& job, const SynthesisView& view, int right, int top,
             int height) {
  const SampleSpan wave{job.samples.data(), job.length};
  const MinMax all = ExtremesOfAll(wave);
  const int middle = top + height / 2, peak = std::max(256, PeakOf(all));
  picture.Add(LineMark{{0, middle}, {right - 1, middle}, colours::kGrid});
  // Sample of the selection at the left edge of a column.
  const SampleScale columns{-std::int64_t{job.start}, std::max(1, job.sampleRate),
                            std::int64_t{100} * view.zoom, 0};
  const std::int64_t before = std::int64_t{job.firstFrame} * view.zoom + view.scroll;
  const auto points = WavePoints(
      0, right, job.length, [&](int x) { return columns.SampleAt(before + x); }, ExtremesFrom(wave));
  AddCurve(picture, points, {0, static_cast<double>(peak), middle, middle - height / 2 + 2}, colours::kWave);
}

}  // namespace

Picture SynthesisPicture(const SynthesisState& state, std::span<const float> present,
                         const std::vector<Point>& points, const SynthesisView& view, int width, int height) {
  Picture picture{width, height, {}};
  const SynthesisJob& job = state.job;
  const int room = std::max(1, width - kSynthesisGutter);
  const int right =
      static_cast<int>(std::clamp<std::int64_t>(std::int64_t{job.frames} * view.zoom - view.scroll, 1, room));
  AddFrequencyAxis(picture, right);
  AddMelody(picture, present, view, right, job.sampleRate, colours::kPresentPitch);
  AddMelody(picture, state.target, view, right, job.sampleRate, colours::kTargetPitch);
  for (const Point& point : points) {
    const int x = view.ColumnOf(point.x);
    if (x >= 0 && x < right) picture.Add(BoxMark{x - 2, point.y - 2, 5, 5, colours::kTargetPitch});
  }
  if (std::none_of(present.begin(), present.end(), [](float period) { return period >= 1; }))
    picture.Add(TextMark{8, kTargetRows / 2, kNoVoice, colours::kText, 14});
  if (view.cursor && job.sampleRate > 0) {
    const std::int64_t frames = (std::int64_t{job.start} + *view.cursor) * 100 * view.zoom / job.sampleRate;
    const std::int64_t x = frames - std::int64_t{job.firstFrame} * view.zoom - view.scroll;
    if (x >= 0 && x < right)
      picture.Add(LineMark{{static_cast<int>(x), 0}, {static_cast<int>(x), height - 1}, colours::kCursor});
  }
  AddTimeAxis(picture, job, view, right);
  const int waveTop = kTargetRows + kAxisHeight + kTopGap;
  if (height - waveTop >= kLeastWave) AddWave(picture, job, view, right, waveTop, height - waveTop);
  return picture;
}

}  // namespace parlowen
