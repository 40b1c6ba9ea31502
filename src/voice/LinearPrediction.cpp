#include "voice/LinearPrediction.h"

#include <algorithm>
#include <cmath>
#include <complex>

namespace parlowen {
namespace {

constexpr double kRegularisation = 1e-9;
constexpr int kMostIterations = 200;
constexpr double kConverged = 1e-13;
constexpr double kRealZero = 1e-8;  // imaginary part below which a zero is real

/// An index of the arrays.
constexpr std::size_t At(int i) { return static_cast<std::size_t>(i); }

using Zero = std::complex<double>;
using Square = std::array<std::array<double, kLargestTractOrder + 1>, kLargestTractOrder + 1>;

/// Solves phi·x = right for i, k = 1..order by the Cholesky decomposition; false when phi is not positive definite.
bool SolvePositive(Square& phi, const double* right, int order, double* x) {
  for (int i = 1; i <= order; ++i)
    for (int k = 1; k <= i; ++k) {
      double sum = phi[At(i)][At(k)];
      for (int j = 1; j < k; ++j) sum -= phi[At(i)][At(j)] * phi[At(k)][At(j)];
      if (i == k) {
        if (!(sum > 0)) return false;
        phi[At(i)][At(i)] = std::sqrt(sum);
      } else {
        phi[At(i)][At(k)] = sum / phi[At(k)][At(k)];
      }
    }
  for (int i = 1; i <= order; ++i) {
    double sum = right[i];
    for (int j = 1; j < i; ++j) sum -= phi[At(i)][At(j)] * x[j];
    x[i] = sum / phi[At(i)][At(i)];
  }
  for (int i = order; i >= 1; --i) {
    double sum = x[i];
    for (int j = i + 1; j <= order; ++j) sum -= phi[At(j)][At(i)] * x[j];
    x[i] = sum / phi[At(i)][At(i)];
  }
  return true;
}

/// z^order·A(z) and its derivative at z.
struct Value {
  Zero value, slope;
};
Value Evaluate(const TractFilter& filter, Zero z) {
  Value at{1.0, 0.0};
  for (int k = 1; k <= filter.order; ++k) {
    at.slope = at.slope * z + at.value;
    at.value = at.value * z + filter.a[At(k)];
  }
  return at;
}

/// All zeros at once; false when they do not settle.
bool FindZeros(const TractFilter& filter, std::array<Zero, kLargestTractOrder>& zeros) {
  const int n = filter.order;
  for (int i = 0; i < n; ++i) zeros[At(i)] = std::polar(0.9, 0.4 + 6.283185307179586 * i / n);
  for (int round = 0; round < kMostIterations; ++round) {
    double largest = 0;
    for (int i = 0; i < n; ++i) {
      const Value at = Evaluate(filter, zeros[At(i)]);
      if (at.value == 0.0) continue;
      const Zero ratio = at.slope / at.value;
      Zero others = 0;
      for (int j = 0; j < n; ++j)
        if (j != i) others += 1.0 / (zeros[At(i)] - zeros[At(j)]);
      const Zero step = 1.0 / (ratio - others);
      if (!std::isfinite(step.real()) || !std::isfinite(step.imag())) return false;
      zeros[At(i)] -= step;
      largest = std::max(largest, std::abs(step));
    }
    if (largest < kConverged) return true;
  }
  return false;
}

}  // namespace

TractFilter PredictByAutocorrelation(const double* frame, const double* window, int count, int order) {
  TractFilter filter;
  filter.order = std::clamp(order, 0, kLargestTractOrder);
  std::array<double, kLargestTractOrder + 1> r{};
  for (int k = 0; k <= filter.order; ++k)
    for (int i = k; i < count; ++i) r[At(k)] += frame[i] * window[i] * (frame[i - k] * window[i - k]);
  double error = r[0] * (1.0 + kRegularisation);
  if (!(error > 0)) return filter;
  for (int m = 1; m <= filter.order; ++m) {
    double sum = r[At(m)];
    for (int k = 1; k < m; ++k) sum += filter.a[At(k)] * r[At(m - k)];
    const double reflection = -sum / error;
    auto next = filter.a;
    for (int k = 1; k < m; ++k) next[At(k)] += reflection * filter.a[At(m - k)];
    next[At(m)] = reflection;
    filter.a = next;
    error *= 1.0 - reflection * reflection;
    if (!(error > 0)) break;
  }
  return filter;
}

TractFilter PredictWeighted(const double* frame, const double* weights, int count, int order) {
  TractFilter filter;
  filter.order = std::clamp(order, 0, kLargestTractOrder);
  Square phi{};
  for (int n = 0; n < count; ++n)
    for (int i = 0; i <= filter.order; ++i) {
      const double weighted = weights[n] * frame[n - i];
      for (int k = 0; k <= i; ++k) phi[At(i)][At(k)] += weighted * frame[n - k];
    }
  std::array<double, kLargestTractOrder + 1> right{}, solution{};
  for (int i = 1; i <= filter.order; ++i) {
    right[At(i)] = -phi[At(i)][0];
    phi[At(i)][At(i)] += kRegularisation * phi[0][0];
  }
  if (!(phi[0][0] > 0) || !SolvePositive(phi, right.data(), filter.order, solution.data())) return filter;
  for (int k = 1; k <= filter.order; ++k) filter.a[At(k)] = solution[At(k)];
  return filter;
}

TractFilter KeepResonances(const TractFilter& filter) {
  std::array<Zero, kLargestTractOrder> zeros;
  if (!FindZeros(filter, zeros)) return filter;
  std::array<Zero, kLargestTractOrder + 1> product{1.0};
  int order = 0;
  for (int i = 0; i < filter.order; ++i) {
    Zero zero = zeros[At(i)];
    if (std::fabs(zero.imag()) < kRealZero && zero.real() > 0) continue;
    if (std::norm(zero) > 1) zero = 1.0 / std::conj(zero);
    ++order;
    for (int k = order; k >= 1; --k) product[At(k)] -= zero * product[At(k - 1)];
  }
  TractFilter kept;
  kept.order = order;
  for (int k = 1; k <= order; ++k) kept.a[At(k)] = product[At(k)].real();
  return kept;
}

}  // namespace parlowen
