#include "synthesis/SynthesisPicture.h"

#include <algorithm>

#include "base/Arithmetic.h"
#include "base/Format.h"
#include "synthesis/TargetDrawing.h"

namespace parlowen {
namespace {

constexpr Colour kPresent = 0x008000, kTarget = 0xD00000, kInvalid = 0xF0F0F0, kWave = 0x1F3F77;
constexpr int kAxisHeight = 20, kLeastWave = 40, kTopGap = 6;
constexpr int kLabels[] = {512, 64, 128, 256};
constexpr const char* kNoVoice = "本段没有浊音：请先求出基频";

void AddFrequencyAxis(Picture& picture, int right) {
  picture.Add(BoxMark{0, 0, right, kHighestTargetRow, kInvalid});
  picture.Add(BoxMark{0, kLowestTargetRow + 1, right, kTargetRows - kLowestTargetRow - 1, kInvalid});
  for (const int label : kLabels) {
    const int row = RowOfTargetFrequency(label);
    picture.Add(LineMark{{0, row}, {right - 1, row}, colours::kGrid});
    picture.Add(
        TextMark{right + 4, row + 4, Format("%d", label), colours::kText, 11, Anchor::Left, Face::Figures});
  }
  picture.Add(TextMark{right + 4, kTargetRows - 6, "Hz", colours::kText, 11, Anchor::Left, Face::Figures});
}

/// A line through the frames that have a period, a short one for a frame alone.
void AddMelody(Picture& picture, std::span<const float> periods, const SynthesisView& view, int right,
               int sampleRate, Colour colour, int thickness) {
  PolylineMark piece{{}, colour, thickness};
  const auto finish = [&] {
    if (piece.points.size() == 1)
      picture.Add(BoxMark{piece.points[0].x - 1, piece.points[0].y - 1, 3, 3, colour});
    if (piece.points.size() > 1) picture.Add(piece);
    piece.points.clear();
  };
  for (int frame = 0; frame < std::ssize(periods); ++frame) {
    const int x = view.ColumnOf(frame);
    if (x >= right) break;
    const float period = periods[static_cast<std::size_t>(frame)];
    const int row = period >= 1 ? RowOfTargetFrequency(sampleRate / static_cast<double>(period)) : -1;
    if (x < 0 || row < 0 || row >= kTargetRows) {
      finish();
    } else {
      piece.points.push_back({x, row});
    }
  }
  finish();
}

void AddTimeAxis(Picture& picture, const SynthesisJob& job, const SynthesisView& view, int right) {
  constexpr int kPixelsPerLabel = 70;
  const int top = kTargetRows;
  picture.Add(LineMark{{0, top}, {right - 1, top}, colours::kText});
  int step = 100;  // frames
  for (const int finer : {50, 20, 10, 5})
    if (finer * view.zoom >= kPixelsPerLabel) step = finer;
  // Seconds of the sound, at whole steps.
  for (int frame = (step - job.firstFrame % step) % step; frame < job.frames; frame += step) {
    const int x = frame * view.zoom - view.scroll;
    if (x < 0 || x >= right) continue;
    picture.Add(LineMark{{x, top}, {x, top + 4}, colours::kText});
    const Anchor anchor = x < 24 ? Anchor::Left : x > right - 24 ? Anchor::Right : Anchor::Middle;
    picture.Add(TextMark{x, top + 16, Format("%.2f", (job.firstFrame + frame) * 0.01), colours::kText, 11,
                         anchor, Face::Figures});
  }
  picture.Add(TextMark{right + 4, top + 16, "T(秒)", colours::kText, 11});
}

void AddWave(Picture& picture, const SynthesisJob& job, const SynthesisView& view, int right, int top,
             int height) {
  const std::span<const std::int16_t> wave =
      std::span(job.samples).first(static_cast<std::size_t>(job.length));
  int peak = 256;
  for (const std::int16_t sample : wave) peak = std::max(peak, std::abs(int{sample}));
  const int middle = top + height / 2;
  picture.Add(LineMark{{0, middle}, {right - 1, middle}, colours::kGrid});
  // Sample of the selection at the left edge of a column.
  const auto sampleAt = [&](int x) {
    const std::int64_t at =
        (std::int64_t{job.firstFrame} * view.zoom + x + view.scroll) * job.sampleRate / (100 * view.zoom);
    return static_cast<int>(std::clamp<std::int64_t>(at - job.start, 0, job.length));
  };
  PolylineMark line{{}, kWave};
  for (int x = 0; x < right; ++x) {
    const int from = sampleAt(x), end = sampleAt(x + 1);
    if (end <= from) continue;
    const auto [low, high] = std::minmax_element(wave.begin() + from, wave.begin() + end);
    // Up and down in turn, so that neighbouring columns join.
    const bool down = x % 2 == 0;
    line.points.push_back({x, middle - (down ? *high : *low) * (height / 2 - 2) / peak});
    line.points.push_back({x, middle - (down ? *low : *high) * (height / 2 - 2) / peak});
  }
  if (!line.points.empty()) picture.Add(std::move(line));
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
  AddMelody(picture, present, view, right, job.sampleRate, kPresent, 2);
  AddMelody(picture, state.target, view, right, job.sampleRate, kTarget, 2);
  for (const Point& point : points) {
    const int x = view.ColumnOf(point.x);
    if (x >= 0 && x < right) picture.Add(BoxMark{x - 2, point.y - 2, 5, 5, kTarget});
  }
  if (std::none_of(present.begin(), present.end(), [](float period) { return period >= 1; }))
    picture.Add(TextMark{8, kTargetRows / 2, kNoVoice, colours::kText, 14});
  AddTimeAxis(picture, job, view, right);
  const int waveTop = kTargetRows + kAxisHeight + kTopGap;
  if (height - waveTop >= kLeastWave) AddWave(picture, job, view, right, waveTop, height - waveTop);
  return picture;
}

}  // namespace parlowen
