#pragma once
#include <array>
#include <functional>

#include "dsp/SampleSpan.h"

namespace parlowen {

inline constexpr int kLtaBins = 256;

/// A long-term average spectrum: bin k stands for k·sampleRate/512 Hz. Levels are twice the mean in dB; what
/// is reported is halved again.
using LtaSpectrum = std::array<double, kLtaBins>;

/// Told after every 100th frame: how many there are and their running average on the doubled scale.
using LtaProgress = std::function<void(int frames, const LtaSpectrum& average)>;

/// The average spectrum of samples start .. end. Returns the number n of frames.
/// - Frame i takes 512 samples from p = start + trunc(i·sampleRate·0.0025), every 2.5 ms, while p ≤ end −
/// sampleRate/200 (integer division), weighted by MakeAnalysisWindow(512, 0.04), which it makes.
/// - levels[k] = Σ PowerToDb(|X[k]|², 35) / (n div 2): an odd count divides by the half rounded down, so that
/// it comes out higher; fewer than two frames leave infinities or NaN.
/// Needs InitSignalTables().
int ComputeLongTermSpectrum(SampleSpan samples, int sampleRate, int start, int end, LtaSpectrum& levels,
                            const LtaProgress& progress = {});

/// True when every level is a number.
bool IsFinite(const LtaSpectrum& spectrum);

/// How two spectra of the same rate differ once their mean difference is taken out.
struct LtaDifference {
  LtaSpectrum curve{};   ///< doubled scale, mean 0
  double deviation = 0;  ///< dB: half the root of the mean square of the curve
  double largest = 0;    ///< dB: half the largest magnitude of the curve
  int largestHz = 0;     ///< where it is; the lowest of equal places
};
LtaDifference CompareLongTermSpectra(const LtaSpectrum& one, const LtaSpectrum& other, int sampleRate);

}  // namespace parlowen
