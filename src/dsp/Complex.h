#pragma once

namespace parlowen {

/// A complex number in double precision. A plain value of two fields, copied freely.
struct Complex {
  double re;
  double im;

  constexpr Complex(double real = 0.0, double imaginary = 0.0) : re(real), im(imaginary) {}
};

constexpr Complex operator+(Complex a, Complex b) { return {a.re + b.re, a.im + b.im}; }
constexpr Complex operator-(Complex a, Complex b) { return {a.re - b.re, a.im - b.im}; }
constexpr Complex operator*(Complex a, Complex b) {
  return {a.re * b.re - a.im * b.im, a.im * b.re + a.re * b.im};
}
/// Scaling by a real factor: two multiplications, so an infinite part leaves the other one finite.
constexpr Complex operator*(double factor, Complex z) { return {factor * z.re, factor * z.im}; }
constexpr Complex Conjugate(Complex z) { return {z.re, -z.im}; }

/// A table-driven modulus: the larger of |re| and |im| times MagnitudeTable at 500 times the ratio of the
/// smaller to the larger, rounded half up. The table holds sqrt(1 + r), not sqrt(1 + r²), so the result is
/// the true modulus only near r = 0 and r = 1 and up to 10 % above it between (3 + 4j gives 5.29). Infinite
/// parts give infinity, NaN gives NaN. Needs InitSignalTables().
double ApproxMagnitude(Complex z);

}  // namespace parlowen
