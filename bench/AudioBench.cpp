#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <vector>

#include "document/Editing.h"
#include "document/RateConversion.h"

namespace parlowen {
namespace {

constexpr double kTwoPi = 6.283185307179586;

/// A voice-like buzz with a slow envelope.
std::vector<std::int16_t> Buzz(int count, int rate) {
  std::vector<std::int16_t> samples(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    const double t = static_cast<double>(i) / rate;
    const double buzz = std::sin(kTwoPi * 120 * t) + 0.5 * std::sin(kTwoPi * 720 * t) + 0.3 * std::sin(kTwoPi * 2480 * t);
    samples[static_cast<std::size_t>(i)] = static_cast<std::int16_t>(9000 * buzz * (0.5 + 0.5 * std::sin(3 * t)));
  }
  return samples;
}

// 35 s from 44100 to 16000 Hz: low-pass and resampling.
void ConvertThirtyFiveSeconds(benchmark::State& state) {
  constexpr int kRate = 44100, kCount = 35 * kRate;
  const std::vector<std::int16_t> sound = Buzz(kCount, kRate);
  std::vector<std::int16_t> work(sound.size() + 16);
  for (auto _ : state) {
    state.PauseTiming();
    std::copy(sound.begin(), sound.end(), work.begin());
    std::fill(work.begin() + kCount, work.end(), std::int16_t{0});
    state.ResumeTiming();
    benchmark::DoNotOptimize(ConvertSamples(work.data(), kCount, kRate, 16000));
  }
}
BENCHMARK(ConvertThirtyFiveSeconds)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace parlowen
