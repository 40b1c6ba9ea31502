#pragma once
#include "document/SoundDocument.h"
#include "ui/Window.h"

namespace parlowen {

// The handlers of cut, copy, paste, undo, amplify and attenuate, and of the two selection commands. Those that
// edit return the edit, for whatever follows it; no edit where the user refused or nothing was selected.

Edit CutCommand(Window& window, SoundDocument& document, CommandStates& states);
void CopyCommand(SoundDocument& document, CommandStates& states);
Edit PasteCommand(Window& window, SoundDocument& document, CommandStates& states);
Edit UndoCommand(Window& window, SoundDocument& document, CommandStates& states);
void AmplifyCommand(Window& window, SoundDocument& document);
void AttenuateCommand(Window& window, SoundDocument& document);
void SelectAllCommand(Window& window, SoundDocument& document, CommandStates& states);
void ClearSelectionCommand(Window& window, SoundDocument& document, CommandStates& states);

/// Exchanges the two channels; refused for a mono document.
void SwapChannelsCommand(Window& window, SoundDocument& document, CommandStates& states);

/// The refusal of the two-channel commands; true when the document has two channels.
bool RequireTwoChannels(Window& window, const SoundDocument& document);

// The selection, as clicks set it: the left button sets the start, the right one the end.
void MarkStart(SoundDocument& document, CommandStates& states, int sample);
void MarkEnd(SoundDocument& document, CommandStates& states, int sample);

}  // namespace parlowen
