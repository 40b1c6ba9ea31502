#pragma once
#include <cstdint>
#include <vector>

#include "dsp/Complex.h"
#include "dsp/SignalTables.h"

// The transforms as they are defined: bit reversal by hand, then one stage after the other in place. No
// layout, no shared code with dsp/ but the twiddle tables, which have a test of their own.

namespace parlowen {

inline int ReversedBits(int value, int size) {
  int reversed = 0;
  for (int bit = 1; bit < size; bit *= 2, value /= 2) reversed = 2 * reversed + value % 2;
  return reversed;
}

inline std::vector<Complex> PlainFft(const std::vector<Complex>& input) {
  const int size = static_cast<int>(input.size());
  std::vector<Complex> x;
  for (int k = 0; k < size; ++k) x.push_back(input[static_cast<std::size_t>(ReversedBits(k, size))]);
  for (int half = 1; half < size; half *= 2) {
    for (int group = 0; group < size; group += 2 * half) {
      for (int j = 0; j < half; ++j) {
        const Complex w = TwiddleTable[static_cast<std::size_t>(j * (512 / half))];
        Complex& upper = x[static_cast<std::size_t>(group + j)];
        Complex& lower = x[static_cast<std::size_t>(group + j + half)];
        const Complex t = w * lower;
        lower = upper - t;
        upper = upper + t;
      }
    }
  }
  return x;
}

struct IntegerComplex {
  std::int64_t re = 0;
  std::int64_t im = 0;
};

struct IntegerFft {
  std::vector<IntegerComplex> bins;
  bool wrapped = false;  ///< whether anything left 32 bits on the way
};

/// The fixed-point transform in 64 bits. With `wrap` every result is brought back to 32 bits as an overflow
/// would.
inline IntegerFft PlainFixedFft(const std::vector<IntegerComplex>& input, bool wrap) {
  const int size = static_cast<int>(input.size());
  IntegerFft result;
  const auto narrow = [&](std::int64_t value) {
    const std::int64_t low = ((value + 0x80000000LL) & 0xffffffffLL) - 0x80000000LL;
    if (low != value) result.wrapped = true;
    return wrap ? low : value;
  };
  auto& x = result.bins;
  for (int k = 0; k < size; ++k) x.push_back(input[static_cast<std::size_t>(ReversedBits(k, size))]);
  for (int half = 1; half < size; half *= 2) {
    for (int group = 0; group < size; group += 2 * half) {
      for (int j = 0; j < half; ++j) {
        const auto k = static_cast<std::size_t>(j * (512 / half));
        IntegerComplex& upper = x[static_cast<std::size_t>(group + j)];
        IntegerComplex& lower = x[static_cast<std::size_t>(group + j + half)];
        const std::int64_t re = narrow(lower.re * CosQ15[k] - lower.im * SinQ15[k]) / 32768;
        const std::int64_t im = narrow(lower.im * CosQ15[k] + lower.re * SinQ15[k]) / 32768;
        lower = {narrow(upper.re - re), narrow(upper.im - im)};
        upper = {narrow(upper.re + re), narrow(upper.im + im)};
      }
    }
  }
  return result;
}

/// Bins 0..half-1 of a real signal from the packed transform z, both halves in floating point.
inline std::vector<Complex> PlainSplit(const std::vector<Complex>& z) {
  const std::size_t half = z.size();
  std::vector<Complex> bins;
  for (std::size_t k = 0; k < half; ++k) {
    const Complex a = z[k];
    const Complex b = Conjugate(z[(half - k) % half]);
    const Complex even = 0.5 * (a + b);
    const Complex difference = 0.5 * (a - b);
    bins.push_back(even + TwiddleTable[k * (512 / half)] * Complex(difference.im, -difference.re));
  }
  return bins;
}

/// The same with both halves in integers, halved toward zero.
inline std::vector<Complex> PlainSplit(const std::vector<IntegerComplex>& z) {
  const std::size_t half = z.size();
  std::vector<Complex> bins;
  for (std::size_t k = 0; k < half; ++k) {
    const IntegerComplex a = z[k];
    const IntegerComplex c = z[(half - k) % half];
    const Complex even(static_cast<double>((a.re + c.re) / 2), static_cast<double>((a.im - c.im) / 2));
    const Complex odd(static_cast<double>((a.im + c.im) / 2), static_cast<double>((c.re - a.re) / 2));
    bins.push_back(even + TwiddleTable[k * (512 / half)] * odd);
  }
  return bins;
}

}  // namespace parlowen
