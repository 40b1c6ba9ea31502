#pragma once
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "ui/Plot.h"

namespace parlowen {

// Figures: pictures of data, and around them what they need to be read: tick labels in a gutter on the left, a caption
// above, an axis below. Nothing of that stands over the data. The window, what is copied from it, every file and the
// pictures of a script are composed of the same parts.

inline constexpr int kFigureGutter = 60;    ///< columns left of the data, at the usual type size
inline constexpr int kFigureAxisRows = 22;  ///< rows of an axis, at the usual type size
inline constexpr int kCaptionRows = 18;

/// The axis under columns of data: ticks, what they count, and the flags of the edges that are marked there.
struct FigureAxis {
  PlotScale scale;
  std::vector<Tick> ticks;
  std::string unit;
  SelectionColumns flags;
};

/// Data with what stands around them.
struct FigurePane {
  Picture picture;                   ///< the data alone
  std::vector<Tick> ticks;           ///< rows of it, labelled in the gutter
  std::vector<std::string> caption;  ///< pieces of the line above; none for no line
  std::optional<FigureAxis> axis;    ///< none: the columns are read off another pane's
};

struct FigureStyle {
  int text = 11;  ///< type size; everything around the data grows with it
  PlotStyle Plot() const;
};

/// Rows of a gutter's labels: baselines in the order of the ticks; none where another label leaves no room.
std::vector<std::optional<int>> GutterBaselines(std::span<const Tick> ticks, int height, int text);

/// The axis as a picture of its own whose columns are those of the data, `width` of them: what comes behind the data's
/// last column is room for labels and the unit. A flag takes the place of a label that it would cover.
Picture AxisPicture(const FigureAxis& axis, int width, int height, const PlotStyle& style);

/// The pieces of a caption one behind the other, as far as they find room.
Picture CaptionPicture(std::span<const std::string> pieces, int width, int height, int text);

/// The panes one under the other. The first one's data begin at 0, 0; width and height hold all data, the margins what
/// stands around them. What a pane draws beyond its own size is not seen.
Picture ComposeFigure(std::span<const FigurePane> panes, const FigureStyle& style = {});

/// The type size with which a figure whose data are `columns` wide has letters of `text` when all of it is drawn
/// `width` wide (both in the same unit), 6..400: no less than can be read, no more than leaves room to the data.
int FigureText(int columns, double text, double width);

/// The largest letters of such a figure: those that leave a third of its width to the data.
double LargestFigureText(double width);

}  // namespace parlowen
