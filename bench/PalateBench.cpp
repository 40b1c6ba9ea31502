// 98 s of contact frames at 200 a second: their measures, and a drawing of the window over all of them; a drawing of the
// section through the head.

#include <benchmark/benchmark.h>

#include <random>

#include "articulation/ArticulationPicture.h"
#include "dsp/SignalTables.h"
#include "palatography/PalatePicture.h"

namespace parlowen {
namespace {

constexpr int kRate = 16000, kFrameRate = 200, kSeconds = 98;

struct Recording {
  SoundDocument document;
  PalateState palate;
  PalateView view;
  Recording() {
    InitSignalTables();
    CommandStates states;
    std::mt19937 random(1);
    for (int i = 0; i < kRate * kSeconds; ++i)
      document.samples[i] = static_cast<std::int16_t>(random() % 20000) - 10000;
    document.resetForNewSound(kRate * kSeconds, kRate, states);
    palate.loaded = true;
    palate.sound = document.Stamp();
    palate.toldRate = kFrameRate;
    palate.recording.hasPalate = true;
    palate.recording.sampleRate = kRate;
    palate.recording.sampleCount = document.sampleCount;
    for (int i = 0; i < kFrameRate * kSeconds * 8; ++i)
      palate.recording.palate.push_back(static_cast<std::uint8_t>(random()));
  }
};

Recording& TheRecording() {
  static Recording recording;
  return recording;
}

void MeasureFrames(benchmark::State& state) {
  Recording& r = TheRecording();
  for (auto _ : state)
    for (const ContactFrame& frame : FramesOf(r.palate, r.document))
      benchmark::DoNotOptimize(MeasureContact(frame));
}
BENCHMARK(MeasureFrames)->Unit(benchmark::kMillisecond);

void MeasureStatisticsOfAll(benchmark::State& state) {
  Recording& r = TheRecording();
  for (auto _ : state) benchmark::DoNotOptimize(MeasureStatistics(FramesOf(r.palate, r.document)));
}
BENCHMARK(MeasureStatisticsOfAll)->Unit(benchmark::kMillisecond);

void DrawPalates(benchmark::State& state) {
  Recording& r = TheRecording();
  WideBandStrip strip;
  PalatePicture(r.document, r.palate, r.view, &strip, 1024, 640);  // the columns are computed once
  for (auto _ : state)
    benchmark::DoNotOptimize(PalatePicture(r.document, r.palate, r.view, &strip, 1024, 640));
}
BENCHMARK(DrawPalates)->Unit(benchmark::kMillisecond);

void ComputeWideBandColumns(benchmark::State& state) {
  Recording& r = TheRecording();
  for (auto _ : state) {
    WideBandStrip strip;
    benchmark::DoNotOptimize(&strip.Columns(r.document, ShownStretchOf(r.document), 984));
  }
}
BENCHMARK(ComputeWideBandColumns)->Unit(benchmark::kMillisecond);

void DrawArticulation(benchmark::State& state) {
  ArticulationState shown;
  shown.sound = 30;
  shown.estimate = EstimateTract({500, 1500, 2500, 3500});
  for (auto _ : state) benchmark::DoNotOptimize(ArticulationPicture(shown, 1024, 640));
}
BENCHMARK(DrawArticulation)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace parlowen
