#pragma once
#include "document/SoundDocument.h"

namespace parlowen {

enum class FilterPass { Low, High };

/// Filters the samples start .. end−1 of channel 1 with 81 taps at `cutoff` Hz. The work is done on a copy
/// with 80 samples more on each side, zeros where the sound has none; the margins settle the recursive
/// routine and are dropped. The routine works in place, so a high-pass leaves about a third of what lies
/// below its cutoff.
void FilterStretch(SoundDocument& document, int start, int end, int cutoff, FilterPass pass);

}  // namespace parlowen
