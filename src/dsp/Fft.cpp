#include "dsp/Fft.h"

#include <algorithm>

#include "dsp/Transform.h"

namespace parlowen {

using detail::PlaneBuffer;
using detail::Planes;

namespace {

// TruncateToInt32 in a form that goes four at a time.
PARLOWEN_INLINE std::int32_t TruncateSample(double value) {
  const double number = value == value ? value : 0.0;
  const double raised = number > -2147483648.0 ? number : -2147483648.0;
  return static_cast<std::int32_t>(raised < 2147483647.0 ? raised : 2147483647.0);
}

}  // namespace

PARLOWEN_CLONES int ComplexFft(const Complex* __restrict input, int size, Complex* __restrict output) {
  if (!IsFftSize(size)) return -1;
  PlaneBuffer<double> first;
  PlaneBuffer<double> second;
  for (int n = 0; n < size; ++n) {
    second.re[n] = input[n].re;
    second.im[n] = input[n].im;
  }
  const auto result =
      detail::Transform(Planes<const double>{second.re, second.im}, size, first.All(), second.All());
  for (int k = 0; k < size; ++k) {
    output[k].re = result.re[k];
    output[k].im = result.im[k];
  }
  return 0;
}

PARLOWEN_CLONES void PowersOfReal512(const double* __restrict input, double* __restrict powers) {
  PlaneBuffer<double> first;
  PlaneBuffer<double> second;
  detail::FirstPassOfReal(input, 512, first.re, first.im);
  detail::DoublePass<4>(first.re, first.im, 512, second.re, second.im);
  detail::DoublePass<16>(second.re, second.im, 512, first.re, first.im);
  detail::DoublePass<64>(first.re, first.im, 512, second.re, second.im);
  detail::LastPowers<256>(second.re, second.im, powers);
}

int InverseComplexFft(Complex* data, int size, Complex* output) {
  if (!IsFftSize(size)) return -1;
  for (int n = 0; n < size; ++n) data[n] = Conjugate(data[n]);
  ComplexFft(data, size, output);
  for (int k = 0; k < size; ++k) output[k] = Complex(output[k].re / size, -(output[k].im / size));
  return 0;
}

PARLOWEN_CLONES int FixedFft(const std::int32_t* __restrict inputRe, const std::int32_t* __restrict inputIm,
                             int size, std::int32_t* __restrict outputRe, std::int32_t* __restrict outputIm) {
  if (!IsFftSize(size)) return -1;
  PlaneBuffer<std::int32_t> scratch;
  const Planes<std::int32_t> output{outputRe, outputIm};
  const auto result =
      detail::Transform(Planes<const std::int32_t>{inputRe, inputIm}, size, output, scratch.All());
  if (result.re != outputRe) {
    std::copy_n(result.re, size, outputRe);
    std::copy_n(result.im, size, outputIm);
  }
  return 0;
}

int InverseFixedFft(const Complex* input, int size, Complex* output) {
  if (!IsFftSize(size)) return -1;
  PlaneBuffer<std::int32_t> conjugate;
  PlaneBuffer<std::int32_t> result;
  for (int n = 0; n < size; ++n) {
    conjugate.re[n] = TruncateToInt32(input[n].re);
    conjugate.im[n] = TruncateToInt32(-input[n].im);
  }
  FixedFft(conjugate.re, conjugate.im, size, result.re, result.im);
  for (int k = 0; k < size; ++k) output[k] = Complex(result.re[k] / size, -(result.im[k] / size));
  return 0;
}

PARLOWEN_CLONES int RealFft(const double* __restrict input, int size, Complex* __restrict output) {
  if (!IsFftSize(size)) return -1;
  const int half = size / 2;
  PlaneBuffer<double> first;
  PlaneBuffer<double> second;
  for (int n = 0; n < half; ++n) {
    second.re[n] = input[2 * n];
    second.im[n] = input[2 * n + 1];
  }
  const auto z =
      detail::Transform(Planes<const double>{second.re, second.im}, half, first.All(), second.All());
  const auto bins = z.re == first.re ? second.All() : first.All();
  detail::SplitReal(z.re, z.im, half, bins.re, bins.im);
  for (int k = 0; k < half; ++k) {
    output[k].re = bins.re[k];
    output[k].im = bins.im[k];
  }
  return 0;
}

PARLOWEN_CLONES int RealFftFixed(const double* __restrict input, int size, Complex* __restrict output) {
  if (!IsFftSize(size)) return -1;
  const int half = size / 2;
  PlaneBuffer<std::int32_t> first;
  PlaneBuffer<std::int32_t> second;
  PlaneBuffer<double> bins;
  for (int n = 0; n < half; ++n) {
    second.re[n] = TruncateSample(input[2 * n]);
    second.im[n] = TruncateSample(input[2 * n + 1]);
  }
  const auto z =
      detail::Transform(Planes<const std::int32_t>{second.re, second.im}, half, first.All(), second.All());
  detail::SplitReal(z.re, z.im, half, bins.re, bins.im);
  for (int k = 0; k < half; ++k) {
    output[k].re = bins.re[k];
    output[k].im = bins.im[k];
  }
  return 0;
}

}  // namespace parlowen
