#pragma once
#include <cstdint>
#include <string>

#include "base/Files.h"
#include "document/SoundDocument.h"
#include "document/WavFile.h"

namespace parlowen {

/// A WAV file that is read stretch by stretch: 16 bits, one or two channels, what 110 opens.
class Recording {
 public:
  /// `channel` 1 or 2 of a stereo file. Afterwards `Problem()` says why it cannot be measured; empty when it
  /// can.
  Recording(const std::string& path, int channel);

  const std::string& Problem() const { return problem_; }
  int SampleRate() const { return static_cast<int>(layout_.sampleRate); }
  std::int64_t SampleCount() const { return count_; }
  /// True when a document holds all of it, its contour included.
  bool FitsDocument() const { return count_ <= DocumentSamples(); }
  /// The samples of a document of this rate that its contour can speak of.
  std::int64_t DocumentSamples() const;

  /// Makes samples from .. from + count − 1 the whole of the document. False when the file does not give
  /// them.
  bool Load(std::int64_t from, int count, SoundDocument& document) const;
  /// Takes the contour that was saved with the samples into a document that holds all of them; without one
  /// `pitchPresent` is false.
  void LoadContour(SoundDocument& document) const;

 private:
  InputFile file_;
  const int channel_;
  WavLayout layout_{};
  std::int64_t count_ = 0;
  std::string problem_;
};

}  // namespace parlowen
