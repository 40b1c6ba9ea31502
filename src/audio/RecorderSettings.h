#pragma once

namespace parlowen {

/// What the recorder does with the samples; kept between recordings, the defaults apply at every start.
struct RecorderSettings {
  float recordGain = 2.0f;         ///< factor on every recorded sample
  int voiceThreshold = 120;        ///< mean |x| above which a block counts as voiced, after the gain
  int spectrogramShading = 1;      ///< 1 two-dimensional picture, 0 three-dimensional view

  /// The threshold as a percentage, 100 at the defaults: round(voiceThreshold² / 144).
  int ThresholdPercent() const;
};

}  // namespace parlowen
