#include "prosody/IntonationPicture.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

#include "base/Arithmetic.h"
#include "base/Format.h"
#include "prosody/ToneCurve.h"
#include "ui/Plot.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kTopLine = "上线 %.2f半音/秒", kBaseLine = "下线 %.2f半音/秒";
constexpr UiText kDurationBars = "停延率", kEnergyBars = "音强比";
constexpr UiText kSpeakerHead = "说话人调域 %.2f--%.2f半音";

constexpr int kLeft = 60, kBarRows = 120, kPlotBottom = 160, kPlotMargins = 200;
constexpr double kFarAway = 1e6;  // pixels: no number of a file reaches farther

int Truncated(double value) { return TruncateToInt32(std::clamp(value, -kFarAway, kFarAway)); }

/// Outlines a box whose corners are included.
void AddOutline(Picture& picture, Point from, Point to, Colour colour, int width) {
  picture.Add(PolylineMark{{from, {to.x, from.y}, to, {from.x, to.y}, from}, colour, width});
}

void AddUnits(Picture& picture, const IntonationState& state, const IntonationLayout& layout) {
  const Intonation& intonation = *state.result;
  const double rate = intonation.sampleRate;
  for (const int boundary : intonation.boundaries) {
    const int x = layout.Column(boundary / rate);
    picture.Add(
        LineMark{{x, 40}, {x, layout.height - kBarRows}, colours::kUnitBoundary, 1, LineStyle::Dashed});
  }
  int lastNameEnd = 0;
  for (std::size_t u = 0; u < intonation.units.size(); ++u) {
    const IntonationUnit& unit = intonation.units[u];
    const bool chosen = state.chosen == static_cast<int>(u);
    const Colour colour = chosen ? colours::kPicked : colours::kUnitBox;
    const int left = layout.Column(unit.start / rate), right = layout.Column(unit.end / rate);
    if (!unit.IsPause())
      AddOutline(picture, {left, layout.Row(unit.top)}, {right, layout.Row(unit.base)}, colour,
                 chosen ? 2 : 1);
    // Names that do not fit are left out, but for the chosen one.
    const int middle = (left + right) / 2, half = TextWidth(unit.name, 12) / 2;
    if (unit.IsPause() || (middle - half < lastNameEnd && !chosen)) continue;
    picture.Add(TextMark{middle, layout.Row(unit.top) - 6, unit.name, colour, 12, Anchor::Middle, Face::Ipa});
    lastNameEnd = middle + half;
  }
}

void AddCompared(Picture& picture, const IntonationState& state, const IntonationLayout& layout) {
  if (!state.compared) return;
  const double shift = state.result->StartSeconds();
  for (const IntonationUnit& unit : state.compared->units) {
    if (unit.IsPause()) continue;
    const Point from{layout.Column(shift + state.compared->SecondsFromStart(unit.start)),
                     layout.Row(unit.top)};
    const Point to{layout.Column(shift + state.compared->SecondsFromStart(unit.end)), layout.Row(unit.base)};
    AddOutline(picture, from, to, colours::kComparedMelody, 2);
  }
}

void AddMelody(Picture& picture, const Intonation& intonation, const IntonationLayout& layout) {
  for (const MelodyPoint& point : intonation.melody)
    picture.Add(
        BoxMark{layout.Column(point.Seconds()) - 1, layout.Row(point.semitones) - 1, 3, 3, colours::kMelody});
  // The close copy joins the points of one unit.
  std::size_t unit = 0;
  BrokenLine copy;
  for (const MelodyPoint& point : intonation.closeCopy) {
    const int sample = SampleOfFrame(point.frame, intonation.sampleRate);
    while (unit < intonation.boundaries.size() && sample >= intonation.boundaries[unit]) {
      copy.Break();
      ++unit;
    }
    const Point at{layout.Column(point.Seconds()), layout.Row(point.semitones)};
    copy.To(at);
    picture.Add(BoxMark{at.x - 2, at.y - 2, 5, 5, colours::kMelodyCopy});
  }
  AddCurve(picture, copy, colours::kMelodyCopy, 1);
}

/// The line as far as it lies between the lowest and the highest row.
void AddLine(Picture& picture, const Intonation& intonation, const IntonationLayout& layout,
             const std::optional<IntonationLine>& line, UiText name, Colour colour, int x) {
  if (!line) return;
  double from = layout.start, to = layout.end;
  for (const double edge : {layout.low, layout.high}) {
    if (line->slope == 0) continue;
    const double crossing = layout.start + (edge - line->atStart) / line->slope;
    const bool entersThere = (edge == layout.low) == (line->slope > 0);
    (entersThere ? from : to) = entersThere ? std::max(from, crossing) : std::min(to, crossing);
  }
  if (from < to)
    picture.Add(LineMark{{layout.Column(from), layout.Row(intonation.LineAt(*line, from))},
                         {layout.Column(to), layout.Row(intonation.LineAt(*line, to))},
                         colour,
                         2,
                         LineStyle::Dashed});
  picture.Add(TextMark{x, 20, Format(name.Get(), line->slope), colour, 12});
}

