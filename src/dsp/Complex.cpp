#include "dsp/Complex.h"

#include <cmath>

#include "dsp/SignalTables.h"

namespace parlowen {

double ApproxMagnitude(Complex z) {
  const double a = std::fabs(z.re);
  const double b = std::fabs(z.im);
  if (a == 0.0 && b == 0.0) return a * MagnitudeTable[kMagnitudeSteps];
  const double larger = a >= b ? a : b;
  const double ratio = a >= b ? b / a : a / b;
  if (std::isnan(ratio)) return a + b;  // a NaN, or both infinite: there is no index
  return larger * MagnitudeTable[static_cast<std::size_t>(ratio * kMagnitudeSteps + 0.5)];
}

}  // namespace parlowen
