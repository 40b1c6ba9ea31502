#pragma once
#include <cstdint>

namespace parlowen {

class SoundDocument;

/// Knows whether the sound was changed after it was opened or saved.
class LossGuard {
 public:
  explicit LossGuard(const SoundDocument& document);

  bool SoundChanged() const;
  /// To be called before and after every command. A command that opens a file leaves an unchanged sound when a new one
  /// is there; one that saves it does so when it showed no failure.
  void CommandBegins(int errorsShown);
  void CommandEnded(int command, int errorsShown);
  void FileOpened();

  /// Commands that put another sound in the place of this one.
  static bool Replaces(int command);

 private:
  void TakeAsUnchanged();

  const SoundDocument& document_;
  std::uint64_t unchangedVersion_ = 0;
  std::uint64_t generationBefore_ = 0;
  int errorsBefore_ = 0;
};

}  // namespace parlowen
