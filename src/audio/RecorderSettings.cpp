#include "audio/RecorderSettings.h"

#include <algorithm>
#include <cmath>

#include "base/Arithmetic.h"
#include "base/Bytes.h"

namespace parlowen {
namespace {

constexpr double kUsualGain = 2.0, kUsualThreshold = 120.0;
constexpr int kLowestPercent = 10, kHighestPercent = 1000;

}  // namespace

int RecorderSettings::ThresholdPercent() const { return (voiceThreshold * voiceThreshold + 72) / 144; }

void RecorderSettings::AdaptToRoom(double factor) {
  recordGain = static_cast<float>(kUsualGain / factor);
  voiceThreshold = SaturateInt16(TruncateToInt64(kUsualThreshold * factor));
}

std::vector<std::uint8_t> RecorderSettings::FileBytes() const {
  ByteWriter file;
  file.PutFloat32LE(recordGain);
  file.PutInt16LE(LowInt16(voiceThreshold));
  return file.bytes();
}

double RoomFactorOfPercent(int percent) { return std::sqrt(std::clamp<int>(percent, 1, INT16_MAX) / 100.0); }

int StepThresholdPercent(int percent, int direction) {
  const int step = std::clamp(percent / 100 * 10, 10, 50);
  if (direction > 0) {
    if (percent < 151) return percent + 10;
    return percent < kHighestPercent ? percent + step : percent;
  }
  if (percent >= 101) return percent - step;
  if (percent >= 61) return percent - 10;
  return percent > kLowestPercent ? percent - 5 : percent;
}

}  // namespace parlowen
