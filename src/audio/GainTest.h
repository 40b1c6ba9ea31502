#pragma once
#include <array>

namespace parlowen {

/// The levels of four seconds of a quiet room, block by block.
class GainTest {
 public:
  explicit GainTest(int sampleRate) : sampleRate_(sampleRate) {}

  /// Adds a block's level. True when four seconds are complete.
  bool Add(int level);

  bool Complete() const;

  /// Truncated mean of the levels 1 .. sampleRate·4/2200 − 1: block 0 holds the click of the start and is
  /// left out, and so is what comes after the last whole block. Levels that were never added count as 0.
  int MeanLevel() const;

 private:
  static constexpr int kMostLevels = 100;
  int sampleRate_;
  int count_ = 0;
  std::array<int, kMostLevels> levels_{};
};

}  // namespace parlowen
