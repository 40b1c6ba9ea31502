#pragma once
#include <functional>
#include <string>

#include "document/SoundDocument.h"
#include "palatography/PalateState.h"
#include "ui/Window.h"

namespace parlowen {

/// What the commands and the window of the palates work on; all of it outlives the window.
struct PalateDesk {
  SoundDocument& document;
  const PalateState& palate;
  PalateView& view;
  const std::string& exportFolder;  ///< where PalaStat.txt goes; "" is the current directory
  /// Plays samples start .. end − 1; empty while there is no player.
  const std::function<void(Window& window, int start, int end)>& play;
};

/// 40049, and with the spectrum 40061: opens the window over the frames. Refused when the frames are damaged or the
/// sound was edited.
bool ShowPalateCommand(Window& window, const PalateDesk& desk, bool withSpectrum);

/// 40087: measures the frames of the selection, shows the numbers and offers to save them.
bool PalateStatisticsCommand(Window& window, const PalateDesk& desk);

/// 40088: reads statistics, lists them in PalaStat.txt and shows their mean.
bool OpenPalateStatisticsCommand(Window& window, const PalateDesk& desk);

/// Asks for a second file whose means the shown ones are compared with.
void ComparePalateStatistics(Window& window, PalateStatistics& statistics);

/// 40083: the index beside the palate file opened last, else the one of the data folder.
void ShowPalateIndexCommand(Window& window, const PalateState& palate, const std::string& dataFolder);
/// 40084: what frames, indices and pictures mean.
void ShowPalateIntroductionCommand(Window& window, const std::string& dataFolder);

/// 41041: asks for a file of contact frames and for their rate; they stand beside the loaded sound and enable what
/// a palate recording enables. Frames behind the sound are left out.
void ImportContactFramesCommand(Window& window, const SoundDocument& document, CommandStates& states,
                                PalateState& palate);

}  // namespace parlowen
