#pragma once
#include "spectral/SpectrogramState.h"
#include "ui/Picture.h"

namespace parlowen {

/// The matrix as a grey picture that fills the pane's height, low frequencies at the bottom, with its frequency grid,
/// its title and the line of its times.
Picture SpectrogramPicture(const SpectrogramState& spectrogram, int sampleRate, int width, int height);

/// The grid has a line every 1000 Hz, above 20000 Hz sampling rate every 2000 Hz.
int GridStepHz(int sampleRate);
/// The pane row of a grid frequency.
int GridLineY(int frequency, int sampleRate, int height);

}  // namespace parlowen
