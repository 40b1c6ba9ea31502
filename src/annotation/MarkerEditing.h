#pragma once
#include <cstdint>
#include <optional>
#include <span>

#include "annotation/MarkerSet.h"
#include "ui/Text.h"

namespace parlowen {

inline constexpr UiText kMarkersFull = "标志数已达20，不能再加！";
inline constexpr UiText kMarkerNear = "此处已有标志，不能加！";
inline constexpr UiText kNoMarkerForLabel = "没有标志，不能加标注！";
inline constexpr UiText kNoLabel = "没有标注文字！不能删";

/// Samples and columns of the marker window, or of a pane of the main window. Both begin at column 20.
struct MarkerScale {
  std::int32_t start = 0;        ///< sample at column 20
  std::int32_t sampleCount = 0;  ///< of the sound
  double samplesPerPixel = 0;    ///< sampleCount / columns / d

  MarkerScale(const MarkerView& view, std::int32_t count);
  MarkerScale(std::int32_t first, std::int32_t count, double perPixel)
      : start(first), sampleCount(count), samplesPerPixel(perPixel) {}

  /// trunc((position − start) / samplesPerPixel) + 20. Truncated, not rounded down: positions less than a
  /// column left of the start stand at column 20.
  int Column(std::int32_t position) const;
  /// trunc(start + (column − 20)·samplesPerPixel) in 0..sampleCount; columns left of 20 count as 20.
  std::int32_t SampleAt(int column) const;
};

/// A place in the bands: where the pointer is and the sample that it means.
struct MarkerPoint {
  int band = 0;  ///< 0..3
  int column = 0;
  std::int32_t sample = 0;
};

/// The band of a row below the top of the band area: up to 40 band 0, up to 80 band 1, up to 120 band 2, then
/// band 3.
int BandOfRow(int row);

/// What came of an action: the set is changed, or a refusal is to be shown, or neither.
struct MarkerOutcome {
  bool changed = false;
  std::optional<UiText> refusal{};
};

/// Adds a marker at the point's sample and sorts the band. Refused at 20 markers, when one is drawn less than
/// 2 columns away, and strictly inside a stretch with a label.
MarkerOutcome AddMarker(MarkerSet& set, const MarkerScale& scale, const MarkerPoint& at);

/// Removes the first marker drawn less than 2 columns away; refused while a label of the band starts or ends
/// there.
MarkerOutcome DeleteMarker(MarkerSet& set, const MarkerScale& scale, const MarkerPoint& at);

/// The same for the marker at exactly that sample.
MarkerOutcome DeleteMarkerAt(MarkerSet& set, int band, std::int32_t position);

/// The nearest marker drawn less than 3 columns away.
std::optional<std::int32_t> MarkerNear(const MarkerSet& set, const MarkerScale& scale, const MarkerPoint& at);

/// Moves the marker at `from` with the edges of the labels that stand on it, at most up to a sample beside the
/// markers next to it and inside the sound. Returns where it stands; `from` when there is none.
std::int32_t MoveMarker(MarkerSet& set, int band, std::int32_t from, std::int32_t to,
                        std::int32_t sampleCount);

/// The sample nearest to `at`, at most `reach` away, before which the wave crosses zero; `at` when there is none.
std::int32_t NearestZeroCrossing(std::span<const std::int16_t> samples, std::int32_t at, std::int32_t reach);

/// The marker at or left of the sample, or 0, and the one right of it, or the sample count.
struct MarkerStretch {
  std::int32_t start = 0, end = 0;
};
MarkerStretch StretchAt(const MarkerSet& set, const MarkerPoint& at, std::int32_t sampleCount);

/// Where a label added at the point would belong: to the nearest marker less than 3 columns away, else to the
/// stretch between two. Refused at 20 labels and in a band without markers.
struct LabelPlace {
  MarkerStretch stretch;  ///< start = end: a marker
  std::optional<UiText> refusal{};
};
LabelPlace PlaceOfLabel(const MarkerSet& set, const MarkerScale& scale, const MarkerPoint& at);

/// Adds the label as the band's last. False when the band holds 20.
bool AppendLabel(MarkerSet& set, int band, MarkerLabel label);

/// The label at the point, among those of its band: the nearest point label less than 3 columns away, else the
/// first on the stretch around it; −1 for none.
int FindLabel(const MarkerSet& set, const MarkerScale& scale, const MarkerPoint& at);
/// The label of exactly that place; −1 for none.
int LabelOn(const MarkerSet& set, const ChosenPlace& place);
void RemoveLabel(MarkerSet& set, int band, int index);

/// Removes the nearest point label less than 3 columns away, else the label of the stretch around the point,
/// and closes up. Of several on one place the first goes.
MarkerOutcome DeleteLabel(MarkerSet& set, const MarkerScale& scale, const MarkerPoint& at);

/// Sorts every band's markers ascending; true when one moved.
bool SortMarkers(MarkerSet& set);

/// A view further left or right, never past the sound's ends.
void ScrollMarkersTo(MarkerView& view, std::int64_t start, std::int32_t sampleCount);
/// Samples under all columns: sampleCount / d.
std::int32_t MarkerViewLength(const MarkerView& view, std::int32_t sampleCount);
/// Doubles d while a column has at least sampleRate/300 (an integer) samples, halves it while it is at least
/// 2; the view starts at 0 again. False at the limit.
bool ExpandMarkerView(MarkerView& view, std::int32_t sampleCount, int sampleRate);
bool ShrinkMarkerView(MarkerView& view);

}  // namespace parlowen
