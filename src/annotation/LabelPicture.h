#pragma once
#include <cstdint>
#include <span>
#include <string>

#include "annotation/Annotations.h"
#include "annotation/MarkerSet.h"
#include "ui/Picture.h"
#include "ui/Plot.h"

namespace parlowen {

// The label pane as a picture: the four bands and the annotations below them, five rows of the same height.

inline constexpr int kLabelRows = kMarkerBands + 1;
inline constexpr int kAnnotationRow = kMarkerBands;

/// Top of a row 0..kLabelRows; the last is the pane's end.
constexpr int LabelRowTop(int row, int height) { return row * height / kLabelRows; }
/// The row under a pixel; those outside count as the first and the last.
int LabelRowAt(int y, int height);

/// What the pane shows.
struct LabelledSound {
  const MarkerSet& set;
  std::span<const Annotation> annotations;
  std::int32_t sampleCount = 0;
};

/// Markers as strokes, each text in its stretch, right of its marker or right of its moment. A text that does not
/// fit is cut and ends in "…", or is left out where nothing of it fits: none covers another or the line behind
/// which it ends. The band of `view` is tinted, what is chosen there is marked.
Picture LabelsPicture(const LabelledSound& sound, const MarkerView& view, const SampleScale& columns,
                      int width, int height);

/// The rows' numbers, in their middle.
std::vector<Tick> LabelTicks(int height);

/// The text as much of it as `room` pixels hold at that type size, with "…" for the rest; "" where no character
/// does.
std::string ElidedText(const std::string& text, int height, int room);

}  // namespace parlowen
