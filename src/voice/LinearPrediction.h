#pragma once
#include <array>
#include <cstddef>

namespace parlowen {

/// The highest order of a vocal tract filter here: 22099/1000 + 2.
inline constexpr int kLargestTractOrder = 24;

/// The whitening filter A(z) = 1 + a[1]·z⁻¹ + … + a[order]·z^−order; a[0] is 1.
struct TractFilter {
  int order = 0;
  std::array<double, kLargestTractOrder + 1> a{1.0};
};

/// Prediction of `count` samples by the autocorrelation method (Levinson–Durbin): Hann window
/// 0.5 − 0.5·cos(2π(i + 0.5)/count), r(0)·(1 + 1e-9). `window` holds its `count` values. A silent frame gives A = 1.
TractFilter PredictByAutocorrelation(const double* frame, const double* window, int count, int order);

/// Prediction that minimises Σ weights[n]·e[n]² over n = 0 .. count − 1 (weighted covariance method; Ma, Kamp and
/// Willems 1993). frame[−order .. −1] are read. 1e-9 of the weighted energy is added to the diagonal. A frame
/// without energy gives A = 1.
TractFilter PredictWeighted(const double* frame, const double* weights, int count, int order);

/// The same filter without its real positive zeros, which are spectral tilt and no resonances, and with zeros outside
/// the unit circle mirrored into it: 1/A is stable. Zeros by the simultaneous iteration of Aberth (1973); where it
/// does not end the filter comes back as it is.
TractFilter KeepResonances(const TractFilter& filter);

}  // namespace parlowen
