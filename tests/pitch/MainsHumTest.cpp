// The hum of the mains beneath a voice whose wave without it is known, and what must not be taken for hum.

#include "pitch/MainsHum.h"

#include <gtest/gtest.h>

#include "pitch/Voices.h"

namespace parlowen {
namespace {

using namespace testing;

constexpr int kRate = 8000;

/// Words with pauses between them, twelve seconds.
Wave Words(double f0, const Wave& pause) {
  std::vector<Wave> parts;
  for (int i = 0; i < 8; ++i) parts.insert(parts.end(), {pause, Vowel(kRate, f0, 1.0, 8000, f0 + i)});
  return Joined(parts);
}

/// Seven harmonics, the frequency between `from` and `to`.
Wave Hum(double seconds, double peak, double from, double to) {
  Wave wave = Silence(kRate, seconds);
  double phase = 0;
  for (std::size_t n = 0; n < wave.size(); ++n) {
    const double share = static_cast<double>(n) / static_cast<double>(wave.size());
    phase += 2 * std::numbers::pi * (from + (to - from) * share) / kRate;
    for (int k = 1; k <= 7; ++k) wave[n] += peak / k * std::sin(k * phase + k * k);
  }
  return wave;
}

std::vector<float> Floats(const Wave& wave) { return {wave.begin(), wave.end()}; }

double Power(const std::vector<float>& one, const std::vector<float>& other) {
  double sum = 0;
  for (std::size_t n = 0; n < one.size(); ++n) sum += std::pow(static_cast<double>(one[n] - other[n]), 2);
  return sum;
}

TEST(MainsHum, IsTakenOutBeneathTheVoiceToo) {
  const Wave words = Mixed(Words(120, Silence(kRate, 0.5)), WhiteNoise(kRate, 12, 20));
  const auto clean = Floats(words);
  // What is left of it, in dB: the frequency stays, is not quite that of the mains, or wanders.
  const struct {
    double from, to, left;
  } kHums[] = {{50, 50, -40}, {59.92, 59.92, -40}, {60.3, 60.3, -30}, {49.95, 50.05, -15}};
  for (const auto& hum : kHums) {
    const auto with = Floats(Mixed(words, Hum(12, 300, hum.from, hum.to)));
    auto without = with;
    EXPECT_TRUE(RemoveMainsHum(without, kRate));
    EXPECT_LT(10 * std::log10(Power(without, clean) / Power(with, clean)), hum.left) << hum.from << " Hz";
  }
}

TEST(MainsHum, WhatIsNoHumStaysToTheBit) {
  const Wave noise = WhiteNoise(kRate, 12, 20), pause = Silence(kRate, 0.5);
  Wave ending = Mixed(Words(120, pause), noise), faded = Sine(kRate, 100, 12, 8000);
  ending = Mixed(ending, Hum(6, 300, 50, 50));
  for (std::size_t n = 0; n < faded.size(); ++n)
    faded[n] *= std::pow(10, -3 * (1 - static_cast<double>(n) / static_cast<double>(faded.size())));
  std::vector<Wave> sounds = {Words(120, pause), Mixed(Words(100, pause), noise), ending, faded, {}, {1.0}};
  for (const double f0 : {50.0, 100.0, 150.0, 180.0}) {
    const Wave tone = Sine(kRate, f0, 4, 5000), voice = Vowel(kRate, f0, 4);
    for (const Wave& steady : {tone, voice}) {
      sounds.push_back(steady);
      sounds.push_back(Joined({Silence(kRate, 2), steady, Silence(kRate, 2)}));
      sounds.push_back(Mixed(sounds.back(), noise));
    }
  }
  for (std::size_t i = 0; i < sounds.size(); ++i) {
    const auto before = Floats(sounds[i]);
    auto after = before;
    EXPECT_FALSE(RemoveMainsHum(after, kRate)) << i;
    EXPECT_EQ(after, before) << i;
  }
}

}  // namespace
}  // namespace parlowen
