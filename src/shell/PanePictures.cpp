#include "shell/PanePictures.h"

#include <algorithm>
#include <cmath>

#include "base/Arithmetic.h"
#include "base/Format.h"
#include "document/Frames.h"
#include "document/LevelMeasures.h"
#include "dsp/Decibel.h"
#include "spectral/SpectrogramPicture.h"

namespace parlowen {
namespace {

constexpr Colour kAmplitudeBars = 0x9DB8D9, kEnergyLine = 0xB03000, kWave = 0x1F3F77, kPitchDots = 0x0050A0;
constexpr double kDecibelSpan = 90.0;  // a full-scale square wave
constexpr int kTitleHeight = 18, kOwnAxisHeight = 16;
constexpr double kLowestPitch = 64.0;
constexpr int kPitchOctaves = 3;  // 64 to 512 Hz

/// The samples under the columns of the time panes.
struct Columns {
  explicit Columns(const SoundDocument& source, int width)
      : document(source),
        count(source.sampleCount > 0 && source.sampleRate > 0 ? std::max(0, width - kPaneMargin) : 0) {}

  /// First sample of column c, 0 at the margin.
  int Start(int c) const {
    const std::int64_t offset = document.AtStartScale() ? std::int64_t{c} * document.sampleRate / 100
                                                        : std::int64_t{c} * document.samplesPerPixel;
    return static_cast<int>(std::min<std::int64_t>(document.viewStart + offset, document.sampleCount));
  }
  bool Empty(int c) const { return Start(c) >= document.sampleCount; }

