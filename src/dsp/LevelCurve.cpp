#include "dsp/LevelCurve.h"

#include <algorithm>
#include <cstdint>

#include "base/Arithmetic.h"
#include "dsp/Clones.h"
#include "dsp/Decibel.h"

namespace parlowen {

namespace detail {

PARLOWEN_CLONES std::int64_t SquareSum(const std::int16_t* samples, std::int64_t count) {
  std::int64_t sum = 0;
  for (std::int64_t i = 0; i < count; ++i) sum += samples[i] * samples[i];
  return sum;
}

}  // namespace detail

namespace {

// Sum of the squares of samples begin .. end-1, those outside the span being silent.
std::int64_t EnergyOf(SampleSpan samples, std::int64_t begin, std::int64_t end) {
  const auto first = std::clamp<std::int64_t>(begin, 0, samples.count);
  const auto last = std::clamp<std::int64_t>(end, first, samples.count);
  return detail::SquareSum(samples.data + first, last - first);
}

}  // namespace

LevelCurve MakeLevelCurve(SampleSpan samples, int sampleRate, int rate, int origin, int count) {
  return MakeColumnLevels(samples, sampleRate, rate, origin, sampleRate, rate, count);
}

LevelCurve MakeColumnLevels(SampleSpan samples, int sampleRate, int rate, std::int64_t origin,
                            std::int64_t span, std::int64_t values, int count) {
  LevelCurve curve{rate, SaturateInt32(origin), {}};
  if (sampleRate < 1 || span < 1 || values < 1 || count < 1) return curve;
  curve.values.reserve(static_cast<std::size_t>(count));
  const std::int64_t length = std::max(1, sampleRate / 100);
  std::int64_t begin = origin;
  std::int64_t energy = EnergyOf(samples, begin, begin + length);
  for (std::int64_t i = 0; i < count; ++i) {
    const std::int64_t next = origin + i * span / values;
    if (next - begin < length) {
      // Stretches overlap at high rates: only what leaves and what enters is summed.
      energy += EnergyOf(samples, begin + length, next + length) - EnergyOf(samples, begin, next);
    } else {
      energy = EnergyOf(samples, next, next + length);
    }
    begin = next;
    curve.values.push_back(PowerToDb(static_cast<double>(energy) / static_cast<double>(length), 0));
  }
  return curve;
}

double LevelRiseAt(const LevelCurve& curve, int index, int frameLength, int sampleRate) {
  const int step = curve.rate / 300;
  if (frameLength > sampleRate / 100 || step < 1 || curve.values.empty()) return 1.0;
  const auto value = [&](int i) {
    return curve.values[std::min(static_cast<std::size_t>(i), curve.values.size() - 1)];
  };
  const int p = std::max(index, step);
  const double rise = (value(p) - value(p - step)) * 0.5;
  return std::clamp(rise, 1.0, 4.0);
}

double LevelRise(const LevelCurve& curve, int start, int frameLength, int sampleRate) {
  if (sampleRate < 1) return 1.0;
  const std::int64_t index = (std::int64_t{start} - curve.origin) * curve.rate / sampleRate;
  return LevelRiseAt(curve, SaturateInt32(index), frameLength, sampleRate);
}

}  // namespace parlowen