void AddAxes(Picture& picture, const Intonation& intonation, const IntonationLayout& layout) {
  const PlotScale rows{layout.low, layout.high, layout.height - kPlotBottom,
                       layout.height - kPlotBottom - (layout.height - kPlotMargins)};
  AddLevelAxis(picture, RoundTicks(rows, 30, 1), {kLeft, layout.Right(), kLeft - 6, Anchor::Right});
  picture.Add(TextMark{8, 20, kSemitoneHead, colours::kText, 12});
  if (intonation.speaker)
    picture.Add(TextMark{layout.Right(), 20,
                         Format(kSpeakerHead.Get(), intonation.speaker->low, intonation.speaker->high),
                         colours::kText, 12, Anchor::Right});
  const PlotScale columns{layout.start, layout.end, kLeft, layout.Right()};
  AddColumnAxis(picture, columns, RoundTicks(columns, kTimeLabelRoom, 0.01), layout.height - kPlotBottom, {},
                "s");
}

/// Bars of the two ratios side by side; 1 is the mean of the sentence.
void AddBars(Picture& picture, const Intonation& intonation, const IntonationLayout& layout) {
  const int base = layout.height - 8, top = layout.height - kBarRows + 10;
  double largest = 1;
  for (const IntonationUnit& unit : intonation.units)
    for (const double ratio : {unit.durationRatio, unit.energyRatio})
      if (std::isfinite(ratio)) largest = std::max(largest, ratio);
  const auto rowOf = [&](double ratio) { return base - Truncated(ratio * (base - top) / largest); };
  picture.Add(LineMark{{kLeft, base}, {layout.Right(), base}, colours::kText});
  picture.Add(LineMark{{kLeft, rowOf(1)}, {layout.Right(), rowOf(1)}, colours::kGrid, 1, LineStyle::Dashed});
  picture.Add(TextMark{kLeft - 6, rowOf(1) + 4, "1.0", colours::kText, 10, Anchor::Right, Face::Figures});
  picture.Add(TextMark{8, base - 34, kDurationBars, colours::kDurationBar, 12});
  picture.Add(TextMark{8, base - 14, kEnergyBars, colours::kEnergyBar, 12});
  const double rate = intonation.sampleRate;
  for (const IntonationUnit& unit : intonation.units) {
    const int left = layout.Column(unit.start / rate), right = layout.Column(unit.end / rate);
    const int middle = (left + right) / 2, width = std::clamp((right - left) / 3, 1, 24);
    const auto bar = [&](int x, double ratio, Colour colour) {
      if (std::isfinite(ratio)) picture.Add(BoxMark{x, rowOf(ratio), width, base - rowOf(ratio), colour});
    };
    bar(middle - width, unit.durationRatio, colours::kDurationBar);
    bar(middle + 1, unit.energyRatio, colours::kEnergyBar);
  }
}

}  // namespace

IntonationLayout::IntonationLayout(const Intonation& intonation, int pictureWidth, int pictureHeight)
    : width(pictureWidth),
      height(pictureHeight),
      start(intonation.StartSeconds()),
      end(intonation.EndSeconds()) {
  double lowest = intonation.sentence.low, highest = intonation.sentence.high;
  if (intonation.speaker) {
    // Comparisons with NaN are false: a sentence of pauses leaves the speaker's range alone.
    if (!(lowest <= intonation.speaker->low)) lowest = intonation.speaker->low;
    if (!(highest >= intonation.speaker->high)) highest = intonation.speaker->high;
  }
  if (!std::isfinite(lowest)) lowest = highest = 0;
  low = std::floor(lowest) - 1;
  high = std::ceil(highest) + 1;
}

int IntonationLayout::Column(double seconds) const {
  return kLeft + Truncated((seconds - start) * (width - 80) / (end - start));
}

int IntonationLayout::Row(double semitones) const {
  return height - kPlotBottom - Truncated((semitones - low) * (height - kPlotMargins) / (high - low));
}

Picture IntonationPicture(const IntonationState& state, int width, int height) {
  Picture picture{width, height, {}};
  if (!state.result) return picture;
  const Intonation& intonation = *state.result;
  const IntonationLayout layout(intonation, width, height);
  AddAxes(picture, intonation, layout);
  AddCompared(picture, state, layout);
  AddUnits(picture, state, layout);
  AddMelody(picture, intonation, layout);
  AddLine(picture, intonation, layout, intonation.topLine, kTopLine, colours::kTopLine, 130);
  AddLine(picture, intonation, layout, intonation.baseLine, kBaseLine, colours::kBaseLine, 290);
  AddBars(picture, intonation, layout);
  return picture;
}

int FrameAtColumn(const Intonation& intonation, const IntonationLayout& layout, int x) {
  const int first = FrameOfSample(intonation.start, intonation.sampleRate);
  const int last = FrameOfSample(intonation.end, intonation.sampleRate);
  int nearest = first;
  std::int64_t smallest = INT64_MAX;
  for (int frame = first; frame <= last; ++frame) {
    const std::int64_t distance = std::abs(std::int64_t{layout.Column(frame * 0.01)} - x);
    if (distance >= smallest) continue;
    smallest = distance;
    nearest = frame;
  }
  return nearest;
}

int BoundaryAtColumn(const Intonation& intonation, const IntonationLayout& layout, int x, int reach) {
  int nearest = -1;
  std::int64_t smallest = reach;
  for (std::size_t i = 0; i < intonation.boundaries.size(); ++i) {
    const double seconds = intonation.boundaries[i] / static_cast<double>(intonation.sampleRate);
    const std::int64_t distance = std::abs(std::int64_t{layout.Column(seconds)} - x);
    if (distance > smallest || (nearest >= 0 && distance == smallest)) continue;
    smallest = distance;
    nearest = static_cast<int>(i);
  }
  return nearest;
}

}  // namespace parlowen
