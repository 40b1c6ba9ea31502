#pragma once
#include <cmath>
#include <cstdint>

#include "base/Arithmetic.h"
#include "document/Frames.h"

namespace parlowen {

/// Frames first .. last of a contour.
struct FrameSpan {
  int first = 0, last = 0;
};

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
