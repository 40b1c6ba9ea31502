#include "vowel/VowelFormants.h"

#include <gtest/gtest.h>

#include <cmath>

#include "vowel/SegmentChart.h"
#include "vowel/Vowels.h"

namespace parlowen {
namespace {

using namespace testing;

FormantFrame Frame(std::vector<double> f, std::vector<double> b) {
  FormantFrame frame;
  frame.count = static_cast<int>(f.size());
  std::copy(f.begin(), f.end(), frame.frequency.begin());
  std::copy(b.begin(), b.end(), frame.bandwidth.begin());
  return frame;
}

using Four = std::array<double, 4>;

TEST(VowelFormants, TheFirstFourNarrowOnesAreKept) {
  EXPECT_EQ(
      ChooseFormants(Frame({300, 900, 2000, 3000, 4000, 5000}, {50, 1599.9, 1600, 70, 80, 90}), 16000).f,
      (Four{300, 900, 3000, 4000}));
  EXPECT_EQ(ChooseFormants(Frame({300, 900, 2000}, {50, 60, 70}), 16000).f, (Four{300, 900, 2000, 3000}));
  EXPECT_EQ(ChooseFormants(Frame({300, 900, 2000, 3000}, {50, 60, 1600, 80}), 16000).f,
            (Four{300, 900, 3000, 0}));
  EXPECT_EQ(ChooseFormants(Frame({300, 900}, {50, 60}), 16000).f, (Four{300, 900, 0, 1000}));
  EXPECT_EQ(ChooseFormants(Frame({}, {}), 16000).f, (Four{0, 0, 0, 1000}));
  EXPECT_EQ(ChooseFormants(Frame({300, 900, 2000}, {50, 60, 70}), 16000).b, (Four{50, 60, 70, 0}));
}

TEST(VowelFormants, Corrections) {
  const VowelFormants formants{{500, 1000, 2500, 3500}, {60, 30, 80, 90}};
  VowelFormants split = formants, merged = formants, shorter = formants;
  SplitFirst(split);
  EXPECT_EQ(split.f, (Four{450, 700, 1000, 3500}));
  MergeFirstTwo(merged);
  // (30·500 + 60·1000)/90: the narrow peak counts more.
  EXPECT_EQ(merged.f, (Four{75000.0 / 90, 2500, 3500, 3500}));
  DeleteFirst(shorter);
  EXPECT_EQ(shorter.f, (Four{1000, 2500, 3500, 3500}));
  VowelFormants nothing;
  MergeFirstTwo(nothing);
  EXPECT_FALSE(IsVowel(nothing)) << "0/0";
}

TEST(VowelFormants, TheLimitsOfAClickedPoint) {
  const struct {
    double f1, f2;
    bool vowel;
  } cases[] = {{150, 400, true},    {149.9, 400, false},   {1600, 4000, true},         {1601, 4000, false},
               {150, 399.9, false}, {1600, 4000.1, false}, {std::nan(""), 1000, false}};
  for (const auto& c : cases) EXPECT_EQ(IsVowel({{c.f1, c.f2, 0, 0}, {}}), c.vowel) << c.f1 << ' ' << c.f2;
}

TEST(VowelFormants, FramesOfTheFormantFileLieInsideTheSelection) {
  VowelStation station;
  const struct {
    int length;
    std::size_t frames, segmentFrames;
  } cases[] = {{159, 0, 1}, {160, 1, 1}, {161, 1, 2}, {1600, 10, 10}};
  for (const auto& c : cases) {
    station.Select(2000, 2000 + c.length);
    EXPECT_EQ(SelectionTrack(station.document).frames.size(), c.frames) << c.length;
    EXPECT_EQ(SegmentTrack(station.document).frames.size(), c.segmentFrames) << c.length;
    EXPECT_EQ(SelectionTrack(station.document).start, 2000);
    EXPECT_EQ(SelectionTrack(station.document).step, 160);
  }
  station.document.ClearSelection();
  EXPECT_TRUE(SelectionTrack(station.document).frames.empty());
  EXPECT_TRUE(SegmentTrack(station.document).frames.empty());
}

}  // namespace
}  // namespace parlowen
