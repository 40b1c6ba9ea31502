#pragma once
#include <algorithm>
#include <array>

#include "document/Frames.h"

namespace parlowen {

/// Frames a contour can hold; the last two are kept free for the file's tail.
inline constexpr int kContourFrames = 12500;
inline constexpr int kUsableContourFrames = kContourFrames - 2;

inline constexpr float kUnvoiced = 0.0f;  ///< a frame without voice
inline constexpr float kNoValue = -1.0f;  ///< a frame that was never analysed

/// One value per 10 ms frame, frame f from sample f·sampleRate/100 on: the pitch period in samples, or one of
/// the two values above. The frequency is sampleRate / value.
using PitchContour = std::array<float, kContourFrames>;

/// Frames that a contour can speak of in a sound of so many samples.
inline int ContourLengthOf(std::int64_t sampleCount, int sampleRate) {
  return std::min(FrameOfSample(sampleCount, sampleRate), kUsableContourFrames);
}

}  // namespace parlowen
