#pragma once
#include <algorithm>

#include "document/SoundDocument.h"
#include "ui/Plot.h"

namespace parlowen {

/// The columns of the amplitude, pitch and analysis panes, from the margin on: 10 ms each at the start scale, also
/// where that is no whole number of samples, else `samplesPerPixel` samples.
inline SampleScale TimeScaleOf(const SoundDocument& document) {
  if (document.AtStartScale())
    return {document.viewStart, std::max(1, document.sampleRate), 100, kPaneMargin};
  return {document.viewStart, std::max(1, document.samplesPerPixel), 1, kPaneMargin};
}

/// Those of the waveform: `samplesPerPixel` samples each at every scale, so that it is drawn where it is clicked.
inline SampleScale WaveformScaleOf(const SoundDocument& document) {
  return {document.viewStart, std::max(1, document.samplesPerPixel), 1, kPaneMargin};
}

/// Those of a strip that shows the whole sound.
inline SampleScale OverviewScaleOf(const SoundDocument& document, int width) {
  return {0, std::max(1, document.sampleCount), std::max(1, width), 0};
}

}  // namespace parlowen
