#pragma once
#include "document/SoundDocument.h"
#include "spectral/LpcAnalysis.h"
#include "spectral/SpectrogramState.h"

namespace parlowen {

/// How a kind analyses its frames.
struct SpectrogramSettings {
  int frameLength = 0;     ///< samples, at most 512
  double windowShape = 0;  ///< for MakeAnalysisWindow
  double contrast = 0;     ///< grey levels a dB
};

/// Frame length, window and contrast of a kind, at most 512 samples:
///   wide band     32 up to 12000 Hz, else Fs/352   sine           4.7
///   narrow band   Fs/39                            sine           3.8
///   LPC           Fs/40                            raised cosine  4.2 − 0.005·highestLevel
///   homomorphic   Fs/40                            sine           3.8
///   cepstrum      Fs/30                            sine           50
///   formants      Fs/40                            raised cosine  4.6 − 0.005·highestLevel
///   filter bank   FilterBankFrameLength            none           from the block's range
SpectrogramSettings SettingsOf(SpectrogramKind kind, int sampleRate, float highestLevel = 0);

/// The loudest of the consecutive 10 ms frames of a stretch.
struct LoudestFrame {
  float level = 0;  ///< dB of its mean square, in single precision
  int index = 0;    ///< counted in 10 ms frames from the start of the stretch
};
LoudestFrame FindLoudestFrame(const SoundDocument& document, int start, int end);

/// The stretch that a picture of the document shows now: the selection over the whole pane, widened to a
/// second when it is under a tenth, or else the view under the other panes.
SpectrogramStretch StretchOf(const SoundDocument& document);

/// The view under the other panes, whatever is selected: a column of the picture is a column of the pane.
SpectrogramStretch ViewStretchOf(const SoundDocument& document);

/// The stretch of a picture by the filter bank: the selection as it is, over the whole pane, or the view under
/// the other panes, in columns spread evenly over it, 40 fewer than the pane has.
SpectrogramStretch FilterBankStretchOf(const SoundDocument& document, bool ofView);

/// The stretch of a three-dimensional view: a third of a second from the start of `flat` on, in 100 columns.
SpectrogramStretch RidgeStretchOf(const SpectrogramStretch& flat, int sampleRate);

/// The columns of the picture, one frame each, in order:
///   1. a linear prediction of order 12 of the loudest 10 ms frame, which `analyser` keeps where no column
///      makes one: of the 50th frame when the loudest is one of the first eleven or none of the stretch;
///   2. the rise of the level at every column (it lifts the frames of an onset);
///   3. the window, for wide-band columns cut to one pitch period where that is shorter;
///   4. the levels of the frame: frame spectrum, LPC envelope of order 16, homomorphic spectrum or cepstrum;
///   5. their greys. Formants: white but for the rows f − w .. f + w about each of the first five, f and w
///      being frequency and half the bandwidth in rows, in the grey of row f.
/// Columns end with the stretch and before the end of the sound; the margin kept there grows with the column.
/// The filter bank computes its columns by itself.
SpectrogramMatrix ComputeSpectrogram(const SoundDocument& document, SpectrogramKind kind,
                                     const SpectrogramSettings& settings, const SpectrogramStretch& stretch,
                                     LpcAnalyser* analyser = nullptr);

/// The same for a picture of its own over start .. end: `columns` columns, column j from
/// start + trunc(j·(end − start)/columns) on, up to the end of the stretch also where they read silence behind the
/// sound. Not for the filter bank.
SpectrogramMatrix ComputeSpreadSpectrogram(const SoundDocument& document, SpectrogramKind kind,
                                           const SpectrogramSettings& settings, int start, int end,
                                           int columns);

/// The levels of the 100 frames of a three-dimensional view, spread evenly over `stretch`. Formant frames are
/// 0 but for the rows of their formants.
std::vector<std::array<double, kSpectrogramRows>> ComputeRidges(const SoundDocument& document,
                                                                SpectrogramKind kind,
                                                                const SpectrogramSettings& settings,
                                                                const SpectrogramStretch& stretch,
                                                                LpcAnalyser* analyser = nullptr);

/// The formants of a picture's columns, at most five each, analysed as those of the formant picture.
std::vector<FormantDot> ComputeFormantDots(const SoundDocument& document, const SpectrogramStretch& stretch,
                                           int columns, LpcAnalyser* analyser = nullptr);

}  // namespace parlowen
