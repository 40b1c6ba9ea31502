#include "annotation/LabelPane.h"

#include <gtest/gtest.h>

#include "document/SoundDocument.h"
#include "shell/Station.h"

namespace parlowen {
namespace {

using namespace testing;

std::vector<TextMark> TextsOf(const Picture& picture) {
  std::vector<TextMark> texts;
  for (const Mark& mark : picture.marks)
    if (const auto* text = std::get_if<TextMark>(&mark)) texts.push_back(*text);
  return texts;
}

MarkerSet SetOf(std::initializer_list<int> markers, std::initializer_list<MarkerLabel> labels) {
  MarkerSet set;
  for (const int position : markers) set.markerPos[static_cast<std::size_t>(set.markerCount[0]++)] = position;
  for (const MarkerLabel& label : labels) AppendLabel(set, 0, label);
  return set;
}

TEST(LabelPane, NoTextCoversAnotherOrLeavesItsStretch) {
  // A sample a column. Stretches from narrow to wide, two labels on one of them, a point label at the start of
  // another, one that is open to the left of the view and one that overlaps its neighbours, as a file may have it.
  const MarkerSet set = SetOf({40, 60, 64, 200, 300}, {{0, 40, "开始前面的字"},
                                                       {40, 60, "mother"},
                                                       {60, 64, "a"},
                                                       {64, 200, "妈麻马骂"},
                                                       {64, 200, "又一个"},
                                                       {64, 64, "爆破点"},
                                                       {150, 280, "越界"},
                                                       {200, 300, "ʈʂʰuɑŋ"}});
  for (const int start : {-15, 0, 30, 100})
    for (const int height : {80, 120}) {
      const SampleScale columns{start, 1, 1, kPaneMargin};
      const auto texts = TextsOf(LabelsPicture({set, {}, 400}, {}, columns, 320, height));
      ASSERT_FALSE(texts.empty());
      for (std::size_t i = 0; i < texts.size(); ++i) {
        const int right = texts[i].x + TextWidth(texts[i].text, texts[i].height);
        EXPECT_GE(texts[i].x, kPaneMargin);
        EXPECT_LE(right, 320);
        EXPECT_LE(texts[i].y, height / 5) << "the row of the first band";
        for (std::size_t j = 0; j < i; ++j) {
          const int other = texts[j].x + TextWidth(texts[j].text, texts[j].height);
          EXPECT_TRUE(texts[i].x >= other || right <= texts[j].x)
              << texts[i].text << " over " << texts[j].text;
        }
      }
    }
  const auto texts = TextsOf(LabelsPicture({set, {}, 400}, {}, {0, 1, 1, kPaneMargin}, 420, 120));
  EXPECT_EQ(std::count_if(texts.begin(), texts.end(), [](auto& text) { return text.text == "ʈʂʰuɑŋ"; }), 1);
  const MarkerSet narrow = SetOf({100, 136}, {{100, 136, "mau1"}});
  EXPECT_EQ(TextsOf(LabelsPicture({narrow, {}, 400}, {}, {0, 1, 1, kPaneMargin}, 420, 120)).at(0).text,
            "mau1")
      << "whole, in smaller letters";
  EXPECT_EQ(ElidedText("mother", 12, 40), "mot…");
  EXPECT_EQ(ElidedText("妈妈", 12, 11), "");
}

TEST(LabelPane, AMovedMarkerTakesItsLabelsAlongAndStopsBesideItsNeighbours) {
  const MarkerSet set = SetOf({100, 200, 300}, {{100, 200, "a"}, {200, 300, "b"}, {200, 200, "p"}});
  const std::pair<int, int> cases[] = {{150, 150}, {-5, 101}, {100, 101}, {350, 299}, {200, 200}};
  for (const auto& [to, stands] : cases) {
    MarkerSet moved = set;
    EXPECT_EQ(MoveMarker(moved, 0, 200, to, 400), stands);
    EXPECT_EQ(moved.markerPos[1], stands);
    EXPECT_EQ(moved.labels[0], (MarkerLabel{100, stands, "a"}));
    EXPECT_EQ(moved.labels[1], (MarkerLabel{stands, 300, "b"}));
    EXPECT_EQ(moved.labels[2], (MarkerLabel{stands, stands, "p"}));
  }
  // A label of a file that ends where no marker stands keeps its length above 0.
  MarkerSet odd = SetOf({200}, {{150, 200, "a"}});
  EXPECT_EQ(MoveMarker(odd, 0, 200, 0, 400), 151);
  EXPECT_EQ(MoveMarker(odd, 0, 77, 90, 400), 77) << "no such marker";
  const std::vector<std::int16_t> wave = {5, 4, 0, -1, -2, -3, -4, 2};
  const std::array<int, 8> nearest = {3, 3, 3, 3, 3, 3, 7, 7};
  for (int at = 0; at < 8; ++at)
    EXPECT_EQ(NearestZeroCrossing(wave, at, 100), nearest[static_cast<std::size_t>(at)]);
  EXPECT_EQ(NearestZeroCrossing(wave, 0, 2), 0) << "too far";
}

}  // namespace
}  // namespace parlowen
