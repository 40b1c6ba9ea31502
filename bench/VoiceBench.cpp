#include <benchmark/benchmark.h>

#include "dsp/SignalTables.h"
#include "voice/GlottalAnalysis.h"
#include "voice_accuracy/LfVoice.h"

namespace parlowen {
namespace {

void GlottalWaveOfFiveSeconds(benchmark::State& state) {
  InitSignalTables();
  const int rate = static_cast<int>(state.range(0));
  bench::LfSettings settings;
  settings.sampleRate = rate;
  settings.seconds = 5;
  const bench::LfVoice voice = MakeLfVoice(settings);
  const std::vector<float> contour(500, static_cast<float>(rate / settings.f0));
  const auto stretch = LongestVoicedStretch(contour, 0, 5 * rate, rate);
  GlottalWave wave;
  for (auto _ : state)
    benchmark::DoNotOptimize(
        EstimateGlottalWave({voice.samples.data(), 5 * rate}, rate, *stretch, false, wave));
}
BENCHMARK(GlottalWaveOfFiveSeconds)->ArgName("rate")->Arg(16000)->Arg(22050)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace parlowen
