#include "prosody/TonePicture.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "base/Arithmetic.h"
#include "base/Format.h"
#include "base/IpaCodes.h"
#include "ui/Messages.h"
#include "ui/Plot.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kAxisHeads[kToneAxes] = {"T（五度）", "D（五度）", kSemitoneHead, "Hz", "LZ"};
constexpr UiText kPercentUnit = "时长（%）", kMillisecondsUnit = "时间（ms）";
constexpr UiText kGroupHead = "%s，%d个，%s";

constexpr int kLeft = 60, kBottomMargin = 60;
constexpr int kPickDistance = 8, kNameGap = 6, kUnitGap = 20, kNameHeight = 13, kNameStep = 15;
constexpr double kFarAway = 1e6;                           // pixels: no duration of a file reaches farther
constexpr double kBandOpacity = 0.15, kDurationStep = 50;  // ms

/// The four tones of the textbook at 0, 50 and 100 %, in T.
constexpr double kStandardTones[4][3] = {{4.5, 4.5, 4.5}, {2.5, 3.5, 4.5}, {1.5, 0.5, 3.5}, {4.5, 2.5, 0.5}};

int Truncated(double value) { return TruncateToInt32(value); }

// --- Lines and names

void AddShape(Picture& picture, const ToneShape& shape, CurveStyle style, int width) {
  picture.Add(PolylineMark{{shape.begin(), shape.end()}, style.colour, width, style.style});
}

struct EndName {
  Point at;
  std::string text;
  Colour colour;
};

/// Names behind the ends of the curves, moved up or down until none covers another.
void AddEndNames(Picture& picture, const ToneLayout& layout, std::vector<EndName> names) {
  std::stable_sort(names.begin(), names.end(),
                   [](const EndName& a, const EndName& b) { return a.at.y < b.at.y; });
  const int room = layout.Bottom() - layout.Top();
  const int step = std::min(kNameStep, room / std::max(1, static_cast<int>(names.size())));
  for (std::size_t i = 1; i < names.size(); ++i)
    names[i].at.y = std::max(names[i].at.y, names[i - 1].at.y + step);
  int lowest = layout.Bottom();
  for (std::size_t i = names.size(); i-- > 0; lowest = names[i].at.y - step)
    names[i].at.y = std::min(names[i].at.y, lowest);
  for (EndName& name : names)
    picture.Add(TextMark{name.at.x + kNameGap, name.at.y + kNameHeight / 3, std::move(name.text), name.colour,
                         kNameHeight, Anchor::Left, Face::Ipa});
}

// --- Axes

double LongestOf(const std::vector<double>& durations, bool equalDurations) {
  if (equalDurations) return 0;
  const double longest = durations.empty() ? 0 : *std::max_element(durations.begin(), durations.end());
  return std::max(1.0, std::ceil(std::min(longest, 1e6) / kDurationStep)) * kDurationStep;
}

void AddTimeAxis(Picture& picture, const ToneLayout& layout) {
  const bool percent = layout.longest == 0;
  const PlotScale scale{0, percent ? 100 : layout.longest, kLeft, layout.Right()};
  const auto ticks = percent ? TicksEvery(scale, 10) : RoundTicks(scale, kTimeLabelRoom, 1);
  AddColumnAxis(picture, scale, ticks, layout.Bottom());
  picture.Add(TextMark{layout.Right() + kUnitGap, layout.Bottom() + kNameHeight,
                       percent ? kPercentUnit : kMillisecondsUnit, colours::kText, 12});
}

void AddRows(Picture& picture, const ToneLayout& layout, const std::vector<Tick>& ticks, GridLines grid) {
  AddLevelAxis(picture, ticks, {kLeft, layout.Right(), kLeft - kNameGap, Anchor::Right, grid});
}

