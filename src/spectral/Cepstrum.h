#pragma once
#include "dsp/FrameSpectrum.h"
#include "dsp/SampleSpan.h"

namespace parlowen {

inline constexpr int kCepstrumPoints = 512;

/// Which of the two analyses of the log spectrum is made.
enum class CepstralMode { Cepstrum, Homomorphic };

/// From this sampling rate on the cepstrum takes every second sample.
inline constexpr int kSteppedCepstrumRate = 22051;

/// What a cepstral frame takes from its document.
struct CepstralContext {
  int sampleRate = 0;  ///< Hz
  int peakLevel = 1;   ///< peak level of the stretch the frame belongs to
};

/// Cepstrum or cepstrally smoothed spectrum of a frame. Returns 0.
/// - y[n] = (x[n+1] − 0.95·x[n])·1500/peakLevel, n = 0 .. frameLength − 1 (at most 512), counted from
/// `start`; silence outside the span. The cepstrum takes x[2n+1] and x[2n] from 22051 Hz on. Weighted by
/// AnalysisWindow, which must have been made for the frame.
/// - The log spectrum has 512 values: 10 or 2 times PowerToDb(|X|², 20 or 30, 8 more below 10000 Hz), for the
/// cepstrum or the homomorphic spectrum.
/// - Cepstrum, 512 values: 0.4·ApproxMagnitude of the inverse transform at quefrency k, at k and at 511 − k;
/// value 0 halved. Quefrency k is k samples, where every second sample is taken 2k.
/// - Homomorphic, 256 values: 1.25 times the modulus of the transform of quefrencies 0..15 alone, 0 halved,
/// without their mirror. Both transforms are unscaled, so the values are 512 times as large as levels in dB.
/// Needs InitSignalTables().
int CepstralAnalysis(SampleSpan samples, int start, int frameLength, CepstralMode mode,
                     const CepstralContext& context, double* output);

/// The homomorphic spectrum in dB, 256 levels: that of CepstralAnalysis over 512.
int HomomorphicLevels(SampleSpan samples, int start, int frameLength, const CepstralContext& context,
                      double* levels);

}  // namespace parlowen
