#pragma once
#include <string>

#include "audio/RecorderSettings.h"
#include "document/SoundDocument.h"
#include "ui/Window.h"

namespace parlowen {

/// Writes gain and threshold to a file; one that cannot be written is reported.
void WriteSettingsFile(Window& window, const RecorderSettings& settings, const std::string& path);

/// Asks for the recording rate, the kind of spectrogram and the threshold, and keeps gain and threshold in
/// `file`. The rate is the document's: a loaded sound is heard and shown with it from then on.
void SettingsCommand(Window& window, SoundDocument& document, CommandStates& states,
                     RecorderSettings& settings, const std::string& file);

}  // namespace parlowen
