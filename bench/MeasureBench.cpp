#include <benchmark/benchmark.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "base/Files.h"
#include "document/WavFile.h"
#include "dsp/SignalTables.h"
#include "measure/MeasureRecording.h"

namespace parlowen {
namespace {

/// 98 s at 16000 Hz, the bundled sentence again and again, with 100 intervals of 0.98 s.
struct Recording98 {
  std::string folder =
      (std::filesystem::temp_directory_path() / ("measure-bench-" + std::to_string(::getpid()))).string();
  Recording98() {
    constexpr int kSamples = 98 * 16000;
    std::filesystem::create_directories(folder);
    const auto sentence = ReadWholeFile(PARLOWEN_SOURCE_DIR "/sounds/english_male_sentence_16000.wav");
    ByteWriter wave;
    WriteWavHeader(wave, 16000, 1, kSamples);
    const ByteSpan once = ByteSpan(*sentence).subspan(kWavHeaderBytes);
    for (std::size_t done = 0; done < kSamples * 2u; done += once.size())
      wave.PutBytes(once.first(std::min(once.size(), kSamples * 2u - done)));
    ReplaceFile(folder + "/a.wav", wave);
    std::ofstream labels(folder + "/a.txt");
    for (int i = 0; i < 100; ++i) labels << i * 0.98 << "\t" << (i + 1) * 0.98 << "\ta" << i << "\n";
  }
  ~Recording98() {
    std::error_code error;
    std::filesystem::remove_all(folder, error);
  }
};

/// One group of measures, or all of them.
void Measure98Seconds(benchmark::State& state) {
  InitSignalTables();
  static const Recording98 recording;
  MeasureJob job;
  job.recording = recording.folder + "/a.wav";
  if (state.range(0) > 0) job.settings.measures = 1u << state.range(0);
  SoundDocument document;
  std::vector<MeasureRow> rows;
  for (auto _ : state) benchmark::DoNotOptimize(MeasureRecording(job, document, rows));
  state.counters["rows"] = static_cast<double>(rows.size());
  state.counters["times_speech"] = benchmark::Counter(98, benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(Measure98Seconds)->ArgName("group")->DenseRange(0, 5)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace parlowen
