#pragma once
#include <deque>
#include <span>
#include <string>
#include <vector>

#include "audio/CaptureBlock.h"
#include "audio/SoundDevice.h"

namespace parlowen::testing {

/// A loudspeaker that plays when the test says so and fails at the call that the test names.
class FakeLoudspeaker : public SoundOutput {
 public:
  std::string failAt, refusal;
  std::vector<std::string> calls;
  std::vector<std::int16_t> heard;  ///< what was prepared last
  int position = 0, rate = 0;

  std::string Open(int sampleRate) override {
    rate = sampleRate;
    return Call("open") ? "" : refusal;
  }
  bool Prepare(std::span<const std::int16_t> samples) override {
    heard.assign(samples.begin(), samples.end());
    return Call("prepare");
  }
  bool Write() override { return Call("write"); }
  int Position() const override { return position; }
  bool Reset() override { return Call("reset"); }
  bool Close() override { return Call("close"); }

 private:
  bool Call(const char* name) {
    calls.push_back(name);
    return failAt != name;
  }
};

/// A block whose amplitude tells which one it is; its mean is 0 and its level the amplitude.
inline std::vector<std::int16_t> Square(int amplitude, int channels = 1) {
  std::vector<std::int16_t> block;
  for (int i = 0; i < kBlockSamples; ++i)
    block.push_back(static_cast<std::int16_t>(i / channels % 2 == 0 ? amplitude : -amplitude));
  return block;
}

/// A microphone that is fed by the test.
class FakeMicrophone : public SoundInput {
 public:
  std::string failAt;
  int rate = 0, channels = 0, queued = 0;  ///< blocks handed over so far
  bool open = false;
  std::deque<std::span<std::int16_t>> queue;

  bool IsPresent() const override { return failAt != "present"; }
  bool Open(int sampleRate, int channelCount) override {
    rate = sampleRate;
    channels = channelCount;
    return open = failAt != "open";
  }
  bool Prepare(std::span<std::int16_t>) override { return failAt != "prepare"; }
  bool Queue(std::span<std::int16_t> block) override {
    ++queued;
    queue.push_back(block);
    return failAt != "queue";
  }
  bool Start() override { return failAt != "start"; }
  void Close() override {
    open = false;
    queue.clear();
  }

  /// Fills the next block and gives notice; false when the recorder has queued none.
  bool Fill(const std::vector<std::int16_t>& samples) {
    if (queue.empty()) return false;
    const auto block = queue.front();
    queue.pop_front();
    std::copy(samples.begin(), samples.end(), block.begin());
    onFilled(block);
    return true;
  }
};

}  // namespace parlowen::testing
