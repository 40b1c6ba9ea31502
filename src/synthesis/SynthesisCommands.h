#pragma once
#include <string>

#include "audio/Player.h"
#include "document/SoundDocument.h"
#include "synthesis/SynthesisState.h"
#include "synthesis/TargetCurve.h"
#include "ui/Text.h"
#include "ui/Window.h"

namespace parlowen {

/// What the dialogs are called, and the buttons that open them.
inline constexpr UiText kLoadRecordTitle = "调入基频数据", kScaleTitle = "比例";

/// What a resynthesis works with; all of it outlives the command.
struct SynthesisDesk {
  const SoundDocument& document;
  SynthesisState& state;
  Player& player;
  const std::string& exportFolder;  ///< where Synth.wav goes; "" is the current directory
  const TargetReader& readTarget;   ///< empty: there is none
};

/// 40081: marks the periods of the selection and lets the user draw a melody over it, hear it and save it.
void StartResynthesis(Window& window, const SynthesisDesk& desk);

/// Writes the output to "Synth.wav" and says so. 0; −1 when the file cannot be made, which is shown; 1 when
/// there is no output yet.
int SaveSynthWave(const SynthesisJob& job, Window& window, const std::string& exportFolder);

/// A target from a record of a pitch data file, chosen by its number and laid on the selection from its first
/// frame on; nothing when it was cancelled or refused, which has been said then.
std::optional<TargetCurve> AskRecordedTarget(Window& window);

/// How many times higher the melody is to be; nothing when it was cancelled or refused.
std::optional<double> AskTargetFactor(Window& window);

}  // namespace parlowen
