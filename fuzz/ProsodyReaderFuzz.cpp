// The readers of .pit, .bin, .itn and .tnr over any bytes: no harm, promises kept, and what was read can be
// pooled, drawn and written again.

#include "Mutants.h"
#include "prosody/IntonationFile.h"
#include "prosody/IntonationPicture.h"
#include "prosody/TonePicture.h"

namespace {

using namespace parlowen;

std::vector<std::uint8_t> BytesOf(const ByteWriter& writer) { return writer.bytes(); }

/// An analysis over which a file can be drawn.
const Intonation& Sentence() {
  static const Intonation sentence = [] {
    Intonation made;
    made.sampleRate = 16000;
    made.end = 16000;
    for (int frame = 0; frame < 90; ++frame) made.melody.push_back({frame, 10.0 + frame % 7});
    made.boundaries = {4000, 9000};
    MeasureIntonation(made);
    return made;
  }();
  return sentence;
}

void TryTones(ByteSpan bytes) {
  auto items = ParseToneItems(bytes);
  if (!items) return;
  Require(items->size() <= kMostToneItems, "no more items than a run may have");
  for (const ToneItem& item : *items) Require(IsGoodItem(item), "every item is good");
  const auto again = ParseToneItems(WriteToneItems(*items));
  Require(again == items, "items come back the same");
  ToneState tones;
  tones.view = ToneView::Pattern;
  tones.equalDurations = false;
  tones.SetItems(std::move(*items));
  Require(tones.statistics.groups.size() <= kMostToneGroups, "no more groups than a run may have");
  if (tones.items.empty()) return;
  ToneReport(tones.items, tones.statistics);
  TonePicture(tones, 1024, 640);
  const auto result = ParseToneResult(WriteToneResult(ToneResultOf(tones.statistics)));
  Require(result == ToneResultOf(tones.statistics), "the result comes back the same");
}

void TryResult(ByteSpan bytes) {
  const auto result = ParseToneResult(bytes);
  if (!result) return;
  Require(ParseToneResult(WriteToneResult(*result)) == result, "a result comes back the same");
  ToneState tones;
  tones.view = ToneView::Pattern;
  tones.compared = result;
  for (tones.equalDurations = false;; tones.equalDurations = true) {
    for (int axis = 0; axis < kToneAxes; ++axis) {
      tones.axis = static_cast<ToneAxis>(axis);
      TonePicture(tones, 1024, 640);
    }
    if (tones.equalDurations) return;
  }
}

void TryIntonation(ByteSpan bytes) {
  IntonationState state{Sentence(), -1, ParseIntonation(bytes), {}};
  if (state.compared) IntonationPicture(state, 1024, 640);
  const auto range = ParseSpeakerRange(bytes);
  if (!range) return;
  Require(range->low <= range->high, "a range has two ends");
  state.result->speaker = range;
  MeasureIntonation(*state.result);
  IntonationPicture(state, 1024, 640);
  IntonationReport(*state.result);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const ByteSpan bytes(data, size);
  TryTones(bytes);
  TryResult(bytes);
  TryIntonation(bytes);
  return 0;
}

#ifndef PARLOWEN_LIBFUZZER
namespace {

std::vector<ToneItem> SomeItems(std::size_t count) {
  std::vector<ToneItem> items(count);
  for (std::size_t i = 0; i < count; ++i) {
    items[i].group = "T" + std::to_string(i % 5);
    items[i].sound = "a.wav";
    items[i].sampleRate = 16000;
    items[i].end = 8000;
    items[i].hertz = {100, 0, 120, 130, 0, 150.5f + static_cast<float>(i)};
  }
  return items;
}

void Run(const std::vector<std::uint8_t>& bytes) { LLVMFuzzerTestOneInput(bytes.data(), bytes.size()); }

}  // namespace

int main() {
  ToneState tones;
  tones.SetItems(ParseToneItems(WriteToneItems(SomeItems(6))).value());
  std::vector<std::vector<std::uint8_t>> good = {BytesOf(WriteToneItems(tones.items)),
                                                 BytesOf(WriteToneResult(ToneResultOf(tones.statistics))),
                                                 BytesOf(WriteIntonation(Sentence()))};
  ByteWriter speakers = WriteSpeakerRecord(*SpeakerRecordOf(Sentence()));
  speakers.PutBytes(WriteSpeakerRecord({3, -4, 25, 10}).bytes());
  good.push_back(BytesOf(speakers));

  const auto whole = BytesOf(WriteToneItems(SomeItems(kMostToneItems)));
  Require(ParseToneItems(whole).has_value(), "a full run is read");
  Run(whole);
  Require(!ParseToneItems(WriteToneItems(SomeItems(kMostToneItems + 1))), "a longer one is not");

  std::vector<std::string> seeds;
  for (const auto& file : good) {
    seeds.emplace_back(file.begin(), file.end());
    for (std::size_t cut = 0; cut < file.size(); ++cut) {  // cut at every byte
      Try(seeds.back().substr(0, cut));
      Try(seeds.back() + seeds.back().substr(0, cut));
    }
  }
  return TryMutants(seeds, 20000);
}
#endif
