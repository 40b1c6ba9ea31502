#pragma once
#include <functional>
#include <memory>
#include <optional>
#include <span>

#include "audio/SoundDevice.h"
#include "document/SoundDocument.h"
#include "ui/Window.h"

namespace parlowen {

enum class PlayMode { Forward = 1, Reverse = 2 };
/// Where a play that cannot begin says why. A box stands in the way of one who only goes through a sound.
enum class PlayRefusal { InBox, InStatusLine };

/// Plays one stretch of samples at a time at the document's rate. It shows the status lines of a play and
/// tells the command states while one runs; the document's samples are never changed.
class Player {
 public:
  /// `output` may be null: then every start says that there is no device.
  Player(SoundOutput* output, Window& window, SoundDocument& document, CommandStates& states);
  ~Player();
  Player(const Player&) = delete;
  Player& operator=(const Player&) = delete;

  /// Plays base[start] .. base[end − 1]; a running play is stopped first. In reverse the stretch begins with
  /// base[end], which must exist, and ends with base[start + 1]. 0, or −1 after a failure, which is shown; a
  /// stretch without a sample is −1 and shows nothing. The samples stay where they are until the play ends. They
  /// have `sampleRate`, or with 0 the document's.
  int startPlayback(int start, int end, PlayMode mode, const std::int16_t* base, int sampleRate = 0,
                    PlayRefusal refusal = PlayRefusal::InBox);

  /// Samples played so far.
  int playbackPosition() const;

  /// Ends the play at once. Harmless when none runs.
  void stopPlayback();

  bool playing() const { return !closed_; }

  /// Where in a buffer the play is; nothing when another one is played, or none.
  std::optional<int> CursorIn(const std::int16_t* base) const;
  /// Where in the document the play is; nothing when another buffer is played, or none.
  std::optional<int> CursorSample() const;

  /// Called when a play has begun or ended.
  std::function<void()> changed;

 private:
  bool Begin(std::span<const std::int16_t> stretch);
  bool MakeReversed(const std::int16_t* base);
  void Fail(const std::string& text);
  void Changed();

  SoundOutput* output_;
  Window& window_;
  SoundDocument& document_;
  CommandStates& states_;
  std::unique_ptr<std::int16_t[]> reversed_;
  const std::int16_t* base_ = nullptr;
  int start_ = 0, end_ = 0;
  PlayMode mode_ = PlayMode::Forward;
  bool closed_ = true;
};

}  // namespace parlowen
