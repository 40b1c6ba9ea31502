#include "spectral/Spectrogram.h"

#include <algorithm>
#include <array>

#include "base/Arithmetic.h"
#include "document/Frames.h"
#include "document/LevelMeasures.h"
#include "document/ViewScale.h"
#include "dsp/AnalysisWindow.h"
#include "dsp/FrameSpectrum.h"
#include "dsp/LevelCurve.h"
#include "spectral/Cepstrum.h"
#include "spectral/FilterBank.h"
#include "spectral/Formants.h"

namespace parlowen {
namespace {

constexpr double kSlowestVoice = 10.0;  // Hz: below, a contour value is no pitch
constexpr int kDrawnFormants = 5;
constexpr int kFilterBankMargin = 40;  // columns by which its picture is narrower than the pane
constexpr int kRidges = 100;           // frames of a three-dimensional view

/// One pitch period at a sample, or 0 where the contour has no voice.
int PitchPeriodAt(const SoundDocument& document, int sample) {
  const int frame = FrameOfSample(sample, document.sampleRate);
  if (frame >= document.ContourLength()) return 0;
  const double period = document.pitch[static_cast<std::size_t>(frame)];
  if (!(period > 0)) return 0;
  const double frequency = document.sampleRate / period;
  return frequency > kSlowestVoice ? TruncateToInt32(document.sampleRate / frequency) : 0;
}

/// One column after another of a picture: what the columns share is prepared once.
class ColumnAnalysis {
 public:
  ColumnAnalysis(const SoundDocument& document, SpectrogramKind kind, const SpectrogramSettings& settings,
                 const SpectrogramStretch& stretch, LpcAnalyser* analyser)
      : document_(document),
        kind_(kind),
        settings_(settings),
        rate_(document.sampleRate),
        peakLevel_(SegmentPeakLevel(document.Samples(), stretch.levelStart, stretch.levelEnd)),
        analyser_(analyser != nullptr ? *analyser : ownAnalyser_),
        windowLength_(settings.frameLength) {
    PredictLoudest(stretch);
    if (UsesFrameSpectrum()) levels_ = LevelsOfColumns(stretch);
    MakeAnalysisWindow(windowLength_, settings.windowShape);
  }

  /// The levels of the frame that begins at `start`, the frame of column `column`.
  void Levels(int column, int start, double* levels) {
    const SampleSpan samples = document_.Samples();
    const int length = settings_.frameLength;
    switch (kind_) {
      case SpectrogramKind::Lpc:
      case SpectrogramKind::Formants:
        LpcEnvelope(samples, start, length, true, kLargestLpcOrder, {rate_, peakLevel_}, analyser_, levels);
        return;
      case SpectrogramKind::Homomorphic:
        HomomorphicLevels(samples, start, length, {rate_, peakLevel_}, levels);
        return;
      case SpectrogramKind::Cepstrum: {
        double cepstrum[kCepstrumPoints];
        CepstralAnalysis(samples, start, length, CepstralMode::Cepstrum, {rate_, peakLevel_}, cepstrum);
        std::copy_n(cepstrum, kSpectrogramRows, levels);
        return;
      }
      default: break;
    }
    if (kind_ == SpectrogramKind::WideBand) FitWindow(start);
    const double rise = LevelRiseAt(levels_, column, length, rate_);
    FrameSpectrum spectrum;
    ComputeFrameSpectrum(samples, start, length, 1, peakLevel_, spectrum, {rate_, rise});
    std::copy(spectrum.begin(), spectrum.end(), levels);
  }

 private:
  bool UsesFrameSpectrum() const {
    return kind_ == SpectrogramKind::WideBand || kind_ == SpectrogramKind::NarrowBand;
  }

  LevelCurve LevelsOfColumns(const SpectrogramStretch& stretch) const {
    return MakeColumnLevels(document_.Samples(), rate_, stretch.columnsPerSecond, stretch.columns.start,
                            stretch.columns.samples, stretch.columns.columns, stretch.maxColumns);
  }

