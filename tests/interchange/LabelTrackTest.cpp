#include "interchange/LabelTrack.h"

#include <gtest/gtest.h>

namespace parlowen {
namespace {

constexpr int kRate = 16000, kCount = 32000;

std::string Text(const MarkerSet& set, int band) {
  std::string text;
  for (const int marker : set.Markers(band)) text += std::to_string(marker) + " ";
  for (const MarkerLabel& label : set.Labels(band))
    text += "[" + std::to_string(label.start) + "-" + std::to_string(label.end) + " " + label.text + "]";
  return text;
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
