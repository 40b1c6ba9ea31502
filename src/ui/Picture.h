#pragma once
#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "ui/Colours.h"

namespace parlowen {

struct Point {
  int x = 0, y = 0;
  bool operator==(const Point&) const = default;
};

enum class Anchor { Left, Middle, Right };    ///< what of a text stands at its x
enum class Face { Interface, Figures, Ipa };  ///< kinds of type, chosen by who paints
enum class LineStyle { Solid, Dashed, Dotted };

struct LineMark {
  Point from, to;
  Colour colour = colours::kBlack;
  int width = 1;
  LineStyle style = LineStyle::Solid;
};
struct PolylineMark {
  std::vector<Point> points;
  Colour colour = colours::kBlack;
  int width = 1;
  LineStyle style = LineStyle::Solid;
};
struct PolygonMark {
  std::vector<Point> points;
  Colour fill = colours::kBlack;
  double opacity = 1.0;
};
/// Covers x .. x + width − 1, y .. y + height − 1.
struct BoxMark {
  int x = 0, y = 0, width = 0, height = 0;
  Colour fill = colours::kWhite;
  double opacity = 1.0;  ///< of the fill; 0 leaves the outline alone
  bool outlined = false;
  Colour outline = colours::kBlack;
};
/// The ellipse inside the box x .. x + width, y .. y + height.
struct OvalMark {
  int x = 0, y = 0, width = 0, height = 0;
  Colour fill = colours::kWhite;
  bool filled = false;
  Colour outline = colours::kBlack;
};
struct TextMark {
  int x = 0, y = 0;  ///< y is the baseline
  std::string text;  ///< UTF-8
  Colour colour = colours::kText;
  int height = 12;  ///< type size in pixels
  Anchor anchor = Anchor::Left;
  Face face = Face::Interface;
};
/// `columns`·`rows` pixels, row by row from the top, stretched over `width`·`height` pixels at x, y.
struct GreyImageMark {
  int x = 0, y = 0, width = 0, height = 0;
  int columns = 0, rows = 0;
  std::vector<std::uint8_t> pixels;  ///< 0 black .. 255 white
  bool smooth = false;               ///< values of something continuous: drawn as `Resampled` says
};
struct ColourImageMark {
  int x = 0, y = 0, width = 0, height = 0;
  int columns = 0, rows = 0;
  std::vector<std::uint8_t> pixels;  ///< R, G, B
};
/// Of what follows only the part in this box is seen, up to the next clip; one without width ends it.
struct ClipMark {
  int x = 0, y = 0, width = 0, height = 0;
};

using Mark = std::variant<LineMark, PolylineMark, PolygonMark, BoxMark, OvalMark, TextMark, GreyImageMark,
                          ColourImageMark, ClipMark>;

/// Rows and columns around a rectangle.
struct Margins {
  int left = 0, top = 0, right = 0, bottom = 0;
  bool operator==(const Margins&) const = default;
};

/// A drawing as a value: what stands later in the list covers what stands before. Pixels are integers,
/// x to the right and y down from the upper left corner; nothing is drawn outside width × height and the margins
/// around it, which hold what belongs to the drawing but is none of its data: tick labels, axes, captions.
struct Picture {
  int width = 0, height = 0;
  std::vector<Mark> marks;
  Margins around{};

  int WholeWidth() const { return around.left + width + around.right; }
  int WholeHeight() const { return around.top + height + around.bottom; }

  template <typename M>
  void Add(M mark) {
    marks.emplace_back(std::move(mark));
  }
  void Add(const Picture& other) { marks.insert(marks.end(), other.marks.begin(), other.marks.end()); }
  /// Adds another picture, moved by dx and dy.
  void AddAt(const Picture& other, int dx, int dy);
  /// The same of what lies inside the other's width and height.
  void AddClipped(const Picture& other, int dx, int dy);
  /// The whole drawing `factor` times as large, texts and lines too; nothing becomes thinner than a pixel.
  Picture Scaled(double factor) const;
};

/// Pixels that a text of that type size takes, estimated without asking for a font: hanzi are as wide as they are high,
/// the characters of ASCII as in the usual faces, raised and tone letters half of that, combining marks nothing, other
/// letters two thirds. The faces asked for are not much wider anywhere.
int TextWidth(const std::string& text, int height);

}  // namespace parlowen
