#pragma once
#include <span>
#include <vector>

#include "dsp/SampleSpan.h"

namespace parlowen {

/// How the two channels are compared.
struct NasalanceSettings {
  bool fullBand = false;   ///< no filter before the energies
  float gainRatio = 1.0f;  ///< factor on the nasal amplitude that makes equal sounds equal
};

/// The share of the nose in the energy over time: value i speaks of the 20 ms that begin at start + i·step.
struct NasalanceCurve {
  int start = 0;              ///< sample
  int step = 0;               ///< samples: sampleRate/100
  float gainRatio = 1.0f;     ///< the one it was measured with
  std::vector<float> values;  ///< percent, 0..100; NaN where it stays blank
};

/// Nasalance = 100·g²·En/(g²·En + Eo) of the frames that lie whole in start .. end − 1; En and Eo are mean
/// squares over sampleRate/50 samples, g the gain ratio. Unless the full band is asked for, the energies are
/// those behind a linear-phase band-pass of 350 to 650 Hz, which hears the samples around the stretch too.
/// Frames whose energy is more than 40 dB below the strongest of the stretch, and silent ones, are blank. A
/// rate below 100 gives no values.
NasalanceCurve MeasureNasalance(SampleSpan nasal, SampleSpan oral, int sampleRate, int start, int end,
                                const NasalanceSettings& settings);

/// The gain ratio √(Eo/En) of a stretch with equal sound in both channels, in the same band; 0 when a channel
/// is silent there or the ratio lies outside 0.001..1000.
float MeasureGainRatio(SampleSpan nasal, SampleSpan oral, int sampleRate, int start, int end, bool fullBand);

/// Of the values that are not blank; NaN when there are none.
struct NasalanceFigures {
  double mean = 0, deviation = 0;  ///< the deviation divides by n
  double smallest = 0, largest = 0;
  int count = 0;
};
NasalanceFigures FiguresOf(std::span<const float> values);

}  // namespace parlowen
