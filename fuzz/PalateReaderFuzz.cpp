// Statistics, frames and recordings of the palate over any bytes: what is taken is finite and within its bounds, can be
// shown, and comes back the same when it is saved.

#include <cmath>
#include <random>
#include <string>

#include "Require.h"
#include "dsp/SignalTables.h"
#include "palatography/NspBytes.h"
#include "palatography/PalatePicture.h"

using namespace parlowen;

namespace {

void TryStatistics(ByteSpan bytes) {
  const auto records = ReadPalateFile(bytes);
  if (!records) return;
  Require(!records->empty() && records->size() <= kMostPalateRecords, "as many records as there may be");
  ByteWriter saved;
  for (const PalateRecord& record : *records) {
    Require(record.start >= 0 && record.start < record.end && record.end <= kMaxSamples,
            "a stretch of a sound");
    Require(record.frames >= 1 && record.rate > 0 && std::isfinite(record.rate), "frames at a rate");
    WritePalateRecord(saved, record);
  }
  const auto again = ReadPalateFile(saved);
  Require(again && again->size() == records->size(), "saved records can be read");
  Require(!PalateText(*records).empty(), "and listed");
  PalateStatistics shown;
  shown.records = *records;
  shown.ofFile = true;
  shown.other = MeanOf(*again);
  PalateStatisticsPicture(shown, 900, 400);
}

void TryFrames(ByteSpan bytes) {
  for (const std::size_t size : {std::size_t{8}, std::size_t{12}})
    if (const auto frames = ParseContactFrames(bytes, size))
      Require(frames->size() * size == bytes.size(), "whole frames");
}

void TryRecording(ByteSpan bytes) {
  static SoundDocument document;
  PalateState palate;
  if (ParseEpgNsp(bytes, palate.recording) != NspRefusal::None) return;
  CommandStates states;
  document.resetForNewSound(palate.recording.sampleCount, palate.recording.sampleRate, states);
  palate.loaded = true;
  palate.sound = document.Stamp();
  const ContactTiming timing = TimingOf(palate, document);
  if (timing.frames < 1) return;
  Require(std::isfinite(timing.rate) && timing.rate > 0, "frames at a rate");
  const ContactSpan shown = ShownFramesOf(timing, document);
  Require(shown.first >= 0 && shown.Count() >= 1 && shown.last < timing.frames, "frames of the stretch");
  PalateView view;
  PalatePicture(document, palate, view, nullptr, 640, 480);
  const ContactStatistics all = MeasureStatistics(FramesOf(palate, document));
  for (const double share : all.percent) Require(share >= 0 && share <= 100, "a share");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  InitSignalTables();
  TryStatistics({data, size});
  TryFrames({data, size});
  TryRecording({data, size});
  return 0;
}

#ifndef PARLOWEN_LIBFUZZER
int main() {
  std::mt19937 random(20261121);
  const auto below = [&](std::size_t n) { return static_cast<std::size_t>(random()) % n; };
  ByteWriter record;
  WritePalateRecord(record,
                    {100, 900, 16000, 2, 100, MeasureStatistics(std::vector<ContactFrame>(2, {1, 2, 3}))});
  const std::string one(record.bytes().begin(), record.bytes().end());
  testing::NspBytes epg;
  epg.chunks = testing::Speech("SDA_", {1, 2, 3, 4, 5, 6, 7, 8}) + testing::Preferences() +
               testing::Chunk("PALA", std::string(64, '\x5A')) + testing::Marker("MKA_", 3, "t");
  const std::string goods[] = {one + one, epg.Epg(8), std::string(96, '\x18')};
  for (int run = 0; run < 6000; ++run) {
    std::string bytes = goods[below(3)];
    for (std::size_t change = below(4); change < 4 && !bytes.empty(); ++change) {
      const std::size_t at = below(bytes.size());
      constexpr std::uint8_t kLimits[] = {0, 1, 0x7F, 0x80, 0xFF};
      bytes[at] = static_cast<char>(below(2) == 0 ? kLimits[below(5)] : below(256));
      if (below(8) == 0) bytes.resize(at + 1);
      if (below(8) == 0) bytes.insert(at, bytes.substr(0, below(40)));
    }
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  }
  return 0;
}
#endif
