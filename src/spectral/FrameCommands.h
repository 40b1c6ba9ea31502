#pragma once
#include "spectral/FrameState.h"
#include "ui/Window.h"

namespace parlowen {

/// 212: shows the frame at the selection's start, or in the middle of the view, in the window "frame".
void ShowFrameCommand(Window& window, SoundDocument& document, FrameState& state, LpcAnalyser& analyser);

/// 40089: asks whether the frames are voiced and compares the one at the selection's start with the one at
/// its end, in either order, in the window "compare". Without both ends only a hint is shown.
bool CompareFramesCommand(Window& window, SoundDocument& document, FrameState& state, LpcAnalyser& analyser);

/// After a click in the main window: what is open shows the frames that are marked now.
void FollowSelectedFrames(Window& window, const SoundDocument& document, FrameState& state,
                          LpcAnalyser& analyser);

}  // namespace parlowen