void AddValueAxis(Picture& picture, const ToneLayout& layout, ToneAxis axis) {
  picture.Add(LineMark{{kLeft, layout.Top()}, {kLeft, layout.Bottom()}, colours::kText});
  picture.Add(
      TextMark{kLeft - 40, layout.Top() - 10, kAxisHeads[static_cast<int>(axis)], colours::kText, 12});
  std::vector<Tick> lines, names;
  if (axis == ToneAxis::T) {
    // A degree is the band between two lines.
    for (int t = 0; t <= 5; ++t) lines.push_back({layout.Row(t), static_cast<double>(t), ""});
    for (int degree = 1; degree <= 5; ++degree)
      names.push_back({layout.Row(degree - 0.5), degree - 0.5, std::to_string(degree)});
  } else if (axis == ToneAxis::D) {
    for (int degree = 1; degree <= 5; ++degree)
      lines.push_back({layout.Row(degree), static_cast<double>(degree), std::to_string(degree)});
  } else {
    lines = RoundTicks({layout.low, layout.high, layout.Bottom(), layout.Top()}, 40, 1);
  }
  AddRows(picture, layout, lines, GridLines::Dotted);
  AddRows(picture, layout, names, GridLines::None);
}

// --- The run

TonePoints Shifted(const ToneGroup& group, double deviations) {
  TonePoints points;
  for (std::size_t p = 0; p < kTonePoints; ++p) points[p] = group.mean[p] + deviations * group.deviation[p];
  return points;
}

/// The rows of the axis.
void FitValues(ToneLayout& layout, const ToneState& tones) {
  if (tones.axis == ToneAxis::Lz) {
    layout.low = -3;
    layout.high = 3;
  }
  if ((tones.axis != ToneAxis::Semitones && tones.axis != ToneAxis::Hertz) || tones.items.empty()) return;
  const double unit = tones.axis == ToneAxis::Hertz ? 10 : 1;
  const ToneScale scale = tones.Scale();
  double lowest = HUGE_VAL, highest = -HUGE_VAL;
  for (const ToneGroup& group : tones.statistics.groups)
    for (const double deviations : {-1.0, 1.0})
      for (const double value : scale.Of(Shifted(group, deviations))) {
        lowest = std::min(lowest, value);
        highest = std::max(highest, value);
      }
  layout.low = std::floor(lowest / unit) * unit;
  layout.high = std::max(std::ceil(highest / unit) * unit, layout.low + unit);
}

ToneLayout LayoutOf(const ToneState& tones, int width, int height) {
  ToneLayout layout{width, height};
  FitValues(layout, tones);
  std::vector<double> durations;
  if (tones.view == ToneView::Group) {
    for (const int item : tones.ShownItems())
      durations.push_back(tones.items[static_cast<std::size_t>(item)].Milliseconds());
  } else {
    for (const ToneGroup& group : tones.statistics.groups) durations.push_back(group.milliseconds);
  }
  if (tones.compared)
    for (const ToneGroupResult& group : tones.compared->groups) durations.push_back(group.milliseconds);
  layout.longest = LongestOf(durations, tones.equalDurations);
  return layout;
}

std::vector<ToneShape> ShapesOf(const ToneState& tones, const ToneLayout& layout) {
  const ToneScale scale = tones.Scale();
  std::vector<ToneShape> shapes;
  if (!scale.IsDefined()) return shapes;
  if (tones.view == ToneView::Group) {
    for (const int index : tones.ShownItems()) {
      const ToneItem& item = tones.items[static_cast<std::size_t>(index)];
      shapes.push_back(ToneShapeOf(layout, item.Milliseconds(), scale.Of(item.points)));
    }
  } else {
    for (const ToneGroup& group : tones.statistics.groups)
      shapes.push_back(ToneShapeOf(layout, group.milliseconds, scale.Of(group.mean)));
  }
  return shapes;
}

void AddStandard(Picture& picture, const ToneLayout& layout) {
  for (const auto& tone : kStandardTones) {
    PolylineMark line{{}, colours::kStandardTone, 4};
    for (int i = 0; i < 3; ++i)
      line.points.push_back({kLeft + Truncated(i * (layout.Right() - kLeft) / 2.0), layout.Row(tone[i])});
    picture.Add(std::move(line));
  }
}

