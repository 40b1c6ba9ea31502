#pragma once
#include <cstdint>

#include "base/Arithmetic.h"

namespace parlowen {

/// 10 ms frame of a sample: sample·100/sampleRate, toward zero. Also the whole frames in so many samples.
inline int FrameOfSample(std::int64_t sample, int sampleRate) {
  return sampleRate > 0 ? SaturateInt32(sample * 100 / sampleRate) : 0;
}
/// First sample of a frame: frame·sampleRate/100. No inverse of the above where 100 does not divide the rate.
inline int SampleOfFrame(std::int64_t frame, int sampleRate) {
  return SaturateInt32(frame * sampleRate / 100);
}

}  // namespace parlowen
