#pragma once
#include "document/SoundDocument.h"
#include "spectral/SpectrogramState.h"
#include "ui/Window.h"

namespace parlowen {

/// Hz up to which pictures can be shown, 0 for all, in the order of the key C.
inline constexpr int kCeilings[] = {0, 8000, 5000, 4000};

/// What a contour is repaired over, Hz: harmonics that one can aim at.
inline constexpr int kRepairCeiling = 1500;

/// How many of the matrix' 256 rows fill the height of the picture, from row 0 on: those whose frequency, row·
/// sampleRate/512, is not above the ceiling. While a contour is repaired that is kRepairCeiling. Cepstra, whose rows
/// are no frequencies, and three-dimensional views are shown whole.
int ShownRows(const SoundDocument& document, const SpectrogramState& spectrogram);

/// 41050: asks for the ceiling.
void ChooseCeiling(Window& window, SpectrogramState& spectrogram);

/// The key C: the next one; false without a picture.
bool NextCeiling(Window& window, SpectrogramState& spectrogram);

}  // namespace parlowen
