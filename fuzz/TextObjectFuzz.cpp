// The decoder and the readers of text files over any bytes: no harm, sets that keep their rules, and what was
// taken in comes back out of our own file.

#include <string>

#include "Mutants.h"
#include "base/Gbk.h"
#include "base/IpaCodes.h"
#include "interchange/LabelTrack.h"
#include "interchange/MarkerTiers.h"
#include "interchange/PitchObjects.h"
#include "interchange/TextDecoding.h"
#include "interchange/TextGrid.h"

namespace {

using namespace parlowen;

constexpr int kCount = 32000, kRate = 16000;

void CheckRules(const ImportedMarkers& imported) {
  for (int band = 0; band < kMarkerBands; ++band) {
    const auto markers = imported.set.Markers(band);
    const auto labels = imported.set.Labels(band);
    Require(markers.size() <= kMarkersPerBand && labels.size() <= kLabelsPerBand, "a band is not over-full");
    for (std::size_t m = 0; m < markers.size(); ++m)
      Require(markers[m] >= 0 && markers[m] <= kCount && (m == 0 || markers[m - 1] < markers[m]),
              "markers ascend in the sound");
    for (const MarkerLabel& label : labels) {
      Require(label.start >= 0 && label.start <= label.end && label.end <= kCount,
              "a label lies in the sound");
      Require(IpaToGbk(label.text).size() <= kMarkerLabelBytes && !label.text.empty(), "its text fits");
      for (const std::int32_t marker : markers)
        Require(marker <= label.start || marker >= label.end, "no marker splits it");
    }
  }
  Require(imported.annotations.size() <= kMostAnnotations, "the annotations have room");
}

/// Everything that an import took is in the file that is written then.
void CheckReturn(const ImportedMarkers& imported) {
  ExportLosses losses;
  GridFault fault = GridFault::None;
  const auto grid = ReadTextGrid(
      TextGridText(GridOfMarkers(imported.set, imported.annotations, kCount, kRate, losses)), fault);
  Require(grid.has_value(), "our own file is read");
  const ImportedMarkers again = MarkersOfGrid(*grid, kCount, kRate);
  if (!losses.None()) return;
  Require(again.losses == ImportLosses{}, "nothing is lost on the way");
  Require(
      again.set.markerCount == imported.set.markerCount && again.set.labelCount == imported.set.labelCount,
      "all comes back");
  Require(again.set.markerPos == imported.set.markerPos, "to its place");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const DecodedText decoded = DecodeText({data, size});
  GridFault gridFault = GridFault::None;
  if (const auto grid = ReadTextGrid(decoded.text, gridFault)) {
    const ImportedMarkers imported = MarkersOfGrid(*grid, kCount, kRate);
    CheckRules(imported);
    CheckReturn(imported);
  }
  int badLine = 0;
  const auto labels = ReadLabelTrack(decoded.text, badLine);
  if (badLine == 0 && !labels.empty()) CheckRules(MarkersOfTrack(labels, kCount, kRate));
  PitchTierFault pitchFault = PitchTierFault::None;
  if (const auto tier = ReadPitchTier(decoded.text, pitchFault))
    for (const float period : TargetOf(*tier, kRate, 0, 50))
      Require(period >= 1.0f && period <= 20000.0f, "a target is a period");
  return 0;
}

#ifndef PARLOWEN_LIBFUZZER
namespace {

std::vector<std::string> Seeds() {
  const std::string head = "File type = \"ooTextFile\"\nObject class = ";
  const std::string grid =
      head +
      "\"TextGrid\"\n\n0\n2\n<exists>\n3\n\"IntervalTier\"\n\"1\"\n0\n2\n3\n0\n0.5\n\"a\"\n0.5\n1\n\"\"\n1\n2\n\"\"\"音\"\n\"TextTier\"\n"
      "\"1 点\"\n0\n2\n2\n0.75\n\"p\"\n1.5\n\"\"\n\"TextTier\"\n\"音标\"\n0\n2\n1\n0.25\n\"ɛ\"\n";
  std::string wide = "\xFF\xFE";
  for (const char character : grid) wide += {character, '\0'};
  return {
      grid,
      grid,
      ToGbk(grid),
      wide,
      head +
          "\"PitchTier\"\n\nxmin = 0 \nxmax = 2 \npoints: size = 2 \npoints [1]:\n number = 0.5 \n value = 128 \npoints [2]:\n number = 1 \n value = 256 \n",
      "0.000000\t0.500000\ta\n\\\t100\t200\n0.500000\t1.000000\tb\n0.750000\t0.750000\tc\n"};
}

/// Some of what stands in such files, so that mutants are files more often than not.
constexpr const char* kPieces[] = {"0",
                                   "1",
                                   "2",
                                   "20",
                                   "-1",
                                   "0.1",
                                   "1e9",
                                   "1e300",
                                   "\"\"",
                                   "\"x\"",
                                   "\"IntervalTier\"",
                                   "\"TextTier\"",
                                   "!",
                                   "<exists>",
                                   "\n",
                                   "\t",
                                   " ",
                                   "99999999"};

}  // namespace

int main() {
  Mutator mutate;
  mutate.pieces = kPieces;
  return TryMutants(Seeds(), 60000, mutate);
}
#endif
