#pragma once
#include <functional>
#include <optional>
#include <vector>

#include "ui/Window.h"

namespace parlowen {

/// The melody asked for: one period in samples per 10 ms frame, element 0 the first frame of the selection; 0
/// where no target is set. The unit is that of PitchContour.
using TargetCurve = std::vector<float>;

/// Asks the user for a curve from another program's file and gives it on the frames firstFrame .. firstFrame
/// + frameCount − 1 of the document; nothing when it was cancelled or refused, which has been said then.
using TargetReader = std::function<std::optional<TargetCurve>(Window&, int firstFrame, int frameCount)>;

}  // namespace parlowen
