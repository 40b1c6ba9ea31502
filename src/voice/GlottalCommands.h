#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "document/SoundDocument.h"
#include "document/SoundStamp.h"
#include "ui/Text.h"
#include "ui/Window.h"
#include "voice/GlottalAnalysis.h"

namespace parlowen {

/// The last estimate. It lasts until the next run or another sound.
struct GlottalState {
  bool shown = false;
  VoicedStretch stretch;
  bool turned = false;  ///< the polarity is the user's, not the one that was found
  GlottalWave wave;
  /// The sound as it was, and its second channel or nothing: what is drawn and turned over after an edit.
  std::vector<std::int16_t> samples, second;
  int chosen = -1;   ///< a period, or −1
  SoundStamp sound;  ///< that it was made from
};

/// Plays samples start .. end − 1.
using PlayGlottalStretch = std::function<void(Window& window, int start, int end)>;

/// What the window works on; all of it outlives the window.
struct GlottalDesk {
  SoundDocument& document;
  GlottalState& state;
  const std::string& exportFolder;  ///< where GlotWave.txt goes; "" is the current directory
  const PlayGlottalStretch& play;   ///< empty while there is no player
};

/// What to do while the window is open.
inline constexpr UiText kGlottalHint = "左键、←→：选周期";

/// 40067: estimates the glottal wave of the selection's longest voiced stretch and opens the window `glottal`. True
/// when it did.
bool GlottalWaveCommand(Window& window, const GlottalDesk& desk);

/// GlotWave.txt, GBK.
std::string GlottalWaveText(const GlottalWave& wave);

}  // namespace parlowen
