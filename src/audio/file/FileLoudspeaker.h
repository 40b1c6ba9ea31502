#pragma once
#include <string>
#include <vector>

#include "audio/SoundDevice.h"

namespace parlowen {

/// Writes what is played to a WAV file, one play after the other, or to nowhere. Time passes only in Deliver.
class FileLoudspeaker : public SoundOutput {
 public:
  /// Samples that one Deliver plays.
  static constexpr int kBlock = 2200;

  /// From now on plays go to this file, which is made with the first of them; the file before it is complete.
  void WriteTo(const std::string& path);

  /// Plays the next block; the last one gives the notice that all is played. False when nothing is playing.
  bool Deliver();

  std::string Open(int sampleRate) override;
  bool Prepare(std::span<const std::int16_t> samples) override;
  bool Write() override;
  int Position() const override { return static_cast<int>(position_); }
  bool Reset() override;
  bool Close() override;  ///< false when the file could not be written

 private:
  std::string path_;    ///< "": nowhere
  int sampleRate_ = 0;  ///< of the file's first play
  std::vector<std::int16_t> written_;
  std::span<const std::int16_t> playing_;
  std::size_t position_ = 0;
  bool running_ = false;
};

}  // namespace parlowen
