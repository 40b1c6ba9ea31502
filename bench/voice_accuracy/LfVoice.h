#pragma once
#include <cstdint>
#include <vector>

#include "voice/GlottalAnalysis.h"

namespace parlowen::bench {

/// A made voice: Liljencrants–Fant pulses of one shape (Fant, Liljencrants and Lin 1985; Rd after Fant 1995) through a
/// vocal tract of five resonances.
struct LfSettings {
  double f0 = 120, rd = 1.0;
  int vowel = 0;  ///< 0..4: a e i o u
  int sampleRate = 16000;
  double seconds = 0.6;
  double jitter = 0, shimmer = 0;  ///< %, mean of neighbouring periods' differences over the mean
  double noise = -1;               ///< dB below the voice; none when negative
  bool inverted = false;
};

struct LfVoice {
  std::vector<std::int16_t> samples;
  std::vector<double> closures;  ///< samples, fractions
  GlottalMeasures truth;         ///< of its pulse, by the same definitions at 64 times the rate
  double jitter = 0, shimmer = 0;
};
inline constexpr const char* kLfVowels = "aeiou";

LfVoice MakeLfVoice(const LfSettings& settings);

}  // namespace parlowen::bench
