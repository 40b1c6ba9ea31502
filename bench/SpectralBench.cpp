#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <vector>

#include "document/SoundDocument.h"
#include "dsp/AnalysisWindow.h"
#include "dsp/SignalTables.h"
#include "spectral/Cepstrum.h"
#include "spectral/FilterBank.h"
#include "spectral/Formants.h"
#include "spectral/LongTermSpectrum.h"
#include "spectral/Spectrogram.h"

namespace parlowen {
namespace {

const int kTablesReady = InitSignalTables();
constexpr int kRate = 16000;

/// A voice of four formants at 100..130 Hz with some breath, as long as a document can be: 98 s.
const SoundDocument& Voice() {
  static const auto made = [] {
    auto document = std::make_unique<SoundDocument>();
    CommandStates states;
    std::mt19937 random(1);
    std::normal_distribution<double> breath(0.0, 0.01);
    constexpr double kFormants[4][2] = {{560, 70}, {1750, 95}, {2500, 140}, {3500, 200}};
    double state[4][2] = {};
    double phase = 0;
    for (int n = 0; n < kMaxSamples; ++n) {
      phase += (115 + 15 * std::sin(n * 2e-4)) / kRate;
      double value = breath(random);
      if (phase >= 1) {
        phase -= 1;
        value += 1;
      }
      for (int f = 0; f < 4; ++f) {
        const double r = std::exp(-std::numbers::pi * kFormants[f][1] / kRate);
        const double c = 2 * r * std::cos(2 * std::numbers::pi * kFormants[f][0] / kRate);
        const double next = (1 - c + r * r) * value + c * state[f][0] - r * r * state[f][1];
        state[f][1] = state[f][0];
        state[f][0] = value = next;
      }
      document->samples[n] = static_cast<std::int16_t>(std::clamp(value * 60000, -32767.0, 32767.0));
    }
    document->resetForNewSound(kMaxSamples, kRate, states);
    return document;
  }();
  return *made;
}

void BM_LpcEnvelopeAndFormants(benchmark::State& state) {
  const SoundDocument& voice = Voice();
  const int length = static_cast<int>(state.range(0));
  LpcAnalyser analyser;
  double levels[kEnvelopePoints];
  int at = 0;
  for (auto _ : state) {
    LpcEnvelope(voice.Samples(), at, length, true, 16, {kRate, 12000}, analyser, levels);
    benchmark::DoNotOptimize(PickFormants(levels, kEnvelopePoints, kRate));
    at = (at + 160) % (kMaxSamples - 1000);
  }
}
BENCHMARK(BM_LpcEnvelopeAndFormants)->Arg(320)->Arg(400);

void BM_FormantsOf98Seconds(benchmark::State& state) {
  const SoundDocument& voice = Voice();
  LpcAnalyser analyser;
  for (auto _ : state) benchmark::DoNotOptimize(FormantTrack(voice.Samples(), kRate, 0, kMaxSamples, analyser));
}
BENCHMARK(BM_FormantsOf98Seconds)->Unit(benchmark::kMillisecond);

void BM_CepstralFrame(benchmark::State& state) {
  const SoundDocument& voice = Voice();
  const auto mode = state.range(0) == 0 ? CepstralMode::Cepstrum : CepstralMode::Homomorphic;
  const int length = mode == CepstralMode::Cepstrum ? 512 : 400;
  MakeAnalysisWindow(length, 0.0);
  double values[kCepstrumPoints];
  int at = 0;
  for (auto _ : state) {
    CepstralAnalysis(voice.Samples(), at, length, mode, {kRate, 12000}, values);
    benchmark::DoNotOptimize(values);
    at = (at + 160) % (kMaxSamples - 1000);
  }
}
BENCHMARK(BM_CepstralFrame)->Arg(0)->Arg(1);

void BM_LongTermSpectrumOf98Seconds(benchmark::State& state) {
  LtaSpectrum levels;
  for (auto _ : state) {
    ComputeLongTermSpectrum(Voice().Samples(), kRate, 0, kMaxSamples, levels);
    benchmark::DoNotOptimize(levels);
  }
}
BENCHMARK(BM_LongTermSpectrumOf98Seconds)->Unit(benchmark::kMillisecond);

void BM_FilterBankOf63200Samples(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(ComputeFilterBank(Voice().Samples(), kRate, 1000, 64200, 984, 12000));
}
BENCHMARK(BM_FilterBankOf63200Samples)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace parlowen
