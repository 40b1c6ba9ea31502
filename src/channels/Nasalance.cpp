// The outputs of the band-pass are needed only for their energy. Behind it nothing is left above 700 Hz, and
// nothing of their squares above 1400 Hz, so every D-th output is enough: D = sampleRate/4000 leaves a rate
// of 4000 Hz and more.

#include "channels/Nasalance.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "dsp/Fir.h"

namespace parlowen {
namespace {

constexpr int kLowEdge = 350, kHighEdge = 650;  // Hz: the customary band of nasometers
constexpr int kOutputRate = 4000;               // Hz, at least
constexpr double kBlankBelow = 1e-4;            // 40 dB under the peak
constexpr double kHamming = 0.54;
constexpr float kSmallestRatio = 0.001f, kLargestRatio = 1000.0f;

/// Squares of a channel at the samples start + k·step.
struct SquareTrack {
  int step = 1;
  std::vector<double> squares;
};

/// The right half of the band-pass, centre first: the difference of two low-passes of 40 ms; between the
/// edges its gain is 1.
std::vector<double> HalfBandPass(int sampleRate) {
  const int half = sampleRate / 50;
  const auto lowPass = [&](int edge) {
    std::vector<double> taps(static_cast<std::size_t>(2 * half) + 1);
    DesignFirFilter(edge, kHamming, half, 0, taps.data(), sampleRate);
    return std::vector<double>(taps.begin() + half, taps.end());
  };
  std::vector<double> band = lowPass(kLowEdge);
  for (double& tap : band) tap = -tap;
  if (2 * kHighEdge < sampleRate) {
    const std::vector<double> upper = lowPass(kHighEdge);
    for (std::size_t i = 0; i < band.size(); ++i) band[i] += upper[i];
  } else {
    band[0] += 1.0;  // no sound above the upper edge
  }
  return band;
}

SquareTrack FullBandSquares(SampleSpan channel, int start, int end) {
  SquareTrack track;
  track.squares.reserve(static_cast<std::size_t>(end - start));
  for (int i = start; i < end; ++i)
    track.squares.push_back(static_cast<double>(channel.At(i)) * channel.At(i));
  return track;
}

SquareTrack BandSquares(SampleSpan channel, int sampleRate, int start, int end) {
  const std::vector<double> band = HalfBandPass(sampleRate);
  const int half = static_cast<int>(band.size()) - 1;
  std::vector<double> samples(static_cast<std::size_t>(end - start) + 2 * static_cast<std::size_t>(half));
  for (std::size_t i = 0; i < samples.size(); ++i)
    samples[i] = channel.At(std::int64_t{start} - half + static_cast<std::int64_t>(i));
  SquareTrack track;
  track.step = std::max(1, sampleRate / kOutputRate);
  for (std::int64_t at = 0; at < end - start; at += track.step) {
    const double* centre = samples.data() + half + at;
    double odd = 0, even = band[0] * centre[0];  // two sums that do not wait for each other
    int j = 1;
    for (; j + 1 <= half; j += 2) {
      odd += band[static_cast<std::size_t>(j)] * (centre[-j] + centre[j]);
      even += band[static_cast<std::size_t>(j) + 1] * (centre[-j - 1] + centre[j + 1]);
    }
    if (j <= half) odd += band[static_cast<std::size_t>(j)] * (centre[-j] + centre[j]);
    track.squares.push_back((odd + even) * (odd + even));
  }
  return track;
}

SquareTrack Squares(SampleSpan channel, int sampleRate, int start, int end, bool fullBand) {
  return fullBand ? FullBandSquares(channel, start, end) : BandSquares(channel, sampleRate, start, end);
}

/// Mean square of the samples first .. last − 1 of the stretch.
double MeanSquare(const SquareTrack& track, int first, int last) {
  const auto indexOf = [&](int sample) {
    return static_cast<std::size_t>((sample + track.step - 1) / track.step);
  };
  const std::size_t from = indexOf(first), to = std::min(indexOf(last), track.squares.size());
  double sum = 0;
  for (std::size_t i = from; i < to; ++i) sum += track.squares[i];
  return to > from ? sum / static_cast<double>(to - from) : 0;
}

}  // namespace

NasalanceCurve MeasureNasalance(SampleSpan nasal, SampleSpan oral, int sampleRate, int start, int end,
                                const NasalanceSettings& settings) {
  NasalanceCurve curve{start, sampleRate / 100, settings.gainRatio, {}};
  const int window = sampleRate / 50;
  if (curve.step < 1 || start < 0 || end - start < window) return curve;
  const SquareTrack nose = Squares(nasal, sampleRate, start, end, settings.fullBand);
  const SquareTrack mouth = Squares(oral, sampleRate, start, end, settings.fullBand);
  const int count = (end - start - window) / curve.step + 1;
  const double gain = static_cast<double>(settings.gainRatio) * settings.gainRatio;
  std::vector<double> total(static_cast<std::size_t>(count));
  curve.values.resize(total.size());
  for (int i = 0; i < count; ++i) {
    const int first = i * curve.step;
    const double nasalEnergy = gain * MeanSquare(nose, first, first + window);
    const auto frame = static_cast<std::size_t>(i);
    total[frame] = nasalEnergy + MeanSquare(mouth, first, first + window);
    curve.values[frame] = static_cast<float>(total[frame] > 0 ? 100.0 * nasalEnergy / total[frame] : 0);
  }
  const double peak = *std::max_element(total.begin(), total.end());
  for (std::size_t i = 0; i < total.size(); ++i)
    if (total[i] <= 0 || total[i] < peak * kBlankBelow)
      curve.values[i] = std::numeric_limits<float>::quiet_NaN();
  return curve;
}

float MeasureGainRatio(SampleSpan nasal, SampleSpan oral, int sampleRate, int start, int end, bool fullBand) {
  if (sampleRate < 100 || start < 0 || end <= start) return 0;
  const double nose = MeanSquare(Squares(nasal, sampleRate, start, end, fullBand), 0, end - start);
  const double mouth = MeanSquare(Squares(oral, sampleRate, start, end, fullBand), 0, end - start);
  if (nose <= 0 || mouth <= 0) return 0;
  const auto ratio = static_cast<float>(std::sqrt(mouth / nose));
  return ratio >= kSmallestRatio && ratio <= kLargestRatio ? ratio : 0;
}

NasalanceFigures FiguresOf(std::span<const float> values) {
  NasalanceFigures figures;
  double sum = 0;
  for (const float value : values) {
    if (std::isnan(value)) continue;
    const double v = value;
    figures.smallest = figures.count == 0 ? v : std::min(figures.smallest, v);
    figures.largest = figures.count == 0 ? v : std::max(figures.largest, v);
    sum += v;
    ++figures.count;
  }
  figures.mean = sum / figures.count;  // NaN without values
  double squares = 0;
  for (const float value : values)
    if (!std::isnan(value)) squares += (value - figures.mean) * (value - figures.mean);
  figures.deviation = std::sqrt(squares / figures.count);
  if (figures.count == 0) {
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    figures.mean = figures.deviation = figures.smallest = figures.largest = kNone;
  }
  return figures;
}

}  // namespace parlowen
