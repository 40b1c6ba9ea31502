#pragma once
#include <functional>

#include "document/SoundDocument.h"
#include "pitch/PitchRepair.h"
#include "ui/Picture.h"

namespace parlowen {

/// Hertz at the middle of a pixel row of a picture whose 256 rows of sampleRate/512 Hz fill the height; its inverse.
double FrequencyAtRow(int y, int height, int sampleRate);
int RowOfFrequency(double frequency, int height, int sampleRate);

/// What lies over the spectrogram while the contour is repaired: the contour, the harmonic that is traced, the marked
/// frames, and at the pointer the comb of the harmonics of its frame's pitch (where it has none, of the pitch that a
/// click would give). `columnOf` gives the column of a sample.
Picture PitchRepairPicture(const SoundDocument& document, const PitchRepair& repair,
                           const std::function<int(int)>& columnOf, int width, int height);

}  // namespace parlowen
