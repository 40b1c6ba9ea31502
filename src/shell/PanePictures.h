#pragma once
#include <string>
#include <vector>

#include "document/SoundDocument.h"
#include "document/WavePyramid.h"
#include "spectral/SpectrogramState.h"
#include "ui/Figure.h"
#include "ui/Picture.h"
#include "ui/Plot.h"

namespace parlowen {

/// How the amplitude/energy pane is scaled, in the order of command 40041.
enum class AmplitudeScale { Linear, Double, Quadruple, DecibelsOnly };

// The panes of the main window as pictures: state and size in, marks out. The first 20 columns stay empty.

Picture AmplitudePicture(const SoundDocument& document, AmplitudeScale scale, int width, int height);
Picture PitchPicture(const SoundDocument& document, int width, int height);
Picture AnalysisPicture(const SoundDocument& document, const SpectrogramState& spectrogram, int width,
                        int height);
Picture WaveformPicture(const SoundDocument& document, const WavePyramid& pyramid, int width, int height);

std::vector<Tick> AmplitudeTicks(AmplitudeScale scale, int height);
std::vector<Tick> PitchTicks(int height);
std::vector<Tick> AnalysisTicks(const SoundDocument& document, const SpectrogramState& spectrogram,
                                int height);
std::vector<Tick> WaveformTicks(const SoundDocument& document, const WavePyramid& pyramid, int height);

/// The axis in seconds under the columns of a pane, with letters of that size.
FigureAxis TimeAxis(const SampleScale& columns, int sampleRate, int width, int text);

Picture OverviewPicture(const SoundDocument& document, const WavePyramid& pyramid, int width, int height);

}  // namespace parlowen
