#pragma once
#include <functional>

#include "document/SoundDocument.h"
#include "pitch/PitchRepair.h"
#include "ui/Picture.h"

namespace parlowen {

/// Hertz at the middle of a pixel row of a picture whose lowest `shown` of 256 rows fill the height, and the inverse. Row r
/// stands for r·sampleRate/512 Hz, or for a period of r samples (from 22051 Hz on of 2r). Below row 0 the
/// answer is 0.
double FrequencyAtRow(RepairRows rows, int y, int height, int sampleRate, int shown = 256);
int RowOfFrequency(RepairRows rows, double frequency, int height, int sampleRate, int shown = 256);

/// What lies over the spectrogram while the contour is repaired: the contour, the harmonic that is traced,
/// the marked frames, and at the pointer the comb of the harmonics of its frame's pitch (where it has none,
/// of the pitch that a click would give), over quefrencies the multiples of its period. `columnOf` gives the
/// column of a sample.
Picture PitchRepairPicture(const SoundDocument& document, const PitchRepair& repair,
                           const std::function<int(int)>& columnOf, int width, int height, int shown = 256);

}  // namespace parlowen
