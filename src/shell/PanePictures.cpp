#include "shell/PanePictures.h"

#include <algorithm>
#include <cmath>

#include "base/Arithmetic.h"
#include "document/Frames.h"
#include "document/LevelMeasures.h"
#include "document/ViewScale.h"
#include "dsp/Decibel.h"
#include "spectral/FrequencyCeiling.h"
#include "spectral/SpectrogramPicture.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr double kDecibelSpan = 90.0;     // a full-scale square wave
constexpr double kReferencePitch = 64.0;  // of the semitones
constexpr int kOctave = 12;
constexpr double kLargestStep = 1.4142135623730951;  // half an octave
constexpr int kSemitoneRoom = 24;                    // pixels between two numbers
constexpr UiText kSemitones = " 半音", kHertz = " Hz";
constexpr double kViewOpacity = 0.15;

/// One behind the last column that has sound.
int SoundEnd(const SoundDocument& document, const SampleScale& scale, int width) {
  if (document.sampleCount == 0 || document.sampleRate <= 0) return scale.left;
  return std::clamp(scale.ColumnOf(document.sampleCount - 1) + 1, scale.left, std::max(scale.left, width));
}

int TenMilliseconds(const SoundDocument& document) { return std::max(1, document.sampleRate / 100); }

double MeanSquareLevel(const SoundDocument& document, int start, int end) {
  const int last = std::min(end, document.sampleCount);
  std::int64_t sum = 0;
  for (int i = std::max(start, 0); i < last; ++i)
    sum += std::int64_t{document.samples[i]} * document.samples[i];
  return PowerToDb(static_cast<double>(sum) / std::max(1, end - start), 0);
}

PlotScale DecibelRows(int height) { return {0, kDecibelSpan, height - 1, 0}; }

PlotScale PitchRows(const PitchSpan& range, int height) {
  return {range.lowest, range.highest, height - 1, 0, true};
}

/// The same rows in semitones above 64 Hz.
PlotScale SemitoneRows(const PitchSpan& range, int height) {
  const auto semitones = [](double frequency) { return kOctave * std::log2(frequency / kReferencePitch); };
  return {semitones(range.lowest), semitones(range.highest), height - 1, 0};
}

/// Rows of a waveform in a picture of its own, `margin` from its edges.
PlotScale WaveRows(const SoundDocument& document, const WavePyramid& pyramid, int height, int margin) {
  const int peak = PeakOf(pyramid.Extremes(document.Samples(), 0, document.sampleCount));
  return {0, static_cast<double>(WaveRange(peak)), height / 2, margin};
}

void AddWave(Picture& picture, const SoundDocument& document, const WavePyramid& pyramid,
             const SampleScale& scale, const PlotScale& rows) {
  const auto points = WavePoints(
      scale.left, picture.width, document.sampleCount, [&](int x) { return scale.SampleAt(x); },
      ExtremesFrom(pyramid, document.Samples()));
  AddCurve(picture, points, rows, colours::kWave);
}

void AddMarginLine(Picture& picture) {
  picture.Add(LineMark{{kPaneMargin - 1, 0}, {kPaneMargin - 1, picture.height - 1}, colours::kGrid});
}

/// The panes' labels stand beside them, so here are lines alone.
std::vector<Tick> WithoutLabels(std::vector<Tick> ticks) {
  for (Tick& tick : ticks) tick.label.clear();
  return ticks;
}

}  // namespace

Picture AmplitudePicture(const SoundDocument& document, AmplitudeScale scale, int width, int height) {
  Picture picture{width, height, {}};
  AddMarginLine(picture);
  const SampleScale columns = TimeScaleOf(document);
  const int factor = scale == AmplitudeScale::Double ? 2 : scale == AmplitudeScale::Quadruple ? 4 : 1;
  const PlotScale levels = DecibelRows(height), amplitudes{0, 32767.0 / factor, height - 1, 0};
  std::vector<CurvePoint> energy;
  PolygonMark bars{{}, colours::kLevelBars};
  const int right = SoundEnd(document, columns, width);
  for (int x = columns.left; x < right; ++x) {
    const int start = static_cast<int>(columns.SampleAt(x));
    // Zoomed in, a column still speaks of 10 ms, or it would show the waveform.
    const int end = std::max(SaturateInt32(columns.SampleAt(x + 1)), start + TenMilliseconds(document));
    if (scale != AmplitudeScale::DecibelsOnly) {
      const int y = std::max(0, amplitudes.PixelOf(PeakAmplitude(document.Samples(), start, end)));
      bars.points.push_back({x, y});
      bars.points.push_back({x + 1, y});
    }
    energy.push_back({x, MeanSquareLevel(document, start, end)});
  }
  if (!bars.points.empty()) {
    bars.points.push_back({right, height});
    bars.points.push_back({columns.left, height});
    picture.Add(std::move(bars));
  }
  std::vector<Tick> lines = AmplitudeTicks(scale, height);
  std::erase_if(lines, [&](const Tick& tick) { return tick.at <= 0 || tick.at >= height - 1; });
  AddLevelAxis(picture, WithoutLabels(lines), {kPaneMargin, width - 1, 0, Anchor::Left, GridLines::Dotted});
  AddCurve(picture, energy, levels, colours::kLevelLine);
  return picture;
}

std::vector<Tick> AmplitudeTicks(AmplitudeScale, int height) {
  return TicksEvery(DecibelRows(height), 30, 0, " dB");
}

