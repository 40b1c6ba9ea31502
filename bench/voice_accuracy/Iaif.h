#pragma once
#include "voice/GlottalAnalysis.h"

namespace parlowen::bench {

/// Replaces the periods and means of a wave by those of iterative adaptive inverse filtering (Alku 1992) between the same
/// marks: the yardstick that others use.
void MeasureByIaif(SampleSpan samples, GlottalWave& wave);

}  // namespace parlowen::bench
