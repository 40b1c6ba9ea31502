// The recordings of sounds/ as documents.
#pragma once
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "document/SoundDocument.h"
#include "document/WavFile.h"

namespace parlowen::testing {

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
  const auto layout = ReadWavLayout(file, WavHeaderRule::OneChunkSkipped);
  LoadedRecording recording{name, static_cast<int>(layout->sampleRate), {}};
  recording.samples.resize(static_cast<std::size_t>(layout->dataBytes / layout->blockAlign));
  ReadMonoSamples(file, layout->dataOffset, static_cast<int>(recording.samples.size()),
                  recording.samples.data());
  return recording;
}

/// In the order of their names.
inline std::vector<LoadedRecording> Recordings() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(PARLOWEN_SOURCE_DIR "/sounds"))
    if (entry.path().extension() == ".wav") names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  std::vector<LoadedRecording> recordings;
  for (const std::string& name : names) recordings.push_back(LoadRecording(name));
  return recordings;
}

}  // namespace parlowen::testing
