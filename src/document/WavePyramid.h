#pragma once
#include <cstdint>
#include <vector>

#include "dsp/SampleSpan.h"
#include "ui/Plot.h"

namespace parlowen {

struct MinMax {
  std::int16_t min = 0, max = 0;
};

/// Smallest and largest samples of blocks of 256, 512, 1024 … samples, so that the whole sound is drawn
/// without visiting every sample.
class WavePyramid {
 public:
  /// Rebuilds when `version` differs from the one it was built for.
  void Update(SampleSpan samples, std::uint64_t version);
  /// Extremes of the samples start .. end − 1; {0, 0} when there are none.
  MinMax Extremes(SampleSpan samples, int start, int end) const;

 private:
  std::uint64_t version_ = ~std::uint64_t{0};
  std::vector<std::vector<MinMax>> levels_;  ///< level k: blocks of 256·2^k samples
};

/// What the line of a waveform is made of: from the pyramid of the samples, or sample by sample.
ExtremesOf ExtremesFrom(const WavePyramid& pyramid, SampleSpan samples);
ExtremesOf ExtremesFrom(SampleSpan samples);

/// Extremes of all samples; {0, 0} when there are none.
MinMax ExtremesOfAll(SampleSpan samples);

/// The largest |x|.
int PeakOf(MinMax extremes);

}  // namespace parlowen
