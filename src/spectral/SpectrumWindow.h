#pragma once
#include "document/SoundDocument.h"
#include "spectral/SpectrogramState.h"
#include "ui/Window.h"

namespace parlowen {

/// 41010 and 41011: the picture of the analysis pane in the window "spectrum", alone or under its waveform
/// and with a hint. D, L and F work there as in the pane, on the same picture.
void ShowSpectrumCommand(Window& window, SoundDocument& document, SpectrogramState& spectrogram,
                         bool withWaveform);

/// The window's drawing.
Picture SpectrumWindowPicture(const SoundDocument& document, const SpectrogramState& spectrogram,
                              bool withWaveform, int width, int height);

}  // namespace parlowen
