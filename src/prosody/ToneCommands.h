#pragma once
#include <optional>
#include <string>

#include "prosody/ProsodyDesk.h"
#include "prosody/ToneState.h"
#include "ui/Window.h"

namespace parlowen {

/// Limits of a range as they were typed: whole numbers of 20..2000 Hz, the upper at least a semitone above the
/// lower; else nothing.
std::optional<ToneRange> ParseToneLimits(const std::string& low, const std::string& high);

/// 40052: adds the tone of the selection to the window "degree", opening it first.
bool DegreeCommand(Window& window, const ProsodyDesk& desk, DegreeState& degree, const ToneState& tones);

// A run of tone statistics. Its file is written whole after every change of its items: a program that is killed
// has lost nothing. A change that cannot be written is not made.

bool BeginTonesCommand(Window& window, ToneState& tones);                                  ///< 40029
void AddToneCommand(Window& window, const ProsodyDesk& desk, ToneState& tones);            ///< 40030
void RemoveToneCommand(Window& window, ToneState& tones);                                  ///< 40035
void EndTonesCommand(Window& window, ToneState& tones);                                    ///< 40031
void ReportTonesCommand(Window& window, const ProsodyDesk& desk, const ToneState& tones);  ///< 40032
void NextToneAxisCommand(Window& window, ToneState& tones);                                ///< 40033
bool TonePatternCommand(Window& window, const ProsodyDesk& desk, ToneState& tones);        ///< 40034
bool ToneGroupCommand(Window& window, const ProsodyDesk& desk, ToneState& tones);          ///< 40037

// What the buttons of the window "tones" do.

/// Every labelled stretch of the first marker band becomes an item, one write for all.
void AddLabelledTones(Window& window, const ProsodyDesk& desk, ToneState& tones);
void AskToneRange(Window& window, ToneState& tones);
void CompareTones(Window& window, ToneState& tones);
/// Picks an item or a group and, of an item whose sound is loaded, marks the stretch; −1 picks nothing.
void PickTone(Window& window, const ProsodyDesk& desk, ToneState& tones, int picked);

}  // namespace parlowen
