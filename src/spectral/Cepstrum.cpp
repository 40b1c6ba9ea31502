#include "spectral/Cepstrum.h"

#include <algorithm>
#include <cmath>

#include "dsp/AnalysisWindow.h"
#include "dsp/Clones.h"
#include "dsp/Decibel.h"
#include "dsp/Fft.h"

// The stages:
//
//   EmphasisedFrame     emphasis, scale and window
//   LogSpectrum         the 512 log values, symmetric about bin 256
//   CepstralAnalysis    their transform, for the homomorphic spectrum of its low end once more. Both run over
//                       512 complex points: the short twiddle step makes a half-size transform of the same
//                       values differ in the eighth digit

namespace parlowen {
namespace {

constexpr int kHalf = kCepstrumPoints / 2;
constexpr int kLifter = 16;  // quefrencies that the homomorphic spectrum keeps

void EmphasisedFrame(SampleSpan samples, int start, int length, int step, int peakLevel, double* frame) {
  const double scale = 1500.0 / std::max(1, peakLevel);
  const bool inside =
      start >= 0 && std::int64_t{start} + std::int64_t{step} * (length - 1) + 1 < samples.count;
  const std::int16_t* x = samples.data + (inside ? start : 0);
  for (int n = 0; n < length; ++n) {
    const std::int64_t at = std::int64_t{start} + std::int64_t{step} * n;
    const double here = inside ? x[step * n] : samples.At(at);
    const double next = inside ? x[step * n + 1] : samples.At(at + 1);
    frame[n] = (next - 0.95 * here) * scale * AnalysisWindow[static_cast<std::size_t>(n)];
  }
  std::fill(frame + length, frame + kCepstrumPoints, 0.0);
}

PARLOWEN_CLONES void Powers(const Complex* __restrict bins, double* __restrict powers) {
  for (int k = 0; k < kHalf; ++k) powers[k] = bins[k].re * bins[k].re + bins[k].im * bins[k].im;
}

PARLOWEN_CLONES void Moduli(const Complex* __restrict bins, double factor, double* __restrict moduli) {
  for (int k = 0; k < kHalf; ++k)
    moduli[k] = factor * std::sqrt(bins[k].re * bins[k].re + bins[k].im * bins[k].im);
}

void LogSpectrum(const double* frame, int reference, double factor, double* logs) {
  Complex bins[kHalf];
  RealFft(frame, kCepstrumPoints, bins);
  Powers(bins, logs);
  // Bin 256 is the sum of the even samples less that of the odd ones.
  double even = 0.0, odd = 0.0;
  for (int n = 0; n < kCepstrumPoints; n += 2) {
    even += frame[n];
    odd += frame[n + 1];
  }
  logs[kHalf] = (even - odd) * (even - odd);
  PowersToDb(logs, kHalf + 1, reference, logs);
  for (int k = 0; k <= kHalf; ++k) logs[k] *= factor;
  for (int k = 1; k < kHalf; ++k) logs[kCepstrumPoints - k] = logs[k];
}

}  // namespace

int CepstralAnalysis(SampleSpan samples, int start, int frameLength, CepstralMode mode,
                     const CepstralContext& context, double* output) {
  const bool cepstrum = mode == CepstralMode::Cepstrum;
  const int length = std::clamp(frameLength, 0, kLongestFrame);
  const int step = cepstrum && context.sampleRate >= kSteppedCepstrumRate ? 2 : 1;
  const int reference = (cepstrum ? 20 : 30) + (context.sampleRate < 10000 ? 8 : 0);

  alignas(64) double frame[kCepstrumPoints];
  alignas(64) double logs[kCepstrumPoints];
  Complex sequence[kCepstrumPoints], bins[kCepstrumPoints];
  EmphasisedFrame(samples, start, length, step, context.peakLevel, frame);
  LogSpectrum(frame, reference, cepstrum ? 10.0 : 2.0, logs);
  std::copy_n(logs, kCepstrumPoints, sequence);
  ComplexFft(sequence, kCepstrumPoints, bins);
  if (cepstrum) {
    for (int k = 0; k < kHalf; ++k) {
      // The inverse transform is the conjugate over 512.
      const double value =
          0.4 * ApproxMagnitude(Complex(bins[k].re / kCepstrumPoints, bins[k].im / kCepstrumPoints));
      output[k] = value;
      output[kCepstrumPoints - 1 - k] = value;
    }
    output[0] /= 2;
    return 0;
  }
  std::fill_n(sequence, kCepstrumPoints, Complex());
  std::copy_n(bins, kLifter, sequence);
  sequence[0] = Complex(sequence[0].re / 2, sequence[0].im / 2);
  ComplexFft(sequence, kCepstrumPoints, bins);
  Moduli(bins, 1.25, output);
  return 0;
}

int HomomorphicLevels(SampleSpan samples, int start, int frameLength, const CepstralContext& context,
                      double* levels) {
  CepstralAnalysis(samples, start, frameLength, CepstralMode::Homomorphic, context, levels);
  for (int k = 0; k < kHalf; ++k) levels[k] /= kCepstrumPoints;
  return 0;
}

}  // namespace parlowen
