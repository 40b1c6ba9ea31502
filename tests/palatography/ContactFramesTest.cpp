#include "palatography/ContactFrames.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace parlowen {
namespace {

/// Rows from the front; '#' is contact, the first character the leftmost column.
ContactFrame Frame(const std::array<const char*, 8>& rows) {
  ContactFrame frame{};
  for (std::size_t r = 0; r < 8; ++r)
    for (std::size_t c = 0; c < 8; ++c)
      if (rows[r][c] == '#') frame[r] = static_cast<std::uint8_t>(frame[r] | 1u << c);
  return frame;
}

constexpr const char* kNone = "........";
const ContactFrame kEmpty = Frame({kNone, kNone, kNone, kNone, kNone, kNone, kNone, kNone});
const ContactFrame kFull =
    Frame({"########", "########", "########", "########", "########", "########", "########", "########"});

TEST(ContactFrames, MeasuresReachTheirEndsAndNameTheirSides) {
  // All 62: every region is full, both logarithms reach the one they are divided by, and the corners of the first
  // row, where there is no electrode, change nothing. Mean row: (6·7.5 + 8·28)·/62 with 6.5 + … + 0.5 = 24.5.
  const ContactIndices full = MeasureContact(kFull);
  const double gravity = (6 * 7.5 + 8 * 24.5) / 62;
  const double expected[] = {100, 100, 100, 100, 1, 1, gravity, 0};
  for (std::size_t i = 0; i < kContactIndices; ++i) EXPECT_NEAR(full[i], expected[i], 1e-12) << i;
  EXPECT_EQ(
      MeasureContact(Frame({"#......#", kNone, kNone, kNone, kNone, kNone, kNone, kNone}))[kTotalContact], 0);

  const ContactIndices none = MeasureContact(kEmpty);
  EXPECT_EQ(none[kTotalContact] + none[kAnteriority] + none[kCentrality], 0);
  EXPECT_TRUE(std::isnan(none[kGravityCentre]) && std::isnan(none[kAsymmetry]));

  // Two contacts at the left of row 2, one in the middle of row 6, by hand.
  const ContactIndices few =
      MeasureContact(Frame({kNone, "##......", kNone, kNone, kNone, "....#...", kNone, kNone}));
  EXPECT_NEAR(few[kTotalContact], 300.0 / 62, 1e-12);
  EXPECT_NEAR(few[kFrontContact], 200.0 / 22, 1e-12);
  EXPECT_EQ(few[kMiddleContact], 0);
  EXPECT_NEAR(few[kBackContact], 100.0 / 24, 1e-12);
  EXPECT_NEAR(few[kAnteriority], std::log(1 + 729 * 2 / 8.0) / std::log(5742.0), 1e-12);
  EXPECT_NEAR(few[kCentrality], std::log(1 + 1 / 14.0 + 17 / 16.0 + 4913 / 16.0) / std::log(5221.0), 1e-12);
  EXPECT_NEAR(few[kGravityCentre], (6.5 + 6.5 + 2.5) / 3, 1e-12);
  EXPECT_NEAR(few[kAsymmetry], (2.0 - 1) / 3, 1e-12);
}

TEST(ContactFrames, TheRateIsAUsualOneWhereItIsNear) {
  const struct {
    int frames, samples;
    double rate;
  } cases[] = {{100, 16000, 100}, {97, 16000, 100},  {103, 16000, 100}, {96, 16000, 96},
               {206, 16000, 200}, {207, 16000, 207}, {52, 16000, 52},   {51, 16000, 50}};
  for (const auto& c : cases) EXPECT_EQ(ContactRate(c.frames, 16000, c.samples), c.rate) << c.frames;
}

TEST(ContactFrames, AStretchHasTheFramesThatBeginInIt) {
  // 200 a second at 11025 Hz: frame i begins at 55.125·i.
  const ContactTiming timing{10, 200, 11025};
  const struct {
    int start, end, first, last;
  } cases[] = {
      {0, 1, 0, 0},     {0, 56, 0, 1},    {0, 55, 0, 0},
      {55, 56, 1, 1},   {56, 57, 1, 1},  // none begins: the one that holds it
      {0, 552, 0, 9},   {497, 552, 9, 9}, {600, 2000, 9, 9},
      {110, 111, 2, 2}, {1, 110, 1, 1},
  };
  for (const auto& c : cases) {
    const ContactSpan span = timing.FramesOf(c.start, c.end);
    EXPECT_EQ(span.first, c.first) << c.start << ' ' << c.end;
    EXPECT_EQ(span.last, c.last) << c.start << ' ' << c.end;
  }
  // What a frame holds begins with it, whatever the rounding of rate and quotient.
  const ContactTiming third{30000, 1000.0 / 3, 16000};
  for (int i = 0; i < third.frames; i += 7) {
    const auto start = static_cast<std::int64_t>(std::ceil(third.Start(i)));
    EXPECT_EQ(third.FrameAt(start), i);
    if (i > 0) {
      EXPECT_EQ(third.FrameAt(start - 1), i - 1);
    }
  }
}

TEST(ContactFrames, StatisticsCountFramesWithContactWhereOnlyTheyHaveAValue) {
  const ContactFrame left = Frame({kNone, "##......", kNone, kNone, kNone, kNone, kNone, kNone});
  const ContactFrame back = Frame({kNone, kNone, kNone, kNone, kNone, kNone, kNone, "##......"});
  const ContactStatistics s = MeasureStatistics(std::vector{left, back, kEmpty, kEmpty});
  EXPECT_EQ(s.percent[static_cast<std::size_t>(ElectrodeAt(1, 0))], 25);
  EXPECT_EQ(s.percent[61], 0);
  EXPECT_NEAR(s.mean[kTotalContact], 100.0 / 62, 1e-12);
  EXPECT_NEAR(s.deviation[kTotalContact], 100.0 / 62, 1e-12);
  EXPECT_EQ(s.mean[kGravityCentre], 3.5) << "6.5 and 0.5, not the frames without contact";
  EXPECT_EQ(s.deviation[kGravityCentre], 3);
  EXPECT_EQ(s.deviation[kAsymmetry], 0);
  EXPECT_NEAR(s.variability, 4 * 50.0 / 62, 1e-12);
  EXPECT_EQ(MeasureStatistics(std::vector{kFull, kFull}).variability, 0);
  const ContactStatistics silent = MeasureStatistics(std::vector{kEmpty});
  EXPECT_TRUE(std::isnan(silent.mean[kGravityCentre]) && !silent.HasContact());
  // Between statistics each counts once; one without contact has no say about places.
  const ContactStatistics both = MeanOf(std::vector{s, silent});
  EXPECT_EQ(both.mean[kGravityCentre], 3.5);
  EXPECT_EQ(both.deviation[kGravityCentre], 0);
  EXPECT_NEAR(both.deviation[kTotalContact], 50.0 / 62, 1e-12);
  EXPECT_EQ(both.percent[static_cast<std::size_t>(ElectrodeAt(1, 0))], 12.5);
}

}  // namespace
}  // namespace parlowen
