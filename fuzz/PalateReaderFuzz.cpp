// Statistics, frames and recordings of the palate over any bytes: what is taken is finite and within its bounds, can be
// shown, and comes back the same when it is saved.

#include <cmath>
#include <string>

#include "Mutants.h"
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
  const EpgRecording& recording = palate.recording;
  Require(recording.sampleCount <= kMaxSamples && std::ssize(recording.samples) <= recording.sampleCount,
          "samples within the capacity");
  Require(recording.samples.size() * 2 + recording.palate.size() <= bytes.size(), "what the file holds");
  for (const EpgMarker& marker : recording.markers)
    Require(marker.position >= 0 && marker.position <= recording.sampleCount, "a marker of the sound");
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

void TrySpeech(ByteSpan bytes) {
  TwoChannelNsp speech;
  if (ParseTwoChannelNsp(bytes, speech) != NspRefusal::None) return;
  const auto count = static_cast<std::size_t>(speech.sampleCount);
  Require(speech.hasFirst || speech.hasSecond, "a channel");
  Require(speech.first.size() <= count && speech.second.size() <= count && 2 * count <= bytes.size(),
          "samples that the file holds");
  Require(speech.sampleRate >= kSmallestRate && speech.sampleRate <= kLargestRate, "a usable rate");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  InitSignalTables();
  TryStatistics({data, size});
  TryFrames({data, size});
  TryRecording({data, size});
  TrySpeech({data, size});
  return 0;
}

#ifndef PARLOWEN_LIBFUZZER
int main() {
  ByteWriter record;
  WritePalateRecord(record,
                    {100, 900, 16000, 2, 100, MeasureStatistics(std::vector<ContactFrame>(2, {1, 2, 3}))});
  const std::string one(record.bytes().begin(), record.bytes().end());
  using namespace testing;
  NspBytes epg, speech;
  epg.chunks = Speech("SDA_", {1, 2, 3, 4, 5, 6, 7, 8}) + Preferences() +
               Chunk("PALA", std::string(64, '\x5A')) + Marker("MKA_", 3, "t") + Chunk("ODD_", "abc") +
               Speech("SD_B", Ramp(20)) + Marker("MK_B", 3, "u");
  speech.chunks = std::string("JUNK") + Speech("SDA_", Ramp(30)) + Speech("SD_B", Ramp(30));
  return TryMutants({one + one, epg.Epg(8), epg.Epg(8), speech.TwoChannel(), std::string(96, '\x18')}, 20000);
}
#endif
