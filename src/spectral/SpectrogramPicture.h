#pragma once
#include <string>
#include <vector>

#include "spectral/SpectrogramState.h"
#include "ui/Picture.h"

namespace parlowen {

/// The matrix as a grey picture that fills the pane's height, low frequencies at the bottom, with its grid and
/// its formants where they are shown; or the three-dimensional view. `pane` tells which sample each column of
/// pixels shows: there stands the column of the matrix with that sample.
/// The matrix' lowest `rows` fill the height.
Picture SpectrogramPicture(const SpectrogramState& spectrogram, int sampleRate, const SampleScale& pane,
                           int width, int height, int rows = kSpectrogramRows);

/// What the line above the picture says, in pieces: the view, the kind of picture, its times.
std::vector<std::string> SpectrogramCaption(const SpectrogramState& spectrogram, int sampleRate);

/// The columns of frequencies under the first frame of a three-dimensional view.
std::vector<Tick> RidgeTicks(int sampleRate);

/// The column of the matrix under a column of pixels; −1 for none.
int ColumnUnder(const SpectrogramState& spectrogram, const SampleScale& pane, int x);

/// The frames of a three-dimensional view as lines of heights, 3 columns a row of the spectrum, each frame 2
/// columns to the right of the one before and one row up, 0.8 rows a dB. What lies behind an earlier frame is
/// left out by a floating horizon of 1280 columns that begins below the picture, at row 700 at least.
Picture RidgePicture(const SpectrogramState& spectrogram, int width, int height);

/// The picture's grid, as pane rows and what stands beside them, where the lowest `rows` of the matrix fill the height:
/// a line every 1000 Hz; every 2000 where more than 10 kHz are seen, every 500 up to 2.5 kHz; for the cepstrum every
/// 2 or 5 ms; none in three dimensions.
std::vector<Tick> SpectrogramGrid(const SpectrogramState& spectrogram, int sampleRate, int height,
                                  int rows = kSpectrogramRows);

/// What a row of the spectrum stands for: "1250 Hz", or for the cepstrum "4.5 ms".
std::string SpectrogramRowText(const SpectrogramState& spectrogram, int row, int sampleRate);

}  // namespace parlowen
