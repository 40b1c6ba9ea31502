#pragma once
#include "document/SoundDocument.h"
#include "spectral/SpectrogramState.h"
#include "ui/Window.h"

namespace parlowen {

/// Computes the picture of the selection, or of the view, and shows it in the analysis pane.
void SpectrogramCommand(Window& window, const SoundDocument& document, SpectrogramState& spectrogram,
                        SpectrogramKind kind);

/// The same picture again, with the shade steps made so far, after the view or the samples have changed: a picture of
/// the view stays one, any other shows what is selected now.
void RedrawSpectrogram(const SoundDocument& document, SpectrogramState& spectrogram);

/// The keys D (+1) and L (−1); nothing for the cepstrum.
void DarkenLighten(Window& window, SpectrogramState& spectrogram, int direction);

}  // namespace parlowen
