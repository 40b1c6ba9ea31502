#pragma once
#include <cmath>
#include <cstdint>
#include <memory>
#include <numbers>
#include <random>
#include <vector>

#include "document/SoundDocument.h"

namespace parlowen::testing {

using Wave = std::vector<double>;

inline Wave Silence(int rate, double seconds) { return Wave(static_cast<std::size_t>(rate * seconds), 0.0); }

/// A vowel: the harmonics of `f0` up to 4 kHz under a formant at 600 Hz, largest value `peak`. `f1` is F0 at
/// the end. With `dispersion` 0 the harmonics are in phase and a period has one sharp peak, else it has many.
inline Wave Vowel(int rate, double f0, double seconds, double peak = 8000, double f1 = 0,
                  double dispersion = 1) {
  Wave wave = Silence(rate, seconds);
  double phase = 0, largest = 0;
  for (std::size_t n = 0; n < wave.size(); ++n) {
    const double share = static_cast<double>(n) / static_cast<double>(wave.size());
    const double f = f1 > 0 ? f0 + (f1 - f0) * share : f0;
    phase += 2 * std::numbers::pi * f / rate;
    for (int k = 1; k * f < std::min(4000.0, 0.45 * rate); ++k)
      wave[n] += std::cos(k * phase + k * k * dispersion) / (1 + std::pow((k * f - 600) / 300, 2));
    largest = std::max(largest, std::fabs(wave[n]));
  }
  for (double& y : wave) y *= peak / largest;
  return wave;
}

inline Wave Sine(int rate, double frequency, double seconds, double peak) {
  Wave wave = Silence(rate, seconds);
  for (std::size_t n = 0; n < wave.size(); ++n)
    wave[n] = peak * std::sin(2 * std::numbers::pi * frequency * static_cast<double>(n) / rate);
  return wave;
}

inline Wave WhiteNoise(int rate, double seconds, double deviation) {
  Wave wave = Silence(rate, seconds);
  std::mt19937 random(5);
  std::normal_distribution<double> gauss(0, deviation);
  for (double& y : wave) y = gauss(random);
  return wave;
}

inline Wave Joined(const std::vector<Wave>& parts) {
  Wave all;
  for (const Wave& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

inline Wave Mixed(Wave wave, const Wave& other) {
  for (std::size_t n = 0; n < std::min(wave.size(), other.size()); ++n) wave[n] += other[n];
  return wave;
}

inline std::vector<std::int16_t> Samples(const Wave& wave) {
  std::vector<std::int16_t> samples;
  for (const double y : wave)
    samples.push_back(static_cast<std::int16_t>(std::lround(std::clamp(y, -32768.0, 32767.0))));
  return samples;
}

/// A document with this sound loaded.
inline std::unique_ptr<SoundDocument> Document(const Wave& wave, int rate, CommandStates& states) {
  auto document = std::make_unique<SoundDocument>();
  const std::vector<std::int16_t> samples = Samples(wave);
  std::copy(samples.begin(), samples.end(), document->samples.data());
  document->resetForNewSound(static_cast<int>(samples.size()), rate, states);
  document->resetPitch();
  return document;
}

}  // namespace parlowen::testing
