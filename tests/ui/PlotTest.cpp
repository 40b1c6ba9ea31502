#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "ui/Plot.h"
#include "ui/Svg.h"

namespace parlowen {
namespace {

TEST(SampleScale, AMarkStandsInTheColumnThatWasClicked) {
  // 10 ms at four rates, zoomed in and out, a stretch longer and one shorter than the pane, views anywhere.
  for (const SampleScale& scale :
       {SampleScale{0, 11025, 100, 20}, SampleScale{12345, 22050, 100, 20}, SampleScale{7, 1, 1, 20},
        SampleScale{99, 16384, 1, 0}, SampleScale{-50, 40321, 1024, 0}, SampleScale{3000, 800, 1024, 20}})
    for (int x = scale.left - 5; x < scale.left + 1500; ++x) {
      const std::int64_t sample = scale.SampleAt(x);
      const int column = scale.ColumnOf(sample);
      ASSERT_EQ(scale.SampleAt(column), sample) << scale.samples;
      if (scale.samples >= scale.columns) {
        ASSERT_EQ(column, x);
        ASSERT_EQ(scale.ColumnOf(scale.SampleAt(x + 1) - 1), x) << "and so does every sample of the column";
      } else {
        ASSERT_LT(scale.SampleAt(column - 1), sample) << "the first column of several";
      }
    }
  EXPECT_EQ((SampleScale{0, 11025, 100, 20}.SampleAt(21)), 110) << "a column is 110.25 samples";
  EXPECT_EQ((SampleScale{0, 11025, 100, 20}.SampleAt(24)), 441);
}

std::string Labels(const std::vector<Tick>& ticks) {
  std::string line;
  for (const Tick& tick : ticks) line += (line.empty() ? "" : " ") + tick.label;
  return line;
}

TEST(Plot, TicksAreRoundNumbersThatLeaveRoom) {
  EXPECT_EQ(Labels(RoundTicks({0, 5, 200, 0}, 40)), "0 1 2 3 4 5");
  EXPECT_EQ(Labels(RoundTicks({-12, 12, 300, 0}, 60)), "-10 -5 0 5 10") << "semitones";
  EXPECT_EQ(Labels(RoundTicks({-0.4, 0.4, 0, 400}, 100)), "-0.4 -0.2 0.0 0.2 0.4");
  EXPECT_EQ(Labels(RoundTicks({12.3, 22.34, 20, 1024}, 70)), "13 14 15 16 17 18 19 20 21 22");
  EXPECT_EQ(Labels(RoundTicks({100, 4000, 0, 300, true}, 40)), "100 200 500 1000 2000");
  EXPECT_EQ(Labels(TicksEvery({0, 100, 200, 0}, 25, 0, " %")), "0 % 25 % 50 % 75 % 100 %");
  for (const double perColumn : {1e-5, 6.25e-5, 0.001, 0.01, 0.37, 16.384}) {
    const PlotScale scale{12.3, 12.3 + 1004 * perColumn, 20, 1024};
    const std::vector<Tick> ticks = RoundTicks(scale, kTimeLabelRoom);
    ASSERT_GE(ticks.size(), 2u) << perColumn;
    for (std::size_t i = 0; i < ticks.size(); ++i) {
      EXPECT_TRUE(i == 0 || ticks[i].at - ticks[i - 1].at >= kTimeLabelRoom - 1) << perColumn;
      EXPECT_NEAR(std::stod(ticks[i].label), 12.3 + (ticks[i].at - 20) * perColumn, perColumn);
    }
  }
  for (const PlotScale& empty : {PlotScale{0, 0, 0, 100}, PlotScale{0, 1, 5, 5}, PlotScale{0, 9, 0, 9, true},
                                 PlotScale{0, INFINITY, 0, 9}, PlotScale{NAN, 1, 0, 9}}) {
    EXPECT_TRUE(RoundTicks(empty, 10).size() <= 1);
    EXPECT_EQ(empty.PixelOf(NAN), empty.from);
  }
}

TEST(Plot, ATickStandsWhereItsTimeIsClicked) {
  const SampleScale samples{5000, 40321, 1024, 0};
  const PlotScale seconds = PlotScale::Seconds(samples, 16000, 1024);
  for (const Tick& tick : RoundTicks(seconds, kTimeLabelRoom))
    EXPECT_EQ(tick.at, samples.ColumnOf(static_cast<std::int64_t>(tick.value * 16000 + 0.5))) << tick.label;
  EXPECT_EQ((PlotScale{64, 512, 165, 0, true}.PixelOf(128)), 110) << "an octave is a third";
  EXPECT_NEAR((PlotScale{64, 512, 165, 0, true}.ValueAt(110)), 128, 1e-9);
}

TEST(Plot, AWaveformHasItsExtremesAColumnOrItsSamples) {
  const std::vector<double> wave = {0, 5, -3, 1, 0, 9, 2, 2};
  const ExtremesOf extremes = [&](std::int64_t from, std::int64_t end) {
    const auto [low, high] = std::minmax_element(wave.begin() + from, wave.begin() + end);
    return std::pair{*low, *high};
  };
  const auto points = [&](SampleScale scale, int right) {
    return WavePoints(
        scale.left, right, 8, [&](int x) { return scale.SampleAt(x); }, extremes);
  };
  using Points = std::vector<CurvePoint>;
  EXPECT_EQ(points({0, 4, 1, 20}, 99), (Points{{20, 5}, {20, -3}, {21, 0}, {21, 9}}));
  EXPECT_EQ(points({4, 2, 1, 20}, 99), (Points{{20, 0}, {20, 9}, {21, 2}, {21, 2}}));
  EXPECT_EQ(points({5, 1, 3, 0}, 5), (Points{{0, 9}, {3, 2}})) << "three columns a sample";
  EXPECT_EQ(WaveRange(0), 256);
  EXPECT_EQ(WaveRange(257), 512);
  EXPECT_EQ(WaveRange(32768), 32768);
}

TEST(Plot, AnAxisIsWholeFrom640To1920Columns) {
  for (const int factor : {1, 2, 3}) {
    const PlotStyle style = PlotStyle{}.Scaled(factor);
    Picture picture{640 * factor, style.AxisHeight(), {}};
    const PlotScale scale{0, 1.01, 20 * factor, 640 * factor};
    AddColumnAxis(picture, scale, RoundTicks(scale, 50 * factor), 0, style, "T(秒)");
    int end = 0, labels = 0;
    for (const Mark& mark : picture.marks) {
      const auto* text = std::get_if<TextMark>(&mark);
      if (text == nullptr) continue;
      EXPECT_EQ(text->height, 10 * factor);
      EXPECT_LT(text->y, picture.height);
      if (text->face != Face::Figures) continue;  // the unit
      const int width = TextWidth(text->text, text->height);
      EXPECT_GE(text->x - width / 2, end) << text->text;
      end = text->x + width / 2;
      ++labels;
    }
    EXPECT_EQ(labels, 10) << "0.0 to 0.9: 1.0 would meet the unit";
    EXPECT_LE(end, picture.width - TextWidth("T(秒)", style.text));
    // Where the picture goes on behind the axis the unit makes way for the last label.
    Picture wider{640 * factor, style.AxisHeight(), {}};
    const PlotScale kiloHertz{0, 8, 20 * factor, 276 * factor};
    AddColumnAxis(wider, kiloHertz, TicksEvery(kiloHertz, 1), 0, style, "F(KHz)");
    const auto isLast = [](const Mark& mark) {
      return std::holds_alternative<TextMark>(mark) && std::get<TextMark>(mark).text == "8";
    };
    EXPECT_TRUE(std::any_of(wider.marks.begin(), wider.marks.end(), isLast));
  }
}

TEST(Plot, ALineWithGapsShowsAPointAloneAsADot) {
  BrokenLine line;
  line.Break();
  line.To({1, 5});
  line.To({2, 6});
  line.Break();
  line.Break();
  line.To({9, 5});
  Picture picture{20, 20, {}};
  AddCurve(picture, line, CurveStyleOf(8).colour, 2, CurveStyleOf(8).style);
  ASSERT_EQ(picture.marks.size(), 2u);
  EXPECT_EQ(std::get<BoxMark>(picture.marks[1]).x, 9);
  const std::string svg = ToSvg(picture);
  EXPECT_NE(svg.find("stroke=\"#c00000\" stroke-width=\"2\" stroke-dasharray"), std::string::npos);
}

TEST(TextWidth, EveryRangeOfLettersHasItsWidths) {
  const std::pair<const char*, int> hundredths[] = {
      {"\x1F", 0},    {" ", 32},      {"~", 84},       {"\x7F", 67},  // behind the last of ASCII
      {"\u02AF", 67}, {"\u02B0", 50}, {"\u02FF", 50},  {"\u0300", 0}, {"\u036F", 0},
      {"\u0370", 67}, {"\u2E7F", 67}, {"\u2E80", 100}, {"æ…", 204},   {"ab", 126}};
  for (const auto& [text, width] : hundredths) EXPECT_EQ(TextWidth(text, 100), width) << text;
}

}  // namespace
}  // namespace parlowen
