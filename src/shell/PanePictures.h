#pragma once
#include <string>
#include <vector>

#include "document/SoundDocument.h"
#include "document/WavePyramid.h"
#include "shell/PitchSpan.h"
#include "spectral/SpectrogramState.h"
#include "ui/Figure.h"
#include "ui/Picture.h"
#include "ui/Plot.h"

namespace parlowen {

/// How the amplitude/energy pane is scaled, in the order of command 40041.
enum class AmplitudeScale { Linear, Double, Quadruple, DecibelsOnly };

// The panes of the main window as pictures: state and size in, marks out. The first 20 columns stay empty.

Picture AmplitudePicture(const SoundDocument& document, AmplitudeScale scale, int width, int height);
/// No line joins frames more than half an octave apart.
Picture PitchPicture(const SoundDocument& document, const PitchSpan& range, int width, int height);
Picture AnalysisPicture(const SoundDocument& document, const SpectrogramState& spectrogram, int width,
                        int height);
Picture WaveformPicture(const SoundDocument& document, const WavePyramid& pyramid, int width, int height);

std::vector<Tick> AmplitudeTicks(AmplitudeScale scale, int height);
/// The octaves of 64 Hz in hertz, and between them semitones above 64 Hz as their room allows.
std::vector<Tick> PitchTicks(const PitchSpan& range, int height);
std::vector<Tick> AnalysisTicks(const SoundDocument& document, const SpectrogramState& spectrogram,
                                int height);
std::vector<Tick> WaveformTicks(const SoundDocument& document, const WavePyramid& pyramid, int height);

/// The axis in seconds under the columns of a pane, with letters of that size.
FigureAxis TimeAxis(const SampleScale& columns, int sampleRate, int width, int text);

Picture OverviewPicture(const SoundDocument& document, const WavePyramid& pyramid, int width, int height);

}  // namespace parlowen
