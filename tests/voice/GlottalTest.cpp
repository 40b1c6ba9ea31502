// The glottal wave of made voices whose measures are known from their own pulses.

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "dsp/SignalTables.h"
#include "voice/LinearPrediction.h"
#include "voice_accuracy/LfVoice.h"

namespace parlowen {
namespace {

using bench::LfSettings;
using bench::LfVoice;

class Glottal : public ::testing::Test {
 protected:
  Glottal() { InitSignalTables(); }
};

TEST_F(Glottal, MeasuresOfMadeVoicesAreNearTheirPulses) {
  for (const double f0 : {100.0, 150.0})
    for (const int rate : {8000, 11025, 16000})
      for (const double rd : {0.6, 1.4, 2.3})
        for (const bool inverted : {false, true}) {
          const LfVoice voice = bench::MakeLfVoice({f0, rd, rate % 5, rate, 0.6, 1.0, 3.0, -1, inverted});
          const std::vector<float> contour(60, static_cast<float>(rate / f0));
          const auto stretch = LongestVoicedStretch(contour, rate / 10, rate / 2, rate);
          ASSERT_TRUE(stretch);
          GlottalWave wave;
          ASSERT_EQ(EstimateGlottalWave({voice.samples.data(), static_cast<int>(voice.samples.size())}, rate,
                                        *stretch, false, wave),
                    0);
          const auto where = ::testing::Message() << f0 << ' ' << rate << ' ' << rd << ' ' << inverted;
          EXPECT_EQ(wave.inverted, inverted) << where;
          EXPECT_NEAR(wave.mean.f0, f0, 2) << where;
          EXPECT_NEAR(wave.mean.oq, voice.truth.oq, 0.10) << where;
          EXPECT_NEAR(wave.mean.qoq, voice.truth.qoq, 0.04) << where;
          EXPECT_NEAR(wave.mean.naq / voice.truth.naq, 1, 0.2) << where;
          EXPECT_NEAR(wave.mean.h1h2, voice.truth.h1h2, 2.5) << where;
          EXPECT_NEAR(wave.mean.hrf, voice.truth.hrf, 2.5) << where;
          EXPECT_NEAR(wave.jitter, voice.jitter, 0.6) << where;
          EXPECT_NEAR(wave.shimmer, voice.shimmer, 1.5) << where;
          ASSERT_GE(wave.marks.size(), 20u);
          int near = 0;
          for (const int mark : wave.marks)
            near += std::any_of(voice.closures.begin(), voice.closures.end(),
                                [mark](double closure) { return std::fabs(closure - mark) < 2.5; });
          EXPECT_GE(near, 0.9 * static_cast<double>(wave.marks.size())) << where;
          // The flow is 0 outside the periods; inside it comes back to 0 at each closure.
          EXPECT_EQ(wave.flow.size(), static_cast<std::size_t>(stretch->end - stretch->start));
          for (const GlottalPeriod& period : wave.periods)
            EXPECT_EQ(wave.flow[static_cast<std::size_t>(period.start - wave.start)], 0.0);
        }
}

TEST_F(Glottal, NothingThatIsNoVoiceMakesANumberThatIsNone) {
  // Noise, silence, direct current and a square wave with the contours of a voice, also of one that was read from a bad file.
  std::vector<std::int16_t> samples(16000);
  std::mt19937 random(3);
  for (int kind = 0; kind < 4; ++kind)
    for (const float period : {0.01f, 2.0f, 100.0f, 15999.0f}) {
      for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = kind == 0   ? static_cast<std::int16_t>(random())
                     : kind == 1 ? std::int16_t{0}
                     : kind == 2 ? std::int16_t{32767}
                                 : static_cast<std::int16_t>(i / 50 % 2 == 0 ? -32768 : 32767);
      const std::vector<float> contour(100, period);
      const auto stretch = LongestVoicedStretch(contour, 0, 8000, 16000);
      ASSERT_TRUE(stretch);
      GlottalWave wave;
      if (EstimateGlottalWave({samples.data(), 16000}, 16000, *stretch, false, wave) < 0) continue;
      for (const double value : wave.derivative) ASSERT_TRUE(std::isfinite(value)) << kind << ' ' << period;
      for (const double value : wave.flow) ASSERT_TRUE(std::isfinite(value));
      for (const double level : wave.harmonics) ASSERT_TRUE(std::isfinite(level));
    }
}

TEST_F(Glottal, TheLongestRunBridgesTwoFramesAndNoMore) {
  std::vector<float> contour(60, 0.0f);
  const auto voiced = [&](int first, int last) {
    std::fill(contour.begin() + first, contour.begin() + last + 1, 80.0f);
  };
  voiced(3, 6);
  voiced(10, 14);       // three frames behind the run before: another one
  voiced(17, 19);       // two: the same
  contour[17] = 90.0f;  // gaps take the nearer neighbour, of equals the earlier
  voiced(40, 43);
  const auto stretch = LongestVoicedStretch(contour, 1700, 9000, 16000);
  ASSERT_TRUE(stretch);
  EXPECT_EQ(stretch->firstFrame, 10);
  EXPECT_EQ(stretch->start, 1700);  // frame 10 begins at 1600, before the selection
  EXPECT_EQ(stretch->end, 3200);
  EXPECT_EQ(stretch->periods, (std::vector<double>{80, 80, 80, 80, 80, 80, 90, 90, 80, 80}));
  EXPECT_FALSE(LongestVoicedStretch(contour, 6400, 9000, 16000)) << "four frames are too few";
}

TEST_F(Glottal, AFilterKeepsItsResonancesAndLosesTiltAndInstability) {
  // (1 − 0.9 z⁻¹) · (1 − 2·1.25·cos(1) z⁻¹ + 1.25² z⁻²): a real positive zero, and a pair outside of the unit circle.
  const double radius = 1.25, c = 2 * radius * std::cos(1.0), r2 = radius * radius;
  TractFilter filter;
  filter.order = 3;
  filter.a = {1, -c - 0.9, r2 + 0.9 * c, -0.9 * r2};
  const TractFilter kept = KeepResonances(filter);
  ASSERT_EQ(kept.order, 2);
  EXPECT_NEAR(kept.a[1], -2 / radius * std::cos(1.0), 1e-9);
  EXPECT_NEAR(kept.a[2], 1 / r2, 1e-9);
}

}  // namespace
}  // namespace parlowen
