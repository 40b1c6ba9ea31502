#include "vowel/VowelChart.h"

#include <gtest/gtest.h>

#include <cmath>

#include "vowel/AverageVowels.h"

namespace parlowen {
namespace {

TEST(VowelChart, BarkIsSevenTimesTheAreaSine) {
  EXPECT_EQ(Bark(0), 0.0);
  EXPECT_NEAR(Bark(650), 7 * std::log(1 + std::sqrt(2.0)), 1e-12);  // 6.17
  for (const double f : {1.0, 100.0, 283.0, 2350.0, 8000.0})
    EXPECT_NEAR(Bark(f), 7 * std::asinh(f / 650), 1e-9);
}

TEST(VowelChart, FrequencyPlacesAtKnownPoints) {
  const struct {
    double f1, f2, f3;
    int x, y, x3;
  } cases[] = {
      {200, 500, 1500, 300, 220, 380},    {1000, 1000, 3000, 200, 420, 480},
      {150, 2000, 6000, 100, 208, 580},    // −50/4 is −12
      {199.9, 4000, 0, 0, 220, 0},         // −0.1 is 0
      {203.99, 400, 750, 332, 220, 280},   // log2(0.8) = −0.3219, log2(0.5) = −1
      {1600, 8000, 9000, -100, 570, 638},  // log2(6) = 2.585
      {300, 1010, 1010, 198, 245, 0},      // F3 = F2 has no mark; log2(2.02) = 1.0144
      {300, 1010, 1010.5, 198, 245, 323},  // log2(1010.5/1500) = −0.5699
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.f2);
    const ChartPlace place = FrequencyPlace(c.f1, c.f2, c.f3, kPointAxes);
    EXPECT_EQ(place.x, c.x);
    EXPECT_EQ(place.y, c.y);
    EXPECT_EQ(place.x3, c.x3);
    const ChartPlace segment = FrequencyPlace(c.f1, c.f2, c.f3, kSegmentAxes);
    EXPECT_EQ(segment.x3, c.x3);
    EXPECT_EQ(segment.y, c.y - 50);
    EXPECT_EQ(segment.x, static_cast<int>(std::trunc(330 - 100 * std::log2(c.f2 / 500))));
  }
}

TEST(VowelChart, BarkPlacesAtKnownPoints) {
  // B(650) = 6.1696: (6.1696 + 1)·40 + 200 = 486.8 without a reference.
  EXPECT_EQ(BarkPlace(650, 650, 0).y, 486);
  EXPECT_EQ(BarkPlace(650, 650, 0).x, 330);
  EXPECT_EQ(BarkPlace(650, 650, 650).y, 240);
  // B(2350) = 13.9786, B(283) = 2.9588, B(120) = 1.2851: 330 − 275.5 = 54.5, 2.6737·40 + 200 = 306.9.
  EXPECT_EQ(BarkPlace(283, 2350, 120).x, 54);
  EXPECT_EQ(BarkPlace(283, 2350, 120).y, 306);
  EXPECT_EQ(BarkPlace(283, 2350, 120).x3, 0);
}

TEST(VowelChart, PlacesOfNonsenseAreDefined) {
  for (const double f : {0.0, -5.0, HUGE_VAL, std::nan("")}) {
    FrequencyPlace(f, f, 2 * f, kPointAxes);
    BarkPlace(f, f, -32768);
  }
  EXPECT_EQ(FrequencyPlace(300, 0, 0, kPointAxes).x, 32767);
}

}  // namespace
}  // namespace parlowen
