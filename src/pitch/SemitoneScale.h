#pragma once
#include <cmath>
#include <cstdint>

#include "base/Arithmetic.h"

namespace parlowen {

/// Frames first .. last of a contour.
struct FrameSpan {
  int first = 0, last = 0;
};

/// Frame of a sample: sample·100/sampleRate.
inline int FrameOfSample(std::int64_t sample, int sampleRate) {
  return sampleRate > 0 ? SaturateInt32(sample * 100 / sampleRate) : 0;
}
/// First sample of a frame: frame·sampleRate/100. No inverse of the above where 100 does not divide the rate.
inline int SampleOfFrame(std::int64_t frame, int sampleRate) {
  return SaturateInt32(frame * sampleRate / 100);
}

/// Whole hertz of a contour value, as listings show it: trunc(sampleRate/period) in double, 0 for a value
/// that is no period and for frequencies beyond 32767.
inline int ListedFrequency(float period, int sampleRate) {
  if (!(period > 0)) return 0;
  const int frequency = TruncateToInt32(sampleRate / static_cast<double>(period));
  return frequency > INT16_MAX ? 0 : frequency;
}

/// Semitones above 64 Hz: 12·log2(f/64); 0.0 for a frequency of 0.
inline double SemitonesOf(double frequency) {
  return frequency > 0 ? 12.0 * std::log2(frequency * 0.015625) : 0.0;
}

}  // namespace parlowen
