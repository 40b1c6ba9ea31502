#pragma once
#include <array>
#include <cstdint>
#include <utility>

#include "base/Arithmetic.h"
#include "dsp/Clones.h"
#include "dsp/SignalTables.h"

// The stages of the transforms, shared by the double and the 32-bit arithmetic. Internal to dsp/.
//
// Decimation in time, every butterfly t = W·lower; lower <- upper - t; upper <- upper + t. Which values meet
// in which butterfly is what a bit-reversed in-place transform does; only the places differ. A stage that
// joins pairs of h points finds the h-point transform of the samples r, r + N/h, r + 2N/h .. at r·h and
// leaves the 2h-point transform r at r·2h of the other buffer, made from the transforms r and r + N/2h. So
// the samples come in their natural order, and every inner loop runs over neighbours. Two stages at a time,
// so that each value is stored half as often:
//
//   FirstPass    joins single samples into transforms of 4 points
//   DoublePass   joins four transforms of h points into one of 4h
//   SinglePass   joins two, for the last stage of the sizes with an odd number of stages

namespace parlowen::detail {

/// Real and imaginary parts in arrays of their own.
template <class Number>
struct Planes {
  Number* re;
  Number* im;
};

template <class Number>
struct PlaneBuffer {
  alignas(64) Number re[kLargestFft];
  alignas(64) Number im[kLargestFft];
  Planes<Number> All() { return {re, im}; }
};

template <class Number>
struct Value {
  Number re;
  Number im;
};

PARLOWEN_INLINE Value<double> Turn(Value<double> w, Value<double> x) {
  return {w.re * x.re - w.im * x.im, w.im * x.re + w.re * x.im};
}
PARLOWEN_INLINE Value<double> Plus(Value<double> a, Value<double> b) { return {a.re + b.re, a.im + b.im}; }
PARLOWEN_INLINE Value<double> Minus(Value<double> a, Value<double> b) { return {a.re - b.re, a.im - b.im}; }

PARLOWEN_INLINE Value<std::int32_t> Turn(Value<std::int32_t> w, Value<std::int32_t> x) {
  return {WrapSub32(WrapMul32(x.re, w.re), WrapMul32(x.im, w.im)) / 32768,
          WrapAdd32(WrapMul32(x.im, w.re), WrapMul32(x.re, w.im)) / 32768};
}
PARLOWEN_INLINE Value<std::int32_t> Plus(Value<std::int32_t> a, Value<std::int32_t> b) {
  return {WrapAdd32(a.re, b.re), WrapAdd32(a.im, b.im)};
}
PARLOWEN_INLINE Value<std::int32_t> Minus(Value<std::int32_t> a, Value<std::int32_t> b) {
  return {WrapSub32(a.re, b.re), WrapSub32(a.im, b.im)};
}

template <class Number>
const StageTwiddles<Number>& TwiddlesOf();
template <>
inline const StageTwiddles<double>& TwiddlesOf<double>() {
  return stageTwiddles;
}
template <>
inline const StageTwiddles<std::int32_t>& TwiddlesOf<std::int32_t>() {
  return stageTwiddlesQ15;
}

template <class Number>
PARLOWEN_INLINE Value<Number> At(const Number* re, const Number* im, int index) {
  return {re[index], im[index]};
}

/// Four values that stand where stage h finds them, joined by stages h and 2h.
template <class Number>
struct Quartet {
  Value<Number> a, b, c, d;
};
template <class Number>
PARLOWEN_INLINE Quartet<Number> JoinFour(Quartet<Number> x, Value<Number> w1, Value<Number> w2,
                                         Value<Number> w3) {
  const auto t = Turn(w1, x.c);
  const auto evenLow = Plus(x.a, t);
  const auto evenHigh = Minus(x.a, t);
  const auto u = Turn(w1, x.d);
  const auto oddLow = Turn(w2, Plus(x.b, u));
  const auto oddHigh = Turn(w3, Minus(x.b, u));
  return {Plus(evenLow, oddLow), Plus(evenHigh, oddHigh), Minus(evenLow, oddLow), Minus(evenHigh, oddHigh)};
}

template <class Number>
PARLOWEN_INLINE void FirstPass(const Number* __restrict re, const Number* __restrict im, int size,
                               Number* __restrict outRe, Number* __restrict outIm) {
  const auto& twiddles = TwiddlesOf<Number>();
  const Number* twRe = twiddles.re.data();
  const Number* twIm = twiddles.im.data();
  const auto w1 = At(twRe, twIm, 1);
  const auto w2 = At(twRe, twIm, 2);
  const auto w3 = At(twRe, twIm, 3);
  const int quarter = size / 4;
  for (int r = 0; r < quarter; ++r) {
    const auto y = JoinFour<Number>(
        {At(re, im, r), At(re, im, r + quarter), At(re, im, r + 2 * quarter), At(re, im, r + 3 * quarter)},
        w1, w2, w3);
    outRe[4 * r] = y.a.re;
    outRe[4 * r + 1] = y.b.re;
    outRe[4 * r + 2] = y.c.re;
    outRe[4 * r + 3] = y.d.re;
    outIm[4 * r] = y.a.im;
    outIm[4 * r + 1] = y.b.im;
    outIm[4 * r + 2] = y.c.im;
    outIm[4 * r + 3] = y.d.im;
  }
}

template <int h, class Number>
PARLOWEN_INLINE void DoublePass(const Number* __restrict re, const Number* __restrict im, int size,
                                Number* __restrict outRe, Number* __restrict outIm) {
  const auto& twiddles = TwiddlesOf<Number>();
  const Number* __restrict twRe = twiddles.re.data();
  const Number* __restrict twIm = twiddles.im.data();
  const int quarter = size / 4;  // from one of the four transforms to the next
  for (int r = 0; r < size / (4 * h); ++r) {
    const Number* __restrict inRe = re + r * h;
    const Number* __restrict inIm = im + r * h;
    Number* __restrict toRe = outRe + r * 4 * h;
    Number* __restrict toIm = outIm + r * 4 * h;
#pragma GCC ivdep
    for (int j = 0; j < h; ++j) {
      const auto y =
          JoinFour<Number>({At(inRe, inIm, j), At(inRe, inIm, j + quarter), At(inRe, inIm, j + 2 * quarter),
                            At(inRe, inIm, j + 3 * quarter)},
                           At(twRe, twIm, h + j), At(twRe, twIm, 2 * h + j), At(twRe, twIm, 3 * h + j));
      toRe[j] = y.a.re;
      toRe[j + h] = y.b.re;
      toRe[j + 2 * h] = y.c.re;
      toRe[j + 3 * h] = y.d.re;
      toIm[j] = y.a.im;
      toIm[j + h] = y.b.im;
      toIm[j + 2 * h] = y.c.im;
      toIm[j + 3 * h] = y.d.im;
    }
  }
}

/// The first pass over real samples: the products with a zero imaginary part are left out, which changes no
/// value.
PARLOWEN_INLINE void FirstPassOfReal(const double* __restrict re, int size, double* __restrict outRe,
                                     double* __restrict outIm) {
  const auto& twiddles = stageTwiddles;
  const auto w1 = Value<double>{twiddles.re[1], twiddles.im[1]};
  const auto w2 = Value<double>{twiddles.re[2], twiddles.im[2]};
  const auto w3 = Value<double>{twiddles.re[3], twiddles.im[3]};
  const int quarter = size / 4;
  const auto turn = [](Value<double> w, double x) { return Value<double>{w.re * x, w.im * x}; };
  for (int r = 0; r < quarter; ++r) {
    const Value<double> a{re[r], 0}, b{re[r + quarter], 0};
    const auto t = turn(w1, re[r + 2 * quarter]), u = turn(w1, re[r + 3 * quarter]);
    const auto oddLow = Turn(w2, Plus(b, u)), oddHigh = Turn(w3, Minus(b, u));
    const auto evenLow = Plus(a, t), evenHigh = Minus(a, t);
    const Quartet<double> y{Plus(evenLow, oddLow), Plus(evenHigh, oddHigh), Minus(evenLow, oddLow),
                            Minus(evenHigh, oddHigh)};
    outRe[4 * r] = y.a.re;
    outRe[4 * r + 1] = y.b.re;
    outRe[4 * r + 2] = y.c.re;
    outRe[4 * r + 3] = y.d.re;
    outIm[4 * r] = y.a.im;
    outIm[4 * r + 1] = y.b.im;
    outIm[4 * r + 2] = y.c.im;
    outIm[4 * r + 3] = y.d.im;
  }
}

/// The powers of the lower half of what SinglePass() would find.
template <int h>
PARLOWEN_INLINE void LastPowers(const double* __restrict re, const double* __restrict im,
                                double* __restrict powers) {
  const double* __restrict twRe = stageTwiddles.re.data();
  const double* __restrict twIm = stageTwiddles.im.data();
#pragma GCC ivdep
  for (int j = 0; j < h; ++j) {
    const auto sum = Plus(At(re, im, j), Turn(At(twRe, twIm, h + j), At(re, im, j + h)));
    powers[j] = sum.re * sum.re + sum.im * sum.im;
  }
}

template <int h, class Number>
PARLOWEN_INLINE void SinglePass(const Number* __restrict re, const Number* __restrict im,
                                Number* __restrict outRe, Number* __restrict outIm) {
  const auto& twiddles = TwiddlesOf<Number>();
  const Number* __restrict twRe = twiddles.re.data();
  const Number* __restrict twIm = twiddles.im.data();
#pragma GCC ivdep
  for (int j = 0; j < h; ++j) {
    const auto t = Turn(At(twRe, twIm, h + j), At(re, im, j + h));
    const auto upper = At(re, im, j);
    const auto sum = Plus(upper, t);
    const auto difference = Minus(upper, t);
    outRe[j] = sum.re;
    outIm[j] = sum.im;
    outRe[j + h] = difference.re;
    outIm[j + h] = difference.im;
  }
}

/// From transforms of h points in `from` on. `from` and `other` change places with every pass; the buffer
/// that holds the result is returned.
template <int h, class Number>
PARLOWEN_INLINE Planes<Number> PassesFrom(Planes<Number> from, Planes<Number> other, int size) {
  if (size == h) return from;
  if (size == 2 * h) {
    SinglePass<h>(from.re, from.im, other.re, other.im);
    return other;
  }
  DoublePass<h>(from.re, from.im, size, other.re, other.im);
  if constexpr (4 * h < kLargestFft) {
    return PassesFrom<4 * h>(other, from, size);
  } else {
    return other;
  }
}

/// The transform of `size` points (1, or a size IsFftSize() takes) of `input`, in `first` or `second`.
template <class Number>
PARLOWEN_INLINE Planes<Number> Transform(Planes<const Number> input, int size, Planes<Number> first,
                                         Planes<Number> second) {
  if (size >= 4) {
    FirstPass(input.re, input.im, size, first.re, first.im);
    return PassesFrom<4>(first, second, size);
  }
  if (size == 2) {
    SinglePass<1>(input.re, input.im, first.re, first.im);
  } else {
    first.re[0] = input.re[0];  // NOLINT: size 1, which no buffer of a real transform has
    first.im[0] = input.im[0];
  }
  return first;
}

/// The bins of a real signal from the transform z of its even and odd samples packed into `half` complex
/// values: X[k] = E + W·O, E = (z[k] + conj z[half−k])/2, O = −j(z[k] − conj z[half−k])/2, z[half] = z[0].
PARLOWEN_INLINE void SplitReal(const double* __restrict zRe, const double* __restrict zIm, int half,
                               double* __restrict re, double* __restrict im) {
  const double* __restrict twRe = stageTwiddles.re.data() + half;
  const double* __restrict twIm = stageTwiddles.im.data() + half;
  const auto bin = [&](int k, int mirror) {
    const double evenRe = (zRe[k] + zRe[mirror]) * 0.5;  // NOLINT: the transform has filled them
    const double evenIm = (zIm[k] - zIm[mirror]) * 0.5;
    const double oddRe = (zIm[k] + zIm[mirror]) * 0.5;
    const double oddIm = -((zRe[k] - zRe[mirror]) * 0.5);
    const auto turned = Turn(Value<double>{twRe[k], twIm[k]}, {oddRe, oddIm});
    re[k] = evenRe + turned.re;
    im[k] = evenIm + turned.im;
  };
  bin(0, 0);
#pragma GCC ivdep
  for (int k = 1; k < half; ++k) bin(k, half - k);
}

/// The same of a fixed-point transform: sums and halves in integers, halved toward zero; W·O in double.
PARLOWEN_INLINE void SplitReal(const std::int32_t* __restrict zRe, const std::int32_t* __restrict zIm,
                               int half, double* __restrict re, double* __restrict im) {
  const double* __restrict twRe = stageTwiddles.re.data() + half;
  const double* __restrict twIm = stageTwiddles.im.data() + half;
  const auto bin = [&](int k, int mirror) {
    const std::int32_t evenRe = WrapAdd32(zRe[k], zRe[mirror]) / 2;  // NOLINT: the same
    const std::int32_t evenIm = WrapSub32(zIm[k], zIm[mirror]) / 2;
    const std::int32_t oddRe = WrapAdd32(zIm[k], zIm[mirror]) / 2;
    const std::int32_t oddIm = WrapSub32(zRe[mirror], zRe[k]) / 2;
    const auto turned =
        Turn(Value<double>{twRe[k], twIm[k]}, {static_cast<double>(oddRe), static_cast<double>(oddIm)});
    re[k] = evenRe + turned.re;
    im[k] = evenIm + turned.im;
  };
  bin(0, 0);
#pragma GCC ivdep
  for (int k = 1; k < half; ++k) bin(k, half - k);
}

}  // namespace parlowen::detail
