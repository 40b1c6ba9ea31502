#pragma once
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <random>
#include <vector>

#include "dsp/SampleSpan.h"

namespace parlowen {

inline constexpr double kTwoPi = 6.283185307179586;

inline std::vector<std::int16_t> NoiseSamples(int count, double deviation, unsigned seed) {
  std::mt19937 random(seed);
  std::normal_distribution<double> noise(0.0, deviation);
  std::vector<std::int16_t> samples(static_cast<std::size_t>(count));
  for (auto& sample : samples)
    sample = static_cast<std::int16_t>(std::clamp(noise(random), -32768.0, 32767.0));
  return samples;
}

/// A tone of `cycles` periods a sample.
inline std::vector<std::int16_t> ToneSamples(int count, double amplitude, double cycles) {
  std::vector<std::int16_t> samples(static_cast<std::size_t>(count));
  for (int n = 0; n < count; ++n) {
    samples[static_cast<std::size_t>(n)] =
        static_cast<std::int16_t>(amplitude * std::sin(kTwoPi * cycles * n));
  }
  return samples;
}

namespace testing {

struct Tone {
  double frequency = 500, amplitude = 0;  ///< Hz
};

/// Sines that begin at phase 0, rounded to whole samples.
inline std::vector<std::int16_t> Sines(int count, int rate, std::initializer_list<Tone> tones) {
  std::vector<std::int16_t> samples;
  for (int i = 0; i < count; ++i) {
    double sum = 0;
    for (const Tone& tone : tones) sum += tone.amplitude * std::sin(kTwoPi * tone.frequency * i / rate);
    samples.push_back(static_cast<std::int16_t>(std::lround(sum)));
  }
  return samples;
}

}  // namespace testing

inline SampleSpan SpanOf(const std::vector<std::int16_t>& samples) {
  return {samples.data(), static_cast<int>(samples.size())};
}

}  // namespace parlowen
