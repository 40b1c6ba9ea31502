#pragma once
#include <cmath>
#include <cstdint>
#include <vector>

#include "dsp/SampleSpan.h"

namespace parlowen::testing {

struct Tone {
  double frequency = 500, amplitude = 0;  ///< Hz
};

/// Sines that begin at phase 0, rounded to whole samples.
inline std::vector<std::int16_t> Sines(int count, int rate, std::initializer_list<Tone> tones) {
  std::vector<std::int16_t> samples;
  for (int i = 0; i < count; ++i) {
    double sum = 0;
    for (const Tone& tone : tones) sum += tone.amplitude * std::sin(2 * M_PI * tone.frequency * i / rate);
    samples.push_back(static_cast<std::int16_t>(std::lround(sum)));
  }
  return samples;
}

inline SampleSpan SpanOf(const std::vector<std::int16_t>& samples) {
  return {samples.data(), static_cast<int>(samples.size())};
}

}  // namespace parlowen::testing
