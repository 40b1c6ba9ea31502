// The marker file's reader over any bytes: no harm, a set that keeps its promises, and a file that reads back
// the same.

#include <algorithm>

#include "Mutants.h"
#include "annotation/MarkerFile.h"

namespace {

using namespace parlowen;

constexpr int kSampleCount = 100000;

bool Inside(std::int32_t position) { return position >= 0 && position <= kSampleCount; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto content = ParseMarkers({data, size}, kSampleCount);
  if (!content) return 0;
  const MarkerSet& set = content->set;
  for (int band = 0; band < kMarkerBands; ++band) {
    const auto markers = set.Markers(band);
    Require(std::is_sorted(markers.begin(), markers.end()), "markers are sorted");
    Require(std::all_of(markers.begin(), markers.end(), Inside), "markers lie in the sound");
    for (const MarkerLabel& label : set.Labels(band))
      Require(Inside(label.start) && Inside(label.end) && label.start <= label.end,
              "labels lie in the sound");
  }
  const auto bytes = MarkerBytesOf(set);
  const auto again = ParseMarkers(bytes, kSampleCount);
  Require(again && !again->corrected, "what was read can be saved");
  Require(MarkerBytesOf(again->set) == bytes, "and comes back the same");
  return 0;
}

#ifndef PARLOWEN_LIBFUZZER
int main() {
  // Counts in the first 16 bytes, then mostly zeros.
  Mutator mutate;
  std::vector<std::string> seeds(300, std::string(kMarkerFileBytes, '\0'));
  for (std::string& seed : seeds) {
    for (std::size_t i = 0; i < 16; i += 2) seed[i] = static_cast<char>(mutate.Below(21));
    for (std::size_t i = 16; i < seed.size(); ++i)
      if (mutate.Below(4) == 0) seed[i] = static_cast<char>(mutate.Below(256));
  }
  mutate.head = 16;
  return TryMutants(seeds, 20000, mutate);
}
#endif
