#include "spectral/LongTermSpectrum.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>

#include "dsp/Decibel.h"
#include "dsp/SignalTables.h"
#include "spectral/Vowels.h"

namespace parlowen {
namespace {

SampleSpan SpanOf(const std::vector<std::int16_t>& samples) { return {samples.data(), static_cast<int>(samples.size())}; }

TEST(LongTermSpectrum, IsTheMeanOfFramesOnTheDoubledScale) {
  InitSignalTables();
  const auto sound = testing::Noise(3000, 15000);
  for (const auto& [rate, start, end] : {std::tuple{16000, 700, 1000}, {11025, 1, 300}, {8000, 2400, 3000}, {22050, 2999, 3000}}) {
    std::vector<int> places;
    for (int n = 0; start + static_cast<int>(n * (rate / 400.0)) <= end - rate / 200; ++n) places.push_back(start + static_cast<int>(n * (rate / 400.0)));
    LtaSpectrum levels;
    ASSERT_EQ(ComputeLongTermSpectrum(SpanOf(sound), rate, start, end, levels), static_cast<int>(places.size()));
    for (int k = 0; k < 256; k += 5) {
      double sum = 0;
      for (const int place : places) {
        std::complex<long double> bin = 0;
        for (int n = 0; n < 512 && place + n < 3000; ++n)
          bin += sound[static_cast<std::size_t>(place + n)] * (0.54L - 0.46L * std::cos(2 * std::numbers::pi_v<long double> * n / 512)) *
                 std::polar(1.0L, -2 * std::numbers::pi_v<long double> * (k * n % 512) / 512);
        sum += PowerToDb(static_cast<double>(std::norm(bin)), 35);
      }
      const std::size_t half = places.size() / 2;   // an odd count divides by the half rounded down
      if (half == 0) continue;
      EXPECT_NEAR(levels[static_cast<std::size_t>(k)], sum / static_cast<double>(half), 0.02) << rate << " bin " << k;
    }
  }
}

TEST(LongTermSpectrum, FewerThanTwoFramesDivideByZero) {
  InitSignalTables();
  const auto sound = testing::Noise(2000, 15000);
  LtaSpectrum levels;
  EXPECT_EQ(ComputeLongTermSpectrum(SpanOf(sound), 16000, 100, 179, levels), 0);   // 79 samples: p = S is past E − 80
  EXPECT_FALSE(IsFinite(levels));
  EXPECT_EQ(ComputeLongTermSpectrum(SpanOf(sound), 16000, 100, 181, levels), 1);
  EXPECT_FALSE(IsFinite(levels));
  EXPECT_EQ(ComputeLongTermSpectrum(SpanOf(sound), 16000, 100, 220, levels), 2);
  EXPECT_TRUE(IsFinite(levels));
}

TEST(LtaComparison, TakesTheMeanOutAndHalvesWhatItReports) {
  LtaSpectrum one, other;
  for (std::size_t k = 0; k < 256; ++k) {
    one[k] = 40 + static_cast<double>(k % 7);
    other[k] = one[k] - 13;
  }
  LtaDifference difference = CompareLongTermSpectra(one, other, 16000);
  EXPECT_EQ(difference.deviation, 0);
  EXPECT_EQ(difference.largest, 0);
  EXPECT_EQ(difference.largestHz, 0);
  one[100] += 8;   // the mean is 8/256
  other[30] += 8;
  difference = CompareLongTermSpectra(one, other, 22050);
  EXPECT_DOUBLE_EQ(difference.curve[100], 8);
  EXPECT_DOUBLE_EQ(difference.curve[30], -8);
  EXPECT_DOUBLE_EQ(difference.curve[0], 0);
  EXPECT_DOUBLE_EQ(difference.largest, 4);
  EXPECT_EQ(difference.largestHz, 30 * 22050 / 512) << "the lower of two equal places";
  EXPECT_DOUBLE_EQ(difference.deviation, 0.5 * std::sqrt(128 / 256.0));
}

}  // namespace
}  // namespace parlowen