namespace {

std::vector<Tick> OctaveTicks(const PitchSpan& range, int height) {
  std::vector<double> octaves;
  for (int up = -2; std::ldexp(kReferencePitch, up) <= kHighestPitchLimit; ++up)
    octaves.push_back(std::ldexp(kReferencePitch, up));
  return TicksAt(PitchRows(range, height), octaves, 0, kHertz);
}

}  // namespace

Picture PitchPicture(const SoundDocument& document, const PitchSpan& range, int width, int height) {
  Picture picture{width, height, {}};
  AddMarginLine(picture);
  std::vector<Tick> semitones = WithoutLabels(TicksEvery(SemitoneRows(range, height), 1));
  std::erase_if(semitones, [](const Tick& tick) { return static_cast<int>(tick.value) % kOctave == 0; });
  AddLevelAxis(picture, semitones, {kPaneMargin - 1, 0, 0, Anchor::Left, GridLines::None, colours::kGrid});
  AddLevelAxis(picture, WithoutLabels(OctaveTicks(range, height)),
               {kPaneMargin, width - 1, 0, Anchor::Left, GridLines::Dotted});
  if (!document.pitchPresent || document.sampleRate <= 0) return picture;

  const SampleScale columns = TimeScaleOf(document);
  const PlotScale rows = PitchRows(range, height);
  BrokenLine line;
  double last = 0;  // Hz of the frame before
  const int first = FrameOfSample(document.viewStart, document.sampleRate);
  for (int frame = first; frame < document.ContourLength(); ++frame) {
    const int x = columns.ColumnOf(SampleOfFrame(frame, document.sampleRate));
    if (x >= width) break;
    const float period = document.pitch[static_cast<std::size_t>(frame)];
    const double frequency = period > 0 ? document.sampleRate / static_cast<double>(period) : 0.0;
    const bool leaps =
        last > 0 && frequency > 0 && std::max(last / frequency, frequency / last) > kLargestStep;
    last = frequency;
    if (leaps || x < columns.left || !rows.Holds(frequency)) line.Break();
    if (x >= columns.left && rows.Holds(frequency)) line.To({x, rows.PixelOf(frequency)});
  }
  AddCurve(picture, line, colours::kPitch);
  return picture;
}

std::vector<Tick> PitchTicks(const PitchSpan& range, int height) {
  std::vector<Tick> ticks = OctaveTicks(range, height);
  const PlotScale rows = SemitoneRows(range, height);
  const double pixels = rows.last > rows.first ? height / (rows.last - rows.first) : 0;  // a semitone
  for (const int step : {1, 2, 3, 6}) {
    if (pixels * step < kSemitoneRoom) continue;
    for (const Tick& tick : TicksEvery(rows, step, 0, kSemitones))
      if (static_cast<int>(std::lround(tick.value)) % kOctave != 0) ticks.push_back(tick);
    break;
  }
  return ticks;
}

Picture AnalysisPicture(const SoundDocument& document, const SpectrogramState& spectrogram, int width,
                        int height) {
  if (spectrogram.shown)
    return SpectrogramPicture(spectrogram, document.sampleRate, spectrogram.stretch.Pane(width), width,
                              height, ShownRows(document, spectrogram));
  Picture picture{width, height, {}};
  AddMarginLine(picture);
  return picture;
}

std::vector<Tick> AnalysisTicks(const SoundDocument& document, const SpectrogramState& spectrogram,
                                int height) {
  if (!spectrogram.shown || document.sampleRate <= 0) return {};
  return SpectrogramGrid(spectrogram, document.sampleRate, height, ShownRows(document, spectrogram));
}

Picture WaveformPicture(const SoundDocument& document, const WavePyramid& pyramid, int width, int height) {
  Picture picture{width, height, {}};
  AddMarginLine(picture);
  const PlotScale rows = WaveRows(document, pyramid, height, 2);
  picture.Add(LineMark{{kPaneMargin, rows.from}, {width - 1, rows.from}, colours::kGrid});
  if (document.sampleRate > 0) AddWave(picture, document, pyramid, WaveformScaleOf(document), rows);
  return picture;
}

std::vector<Tick> WaveformTicks(const SoundDocument& document, const WavePyramid& pyramid, int height) {
  PlotScale rows = WaveRows(document, pyramid, height, 2);
  const double range = rows.last;
  rows = {-range, range, 2 * rows.from - 2, 2};
  const double values[] = {range, 0, -range};
  return TicksAt(rows, values);
}

FigureAxis TimeAxis(const SampleScale& columns, int sampleRate, int width, int text) {
  const PlotScale seconds = PlotScale::Seconds(columns, sampleRate, width);
  return {seconds, RoundTicks(seconds, kTimeLabelRoom * text / PlotStyle{}.text), kTimeUnit, {}};
}

Picture OverviewPicture(const SoundDocument& document, const WavePyramid& pyramid, int width, int height) {
  Picture picture{width, height, {}};
  if (document.sampleCount == 0) return picture;
  const SampleScale columns = OverviewScaleOf(document, width);
  if (document.selectionDefined()) {
    const int from = columns.ColumnOf(document.selectionStart), to = columns.ColumnOf(document.selectionEnd);
    picture.Add(BoxMark{from, 0, std::max(1, to - from), height, colours::kSelection});
  }
  AddWave(picture, document, pyramid, columns, WaveRows(document, pyramid, height, 1));
  const int from = columns.ColumnOf(document.viewStart);
  const int to = std::max(from + 3, columns.ColumnOf(document.viewStart + document.viewLength));
  BoxMark view{from, 0, to - from, height, colours::kTint, kViewOpacity};
  view.outlined = true;
  view.outline = colours::kViewEdge;
  picture.Add(view);
  return picture;
}

}  // namespace parlowen