  void PredictLoudest(const SpectrogramStretch& stretch) {
    const LoudestFrame loudest = FindLoudestFrame(document_, stretch.levelStart, stretch.levelEnd);
    const int frames = FrameOfSample(stretch.levelEnd - stretch.levelStart, rate_);
    const int index = loudest.index <= 10 || loudest.index >= frames ? 50 : loudest.index;
    const std::int64_t start = stretch.levelStart + std::int64_t{index} * rate_ / 100;
    double levels[kEnvelopePoints];
    LpcEnvelope(document_.Samples(), SaturateInt32(start), settings_.frameLength, true, 12,
                {rate_, peakLevel_}, analyser_, levels);
  }

  /// One pitch period of window where that is shorter than the frame.
  void FitWindow(int start) {
    const int period = PitchPeriodAt(document_, start);
    const int length = period > 0 ? std::min(period, settings_.frameLength) : settings_.frameLength;
    if (length != windowLength_) MakeAnalysisWindow(length, settings_.windowShape);
    windowLength_ = length;
  }

  const SoundDocument& document_;
  const SpectrogramKind kind_;
  const SpectrogramSettings settings_;
  const int rate_, peakLevel_;
  LpcAnalyser ownAnalyser_;
  LpcAnalyser& analyser_;
  LevelCurve levels_;
  int windowLength_;
};

/// Calls paint(f, first row, last row) for the first five formants of an envelope.
template <typename Paint>
void ForFormantRows(const double* levels, int sampleRate, Paint paint) {
  const FormantFrame formants = PickFormants(levels, kEnvelopePoints, sampleRate);
  for (std::size_t i = 0; static_cast<int>(i) < std::min(formants.count, kDrawnFormants); ++i) {
    const int row = TruncateToInt32(formants.frequency[i] * 512 / sampleRate);
    const int half = TruncateToInt32(formants.bandwidth[i] * 256 / sampleRate);
    paint(row, std::max(0, row - half), std::min(kSpectrogramRows - 1, row + half));
  }
}

void PaintFormants(const double* levels, int sampleRate, double contrast, std::uint16_t* greys) {
  std::fill_n(greys, kSpectrogramRows, std::uint16_t{255});
  ForFormantRows(levels, sampleRate, [&](int row, int first, int last) {
    const auto grey = static_cast<std::uint16_t>(std::max(0, 255 - TruncateToInt32(contrast * levels[row])));
    std::fill(greys + first, greys + last + 1, grey);
  });
}

/// The greys of one column from its levels.
void ShadeKind(SpectrogramKind kind, const double* levels, double contrast, int sampleRate,
               std::uint16_t* greys) {
  if (kind == SpectrogramKind::Formants) {
    PaintFormants(levels, sampleRate, contrast, greys);
  } else {
    ShadeColumn(levels, contrast, greys);
  }
}

/// True when a column belongs to the picture; the margin at the end of the sound grows with the column, so
/// that a long picture ends early.
bool HasColumn(const SoundDocument& document, const SpectrogramStretch& stretch, int column) {
  const std::int64_t start = stretch.ColumnStart(column);
  return column < stretch.maxColumns && start <= stretch.end &&
         start + 4 + 2 * column <= document.sampleCount;
}

}  // namespace

SpectrogramSettings SettingsOf(SpectrogramKind kind, int sampleRate, float highestLevel) {
  const auto lengthOf = [&](int share) { return std::min(sampleRate / share, kLongestFrame); };
  switch (kind) {
    case SpectrogramKind::WideBand: return {sampleRate <= 12000 ? 32 : lengthOf(352), 0.0, 4.7};
    case SpectrogramKind::NarrowBand: return {lengthOf(39), 0.0, 3.8};
    case SpectrogramKind::Lpc: return {lengthOf(40), 0.04, 4.2 - 0.005 * static_cast<double>(highestLevel)};
    case SpectrogramKind::Homomorphic: return {lengthOf(40), 0.0, 3.8};
    case SpectrogramKind::Cepstrum: return {lengthOf(30), 0.0, 50.0};
    case SpectrogramKind::Formants:
      return {lengthOf(40), 0.04, 4.6 - 0.005 * static_cast<double>(highestLevel)};
    case SpectrogramKind::FilterBank:
      return {std::min(FilterBankFrameLength(sampleRate), kLongestFrame), 0.0, 0.0};
  }
  return {};
}

LoudestFrame FindLoudestFrame(const SoundDocument& document, int start, int end) {
  LoudestFrame loudest;
  const int rate = document.sampleRate;
  if (rate <= 0) return loudest;
  const int frames = std::max(1, FrameOfSample(end - start, rate));
  const LevelCurve levels = MakeLevelCurve(document.Samples(), rate, 100, start, frames);
  for (int i = 0; i < frames; ++i) {
    const auto level = static_cast<float>(levels.values[static_cast<std::size_t>(i)]);
    if (level > loudest.level) loudest = {level, i};
  }
  return loudest;
}

SpectrogramStretch StretchOf(const SoundDocument& document) {
  if (!document.selectionDefined()) return ViewStretchOf(document);
  const int rate = std::max(1, document.sampleRate);
  SpectrogramStretch stretch;
  stretch.start = document.selectionStart;
  stretch.end = document.selectionEnd;
  if (stretch.end - stretch.start < rate / 10) stretch.end = stretch.start + rate;
  stretch.end = std::min(stretch.end, document.sampleCount);
  const int length = std::max(1, stretch.end - stretch.start);
  stretch.columnsPerSecond = std::max(1, SaturateInt32(std::int64_t{document.paneWidth} * rate / length));
  stretch.columns = {stretch.start, rate, stretch.columnsPerSecond, 0};
  stretch.maxColumns = document.paneWidth;
  stretch.levelStart = stretch.start;
  stretch.levelEnd = stretch.end;
  return stretch;
}

SpectrogramStretch ViewStretchOf(const SoundDocument& document) {
  SpectrogramStretch stretch;
  stretch.start = stretch.levelStart = document.viewStart;
  stretch.end = stretch.levelEnd = document.viewStart + document.viewLength;
  stretch.view = stretch.columns = TimeScaleOf(document);
  stretch.columns.left = 0;
  stretch.columnsPerSecond =
      document.AtStartScale() ? 100 : std::max(1, document.sampleRate / document.samplesPerPixel);
  stretch.maxColumns = std::max(0, document.paneWidth - kPaneMargin);
  stretch.followsView = true;
  return stretch;
}

SpectrogramStretch FilterBankStretchOf(const SoundDocument& document, bool ofView) {
  SpectrogramStretch stretch = ViewStretchOf(document);
  if (!ofView) {
    stretch.start = stretch.levelStart = document.selectionStart;
    stretch.end = stretch.levelEnd = document.selectionEnd;
    stretch.followsView = false;
  }
  stretch.maxColumns = std::max(0, document.paneWidth - kFilterBankMargin);
  const int first = std::max(stretch.start, kFirstFilterBankSample);
  stretch.columns = {first, std::max(1, stretch.end - first), std::max(1, stretch.maxColumns), 0};
  return stretch;
}

SpectrogramStretch RidgeStretchOf(const SpectrogramStretch& flat, int sampleRate) {
  SpectrogramStretch stretch = flat;
  stretch.end = stretch.start + sampleRate / 3;
  stretch.columnsPerSecond = 3 * kRidges;
  stretch.columns = {stretch.start, std::max(1, sampleRate), stretch.columnsPerSecond, 0};
  stretch.maxColumns = kRidges;
  stretch.followsView = false;
  return stretch;
}

SpectrogramMatrix ComputeSpectrogram(const SoundDocument& document, SpectrogramKind kind,
                                     const SpectrogramSettings& settings, const SpectrogramStretch& stretch,
                                     LpcAnalyser* analyser) {
  SpectrogramMatrix matrix;
  const int rate = document.sampleRate;
  if (rate <= 0) return matrix;
  ColumnAnalysis analysis(document, kind, settings, stretch, analyser);
  if (kind == SpectrogramKind::FilterBank) {
    const int peakLevel = SegmentPeakLevel(document.Samples(), stretch.levelStart, stretch.levelEnd);
    return ComputeFilterBank(document.Samples(), rate, stretch.start, stretch.end, stretch.maxColumns,
                             peakLevel);
  }
  matrix.greys.reserve(static_cast<std::size_t>(stretch.maxColumns) * kSpectrogramRows);
  double levels[kSpectrogramRows];
  for (int column = 0; HasColumn(document, stretch, column); ++column) {
    analysis.Levels(column, static_cast<int>(stretch.ColumnStart(column)), levels);
    matrix.greys.resize(matrix.greys.size() + kSpectrogramRows);
    ShadeKind(kind, levels, settings.contrast, rate, matrix.Column(matrix.columns++));
  }
  return matrix;
}

SpectrogramMatrix ComputeSpreadSpectrogram(const SoundDocument& document, SpectrogramKind kind,
                                           const SpectrogramSettings& settings, int start, int end,
                                           int columns) {
  SpectrogramMatrix matrix;
  const int rate = document.sampleRate;
  if (rate <= 0 || end <= start || columns < 1) return matrix;
  SpectrogramStretch stretch;
  stretch.start = stretch.levelStart = start;
  stretch.end = stretch.levelEnd = end;
  stretch.columns = {start, end - start, columns, 0};
  stretch.columnsPerSecond = std::max(1, SaturateInt32(std::int64_t{columns} * rate / (end - start)));
  stretch.maxColumns = columns;
  ColumnAnalysis analysis(document, kind, settings, stretch, nullptr);
  matrix.greys.resize(static_cast<std::size_t>(columns) * kSpectrogramRows);
  double levels[kSpectrogramRows];
  for (; matrix.columns < columns; ++matrix.columns) {
    analysis.Levels(matrix.columns, static_cast<int>(stretch.ColumnStart(matrix.columns)), levels);
    ShadeKind(kind, levels, settings.contrast, rate, matrix.Column(matrix.columns));
  }
  return matrix;
}

std::vector<std::array<double, kSpectrogramRows>> ComputeRidges(const SoundDocument& document,
                                                                SpectrogramKind kind,
                                                                const SpectrogramSettings& settings,
                                                                const SpectrogramStretch& stretch,
                                                                LpcAnalyser* analyser) {
  std::vector<std::array<double, kSpectrogramRows>> ridges;
  if (document.sampleRate <= 0) return ridges;
  ColumnAnalysis analysis(document, kind, settings, stretch, analyser);
  for (int column = 0; column < kRidges; ++column) {
    auto& ridge = ridges.emplace_back();
    double levels[kSpectrogramRows];
    analysis.Levels(column, SaturateInt32(stretch.ColumnStart(column)), levels);
    if (kind == SpectrogramKind::Formants) {
      ridge.fill(0.0);
      ForFormantRows(levels, document.sampleRate, [&](int row, int first, int last) {
        std::fill(ridge.begin() + first, ridge.begin() + last + 1, levels[row]);
      });
    } else {
      std::copy_n(levels, kSpectrogramRows, ridge.begin());
    }
  }
  return ridges;
}

std::vector<FormantDot> ComputeFormantDots(const SoundDocument& document, const SpectrogramStretch& stretch,
                                           int columns, LpcAnalyser* analyser) {
  std::vector<FormantDot> dots;
  const int rate = document.sampleRate;
  if (rate <= 0) return dots;
  ColumnAnalysis analysis(document, SpectrogramKind::Formants, SettingsOf(SpectrogramKind::Formants, rate),
                          stretch, analyser);
  double levels[kSpectrogramRows];
  for (int column = 0; column < columns; ++column) {
    analysis.Levels(column, static_cast<int>(stretch.ColumnStart(column)), levels);
    ForFormantRows(levels, rate, [&](int row, int, int) { dots.push_back({column, row}); });
  }
  return dots;
}

}  // namespace parlowen
