#pragma once
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <numbers>
#include <random>
#include <vector>

namespace parlowen::testing {

/// Resonances of a synthetic vowel: F1..F4 in Hz, as the manifest of the sounds tells them.
struct Vowel {
  const char* name;
  double formants[4];
};
inline constexpr Vowel kNineVowels[] = {
    {"a", {760, 1280, 2500, 3500}}, {"o", {480, 850, 2450, 3400}},  {"ɤ", {500, 1250, 2450, 3450}},
    {"i", {290, 2300, 3000, 3550}}, {"u", {330, 720, 2350, 3300}},  {"y", {290, 1950, 2350, 3350}},
    {"ɛ", {560, 1750, 2500, 3500}}, {"ɚ", {520, 1350, 1750, 3300}}, {"ɿ", {370, 1400, 2650, 3450}}};

/// Channel 1 of sounds/synthetic_vowels_two_channels_16000.wav: nine vowels of 400 ms, 50 ms of silence after
/// each.
inline std::vector<std::int16_t> RecordedVowels() {
  std::ifstream file(PARLOWEN_SOURCE_DIR "/sounds/synthetic_vowels_two_channels_16000.wav", std::ios::binary);
  const std::vector<char> bytes((std::istreambuf_iterator<char>(file)), {});
  std::vector<std::int16_t> samples;
  for (std::size_t at = 44; at + 3 < bytes.size(); at += 4)
    samples.push_back(static_cast<std::int16_t>(static_cast<unsigned char>(bytes[at]) | bytes[at + 1] << 8));
  return samples;
}

/// A vowel made from pulses of `f0` Hz, softened like a glottal flow, through its formants (70, 95, 140 and
/// 200 Hz wide) and those of the recorded ones above them: 4500, 5500, 6500 and 7500 Hz.
inline std::vector<std::int16_t> MakeVowel(const Vowel& vowel, int rate, double f0, int count) {
  std::vector<double> wave(static_cast<std::size_t>(count));
  double phase = 0, flow = 0, soft = 0;
  for (double& value : wave) {
    phase += f0 / rate;
    const double pulse = phase >= 1 ? 1 : 0;
    phase -= std::floor(phase);
    flow +=
        (1 - std::exp(-2 * std::numbers::pi * 100 / rate)) * (pulse - flow);  // −6 dB an octave from 100 Hz
    soft += (1 - std::exp(-2 * std::numbers::pi * 4000 / rate)) * (flow - soft);
    value = soft;
  }
  constexpr double kBandwidths[4] = {70, 95, 140, 200};
  for (int f = 0; f < 8; ++f) {
    const double frequency = f < 4 ? vowel.formants[f] : 4500 + 1000 * (f - 4);
    const double bandwidth = f < 4 ? kBandwidths[f] : 250 + 50 * (f - 4);
    if (frequency > rate * 0.48) break;
    const double r = std::exp(-std::numbers::pi * bandwidth / rate);
    const double c = 2 * r * std::cos(2 * std::numbers::pi * frequency / rate);
    double one = 0, two = 0;
    for (double& value : wave) {
      value = (1 - c + r * r) * value + c * one - r * r * two;
      two = one;
      one = value;
    }
  }
  double peak = 0;
  for (const double value : wave) peak = std::max(peak, std::fabs(value));
  std::vector<std::int16_t> samples;
  for (const double value : wave)
    samples.push_back(static_cast<std::int16_t>(std::lround(value / peak * 12000)));
  return samples;
}

inline std::vector<std::int16_t> Noise(int count, double amplitude, unsigned seed = 1) {
  std::mt19937 random(seed);
  std::vector<std::int16_t> samples;
  for (int i = 0; i < count; ++i)
    samples.push_back(
        static_cast<std::int16_t>((static_cast<double>(random()) / 2147483648.0 - 1) * amplitude));
  return samples;
}

}  // namespace parlowen::testing
