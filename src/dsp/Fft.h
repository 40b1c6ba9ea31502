#pragma once
#include <cstdint>

#include "dsp/Complex.h"

namespace parlowen {

// Radix-2 transforms of 2, 4, 8 .. 1024 points. All of them need InitSignalTables(). Any other size returns
// −1 and writes nothing; otherwise 0 is returned. Input and output do not overlap.

/// Forward DFT, unscaled: output[k] = Σ input[n]·e^(−j2πkn/size).
int ComplexFft(const Complex* input, int size, Complex* output);

/// |X[k]|² of bins 0 .. 255 of ComplexFft() of 512 real samples, with its very digits.
void PowersOfReal512(const double* input, double* powers);

/// Inverse DFT, scaled by 1/size.
/// `data` is conjugated in place and left so: callers that still need it keep a copy.
int InverseComplexFft(Complex* data, int size, Complex* output);

/// Forward DFT in 32-bit integers with twiddles in steps of 1/32768, unscaled. Products, sums and differences
/// wrap modulo 2^32, each product is divided by 32768 toward zero: a value beyond ±65535 in any stage spoils
/// the result.
int FixedFft(const std::int32_t* inputRe, const std::int32_t* inputIm, int size, std::int32_t* outputRe,
             std::int32_t* outputIm);

/// Inverse DFT through FixedFft: parts truncated to integers (saturated at 32 bits, NaN is 0), the result
/// divided by `size` toward zero. Every output part is an integer.
int InverseFixedFft(const Complex* input, int size, Complex* output);

/// Bins 0 .. size/2−1 of the DFT of `size` real samples, unscaled, by a complex transform of half the size.
int RealFft(const double* input, int size, Complex* output);

/// The same through FixedFft: samples truncated to integers (saturated at 32 bits, NaN is 0), even and odd
/// halves in integers, their sum in double.
int RealFftFixed(const double* input, int size, Complex* output);

}  // namespace parlowen