  const SoundDocument& document;
  int count;
};

int TenMilliseconds(const SoundDocument& document) { return std::max(1, document.sampleRate / 100); }

double MeanSquareLevel(const SoundDocument& document, int start, int end) {
  const int last = std::min(end, document.sampleCount);
  std::int64_t sum = 0;
  for (int i = std::max(start, 0); i < last; ++i)
    sum += std::int64_t{document.samples[i]} * document.samples[i];
  return PowerToDb(static_cast<double>(sum) / std::max(1, end - start), 0);
}

/// Half the height of the waveform's scale: the smallest of 32768, 16384 … 256 that holds the whole sound.
int WaveformRange(const SoundDocument& document, const WavePyramid& pyramid) {
  const MinMax all = pyramid.Extremes(document.Samples(), 0, document.sampleCount);
  const int peak = std::max<int>(all.max, -static_cast<int>(all.min));
  int range = 32768;
  while (range > 256 && peak <= range / 2) range /= 2;
  return range;
}

void AddMarginLine(Picture& picture) {
  picture.Add(LineMark{{kPaneMargin - 1, 0}, {kPaneMargin - 1, picture.height - 1}, colours::kGrid});
}

}  // namespace

Picture AmplitudePicture(const SoundDocument& document, AmplitudeScale scale, int width, int height) {
  Picture picture{width, height, {}};
  AddMarginLine(picture);
  const Columns columns(document, width);
  const int bottom = height - 1;
  const int factor = scale == AmplitudeScale::Double ? 2 : scale == AmplitudeScale::Quadruple ? 4 : 1;
  PolylineMark energy{{}, kEnergyLine};
  PolygonMark bars{{}, kAmplitudeBars};
  for (int c = 0; c < columns.count && !columns.Empty(c); ++c) {
    const int start = columns.Start(c);
    // Zoomed in, a column still speaks of 10 ms, or it would show the waveform.
    const int end = std::max(columns.Start(c + 1), start + TenMilliseconds(document));
    const int x = kPaneMargin + c;
    if (scale != AmplitudeScale::DecibelsOnly) {
      const int top = PeakAmplitude(document.Samples(), start, end) * factor;
      const int y = std::max(0, bottom - static_cast<int>(std::int64_t{top} * bottom / 32767));
      bars.points.push_back({x, y});
      bars.points.push_back({x + 1, y});
    }
    const double level = MeanSquareLevel(document, start, end);
    energy.points.push_back({x, bottom - TruncateToInt32(level * bottom / kDecibelSpan)});
  }
  if (!bars.points.empty()) {
    bars.points.push_back({bars.points.back().x, height});
    bars.points.push_back({kPaneMargin, height});
    picture.Add(std::move(bars));
  }
  for (const TickLabel& tick : AmplitudeTicks(scale, height))
    if (tick.y > 0 && tick.y < bottom)
      picture.Add(LineMark{{kPaneMargin, tick.y}, {width - 1, tick.y}, colours::kGrid, 1, LineStyle::Dashed});
  if (energy.points.size() > 1) picture.Add(std::move(energy));
  return picture;
}

std::vector<TickLabel> AmplitudeTicks(AmplitudeScale, int height) {
  std::vector<TickLabel> ticks;
  for (const int level : {0, 30, 60, 90})
    ticks.push_back({TruncateToInt32((height - 1) * (1 - level / kDecibelSpan)), Format("%d dB", level)});
  return ticks;
}

Picture PitchPicture(const SoundDocument& document, int width, int height) {
  Picture picture{width, height, {}};
  AddMarginLine(picture);
  const int bottom = height - 1;
  const auto rowOf = [bottom](double semitones) {
    return bottom - TruncateToInt32(semitones * bottom / (12.0 * kPitchOctaves));
  };
  for (int semitone = 0; semitone <= 12 * kPitchOctaves; ++semitone) {
    const int y = rowOf(semitone);
    if (semitone % 12 == 0) {
      picture.Add(LineMark{{kPaneMargin, y}, {width - 1, y}, colours::kGrid});
    } else {
      picture.Add(LineMark{{kPaneMargin - 4, y}, {kPaneMargin - 1, y}, colours::kGrid});
    }
  }
  if (!document.pitchPresent || document.sampleRate <= 0) return picture;

  const double perColumn = document.AtStartScale() ? document.sampleRate / 100.0 : document.samplesPerPixel;
  PolylineMark piece{{}, kPitchDots, 2};
  const auto finish = [&] {
    if (piece.points.size() == 1) {
      picture.Add(BoxMark{piece.points[0].x, piece.points[0].y - 1, 2, 2, kPitchDots});
    } else if (piece.points.size() > 1) {
      picture.Add(piece);
    }
    piece.points.clear();
  };
  const int first = FrameOfSample(document.viewStart, document.sampleRate);
  for (int frame = first; frame < document.ContourLength(); ++frame) {
    const int sample = SampleOfFrame(frame, document.sampleRate);
    const int x = kPaneMargin +
                  TruncateToInt32(std::floor(static_cast<double>(sample - document.viewStart) / perColumn));
    if (x >= width) break;
    const float period = document.pitch[static_cast<std::size_t>(frame)];
    const double semitones =
        period > 0 ? 12.0 * std::log2(document.sampleRate / (static_cast<double>(period) * kLowestPitch))
                   : -1.0;
    if (semitones < 0 || semitones > 12.0 * kPitchOctaves || x < kPaneMargin) {
      finish();
      continue;
    }
    piece.points.push_back({x, rowOf(semitones)});
  }
  finish();
  return picture;
}

std::vector<TickLabel> PitchTicks(int height) {
  std::vector<TickLabel> ticks;
  for (int octave = 0; octave <= kPitchOctaves; ++octave)
    ticks.push_back({(height - 1) - octave * (height - 1) / kPitchOctaves, Format("%d Hz", 64 << octave)});
  return ticks;
}

Picture AnalysisPicture(const SoundDocument& document, const SpectrogramState& spectrogram, int width,
                        int height) {
  Picture picture{width, height, {}};
  if (!spectrogram.shown) {
    AddMarginLine(picture);
    return picture;
  }
  picture = SpectrogramPicture(spectrogram, document.sampleRate, width, height);
  const SpectrogramStretch& stretch = spectrogram.stretch;
  if (!stretch.followsView && spectrogram.ridges.empty()) {
    // A stretch of its own has its own axis of time. It stands under the title: at the foot it would cover
    // F0.
    const double rate = std::max(1, document.sampleRate);
    const Picture axis =
        TimeAxisPicture(stretch.start / rate, (stretch.end - stretch.start) / rate / stretch.Width(width), 0,
                        width, kOwnAxisHeight);
    picture.Add(BoxMark{0, kTitleHeight, width, kOwnAxisHeight, colours::kWhite, 0.75});
    picture.AddAt(axis, 0, kTitleHeight);
  }
  return picture;
}

int AnalysisHeadHeight(const SpectrogramState& spectrogram) {
  return spectrogram.stretch.followsView ? kTitleHeight : kTitleHeight + kOwnAxisHeight;
}

std::vector<TickLabel> AnalysisTicks(const SoundDocument& document, const SpectrogramState& spectrogram,
                                     int height) {
  std::vector<TickLabel> ticks;
  if (!spectrogram.shown || document.sampleRate <= 0) return ticks;
  for (SpectrogramGridLine& line : SpectrogramGrid(spectrogram, document.sampleRate, height))
    ticks.push_back({line.y, std::move(line.label)});
  return ticks;
}

Picture WaveformPicture(const SoundDocument& document, const WavePyramid& pyramid, int width, int height) {
  Picture picture{width, height, {}};
  AddMarginLine(picture);
  const int middle = height / 2;
  picture.Add(LineMark{{kPaneMargin, middle}, {width - 1, middle}, colours::kGrid});
  const Columns columns(document, width);
  if (columns.count == 0) return picture;
  const int range = WaveformRange(document, pyramid);
  const auto rowOf = [middle, range](int value) { return middle - value * (middle - 2) / range; };
  // What is drawn is the copy of the view; its first sample is viewStart.
  const SampleSpan shown{document.viewSamples.data(), document.viewLength};

  PolylineMark wave{{}, kWave};
  if (document.samplesPerPixel < 4 && !document.AtStartScale()) {
    for (int i = 0; i < shown.count; ++i)
      wave.points.push_back({kPaneMargin + i / document.samplesPerPixel, rowOf(shown.data[i])});
  } else {
    for (int c = 0; c < columns.count && !columns.Empty(c); ++c) {
      const int start = columns.Start(c), end = std::max(start + 1, columns.Start(c + 1));
      const MinMax range2 = pyramid.Extremes(document.Samples(), start, end);
      // Up and down in turn, so that neighbouring columns join.
      const int first = c % 2 == 0 ? range2.max : range2.min, second = c % 2 == 0 ? range2.min : range2.max;
      wave.points.push_back({kPaneMargin + c, rowOf(first)});
      wave.points.push_back({kPaneMargin + c, rowOf(second)});
    }
  }
  if (wave.points.size() > 1) picture.Add(std::move(wave));
  return picture;
}

std::vector<TickLabel> WaveformTicks(const SoundDocument& document, const WavePyramid& pyramid, int height) {
  const int range = WaveformRange(document, pyramid);
  const int middle = height / 2;
  return {{2, Format("%d", range)}, {middle, "0"}, {2 * middle - 2, Format("-%d", range)}};
}

Picture TimeAxisPicture(double start, double secondsPerColumn, int left, int width, int height) {
  Picture picture{width, height, {}};
  picture.Add(LineMark{{left, 0}, {width - 1, 0}, colours::kText});
  if (secondsPerColumn <= 0) return picture;
  // The finest of 1, 2, 5 · 10^k seconds that leaves 70 columns a label.
  double step = 1e-4;
  for (int i = 0; step / secondsPerColumn < 70 && i < 40; ++i) step *= i % 3 == 1 ? 2.5 : 2.0;
  const int decimals = step >= 1 ? 0 : step >= 0.1 ? 1 : step >= 0.01 ? 2 : step >= 0.001 ? 3 : 4;
  const double end = start + (width - left) * secondsPerColumn;
  for (std::int64_t i = TruncateToInt64(std::ceil(start / step - 1e-9)); static_cast<double>(i) * step <= end;
       ++i) {
    const double time = static_cast<double>(i) * step;
    const int x = left + TruncateToInt32(std::floor((time - start) / secondsPerColumn + 0.5));
    if (x >= width) break;
    picture.Add(LineMark{{x, 0}, {x, 4}, colours::kText});
    const Anchor anchor = x < left + 20 ? Anchor::Left : x > width - 24 ? Anchor::Right : Anchor::Middle;
    picture.Add(TextMark{x, 14, Format("%.*f", decimals, time), colours::kText, 10, anchor, Face::Figures});
  }
  return picture;
}

Picture OverviewPicture(const SoundDocument& document, const WavePyramid& pyramid, int width, int height) {
  Picture picture{width, height, {}};
  if (document.sampleCount == 0) return picture;
  const auto columnOf = [&](int sample) {
    return static_cast<int>(std::int64_t{sample} * width / document.sampleCount);
  };
  if (document.selectionDefined()) {
    const int from = columnOf(document.selectionStart), to = columnOf(document.selectionEnd);
    picture.Add(BoxMark{from, 0, std::max(1, to - from), height, colours::kSelection});
  }
  const int range = WaveformRange(document, pyramid), middle = height / 2;
  PolylineMark wave{{}, kWave};
  for (int x = 0; x < width; ++x) {
    const auto at = [&](int column) {
      return static_cast<int>(std::int64_t{column} * document.sampleCount / width);
    };
    const MinMax extremes = pyramid.Extremes(document.Samples(), at(x), std::max(at(x) + 1, at(x + 1)));
    const int first = x % 2 == 0 ? extremes.max : extremes.min,
              second = x % 2 == 0 ? extremes.min : extremes.max;
    wave.points.push_back({x, middle - first * (middle - 1) / range});
    wave.points.push_back({x, middle - second * (middle - 1) / range});
  }
  picture.Add(std::move(wave));
  const int from = columnOf(document.viewStart);
  const int to = std::max(from + 3, columnOf(document.viewStart + document.viewLength));
  BoxMark view{from, 0, to - from, height, 0x3080FF, 0.15};
  view.outlined = true;
  view.outline = 0x3060B0;
  picture.Add(view);
  return picture;
}

}  // namespace parlowen