void AddCompared(Picture& picture, const ToneState& tones, const ToneLayout& layout,
                 std::vector<EndName>& names) {
  if (!tones.compared) return;
  // In the range and the spread of its own run.
  ToneScale scale{tones.axis, ToneRange::OfHertz(tones.compared->lowHertz, tones.compared->highHertz), {}};
  std::vector<double> all;
  for (const ToneGroupResult& group : tones.compared->groups)
    all.insert(all.end(), group.mean.begin(), group.mean.end());
  scale.spread = SpreadOf(all);
  if (!scale.IsDefined()) return;
  for (std::size_t g = 0; g < tones.compared->groups.size(); ++g) {
    const ToneGroupResult& group = tones.compared->groups[g];
    if (tones.view == ToneView::Group && group.name != tones.group) continue;
    const int same = tones.statistics.GroupNamed(group.name);
    const Colour colour = CurveStyleOf(same >= 0 ? same : static_cast<int>(g)).colour;
    const ToneShape shape = ToneShapeOf(layout, group.milliseconds, scale.Of(group.mean));
    AddShape(picture, shape, {colour, LineStyle::Dashed}, 1);
    const ToneRange& range = scale.range;
    names.push_back(
        {shape.back(), IpaFromGbk(group.name) + " " + ToneDigits(ToneTs(group.mean, range)) + "*", colour});
  }
}

void AddPattern(Picture& picture, const ToneState& tones, const ToneLayout& layout,
                std::vector<EndName>& names) {
  const std::vector<ToneShape> shapes = ShapesOf(tones, layout);
  for (std::size_t g = 0; g < shapes.size(); ++g) {
    const ToneGroup& group = tones.statistics.groups[g];
    const bool picked = tones.picked == static_cast<int>(g);
    CurveStyle style = CurveStyleOf(static_cast<int>(g));
    if (picked) style.colour = colours::kPicked;
    AddShape(picture, shapes[g], style, picked ? 3 : 2);
    names.push_back(
        {shapes[g].back(), IpaFromGbk(group.name) + " " + tones.statistics.DigitsOf(group), style.colour});
  }
}

void AddGroup(Picture& picture, const ToneState& tones, const ToneLayout& layout,
              std::vector<EndName>& names) {
  const int index = tones.statistics.GroupNamed(tones.group);
  const ToneScale scale = tones.Scale();
  if (index < 0 || !scale.IsDefined()) return;
  const ToneGroup& group = tones.statistics.groups[static_cast<std::size_t>(index)];
  const CurveStyle style = CurveStyleOf(index);
  const ToneShape lower = ToneShapeOf(layout, group.milliseconds, scale.Of(Shifted(group, -1)));
  const ToneShape upper = ToneShapeOf(layout, group.milliseconds, scale.Of(Shifted(group, 1)));
  PolygonMark band{{lower.begin(), lower.end()}, style.colour, kBandOpacity};
  band.points.insert(band.points.end(), upper.rbegin(), upper.rend());
  picture.Add(std::move(band));
  const std::vector<ToneShape> shapes = ShapesOf(tones, layout);
  for (const ToneShape& shape : shapes) AddShape(picture, shape, {colours::kToneItem, LineStyle::Solid}, 1);
  const ToneShape mean = ToneShapeOf(layout, group.milliseconds, scale.Of(group.mean));
  AddShape(picture, mean, style, 3);
  for (std::size_t i = 0; i < shapes.size(); ++i)
    if (group.items[i] == tones.picked) {
      AddShape(picture, shapes[i], {colours::kPicked, LineStyle::Solid}, 2);
      names.push_back({shapes[i].back(), std::to_string(i + 1), colours::kPicked});
    }
  const std::string digits = tones.statistics.DigitsOf(group);
  names.push_back({mean.back(), IpaFromGbk(group.name) + " " + digits, style.colour});
  picture.Add(TextMark{kLeft + 80, layout.Top() - 10,
                       Format(kGroupHead.Get(), IpaFromGbk(group.name).c_str(),
                              static_cast<int>(group.items.size()), digits.c_str()),
                       colours::kText, 13, Anchor::Left, Face::Ipa});
}

double SquaredDistance(Point at, Point from, Point to) {
  const double dx = to.x - from.x, dy = to.y - from.y, length = dx * dx + dy * dy;
  const double along = (static_cast<double>(at.x) - from.x) * dx + (static_cast<double>(at.y) - from.y) * dy;
  const double share = length > 0 ? std::clamp(along / length, 0.0, 1.0) : 0.0;
  const double x = at.x - (from.x + share * dx), y = at.y - (from.y + share * dy);
  return x * x + y * y;
}

