#include "audio/CaptureBlock.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "base/Arithmetic.h"

namespace parlowen {
namespace {

/// True when a sample had to be saturated.
bool Amplify(std::span<std::int16_t> block, double gain) {
  bool clipped = false;
  for (std::int16_t& sample : block) {
    // 16 and 24 bits: the product is exact.
    const double product = sample * gain;
    const std::int64_t nearest = TruncateToInt64(product + (product < 0 ? -0.5 : 0.5));
    clipped = clipped || nearest > INT16_MAX || nearest < INT16_MIN;
    sample = SaturateInt16(nearest);
  }
  return clipped;
}

void RemoveOffset(std::span<std::int16_t> half, int channel, int channels) {
  const auto step = static_cast<std::size_t>(channels);
  const auto first = static_cast<std::size_t>(channel);
  std::int32_t sum = 0, count = 0;
  for (std::size_t i = first; i < half.size(); i += step, ++count) sum += half[i];
  const std::int32_t mean = count > 0 ? sum / count : 0;
  for (std::size_t i = first; i < half.size(); i += step) half[i] = SaturateInt16(half[i] - mean);
}

int MeanMagnitude(std::span<const std::int16_t> half) {
  std::int32_t sum = 0;
  for (const std::int16_t sample : half) sum += std::abs(static_cast<int>(sample));
  return half.empty() ? 0 : sum / static_cast<std::int32_t>(half.size());
}

}  // namespace

BlockLevels ConditionBlock(std::span<std::int16_t> block, int channels, float gain) {
  BlockLevels levels;
  levels.clipped = Amplify(block, static_cast<double>(gain));
  for (const std::int16_t sample : block)
    levels.peak = std::max(levels.peak, std::abs(static_cast<int>(sample)));
  const std::span<std::int16_t> halves[] = {block.first(block.size() / 2),
                                            block.last(block.size() - block.size() / 2)};
  for (const auto half : halves)
    for (int channel = 0; channel < channels; ++channel) RemoveOffset(half, channel, channels);
  levels.first = MeanMagnitude(halves[0]);
  levels.second = MeanMagnitude(halves[1]);
  return levels;
}

}  // namespace parlowen
