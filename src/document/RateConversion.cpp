#include "document/RateConversion.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/Arithmetic.h"
#include "dsp/Fir.h"

namespace parlowen {
namespace {

constexpr int kHalfLength = 7, kTaps = 2 * kHalfLength + 1;
constexpr int kFirst = kHalfLength + 1;  // the first sample that is filtered
constexpr double kWindow = 0.92;

using Coefficients = std::array<double, kTaps>;

/// ApplyFirFilter(kTaps, count − kFirst, kFirst, …), to the bit, in half its time. There every sum waits for
/// the one before it. Here the terms that do not are summed beforehand, in another order, which moves the sum
/// by less than 1e-8; where that could change what truncation gives, the sum is made again in its own order.
void LowPass(const Coefficients& c, std::int16_t* x, int count) {
  constexpr double kDoubt = 1e-6;
  std::array<double, kHalfLength> y{};  // the last filtered samples, the oldest first
  if (count > kFirst) std::copy_n(x + kFirst - kHalfLength, kHalfLength, y.begin());
  for (int n = kFirst; n < count; ++n) {
    const std::int16_t* ahead = x + n;
    const double near = (c[7] * ahead[0] + c[8] * ahead[1]) + (c[9] * ahead[2] + c[10] * ahead[3]);
    const double far = (c[11] * ahead[4] + c[12] * ahead[5]) + c[13] * ahead[6];
    const double old =
        (c[0] * y[0] + c[1] * y[1]) + (c[2] * y[2] + c[3] * y[3]) + (c[4] * y[4] + c[5] * y[5]);
    const double sum = ((near + far) + old) + c[6] * y[6];
    // Below 14·32768·1 in magnitude: the casts are safe.
    auto value = static_cast<std::int32_t>(sum);
    const double rest = std::fabs(sum - value);
    if (rest < kDoubt || rest > 1.0 - kDoubt) {
      double exact = 0.0;
      for (std::size_t m = 0; m < kHalfLength; ++m) exact += c[m] * y[m];
      for (std::size_t m = 0; m < kHalfLength; ++m) exact += c[kHalfLength + m] * ahead[m];
      value = static_cast<std::int32_t>(exact);
    }
    const std::int16_t filtered = LowInt16(value);
    x[n] = filtered;
    for (std::size_t m = 0; m + 1 < kHalfLength; ++m) y[m] = y[m + 1];
    y[kHalfLength - 1] = filtered;
  }
}

}  // namespace

int ConvertSamples(std::int16_t* samples, int count, int rate, int target) {
  Coefficients coefficients{};
  DesignFirFilter(target * 9 / 20, kWindow, kHalfLength, 0, coefficients.data(), rate);
  LowPass(coefficients, samples, count);

  const double ratio = static_cast<double>(target) / rate;
  const int outputs = TruncateToInt32(count * ratio);
  // Output k is never read again as an input: its inputs begin at k or later.
  for (int k = 1; k < outputs; ++k) {
    const double t = k / ratio;
    const auto i = static_cast<std::int32_t>(t);
    const double d = t - (i + 1);
    const double y0 = samples[i], y1 = samples[i + 1], y2 = samples[i + 2];
    const double value = (((y0 + y2) * 0.5 - y1) * d + (y2 - y0) * 0.5) * d + y1;
    samples[k] = SaturateInt16(static_cast<std::int32_t>(value));
  }
  return std::max(0, outputs - 1);
}

Edit ConvertDocument(SoundDocument& document, int target) {
  Edit edit = document.BeginEdit(EditKind::RateConversion, 0);
  const int count = document.sampleCount;
  document.sampleCount = ConvertSamples(document.samples.data(), count, document.sampleRate, target);
  if (document.twoChannel) ConvertSamples(document.samples2.data(), count, document.sampleRate, target);
  document.sampleRate = target;
  document.EndEdit(edit);
  return edit;
}

}  // namespace parlowen
