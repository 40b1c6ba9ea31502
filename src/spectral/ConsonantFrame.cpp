#include "spectral/ConsonantFrame.h"

#include <algorithm>
#include <cmath>

#include "dsp/AnalysisWindow.h"
#include "dsp/Fft.h"

namespace parlowen {
namespace {

constexpr int kFftSize = 512;
constexpr double kIntensityOffset = 50.0;  // dB

void SpectrumOfFrame(SampleSpan samples, int start, int length, double* powers) {
  MakeAnalysisWindow(length, 0.04);
  double frame[kFftSize] = {};
  for (int n = 0; n < std::min(length, kFftSize); ++n) {
    const std::int64_t at = std::int64_t{start} + n;
    frame[n] = (samples.At(at + 1) - 0.95 * samples.At(at)) * AnalysisWindow[static_cast<std::size_t>(n)];
  }
  Complex bins[kFftSize / 2];
  RealFft(frame, kFftSize, bins);
  for (int k = 0; k < kFftSize / 2; ++k) powers[k] = bins[k].re * bins[k].re + bins[k].im * bins[k].im;
}

}  // namespace

ConsonantFrame AnalyseConsonantFrame(SampleSpan samples, int sampleRate, int start) {
  ConsonantFrame frame;
  double powers[kFftSize / 2];
  SpectrumOfFrame(samples, start, sampleRate / 100, powers);
  double sum = 0.0, moment = 0.0;
  int bin = 2;
  for (int band = kFirstBand; band <= kLastBand; ++band) {
    const int last = kBandEdges[static_cast<std::size_t>(band)] * kFftSize / std::max(1, sampleRate);
    double power = 0.0;
    int count = 0;
    do {
      if (bin < kFftSize / 2) power += powers[bin];
      ++count;
      ++bin;
    } while (bin <= last);
    const double energy = power / count;
    frame.bands[static_cast<std::size_t>(band - kFirstBand)] = energy;
    sum += energy;
    moment += band * energy;
  }
  frame.intensity = -kIntensityOffset;
  if (sum <= 0.0) return frame;
  frame.gravity = moment / sum;
  double spread = 0.0;
  for (int band = kFirstBand; band <= kLastBand; ++band) {
    const double distance = band - frame.gravity;
    spread += distance * distance * frame.bands[static_cast<std::size_t>(band - kFirstBand)];
  }
  frame.dispersion = std::sqrt(spread / sum);
  frame.intensity = 10.0 * std::log10(sum / kBandCount) - kIntensityOffset;
  return frame;
}

std::vector<ConsonantFrame> AnalyseConsonant(SampleSpan samples, int sampleRate, int start, int end,
                                             ConsonantFrame previous) {
  std::vector<ConsonantFrame> frames;
  const int step = sampleRate / 100;
  if (step <= 0) return frames;
  const int count = std::max(1, (end - start) / step);
  for (int i = 0; i < count; ++i) {
    const std::int64_t at = start + std::int64_t{i} * step;
    if (at + kConsonantEndMargin < samples.count)
      previous = AnalyseConsonantFrame(samples, sampleRate, static_cast<int>(at));
    frames.push_back(previous);
  }
  return frames;
}

}  // namespace parlowen
