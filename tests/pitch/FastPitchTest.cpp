// The time-domain stage: what its steps fix exactly, and that its periods are those of the voice.

#include <gtest/gtest.h>

#include "pitch/FastPitch.h"
#include "pitch/Voices.h"

namespace parlowen {
namespace {

using namespace testing;

FastPitch Extract(const std::vector<std::int16_t>& samples, int rate,
                  PitchRange range = PitchRange::Automatic, bool full = true, int maxFrames = 1004) {
  FastPitch result;
  const int count = static_cast<int>(samples.size());
  const int frames =
      ExtractPitchFast({{samples.data(), count}, rate, 0, count, range, maxFrames, full}, result);
  EXPECT_EQ(frames, static_cast<int>(result.frames.size()));
  EXPECT_EQ(frames, static_cast<int>(result.periods.size()));
  return result;
}

TEST(FastPitch, TheWorkingRateSetsTheStep) {
  const struct {
    int rate, decimation, step;
  } cases[] = {{1000, 1, 10},   {8000, 1, 80},   {11025, 1, 110}, {15999, 1, 159}, {16000, 2, 160},
               {22050, 2, 220}, {31999, 2, 318}, {32000, 3, 318}, {44100, 3, 441}, {384000, 3, 3840}};
  for (const auto& c : cases) {
    EXPECT_EQ(PitchDecimation(c.rate), c.decimation) << c.rate;
    const FastPitch found = Extract(Samples(Vowel(c.rate, 110, 0.305)), c.rate);
    EXPECT_EQ(found.stepSamples, c.step) << c.rate;
    // K = (count / D) / S, every division rounded down.
    EXPECT_EQ(static_cast<int>(found.frames.size()),
              static_cast<int>(c.rate * 0.305) / c.decimation / (c.step / c.decimation))
        << c.rate;
  }
  EXPECT_EQ(Extract(Samples(Vowel(8000, 110, 3)), 8000, PitchRange::Automatic, true, 120).frames.size(),
            120u);
  EXPECT_EQ(Extract(std::vector<std::int16_t>(79, 1000), 8000).frames.size(), 0u);
}

TEST(FastPitch, SilenceAndDirectCurrentHaveNoPitch) {
  for (const double value : {0.0, 12000.0, -32768.0}) {
    const FastPitch found = Extract(Samples(Wave(16000, value)), 16000);
    ASSERT_EQ(found.periods.size(), 100u);
    for (const float period : found.periods) EXPECT_EQ(period, 0.0f);
  }
}

TEST(FastPitch, ASoftVoiceOnDirectCurrentIsTheSameVoice) {
  // Before its first sample lies silence, which is no step down from the direct current.
  for (const int rate : {8000, 16000, 44100}) {
    const Wave voice = Vowel(rate, 150, 1.0, 200);
    Wave lifted = voice;
    for (double& y : lifted) y += 12000;
    const FastPitch plain = Extract(Samples(voice), rate), same = Extract(Samples(lifted), rate);
    for (std::size_t f = 3; f + 3 < plain.periods.size(); ++f)
      ASSERT_NEAR(same.periods[f], plain.periods[f], 0.02 * rate / 150) << rate << " " << f;
  }
}

TEST(FastPitch, AFrameWithASilentHalfIsUnvoiced) {
  // Half a frame is a whole period, from zero to zero: neither the mean nor the low-pass brings anything in.
  Wave wave = Sine(8000, 200, 1.0, 8000);
  for (std::size_t n = 50 * 80; n < 50 * 80 + 40; ++n) wave[n] = 0;
  for (std::size_t n = 70 * 80 + 40; n < 71 * 80; ++n) wave[n] = 0;
  const FastPitch found = Extract(Samples(wave), 8000, PitchRange::Automatic, false);
  for (std::size_t f = 40; f < 80; ++f) EXPECT_EQ(found.frames[f].leveled, f != 50 && f != 70) << f;
}

TEST(FastPitch, VoicedRunsOfFourFramesGoAndOfFiveStay) {
  for (const std::size_t length : {4u, 5u}) {
    Wave wave = Vowel(8000, 200, 1.0);
    for (std::size_t n = 30 * 80; n < 80 * 80; ++n)
      if (n < 50 * 80 || n >= (50 + length) * 80) wave[n] = 0;
    const FastPitch found = Extract(Samples(wave), 8000);
    for (std::size_t f = 45; f < 60; ++f)
      EXPECT_EQ(found.frames[f].voiced, length == 5 && f >= 50 && f < 55) << length << " " << f;
    // At the very start of the sound the short run goes in the voicing decision already.
    std::fill(wave.begin() + static_cast<std::ptrdiff_t>(length) * 80, wave.begin() + 40 * 80, 0.0);
    const FastPitch first = Extract(Samples(wave), 8000, PitchRange::Automatic, false);
    EXPECT_EQ(first.frames[2].leveled, length == 5);
  }
}

TEST(FastPitch, AHissIsNoVoiceHoweverLong) {
  // Six frames of hiss are a run of noise; its alternating signs survive no low-pass test.
  Wave hiss(std::size_t{8000} * 6 / 100);
  for (std::size_t n = 0; n < hiss.size(); ++n) hiss[n] = (n % 3 == 0 ? 3000.0 : -1500.0);
  const Wave wave = Joined({Vowel(8000, 150, 0.4, 20000), hiss, Silence(8000, 0.2)});
  const FastPitch found = Extract(Samples(wave), 8000, PitchRange::Automatic, false);
  for (std::size_t f = 40; f < 46; ++f) {
    EXPECT_EQ(found.frames[f].zeroCrossings, kNoiseCrossings);
    EXPECT_FALSE(found.frames[f].leveled);
  }
  EXPECT_LT(found.frames[20].zeroCrossings, 40);
}

TEST(FastPitch, NoRunIsLongerThanAHundredFrames) {
  const FastPitch found = Extract(Samples(Vowel(8000, 120, 4.0)), 8000);
  int run = 0, longest = 0;
  for (const FastPitchFrame& frame : found.frames) {
    run = frame.voiced ? run + 1 : 0;
    longest = std::max(longest, run);
  }
  EXPECT_LE(longest, 100);
  EXPECT_GT(longest, 30);
}

TEST(FastPitch, PeriodsAreTheVoicesOwnInDocumentSamples) {
  for (const int rate : {8000, 11025, 16000, 22050, 44100}) {
    for (const double f0 : {90.0, 130.0, 240.0}) {
      const FastPitch found = Extract(
          Samples(Joined({Silence(rate, 0.1), Vowel(rate, f0, 0.8, 8000, 0, 0), Silence(rate, 0.1)})), rate);
      int determined = 0, wrong = 0;
      for (std::size_t f = 0; f < found.periods.size(); ++f) {
        const auto period = static_cast<double>(found.periods[f]);
        if (period <= 1) continue;
        ++determined;
        if (std::fabs(rate / period / f0 - 1) > 0.03) ++wrong;
      }
      EXPECT_GT(determined, 25) << rate << " " << f0;
      EXPECT_LE(wrong, determined / 20) << rate << " " << f0;
    }
  }
}

TEST(FastPitch, TheSettingBoundsWhatIsReported) {
  const Wave glide = Joined({Vowel(16000, 70, 2.0, 8000, 450), Vowel(16000, 450, 2.0, 8000, 70)});
  for (const PitchRange range :
       {PitchRange::Automatic, PitchRange::High, PitchRange::Middle, PitchRange::Low}) {
    const PitchBounds bounds = BoundsOf(range);
    const FastPitch found = Extract(Samples(glide), 16000, range);
    EXPECT_EQ(found.periods[0], 0.0f);
    int values = 0;
    for (const float period : found.periods) {
      if (period <= 1) continue;
      ++values;
      // One sample of the working rate is lost where the bound is divided.
      EXPECT_GE(period, static_cast<float>(16000 / bounds.highest) - 2);
      EXPECT_LE(period, static_cast<float>(16000) / static_cast<float>(bounds.lowest));
    }
    EXPECT_GT(values, 40);
  }
}

TEST(FastPitch, TheVoicingDecisionAloneGivesNoPeriods) {
  const auto samples = Samples(Vowel(16000, 150, 0.5));
  const FastPitch part = Extract(samples, 16000, PitchRange::Automatic, false),
                  whole = Extract(samples, 16000);
  for (std::size_t f = 0; f < part.frames.size(); ++f) {
    EXPECT_EQ(part.periods[f], 0.0f);
    EXPECT_EQ(part.frames[f].leveled, whole.frames[f].leveled);
  }
  EXPECT_TRUE(part.frames[20].leveled);
}

}  // namespace
}  // namespace parlowen
