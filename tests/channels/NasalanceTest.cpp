#include "channels/Nasalance.h"

#include <gtest/gtest.h>

#include "support/Samples.h"

namespace parlowen {
namespace {

using namespace testing;
using Samples = std::vector<std::int16_t>;

constexpr NasalanceSettings kBand{}, kFull{true, 1.0f};

NasalanceCurve Measure(const Samples& nasal, const Samples& oral, int rate,
                       const NasalanceSettings& settings = kBand) {
  return MeasureNasalance(SpanOf(nasal), SpanOf(oral), rate, 0, static_cast<int>(nasal.size()), settings);
}

TEST(Nasalance, TwoTonesGiveTheSharesOfTheirEnergies) {
  // A sine of amplitude a has the mean square a²/2: 100·3²/(3² + 4²) = 36 in the band, where the oral tone at
  // 2000 Hz is not heard, and 100·9/(9 + 16 + 100) = 7.2 without the filter. 20 ms are whole periods of 500
  // and 2000 Hz.
  for (const int rate : {8000, 11025, 16000, 22050, 44100, 48000}) {
    SCOPED_TRACE(rate);
    const Samples nasal = Sines(rate, rate, {{500, 3000}}),
                  oral = Sines(rate, rate, {{500, 4000}, {2000, 10000}});
    const NasalanceCurve band = Measure(nasal, oral, rate);
    ASSERT_EQ(band.values.size(), static_cast<std::size_t>((rate - rate / 50) / (rate / 100) + 1));
    for (std::size_t i = 3; i + 3 < band.values.size(); ++i) ASSERT_NEAR(band.values[i], 36, 0.05) << i;
    if (rate % 50 != 0) continue;
    for (const float value : Measure(nasal, oral, rate, kFull).values) ASSERT_NEAR(value, 7.2, 0.01);
  }
}

TEST(Nasalance, TheBandReachesFrom350To650Hz) {
  // Against an equal tone in the middle of the band a gain g shows as 100·g²/(g² + 1).
  const struct {
    double frequency, lowest, highest;
  } cases[] = {{200, 0, 0.01},    {300, 0, 0.1},     {350, 19, 21},  {400, 49.5, 50.5},
               {500, 49.9, 50.1}, {600, 49.5, 50.5}, {650, 19, 21},  {700, 0, 0.1},
               {1000, 0, 0.01},   {3400, 0, 0.01},   {7900, 0, 0.01}};
  for (const int rate : {16000, 44100}) {
    const Samples oral = Sines(rate, rate, {{500, 20000}});
    for (const auto& c : cases) {
      SCOPED_TRACE(std::to_string(rate) + " " + std::to_string(c.frequency));
      const NasalanceCurve curve = Measure(Sines(rate, rate, {{c.frequency, 20000}}), oral, rate);
      const NasalanceFigures figures =
          FiguresOf(std::span(curve.values).subspan(5, 80));  // away from the ends
      EXPECT_GE(figures.mean, c.lowest);
      EXPECT_LE(figures.mean, c.highest);
    }
  }
  // Below 1300 Hz there is no upper edge.
  const Samples low = Sines(1000, 1000, {{450, 20000}}), lower = Sines(1000, 1000, {{300, 20000}});
  EXPECT_GT(Measure(low, lower, 1000).values[50], 99.9);
}

TEST(Nasalance, FramesLieWholeInTheStretch) {
  // 16000 Hz: 320 samples every 160.
  const Samples sound = Sines(4000, 16000, {{500, 5000}});
  for (const auto& [length, count] : {std::pair{0, 0}, {319, 0}, {320, 1}, {479, 1}, {480, 2}, {1600, 9}}) {
    const NasalanceCurve curve =
        MeasureNasalance(SpanOf(sound), SpanOf(sound), 16000, 777, 777 + length, kBand);
    EXPECT_EQ(curve.values.size(), static_cast<std::size_t>(count)) << length;
    EXPECT_EQ(curve.start, 777);
    EXPECT_EQ(curve.step, 160);
  }
  // The nose begins at sample 1600: frame 9 (1440 .. 1759) is half nose, frames before are all mouth, behind
  // all nose.
  Samples nasal(3200, 0), oral(3200, 0);
  std::fill(nasal.begin() + 1600, nasal.end(), std::int16_t{100});
  std::fill(oral.begin(), oral.begin() + 1600, std::int16_t{100});
  const NasalanceCurve step = Measure(nasal, oral, 16000, kFull);
  EXPECT_EQ(std::vector<float>(step.values.begin() + 7, step.values.begin() + 12),
            (std::vector<float>{0, 0, 50, 100, 100}));
}

TEST(Nasalance, QuietFramesStayBlank) {
  // Steady values, full band: 100 is 40 dB below 10000, 99 is below that.
  Samples nasal(960, 0), oral(960, 10000);
  std::fill(oral.begin() + 320, oral.begin() + 640, std::int16_t{100});
  std::fill(oral.begin() + 640, oral.end(), std::int16_t{99});
  const NasalanceCurve curve = Measure(nasal, oral, 16000, kFull);
  ASSERT_EQ(curve.values.size(), 5u);
  EXPECT_EQ(curve.values[2], 0);
  EXPECT_TRUE(std::isnan(curve.values[4]));
  EXPECT_EQ(FiguresOf(curve.values).count, 3) << "frame 3 lies half in 100 and half in 99";
  for (const float value : Measure(Samples(960, 0), Samples(960, 0), 16000).values)
    EXPECT_TRUE(std::isnan(value));
}

TEST(Nasalance, ACalibrationMakesEqualSoundsEqual) {
  const Samples nasal = Sines(8000, 16000, {{500, 2500}, {3000, 9000}}),
                oral = Sines(8000, 16000, {{500, 5000}});
  const auto ratioOf = [&](const Samples& nose, const Samples& mouth, bool fullBand, int start = 1600,
                           int end = 6400) {
    return MeasureGainRatio(SpanOf(nose), SpanOf(mouth), 16000, start, end, fullBand);
  };
  EXPECT_NEAR(ratioOf(nasal, oral, false), 2, 0.001);
  EXPECT_NEAR(ratioOf(nasal, oral, true), 5 / std::hypot(2.5, 9), 0.001) << "in the band that is in use";
  const NasalanceCurve equal =
      MeasureNasalance(SpanOf(nasal), SpanOf(oral), 16000, 1600, 6400, {false, ratioOf(nasal, oral, false)});
  for (const float value : equal.values) EXPECT_NEAR(value, 50, 0.01);
  const Samples silence(8000, 0);
  EXPECT_EQ(ratioOf(silence, oral, true), 0);
  EXPECT_EQ(ratioOf(nasal, silence, false), 0);
  EXPECT_EQ(ratioOf(nasal, oral, false, 100, 100), 0);
  EXPECT_EQ(ratioOf(Samples(8000, 1), Samples(8000, 1001), true), 0)
      << "1001 times: no calibration tone does that";
}

}  // namespace
}  // namespace parlowen
