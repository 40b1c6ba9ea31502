#pragma once
#include "channels/ChannelsState.h"
#include "document/SoundDocument.h"
#include "ui/Picture.h"
#include "ui/Plot.h"
#include "ui/Text.h"

namespace parlowen {

/// The band of the whole spectrum, in the figures and on the button that chooses it.
inline constexpr UiText kFullBandName = "全频带";

/// The common axis of the window's panes: at zoom 1 the whole sound lies under the columns behind the margin.
struct ChannelsView {
  int start = 0;     ///< sample at the margin
  int zoom = 1;      ///< a power of two
  int width = 1024;  ///< pixels, the margin of 20 included

  /// sampleCount/zoom samples over the columns behind the margin.
  SampleScale Columns(const SoundDocument& document) const;
  /// The sample of a column, x at least 20, clamped to 0..sampleCount.
  int SampleAt(const SoundDocument& document, int x) const;
  /// Samples under all columns.
  int Length(const SoundDocument& document) const;
};

/// From the top: a line of figures, the waveform of each channel, the levels of both, the nasalance, the time
/// in seconds; the selection over all of them. A mono document shows a notice in their place.
Picture ChannelsPicture(const SoundDocument& document, const ChannelsState& state, const ChannelsView& view,
                        int height);

/// The line of figures.
std::string FiguresLine(const SoundDocument& document, const ChannelsState& state);

}  // namespace parlowen
