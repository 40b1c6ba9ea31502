#pragma once
#include <array>
#include <cstdint>

#include "dsp/FrameSpectrum.h"
#include "dsp/SampleSpan.h"

namespace parlowen {

/// Points of a spectral envelope: point k stands for k·sampleRate/512 Hz, as in a FrameSpectrum.
inline constexpr int kEnvelopePoints = 256;
inline constexpr int kLargestLpcOrder = 16;

/// What the last linear prediction left: every analysis overwrites it, whoever needs the coefficients of the
/// last frame reads it back. One for the whole program.
struct LpcAnalyser {
  std::int16_t order = 0;
  std::array<double, kLargestLpcOrder + 1>
      coefficients{};  ///< a1 .. a_order at index 1 .. order; the others are 0
};

/// What an envelope takes from its document.
struct LpcContext {
  int sampleRate = 0;  ///< Hz
  int peakLevel = 1;   ///< peak level of the stretch the frame belongs to
};

/// The order that is really used: a request of 13 or more is 12 below 9000 Hz; from 16000 Hz on it is 16
/// whatever was requested. Other requests are taken as they are, clamped to 0..16.
int EffectiveLpcOrder(int requested, int sampleRate);

/// φ(i, k) at [i][k], i and k = 0 .. order.
using CovarianceMatrix = std::array<std::array<double, kLargestLpcOrder + 1>, kLargestLpcOrder + 1>;

/// Solves Σ φ(i, k)·a(k) = rightSide(i), i and k = 1..order, by the square-root-free Cholesky decomposition Φ
/// = L·D·Lᵀ: L·v = rightSide, Lᵀ·a = D⁻¹·v. `phi` is symmetric; its row and column 0 are not read. Returns
/// the residual energy `energy` − Σ v²/d, at least 0.
/// - A division by a diagonal element that is exactly 0 is left out in the decomposition.
/// - In the back substitution diagonal elements below 1e-20 count as 1e-20, so an empty matrix gives zeros.
/// `rightSide` and `coefficients` are indexed from 1; an order beyond 0..16 is clamped.
double SolveCovariance(const CovarianceMatrix& phi, const double* rightSide, int order, double energy,
                       double* coefficients);

/// The envelope (α + 1)/|A|² of the frame in dB, 256 levels, none below 0, by linear prediction with the
/// covariance method (Atal and Hanauer 1971). Returns 0 and leaves order and coefficients in `analyser`.
/// - y[n] = x[start+n+1] − c·x[start+n], unwindowed; c = 0.95 with `highLevel`, else 0.9; silence outside the
/// span.
/// - φ(i, k) = Σ y[n−i]·y[n−k] over n = order .. frameLength − 2; a frame too short for a term is silent.
/// - A = 1 − a1·z⁻¹ − …, α the residual energy. Reference of the levels: 8·peakLevel/sampleRate + 46 dB
/// (integer division) with `highLevel`, else 28.
/// Of a frame above 512 samples the first 512 are taken. Needs InitSignalTables().
int LpcEnvelope(SampleSpan samples, int start, int frameLength, bool highLevel, int requestedOrder,
                const LpcContext& context, LpcAnalyser& analyser, double* levels);

}  // namespace parlowen
