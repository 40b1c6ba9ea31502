// The marker file's reader over any bytes: no harm, a set that keeps its promises, and a file that reads back
// the same.

#include <algorithm>
#include <random>

#include "Require.h"
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
  std::mt19937 random(20261121);
  const auto below = [&](std::size_t n) { return static_cast<std::size_t>(random()) % n; };
  for (int run = 0; run < 4000; ++run) {
    std::vector<std::uint8_t> bytes(kMarkerFileBytes);
    for (std::size_t i = 0; i < 16; i += 2) bytes[i] = static_cast<std::uint8_t>(below(21));
    for (std::size_t i = 16; i < bytes.size(); ++i)
      bytes[i] = static_cast<std::uint8_t>(below(4) == 0 ? below(256) : 0);
    for (std::size_t change = below(4); change < 3; ++change)
      bytes[below(16)] = static_cast<std::uint8_t>(below(256));
    if (below(20) == 0) bytes.resize(below(2 * kMarkerFileBytes));
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  }
  return 0;
}
#endif
