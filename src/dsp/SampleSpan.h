#pragma once
#include <cstdint>

namespace parlowen {

/// 16-bit samples that somebody else owns. Indices outside 0..count-1 are silence: they read as zero.
struct SampleSpan {
  const std::int16_t* data = nullptr;
  int count = 0;

  std::int16_t At(std::int64_t index) const {
    return index >= 0 && index < count ? data[index] : std::int16_t{0};
  }
};

}  // namespace parlowen
