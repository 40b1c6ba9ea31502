#pragma once
#include <deque>
#include <memory>
#include <string>

#include "audio/SoundDevice.h"
#include "base/Files.h"
#include "document/WavFile.h"

namespace parlowen {

/// A microphone that hears a 16-bit WAV file, from its first sample at every start and silence behind its
/// last one. The samples are taken as they stand, whatever the rate. A mono file feeds both of two channels,
/// a stereo file's left channel one. Time passes only in Deliver.
class FileMicrophone : public SoundInput {
 public:
  /// "" or what is wrong, to be followed by the name of the file. Then the old file stays.
  std::string Listen(const std::string& path);

  /// Fills the next queued block; false when none is queued or nothing is started.
  bool Deliver();

  int Delivered() const { return delivered_; }     ///< blocks since the start
  int DeliveredSilent() const { return silent_; }  ///< those of them that lie wholly behind the file

  bool IsPresent() const override { return file_ != nullptr; }
  bool Open(int sampleRate, int channels) override;
  bool Prepare(std::span<std::int16_t>) override { return true; }
  bool Queue(std::span<std::int16_t> block) override;
  bool Start() override;
  void Close() override;

 private:
  int ReadFrames(std::span<std::int16_t> block);

  std::unique_ptr<InputFile> file_;
  WavLayout layout_;
  std::deque<std::span<std::int16_t>> queue_;
  int channels_ = 1;
  std::int64_t offset_ = 0;  ///< of the next frame, in bytes behind the start of the data
  int delivered_ = 0, silent_ = 0;
  bool running_ = false;
};

}  // namespace parlowen
