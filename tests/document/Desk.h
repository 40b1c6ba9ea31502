#pragma once
#include <memory>

#include "document/EditCommands.h"
#include "document/SoundFileCommands.h"
#include "support/FakeWindow.h"
#include "support/TempFolder.h"
#include "support/WavBytes.h"

namespace parlowen::testing {

/// A document with a window and a folder around it.
struct Desk {
  FakeWindow window;
  CommandStates states;
  SoundDocument document;
  TempFolder folder;

  /// Writes the bytes to a file and opens it; what the user sees.
  Texts Open(const std::string& bytes, ChannelMode mode = ChannelMode::One,
             const std::string& name = "sound1.wav") {
    openPath(window, document, states, WriteFile(folder / name, bytes), mode, false);
    return window.Log();
  }
  void Load(std::vector<std::int16_t> samples, std::uint32_t rate = 16000) {
    WavBytes wav;
    wav.samples = std::move(samples);
    wav.rate = rate;
    if (!Open(wav.Bytes()).empty()) std::abort();
  }
  /// The samples as a new sound, without a file.
  void Take(const std::vector<std::int16_t>& samples, int rate) {
    std::copy(samples.begin(), samples.end(), document.samples.data());
    document.resetForNewSound(static_cast<int>(samples.size()), rate, states);
  }
  void Select(int start, int end) {
    document.selectionStart = start;
    document.selectionEnd = end;
  }
  void Mark(int start, int end) {
    MarkStart(document, states, start);
    MarkEnd(document, states, end);
  }
  std::vector<std::int16_t> Samples() const {
    return {document.samples.data(), document.samples.data() + document.sampleCount};
  }
  std::vector<std::int16_t> Samples2() const {
    return {document.samples2.data(), document.samples2.data() + document.sampleCount};
  }
  bool SilentBehindTheEnd() const {
    for (std::size_t i = static_cast<std::size_t>(document.sampleCount); i < SampleBuffer::kCapacity; ++i)
      if (document.samples.data()[i] != 0 || document.samples2.data()[i] != 0) return false;
    return true;
  }
};

}  // namespace parlowen::testing
