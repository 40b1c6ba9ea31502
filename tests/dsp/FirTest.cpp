#include "dsp/Fir.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <vector>

#include "support/Samples.h"

namespace parlowen {
namespace {

std::vector<double> Design(int cutoff, double a, int halfLength, int highpass, int sampleRate) {
  std::vector<double> taps(static_cast<std::size_t>(2 * halfLength + 1));
  DesignFirFilter(cutoff, a, halfLength, highpass, taps.data(), sampleRate);
  return taps;
}

double GainAt(const std::vector<double>& taps, double frequency, double sampleRate) {
  std::complex<double> sum;
  for (std::size_t m = 0; m < taps.size(); ++m) {
    sum += taps[m] * std::polar(1.0, -kTwoPi * frequency / sampleRate * static_cast<double>(m));
  }
  return std::abs(sum);
}

TEST(Fir, DesignsPassAndStopWhereTheyShould) {
  const auto low = Design(2000, 0.54, 40, 0, 16000);
  EXPECT_NEAR(GainAt(low, 500, 16000), 1.0, 0.01);
  EXPECT_NEAR(GainAt(low, 2000, 16000), 0.5, 0.01);
  EXPECT_LT(GainAt(low, 4000, 16000), 0.01);
  const auto high = Design(2000, 0.54, 40, 1, 16000);
  EXPECT_LT(GainAt(high, 500, 16000), 0.01);
  EXPECT_NEAR(GainAt(high, 2000, 16000), 0.5, 0.01);
  EXPECT_NEAR(GainAt(high, 6000, 16000), 1.0, 0.01);
}

TEST(Fir, TapsAreSymmetricWithTheStatedCentreAndEnds) {
  const auto taps = Design(4000, 0.92, 7, 0, 16000);
  EXPECT_EQ(taps[7], 0.5);  // R = 2
  for (std::size_t k = 1; k <= 7; ++k) EXPECT_EQ(taps[7 - k], taps[7 + k]);
  // k = 7: sin(7π/2)/7·(2a − 1)/π.
  EXPECT_NEAR(taps[14], -0.84 / (7 * 3.14159265358979), 1e-8);
  const auto high = Design(4000, 0.92, 7, 1, 16000);
  EXPECT_EQ(high[7], 0.5);
  for (const std::size_t even : {1U, 3U, 5U, 9U, 11U, 13U}) EXPECT_EQ(high[even], 0.0);  // sin(kπ/2), k even
  EXPECT_NEAR(high[6], -1.0 / 3.14159265358979, 0.01);
}

TEST(Fir, TheLastTapIsNotAppliedAndFilteredSamplesAreReadAgain) {
  // Three taps, H = 1: y[n] = 0.5·y[n−1] + 1·x[n]; the tap of 100 never counts.
  const double recursive[] = {0.5, 1.0, 100.0};
  std::vector<std::int16_t> samples{0, 1000, 0, 0, 0, -1001, 0, 0};
  EXPECT_EQ(ApplyFirFilter(3, 6, 1, recursive, samples.data(), 8), 0);
  EXPECT_EQ(samples,
            (std::vector<std::int16_t>{0, 1000, 500, 250, 125, -938, -469, 0}));  // −938.5, −469 truncated
}

TEST(Fir, ResultsBeyondSixteenBitsKeepTheirLowBits) {
  const double gain[] = {0.0, 3.0, 0.0};
  std::vector<std::int16_t> samples{0, 20000, -20000, 0};
  EXPECT_EQ(ApplyFirFilter(3, 2, 1, gain, samples.data(), 4), 0);
  EXPECT_EQ(samples, (std::vector<std::int16_t>{0, 60000 - 65536, 65536 - 60000, 0}));
}

TEST(Fir, AMarginThatIsMissingRefusesTheCall) {
  const std::vector<double> taps(15, 0.1);
  const std::vector<std::int16_t> original(40, 1000);
  struct {
    int first, count, result;
  } const cases[] = {{7, 27, 0},  // reads 0 .. 39: first − 7 to first + count + 5
                     {6, 27, -1}, {7, 28, -1}, {-1, 5, -1}, {2147483647, 2147483647, -1},
                     {100, 0, 0}, {7, -5, 0}};
  for (const auto& c : cases) {
    auto samples = original;
    EXPECT_EQ(ApplyFirFilter(15, c.count, c.first, taps.data(), samples.data(), 40), c.result) << c.first;
    EXPECT_EQ(samples == original, c.result != 0 || c.count <= 0) << c.first;
  }
}

}  // namespace
}  // namespace parlowen
