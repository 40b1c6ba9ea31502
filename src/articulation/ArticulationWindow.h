#pragma once
#include <functional>
#include <string>

#include "articulation/ArticulationPicture.h"
#include "document/SoundDocument.h"
#include "ui/Window.h"

namespace parlowen {

/// Plays a sound file to its end; false when there is none.
using PlaySoundFile = std::function<bool(Window& window, const std::string& path)>;

/// What the window works on; all of it outlives the window.
struct ArticulationDesk {
  const SoundDocument& document;
  ArticulationState& state;
  const std::string& dataFolder;  ///< recordings of the sounds are pinyin/NAME.wav in it
  const PlaySoundFile& play;      ///< empty while there is no player
};

/// 40117: opens the window of the initials and finals of Mandarin.
void ShowArticulationCommand(Window& window, const ArticulationDesk& desk);

/// Estimates the vocal tract from the formants of the selection; refused without one, from 22100 Hz on, and where
/// there are no three formants.
void EstimateFromSelection(Window& window, const SoundDocument& document, ArticulationState& state);

}  // namespace parlowen
