#pragma once
#include <array>
#include <cstdint>
#include <vector>

namespace parlowen {

/// Rates that can be recorded, in Hz.
inline constexpr std::array<int, 4> kRecordingRates = {8000, 11025, 16000, 22050};
inline constexpr int kUsualRecordingRate = 11025;  ///< where the document's rate is none of them

/// What the recorder does with the samples; kept between recordings, the defaults apply at every start.
struct RecorderSettings {
  float recordGain = 2.0f;     ///< factor on every recorded sample
  int voiceThreshold = 120;    ///< mean |x| above which a block counts as voiced, after the gain
  int spectrogramShading = 1;  ///< 1 two-dimensional picture, 0 three-dimensional view

  /// The threshold as a percentage, 100 at the defaults: round(voiceThreshold² / 144).
  int ThresholdPercent() const;

  /// Sets gain and threshold for a room `factor` times as loud as the usual one: 2/factor and
  /// trunc(120·factor).
  void AdaptToRoom(double factor);

  /// The 6 bytes of a settings file: the gain as a float, the threshold as 16 bits.
  std::vector<std::uint8_t> FileBytes() const;
};

/// The factor of a threshold of so many percent: √(percent/100); less than 1 counts as 1.
double RoomFactorOfPercent(int percent);

/// What becomes of a percentage at one press of a scroll arrow, +1 up or −1 down. The step grows with the
/// value; a bound is checked before it, so that a value may pass 1000 by less than a step.
int StepThresholdPercent(int percent, int direction);

}  // namespace parlowen
