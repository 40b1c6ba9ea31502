#pragma once
#include <cstdint>

namespace parlowen {

/// Designs a windowed-sinc filter of 2·halfLength + 1 taps, symmetric about coefficients[halfLength].
/// `cutoff` and `sampleRate` in Hz, cutoff above 0. With R = sampleRate/(2·cutoff) and k the distance from
/// the centre: low-pass sin(kπ/R)/k·v(k), centre 1/R; high-pass (−1)^k·sin(k(π − π/R))/k·v(k), centre (R −
/// 1)/R, taps under 1e-5 are exactly 0. v(k) = (a − (1 − a)·cos(π(halfLength − k)/halfLength))/π falls from
/// 1/π at the centre to (2a − 1)/π at the ends.
void DesignFirFilter(int cutoff, double a, int halfLength, int highpass, double* coefficients,
                     int sampleRate);

/// Filters samples first .. first+count−1 in place, in increasing order; returns 0. With H = taps/2 the sum
/// for n runs over coefficients[0 .. 2H−1] and samples n−H .. n+H−1:
/// - with an odd number of taps the last one is not applied, so the filter is centred half a sample early;
/// - the samples before n are already filtered ones, so the filter is recursive and hardly a clean low- or
/// high-pass. The sum is truncated toward zero and its low 16 bits are stored. Samples first−H ..
/// first+count+H−2 must exist: else, with `sampleCount` as their number, nothing is changed and −1 is
/// returned. A count of 0 or less does nothing.
int ApplyFirFilter(int taps, int count, int first, const double* coefficients, std::int16_t* samples,
                   int sampleCount);

}  // namespace parlowen
