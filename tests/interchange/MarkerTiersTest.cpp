// Markers, labels and annotations to tiers and tracks and back.

#include <gtest/gtest.h>

#include "interchange/LabelTrack.h"
#include "interchange/MarkerSetBuilder.h"
#include "interchange/MarkerTiers.h"

namespace parlowen {
namespace {

constexpr int kRate = 16000, kCount = 32000;

struct Band {
  std::vector<int> markers;
  std::vector<MarkerLabel> labels;
};

/// A set with these bands, without the builder of the room.
MarkerSet SetOf(const std::vector<Band>& bands) {
  MarkerSet set;
  for (std::size_t b = 0; b < bands.size(); ++b) {
    set.markerCount[b] = static_cast<std::int16_t>(bands[b].markers.size());
    set.labelCount[b] = static_cast<std::int16_t>(bands[b].labels.size());
    std::copy(bands[b].markers.begin(), bands[b].markers.end(),
              set.markerPos.begin() + static_cast<int>(b) * kMarkersPerBand);
    std::copy(bands[b].labels.begin(), bands[b].labels.end(),
              set.labels.begin() + static_cast<int>(b) * kLabelsPerBand);
  }
  return set;
}

std::string Text(const MarkerSet& set, int band) {
  std::string text;
  for (const int marker : set.Markers(band)) text += std::to_string(marker) + " ";
  for (const MarkerLabel& label : set.Labels(band))
    text += "[" + std::to_string(label.start) + "-" + std::to_string(label.end) + " " + label.text + "]";
  return text;
}

ImportedMarkers Import(std::vector<GridTier> tiers, int count = kCount) {
  return MarkersOfGrid({0, 2, std::move(tiers)}, count, kRate);
}
GridTier Intervals(const std::string& name, std::vector<GridInterval> intervals) {
  return {name, false, 0, 2, std::move(intervals)};
}
GridTier Points(const std::string& name, std::vector<GridPoint> points) {
  return {name, true, 0, 2, {}, std::move(points)};
}

TEST(MarkerTiers, TheRulesOfTheFormatHoldWhateverTheSetSays) {
  // Twice the same marker, markers at and beyond the ends, stretches that are none.
  const MarkerSet set = SetOf({{{0, 800, 800, 1600, 32000, 40000},
                                {{800, 1600, "a"},
                                 {800, 1600, "b"},
                                 {0, 1600, "over"},
                                 {1600, 1600, "c"},
                                 {1600, 1600, "d"},
                                 {0, 0, "e"},
                                 {40000, 40000, "f"}}}});
  ExportLosses losses;
  const TextGrid grid = GridOfMarkers(set, {{"一", 5}, {"二", 5}, {"三", 32001}}, kCount, kRate, losses);
  EXPECT_EQ(grid.tiers[0], Intervals("1", {{0, 0.05, ""}, {0.05, 0.1, "a b"}, {0.1, 2, ""}}));
  EXPECT_EQ(grid.tiers[1], Points("1 点", {{0, "e"}, {0.1, "c d"}}));
  EXPECT_EQ(grid.tiers.back().points, (std::vector<GridPoint>{{5 / 16000.0, "一 二"}}));
  EXPECT_EQ(losses.joined, 3);
  // The stretch with a marker inside, the point and two markers at or beyond the end, an annotation.
  EXPECT_EQ(losses.leftOut, 5);
}

TEST(MarkerTiers, AFullSetComesBackAsItWas) {
  for (const int rate : {8000, 11025, 22050, 44100}) {
    const int count = rate + 7;
    std::vector<Band> bands(kMarkerBands);
    for (int b = 0; b < kMarkerBands; ++b) {
      for (int m = 0; m < 20; ++m)
        bands[static_cast<std::size_t>(b)].markers.push_back(1 + b + m * (count - 10) / 20);
      const auto& markers = bands[static_cast<std::size_t>(b)].markers;
      for (std::size_t m = 0; m < 10; ++m)
        bands[static_cast<std::size_t>(b)].labels.push_back(
            {m == 0 ? 0 : markers[2 * m - 1], markers[2 * m], "段" + std::to_string(m)});
      for (std::size_t m = 0; m < 10; ++m)
        bands[static_cast<std::size_t>(b)].labels.push_back(
            {markers[2 * m], markers[2 * m], "ɛ\"" + std::to_string(m)});
    }
    const MarkerSet set = SetOf(bands);
    const std::vector<Annotation> annotations = {{"ʂʅ˥˩", 0}, {"x", count}};
    ExportLosses lost;
    GridFault fault = GridFault::None;
    const auto grid = ReadTextGrid(TextGridText(GridOfMarkers(set, annotations, count, rate, lost)), fault);
    ASSERT_TRUE(grid);
    const ImportedMarkers back = MarkersOfGrid(*grid, count, rate);
    for (int b = 0; b < kMarkerBands; ++b) EXPECT_EQ(Text(back.set, b), Text(set, b)) << rate;
    ASSERT_EQ(back.annotations.size(), 2u);
    EXPECT_EQ(back.annotations[0].text, "ʂʅ˥˩");
    EXPECT_EQ(back.annotations[1].position, count);
    EXPECT_EQ(back.losses, ImportLosses{});
    EXPECT_TRUE(lost.None());
  }
}

TEST(MarkerTiers, TiersFindTheirBands) {
  const std::vector<GridInterval> cut = {{0, 1, ""}, {1, 2, ""}};
  const auto imported = Import({Intervals("words", {{0, 0.25, ""}, {0.25, 2, ""}}), Intervals("3", cut),
                                Points("1 点", {{0.5, "p"}}), Points("tones", {{1.5, "T4"}}),
                                Intervals("late", cut), Intervals("later", cut), Points("音标", {{1, "a"}})});
  EXPECT_EQ(Text(imported.set, 0), "8000 [8000-8000 p]");
  EXPECT_EQ(Text(imported.set, 1), "4000 ");
  EXPECT_EQ(Text(imported.set, 2), "16000 ");
  EXPECT_EQ(Text(imported.set, 3), "24000 [24000-24000 T4]");
  EXPECT_EQ(imported.losses.tiers, 2);
  EXPECT_EQ(imported.annotations.size(), 1u);
  EXPECT_FALSE(Import({Points("音标", {})}).hasBands);
}

TEST(MarkerTiers, TheEndsOfATierAreMarkersOnlyWhereTheyBoundALabel) {
  // A grid that is shorter than the sound; one whose end was rounded; one that is longer.
  EXPECT_EQ(Text(Import({Intervals("a", {{0.5, 1, "x"}, {1, 1.5, ""}})}).set, 0),
            "8000 16000 [8000-16000 x]");
  EXPECT_EQ(Text(Import({Intervals("a", {{0.005, 1, "x"}, {1, 1.9951, "y"}})}).set, 0),
            "16000 [0-16000 x][16000-32000 y]");
  const auto longer = Import({Intervals("a", {{0, 1, "x"}, {1, 3, "y"}, {3, 4, "z"}})});
  EXPECT_EQ(Text(longer.set, 0), "16000 [0-16000 x][16000-32000 y]");
  EXPECT_EQ(longer.losses.outside, 1);
}

TEST(MarkerTiers, WhatHasNoRoomIsCounted) {
  std::vector<GridInterval> many;
  for (int i = 0; i < 25; ++i) many.push_back({i * 0.08, (i + 1) * 0.08, "w" + std::to_string(i)});
  const auto intervals = Import({Intervals("a", many)});
  EXPECT_EQ(intervals.set.markerCount[0], 20);
  EXPECT_EQ(intervals.set.labelCount[0], 20);
  EXPECT_EQ(intervals.losses.markers, 4);
  EXPECT_EQ(intervals.losses.labels, 5) << "w20 has its left marker, not its right one";

  const auto odd =
      Import({Intervals("1", {{0, 1, "x"}, {1, 1, "none"}, {1, 2, " \n"}}),
              Points("1 点", {{0.5, "inside"}, {1.5, "b\tc"}, {1.2, ""}, {9, "far"}, {-1, "far"}}),
              Points("音标", {{1, "0123456789"}, {1, "ʰx😀"}})});
  EXPECT_EQ(Text(odd.set, 0), "16000 19200 24000 [0-16000 x][24000-24000 b c]");
  ASSERT_EQ(odd.annotations.size(), 2u);
  EXPECT_EQ(odd.annotations[0].text, "012345678");
  EXPECT_EQ(odd.annotations[1].text, "ʰx?");
  ImportLosses expected;
  expected.labels = 2;  // of no length; inside a labelled stretch
  expected.outside = 2;
  expected.shortened = expected.recoded = 1;
  EXPECT_EQ(odd.losses, expected);

  const auto crowd = Import({Points("音标", std::vector<GridPoint>(502, {1, "x"}))});
  EXPECT_EQ(crowd.annotations.size(), 500u);
  EXPECT_EQ(crowd.losses.annotations, 2);
}

TEST(MarkerTiers, ALineEndInATextIsOneBlank) {
  for (const char* text : {"a\nb", "a\r\nb", "a\rb", "a\tb"}) {
    ImportLosses losses;
    EXPECT_EQ(FittingText(text, kMarkerLabelBytes, losses), "a b") << text;
    EXPECT_EQ(losses, ImportLosses{});
  }
}

TEST(MarkerTiers, AHostileTextIsCutBeforeItIsLookedAt) {
  ImportLosses losses;
  EXPECT_EQ(FittingText(std::string(1 << 24, 'x'), kMarkerLabelBytes, losses), std::string(12, 'x'));
  EXPECT_EQ(FittingText(std::string(5000, ' ') + "x", kMarkerLabelBytes, losses), "");
  EXPECT_EQ(losses.shortened, 1);
}

TEST(MarkerTiers, TimesFarOutsideAreNoPositions) {
  const auto imported =
      Import({Points("a", {{1e300, "x"}, {-1e300, "y"}}), Intervals("b", {{-1e300, 1e300, "all"}})});
  EXPECT_EQ(imported.losses.outside, 2);
  EXPECT_EQ(Text(imported.set, 1), "[0-32000 all]");
}

TEST(LabelTrack, IsWrittenWithSixDecimalsByTime) {
  MarkerSet set;
  set.labelCount = {1, 1, 0, 0};
  set.labels[0] = {5334, 16000, "b\tc"};
  set.labels[kLabelsPerBand] = {2, 2, "音"};
  EXPECT_EQ(LabelTrackText(TrackOfMarkers(set, kRate)), "0.000125\t0.000125\t音\n0.333375\t1.000000\tb c\n");
}

TEST(LabelTrack, LinesOfEveryWritingAreRead) {
  int badLine = -1;
  const auto labels = ReadLabelTrack("0.5\t1\ta b\tc\r\n\\\t100\t200\r\n\r\n 1 2  x\n3\t3\n4\t5\t", badLine);
  EXPECT_EQ(badLine, 0);
  EXPECT_EQ(labels, (std::vector<TrackLabel>{{0.5, 1, "a b\tc"}, {1, 2, "x"}, {3, 3, ""}, {4, 5, ""}}));
}

TEST(LabelTrack, TheFirstBadLineIsNamed) {
  const std::pair<const char*, int> cases[] = {
      {"0\t1\tx\n2\tx\n", 2}, {"1\t0.5\tx", 1}, {"0\t1\n\nnan\t1\tx", 3}, {"0\tinf\tx", 1},
      {"0x1\t2\t", 1},        {"RIFF", 1},      {"1,5\t2\tx", 1},         {"", 0}};
  for (const auto& [text, line] : cases) {
    int badLine = -1;
    ReadLabelTrack(text, badLine);
    EXPECT_EQ(badLine, line) << text;
  }
}

TEST(LabelTrack, OverlappingLabelsGoToBandsOfTheirOwn) {
  const auto imported = MarkersOfTrack({{1, 1.5, "b"},
                                        {0, 1, "a"},
                                        {0.5, 1.2, "over"},
                                        {0.25, 0.25, "point"},
                                        {1.5, 2, ""},
                                        {1.75, 1.75, "q"},
                                        {2, 3, "out"}},
                                       kCount, kRate);
  EXPECT_EQ(Text(imported.set, 0), "16000 24000 28000 [0-16000 a][16000-24000 b][28000-28000 q]");
  EXPECT_EQ(Text(imported.set, 1), "4000 8000 19200 [4000-4000 point][8000-19200 over]");
  EXPECT_EQ(imported.losses.outside, 1);
  EXPECT_EQ(imported.losses.labels, 0);
}

TEST(LabelTrack, AFullBandLeavesItsRestToTheNext) {
  std::vector<TrackLabel> labels;
  for (int i = 0; i < 90; ++i) labels.push_back({0.01 + i * 0.02, 0.01 + i * 0.02, "p"});
  const auto imported = MarkersOfTrack(labels, kCount, kRate);
  for (const std::int16_t count : imported.set.labelCount) EXPECT_EQ(count, 20);
  EXPECT_EQ(imported.losses.labels, 10);
}

}  // namespace
}  // namespace parlowen
