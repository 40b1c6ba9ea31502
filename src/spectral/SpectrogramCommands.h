#pragma once
#include "document/SoundDocument.h"
#include "spectral/LpcAnalysis.h"
#include "spectral/SpectrogramState.h"
#include "ui/Window.h"

namespace parlowen {

/// What the commands take beside the document.
struct SpectrogramOptions {
  bool threeDimensional = false;    ///< as the settings choose; cepstrum and filter bank stay flat
  LpcAnalyser* analyser = nullptr;  ///< the program's one; null for one of their own
};

/// Computes the picture of the selection, or of the view, and shows it in the analysis pane. The filter bank
/// refuses a stretch of more than 63200 samples and leaves the pane as it was.
bool SpectrogramCommand(Window& window, const SoundDocument& document, SpectrogramState& spectrogram,
                        SpectrogramKind kind, const SpectrogramOptions& options = {});

/// The same picture again, with the shade steps made so far, after the view or the samples have changed: a
/// picture of the view stays one, any other shows what is selected now. The contrast stays that of the
/// command.
void RedrawSpectrogram(const SoundDocument& document, SpectrogramState& spectrogram);

/// After the view was moved or zoomed: a picture of the view is that of the new one. The filter bank's, where that
/// is longer than it takes, goes on lying over its own samples.
void FollowView(const SoundDocument& document, SpectrogramState& spectrogram);

/// A picture of a stretch of its own becomes one of the view. One that the filter bank refuses stays as it is.
void DrawOfView(const SoundDocument& document, SpectrogramState& spectrogram);

/// The keys D (+1) and L (−1); nothing for the cepstrum and in three dimensions.
void DarkenLighten(Window& window, SpectrogramState& spectrogram, int direction);

/// The key F: formants over the picture, or no longer; nothing for the cepstrum and in three dimensions.
void ToggleFormants(Window& window, const SoundDocument& document, SpectrogramState& spectrogram);

}  // namespace parlowen
