#pragma once
#include "spectral/FrameState.h"
#include "spectral/SpectralPlot.h"

namespace parlowen {

/// One frame: narrow-band spectrum in red, LPC envelope in black, position, level, F0 and formants.
Picture FramePicture(const FrameState& state, int width, int height);
/// Two frames: the first in green bars, the second as a red line, their formants in a table. One size, which the
/// window scales as a whole.
Picture ComparisonPicture(const FrameState& state);
inline constexpr int kComparisonWidth = 700, kComparisonHeight = 400;

/// The lines of figures that the pictures show, from the top.
std::vector<std::string> FrameLines(const FrameParameters& frame);
std::vector<std::string> ComparisonLines(const FrameComparison& comparison);

SpectralPlot FramePlot(int sampleRate, int height);
/// A pixel a point; a voiced comparison ends at 3500 Hz.
SpectralPlot ComparisonPlot(const FrameState& state);

}  // namespace parlowen
