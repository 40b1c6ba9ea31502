#pragma once
#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "ui/Text.h"

namespace parlowen {

/// What is said without a loudspeaker.
inline constexpr UiText kNoLoudspeaker = "没有可用的放音设备";

// What the player and the recorder need of a sound card. Notices come as events on the one thread, never from
// inside a call made here; after Close none comes. Every call returns at once, also when the device does not
// answer: what only shows later comes as a notice.

/// A loudspeaker that plays one buffer of 16-bit mono samples at a time.
class SoundOutput {
 public:
  virtual ~SoundOutput() = default;

  /// Takes the device for a rate in Hz; "" or what the device says against it.
  virtual std::string Open(int sampleRate) = 0;
  /// Names the samples to play; they stay where they are until Close.
  virtual bool Prepare(std::span<const std::int16_t> samples) = 0;
  /// Begins to play what is prepared.
  virtual bool Write() = 0;
  /// Samples played so far.
  virtual int Position() const = 0;
  /// Silences the device at once; false when it no longer answers.
  virtual bool Reset() = 0;
  virtual bool Close() = 0;

  std::function<void()> onDone;                      ///< all is played
  std::function<void(const std::string&)> onFailed;  ///< the play ended early: what is said about it
};

/// How a microphone was lost.
enum class InputLoss {
  NotOpened,  ///< it could not be opened after all
  Gone,       ///< it has ended or does not answer
};

/// A microphone that fills the blocks it is given, in their order.
class SoundInput {
 public:
  virtual ~SoundInput() = default;

  virtual bool IsPresent() const = 0;
  /// Takes the device for a rate in Hz and 1 or 2 channels of 16 bits, interleaved.
  virtual bool Open(int sampleRate, int channels) = 0;
  /// Makes a block known. It stays where it is until Close.
  virtual bool Prepare(std::span<std::int16_t> block) = 0;
  /// Hands a prepared block over to be filled.
  virtual bool Queue(std::span<std::int16_t> block) = 0;
  virtual bool Start() = 0;
  virtual void Close() = 0;

  std::function<void(std::span<std::int16_t>)> onFilled;  ///< a block is back in its owner's hands
  std::function<void(InputLoss)> onLost;                  ///< nothing more will come
};

/// The devices of a workstation. They outlive it; a null one is a machine without.
struct SoundDevices {
  SoundOutput* output = nullptr;
  SoundInput* input = nullptr;
};

}  // namespace parlowen
