#include "prosody/DurationChart.h"

#include <algorithm>

#include "base/Arithmetic.h"
#include "base/Format.h"
#include "base/IpaCodes.h"
#include "ui/Plot.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kTitle = "音长统计结果";
constexpr UiText kGroupLine = "第%d组  %s  %d 个  平均值 %.1f ms  标准差 %.1f ms";

constexpr int kLeft = 30, kTop = 45, kBaseLine = 205;  // the frame
constexpr int kHighestBar = 35, kLowestBar = 225;
constexpr int kBarStep = 40, kBarIndent = 10, kBarWidth = 20;
constexpr double kMillisecondsPerPixel = 3.12, kScaleStep = 400.0;
constexpr PlotStyle kStyle{.text = 9, .tick = 3};

int ScaleOf(const std::vector<DurationGroup>& groups) {
  double largest = 0;
  for (const DurationGroup& group : groups) largest = std::max(largest, group.mean);
  return TruncateToInt32(largest / kScaleStep) + 1;
}

/// Milliseconds up the frame.
PlotScale RowsOf(int scale) {
  const int height = kBaseLine - kTop;
  return {0, kMillisecondsPerPixel * scale * height, kBaseLine, kTop};
}

int TopOf(double mean, int scale) {
  return std::clamp(RowsOf(scale).PixelOf(mean) - 1, kHighestBar, kLowestBar);
}

/// Crossing diagonals, every sixth pixel.
void AddHatch(Picture& picture, int left, int top, int right, int bottom) {
  const int width = right - left, height = bottom - top;
  for (int offset = 6 - height % 6 - height; offset < width; offset += 6) {
    const int from = std::max(0, -offset), to = std::min(height, width - offset);
    if (from >= to) continue;
    picture.Add(
        LineMark{{left + offset + from, top + from}, {left + offset + to, top + to}, colours::kHatch});
    picture.Add(
        LineMark{{right - offset - from, top + from}, {right - offset - to, top + to}, colours::kHatch});
  }
}

}  // namespace

int BarsIn(int width) { return std::max(1, (width - kLeft) / kBarStep); }

Picture DurationPicture(const std::vector<DurationGroup>& groups, int first, int width, int height) {
  Picture picture{width, height, {}};
  const int scale = ScaleOf(groups);
  picture.Add(PolylineMark{
      {{kLeft, kTop}, {width - 1, kTop}, {width - 1, kBaseLine}, {kLeft, kBaseLine}, {kLeft, kTop}}});
  picture.Add(TextMark{kLeft - 2, kTop - 8, "ms", colours::kText, 11, Anchor::Right, Face::Figures});
  AddLevelAxis(picture, TicksEvery(RowsOf(scale), 100.0 * scale),
               {kLeft, kLeft, kLeft - 4, Anchor::Right, GridLines::None}, kStyle);
  const int count = static_cast<int>(groups.size());
  for (int g = first; g < count && g - first < BarsIn(width); ++g) {
    const DurationGroup& group = groups[static_cast<std::size_t>(g)];
    const int left = kLeft + (g - first) * kBarStep + kBarIndent, right = left + kBarWidth;
    const int end = TopOf(group.mean, scale);
    const int top = std::min(end, kBaseLine), bottom = std::max(end, kBaseLine);
    AddHatch(picture, left, top, right, bottom);
    picture.Add(PolylineMark{{{left, top}, {right, top}, {right, bottom}, {left, bottom}, {left, top}}});
    const int middle = left + kBarWidth / 2;
    picture.Add(TextMark{middle, kLowestBar + 16, Format("%3d", g + 1), colours::kText, 12, Anchor::Middle,
                         Face::Figures});
    picture.Add(TextMark{middle, kLowestBar + 32, IpaFromGbk(group.name), colours::kText, 12, Anchor::Middle,
                         Face::Ipa});
  }
  return picture;
}

std::string DurationChart::Title() const { return kTitle; }

Picture DurationChart::Draw(int width, int height) const {
  fitting_ = BarsIn(width);
  return DurationPicture(groups_, first_, width, height);
}

void DurationChart::Scroll(Window&, int steps) {
  const int last = std::max(0, static_cast<int>(groups_.size()) - fitting_);
  first_ = static_cast<int>(std::clamp<std::int64_t>(std::int64_t{first_} + steps, 0, last));
}

bool DurationChart::Key(Window& window, const std::string& key) {
  const struct {
    const char* key;
    int steps;
  } moves[] = {{"Left", -1},           {"Right", 1},           {"PageUp", -fitting_},
               {"PageDown", fitting_}, {"Home", -kMostGroups}, {"End", kMostGroups}};
  for (const auto& move : moves) {
    if (key != move.key) continue;
    Scroll(window, move.steps);
    return true;
  }
  return false;
}

std::string DurationChart::Hover(Point at) const {
  if (at.x < kLeft) return {};
  const int group = first_ + (at.x - kLeft) / kBarStep;
  if (group >= static_cast<int>(groups_.size())) return {};
  const DurationGroup& hit = groups_[static_cast<std::size_t>(group)];
  return Format(kGroupLine.Get(), group + 1, IpaFromGbk(hit.name).c_str(), static_cast<int>(hit.count),
                hit.mean, hit.deviation);
}

}  // namespace parlowen
