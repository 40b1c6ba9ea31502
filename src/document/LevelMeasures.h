#pragma once
#include "dsp/SampleSpan.h"

namespace parlowen {

/// The largest |x| of the samples start .. end − 1, capped at 32767; 0 when there are none.
int PeakAmplitude(SampleSpan samples, int start, int end);

/// The peak level that scales frame spectra: the peak amplitude of a stretch, at least 1.
int SegmentPeakLevel(SampleSpan samples, int start, int end);

}  // namespace parlowen
