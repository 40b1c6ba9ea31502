#pragma once
#include <optional>
#include <span>
#include <vector>

#include "synthesis/SynthesisState.h"
#include "ui/Picture.h"

namespace parlowen {

/// Pixels right of the drawing area, for the labels of its axis.
inline constexpr int kSynthesisGutter = 44;

/// Where the frames lie: frame f of the selection at the columns f·zoom − scroll …
struct SynthesisView {
  int zoom = 1;    ///< pixels a frame
  int scroll = 0;  ///< pixels

  std::optional<int> cursor{};  ///< sample of the selection that a running play is at

  int ColumnOf(int frame) const { return frame * zoom + zoom / 2 - scroll; }
  int FrameAt(int x) const { return (x + scroll) / zoom; }
};

/// What is drawn of a resynthesis: the drawing area of 256 rows (present pitch green, target red, the points
/// of the setting in work as squares), under it the time and, where there is room, the waveform.
Picture SynthesisPicture(const SynthesisState& state, std::span<const float> present,
                         const std::vector<Point>& points, const SynthesisView& view, int width, int height);

}  // namespace parlowen
