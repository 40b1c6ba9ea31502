#pragma once
#include "document/SoundDocument.h"
#include "ui/Window.h"

namespace parlowen {

/// Low- or high-passes the selection, 0.5 to 8 s of a sound of at most 16000 Hz. It cannot be undone.
void FilterSegmentCommand(Window& window, SoundDocument& document);

/// Converts the whole sound down to 16000 or 11025 Hz, which makes it a new sound for everybody who does not
/// follow the edit. No edit when the sound's rate is no higher.
Edit ConvertRateCommand(Window& window, SoundDocument& document, CommandStates& states);

/// Writes the selection as a mono file of its own; the document keeps its name, the series goes on from the
/// new one.
void SaveSelectionCommand(Window& window, SoundDocument& document);

}  // namespace parlowen
