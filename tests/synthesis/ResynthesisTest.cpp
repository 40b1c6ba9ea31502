#include "synthesis/Resynthesis.h"

#include <gtest/gtest.h>

#include <numbers>
#include <random>

#include "synthesis/Literal.h"

namespace parlowen {
namespace {

using Samples = std::vector<std::int16_t>;

SampleSpan SpanOf(const Samples& samples) { return {samples.data(), static_cast<int>(samples.size())}; }

/// A sawtooth of eight harmonics, the period in whole samples: a dip, shortly behind it the peak, both of
/// size `peak`.
Samples Periodic(int count, int period, double peak = 8000) {
  std::vector<double> one(static_cast<std::size_t>(period));
  double largest = 0;
  for (int n = 0; n < period; ++n) {
    double& value = one[static_cast<std::size_t>(n)];
    for (int k = 1; k <= 8; ++k) value += std::sin(2 * std::numbers::pi * k * n / period) / k;
    largest = std::max(largest, std::fabs(value));
  }
  Samples samples;
  for (int n = 0; n < count; ++n)
    samples.push_back(static_cast<std::int16_t>(one[static_cast<std::size_t>(n % period)] * peak / largest));
  return samples;
}

/// Correlation of a stretch with itself `lag` samples later.
double SelfSimilarity(const Samples& x, int from, int end, int lag) {
  double both = 0, here = 0, there = 0;
  for (int n = from; n + lag < end; ++n) {
    const double a = x[static_cast<std::size_t>(n)], b = x[static_cast<std::size_t>(n + lag)];
    both += a * b;
    here += a * a;
    there += b * b;
  }
  return both / std::sqrt(here * there);
}

/// A job over all of a sound whose contour is the same everywhere.
SynthesisJob MarkedJob(const Samples& samples, float period, int rate = 16000) {
  SynthesisJob job = MakeSynthesisJob(SpanOf(samples), rate, 0, static_cast<int>(samples.size()));
  FindPitchMarks(job, std::vector<float>(static_cast<std::size_t>(job.frames), period), -1);
  return job;
}

TEST(Resynthesis, MarksAndOutputAreThoseOfTheLiteralMethod) {
  std::mt19937 random(11);
  const auto pick = [&](int low, int high) { return std::uniform_int_distribution(low, high)(random); };
  constexpr int kRates[] = {1000, 8000, 9999, 10000, 11025, 16000, 22050};
  int marks = 0, laid = 0;
  for (int round = 0; round < 400; ++round) {
    testing::Literal literal;
    literal.rate = kRates[pick(0, 6)];
    const int count = pick(100, literal.rate);
    // Loud enough for sums that wrap; sometimes silent stretches, sometimes a voice.
    const int loudness = round % 5 == 0 ? 32767 : 9000;
    const int wave = std::max(2, literal.rate / pick(70, 400));
    for (int n = 0; n < count; ++n) {
      const int noise = pick(-loudness / 4, loudness / 4), tooth = loudness / 2 - n % wave * loudness / wave;
      literal.sound.push_back(
          static_cast<std::int16_t>(n / (count / 4 + 1) == round % 6 ? 0 : noise + tooth));
    }
    literal.start = pick(0, count - 60);
    literal.end = pick(literal.start + 51, count);
    float period = 0;
    for (int f = 0; f < count * 100 / literal.rate; ++f) {
      if (pick(0, 5) == 0)
        period = pick(0, 2) == 0   ? 0.0f
                 : pick(0, 9) == 0 ? static_cast<float>(pick(1, 5))
                                   : static_cast<float>(literal.rate) / static_cast<float>(pick(55, 450));
      literal.contour.push_back(pick(0, 20) == 0 ? -1.0f : period);
    }
    SynthesisJob job = MakeSynthesisJob(SpanOf(literal.sound), literal.rate, literal.start, literal.end);
    for (const int polarity : {+1, -1}) {
      FindPitchMarks(job, literal.contour, polarity);
      ASSERT_EQ(std::vector<int>(job.marks.begin(), job.marks.end()), literal.Marks(polarity)) << round;
    }
    marks += static_cast<int>(job.marks.size());
    for (int again = 0; again < 2; ++again) {
      TargetCurve target;
      for (int f = 0; f < job.frames; ++f)
        target.push_back(pick(0, 4) == 0
                             ? 0.0f
                             : static_cast<float>(literal.rate) / (static_cast<float>(pick(200, 6000)) / 10));
      SynthesizeOverlapAdd(job, target);
      ASSERT_EQ(job.output, literal.Output({job.marks.begin(), job.marks.end()}, target)) << round;
      laid += job.output != literal.Output({job.marks.begin(), job.marks.end()}, {});
    }
  }
  // The cases are worth something.
  EXPECT_GT(marks, 10000);
  EXPECT_GT(laid, 500);
}

TEST(Resynthesis, TheFirstMarkStandsOnANegativePeakAndTheOthersOnPositiveOnes) {
  // A dip at 40 + 100·n, a peak 15 later; unvoiced from frame 10 to 19, and then only dips are left.
  Samples samples(6400, 0);
  for (std::size_t n = 40; n < samples.size(); n += 100) {
    samples[n] = -6000;
    if (n < 1700) samples[n + 15] = 6000;
  }
  std::vector<float> contour(41, 100.0f);
  for (std::size_t f = 10; f < 20; ++f) contour[f] = 0;
  SynthesisJob job = MakeSynthesisJob(SpanOf(samples), 16000, 0, 6400);
  FindPitchMarks(job, contour, -1);
  ASSERT_GT(job.marks.size(), 18u);
  EXPECT_EQ(job.marks[0], 40);
  for (int i = 1; i <= 16; ++i) EXPECT_EQ(job.marks[static_cast<std::size_t>(i)], 55 + 100 * i);
  // Frame 20 is sample 3200, half a frame earlier 3120: the first dip from there.
  EXPECT_EQ(job.marks[17], 3140);
  EXPECT_EQ(FindPitchMarks(job, contour, +1), 17);  // the second run has no positive peak
  EXPECT_EQ(job.marks[0], 55);
}

TEST(Resynthesis, APeakBelowATenthDoesNotBeginARunAndTheSearchEndsWithIt) {
  // Frames 0..9 hold dips of a twentieth, frames 20..29 of the full size.
  Samples samples(6400, 0);
  for (std::size_t n = 50; n < 1600; n += 100) samples[n] = -500;
  for (std::size_t n = 3250; n < 4800; n += 100) samples[n] = -10000;
  std::vector<float> contour(41, 0.0f);
  for (std::size_t f = 0; f < 10; ++f) contour[f] = contour[f + 20] = 100.0f;
  SynthesisJob job = MakeSynthesisJob(SpanOf(samples), 16000, 0, 6400);
  FindPitchMarks(job, contour, -1);
  ASSERT_FALSE(job.marks.empty());
  EXPECT_EQ(job.marks[0], 3250);
}

TEST(Resynthesis, TheSamePeriodsReproduceAPeriodicSoundToTheTruncation) {
  const Samples samples = Periodic(16000, 160);
  SynthesisJob job = MarkedJob(samples, 160);
  SynthesizeOverlapAdd(job, TargetCurve(static_cast<std::size_t>(job.frames), 160.0f));
  // New periods are counted from the first mark, a negative peak; pieces hang on positive ones: all is early
  // by the distance of the two. Two weights sum to 1, each product loses less than 1.
  const int shift = job.marks[1] - job.marks[0];
  ASSERT_GT(shift, 0);
  for (int n = job.marks[4]; n < job.marks[job.marks.size() - 4]; ++n)
    ASSERT_NEAR(job.output[static_cast<std::size_t>(n)], samples[static_cast<std::size_t>(n + shift)], 2)
        << n;
}

TEST(Resynthesis, HalfThePeriodsDoubleThePitchAndKeepTheDuration) {
  const Samples samples = Periodic(16000, 160);
  SynthesisJob job = MarkedJob(samples, 160);
  SynthesizeOverlapAdd(job, TargetCurve(static_cast<std::size_t>(job.frames), 80.0f));
  ASSERT_EQ(job.output.size(), 16100u);
  EXPECT_LT(SelfSimilarity(samples, 2000, 14000, 80), 0.5);
  EXPECT_GT(SelfSimilarity(job.output, 2000, 14000, 80), 0.99);
  // It sounds to the end: but for the last periods, whose marks have no follower.
  EXPECT_GT(SelfSimilarity(job.output, 15000, 15600, 80), 0.9);
}

TEST(Resynthesis, WithoutATargetTheSamplesAreCopiedUpToTheLastMarkButOne) {
  const Samples samples = Periodic(8000, 130);
  SynthesisJob job = MarkedJob(samples, 130);
  ASSERT_GT(job.marks.size(), 50u);
  // 0.99 is no period, 251 samples between marks are below 64 Hz.
  SynthesisJob low = MarkedJob(Periodic(8000, 130), 130);
  low.marks = {10, 261, 512, 763, 1014};
  for (SynthesisJob* one : {&job, &low}) {
    SynthesizeOverlapAdd(*one, TargetCurve(51, one == &low ? 100.0f : 0.99f));
    const int end = one->marks[one->marks.size() - 2];
    Samples expected(samples.begin(), samples.begin() + end);
    expected.resize(8100, 0);
    EXPECT_EQ(one->output, expected);
  }
}

TEST(Resynthesis, SilenceOrNoContourOrOneMarkIsCopied) {
  for (const bool silent : {true, false}) {
    const Samples samples = silent ? Samples(1600, 0) : Periodic(1600, 100);
    SynthesisJob job = MarkedJob(samples, silent ? 100.0f : -1.0f);
    EXPECT_TRUE(job.marks.empty());
    SynthesizeOverlapAdd(job, TargetCurve(11, 100.0f));
    Samples expected = samples;
    expected.resize(1700, 0);
    EXPECT_EQ(job.output, expected);
    EXPECT_TRUE(job.ready);
  }
  SynthesisJob job = MarkedJob(Periodic(1600, 100), -1.0f);
  job.marks = {700};
  SynthesizeOverlapAdd(job, TargetCurve(11, 100.0f));
  Samples expected = Periodic(700, 100);
  expected.resize(1700, 0);
  EXPECT_EQ(job.output, expected);
}

TEST(Resynthesis, SumsWrapAtSixteenBits) {
  // Twice as many pieces over a constant: their weights sum to 2.
  SynthesisJob job = MarkedJob(Samples(4000, 30000), -1.0f);
  for (int mark = 100; mark < 4000; mark += 100) job.marks.push_back(mark);
  SynthesizeOverlapAdd(job, TargetCurve(26, 50.0f));
  for (std::size_t n = 500; n < 3000; ++n) ASSERT_NEAR(job.output[n], 60000 - 65536, 4) << n;
}

TEST(Resynthesis, APeriodOfOneSampleEndsAtTheCapacity) {
  SynthesisJob job = MarkedJob(Periodic(110000, 100), 1.0f, 11025);
  EXPECT_EQ(std::ssize(job.marks), kMostMarks);
  EXPECT_TRUE(std::is_sorted(job.marks.begin(), job.marks.end(), std::less_equal<>()));
}

}  // namespace
}  // namespace parlowen
