#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <vector>

#include "SilentWindow.h"
#include "audio/Recorder.h"
#include "document/EditCommands.h"
#include "document/RateConversion.h"

namespace parlowen {
namespace {

constexpr double kTwoPi = 6.283185307179586;

/// A voice-like buzz with a slow envelope.
std::vector<std::int16_t> Buzz(int count, int rate) {
  std::vector<std::int16_t> samples(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    const double t = static_cast<double>(i) / rate;
    const double buzz =
        std::sin(kTwoPi * 120 * t) + 0.5 * std::sin(kTwoPi * 720 * t) + 0.3 * std::sin(kTwoPi * 2480 * t);
    samples[static_cast<std::size_t>(i)] =
        static_cast<std::int16_t>(9000 * buzz * (0.5 + 0.5 * std::sin(3 * t)));
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

/// A microphone that is always ready and says when a block is full only to the benchmark.
class EndlessMicrophone : public SoundInput {
 public:
  bool IsPresent() const override { return true; }
  bool Open(int, int) override { return true; }
  bool Prepare(std::span<std::int16_t>) override { return true; }
  bool Queue(std::span<std::int16_t>) override { return true; }
  bool Start() override { return true; }
  void Close() override {}
};

// What the recorder does with the blocks of 22050 Hz in two channels, the sound kept and the view following,
// as a share of the time that they last.
void HandleStereoBlocks(benchmark::State& state) {
  constexpr int kRate = 22050, kChannels = 2;
  SilentWindow window;
  CommandStates states;
  SoundDocument document;
  document.resetForNewSound(0, kRate, states);
  RecorderSettings settings;
  EndlessMicrophone microphone;
  Recorder recorder(&microphone, window, document, states, settings);
  const std::vector<std::int16_t> voice = Buzz(kBlockSamples, kRate);
  std::vector<std::int16_t> block(voice.size());
  std::int64_t blocks = 0;
  for (auto _ : state) {
    if (!recorder.running()) {
      state.PauseTiming();
      recorder.startRecording(RecordingStop::ByHand, kChannels);
      state.ResumeTiming();
    }
    std::copy(voice.begin(), voice.end(), block.begin());
    recorder.onBlockFilled(block);
    ++blocks;
  }
  const double soundSeconds = static_cast<double>(blocks) * kBlockSamples / kChannels / kRate;
  state.counters["percent of a core"] =
      benchmark::Counter(soundSeconds / 100, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(HandleStereoBlocks)->Unit(benchmark::kMicrosecond);

/// A full document with its first second marked.
struct FullDocument {
  FullDocument() {
    const auto sound = Buzz(kMaxSamples, 16000);
    std::copy(sound.begin(), sound.end(), document.samples.data());
    document.resetForNewSound(kMaxSamples, 16000, states);
    Mark();
  }
  void Mark() {
    MarkStart(document, states, 0);
    MarkEnd(document, states, 16000);
  }
  SilentWindow window;
  CommandStates states;
  SoundDocument document;
};

// The whole command at the start of a full document, with all that follows from it.
void CutAtTheStart(benchmark::State& state) {
  FullDocument desk;
  for (auto _ : state) {
    CutCommand(desk.window, desk.document, desk.states);
    state.PauseTiming();
    UndoCommand(desk.window, desk.document, desk.states);
    desk.Mark();
    state.ResumeTiming();
  }
}
BENCHMARK(CutAtTheStart)->Unit(benchmark::kMillisecond);

void PasteAtTheStart(benchmark::State& state) {
  FullDocument desk;
  CutCommand(desk.window, desk.document, desk.states);
  for (auto _ : state) {
    desk.document.insertPoint = 0;
    PasteCommand(desk.window, desk.document, desk.states);
    state.PauseTiming();
    UndoCommand(desk.window, desk.document, desk.states);
    state.ResumeTiming();
  }
}
BENCHMARK(PasteAtTheStart)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace parlowen
