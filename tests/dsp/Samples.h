#pragma once
#include <algorithm>
#include <cmath>
#include <cstdint>
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

inline SampleSpan SpanOf(const std::vector<std::int16_t>& samples) {
  return {samples.data(), static_cast<int>(samples.size())};
}

}  // namespace parlowen
