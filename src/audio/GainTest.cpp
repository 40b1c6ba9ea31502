#include "audio/GainTest.h"

#include <algorithm>
#include <numeric>

#include "audio/CaptureBlock.h"

namespace parlowen {
namespace {

constexpr int kSeconds = 4;

}  // namespace

bool GainTest::Add(int level) {
  if (count_ < kMostLevels) levels_[static_cast<std::size_t>(count_++)] = level;
  return Complete();
}

bool GainTest::Complete() const {
  return count_ == kMostLevels || count_ * kBlockSamples / static_cast<double>(sampleRate_) >= kSeconds;
}

int GainTest::MeanLevel() const {
  const int blocks = std::clamp(sampleRate_ * kSeconds / kBlockSamples - 1, 1, kMostLevels - 1);
  return std::accumulate(levels_.begin() + 1, levels_.begin() + 1 + blocks, 0) / blocks;
}

}  // namespace parlowen
