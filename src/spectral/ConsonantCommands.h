#pragma once
#include <string>
#include <vector>

#include "document/SoundDocument.h"
#include "spectral/ConsonantFrame.h"
#include "ui/Window.h"

namespace parlowen {

/// What the consonant window shows.
struct ConsonantState {
  ConsonantFrame frame;                 ///< analysed last: shown again where a frame lies too near the end
  std::vector<ConsonantFrame> stretch;  ///< of the stretch that is shown; empty while one frame is
  int start = 0, step = 0;              ///< samples, of that stretch
  int sampleRate = 0;
  SoundStamp sound;  ///< that it was made from
  bool shown = false, frameOpen = false;
  int shownStart = 0;  ///< where the frame begins
};

/// 40095: the frame at the selection's start in the window "consonant". Refused outside 16000..22050 Hz; a
/// gravity below band 9 is remarked on.
bool ConsonantFrameCommand(Window& window, SoundDocument& document, ConsonantState& state);

/// 40096: the measures over the selection; asks whether to save them to a .con file.
bool ConsonantStretchCommand(Window& window, SoundDocument& document, ConsonantState& state);

/// 40109: writes "Cons.txt" of a .con file into `exportFolder` ("" is the current directory) and shows it.
void ListConsonantFileCommand(Window& window, const std::string& exportFolder);

/// After a click in the main window: an open window of one frame shows the one that is marked now.
void FollowSelectedConsonant(Window& window, const SoundDocument& document, ConsonantState& state);

/// Band energies as bars, or gravity (red), dispersion (blue) and intensity (black) over time.
Picture ConsonantPicture(const ConsonantState& state, int width, int height);

/// Rows of a band's bar: 120 for the strongest, 3 a dB less for the others, at least 0.
int BandBarHeight(double energy, double strongest);

}  // namespace parlowen
