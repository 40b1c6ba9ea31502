#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <vector>

#include "dsp/AnalysisWindow.h"
#include "dsp/Decibel.h"
#include "dsp/Fft.h"
#include "dsp/Fir.h"
#include "dsp/FrameSpectrum.h"
#include "dsp/LevelCurve.h"
#include "dsp/SignalTables.h"

namespace parlowen {
namespace {

const int kTablesReady = InitSignalTables();
constexpr int kRate = 16000;

// Noise through a slow low-pass: the slope of speech, no wrap in the transform.
std::vector<std::int16_t> SpeechLikeSamples(int count) {
  std::mt19937 random(1);
  std::normal_distribution<double> noise(0.0, 600.0);
  std::vector<std::int16_t> samples;
  double value = 0.0;
  for (int n = 0; n < count; ++n) {
    value = 0.95 * value + noise(random);
    samples.push_back(static_cast<std::int16_t>(std::clamp(value, -32767.0, 32767.0)));
  }
  return samples;
}

std::vector<double> RealNoise(int size) {
  std::mt19937 random(2);
  std::normal_distribution<double> noise(0.0, 100.0);
  std::vector<double> values(static_cast<std::size_t>(size));
  std::generate(values.begin(), values.end(), [&] { return noise(random); });
  return values;
}

void BM_ComplexFft(benchmark::State& state) {
  const int size = static_cast<int>(state.range(0));
  const auto values = RealNoise(size);
  const std::vector<Complex> input(values.begin(), values.end());
  std::vector<Complex> output(input.size());
  for (auto _ : state) {
    ComplexFft(input.data(), size, output.data());
    benchmark::DoNotOptimize(output.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_ComplexFft)->Arg(256)->Arg(512)->Arg(1024);

void BM_RealFft(benchmark::State& state) {
  const int size = static_cast<int>(state.range(0));
  const auto input = RealNoise(size);
  std::vector<Complex> output(input.size() / 2);
  for (auto _ : state) {
    RealFft(input.data(), size, output.data());
    benchmark::DoNotOptimize(output.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_RealFft)->Arg(512)->Arg(1024);

void BM_RealFftFixed(benchmark::State& state) {
  const auto input = RealNoise(512);
  std::vector<Complex> output(256);
  for (auto _ : state) {
    RealFftFixed(input.data(), 512, output.data());
    benchmark::DoNotOptimize(output.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_RealFftFixed);

void BM_PowersToDb(benchmark::State& state) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> exponent(-1.0, 12.0);
  std::vector<double> powers(256);
  for (double& power : powers) power = std::pow(10.0, exponent(random));
  std::vector<double> levels(256);
  for (auto _ : state) {
    PowersToDb(powers.data(), 256, 30, levels.data());
    benchmark::DoNotOptimize(levels.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_PowersToDb);

// One shaded column of a spectrogram: 410 samples for the narrow band, 45 for the wide one.
void BM_SpectrogramColumn(benchmark::State& state) {
  const int length = static_cast<int>(state.range(0));
  const auto samples = SpeechLikeSamples(10 * kRate);
  const SampleSpan span{samples.data(), static_cast<int>(samples.size())};
  const int peak = *std::max_element(samples.begin(), samples.end());
  const double contrast = length > 150 ? 3.8 : 4.7;
  MakeAnalysisWindow(length, 0.0);
  FrameSpectrum spectrum{};
  std::vector<std::uint16_t> column(256);
  int start = 0;
  for (auto _ : state) {
    ComputeFrameSpectrum(span, start, length, 1, peak, spectrum, {kRate, 1.0});
    for (std::size_t row = 0; row < 256; ++row) {
      const int grey = 255 - static_cast<int>(contrast * spectrum[row]);
      column[row] = static_cast<std::uint16_t>(std::clamp(grey, 0, 255));
    }
    benchmark::DoNotOptimize(column.data());
    benchmark::ClobberMemory();
    start = (start + 97) % (9 * kRate);
  }
}
BENCHMARK(BM_SpectrogramColumn)->Arg(410)->Arg(45);

// A pure tone at full scale: the frame that has to be checked and halved.
void BM_LoudTone(benchmark::State& state) {
  std::vector<std::int16_t> samples;
  for (int n = 0; n < 1000; ++n)
    samples.push_back(static_cast<std::int16_t>(32767 * std::sin(6.28318530718 * 0.39 * n)));
  MakeAnalysisWindow(410, 0.0);
  FrameSpectrum spectrum{};
  for (auto _ : state) {
    ComputeFrameSpectrum({samples.data(), 1000}, 0, 410, 1, 32767, spectrum, {kRate, 1.0});
    benchmark::DoNotOptimize(spectrum.data());
  }
}
BENCHMARK(BM_LoudTone);

void BM_LevelCurve(benchmark::State& state) {
  const auto samples = SpeechLikeSamples(60 * kRate);
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        MakeLevelCurve({samples.data(), static_cast<int>(samples.size())}, kRate, 300, 0, 18000));
  }
}
BENCHMARK(BM_LevelCurve)->Unit(benchmark::kMillisecond);

void BM_ApplyFirFilter(benchmark::State& state) {
  auto samples = SpeechLikeSamples(kRate);
  double coefficients[15];
  DesignFirFilter(4000, 0.92, 7, 0, coefficients, kRate);
  for (auto _ : state) {
    ApplyFirFilter(15, kRate - 16, 8, coefficients, samples.data(), kRate);
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_ApplyFirFilter)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace parlowen
