#include "audio/CaptureBlock.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "audio/GainTest.h"

namespace parlowen {
namespace {

using Block = std::vector<std::int16_t>;

BlockLevels Condition(Block& block, int channels, float gain) {
  return ConditionBlock(block, channels, gain);
}

TEST(CaptureBlock, TheGainGoesToTheNearestIntegerAndSaturates) {
  const struct {
    std::int16_t sample;
    float gain;
    int result;
    bool clipped;
  } cases[] = {
      {3, 2.5f, 8, false},
      {-3, 2.5f, -8, false},  // halves go away from zero
      {3, 0.7f, 2, false},
      {-3, 0.7f, -2, false},  // 2.1
      {16383, 2.0f, 32766, false},
      {16384, 2.0f, 32767, true},
      {-16384, 2.0f, -32768, false},
      {-16385, 2.0f, -32768, true},
      {32767, 20.0f, 32767, true},
      // 12345·1.7320508 = 21382.167…; single-precision products of this size are 1/512 apart.
      {12345, 1.7320508f, 21382, false},
      // 32765·0.7500153 = 24574.2513…; 32750·0.75 = 24562.5
      {32750, 0.75f, 24563, false},
  };
  for (const auto& c : cases) {
    Block block = {c.sample, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(Condition(block, 1, c.gain).clipped, c.clipped) << c.sample << " by " << c.gain;
    EXPECT_EQ(block[0], c.result - c.result / 4)
        << c.sample << " by " << c.gain;  // less the mean of its half
  }
}

TEST(CaptureBlock, EachHalfLosesItsOwnMeanTowardZero) {
  // Sums 7 and −7 over 4: means 1 and −1, not −2.
  Block block = {1, 2, 3, 1, -1, -2, -3, -1};
  const BlockLevels levels = Condition(block, 1, 1.0f);
  EXPECT_EQ(block, (Block{0, 1, 2, 0, 0, -1, -2, 0}));
  EXPECT_EQ(levels.first, 0) << "3/4";
  EXPECT_EQ(levels.peak, 3) << "before the offset goes";

  // Two channels: each by itself.
  Block pairs = {10, -20, 12, -22, 100, 7, 100, 7};
  const BlockLevels both = Condition(pairs, 2, 1.0f);
  EXPECT_EQ(pairs, (Block{-1, 1, 1, -1, 0, 0, 0, 0}));
  EXPECT_EQ(both.first, 1);
  EXPECT_EQ(both.second, 0);
}

TEST(CaptureBlock, TheEndsOfTheRangeSurviveTheOffset) {
  Block block(kBlockSamples, std::int16_t{-32768});
  block[0] = 32767;
  EXPECT_EQ(Condition(block, 1, 1.0f).peak, 32768);
  EXPECT_EQ(block[0], 32767) << "32767 + 32708 does not fit";
  EXPECT_EQ(block[kBlockSamples / 2], 0);
}

TEST(CaptureBlock, ABlockIsVoicedWhenEitherHalfIsAboveTheThreshold) {
  for (int loud = 0; loud < 2; ++loud)
    for (const int amplitude : {120, 121}) {
      Block block(kBlockSamples);
      for (std::size_t i = 0; i < block.size() / 2; ++i)
        block[i + static_cast<std::size_t>(loud) * block.size() / 2] =
            static_cast<std::int16_t>(i % 2 == 0 ? amplitude : -amplitude);
      EXPECT_EQ(Condition(block, 1, 1.0f).Exceeds(120), amplitude > 120);
    }
}

TEST(GainTest, CountsBlocks1ToTheLastWholeOne) {
  const struct {
    int rate, blocks, counted;  // blocks of 2200 until 4 s are full; rate·4/2200 − 1
  } cases[] = {{8000, 15, 13}, {11025, 21, 19}, {16000, 30, 28}, {22050, 41, 39}};
  for (const auto& c : cases) {
    GainTest test(c.rate);
    int sum = 0;
    for (int block = 0; block < c.blocks; ++block) {
      const int level = block * block;
      if (block >= 1 && block <= c.counted) sum += level;
      EXPECT_EQ(test.Add(level), block == c.blocks - 1) << c.rate << ", block " << block;
    }
    EXPECT_EQ(test.MeanLevel(), sum / c.counted) << c.rate;
  }
}

}  // namespace
}  // namespace parlowen
