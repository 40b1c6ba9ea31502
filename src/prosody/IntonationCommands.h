#pragma once
#include "prosody/IntonationState.h"
#include "prosody/ProsodyDesk.h"
#include "ui/Text.h"
#include "ui/Window.h"

namespace parlowen {

/// What the mouse and the keys do there.
UiText IntonationHint();

/// 40106: analyses the selection and shows it in the window "intonation".
bool IntonationCommand(Window& window, const ProsodyDesk& desk, IntonationState& state);

// What the buttons of the window do.

void SaveIntonation(Window& window, const IntonationState& state);
void CompareIntonation(Window& window, IntonationState& state);
void ShowIntonationReport(Window& window, const ProsodyDesk& desk, const IntonationState& state);
void AddToSpeakerRange(Window& window, const IntonationState& state);
/// Takes the range of a speaker's file in use, or lets go of the one that is.
void UseSpeakerRange(Window& window, IntonationState& state);
void ChooseIntonationUnit(Window& window, IntonationState& state, int unit);
/// A unit's figures in one line that fits the status bar.
std::string UnitLine(const IntonationUnit& unit);

}  // namespace parlowen
