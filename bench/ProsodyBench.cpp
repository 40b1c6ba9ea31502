#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <random>
#include <vector>

#include "dsp/SignalTables.h"
#include "prosody/Intonation.h"
#include "prosody/TonePicture.h"
#include "ui/Svg.h"

namespace {

using namespace parlowen;

constexpr int kRate = 16000;

/// 2000 syllables of 0.3–0.5 s in 32 groups.
const ByteWriter& FullRun() {
  static const ByteWriter bytes = [] {
    std::mt19937 random(1);
    std::vector<ToneItem> items(kMostToneItems);
    for (std::size_t i = 0; i < items.size(); ++i) {
      ToneItem& item = items[i];
      item.group = "T" + std::to_string(i % kMostToneGroups);
      item.sound = "sound.wav";
      item.sampleRate = kRate;
      item.start = 160 * static_cast<int>(i);
      item.end = item.start + 8000;
      item.hertz.resize(30 + random() % 20);
      for (float& hertz : item.hertz) hertz = 100.0f + static_cast<float>(random() % 200);
    }
    return WriteToneItems(items);
  }();
  return bytes;
}

/// 60 s of speech: a falling line with syllables on it, pauses between phrases.
const SoundDocument& Speech() {
  static const auto document = [] {
    InitSignalTables();
    auto made = std::make_unique<SoundDocument>();
    std::mt19937 random(1);
    made->sampleRate = kRate;
    made->sampleCount = 60 * kRate;
    for (int i = 0; i < made->sampleCount; ++i)
      made->samples[i] = static_cast<std::int16_t>(static_cast<int>(random() % 8000) - 4000);
    made->SamplesChanged();
    for (int frame = 0; frame < made->ContourLength(); ++frame) {
      const bool pause = frame % 90 > 80;
      const double hertz =
          200 * std::exp2(-frame * 1e-4 + 0.2 * std::sin(frame * 0.2)) + static_cast<double>(random() % 5);
      made->pitch[static_cast<std::size_t>(frame)] = pause ? 0.0f : static_cast<float>(kRate / hertz);
    }
    made->pitchPresent = true;
    return made;
  }();
  return *document;
}

void ReadPoolAndDraw2000Tones(benchmark::State& state) {
  for (auto _ : state) {
    ToneState tones;
    tones.view = ToneView::Pattern;
    tones.SetItems(ParseToneItems(FullRun()).value());
    benchmark::DoNotOptimize(TonePicture(tones, 1024, 640).marks.data());
  }
}
BENCHMARK(ReadPoolAndDraw2000Tones)->Unit(benchmark::kMillisecond);

/// The largest picture: a group of all items as SVG.
void DrawAGroupOf2000Tones(benchmark::State& state) {
  ToneState tones;
  std::vector<ToneItem> items = ParseToneItems(FullRun()).value();
  for (ToneItem& item : items) item.group = "T1";
  tones.view = ToneView::Group;
  tones.group = "T1";
  tones.axis = ToneAxis::Semitones;
  tones.SetItems(std::move(items));
  for (auto _ : state) benchmark::DoNotOptimize(ToSvg(TonePicture(tones, 1024, 640)).data());
}
BENCHMARK(DrawAGroupOf2000Tones)->Unit(benchmark::kMillisecond);

void IntonationOf60Seconds(benchmark::State& state) {
  const SoundDocument& document = Speech();
  for (auto _ : state)
    benchmark::DoNotOptimize(AnalyseIntonation(document, 0, document.sampleCount, {})->units.data());
}
BENCHMARK(IntonationOf60Seconds)->Unit(benchmark::kMillisecond);

}  // namespace
