// The recordings of sounds/ as documents.
#pragma once
#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "document/SoundDocument.h"
#include "document/WavFile.h"

namespace parlowen::testing {

/// In the order of their names.
inline constexpr const char* kRecordings[] = {
    "english_female_prompt_8000.wav",          "english_male_sentence_16000.wav",
    "mandarin_initials_male_22050.wav",        "mandarin_mao_four_tones_female_11025.wav",
    "mandarin_mao_four_tones_male_16000.wav",  "mandarin_mao_four_tones_male_44100.wav",
    "synthetic_vowels_two_channels_16000.wav",
};

struct LoadedRecording {
  std::string name;
  int rate = 0;
  std::vector<std::int16_t> samples;  ///< the first channel

  std::unique_ptr<SoundDocument> Document() const {
    auto document = std::make_unique<SoundDocument>();
    CommandStates states;
    std::copy(samples.begin(), samples.end(), document->samples.data());
    document->resetForNewSound(static_cast<int>(samples.size()), rate, states);
    return document;
  }
};

inline LoadedRecording LoadRecording(const std::string& name) {
  const InputFile file(std::string(PARLOWEN_SOURCE_DIR "/sounds/") + name);
  const auto found = ReadWavLayout(file, WavHeaderRule::OneChunkSkipped);
  const auto& layout = found.value();
  LoadedRecording recording{name, static_cast<int>(layout.sampleRate), {}};
  const int count = static_cast<int>(layout.dataBytes / layout.blockAlign);
  recording.samples.resize(static_cast<std::size_t>(count));
  if (layout.blockAlign == 4) {
    ReadStereoFrames(file, layout.dataOffset, count, recording.samples.data(), nullptr);
  } else {
    ReadMonoSamples(file, layout.dataOffset, count, recording.samples.data());
  }
  return recording;
}

inline std::vector<LoadedRecording> Recordings() {
  std::vector<LoadedRecording> recordings;
  for (const char* name : kRecordings) recordings.push_back(LoadRecording(name));
  return recordings;
}

}  // namespace parlowen::testing
