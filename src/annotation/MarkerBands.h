#pragma once
#include "annotation/MarkerEditing.h"
#include "annotation/MarkerSet.h"
#include "document/SoundDocument.h"
#include "document/WavePyramid.h"
#include "ui/Picture.h"
#include "ui/Text.h"

namespace parlowen {

/// From the top: the instruction line, the waveform, the time in seconds, the bands' heading, the four bands.
struct MarkerLayout {
  int waveTop = 0, waveHeight = 0;
  int axisTop = 0, headingTop = 0;
  int bandsTop = 0;  ///< row 0 of the band area

  explicit MarkerLayout(int height);
};

inline constexpr int kMarkerAreaHeight = 161;  ///< rows of the four bands
inline constexpr int kMarkerRightMargin = 4;   ///< pixels behind the waveform's last column
inline constexpr UiText kBandsHeading = "下面是四个标志带，左边是标志带号（1--4）";

/// The marker window's drawing, 24 pixels wider than the waveform. A marker is a stroke through the waveform
/// and its band; a point label stands at its marker, a segment label in the middle of what is seen of its
/// stretch.
Picture MarkersPicture(const SoundDocument& document, const WavePyramid& pyramid, const MarkerSet& set,
                       const MarkerView& view, int height);

}  // namespace parlowen
