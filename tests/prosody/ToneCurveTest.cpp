#include "prosody/ToneCurve.h"

#include <gtest/gtest.h>

#include <cmath>

namespace parlowen {
namespace {

constexpr int kRate = 16000;

/// A character a frame: "." is unvoiced, "-" was never analysed, "a" is voiced and strong, a digit d is voiced
/// and 5·d dB weaker, "w" 20.1 dB.
std::optional<ToneCurve> CurveOf(const std::string& frames, bool dropWeakEnds = true) {
  std::vector<float> periods;
  std::vector<double> levels;
  for (const char frame : frames) {
    periods.push_back(frame == '.' ? 0.0f : frame == '-' ? -1.0f : 100.0f);
    const double level = frame >= '0' && frame <= '9' ? 70.0 - 5 * (frame - '0') : frame == 'w' ? 49.9 : 70.0;
    levels.insert(levels.end(), {level, 0.0, 0.0});  // only every third value counts
  }
  ToneCurveOptions options;
  options.dropWeakEnds = dropWeakEnds;
  return FindToneCurve(periods, {0, static_cast<int>(frames.size()) - 1}, kRate, levels, options);
}

TEST(ToneCurve, IsTheChainWithMostVoicedFramesWithoutItsWeakEnds) {
  const std::string gap10(10, '.'), gap11(11, '.');
  const struct {
    std::string frames;
    int first, count;  // 0 frames: none
    bool dropWeakEnds = true;
  } cases[] = {
      {"aaaa", 0, 0},                                 // one frame too short
      {".aaaaa.", 1, 5},                              //
      {"aa.aa.aa", 0, 0},                             // no run of three
      {"aaa-aaa", 0, 7},                              // a chain over a gap
      {"aaa" + gap10 + "aaa", 0, 16},                 // 10 frames between them
      {"aaa" + gap11 + "aaaaa", 14, 5},               // 11: two chains, the larger one
      {"aaaaa" + gap11 + "aaaaa", 0, 5},              // of equal ones the first
      {"aaaaa" + gap10 + "aa" + gap10 + "aa", 0, 5},  // short runs join nothing
      {"4aaaaa4", 0, 7},                              // 20 dB below stays,
      {"waaaaaw", 1, 5},                              // more goes,
      {"waaaaaw", 0, 7, false},                       // unless all is wanted
      {"www.aawaa.www", 4, 5},                        // a weak run goes whole, inside nothing goes
      {"wwwwwaaa", 0, 0},                             // what is left is too short
  };
  for (const auto& c : cases) {
    const auto curve = CurveOf(c.frames, c.dropWeakEnds);
    ASSERT_EQ(curve.has_value(), c.count > 0) << c.frames;
    if (!curve) continue;
    EXPECT_EQ(curve->first, c.first) << c.frames;
    EXPECT_EQ(static_cast<int>(curve->hertz.size()), c.count) << c.frames;
    for (std::size_t i = 0; i < curve->hertz.size(); ++i) {
      const bool voiced = std::isalnum(c.frames[i + static_cast<std::size_t>(c.first)]) != 0;
      EXPECT_EQ(curve->hertz[i], voiced ? 160.0 : 0.0) << c.frames << i;
    }
  }
}

TEST(ToneCurve, PointsAreLinearInSemitonesAlsoOverGaps) {
  // 0, 1 .. 6 semitones above 64 Hz, two of them missing: the line goes on through the gap.
  std::vector<double> hertz;
  for (int st = 0; st <= 6; ++st) hertz.push_back(st == 2 || st == 3 ? 0 : ToneHertz(st));
  const TonePoints points = TonePointsOf(hertz);
  for (std::size_t p = 0; p < kTonePoints; ++p) EXPECT_NEAR(points[p], 0.6 * static_cast<double>(p), 1e-12);
  hertz[4] = ToneHertz(10);  // from 1 semitone at frame 1 to 10 at frame 4
  EXPECT_NEAR(TonePointsOf(hertz)[5], 1 + 9 * (3.0 - 1) / 3, 1e-12);
}

TEST(ToneScales, FollowTheirFormulas) {
  const ToneRange range = ToneRange::OfHertz(128, 256);  // 12 .. 24 semitones
  EXPECT_DOUBLE_EQ(ToneT(18, range), 2.5);
  EXPECT_DOUBLE_EQ(ToneD(24, range), 5);
  EXPECT_TRUE(std::isnan(ToneT(18, ToneRange::OfSemitones(10, 10.999))));
  EXPECT_TRUE(std::isnan(ToneT(18, {})));
  // The same T from frequencies: 5·(lg x − lg low)/(lg high − lg low).
  EXPECT_NEAR(ToneT(12 * std::log2(200.0 / 64), range), 5 * std::log(200.0 / 128) / std::log(2.0), 1e-12);
  ToneSpread spread;
  spread.mean = 10;
  spread.deviation = 4;
  EXPECT_DOUBLE_EQ(ToneLz(4, spread), -1.5);
  spread.deviation = 0;
  EXPECT_TRUE(std::isnan(ToneLz(4, spread)));
}

TEST(ToneScales, DigitsTellBeginTurnAndEnd) {
  const auto digits = [](double begin, double turn, double end) {
    TonePoints t;
    t.fill((begin + end) / 2);
    t[0] = t[1] = begin;
    t[9] = t[10] = end;
    t[5] = turn;
    return ToneDigits(t);
  };
  EXPECT_EQ(digits(4.5, 4.5, 4.5), "55");
  EXPECT_EQ(digits(2.5, 3.5, 4.5), "35");
  EXPECT_EQ(digits(1.5, 0.5, 3.5), "214");
  EXPECT_EQ(digits(1.5, 1.0, 3.5), "24");    // half a degree is no turn
  EXPECT_EQ(digits(2.5, 4.99, 2.5), "353");  // upwards too
  EXPECT_EQ(digits(0.99, 0.5, 1.0), "12");   // degrees meet at whole numbers
  EXPECT_EQ(digits(-3, 9, 7), "155");        // held to 1..5
  EXPECT_EQ(digits(1, NAN, 2), "");
}

}  // namespace
}  // namespace parlowen
