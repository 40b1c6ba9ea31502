#include <benchmark/benchmark.h>

#include <cmath>

#include "base/Files.h"
#include "document/SoundDocument.h"
#include "dsp/SignalTables.h"
#include "prosody/DurationChart.h"
#include "prosody/Durations.h"
#include "vowel/FormantStrip.h"
#include "vowel/SegmentChart.h"
#include "vowel/VowelFormants.h"
#include "vowel/VowelGroups.h"

namespace {

using namespace parlowen;

constexpr int kGroups = 1000;

/// A file of full groups, as it lies on the disk.
std::string FullFile(const GroupLayout& layout, const char* name) {
  std::vector<std::uint8_t> bytes(2);
  std::vector<std::uint16_t> slot(static_cast<std::size_t>(layout.valuesPerSlot));
  for (int g = 0; g < kGroups; ++g) {
    const auto value = [&](int i) {
      return static_cast<std::uint16_t>(300 + (g * 7 + i * 13) % 600 + 900 * (g % 3));
    };
    slot.assign(slot.size(), value(0));
    AppendGroup(layout, bytes, std::to_string(g), false, slot);
    for (int i = 1; i < layout.slots; ++i) {
      slot.assign(slot.size(), value(i));
      AppendToGroup(layout, bytes, g, slot, false);
    }
  }
  const char* folder = std::getenv("TMPDIR");
  const std::string path = std::string(folder != nullptr ? folder : "/tmp") + "/" + name;
  ReplaceFile(path, bytes);
  return path;
}

/// Reads the file and makes its text and the picture's data.
void VowelReportOfThousandGroups(benchmark::State& state) {
  const std::string path = FullFile(kVowelLayout, "parlowen-bench.vls");
  for (auto _ : state) {
    const auto groups = ReadGroups(kVowelLayout, *ReadWholeFile(path));
    auto summaries = SummariesOfVowels(*groups);
    const bool placed = PlaceGroups(summaries);
    benchmark::DoNotOptimize(VowelReport(*groups, summaries, placed));
  }
  state.SetItemsProcessed(state.iterations() * kGroups);
}
BENCHMARK(VowelReportOfThousandGroups)->Unit(benchmark::kMillisecond);

void DurationReportOfThousandGroups(benchmark::State& state) {
  const std::string path = FullFile(kDurationLayout, "parlowen-bench.lgs");
  for (auto _ : state) {
    const auto groups = ReadGroups(kDurationLayout, *ReadWholeFile(path));
    benchmark::DoNotOptimize(DurationReport(*groups));
    benchmark::DoNotOptimize(DurationPicture(SummariesOf(*groups), 0, 1024, 400));
  }
  state.SetItemsProcessed(state.iterations() * kGroups);
}
BENCHMARK(DurationReportOfThousandGroups)->Unit(benchmark::kMillisecond);

void AddToTheLastOfThousandGroups(benchmark::State& state) {
  const std::string path = FullFile(kVowelLayout, "parlowen-bench-add.vls");
  auto bytes = *ReadWholeFile(path);
  bytes[kVowelLayout.OffsetOf(kGroups - 1) + 8] = 46;  // room for one
  ReplaceFile(path, bytes);
  const std::uint16_t pair[] = {500, 1500};
  for (auto _ : state) {
    auto file = *ReadWholeFile(path);
    benchmark::DoNotOptimize(
        AppendToGroup(kVowelLayout, file, FindGroup(kVowelLayout, file, "999"), pair, false));
  }
}
BENCHMARK(AddToTheLastOfThousandGroups)->Unit(benchmark::kMicrosecond);

void FillWithVowel(SoundDocument& document, CommandStates& states, int count) {
  InitSignalTables();
  for (int i = 0; i < count; ++i) {
    const double t = i % 145 / 16000.0;
    document.samples[i] = static_cast<std::int16_t>(
        6000 * std::exp(-200 * t) *
        (std::cos(4400 * t) + 0.6 * std::cos(8000 * t) + 0.3 * std::cos(16000 * t)));
  }
  document.resetForNewSound(count, 16000, states);
}

void SegmentChartOfTenSeconds(benchmark::State& state) {
  SoundDocument document;
  CommandStates states;
  FillWithVowel(document, states, 160000);
  document.selectionStart = 0;
  document.selectionEnd = 160000;
  for (auto _ : state)
    benchmark::DoNotOptimize(
        SegmentPicture(SegmentPoints(SegmentTrack(document), 16000), true, {0}, 1024, 640));
}
BENCHMARK(SegmentChartOfTenSeconds)->Unit(benchmark::kMillisecond);

void FormantStripOfAView(benchmark::State& state) {
  SoundDocument document;
  CommandStates states;
  FillWithVowel(document, states, 160000);
  std::vector<int> samples;
  for (int x = 0; x < 1004; x += FormantStrip::kStep) samples.push_back(x * 160);
  for (auto _ : state) {
    FormantStrip strip;
    strip.Update(document, samples);
    benchmark::DoNotOptimize(strip.Draw());
  }
}
BENCHMARK(FormantStripOfAView)->Unit(benchmark::kMillisecond);

}  // namespace
