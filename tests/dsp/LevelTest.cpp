#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "dsp/Decibel.h"
#include "dsp/LevelCurve.h"
#include "dsp/SignalTables.h"
#include "support/Samples.h"

namespace parlowen {
namespace {

// The definition: the decade is counted up from 0.
double PlainDb(double power, int reference) {
  static const double tens[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  double x = power < 1.0 ? 1.0 : power;
  if (x > 1e14) x = 1e14;
  int d = 0;
  while (x >= tens[d + 1]) ++d;
  const double m = x / tens[d];
  int k = 0;
  if (m < 2.0) {
    k = static_cast<int>(400.0 * (m - 1.0));
  } else if (m < 5.0) {
    k = 400 + static_cast<int>(200.0 * (m - 2.0));
  } else {
    k = 1000 + static_cast<int>(100.0 * (m - 5.0));
  }
  const double db = 10.0 * (d + Log10Table[static_cast<std::size_t>(k)]) - reference;
  return db < 0.0 ? 0.0 : db;
}

TEST(Decibel, EveryStepOfTheTableIsWhereTheDefinitionHasIt) {
  std::vector<double> powers;
  double ten = 1.0;
  for (int decade = 0; decade <= 14; ++decade, ten *= 10.0) {
    for (std::size_t k = 0; k < 1500; ++k) {
      const double mantissa = k < 400    ? 1.0 + 0.0025 * static_cast<double>(k)
                              : k < 1000 ? 2.0 + 0.005 * static_cast<double>(k - 400)
                                         : 5.0 + 0.01 * static_cast<double>(k - 1000);
      const double edge = mantissa * ten;
      powers.insert(powers.end(), {std::nextafter(edge, 0.0), edge, std::nextafter(edge, 1e300)});
    }
  }
  for (double two = 1.0; two < 1e15; two *= 2.0) powers.insert(powers.end(), {std::nextafter(two, 0.0), two});
  std::mt19937 random(21);
  std::uniform_real_distribution<double> exponent(-2.0, 16.0);
  for (int i = 0; i < 50000; ++i) powers.push_back(std::pow(10.0, exponent(random)));

  std::vector<double> levels(powers.size() + 1, -1.0);
  PowersToDb(powers.data(), static_cast<int>(powers.size()), 26, levels.data());
  EXPECT_EQ(levels.back(), -1.0);
  for (std::size_t i = 0; i < powers.size(); ++i) {
    ASSERT_EQ(PowerToDb(powers[i], 26), PlainDb(powers[i], 26)) << powers[i];
    ASSERT_EQ(levels[i], PlainDb(powers[i], 26)) << powers[i];
    const double exact = 10.0 * std::log10(std::clamp(powers[i], 1.0, 1e14));
    const double level = PowerToDb(powers[i], 0);
    ASSERT_TRUE(level <= exact + 1e-9 && level > exact - 0.0109) << powers[i];
  }
}

TEST(Decibel, LimitsAndRoundFigures) {
  const double inf = std::numeric_limits<double>::infinity();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  struct {
    double power;
    int reference;
    double level;
  } const cases[] = {{0.5, 0, 0.0},     {0.0, 0, 0.0},    {-1e9, 0, 0.0},  {1.0, 0, 0.0},  {10.0, 0, 10.0},
                     {1000.0, 0, 30.0}, {1e14, 0, 140},   {1e20, 0, 140},  {inf, 0, 140},  {-inf, 0, 0.0},
                     {nan, 0, 0.0},     {100.0, 30, 0.0}, {1e14, 38, 102}, {1.0, -5, 5.0}, {nan, -5, 5.0},
                     {1e13, 0, 130},    {999.9999, 40, 0}};
  for (const auto& c : cases) {
    EXPECT_EQ(PowerToDb(c.power, c.reference), c.level) << c.power;
    double level = -1.0;
    PowersToDb(&c.power, 1, c.reference, &level);
    EXPECT_EQ(level, c.level) << c.power;
  }
  EXPECT_NEAR(PowerToDb(1.999, 0), 10.0 * std::log10(1.9975), 1e-12);
}

TEST(LevelCurve, EachValueIsTheLevelOfItsOwnTenMilliseconds) {
  const auto samples = NoiseSamples(9000, 3000.0, 22);
  const SampleSpan span = SpanOf(samples);
  struct {
    int sampleRate, rate, origin, count;
  } const cases[] = {{16000, 300, 0, 200},  {11025, 300, -250, 300}, {22050, 7001, 100, 3000},
                     {8000, 20, 0, 30},     {50, 300, 0, 400},       {16000, 100, 2000000000, 3},
                     {384000, 300, 8000, 4}};
  for (const auto& c : cases) {
    const auto curve = MakeLevelCurve(span, c.sampleRate, c.rate, c.origin, c.count);
    ASSERT_EQ(curve.values.size(), static_cast<std::size_t>(c.count));
    const int length = std::max(1, c.sampleRate / 100);
    for (std::int64_t i = 0; i < c.count; ++i) {
      const std::int64_t start = c.origin + i * c.sampleRate / c.rate;
      double sum = 0.0;
      for (int n = 0; n < length; ++n) sum += span.At(start + n) * span.At(start + n);
      ASSERT_EQ(curve.values[static_cast<std::size_t>(i)], PlainDb(sum / length, 0))
          << c.sampleRate << " " << i;
    }
  }
  EXPECT_TRUE(MakeLevelCurve(span, 0, 300, 0, 5).values.empty());
  EXPECT_TRUE(MakeLevelCurve(span, 16000, 0, 0, 5).values.empty());
  EXPECT_EQ(MakeLevelCurve({}, 16000, 300, 0, 2).values, (std::vector<double>{0.0, 0.0}));
}

TEST(LevelCurve, RiseIsHalfTheStepBetweenOneAndFour) {
  const LevelCurve curve{300, 1000, {10.0, 15.0, 30.0, 30.0, 20.0}};
  const auto rise = [&](int start, int length = 45) { return LevelRise(curve, start, length, 16000); };
  EXPECT_EQ(rise(1054), 2.5);  // 54·300/16000 = 1
  EXPECT_EQ(rise(1107), 4.0);  // 7.5, clamped
  EXPECT_EQ(rise(1106), 2.5);  // 106·300/16000 = 1.99, still 1
  EXPECT_EQ(rise(1160), 1.0);  // no rise
  EXPECT_EQ(rise(1214), 1.0);  // a fall
  EXPECT_EQ(rise(1000), 2.5);  // before the first step of the curve p is 1
  EXPECT_EQ(rise(-5000), 2.5);
  EXPECT_EQ(rise(2000000000), 1.0);
  EXPECT_EQ(rise(1054, 160), 2.5);
  EXPECT_EQ(rise(1054, 161), 1.0);  // above 10 ms
  EXPECT_EQ(LevelRiseAt(curve, 1, 45, 16000), 2.5);
  EXPECT_EQ(LevelRise({300, 0, {}}, 500, 45, 16000), 1.0);
  EXPECT_EQ(LevelRiseAt({299, 0, {0.0, 50.0}}, 1, 45, 16000), 1.0);
  EXPECT_EQ(LevelRiseAt({650, 0, {0.0, 50.0, 5.0}}, 0, 45, 16000), 2.5);  // two steps back, from index 2
}

}  // namespace
}  // namespace parlowen
