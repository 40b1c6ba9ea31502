#include "spectral/LpcAnalysis.h"

#include <algorithm>

#include "dsp/Clones.h"
#include "dsp/Decibel.h"
#include "dsp/Fft.h"

// The stages of an envelope:
//
//   FrameSamples        the samples in one piece, silence outside the span
//   Emphasise           y[n]
//   LagSums             φ(0, k), one pass over the frame
//   CovarianceOf        the other rows, each from the one above it
//   SolveCovariance     coefficients and residual energy
//   EnvelopePowers      (α + 1)/|A|², then in dB

namespace parlowen {
namespace {

constexpr int kFftSize = 512;
constexpr double kSmallestPivot = 1e-20;

// Lags of a pass, a whole number of vectors: 0 .. 16 and three that nobody reads.
constexpr int kLags = 20;

// The emphasised frame behind as many zeros as the pass reads before it.
struct EmphasisedFrame {
  alignas(64) double values[kLags + kLongestFrame];
  double* y = values + kLags;
};

const std::int16_t* FrameSamples(SampleSpan samples, int start, int count, std::int16_t* copy) {
  if (start >= 0 && start <= samples.count - count) return samples.data + start;
  for (int n = 0; n < count; ++n) copy[n] = samples.At(std::int64_t{start} + n);
  return copy;
}

PARLOWEN_CLONES void Emphasise(const std::int16_t* x, int count, double emphasis, double* __restrict y) {
  for (int n = 0; n < count; ++n) y[n] = x[n + 1] - emphasis * x[n];
}

// sums[kLags − 1 − k] = Σ y[n]·y[n − k], n = first .. end − 1. All lags of a sample at once, so that each sum
// is added up in the order of the samples.
PARLOWEN_CLONES void LagSums(const double* __restrict y, int first, int end, double* __restrict sums) {
  double lags[kLags] = {};
  for (int n = first; n < end; ++n) {
    const double* earlier = y + n - (kLags - 1);
    const double here = y[n];
    for (int m = 0; m < kLags; ++m) lags[m] += here * earlier[m];
  }
  for (int m = 0; m < kLags; ++m) sums[m] = lags[m];
}

void CovarianceOf(const double* y, int frameLength, int order, CovarianceMatrix& phi) {
  for (auto& row : phi) row.fill(0.0);
  if (frameLength - order - 1 <= 0) return;
  double sums[kLags];
  LagSums(y, order, frameLength - 1, sums);
  for (int k = 0; k <= order; ++k) {
    const double sum = sums[kLags - 1 - k];
    phi[0][static_cast<std::size_t>(k)] = sum;
    phi[static_cast<std::size_t>(k)][0] = sum;
  }
  // What enters at the front of the frame and leaves at its end when both lags grow by one.
  double front[kLargestLpcOrder] = {}, back[kLargestLpcOrder] = {};
  for (int k = 0; k < order; ++k) {
    front[k] = y[order - 1 - k];
    back[k] = y[frameLength - 2 - k];
  }
  for (int i = 0; i < order; ++i) {
    const double* above = phi[static_cast<std::size_t>(i)].data();
    double* row = phi[static_cast<std::size_t>(i) + 1].data();
    for (int k = 0; k < order; ++k) row[k + 1] = above[k] + front[i] * front[k] - back[i] * back[k];
  }
}

// The decomposition by elimination of the upper half, which carries the right side along as a last column:
// row k ends as d(k)·Lᵀ with v(k) behind it. What lies left of the diagonal is left as it falls. Columns
// beyond the order are 0.
constexpr int kColumns = kLargestLpcOrder + 4;

PARLOWEN_CLONES void Eliminate(double (*__restrict rows)[kColumns], int order,
                               double (*__restrict lower)[kLargestLpcOrder]) {
  for (int k = 0; k < order; ++k) {
    const double pivot = rows[k][k];
    double* __restrict factors = lower[k];
    if (pivot == 0.0) {
      // The column adds nothing to the others, but its undivided elements still turn the right side.
      for (int i = k + 1; i < order; ++i) {
        factors[i] = rows[k][i];
        rows[i][kLargestLpcOrder] -= factors[i] * rows[k][kLargestLpcOrder];
      }
      continue;
    }
    for (int i = 0; i < kLargestLpcOrder; ++i) factors[i] = rows[k][i] / pivot;
    for (int i = k + 1; i < order; ++i) {
      const double factor = factors[i];
      for (int column = 0; column < kColumns; ++column) rows[i][column] -= factor * rows[k][column];
    }
  }
}

PARLOWEN_CLONES void EnvelopePowers(const Complex* __restrict bins, double gain, double* __restrict powers) {
  for (int k = 0; k < kEnvelopePoints; ++k)
    powers[k] = gain / (bins[k].re * bins[k].re + bins[k].im * bins[k].im);
}

}  // namespace

int EffectiveLpcOrder(int requested, int sampleRate) {
  if (sampleRate >= 16000) return 16;
  if (requested >= 13 && sampleRate < 9000) return 12;
  return std::clamp(requested, 0, kLargestLpcOrder);
}

double SolveCovariance(const CovarianceMatrix& phi, const double* rightSide, int order, double energy,
                       double* coefficients) {
  order = std::clamp(order, 0, kLargestLpcOrder);
  constexpr int kRight = kLargestLpcOrder;  // the column of the right side
  alignas(64) double rows[kLargestLpcOrder][kColumns] = {};
  for (int i = 0; i < order; ++i) {
    for (int k = 0; k < order; ++k)
      rows[i][k] = phi[static_cast<std::size_t>(i) + 1][static_cast<std::size_t>(k) + 1];
    rows[i][kRight] = rightSide[i + 1];
  }
  alignas(64) double lower[kLargestLpcOrder][kLargestLpcOrder];
  Eliminate(rows, order, lower);
  double residual = energy;
  for (int i = order - 1; i >= 0; --i) {
    const double pivot = rows[i][i] < kSmallestPivot ? kSmallestPivot : rows[i][i];
    const double v = rows[i][kRight];
    double a = v / pivot;
    for (int k = i + 1; k < order; ++k) a -= lower[i][k] * coefficients[k + 1];
    coefficients[i + 1] = a;
    residual -= v * v / pivot;
  }
  return std::max(0.0, residual);  // 0 for NaN too
}

int LpcEnvelope(SampleSpan samples, int start, int frameLength, bool highLevel, int requestedOrder,
                const LpcContext& context, LpcAnalyser& analyser, double* levels) {
  const int length = std::clamp(frameLength, 0, kLongestFrame);
  const int order = EffectiveLpcOrder(requestedOrder, context.sampleRate);
  const int used = std::max(0, length - 1);  // samples of y behind these enter no sum

  std::int16_t copy[kLongestFrame];
  EmphasisedFrame frame;
  std::fill_n(frame.values, kLags, 0.0);
  Emphasise(FrameSamples(samples, start, used + 1, copy), used, highLevel ? 0.95 : 0.9, frame.y);

  CovarianceMatrix phi;
  CovarianceOf(frame.y, length, order, phi);
  analyser.order = static_cast<std::int16_t>(order);
  analyser.coefficients.fill(0.0);
  const double residual = SolveCovariance(phi, phi[0].data(), order, phi[0][0], analyser.coefficients.data());

  Complex inverse[kFftSize] = {1.0}, bins[kFftSize];
  for (int i = 1; i <= order; ++i) inverse[i] = -analyser.coefficients[static_cast<std::size_t>(i)];
  ComplexFft(inverse, kFftSize, bins);
  const int reference =
      highLevel ? static_cast<int>(std::int64_t{8} * context.peakLevel / std::max(1, context.sampleRate)) + 46
                : 28;
  EnvelopePowers(bins, residual + 1.0, levels);
  PowersToDb(levels, kEnvelopePoints, reference, levels);
  return 0;
}

}  // namespace parlowen
