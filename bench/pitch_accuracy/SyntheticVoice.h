#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace parlowen {

/// A recording whose pitch is known.
struct KnownVoice {
  std::string name;
  int sampleRate = 0;
  std::vector<std::int16_t> samples;
  std::vector<float>
      frequency;  ///< Hz at the centre of the 20 ms behind the start of each 10 ms frame; 0 unvoiced
};

enum class Noise { None, White, Pink, Hum };

/// Names of the voices that MakeVoice() knows.
std::vector<std::string> VoiceNames();

/// A glottal flow derivative (polynomial pulse, 60 % open) through four formants, with weak vowels, voice
/// bars, nasals, fricatives, bursts and silences, at about 48 kHz and then brought to `sampleRate`.
KnownVoice MakeVoice(const std::string& name, int sampleRate);

/// Adds noise `ratio` dB below the mean power of the voiced frames.
void AddNoise(KnownVoice& voice, Noise noise, double ratio);

}  // namespace parlowen
