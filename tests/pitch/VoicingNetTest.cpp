// The arithmetic of the voicing decision, which no library takes part in.

#include <gtest/gtest.h>

#include <cmath>

#include "pitch/PitchBands.h"
#include "pitch/VoicingNet.h"

namespace parlowen {
namespace {

TEST(VoicingNet, SquashIsNearlyTanhAndLog2ItsName) {
  for (float x = -8; x <= 8; x += 0.01f) {
    EXPECT_NEAR(Squash(x), std::tanh(x), 0.024) << x;
    EXPECT_EQ(Squash(-x), -Squash(x));
    EXPECT_LE(std::fabs(Squash(x)), 1.0f);
  }
  for (double x = 1e-6; x < 1e14; x *= 1.0173) EXPECT_NEAR(Log2(x), std::log2(x), 1e-7) << x;
  for (const double x : {1.0, 2.0, 1024.0, 0.25}) EXPECT_EQ(Log2(x), std::log2(x));
}

TEST(VoicingNet, AddsUnitsOfScaledInputs) {
  VoicingNet net{};
  net.deviation.fill(1);
  net.mean[kLevel30] = -20;
  net.deviation[kLevel30] = 10;
  net.weights[kLevel30][2] = 0.5f;
  net.weights[kBestR][2] = 1;
  net.bias[2] = -1;
  net.output[2] = 4;
  net.outputBias = 0.25f;
  VoicingInputs inputs{};
  inputs[kBestR] = 0.5f;
  inputs[kLevel30] = 0;  // 2 deviations
  EXPECT_FLOAT_EQ(VoicingLogOdds(net, inputs), 0.25f + 4 * Squash(0.5f));
  inputs[kLevel30] = 1000;  // cut at 5 deviations
  EXPECT_FLOAT_EQ(VoicingLogOdds(net, inputs), 0.25f + 4 * Squash(2.0f));
}

}  // namespace
}  // namespace parlowen
