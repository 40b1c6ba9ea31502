#pragma once
#include <cstdint>
#include <vector>

#include "dsp/SampleSpan.h"

namespace parlowen {

/// The level of a sound over time: value i is the dB level (0..140, reference 0) of the mean square of the 10
/// ms that begin at sample origin + i·sampleRate/rate.
struct LevelCurve {
  int rate = 0;                ///< values per second
  int origin = 0;              ///< the sample at which value 0 begins
  std::vector<double> values;  ///< dB
};

/// `count` values of the curve. A value covers sampleRate/100 samples, at least one; samples outside the span
/// are silence. Each position is computed from its own index, so nothing drifts. A rate or sample rate below
/// 1 or a count below 1 gives a curve without values. Needs InitSignalTables().
LevelCurve MakeLevelCurve(SampleSpan samples, int sampleRate, int rate, int origin, int count);

/// The same with value i at origin + i·span/values, for columns that stand elsewhere than every 1/rate s; `rate`
/// only says how far back a rise is looked for.
LevelCurve MakeColumnLevels(SampleSpan samples, int sampleRate, int rate, std::int64_t origin,
                            std::int64_t span, std::int64_t values, int count);

/// By how much a frame at value `index` of the curve is to be boosted: half the rise in dB over the last
/// 1/300 s, (values[p] − values[p − rate/300])/2, clamped to [1, 4]. p = `index`, at least rate/300; both
/// indices clamp to the curve. 1 for a frame of more than sampleRate/100 samples, a curve below 300 values
/// per second or an empty one.
double LevelRiseAt(const LevelCurve& curve, int index, int frameLength, int sampleRate);

/// The same for the frame that begins at sample `start`: index = (start − origin)·rate/sampleRate, toward
/// zero.
double LevelRise(const LevelCurve& curve, int start, int frameLength, int sampleRate);

}  // namespace parlowen