/// The index of the curve nearest to the point, of equals the first; −1 when there is none.
int NearestShape(const std::vector<ToneShape>& shapes, Point at) {
  int nearest = -1;
  double smallest = kPickDistance * kPickDistance;
  for (std::size_t i = 0; i < shapes.size(); ++i)
    for (std::size_t p = 1; p < kTonePoints; ++p) {
      const double distance = SquaredDistance(at, shapes[i][p - 1], shapes[i][p]);
      if (distance > smallest || (nearest >= 0 && distance == smallest)) continue;
      smallest = distance;
      nearest = static_cast<int>(i);
    }
  return nearest;
}

ToneLayout LayoutOf(const DegreeState& degree, int width, int height) {
  ToneLayout layout{width, height};
  std::vector<double> durations;
  for (const DegreeCurve& curve : degree.curves) durations.push_back(curve.milliseconds);
  layout.longest = LongestOf(durations, degree.equalDurations);
  return layout;
}

}  // namespace

Point ToneLayout::At(int p, double milliseconds, double value) const {
  const double columns = width - 200;
  // A value stands where its frame begins: the last one a frame before the tone's end.
  const double moment = p * (milliseconds - 10) / (kTonePoints - 1);
  const int x = longest > 0 ? Truncated(std::clamp(moment * columns / longest, -kFarAway, kFarAway))
                            : p * (width - 200) / (kTonePoints - 1);
  return {kLeft + x, Row(value)};
}

int ToneLayout::Row(double value) const {
  return height - kBottomMargin -
         Truncated((std::clamp(value, low, high) - low) * (height - 90) / (high - low));
}

ToneShape ToneShapeOf(const ToneLayout& layout, double milliseconds, const TonePoints& values) {
  ToneShape shape;
  for (int p = 0; p < kTonePoints; ++p)
    shape[static_cast<std::size_t>(p)] = layout.At(p, milliseconds, values[static_cast<std::size_t>(p)]);
  return shape;
}

Picture DegreePicture(const DegreeState& degree, int width, int height) {
  Picture picture{width, height, {}};
  const ToneLayout layout = LayoutOf(degree, width, height);
  AddValueAxis(picture, layout, ToneAxis::T);
  AddTimeAxis(picture, layout);
  std::vector<EndName> names;
  for (std::size_t i = 0; i < degree.curves.size(); ++i) {
    const DegreeCurve& curve = degree.curves[i];
    const TonePoints t = ToneTs(curve.points, degree.range);
    const CurveStyle style = CurveStyleOf(static_cast<int>(i));
    const ToneShape shape = ToneShapeOf(layout, curve.milliseconds, t);
    AddShape(picture, shape, style, 2);
    names.push_back({shape.back(), ToneDigits(t), style.colour});
  }
  AddEndNames(picture, layout, std::move(names));
  return picture;
}

Picture TonePicture(const ToneState& tones, int width, int height) {
  Picture picture{width, height, {}};
  const ToneLayout layout = LayoutOf(tones, width, height);
  if (tones.showsStandard && tones.axis == ToneAxis::T) AddStandard(picture, layout);
  AddValueAxis(picture, layout, tones.axis);
  AddTimeAxis(picture, layout);
  if (!tones.Scale().IsDefined())
    picture.Add(TextMark{width / 2, height / 2, messages::kTooFewData, colours::kText, 14, Anchor::Middle});
  std::vector<EndName> names;
  AddCompared(picture, tones, layout, names);
  if (tones.view == ToneView::Group) {
    AddGroup(picture, tones, layout, names);
  } else {
    AddPattern(picture, tones, layout, names);
  }
  AddEndNames(picture, layout, std::move(names));
  return picture;
}

int DegreeCurveAt(const DegreeState& degree, Point at, int width, int height) {
  const ToneLayout layout = LayoutOf(degree, width, height);
  std::vector<ToneShape> shapes;
  for (const DegreeCurve& curve : degree.curves)
    shapes.push_back(ToneShapeOf(layout, curve.milliseconds, ToneTs(curve.points, degree.range)));
  return NearestShape(shapes, at);
}

int ToneAt(const ToneState& tones, Point at, int width, int height) {
  const int nearest = NearestShape(ShapesOf(tones, LayoutOf(tones, width, height)), at);
  if (nearest < 0 || tones.view != ToneView::Group) return nearest;
  return tones.ShownItems()[static_cast<std::size_t>(nearest)];
}

}  // namespace parlowen
