#include "vowel/ChartPicture.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "base/Gbk.h"
#include "vowel/AverageVowels.h"
#include "vowel/GroupPlot.h"
#include "vowel/SegmentChart.h"
#include "vowel/Vowels.h"

namespace parlowen {
namespace {

template <typename M>
std::vector<M> MarksOf(const Picture& picture) {
  std::vector<M> marks;
  for (const Mark& mark : picture.marks)
    if (const auto* found = std::get_if<M>(&mark)) marks.push_back(*found);
  return marks;
}

bool HasText(const Picture& picture, const std::string& text) {
  const auto texts = MarksOf<TextMark>(picture);
  return std::any_of(texts.begin(), texts.end(), [&](const TextMark& mark) { return mark.text == text; });
}

TEST(ChartPicture, ShapesAroundAPoint) {
  const auto outline = [](int shape) {
    Picture picture;
    AddShape(picture, shape, 100, 200, kChartRed);
    EXPECT_EQ(picture.marks.size(), 1u);
    return MarksOf<PolylineMark>(picture).at(0).points;
  };
  using Points = std::vector<Point>;
  EXPECT_EQ(outline(shapes::kSquare), (Points{{98, 198}, {102, 198}, {102, 202}, {98, 202}, {98, 198}}));
  EXPECT_EQ(outline(shapes::kDiamond), (Points{{100, 197}, {103, 200}, {100, 203}, {97, 200}, {100, 197}}));
  EXPECT_EQ(outline(shapes::kTriangle), (Points{{100, 197}, {102, 202}, {98, 202}, {100, 197}}));
  EXPECT_EQ(outline(shapes::kInvertedTriangle), (Points{{100, 203}, {102, 198}, {98, 198}, {100, 203}}));
  Picture picture;
  AddShape(picture, shapes::kCircle, 100, 200, kChartRed);
  const OvalMark oval = MarksOf<OvalMark>(picture).at(0);
  EXPECT_EQ(oval.x + oval.width, 102);
  EXPECT_EQ(oval.y + oval.height, 202);
  AddShape(picture, shapes::kCross, 100, 200, kChartRed);
  EXPECT_EQ(MarksOf<LineMark>(picture).size(), 2u);
  AddShape(picture, 77, 100, 200, kChartRed);
  EXPECT_EQ(MarksOf<OvalMark>(picture).size(), 2u) << "a shape from a strange file is still seen";
}

TEST(ChartPicture, AveragesHaveTheirPhoneticLabels) {
  std::string labels;
  for (int speakers = 0; speakers < kSpeakerClasses; ++speakers)
    for (const AverageVowel& vowel : AverageVowels(speakers)) labels += vowel.label;
  EXPECT_EQ(labels, "iuyaoɤeɿʅiuyaoɤeɿʅiuyaoɤeɿʅiɪɛæɑɔʊuʌɝiɪɛæɑɔʊuʌɝiɪɛæɑɔʊuʌɝ");
  Picture picture;
  AddAverages(picture, {0}, kPointAxes);
  const auto texts = MarksOf<TextMark>(picture);
  ASSERT_EQ(texts.size(), 9u);
  EXPECT_EQ(texts[5].text, "ɤ");
  EXPECT_EQ(texts[5].face, Face::Ipa);
  // 552/1044: trunc(300 − 106.2) = 193, 352/4 + 220 = 308.
  const auto lines = MarksOf<LineMark>(picture);
  EXPECT_EQ(lines[10].from, (Point{193, 312}));
  EXPECT_EQ(lines[10].to, (Point{193, 304}));
  EXPECT_EQ(texts[5].x, 190);
}

TEST(ChartPicture, AThirdFormantIsMarkedInHertzOnly) {
  VowelChart chart;
  const auto ovals = [&] { return MarksOf<OvalMark>(PointChartPicture(chart, {}, false, 1024, 770)).size(); };
  chart.Add(300, 1000, 2000);
  EXPECT_EQ(ovals(), 2u);
  chart.Add(300, 1000, 1000);
  EXPECT_EQ(ovals(), 3u) << "F3 = F2";
  chart.barkMode = true;
  EXPECT_EQ(ovals(), 2u);
}

TEST(ChartPicture, ThePointerReadsTheNearestPoint) {
  VowelChart chart;
  chart.Add(283, 2350, 3000);   // 76, 240
  chart.Add(299, 2350, 0);      // 76, 244
  EXPECT_EQ(PointChartHover(chart, {77, 241}), "第1点  F1 283 Hz  F2 2350 Hz  F3 3000 Hz  B1 2.96  B2 13.98");
  EXPECT_EQ(PointChartHover(chart, {76, 243}).substr(0, 30), std::string("第2点  F1 299 Hz  F2 2350 Hz").substr(0, 30));
  EXPECT_EQ(PointChartHover(chart, {76, 251}), "");
  EXPECT_EQ(PointChartHover({}, {0, 0}), "");
}

TEST(ChartPicture, TheGroupPlotShowsNamesWhenAsked) {
  GroupPlot plot;
  plot.groups.emplace_back().name = ToGbk("普通话");
  plot.groups[0].x = 900;
  plot.groups[0].y = 320;
  for (const bool names : {false, true}) {
    plot.showNames = names;
    const Picture picture = GroupPlotPicture(plot, 1024, 770);
    EXPECT_EQ(HasText(picture, "普通话"), names);
    for (const char* text : {"B1Min", "B1Max", "B2Min", "B2Max", "用相对Bark坐标画元音组位置图"}) EXPECT_TRUE(HasText(picture, text));
  }
  EXPECT_NE(GroupPlotHover(plot, {901, 322}).find("普通话"), std::string::npos);
  EXPECT_EQ(GroupPlotHover(plot, {800, 400}), "");
}

TEST(ChartPicture, LinesJoinTheFramesOfASegment) {
  std::vector<SegmentPoint> points(3);
  for (int i = 0; i < 3; ++i) {
    points[static_cast<std::size_t>(i)].place = {static_cast<std::int16_t>(100 + i), 200, 0};
    points[static_cast<std::size_t>(i)].colour = static_cast<Colour>(i + 1);
  }
  const auto joined = [&](bool connected) {
    const auto lines = MarksOf<LineMark>(SegmentPicture(points, connected, {}, 1024, 640));
    std::vector<std::pair<int, Colour>> found;
    for (const LineMark& line : lines)
      if (line.from.y == 200 && line.to.y == 200) found.push_back({line.to.x, line.colour});
    return found;
  };
  EXPECT_EQ(joined(true), (std::vector<std::pair<int, Colour>>{{101, 2}, {102, 3}}));
  EXPECT_TRUE(joined(false).empty());
  EXPECT_TRUE(HasText(SegmentPicture(points, false, {}, 1024, 640), "声学元音图（一段语音）  红色->蓝色：先->后"));
  EXPECT_TRUE(HasText(SegmentPicture(points, false, {}, 1024, 640), "及F1-F3 图"));
  EXPECT_TRUE(HasText(SegmentPicture(points, false, {}, 1024, 640), "4000"));
}

}  // namespace
}  // namespace parlowen
