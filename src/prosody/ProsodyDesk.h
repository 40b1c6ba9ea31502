#pragma once
#include <functional>
#include <string>
#include <vector>

#include "document/SoundDocument.h"

namespace parlowen {

class Window;

/// A labelled stretch of the sound, in samples.
struct LabelledStretch {
  int start = 0, end = 0;
  std::string text;  ///< UTF-8
};

/// The first marker band of the present sound.
struct FirstBand {
  std::vector<int> markers;             ///< samples, ascending
  std::vector<LabelledStretch> labels;  ///< of stretches, in the order of time
};

/// What the windows of tones and intonation work on and ask of others; all of it outlives them.
struct ProsodyDesk {
  SoundDocument& document;
  const std::string& exportFolder;  ///< where text exports go; "" is the current directory
  std::function<FirstBand()> firstBand = [] { return FirstBand{}; };
  /// Marks samples start .. end and scrolls there.
  std::function<void(int start, int end)> mark = [](int, int) {};
  /// Plays samples start .. end − 1; empty while there is no player.
  std::function<void(Window& window, int start, int end)> play{};
};

}  // namespace parlowen
