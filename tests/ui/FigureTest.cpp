#include "ui/Figure.h"

#include <gtest/gtest.h>

#include "ui/Resample.h"
#include "ui/Svg.h"

namespace parlowen {
namespace {

using Pixels = std::vector<std::uint8_t>;

GreyImageMark Image(int columns, int rows, Pixels pixels) {
  return {0, 0, columns, rows, columns, rows, std::move(pixels), true};
}

TEST(Resample, ASmallerImageIsMeansAndALargerOneLiesOnTheLinesBetween) {
  const GreyImageMark column = Image(1, 4, {0, 100, 200, 40});
  EXPECT_EQ(Resampled(column, 1, 2).pixels, (Pixels{50, 120}));
  // A third of four rows is one row and a third: 0 and 100/3, two thirds of both in the middle, 200/3 and 40.
  EXPECT_EQ(Resampled(column, 1, 3).pixels, (Pixels{25, 150, 80}));
  EXPECT_EQ(Resampled(column, 1, 1).pixels, (Pixels{85}));
  EXPECT_EQ(Resampled(column, 1, 8).pixels, (Pixels{0, 25, 75, 125, 175, 160, 80, 40}));
  EXPECT_EQ(Resampled(Image(4, 1, {0, 100, 200, 40}), 3, 1).pixels, (Pixels{25, 150, 80}));
  EXPECT_EQ(Resampled(Image(2, 2, {0, 40, 80, 120}), 1, 1).pixels, (Pixels{60}));
  EXPECT_EQ(Resampled(Image(1, 1, {7}), 2, 3).pixels, Pixels(6, 7));
  EXPECT_EQ(Resampled(column, 1, 4).pixels, column.pixels);
  // No row is lost: one dark row of 256 darkens the one that it falls into, wherever it is.
  for (std::size_t row = 0; row < 256; ++row) {
    Pixels pixels(256, 255);
    pixels[row] = 0;
    int missing = 0;
    for (const std::uint8_t grey : Resampled(Image(1, 256, pixels), 1, 191).pixels) missing += 255 - grey;
    EXPECT_NEAR(missing, 255 * 191 / 256, 1) << row;
  }
  EXPECT_TRUE(Resampled(column, 0, 4).pixels.empty());
  EXPECT_TRUE(Resampled(Image(2, 4, {1, 2, 3}), 2, 2).pixels.empty()) << "fewer pixels than it says";
}

TEST(Figure, WhatSurroundsThePanesStandsOutsideOfThem) {
  FigurePane upper{{500, 100, {}}, {{0, 1, "500 Hz"}, {3, 2, "near"}, {99, 0, "0 Hz"}}, {"head", "more"}, {}};
  upper.picture.Add(LineMark{{-40, 50}, {900, 50}});  // further than it should
  FigurePane lower{{500, 60, {}}, {}, {}, FigureAxis{{0, 5, 0, 500}, {}, "T(秒)", {100, 110}}};
  lower.axis->ticks = TicksEvery(lower.axis->scale, 1);
  const Picture figure = ComposeFigure(std::vector{upper, lower});
  EXPECT_EQ(figure.width, 500);
  EXPECT_EQ(figure.height, 166);
  EXPECT_EQ(figure.around, (Margins{60, 18, 58, 22}));
  std::string texts;
  const PlotBox boxes[] = {{0, 0, 500, 100}, {0, 106, 500, 60}};
  for (const Mark& mark : figure.marks) {
    const auto* text = std::get_if<TextMark>(&mark);
    if (text == nullptr) continue;
    texts += text->text + " ";
    const int width = TextWidth(text->text, text->height);
    const int left = text->x - (text->anchor == Anchor::Left    ? 0
                                : text->anchor == Anchor::Right ? width
                                                                : width / 2);
    EXPECT_GE(left, -figure.around.left) << text->text;
    EXPECT_LE(left + width, figure.width + figure.around.right) << text->text;
    EXPECT_LT(text->y, figure.height + figure.around.bottom) << text->text;
    for (const PlotBox& box : boxes)
      EXPECT_TRUE(left + width <= box.left || left > box.Right() || text->y <= box.top ||
                  text->y - text->height >= box.Bottom())
          << text->text;
  }
  EXPECT_EQ(texts, "head more 500 Hz 0 Hz T(秒) 0 2 3 4 5 起 止 ") << "the start's flag covers the 1";
  const std::string svg = ToSvg(figure);
  EXPECT_NE(svg.find("width=\"618\" height=\"206\" viewBox=\"-60 -18 618 206\""), std::string::npos) << svg;
  EXPECT_NE(svg.find("<rect x=\"0\" y=\"106\" width=\"500\" height=\"60\"/></clipPath>"), std::string::npos);
}

TEST(Figure, LabelsOfTheGutterThatWouldTouchAreLeftOutAndNoneLeavesIt) {
  const std::vector<Tick> ticks = {{0, 0, "a"},   {100, 0, "b"}, {112, 0, "c"},
                                   {113, 0, "d"}, {150, 0, ""},  {199, 0, "e"}};
  const std::vector<std::optional<int>> wanted = {12, 104, {}, 117, {}, 199};
  EXPECT_EQ(GutterBaselines(ticks, 200, 12), wanted);
}

TEST(Figure, ItsLettersHaveTheirSizeOnPaper) {
  for (const double points : {6.0, 9.0, 12.0})
    for (const double centimetres : {7.5, 16.0})
      for (const int columns : {400, 1024, 3000}) {
        const double text = points / 72 * 2.54;
        FigurePane pane{
            {columns, 100, {}}, {{50, 1, "60 dB"}}, {}, FigureAxis{{0, 1, 0, columns}, {}, "T(秒)", {}}};
        const int size = FigureText(columns, text, centimetres);
        const Picture figure = ComposeFigure({&pane, 1}, {size});
        EXPECT_NEAR(size * centimetres / figure.WholeWidth(), text, 0.06 * text) << columns;
      }
}

}  // namespace
}  // namespace parlowen
