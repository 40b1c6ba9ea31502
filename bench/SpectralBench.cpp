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
#include "support/Vowels.h"

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
  for (auto _ : state)
    benchmark::DoNotOptimize(FormantTrack(voice.Samples(), kRate, 0, kMaxSamples, analyser));
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

/// A column of each kind in the order of SpectrogramKind, but for the filter bank: a picture over its 1024
/// columns.
void BM_Column(benchmark::State& state) {
  static const auto selected = [] {
    auto document = std::make_unique<SoundDocument>();
    CommandStates states;
    std::copy_n(Voice().samples.data(), 10 * kRate, document->samples.data());
    document->resetForNewSound(10 * kRate, kRate, states);
    document->selectionStart = 1000;
    document->selectionEnd = 5 * kRate;
    return document;
  }();
  const auto kind = static_cast<SpectrogramKind>(state.range(0));
  const SpectrogramSettings settings = SettingsOf(kind, kRate, 70.0f);
  const SpectrogramStretch stretch = StretchOf(*selected);
  int columns = 0;
  for (auto _ : state) {
    const SpectrogramMatrix matrix = ComputeSpectrogram(*selected, kind, settings, stretch);
    columns += matrix.columns;
    benchmark::DoNotOptimize(matrix.greys.data());
  }
  state.SetLabel(SpectrogramKindName(kind));
  state.counters["time/column"] =
      benchmark::Counter(columns, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_Column)->DenseRange(0, 5);

void BM_FilterBankOf63200Samples(benchmark::State& state) {
  for (auto _ : state)
    benchmark::DoNotOptimize(ComputeFilterBank(Voice().Samples(), kRate, 1000, 64200, 984, 12000));
}
BENCHMARK(BM_FilterBankOf63200Samples)->Unit(benchmark::kMillisecond);

double MedianOf(std::vector<double> values) {
  if (values.empty()) return 0;
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2),
                   values.end());
  return values[values.size() / 2];
}

/// Not a time: how far the formants of nine synthetic vowels lie from the truth, in Hz, and how often the
/// first three are all found within 200 Hz.
void BM_FormantErrors(benchmark::State& state) {
  const int rate = static_cast<int>(state.range(0)), f0 = static_cast<int>(state.range(1));
  const int length = std::min(512, rate / 40);
  std::vector<double> errors[3];
  int found = 0, frames = 0;
  LpcAnalyser analyser;
  double levels[kEnvelopePoints];
  for (auto _ : state) {
    for (const auto& vowel : testing::kNineVowels) {
      const auto sound = testing::MakeVowel(vowel, rate, f0, rate * 2 / 5);
      const SampleSpan span{sound.data(), static_cast<int>(sound.size())};
      for (int at = rate / 10; at + length <= span.count; at += rate / 100, ++frames) {
        LpcEnvelope(span, at, length, true, 16, {rate, 12000}, analyser, levels);
        const FormantFrame formants = PickFormants(levels, kEnvelopePoints, rate);
        bool all = formants.count >= 3;
        for (std::size_t f = 0; f < 3 && static_cast<int>(f) < formants.count; ++f) {
          errors[f].push_back(std::fabs(formants.frequency[f] - vowel.formants[f]));
          all = all && errors[f].back() < 200;
        }
        found += all;
      }
    }
  }
  state.counters["found%"] = 100.0 * found / frames;
  state.counters["F1"] = MedianOf(errors[0]);
  state.counters["F2"] = MedianOf(errors[1]);
  state.counters["F3"] = MedianOf(errors[2]);
}
BENCHMARK(BM_FormantErrors)
    ->ArgsProduct({{8000, 11025, 16000, 22050}, {80, 100, 115, 130, 150, 180, 220, 260, 300}})
    ->Iterations(1);

}  // namespace
}  // namespace parlowen
