#pragma once
#include "document/SoundStamp.h"
#include "spectral/FrameParameters.h"

namespace parlowen {

/// The frames that the frame display and the comparison show. They last until the next ones or until a new
/// sound comes.
struct FrameState {
  bool hasFrame = false, hasComparison = false;
  SoundStamp sound;  ///< that they were made from
  int sampleRate = 0;
  FrameParameters frame;
  FrameComparison comparison;
  bool frameOpen = false, comparisonOpen = false;  ///< their windows
  int shownStart = 0, shownEnd = 0;                ///< the selection that they speak of
};

}  // namespace parlowen
