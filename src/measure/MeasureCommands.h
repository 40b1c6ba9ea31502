#pragma once
#include "interchange/ExchangeCommands.h"
#include "pitch/FastPitch.h"
#include "ui/Window.h"

namespace parlowen {

/// 41051: the table of parlowen-measure of the present sound's segment labels, all measures, into a CSV. The
/// contour is the sound's, as it was computed or repaired; without one it is computed for the table alone.
/// Refused without segment labels.
void MeasureLabelsCommand(Window& window, const MarkerDesk& desk, PitchRange range);

}  // namespace parlowen
