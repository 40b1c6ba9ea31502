#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "dsp/AnalysisWindow.h"
#include "dsp/SignalTables.h"

namespace parlowen {
namespace {

class SignalTables : public testing::Environment {
  void SetUp() override { InitSignalTables(); }
};
const auto* const kTables = testing::AddGlobalTestEnvironment(new SignalTables);

TEST(Tables, TwiddlesUseTheShortAngleAndStopAtHalf) {
  EXPECT_EQ(TwiddleTable[0].re, 1.0);
  // A quarter turn of 256 · 0.00613592314453125 = 1.570796325 misses π/2 by 1.7949e-9.
  EXPECT_NEAR(TwiddleTable[256].re, 1.794896619e-9, 3e-16);
  EXPECT_EQ(TwiddleTable[256].im, -1.0);
  EXPECT_EQ(TwiddleTable[512].re, 0.0);
  EXPECT_EQ(CosQ15[0], 32768);
  EXPECT_EQ(SinQ15[0], 0);
  EXPECT_EQ(SinQ15[256], -32768);
  // Toward zero: cos 45° and its mirror have the same magnitude, one unit below the rounded one.
  EXPECT_EQ(CosQ15[128], 23170);  // 23170.475
  EXPECT_EQ(CosQ15[384], -23170);
  EXPECT_EQ(CosQ15[1], 32767);  // 32767.383
  EXPECT_EQ(SinQ15[1], -201);   // -201.06
  for (std::size_t k = 0; k < 512; ++k) {
    const double angle = std::acos(-1.0) * static_cast<double>(k) / 512;
    EXPECT_NEAR(TwiddleTable[k].re, std::cos(angle), 4e-9) << k;
    EXPECT_NEAR(TwiddleTable[k].im, -std::sin(angle), 4e-9) << k;
    EXPECT_NEAR(CosQ15[k], 32768 * std::cos(angle), 1.001) << k;
    EXPECT_NEAR(SinQ15[k], -32768 * std::sin(angle), 1.001) << k;
  }
}

TEST(Tables, ApproxMagnitudeIsTheLargerPartTimesARoot) {
  EXPECT_EQ(ApproxMagnitude({3.0, 4.0}), 4.0 * std::sqrt(1.75));
  EXPECT_EQ(ApproxMagnitude({-4.0, -3.0}), 4.0 * std::sqrt(1.75));
  EXPECT_EQ(ApproxMagnitude({-2.0, 0.0}), 2.0);
  EXPECT_EQ(ApproxMagnitude({0.0, -0.0}), 0.0);
  EXPECT_DOUBLE_EQ(ApproxMagnitude({7.0, 7.0}), 7.0 * std::sqrt(2.0));
  // r·500 + 0.5 just below and at 2: k = 1 and k = 2.
  EXPECT_EQ(ApproxMagnitude({1.0, 0.00299}), std::sqrt(1.002));
  EXPECT_EQ(ApproxMagnitude({1.0, 0.00301}), std::sqrt(1.004));
}

TEST(Tables, ApproxMagnitudeOfNoNumberStaysInsideItsTable) {
  const double inf = std::numeric_limits<double>::infinity();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const Complex z : {Complex(inf, 1.0), Complex(0.0, -inf), Complex(-inf, inf)}) {
    EXPECT_EQ(ApproxMagnitude(z), inf);
  }
  for (const Complex z : {Complex(nan, 1.0), Complex(0.0, nan), Complex(nan, nan), Complex(inf, nan)}) {
    EXPECT_TRUE(std::isnan(ApproxMagnitude(z)));
  }
}

TEST(Window, SineAndRaisedCosineHaveTheirStatedShapes) {
  MakeAnalysisWindow(256, 0.0);
  EXPECT_EQ(AnalysisWindow[0], 0.0);
  EXPECT_NEAR(AnalysisWindow[128], 1.0, 1e-12);
  EXPECT_NEAR(AnalysisWindow[64], std::sqrt(0.5), 1e-8);
  MakeAnalysisWindow(256, 0.0001);  // the limit itself still gives the sine
  EXPECT_EQ(AnalysisWindow[0], 0.0);
  MakeAnalysisWindow(256, 1.0);
  EXPECT_EQ(AnalysisWindow[0], 2.0);
  EXPECT_NEAR(AnalysisWindow[128], 1.0, 1e-12);
  MakeAnalysisWindow(100, 0.04);
  EXPECT_NEAR(AnalysisWindow[0], 0.08, 1e-15);
  EXPECT_NEAR(AnalysisWindow[25], 0.54, 1e-8);
  EXPECT_NEAR(AnalysisWindow[50], 1.0, 1e-12);
}

TEST(Window, TheTailIsClearedToTheEndOfTheTransformItIsFor) {
  const auto refill = [] { AnalysisWindow.fill(9.0); };
  struct {
    int length, firstZero, firstKept;
  } const cases[] = {{0, 0, 512},        {-3, 0, 512},       {45, 45, 512},
                     {511, 511, 512},    {512, 512, 512},    {513, 513, 1024},
                     {1023, 1023, 1024}, {1024, 1024, 1024}, {1090, 1024, 1024}};
  for (const auto& c : cases) {
    refill();
    EXPECT_EQ(MakeAnalysisWindow(c.length, 1.0), 0);
    for (int i = 0; i < 1024; ++i) {
      const double value = AnalysisWindow[static_cast<std::size_t>(i)];
      if (i < c.firstZero) {
        ASSERT_TRUE(value >= 1.0 && value <= 2.0) << c.length << " " << i;
      } else {
        ASSERT_EQ(value, i < c.firstKept ? 0.0 : 9.0) << c.length << " " << i;
      }
    }
  }
}

}  // namespace
}  // namespace parlowen
