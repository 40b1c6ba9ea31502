#pragma once
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "ui/Picture.h"
#include "ui/Text.h"

namespace parlowen {

// A plot in two steps: values first (where a number lies, which ticks an axis has, which points a line), which
// know no colour and no type, then functions that add them to a picture as marks.

// --- Scales

/// Floor of a quotient, also of negative numbers; `divisor` > 0.
std::int64_t FloorDiv(std::int64_t dividend, std::int64_t divisor);

/// Columns of pixels over samples, exact in integers: column x begins at the sample
/// start + floor((x − left)·samples/columns). Both numbers are above 0.
struct SampleScale {
  std::int64_t start = 0;    ///< sample at column `left`
  std::int64_t samples = 1;  ///< under
  std::int64_t columns = 1;  ///< so many columns
  int left = 0;

  std::int64_t SampleAt(std::int64_t x) const;
  /// The column that shows a sample, so that a mark stands where it was clicked: the last one that begins at or
  /// before it; where several begin at the same sample, the first of those. Saturates.
  int ColumnOf(std::int64_t sample) const;
  double SamplesPerColumn() const { return static_cast<double>(samples) / static_cast<double>(columns); }
};

/// Numbers on a line of pixels: `first` at pixel `from`, `last` at pixel `to` (on either side of it), linear or
/// logarithmic (then both ends are above 0).
struct PlotScale {
  double first = 0, last = 1;
  int from = 0, to = 1;
  bool logarithmic = false;

  /// Seconds over columns left .. right − 1 of a sound: `right` is where the last one ends.
  static PlotScale Seconds(const SampleScale& scale, int sampleRate, int right);

  /// Pixels from `from` on, with their fraction; 0 where the scale is empty or the value is none of it.
  double DistanceOf(double value) const;
  /// `from` + that distance, truncated: the pixel whose values, counted away from `from`, hold this one.
  int PixelOf(double value) const;
  double ValueAt(double pixel) const;
  /// True from the first to the last value, both included.
  bool Holds(double value) const;
};

// --- Ticks

struct Tick {
  int at = 0;         ///< pixel
  double value = 0;   ///< that the pixel stands for
  std::string label;  ///< "" for a tick alone
  bool operator==(const Tick&) const = default;
};

/// The values that lie on the scale, in order, with their label: `decimals` places and `unit` behind.
std::vector<Tick> TicksAt(const PlotScale& scale, std::span<const double> values, int decimals = 0,
                          const std::string& unit = {});
/// The whole multiples of `step` (above 0) that lie on the scale; at most 1000.
std::vector<Tick> TicksEvery(const PlotScale& scale, double step, int decimals = 0,
                             const std::string& unit = {});
/// The multiples of the finest of 1, 2, 5·10^k, not finer than `finest`, that leaves `room` pixels a tick, with
/// the decimals that this step needs. On a logarithmic scale the values 1, 2, 5·10^k themselves, `room` apart.
std::vector<Tick> RoundTicks(const PlotScale& scale, int room, double finest = 1e-4);

/// Pixels between the labels of a time axis, and what stands behind them.
inline constexpr int kTimeLabelRoom = 70;
inline constexpr UiText kTimeUnit = "T(秒)";

// --- Lines

/// The scale of a waveform: the smallest of 256, 512 … 32768 that holds the peak.
int WaveRange(int peak);

struct CurvePoint {
  int x = 0;
  double value = 0;
  bool operator==(const CurvePoint&) const = default;
};

/// First sample under a column; does not fall from one column to the next.
using SampleAtColumn = std::function<std::int64_t(int x)>;
/// Smallest and largest value of the samples from .. end − 1, of which there is at least one.
using ExtremesOf = std::function<std::pair<double, double>(std::int64_t from, std::int64_t end)>;

/// The line of a waveform over columns left .. right − 1, for the samples 0 .. count − 1. A column under four
/// samples has them one by one, a longer one its largest and smallest value, in turn so that neighbours join. A
/// column that begins where the one before did has nothing of its own.
std::vector<CurvePoint> WavePoints(int left, int right, std::int64_t count, const SampleAtColumn& sampleAt,
                                   const ExtremesOf& extremes);

/// A line with gaps: points in order, and breaks between them.
class BrokenLine {
 public:
  void To(Point point);
  void Break() { open_ = false; }
  /// Runs of points without a break between them; none is empty.
  const std::vector<std::vector<Point>>& Pieces() const { return pieces_; }

 private:
  bool open_ = false;
  std::vector<std::vector<Point>> pieces_;
};

/// How curve number `index`, from 0, of a plot with several is drawn: from the ninth on the colours come again,
/// dashed.
struct CurveStyle {
  Colour colour = colours::kBlack;
  LineStyle style = LineStyle::Solid;
};
CurveStyle CurveStyleOf(int index);

// --- Marks

/// Sizes in pixels. A figure of twice the size takes them twice as large.
struct PlotStyle {
  int text = 10;   ///< labels of ticks
  int name = 12;   ///< names of axes and curves
  int tick = 4;    ///< length of a tick
  int stroke = 1;  ///< of axes and thin curves
  PlotStyle Scaled(double factor) const;
  /// Rows of an axis of columns: line, ticks and labels.
  int AxisHeight() const { return tick + text + text / 2 + 1; }
};

/// Columns that the labels of a level axis need left of their ticks.
int LabelRoom(std::span<const Tick> ticks, const PlotStyle& style = {});

struct PlotBox {
  int left = 0, top = 0, width = 0, height = 0;
  int Right() const { return left + width - 1; }
  int Bottom() const { return top + height - 1; }
};

/// An axis along the row `y`, over the columns of the scale: line, ticks below it, labels below them, moved or,
/// where they would meet, left out so that none is cut or covers another; of even ticks every second, fifth, tenth … keeps
/// its own then. `unit` stands behind the axis and its
/// labels, or over its end where the picture has no room.
void AddColumnAxis(Picture& picture, const PlotScale& scale, std::span<const Tick> ticks, int y,
                   const PlotStyle& style = {}, const std::string& unit = {});

enum class GridLines { None, Dotted };

/// Ticks up the left side of a box, or lines across it, with their labels at `labelX`, kept inside the picture.
struct LevelAxis {
  int left = 0, right = 0;  ///< columns of the lines, both included
  int labelX = 0;
  Anchor anchor = Anchor::Right;
  GridLines grid = GridLines::Dotted;
  Colour tick = colours::kText;  ///< without lines
};
void AddLevelAxis(Picture& picture, std::span<const Tick> ticks, const LevelAxis& axis,
                  const PlotStyle& style = {});

/// Adds the points as one line; nothing when there are none.
void AddCurve(Picture& picture, std::span<const CurvePoint> points, const PlotScale& rows, Colour colour,
              int width = 1, LineStyle style = LineStyle::Solid);

/// Adds a line a piece, a dot as large as the line is thick for a piece of one point.
void AddCurve(Picture& picture, const BrokenLine& line, Colour colour, int width = 2,
              LineStyle style = LineStyle::Solid);

/// What is marked: the columns of its ends, which may lie outside.
struct SelectionColumns {
  std::optional<int> start, end;
};
/// Tints the stretch between both ends where it is seen, and draws the ends as brackets open to each other, green and
/// red: the shape tells them apart too.
void AddSelection(Picture& picture, const PlotBox& box, const SelectionColumns& selection,
                  bool tinted = true);

}  // namespace parlowen
