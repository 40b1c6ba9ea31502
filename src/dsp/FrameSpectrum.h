#pragma once
#include <array>

#include "dsp/SampleSpan.h"

namespace parlowen {

/// Levels in dB above the caller's reference, never below 0. Bin k stands for k·sampleRate/512 Hz.
using FrameSpectrum = std::array<double, 256>;

/// The longest frame a spectrum is computed of; the transform has as many points.
inline constexpr int kLongestFrame = 512;

/// What a frame takes from its document.
struct FrameContext {
  int sampleRate = 0;  ///< Hz
  double rise = 1.0;   ///< boost at an onset, 1..4: LevelRise() of the frame
};

/// The spectrum of `frameLength` samples from `start`, weighted by AnalysisWindow, which must have been made
/// for the frame. Returns 0.
/// - y[n] = (x[start+n+1] − c·x[start+n])·s: the frame reads one sample more than its length, and silence
///   outside the span. c = 0.95 when `emphasisMode` is 1, else 0.9; s = rise·1500/(level·sampleRate·0.0001).
/// - `level` is the peak level P of the stretch the frame belongs to, on the scale of the samples; below 1 it
///   counts as 1.
/// - RealFftFixed of y·w, zero-padded to 512 points; bin k = PowerToDb(|X[k]|², reference).
/// - The reference is 26 dB; but in modes other than 0 it is 30 for more than 150 samples, and 8 more below
///   10000 Hz.
/// A frame so strong that the 32-bit transform would wrap (a loud pure tone) is halved until it does not, and
/// its power is multiplied by 4 for each halving. Of a frame above 512 samples the first 512 are taken; the
/// reference looks at the length as given. Needs InitSignalTables().
int ComputeFrameSpectrum(SampleSpan samples, int start, int frameLength, int emphasisMode, int level,
                         FrameSpectrum& spectrum, const FrameContext& context);

}  // namespace parlowen
