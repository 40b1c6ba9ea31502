#include "palatography/MarkerPicture.h"

namespace parlowen {
namespace {

constexpr int kTextHeight = 11, kTextFromFoot = 4;  // the head belongs to the edges of the selection

}  // namespace

void AddEpgMarkers(Picture& picture, const PalateState& palate, const SoundDocument& document, int left,
                   const std::function<int(int)>& columnOf) {
  if (!palate.FitsSamples(document)) return;
  for (const EpgMarker& marker : palate.recording.markers) {
    const int x = columnOf(marker.position);
    if (x < left || x >= picture.width) continue;
    picture.Add(LineMark{{x, 0}, {x, picture.height - 1}, colours::kPalateMarker, 1, LineStyle::Dashed});
    if (!marker.label.empty())
      picture.Add(
          TextMark{x + 3, picture.height - kTextFromFoot, marker.label, colours::kPalateMarker, kTextHeight});
  }
}

}  // namespace parlowen
