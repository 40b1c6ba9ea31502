#pragma once
#include <array>
#include <vector>

#include "document/SoundDocument.h"
#include "spectral/LpcAnalysis.h"

namespace parlowen {

inline constexpr int kMostFormants = 6;

/// Formants of one frame, in increasing frequency.
struct FormantFrame {
  int count = 0;                                  ///< 0..6
  std::array<double, kMostFormants> frequency{};  ///< Hz, at least 100
  std::array<double, kMostFormants> bandwidth{};  ///< Hz, at most sampleRate/20
};

/// Picks the peaks of an envelope of `points` levels in dB that covers 0 .. sampleRate/2.
/// - A peak is a run of points that curve downwards; its place is the point of the largest curvature c =
/// 2·S[k] − S[k−1] − S[k+1], its bandwidth 2·Δ·√(6/c), Δ = sampleRate/2/points. A strict minimum does not end
/// a run; a run that is open at the last point is lost.
/// - Kept: at least 100 Hz, a bandwidth of at most sampleRate/20 (integer division).
/// - A peak closer to the last one than a third of both bandwidths is the same formant: the narrower of both
/// stays.
FormantFrame PickFormants(const double* levels, int points, int sampleRate);

/// The formants of the 10 ms frames of a stretch: frame k begins at start + k·(sampleRate/100) and has
/// sampleRate/50 samples, at most 512; there are (end − start)/(sampleRate/100) of them. Order 16, high
/// level, peak level of the stretch.
std::vector<FormantFrame> FormantTrack(SampleSpan samples, int sampleRate, int start, int end,
                                       LpcAnalyser& analyser);

}  // namespace parlowen
