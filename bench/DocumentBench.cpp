#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "SilentWindow.h"
#include "document/Editing.h"
#include "document/SoundFileCommands.h"
#include "document/WavFile.h"
#include "shell/Workstation.h"
#include "spectral/Spectrogram.h"
#include "ui/Svg.h"

namespace {

using namespace parlowen;

/// A full document at 16000 Hz: a voice-like buzz with a slow envelope.
void FillDocument(SoundDocument& document, CommandStates& states) {
  for (int i = 0; i < kMaxSamples; ++i) {
    const double t = i / 16000.0;
    const double buzz = std::sin(2 * 3.14159265 * 120 * t) + 0.5 * std::sin(2 * 3.14159265 * 720 * t) +
                        0.3 * std::sin(2 * 3.14159265 * 2480 * t);
    document.samples[i] = static_cast<std::int16_t>(9000 * buzz * (0.5 + 0.5 * std::sin(3 * t)));
  }
  document.resetForNewSound(kMaxSamples, 16000, states);
}

std::string FullSoundFile() {
  static const std::string path = [] {
    const char* folder = std::getenv("TMPDIR");
    const std::string name = std::string(folder != nullptr ? folder : "/tmp") + "/parlowen-bench-98s.wav";
    SoundDocument document;
    CommandStates states;
    FillDocument(document, states);
    ReplaceFile(name, WavBytesOf(document, false));
    return name;
  }();
  return path;
}

void LoadNinetyEightSeconds(benchmark::State& state) {
  SilentWindow window;
  Workstation workstation(window, "");
  const std::string path = FullSoundFile();
  for (auto _ : state) openByName(window, workstation.document, workstation.states, path);
  state.counters["samples"] = workstation.document.sampleCount;
}
BENCHMARK(LoadNinetyEightSeconds)->Unit(benchmark::kMicrosecond);

void SpectrogramColumn(benchmark::State& state) {
  SilentWindow window;
  Workstation workstation(window, "");
  FillDocument(workstation.document, workstation.states);
  const auto kind = static_cast<SpectrogramKind>(state.range(0));
  const SpectrogramSettings settings = SettingsOf(kind, workstation.document.sampleRate);
  const SpectrogramStretch stretch = StretchOf(workstation.document);
  std::int64_t columns = 0;
  for (auto _ : state) columns += ComputeSpectrogram(workstation.document, kind, settings, stretch).columns;
  state.SetItemsProcessed(columns);
  state.counters["per column"] = benchmark::Counter(
      static_cast<double>(columns), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(SpectrogramColumn)->ArgName("kind")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

void RepaintFourPanes(benchmark::State& state) {
  SilentWindow window;
  Workstation workstation(window, "");
  FillDocument(workstation.document, workstation.states);
  workstation.dispatchCommand(170);
  workstation.Select(16000, 64000);
  for (auto _ : state)
    for (const Pane pane : {Pane::Amplitude, Pane::Pitch, Pane::Analysis, Pane::Waveform}) {
      benchmark::DoNotOptimize(workstation.view.Base(pane, 1024, 200));
      benchmark::DoNotOptimize(workstation.view.Overlay(pane, 1024, 200));
    }
}
BENCHMARK(RepaintFourPanes)->Unit(benchmark::kMicrosecond);

}  // namespace
