#pragma once
#include <cstdint>
#include <span>

namespace parlowen {

/// Samples of a capture block, both channels together.
inline constexpr int kBlockSamples = 2200;

/// How loud a block is, after the gain.
struct BlockLevels {
  int first = 0, second = 0;  ///< mean |x| of each half, truncated
  int peak = 0;               ///< largest |x|
  bool clipped = false;       ///< a sample went beyond 16 bits

  bool Exceeds(int threshold) const { return first > threshold || second > threshold; }
};

/// Multiplies a block by the gain, to the nearest integer (halves away from zero) and saturated, and takes
/// from each half of it the half's own mean, channel by channel, truncated toward zero. `block` is
/// interleaved; its size is a multiple of 2·channels.
BlockLevels ConditionBlock(std::span<std::int16_t> block, int channels, float gain);

}  // namespace parlowen
