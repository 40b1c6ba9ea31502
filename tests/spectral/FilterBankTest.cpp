#include "spectral/FilterBank.h"

#include <gtest/gtest.h>

#include <cmath>

#include "base/Arithmetic.h"
#include "document/LevelMeasures.h"
#include "dsp/Decibel.h"
#include "dsp/Fir.h"
#include "dsp/SignalTables.h"
#include "support/Vowels.h"

namespace parlowen {
namespace {

using Signal = std::vector<double>;

/// Output of a 41-tap filter, centred, zeros outside.
Signal Filtered(const Signal& input, int cutoff, bool highpass, int rate) {
  double taps[41];
  DesignFirFilter(cutoff, 0.92, 20, highpass, taps, rate);
  Signal output(input.size());
  const int count = static_cast<int>(input.size());
  for (int n = 0; n < count; ++n)
    for (int m = 0; m < 41; ++m)
      if (n + m - 20 >= 0 && n + m - 20 < count)
        output[static_cast<std::size_t>(n)] += taps[m] * input[static_cast<std::size_t>(n + m - 20)];
  return output;
}

/// One channel after the other, one filter behind the other.
std::vector<int> ExpectedGreys(const std::vector<std::int16_t>& sound, int rate, int start, int end,
                               int columns, int peak) {
  start = std::max(start, 50);
  const int length = end - start, frame = rate > 12000 ? rate / 250 : rate / 300;
  const auto at = [&](int n) {
    return n >= 0 && n < static_cast<int>(sound.size()) ? double(sound[static_cast<std::size_t>(n)]) : 0.0;
  };
  Signal block;
  for (int n = start - 50; n < end + 50; ++n)
    block.push_back((at(n + 1) - 0.95 * at(n)) * 1500 / (peak * rate * 0.0001));
  const auto levelsOf = [&](const Signal& signal) {
    Signal levels;
    for (int j = 0; j < columns; ++j) {
      double energy = 0;
      const std::size_t from = 50 + static_cast<std::size_t>(j) * static_cast<std::size_t>(length) /
                                        static_cast<std::size_t>(columns);
      for (std::size_t n = from; n < from + static_cast<std::size_t>(frame) && n < signal.size(); ++n)
        energy += signal[n] * signal[n];
      levels.push_back(PowerToDb(energy, 0));
    }
    return levels;
  };
  std::vector<std::int16_t> copy;
  for (const double value : block) copy.push_back(static_cast<std::int16_t>(value));
  double taps[41];
  DesignFirFilter(2000, 0.92, 20, 0, taps, rate);
  EXPECT_EQ(ApplyFirFilter(41, static_cast<int>(copy.size()) - 39, 20, taps, copy.data(),
                           static_cast<int>(copy.size())),
            0);
  const Signal range = levelsOf(Signal(copy.begin(), copy.end()));
  const auto [low, high] = std::minmax_element(range.begin(), range.end());
  const double contrast = 255 / std::max(40.0, 0.75 * (*high - *low));

  std::vector<int> greys(static_cast<std::size_t>(columns) * 256, -1);
  for (int c = 1; c <= 255; ++c) {
    const int lower = (c - 1) * rate / 512, upper = (c + 1) * rate / 512;
    Signal signal = block;
    if (upper < rate / 2 - 10)
      signal = Filtered(signal, upper, false, rate);
    else
      for (double& value : signal) value *= 0.8;
    if (lower < 11)
      for (double& value : signal) value *= 0.8;
    else
      signal = Filtered(signal, lower, true, rate);
    const Signal levels = levelsOf(signal);
    for (int j = 0; j < columns; ++j)
      for (const int row : {c, c - 1})
        greys[static_cast<std::size_t>(j * 256 + row)] =
            std::max(0, 255 - static_cast<int>(contrast * levels[static_cast<std::size_t>(j)]));
  }
  return greys;
}

TEST(FilterBank, ChannelsAreTwoFiltersOneBehindTheOther) {
  InitSignalTables();
  const auto sound = testing::MakeVowel(testing::kNineVowels[0], 16000, 110, 4000);
  const struct {
    int rate, start, end, columns;
  } cases[] = {{16000, 1000, 2600, 100},
               {12000, 0, 900, 37},
               {12001, 30, 1500, 50},
               {8000, 51, 400, 984},
               {44100, 3000, 3999, 20}};
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.rate));
    const auto expected = ExpectedGreys(sound, c.rate, c.start, c.end, c.columns, 9000);
    const SpectrogramMatrix matrix =
        ComputeFilterBank({sound.data(), 4000}, c.rate, c.start, c.end, c.columns, 9000);
    ASSERT_EQ(matrix.columns, c.columns);
    for (std::size_t i = 0; i < expected.size(); ++i)
      ASSERT_EQ(matrix.greys[i], expected[i]) << i / 256 << " " << i % 256;
  }
}

TEST(FilterBank, StretchesAtTheirBounds) {
  InitSignalTables();
  const std::vector<std::int16_t> silence(64000);
  const SampleSpan span{silence.data(), 64000};
  EXPECT_EQ(ComputeFilterBank(span, 16000, 100, 63301, 4, 1).columns, 0);
  const SpectrogramMatrix longest = ComputeFilterBank(span, 16000, 100, 63300, 4, 1);
  EXPECT_EQ(longest.columns, 4);
  EXPECT_TRUE(std::all_of(longest.greys.begin(), longest.greys.end(), [](int grey) { return grey == 255; }));
  EXPECT_EQ(ComputeFilterBank(span, 16000, 0, 50, 4, 1).columns, 0) << "the start moves to 50";
  EXPECT_EQ(ComputeFilterBank(span, 16000, 0, 51, 4, 1).columns, 4);
  EXPECT_EQ(ComputeFilterBank({nullptr, 0}, 16000, 0, 0, 984, 1).columns, 0);
  const auto noise = testing::Noise(300, 32000);
  for (const int rate : {1000, 384000})  // the end of the sound, and scales beyond 16 bits
    EXPECT_EQ(ComputeFilterBank({noise.data(), 300}, rate, 0, 300, 10, 1).columns, 10);
  EXPECT_EQ(FilterBankFrameLength(12000), 40);
  EXPECT_EQ(FilterBankFrameLength(12001), 48);
}

}  // namespace
}  // namespace parlowen
