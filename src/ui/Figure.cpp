#include "ui/Figure.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "base/Arithmetic.h"
#include "ui/Messages.h"

namespace parlowen {
namespace {

constexpr int kUsualText = 11;
constexpr int kUnitRoom = 58;  // behind the data, for the unit of the axis
constexpr int kPaneGap = 6;    // rows between two panes
constexpr int kTickGap = 3;    // columns between a tick and its label
// Gutter and unit take this many times the type size beside the data.
constexpr double kBeside = double{kFigureGutter + kUnitRoom} / kUsualText;

/// A length at the usual type size, for letters of another.
int At(int length, int text) { return std::max(1, length * text / kUsualText); }

void AddGutter(Picture& figure, const FigurePane& pane, int top, const PlotStyle& style) {
  const int height = pane.picture.height;
  figure.Add(LineMark{{-1, top}, {-1, top + height - 1}, colours::kText, style.stroke});
  const auto baselines = GutterBaselines(pane.ticks, height, style.text);
  for (std::size_t i = 0; i < pane.ticks.size(); ++i) {
    const Tick& tick = pane.ticks[i];
    figure.Add(LineMark{{-style.tick, top + tick.at}, {-1, top + tick.at}, colours::kText, style.stroke});
    if (!baselines[i]) continue;
    figure.Add(TextMark{-style.tick - kTickGap, top + *baselines[i], tick.label, colours::kText, style.text,
                        Anchor::Right, Face::Figures});
  }
}

}  // namespace

PlotStyle FigureStyle::Plot() const {
  return {text, At(12, text), At(4, text), std::max(1, (text + kUsualText / 2) / kUsualText)};
}

std::vector<std::optional<int>> GutterBaselines(std::span<const Tick> ticks, int height, int text) {
  std::vector<std::optional<int>> baselines;
  std::vector<int> taken;
  for (const Tick& tick : ticks) {
    const int lowest = std::max(0, height - 1), highest = std::min(text, lowest);
    const int baseline = std::clamp(tick.at + text * 2 / 5, highest, lowest);
    const bool free = !tick.label.empty() && std::none_of(taken.begin(), taken.end(), [&](int other) {
      return std::abs(other - baseline) < text + 1;
    });
    baselines.push_back(free ? std::optional(baseline) : std::nullopt);
    if (free) taken.push_back(baseline);
  }
  return baselines;
}

Picture AxisPicture(const FigureAxis& axis, int width, int height, const PlotStyle& style) {
  Picture picture{width, height, {}}, flags = picture;
  const int size = style.text + 2, row = style.tick + 1;
  std::vector<Tick> ticks = axis.ticks;
  const int end = std::max(axis.scale.from, axis.scale.to);
  int taken = 0;  // columns left of here have a flag
  // The flags stand outside of what is marked, so that those of a short stretch do not meet.
  const auto edge = [&](std::optional<int> x, int left, Colour colour, const std::string& letter) {
    if (!x || *x < 0 || *x > end) return;
    left = std::max(std::min(left, end - size), taken);
    taken = left + size;
    for (Tick& tick : ticks) {
      const int half = TextWidth(tick.label, style.text) / 2 + style.text / 4;
      if (tick.at + half > left && tick.at - half < left + size) tick.label.clear();
    }
    const int column = std::min(*x, end - 1);
    flags.Add(LineMark{{column, 0}, {column, row}, colour, style.stroke});
    flags.Add(BoxMark{left, row, size, size, colour});
    flags.Add(TextMark{left + size / 2, row + size - 2, letter, colours::kWhite, style.text, Anchor::Middle});
  };
  edge(axis.flags.start, axis.flags.start.value_or(0) - size + 1, colours::kStart, messages::kSelectionStart);
  edge(axis.flags.end, axis.flags.end.value_or(0), colours::kEnd, messages::kSelectionEnd);
  AddColumnAxis(picture, axis.scale, ticks, 0, style, axis.unit);
  picture.Add(flags);
  return picture;
}

Picture CaptionPicture(std::span<const std::string> pieces, int width, int height, int text) {
  Picture picture{width, height, {}};
  int x = 0;
  for (const std::string& piece : pieces) {
    const int end = x + TextWidth(piece, text);
    if (end > width) break;
    picture.Add(TextMark{x, height - text / 3 - 1, piece, colours::kText, text});
    x = end + text;
  }
  return picture;
}

Picture ComposeFigure(std::span<const FigurePane> panes, const FigureStyle& style) {
  const PlotStyle plot = style.Plot();
  const int text = style.text, captionRows = At(kCaptionRows, text);
  const int axisRows = std::max(At(kFigureAxisRows, text), plot.AxisHeight());
  Picture figure{0, 0, {}, {At(kFigureGutter, text), text / 2, text / 2, text / 2}};
  for (const FigurePane& pane : panes) {
    figure.width = std::max(figure.width, pane.picture.width);
    figure.around.left = std::max(figure.around.left, LabelRoom(pane.ticks, plot) + kTickGap);
    if (pane.axis) figure.around.right = At(kUnitRoom, text);
  }
  int y = 0;
  bool axisAbove = false;
  for (std::size_t i = 0; i < panes.size(); ++i) {
    const FigurePane& pane = panes[i];
    const int caption = pane.caption.empty() ? 0 : captionRows;
    if (i > 0) y += (axisAbove ? axisRows : 0) + At(kPaneGap, text) + caption;
    if (i == 0) figure.around.top = std::max(figure.around.top, caption);
    figure.AddClipped(pane.picture, 0, y);
    if (caption > 0)
      figure.AddAt(CaptionPicture(pane.caption, figure.width + figure.around.right, caption, At(12, text)), 0,
                   y - caption);
    AddGutter(figure, pane, y, plot);
    y += pane.picture.height;
    axisAbove = pane.axis.has_value();
    if (axisAbove)
      figure.AddAt(AxisPicture(*pane.axis, pane.picture.width + figure.around.right, axisRows, plot), 0, y);
  }
  figure.height = y;
  if (axisAbove) figure.around.bottom = axisRows;
  return figure;
}

double LargestFigureText(double width) { return width * 2 / 3 / kBeside; }

int FigureText(int columns, double text, double width) {
  constexpr int kLeast = 6, kMost = 400;
  const double room = width - text * kBeside;
  if (!(room > 0)) return kMost;
  return std::clamp(TruncateToInt32(text * columns / room + 0.5), kLeast, kMost);
}

}  // namespace parlowen
