#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "dsp/SignalTables.h"
#include "pitch/PitchAnalysis.h"
#include "pitch_accuracy/SyntheticVoice.h"

namespace {

using namespace parlowen;

constexpr int kRate = 16000;

/// A full document, 98.3 s: a man's and a woman's sentence in turn, with noise at 20 dB.
const SoundDocument& FullDocument() {
  static const auto document = [] {
    InitSignalTables();
    auto full = std::make_unique<SoundDocument>();
    std::vector<KnownVoice> voices = {MakeVoice("man", kRate), MakeVoice("woman", kRate)};
    for (KnownVoice& voice : voices) AddNoise(voice, Noise::White, 20);
    full->sampleRate = kRate;
    for (std::size_t v = 0; full->sampleCount < kMaxSamples; v = 1 - v)
      for (const std::int16_t sample : voices[v].samples)
        if (full->sampleCount < kMaxSamples) full->samples[full->sampleCount++] = sample;
    full->SamplesChanged();
    return full;
  }();
  return *document;
}

void Analyse(benchmark::State& state, bool tracking) {
  const SoundDocument& document = FullDocument();
  PitchAnalysisRequest request;
  request.tracking = tracking;
  std::vector<float> periods;
  for (auto _ : state) {
    RunPitchAnalysis(document, 0, document.sampleCount, request, {0, document.ContourLength() - 1}, periods);
    benchmark::DoNotOptimize(periods.data());
  }
}

void FirstStageOf98Seconds(benchmark::State& state) { Analyse(state, false); }
BENCHMARK(FirstStageOf98Seconds)->Unit(benchmark::kMillisecond);

void BothStagesOf98Seconds(benchmark::State& state) { Analyse(state, true); }
BENCHMARK(BothStagesOf98Seconds)->Unit(benchmark::kMillisecond);

}  // namespace
