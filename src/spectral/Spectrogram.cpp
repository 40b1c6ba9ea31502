#include "spectral/Spectrogram.h"

#include <algorithm>
#include <array>

#include "base/Arithmetic.h"
#include "document/LevelMeasures.h"
#include "dsp/AnalysisWindow.h"
#include "dsp/FrameSpectrum.h"
#include "dsp/LevelCurve.h"

namespace parlowen {
namespace {

constexpr double kSlowestVoice = 10.0;   // Hz: below, a contour value is no pitch

/// One pitch period at a sample, or 0 where the contour has no voice.
int PitchPeriodAt(const SoundDocument& document, int sample) {
  const std::int64_t frame = std::int64_t{sample} * 100 / document.sampleRate;
  if (frame >= document.ContourLength()) return 0;
  const double period = document.pitch[static_cast<std::size_t>(frame)];
  if (!(period > 0)) return 0;
  const double frequency = document.sampleRate / period;
  return frequency > kSlowestVoice ? TruncateToInt32(document.sampleRate / frequency) : 0;
}

}  // namespace

SpectrogramSettings SettingsOf(SpectrogramKind kind, int sampleRate) {
  if (kind == SpectrogramKind::WideBand) return {sampleRate <= 12000 ? 32 : std::min(sampleRate / 352, kLongestFrame), 0.0, 4.7};
  return {std::min(sampleRate / 39, kLongestFrame), 0.0, 3.8};
}

SpectrogramStretch StretchOf(const SoundDocument& document) {
  SpectrogramStretch stretch;
  if (document.selectionDefined()) {
    stretch.start = stretch.levelStart = document.selectionStart;
    stretch.end = stretch.levelEnd = document.selectionEnd;
    if (stretch.end - stretch.start < document.sampleRate / 10) stretch.end = stretch.start + document.sampleRate;
    stretch.end = std::min(stretch.end, document.sampleCount);
    const int length = std::max(1, stretch.end - stretch.start);
    stretch.columnsPerSecond =
        std::max(1, SaturateInt32(std::int64_t{document.paneWidth} * document.sampleRate / length));
    stretch.maxColumns = document.paneWidth;
    return stretch;
  }
  return ViewStretchOf(document);
}

SpectrogramStretch ViewStretchOf(const SoundDocument& document) {
  SpectrogramStretch stretch;
  stretch.start = stretch.levelStart = document.viewStart;
  stretch.end = stretch.levelEnd = document.viewStart + document.viewLength;
  stretch.columnsPerSecond =
      document.AtStartScale() ? 100 : std::max(1, document.sampleRate / document.samplesPerPixel);
  stretch.firstX = kPaneMargin;
  stretch.maxColumns = std::max(0, document.paneWidth - kPaneMargin);
  stretch.followsView = true;
  return stretch;
}

SpectrogramMatrix ComputeSpectrogram(const SoundDocument& document, SpectrogramKind kind,
                                     const SpectrogramSettings& settings, const SpectrogramStretch& stretch) {
  SpectrogramMatrix matrix;
  const int rate = document.sampleRate;
  if (rate <= 0) return matrix;
  matrix.greys.reserve(static_cast<std::size_t>(stretch.maxColumns) * kSpectrogramRows);
  const SampleSpan samples = document.Samples();
  const int peakLevel = SegmentPeakLevel(samples, stretch.levelStart, stretch.levelEnd);
  const LevelCurve levels = MakeLevelCurve(samples, rate, stretch.columnsPerSecond, stretch.start, stretch.maxColumns);

  int windowLength = settings.frameLength;
  MakeAnalysisWindow(windowLength, settings.windowShape);
  FrameSpectrum spectrum;
  for (int column = 0; column < stretch.maxColumns; ++column) {
    const std::int64_t start64 = stretch.start + std::int64_t{column} * rate / stretch.columnsPerSecond;
    if (start64 > stretch.end || start64 + 4 + 2 * column > document.sampleCount) break;
    const int start = static_cast<int>(start64);
    if (kind == SpectrogramKind::WideBand) {
      const int period = PitchPeriodAt(document, start);
      const int length = period > 0 ? std::min(period, settings.frameLength) : settings.frameLength;
      if (length != windowLength) MakeAnalysisWindow(length, settings.windowShape);
      windowLength = length;
    }
    const double rise = LevelRiseAt(levels, column, settings.frameLength, rate);
    ComputeFrameSpectrum(samples, start, settings.frameLength, 1, peakLevel, spectrum, {rate, rise});
    matrix.greys.resize(matrix.greys.size() + kSpectrogramRows);
    ShadeColumn(spectrum.data(), settings.contrast, matrix.Column(matrix.columns));
    ++matrix.columns;
  }
  return matrix;
}

}  // namespace parlowen
