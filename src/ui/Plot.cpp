#include "ui/Plot.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "base/Arithmetic.h"
#include "base/Format.h"

namespace parlowen {
namespace {

constexpr int kBracket = 5;  // pixels of the ends of a bracket
constexpr int kMostTicks = 1000;
constexpr int kSampleBySample = 4;  // a column of fewer samples shows each of them

// A multiple of the step is an inexact sum: this much below a whole pixel counts as the pixel.
constexpr double kHair = 1e-6;

int DecimalsOf(double step) {
  int decimals = 0;
  for (double unit = 1; decimals < 9 && step < unit * 0.999; unit /= 10) ++decimals;
  return decimals;
}

Tick TickOf(const PlotScale& scale, double value, int decimals, const std::string& unit) {
  // No "-0".
  if (std::abs(value) < 0.5 * std::pow(10.0, -decimals)) value = 0;
  return {scale.PixelOf(value), value, Format("%.*f", decimals, value) + unit};
}

/// 1, 2, 5, 10, 20 … times 10^exponent.
double RoundNumber(int index, int exponent) {
  constexpr double kLeading[] = {1, 2, 5};
  return kLeading[index % 3] * std::pow(10.0, exponent + index / 3);
}

std::vector<Tick> LogarithmicTicks(const PlotScale& scale, int room) {
  std::vector<Tick> ticks;
  const double low = std::min(scale.first, scale.last), high = std::max(scale.first, scale.last);
  if (!(low > 0) || !std::isfinite(high)) return ticks;
  const int exponent = static_cast<int>(std::floor(std::log10(low)));
  for (int i = 0; i < kMostTicks && RoundNumber(i, exponent) <= high * (1 + kHair); ++i) {
    const double value = RoundNumber(i, exponent);
    if (!scale.Holds(value)) continue;
    const Tick tick = TickOf(scale, value, DecimalsOf(value), {});
    if (ticks.empty() || std::abs(tick.at - ticks.back().at) >= room) ticks.push_back(tick);
  }
  return ticks;
}

}  // namespace

// --- Scales

std::int64_t FloorDiv(std::int64_t dividend, std::int64_t divisor) {
  const std::int64_t quotient = dividend / divisor;
  return dividend % divisor < 0 ? quotient - 1 : quotient;
}

std::int64_t SampleScale::SampleAt(std::int64_t x) const {
  return start + FloorDiv((x - left) * samples, columns);
}

int SampleScale::ColumnOf(std::int64_t sample) const {
  const std::int64_t offset = sample - start;
  // The last c with floor(c·samples/columns) ≤ offset, or the first with = offset.
  const std::int64_t column = samples >= columns ? FloorDiv((offset + 1) * columns - 1, samples)
                                                 : -FloorDiv(-offset * columns, samples);
  return SaturateInt32(left + column);
}

PlotScale PlotScale::Seconds(const SampleScale& scale, int sampleRate, int right) {
  const double rate = std::max(1, sampleRate);
  const double start = static_cast<double>(scale.start) / rate;
  return {start, start + (right - scale.left) * scale.SamplesPerColumn() / rate, scale.left, right};
}

double PlotScale::DistanceOf(double value) const {
  const double reach = to - from;
  if (logarithmic) {
    const double span = std::log2(last / first), distance = std::log2(value / first);
    return std::isfinite(span) && span != 0 && !std::isnan(distance) ? distance / span * reach : 0;
  }
  const double span = last - first;
  return std::isfinite(span) && span != 0 && !std::isnan(value) ? (value - first) / span * reach : 0;
}

int PlotScale::PixelOf(double value) const {
  constexpr double kFar = 1e6;  // pixels; no picture is as large
  const double distance = std::clamp(DistanceOf(value), -kFar, kFar);
  return from + TruncateToInt32(distance + (distance < 0 ? -kHair : kHair));
}

double PlotScale::ValueAt(double pixel) const {
  if (to == from) return first;
  const double share = (pixel - from) / (to - from);
  return logarithmic ? first * std::exp2(share * std::log2(last / first)) : first + share * (last - first);
}

bool PlotScale::Holds(double value) const {
  const double hair = kHair * std::abs(last - first);
  return value >= std::min(first, last) - hair && value <= std::max(first, last) + hair;
}

// --- Ticks

std::vector<Tick> TicksAt(const PlotScale& scale, std::span<const double> values, int decimals,
                          const std::string& unit) {
  std::vector<Tick> ticks;
  for (const double value : values)
    if (scale.Holds(value)) ticks.push_back(TickOf(scale, value, decimals, unit));
  return ticks;
}

std::vector<Tick> TicksEvery(const PlotScale& scale, double step, int decimals, const std::string& unit) {
  std::vector<Tick> ticks;
  const double low = std::min(scale.first, scale.last), high = std::max(scale.first, scale.last);
  if (!(step > 0) || !std::isfinite(low) || !std::isfinite(high)) return ticks;
  const std::int64_t first = TruncateToInt64(std::ceil(low / step - kHair));
  for (int i = 0; i < kMostTicks; ++i) {
    const double value = static_cast<double>(first + i) * step;
    if (value > high + kHair * step) break;
    ticks.push_back(TickOf(scale, value, decimals, unit));
  }
  return ticks;
}

std::vector<Tick> RoundTicks(const PlotScale& scale, int room, double finest) {
  if (scale.to == scale.from) return {};
  if (scale.logarithmic) return LogarithmicTicks(scale, room);
  const double perPixel = std::abs((scale.last - scale.first) / (scale.to - scale.from));
  const double least = std::max(finest, perPixel * room);
  if (!std::isfinite(least) || !(least > 0)) return {};
  const int exponent = static_cast<int>(std::floor(std::log10(least)));
  int index = 0;
  while (index < 5 && RoundNumber(index, exponent) < least * (1 - kHair)) ++index;
  const double step = RoundNumber(index, exponent);
  return TicksEvery(scale, step, DecimalsOf(step));
}

// --- Lines

int WaveRange(int peak) {
  int range = 256;
  while (range < 32768 && peak > range) range *= 2;
  return range;
}

std::vector<CurvePoint> WavePoints(int left, int right, std::int64_t count, const SampleAtColumn& sampleAt,
                                   const ExtremesOf& extremes) {
  std::vector<CurvePoint> points;
  bool highFirst = true;
  for (int x = left; x < right; ++x) {
    const std::int64_t from = std::max<std::int64_t>(0, sampleAt(x));
    const std::int64_t end = std::min(count, sampleAt(x + 1));
    if (from >= count) break;
    if (x > left && from == std::max<std::int64_t>(0, sampleAt(x - 1))) continue;
    if (end - from < kSampleBySample) {
      for (std::int64_t i = from; i < std::max(end, from + 1); ++i)
        points.push_back({x, extremes(i, i + 1).first});
      continue;
    }
    const auto [low, high] = extremes(from, end);
    points.push_back({x, highFirst ? high : low});
    points.push_back({x, highFirst ? low : high});
    highFirst = !highFirst;
  }
  return points;
}

void BrokenLine::To(Point point) {
  if (!open_) pieces_.emplace_back();
  open_ = true;
  pieces_.back().push_back(point);
}

CurveStyle CurveStyleOf(int index) {
  constexpr int kColours = static_cast<int>(std::size(colours::kCurve));
  return {colours::kCurve[index % kColours], index < kColours ? LineStyle::Solid : LineStyle::Dashed};
}

// --- Marks

PlotStyle PlotStyle::Scaled(double factor) const {
  const auto times = [factor](int size) { return std::max(1, TruncateToInt32(size * factor + 0.5)); };
  return {times(text), times(name), times(tick), times(stroke)};
}

int LabelRoom(std::span<const Tick> ticks, const PlotStyle& style) {
  int widest = 0;
  for (const Tick& tick : ticks) widest = std::max(widest, TextWidth(tick.label, style.text));
  return widest + style.tick + 2;
}

namespace {

/// Every how many of evenly spaced ticks have room for their labels; 1 where they are not evenly spaced.
long LabelledOf(std::span<const Tick> ticks, const PlotStyle& style) {
  if (ticks.size() < 3) return 1;
  const double step = ticks[1].value - ticks[0].value;
  for (std::size_t i = 1; i < ticks.size(); ++i)
    if (!(step > 0) || std::abs(ticks[i].value - ticks[i - 1].value - step) > step / 100) return 1;
  for (const long every : {1, 2, 5, 10, 20, 50}) {
    std::optional<int> taken;
    bool room = true;
    for (const Tick& tick : ticks) {
      if (tick.label.empty() || std::lround(tick.value / step) % every != 0) continue;
      const int width = TextWidth(tick.label, style.text), from = tick.at - width / 2;
      room = room && (!taken || from >= *taken);
      taken = from + width + style.text / 2;
    }
    if (room) return every;
  }
  return 1;
}

}  // namespace

void AddColumnAxis(Picture& picture, const PlotScale& scale, std::span<const Tick> ticks, int y,
                   const PlotStyle& style, const std::string& unit) {
  const auto [left, right] = std::minmax(scale.from, scale.to);
  picture.Add(LineMark{{left, y}, {std::min(right, picture.width) - 1, y}, colours::kText, style.stroke});
  const int baseline = y + style.tick + style.text, gap = style.text / 2;
  int end = picture.width;  // where labels must end
  if (!unit.empty()) {
    const int width = TextWidth(unit, style.text);
    int behind = right + 4;
    for (const Tick& tick : ticks) {
      const int label = TextWidth(tick.label, style.text);
      if (tick.at < picture.width) behind = std::max(behind, tick.at - label / 2 + label + gap);
    }
    const int x = std::min(behind, picture.width - 2 - width);
    picture.Add(TextMark{x, baseline, unit, colours::kText, style.text});
    end = x - gap;
  }
  int taken = 0;  // columns left of here have their label
  const long every = LabelledOf(ticks, style);
  const double step = ticks.size() > 1 ? ticks[1].value - ticks[0].value : 1;
  for (const Tick& tick : ticks) {
    if (tick.at < 0 || tick.at >= picture.width) continue;
    picture.Add(LineMark{{tick.at, y}, {tick.at, y + style.tick}, colours::kText, style.stroke});
    const int width = TextWidth(tick.label, style.text);
    const int from = std::clamp(tick.at - width / 2, 0, std::max(0, picture.width - width));
    if (tick.label.empty() || from < taken || from + width > end) continue;
    if (every > 1 && std::lround(tick.value / step) % every != 0) continue;
    taken = from + width + gap;
    picture.Add(TextMark{from + width / 2, baseline, tick.label, colours::kText, style.text, Anchor::Middle,
                         Face::Figures});
  }
}

void AddLevelAxis(Picture& picture, std::span<const Tick> ticks, const LevelAxis& axis,
                  const PlotStyle& style) {
  for (const Tick& tick : ticks) {
    if (axis.grid == GridLines::None)
      picture.Add(LineMark{{axis.left - style.tick, tick.at}, {axis.left, tick.at}, axis.tick, style.stroke});
    else
      picture.Add(LineMark{
          {axis.left, tick.at}, {axis.right, tick.at}, colours::kGrid, style.stroke, LineStyle::Dotted});
    if (tick.label.empty()) continue;
    const int lowest = std::max(0, picture.height - 2), highest = std::min(style.text, lowest);
    const int baseline = std::clamp(tick.at + style.text * 2 / 5, highest, lowest);
    picture.Add(
        TextMark{axis.labelX, baseline, tick.label, colours::kText, style.text, axis.anchor, Face::Figures});
  }
}

void AddCurve(Picture& picture, std::span<const CurvePoint> points, const PlotScale& rows, Colour colour,
              int width, LineStyle style) {
  if (points.empty()) return;
  PolylineMark line{{}, colour, width, style};
  for (const CurvePoint& point : points) {
    const Point at{point.x, rows.PixelOf(point.value)};
    if (line.points.empty() || line.points.back() != at) line.points.push_back(at);
  }
  picture.Add(std::move(line));
}

void AddCurve(Picture& picture, const BrokenLine& line, Colour colour, int width, LineStyle style) {
  for (const std::vector<Point>& piece : line.Pieces()) {
    if (piece.size() > 1)
      picture.Add(PolylineMark{piece, colour, width, style});
    else
      picture.Add(BoxMark{piece[0].x - (width - 1) / 2, piece[0].y - width / 2, width, width, colour});
  }
}

void AddSelection(Picture& picture, const PlotBox& box, const SelectionColumns& selection, bool tinted) {
  if (tinted && selection.start && selection.end) {
    const int from = std::max(box.left, *selection.start);
    const int to = std::min(box.left + box.width, *selection.end);
    if (to > from)
      picture.Add(BoxMark{from, box.top, to - from, box.height, colours::kTint, colours::kTintOpacity});
  }
  const auto edge = [&](std::optional<int> x, Colour colour, int inward) {
    if (!x || *x < box.left || *x > box.Right()) return;
    picture.Add(LineMark{{*x, box.top}, {*x, box.Bottom()}, colour});
    for (const int y : {box.top, box.Bottom()})
      picture.Add(LineMark{{*x, y}, {*x + inward * kBracket, y}, colour, 2});
  };
  edge(selection.start, colours::kStart, +1);
  edge(selection.end, colours::kEnd, -1);
}

}  // namespace parlowen
