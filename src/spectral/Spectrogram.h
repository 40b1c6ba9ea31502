#pragma once
#include "document/SoundDocument.h"
#include "spectral/SpectrogramState.h"

namespace parlowen {

/// How a kind analyses its frames.
struct SpectrogramSettings {
  int frameLength = 0;        ///< samples, at most 512
  double windowShape = 0;     ///< for MakeAnalysisWindow
  double contrast = 0;        ///< grey levels a dB
};

/// Wide band: 32 samples up to 12000 Hz, else Fs/352. Narrow band: Fs/39, at most 512.
SpectrogramSettings SettingsOf(SpectrogramKind kind, int sampleRate);

/// The stretch that a picture of the document shows now: the selection over the whole pane, widened to a second when
/// it is under a tenth, or else the view under the other panes.
SpectrogramStretch StretchOf(const SoundDocument& document);

/// The view under the other panes, whatever is selected.
SpectrogramStretch ViewStretchOf(const SoundDocument& document);

/// The columns of the picture, one frame spectrum each, in order:
///   1. the rise of the level at every column (it lifts the frames of an onset);
///   2. the window, for wide-band columns cut to one pitch period where that is shorter;
///   3. the frame spectrum in dB;
///   4. its greys.
/// Columns end with the stretch and before the end of the sound; the margin kept there grows with the column.
SpectrogramMatrix ComputeSpectrogram(const SoundDocument& document, SpectrogramKind kind,
                                     const SpectrogramSettings& settings, const SpectrogramStretch& stretch);

}  // namespace parlowen
