#include "synthesis/Resynthesis.h"

#include <gtest/gtest.h>

#include <numbers>
#include <random>

#include "support/Samples.h"
#include "synthesis/Literal.h"

namespace parlowen {
namespace {

using Samples = std::vector<std::int16_t>;

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

TEST(Resynthesis, APeriodOfOneSampleEndsAtTheCapacity) {
  SynthesisJob job = MarkedJob(Periodic(110000, 100), 1.0f, 11025);
  EXPECT_EQ(std::ssize(job.marks), kMostMarks);
  EXPECT_TRUE(std::is_sorted(job.marks.begin(), job.marks.end(), std::less_equal<>()));
}

}  // namespace
}  // namespace parlowen
