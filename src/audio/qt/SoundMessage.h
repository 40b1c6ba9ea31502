#pragma once
#include <QByteArray>
#include <cstdint>
#include <initializer_list>
#include <optional>

namespace parlowen {

// What the desktop program and its sound process (SoundProcess.h) say to each other through two pipes. A message
// is its kind, the number of the request it belongs to and the size of what follows, 32 bits each in the
// machine's own byte order, then so many bytes.

enum class SoundMessageKind : std::int32_t {
  // To the process.
  Play = 1,  ///< a rate in Hz, then 16-bit mono samples
  Record,    ///< a rate in Hz, 1 or 2 channels
  Stop,      ///< ends the request with this number
  // From it. Those of a request carry its number.
  Devices,  ///< whether there is a loudspeaker and a microphone, 0 or 1 each; when it begins and at each change
  Position,  ///< samples played so far; whenever it has grown
  Played,    ///< all is played
  Sound,     ///< recorded samples, interleaved
  Stopped,   ///< silent, the device given back
  Failed,    ///< a SoundFailure; the request is over
};

enum class SoundFailure : std::int32_t {
  NoDevice = 1,
  RateRefused,
  NotOpened,  ///< the device says no more than that
  Gone,       ///< the device, its server or the process has ended
  NoAnswer,   ///< nothing has come for seconds
};

struct SoundMessage {
  SoundMessageKind kind = SoundMessageKind::Stop;
  std::int32_t number = 0;
  QByteArray payload;

  /// The 32-bit number `index` of the payload; 0 behind its end.
  std::int32_t NumberAt(qsizetype index) const;
  SoundFailure Failure() const { return static_cast<SoundFailure>(NumberAt(0)); }
};

QByteArray PackNumbers(std::initializer_list<std::int32_t> numbers);
QByteArray PackMessage(const SoundMessage& message);

/// Takes the first message out of what a pipe has delivered; nothing while it is not whole. A size that no
/// message has makes the rest unreadable: it is dropped.
std::optional<SoundMessage> TakeMessage(QByteArray& bytes);

}  // namespace parlowen
