#include "spectral/LongTermSpectrum.h"

#include <gtest/gtest.h>

#include <cmath>

#include "dsp/Decibel.h"
#include "dsp/PlainTransforms.h"
#include "dsp/SignalTables.h"
#include "support/Samples.h"
#include "support/Vowels.h"

namespace parlowen {
namespace {

TEST(LongTermSpectrum, IsTheMeanOfFramesOnTheDoubledScale) {
  InitSignalTables();
  auto sound = testing::Noise(9000, 50);
  for (std::size_t n = 0; n < sound.size(); ++n)
    sound[n] = static_cast<std::int16_t>(sound[n] + 30000 * std::sin(0.7 * static_cast<double>(n)));
  for (const auto& [rate, start, end] :
       {std::tuple{16000, 700, 9000}, {11025, 1, 300}, {8000, 8400, 9000}, {22050, 8999, 9000}}) {
    std::vector<int> places;
    for (int n = 0; start + static_cast<int>(n * (rate / 400.0)) <= end - rate / 200; ++n)
      places.push_back(start + static_cast<int>(n * (rate / 400.0)));
    LtaSpectrum levels;
    ASSERT_EQ(ComputeLongTermSpectrum(SpanOf(sound), rate, start, end, levels),
              static_cast<int>(places.size()));
    const std::size_t half = places.size() / 2;  // an odd count divides by the half rounded down
    if (half == 0) continue;
    std::vector<double> sums(256);
    for (const int place : places) {
      std::vector<Complex> frame(512);
      for (int n = 0; n < 512 && place + n < 9000; ++n)
        frame[static_cast<std::size_t>(n)] =
            sound[static_cast<std::size_t>(place + n)] * (0.54 - 0.46 * std::cos(n * (6.2831853 / 512)));
      frame = PlainFft(frame);
      for (std::size_t k = 0; k < 256; ++k)
        sums[k] += PowerToDb(frame[k].re * frame[k].re + frame[k].im * frame[k].im, 35);
    }
    // The file keeps every bit: beside a loud tone not one weak bin may fall on another step of the logarithm
    // table.
    for (std::size_t k = 0; k < 256; ++k)
      ASSERT_NEAR(levels[k], sums[k] / static_cast<double>(half), 1e-10) << rate << " bin " << k;
  }
}

TEST(LongTermSpectrum, FewerThanTwoFramesDivideByZero) {
  InitSignalTables();
  const auto sound = testing::Noise(2000, 15000);
  LtaSpectrum levels;
  EXPECT_EQ(ComputeLongTermSpectrum(SpanOf(sound), 16000, 100, 179, levels),
            0);  // 79 samples: p = S is past E − 80
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
  one[100] += 8;  // the mean is 8/256
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
