#pragma once
#include <string>

#include "document/SoundDocument.h"
#include "palatography/PalateState.h"
#include "ui/Window.h"

namespace parlowen {

/// Loads two-channel speech; a file with one channel becomes a mono document in which a missing channel 1 is
/// silent. 1, or 0 after a refusal, which leaves everything as it was. Files over 256 MB do not open.
int ReadTwoChannelNsp(Window& window, SoundDocument& document, CommandStates& states,
                      const std::string& path);

/// Loads a palate recording: speech into the document, the rest into `palate`; 40061, 40049, 40087 and 40088
/// are enabled when preference record and palate frames are there. 1, or 0 after a refusal, which leaves
/// everything as it was. Files over 256 MB do not open.
int ReadEpgNsp(Window& window, SoundDocument& document, CommandStates& states, PalateState& palate,
               const std::string& path);

/// 40116 and 40060: ask for a file and read it; cancelling does nothing.
void OpenTwoChannelNspCommand(Window& window, SoundDocument& document, CommandStates& states);
bool OpenEpgCommand(Window& window, SoundDocument& document, CommandStates& states, PalateState& palate);

}  // namespace parlowen
