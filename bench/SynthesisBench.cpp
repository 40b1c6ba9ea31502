#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "synthesis/Resynthesis.h"

namespace parlowen {
namespace {

constexpr int kRate = 16000, kSeconds = 10;

/// A voice that glides from 100 to 250 Hz, and its contour.
struct Voice {
  std::vector<std::int16_t> samples;
  std::vector<float> contour;
  TargetCurve target;

  Voice() {
    double phase = 0;
    for (int n = 0; n < kRate * kSeconds; ++n) {
      const double frequency = 100 + 150.0 * n / (kRate * kSeconds);
      if (n % (kRate / 100) == 0) {
        contour.push_back(static_cast<float>(kRate / frequency));
        target.push_back(contour.back() * 0.8f);
      }
      phase += 2 * std::numbers::pi * frequency / kRate;
      double value = 0;
      for (int k = 1; k * frequency < 4000; ++k) value += std::cos(k * phase) / k;
      samples.push_back(static_cast<std::int16_t>(std::clamp(value * 6000, -32768.0, 32767.0)));
    }
  }
  SynthesisJob Job() const {
    const int count = static_cast<int>(samples.size());
    return MakeSynthesisJob({samples.data(), count}, kRate, 0, count);
  }
};

const Voice& TheVoice() {
  static const Voice voice;
  return voice;
}

void BM_FindPitchMarks(benchmark::State& state) {
  SynthesisJob job = TheVoice().Job();
  for (auto _ : state) benchmark::DoNotOptimize(FindPitchMarks(job, TheVoice().contour, -1));
}
BENCHMARK(BM_FindPitchMarks)->Unit(benchmark::kMicrosecond);

void BM_SynthesizeAgain(benchmark::State& state) {
  SynthesisJob job = TheVoice().Job();
  FindPitchMarks(job, TheVoice().contour, -1);
  for (auto _ : state) {
    SynthesizeOverlapAdd(job, TheVoice().target);
    benchmark::DoNotOptimize(job.output.data());
  }
}
BENCHMARK(BM_SynthesizeAgain)->Unit(benchmark::kMicrosecond);

/// A whole command: the job, its marks, the cosines, the output.
void BM_TenSeconds(benchmark::State& state) {
  for (auto _ : state) {
    SynthesisJob job = TheVoice().Job();
    FindPitchMarks(job, TheVoice().contour, -1);
    SynthesizeOverlapAdd(job, TheVoice().target);
    benchmark::DoNotOptimize(job.output.data());
  }
}
BENCHMARK(BM_TenSeconds)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace parlowen
